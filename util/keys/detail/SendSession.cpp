// Typing calls with options: pacing and hold time of each event, and the modifiers a person still holds.
#include "keys/detail/SendSession.h"

#include <stdexcept>

namespace tav::keys::detail {

namespace {

double MillisecondsSince(const LARGE_INTEGER& start) {
    LARGE_INTEGER now, frequency;
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(now.QuadPart - start.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}

// Handles the calling thread's messages for `ms` milliseconds (the hook's calls among them), waking as soon
// as one arrives.
void PumpFor(DWORD ms) {
    LARGE_INTEGER start;
    QueryPerformanceCounter(&start);
    for (;;) {
        ModifierWatch::Pump();
        const double elapsed = MillisecondsSince(start);
        if (elapsed >= ms)
            return;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(ms - elapsed) + 1, QS_ALLINPUT);
    }
}

// The modifiers the library holds itself (the hold list of '['): not the user's to release. An unsided
// entry holds both sides, as far as anyone can tell.
ModifierSet HeldByLibrary() {
    const HoldList& list = State().holdList;
    ModifierSet held = 0;
    for (int i = 0; i < list.Count(); ++i) {
        const WORD code = list.At(i);
        held |= ModifierBit(code, false);
        if (code == VK_SHIFT || code == VK_CONTROL || code == VK_MENU)
            held |= ModifierBit(code, true);
    }
    return held;
}

// Waits, handling messages, until no modifier is down; false when `timeoutMs` ran out first.
bool WaitForNoModifier(DWORD timeoutMs) {
    const DWORD start = GetTickCount();
    for (;;) {
        ModifierWatch::Pump();
        if (ModifiersDown() == 0)
            return true;
        const DWORD elapsed = GetTickCount() - start;
        if (elapsed >= timeoutMs)
            return false;
        // A key event wakes the wait at once; the state is read again at least every 10 ms.
        MsgWaitForMultipleObjects(0, nullptr, FALSE, timeoutMs - elapsed < 10 ? timeoutMs - elapsed : 10, QS_ALLINPUT);
    }
}

// The scan code each sided modifier has on a keyboard (set 1), and whether it is an extended key.
struct ModifierScan {
    WORD scan;
    bool extended;
};
constexpr ModifierScan kModifierScans[kModifierCount] = {{0x2A, false}, {0x36, false}, {0x1D, false}, {0x1D, true},
                                                         {0x38, false}, {0x38, true},  {0x5B, true},  {0x5C, true}};

}  // namespace

void CheckSendOptions(const SendOptions& options) {
    if ((options.flags & ~kSendKnownFlags) != 0)
        throw std::invalid_argument("unknown send flags");
}

void EventPacer::Wait(DWORD ms) {
    if (watch_ != nullptr)
        PumpFor(ms);
    else
        Sleep(ms);
}

void EventPacer::BeforeEvent(DWORD key, bool keyUp) {
    if (delayMs_ != 0 && sentOne_)
        Wait(delayMs_);
    sentOne_ = true;
    if (holdMs_ != 0 && keyUp) {
        for (const Press& press : presses_) {
            if (press.key != key || press.at.QuadPart == 0)
                continue;
            // The tick count is what the target's message times show: both clocks must have moved on.
            const double held = MillisecondsSince(press.at);
            if (held < holdMs_ + 1.0)
                Wait(static_cast<DWORD>(holdMs_ + 1.0 - held) + 1);
            break;
        }
    }
    if (watch_ != nullptr)
        watch_->BeginOwnEvents();
}

void EventPacer::AfterEvent(DWORD key, bool keyUp) {
    if (holdMs_ != 0) {
        for (Press& press : presses_)
            if (press.key == key)
                press.at.QuadPart = 0;  // one entry per key: the newest
        if (!keyUp) {
            presses_[nextPress_].key = key;
            QueryPerformanceCounter(&presses_[nextPress_].at);
            nextPress_ = (nextPress_ + 1) % 8;
        }
    }
    if (watch_ != nullptr) {
        watch_->EndOwnEvents();
        ModifierWatch::Pump();
    }
}

SendSession::SendSession(const SendOptions& options) : pacer_(options.keyDelayMs, options.keyHoldMs, nullptr) {
    bool release = (options.flags & kSendReleaseModifiers) != 0;
    if ((options.flags & kSendWaitForRelease) != 0 && WaitForNoModifier(options.waitReleaseMs))
        release = false;  // nothing is held: typing goes ahead as the plain call
    if (!release || (ModifiersDown() & ~HeldByLibrary()) == 0)
        return;
    watch_ = std::make_unique<ModifierWatch>(ModifiersDown() & ~HeldByLibrary());
    if (!watch_->Active()) {
        // Nothing could follow the user's keys, so nothing could be put back as the user left it: the keys
        // stay as they are.
        watch_.reset();
        return;
    }
    ModifierWatch::Pump();
    // The hook first, then the state: a key let go of after this read is seen by the hook, and one let go of
    // before it (even between the read that made the watch and the hook's start, which no hook saw) reads up
    // here. Released and later put back, such a key would end up down although nobody holds it.
    released_ = watch_->UserHeld() & watch_->LogicallyDown() & ModifiersDown() & ~HeldByLibrary();
    SendModifiers(released_, true);
    pacer_ = EventPacer(options.keyDelayMs, options.keyHoldMs, watch_.get());
}

SendSession::~SendSession() {
    if (!watch_)
        return;
    ModifierWatch::Pump();  // the user's keys that are on their way
    SendModifiers(released_ & watch_->UserHeld() & ~watch_->LogicallyDown(), false);
    // A key let go of while it was being pressed again goes up again.
    ModifierWatch::Pump();
    SendModifiers(released_ & ~watch_->UserHeld() & watch_->LogicallyDown(), true);
}

void SendSession::SendModifiers(ModifierSet keys, bool keyUp) {
    if (keys == 0)
        return;
    INPUT inputs[kModifierCount] = {};
    UINT count = 0;
    for (int i = 0; i < kModifierCount; ++i) {
        if ((keys & (1u << i)) == 0)
            continue;
        INPUT& input = inputs[count++];
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = kSidedModifiers[i];
        input.ki.wScan = kModifierScans[i].scan;
        input.ki.dwFlags = (keyUp ? KEYEVENTF_KEYUP : 0) | (kModifierScans[i].extended ? KEYEVENTF_EXTENDEDKEY : 0);
    }
    watch_->BeginOwnEvents();
    SendInput(count, inputs, sizeof(INPUT));
    watch_->EndOwnEvents();
    ModifierWatch::Pump();
}

}  // namespace tav::keys::detail
