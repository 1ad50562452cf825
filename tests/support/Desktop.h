// Message pumping, waiting on a condition and the foreground window: what every test that drives windows
// shares. A test waits for what it expects with WaitUntil and a generous bound, never with a fixed pause:
// a loaded machine can be slow by seconds, and a passing test never waits for the bound.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace tavtest {

// The bound of a wait that is expected to end well.
constexpr DWORD kWaitMs = 10000;

// Handles the messages waiting in the calling thread's queue.
void PumpMessages();

// Handles the calling thread's messages for `ms` milliseconds. For a test that must show that something
// does not happen within a time; to wait for something, use WaitUntil.
void PumpFor(DWORD ms);

// Handles the calling thread's messages until `condition` holds or `timeoutMs` passed; the condition's last
// value. Wakes at once when a message arrives (typed keys reach a window as fast as it pumps) and polls the
// condition at least every millisecond otherwise.
bool WaitUntil(const std::function<bool()>& condition, DWORD timeoutMs = kWaitMs);

// Waits until whatever was posted to `window` or typed into this thread's windows before the call has been
// handled: posts a marker message to `window`, injects a marker key (F24), and handles this thread's
// messages until both markers came out of the queue (they are not dispatched). Messages and input are
// delivered in order, so a test that expects nothing to arrive can tell, however slow the machine, that
// nothing did. False when the markers did not arrive in time (input reaches only the foreground window).
bool Settle(HWND window, DWORD timeoutMs = kWaitMs);

// Waits until the thread of `window` (of any process) has handled every message sent to it before the call,
// a foreground change to one of its windows among them: sends it an empty message. False when it did not
// answer in time.
bool SyncWithThreadOf(HWND window, DWORD timeoutMs = kWaitMs);

// Shows `window`, makes it the foreground window and gives the focus to `focus` (a window of the calling
// thread; left as it is when null), repeating the request until it took; true when it did in time.
bool BringToFront(HWND window, HWND focus = nullptr, DWORD timeoutMs = kWaitMs);

// Top-level windows of process `processId` whose class is `className` (all classes when empty).
std::vector<HWND> TopLevelWindowsOf(DWORD processId, const std::wstring& className = L"");

}  // namespace tavtest
