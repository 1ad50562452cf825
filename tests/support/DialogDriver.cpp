#include "DialogDriver.h"

#include <commctrl.h>
#include <dlgs.h>
#include <shlobj.h>

#include "Desktop.h"
#include "TestSupport.h"

#include <cstdio>

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

HWND WaitForDialog(DWORD threadId, DWORD timeoutMs, const std::atomic<bool>& stop) {
    Search search;
    tavtest::WaitUntil(
        [&] {
            EnumThreadWindows(threadId, FindDialog, reinterpret_cast<LPARAM>(&search));
            return search.found != nullptr || stop;
        },
        timeoutMs);
    return search.found;
}

bool WaitForClose(HWND dialog, DWORD timeoutMs) {
    return tavtest::WaitUntil([&] { return !IsWindow(dialog) || !IsWindowVisible(dialog); }, timeoutMs);
}

// What a dialog shows that still changes while it is being filled: its controls, and the selection of the
// folder dialog's tree (null until the tree is filled).
struct DialogPicture {
    int controls = 0;
    LRESULT treeSelection = 0;
    bool hasTree = false;
    bool operator==(const DialogPicture& o) const {
        return controls == o.controls && treeSelection == o.treeSelection && hasTree == o.hasTree;
    }
    bool operator!=(const DialogPicture& o) const { return !(*this == o); }
};

DialogPicture Picture(HWND dialog) {
    DialogPicture picture;
    EnumChildWindows(
        dialog,
        [](HWND, LPARAM count) -> BOOL {
            ++*reinterpret_cast<int*>(count);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&picture.controls));
    if (HWND tree = FindWindowExW(dialog, nullptr, L"SysTreeView32", nullptr)) {
        picture.hasTree = true;
        picture.treeSelection = SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CARET, 0);
    }
    return picture;
}

std::wstring ItemText(HWND tree, HTREEITEM handle) {
    wchar_t text[MAX_PATH] = {};
    TVITEMW item = {};
    item.mask = TVIF_TEXT;
    item.hItem = handle;
    item.pszText = text;
    item.cchTextMax = MAX_PATH;
    if (handle == nullptr || !SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)))
        return {};
    return text;
}

HTREEITEM TreeItem(HWND tree, WPARAM relation, HTREEITEM from = nullptr) {
    const LRESULT item = SendMessageW(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(from));
    return reinterpret_cast<HTREEITEM>(item);
}

// Selects the item named `name` among the folder tree's selection and its siblings; true when found.
bool SelectSibling(HWND dialog, const std::wstring& name) {
    HWND tree = FindWindowExW(dialog, nullptr, L"SysTreeView32", nullptr);
    HTREEITEM caret = tree != nullptr ? TreeItem(tree, TVGN_CARET) : nullptr;
    HTREEITEM parent = caret != nullptr ? TreeItem(tree, TVGN_PARENT, caret) : nullptr;
    if (parent == nullptr)
        return false;
    for (HTREEITEM item = TreeItem(tree, TVGN_CHILD, parent); item != nullptr; item = TreeItem(tree, TVGN_NEXT, item)) {
        if (_wcsicmp(ItemText(tree, item).c_str(), name.c_str()) == 0)
            return SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item)) != 0;
    }
    return false;
}

}  // namespace

void WaitUntilSettled(HWND dialog) {
    // The dialog's modal loop runs once it answers a message sent to it.
    SendMessageTimeoutW(dialog, WM_NULL, 0, 0, SMTO_NORMAL, tavtest::kWaitMs, nullptr);
    // The folder dialog fills its tree and moves the selection after it shows, later on a busy machine:
    // settled is a picture that stayed the same for a while and over several looks (a look waits while the
    // dialog is busy, so time alone could pass during a single one).
    const DWORD kQuietMs = 300, kLookEveryMs = 50;
    const int kSameLooks = 5;
    DialogPicture last = Picture(dialog);
    DWORD lastChange = GetTickCount(), lastLook = GetTickCount();
    int sameLooks = 0;
    tavtest::WaitUntil([&] {
        if (GetTickCount() - lastLook < kLookEveryMs)
            return false;
        DialogPicture now = Picture(dialog);
        lastLook = GetTickCount();
        if (now != last) {
            last = now;
            lastChange = lastLook;
            sameLooks = 0;
        } else {
            ++sameLooks;
        }
        return (!now.hasTree || now.treeSelection != 0) && sameLooks >= kSameLooks && lastLook - lastChange >= kQuietMs;
    });
}

DialogDriver::DialogDriver(std::function<void(HWND)> action)
    : threadId_(GetCurrentThreadId()), thread_([this, action] { Run(action); }) {}

DialogDriver::~DialogDriver() { Finish(); }

bool DialogDriver::Finish() {
    if (thread_.joinable())
        thread_.join();
    return dialog_ != nullptr;
}

void DialogDriver::Run(std::function<void(HWND)> action) {
    HWND dialog = WaitForDialog(threadId_, 20000, stop_);
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
    // The selection is made again until the tree shows it: a dialog still busy with its start folder could
    // move it back.
    const std::wstring leaf = path.substr(path.find_last_of(L'\\') + 1);
    // The tree finds a path by comparing whole shell items, which carry each folder's times: after a folder
    // on the way has been changed or read since the tree was filled, the message selects nothing. Then the
    // folder is picked in the tree by its name, as a user would, among the selection's neighbours.
    const bool shown = tavtest::WaitUntil([&] {
        SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(path.c_str()));
        WaitUntilSettled(dialog);
        if (SelectedFolderName(dialog) != leaf && SelectSibling(dialog, leaf))
            WaitUntilSettled(dialog);
        return SelectedFolderName(dialog) == leaf;
    });
    if (!shown)
        std::fprintf(stderr, "dialog driver: the folder tree shows \"%s\" selected, not \"%s\"\n",
                     tavtest::Narrow(SelectedFolderName(dialog)).c_str(), tavtest::Narrow(leaf).c_str());
    Confirm(dialog);
}

std::wstring SelectedFolderName(HWND dialog) {
    HWND tree = FindWindowExW(dialog, nullptr, L"SysTreeView32", nullptr);
    return tree != nullptr ? ItemText(tree, TreeItem(tree, TVGN_CARET)) : std::wstring();
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
