// A visible window of the soak in front that takes every key message itself: a lone Alt or F10 would
// otherwise open the system menu's modal loop, and Alt+F4 would close the window. In a second process
// started with kForegroundOption it keeps another process's window in front.
#pragma once

#include "TestWindow.h"

#include <windows.h>

namespace soak {

inline constexpr const wchar_t* kForegroundOption = L"--foreground-window";

tavtest::TestWindow KeySink();

// The second process: a KeySink in front until the process is ended. The exit code of the program.
int RunForegroundWindow();

}  // namespace soak
