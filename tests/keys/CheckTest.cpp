// CheckKeyScript: a script checked without sending it. Its result is the run's, its error position agrees
// with the run's report, its message is the guide's sentence, and it leaves the key state alone.
#include "KeyTestWindows.h"
#include "ScriptGenerator.h"

#include <TavUtil.h>
#include <TestSupport.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using namespace keytest;
using tav::keys::CheckKeyScript;
using tav::keys::ScriptCheck;

struct Row {
    const wchar_t* script;
    SKERR result;
    int offset;
    const wchar_t* message;
};

// On the US English layout (the test machines' layout), as the guide's key lists are.
const Row kRows[] = {
    // The errors, each where its item stands.
    {L"abc{ENTR}", SKERR_INVALIDKEY, 3, L"unknown key name 'ENTR'"},
    {L"abc{ENTER", SKERR_MISSINGCLOSEBRACE, 3, L"a { at 3 has no closing }"},
    {L"{ENTER x}", SKERR_INVALIDCOUNT, 0, L"the count 'x' in {ENTER x} is not a number above 0"},
    {L"(ab", SKERR_MISSINGCLOSEPAREN, 0, L"the group ( at 0 is not closed"},
    {L"{a 6145}", SKERR_STRINGTOOLONG, 0, L"the script would need more than 6144 key entries"},
    {L"x{TAB -1}", SKERR_STRINGTOOLONG, 1,
     L"the count -1 in {TAB -1} is not a number above 0: it repeats the key until the script would need more "
     L"than 6144 key entries"},
    {L"+({ENTR})", SKERR_INVALIDKEY, 2, L"unknown key name 'ENTR'"},
    {L"((a", SKERR_MISSINGCLOSEPAREN, 0, L"the group ( at 0 is not closed"},
    {L"a(b(c", SKERR_MISSINGCLOSEPAREN, 1, L"the group ( at 1 is not closed"},
    {L"xy(", SKERR_MISSINGCLOSEPAREN, 2, L"the group ( at 2 is not closed"},
    {L"{", SKERR_MISSINGCLOSEBRACE, 0, L"a { at 0 has no closing }"},
    {L"ab{}", SKERR_MISSINGCLOSEBRACE, 2, L"a { at 2 has no closing } (a } is typed as {}})"},
    {L"{ENTER 2", SKERR_MISSINGCLOSEBRACE, 0, L"a { at 0 has no closing }"},
    {L"{TAB 0}", SKERR_INVALIDCOUNT, 0, L"the count '0' in {TAB 0} is not a number above 0"},
    {L"{TAB }", SKERR_INVALIDCOUNT, 0, L"the blank in {TAB } is not followed by a number above 0"},
    {L"{ ENTER}", SKERR_INVALIDKEY, 0, L"a { at 0 is not followed by a key name"},
    {L"{ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJ}", SKERR_INVALIDKEY, 0,
     L"unknown key name 'ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEF...'"},
    {L"{AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA\U0001F600}", SKERR_INVALIDKEY, 0,
     L"unknown key name 'AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA...'"},  // a pair is never cut in two
    {L"+{a 6143}", SKERR_STRINGTOOLONG, 0, L"the script would need more than 6144 key entries"},
    {L"{PostCommand}", SKERR_INVALIDKEY, 0,
     L"unknown key name 'PostCommand' (a command needs its number after a blank: {PostCommand 1f4})"},
    {L"{Menu}", SKERR_INVALIDKEY, 0,
     L"unknown key name 'Menu' (a menu command needs its positions after a blank: {Menu 0 1})"},
    // Spellings of other tools.
    {L"{INS}", SKERR_INVALIDKEY, 0, L"unknown key name 'INS' (the Insert key is {INSERT})"},
    {L"{SCROLLLOCK}", SKERR_INVALIDKEY, 0, L"unknown key name 'SCROLLLOCK' (the Scroll Lock key is {SCROLLOCK})"},
    {L"a{SPACE}b", SKERR_INVALIDKEY, 1, L"unknown key name 'SPACE' (a space is typed as a blank)"},
    {L"{Ctrl down}c{Ctrl up}", SKERR_INVALIDKEY, 0,
     L"unknown key name 'Ctrl' (Control is ^ before a key, as in ^c; a key is held down between [ and ], as in "
     L"[^a])"},
    {L"{a down}", SKERR_INVALIDCOUNT, 0,
     L"the count 'down' in {a down} is not a number above 0 (a key is held down between [ and ], as in [^a])"},
    {L"{RETURN}", SKERR_INVALIDKEY, 0, L"unknown key name 'RETURN' (Enter is {ENTER} or ~)"},
    {L"{ALT}f", SKERR_INVALIDKEY, 0, L"unknown key name 'ALT' (Alt is % before a key, as in %f)"},
    {L"{WIN}r", SKERR_INVALIDKEY, 0, L"unknown key name 'WIN' (the Windows key is * before a key, as in *e)"},
    {L"{PAUSE}", SKERR_INVALIDKEY, 0,
     L"unknown key name 'PAUSE' (there is no Pause key in the script language, and {BREAK} is the Control key)"},
    {L"!f", SKERR_NONE, -1, L"types 2 keys; ! is an ordinary character here: Alt is %, as in %f"},
    {L"#e", SKERR_NONE, -1, L"types 2 keys; # is an ordinary character here: the Windows key is *, as in *e"},
    {L"{BREAK}", SKERR_NONE, -1,
     L"types nothing; {BREAK} presses Control and leaves it down: it is the Control key, not Pause"},
    // Valid scripts and what they do.
    {L"Hello, World!{ENTER}", SKERR_NONE, -1, L"types 14 keys"},
    {L"[^a]", SKERR_NONE, -1, L"holds 2 keys until released"},
    {L"ab[c]d", SKERR_NONE, -1, L"types 3 keys and holds 1 key until released"},
    {L"[{RIGHT}", SKERR_NONE, -1, L"holds 1 key until released, and keeps holding in the scripts that follow"},
    {L"{BREAK}{BREAK}", SKERR_NONE, -1, L"types nothing"},
    {L"", SKERR_NONE, -1, L"types nothing"},
    {L"()", SKERR_NONE, -1, L"types nothing"},
    {L"{QUEUESYNC}", SKERR_NONE, -1, L"types nothing"},
    {L"%{F4}", SKERR_NONE, -1, L"types 1 key"},
    {L"+(hello)", SKERR_NONE, -1, L"types 5 keys"},
    {L"{TAB 3}", SKERR_NONE, -1, L"types 3 keys"},
    {L"{a 6144}", SKERR_NONE, -1, L"types 6144 keys"},
    {L"Hi!", SKERR_NONE, -1, L"types 3 keys"},
    {L"\u00e9", SKERR_NONE, -1,
     L"types 1 key; no key of this keyboard layout types \u00e9: it goes out as Shift, Control and Alt around a "
     L"key that types nothing"},
    {L"^c", SKERR_NONE, -1, L"presses Control+C"},
    {L"^V", SKERR_NONE, -1, L"presses Control+V"},
    // Window commands: recognised, described, never carried out by a check.
    {L"{PostCommand 1f4}", SKERR_NONE, -1, L"carries out 1 window command and types nothing else"},
    {L"Hello{PostCommand 1f4}", SKERR_NONE, -1, L"carries out 1 window command and types nothing else"},
    {L"{PostCommand 1f4}{ENTR}", SKERR_NONE, -1, L"carries out 1 window command and types nothing else"},
    {L"{SendMessage 400 1 0}{PostMessage 400 2 0}", SKERR_NONE, -1,
     L"carries out 2 window commands and types nothing else"},
    {L"{Menu 0 1}", SKERR_NONE, -1,
     L"carries out 1 window command and types nothing else; {Menu 0 1} chooses item 1 of menu 0 of the window in "
     L"front, counted from 0"},
};

