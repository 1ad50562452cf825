// tavutil's launch verbs through its command line: split, run, messengers, messenger, apppath,
// progid-server, installdate.
#include "LaunchProbe.h"
#include "RegistryFixture.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

namespace {

tavtest::ChildResult Tav(const std::wstring& arguments) {
    return tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" " + arguments);
}

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(LaunchCli, SplitShowsProgramAndArgumentsWithTheirBlank) {
    std::string probe = tavtest::Narrow(launchtest::ProbePath());
    tavtest::ChildResult split = Tav(L"split \"\\\"" + launchtest::ProbePath() + L"\\\" -x\"");
    EXPECT_EQ(split.exitCode, 0u) << split.output;
    EXPECT_EQ(split.output, "program:   " + probe + "\narguments: [ -x]\n");
}

TEST(LaunchCli, RunStartsTheProgramAndNamesItsProcess) {
    launchtest::ProbeReport report;
    tavtest::ChildResult run = Tav(L"run --show 4 \"" + launchtest::ProbePath() + L" --from-cli\"");
    EXPECT_EQ(run.exitCode, 0u) << run.output;
    ASSERT_TRUE(report.Wait());
    EXPECT_TRUE(Contains(run.output, "started:   yes")) << run.output;
    EXPECT_TRUE(Contains(run.output, "process:   " + std::to_string(report.Pid()))) << run.output;
    EXPECT_EQ(report.Field("show"), L"4");
}

TEST(LaunchCli, RunWithWaitUsesTheWaitingLauncher) {
    launchtest::ProbeReport report;
    tavtest::ChildResult run = Tav(L"run --wait \"" + launchtest::ProbePath() + L" --waited\"");
    EXPECT_EQ(run.exitCode, 0u) << run.output;
    ASSERT_TRUE(report.Wait());
    EXPECT_EQ(report.Field("cmdline"), launchtest::ProbePath() + L"  --waited");
    EXPECT_FALSE(Contains(run.output, "process:")) << run.output;
}

TEST(LaunchCli, WrongUsageEndsWithStatusTwo) {
    EXPECT_EQ(Tav(L"run").exitCode, 2u);
    EXPECT_EQ(Tav(L"run --show").exitCode, 2u);
    EXPECT_EQ(Tav(L"split \"\"").exitCode, 2u);
    EXPECT_EQ(Tav(L"apppath onlyone").exitCode, 2u);
}

TEST(LaunchCli, MessengersAndMessenger) {
    tavtest::ChildResult none = Tav(L"messengers");
    EXPECT_EQ(none.exitCode, 0u);
    EXPECT_EQ(none.output, "(no messenger installed)\n");

    launchtest::ProbeReport report;
    std::wstring program = report.dir() / L"msnmsgr.exe";
    ASSERT_TRUE(launchtest::CopyProbeTo(program));
    tavtest::RegistryFixture msn(HKEY_LOCAL_MACHINE,
                                 L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msnmsgr.exe");
    ASSERT_TRUE(msn.ok());
    ASSERT_TRUE(msn.Set(L"", program));
    EXPECT_EQ(Tav(L"messengers").output, "MSN Messenger\n");
    EXPECT_EQ(Tav(L"messenger Skype").exitCode, 1u);
    tavtest::ChildResult launched = Tav(L"messenger \"MSN Messenger\"");
    EXPECT_EQ(launched.exitCode, 0u) << launched.output;
    EXPECT_TRUE(report.Wait());
}

TEST(LaunchCli, InstalledSoftwareLookUps) {
    tavtest::ChildResult date = Tav(L"installdate");
    EXPECT_EQ(date.exitCode, 1u);
    EXPECT_EQ(date.output, "tavutil installdate: no install date recorded\n");
    EXPECT_EQ(Tav(L"progid-server WScript.Shell").exitCode, 1u);

    tavtest::RegistryFixture app(HKEY_LOCAL_MACHINE,
                                 L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\tavcliapp.exe");
    ASSERT_TRUE(app.ok());
    ASSERT_TRUE(app.Set(L"", L"C:\\Tav Cli\\tavcliapp.exe"));
    tavtest::ChildResult path = Tav(L"apppath tavcliapp exe");
    EXPECT_EQ(path.exitCode, 0u);
    EXPECT_EQ(path.output, "C:\\Tav Cli\\tavcliapp.exe\n");
}

}  // namespace
