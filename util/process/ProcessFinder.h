// CProcessFinder: which program owns the foreground window, whether a program is running, and which
// modules a process has loaded. Three generations of process enumeration hide behind one interface:
// Toolhelp on Windows 95/98/Me, PSAPI on Windows NT 4.0, Toolhelp plus a module snapshot on Windows 2000
// and later. The optional system functions are bound at run time; a missing one only disables what needs it.
#pragma once

#include "../platform/Export.h"
#include "../platform/SystemModule.h"
#include "../strings/StdStr.h"
#include "../system/OSInfo.h"

#include <windows.h>
#include <tlhelp32.h>

#include <list>
#include <memory>

class TAVUTIL_API CProcessFinder {
public:
    virtual ~CProcessFinder();

    // Executable name (no path) of the process.
    virtual bool GetProcessName(DWORD pid, CStdStr<wchar_t>& name) = 0;
    // Module names of the process, in the order the system lists them.
    virtual bool GetProcessModules(DWORD pid, std::list<CStdStr<wchar_t>>& modules) = 0;
    // Full path of the process's executable.
    virtual bool GetProcessFullName(DWORD pid, CStdStr<wchar_t>& path) = 0;
    // Whether a process of that executable name runs (".exe" is added unless present). Names shorter than
    // four characters throw std::out_of_range. consoleSessionOnly: count only processes of the console session
    // (the PSAPI variant ignores it).
    virtual bool IsProcessRunning(const CStdStr<wchar_t>& name, bool consoleSessionOnly) = 0;

    // The single instance, made on first use with the caller's flag; later calls ignore their argument.
    static CProcessFinder* Instance(bool stripExtension);
    // The foreground window, waiting a few rounds while there is none; may be null.
    static HWND WaitForegroundWindow();

    // Name / full path of the process that owns `window`, or the foreground window when `window` is 0.
    // Empty when there is no such window or process. Under the strip-extension flag both lose their extension.
    CStdStr<wchar_t> GetForegroundProcessName(__int64 window);
    CStdStr<wchar_t> GetForegroundProcessFullName(__int64 window);

    bool StripsExtension() const { return m_stripExtension; }

    CProcessFinder(const CProcessFinder&) = default;  // copies the flag
    CProcessFinder& operator=(const CProcessFinder&) = default;

protected:
    CProcessFinder() = default;
    explicit CProcessFinder(bool stripExtension) : m_stripExtension(stripExtension) {}

    bool m_stripExtension = false;

private:
    static std::unique_ptr<CProcessFinder> Instantiate(bool stripExtension);
    // Process ID of the owner of `window` (or of the waited-for foreground window); 0 when there is none.
    static DWORD OwnerProcessId(__int64 window);
    void StripExtensionIfAsked(CStdStr<wchar_t>& text) const;

    // The process-wide instance: made by the first Instance() call, released when the library unloads.
    // Only Instance() touches it; it is not guarded against a first call from two threads at once.
    static std::unique_ptr<CProcessFinder> s_pInstance;
};

// Toolhelp implementation (Windows 95, 98 and Me): a process entry's executable field is its full name.
class TAVUTIL_API CProcessFinder95 : public CProcessFinder {
public:
    explicit CProcessFinder95(bool stripExtension = false);
    ~CProcessFinder95() override;
    CProcessFinder95(const CProcessFinder95&) = delete;
    CProcessFinder95& operator=(const CProcessFinder95&) = delete;

    bool GetProcessName(DWORD pid, CStdStr<wchar_t>& name) override;
    bool GetProcessModules(DWORD pid, std::list<CStdStr<wchar_t>>& modules) override;
    bool GetProcessFullName(DWORD pid, CStdStr<wchar_t>& path) override;
    bool IsProcessRunning(const CStdStr<wchar_t>& name, bool consoleSessionOnly) override;

protected:
    virtual void NameFromProcessEntry(const PROCESSENTRY32W& entry, CStdStr<wchar_t>& path);

    using CreateToolhelp32SnapshotFn = HANDLE(WINAPI*)(DWORD, DWORD);
    using Process32Fn = BOOL(WINAPI*)(HANDLE, PROCESSENTRY32W*);
    using Module32Fn = BOOL(WINAPI*)(HANDLE, MODULEENTRY32W*);
    using ProcessIdToSessionIdFn = BOOL(WINAPI*)(DWORD, DWORD*);
    using WTSGetActiveConsoleSessionIdFn = DWORD(WINAPI*)();

    // "KERNEL32" and the functions taken from it, in the order they are looked up; any may be null.
    tav::SystemModule m_kernel;  // from the system folder (platform/SystemModule.h)
    CreateToolhelp32SnapshotFn m_pCreateToolhelp32Snapshot = nullptr;
    Process32Fn m_pProcess32First = nullptr;
    Process32Fn m_pProcess32Next = nullptr;
    Module32Fn m_pModule32First = nullptr;
    Module32Fn m_pModule32Next = nullptr;
    ProcessIdToSessionIdFn m_pProcessIdToSessionId = nullptr;
    WTSGetActiveConsoleSessionIdFn m_pWTSGetActiveConsoleSessionId = nullptr;

private:
    bool IsInConsoleSession(DWORD pid) const;
};

// Toolhelp implementation for Windows 2000 and later: the full name is the long path of the process's
// first module, as a module snapshot reports it.
class TAVUTIL_API CProcessFinder2kPlus : public CProcessFinder95 {
public:
    explicit CProcessFinder2kPlus(bool stripExtension = false);
    ~CProcessFinder2kPlus() override;

protected:
    void NameFromProcessEntry(const PROCESSENTRY32W& entry, CStdStr<wchar_t>& path) override;
};

// PSAPI implementation (Windows NT 4.0). Module lists are not supported.
class TAVUTIL_API CProcessFinderNT : public CProcessFinder {
public:
    explicit CProcessFinderNT(bool stripExtension = false);
    ~CProcessFinderNT() override;
    CProcessFinderNT(const CProcessFinderNT&) = delete;
    CProcessFinderNT& operator=(const CProcessFinderNT&) = delete;

    bool GetProcessName(DWORD pid, CStdStr<wchar_t>& name) override;
    bool GetProcessModules(DWORD pid, std::list<CStdStr<wchar_t>>& modules) override;  // always false
    bool GetProcessFullName(DWORD pid, CStdStr<wchar_t>& path) override;
    // Looks at the name only: NT 4.0 has no sessions to filter on.
    bool IsProcessRunning(const CStdStr<wchar_t>& name, bool consoleSessionOnly = false) override;

protected:
    using EnumProcessModulesFn = BOOL(WINAPI*)(HANDLE, HMODULE*, DWORD, DWORD*);
    using EnumProcessesFn = BOOL(WINAPI*)(DWORD*, DWORD, DWORD*);
    using GetModuleNameFn = DWORD(WINAPI*)(HANDLE, HMODULE, wchar_t*, DWORD);

    // "PSAPI" and the functions taken from it, in the order they are looked up; any may be null.
    tav::SystemModule m_psapi;  // from the system folder (platform/SystemModule.h)
    EnumProcessModulesFn m_pEnumProcessModules = nullptr;
    EnumProcessesFn m_pEnumProcesses = nullptr;
    GetModuleNameFn m_pGetModuleBaseName = nullptr;
    GetModuleNameFn m_pGetModuleFileNameEx = nullptr;

private:
    bool FirstModuleText(DWORD pid, GetModuleNameFn query, CStdStr<wchar_t>& text) const;
};
