// Drivers for the launch and messenger functions over hostile registry values: the default values of the
// three messenger keys and of the companion program's key (registry fixtures at the exact paths of
// HKEY_LOCAL_MACHINE, made by the driver and removed after) hold, input by input, values of any type and
// length and command lines made of quotes, blanks, variables, shortcuts and a program of the test's own. The
// shell and process calls of TavUtil.dll are replaced by recorders: nothing is launched, except now and then
// the test's own program (a copy of fuzz_peer.exe), which is ended at once. The C counterpart compares the C
// interface's answers with the C++ ones.
#include "CapiChecks.h"
#include "Fuzz.h"
#include "ImportHook.h"
#include "Inputs.h"
#include "Models.h"
#include "Peer.h"
#include "RegistryFixture.h"
#include "TestSupport.h"

#include <TavUtil.h>

#include "capi/TavUtilC.h"

#include <gtest/gtest.h>

#include <shellapi.h>

#include <memory>
#include <optional>

namespace fuzz {
namespace {

const wchar_t* const kKeys[] = {L"SOFTWARE\\Classes\\ymsgr\\shell\\open\\command",
                                L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msmsgs.exe",
                                L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msnmsgr.exe",
                                L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\PVCUHost.exe"};
const wchar_t* const kNames[] = {L"Yahoo! Messenger", L"Windows Messenger", L"MSN Messenger"};

// What the replaced shell and process calls saw.
struct Launches {
    int shellEx = 0, shell = 0, process = 0;
    Text file, parameters, directory, verb, commandLine;
    ULONG mask = 0;
    int show = 0;
    BOOL answer = FALSE;
    std::wstring ownProgram;  // the only program that is really started
    int started = 0;
};
Launches* launches = nullptr;
tavtest::ImportHook* shellExHook = nullptr;

// Starts the test's own program for real (and ends it at once) when it is the one asked for.
void StartOwn(SHELLEXECUTEINFOW* info) {
    SHELLEXECUTEINFOW copy = *info;
    copy.fMask |= SEE_MASK_NOCLOSEPROCESS;
    if (shellExHook->original<decltype(&ShellExecuteExW)>()(&copy) && copy.hProcess) {
        TerminateProcess(copy.hProcess, 0);
        WaitForSingleObject(copy.hProcess, 5000);
        CloseHandle(copy.hProcess);
        ++launches->started;
    }
}

BOOL WINAPI RecordShellExecuteEx(SHELLEXECUTEINFOW* info) {
    Launches& l = *launches;
    ++l.shellEx;
    l.file = info->lpFile ? info->lpFile : L"";
    l.parameters = info->lpParameters ? info->lpParameters : L"";
    l.directory = info->lpDirectory ? info->lpDirectory : L"";
    l.verb = info->lpVerb ? info->lpVerb : L"";
    l.mask = info->fMask;
    l.show = info->nShow;
    if (!l.ownProgram.empty() && l.file == l.ownProgram)
        StartOwn(info);
    info->hProcess = nullptr;
    info->hInstApp = reinterpret_cast<HINSTANCE>(l.answer ? 42 : SE_ERR_FNF);
    return l.answer;
}

HINSTANCE WINAPI RecordShellExecute(HWND, LPCWSTR, LPCWSTR file, LPCWSTR, LPCWSTR, INT show) {
    ++launches->shell;
    launches->file = file ? file : L"";
    launches->show = show;
    return reinterpret_cast<HINSTANCE>(launches->answer ? 42 : SE_ERR_FNF);
}

BOOL WINAPI RecordCreateProcess(LPCWSTR, LPWSTR commandLine, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD,
                                LPVOID, LPCWSTR, LPSTARTUPINFOW, LPPROCESS_INFORMATION) {
    ++launches->process;
    launches->commandLine = commandLine ? commandLine : L"";
    SetLastError(ERROR_FILE_NOT_FOUND);
    return FALSE;
}

// The registry's text of a value as the key wrapper reads it: a string's units up to the first NUL, nothing
// for any other type.
Text StringOf(const RawValue& value, bool present) {
    if (!present || (value.type != REG_SZ && value.type != REG_EXPAND_SZ))
        return Text();
    Text text(reinterpret_cast<const wchar_t*>(value.data.data()), value.data.size() / sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

// Installed by the rule: the arguments cut off (a line the cut cannot handle is not installed), trailing
// backslashes removed, variables expanded, and the program found by the search order.
bool InstalledByRule(const Text& value) {
    std::optional<Text> stripped = model::StripTrailingArgument(value);
    if (!stripped)
        return false;
    Text path = *stripped;
    while (!path.empty() && path.back() == L'\\')
        path.pop_back();
    path = model::Expand(path);
    wchar_t found[512];
    return SearchPathW(nullptr, path.c_str(), nullptr, 512, found, nullptr) != 0;
}

struct LaunchDriver {
    Launches record;
    tavtest::TempDir dir{L"fuzzlaunch"};
    std::wstring own;  // the test's own program, under a messenger's name
    std::vector<std::unique_ptr<tavtest::RegistryFixture>> fixtures;
    std::unique_ptr<tavtest::ImportHook> shellEx, shell, process;
    QuietLog quiet;

    LaunchDriver() {
        launches = &record;
        own = dir / L"msnmsgr.exe";
        CopyFileW(PeerProgram().c_str(), own.c_str(), FALSE);
        for (const wchar_t* key : kKeys)
            fixtures.push_back(std::make_unique<tavtest::RegistryFixture>(HKEY_LOCAL_MACHINE, key));
        shellEx = std::make_unique<tavtest::ImportHook>("shell32.dll", "ShellExecuteExW",
                                                        reinterpret_cast<void*>(&RecordShellExecuteEx));
        shellExHook = shellEx.get();
        shell = std::make_unique<tavtest::ImportHook>("shell32.dll", "ShellExecuteW",
                                                      reinterpret_cast<void*>(&RecordShellExecute));
        process = std::make_unique<tavtest::ImportHook>("kernel32.dll", "CreateProcessW",
                                                        reinterpret_cast<void*>(&RecordCreateProcess));
    }
    ~LaunchDriver() {
        shellEx.reset(), shell.reset(), process.reset();
        shellExHook = nullptr;
        launches = nullptr;
    }
    LaunchDriver(const LaunchDriver&) = delete;
    LaunchDriver& operator=(const LaunchDriver&) = delete;

    bool ok() const {
        for (const auto& fixture : fixtures)
            if (!fixture->ok())
                return false;
        return shellEx->installed() && shell->installed() && process->installed();
    }
};

// A command line of quotes, blanks, variables, shortcuts and the test's own program.
Text CommandLine(Rng& rng, const Text& own) {
    const std::vector<Text> pieces = {
        own,      L"\"" + own + L"\"", L" ",    L"\"",   L" /background", L"%1",         L"%TEMP%\\x.exe", L"%NOPE%",
        L"a.lnk", L"\\dir.LNK\\x.exe", L".exe", L".EXE", L"C:\\",         L"\\\\server", L"\x00E9",        L"ab c.exe"};
    Text line;
    for (uint32_t n = 1 + rng.Below(5); n > 0; --n)
        line += rng.Pick(pieces);
    return line;
}

// The launch the rule makes of a command line: split by ExtractProgram (its own driver checks it), the
// program's variables expanded, a shortcut (".lnk" anywhere, any case) opened by the plain shell call only
// when the search finds it, anything else by the shell's "open" with the arguments and the folder.
void CheckLaunch(const std::string& what, const Text& commandLine) {
    const Launches& l = *launches;
    CStdStr<wchar_t> program, args;
    ExtractProgram(CStdStr<wchar_t>(commandLine), program, args);
    const Text programText = model::Expand(program);
    Text upper = programText;
    for (wchar_t& unit : upper)
        unit = static_cast<wchar_t>(towupper(unit));
    if (upper.find(L".LNK") != Text::npos) {
        wchar_t found[512];
        Text path = programText;
        while (!path.empty() && path.back() == L'\\')
            path.pop_back();
        const bool exists = SearchPathW(nullptr, model::Expand(path).c_str(), nullptr, 512, found, nullptr) != 0;
        Expect(l.shellEx == 0 && l.shell == (exists ? 1 : 0) && (!exists || (Same(l.file, programText) && l.show == 1)),
               what + ": the shortcut \"" + Narrow(programText) + "\" was opened " + Num(l.shell) + " times as \"" +
                   Narrow(l.file) + "\"");
        return;
    }
    const size_t slash = programText.rfind(L'\\');
    const Text directory = slash == Text::npos ? programText : programText.substr(0, slash);
    Expect(l.shellEx == 1 && l.shell == 0 && l.process == 0, what + ": " + Num(l.shellEx) + " shell launches");
    Expect(Same(l.file, programText) && Same(l.parameters, args) && Same(l.directory, directory) && l.verb == L"open" &&
               l.show == SW_SHOWNORMAL && (l.mask & SEE_MASK_FLAG_NO_UI),
           what + ": launched \"" + Narrow(l.file) + "\" with \"" + Narrow(l.parameters) + "\" in \"" +
               Narrow(l.directory) + "\", the line says \"" + Narrow(programText) + "\" with \"" + Narrow(args) +
               "\" in \"" + Narrow(directory) + "\"");
}

std::string RunLaunch(LaunchDriver& driver, const Input& input, bool capi) {
    Rng rng(input.choices);
    Launches& l = driver.record;
    // The four values: any raw value, a command line, or none.
    RawValue values[4];
    bool present[4];
    for (int k = 0; k < 4; ++k) {
        values[k] = RandomRawValue(rng);
        present[k] = !rng.OneIn(5);
        if (rng.OneIn(2)) {
            const Text line = rng.OneIn(3) ? input.text : CommandLine(rng, driver.own);
            values[k].type = rng.OneIn(6) ? REG_EXPAND_SZ : REG_SZ;
            values[k].data.assign(reinterpret_cast<const BYTE*>(line.c_str()),
                                  reinterpret_cast<const BYTE*>(line.c_str() + line.size() + 1));
        }
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKeys[k], 0, KEY_SET_VALUE, &key) != ERROR_SUCCESS)
            return "nokey";
        if (present[k])
            present[k] = RegSetValueExW(key, nullptr, 0, values[k].type, values[k].data.data(),
                                        static_cast<DWORD>(values[k].data.size())) == ERROR_SUCCESS;
        else
            RegDeleteValueW(key, nullptr);
        RegCloseKey(key);
    }
    Text text[4];
    bool installed[4];
    for (int k = 0; k < 4; ++k)
        text[k] = StringOf(values[k], present[k]), installed[k] = InstalledByRule(text[k]);

    // Discovery: appended in the order Yahoo, MSN, Windows.
    std::list<CStdStr<wchar_t>> list = {L"X"}, expected = {L"X"};
    for (int k : {0, 2, 1})
        if (installed[k])
            expected.push_back(kNames[k]);
    GetAvailableMessengers(list);
    Expect(list == expected,
           "GetAvailableMessengers gave " + Narrow(Joined(list)) + ", the values say " + Narrow(Joined(expected)));
    CStdStr<wchar_t> path = L"untouched";
    const int pv = IsPVAppInstalled(path);
    Expect(pv == (installed[3] ? 1 : 0) && Same(path, installed[3] ? text[3] : Text(L"untouched")),
           "IsPVAppInstalled gave " + Num(pv) + " \"" + Narrow(path) + "\"");

    // Launch by name: a messenger's name, another spelling, or the input itself.
    const int which = static_cast<int>(rng.Below(5));
    Text name = which < 3 ? Text(kNames[which]) : which == 3 ? Text(L"msn messenger") : input.text;
    name = name.substr(0, name.find(L'\0'));
    int row = -1;
    for (int k = 0; k < 3; ++k)
        if (name == kNames[k])
            row = k;
    const Text commandLine = row >= 0 ? text[row] : Text();
    l = Launches{0, 0, 0, {}, {}, {}, {}, {}, 0, 0, rng.OneIn(2), rng.OneIn(4) ? driver.own : Text(), 0};
    const int launched = capi ? tav_launch_messenger(name.c_str()) : LaunchMessenger(CStdStr<wchar_t>(name));
    Expect(launched == (commandLine.empty() ? 0 : 1), "LaunchMessenger gave " + Num(launched));
    if (commandLine.empty())
        Expect(l.shellEx + l.shell + l.process == 0, "LaunchMessenger launched with no command line");
    else
        CheckLaunch("LaunchMessenger", commandLine);
    const int started = l.started;

    // A whole command line of any text, not waiting: the same launch.
    const Text line = input.text.substr(0, input.text.find(L'\0'));
    l = Launches{0, 0, 0, {}, {}, {}, {}, {}, 0, 0, rng.OneIn(2), Text(), 0};
    HANDLE process = reinterpret_cast<HANDLE>(1);
    const bool executed = ExecuteProgram(CStdStr<wchar_t>(line), SW_SHOWNORMAL, false, &process);
    if (line.empty())
        Expect(!executed && l.shellEx + l.shell == 0, "ExecuteProgram of an empty line");
    else
        CheckLaunch("ExecuteProgram", line);

    if (capi) {
        CheckText(
            "tav_launch_messengers_available",
            [&](wchar_t* b, size_t c, size_t* w) { return tav_launch_messengers_available(b, c, w); },
            static_cast<int32_t>(expected.size() - 1),
            Joined(std::list<CStdStr<wchar_t>>(++expected.begin(), expected.end())));
        CheckText(
            "tav_launch_is_pv_app_installed",
            [&](wchar_t* b, size_t c, size_t* w) { return tav_launch_is_pv_app_installed(b, c, w); },
            installed[3] ? 1 : 0, installed[3] ? text[3] : Text());
        Expect(tav_launch_messenger(nullptr) == TAV_E_NULL_ARGUMENT, "tav_launch_messenger(null)");
    }
    return "m" + Num(expected.size() - 1) + " p" + Num(pv) + " l" + Num(launched) + " s" + Num(started);
}

const std::vector<Text> kLineSeeds = {L"\"C:\\Program Files\\Messenger\\msmsgs.exe\" /background",
                                      L"C:\\x.exe %1",
                                      L"",
                                      L"\"",
                                      L"ab c.exe",
                                      L"%TEMP%\\a.lnk",
                                      L"notepad.exe"};

TEST(Fuzz, Messengers) {
    auto driver = std::make_shared<LaunchDriver>();
    ASSERT_TRUE(driver->ok()) << "the messenger keys exist already, or an import could not be watched";
    RunDriver({"messengers", kLineSeeds, [driver](Rng& rng) { return CommandLine(rng, driver->own); },
               [driver](const Input& input) { return RunLaunch(*driver, input, false); }, false, 1024});
}

TEST(Fuzz, CapiMessengers) {
    auto driver = std::make_shared<LaunchDriver>();
    ASSERT_TRUE(driver->ok()) << "the messenger keys exist already, or an import could not be watched";
    RunDriver({"capi-messengers", kLineSeeds, [driver](Rng& rng) { return CommandLine(rng, driver->own); },
               [driver](const Input& input) { return RunLaunch(*driver, input, true); }, false, 1024});
}

}  // namespace
}  // namespace fuzz
