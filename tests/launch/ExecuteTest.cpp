// Program execution under Wine: the shell path, shortcuts, the waiting launcher and the activation of a
// running process, observed through the reports of tavlaunchprobe.exe.
#include "launch/Execute.h"

#include "LaunchProbe.h"
#include "launch/detail/ShellDirectory.h"
#include "platform/Guards.h"

#include <gtest/gtest.h>

#include <objbase.h>
#include <shlobj.h>

namespace {

using launchtest::FrontWindow;
using launchtest::ProbePath;

// The started program is still running: the launch gave up waiting on it but did not end it.
void ExpectStillRunning(DWORD processId) {
    tav::UniqueHandle process(OpenProcess(SYNCHRONIZE, FALSE, processId));
    ASSERT_TRUE(process);
    EXPECT_EQ(WaitForSingleObject(process.get(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
}
using launchtest::ProbeReport;
using Str = CStdStr<wchar_t>;

const HANDLE kUntouched = reinterpret_cast<HANDLE>(0x1234);

bool Contains(const std::wstring& text, const std::wstring& part) { return text.find(part) != std::wstring::npos; }

std::wstring WithoutTrailingBackslash(std::wstring path) {
    while (!path.empty() && path.back() == L'\\')
        path.pop_back();
    return path;
}

bool SamePath(const std::wstring& a, const std::wstring& b) {
    return lstrcmpiW(WithoutTrailingBackslash(a).c_str(), WithoutTrailingBackslash(b).c_str()) == 0;
}

// A shortcut at `linkPath` to the probe, with its own arguments.
bool MakeShortcut(const std::wstring& linkPath, const std::wstring& arguments) {
    tav::ComInitialization com;
    bool made = false;
    IShellLinkW* link = nullptr;
    if (SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                   reinterpret_cast<void**>(&link)))) {
        link->SetPath(ProbePath().c_str());
        link->SetArguments(arguments.c_str());
        IPersistFile* file = nullptr;
        if (SUCCEEDED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file)))) {
            made = SUCCEEDED(file->Save(linkPath.c_str(), TRUE));
            file->Release();
        }
        link->Release();
    }
    return made;
}

TEST(ShellDirectory, IsTheProgramTextUpToItsLastBackslashOrTheWholeText) {
    EXPECT_EQ(tav::launch::detail::ShellDirectoryFor(L"C:\\a b\\c\\x.exe"), Str(L"C:\\a b\\c"));
    EXPECT_EQ(tav::launch::detail::ShellDirectoryFor(L"notepad.exe"), Str(L"notepad.exe"));
    EXPECT_EQ(tav::launch::detail::ShellDirectoryFor(L"C:\\x.exe"), Str(L"C:"));
}

TEST(ExecuteProgram, EmptyLineIsRefused) {
    HANDLE process = kUntouched;
    EXPECT_FALSE(ExecuteProgram(L"", 1, false, nullptr));
    EXPECT_FALSE(ExecuteProgram(L"", 1, false, &process));
    EXPECT_EQ(process, kUntouched);
}

TEST(ExecuteProgram, ShellStartsTheProgramAndHandsOutItsProcess) {
    ProbeReport report;
    HANDLE process = nullptr;
    ASSERT_TRUE(ExecuteProgram(L"\"" + ProbePath() + L"\" --hello world", SW_SHOWNOACTIVATE, false, &process));
    ASSERT_NE(process, nullptr);
    tavtest::RunningProgram started(process, GetProcessId(process));
    ASSERT_TRUE(report.Wait());
    EXPECT_EQ(report.Pid(), GetProcessId(process));
    EXPECT_TRUE(Contains(report.Field("cmdline"), L"--hello world"));
    EXPECT_EQ(report.Field("show"), L"4");
    // The shell was given the program's folder as the working folder.
    EXPECT_TRUE(SamePath(report.Field("cwd"), tavtest::BinDir())) << tavtest::Narrow(report.Field("cwd"));
}

