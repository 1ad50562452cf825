// The command line's frame: the verb list, exit codes, which stream a line goes to, and what wrong usage says.
#include "CliRun.h"

#include "TestSupport.h"

#include <TavUtil/TavUtil.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using clitest::Describe;
using clitest::Tavutil;

// The library's sentence for a Windows error, as the tool shows it (without the final full stop).
std::string Win32Text(int32_t code) {
    wchar_t text[512] = {};
    size_t needed = 0;
    tav_result_text(TAV_RESULT_WIN32, code, text, 512, &needed);
    std::string narrow = tavtest::Narrow(text);
    if (!narrow.empty() && narrow.back() == '.')
        narrow.pop_back();
    return narrow;
}

size_t Lines(const std::string& text) { return static_cast<size_t>(std::count(text.begin(), text.end(), '\n')); }

TEST(Cli, VersionPrintsTheProjectVersion) {
    auto result = Tavutil({L"--version"});
    EXPECT_EQ(result.status, 0u);
    EXPECT_EQ(result.out, std::string("tavutil ") + TAVUTIL_VERSION_STRING + "\n");
    EXPECT_EQ(result.err, "");
}

TEST(Cli, HelpListsTheVerbsAndTheExitCodesOnStandardOutput) {
    const std::vector<std::wstring> forms[] = {{L"--help"}, {L"-h"}, {L"help"}, {L"help", L"--help"}};
    for (const std::vector<std::wstring>& help : forms) {
        auto result = Tavutil(help);
        EXPECT_EQ(result.status, 0u) << Describe(help, result);
        EXPECT_EQ(result.err, "");
        EXPECT_NE(result.out.find("\n  os [--json]"), std::string::npos) << result.out;
        EXPECT_NE(result.out.find("\n  cut WIDTH TEXT"), std::string::npos) << result.out;
        EXPECT_NE(result.out.find("0 done or found, 1 not found or refused by the system, 2 wrong usage"),
                  std::string::npos)
            << result.out;
        EXPECT_NE(result.out.find("tavutil keys -- --dry-run"), std::string::npos) << result.out;
    }
}

TEST(Cli, RedirectedOutputIsUtf8) {
    auto result = Tavutil({L"cut", L"40", L"caf\u00e9 \u20ac \u4e2d"});
    EXPECT_EQ(result.status, 0u);
    EXPECT_EQ(result.out, "caf\xc3\xa9 \xe2\x82\xac \xe4\xb8\xad\n");
}

TEST(Cli, CutPrintsOnePiecePerLine) {
    auto result = Tavutil({L"cut", L"7", L"aaa bbb ccc"});
    EXPECT_EQ(result.status, 0u);
    EXPECT_EQ(result.out, "aaa bbb\nccc\n");
}

TEST(Cli, NoVerbIsOneHelpfulLineOnStandardError) {
    auto result = Tavutil({});
    EXPECT_EQ(result.status, 2u);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "tavutil: no verb given; 'tavutil --help' lists the verbs, 'tavutil help VERB' explains one\n");
}

TEST(Cli, AnUnknownVerbOrOptionIsOneLineWithTheClosestSpellingAndAPointerToHelp) {
    struct Row {
        std::vector<std::wstring> args;
        std::string line;
    };
    const Row rows[] = {
        {{L"kyes", L"abc"}, "tavutil: unknown verb 'kyes' (did you mean 'keys'?); see 'tavutil --help'\n"},
        {{L"modul", L"4"}, "tavutil: unknown verb 'modul' (did you mean 'modules'?); see 'tavutil --help'\n"},
        {{L"frobnicate"}, "tavutil: unknown verb 'frobnicate'; see 'tavutil --help'\n"},
        {{L"-v"}, "tavutil: unknown option '-v' (did you mean '--version'?); see 'tavutil --help'\n"},
        {{L"help", L"kesy"}, "tavutil: unknown verb 'kesy' (did you mean 'keys'?); see 'tavutil --help'\n"},
        {{L"keys", L"--dryrun", L"x"},
         "tavutil keys: unknown option '--dryrun' (did you mean '--dry-run'?); see 'tavutil keys --help'\n"},
        {{L"cut", L"--width", L"5", L"x"},
         "tavutil cut: unknown option '--width'; an argument that starts with '-' goes after '--'; see "
         "'tavutil cut --help'\n"},
        {{L"keys", L"-x"},
         "tavutil keys: unknown option '-x'; an argument that starts with '-' goes after '--'; see 'tavutil keys "
         "--help'\n"},
        {{L"os", L"--jsn"}, "tavutil os: unknown option '--jsn' (did you mean '--json'?); see 'tavutil os --help'\n"},
    };
    for (const Row& row : rows) {
        auto result = Tavutil(row.args);
        EXPECT_EQ(result.status, 2u) << Describe(row.args, result);
        EXPECT_EQ(result.out, "") << Describe(row.args, result);
        EXPECT_EQ(result.err, row.line) << Describe(row.args, result);
    }
}

