#include "HeldModifierSoak.h"

#include "PhysicalKeyboard.h"
#include "ScriptRun.h"

#include <TavUtil.h>

#include <cstdio>

namespace soak {

namespace {

constexpr int kBatch = 100;  // scripts typed while one modifier is held

// The key as KeysDownNow names it (sides folded for Shift, Control and Alt).
BYTE Folded(UINT vk) {
    switch (vk) {
    case VK_LSHIFT: return VK_SHIFT;
    case VK_LCONTROL: return VK_CONTROL;
    case VK_LMENU: return VK_MENU;
    default: return static_cast<BYTE>(vk);
    }
}

void ReleaseByHand(const std::set<BYTE>& keys) {
    for (BYTE vk : keys)
        keybd_event(vk, static_cast<BYTE>(MapVirtualKeyW(vk, 0)), KEYEVENTF_KEYUP, 0);
}

}  // namespace

HeldModifierTally RunHeldModifierSoak(keytest::RecorderWindow& window, keytest::ScriptGenerator& generator, int count) {
    HeldModifierTally tally;
    const tavtest::PhysicalKey keys[] = {tavtest::kCtrl, tavtest::kAlt, tavtest::kShift, tavtest::kSuper};
    tav::keys::SendOptions options;
    options.flags = tav::keys::kSendReleaseModifiers;
    tavtest::PhysicalKeyboard keyboard(window.window());
    if (!keyboard.Ready()) {
        tally.ready = false;
        return tally;
    }
    for (int batch = 0; tally.typed < count; ++batch) {
        const tavtest::PhysicalKey& key = keys[batch % 4];
        if (!keyboard.Down(key)) {
            printf("held-modifier soak: %s did not go down\n", key.name);
            ++tally.leftDown;
            break;
        }
        for (int i = 0; i < kBatch && tally.typed < count; ++i) {
            const keytest::GeneratedScript script = generator.Next({false, false});
            window.Clear();
            SendKeysEx(script.script.c_str(), options);
            ++tally.typed;
            window.Settle();
            std::set<BYTE> down = keytest::KeysDownNow();
            if (down.erase(Folded(key.vk)) == 0) {
                ++tally.heldLost;
                printf("held-modifier soak: %s is up after %s\n", key.name, keytest::ScriptText(script.script).c_str());
            }
            if (!down.empty()) {
                ++tally.leftDown;
                printf("held-modifier soak: %s left down after %s (%s held)\n", keytest::KeyList(down).c_str(),
                       keytest::ScriptText(script.script).c_str(), key.name);
                ReleaseByHand(down);
            }
        }
        keyboard.Up(key);
        window.Settle();
        const std::set<BYTE> left = keytest::KeysDownNow();
        if (!left.empty()) {
            ++tally.leftDown;
            printf("held-modifier soak: %s left down after %s was let go\n", keytest::KeyList(left).c_str(), key.name);
            ReleaseByHand(left);
        }
    }
    return tally;
}

}  // namespace soak
