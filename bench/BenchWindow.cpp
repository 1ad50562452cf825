#include "BenchWindow.h"

#include <string>

namespace bench {

namespace {
const wchar_t kClass[] = L"TavUtilBenchWindow";
}

void Pump() {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

Window::Window(const wchar_t* title, Handler handler) : handler_(std::move(handler)) {
    WNDCLASSW wc = {};
    if (!GetClassInfoW(GetModuleHandleW(nullptr), kClass, &wc)) {
        wc.lpfnWndProc = &Window::Proc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.lpszClassName = kClass;
        RegisterClassW(&wc);
    }
    window_ = CreateWindowExW(0, kClass, title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400, 300, nullptr, nullptr,
                              GetModuleHandleW(nullptr), this);
    BringToFront();
}

Window::~Window() {
    SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    DestroyWindow(window_);
    Pump();
}

bool Window::BringToFront() const {
    for (int i = 0; i < 200 && GetForegroundWindow() != window_; ++i) {
        SetForegroundWindow(window_);
        Pump();
        Sleep(10);
    }
    SetFocus(window_);
    Pump();
    return GetForegroundWindow() == window_ && GetFocus() == window_;
}

LRESULT CALLBACK Window::Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE)
        SetWindowLongPtrW(window, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
    auto* self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self != nullptr && self->handler_ && self->handler_(message, wParam, lParam))
        return 0;
    return DefWindowProcW(window, message, wParam, lParam);
}

Window::Handler KeepCharacters(std::wstring& received) {
    return [&received](UINT message, WPARAM wParam, LPARAM) {
        if (message != WM_CHAR)
            return false;
        received += static_cast<wchar_t>(wParam);
        return true;
    };
}

}  // namespace bench