TEST(Cli, WrongUsageIsStatusTwoWithTheReasonAndTheUsageOnStandardError) {
    struct Row {
        std::vector<std::wstring> args;
        std::string reason;  // the first line
    };
    const Row rows[] = {
        {{L"cut"}, "tavutil cut: missing argument"},
        {{L"cut", L"5", L"a", L"b"}, "tavutil cut: too many arguments"},
        {{L"os", L"extra"}, "tavutil os: too many arguments"},
        {{L"cut", L"x", L"text"}, "tavutil cut: WIDTH must be a whole number from 4 to 100000, not 'x'"},
        {{L"cut", L"0", L"hello"}, "tavutil cut: WIDTH must be a whole number from 4 to 100000, not '0'"},
        {{L"cut", L"-5", L"hello"}, "tavutil cut: WIDTH must be a whole number from 4 to 100000, not '-5'"},
        {{L"cut", L"3", L"hello"}, "tavutil cut: WIDTH must be a whole number from 4 to 100000, not '3'"},
        {{L"cut", L"100001", L"hello"}, "tavutil cut: WIDTH must be a whole number from 4 to 100000, not '100001'"},
        {{L"cut", L"99999999999999999999", L"x"},
         "tavutil cut: WIDTH must be a whole number from 4 to 100000, not '99999999999999999999'"},
        {{L"wait", L"-3"}, "tavutil wait: MS must be a whole number from 0 to 600000, not '-3'"},
        {{L"wait", L"1e3"}, "tavutil wait: MS must be a whole number from 0 to 600000, not '1e3'"},
        {{L"keys", L"--delay", L"-1", L"x"}, "tavutil keys: --delay must be a whole number from 0 to 600000, not '-1'"},
        {{L"keys", L"--per-key=abc", L"x"},
         "tavutil keys: --per-key must be a whole number from 0 to 10000, not 'abc'"},
        {{L"keys", L"x", L"--delay"}, "tavutil keys: --delay needs a value (MS)"},
        {{L"keys", L"--show=yes", L"x"}, "tavutil keys: --show takes no value"},
        {{L"modules", L"abc"}, "tavutil modules: PID must be a whole number from 0 to 2147483647, not 'abc'"},
        {{L"run", L"--show", L"12", L"notepad.exe"},
         "tavutil run: --show must be a whole number from 0 to 11, not '12'"},
        {{L"running", L"abc"}, "tavutil running: NAME needs at least four characters, not 'abc'"},
        {{L"running", L""}, "tavutil running: NAME needs at least four characters, not ''"},
        {{L"reg"}, "tavutil reg: missing sub-command (read, list or write)"},
        {{L"reg", L"raed", L"HKCU\\x"}, "tavutil reg: unknown sub-command 'raed' (did you mean 'read'?)"},
        {{L"reg", L"read", L"HKXX\\x"},
         "tavutil reg: KEY must start with HKLM\\, HKCU\\, HKCR\\ or HKU\\, not 'HKXX\\x'"},
        {{L"sound", L"--loop", L"--sync", L"x"}, "tavutil sound: --loop and --sync exclude each other"},
        {{L"clip", L"put", L"x"}, "tavutil clip: expected 'get' or 'set TEXT'"},
        {{L"split", L""}, "tavutil split: the command line is empty"},
    };
    for (const Row& row : rows) {
        auto result = Tavutil(row.args);
        const std::string what = Describe(row.args, result);
        EXPECT_EQ(result.status, 2u) << what;
        EXPECT_EQ(result.out, "") << what;
        EXPECT_EQ(result.err.substr(0, result.err.find('\n')), row.reason) << what;
        EXPECT_NE(result.err.find("\nusage: tavutil "), std::string::npos) << what;
        EXPECT_EQ(Lines(result.err), 2u) << what;
        EXPECT_EQ(result.err.find("substr"), std::string::npos) << what;  // no exception text
    }
}

