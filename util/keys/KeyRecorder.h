// Recording a keystroke script by typing it: a low-level keyboard hook collects what the user types, and the
// recorder writes it as the script a person would write for it ("Hello~", "^(ac)", "{TAB 3}").
//
// The hook lives on the thread that makes the recorder, and that thread must pump messages while the user
// types (a host's UI thread does): the system calls the hook from that thread's message waits. The library
// starts no thread of its own. The hook only stores the event; the script is written when asked for.
#pragma once

#include "../platform/Export.h"

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

namespace tav::keys {

// One key event as the recorder keeps it.
struct RecordedKey {
    WORD vk = 0;            // the virtual key; VK_PACKET for a Unicode event, whose unit is in `unit`
    WORD unit = 0;          // the UTF-16 unit of a VK_PACKET event (0 for other keys)
    bool up = false;        // a key-up
    bool injected = false;  // made by a program (SendInput, keybd_event), not by a keyboard
    DWORD time = 0;         // the event's time stamp, in milliseconds
};

// The modifiers held, as bits: the shift-state bits of VkKeyScanW (Shift 1, Control 2, Alt 4) and the
// Windows key (8).
enum RecordedModifier : unsigned { kRecordShift = 1, kRecordControl = 2, kRecordAlt = 4, kRecordWindows = 8 };

// A script made of key events, and how many key presses it could not express.
struct RecordedScript {
    std::wstring script;
    size_t skipped = 0;
};

// The script for `keys`, with the modifiers in `heldAtStart` (RecordedModifier bits) already down. The
// shortest natural form: characters as themselves with Shift folded in ("A", "!"), the language's own
// characters in braces as SendKeysRemoveSpecialChars writes them, named keys as {NAME} and runs of one as
// {NAME n}, Enter as ~, a modifier over several keys as a prefix and a group (^(ac)). A key with neither a
// name nor a character, and a modifier pressed and released alone, are left out and counted.
TAVUTIL_API RecordedScript ScriptFromKeys(const std::vector<RecordedKey>& keys, unsigned heldAtStart = 0);

class TAVUTIL_API KeyRecorder {
public:
    // Leave out events a program made (the library's own typing included).
    static constexpr DWORD kIgnoreInjected = 0x1;
    static constexpr DWORD kKnownFlags = kIgnoreInjected;

    // Starts recording on the calling thread. IsRecording() says whether the hook could be set.
    explicit KeyRecorder(DWORD flags = 0);
    ~KeyRecorder();
    KeyRecorder(const KeyRecorder&) = delete;
    KeyRecorder& operator=(const KeyRecorder&) = delete;

    bool IsRecording() const { return recording_; }
    // Why the hook could not be set (GetLastError of SetWindowsHookExW); 0 while recording.
    DWORD HookError() const { return hookError_; }

    // The script of what was typed so far, and the presses it leaves out. Call on the recording thread.
    RecordedScript Recorded() const { return ScriptFromKeys(keys_, heldAtStart_); }
    std::wstring Script() const { return Recorded().script; }
    size_t Skipped() const { return Recorded().skipped; }
    // The modifiers (RecordedModifier bits) that were down when recording began.
    unsigned HeldAtStart() const { return heldAtStart_; }
    // The events kept so far, in order.
    const std::vector<RecordedKey>& Keys() const { return keys_; }

    // What the hook does with one event (WM_KEYDOWN, WM_KEYUP, WM_SYSKEYDOWN or WM_SYSKEYUP). Public for
    // the benchmark of the hook's cost; the hook is the only other caller.
    void Take(WPARAM message, const KBDLLHOOKSTRUCT& event);

private:
    DWORD flags_;
    unsigned heldAtStart_ = 0;
    bool recording_ = false;
    DWORD hookError_ = 0;
    std::vector<RecordedKey> keys_;
};

}  // namespace tav::keys
