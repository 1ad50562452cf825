// Every verb explains itself with --help, -h and `tavutil help VERB`, and does nothing else: nothing typed,
// started, written or shown, even when the rest of the command line asks for exactly that.
#include "CliRun.h"

#include "Desktop.h"
#include "KeyTestWindows.h"
#include "TestSupport.h"

#include <TavUtil/TavUtil.h>

#include <gtest/gtest.h>

#include <tlhelp32.h>

#include <map>
#include <string>
#include <vector>

namespace {

using clitest::Describe;
using clitest::Tavutil;

const wchar_t* const kProbeKey = L"Software\\TavUtil help probe";

// The verbs as `tavutil --help` lists them: the first word of each line of the verb list.
std::vector<std::wstring> ListedVerbs() {
    const std::string list = Tavutil({L"--help"}).out;
    std::vector<std::wstring> verbs;
    size_t at = list.find("verbs:\n");
    if (at == std::string::npos)
        return verbs;
    for (at += 7; at < list.size() && list[at] != '\n';) {
        const size_t end = list.find('\n', at);
        const std::string line = list.substr(at, end - at);
        if (line.size() > 2 && line[2] != ' ')
            verbs.push_back(tavtest::Widen(line.substr(2, line.find(' ', 2) - 2)));
        at = end + 1;
    }
    return verbs;
}

bool ProgramRuns(const wchar_t* exeName) {
    tav::UniqueSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = snapshot && Process32FirstW(snapshot.get(), &entry); more;
         more = Process32NextW(snapshot.get(), &entry))
        if (_wcsicmp(entry.szExeFile, exeName) == 0)
            return true;
    return false;
}

bool ProbeKeyExists() {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kProbeKey, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

void ExpectVerbHelp(const std::wstring& verb, const std::vector<std::wstring>& args) {
    auto result = Tavutil(args, 30000);  // a verb that did its work would wait, type or show a dialog
    const std::string what = Describe(args, result);
    const std::string name = tavtest::Narrow(verb);
    EXPECT_TRUE(result.finished) << what;
    EXPECT_EQ(result.status, 0u) << what;
    EXPECT_EQ(result.err, "") << what;
    EXPECT_EQ(result.out.rfind("usage: tavutil " + name, 0), 0u) << what;
    EXPECT_NE(result.out.find("\nexamples:\n  tavutil " + name), std::string::npos) << what;
    EXPECT_NE(result.out.find("\nexit status:\n  0  done or found\n  1  "), std::string::npos) << what;
    EXPECT_NE(result.out.find("\n  2  wrong usage\n"), std::string::npos) << what;
}

TEST(CliHelp, EveryVerbListedExplainsItselfThreeWays) {
    const std::vector<std::wstring> verbs = ListedVerbs();
    ASSERT_GE(verbs.size(), 29u);
    for (const std::wstring& verb : verbs) {
        ExpectVerbHelp(verb, {verb, L"--help"});
        ExpectVerbHelp(verb, {verb, L"-h"});
        ExpectVerbHelp(verb, {L"help", verb});
    }
}

TEST(CliHelp, HelpDoesNothingElseWhateverTheRestOfTheLineAsks) {
    keytest::EditWindow target;  // in front, with the focus: what a verb typed would arrive here
    tavtest::TempDir folder(L"tavclihelp");
    const std::wstring shot = folder / L"help.png";
    ASSERT_FALSE(ProgramRuns(L"notepad.exe"));
    RegDeleteTreeW(HKEY_CURRENT_USER, kProbeKey);
    ASSERT_EQ(Tavutil({L"clip", L"set", L"before the help runs"}).status, 0u);

    // For every verb, arguments that would type, start, write, show or wait if the verb ran.
    const std::wstring pid = std::to_wstring(GetCurrentProcessId());
    const std::map<std::wstring, std::vector<std::wstring>> work = {
        {L"admin", {}},
        {L"apppath", {L"iexplore", L"exe"}},
        {L"clip", {L"set", L"written by a help run"}},
        {L"com", {L"name", L"VBScript.RegExp"}},
        {L"cut", {L"10", L"some text to cut"}},
        {L"escape", {L"{x}"}},
        {L"foreground", {L"--after", L"600000"}},
        {L"installdate", {}},
        {L"keys", {L"typed by a help run"}},
        {L"messenger", {L"Windows Messenger"}},
        {L"messengers", {}},
        {L"modules", {pid}},
        {L"os", {}},
        {L"path", {L"C:\\windows\\notepad.exe"}},
        {L"pick-file", {}},
        {L"pick-folder", {L"C:\\windows"}},
        {L"progid-server", {L"WScript.Shell"}},
        {L"record", {L"--seconds", L"600"}},
        {L"reg", {L"write", std::wstring(L"HKCU\\") + kProbeKey, L"value", L"text"}},
        {L"release-all", {}},
        {L"run", {L"notepad.exe"}},
        {L"running", {L"notepad"}},
        {L"screenshot", {shot}},
        {L"sound", {L"--sync", L"SystemStart"}},
        {L"split", {L"notepad.exe a b"}},
        {L"support-query", {L"http://www.velmorax.com/support"}},
        {L"type", {L"typed by a help run"}},
        {L"vercmp", {L"1.2.3.4", L"1.2.3.5"}},
        {L"version", {L"C:\\windows\\system32\\kernel32.dll"}},
        {L"wait", {L"600000"}},
    };
    for (const std::wstring& verb : ListedVerbs()) {
        auto found = work.find(verb);
        ASSERT_NE(found, work.end()) << "no work for the verb " << tavtest::Narrow(verb) << " in this test";
        std::vector<std::wstring> after = {verb}, before = {verb, L"-h"};
        after.insert(after.end(), found->second.begin(), found->second.end());
        before.insert(before.end(), found->second.begin(), found->second.end());
        after.push_back(L"--help");
        ExpectVerbHelp(verb, after);
        ExpectVerbHelp(verb, before);
    }

    EXPECT_TRUE(tavtest::Settle(target.window()));
    EXPECT_EQ(target.Text(), L"") << "typed";
    EXPECT_EQ(GetForegroundWindow(), target.window()) << "something else came to the front";
    EXPECT_FALSE(ProgramRuns(L"notepad.exe")) << "started";
    EXPECT_FALSE(ProbeKeyExists()) << "written to the registry";
    EXPECT_EQ(GetFileAttributesW(shot.c_str()), INVALID_FILE_ATTRIBUTES) << "wrote a screenshot";
    EXPECT_EQ(Tavutil({L"clip", L"get"}).out, "before the help runs\n") << "wrote the clipboard";

    // The same window sees what a verb types once "--" ends the options: the check above could fail.
    auto typed = Tavutil({L"keys", L"--", L"--dry-run"});
    EXPECT_EQ(typed.status, 0u) << Describe({L"keys", L"--", L"--dry-run"}, typed);
    EXPECT_EQ(target.WaitForText(L"--dry-run"), L"--dry-run");
}

}  // namespace
