// Checking a keystroke script without sending it: whether it is valid, where it goes wrong, and what it
// will do, in the words of the script writers' guide. For hosts that let a person write a script (a
// settings dialog can show the answer as it is typed), and for the command line's `keys --check`.
#pragma once

#include "../platform/Export.h"
#include "SendKeys.h"

#include <cstddef>
#include <string>

namespace tav::keys {

// What a check of a script found.
struct ScriptCheck {
    // SKERR_NONE for a script that SendKeys carries out (keys, a clipboard shortcut or window commands), or
    // the error its parse gives, which makes SendKeys type nothing at all.
    SKERR result = SKERR_NONE;
    // With an error: the position, in UTF-16 units from the script's start, of the item that failed (the
    // innermost one: "{ENTR}" in "+({ENTR})", or the group that reaches the end of the script). -1 when valid.
    ptrdiff_t offset = -1;
    // With an error: where the top-level item that holds it begins, as KeyRunReport::errorAt says. -1 when
    // valid.
    ptrdiff_t itemStart = -1;
    // One sentence without a final full stop: what is wrong and where ("unknown key name 'ENTR'"), or what
    // the script will do ("types 14 keys"), with a hint for a spelling another tool uses or a note on a
    // valid script that probably does not do what was meant.
    std::wstring message;
    bool commandWords = false;  // the script holds window commands: they are carried out, nothing is typed
};

// Checks `script` (null is the empty script) and sends nothing, carries out no window command and chooses
// no menu item. The key queue, hold mode, the hold list and the in-progress marker stay as they are: a
// later SendKeys behaves as if no check had been made. The result is the one a run of the script gives
// (CarryOutKeyScript), except that a {Menu command is only described (whether the window in front has
// that item is known only when it runs) and the in-progress marker is not looked at. What the script
// will do is described as for a first script (hold mode off, nothing held).
TAVUTIL_API ScriptCheck CheckKeyScript(const wchar_t* script);

}  // namespace tav::keys
