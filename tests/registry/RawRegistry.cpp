#include "RegistryFixtures.h"

#include <winternl.h>

#include <atomic>

namespace regtest {

namespace {

std::atomic<int> s_scratchCounter{0};

void DeleteInView(HKEY root, const std::wstring& path, REGSAM view) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_ALL_ACCESS | view, &key) == ERROR_SUCCESS) {
        RegDeleteTreeW(key, nullptr);
        RegCloseKey(key);
    }
    RegDeleteKeyExW(root, path.c_str(), view, 0);
}

}  // namespace

ScratchKey::ScratchKey(HKEY root, const std::wstring& parent) : root_(root) {
    path_ = parent + L"\\TavUtilTest-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
            std::to_wstring(++s_scratchCounter);
    DeleteInView(root_, path_, KEY_WOW64_64KEY);  // a left-over of an earlier, killed run
    DeleteInView(root_, path_, KEY_WOW64_32KEY);
}

ScratchKey::~ScratchKey() {
    DeleteInView(root_, path_, KEY_WOW64_64KEY);
    DeleteInView(root_, path_, KEY_WOW64_32KEY);
}

bool RawCreate(HKEY root, const std::wstring& path, REGSAM view) {
    HKEY key = nullptr;
    if (RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | view, nullptr, &key, nullptr) !=
        ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

bool RawExists(HKEY root, const std::wstring& path, REGSAM view) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

bool RawSet(HKEY root, const std::wstring& path, const wchar_t* name, DWORD type, const Bytes& data,
            REGSAM view) {
    HKEY key = nullptr;
    if (RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | view, nullptr, &key, nullptr) !=
        ERROR_SUCCESS)
        return false;
    // The platform adds a terminator to a string value whose counted data is followed by a NUL: the copy
    // is followed by non-NUL bytes, so that the value is stored exactly as given.
    Bytes guarded = data;
    guarded.insert(guarded.end(), 4, 0xFF);
    LONG status = RegSetValueExW(key, name, 0, type, guarded.data(), static_cast<DWORD>(data.size()));
    RegCloseKey(key);
    return status == ERROR_SUCCESS;
}

Bytes TextBytes(const std::wstring& text) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text.data());
    return Bytes(p, p + text.size() * sizeof(wchar_t));
}

RawValue RawQuery(HKEY root, const std::wstring& path, const wchar_t* name, REGSAM view) {
    RawValue result;
    HKEY key = nullptr;
    result.status = RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, &key);
    if (result.status != ERROR_SUCCESS)
        return result;
    DWORD size = 0;
    result.status = RegQueryValueExW(key, name, nullptr, &result.type, nullptr, &size);
    if (result.status == ERROR_SUCCESS) {
        result.data.resize(size);
        result.status = RegQueryValueExW(key, name, nullptr, &result.type, result.data.data(), &size);
        result.data.resize(size);
    }
    RegCloseKey(key);
    return result;
}

int OwnHandleCount() {
    struct Entry {
        ULONG processId;
        UCHAR objectType;
        UCHAR flags;
        USHORT handle;
        PVOID object;
        ACCESS_MASK access;
    };
    struct Table {
        ULONG count;
        Entry entries[1];
    };
    using QueryFn = NTSTATUS(NTAPI*)(ULONG, PVOID, ULONG, PULONG);
    auto query = reinterpret_cast<QueryFn>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    const ULONG kSystemHandleInformation = 16;
    const NTSTATUS kInfoLengthMismatch = static_cast<NTSTATUS>(0xC0000004);
    std::vector<unsigned char> buffer(1 << 20);
    ULONG needed = 0;
    NTSTATUS status;
    while ((status = query(kSystemHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()), &needed)) ==
           kInfoLengthMismatch)
        buffer.resize(buffer.size() * 2);
    if (status != 0)
        return -1;
    const Table* table = reinterpret_cast<const Table*>(buffer.data());
    int count = 0;
    for (ULONG i = 0; i < table->count; ++i)
        if (table->entries[i].processId == GetCurrentProcessId())
            ++count;
    return count;
}

}  // namespace regtest
