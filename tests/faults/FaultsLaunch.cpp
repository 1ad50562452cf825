// Operations that start programs: the shell's open, the created process waited for until it is ready, a command
// line split and started, a messenger from its registered command line, and a program brought to the front. They
// start only the launch tests' probe (tests/launch/probe), and every probe a run started is ended after it, with
// the handles the run was given.
#include "Faults.h"

#include "Desktop.h"
#include "KeyTestWindows.h"
#include "TestSupport.h"

#include <TavUtil.h>
#include "capi/TavUtilC.h"

#include <windows.h>

#include <objbase.h>
#include <shlobj.h>
#include <tlhelp32.h>

#include <memory>

namespace faults {

namespace {

Operation Op(const char* area, std::string name, std::function<Answer()> run, std::vector<Answer> neutral,
             unsigned allow = 0) {
    Operation op{area, name, std::move(run), std::move(neutral), allow, nullptr, {}, {}, false};
    op.expectStatus = 1;  // every operation here succeeds with nothing failing
    return op;
}

constexpr wchar_t kProbeName[] = L"tavlaunchprobe.exe";
constexpr wchar_t kProbeClass[] = L"TavLaunchProbe";
constexpr DWORD kProbeWaitMs = 20000;

// Measured with raw calls outside the library: a WaitForInputIdle on a child process keeps one more handle in the
// calling process each time under Wine, whether the child is then ended or not.
constexpr char kWaitForInputIdleKeepsHandles[] =
    "Wine keeps a handle of the caller's with every WaitForInputIdle on a child process";

// The probe beside faults.exe (both are built into the same folder).
std::wstring ProbePath() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder(path, length);
    return folder.substr(0, folder.find_last_of(L'\\') + 1) + kProbeName;
}

// Ends every probe of the session, waiting until each has gone: a run's starts are not all handed back (the
// waiting start and the shell's open without a handle keep theirs), and the session holds no other probes while
// the fault run owns the desktop.
void EndProbes() {
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return;
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry)) {
        if (_wcsicmp(entry.szExeFile, kProbeName) != 0)
            continue;
        if (HANDLE process = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, entry.th32ProcessID)) {
            TerminateProcess(process, 1);
            WaitForSingleObject(process, kProbeWaitMs);
            CloseHandle(process);
        }
    }
    CloseHandle(snapshot);
}

// Ends the process of a handle the library gave out, and closes the handle through the library.
void EndAndClose(tav_handle process) {
    if (process == nullptr)
        return;
    TerminateProcess(static_cast<HANDLE>(process), 1);
    WaitForSingleObject(static_cast<HANDLE>(process), kProbeWaitMs);
    tav_launch_close_handle(process);
}

// The answer of a start that may hand out a handle: its result and whether a handle came, which is then ended.
Answer EndHanded(int32_t started, tav_handle process) {
    const bool handed = process != nullptr;
    EndAndClose(process);
    return Answer{started, handed ? L"handle" : L""};
}

// After a run: the probes gone, and the typing target in front again for the operations after this one.
void AfterLaunch() {
    EndProbes();
    tavtest::PumpMessages();
}

// A probe of the run's own, started without the library, with its window shown.
struct StartedProbe {
    PROCESS_INFORMATION info = {};

    void Start() {
        STARTUPINFOW startup = {};
        startup.cb = sizeof(startup);
        std::wstring line = L"\"" + ProbePath() + L"\"";
        if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info)) {
            info = {};
            return;
        }
        CloseHandle(info.hThread);
        info.hThread = nullptr;
        // Ready once its window answers (not WaitForInputIdle: see kWaitForInputIdleKeepsHandles).
        HWND window = nullptr;
        tavtest::WaitUntil(
            [this, &window] {
                const std::vector<HWND> windows = tavtest::TopLevelWindowsOf(info.dwProcessId, kProbeClass);
                window = windows.empty() ? nullptr : windows.front();
                return window != nullptr;
            },
            kProbeWaitMs);
        if (window != nullptr)
            tavtest::SyncWithThreadOf(window, kProbeWaitMs);
    }

    void End() {
        if (info.hProcess != nullptr) {
            TerminateProcess(info.hProcess, 1);
            WaitForSingleObject(info.hProcess, kProbeWaitMs);
            CloseHandle(info.hProcess);
        }
        info = {};
    }
};

