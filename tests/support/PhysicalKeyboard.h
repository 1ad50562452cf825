// Keys pressed as a person presses them: `xdotool` (Debian's package) sends them through the X server of
// the test session, and Wine takes them as real keyboard input (a low-level hook sees no LLKHF_INJECTED).
// Wine takes X keyboard input only while one of its windows has the X focus: Click the test's own window
// first.
//
// xdotool is a Unix program: Wine starts it from its Unix path (CreateProcessW of Z:\usr\bin\xdotool runs
// it), but gives no handle to wait on, so each call runs it through /bin/sh, which writes xdotool's status
// to a file the test waits for.
#pragma once

#include <windows.h>

#include <string>

namespace tavtest {

class PhysicalKeyboard {
public:
    // Whether xdotool can be run here (it is installed and the session has an X display).
    static bool Available();

    // Runs `xdotool ARGUMENTS` and waits until it ended; true when it ended with status 0. The keys are
    // X key names (keysyms): "a", "Shift_L", "Return", "parenleft".
    bool Run(const std::string& arguments);
    bool Down(const std::string& key) { return Run("keydown " + key); }
    bool Up(const std::string& key) { return Run("keyup " + key); }
    // Types `text` as a person would, each character by its key (with Shift where it needs it).
    bool Type(const std::string& text);
    // Clicks the middle of `window`, which gives its program the X focus.
    bool Click(HWND window);
};

}  // namespace tavtest