TEST(ExecuteProgram, ShellStartsNotepad) {
    // With a folder, and as a bare name (the shell then gets "notepad.exe" as its folder too).
    for (const wchar_t* commandLine : {L"%WINDIR%\\notepad.exe", L"notepad.exe"}) {
        HANDLE process = nullptr;
        ASSERT_TRUE(ExecuteProgram(commandLine, SW_SHOWNORMAL, false, &process)) << tavtest::Narrow(commandLine);
        ASSERT_NE(process, nullptr);
        tavtest::RunningProgram notepad(process, GetProcessId(process));
        EXPECT_NE(notepad.WaitForWindow(L"Notepad"), nullptr) << tavtest::Narrow(commandLine);
    }
}

TEST(ExecuteProgram, ProgramWithoutBackslashIsItsOwnWorkingFolder) {
    // <temp>\tavlaunchprobe.exe\tavlaunchprobe.exe, started from <temp> as "tavlaunchprobe.exe": the shell
    // is given "tavlaunchprobe.exe" as the folder, finds the program there and starts it in that folder.
    ProbeReport report;
    std::wstring folder = report.dir() / L"tavlaunchprobe.exe";
    ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
    ASSERT_TRUE(launchtest::CopyProbeTo(folder + L"\\tavlaunchprobe.exe"));
    wchar_t previous[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, previous);
    ASSERT_TRUE(SetCurrentDirectoryW(report.dir().path().c_str()));
    HANDLE process = nullptr;
    bool started = ExecuteProgram(L"tavlaunchprobe.exe", L"", SW_SHOWNOACTIVATE, false, &process);
    SetCurrentDirectoryW(previous);
    ASSERT_TRUE(started);
    tavtest::RunningProgram program(process, GetProcessId(process));
    ASSERT_TRUE(report.Wait());
    EXPECT_TRUE(SamePath(report.Field("cwd"), folder)) << tavtest::Narrow(report.Field("cwd"));
}

TEST(ExecuteProgram, ShortcutIgnoresParametersAndShowCommand) {
    ProbeReport report;
    std::wstring link = report.dir() / L"probe.lnk";
    ASSERT_TRUE(MakeShortcut(link, L"--from-link"));
    HANDLE process = kUntouched;
    ASSERT_TRUE(ExecuteProgram(link, L" --ignored", SW_HIDE, false, &process));
    EXPECT_EQ(process, nullptr);
    ASSERT_TRUE(report.Wait());
    EXPECT_TRUE(Contains(report.Field("cmdline"), L"--from-link"));
    EXPECT_FALSE(Contains(report.Field("cmdline"), L"--ignored"));
    EXPECT_NE(report.Field("show"), L"0");
}

TEST(ExecuteProgram, LnkAnywhereInTheTextTakesTheShortcutPath) {
    ProbeReport report;
    std::wstring folder = report.dir() / L"tools.LnK";
    ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
    std::wstring copy = folder + L"\\tavlaunchprobe.exe";
    ASSERT_TRUE(launchtest::CopyProbeTo(copy));
    HANDLE process = kUntouched;
    ASSERT_TRUE(ExecuteProgram(copy, L" --ignored", SW_HIDE, false, &process));
    EXPECT_EQ(process, nullptr);
    ASSERT_TRUE(report.Wait());
    EXPECT_FALSE(Contains(report.Field("cmdline"), L"--ignored"));
    EXPECT_EQ(report.Field("show"), L"1");  // SW_SHOWNORMAL, not the SW_HIDE asked for
}

TEST(ExecuteProgram, MissingShortcutFails) {
    ProbeReport report;
    HANDLE process = kUntouched;
    EXPECT_FALSE(ExecuteProgram(report.dir() / L"missing.lnk", L"", SW_SHOWNORMAL, false, &process));
    EXPECT_EQ(process, nullptr);
}

TEST(ExecuteProgram, ForegroundGoesToTheDesktopDuringTheLaunchAndComesBack) {
    ProbeReport report;
    FrontWindow front;
    ASSERT_TRUE(front.IsForeground());
    HANDLE process = nullptr;
    ASSERT_TRUE(ExecuteProgram(ProbePath(), L"", SW_SHOWNOACTIVATE, false, &process));
    EXPECT_TRUE(front.IsForeground());
    EXPECT_GE(front.Deactivations(), 1);  // it lost the activation to the desktop while the shell ran
    tavtest::RunningProgram probe(process, GetProcessId(process));
    ASSERT_TRUE(report.Wait());
}

