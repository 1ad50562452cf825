#include "platform/CWnd.h"

namespace {
// Process-wide: the host's main window. Written only by the host through tav::SetMainWnd (on its
// user-interface thread), read by the dialogs as their default owner. Not owned by the library.
CWnd* s_mainWnd = nullptr;
}  // namespace

CWnd* AfxGetMainWnd() { return s_mainWnd; }

namespace tav {
void SetMainWnd(CWnd* mainWnd) { s_mainWnd = mainWnd; }
}  // namespace tav
