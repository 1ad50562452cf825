// The single instance and its choice of implementation per Windows version, the foreground wait loop,
// long paths, and the answers when optional system functions are missing.
#include "ProcessTestSupport.h"
#include "TestWindow.h"

#include <TestSupport.h>
#include <TavUtil.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <typeinfo>
#include <vector>

namespace {

// --- The implementation chosen for each Windows version, seen by a copy of this test run under it.

TEST(ProcessFinderChild, DISABLED_InstanceIsTheVariantNamed) {
    CProcessFinder* finder = CProcessFinder::Instance(false);
    ASSERT_NE(nullptr, finder);
    const std::wstring expected = tavtest::ChildArgument();
    if (expected == L"95")
        EXPECT_EQ(typeid(CProcessFinder95), typeid(*finder));
    else if (expected == L"NT")
        EXPECT_EQ(typeid(CProcessFinderNT), typeid(*finder));
    else if (expected == L"2kPlus")
        EXPECT_EQ(typeid(CProcessFinder2kPlus), typeid(*finder));
    else
        FAIL() << "unknown variant " << tavtest::Narrow(expected);
    // Whatever the variant, it names the test itself.
    CStdStr<wchar_t> name;
    EXPECT_TRUE(finder->GetProcessName(GetCurrentProcessId(), name));
    EXPECT_EQ(proctest::FileNameOf(proctest::ImagePath(GetCurrentProcessId())), name);
}

TEST(ProcessFinderInstance, ChoosesTheVariantByWindowsVersion) {
    const struct {
        const wchar_t* windowsVersion;
        const wchar_t* variant;
    } rows[] = {
        {L"win98", L"95"}, {L"nt40", L"NT"}, {L"win2k", L"2kPlus"}, {L"winxp", L"2kPlus"}, {L"win7", L"2kPlus"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(tavtest::Narrow(row.windowsVersion));
        tavtest::ChildResult result = tavtest::RunSelfAs({row.windowsVersion, {}, row.variant},
                                                         "ProcessFinderChild.DISABLED_InstanceIsTheVariantNamed");
        EXPECT_TRUE(tavtest::ChildPassed(result));
    }
}

// --- The first caller's flag wins; every caller gets the same object.

TEST(ProcessFinderChild, DISABLED_FirstCallersFlagWins) {
    const bool first = tavtest::ChildArgument() == L"strip";
    CProcessFinder* a = CProcessFinder::Instance(first);
    CProcessFinder* b = CProcessFinder::Instance(!first);
    ASSERT_NE(nullptr, a);
    EXPECT_EQ(a, b);
    EXPECT_EQ(first, b->StripsExtension());

    tavtest::TestWindow window(nullptr, true);
    ASSERT_TRUE(tavtest::BringToFront(window.hwnd()));
    const std::wstring self = proctest::FileNameOf(proctest::ImagePath(GetCurrentProcessId()));
    const std::wstring expected = first ? self.substr(0, self.size() - 4) : self;
    EXPECT_EQ(expected, b->GetForegroundProcessName(0));
}

TEST(ProcessFinderInstance, FirstCallersFlagWins) {
    // Each implementation in turn, as the system of its generation picks it.
    const struct {
        const wchar_t* windowsVersion;
        const wchar_t* first;
    } rows[] = {{L"win98", L"strip"}, {L"nt40", L"strip"}, {L"win7", L"strip"}, {L"", L"keep"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(tavtest::Narrow(std::wstring(row.windowsVersion) + L" " + row.first));
        tavtest::ChildResult result =
            tavtest::RunSelfAs({row.windowsVersion, {}, row.first}, "ProcessFinderChild.DISABLED_FirstCallersFlagWins");
        EXPECT_TRUE(tavtest::ChildPassed(result));
    }
}

TEST(ProcessFinderInstance, SameObjectOnEveryCall) {
    CProcessFinder* finder = CProcessFinder::Instance(false);
    ASSERT_NE(nullptr, finder);
    EXPECT_EQ(finder, CProcessFinder::Instance(true));
    EXPECT_EQ(finder, CProcessFinder::Instance(false));
    // This system (Wine reports Windows 7) gets the implementation for Windows 2000 and later.
    EXPECT_NE(nullptr, dynamic_cast<CProcessFinder2kPlus*>(finder));
}

TEST(ProcessFinder, CopiesCarryTheFlag) {
    CProcessFinder2kPlus stripping(true);
    CProcessFinder2kPlus keeping(false);
    CProcessFinder& base = keeping;
    base = stripping;  // the base's assignment copies the flag
    EXPECT_TRUE(keeping.StripsExtension());
}

// --- The wait for a foreground window.

// No window in front: the test's own window is shown, brought to the front and destroyed.
bool NoForegroundWindow() {
    {
        tavtest::TestWindow window(nullptr, true);
        tavtest::BringToFront(window.hwnd());
    }
    return tavtest::WaitUntil([] { return GetForegroundWindow() == nullptr; });
}

// True when a message of that kind waits in the calling thread's queue; it is removed.
bool TakeQueued(UINT message) {
    MSG msg;
    return PeekMessageW(&msg, nullptr, message, message, PM_REMOVE) != FALSE;
}

TEST(ProcessFinderWait, QueuedQuitEndsTheWaitAndStaysQueued) {
    ASSERT_TRUE(NoForegroundWindow());
    CProcessFinder2kPlus finder;
    PostQuitMessage(0);
    EXPECT_EQ(L"", finder.GetForegroundProcessName(0));
    EXPECT_EQ(L"", finder.GetForegroundProcessFullName(0));
    EXPECT_EQ(nullptr, CProcessFinder::WaitForegroundWindow());
    EXPECT_TRUE(TakeQueued(WM_QUIT));  // left for the caller's own loop, not consumed by the wait
}

TEST(ProcessFinderWait, QueuedCommandEndsTheWaitAndStaysQueued) {
    ASSERT_TRUE(NoForegroundWindow());
    CProcessFinderNT finder;
    PostThreadMessageW(GetCurrentThreadId(), WM_COMMAND, 1, 0);
    EXPECT_EQ(L"", finder.GetForegroundProcessName(0));
    EXPECT_EQ(nullptr, CProcessFinder::WaitForegroundWindow());
    EXPECT_TRUE(TakeQueued(WM_COMMAND));
}

TEST(ProcessFinderWait, NothingInFrontAndNothingQueuedGivesNoWindow) {
    ASSERT_TRUE(NoForegroundWindow());
    EXPECT_EQ(nullptr, CProcessFinder::WaitForegroundWindow());
    CProcessFinder95 finder;
    EXPECT_EQ(L"", finder.GetForegroundProcessFullName(0));
}

// Other messages are handled while waiting: here the handler brings a window to the front, which the
// next round of the wait finds.
TEST(ProcessFinderWait, OtherMessagesArePumpedWhileWaiting) {
    ASSERT_TRUE(NoForegroundWindow());
    tavtest::TestWindow target(tavtest::TestWindow::Options().Titled(L"pumped target").Placed(40, 40, 200, 100));
    int handled = 0;
    tavtest::TestWindow receiver(tavtest::TestWindow::MessageOnly(), [&](UINT message, WPARAM, LPARAM) {
        if (message != WM_APP)
            return false;
        ++handled;
        ShowWindow(target.hwnd(), SW_SHOW);
        SetForegroundWindow(target.hwnd());
        return true;
    });
    ASSERT_NE(nullptr, receiver.hwnd());
    ASSERT_NE(nullptr, target.hwnd());
    PostMessageW(receiver.hwnd(), WM_APP, 0, 0);

    EXPECT_EQ(target.hwnd(), CProcessFinder::WaitForegroundWindow());
    EXPECT_EQ(1, handled);
}

// --- Long paths: a program started through its 8.3 path is reported by its long path.

TEST(ProcessFinderLongPath, FullNameIsTheLongPath) {
    tavtest::TempDir dir(L"Process finder folder with a long name");
    ASSERT_FALSE(dir.path().empty());
    const std::wstring longPath = dir / L"process probe with a long name.exe";
    ASSERT_TRUE(CopyFileW((tavtest::BinDir() + L"\\process_probe.exe").c_str(), longPath.c_str(), FALSE));
    wchar_t shortPath[MAX_PATH] = {};
    ASSERT_NE(0u, GetShortPathNameW(longPath.c_str(), shortPath, MAX_PATH));
    ASSERT_NE(longPath, shortPath);
    {
        proctest::StartedProgram probe(shortPath, L"\"" + std::wstring(shortPath) + L"\" long-path-probe");
        ASSERT_TRUE(probe.started());
        ASSERT_NE(nullptr, probe.WaitForWindow(L"TavProcessProbe"));

        CStdStr<wchar_t> path, name;
        CProcessFinder2kPlus finder;
        EXPECT_TRUE(finder.GetProcessFullName(probe.pid(), path));
        EXPECT_EQ(longPath, path);
        EXPECT_TRUE(finder.GetProcessName(probe.pid(), name));
        EXPECT_EQ(L"process probe with a long name.exe", name);
        EXPECT_TRUE(finder.IsProcessRunning(L"process probe with a long name", true));
    }
    tavtest::WaitUntil([&] { return DeleteFileW(longPath.c_str()) != FALSE; }, 5000);
}

// Wine's module snapshot already reports the long path of a program started by its 8.3 path, so the
// lengthening is seen through a module walk that reports the first module in its short form, as older
// systems do. The fake stands in only for what Wine cannot show.
struct ShortFormModuleWalk {
    static BOOL WINAPI First(HANDLE snapshot, MODULEENTRY32W* entry) {
        if (!Module32FirstW(snapshot, entry))
            return FALSE;
        if (!reported.empty())
            wcscpy_s(entry->szExePath, reported.c_str());
        return TRUE;
    }
    static std::wstring reported;
};
std::wstring ShortFormModuleWalk::reported;

class ToolhelpWithShortModulePath : public CProcessFinder2kPlus {
public:
    explicit ToolhelpWithShortModulePath(const std::wstring& reported) {
        ShortFormModuleWalk::reported = reported;
        m_pModule32First = &ShortFormModuleWalk::First;
    }
    ~ToolhelpWithShortModulePath() override { ShortFormModuleWalk::reported.clear(); }
};

TEST(ProcessFinderLongPath, ShortModulePathIsLengthened) {
    tavtest::TempDir dir(L"Another folder with a rather long name");
    const std::wstring longPath = dir / L"a document with a long name.txt";
    ASSERT_TRUE(tavtest::WriteFileBytes(longPath, "x"));
    wchar_t shortPath[MAX_PATH] = {};
    ASSERT_NE(0u, GetShortPathNameW(longPath.c_str(), shortPath, MAX_PATH));
    ASSERT_NE(longPath, shortPath);

    ToolhelpWithShortModulePath finder(shortPath);
    CStdStr<wchar_t> path;
    EXPECT_TRUE(finder.GetProcessFullName(GetCurrentProcessId(), path));
    EXPECT_EQ(longPath, path);
}

TEST(ProcessFinderLongPath, PathThatCannotBeLengthenedIsKept) {
    const std::wstring gone = L"C:\\NOSUCH~1\\GONE~1.EXE";
    ToolhelpWithShortModulePath finder(gone);
    CStdStr<wchar_t> path, name;
    EXPECT_TRUE(finder.GetProcessFullName(GetCurrentProcessId(), path));
    EXPECT_EQ(gone, path);
    EXPECT_TRUE(finder.GetProcessName(GetCurrentProcessId(), name));
    EXPECT_EQ(L"GONE~1.EXE", name);
}

// --- Missing system functions disable only what needs them.

class ToolhelpWithout : public CProcessFinder2kPlus {
public:
    void DropSnapshot() { m_pCreateToolhelp32Snapshot = nullptr; }
    void DropSessions() { m_pProcessIdToSessionId = nullptr; }
    void DropModuleWalk() { m_pModule32First = nullptr; }
};

TEST(ProcessFinderMissing, NoSnapshotFunctionAnswersFalse) {
    ToolhelpWithout finder;
    finder.DropSnapshot();
    CStdStr<wchar_t> text;
    std::list<CStdStr<wchar_t>> modules{L"left from before"};
    EXPECT_FALSE(finder.GetProcessFullName(GetCurrentProcessId(), text));
    EXPECT_FALSE(finder.GetProcessName(GetCurrentProcessId(), text));
    EXPECT_FALSE(finder.GetProcessModules(GetCurrentProcessId(), modules));
    EXPECT_TRUE(modules.empty());
    // The name is not even looked at: no out-of-range error without the snapshot function.
    EXPECT_FALSE(finder.IsProcessRunning(L"ab", false));
}

TEST(ProcessFinderMissing, NoSessionFunctionsCountEveryProcess) {
    ToolhelpWithout finder;
    finder.DropSessions();
    const std::wstring self = proctest::FileNameOf(proctest::ImagePath(GetCurrentProcessId()));
    EXPECT_TRUE(finder.IsProcessRunning(self.c_str(), true));
}

TEST(ProcessFinderMissing, NoModuleWalkFallsBackToTheProcessEntry) {
    ToolhelpWithout finder;
    finder.DropModuleWalk();
    CStdStr<wchar_t> path;
    EXPECT_TRUE(finder.GetProcessFullName(GetCurrentProcessId(), path));
    // Wine keeps the bare file name in the process entry.
    EXPECT_EQ(proctest::FileNameOf(proctest::ImagePath(GetCurrentProcessId())), path);
}

// --- The console-session filter. Every process of the Wine session is in the console session, so the
// session functions are replaced by ones that place chosen processes elsewhere.
struct FakeSessions {
    static constexpr DWORD kConsole = 1;
    static constexpr DWORD kOther = 7;
    static BOOL WINAPI SessionOf(DWORD pid, DWORD* session) {
        if (pid == failingPid)
            return FALSE;
        *session = pid == consolePid ? kConsole : kOther;
        return TRUE;
    }
    static DWORD WINAPI ConsoleSession() { return kConsole; }
    static DWORD consolePid;  // the one process in the console session (0: none)
    static DWORD failingPid;  // the process whose session cannot be read (0: none)
};
DWORD FakeSessions::consolePid = 0;
DWORD FakeSessions::failingPid = 0;

class ToolhelpWithSessions : public CProcessFinder2kPlus {
public:
    ToolhelpWithSessions(DWORD consolePid, DWORD failingPid) {
        FakeSessions::consolePid = consolePid;
        FakeSessions::failingPid = failingPid;
        m_pProcessIdToSessionId = &FakeSessions::SessionOf;
        m_pWTSGetActiveConsoleSessionId = &FakeSessions::ConsoleSession;
    }
};

TEST(ProcessFinderSessions, ProcessOutsideTheConsoleSessionCountsOnlyWithoutTheFilter) {
    const std::wstring self = proctest::FileNameOf(proctest::ImagePath(GetCurrentProcessId()));
    ToolhelpWithSessions elsewhere(0, 0);
    EXPECT_FALSE(elsewhere.IsProcessRunning(self.c_str(), true));
    EXPECT_TRUE(elsewhere.IsProcessRunning(self.c_str(), false));
    ToolhelpWithSessions unreadable(GetCurrentProcessId(), GetCurrentProcessId());
    EXPECT_FALSE(unreadable.IsProcessRunning(self.c_str(), true));
    ToolhelpWithSessions console(GetCurrentProcessId(), 0);
    EXPECT_TRUE(console.IsProcessRunning(self.c_str(), true));
}

// Process IDs of the processes named `name`, in Toolhelp snapshot order.
std::vector<DWORD> SnapshotIdsNamed(const wchar_t* name) {
    std::vector<DWORD> ids;
    tav::UniqueSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = snapshot && Process32FirstW(snapshot.get(), &entry); more;
         more = Process32NextW(snapshot.get(), &entry)) {
        if (_wcsicmp(proctest::FileNameOf(entry.szExeFile).c_str(), name) == 0)
            ids.push_back(entry.th32ProcessID);
    }
    return ids;
}

TEST(ProcessFinderSessions, WalkGoesOnPastMatchesOfOtherSessions) {
    proctest::StartedProgram first(L"", L"notepad.exe");
    proctest::StartedProgram second(L"", L"notepad.exe");
    ASSERT_TRUE(first.started());
    ASSERT_TRUE(second.started());
    const std::vector<DWORD> notepads = SnapshotIdsNamed(L"notepad.exe");
    ASSERT_GE(notepads.size(), 2u);
    // Only the notepad listed last is in the console session: the earlier matches must be passed over.
    ToolhelpWithSessions lastInConsole(notepads.back(), 0);
    EXPECT_TRUE(lastInConsole.IsProcessRunning(L"notepad", true));
    ToolhelpWithSessions noneInConsole(0, 0);
    EXPECT_FALSE(noneInConsole.IsProcessRunning(L"notepad", true));
    EXPECT_TRUE(noneInConsole.IsProcessRunning(L"notepad", false));
}

TEST(ProcessFinderChild, DISABLED_WithoutPsapi) {
    CProcessFinderNT finder;
    CStdStr<wchar_t> text;
    EXPECT_FALSE(finder.GetProcessName(GetCurrentProcessId(), text));
    EXPECT_FALSE(finder.GetProcessFullName(GetCurrentProcessId(), text));
    EXPECT_FALSE(finder.IsProcessRunning(L"notepad"));
    EXPECT_THROW(finder.IsProcessRunning(L"ab"), std::out_of_range);
    // The Toolhelp implementations do not need it.
    CProcessFinder2kPlus toolhelp;
    EXPECT_TRUE(toolhelp.GetProcessName(GetCurrentProcessId(), text));
}

TEST(ProcessFinderMissing, NoPsapiAnswersFalse) {
    tavtest::ChildResult result =
        tavtest::RunSelfAs({L"nt40", {L"psapi"}, L""}, "ProcessFinderChild.DISABLED_WithoutPsapi");
    EXPECT_TRUE(tavtest::ChildPassed(result));
}

}  // namespace
