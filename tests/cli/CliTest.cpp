#include "TestSupport.h"

#include <gtest/gtest.h>

#include <string>

namespace {

tavtest::ChildResult Tavutil(const std::wstring& arguments) {
    return tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" " + arguments);
}

TEST(Cli, VersionPrintsTheProjectVersion) {
    auto result = Tavutil(L"--version");
    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_EQ(result.output.rfind("tavutil ", 0), 0u) << result.output;
}

TEST(Cli, HelpListsTheVerbs) {
    auto result = Tavutil(L"--help");
    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_NE(result.output.find("os "), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("cut WIDTH TEXT"), std::string::npos) << result.output;
}

TEST(Cli, RedirectedOutputIsUtf8) {
    auto result = Tavutil(L"cut 40 \"caf\u00e9 \u20ac \u4e2d\"");
    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_EQ(result.output, "caf\xc3\xa9 \xe2\x82\xac \xe4\xb8\xad\n");
}

TEST(Cli, CutPrintsOnePiecePerLine) {
    auto result = Tavutil(L"cut 7 \"aaa bbb ccc\"");
    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_EQ(result.output, "aaa bbb\nccc\n");
}

TEST(Cli, WrongUsageExitsWithTwoAndShowsUsage) {
    const wchar_t* wrong[] = {L"", L"no-such-verb", L"cut", L"cut x text", L"cut 5 a b", L"os extra"};
    for (const wchar_t* arguments : wrong) {
        auto result = Tavutil(arguments);
        EXPECT_EQ(result.exitCode, 2u) << tavtest::Narrow(arguments);
        EXPECT_EQ(result.output.rfind("tavutil: ", 0), 0u) << result.output;
        EXPECT_NE(result.output.find("usage: tavutil"), std::string::npos) << result.output;
    }
}

TEST(Cli, OsReportsTheClassification) {
    auto result = Tavutil(L"os");
    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_NE(result.output.find("classification:                     11 (Windows 7)"), std::string::npos)
        << result.output;
    EXPECT_NE(result.output.find("IsUnderlying64Bit:                  yes"), std::string::npos);
}

}  // namespace
