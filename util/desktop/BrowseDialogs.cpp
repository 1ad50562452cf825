#include "desktop/BrowseDialogs.h"

#include "platform/ComOwners.h"
#include "platform/Handles.h"
#include "system/OSInfo.h"

#include <commdlg.h>

#include <algorithm>
#include <cwchar>

namespace {

// Systems before Windows 2000 know only the shorter OPENFILENAME (without its trailing members).
constexpr DWORD kOpenFileNameSizeOld = 136;
constexpr DWORD kOpenFileFlags =
    OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST | OFN_EXPLORER | OFN_NODEREFERENCELINKS;

// Where a walk of `list` (with the terminator after it) as the dialog walks it ends: pairs of description
// and pattern, each ended by a NUL, until a description is empty. An answer past list.size() means the
// dialog would read beyond the copy.
size_t EndOfFilterWalk(const CStdStr<wchar_t>& list) {
    const size_t end = list.size();  // the terminator's position
    size_t at = 0;
    while (at < end && list[at] != L'\0') {
        at = list.find(L'\0', at);  // the description's NUL (npos: the terminator)
        at = (at == CStdStr<wchar_t>::npos ? end : at) + 1;
        if (at > end)
            return at;  // a description with no pattern after it
        at = list.find(L'\0', at);
        at = (at == CStdStr<wchar_t>::npos ? end : at) + 1;
    }
    return at;
}

// The filter in the dialog's form: "|" becomes NUL, the last "|" is dropped so that the string's own
// terminator and the NUL before it end the list. A filter that does not end in "|" (or holds a description
// without its pattern) would leave the dialog reading past the copy: the list then gets the NULs that end it
// inside the copy. A well-formed filter gains nothing. An empty filter (which the form does not allow) gives
// no filter at all rather than reading before the string.
CStdStr<wchar_t> DialogFilter(const CStdStr<wchar_t>& filter) {
    CStdStr<wchar_t> list = filter;
    if (!list.empty())
        list.pop_back();
    std::replace(list.begin(), list.end(), L'|', L'\0');
    while (EndOfFilterWalk(list) > list.size())
        list.push_back(L'\0');
    return list;
}

// The systems whose folder dialog has no resizable style: the 9x family without Windows Me, and NT
// before 2000 (4, reserved and never produced, counts with them). Windows Me, 2000 and later, and unknown
// systems get the resizable dialog.
bool IsOlderFolderDialogSystem(OSInfo::OSType type) {
    const int value = static_cast<int>(type);
    return (value >= OSInfo::OS_WIN95 && value <= 4) || value == OSInfo::OS_WINNT351 || value == OSInfo::OS_WINNT4;
}

bool FolderExists(const CStdStr<wchar_t>& folder) {
    WIN32_FIND_DATAW data;
    tav::UniqueFind find(FindFirstFileW(folder.c_str(), &data));
    return find.valid();
}

bool PathFromItem(LPCITEMIDLIST item, CStdStr<wchar_t>& path) {
    wchar_t buffer[MAX_PATH] = {};
    if (!SHGetPathFromIDListW(item, buffer))
        return false;
    path = buffer;
    return true;
}

}  // namespace

bool BrowseFiles(const CStdStr<wchar_t>& filter, CStdStr<wchar_t>& file, const CStdStr<wchar_t>& initialDir,
                 const CStdStr<wchar_t>& title) {
    const CStdStr<wchar_t> filterList = DialogFilter(filter);
    wchar_t fileBuffer[MAX_PATH] = {};

    OPENFILENAMEW ofn = {};
    ofn.lStructSize = OSInfo().version() < OSInfo::OS_WIN2000 ? kOpenFileNameSizeOld : sizeof(OPENFILENAMEW);
    ofn.hwndOwner = GetActiveWindow();
    ofn.lpstrFilter = filter.empty() ? nullptr : filterList.c_str();
    ofn.lpstrFile = fileBuffer;
    ofn.nMaxFile = MAX_PATH;
    ofn.lpstrInitialDir = initialDir.empty() ? nullptr : initialDir.c_str();
    ofn.lpstrTitle = title.empty() ? nullptr : title.c_str();
    ofn.Flags = kOpenFileFlags;

    if (!GetOpenFileNameW(&ofn))
        return false;
    file = fileBuffer;
    return true;
}

