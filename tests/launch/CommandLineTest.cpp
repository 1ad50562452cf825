// Command-line splitting against the real file system and search path: a temporary tree with blanks in its
// folder names stands in for an installed program.
#include "launch/CommandLine.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using Str = CStdStr<wchar_t>;

std::wstring Environment(const wchar_t* name) {
    wchar_t value[1024];
    DWORD n = GetEnvironmentVariableW(name, value, 1024);
    return n && n < 1024 ? std::wstring(value, n) : std::wstring();
}

// <temp>\Program Files\App\app.exe, and the test's own variable TAVTEST_LAUNCHDIR naming the temporary
// folder; both are removed after each test.
class CommandLineTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(dir_.path().empty());
        ASSERT_TRUE(CreateDirectoryW((dir_ / L"Program Files").c_str(), nullptr));
        ASSERT_TRUE(CreateDirectoryW((dir_ / L"Program Files\\App").c_str(), nullptr));
        app_ = dir_ / L"Program Files\\App\\app.exe";
        ASSERT_TRUE(tavtest::WriteFileBytes(app_, "MZ"));
        SetEnvironmentVariableW(L"TAVTEST_LAUNCHDIR", dir_.path().c_str());
    }
    void TearDown() override { SetEnvironmentVariableW(L"TAVTEST_LAUNCHDIR", nullptr); }

    tavtest::TempDir dir_{L"tavlaunch"};
    std::wstring app_;
};

TEST_F(CommandLineTest, EmptyLineIsRefusedAndLeavesTheOutputsAlone) {
    Str program = L"before", args = L"untouched";
    EXPECT_FALSE(ExtractProgram(L"", program, args));
    EXPECT_EQ(program, Str(L"before"));
    EXPECT_EQ(args, Str(L"untouched"));
}

TEST_F(CommandLineTest, QuotedProgramKeepsTheBlankBeforeItsArguments) {
    Str program, args;
    ASSERT_TRUE(ExtractProgram(L"\"" + app_ + L"\" -x", program, args));
    EXPECT_EQ(program, Str(app_));
    EXPECT_EQ(args, Str(L" -x"));
}

TEST_F(CommandLineTest, UnquotedProgramWithBlanksIsFoundByTryingPrefixesShortestFirst) {
    ASSERT_EQ(GetFileAttributesW((dir_ / L"Program").c_str()), INVALID_FILE_ATTRIBUTES);
    Str program, args;
    ASSERT_TRUE(ExtractProgram(app_ + L" -x", program, args));
    EXPECT_EQ(program, Str(app_));
    EXPECT_EQ(args, Str(L" -x"));
}

TEST_F(CommandLineTest, ShortestExistingPrefixWins) {
    // A file named "Program" beside "Program Files" is a program of its own: it is taken first.
    ASSERT_TRUE(tavtest::WriteFileBytes(dir_ / L"Program", "MZ"));
    Str program, args;
    ASSERT_TRUE(ExtractProgram(app_ + L" -x", program, args));
    EXPECT_EQ(program, Str(dir_ / L"Program"));
    EXPECT_EQ(args, Str(L" Files\\App\\app.exe -x"));
}

TEST_F(CommandLineTest, FolderNamedLikeAPrefixIsNoProgram) {
    ASSERT_TRUE(CreateDirectoryW((dir_ / L"Program").c_str(), nullptr));
    Str program, args;
    ASSERT_TRUE(ExtractProgram(app_ + L" -x", program, args));
    EXPECT_EQ(program, Str(app_));
    EXPECT_EQ(args, Str(L" -x"));
}

TEST_F(CommandLineTest, NoExistingPrefixGivesTheWholeLine) {
    Str program, args = L"old";
    std::wstring missing = dir_ / L"Program Files\\App\\missing.exe -x";
    ASSERT_TRUE(ExtractProgram(missing, program, args));
    EXPECT_EQ(program, Str(missing));
    EXPECT_EQ(args, Str(L""));
}

TEST_F(CommandLineTest, LineWithoutBlankIsTheProgramWhetherOrNotItExists) {
    struct Row {
        std::wstring line, program;
    } rows[] = {
        {dir_ / L"nothere.exe", dir_ / L"nothere.exe"},
        {L"\"" + (dir_ / L"nothere.exe") + L"\"", dir_ / L"nothere.exe"},
        {L"\"" + (dir_ / L"x.exe"), dir_ / L"x.exe"},
        {L"%TAVTEST_LAUNCHDIR%\\Program", dir_ / L"Program"},
        {L"notepad", L"notepad"},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        Str program, args = L"old";
        ASSERT_TRUE(ExtractProgram(rows[i].line, program, args)) << "row " << i;
        EXPECT_EQ(program, Str(rows[i].program)) << "row " << i;
        EXPECT_EQ(args, Str(L"")) << "row " << i;
    }
}

TEST_F(CommandLineTest, BlankAtTheStartSkipsTheSplitting) {
    Str program, args;
    ASSERT_TRUE(ExtractProgram(L" notepad.exe x", program, args));
    EXPECT_EQ(program, Str(L" notepad.exe x"));
    EXPECT_EQ(args, Str(L""));
}