TEST(Cli, NotFoundOrRefusedIsStatusOneWithTheSentenceOnStandardError) {
    tavtest::TempDir folder(L"tavclinf");
    const std::wstring missingFolder = folder / L"no such folder\\shot.png";
    struct Row {
        std::vector<std::wstring> args;
        std::string line;
    };
    const Row rows[] = {
        {{L"apppath", L"nosuch", L"exe"}, "tavutil apppath: no application path registered for nosuch.exe\n"},
        {{L"version", L"C:\\nope\\missing.dll"}, "tavutil version: file not found: C:\\nope\\missing.dll\n"},
        {{L"version", L"C:\\windows\\notepad.exe"},
         "tavutil version: C:\\windows\\notepad.exe has no version resource\n"},
        {{L"screenshot", missingFolder},
         "tavutil screenshot: cannot write " + tavtest::Narrow(missingFolder) + ": " + Win32Text(3) +
             " (Windows error 3)\n"},
        {{L"reg", L"read", L"HKCU\\Software\\TavUtil no such key"},
         "tavutil reg: cannot open key HKCU\\Software\\TavUtil no such key: " + Win32Text(2) + " (Windows error 2)\n"},
        {{L"running", L"tavutil-nosuch-program"}, "tavutil running: tavutil-nosuch-program is not running\n"},
        {{L"progid-server", L"TavUtil.NoSuchObject"},
         "tavutil progid-server: no local server for the current version of TavUtil.NoSuchObject\n"},
        {{L"messenger", L"No Such Messenger"},
         "tavutil messenger: no command line registered for \"No Such Messenger\"\n"},
        {{L"com", L"name", L"TavUtil.NoSuchObject"},
         "tavutil com: no automation object could be created for 'TavUtil.NoSuchObject'\n"},
        {{L"sound", L"TavUtilNoSuchEvent"},
         "tavutil sound: no sound played for TavUtilNoSuchEvent (looked for HKCU\\AppEvents\\Schemes\\Apps\\"},
    };
    for (const Row& row : rows) {  // `line` is the whole line, or its start when it does not end the line
        auto result = Tavutil(row.args);
        const std::string what = Describe(row.args, result);
        EXPECT_EQ(result.status, 1u) << what;
        EXPECT_EQ(result.out, "") << what;
        EXPECT_EQ(result.err.rfind(row.line, 0), 0u) << what;
        EXPECT_EQ(Lines(result.err), 1u) << what;
    }
}

TEST(Cli, DoubleDashEndsTheOptionsOfEveryVerb) {
    struct Row {
        std::vector<std::wstring> args;
        std::string out;
    };
    const Row rows[] = {
        {{L"escape", L"--", L"--help"}, "--help\n"},
        {{L"cut", L"10", L"--", L"-h"}, "-h\n"},
        {{L"cut", L"--", L"10", L"--json"}, "--json\n"},
        {{L"split", L"--", L"--json"}, "program:   --json\narguments: []\n"},
        {{L"split", L"--json", L"--", L"--"}, "{\n  \"program\": \"--\",\n  \"arguments\": \"\"\n}\n"},
        {{L"escape", L"--", L"-x"}, "-x\n"},
    };
    for (const Row& row : rows) {
        auto result = Tavutil(row.args);
        const std::string what = Describe(row.args, result);
        EXPECT_EQ(result.status, 0u) << what;
        EXPECT_EQ(result.out, row.out) << what;
        EXPECT_EQ(result.err, "") << what;
    }
}

TEST(Cli, NegativeNumbersAreOperandsNotOptions) {
    auto result = Tavutil({L"cut", L"-5", L"hello"});
    EXPECT_EQ(result.status, 2u);
    EXPECT_EQ(result.err.find("unknown option"), std::string::npos) << result.err;
}

TEST(Cli, ReleaseAllSaysItReleasesTheKeysOfThisProcessOnly) {
    auto result = Tavutil({L"release-all"});
    EXPECT_EQ(result.status, 0u);
    EXPECT_EQ(result.out, "released the keys held by this process: none (keys held by another program's scripts are "
                          "released only by that program)\n");
    auto help = Tavutil({L"release-all", L"--help"});
    EXPECT_NE(help.out.find("release the keys held by this process"), std::string::npos) << help.out;
}

TEST(Cli, VersionComparisonIsInWordsNotEnumNames) {
    auto result = Tavutil({L"vercmp", L"6.20.1234.7", L"6.20.1199.9"});
    EXPECT_EQ(result.status, 0u);
    EXPECT_NE(result.out.find("A against B:               newer, by its fix number\n"), std::string::npos)
        << result.out;
    EXPECT_EQ(result.out.find("VERNUM"), std::string::npos) << result.out;
}

TEST(Cli, DryRunCountsItsEntriesInGoodEnglish) {
    auto one = Tavutil({L"keys", L"--dry-run", L"a"});
    EXPECT_EQ(one.out.rfind("key queue (1 entry): ", 0), 0u) << one.out;
    auto two = Tavutil({L"keys", L"--dry-run", L"ab"});
    EXPECT_EQ(two.out.rfind("key queue (2 entries): ", 0), 0u) << two.out;
}

TEST(Cli, OsReportsTheClassification) {
    auto result = Tavutil({L"os"});
    EXPECT_EQ(result.status, 0u);
    EXPECT_NE(result.out.find("classification:                     11 (Windows 7)"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("IsUnderlying64Bit:                  yes"), std::string::npos);
}

}  // namespace