bool BrowseForFolder(const CStdStr<wchar_t>& title, CStdStr<wchar_t>& folder, CWnd* parent) {
    const CStdStr<wchar_t> start = folder;
    CBrowseForFolderHelper helper(title, start, parent);
    // The dialog can show and select only a folder that exists: make it for the dialog, and take it
    // away again unless the user chose it (under any letter case: the file system does not tell them
    // apart).
    const bool createdHere = !FolderExists(start) && CreateDirectoryW(start.c_str(), nullptr);

    const bool chosen = helper.DoModal();
    if (chosen)
        folder = helper.GetFolder();
    if (createdHere && (!chosen || _wcsicmp(folder.c_str(), start.c_str()) != 0))
        RemoveDirectoryW(start.c_str());
    return chosen;
}

CBrowseForFolderHelper::CBrowseForFolderHelper(const CStdStr<wchar_t>& title, const CStdStr<wchar_t>& folder,
                                               CWnd* parent)
    : m_strTitle(title), m_strFolder(folder), m_pParent(parent) {}

CBrowseForFolderHelper::~CBrowseForFolderHelper() = default;

bool CBrowseForFolderHelper::Browse(const CStdStr<wchar_t>& title, const CStdStr<wchar_t>& folder) {
    m_strTitle = title;
    m_strFolder = folder;
    return DoModal();
}

bool CBrowseForFolderHelper::DoModal() {
    // The owner: the given parent, else the host's main window, else none.
    CWnd* owner = m_pParent != nullptr ? m_pParent : AfxGetMainWnd();

    BROWSEINFOW info = {};
    info.hwndOwner = owner != nullptr ? owner->GetSafeHwnd() : nullptr;
    info.pidlRoot = nullptr;  // the desktop
    info.pszDisplayName = nullptr;
    info.lpszTitle = m_strTitle.c_str();
    info.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NONEWFOLDERBUTTON;
    if (!IsOlderFolderDialogSystem(OSInfo().version()))
        info.ulFlags |= BIF_NEWDIALOGSTYLE;
    info.lpfn = &CBrowseForFolderHelper::BrowseCallback;
    info.lParam = reinterpret_cast<LPARAM>(this);

    bool chosen = false;
    {
        // The item list goes back to the shell whatever happens to it here.
        tav::UniqueItemList item(SHBrowseForFolderW(&info));
        CStdStr<wchar_t> path;
        if (item && PathFromItem(item.get(), path)) {
            m_strFolder = path;
            chosen = true;
        }
    }
    m_hWnd = nullptr;
    return chosen;
}

int CALLBACK CBrowseForFolderHelper::BrowseCallback(HWND hWnd, UINT message, LPARAM param, LPARAM data) {
    auto* helper = reinterpret_cast<CBrowseForFolderHelper*>(data);
    helper->m_hWnd = hWnd;
    // The system's dialog calls this: an exception (memory refused while a path is kept) must not unwind through
    // its frames, which would leave the dialog's windows and its modal loop behind. The dialog is cancelled
    // instead, and the browse ends as a cancel does.
    try {
        switch (message) {
        case BFFM_INITIALIZED: helper->OnInitialized(); break;
        case BFFM_SELCHANGED: helper->OnSelChanged(reinterpret_cast<LPCITEMIDLIST>(param)); break;
        default: break;
        }
    } catch (...) {
        PostMessageW(hWnd, WM_COMMAND, IDCANCEL, 0);
    }
    return 0;
}

void CBrowseForFolderHelper::OnInitialized() {
    if (m_hWnd != nullptr)
        SendMessageW(m_hWnd, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(m_strFolder.c_str()));
}

// The dialog is opened without a status line, so the selection is not shown through SetStatusText here;
// a derived helper that wants it calls SetStatusText from its own OnSelChanged.
void CBrowseForFolderHelper::OnSelChanged(LPCITEMIDLIST item) {
    if (m_hWnd == nullptr)
        return;
    CStdStr<wchar_t> path;
    if (PathFromItem(item, path))
        m_strSelected = path;
}

void CBrowseForFolderHelper::SetStatusText(const wchar_t* path) {
    // Without a dialog there is nothing to show the text in: a search from no window would look through
    // the top-level windows and could write into another program's "Edit".
    if (m_hWnd == nullptr)
        return;
    HWND edit = FindWindowExW(m_hWnd, nullptr, L"Edit", nullptr);
    const size_t limit = edit != nullptr ? 40 : 50;
    CStdStr<wchar_t> text = path != nullptr ? path : L"";
    if (text.size() > limit) {
        CStdStr<wchar_t> shortened;
        shortened.Format(L"%s...%s", text.substr(0, 5).c_str(), text.substr(text.size() - (limit - 8)).c_str());
        text = shortened;
    }
    if (edit != nullptr)
        SetWindowTextW(edit, text.c_str());
    else
        SendMessageW(m_hWnd, BFFM_SETSTATUSTEXTW, 0, reinterpret_cast<LPARAM>(text.c_str()));
}
