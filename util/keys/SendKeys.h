// Keystroke scripts: a short text typed into the window that has the focus, or window commands sent to
// the foreground window. The script language in brief:
//   abc            plain characters, typed with the shift state the keyboard layout needs
//   +x ^x %x *x    Shift, Control, Alt or the Windows key around the next item only
//   (...)          a group: +(ab) shifts both letters
//   {NAME} {NAME n}  a named key (ENTER, TAB, F1, ...) or a single character, n times
//   ~              Enter
//   [ ... ]        hold: keys pressed inside stay down until SendKeys_ReleaseAll
//   {PostCommand id} {SendCommand id} {PostMessage msg w l} {SendMessage msg w l} {Menu top item}
//                  window commands for the foreground window (a script holding one types nothing)
// Characters with a meaning of their own are typed literally in braces: {+} {(} {{} {}} ...
#pragma once

#include "../platform/CString.h"
#include "../platform/Export.h"

#include <windows.h>

// Results of SendKeys and of each stage of a run. The numbers are fixed; 6 is never produced and
// SKERR_COMMANDDONE never leaves the library.
enum SKERR {
    SKERR_NONE = 0,
    SKERR_MISSINGCLOSEBRACE = 1,  // a '{' without a following blank or '}', or no '}' after a count
    SKERR_INVALIDKEY = 2,         // a braced name that is neither a key name nor a single character
    SKERR_MISSINGCLOSEPAREN = 3,  // a '(' group that reaches the end of the script
    SKERR_INVALIDCOUNT = 4,       // a braced count that is not a number, or is 0
    SKERR_STRINGTOOLONG = 5,      // the key queue is full
    SKERR_BUSY = 7,               // a send is marked as in progress
    SKERR_MENUFAILED = 8,         // {Menu found no menu, sub-menu or item
    SKERR_COMMANDDONE = 9,        // internal: a command word was carried out
};

// Types `script` into the focused window. Returns SKERR_BUSY (with a warning beep) when the in-progress
// marker is set, and SKERR_NONE otherwise, also when the script does not parse: a script with an error
// anywhere types nothing at all. "^C", "^V" and "^X" (either case) are pressed through PressKeyHelper.
TAVUTIL_API SKERR SendKeys(const wchar_t* script);

// SendKeys with a pause of `delayMs` milliseconds before every key event but the first, for targets that
// drop keys arriving with no pause between them. Hold mode, the modifier toggles, command words and the
// result are those of SendKeys; a delay of 0 is SendKeys itself.
TAVUTIL_API SKERR SendKeysPaced(const wchar_t* script, DWORD delayMs);
// SendKeysEx, with options (pacing, hold time, the modifiers the user holds), is in keys/SendOptions.h.

// Escapes `text` in place so that SendKeys types it literally: each of % ( ) * + [ ] ^ { } ~ is wrapped
// in braces ("50% (a+b)" becomes "50{%} {(}a{+}b{)}"). The name says "remove"; the function escapes.
TAVUTIL_API void SendKeysRemoveSpecialChars(CString& text);

// Releases every key that hold mode ('[') left pressed, the last held first. Hold mode itself stays as it
// is: a script that opened '[' without ']' keeps later scripts in hold mode.
TAVUTIL_API void SendKeys_ReleaseAll();

// The process-wide in-progress marker. Nothing in the library sets it; a host that wants protection
// against re-entry sets it (any non-zero value) before calling SendKeys from a place that might re-enter,
// and SendKeys then answers SKERR_BUSY. A run that goes ahead clears it.
TAVUTIL_API void SendKeys_SetInProgress(ULONG_PTR marker);
TAVUTIL_API void SendKeys_ClearInProgress();
TAVUTIL_API ULONG_PTR SendKeys_InProgress();