// Each run of `op` starts the probe and brings its window to the front first, and ends it afterwards.
void WithProbeInFront(Operation& op, const std::shared_ptr<StartedProbe>& started) {
    op.setup = [started] {
        started->Start();
        const std::vector<HWND> windows = tavtest::TopLevelWindowsOf(started->info.dwProcessId, kProbeClass);
        if (!windows.empty())
            tavtest::BringToFront(windows.front());
    };
    op.teardown = [started] {
        started->End();
        tavtest::PumpMessages();
    };
}

// Whether this thread's input is still joined to another process's thread: the active window it sees is then
// that thread's. Every attachment the library makes must be undone when the call returns.
bool InputStillAttached() {
    HWND active = GetActiveWindow();
    DWORD owner = 0;
    if (active != nullptr)
        GetWindowThreadProcessId(active, &owner);
    return active != nullptr && owner != GetCurrentProcessId();
}

// The answer of a start that makes a grabber: its result, and whether the input was left attached.
Answer Started(int32_t result) { return {result, InputStillAttached() ? L"input left attached" : L""}; }

// A shortcut to the probe in the run's folder, made once (the shell's link object, not the library).
std::wstring ProbeShortcut() {
    static const std::wstring path = [] {
        const std::wstring link = Scratch() + L"probe.lnk";
        IShellLinkW* shellLink = nullptr;
        if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                    reinterpret_cast<void**>(&shellLink))))
            return link;
        shellLink->SetPath(ProbePath().c_str());
        IPersistFile* file = nullptr;
        if (SUCCEEDED(shellLink->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file)))) {
            file->Save(link.c_str(), TRUE);
            file->Release();
        }
        shellLink->Release();
        return link;
    }();
    return path;
}

// The C++ form's process out-parameter: "null" (a failure or a shortcut), "handle", or "untouched".
std::wstring HandleOut(HANDLE process, HANDLE untouched) {
    return process == untouched ? L"untouched" : process == nullptr ? L"null" : L"handle";
}

std::wstring MessengerKey() { return L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msnmsgr.exe"; }

}  // namespace

