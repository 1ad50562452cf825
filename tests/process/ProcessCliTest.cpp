// The process verbs of tavutil.exe, driven through its command line against Wine's notepad.
#include "ProcessTestSupport.h"

#include <TestSupport.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

tavtest::ChildResult Tavutil(const std::wstring& arguments) {
    return tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" " + arguments);
}

std::string FirstLine(const std::string& text) { return text.substr(0, text.find_first_of("\r\n")); }

class ProcessCli : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(notepad_.started());
        window_ = notepad_.WaitForWindow(L"Notepad");
        ASSERT_NE(nullptr, window_);
        ASSERT_TRUE(tavtest::BringToFront(window_));
    }
    proctest::StartedProgram notepad_{L"", L"notepad.exe"};
    HWND window_ = nullptr;
};

TEST_F(ProcessCli, ForegroundNamesTheProcessInFront) {
    const std::string truth = tavtest::Narrow(proctest::ImagePath(notepad_.pid()));
    auto name = Tavutil(L"foreground");
    EXPECT_EQ(0u, name.exitCode);
    EXPECT_EQ("notepad.exe", FirstLine(name.output));
    auto full = Tavutil(L"foreground --full --after 50");
    EXPECT_EQ(0u, full.exitCode);
    EXPECT_EQ(truth, FirstLine(full.output));
    auto stripped = Tavutil(L"foreground --strip --full");
    EXPECT_EQ(truth.substr(0, truth.size() - 4), FirstLine(stripped.output));
    EXPECT_EQ("notepad", FirstLine(Tavutil(L"foreground --strip").output));
}

TEST_F(ProcessCli, RunningAnswersThroughItsExitStatus) {
    auto yes = Tavutil(L"running NOTEPAD.EXE --console");
    EXPECT_EQ(0u, yes.exitCode);
    EXPECT_EQ("NOTEPAD.EXE is running in the console session", FirstLine(yes.output));
    auto no = Tavutil(L"running notepad.EXE.exe");
    EXPECT_EQ(1u, no.exitCode);
    EXPECT_EQ("tavutil running: notepad.EXE.exe is not running", FirstLine(no.output));
    auto tooShort = Tavutil(L"running ab");
    EXPECT_EQ(2u, tooShort.exitCode);
    EXPECT_NE(std::string::npos, tooShort.output.find("at least four characters")) << tooShort.output;
}

TEST_F(ProcessCli, ModulesListsTheProcessModules) {
    auto result = Tavutil(L"modules " + std::to_wstring(notepad_.pid()));
    EXPECT_EQ(0u, result.exitCode) << result.output;
    std::string expected;
    for (const std::wstring& module : proctest::ModuleNamesOf(notepad_.pid()))
        expected += tavtest::Narrow(module) + "\n";
    std::string output = result.output;
    output.erase(std::remove(output.begin(), output.end(), '\r'), output.end());
    EXPECT_EQ(expected, output);
    EXPECT_EQ("notepad.exe", FirstLine(result.output));
}

TEST(ProcessCliUsage, WrongUsageEndsWithStatusTwo) {
    const wchar_t* wrong[] = {L"foreground extra",
                              L"foreground --after",
                              L"foreground --after soon",
                              L"foreground --after -5",
                              L"running",
                              L"running a b",
                              L"modules",
                              L"modules x"};
    for (const wchar_t* arguments : wrong) {
        SCOPED_TRACE(tavtest::Narrow(arguments));
        auto result = Tavutil(arguments);
        EXPECT_EQ(2u, result.exitCode) << result.output;
        EXPECT_NE(std::string::npos, result.output.find("usage: tavutil")) << result.output;
    }
    auto unknown = Tavutil(L"modules 3");
    EXPECT_EQ(1u, unknown.exitCode);
    EXPECT_NE(std::string::npos, unknown.output.find("no module list for process 3")) << unknown.output;
}

}  // namespace
