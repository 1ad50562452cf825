// Literal text: typed as the characters themselves, whatever the keyboard layout has keys for. Where a
// keystroke script can only type what the layout produces (a character no key produces goes out as Shift,
// Control and Alt around key 0xFF), SendText types "Grüße, 李明 😀" on any layout.
#pragma once

#include "SendKeys.h"
#include "../platform/Export.h"

#include <windows.h>

// Types `text` into the focused window as it stands: each UTF-16 unit is a key-down and a key-up of a
// Unicode keyboard event (a character outside the basic plane goes out as its two surrogate units). A line
// break (CR, LF, or CR LF together) is one press of Enter and a tab one press of Tab; every other unit,
// the script characters + ^ % ~ ( ) [ ] { } included, is just that character. Returns SKERR_BUSY (with a
// warning beep) when the in-progress marker is set, SKERR_NONE otherwise; a null text types nothing.
// The key queue, the hold list and hold mode of SendKeys are left as they are.
TAVUTIL_API SKERR SendText(const wchar_t* text);

// SendText with a pause of `delayMs` milliseconds before every key event but the first, for targets that
// drop keys arriving with no pause between them. A delay of 0 is SendText itself.
TAVUTIL_API SKERR SendTextPaced(const wchar_t* text, DWORD delayMs);

// SendTextEx, with options (pacing, hold time, the modifiers the user holds), is in keys/SendOptions.h.
