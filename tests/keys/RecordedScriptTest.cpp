// The recorder's script for given key events (pure logic on the US layout), and the recorder's hook with
// the library's own typing (injected events).
#include <TavUtil.h>
#include <TestSupport.h>

#include "keys/KeyRecorder.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace {

using tav::keys::RecordedKey;
using tav::keys::ScriptFromKeys;

RecordedKey Down(WORD vk) { return {vk, 0, false, false, 0}; }
RecordedKey Up(WORD vk) { return {vk, 0, true, false, 0}; }

// Events for a person's typing: "d:X" presses X and keeps it down, "u:X" lets it go, any other key name
// taps it. Keys by virtual-key code.
struct Step {
    char kind;  // 'd', 'u' or 't'
    WORD vk;
};
std::vector<RecordedKey> Events(std::initializer_list<Step> steps) {
    std::vector<RecordedKey> keys;
    for (const Step& step : steps) {
        if (step.kind != 'u')
            keys.push_back(Down(step.vk));
        if (step.kind != 'd')
            keys.push_back(Up(step.vk));
    }
    return keys;
}
Step D(WORD vk) { return {'d', vk}; }
Step U(WORD vk) { return {'u', vk}; }
Step T(WORD vk) { return {'t', vk}; }

struct Row {
    const char* what;
    std::vector<RecordedKey> keys;
    std::wstring script;
    size_t skipped;
};

TEST(KeysRecordedScript, ShortestNaturalForm) {
    const Row rows[] = {
        {"nothing", {}, L"", 0},
        {"letters and digits", Events({T('H'), T('I'), T('1'), T(VK_SPACE)}), L"hi1 ", 0},
        {"Shift folded into the character", Events({D(VK_LSHIFT), T('A'), T('1'), U(VK_LSHIFT), T('B')}), L"A!b", 0},
        {"right Shift too", Events({D(VK_RSHIFT), T(VK_OEM_1), U(VK_RSHIFT)}), L":", 0},
        {"the language's characters in braces",
         Events({D(VK_LSHIFT), T('9'), T('0'), T(VK_OEM_PLUS), T('6'), T('5'), T('8'), T(VK_OEM_4), T(VK_OEM_6),
                 T(VK_OEM_3), U(VK_LSHIFT), T(VK_OEM_4), T(VK_OEM_6)}),
         L"{(}{)}{+}{^}{%}{*}{{}{}}{~}{[}{]}", 0},
        {"a run of one special character counted", Events({D(VK_LSHIFT), T(VK_OEM_PLUS), T(VK_OEM_PLUS), U(VK_LSHIFT)}),
         L"{+ 2}", 0},
        {"named keys, runs counted", Events({T(VK_TAB), T(VK_TAB), T(VK_TAB), T(VK_F5), T(VK_BACK), T(VK_ESCAPE)}),
         L"{TAB 3}{F5}{BS}{ESC}", 0},
        {"Enter as ~, repeated", Events({T('A'), T(VK_RETURN), T(VK_RETURN)}), L"a~~", 0},
        {"a modifier over several keys: prefix and group", Events({D(VK_LCONTROL), T('A'), T('C'), U(VK_LCONTROL)}),
         L"^(ac)", 0},
        {"a modifier over one key: prefix alone", Events({D(VK_LCONTROL), T('A'), U(VK_LCONTROL), T('B')}), L"^ab", 0},
        {"Shift with a named key stays a prefix", Events({D(VK_LSHIFT), T('A'), T(VK_TAB), U(VK_LSHIFT)}), L"A+{TAB}",
         0},
        {"Shift with space", Events({D(VK_LSHIFT), T(VK_SPACE), U(VK_LSHIFT)}), L"+ ", 0},
        {"Control and Shift: the character folded, Control around it",
         Events({D(VK_LCONTROL), D(VK_LSHIFT), T('S'), U(VK_LSHIFT), U(VK_LCONTROL)}), L"^S", 0},
        {"nested modifiers", Events({D(VK_LCONTROL), T('A'), D(VK_LMENU), T('B'), T('C'), U(VK_LMENU), U(VK_LCONTROL)}),
         L"^(a%(bc))", 0},
        {"overlapping modifiers", Events({D(VK_LCONTROL), D(VK_LMENU), T('B'), U(VK_LCONTROL), T('C'), U(VK_LMENU)}),
         L"%(^bc)", 0},
        {"Windows key", Events({D(VK_LWIN), T('E'), U(VK_LWIN)}), L"*e", 0},
        {"Control over a counted run", Events({D(VK_RCONTROL), T(VK_RIGHT), T(VK_RIGHT), U(VK_RCONTROL)}),
         L"^{RIGHT 2}", 0},
        {"a modifier pressed alone is left out and counted", Events({T(VK_LSHIFT), T('A'), T(VK_LMENU)}), L"a", 2},
        {"Control tapped alone between keys", Events({T('A'), T(VK_LCONTROL), T('B')}), L"ab", 1},
        {"a key with no name and no character", Events({T(VK_APPS), T('A'), T(VK_BROWSER_BACK)}), L"a", 2},
        {"number pad digits as characters", Events({T(VK_NUMPAD4), T(VK_ADD), T(VK_NUMPAD2)}), L"4{+}2", 0},
        {"auto-repeat: every key-down is a press",
         {Down('X'), Down('X'), Down('X'), Up('X'), Down(VK_DELETE), Down(VK_DELETE), Up(VK_DELETE)},
         L"xxx{DEL 2}",
         0},
        {"lock keys by name", Events({T(VK_CAPITAL), T('A'), T(VK_CAPITAL)}), L"{CAPSLOCK}a{CAPSLOCK}", 0},
        {"a held modifier's repeats are one press",
         {Down(VK_LSHIFT), Down(VK_LSHIFT), Down('A'), Up('A'), Up(VK_LSHIFT)},
         L"A",
         0},
        {"a Unicode event types its character",
         {{VK_PACKET, L'q', false, true, 0}, {VK_PACKET, L'q', true, true, 0}},
         L"q",
         0},
        {"a Unicode event of a character no key types",
         {{VK_PACKET, 0x4E2D, false, true, 0}, {VK_PACKET, 0x4E2D, true, true, 0}},
         L"",
         1},
    };
    int index = 0;
    for (const Row& row : rows) {
        const tav::keys::RecordedScript recorded = ScriptFromKeys(row.keys);
        EXPECT_EQ(tavtest::Narrow(row.script), tavtest::Narrow(recorded.script.c_str()))
            << "row " << index << ": " << row.what;
        EXPECT_EQ(row.skipped, recorded.skipped) << "row " << index << ": " << row.what;
        ++index;
    }
}

