// The foreground full-name query of each process finder implementation against the raw sequence of
// snapshot or PSAPI calls its algorithm requires, with a window of the benchmark's own in front; and, for
// reference, against one QueryFullProcessImageNameW of the same process.
#include "Bench.h"
#include "BenchWindow.h"

#include <TavUtil.h>

#include <windows.h>
#include <tlhelp32.h>
#include <psapi.h>

#include <cstdio>
#include <string>

namespace {

int RunningProcesses() {
    tav::UniqueSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    int count = 0;
    if (snapshot && Process32FirstW(snapshot.get(), &entry)) {
        do {
            ++count;
        } while (Process32NextW(snapshot.get(), &entry));
    }
    return count;
}

// The calls each finder's algorithm requires, made directly: the foreground window and its process id,
// then the finder's own sequence. These are the baselines; a finder should cost little beyond them.
DWORD ForegroundProcessId() {
    DWORD pid = 0;
    GetWindowThreadProcessId(GetForegroundWindow(), &pid);
    return pid;
}

// Toolhelp: a process snapshot walked to the process's entry.
bool FindProcessEntry(DWORD pid, PROCESSENTRY32W& entry) {
    tav::UniqueSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    entry = {};
    entry.dwSize = sizeof(entry);
    if (!snapshot || !Process32FirstW(snapshot.get(), &entry))
        return false;
    do {
        if (entry.th32ProcessID == pid)
            return true;
    } while (Process32NextW(snapshot.get(), &entry));
    return false;
}

// CProcessFinder95: the entry's executable field.
std::wstring RawToolhelpName() {
    PROCESSENTRY32W entry;
    return FindProcessEntry(ForegroundProcessId(), entry) ? std::wstring(entry.szExeFile) : std::wstring();
}

// CProcessFinder2kPlus: the entry, then the first module of a module snapshot, its path made long.
std::wstring RawToolhelpModulePath() {
    PROCESSENTRY32W entry;
    if (!FindProcessEntry(ForegroundProcessId(), entry))
        return {};
    MODULEENTRY32W module = {};
    module.dwSize = sizeof(module);
    bool haveModule = false;
    {
        tav::UniqueSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, entry.th32ProcessID));
        haveModule = snapshot && Module32FirstW(snapshot.get(), &module);
    }
    if (!haveModule)
        return entry.szExeFile;
    DWORD needed = GetLongPathNameW(module.szExePath, nullptr, 0);
    if (needed == 0)
        return module.szExePath;
    std::wstring path(needed, L'\0');
    path.resize(GetLongPathNameW(module.szExePath, path.data(), needed));
    return path;
}

// CProcessFinderNT: the process opened, its first module, that module's file name.
std::wstring RawPsapiPath() {
    tav::UniqueHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, ForegroundProcessId()));
    HMODULE first = nullptr;
    DWORD needed = 0;
    if (!process || !EnumProcessModules(process.get(), &first, sizeof(first), &needed))
        return {};
    wchar_t buffer[MAX_PATH + 1] = {};
    if (GetModuleFileNameExW(process.get(), first, buffer, MAX_PATH) == 0)
        return {};
    return buffer;
}

// For reference: what a host would write today, one query of the image name.
std::wstring RawImageName() {
    tav::UniqueHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, ForegroundProcessId()));
    wchar_t buffer[MAX_PATH];
    DWORD size = MAX_PATH;
    if (!process || !QueryFullProcessImageNameW(process.get(), 0, buffer, &size))
        return {};
    return std::wstring(buffer, size);
}

}  // namespace

int main() {
    const bench::Window window(L"process bench");
    if (GetForegroundWindow() != window.get()) {
        std::fprintf(stderr, "bench_process: the benchmark window did not come to the front\n");
        return 1;
    }
    std::printf("processes running: %d\n", RunningProcesses());
    std::printf("foreground process: %ls\n", RawImageName().c_str());

    CProcessFinder95 toolhelp95;
    CProcessFinderNT psapi;
    CProcessFinder2kPlus toolhelp2k;
    const struct {
        const char* name;
        CProcessFinder* finder;
        std::wstring (*raw)();
        const char* rawName;
    } variants[] = {
        {"CProcessFinder95", &toolhelp95, &RawToolhelpName, "snapshot walk"},
        {"CProcessFinderNT", &psapi, &RawPsapiPath, "PSAPI calls"},
        {"CProcessFinder2kPlus", &toolhelp2k, &RawToolhelpModulePath, "snapshot walk + module"},
    };
    volatile size_t sink = 0;
    bench::Options options;
    options.batches = 7;
    options.pairs = 31;
    for (const auto& variant : variants) {
        const std::wstring reported = variant.finder->GetForegroundProcessFullName(0);
        std::printf("%s reports: %ls (raw calls: %ls)\n", variant.name, reported.c_str(), variant.raw().c_str());
        if (reported != variant.raw())
            std::printf("warning: %s and its raw calls disagree: the comparison is not like for like\n", variant.name);
        auto library = [&] { sink = sink + variant.finder->GetForegroundProcessFullName(0).size(); };
        options.goal = 1.2;
        bench::Compare(
            std::string(variant.name) + " vs " + variant.rawName, library, [&] { sink = sink + variant.raw().size(); },
            options);
        options.goal = 0;  // for reference only: a different, newer query
        bench::Compare(
            std::string(variant.name) + " vs QueryFullProcessImageNameW", library,
            [&] { sink = sink + RawImageName().size(); }, options);
    }
    return bench::Finish();
}
