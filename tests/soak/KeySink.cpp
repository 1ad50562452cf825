#include "KeySink.h"

namespace soak {

namespace {

// The class by which the second process's window is found.
constexpr const wchar_t* kClass = L"TavSoakKeySink";

tavtest::TestWindow::Options SinkOptions() {
    auto options = tavtest::TestWindow::Options().Titled(L"soak").Placed(80, 80, 300, 200);
    options.className = kClass;
    return options;
}

bool TakeKeys(UINT message, WPARAM, LPARAM) {
    switch (message) {
    case WM_KEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
    case WM_CHAR:
    case WM_SYSCHAR:
    case WM_DEADCHAR:
    case WM_SYSDEADCHAR: return true;
    default: return false;
    }
}

}  // namespace

tavtest::TestWindow KeySink() {
    tavtest::TestWindow sink(SinkOptions(), TakeKeys);
    sink.BringToFront();
    return sink;
}

int RunForegroundWindow() {
    tavtest::TestWindow sink = KeySink();
    for (;;) {
        MSG message;
        if (GetMessageW(&message, nullptr, 0, 0) <= 0)
            return 0;
        DispatchMessageW(&message);
    }
}

}  // namespace soak
