// Internals of keystroke synthesis shared between the parser, the command words and the player.
#pragma once

#include "keys/KeyState.h"
#include "keys/SendKeys.h"

#include <windows.h>

namespace tav::keys::detail {

// The player's state between two key events.
struct PlayerState {
    WORD currentKey = 0;       // the entry being played, 0 when none
    bool keyUpPending = false;  // an ordinary current key still owes its key-up
    bool shift = false;         // the four modifier toggles: a modifier entry presses when its toggle
    bool control = false;       // turns on and releases when it turns off
    bool alt = false;
    bool windows = false;
    bool keySinceAlt = false;  // an ordinary key went by since Alt went down (kept for hosts; unread)
    bool hold = false;         // hold mode: survives runs on purpose
};

// The process-wide state of keystroke synthesis, defined together in KeyState.cpp.
struct KeyState {
    KeyQueue queue;                    // written by the parser only, read by the player only
    HoldList holdList;                 // written by the player and SendKeys_ReleaseAll only
    PlayerState player;                // the player only; reset per run except `hold`
    const wchar_t* cursor = nullptr;  // the parser's position in the script being parsed
    ULONG_PTR inProgress = 0;          // set by hosts, cleared by a run, read by SendKeys
};
KeyState& State();

// Carries out the command words of `script` for the foreground window: SKERR_COMMANDDONE when one ran,
// SKERR_MENUFAILED when a {Menu failed, SKERR_NONE when the script holds none.
SKERR CarryOutCommandWords(const wchar_t* script);

// Resets the player's per-run state (everything but hold mode and the hold list) and rewinds the queue.
void ResetPlayer();
// Plays one key event: true while events remain, false when the queue is exhausted.
bool PlayOneEvent();

}  // namespace tav::keys::detail
