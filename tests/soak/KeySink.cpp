#include "KeySink.h"

namespace soak {

namespace {

constexpr const wchar_t* kClass = L"TavSoakKeySink";

LRESULT CALLBACK SinkProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_KEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
    case WM_CHAR:
    case WM_SYSCHAR:
    case WM_DEADCHAR:
    case WM_SYSDEADCHAR: return 0;
    default: return DefWindowProcW(window, message, wParam, lParam);
    }
}

void PumpUntil(DWORD deadline, HWND window) {
    while (GetTickCount() < deadline && GetForegroundWindow() != window) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
        Sleep(5);
    }
}

}  // namespace

KeySink::KeySink() {
    WNDCLASSW wc = {};
    if (!GetClassInfoW(GetModuleHandleW(nullptr), kClass, &wc)) {
        wc.lpfnWndProc = SinkProc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.lpszClassName = kClass;
        RegisterClassW(&wc);
    }
    window_ = CreateWindowExW(0, kClass, L"soak", WS_OVERLAPPEDWINDOW, 80, 80, 300, 200, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr);
    BringToFront();
}

KeySink::~KeySink() { DestroyWindow(window_); }

bool KeySink::BringToFront() const {
    ShowWindow(window_, SW_SHOW);
    SetForegroundWindow(window_);
    SetFocus(window_);
    PumpUntil(GetTickCount() + 5000, window_);
    return GetForegroundWindow() == window_;
}

int RunForegroundWindow() {
    KeySink sink;
    for (;;) {
        MSG message;
        if (GetMessageW(&message, nullptr, 0, 0) <= 0)
            return 0;
        DispatchMessageW(&message);
    }
}

}  // namespace soak
