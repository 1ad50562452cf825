// Command words: window messages and menu commands for the foreground window, instead of keys.
#include "KeyTestWindows.h"

#include <TavUtil.h>

#include <gtest/gtest.h>

namespace {

using namespace keytest;

class KeysCommands : public KeysTest {};

std::vector<WindowMessage> Only(const std::vector<WindowMessage>& messages, UINT message) {
    std::vector<WindowMessage> picked;
    for (const WindowMessage& m : messages)
        if (m.message == message)
            picked.push_back(m);
    return picked;
}

TEST_F(KeysCommands, PostCommandPostsAndTypesNothing) {
    RecorderWindow recorder;
    EXPECT_EQ(SKERR_NONE, SendKeys(L"x{PostCommand 1f4}"));
    EXPECT_TRUE(recorder.messages.empty()) << "posted, so not there before the messages are pumped";
    tavtest::WaitUntil([&] { return !recorder.messages.empty(); });
    EXPECT_TRUE(recorder.Settle());
    EXPECT_EQ((std::vector<WindowMessage>{{WM_COMMAND, 0x1F4, 0}}), recorder.messages);
    EXPECT_TRUE(recorder.keys.empty()) << "no x: " << Describe(recorder.keys);
}

TEST_F(KeysCommands, SendCommandArrivesBeforeSendKeysReturns) {
    RecorderWindow recorder;
    EXPECT_EQ(SKERR_NONE, SendKeys(L"{SendCommand 8001}"));
    EXPECT_EQ((std::vector<WindowMessage>{{WM_COMMAND, 0x8001, 0}}), recorder.messages);
    EXPECT_TRUE(recorder.Settle());
    EXPECT_TRUE(recorder.keys.empty()) << Describe(recorder.keys);
}

TEST_F(KeysCommands, SendAndPostMessageCarryTheirValues) {
    RecorderWindow recorder;
    EXPECT_EQ(SKERR_NONE, SendKeys(L"{SendMessage 8001 5 6}"));
    EXPECT_EQ((std::vector<WindowMessage>{{0x8001, 5, 6}}), recorder.messages);
    recorder.Clear();
    EXPECT_EQ(SKERR_NONE, SendKeys(L"{PostMessage 8002 abc FFFF}"));
    EXPECT_TRUE(recorder.messages.empty());
    tavtest::WaitUntil([&] { return !recorder.messages.empty(); });
    EXPECT_EQ((std::vector<WindowMessage>{{0x8002, 0xABC, 0xFFFF}}), recorder.messages);
    recorder.Clear();
    EXPECT_EQ(SKERR_NONE, SendKeys(L"{sendmessage 8003}"));  // any case; missing values are 0
    EXPECT_EQ((std::vector<WindowMessage>{{0x8003, 0, 0}}), recorder.messages);
}

TEST_F(KeysCommands, WordsStandAnywhereAndTheOtherKeysAreNotTyped) {
    RecorderWindow recorder;
    // The number after a word keeps the value of the position before when none follows.
    EXPECT_EQ(SKERR_NONE, tav::keys::RunKeyScript(L"ab {ENTER} {PostCommand 2a} cd {POSTCOMMAND }"));
    tavtest::WaitUntil([&] { return recorder.messages.size() >= 2; });
    EXPECT_TRUE(recorder.Settle());
    EXPECT_EQ((std::vector<WindowMessage>{{WM_COMMAND, 0x2A, 0}, {WM_COMMAND, 0x2A, 0}}), recorder.messages);
    EXPECT_TRUE(recorder.keys.empty()) << Describe(recorder.keys);

    // Without a blank the brace is part of the word: no command, an unknown key name, nothing typed.
    recorder.Clear();
    EXPECT_EQ(SKERR_INVALIDKEY, tav::keys::RunKeyScript(L"a{PostCommand}"));
    EXPECT_TRUE(recorder.Settle());
    EXPECT_TRUE(recorder.messages.empty());
    EXPECT_TRUE(recorder.keys.empty()) << Describe(recorder.keys);
}

TEST_F(KeysCommands, MenuDeliversTheMessagesOfAClickInOrder) {
    RecorderWindow recorder(true);
    HMENU bar = recorder.menu();
    ASSERT_NE(nullptr, bar);
    HMENU editMenu = GetSubMenu(bar, 1);
    EXPECT_EQ(SKERR_NONE, tav::keys::RunKeyScript(L"{Menu 1 0}"));
    tavtest::WaitUntil([&] { return !Only(recorder.messages, WM_COMMAND).empty(); });
    EXPECT_TRUE(recorder.Settle());
    const std::vector<WindowMessage> expected = {
        {WM_INITMENU, reinterpret_cast<WPARAM>(bar), 0},
        {WM_MENUSELECT, 0x80900001, reinterpret_cast<LPARAM>(bar)},
        {WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(editMenu), 1},
        {WM_MENUSELECT, 0x808000C8, reinterpret_cast<LPARAM>(editMenu)},
        {WM_MENUSELECT, 0xFFFF0000, 0},
        {WM_COMMAND, 200, 0},
    };
    EXPECT_EQ(expected, recorder.messages);
    EXPECT_TRUE(recorder.keys.empty());

    recorder.Clear();
    EXPECT_EQ(SKERR_NONE, SendKeys(L"{menu 0 1}"));
    tavtest::WaitUntil([&] { return !Only(recorder.messages, WM_COMMAND).empty(); });
    EXPECT_EQ((std::vector<WindowMessage>{{WM_COMMAND, 101, 0}}), Only(recorder.messages, WM_COMMAND));
}

TEST_F(KeysCommands, MenuFailures) {
    {
        RecorderWindow noMenu(false);
        EXPECT_EQ(SKERR_MENUFAILED, tav::keys::RunKeyScript(L"{Menu 0 0}"));
        EXPECT_EQ(SKERR_NONE, SendKeys(L"{Menu 0 0}")) << "SendKeys passes no run result on";
        EXPECT_TRUE(noMenu.Settle());
        EXPECT_TRUE(noMenu.messages.empty());
    }
    RecorderWindow recorder(true);
    HMENU bar = recorder.menu();
    // No such pop-up: the menu was initialised and selected before the look-up failed.
    EXPECT_EQ(SKERR_MENUFAILED, tav::keys::RunKeyScript(L"{Menu 5 0}"));
    EXPECT_EQ((std::vector<WindowMessage>{{WM_INITMENU, reinterpret_cast<WPARAM>(bar), 0},
                                          {WM_MENUSELECT, 0x80900005, reinterpret_cast<LPARAM>(bar)}}),
              recorder.messages);
    // No such item: the pop-up was initialised too, and no command follows.
    recorder.Clear();
    EXPECT_EQ(SKERR_MENUFAILED, tav::keys::RunKeyScript(L"{Menu 0 7}"));
    EXPECT_TRUE(recorder.Settle());
    EXPECT_EQ(3u, recorder.messages.size());
    EXPECT_TRUE(Only(recorder.messages, WM_COMMAND).empty());
    // A failed menu ends the scan at once, also after an earlier command ran; nothing is typed.
    recorder.Clear();
    EXPECT_EQ(SKERR_MENUFAILED, tav::keys::RunKeyScript(L"ab{PostCommand 5}{Menu 9 9}{PostCommand 6}"));
    EXPECT_TRUE(recorder.Settle());
    EXPECT_EQ((std::vector<WindowMessage>{{WM_COMMAND, 5, 0}}), Only(recorder.messages, WM_COMMAND));
    EXPECT_TRUE(recorder.keys.empty()) << Describe(recorder.keys);
}

TEST_F(KeysCommands, LongWordsAreReadWithinBounds) {
    RecorderWindow recorder;
    std::wstring script = L"{" + std::wstring(100000, L'P') + L" 1 {PostCommand 3}";
    EXPECT_EQ(SKERR_NONE, tav::keys::RunKeyScript(script.c_str()));
    tavtest::WaitUntil([&] { return !recorder.messages.empty(); });
    EXPECT_EQ((std::vector<WindowMessage>{{WM_COMMAND, 3, 0}}), recorder.messages);
    // A word that begins like a command word is not one.
    recorder.Clear();
    EXPECT_EQ(SKERR_INVALIDKEY, tav::keys::RunKeyScript(L"{PostCommandX 3}"));
    EXPECT_TRUE(recorder.Settle());
    EXPECT_TRUE(recorder.messages.empty());
}

}  // namespace
