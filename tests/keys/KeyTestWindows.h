// Test windows for keystroke tests: an Edit control that receives typed text, and a recorder window that
// records the key messages and window commands it receives. Each window comes to the front when made
// (input reaches only the foreground window) and is destroyed with its owner object.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace keytest {

// Handles the calling thread's messages for `ms` milliseconds (a tight loop: input is delivered only as
// fast as the receiver pumps).
void PumpFor(DWORD ms);
// Pumps until `done` holds or `timeoutMs` passed; the final value of `done`.
bool PumpUntil(const std::function<bool()>& done, DWORD timeoutMs = 5000);

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

// Brings `window` to the front with the focus on `focus`; false when it did not become the foreground.
bool BringToFront(HWND window, HWND focus);

// A top-level window whose multi-line Edit child has the focus.
class EditWindow {
public:
    EditWindow();
    ~EditWindow();
    EditWindow(const EditWindow&) = delete;
    EditWindow& operator=(const EditWindow&) = delete;

    HWND window() const { return window_; }
    std::wstring Text() const;
    void Clear();
    // Pumps until the Edit shows `expected` (and a little longer, so that late keys would show too).
    std::wstring WaitForText(const std::wstring& expected, DWORD timeoutMs = 5000);

private:
    HWND window_ = nullptr;
    HWND edit_ = nullptr;
};

// A top-level window with the focus that records key messages and other messages; optionally with a menu
// bar: "File" (Open 100, Save 101) and "Edit" (Copy 200, Paste 201).
class RecorderWindow {
public:
    explicit RecorderWindow(bool withMenu = false);
    ~RecorderWindow();
    RecorderWindow(const RecorderWindow&) = delete;
    RecorderWindow& operator=(const RecorderWindow&) = delete;

    HWND window() const { return window_; }
    HMENU menu() const { return GetMenu(window_); }
    std::vector<KeyEvent> keys;
    std::vector<WindowMessage> messages;
    void Clear() {
        keys.clear();
        messages.clear();
    }
    // Pumps until `count` key events arrived, then a little longer; the events.
    const std::vector<KeyEvent>& WaitForKeys(size_t count, DWORD timeoutMs = 5000);

private:
    static LRESULT CALLBACK Proc(HWND, UINT, WPARAM, LPARAM);
    HWND window_ = nullptr;
};

// The virtual keys reported pressed by GetAsyncKeyState (mouse buttons left out).
std::vector<UINT> PressedKeys();

// Base of every keystroke test: afterwards no key may be left pressed, no key held, hold mode off and the
// in-progress marker clear. Whatever a test left behind is released and reported as a failure.
class KeysTest : public testing::Test {
protected:
    void TearDown() override;
};

}  // namespace keytest
