// Typing into a focused Edit control: SendKeys against a raw keybd_event loop sending the same events,
// both timed until every character has arrived; and the parse of a full queue as a share of typing it.
#include "Bench.h"

#include <TavUtil.h>

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

HWND g_edit = nullptr;

void PumpUntilLength(int length) {
    DWORD start = GetTickCount();
    while (GetWindowTextLengthW(g_edit) < length && GetTickCount() - start < 20000) {
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
    }
}

void ClearEdit() { SetWindowTextW(g_edit, L""); }

// The events the player sends for a plain lower-case script: each key down, then up.
void RawType(const std::wstring& text) {
    for (wchar_t ch : text) {
        BYTE vk = LOBYTE(VkKeyScanW(ch));
        BYTE scan = static_cast<BYTE>(MapVirtualKeyW(vk, 0));
        keybd_event(vk, scan, 0, 0);
        keybd_event(vk, scan, KEYEVENTF_KEYUP, 0);
    }
}

}  // namespace

int main() {
    HWND window = CreateWindowExW(0, L"STATIC", L"bench keys", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 600, 400,
                                  nullptr, nullptr, nullptr, nullptr);
    g_edit = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE | ES_MULTILINE | ES_AUTOVSCROLL, 0, 0, 580, 360,
                             window, nullptr, nullptr, nullptr);
    SendMessageW(g_edit, EM_SETLIMITTEXT, 0, 0);
    SetForegroundWindow(window);
    SetFocus(g_edit);
    PumpUntilLength(0);

    std::wstring script;
    for (int i = 0; i < 1000; ++i)
        script += (i % 7 == 6) ? L' ' : static_cast<wchar_t>(L'a' + i % 26);

    bench::Compare(
        "SendKeys 1000 characters vs keybd_event loop",
        [&] {
            ClearEdit();
            SendKeys(script.c_str());
            PumpUntilLength(1000);
        },
        [&] {
            ClearEdit();
            RawType(script);
            PumpUntilLength(1000);
        },
        5);
    ClearEdit();
    SendKeys(script.c_str());
    PumpUntilLength(1000);
    std::printf("characters arrived: %d of 1000 (goal: all; ratio goal: within 1.10)\n", GetWindowTextLengthW(g_edit));

    std::wstring full(6144, L'q');
    double parse = bench::MeanMicroseconds([&] { tav::keys::ParseKeyScript(full.c_str()); }, 200);
    double type = bench::MeanMicroseconds(
        [&] {
            ClearEdit();
            SendKeys(full.c_str());
            PumpUntilLength(6144);
        },
        2);
    std::printf("parse of a full queue (6144 entries): %.1f us, typing it: %.1f us, parse share %.2f%%\n", parse, type,
                100.0 * parse / type);
    DestroyWindow(window);
    return 0;
}
