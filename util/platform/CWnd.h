// CWnd: the window object of the platform class library, as far as TavUtil's interface uses it: a window
// handle that the object does not own. Also the host application's main window, which the class library
// keeps in its application object and hands to code that needs an owner for a dialog.
#pragma once

#include "Export.h"

#include <windows.h>

class CWnd {
public:
    CWnd() = default;
    explicit CWnd(HWND hWnd) : m_hWnd(hWnd) {}
    virtual ~CWnd() = default;

    // The class library also answers null for a null object pointer; here callers check the pointer.
    HWND GetSafeHwnd() const { return m_hWnd; }
    operator HWND() const { return GetSafeHwnd(); }

    BOOL Attach(HWND hWnd) {
        m_hWnd = hWnd;
        return hWnd != nullptr;
    }
    HWND Detach() {
        HWND hWnd = m_hWnd;
        m_hWnd = nullptr;
        return hWnd;
    }

    HWND m_hWnd = nullptr;
};

// The host application's main window, or null: set by the host (the class library's application object
// does it when the main window is created), read by the library when a dialog needs an owner.
TAVUTIL_API CWnd* AfxGetMainWnd();
namespace tav {
TAVUTIL_API void SetMainWnd(CWnd* mainWnd);
}
