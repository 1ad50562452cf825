// Input a person makes, for tests: keys held down and released, text typed and clicks, through the X server
// of the test's display with xdotool (Debian's package, installed by the Makefile), so that Wine takes them as
// real keyboard input (a low-level hook sees them without LLKHF_INJECTED).
//
// What was measured under Wine 8 here:
//  - A Windows program starts a Unix program with CreateProcessW and its absolute Unix path
//    ("/usr/bin/xdotool keydown ctrl"): the call succeeds in a few milliseconds but gives no process handle,
//    so nobody can wait for it to end. Start() is that call; Run() goes through /bin/sh, which writes
//    xdotool's status to a file that the test waits for. (`start.exe /unix` gives a handle, of start.exe only.)
//  - Wine takes X keyboard input only while one of its windows has the X input focus: the keyboard clicks the
//    test's own window first. The X events are read by the thread that owns that window, while it handles
//    its messages: a test waits for an effect by pumping (tavtest::WaitUntil), and a library call that pumps
//    (the typing calls with a modifier watch) sees the keys while it runs.
//  - A lone Alt pressed and released opens the system menu's modal loop of the window in front (DefWindowProc
//    of WM_SYSKEYUP): the test's window must swallow SC_KEYMENU (keytest::EditWindow does).
// The keymap the session gives Wine (every printable ASCII character on its US key) is in TestKeyboard.md.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tavtest {

// A key as xdotool names it and as Windows sees it.
struct PhysicalKey {
    const char* xName;  // "Control_L", "Alt_L", "Shift_L", "Super_L", ...
    UINT vk;            // the sided virtual key it becomes (VK_LCONTROL, ...)
    const char* name;   // for messages: "Ctrl", "Alt", ...
};
inline constexpr PhysicalKey kCtrl{"Control_L", VK_LCONTROL, "Ctrl"};
inline constexpr PhysicalKey kAlt{"Alt_L", VK_LMENU, "Alt"};
inline constexpr PhysicalKey kShift{"Shift_L", VK_LSHIFT, "Shift"};
inline constexpr PhysicalKey kSuper{"Super_L", VK_LWIN, "Windows"};

class PhysicalKeyboard {
public:
    // A keyboard that has clicked nothing yet: Click a window of the test first.
    PhysicalKeyboard() = default;
    // Clicks the middle of `window` (a window of the calling thread, in front) so that Wine has the X input
    // focus, and presses a probe key to learn that it has. Ready() tells whether that worked.
    explicit PhysicalKeyboard(HWND window);
    // Releases every key this keyboard pressed with Down and did not release, and waits until they are up: no
    // key stays down in the X server after a test.
    ~PhysicalKeyboard();
    PhysicalKeyboard(const PhysicalKeyboard&) = delete;
    PhysicalKeyboard& operator=(const PhysicalKeyboard&) = delete;

    // Whether xdotool can be run here (it is installed and the session has an X display).
    static bool Available();
    // Runs `xdotool ARGUMENTS` and waits until it ended; true when it ended with status 0. The keys are X key
    // names (keysyms): "a", "Shift_L", "Return", "parenleft".
    static bool Run(const std::string& arguments);
    // Starts `xdotool ARGUMENTS` and returns at once (no wait, no pumping): false when it could not be started.
    static bool Start(const std::string& arguments);

    // False when xdotool could not be started or the probe key never arrived (the constructor with a window).
    bool Ready() const { return ready_; }

    // Presses `key` and waits (pumping) until Windows reports it down; false when it did not come in time.
    bool Down(const PhysicalKey& key);
    // Releases `key` and waits until Windows reports it up.
    bool Up(const PhysicalKey& key);
    // Releases `key` without waiting: the release arrives while the calling thread handles messages next
    // (a library call that pumps). False when xdotool could not be started.
    bool StartUp(const PhysicalKey& key);
    // Types `text` as a person would, each character by its key (with Shift where it needs it), and waits
    // until xdotool has sent every key; the text arrives as this thread handles its messages.
    bool Type(const std::string& text);
    // The same without waiting for xdotool: wait on the text's arrival.
    bool StartType(const std::string& text);
    // Clicks the middle of `window`, which gives its program the X focus.
    bool Click(HWND window);

private:
    bool ready_ = false;
    std::vector<PhysicalKey> down_;
};

}  // namespace tavtest
