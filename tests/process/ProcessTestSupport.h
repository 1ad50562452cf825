// Fixtures of the process tests: programs started and stopped by the test, and the truth about a process
// read independently of the library.
#pragma once

#include "Desktop.h"
#include "TestSupport.h"

#include <platform/Handles.h>

#include <windows.h>

#include <string>
#include <vector>

namespace proctest {

// A program started by the test, terminated (if still running) with the object.
class StartedProgram {
public:
    // `application` may be empty (then the command line names the program).
    StartedProgram(const std::wstring& application, const std::wstring& commandLine);
    ~StartedProgram();
    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;

    bool started() const { return process_.valid(); }
    DWORD pid() const { return pid_; }
    // The first visible top-level window of the process with that class, polled for up to `timeoutMs`.
    HWND WaitForWindow(const wchar_t* windowClass, DWORD timeoutMs = tavtest::kWaitMs) const;

private:
    tav::UniqueHandle process_;
    DWORD pid_ = 0;
};

// Full path of the process's executable as QueryFullProcessImageNameW reports it; empty on failure.
std::wstring ImagePath(DWORD pid);
// The part after the last backslash.
std::wstring FileNameOf(const std::wstring& path);
// Module names of the process, read with a Toolhelp module snapshot of its own.
std::vector<std::wstring> ModuleNamesOf(DWORD pid);
// Process IDs in the order EnumProcesses returns them.
std::vector<DWORD> ProcessIds();

}  // namespace proctest