// The shell launch lifts the foreground lock with a grabber (whose Alt tap reaches the foreground window)
// only where desktop composition is unknown, that is, where "dwmapi.dll" cannot be loaded.
int AltPressesDuringShellLaunch() {
    ProbeReport report;
    FrontWindow front;
    HANDLE process = nullptr;
    EXPECT_TRUE(ExecuteProgram(ProbePath(), L"", SW_SHOWNOACTIVATE, false, &process));
    tavtest::RunningProgram probe(process, GetProcessId(process));
    // Every key typed during the launch has arrived once a marker typed after it did.
    EXPECT_TRUE(tavtest::Settle(front.get()));
    return front.AltPresses();
}

TEST(ExecuteProgram, ShellLaunchWithCompositionMakesNoGrab) { EXPECT_EQ(AltPressesDuringShellLaunch(), 0); }

// Runs in a copy of the test executable in which "dwmapi.dll" cannot be loaded.
TEST(ExecuteProgram, DISABLED_ShellLaunchWithoutCompositionGrabs) {
    ASSERT_EQ(LoadLibraryW(L"dwmapi.dll"), nullptr);
    EXPECT_GE(AltPressesDuringShellLaunch(), 1);
}

TEST(ExecuteProgram, ShellLaunchWithoutCompositionGrabs) {
    tavtest::ChildResult child =
        tavtest::RunSelfAs({L"", {L"dwmapi"}, L""}, "ExecuteProgram.DISABLED_ShellLaunchWithoutCompositionGrabs");
    EXPECT_TRUE(tavtest::ChildPassed(child));
}

TEST(ExecuteProgram, WaitingLaunchLeavesTheProcessOutAlone) {
    ProbeReport report;
    FrontWindow front;
    HANDLE process = kUntouched;
    ASSERT_TRUE(ExecuteProgram(ProbePath(), L" --waited", SW_SHOWNORMAL, true, &process));
    EXPECT_EQ(process, kUntouched);
    ASSERT_TRUE(report.Wait());
    // Program text, one blank, then the parameters with their own blank; no quotes added.
    EXPECT_EQ(report.Field("cmdline"), ProbePath() + L"  --waited");
    EXPECT_TRUE(launchtest::ForegroundBelongsTo(report.Pid()));
}

TEST(ExecProgAndWaitForInit, StartsWaitsAndBringsTheWindowToFront) {
    ProbeReport report;
    FrontWindow front;
    ASSERT_TRUE(front.IsForeground());
    ASSERT_TRUE(ExecProgAndWaitForInit(ProbePath() + L" --init", SW_SHOWNORMAL));
    ASSERT_TRUE(report.Wait());
    EXPECT_TRUE(launchtest::ForegroundBelongsTo(report.Pid()));
    EXPECT_TRUE(SamePath(report.Field("cwd"), tavtest::BinDir()));
    EXPECT_EQ(report.Field("show"), L"1");
}

TEST(ExecProgAndWaitForInit, BackslashInTheArgumentsMovesTheWorkingFolder) {
    ProbeReport report;
    std::wstring copy = report.dir() / L"tavlaunchprobe.exe";
    ASSERT_TRUE(launchtest::CopyProbeTo(copy));
    std::wstring moved = copy + L" sub";
    ASSERT_TRUE(CreateDirectoryW(moved.c_str(), nullptr));
    ASSERT_TRUE(ExecProgAndWaitForInit(copy + L" sub\\", SW_SHOWNORMAL));
    ASSERT_TRUE(report.Wait());
    EXPECT_TRUE(SamePath(report.Field("cwd"), moved)) << tavtest::Narrow(report.Field("cwd"));
    // A folder part that does not exist makes the start fail.
    report.Clear();
    EXPECT_FALSE(ExecProgAndWaitForInit(copy + L" missing\\", SW_SHOWNORMAL));
    EXPECT_FALSE(report.Wait(500));
}

TEST(ExecProgAndWaitForInit, ProgramThatNeverBecomesReadyGivesFalseAndKeepsRunning) {
    ProbeReport report;
    EXPECT_FALSE(ExecProgAndWaitForInit(ProbePath() + L" --busy", SW_SHOWNORMAL));
    ASSERT_TRUE(report.Wait());
    ExpectStillRunning(report.Pid());
}

