// --json: the verbs that print records write one JSON object on standard output, and nothing else.
#include "CliRun.h"

#include "KeyTestWindows.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace {

using clitest::Describe;
using clitest::Tavutil;
using nlohmann::json;

// Runs the verb and parses its standard output; a failed check when it is not exactly one JSON object.
json JsonOf(const std::vector<std::wstring>& args, DWORD status = 0) {
    auto result = Tavutil(args);
    const std::string what = Describe(args, result);
    EXPECT_EQ(result.status, status) << what;
    EXPECT_EQ(result.err, "") << what;
    json parsed = json::parse(result.out, nullptr, false);
    EXPECT_FALSE(parsed.is_discarded()) << what;
    EXPECT_TRUE(parsed.is_object()) << what;
    return parsed.is_object() ? parsed : json::object();
}

TEST(CliJson, Os) {
    json os = JsonOf({L"os", L"--json"});
    EXPECT_EQ(os.value("classification", 0), 11);
    EXPECT_EQ(os.value("classification name", ""), "Windows 7");
    EXPECT_EQ(os.value("build", 0), 7601);
    EXPECT_EQ(os["service pack"].value("major", -1), 1);
    EXPECT_EQ(os.value("IsUnderlying64Bit", false), true);
}

TEST(CliJson, PathAndSplit) {
    json path = JsonOf({L"path", L"--json", L"C:\\windows\\system32\\kernel32.dll"});
    EXPECT_EQ(path.value("drive", ""), "C:");
    EXPECT_EQ(path.value("file", ""), "kernel32");
    EXPECT_EQ(path.value("extension", ""), ".dll");
    EXPECT_EQ(path.value("exists", false), true);
    json split = JsonOf({L"split", L"--json", L"C:\\windows\\notepad.exe readme \u00e9.txt"});
    EXPECT_EQ(split.value("program", ""), "C:\\windows\\notepad.exe");
    EXPECT_EQ(split.value("arguments", ""), " readme \xc3\xa9.txt");
}

TEST(CliJson, Version) {
    json version = JsonOf({L"version", L"--json", L"C:\\windows\\system32\\kernel32.dll"});
    EXPECT_EQ(version.value("file version", ""), "10.0.18362.1350");
    EXPECT_EQ(version["fields"].value("Company Name", ""), "Microsoft Corporation") << version.dump();
}

TEST(CliJson, ForegroundAndModules) {
    keytest::EditWindow front;  // this test's own window is in front
    json foreground = JsonOf({L"foreground", L"--json"});
    EXPECT_EQ(foreground.value("name", "").rfind("cli_tests", 0), 0u) << foreground.dump();
    json full = JsonOf({L"foreground", L"--json", L"--full"});
    EXPECT_NE(full.value("path", "").find("\\cli_tests.exe"), std::string::npos) << full.dump();
    json modules = JsonOf({L"modules", L"--json", std::to_wstring(GetCurrentProcessId())});
    EXPECT_EQ(modules.value("process", 0u), GetCurrentProcessId());
    ASSERT_TRUE(modules["modules"].is_array());
    ASSERT_FALSE(modules["modules"].empty());
    EXPECT_NE(modules["modules"][0].get<std::string>().find("cli_tests.exe"), std::string::npos) << modules.dump();
}

TEST(CliJson, Messengers) {
    json messengers = JsonOf({L"messengers", L"--json"});
    EXPECT_TRUE(messengers["messengers"].is_array()) << messengers.dump();
    EXPECT_TRUE(messengers.contains("companion")) << messengers.dump();
}

TEST(CliJson, RegistryReadAndList) {
    const std::wstring key = L"HKCU\\Software\\TavUtil cli json";
    ASSERT_EQ(Tavutil({L"reg", L"write", key + L"\\Sub", L"Greeting", L"Gr\u00fc\u00dfe"}).status, 0u);
    json read = JsonOf({L"reg", L"read", L"--json", key + L"\\Sub", L"Greeting"});
    EXPECT_EQ(read.value("type", ""), "REG_SZ");
    EXPECT_EQ(read.value("data", ""), "Gr\xc3\xbc\xc3\x9f"
                                      "e");
    json list = JsonOf({L"reg", L"list", L"--json", key});
    EXPECT_EQ(list["subkeys"], json::array({"Sub"})) << list.dump();
    json dword =
        JsonOf({L"reg", L"read", L"--json", L"HKLM\\System\\CurrentControlSet\\Control\\Windows", L"CSDVersion"});
    EXPECT_EQ(dword.value("type", ""), "REG_DWORD") << dword.dump();
    EXPECT_TRUE(dword["bytes"].is_array()) << dword.dump();
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\TavUtil cli json");
}

// keys --check and keys --dry-run: the check's finding, and for a dry run the queue (empty when nothing
// will be typed); status 1 for a script that is not valid, as without --json.
TEST(CliJson, KeysCheckAndDryRun) {
    json valid = JsonOf({L"keys", L"--check", L"--json", L"+(hi) there~"});
    EXPECT_EQ(valid.value("valid", false), true) << valid.dump();
    EXPECT_EQ(valid.value("result", -1), 0);
    EXPECT_EQ(valid.value("offset", 0), -1);
    EXPECT_FALSE(valid.value("message", "").empty()) << valid.dump();

    json invalid = JsonOf({L"keys", L"--json", L"--check", L"abc{ENTR}"}, 1);
    EXPECT_EQ(invalid.value("valid", true), false) << invalid.dump();
    EXPECT_EQ(invalid.value("result", 0), 2);  // an unknown key name
    EXPECT_EQ(invalid.value("offset", -1), 3);
    EXPECT_NE(invalid.value("message", "").find("ENTR"), std::string::npos) << invalid.dump();
    EXPECT_EQ(invalid.value("script", ""), "abc{ENTR}");

    json queue = JsonOf({L"keys", L"--dry-run", L"--json", L"+(ab) {ENTER 2}"});
    EXPECT_EQ(queue.value("types", false), true) << queue.dump();
    EXPECT_EQ(queue["queue"], json::array({"Shift down", "A", "B", "Shift up", "SPACE", "ENTER", "ENTER"}))
        << queue.dump();

    json nothing = JsonOf({L"keys", L"--dry-run", L"--json", L"abc{ENTR}"}, 1);
    EXPECT_EQ(nothing.value("types", true), false) << nothing.dump();
    EXPECT_EQ(nothing["queue"], json::array()) << nothing.dump();
    EXPECT_EQ(nothing.value("offset", -1), 3);

    json commands = JsonOf({L"keys", L"--dry-run", L"--json", L"{PostCommand 1f4}"});
    EXPECT_EQ(commands.value("command words", false), true) << commands.dump();
    EXPECT_EQ(commands.value("types", true), false) << commands.dump();
}

TEST(CliJson, KeysJsonOnlyWithCheckOrDryRun) {
    for (const std::vector<std::wstring>& args :
         {std::vector<std::wstring>{L"keys", L"--json", L"abc"},
          std::vector<std::wstring>{L"keys", L"--check", L"--dry-run", L"abc"}}) {
        auto result = Tavutil(args);
        EXPECT_EQ(result.status, 2u) << Describe(args, result);
        EXPECT_EQ(result.out, "") << Describe(args, result);
    }
}

}  // namespace
