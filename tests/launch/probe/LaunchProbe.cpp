// tavlaunchprobe.exe: a small GUI program that the launch tests start. At start-up it writes a report to the
// file named by TAVPROBE_REPORT (process id, current folder, command line, foreground window, the show
// command it was given or -1), then shows a window of class "TavLaunchProbe" and runs until it is closed (or
// 60 s have passed); the window answers the messages of ProbeMessages.h. Given "--busy" it never reads its
// message queue, so it never becomes ready for input, and ends after 60 s. Given "--nowindow" it reads its
// message queue (so it becomes ready for input) without ever making a window, and ends after 60 s.
#include "ProbeMessages.h"

#include <windows.h>

#include <string>

namespace {

constexpr UINT kLifetimeMs = 60000;

std::string Utf8(const std::wstring& text) {
    if (text.empty())
        return {};
    int size =
        WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), out.data(), size, nullptr, nullptr);
    return out;
}

void WriteReport() {
    wchar_t reportPath[1024];
    DWORD n = GetEnvironmentVariableW(L"TAVPROBE_REPORT", reportPath, 1024);
    if (n == 0 || n >= 1024)
        return;
    wchar_t cwd[1024] = {};
    GetCurrentDirectoryW(1024, cwd);
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    GetStartupInfoW(&startup);
    int show = (startup.dwFlags & STARTF_USESHOWWINDOW) ? startup.wShowWindow : -1;
    std::wstring text = L"pid=" + std::to_wstring(GetCurrentProcessId()) + L"\ncwd=" + cwd + L"\ncmdline=" +
                        GetCommandLineW() + L"\nforeground=" +
                        std::to_wstring(reinterpret_cast<ULONG_PTR>(GetForegroundWindow())) + L"\nshow=" +
                        std::to_wstring(show) + L"\n";
    std::string bytes = Utf8(text);
    // Written under another name and then renamed, so that a reader never sees half a report.
    std::wstring temporary = std::wstring(reportPath) + L".part";
    HANDLE file = CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return;
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
    MoveFileExW(temporary.c_str(), reportPath, MOVEFILE_REPLACE_EXISTING);
}

LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_TIMER: DestroyWindow(window); return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    case launchprobe::kCatchUpMessage:
        // The waiting call handles the events that have arrived before it would wait; a time-out of 0 does
        // not wait.
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 0, QS_ALLINPUT);
        return launchprobe::kCaughtUp;
    default: return DefWindowProcW(window, message, wParam, lParam);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR commandLine, int showCmd) {
    WriteReport();
    if (wcsstr(commandLine, L"--busy")) {
        Sleep(kLifetimeMs);
        return 3;
    }
    if (wcsstr(commandLine, L"--nowindow")) {
        SetTimer(nullptr, 0, kLifetimeMs, nullptr);
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0 && message.message != WM_TIMER) {
        }
        return 4;
    }
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = WindowProc;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = L"TavLaunchProbe";
    RegisterClassW(&windowClass);
    HWND window = CreateWindowExW(0, L"TavLaunchProbe", L"TavLaunchProbe", WS_OVERLAPPEDWINDOW, 10, 10, 200, 100,
                                  nullptr, nullptr, instance, nullptr);
    if (!window)
        return 1;
    ShowWindow(window, showCmd);
    SetTimer(window, 1, kLifetimeMs, nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}
