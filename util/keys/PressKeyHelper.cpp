// PressKeyHelper: single key events through SendInput where the platform has it, keybd_event elsewhere.
#include "keys/PressKeyHelper.h"

#include "platform/SystemModule.h"

PressKeyHelper::PressKeyHelper() {
    // Windows 95 (classification 0) has no SendInput. Systems the classification does not know are newer
    // than all it knows, and have it.
    if (m_platform.GetClassification() != CPlatforme::PLATFORM_WIN95) {
        m_hUser32.reset(tav::LoadSystemModule(L"USER32.DLL"));
        m_pfnSendInput = tav::ModuleFunction<SendInputFn>(m_hUser32.get(), "SendInput");
    }
}

PressKeyHelper::~PressKeyHelper() = default;

void PressKeyHelper::Press(WORD virtualKey, DWORD flags) {
    if (m_pfnSendInput == nullptr) {
        keybd_event(static_cast<BYTE>(virtualKey), 0, flags, 0);
        return;
    }
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(virtualKey, 0));
    input.ki.dwFlags = flags;
    m_pfnSendInput(1, &input, sizeof(input));
    Sleep(40);
}