void AddLaunchOperations(std::vector<Operation>& out) {
    const std::wstring probe = ProbePath();

    // The shell's open: 1 with the process handle, or 0 and no handle when it could not be started.
    {
        Operation op = Op("launch", "program",
                          [probe] {
                              tav_handle process = nullptr;
                              const int32_t started =
                                  tav_launch_program(probe.c_str(), L"--open", TAV_SW_SHOWNOACTIVATE, 0, &process);
                              return EndHanded(started, process);
                          },
                          {{0, L""}});
        op.teardown = AfterLaunch;
        out.push_back(op);
    }
    // The created process, waited for: 1 once it was ready for input (whether or not a window could be brought
    // to the front), 0 when it could not be created or its readiness could not be learnt (it is left running).
    {
        Operation op = Op("launch", "program_wait",
                          [probe] {
                              tav_handle process = reinterpret_cast<tav_handle>(1);
                              const int32_t started =
                                  tav_launch_program(probe.c_str(), L"--wait", TAV_SW_SHOWNOACTIVATE, 1, &process);
                              // The waiting start hands out no handle.
                              return process == nullptr ? Started(started) : Answer{started, L"handle"};
                          },
                          {{0, L""}});
        op.teardown = AfterLaunch;
        op.platformKeepsHandles = kWaitForInputIdleKeepsHandles;
        out.push_back(op);
    }
    // A command line split into the program and its arguments (a search-path look-up per blank), then opened.
    {
        Operation op = Op("launch", "command_line",
                          [probe] {
                              tav_handle process = nullptr;
                              const int32_t started = tav_launch_command_line((probe + L" --line").c_str(),
                                                                              TAV_SW_SHOWNOACTIVATE, 0, &process);
                              return EndHanded(started, process);
                          },
                          {{0, L""}});
        op.teardown = AfterLaunch;
        out.push_back(op);
    }
    out.push_back(Op("launch", "and_wait_for_init",
                     [probe] {
                         // Unquoted: the waiting start takes the whole line as the path its folder comes from.
                         return Started(
                             tav_launch_and_wait_for_init((probe + L" --init").c_str(), TAV_SW_SHOWNOACTIVATE));
                     },
                     {{0, L""}}));
    out.back().teardown = AfterLaunch;
    out.back().platformKeepsHandles = kWaitForInputIdleKeepsHandles;

    // The C++ form: the out-parameter receives the shell's process handle, or null after a failure (as settled),
    // and a shortcut (a program text holding ".lnk") goes through the shell's plain open, which gives no handle.
    for (const bool shortcut : {false, true}) {
        Operation op = Op("launch", shortcut ? "execute_shortcut_cpp" : "execute_program_cpp",
                          [shortcut, probe] {
                              HANDLE untouched = reinterpret_cast<HANDLE>(0x1234);
                              HANDLE process = untouched;
                              const bool started = ExecuteProgram(shortcut ? ProbeShortcut() : probe, L"--cpp",
                                                                  SW_SHOWNOACTIVATE, false, &process);
                              const std::wstring out = HandleOut(process, untouched);
                              if (process != untouched)
                                  EndAndClose(process);
                              return Answer{started ? 1 : 0, out};
                          },
                          {{0, L"null"}});
        op.teardown = AfterLaunch;
        out.push_back(op);
    }

    // A messenger: 1 whenever its command line is registered, whether or not the start succeeded; 0 when the
    // registered line cannot be read.
    {
        Operation op = Op("launch", "messenger",
                          [] {
                              return Answer{tav_launch_messenger(L"MSN Messenger"), L""};
                          },
                          {{0, L""}});
        op.setup = [probe] {
            HKEY key = nullptr;
            if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, MessengerKey().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                &key, nullptr) == 0) {
                const std::wstring line = probe + L" --messenger";
                RegSetValueExW(key, L"", 0, REG_SZ, reinterpret_cast<const BYTE*>(line.c_str()),
                               static_cast<DWORD>((line.size() + 1) * sizeof(wchar_t)));
                RegCloseKey(key);
            }
        };
        op.teardown = [] {
            RegDeleteKeyW(HKEY_LOCAL_MACHINE, MessengerKey().c_str());
            AfterLaunch();
        };
        out.push_back(op);
    }

    // A running program brought to the front: 1 when a window of it was activated, 0 when none could be found.
    {
        auto started = std::make_shared<StartedProbe>();
        Operation op = Op(
            "launch", "bring_to_foreground",
            [started] {
                return Answer{tav_launch_bring_to_foreground(started->info.dwProcessId, started->info.hProcess), L""};
            },
            {{0, L""}});
        op.setup = [started] { started->Start(); };
        op.teardown = [started] {
            started->End();
            tavtest::PumpMessages();
        };
        out.push_back(op);
    }

    // The focus window of another process's window: null where the attachment, or the thread's state, could not
    // be had (the attachment is undone either way).
    {
        auto started = std::make_shared<StartedProbe>();
        Operation op =
            Op("windows", "focus_window_other_process",
               [started] {
                   const std::vector<HWND> windows = tavtest::TopLevelWindowsOf(started->info.dwProcessId, kProbeClass);
                   const HWND focus =
                       windows.empty() ? nullptr : static_cast<HWND>(tav_window_focus_window(windows.front()));
                   return Answer{focus != nullptr, InputStillAttached() ? L"input left attached" : L""};
               },
               {{0, L""}});
        WithProbeInFront(op, started);
        out.push_back(op);
    }

    // The grabber while another process has the foreground: it attaches, makes and closes its window, and
    // detaches when it ends. No attachment means no detachment; none may outlive the grabber.
    {
        auto started = std::make_shared<StartedProbe>();
        Operation op = Op("foreground", "grabber_other_process",
                          [] {
                              tav_grabber grabber = tav_foreground_grabber_begin();
                              if (grabber == nullptr)
                                  return Answer{TAV_E_OUT_OF_MEMORY, L""};
                              const int32_t attached = tav_foreground_grabber_is_attached(grabber);
                              tav_foreground_grabber_end(grabber);
                              return Answer{attached, InputStillAttached() ? L"input left attached" : L""};
                          },
                          {{0, L""}});
        WithProbeInFront(op, started);
        out.push_back(op);
    }
}

}  // namespace faults
