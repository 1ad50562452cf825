// The search for a process's top-level window and its activation, shared by the launcher that waits for a
// new program and by the call that brings a running process to the front.
#pragma once

#include <windows.h>

namespace tav::launch::detail {

// Brings the first top-level window that EnumWindows yields for `processId` (or its last active pop-up) to
// the foreground. False when the process has no top-level window.
bool BringFirstWindowToFront(DWORD processId);

}  // namespace tav::launch::detail
