// process_probe.exe [TITLE]: shows one top-level window of class "TavProcessProbe" titled TITLE and runs
// until the window is closed, or for at most two minutes so that a failed test never leaves it behind.
#include <windows.h>
#include <shellapi.h>

namespace {

LRESULT CALLBACK ProbeProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DESTROY) {
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

const wchar_t* TitleFromCommandLine() {
    int count = 0;
    wchar_t** args = CommandLineToArgvW(GetCommandLineW(), &count);
    return args != nullptr && count > 1 ? args[1] : L"process probe";
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    WNDCLASSW wc{};
    wc.lpfnWndProc = ProbeProc;
    wc.hInstance = instance;
    wc.lpszClassName = L"TavProcessProbe";
    RegisterClassW(&wc);
    HWND window = CreateWindowExW(0, wc.lpszClassName, TitleFromCommandLine(), WS_OVERLAPPEDWINDOW, 10, 10, 300, 200,
                                  nullptr, nullptr, instance, nullptr);
    if (window == nullptr)
        return 1;
    ShowWindow(window, SW_SHOW);
    SetTimer(window, 1, 120000, nullptr);
    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
        if (msg.message == WM_TIMER)
            DestroyWindow(window);
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    return 0;
}