bool IsShortcut(const std::wstring& script) {
    return script.size() == 2 && script[0] == L'^' && wcschr(L"cCvVxX", script[1]) != nullptr;
}

class KeysCheck : public KeysTest {};

TEST_F(KeysCheck, TableOfScripts) {
    RecorderWindow window;  // the run below needs a window in front; an error sends nothing to it
    ASSERT_GE(sizeof kRows / sizeof kRows[0], 40u);
    for (const Row& row : kRows) {
        const std::string where = tavtest::Narrow(row.script);
        const ScriptCheck check = CheckKeyScript(row.script);
        EXPECT_EQ(row.result, check.result) << where;
        EXPECT_EQ(row.offset, check.offset) << where;
        EXPECT_EQ(tavtest::Narrow(row.message), tavtest::Narrow(check.message)) << where;
        if (check.commandWords || IsShortcut(row.script))
            continue;
        // The check's answer is the parse's, and its error lies in the item the run reports.
        EXPECT_EQ(row.result, tav::keys::ParseKeyScript(row.script)) << where;
        if (row.result != SKERR_NONE) {
            const tav::keys::KeyRunReport report = tav::keys::CarryOutKeyScript(row.script);
            EXPECT_EQ(row.result, report.result) << where;
            EXPECT_EQ(static_cast<ptrdiff_t>(report.errorAt), check.itemStart) << where;
            EXPECT_LE(check.itemStart, check.offset) << where;
        } else {
            EXPECT_EQ(-1, check.itemStart) << where;
        }
    }
    EXPECT_TRUE(window.Settle());
    EXPECT_TRUE(window.keys.empty()) << Describe(window.keys);
}

