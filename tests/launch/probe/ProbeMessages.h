// The messages that tavlaunchprobe.exe answers, shared by the probe and the tests that start it.
#pragma once

#include <windows.h>

namespace launchprobe {

// Sent to the probe's window: the probe handles the display server's events that have reached it, without
// waiting for more, and answers kCaughtUp. Under Wine the loss of the X input focus is such an event: a
// probe that meets it only after the foreground has been given back to it hands the foreground to the
// desktop, so a test sends this before it gives the foreground back.
constexpr UINT kCatchUpMessage = WM_APP + 1;
constexpr LRESULT kCaughtUp = 0x7A11;

}  // namespace launchprobe
