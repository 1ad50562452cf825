// The modifier watch: a low-level keyboard hook of the calling thread that notes the modifier key events.
#include "keys/ModifierWatch.h"

#include "platform/detail/LibraryModule.h"

namespace tav::keys {

namespace {

// The watch whose hook is installed; set and cleared by the watch itself, read by the hook, which the system
// calls on the thread that installed it. One at a time (see the class).
ModifierWatch* g_activeWatch = nullptr;

}  // namespace

ModifierSet ModifierBit(WORD virtualKey, bool right) {
    switch (virtualKey) {
    case VK_SHIFT: return right ? 1u << 1 : 1u << 0;
    case VK_CONTROL: return right ? 1u << 3 : 1u << 2;
    case VK_MENU: return right ? 1u << 5 : 1u << 4;
    default: break;
    }
    for (int i = 0; i < kModifierCount; ++i)
        if (kSidedModifiers[i] == virtualKey)
            return 1u << i;
    return 0;
}

ModifierSet ModifiersDown() {
    ModifierSet down = 0;
    for (int i = 0; i < kModifierCount; ++i)
        if ((GetAsyncKeyState(kSidedModifiers[i]) & 0x8000) != 0)
            down |= 1u << i;
    return down;
}

ModifierWatch::ModifierWatch(ModifierSet held) : userHeld_(held), logicallyDown_(held) {
    if (g_activeWatch != nullptr)
        return;
    hook_ = SetWindowsHookExW(WH_KEYBOARD_LL, &ModifierWatch::Callback, tav::platform::detail::LibraryModule(), 0);
    if (hook_ != nullptr)
        g_activeWatch = this;
}

ModifierWatch::~ModifierWatch() {
    if (hook_ == nullptr)
        return;
    UnhookWindowsHookEx(hook_);
    g_activeWatch = nullptr;
}

void ModifierWatch::Pump() {
    MSG msg;
    // Peeking handles the hook's calls (they are sent, not posted); a WM_QUIT stays for the caller's loop.
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE) && msg.message != WM_QUIT) {
        if (!PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
            break;
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

// Runs for every key event on the desktop while a watch lives, and every key the user types waits for it:
// nothing here but a few comparisons.
LRESULT CALLBACK ModifierWatch::Callback(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION && g_activeWatch != nullptr)
        g_activeWatch->Note(*reinterpret_cast<const KBDLLHOOKSTRUCT*>(lParam));
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void ModifierWatch::Note(const KBDLLHOOKSTRUCT& event) {
    ++events_;
    const bool right = (event.flags & LLKHF_EXTENDED) != 0 || event.scanCode == 0x36;
    const ModifierSet bit = ModifierBit(static_cast<WORD>(event.vkCode), right);
    if (bit == 0)
        return;
    const bool up = (event.flags & LLKHF_UP) != 0;
    logicallyDown_ = up ? logicallyDown_ & ~bit : logicallyDown_ | bit;
    // The library's own events are injected and come while it sends; everything else is the user's.
    if (ownEvents_ && (event.flags & LLKHF_INJECTED) != 0)
        return;
    userHeld_ = up ? userHeld_ & ~bit : userHeld_ | bit;
}

}  // namespace tav::keys
