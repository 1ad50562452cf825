// Drivers for process and module names: a child of the test's own (fuzz_peer.exe) runs under a name made from
// the input (any unit a file name may hold, odd extensions, none), and the process finder must name it, its
// path and its first module, find its window's process, and find it running by name; and IsProcessRunning
// with names of any text against the processes of the session. Each has a C counterpart that compares the C
// interface's answers with the C++ ones.
#include "CapiChecks.h"
#include "Fuzz.h"
#include "Peer.h"
#include "TestSupport.h"

#include <TavUtil.h>

#include "capi/TavUtilC.h"

#include <gtest/gtest.h>

#include <tlhelp32.h>

#include <cwctype>
#include <memory>
#include <optional>
#include <stdexcept>

namespace fuzz {
namespace {

// ---- the rule of IsProcessRunning --------------------------------------------------------------------------

// The name looked for: `name` with ".exe" unless it ends so (any case); nothing where the rule throws
// out_of_range (a name shorter than four units).
std::optional<Text> WantedName(const Text& name) {
    if (name.size() < 4)
        return std::nullopt;
    Text tail = name.substr(name.size() - 4);
    for (wchar_t& unit : tail)
        unit = (unit >= L'A' && unit <= L'Z') ? static_cast<wchar_t>(unit - L'A' + L'a') : unit;
    return tail == L".exe" ? name : name + L".exe";
}

// Whether a process of the session has the executable name `wanted` (ignoring case), by a snapshot of our own.
bool SnapshotHas(const Text& wanted) {
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return false;
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    bool found = false;
    for (BOOL more = Process32FirstW(snapshot, &entry); more && !found; more = Process32NextW(snapshot, &entry)) {
        Text name = entry.szExeFile;
        const size_t slash = name.rfind(L'\\');
        if (slash != Text::npos)
            name.erase(0, slash + 1);
        found = _wcsicmp(name.c_str(), wanted.c_str()) == 0;
    }
    CloseHandle(snapshot);
    return found;
}

// Checks IsProcessRunning(name) (and its C form) against two snapshots of our own, one before and one after;
// when they differ, a process came or went meanwhile and any answer is right. Returns the answer.
std::string CheckRunning(const Text& name, bool console, bool capi) {
    const std::optional<Text> wanted = WantedName(name);
    const bool before = wanted && SnapshotHas(*wanted);
    CProcessFinder& finder = *CProcessFinder::Instance(false);
    int answer;
    try {
        answer = finder.IsProcessRunning(CStdStr<wchar_t>(name), console) ? 1 : 0;
    } catch (const std::out_of_range&) {
        answer = TAV_E_OUT_OF_RANGE;
    }
    const int32_t cAnswer = capi ? tav_process_is_running(name.c_str(), console ? 1 : 0) : answer;
    const bool after = wanted && SnapshotHas(*wanted);
    if (!wanted) {
        Expect(answer == TAV_E_OUT_OF_RANGE && cAnswer == TAV_E_OUT_OF_RANGE,
               "IsProcessRunning(\"" + Narrow(name) + "\") gives " + Num(answer) + " / " + Num(cAnswer) +
                   ", the rule throws out_of_range");
        return "short";
    }
    if (before == after)
        Expect(answer == (before ? 1 : 0) && cAnswer == answer, "IsProcessRunning(\"" + Narrow(name) + "\") gives " +
                                                                    Num(answer) + " / " + Num(cAnswer) +
                                                                    ", the session's processes say " + Num(before));
    return "running " + Num(answer);
}

// ---- names of any text against the session's processes -----------------------------------------------------

Text ProcessName(Rng& rng) {
    const std::vector<Text> pieces = {L"wineserver", L"services", L"explorer", L"fuzz_tests", L"fuzz_peer",
                                      L"rpcss",      L".exe",     L".EXE",     L".Exe",       L"x",
                                      L"\\",         L"C:\\",     L"/",        L"\x00E9",     L" "};
    Text name;
    for (uint32_t n = 1 + rng.Below(4); n > 0; --n)
        name += rng.Pick(pieces);
    return name;
}

const std::vector<Text> kNameSeeds = {L"fuzz_tests",
                                      L"fuzz_tests.exe",
                                      L"FUZZ_TESTS.EXE",
                                      L"services.exe",
                                      L"ab",
                                      L"abc",
                                      L".exe",
                                      L"x.exe.exe",
                                      L"explorer.Exe",
                                      L"C:\\windows\\explorer.exe",
                                      L""};

TEST(Fuzz, ProcessNames) {
    RunDriver({"processnames", kNameSeeds, ProcessName,
               [](const Input& input) { return CheckRunning(input.text, (input.choices & 1) != 0, false); }, true,
               300});
}

TEST(Fuzz, CapiProcessNames) {
    RunDriver({"capi-processnames", kNameSeeds, ProcessName,
               [](const Input& input) { return CheckRunning(input.text, (input.choices & 1) != 0, true); }, true, 300});
}

// ---- a child under an odd name -----------------------------------------------------------------------------

// A file name made from any text: the units a name cannot hold become '_', a device name gets a '_' in front.
Text OddFileName(const Text& text, Rng& rng) {
    Text name = text.substr(0, 80);
    for (wchar_t& unit : name)
        if (unit < 0x20 || std::wcschr(L"\\/:*?\"<>|", unit) != nullptr)
            unit = L'_';
    if (name.empty())
        name = L"peer";
    Text upper = name;
    for (wchar_t& unit : upper)
        unit = static_cast<wchar_t>(std::towupper(unit));
    for (const wchar_t* device : {L"CON", L"PRN", L"AUX", L"NUL", L"COM", L"LPT", L"CONIN$", L"CONOUT$"})
        if (upper.compare(0, std::wcslen(device), device) == 0)
            name.insert(0, 1, L'_');
    const Text extensions[] = {L".exe", L".exe", L".exe", L".EXE", L".Exe", L"", L".com", L".exe.exe", L".bin"};
    return name + extensions[rng.Below(9)];
}

// `name` as the platform keeps it: without the dots and blanks at its end.
Text WithoutTrailingDotsAndBlanks(Text name) {
    while (!name.empty() && (name.back() == L'.' || name.back() == L' '))
        name.pop_back();
    return name;
}

struct ChildDriver {
    tavtest::TempDir dir{L"fuzzproc"};
    std::wstring current = dir / L"peer.exe";  // where the copy of the child is now
    bool copied = CopyFileW(PeerProgram().c_str(), current.c_str(), FALSE) != 0;
    DWORD copyError = copied ? 0 : GetLastError();
};

std::string RunChild(ChildDriver& driver, const Input& input, bool capi) {
    Rng rng(input.choices);
    const std::wstring path = driver.dir / OddFileName(input.text, rng);
    if (path != driver.current) {
        if (!MoveFileW(driver.current.c_str(), path.c_str())) {
            // A name the folder cannot take is an outcome; a copy that has gone would make every input one.
            Expect(GetFileAttributesW(driver.current.c_str()) != INVALID_FILE_ATTRIBUTES,
                   "the copy of the child is gone from " + Narrow(driver.current));
            return "nomove";
        }
        driver.current = path;
    }
    WIN32_FIND_DATAW found = {};
    HANDLE find = FindFirstFileW(path.c_str(), &found);
    if (find == INVALID_HANDLE_VALUE)
        return "nofind";
    FindClose(find);
    // The name the file has: the platform drops trailing dots and blanks, and keeps the case a name had (a
    // rename that changes only the case changes nothing).
    const Text realName = found.cFileName;
    // The platform names a process after the file on disk or after the name it was started under: Wine gives
    // "trail. .EXE" for a child started as "trail. .EXE" from the file "trail. .exe", but "peer.EXE" for one
    // started as "peer.exe" from the file "peer.EXE". Either is the child's name.
    const Text startedName = WithoutTrailingDotsAndBlanks(path.substr(path.rfind(L'\\') + 1));
    auto namesTheChild = [&](const Text& given) { return Same(given, realName) || Same(given, startedName); };
    const std::wstring realPath = driver.dir / realName;
    wchar_t longPath[1024] = {};
    const DWORD longLength = GetLongPathNameW(realPath.c_str(), longPath, 1024);
    const Text fullPath = longLength > 0 && longLength < 1024 ? Text(longPath) : Text(realPath);

    Peer child;
    if (!child.Start(path, L"wait"))
        return "nostart";
    CProcessFinder& finder = *CProcessFinder::Instance(false);
    const DWORD pid = child.id();

    CStdStr<wchar_t> name, full;
    const bool named = finder.GetProcessName(pid, name), fullNamed = finder.GetProcessFullName(pid, full);
    Expect(named && namesTheChild(name), "GetProcessName gave \"" + Narrow(name) + "\" for the child \"" +
                                             Narrow(realName) + "\" started as \"" + Narrow(startedName) + "\"");
    Expect(fullNamed && _wcsicmp(full.c_str(), fullPath.c_str()) == 0,
           "GetProcessFullName gave \"" + Narrow(full) + "\" for \"" + Narrow(fullPath) + "\"");
    std::list<CStdStr<wchar_t>> modules = {L"stale"};
    const bool listed = finder.GetProcessModules(pid, modules);
    Expect(listed && !modules.empty() && namesTheChild(modules.front()),
           "GetProcessModules: the first module is \"" + Narrow(modules.empty() ? Text() : Text(modules.front())) +
               "\" for \"" + Narrow(realName) + "\"");
    // The queries of a given window (the child's hidden window) give the names above.
    CStdStr<wchar_t> byWindow(name), fullByWindow(full);
    if (finder.StripsExtension()) {
        CFileName::StripExtension(byWindow);
        CFileName::StripExtension(fullByWindow);
    }
    const __int64 window = reinterpret_cast<intptr_t>(child.window());
    Expect(Same(finder.GetForegroundProcessName(window), byWindow),
           "GetForegroundProcessName of the child's window gave \"" + Narrow(finder.GetForegroundProcessName(window)) +
               "\"");
    Expect(Same(finder.GetForegroundProcessFullName(window), fullByWindow),
           "GetForegroundProcessFullName of the child's window differs");

    // Running by name: its own name, without the extension, in another case.
    Text asked = realName;
    if (rng.OneIn(3) && asked.size() > 4)
        asked.erase(asked.size() - 4);
    if (rng.OneIn(3))
        for (wchar_t& unit : asked)
            unit = static_cast<wchar_t>(std::towupper(unit));
    const std::string running = CheckRunning(asked, rng.OneIn(2), capi);

    if (capi) {
        CheckText(
            "tav_process_name", [&](wchar_t* b, size_t c, size_t* w) { return tav_process_name(pid, b, c, w); }, 1,
            name);
        CheckText(
            "tav_process_full_name",
            [&](wchar_t* b, size_t c, size_t* w) { return tav_process_full_name(pid, b, c, w); }, 1, full);
        CheckText(
            "tav_process_modules", [&](wchar_t* b, size_t c, size_t* w) { return tav_process_modules(pid, b, c, w); },
            1, Joined(modules));
        CheckText(
            "tav_process_foreground_name",
            [&](wchar_t* b, size_t c, size_t* w) { return tav_process_foreground_name(window, b, c, w); }, TAV_OK,
            byWindow);
        CheckText(
            "tav_process_foreground_full_name",
            [&](wchar_t* b, size_t c, size_t* w) { return tav_process_foreground_full_name(window, b, c, w); }, TAV_OK,
            fullByWindow);
    }
    child.End();
    // Once it has ended, no name of it is found.
    CStdStr<wchar_t> after = L"stale";
    Expect(!finder.GetProcessName(pid, after) || !namesTheChild(after), "GetProcessName named the child after its end");
    return running + (realName.size() > 8 ? " long" : " short");
}

// A child costs a process start (a quarter of a second here): few seeds, each a kind of its own.
const std::vector<Text> kFileSeeds = {L"peer", L"x y",     L"\x00E9t\x00E9\x4E2D",
                                      L"con",  L"trail. ", L"\xD83D\xDE00\xFEFF"};

TEST(Fuzz, Processes) {
    auto driver = std::make_shared<ChildDriver>();
    ASSERT_TRUE(driver->copied) << "fuzz_peer.exe could not be copied: error " << driver->copyError;
    RunDriver({"processes", kFileSeeds, nullptr,
               [driver](const Input& input) { return RunChild(*driver, input, false); }, true, 80, true});
}

TEST(Fuzz, CapiProcesses) {
    auto driver = std::make_shared<ChildDriver>();
    ASSERT_TRUE(driver->copied) << "fuzz_peer.exe could not be copied: error " << driver->copyError;
    RunDriver({"capi-processes", kFileSeeds, nullptr,
               [driver](const Input& input) { return RunChild(*driver, input, true); }, true, 80, true});
}

}  // namespace
}  // namespace fuzz
