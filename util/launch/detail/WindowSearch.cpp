#include "launch/detail/WindowSearch.h"

namespace tav::launch::detail {
namespace {

struct SearchContext {
    DWORD processId;
    bool found;
};

void Activate(HWND window, DWORD processId) {
    DWORD foregroundThread = GetWindowThreadProcessId(GetForegroundWindow(), nullptr);
    // The process id stands where a thread id belongs in both AttachThreadInput calls, and the two
    // conditions differ: this is how the suite has always activated launched programs, and it is kept.
    if (foregroundThread != processId)
        AttachThreadInput(foregroundThread, processId, TRUE);
    HWND popup = GetLastActivePopup(window);
    SetForegroundWindow(IsWindow(popup) ? popup : window);
    if (foregroundThread != GetCurrentThreadId())
        AttachThreadInput(foregroundThread, processId, FALSE);
}

BOOL CALLBACK ActivateFirstWindowOfProcess(HWND window, LPARAM param) {
    SearchContext* context = reinterpret_cast<SearchContext*>(param);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner != context->processId)
        return TRUE;
    // Visibility, owner and class are not examined: the first window of the process is the one.
    Activate(window, context->processId);
    context->found = true;
    return FALSE;
}

}  // namespace

bool BringFirstWindowToFront(DWORD processId) {
    SearchContext context{processId, false};
    EnumWindows(&ActivateFirstWindowOfProcess, reinterpret_cast<LPARAM>(&context));
    return context.found;
}

}  // namespace tav::launch::detail
