// tavutil admin: the library's progress lines for each query, then the answers.
#include <gtest/gtest.h>

#include "TestSupport.h"

#include <string>

namespace {

std::string WithoutCarriageReturns(std::string text) {
    std::string out;
    for (char ch : text)
        if (ch != '\r')
            out += ch;
    return out;
}

TEST(AdminCli, PrintsTheLibraryLinesAndBothAnswers) {
    tavtest::ChildResult result = tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" admin");
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(result.exitCode, 0u) << result.output;
    const std::string output = WithoutCarriageReturns(result.output);
    // The group count is checked against the token by the library tests; here it is taken from the output.
    const std::string firstLine = output.substr(0, output.find('\n') + 1);
    ASSERT_EQ(firstLine.compare(0, 10, "member of "), 0) << output;
    const std::string progress =
        firstLine + "is a member of Administrators group:\t1\nis a member of Power Users group:\t\t0\n";
    EXPECT_EQ(output, progress + "IsAdministrator: yes\n" + progress + "IsAdministratorOrPowerUser: yes\n");
    EXPECT_EQ(tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" admin extra").exitCode, 2u);
}

}  // namespace
