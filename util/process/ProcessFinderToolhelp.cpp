// The Toolhelp implementations: CProcessFinder95 (Windows 95, 98, Me) and CProcessFinder2kPlus.
#include "process/ProcessFinder.h"

#include "files/FileName.h"
#include "platform/Handles.h"
#include "process/detail/ProcessNames.h"

#include <vector>

namespace {

static_assert(sizeof(PROCESSENTRY32W) == 568, "process entry size the system expects");
static_assert(sizeof(MODULEENTRY32W) == 1080, "module entry size the system expects");

// A process entry taken from the process heap, freed with the owner.
using HeapProcessEntry = tav::UniqueProcessHeap<PROCESSENTRY32W>;

HeapProcessEntry AllocateProcessEntry() {
    HANDLE heap = GetProcessHeap();
    if (heap == nullptr)
        return {};
    auto* entry = static_cast<PROCESSENTRY32W*>(HeapAlloc(heap, HEAP_ZERO_MEMORY, sizeof(PROCESSENTRY32W)));
    if (entry != nullptr)
        entry->dwSize = sizeof(PROCESSENTRY32W);
    return HeapProcessEntry(entry);
}

// The long form of `path`; the path as it is when the system cannot lengthen it.
CStdStr<wchar_t> LongPath(const wchar_t* path) {
    DWORD needed = GetLongPathNameW(path, nullptr, 0);
    if (needed == 0)
        return path;
    std::vector<wchar_t> buffer(needed + 1, L'\0');
    if (GetLongPathNameW(path, buffer.data(), static_cast<DWORD>(buffer.size())) == 0)
        return path;
    return CStdStr<wchar_t>(buffer.data());  // cut at the terminator
}

}  // namespace

CProcessFinder95::CProcessFinder95(bool stripExtension) : CProcessFinder(stripExtension), m_kernel(L"KERNEL32") {
    m_pCreateToolhelp32Snapshot = m_kernel.getFunction<CreateToolhelp32SnapshotFn>("CreateToolhelp32Snapshot");
    m_pProcess32First = m_kernel.getFunction<Process32Fn>("Process32FirstW");
    m_pProcess32Next = m_kernel.getFunction<Process32Fn>("Process32NextW");
    m_pModule32First = m_kernel.getFunction<Module32Fn>("Module32FirstW");
    m_pModule32Next = m_kernel.getFunction<Module32Fn>("Module32NextW");
    m_pProcessIdToSessionId = m_kernel.getFunction<ProcessIdToSessionIdFn>("ProcessIdToSessionId");
    m_pWTSGetActiveConsoleSessionId =
        m_kernel.getFunction<WTSGetActiveConsoleSessionIdFn>("WTSGetActiveConsoleSessionId");
}

CProcessFinder95::~CProcessFinder95() = default;  // m_kernel frees the module

bool CProcessFinder95::GetProcessName(DWORD pid, CStdStr<wchar_t>& name) {
    name.clear();
    if (!GetProcessFullName(pid, name))
        return false;
    CFileName::StripPath(name);
    return !name.empty();
}

bool CProcessFinder95::GetProcessFullName(DWORD pid, CStdStr<wchar_t>& path) {
    if (m_pCreateToolhelp32Snapshot == nullptr)
        return false;
    tav::UniqueSnapshot snapshot(m_pCreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot)
        return false;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    if (m_pProcess32First == nullptr || !m_pProcess32First(snapshot.get(), &entry))
        return false;
    while (entry.th32ProcessID != pid) {
        if (m_pProcess32Next == nullptr || !m_pProcess32Next(snapshot.get(), &entry))
            return false;
    }
    NameFromProcessEntry(entry, path);
    return true;
}

void CProcessFinder95::NameFromProcessEntry(const PROCESSENTRY32W& entry, CStdStr<wchar_t>& path) {
    path = entry.szExeFile;
}

bool CProcessFinder95::GetProcessModules(DWORD pid, std::list<CStdStr<wchar_t>>& modules) {
    modules.clear();
    if (m_pCreateToolhelp32Snapshot == nullptr)
        return false;
    tav::UniqueSnapshot snapshot(m_pCreateToolhelp32Snapshot(TH32CS_SNAPMODULE, pid));
    if (!snapshot)
        return false;
    MODULEENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    if (m_pModule32First == nullptr || !m_pModule32First(snapshot.get(), &entry))
        return false;
    do {
        modules.push_back(entry.szModule);  // the module name, not its path
    } while (m_pModule32Next != nullptr && m_pModule32Next(snapshot.get(), &entry));
    return true;
}

bool CProcessFinder95::IsProcessRunning(const CStdStr<wchar_t>& name, bool consoleSessionOnly) {
    if (m_pCreateToolhelp32Snapshot == nullptr)
        return false;
    const CStdStr<wchar_t> wanted = tav::process::detail::WantedExecutableName(name);
    tav::UniqueSnapshot snapshot(m_pCreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot)
        return false;
    HeapProcessEntry entry = AllocateProcessEntry();
    if (!entry || m_pProcess32First == nullptr || !m_pProcess32First(snapshot.get(), entry.get()))
        return false;
    do {
        CStdStr<wchar_t> exe = entry.get()->szExeFile;
        CFileName::StripPath(exe);
        if (_wcsicmp(exe.c_str(), wanted.c_str()) == 0) {
            if (!consoleSessionOnly || IsInConsoleSession(entry.get()->th32ProcessID))
                return true;
        }
    } while (m_pProcess32Next != nullptr && m_pProcess32Next(snapshot.get(), entry.get()));
    return false;
}

// Without the session functions (Windows 95 to NT 4.0 have no sessions) every process counts as the console's.
bool CProcessFinder95::IsInConsoleSession(DWORD pid) const {
    if (m_pProcessIdToSessionId == nullptr || m_pWTSGetActiveConsoleSessionId == nullptr)
        return true;
    DWORD session = 0;
    return m_pProcessIdToSessionId(pid, &session) && session == m_pWTSGetActiveConsoleSessionId();
}

CProcessFinder2kPlus::CProcessFinder2kPlus(bool stripExtension) : CProcessFinder95(stripExtension) {}

CProcessFinder2kPlus::~CProcessFinder2kPlus() = default;

// The process entry holds a bare or short name here; the first module of a module snapshot holds the
// executable's path, which may be in 8.3 form when the program was started that way: it is lengthened.
void CProcessFinder2kPlus::NameFromProcessEntry(const PROCESSENTRY32W& entry, CStdStr<wchar_t>& path) {
    MODULEENTRY32W module{};
    module.dwSize = sizeof(module);
    bool found = false;
    if (m_pCreateToolhelp32Snapshot != nullptr) {
        tav::UniqueSnapshot snapshot(m_pCreateToolhelp32Snapshot(TH32CS_SNAPMODULE, entry.th32ProcessID));
        found = snapshot && m_pModule32First != nullptr && m_pModule32First(snapshot.get(), &module);
    }  // the module snapshot is closed before the path is lengthened
    if (found)
        path = LongPath(module.szExePath);
    else
        CProcessFinder95::NameFromProcessEntry(entry, path);
}
