// One typing call with options (keys/SendOptions.h): the wait for the user to let go of the modifiers, their
// release before the first key and their return after the last, and the pacer the call's events go through.
#pragma once

#include "keys/SendOptions.h"
#include "keys/detail/KeysInternal.h"

#include <memory>

namespace tav::keys::detail {

// Refuses flag bits the calls do not know (std::invalid_argument).
void CheckSendOptions(const SendOptions& options);

// Made just before a call's first key event and ended just after its last one.
class SendSession {
public:
    // Waits (kSendWaitForRelease) and releases what the user holds (kSendReleaseModifiers).
    explicit SendSession(const SendOptions& options);
    // Presses again each released modifier that the user still holds.
    ~SendSession();
    SendSession(const SendSession&) = delete;
    SendSession& operator=(const SendSession&) = delete;

    EventPacer& Pacer() { return pacer_; }
    // The modifiers released before the first key.
    ModifierSet Released() const { return released_; }

private:
    void SendModifiers(ModifierSet keys, bool keyUp);

    std::unique_ptr<ModifierWatch> watch_;
    ModifierSet released_ = 0;
    EventPacer pacer_;
};

}  // namespace tav::keys::detail
