// Real key events: typed text in an Edit control, and the exact key messages a window receives.
#include "KeyTestWindows.h"

#include <TavUtil.h>
#include <TestSupport.h>

#include <gtest/gtest.h>

namespace {

using namespace keytest;

class KeysTyping : public KeysTest {};

TEST_F(KeysTyping, EditReceivesWhatTheScriptMeans) {
    struct Row {
        const wchar_t* script;
        std::wstring typed;
    };
    const Row rows[] = {
        {L"abc", L"abc"},
        {L"Hello, World! 42.", L"Hello, World! 42."},
        {L"+abc", L"Abc"},
        {L"+(ab)c", L"ABc"},
        {L"{a 3}{B 2}", L"aaaBB"},
        {L"{{}{}}{+}{^}{%}{~}{(}{)}{[}{]}{*}", L"{}+^%~()[]*"},
        {L"x~y", L"x\r\ny"},
        {L"{ENTER 2}z", L"\r\n\r\nz"},
        {L"abc{BS}d", L"abd"},
        {L"abc{LEFT 2}X", L"aXbc"},
        {L"ab{HOME}{DEL}", L"b"},
        {L"{QUEUESYNC}ok{QUEUESYNC 3}", L"ok"},
        {L"a(b(c))+(d(e))", L"abcDE"},
        {L"a)b}", L"a)b}"},
        // an error anywhere types nothing at all
        {L"abc{ENTR}", L""},
        {L"abc(de", L""},
        {L"abc{TAB 0}", L""},
        {L"abc{ENTER", L""},
        {L"", L""},
    };
    EditWindow edit;
    for (const Row& row : rows) {
        edit.Clear();
        EXPECT_EQ(SKERR_NONE, SendKeys(row.script));
        EXPECT_EQ(row.typed, edit.WaitForText(row.typed)) << "script " << tavtest::Narrow(row.script);
        EXPECT_TRUE(NoKeyPressed()) << "after script " << tavtest::Narrow(row.script);
    }
}

TEST_F(KeysTyping, EscapedTextTypesLiterally) {
    const wchar_t* text = L"50% (a+b) {x} [y] ~z ^caret *star";
    CString escaped(text);
    SendKeysRemoveSpecialChars(escaped);
    EditWindow edit;
    EXPECT_EQ(SKERR_NONE, SendKeys(escaped));
    EXPECT_EQ(std::wstring(text), edit.WaitForText(text));
}

TEST_F(KeysTyping, ScriptFillingTheQueueArrivesWhole) {
    std::wstring script(6144, L'q');
    EditWindow edit;
    EXPECT_EQ(SKERR_NONE, SendKeys(script.c_str()));
    EXPECT_EQ(script, edit.WaitForText(script, 20000));
    edit.Clear();
    EXPECT_EQ(SKERR_NONE, SendKeys((script + L"q").c_str()));  // one entry too many: nothing
    EXPECT_EQ(L"", edit.WaitForText(L"", 300));
}

struct EventRow {
    const wchar_t* script;
    std::vector<KeyEvent> events;
};

void ExpectEvents(const std::vector<EventRow>& rows) {
    RecorderWindow recorder;
    for (const EventRow& row : rows) {
        recorder.Clear();
        EXPECT_EQ(SKERR_NONE, SendKeys(row.script));
        const std::vector<KeyEvent>& seen = recorder.WaitForKeys(row.events.size());
        EXPECT_EQ(Describe(row.events), Describe(seen)) << "script " << tavtest::Narrow(row.script);
        EXPECT_TRUE(NoKeyPressed()) << "after script " << tavtest::Narrow(row.script);
    }
}

bool Extended(UINT vk) { return (MapVirtualKeyW(vk, 0) & 0x80) != 0; }

TEST_F(KeysTyping, EventOrderOfModifiersGroupsAndRepeats) {
    ExpectEvents({
        {L"a", {Down('A'), Up('A')}},
        {L"A", {Down(VK_SHIFT), Down('A'), Up('A'), Up(VK_SHIFT)}},
        {L"+(ab)c", {Down(VK_SHIFT), Down('A'), Up('A'), Down('B'), Up('B'), Up(VK_SHIFT), Down('C'), Up('C')}},
        {L"+ab", {Down(VK_SHIFT), Down('A'), Up('A'), Up(VK_SHIFT), Down('B'), Up('B')}},
        {L"^a", {Down(VK_CONTROL), Down('A'), Up('A'), Up(VK_CONTROL)}},
        {L"^+a", {Down(VK_CONTROL), Down(VK_SHIFT), Down('A'), Up('A'), Up(VK_SHIFT), Up(VK_CONTROL)}},
        {L"*b", {Down(VK_LWIN), Down('B'), Up('B'), Up(VK_LWIN)}},
        {L"{a 3}", {Down('A'), Up('A'), Down('A'), Up('A'), Down('A'), Up('A')}},
        {L"{A 2}", {Down(VK_SHIFT), Down('A'), Up('A'), Down('A'), Up('A'), Up(VK_SHIFT)}},
        {L"~{TAB}", {Down(VK_RETURN), Up(VK_RETURN), Down(VK_TAB), Up(VK_TAB)}},
        {L"{RIGHT}{F5}",
         {Down(VK_RIGHT, Extended(VK_RIGHT)), Up(VK_RIGHT, Extended(VK_RIGHT)), Down(VK_F5), Up(VK_F5)}},
        {L"+", {Down(VK_SHIFT), Up(VK_SHIFT)}},                   // a modifier at the end wraps nothing
        {L"{BREAK}{BREAK}", {Down(VK_CONTROL), Up(VK_CONTROL)}},  // BREAK is Control: twice is down, up
        // The toggles make a shifted character inside + come out unshifted (Shift, Shift, }, Shift, Shift).
        {L"+{}}", {Down(VK_SHIFT), Up(VK_SHIFT), Down(VK_OEM_6), Up(VK_OEM_6), Down(VK_SHIFT), Up(VK_SHIFT)}},
    });
}

TEST_F(KeysTyping, AltGoesAsSystemKeys) {
    RecorderWindow recorder;
    EXPECT_EQ(SKERR_NONE, SendKeys(L"%a"));
    const std::vector<KeyEvent>& seen = recorder.WaitForKeys(4);
    ASSERT_EQ(4u, seen.size()) << Describe(seen);
    EXPECT_EQ(SysDown(VK_MENU), seen[0]);
    EXPECT_EQ(SysDown('A'), seen[1]);
    EXPECT_EQ(SysUp('A'), seen[2]);
    EXPECT_EQ(VK_MENU, seen[3].vk);  // released; the message kind of a lone Alt release is the system's
}

// The clipboard shortcuts go through the press helper: the key queue is left as it was.
TEST_F(KeysTyping, ClipboardShortcutsUseThePressHelper) {
    RecorderWindow recorder;
    const struct {
        const wchar_t* script;
        UINT letter;
    } rows[] = {{L"^C", 'C'}, {L"^c", 'C'}, {L"^V", 'V'}, {L"^v", 'V'}, {L"^X", 'X'}, {L"^x", 'X'}};
    for (const auto& row : rows) {
        ASSERT_EQ(SKERR_NONE, tav::keys::ParseKeyScript(L"zz"));
        recorder.Clear();
        EXPECT_EQ(SKERR_NONE, SendKeys(row.script));
        EXPECT_EQ(Describe({Down(VK_CONTROL), Down(row.letter), Up(row.letter), Up(VK_CONTROL)}),
                  Describe(recorder.WaitForKeys(4)))
            << tavtest::Narrow(row.script);
        EXPECT_EQ(2, tav::keys::TheKeyQueue().Count()) << "the shortcut went through the parser";
        EXPECT_TRUE(NoKeyPressed()) << "after script " << tavtest::Narrow(row.script);
    }
    // With anything after it, the script is an ordinary one.
    recorder.Clear();
    EXPECT_EQ(SKERR_NONE, SendKeys(L"^cx"));
    EXPECT_EQ(Describe({Down(VK_CONTROL), Down('C'), Up('C'), Up(VK_CONTROL), Down('X'), Up('X')}),
              Describe(recorder.WaitForKeys(6)));
    EXPECT_EQ(4, tav::keys::TheKeyQueue().Count());
}

TEST_F(KeysTyping, PressHelperPressesSingleKeys) {
    RecorderWindow recorder;
    PressKeyHelper helper;
    EXPECT_TRUE(helper.UsesSendInput());
    helper.Press(VK_F7, 0);
    helper.Press(VK_F7, KEYEVENTF_KEYUP);
    EXPECT_EQ(Describe({Down(VK_F7), Up(VK_F7)}), Describe(recorder.WaitForKeys(2)));
}

// Windows 95 has no SendInput: the helper falls back to keybd_event.
TEST(KeysChild, DISABLED_PressHelperWithoutSendInput) {
    PressKeyHelper helper;
    EXPECT_FALSE(helper.UsesSendInput());
}
TEST(KeysChild, DISABLED_PressHelperWithSendInput) {
    PressKeyHelper helper;
    EXPECT_TRUE(helper.UsesSendInput());
}

TEST(KeysPressHelper, ChoosesSendInputByPlatform) {
    struct Row {
        const wchar_t* version;
        const char* test;
    };
    const Row rows[] = {
        {L"win95", "KeysChild.DISABLED_PressHelperWithoutSendInput"},
        {L"win98", "KeysChild.DISABLED_PressHelperWithSendInput"},
        {L"nt40", "KeysChild.DISABLED_PressHelperWithSendInput"},
        {L"win7", "KeysChild.DISABLED_PressHelperWithSendInput"},
    };
    for (const Row& row : rows) {
        tavtest::ChildResult child = tavtest::RunSelfAs({row.version, {}, L""}, row.test);
        EXPECT_TRUE(tavtest::ChildPassed(child)) << tavtest::Narrow(row.version);
    }
}

TEST_F(KeysTyping, BusyMarkerRefusesAndTypesNothing) {
    EditWindow edit;
    SendKeys_SetInProgress(0x1234);
    EXPECT_EQ(0x1234u, SendKeys_InProgress());
    EXPECT_EQ(SKERR_BUSY, SendKeys(L"abc"));
    EXPECT_EQ(SKERR_BUSY, SendKeys(L"^v"));
    EXPECT_EQ(L"", edit.WaitForText(L"", 300));
    EXPECT_EQ(0x1234u, SendKeys_InProgress()) << "a refused call leaves the marker as it is";
    // A run that goes ahead clears the marker; one that fails to parse does not get that far.
    EXPECT_EQ(SKERR_INVALIDKEY, tav::keys::RunKeyScript(L"{ENTR}"));
    EXPECT_EQ(0x1234u, SendKeys_InProgress());
    EXPECT_EQ(SKERR_NONE, tav::keys::RunKeyScript(L"ok"));
    EXPECT_EQ(0u, SendKeys_InProgress());
    EXPECT_EQ(L"ok", edit.WaitForText(L"ok"));
    SendKeys_SetInProgress(1);
    SendKeys_ClearInProgress();
    EXPECT_EQ(0u, SendKeys_InProgress());
}

}  // namespace
