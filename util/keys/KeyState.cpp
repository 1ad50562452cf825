// The one place where the process-wide state of keystroke synthesis lives: the key queue (6144 entries),
// the hold list (200 keys), the player's state, the parse cursor and the in-progress marker. It is made on
// first use, unguarded, and used from one thread at a time (see SendKeys.h). Who touches what is
// written beside each member of detail::KeyState.
#include "keys/KeyState.h"

#include "keys/detail/KeysInternal.h"

namespace tav::keys {

namespace detail {
KeyState& State() {
    static KeyState state;
    return state;
}
}  // namespace detail

KeyQueue& TheKeyQueue() { return detail::State().queue; }
HoldList& TheHoldList() { return detail::State().holdList; }
bool IsHoldModeOn() { return detail::State().player.hold; }

}  // namespace tav::keys

void SendKeys_SetInProgress(ULONG_PTR marker) { tav::keys::detail::State().inProgress = marker; }
void SendKeys_ClearInProgress() { tav::keys::detail::State().inProgress = 0; }
ULONG_PTR SendKeys_InProgress() { return tav::keys::detail::State().inProgress; }
