// A top-level window owned by a test: destroyed with the object, its messages handed to a handler.
#pragma once

#include <windows.h>

#include <functional>
#include <vector>

namespace desktoptest {

class TestWindow {
public:
    // The handler sees every message; returning true marks it handled (result 0).
    using Handler = std::function<bool(UINT message, WPARAM wParam, LPARAM lParam)>;

    explicit TestWindow(Handler handler = nullptr, bool visible = false);
    ~TestWindow();
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    HWND hwnd() const { return hwnd_; }
    // Adds a child control of `className` (e.g. L"Edit"); it goes with the window.
    HWND AddChild(const wchar_t* className);

private:
    static LRESULT CALLBACK Proc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    Handler handler_;
    HWND hwnd_ = nullptr;
};

}  // namespace desktoptest
