// CarryOutKeyScript: the one run behind SendKeys, the command line and the C interface, and the report of
// what it did, which SendKeys keeps to itself.
#include "KeyTestWindows.h"

#include <TavUtil.h>

#include <gtest/gtest.h>

namespace {

using namespace keytest;

class KeysRunReport : public KeysTest {};

TEST_F(KeysRunReport, PlayedScriptIsReportedAsPlayed) {
    RecorderWindow recorder;
    const tav::keys::KeyRunReport report = tav::keys::CarryOutKeyScript(L"ab");
    EXPECT_EQ(SKERR_NONE, report.result);
    EXPECT_TRUE(report.played);
    EXPECT_FALSE(report.shortcut);
    EXPECT_FALSE(report.commandWords);
    EXPECT_EQ(Describe({Down('A'), Up('A'), Down('B'), Up('B')}), Describe(recorder.WaitForKeys(4)));
}

TEST_F(KeysRunReport, ShortcutIsReportedAndPressedAsSendKeysPressesIt) {
    RecorderWindow recorder;
    const tav::keys::KeyRunReport report = tav::keys::CarryOutKeyScript(L"^v");
    EXPECT_EQ(SKERR_NONE, report.result);
    EXPECT_TRUE(report.shortcut);
    EXPECT_FALSE(report.played);
    EXPECT_EQ(Describe({Down(VK_CONTROL), Down('V'), Up('V'), Up(VK_CONTROL)}), Describe(recorder.WaitForKeys(4)));
}

TEST_F(KeysRunReport, CommandWordsAreReportedAndNoKeyIsTyped) {
    RecorderWindow recorder;
    const tav::keys::KeyRunReport report = tav::keys::CarryOutKeyScript(L"x{SendCommand 8001}");
    EXPECT_EQ(SKERR_NONE, report.result);
    EXPECT_TRUE(report.commandWords);
    EXPECT_FALSE(report.played);
    EXPECT_EQ((std::vector<WindowMessage>{{WM_COMMAND, 0x8001, 0}}), recorder.messages);
    EXPECT_TRUE(recorder.Settle());
    EXPECT_TRUE(recorder.keys.empty()) << Describe(recorder.keys);
}

TEST_F(KeysRunReport, FailedMenuIsReported) {
    RecorderWindow recorder;
    const tav::keys::KeyRunReport report = tav::keys::CarryOutKeyScript(L"{Menu 9 9}");
    EXPECT_EQ(SKERR_MENUFAILED, report.result);
    EXPECT_FALSE(report.played);
}

TEST_F(KeysRunReport, ParseErrorIsReportedWithWhereItWasFound) {
    RecorderWindow recorder;
    // The place is where the top-level item that holds the error begins: the brace of {ENTR}, the
    // group's parenthesis, the modifier before a group.
    tav::keys::KeyRunReport report = tav::keys::CarryOutKeyScript(L"abc{ENTR}de");
    EXPECT_EQ(SKERR_INVALIDKEY, report.result);
    EXPECT_EQ(3u, report.errorAt);
    EXPECT_FALSE(report.played);
    report = tav::keys::CarryOutKeyScript(L"x(y");
    EXPECT_EQ(SKERR_MISSINGCLOSEPAREN, report.result);
    EXPECT_EQ(1u, report.errorAt);
    report = tav::keys::CarryOutKeyScript(L"ab^+(c{XX})");
    EXPECT_EQ(SKERR_INVALIDKEY, report.result);
    EXPECT_EQ(2u, report.errorAt);
    EXPECT_TRUE(recorder.Settle());
    EXPECT_TRUE(recorder.keys.empty()) << "a script with an error types nothing: " << Describe(recorder.keys);
}

TEST_F(KeysRunReport, RunInProgressIsRefusedAndSendKeysSaysSoToo) {
    RecorderWindow recorder;
    SendKeys_SetInProgress(1);
    EXPECT_EQ(SKERR_BUSY, tav::keys::CarryOutKeyScript(L"a").result);
    EXPECT_EQ(SKERR_BUSY, SendKeys(L"a"));
    SendKeys_ClearInProgress();
    EXPECT_TRUE(recorder.Settle());
    EXPECT_TRUE(recorder.keys.empty()) << Describe(recorder.keys);
}

TEST_F(KeysRunReport, SendKeysAnswersNoneWhateverTheRunReports) {
    RecorderWindow recorder;
    EXPECT_EQ(SKERR_INVALIDKEY, tav::keys::CarryOutKeyScript(L"{ENTR}").result);
    EXPECT_EQ(SKERR_NONE, SendKeys(L"{ENTR}"));
    EXPECT_EQ(SKERR_MENUFAILED, tav::keys::CarryOutKeyScript(L"{Menu 9 9}").result);
    EXPECT_EQ(SKERR_NONE, SendKeys(L"{Menu 9 9}"));
    EXPECT_EQ(SKERR_NONE, SendKeysPaced(L"(", 1));
}

}  // namespace
