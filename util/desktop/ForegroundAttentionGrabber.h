// ForegroundAttentionGrabber: while it lives, the calling thread may bring its own windows to the front even
// when another process owns the foreground. Windows refuses foreground changes from background processes;
// a tap of the Alt key and a temporary attachment of this thread's input to the foreground thread's input
// lift that lock. The attachment lasts exactly as long as the object: keep it short-lived and on the stack
// of the thread that activates the window.
#pragma once

#include "../platform/Export.h"

#include <windows.h>

class TAVUTIL_API ForegroundAttentionGrabber {
public:
    ForegroundAttentionGrabber();
    virtual ~ForegroundAttentionGrabber();

    // A copy would detach the same input a second time when destroyed: the guard is not copyable.
    ForegroundAttentionGrabber(const ForegroundAttentionGrabber&) = delete;
    ForegroundAttentionGrabber& operator=(const ForegroundAttentionGrabber&) = delete;

    // True while this thread's input is attached to the foreground thread (another process owned the
    // foreground when the grabber was made and the attachment succeeded).
    bool IsAttached() const { return m_attached; }

private:
    void doOurBlackMagic();

    bool m_attached;
    DWORD m_foregroundThreadId;
    DWORD m_currentThreadId;
};
