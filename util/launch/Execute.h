// Program execution: starting the program or document a user bound to a button or key, through the shell
// or by creating the process and waiting for it to be ready, and bringing a running process to the front.
#pragma once

#include "../platform/Export.h"
#include "../strings/StdStr.h"

#include <windows.h>

// Splits `commandLine` with ExtractProgram and starts it as the five-argument form does. False for an
// empty line.
TAVUTIL_API bool ExecuteProgram(const CStdStr<wchar_t>& commandLine, unsigned int showCmd, bool wait,
                                HANDLE* processOut);

// Starts `program` (%VARIABLES% expanded) with `parameters`. With `wait`, the process is created and waited
// for as ExecProgAndWaitForInit does and `processOut` is not written. Otherwise the shell opens it while the
// desktop holds the foreground, and the previously foreground window gets it back afterwards; a program text
// containing ".lnk" anywhere (any case) is opened as a shortcut, without `parameters` and with SW_SHOWNORMAL.
// `processOut` (may be null) receives the new process's handle, which the caller closes; it is null after a
// shortcut or a failure.
TAVUTIL_API bool ExecuteProgram(const CStdStr<wchar_t>& program, const CStdStr<wchar_t>& parameters,
                                unsigned int showCmd, bool wait, HANDLE* processOut);

// Creates the process of `commandLine` (its current folder: the folder part of the whole line), waits up to
// 5 s for it to become ready for input and brings its window to the front. False when it cannot be started
// or does not become ready in time (it is then left running).
TAVUTIL_API bool ExecProgAndWaitForInit(const CStdStr<wchar_t>& commandLine, unsigned int showCmd);

// Brings a window of process `processId` to the front, trying three times a second apart. False at once
// when `process` (may be null) has ended, and when no window was found.
TAVUTIL_API bool BringProcessToForeground(DWORD processId, HANDLE process);
