#include "DialogDriver.h"

#include <commctrl.h>
#include <dlgs.h>
#include <shlobj.h>

namespace desktoptest {

namespace {

struct Search {
    HWND found = nullptr;
};

BOOL CALLBACK FindDialog(HWND window, LPARAM param) {
    if (IsWindowVisible(window) && ClassName(window) == L"#32770") {
        reinterpret_cast<Search*>(param)->found = window;
        return FALSE;
    }
    return TRUE;
}

HWND WaitForDialog(DWORD threadId, DWORD timeoutMs) {
    for (DWORD waited = 0; waited < timeoutMs; waited += 20) {
        Search search;
        EnumThreadWindows(threadId, FindDialog, reinterpret_cast<LPARAM>(&search));
        if (search.found != nullptr)
            return search.found;
        Sleep(20);
    }
    return nullptr;
}

bool WaitForClose(HWND dialog, DWORD timeoutMs) {
    for (DWORD waited = 0; waited < timeoutMs; waited += 20) {
        if (!IsWindow(dialog) || !IsWindowVisible(dialog))
            return true;
        Sleep(20);
    }
    return false;
}

// The folder dialog fills its tree and moves the selection to the start folder after it shows, later on
// a busy machine. Waits until the tree's selection has stayed the same for a few polls (at most 5 s).
void WaitUntilSettled(HWND dialog) {
    Sleep(300);
    HWND tree = FindWindowExW(dialog, nullptr, L"SysTreeView32", nullptr);
    if (tree == nullptr)
        return;
    LRESULT previous = 0;
    int stable = 0;
    for (int poll = 0; poll < 50 && stable < 3; ++poll) {
        LRESULT caret = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CARET, 0);
        stable = caret != 0 && caret == previous ? stable + 1 : 0;
        previous = caret;
        Sleep(100);
    }
}

}  // namespace

DialogDriver::DialogDriver(std::function<void(HWND)> action)
    : threadId_(GetCurrentThreadId()), thread_([this, action] { Run(action); }) {}

DialogDriver::~DialogDriver() { Finish(); }

bool DialogDriver::Finish() {
    if (thread_.joinable())
        thread_.join();
    return dialog_ != nullptr;
}

void DialogDriver::Run(std::function<void(HWND)> action) {
    HWND dialog = WaitForDialog(threadId_, 20000);
    if (dialog == nullptr)
        return;
    dialog_ = dialog;
    WaitUntilSettled(dialog);
    action(dialog);
    if (!WaitForClose(dialog, 10000))
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

void Cancel(HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); }

void Confirm(HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDOK, 0); }

void ConfirmFile(HWND dialog, const std::wstring& path) {
    HWND box = GetDlgItem(dialog, cmb13);
    if (box == nullptr)
        box = GetDlgItem(dialog, edt1);
    SendMessageW(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    Confirm(dialog);
}

void ConfirmFolder(HWND dialog, const std::wstring& path) {
    SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(path.c_str()));
    Sleep(200);
    Confirm(dialog);
}

std::wstring WindowText(HWND window) {
    wchar_t text[512] = {};
    GetWindowTextW(window, text, 512);
    return text;
}

std::wstring ClassName(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

}  // namespace desktoptest
