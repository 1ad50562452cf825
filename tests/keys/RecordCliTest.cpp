// The record verb of tavutil.exe: what is typed while it runs, printed as a script.
#include "KeyTestWindows.h"

#include <TavUtil.h>
#include <TestSupport.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

tavtest::ChildResult Tavutil(const std::wstring& arguments) {
    return tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" " + arguments);
}

TEST(KeysRecordCli, WrongUsage) {
    EXPECT_EQ(2u, Tavutil(L"record --until-key NOSUCHKEY").exitCode);
    EXPECT_EQ(2u, Tavutil(L"record --seconds x").exitCode);
    EXPECT_EQ(2u, Tavutil(L"record extra").exitCode);
    EXPECT_EQ(2u, Tavutil(L"record --seconds 0").exitCode);
}

// Nothing typed for a second: an empty script, and with --json one object that says so.
TEST(KeysRecordCli, NothingTypedGivesAnEmptyScript) {
    const tavtest::ChildResult plain = Tavutil(L"record --seconds 1");
    EXPECT_EQ(0u, plain.exitCode) << plain.output;
    EXPECT_EQ("\n", plain.output);
    const tavtest::ChildResult json = Tavutil(L"record --seconds 1 --json");
    EXPECT_EQ(0u, json.exitCode) << json.output;
    EXPECT_EQ("{\n  \"script\": \"\",\n  \"skipped\": 0\n}\n", json.output);
}

class KeysRecordCliTyping : public keytest::KeysTest {};

// The verb records until F12 goes down. Nothing tells this test when the child's hook is in place, so it
// types the same round ("Hi", Tab twice, F12) over and over until the child ends: the child reports the
// events before the first F12 it saw. A round typed while the hook was being set may come partly; a run
// whose child saw only part of a round is tried again.
TEST_F(KeysRecordCliTyping, PrintsWhatWasTypedUntilTheKey) {
    keytest::RecorderWindow target;  // in front, taking the keys without acting on them
    std::string output;
    for (int attempt = 0; attempt < 3 && output != "Hi{TAB 2}\n"; ++attempt) {
        std::atomic<bool> ended{false};
        tavtest::ChildResult run;
        std::thread child([&] {
            run = Tavutil(L"record --until-key F12 --seconds 60");
            ended = true;
        });
        ULONGLONG lastRound = 0;
        tavtest::WaitUntil(
            [&] {
                if (!ended && GetTickCount64() - lastRound >= 200) {
                    SendKeys(L"Hi{TAB 2}{F12}");
                    lastRound = GetTickCount64();
                }
                return ended.load();
            },
            30000);
        child.join();
        EXPECT_EQ(0u, run.exitCode) << run.output;
        output = run.output;
        target.Settle();
    }
    EXPECT_EQ("Hi{TAB 2}\n", output);
}

}  // namespace
