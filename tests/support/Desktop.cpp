#include "Desktop.h"

namespace tavtest {

namespace {

// Waits for a message to arrive in the calling thread's queue, at most `ms` milliseconds.
void IdleFor(DWORD ms) { MsgWaitForMultipleObjects(0, nullptr, FALSE, ms, QS_ALLINPUT); }

// The markers of Settle: a message of the application range and a key that no keyboard has.
constexpr UINT kMarkerMessage = WM_APP + 0x3A5E;
constexpr WPARAM kMarkerKey = VK_F24;

void InjectMarkerKey(DWORD flags) {
    INPUT key = {};
    key.type = INPUT_KEYBOARD;
    key.ki.wVk = static_cast<WORD>(kMarkerKey);
    key.ki.dwFlags = flags;
    SendInput(1, &key, sizeof(INPUT));
}

bool MarkerKeyDown() { return (GetAsyncKeyState(static_cast<int>(kMarkerKey)) & 0x8000) != 0; }

}  // namespace

void PumpMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void PumpFor(DWORD ms) {
    const DWORD start = GetTickCount();
    for (;;) {
        PumpMessages();
        const DWORD elapsed = GetTickCount() - start;
        if (elapsed >= ms)
            return;
        IdleFor(ms - elapsed);
    }
}

bool WaitUntil(const std::function<bool()>& condition, DWORD timeoutMs) {
    const DWORD start = GetTickCount();
    for (;;) {
        PumpMessages();
        if (condition())
            return true;
        if (GetTickCount() - start >= timeoutMs)
            return false;
        IdleFor(1);
    }
}

bool Settle(HWND window, DWORD timeoutMs) {
    bool messageSeen = false, keySeen = false;
    if (!PostMessageW(window, kMarkerMessage, 0, 0))
        return false;
    InjectMarkerKey(0);
    InjectMarkerKey(KEYEVENTF_KEYUP);
    const DWORD start = GetTickCount();
    while (!(messageSeen && keySeen)) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == kMarkerMessage && message.hwnd == window) {
                messageSeen = true;
                continue;
            }
            if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST && message.wParam == kMarkerKey) {
                // WM_SYSKEYUP while Alt is held.
                keySeen = keySeen || message.message == WM_KEYUP || message.message == WM_SYSKEYUP;
                continue;
            }
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (messageSeen && keySeen)
            break;
        if (GetTickCount() - start >= timeoutMs)
            return false;
        IdleFor(1);
    }
    return true;
}

bool SyncWithThreadOf(HWND window, DWORD timeoutMs) {
    DWORD_PTR answer = 0;
    return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, timeoutMs, &answer) != 0;
}

bool BringToFront(HWND window, HWND focus, DWORD timeoutMs) {
    // Under Wine's X11 driver the window that takes the keyboard focus sets the keyboard state to the X
    // server's a moment later, releasing every key pressed by program: a test that holds keys must not
    // start before. A marker key pressed now is released by that; its release tells that it happened.
    const bool focusMoves = GetForegroundWindow() != window;
    if (focusMoves)
        InjectMarkerKey(0);
    if (!IsWindowVisible(window))
        ShowWindow(window, SW_SHOW);
    // The request is repeated (another window may take the foreground back meanwhile), but not in a tight
    // loop: each one costs the window manager's messages.
    DWORD lastRequest = GetTickCount() - 1000;
    const bool inFront = WaitUntil(
        [&] {
            const bool done = GetForegroundWindow() == window && (focus == nullptr || GetFocus() == focus);
            if (!done && GetTickCount() - lastRequest >= 100) {
                lastRequest = GetTickCount();
                if (GetForegroundWindow() != window)
                    SetForegroundWindow(window);
                if (focus != nullptr && GetFocus() != focus)
                    SetFocus(focus);
            }
            return done;
        },
        timeoutMs);
    if (focusMoves && !WaitUntil([] { return !MarkerKeyDown(); }, inFront ? 2000 : 0))
        InjectMarkerKey(KEYEVENTF_KEYUP);  // no focus change reached the X server: released here
    return inFront;
}

std::vector<HWND> TopLevelWindowsOf(DWORD processId, const std::wstring& className) {
    struct Search {
        DWORD processId;
        const std::wstring* className;
        std::vector<HWND> found;
    } search{processId, &className, {}};
    EnumWindows(
        [](HWND window, LPARAM param) -> BOOL {
            auto* s = reinterpret_cast<Search*>(param);
            DWORD owner = 0;
            GetWindowThreadProcessId(window, &owner);
            wchar_t name[260] = {};
            GetClassNameW(window, name, 260);
            if (owner == s->processId && (s->className->empty() || *s->className == name))
                s->found.push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace tavtest
