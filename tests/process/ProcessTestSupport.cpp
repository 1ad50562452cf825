#include "ProcessTestSupport.h"

#include <psapi.h>
#include <tlhelp32.h>

namespace proctest {

namespace {

struct WindowSearch {
    DWORD pid;
    const wchar_t* windowClass;
    HWND found;
};

BOOL CALLBACK FindProcessWindow(HWND window, LPARAM param) {
    auto* search = reinterpret_cast<WindowSearch*>(param);
    DWORD pid = 0;
    GetWindowThreadProcessId(window, &pid);
    wchar_t name[256] = {};
    GetClassNameW(window, name, 256);
    if (pid == search->pid && IsWindowVisible(window) && lstrcmpiW(name, search->windowClass) == 0) {
        search->found = window;
        return FALSE;
    }
    return TRUE;
}

}  // namespace

StartedProgram::StartedProgram(const std::wstring& application, const std::wstring& commandLine) {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION info{};
    if (!tavtest::StartProcess(commandLine, false, startup, nullptr, info,
                               application.empty() ? nullptr : application.c_str()))
        return;
    process_.reset(info.hProcess);
    CloseHandle(info.hThread);
    pid_ = info.dwProcessId;
    WaitForInputIdle(process_.get(), 5000);
}

StartedProgram::~StartedProgram() {
    if (process_ && WaitForSingleObject(process_.get(), 0) != WAIT_OBJECT_0) {
        TerminateProcess(process_.get(), 0);
        WaitForSingleObject(process_.get(), 5000);
    }
}

HWND StartedProgram::WaitForWindow(const wchar_t* windowClass, DWORD timeoutMs) const {
    WindowSearch search{pid_, windowClass, nullptr};
    tavtest::WaitUntil(
        [&] {
            EnumWindows(FindProcessWindow, reinterpret_cast<LPARAM>(&search));
            return search.found != nullptr;
        },
        timeoutMs);
    return search.found;
}

std::wstring ImagePath(DWORD pid) {
    tav::UniqueHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, pid));
    if (!process)
        return {};
    wchar_t buffer[MAX_PATH * 4];
    DWORD size = static_cast<DWORD>(std::size(buffer));
    if (!QueryFullProcessImageNameW(process.get(), 0, buffer, &size))
        return {};
    return std::wstring(buffer, size);
}

std::wstring FileNameOf(const std::wstring& path) { return path.substr(path.find_last_of(L'\\') + 1); }

std::vector<std::wstring> ModuleNamesOf(DWORD pid) {
    std::vector<std::wstring> names;
    tav::UniqueSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, pid));
    MODULEENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    if (!snapshot || !Module32FirstW(snapshot.get(), &entry))
        return names;
    do {
        names.push_back(entry.szModule);
    } while (Module32NextW(snapshot.get(), &entry));
    return names;
}

std::vector<DWORD> ProcessIds() {
    std::vector<DWORD> ids(4096);
    DWORD bytes = 0;
    if (!K32EnumProcesses(ids.data(), static_cast<DWORD>(ids.size() * sizeof(DWORD)), &bytes))
        return {};
    ids.resize(bytes / sizeof(DWORD));
    return ids;
}

}  // namespace proctest
