// Test windows for keystroke tests, made of the one test window: an Edit control that receives typed text,
// and a recorder window that records the key messages and window commands it receives. Each window comes to
// the front when made (input reaches only the foreground window) and is destroyed with its owner object.
#pragma once

#include "Desktop.h"
#include "TestWindow.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace keytest {

// One key message as a window procedure saw it.
struct KeyEvent {
    UINT message;  // WM_KEYDOWN, WM_KEYUP, WM_SYSKEYDOWN or WM_SYSKEYUP
    UINT vk;
    bool extended;
    bool operator==(const KeyEvent& o) const { return message == o.message && vk == o.vk && extended == o.extended; }
};
std::string Describe(const std::vector<KeyEvent>& events);
inline KeyEvent Down(UINT vk, bool extended = false) { return {WM_KEYDOWN, vk, extended}; }
inline KeyEvent Up(UINT vk, bool extended = false) { return {WM_KEYUP, vk, extended}; }
inline KeyEvent SysDown(UINT vk, bool extended = false) { return {WM_SYSKEYDOWN, vk, extended}; }
inline KeyEvent SysUp(UINT vk, bool extended = false) { return {WM_SYSKEYUP, vk, extended}; }

// Any other message a recorder window received (commands, menu messages, application messages).
struct WindowMessage {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    bool operator==(const WindowMessage& o) const {
        return message == o.message && wParam == o.wParam && lParam == o.lParam;
    }
};

// A top-level window whose multi-line Edit child has the focus.
class EditWindow {
public:
    EditWindow();

    HWND window() const { return window_.hwnd(); }
    std::wstring Text() const { return window_.Text(); }
    void Clear();
    // Pumps until the Edit shows `expected`, and then until every key typed so far has arrived (so that
    // keys beyond the expected text show too).
    std::wstring WaitForText(const std::wstring& expected, DWORD timeoutMs = tavtest::kWaitMs);

private:
    tavtest::TestWindow window_;
};

// A top-level window with the focus that records key messages and other messages; optionally with a menu
// bar: "File" (Open 100, Save 101) and "Edit" (Copy 200, Paste 201).
class RecorderWindow {
public:
    explicit RecorderWindow(bool withMenu = false);
    RecorderWindow(RecorderWindow&&) = delete;  // the window's handler records into this object

    HWND window() const { return window_.hwnd(); }
    HMENU menu() const { return GetMenu(window()); }
    std::vector<KeyEvent> keys;
    std::vector<WindowMessage> messages;
    void Clear() {
        keys.clear();
        messages.clear();
    }
    // Pumps until `count` key events arrived, and then until every key typed and message posted so far has
    // arrived (so that events beyond `count` show too); the events.
    const std::vector<KeyEvent>& WaitForKeys(size_t count, DWORD timeoutMs = tavtest::kWaitMs);
    // Pumps until every key typed and message posted so far has arrived; false when that took too long.
    bool Settle() { return tavtest::Settle(window()); }
    // The events once everything typed so far has arrived: for "nothing (more) was typed".
    const std::vector<KeyEvent>& KeysSoFar() { return WaitForKeys(0); }

private:
    bool Record(UINT message, WPARAM wParam, LPARAM lParam);
    tavtest::TestWindow window_;  // declared last: it goes before the lists its handler fills
};

// Whether GetAsyncKeyState reports `vk` pressed, and every key it reports pressed (mouse buttons left out).
// Read on a thread of their own: under Wine a thread's reads are cached for 50 ms, and a key pressed
// meanwhile reads as released on that thread; a new thread has no cache and reads the system's state.
bool IsKeyDown(UINT vk);
std::vector<UINT> PressedKeys();
// Success when no key is reported pressed; otherwise the failure names them. Checked after each row of a
// table, so that a failure names the row that left a key down and the next rows start clean.
testing::AssertionResult NoKeyPressed();

// Base of every keystroke test: afterwards no key may be left pressed, no key held, hold mode off and the
// in-progress marker clear. Whatever a test left behind is released and reported as a failure.
class KeysTest : public testing::Test {
protected:
    void TearDown() override;
};

}  // namespace keytest
