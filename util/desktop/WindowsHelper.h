// cWindowsHelper: window look-ups across threads: the window that has the keyboard focus in another
// thread, a descendant window by class name, and a window handle as text.
#pragma once

#include "../platform/Export.h"
#include "../strings/StdStr.h"

#include <windows.h>

class TAVUTIL_API cWindowsHelper {
public:
    cWindowsHelper() = default;

    // The focus window of `window`'s thread, read while this thread's input is attached to it; null when
    // the attachment fails.
    static HWND GetFocusWindow(HWND window);

    // The descendant of `parent` whose class is `className` (ignoring case). Every descendant is examined,
    // so with several matches the one enumerated last is returned; null when none matches.
    HWND GetChildWindow(HWND parent, CStdStr<wchar_t> className);

    // The handle's low 32 bits as a signed decimal number.
    static CStdStr<wchar_t> HandleToString(HWND window);

private:
    static BOOL CALLBACK EnumChildProc(HWND window, LPARAM helper);

    HWND m_found = nullptr;
    const CStdStr<wchar_t>* m_className = nullptr;  // valid only during GetChildWindow
};