TEST_F(CommandLineTest, NoExtensionIsAddedToARelativeName) {
    Str program, args;
    ASSERT_TRUE(ExtractProgram(L"notepad arg", program, args));
    EXPECT_EQ(program, Str(L"notepad arg"));
    EXPECT_EQ(args, Str(L""));
    // With its extension the system search path finds it.
    ASSERT_TRUE(ExtractProgram(L"notepad.exe arg", program, args));
    EXPECT_EQ(program, Str(L"notepad.exe"));
    EXPECT_EQ(args, Str(L" arg"));
}

TEST_F(CommandLineTest, EnvironmentVariablesAreExpandedBeforeSplitting) {
    std::wstring windir = Environment(L"WINDIR");
    ASSERT_FALSE(windir.empty());
    ASSERT_NE(GetFileAttributesW((windir + L"\\notepad.exe").c_str()), INVALID_FILE_ATTRIBUTES);
    Str program, args;
    ASSERT_TRUE(ExtractProgram(L"%WINDIR%\\notepad.exe a.txt", program, args));
    EXPECT_EQ(program, Str(windir + L"\\notepad.exe"));
    EXPECT_EQ(args, Str(L" a.txt"));

    ASSERT_TRUE(
        ExtractProgram(L"\"%TAVTEST_LAUNCHDIR%\\Program Files\\App\\app.exe\" -x %TAVTEST_LAUNCHDIR%", program, args));
    EXPECT_EQ(program, Str(app_));
    EXPECT_EQ(args, Str(L" -x " + dir_.path()));
}

TEST_F(CommandLineTest, ExpansionThatDoesNotFitKeepsTheTextAsTyped) {
    SetEnvironmentVariableW(L"TAVTEST_LONG", std::wstring(600, L'a').c_str());
    Str program, args;
    ASSERT_TRUE(ExtractProgram(L"%TAVTEST_LONG%", program, args));
    SetEnvironmentVariableW(L"TAVTEST_LONG", nullptr);
    EXPECT_EQ(program, Str(L"%TAVTEST_LONG%"));
}

TEST(StripTrailingArgument, CutsByTextualRulesOnly) {
    struct Row {
        const wchar_t* line;
        const wchar_t* expected;
    } rows[] = {
        {L"\"C:\\a b\\x.exe\" arg", L"C:\\a b\\x.exe"},
        {L"C:\\tools\\x.exe /s", L"C:\\tools\\x.exe"},
        {L"C:\\tools\\x.EXE /s", L"C:\\tools\\x.EXE"},
        {L"C:\\tools\\x.Exe /s", L"C:\\tools\\x.Exe /s"},
        {L"C:\\tools\\x.com /s", L"C:\\tools\\x.com /s"},
        {L"C:\\tools\\x.lnk /s", L"C:\\tools\\x.lnk /s"},
        {L"C:\\my tools\\x.exe /s /t", L"C:\\my tools\\x.exe"},
        {L"abc", L"abc"},
        {L"abcd e", L"abcd e"},
        {L"", L""},
        // The first character is dropped without looking at it when a quote follows later.
        {L"Xab\"cd", L"ab"},
        {L"\"\"", L""},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        Str line = rows[i].line;
        stripTrailingArgument(line);
        EXPECT_EQ(line, Str(rows[i].expected)) << "row " << i;
    }
}

TEST(StripTrailingArgument, BlankWithinTheFirstFourCharactersThrowsOutOfRange) {
    for (const wchar_t* text : {L"ab c.exe", L" x.exe", L"abc d"}) {
        Str line = text;
        EXPECT_THROW(stripTrailingArgument(line), std::out_of_range) << tavtest::Narrow(text);
    }
}

TEST_F(CommandLineTest, ValidFileIsFoundBySearchPath) {
    EXPECT_TRUE(isValidFile(app_, false));
    EXPECT_TRUE(isValidFile(L"notepad.exe", false));
    EXPECT_TRUE(isValidFile(L"%TAVTEST_LAUNCHDIR%\\Program Files\\App\\app.exe", false));
    EXPECT_FALSE(isValidFile(dir_ / L"Program Files\\App\\missing.exe", false));
    EXPECT_FALSE(isValidFile(L"", false));
    EXPECT_FALSE(isValidFile(L"\\\\", false));
}

TEST_F(CommandLineTest, ValidFileRemovesTrailingBackslashes) {
    std::wstring windir = Environment(L"WINDIR");
    EXPECT_TRUE(isValidFile(windir + L"\\", false));
    // A file named with trailing backslashes is found only because they are removed first.
    EXPECT_TRUE(isValidFile(app_ + L"\\\\", false));
}

TEST_F(CommandLineTest, ValidFileCutsArgumentsOnlyWhenAsked) {
    std::wstring quoted = L"\"" + app_ + L"\" -x";
    EXPECT_TRUE(isValidFile(quoted, true));
    EXPECT_FALSE(isValidFile(quoted, false));
    EXPECT_TRUE(isValidFile(app_ + L" /min", true));
    EXPECT_FALSE(isValidFile(app_ + L" /min", false));
    EXPECT_THROW(isValidFile(L"ab c.exe", true), std::out_of_range);
    EXPECT_FALSE(isValidFile(L"ab c.exe", false));
}

}  // namespace
