#include "KeyTestWindows.h"

#include <TavUtil.h>

#include <cstdio>
#include <thread>

namespace keytest {

namespace {

const wchar_t kEditHostClass[] = L"TavKeysEditHost";
const wchar_t kRecorderClass[] = L"TavKeysRecorder";

void RegisterClassOnce(const wchar_t* name, WNDPROC proc) {
    WNDCLASSW wc = {};
    if (GetClassInfoW(GetModuleHandleW(nullptr), name, &wc))
        return;
    wc.lpfnWndProc = proc;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = name;
    wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    RegisterClassW(&wc);
}

// The Edit host keeps the focus on its Edit whenever it is activated.
// A lone Alt (a person's, held and let go) opens no system menu: its modal loop would stop the test.
LRESULT CALLBACK EditHostProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SYSCOMMAND && (wParam & 0xFFF0) == SC_KEYMENU)
        return 0;
    if (message == WM_SETFOCUS) {
        if (HWND edit = GetWindow(window, GW_CHILD))
            SetFocus(edit);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HMENU MakeMenuBar() {
    HMENU bar = CreateMenu();
    HMENU file = CreatePopupMenu();
    AppendMenuW(file, MF_STRING, 100, L"Open");
    AppendMenuW(file, MF_STRING, 101, L"Save");
    HMENU edit = CreatePopupMenu();
    AppendMenuW(edit, MF_STRING, 200, L"Copy");
    AppendMenuW(edit, MF_STRING, 201, L"Paste");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(file), L"File");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(edit), L"Edit");
    return bar;
}

}  // namespace

std::string Describe(const std::vector<KeyEvent>& events) {
    std::string text;
    for (const KeyEvent& e : events) {
        const char* kind = e.message == WM_KEYDOWN      ? "down"
                           : e.message == WM_KEYUP      ? "up"
                           : e.message == WM_SYSKEYDOWN ? "sysdown"
                                                        : "sysup";
        char item[48];
        snprintf(item, sizeof item, "%s %02X%s, ", kind, e.vk, e.extended ? " ext" : "");
        text += item;
    }
    return text;
}

EditWindow::EditWindow() {
    RegisterClassOnce(kEditHostClass, EditHostProc);
    window_ = CreateWindowExW(0, kEditHostClass, L"keys test: Edit", WS_OVERLAPPEDWINDOW, 40, 40, 500, 300, nullptr,
                              nullptr, GetModuleHandleW(nullptr), nullptr);
    edit_ = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE | ES_MULTILINE | ES_WANTRETURN | ES_AUTOVSCROLL, 0,
                            0, 480, 260, window_, nullptr, GetModuleHandleW(nullptr), nullptr);
    EXPECT_TRUE(tavtest::BringToFront(window_, edit_)) << "the Edit window did not come to the front";
}

EditWindow::~EditWindow() { DestroyWindow(window_); }

std::wstring EditWindow::Text() const {
    int length = GetWindowTextLengthW(edit_);
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    GetWindowTextW(edit_, text.data(), length + 1);
    text.resize(static_cast<size_t>(length));
    return text;
}

void EditWindow::Clear() {
    SetWindowTextW(edit_, L"");
    tavtest::BringToFront(window_, edit_);
}

std::wstring EditWindow::WaitForText(const std::wstring& expected, DWORD timeoutMs) {
    tavtest::WaitUntil([&] { return Text() == expected; }, timeoutMs);
    tavtest::Settle(window_);
    return Text();
}

RecorderWindow::RecorderWindow(bool withMenu) {
    RegisterClassOnce(kRecorderClass, Proc);
    window_ = CreateWindowExW(0, kRecorderClass, L"keys test: recorder", WS_OVERLAPPEDWINDOW, 60, 60, 400, 200, nullptr,
                              withMenu ? MakeMenuBar() : nullptr, GetModuleHandleW(nullptr), this);
    EXPECT_TRUE(tavtest::BringToFront(window_, window_)) << "the recorder did not come to the front";
    EXPECT_TRUE(Settle()) << "the recorder's queue did not settle";
    Clear();
}

RecorderWindow::~RecorderWindow() {
    SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    DestroyWindow(window_);  // destroys the menu bar with it
}

const std::vector<KeyEvent>& RecorderWindow::WaitForKeys(size_t count, DWORD timeoutMs) {
    tavtest::WaitUntil([&] { return keys.size() >= count; }, timeoutMs);
    Settle();
    return keys;
}

LRESULT CALLBACK RecorderWindow::Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE)
        SetWindowLongPtrW(window, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
    auto* self = reinterpret_cast<RecorderWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
    case WM_KEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
        if (self)
            self->keys.push_back({message, static_cast<UINT>(wParam), (lParam & (1 << 24)) != 0});
        return 0;  // no menu activation by Alt or F10: the recorder only records
    case WM_SYSCHAR:
    case WM_CHAR: return 0;
    case WM_COMMAND:
    case WM_INITMENU:
    case WM_INITMENUPOPUP:
    case WM_MENUSELECT:
        if (self)
            self->messages.push_back({message, wParam, lParam});
        return 0;
    default:
        if (message >= WM_USER && self)
            self->messages.push_back({message, wParam, lParam});
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

std::vector<UINT> PressedKeys() {
    std::vector<UINT> pressed;
    std::thread reader([&pressed] {
        for (UINT vk = 0x07; vk <= 0xFE; ++vk)
            if ((GetAsyncKeyState(static_cast<int>(vk)) & 0x8000) != 0)
                pressed.push_back(vk);
    });
    reader.join();
    return pressed;
}

bool IsKeyDown(UINT vk) {
    bool down = false;
    std::thread reader([vk, &down] { down = (GetAsyncKeyState(static_cast<int>(vk)) & 0x8000) != 0; });
    reader.join();
    return down;
}

testing::AssertionResult NoKeyPressed() {
    const std::vector<UINT> pressed = PressedKeys();
    if (pressed.empty())
        return testing::AssertionSuccess();
    testing::AssertionResult failure = testing::AssertionFailure();
    failure << "keys left pressed (virtual keys):";
    for (UINT vk : pressed)
        failure << " " << vk;
    return failure;
}

void KeysTest::TearDown() {
    if (tav::keys::TheHoldList().Count() != 0) {
        ADD_FAILURE() << "the test left " << tav::keys::TheHoldList().Count() << " keys in the hold list";
        SendKeys_ReleaseAll();
    }
    if (tav::keys::IsHoldModeOn()) {
        ADD_FAILURE() << "the test left hold mode on";
        tav::keys::ParseKeyScript(L"]");
        tav::keys::PlayKeyQueue();
    }
    if (SendKeys_InProgress() != 0) {
        ADD_FAILURE() << "the test left the in-progress marker set";
        SendKeys_ClearInProgress();
    }
    for (int round = 0; round < 2; ++round) {
        std::vector<UINT> pressed = PressedKeys();
        if (pressed.empty())
            break;
        std::string names;
        for (UINT vk : pressed) {
            names += std::to_string(vk) + " ";
            keybd_event(static_cast<BYTE>(vk), static_cast<BYTE>(MapVirtualKeyW(vk, 0)), KEYEVENTF_KEYUP, 0);
        }
        if (round == 0)
            ADD_FAILURE() << "keys left pressed (virtual keys, released now): " << names;
        tavtest::PumpFor(20);
    }
}

}  // namespace keytest