TEST(KeysRecordedScript, ModifierHeldWhenRecordingBeganCountsUntilLetGo) {
    const std::vector<RecordedKey> keys = Events({T('A'), U(VK_LCONTROL), T('B')});
    EXPECT_EQ(L"^ab", ScriptFromKeys(keys, tav::keys::kRecordControl).script);
    EXPECT_EQ(0u, ScriptFromKeys(keys, tav::keys::kRecordControl).skipped);
    EXPECT_EQ(L"ab", ScriptFromKeys(keys).script);
}

TEST(KeysRecordedScript, EveryPrintableCharacterComesBackAsItself) {
    // What a person types for each printable ASCII character (its key with the Shift it needs), recorded,
    // is the character, escaped as the library escapes text: the recording of typed text is its escape.
    std::wstring all;
    std::vector<RecordedKey> keys;
    for (wchar_t ch = 0x20; ch < 0x7F; ++ch) {
        const SHORT code = VkKeyScanW(ch);
        if (code == -1)
            continue;
        all += ch;
        const bool shift = (code & 0x100) != 0;
        if (shift)
            keys.push_back(Down(VK_LSHIFT));
        keys.push_back(Down(LOBYTE(code)));
        keys.push_back(Up(LOBYTE(code)));
        if (shift)
            keys.push_back(Up(VK_LSHIFT));
    }
    CString escaped(all.c_str());
    SendKeysRemoveSpecialChars(escaped);
    EXPECT_EQ(std::wstring(escaped.GetString()), ScriptFromKeys(keys).script);
}

}  // namespace
