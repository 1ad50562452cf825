#include "desktop/Wait.h"

#include "platform/MessagePump.h"

#include <windows.h>

CWait::~CWait() = default;

CWaitStatus CWait::Wait(unsigned long timeoutMs, unsigned long stepMs, bool stopOnCommand) {
    const DWORD start = GetTickCount();
    while (m_status == CWAIT_WAITING) {
        MSG msg;
        if (PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE)) {
            if (msg.message == WM_QUIT)
                return m_status = CWAIT_QUIT;
            if (stopOnCommand && msg.message == WM_COMMAND)
                return m_status = CWAIT_COMMAND;
            tav::PumpMessage();
        }
        const DWORD now = GetTickCount();
        // A start after now means the tick count wrapped: the wait ends rather than running for 49 days.
        if (now - start > timeoutMs || start > now)
            return m_status = CWAIT_TIMEOUT;
        Sleep(stepMs);
    }
    return m_status;
}

CWaitStatus CWait::Abort() {
    if (m_status == CWAIT_WAITING)
        m_status = CWAIT_ABORTED;
    return m_status;
}

void CWait::Init() { m_status = CWAIT_WAITING; }
