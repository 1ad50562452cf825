#include "desktop/WindowsHelper.h"

#include "platform/Guards.h"

HWND cWindowsHelper::GetFocusWindow(HWND window) {
    DWORD threadId = GetWindowThreadProcessId(window, nullptr);
    DWORD currentThreadId = GetCurrentThreadId();
    tav::InputAttachment attachment(currentThreadId, threadId);
    if (!attachment.attached())
        return nullptr;
    GUITHREADINFO info = {};
    info.cbSize = sizeof(info);  // 72
    GetGUIThreadInfo(threadId, &info);
    return info.hwndFocus;  // read before the attachment ends, as the focus belongs to the attached input
}

HWND cWindowsHelper::GetChildWindow(HWND parent, CStdStr<wchar_t> className) {
    m_found = nullptr;
    m_className = &className;
    EnumChildWindows(parent, &cWindowsHelper::EnumChildProc, reinterpret_cast<LPARAM>(this));
    m_className = nullptr;
    return m_found;
}

BOOL CALLBACK cWindowsHelper::EnumChildProc(HWND window, LPARAM helper) {
    cWindowsHelper* self = reinterpret_cast<cWindowsHelper*>(helper);
    wchar_t name[260] = {};
    GetClassNameW(window, name, 260);  // at most 259 characters and the terminator
    if (self->m_className->CompareNoCase(name) == 0)
        self->m_found = window;
    // The search never stops early: the last matching window in enumeration order is the one returned.
    return TRUE;
}

CStdStr<wchar_t> cWindowsHelper::HandleToString(HWND window) {
    CStdStr<wchar_t> text;
    text.Format(L"%ld", static_cast<long>(static_cast<LONG>(reinterpret_cast<ULONG_PTR>(window) & 0xFFFFFFFFu)));
    return text;
}
