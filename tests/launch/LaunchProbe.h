// The launch tests' view of tavlaunchprobe.exe: where it is, the report it writes at start-up, and the end of
// every probe a test started (by the process id in its report), whatever the test's outcome.
#pragma once

#include "Desktop.h"
#include "RunningProgram.h"
#include "TestSupport.h"
#include "TestWindow.h"
#include "probe/ProbeMessages.h"

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace launchtest {

// The probe program beside the test executable.
std::wstring ProbePath();

// Copies the probe to `path` (a folder of the test's own); true on success.
bool CopyProbeTo(const std::wstring& path);

// While it lives, probes started by this process write their report to a file of its temporary folder.
class ProbeReport {
public:
    ProbeReport();
    ~ProbeReport();  // ends every probe that reported
    ProbeReport(const ProbeReport&) = delete;
    ProbeReport& operator=(const ProbeReport&) = delete;

    // Waits up to `timeoutMs` for a probe's report; true when it came. The fields are then readable.
    bool Wait(DWORD timeoutMs = tavtest::kWaitMs);
    // A field of the report: pid, cwd, cmdline, foreground, show.
    std::wstring Field(const std::string& name) const;
    DWORD Pid() const;
    // Removes the report so that the next start can be awaited.
    void Clear();
    // Starts folder of the test's own (removed with the object).
    const tavtest::TempDir& dir() const { return dir_; }

private:
    // Reads the report when it is there; true then.
    bool Read();

    tavtest::TempDir dir_{L"tavprobe"};
    std::wstring reportPath_;
    std::map<std::string, std::wstring> fields_;
    std::vector<std::unique_ptr<tavtest::RunningProgram>> started_;
};

// A visible window of the test, made the foreground window and focus; destroyed with the object. It counts
// the times it lost the activation and the Alt key presses it received.
class FrontWindow {
public:
    FrontWindow();
    FrontWindow(FrontWindow&&) = delete;  // the window's handler counts into this object
    HWND get() const { return window_.hwnd(); }
    bool IsForeground() const { return window_.InFront(); }
    // Makes it the foreground window again (handling this thread's messages meanwhile).
    bool BringToFront() const { return tavtest::BringToFront(window_.hwnd()); }
    int Deactivations() const { return deactivations_; }
    int AltPresses() const { return altPresses_; }

private:
    int deactivations_ = 0;
    int altPresses_ = 0;
    tavtest::TestWindow window_;  // declared last: it goes before the counts its handler writes
};

// Has the probe whose window is `window` handle the display server's events that have reached it (see
// launchprobe::kCatchUpMessage): true when it answered.
bool CatchUp(HWND window);

// Whether the foreground window belongs to process `processId`.
bool ForegroundBelongsTo(DWORD processId);

}  // namespace launchtest
