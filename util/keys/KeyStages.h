// The stages of SendKeys one by one: parse a script into the key queue, play the queue, or do a whole run and
// get its result, which SendKeys itself discards. For hosts that show what a script will press (the command
// line's dry run) or need the run's result, and for the tests.
//
// This is a documented, advanced part of the public interface rather than a test-only export: the stages
// work on the process-wide key queue and hold list of the DLL (keys/KeyState.h), which only the DLL's own
// code can reach, and a host that inspects a script needs exactly what the tests need. The promise is the
// same as for the rest of the C++ interface. Most hosts want SendKeys (keys/SendKeys.h) and nothing here.
#pragma once

#include "../platform/Export.h"
#include "SendKeys.h"
#include "SendOptions.h"

#include <windows.h>

#include <cstddef>

namespace tav::keys {

// What one run of a script did.
struct KeyRunReport {
    SKERR result = SKERR_NONE;  // SKERR_NONE, SKERR_BUSY, SKERR_MENUFAILED or the parse error
    bool shortcut = false;      // the script was a clipboard shortcut (^C, ^V, ^X) and was pressed as one
    bool commandWords = false;  // command words were carried out, so no key was parsed or played
    bool played = false;        // the script parsed and its keys were played
    size_t errorAt = 0;         // with a parse error: where the top-level item that holds it begins
};

// Carries out `script` exactly as SendKeys does (the in-progress refusal with its beep, the clipboard
// shortcuts, the command words, the parse, the play) and reports what happened, which SendKeys keeps to
// itself. `perEventDelayMs` paces the key events as SendKeysPaced does (0: none). The one home of a run:
// SendKeys, the command line and the C interface all come here.
TAVUTIL_API KeyRunReport CarryOutKeyScript(const wchar_t* script, DWORD perEventDelayMs = 0);
// The same run with options (keys/SendOptions.h): a run refused as busy, a script with an error and one of
// command words send no key, and so wait for nothing and release nothing. Throws std::invalid_argument for
// unknown flags.
TAVUTIL_API KeyRunReport CarryOutKeyScript(const wchar_t* script, const SendOptions& options);

// Parses `script` into the key queue (see KeyState.h) and sends nothing. SKERR_NONE, or the first error.
TAVUTIL_API SKERR ParseKeyScript(const wchar_t* script);

// A whole run: command words, then parse, then play. Returns the run's own result (SendKeys discards
// it): SKERR_NONE when the script ran (or only command words did), SKERR_MENUFAILED, or a parse error.
TAVUTIL_API SKERR RunKeyScript(const wchar_t* script);
// The same run with a pause of `perEventDelayMs` before every key event but the first (0: none).
TAVUTIL_API SKERR RunKeyScript(const wchar_t* script, DWORD perEventDelayMs);

// Plays the key queue from its start as key events (hold mode and the hold list carry over).
TAVUTIL_API void PlayKeyQueue();
// The same, with a pause of `perEventDelayMs` before every key event but the first (0: none).
TAVUTIL_API void PlayKeyQueue(DWORD perEventDelayMs);

// The virtual-key code of a key name of the script language ("ENTER", "f5", ...; any case), or 0 when
// the name is not in the table. "QUEUESYNC" gives 0xFFFF.
TAVUTIL_API WORD LookupKeyName(const wchar_t* name);

}  // namespace tav::keys
