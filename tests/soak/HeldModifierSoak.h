// The stuck-key run with a person's modifier held: generated scripts typed with kSendReleaseModifiers while
// xdotool holds Ctrl, Alt, Shift or the Windows key (in turn, over batches of scripts). After each script only
// the held modifier may be down, and after each batch, when the person lets go, nothing.
#pragma once

#include "KeyTestWindows.h"
#include "ScriptGenerator.h"

namespace soak {

struct HeldModifierTally {
    int typed = 0;
    int leftDown = 0;   // checks that found a key down that nobody holds
    int heldLost = 0;   // scripts after which the held modifier was up although the person held it
    bool ready = true;  // false when xdotool's keys did not reach Wine (nothing was typed)
};

HeldModifierTally RunHeldModifierSoak(keytest::RecorderWindow& window, keytest::ScriptGenerator& generator, int count);

}  // namespace soak
