// A program a test starts (Wine's notepad, a test program of the build), its top-level window once it shows
// one, and its end: the program is terminated when the object goes, whether the test passed or not.
#pragma once

#include "Desktop.h"
#include "TestSupport.h"
#include "platform/Handles.h"

#include <windows.h>

#include <string>
#include <vector>

namespace tavtest {

class RunningProgram {
public:
    RunningProgram() = default;
    // Adopts a process started elsewhere (the handle is closed, the process ended, on destruction).
    RunningProgram(HANDLE process, DWORD processId) : process_(process), processId_(processId) {}
    ~RunningProgram() { End(); }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    // Starts `commandLine` (StartProcess: a refused start is tried again, and reported); false when it cannot
    // be started, with the system's error code kept in startError().
    bool Start(const std::wstring& commandLine) {
        End();
        STARTUPINFOW startup = {};
        startup.cb = sizeof(startup);
        PROCESS_INFORMATION created = {};
        if (!StartProcess(commandLine, false, startup, nullptr, created)) {
            startError_ = GetLastError();
            return false;
        }
        startError_ = 0;
        tav::UniqueHandle thread(created.hThread);
        process_.reset(created.hProcess);
        processId_ = created.dwProcessId;
        return true;
    }

    // The first top-level window of class `className`, waiting up to `timeoutMs` for it to appear and for
    // its thread to answer: a window is listed as soon as it is made, and the program shows (and activates)
    // it afterwards, which would take the foreground from a window the test brought to the front meanwhile.
    HWND WaitForWindow(const std::wstring& className, DWORD timeoutMs = kWaitMs) const {
        HWND found = nullptr;
        WaitUntil(
            [&] {
                std::vector<HWND> windows = TopLevelWindowsOf(processId_, className);
                found = windows.empty() ? nullptr : windows.front();
                return found != nullptr;
            },
            timeoutMs);
        if (found != nullptr) {
            // Its thread can answer while it is still inside CreateWindowEx or ShowWindow (a thread that sends a
            // message to another thread answers what is sent to it meanwhile): seen once on a loaded machine,
            // where the test then brought the window forward before it was shown and the desktop ended up in
            // front. The program is done with both once it first waits for input.
            WaitForInputIdle(process_.get(), timeoutMs);
            SyncWithThreadOf(found, timeoutMs);
        }
        return found;
    }

    bool HasEnded() const { return !process_ || WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0; }

    void End() {
        if (process_ && WaitForSingleObject(process_.get(), 0) != WAIT_OBJECT_0) {
            TerminateProcess(process_.get(), 1);
            WaitForSingleObject(process_.get(), 5000);
        }
        process_.reset();
        processId_ = 0;
    }

    HANDLE handle() const { return process_.get(); }
    DWORD id() const { return processId_; }
    DWORD startError() const { return startError_; }

private:
    tav::UniqueHandle process_;
    DWORD processId_ = 0;
    DWORD startError_ = 0;
};

// Wine's notepad started in front: its main window and its Edit, or nulls when it did not come up.
struct FrontNotepad {
    RunningProgram program;
    HWND main = nullptr;
    HWND edit = nullptr;

    bool Start() {
        if (!program.Start(L"notepad.exe"))
            return false;
        main = program.WaitForWindow(L"Notepad");
        // The main window is listed before it has its Edit and before it shows.
        WaitUntil([&] {
            edit = main ? FindWindowExW(main, nullptr, L"Edit", nullptr) : nullptr;
            return edit != nullptr && IsWindowVisible(main);
        });
        return edit != nullptr && BringToFront(main);
    }
};

}  // namespace tavtest