TEST(ExecProgAndWaitForInit, ReadyProgramWithoutAWindowIsStillASuccess) {
    // Ready for input but no top-level window to bring forward: the three searches find nothing and the
    // launch is reported as done all the same.
    ProbeReport report;
    FrontWindow front;
    ASSERT_TRUE(front.IsForeground());
    EXPECT_TRUE(ExecProgAndWaitForInit(ProbePath() + L" --nowindow", SW_SHOWNORMAL));
    ASSERT_TRUE(report.Wait());
    ExpectStillRunning(report.Pid());
}

TEST(ExecProgAndWaitForInit, MissingProgramFails) {
    ProbeReport report;
    EXPECT_FALSE(ExecProgAndWaitForInit(report.dir() / L"missing.exe", SW_SHOWNORMAL));
}

TEST(BringProcessToForeground, BringsTheWindowOfARunningProcess) {
    tavtest::RunningProgram probe;
    ASSERT_TRUE(probe.Start(L"\"" + ProbePath() + L"\""));
    const HWND probeWindow = probe.WaitForWindow(L"TavLaunchProbe");
    ASSERT_NE(probeWindow, nullptr);
    FrontWindow front;
    ASSERT_TRUE(front.IsForeground());
    // The probe has met the loss of its focus before the foreground goes back to it.
    ASSERT_TRUE(launchtest::CatchUp(probeWindow));
    EXPECT_TRUE(BringProcessToForeground(probe.id(), probe.handle()));
    EXPECT_TRUE(launchtest::ForegroundBelongsTo(probe.id()));

    ASSERT_TRUE(front.BringToFront());
    ASSERT_TRUE(launchtest::CatchUp(probeWindow));
    EXPECT_TRUE(BringProcessToForeground(probe.id(), nullptr));
    EXPECT_TRUE(launchtest::ForegroundBelongsTo(probe.id()));
}

TEST(BringProcessToForeground, EndedProcessGivesFalse) {
    tavtest::RunningProgram probe;
    ASSERT_TRUE(probe.Start(L"\"" + ProbePath() + L"\""));
    ASSERT_NE(probe.WaitForWindow(L"TavLaunchProbe"), nullptr);
    ASSERT_TRUE(TerminateProcess(probe.handle(), 0));
    ASSERT_EQ(WaitForSingleObject(probe.handle(), 5000), static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_FALSE(BringProcessToForeground(probe.id(), probe.handle()));
}

TEST(BringProcessToForeground, EndedHandleGivesFalseBeforeAnySearch) {
    // The handle is looked at first: an ended process answers false even when the process id names a
    // running process with a window, which is then left behind the test's window.
    tavtest::RunningProgram ended;
    ASSERT_TRUE(ended.Start(L"\"" + ProbePath() + L"\" --busy"));
    ASSERT_TRUE(TerminateProcess(ended.handle(), 0));
    ASSERT_EQ(WaitForSingleObject(ended.handle(), 5000), static_cast<DWORD>(WAIT_OBJECT_0));
    tavtest::RunningProgram live;
    ASSERT_TRUE(live.Start(L"\"" + ProbePath() + L"\""));
    const HWND liveWindow = live.WaitForWindow(L"TavLaunchProbe");
    ASSERT_NE(liveWindow, nullptr);
    FrontWindow front;
    ASSERT_TRUE(front.IsForeground());
    EXPECT_FALSE(BringProcessToForeground(live.id(), ended.handle()));
    // A foreground change to the probe's window, had there been one, is complete once its thread answers.
    EXPECT_TRUE(tavtest::SyncWithThreadOf(liveWindow));
    tavtest::PumpMessages();
    EXPECT_TRUE(front.IsForeground());
}

TEST(BringProcessToForeground, ProcessWithoutWindowGivesFalse) {
    ProbeReport report;
    tavtest::RunningProgram probe;
    ASSERT_TRUE(probe.Start(L"\"" + ProbePath() + L"\" --busy"));
    ASSERT_TRUE(report.Wait());
    EXPECT_FALSE(BringProcessToForeground(probe.id(), probe.handle()));
    EXPECT_FALSE(probe.HasEnded());
}

}  // namespace
