#include "process/ProcessFinder.h"

#include "platform/MessagePump.h"
#include "files/FileName.h"

std::unique_ptr<CProcessFinder> CProcessFinder::s_pInstance;

CProcessFinder::~CProcessFinder() = default;

CProcessFinder* CProcessFinder::Instance(bool stripExtension) {
    // The first caller's flag wins: later callers get the same object whatever they ask for.
    if (!s_pInstance)
        s_pInstance = Instantiate(stripExtension);
    return s_pInstance.get();
}

std::unique_ptr<CProcessFinder> CProcessFinder::Instantiate(bool stripExtension) {
    OSInfo os;
    std::unique_ptr<CProcessFinder> finder;
    if (os.useVxdDriver())
        finder.reset(new CProcessFinder95());
    else if (os.version() == OSInfo::OS_WINNT4)
        finder.reset(new CProcessFinderNT());
    else
        finder.reset(new CProcessFinder2kPlus());
    finder->m_stripExtension = stripExtension;
    return finder;
}

HWND CProcessFinder::WaitForegroundWindow() {
    const int kRounds = 10;
    for (int round = 0; round < kRounds; ++round) {
        if (HWND window = GetForegroundWindow())
            return window;
        MSG msg;
        if (PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE)) {
            // A quit or a command for the caller ends the wait and stays queued for the caller's own loop.
            if (msg.message == WM_QUIT || msg.message == WM_COMMAND)
                return nullptr;
            // Anything else is handled as the calling user-interface thread would, so that it stays responsive.
            tav::PumpMessage();
        }
        Sleep(0);
    }
    return nullptr;
}

DWORD CProcessFinder::OwnerProcessId(__int64 window) {
    HWND handle = window != 0 ? reinterpret_cast<HWND>(static_cast<INT_PTR>(window)) : WaitForegroundWindow();
    if (handle == nullptr)
        return 0;
    DWORD pid = 0;
    // A handle that is no window has no owner: reported as no process rather than as process 0.
    if (GetWindowThreadProcessId(handle, &pid) == 0)
        return 0;
    return pid;
}

void CProcessFinder::StripExtensionIfAsked(CStdStr<wchar_t>& text) const {
    if (m_stripExtension)
        CFileName::StripExtension(text);
}

CStdStr<wchar_t> CProcessFinder::GetForegroundProcessName(__int64 window) {
    CStdStr<wchar_t> result;
    DWORD pid = OwnerProcessId(window);
    if (pid == 0)
        return result;  // the wait gave up: no process to name
    GetProcessName(pid, result);
    StripExtensionIfAsked(result);
    return result;
}

// The full name loses its extension under the flag too: hosts compare it with names stored that way.
CStdStr<wchar_t> CProcessFinder::GetForegroundProcessFullName(__int64 window) {
    CStdStr<wchar_t> result;
    DWORD pid = OwnerProcessId(window);
    if (pid == 0)
        return result;
    GetProcessFullName(pid, result);
    StripExtensionIfAsked(result);
    return result;
}