// A check in the middle of a host's work changes nothing a later SendKeys depends on.
TEST_F(KeysCheck, LeavesQueueHoldModeHoldListAndMarkerAlone) {
    RecorderWindow window;
    ASSERT_EQ(SKERR_NONE, tav::keys::RunKeyScript(L"[{F13}"));
    ASSERT_EQ(SKERR_NONE, tav::keys::ParseKeyScript(L"+(xy)"));
    const tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
    std::vector<WORD> before;
    for (int i = 0; i < queue.Count(); ++i)
        before.push_back(queue.At(i));
    SendKeys_SetInProgress(42);
    for (const wchar_t* script :
         {L"]", L"abc{ENTR}", L"{a 6145}", L"[^a]", L"{Menu 0 0}", L"{PostCommand 1}", L"^c", L"(", L"{BREAK}"})
        CheckKeyScript(script);
    EXPECT_EQ(42u, SendKeys_InProgress());
    SendKeys_ClearInProgress();
    std::vector<WORD> after;
    for (int i = 0; i < queue.Count(); ++i)
        after.push_back(queue.At(i));
    EXPECT_EQ(before, after);
    EXPECT_TRUE(tav::keys::IsHoldModeOn());
    ASSERT_EQ(1, tav::keys::TheHoldList().Count());
    EXPECT_EQ(VK_F13, tav::keys::TheHoldList().At(0));
    EXPECT_TRUE(window.Settle());
    EXPECT_TRUE(window.messages.empty()) << window.messages.size() << " window messages";
    SendKeys_ReleaseAll();
    ASSERT_EQ(SKERR_NONE, tav::keys::RunKeyScript(L"]"));
    EXPECT_EQ(Describe({Down(VK_F13), Up(VK_F13)}), Describe(window.WaitForKeys(2)));
}

// A command word that a run would carry out twice (at the script's start and again at its brace) is
// counted as the run counts it.
TEST_F(KeysCheck, CommandWordsAreCountedAsTheRunCarriesThemOut) {
    RecorderWindow window;
    const ScriptCheck check = CheckKeyScript(L" {PostCommand 1f4}");
    EXPECT_EQ(tavtest::Narrow(L"carries out 2 window commands and types nothing else"), tavtest::Narrow(check.message));
    EXPECT_EQ(SKERR_NONE, tav::keys::RunKeyScript(L" {PostCommand 1f4}"));
    EXPECT_TRUE(tavtest::WaitUntil([&] { return window.messages.size() >= 2; }));
    EXPECT_TRUE(window.Settle());
    EXPECT_EQ((std::vector<WindowMessage>{{WM_COMMAND, 0x1F4, 0}, {WM_COMMAND, 0x1F4, 0}}), window.messages);
}

// One script against the parser and the run: the same result, the error inside the reported item.
void ExpectSameAsParser(const std::wstring& script) {
    const std::string where = tavtest::Narrow(script);
    const ScriptCheck check = CheckKeyScript(script.c_str());
    const SKERR parsed = tav::keys::ParseKeyScript(script.c_str());
    if (IsShortcut(script) || check.commandWords) {
        EXPECT_EQ(SKERR_NONE, check.result) << where;
        return;
    }
    ASSERT_EQ(parsed, check.result) << where;
    if (parsed == SKERR_NONE) {
        EXPECT_EQ(-1, check.offset) << where;
        return;
    }
    const tav::keys::KeyRunReport report = tav::keys::CarryOutKeyScript(script.c_str());
    ASSERT_EQ(parsed, report.result) << where;
    EXPECT_EQ(static_cast<ptrdiff_t>(report.errorAt), check.itemStart) << where;
    EXPECT_LE(check.itemStart, check.offset) << where;
    EXPECT_LE(check.offset, static_cast<ptrdiff_t>(script.size())) << where;
    EXPECT_FALSE(check.message.empty()) << where;
}

TEST_F(KeysCheck, GeneratedScriptsAgreeWithTheParser) {
    RecorderWindow window;
    ScriptGenerator generator(20261125);
    std::mt19937 random(7);
    const std::wstring damage = L"{}()+^%*[] x";
    int valid = 0;
    for (int i = 0; i < 300; ++i) {
        const GeneratedScript generated = generator.Next({i % 2 == 0, i % 3 == 0});
        const std::wstring& script = generated.script;
        ExpectSameAsParser(script);
        ++valid;
        // Without hold brackets and BREAK, every queued key but a modifier is typed once.
        if (i % 2 != 0 && i % 3 != 0 && !generated.shortcut) {
            int keys = 0;
            for (WORD code : generated.queue)
                keys += code == VK_SHIFT || code == VK_CONTROL || code == VK_MENU || code == VK_LWIN ? 0 : 1;
            const std::wstring expected = keys == 0   ? L"types nothing"
                                          : keys == 1 ? L"types 1 key"
                                                      : L"types " + std::to_wstring(keys) + L" keys";
            const std::wstring message = CheckKeyScript(script.c_str()).message;
            EXPECT_EQ(tavtest::Narrow(expected), tavtest::Narrow(message.substr(0, message.find(L';'))))
                << tavtest::Narrow(script);
        }
        // Broken variants: cut short, and one character of the language put in somewhere.
        ExpectSameAsParser(script.substr(0, script.size() / 2));
        std::wstring damaged = script;
        damaged.insert(random() % (script.size() + 1), 1, damage[random() % damage.size()]);
        ExpectSameAsParser(damaged);
    }
    EXPECT_EQ(300, valid);
    EXPECT_TRUE(window.Settle());
    EXPECT_TRUE(window.keys.empty()) << Describe(window.keys);
}

}  // namespace
