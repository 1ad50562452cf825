// Options of the typing calls: pacing, how long each key stays down, and what to do about modifier keys a
// person still holds when typing starts. A host that types when the user presses Ctrl+Alt+K is called while
// Ctrl and Alt are still down under the user's fingers: without an option every typed key would reach the
// target as a Ctrl+Alt shortcut. SendKeys, SendText and their paced forms stay as they are; the paced forms
// are these calls with only keyDelayMs set.
#pragma once

#include "../platform/Export.h"
#include "SendKeys.h"

#include <windows.h>

namespace tav::keys {

// Bits of SendOptions::flags.
enum SendFlag : DWORD {
    // Before the first event, wait (handling the calling thread's messages) until no modifier key (Shift,
    // Control, Alt, Windows, left or right) is down, at most waitReleaseMs. When the time runs out, typing goes
    // ahead: with kSendReleaseModifiers as that flag says, without it as it is.
    kSendWaitForRelease = 0x1,
    // Modifiers that are down when typing starts, and that the library does not hold itself (the hold list of
    // '['), are released before the first key; when typing ends, each of them that the user still holds is
    // pressed again, and none that the user let go of meanwhile. While it types, a low-level keyboard hook on
    // the calling thread follows the user's own key events and the calling thread's messages are handled
    // between key events.
    kSendReleaseModifiers = 0x2,
};
// Every flag the calls know; other bits are refused.
constexpr DWORD kSendKnownFlags = kSendWaitForRelease | kSendReleaseModifiers;

struct SendOptions {
    DWORD flags = 0;          // SendFlag bits
    DWORD keyDelayMs = 0;     // pause before every key event but the first (as the paced forms)
    DWORD keyHoldMs = 0;      // least time each key stays down before its key-up (0: none)
    DWORD waitReleaseMs = 0;  // with kSendWaitForRelease: the longest wait
    // All zero: the plain call, which sends exactly the events of SendKeys or SendText.
    bool Plain() const { return flags == 0 && keyDelayMs == 0 && keyHoldMs == 0 && waitReleaseMs == 0; }
};

}  // namespace tav::keys

// SendKeys with options. Results as SendKeys; a run refused as busy waits for nothing and releases nothing.
// Throws std::invalid_argument for flag bits outside kSendKnownFlags.
TAVUTIL_API SKERR SendKeysEx(const wchar_t* script, const tav::keys::SendOptions& options);

// SendText with options. Results as SendText. Throws std::invalid_argument for flag bits outside
// kSendKnownFlags.
TAVUTIL_API SKERR SendTextEx(const wchar_t* text, const tav::keys::SendOptions& options);
