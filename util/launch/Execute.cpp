#include "launch/Execute.h"

#include "desktop/ForegroundAttentionGrabber.h"
#include "files/FileName.h"
#include "launch/CommandLine.h"
#include "launch/detail/Environment.h"
#include "launch/detail/ShellDirectory.h"
#include "launch/detail/WindowSearch.h"
#include "platform/Handles.h"
#include "system/OSInfo.h"

#include <shellapi.h>

#include <vector>

namespace {

constexpr DWORD kInputIdleTimeoutMs = 5000;
constexpr int kWindowSearchPasses = 3;

// Gives the foreground to the desktop for the lifetime of the object, and hands it back to the window that
// had it.
class DesktopForeground {
public:
    DesktopForeground() : m_previous(GetForegroundWindow()) { SetForegroundWindow(GetDesktopWindow()); }
    ~DesktopForeground() {
        if (m_previous)
            SetForegroundWindow(m_previous);
    }
    DesktopForeground(const DesktopForeground&) = delete;
    DesktopForeground& operator=(const DesktopForeground&) = delete;

private:
    HWND m_previous;
};

bool OpenShortcut(const CStdStr<wchar_t>& programText) {
    if (!isValidFile(programText, false))
        return false;
    HINSTANCE result = ShellExecuteW(nullptr, nullptr, programText.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(result) > 32;
}

bool ShellOpen(const CStdStr<wchar_t>& programText, const CStdStr<wchar_t>& parameters, unsigned int showCmd,
               HANDLE* processOut) {
    cVistaHelper vista;
    if (!vista.IsVista()) {
        // Before desktop composition the foreground lock is lifted by making and dropping a grabber at once.
        ForegroundAttentionGrabber grabber;
    }

    const CStdStr<wchar_t> directory = tav::launch::detail::ShellDirectoryFor(programText);
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = SEE_MASK_FLAG_NO_UI | (processOut ? SEE_MASK_NOCLOSEPROCESS : 0);
    info.lpVerb = L"open";
    info.lpFile = programText.c_str();
    info.lpParameters = parameters.c_str();
    info.lpDirectory = directory.c_str();
    info.nShow = static_cast<int>(showCmd);

    bool result;
    {
        DesktopForeground desktop;
        // A substring test, not a suffix test: ".lnk" in a folder name also takes the shortcut path, which
        // ignores the parameters and the show command.
        if (programText.ToUpper().Find(L".LNK") < 0)
            result = ShellExecuteExW(&info) != FALSE;
        else
            result = OpenShortcut(programText);
        if (processOut)
            *processOut = info.hProcess;
    }
    return result;
}

}  // namespace

bool ExecuteProgram(const CStdStr<wchar_t>& commandLine, unsigned int showCmd, bool wait, HANDLE* processOut) {
    CStdStr<wchar_t> program, args;
    if (!ExtractProgram(commandLine, program, args))
        return false;
    return ExecuteProgram(program, args, showCmd, wait, processOut);
}

bool ExecuteProgram(const CStdStr<wchar_t>& program, const CStdStr<wchar_t>& parameters, unsigned int showCmd,
                    bool wait, HANDLE* processOut) {
    const CStdStr<wchar_t> programText = tav::launch::detail::ExpandEnvironment(program);
    if (wait) {
        // No quotes are added around the program; parameters from ExtractProgram bring their own blank.
        return ExecProgAndWaitForInit(programText + L" " + parameters, showCmd);
    }
    return ShellOpen(programText, parameters, showCmd, processOut);
}

bool ExecProgAndWaitForInit(const CStdStr<wchar_t>& commandLine, unsigned int showCmd) {
    // The whole line, arguments included, is split as one file name: a backslash inside the arguments moves
    // the folder the program starts in. Hosts depend on this and it is kept.
    CStdStr<wchar_t> directory, file;
    CFileName(commandLine.c_str()).Split(directory, file);

    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = static_cast<WORD>(showCmd);

    ForegroundAttentionGrabber grabber;
    std::vector<wchar_t> buffer(commandLine.begin(), commandLine.end());
    buffer.push_back(L'\0');
    PROCESS_INFORMATION created = {};
    if (!CreateProcessW(nullptr, buffer.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        directory.IsEmpty() ? nullptr : directory.c_str(), &startup, &created))
        return false;
    tav::UniqueHandle process(created.hProcess), thread(created.hThread);

    if (WaitForInputIdle(process.get(), kInputIdleTimeoutMs) != 0)
        return false;  // not ready in time: reported, and the program is left running
    for (int pass = 0; pass < kWindowSearchPasses; ++pass) {
        if (tav::launch::detail::BringFirstWindowToFront(created.dwProcessId))
            break;
        Sleep(1000);
    }
    return true;
}

bool BringProcessToForeground(DWORD processId, HANDLE process) {
    if (process && WaitForSingleObject(process, 0) == WAIT_OBJECT_0)
        return false;
    for (int pass = 0; pass < kWindowSearchPasses; ++pass) {
        if (tav::launch::detail::BringFirstWindowToFront(processId))
            return true;
        Sleep(1000);
        if (process && WaitForSingleObject(process, 20) == WAIT_OBJECT_0)
            return false;
    }
    return false;
}
