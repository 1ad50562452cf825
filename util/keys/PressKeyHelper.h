// PressKeyHelper: presses or releases single keys, through SendInput where the system has it and
// keybd_event on Windows 95. SendKeys uses it for Control+C, Control+V and Control+X.
#pragma once

#include "../platform/Export.h"
#include "../platform/Handles.h"
#include "../system/OSInfo.h"

#include <windows.h>

class TAVUTIL_API PressKeyHelper {
public:
    PressKeyHelper();
    virtual ~PressKeyHelper();
    PressKeyHelper(const PressKeyHelper&) = delete;
    PressKeyHelper& operator=(const PressKeyHelper&) = delete;

    // One key event: `flags` 0 presses, KEYEVENTF_KEYUP (2) releases. Through SendInput the helper then
    // pauses 40 ms, so that the target sees the keys one by one; through keybd_event it does not pause.
    void Press(WORD virtualKey, DWORD flags);

    bool UsesSendInput() const { return m_pfnSendInput != nullptr; }

private:
    using SendInputFn = UINT(WINAPI*)(UINT, LPINPUT, int);

    CPlatforme m_platform;
    tav::UniqueModule m_hUser32;
    SendInputFn m_pfnSendInput = nullptr;
};
