// Typing one generated script for real and comparing the keyboard with what the rules leave pressed:
// after the run, after SendKeys_ReleaseAll (and the end of hold mode), and after a Control release for
// BREAK. Whatever is still down at the end is released by hand, so that one script cannot poison the next.
#pragma once

#include "KeyTestWindows.h"
#include "ScriptGenerator.h"

#include <string>

namespace keytest {

struct ScriptOutcome {
    bool ok = true;
    std::string problem;         // what differed from the rules, when !ok
    bool leftKeys = false;       // the rules left keys down after the run (hold or BREAK)
    bool beyondRelease = false;  // ...and some of them are neither listed for SendKeys_ReleaseAll nor Control
};

// Types `script` into `window` (which must be in front) and checks the keyboard against the rules.
ScriptOutcome TypeAndCheck(const GeneratedScript& script, RecorderWindow& window);

// The script as UTF-8 for messages and files.
std::string ScriptText(const std::wstring& script);

}  // namespace keytest
