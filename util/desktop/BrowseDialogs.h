// The open-file picker and the browse-for-folder picker. Both are modal, on the caller's thread, and
// answer true when the user confirmed a choice.
#pragma once

#include "../platform/CWnd.h"
#include "../platform/Export.h"
#include "../strings/StdStr.h"

#include <windows.h>
#include <shlobj.h>

// Asks for an existing file. `filter` is written as pairs of description and pattern, each ended by "|",
// the whole ended by one more "|" ("Text files|*.txt||"). An empty title or folder leaves the dialog's
// own. On confirmation `file` receives the full path; on cancel it is left unchanged.
TAVUTIL_API bool BrowseFiles(const CStdStr<wchar_t>& filter, CStdStr<wchar_t>& file, const CStdStr<wchar_t>& initialDir,
                             const CStdStr<wchar_t>& title);

// Asks for a folder, starting at `folder` (made for the dialog when it does not exist, and removed again
// unless the user chose it). On confirmation `folder` receives the chosen one. With no parent, the
// host's main window (AfxGetMainWnd) owns the dialog.
TAVUTIL_API bool BrowseForFolder(const CStdStr<wchar_t>& title, CStdStr<wchar_t>& folder, CWnd* parent);

// Runs the shell's folder dialog and receives its callbacks: preselects the starting folder and keeps
// the chosen path. Hosts may derive from it to react to the callbacks.
class TAVUTIL_API CBrowseForFolderHelper {
public:
    CBrowseForFolderHelper(const CStdStr<wchar_t>& title, const CStdStr<wchar_t>& folder, CWnd* parent);
    virtual ~CBrowseForFolderHelper();

    // Runs the dialog; true when the user chose a folder with a file-system path (then in GetFolder()).
    virtual bool DoModal();
    // Stores the title and the starting folder, then runs the dialog.
    virtual bool Browse(const CStdStr<wchar_t>& title, const CStdStr<wchar_t>& folder);
    // The dialog is ready: selects the starting folder.
    virtual void OnInitialized();
    // Shows `path` in the dialog, shortened to 40 characters in its "Edit" child when it has one, else to
    // 50 characters as its status text: the first 5 characters, "...", and the end of the path.
    virtual void SetStatusText(const wchar_t* path);
    // The selection moved: remembers its file-system path, if it has one.
    virtual void OnSelChanged(LPCITEMIDLIST item);

    HWND GetSafeHwnd() const { return m_hWnd; }
    const CStdStr<wchar_t>& GetTitle() const { return m_strTitle; }
    // The starting folder before the dialog, the chosen folder after a confirmed one.
    const CStdStr<wchar_t>& GetFolder() const { return m_strFolder; }
    // The path of the last selection the dialog reported.
    const CStdStr<wchar_t>& GetSelectedPath() const { return m_strSelected; }

protected:
    // The dialog's callback: records the dialog's window, then hands the notification on.
    static int CALLBACK BrowseCallback(HWND hWnd, UINT message, LPARAM param, LPARAM data);

    HWND m_hWnd = nullptr;  // the dialog, while it is open
    CStdStr<wchar_t> m_strTitle;
    CStdStr<wchar_t> m_strFolder;
    CStdStr<wchar_t> m_strSelected;
    CStdStr<wchar_t> m_strReserved;  // kept empty
    CWnd* m_pParent = nullptr;
};
