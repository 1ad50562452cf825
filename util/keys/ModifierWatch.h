// The modifier keys a person holds, and a watch that follows them while the library types. SendKeysEx and
// SendTextEx use it for kSendReleaseModifiers (keys/SendOptions.h); it is public for hosts that want to know
// what the user holds before they type, and so that the cost of its hook can be measured.
#pragma once

#include "../platform/Export.h"

#include <windows.h>

namespace tav::keys {

// The eight modifier keys, by side: bit i of a modifier set stands for kSidedModifiers[i].
constexpr int kModifierCount = 8;
constexpr WORD kSidedModifiers[kModifierCount] = {VK_LSHIFT, VK_RSHIFT, VK_LCONTROL, VK_RCONTROL,
                                                  VK_LMENU,  VK_RMENU,  VK_LWIN,     VK_RWIN};
using ModifierSet = unsigned;

// The bit of a virtual key in a modifier set, 0 for a key that is no modifier. An unsided code (VK_SHIFT,
// VK_CONTROL, VK_MENU) is its left key unless `right` says it is the right one.
TAVUTIL_API ModifierSet ModifierBit(WORD virtualKey, bool right = false);

// The modifiers the system reports down now (GetAsyncKeyState of each sided key).
TAVUTIL_API ModifierSet ModifiersDown();

// While it lives, a low-level keyboard hook of the calling thread follows every key event of the eight
// modifiers: which are logically down (the last event of each, whoever made it) and which the user holds (the
// last event that the library did not send itself). The hook is called only while the calling thread handles
// messages (Pump, or any message loop of its own); every key the user presses meanwhile waits for it, so its
// callback only notes the event. One watch at a time in a process: a second one is inactive.
class TAVUTIL_API ModifierWatch {
public:
    // `held`: the modifiers down when the watch starts, taken as held by the user.
    explicit ModifierWatch(ModifierSet held);
    ~ModifierWatch();
    ModifierWatch(const ModifierWatch&) = delete;
    ModifierWatch& operator=(const ModifierWatch&) = delete;

    // False when the hook could not be installed or another watch is active.
    bool Active() const { return hook_ != nullptr; }
    // Handles the calling thread's messages that are waiting (the hook's calls among them); a WM_QUIT is
    // left in the queue for the caller's own loop.
    static void Pump();
    // The library sends key events of its own between these two calls: injected events seen meanwhile are not
    // the user's.
    void BeginOwnEvents() { ownEvents_ = true; }
    void EndOwnEvents() { ownEvents_ = false; }

    ModifierSet UserHeld() const { return userHeld_; }
    ModifierSet LogicallyDown() const { return logicallyDown_; }
    // Key events the hook has seen.
    unsigned long Events() const { return events_; }

    // The hook procedure, public so that its cost per event can be measured by calling it directly.
    static LRESULT CALLBACK Callback(int code, WPARAM wParam, LPARAM lParam);
    // What the hook does with one event before it hands the event on. Public for the benchmark of the hook's
    // own work; the hook is the only other caller.
    void Note(const KBDLLHOOKSTRUCT& event);

private:
    HHOOK hook_ = nullptr;
    bool ownEvents_ = false;
    ModifierSet userHeld_ = 0;
    ModifierSet logicallyDown_ = 0;
    unsigned long events_ = 0;
};

}  // namespace tav::keys
