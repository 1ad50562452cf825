// The player: the key queue becomes keyboard events, one per call, with hold mode and the hold list.
// Also SendKeys_ReleaseAll, which releases what hold mode left pressed.
#include "keys/KeyStages.h"
#include "keys/SendKeys.h"

#include "keys/detail/KeysInternal.h"

namespace tav::keys::detail {

namespace {

bool IsScriptModifier(WORD code) {
    return code == VK_SHIFT || code == VK_CONTROL || code == VK_MENU || code == VK_LWIN;
}

// Every modifier key code, the sided ones included: in hold mode a held modifier is not pressed twice.
bool IsModifierKey(WORD code) {
    return IsScriptModifier(code) || code == VK_RWIN || (code >= VK_LSHIFT && code <= VK_RMENU);
}

// One keyboard event for the low byte of `code`; extended when the key's scan code says so.
void SendKeyEvent(WORD code, bool keyUp) {
    UINT scan = MapVirtualKeyW(code, 0);
    DWORD flags = keyUp ? KEYEVENTF_KEYUP : 0;
    if ((scan & 0x80) != 0)
        flags |= KEYEVENTF_EXTENDEDKEY;
    keybd_event(LOBYTE(code), static_cast<BYTE>(scan), flags, 0);
}

// Flips the toggle of a modifier entry; true when the modifier is now pressed.
bool ToggleModifier(PlayerState& player, WORD code) {
    bool* toggle = code == VK_SHIFT     ? &player.shift
                   : code == VK_CONTROL ? &player.control
                   : code == VK_MENU    ? &player.alt
                                        : &player.windows;
    *toggle = !*toggle;
    return *toggle;
}

// Hold mode: releases are dropped, and each key is pressed once and listed for SendKeys_ReleaseAll.
// A key that finds the list full is not pressed at all (the list holds 200): a key this library pressed
// and could not release would stay down for good.
bool ShouldSendInHoldMode(HoldList& holdList, WORD code, bool keyUp) {
    if (keyUp)
        return false;
    if (holdList.Contains(code))
        return !IsModifierKey(code);
    return holdList.Add(code);
}

}  // namespace

void ResetPlayer() {
    KeyState& state = State();
    bool hold = state.player.hold;
    state.player = PlayerState{};
    state.player.hold = hold;
    state.queue.Rewind();
}

bool PlayOneEvent(EventPacer& pacer) {
    KeyState& state = State();
    PlayerState& player = state.player;
    WORD code = 0;
    bool keyUp = false;
    if (player.currentKey == 0 || IsScriptModifier(player.currentKey) || !player.keyUpPending) {
        if (!state.queue.Next(code))
            return false;
        player.currentKey = code;
        if (IsScriptModifier(code)) {
            keyUp = !ToggleModifier(player, code);
            if (code == VK_MENU && !keyUp)
                player.keySinceAlt = false;
        } else {
            player.keyUpPending = true;
            player.keySinceAlt = true;
        }
    } else {
        code = player.currentKey;
        keyUp = true;
        player.currentKey = 0;
        player.keySinceAlt = true;
    }
    if (code == kBeginHold || code == kEndHold) {
        player.hold = code == kBeginHold;
        return true;
    }
    if (player.hold && !ShouldSendInHoldMode(state.holdList, code, keyUp))
        return true;
    pacer.BeforeEvent(LOBYTE(code), keyUp);
    SendKeyEvent(code, keyUp);
    pacer.AfterEvent(LOBYTE(code), keyUp);
    return true;
}

void PlayQueue(EventPacer& pacer) {
    ResetPlayer();
    while (PlayOneEvent(pacer)) {
    }
}

}  // namespace tav::keys::detail

namespace tav::keys {

void PlayKeyQueue() { PlayKeyQueue(0); }

void PlayKeyQueue(DWORD perEventDelayMs) {
    detail::EventPacer pacer(perEventDelayMs);
    detail::PlayQueue(pacer);
}

}  // namespace tav::keys

void SendKeys_ReleaseAll() {
    WORD code = 0;
    while (tav::keys::detail::State().holdList.TakeLast(code))
        tav::keys::detail::SendKeyEvent(code, true);
}
