// CWait: a wait of a given length that keeps the calling thread's messages flowing, and ends early when
// aborted, when a quit message arrives or, on request, when a command message arrives.
#pragma once

#include "../platform/Export.h"

#include <cstdint>

// The numbers are fixed: hosts store and compare them.
enum CWaitStatus : std::int32_t {
    CWAIT_WAITING = 0,
    CWAIT_ABORTED = 1,
    CWAIT_TIMEOUT = 2,
    CWAIT_QUIT = 3,     // a WM_QUIT is in the queue (left there for the caller's loop)
    CWAIT_COMMAND = 4,  // a WM_COMMAND is in the queue (left there)
};

class TAVUTIL_API CWait {
public:
    CWait() = default;
    CWait(const CWait&) = default;
    CWait& operator=(const CWait&) = default;
    virtual ~CWait();

    // Waits up to `timeoutMs`, looking at the queue every `stepMs`: a queued WM_QUIT (and, with
    // stopOnCommand, a WM_COMMAND) ends the wait and stays queued; any other message is pumped. A wait
    // that has already finished (or was aborted before it began) returns its status at once: Wait never
    // resets the status, so a finished CWait waits again only after Init() (callers rely on an Abort
    // issued before Wait not being lost).
    CWaitStatus Wait(unsigned long timeoutMs, unsigned long stepMs, bool stopOnCommand);
    // Ends a running or future wait with CWAIT_ABORTED; a finished status is kept. Returns the status.
    // May be called from a message handler that the wait's pump runs.
    CWaitStatus Abort();
    // Back to CWAIT_WAITING.
    void Init();

    CWaitStatus GetStatus() const { return m_status; }

private:
    CWaitStatus m_status = CWAIT_WAITING;
};
