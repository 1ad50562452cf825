#include "TestWindow.h"

namespace desktoptest {

namespace {
const wchar_t kClassName[] = L"TavUtilDesktopTestWindow";

void RegisterOnce(WNDPROC proc) {
    WNDCLASSW wc = {};
    if (GetClassInfoW(GetModuleHandleW(nullptr), kClassName, &wc))
        return;
    wc.lpfnWndProc = proc;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = kClassName;
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    RegisterClassW(&wc);
}
}  // namespace

TestWindow::TestWindow(Handler handler, bool visible) : handler_(std::move(handler)) {
    RegisterOnce(&TestWindow::Proc);
    hwnd_ = CreateWindowExW(0, kClassName, L"TavUtil desktop test", WS_OVERLAPPEDWINDOW | (visible ? WS_VISIBLE : 0),
                            40, 40, 400, 300, nullptr, nullptr, GetModuleHandleW(nullptr), this);
}

TestWindow::~TestWindow() {
    if (hwnd_ != nullptr) {
        SetWindowLongPtrW(hwnd_, GWLP_USERDATA, 0);
        DestroyWindow(hwnd_);
    }
}

HWND TestWindow::AddChild(const wchar_t* className) {
    return CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE, 0, 0, 200, 24, hwnd_, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
}

LRESULT CALLBACK TestWindow::Proc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* create = reinterpret_cast<CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
    }
    auto* self = reinterpret_cast<TestWindow*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
    if (self != nullptr && self->handler_ && self->handler_(message, wParam, lParam))
        return 0;
    return DefWindowProcW(hwnd, message, wParam, lParam);
}

}  // namespace desktoptest
