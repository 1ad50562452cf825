#include "desktop/ForegroundAttentionGrabber.h"

#include "system/detail/WindowsVersion.h"

namespace {

// One SendInput call with left Alt down and up: a keystroke of this process unlocks the foreground for it.
void TapLeftAlt() {
    INPUT inputs[2] = {};
    inputs[0].type = INPUT_KEYBOARD;
    inputs[0].ki.wVk = VK_LMENU;
    inputs[1].type = INPUT_KEYBOARD;
    inputs[1].ki.wVk = VK_LMENU;
    inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, inputs, sizeof(INPUT));
}

}  // namespace

ForegroundAttentionGrabber::ForegroundAttentionGrabber()
    : m_attached(false), m_foregroundThreadId(0), m_currentThreadId(0) {
    doOurBlackMagic();
}

// The grabber is itself the guard of its attachment: the flag and the two thread ids are its settled fields.
ForegroundAttentionGrabber::~ForegroundAttentionGrabber() {
    if (m_attached)
        AttachThreadInput(m_currentThreadId, m_foregroundThreadId, FALSE);
}

void ForegroundAttentionGrabber::doOurBlackMagic() {
    if (tav::system::detail::IsNtFamily())
        TapLeftAlt();

    DWORD foregroundProcessId = 0;
    m_foregroundThreadId = GetWindowThreadProcessId(GetForegroundWindow(), &foregroundProcessId);
    if (foregroundProcessId == GetCurrentProcessId())
        return;  // the foreground is ours already: nothing to attach

    m_currentThreadId = GetCurrentThreadId();
    m_attached = AttachThreadInput(m_currentThreadId, m_foregroundThreadId, TRUE) == 1;
    if (!m_attached)
        return;
    // Creating and closing a window on the attached input completes the unlock; the window is never shown.
    HWND window = CreateWindowExW(0, L"Button", nullptr, WS_POPUP, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                  CW_USEDEFAULT, nullptr, nullptr, nullptr, nullptr);
    if (window == nullptr)
        return;
    SendMessageW(window, WM_CLOSE, 0, 0);
    // The close goes through WM_CLOSE as it always has; a window that is still there after it (the message
    // could not be delivered) is destroyed here, or every grabber would leave one window behind.
    if (IsWindow(window))
        DestroyWindow(window);
}
