// The benchmarks' window: a visible window of the benchmark's own, brought to the front with the keyboard
// focus (typed keys and command words reach the foreground window only), its messages handed to a handler
// first, destroyed with the object. The benchmarks do not link the tests' support library (it brings the
// test framework); this is their one window.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace bench {

// Handles the messages waiting in the calling thread's queue.
void Pump();

class Window {
public:
    // Returning true marks a message handled (result 0); false passes it on to the default handling.
    using Handler = std::function<bool(UINT message, WPARAM wParam, LPARAM lParam)>;

    explicit Window(const wchar_t* title, Handler handler = nullptr);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    HWND get() const { return window_; }
    // Makes it the foreground window with the focus (polled for up to two seconds); true when it is both.
    bool BringToFront() const;

private:
    static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    Handler handler_;
    HWND window_ = nullptr;
};

// A handler that appends the units of the WM_CHAR messages to `received` (and handles them).
Window::Handler KeepCharacters(std::wstring& received);

}  // namespace bench
