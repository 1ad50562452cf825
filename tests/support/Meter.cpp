#include "Meter.h"

#include "RawRegistry.h"

#include <windows.h>
#include <winternl.h>

#include <cstdio>
#include <vector>

namespace soak {

namespace {

// One entry of the GDI handle table that the PEB points to (the layout the platform has kept since NT 4,
// 24 bytes on 64-bit); an entry whose type byte is 0 is free.
struct GdiHandleEntry {
    uint64_t object;
    uint32_t owner;
    uint16_t unique;
    uint8_t type;
    uint8_t flags;
    uint64_t userPointer;
};
static_assert(sizeof(GdiHandleEntry) == 24, "GDI handle table entry");
constexpr size_t kGdiTableEntries = 0x10000;
constexpr size_t kPebGdiSharedHandleTable = 0xF8;  // offset in the 64-bit PEB

const GdiHandleEntry* GdiHandleTable() {
    using QueryFn = NTSTATUS(NTAPI*)(HANDLE, PROCESSINFOCLASS, PVOID, ULONG, PULONG);
    auto query = reinterpret_cast<QueryFn>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationProcess")));
    PROCESS_BASIC_INFORMATION basic = {};
    if (!query || query(GetCurrentProcess(), ProcessBasicInformation, &basic, sizeof basic, nullptr) != 0)
        return nullptr;
    const auto* peb = reinterpret_cast<const unsigned char*>(basic.PebBaseAddress);
    return *reinterpret_cast<GdiHandleEntry* const*>(peb + kPebGdiSharedHandleTable);
}

void CountWindow(HWND window, long& count);

BOOL CALLBACK CountChild(HWND, LPARAM param) {
    ++*reinterpret_cast<long*>(param);
    return TRUE;
}

void CountWindow(HWND window, long& count) {
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner != GetCurrentProcessId())
        return;
    ++count;
    EnumChildWindows(window, CountChild, reinterpret_cast<LPARAM>(&count));  // all descendants
}

}  // namespace

long GdiObjectCount() {
    if (long counted = static_cast<long>(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)); counted > 0)
        return counted;
    const GdiHandleEntry* table = GdiHandleTable();
    if (!table)
        return -1;
    long count = 0;
    for (size_t i = 0; i < kGdiTableEntries; ++i)
        if (table[i].type != 0)
            ++count;
    return count;
}

long WindowCount() {
    long count = 0;
    EnumWindows(
        [](HWND window, LPARAM param) -> BOOL {
            CountWindow(window, *reinterpret_cast<long*>(param));
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    for (HWND window = FindWindowExW(HWND_MESSAGE, nullptr, nullptr, nullptr); window;
         window = FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr))
        CountWindow(window, count);
    return count;
}

int64_t HeapBytesInUse() {
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr) + 16);
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    int64_t total = 0;
    for (HANDLE heap : heaps) {
        if (!HeapLock(heap))
            continue;
        PROCESS_HEAP_ENTRY entry = {};
        while (HeapWalk(heap, &entry))
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY)
                total += entry.cbData;
        HeapUnlock(heap);
    }
    return total;
}

int64_t PrivateCommittedBytes() {
    int64_t total = 0;
    MEMORY_BASIC_INFORMATION region;
    for (const char* at = nullptr; VirtualQuery(at, &region, sizeof region) == sizeof region;
         at = static_cast<const char*>(region.BaseAddress) + region.RegionSize)
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE)
            total += static_cast<int64_t>(region.RegionSize);
    return total;
}

Reading Measure() {
    Reading reading;
    reading.handles = tavtest::OwnHandleCount();
    reading.gdiObjects = GdiObjectCount();
    reading.windows = WindowCount();
    reading.heapBytes = HeapBytesInUse();
    reading.privateBytes = PrivateCommittedBytes();
    return reading;
}

std::string Bytes(int64_t bytes) {
    char text[32];
    const int64_t magnitude = bytes < 0 ? -bytes : bytes;
    if (magnitude < 10 * 1024)
        snprintf(text, sizeof text, "%lld B", static_cast<long long>(bytes));
    else if (magnitude < 10 * 1024 * 1024)
        snprintf(text, sizeof text, "%.1f KiB", bytes / 1024.0);
    else
        snprintf(text, sizeof text, "%.1f MiB", bytes / (1024.0 * 1024.0));
    return text;
}

}  // namespace soak
