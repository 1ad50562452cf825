#include "RegistryFixture.h"

#include <winternl.h>

#include <atomic>
#include <vector>

namespace tavtest {

bool KeyExists(HKEY root, const std::wstring& path, REGSAM view) {
    tav::UniqueKey key;
    return RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, key.put()) == ERROR_SUCCESS;
}

bool DeleteKeyTree(HKEY root, const std::wstring& path, REGSAM view) {
    tav::UniqueKey key;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_ALL_ACCESS | view, key.put()) == ERROR_SUCCESS)
        RegDeleteTreeW(key.get(), nullptr);
    key.reset();
    RegDeleteKeyExW(root, path.c_str(), view, 0);
    return !KeyExists(root, path, view);
}

ScratchKey::ScratchKey(HKEY root, const std::wstring& parent) : root_(root) {
    static std::atomic<int> counter{0};
    path_ = parent + L"\\TavUtilTest-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++counter);
    DeleteKeyTree(root_, path_, KEY_WOW64_64KEY);  // a left-over of an earlier, killed run
    DeleteKeyTree(root_, path_, KEY_WOW64_32KEY);
}

ScratchKey::~ScratchKey() {
    DeleteKeyTree(root_, path_, KEY_WOW64_64KEY);
    DeleteKeyTree(root_, path_, KEY_WOW64_32KEY);
}

RegistryFixture::RegistryFixture(HKEY root, const std::wstring& path, REGSAM view) : root_(root), view_(view) {
    if (KeyExists(root_, path, view_))
        return;
    // The highest missing key is the one to delete afterwards.
    for (size_t end = path.find(L'\\');; end = path.find(L'\\', end + 1)) {
        std::wstring prefix = path.substr(0, end);
        if (!KeyExists(root_, prefix, view_)) {
            createdTop_ = prefix;
            break;
        }
        if (end == std::wstring::npos)
            break;
    }
    RegCreateKeyExW(root_, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | view_, nullptr, key_.put(), nullptr);
}

RegistryFixture::~RegistryFixture() {
    key_.reset();
    if (!createdTop_.empty())
        DeleteKeyTree(root_, createdTop_, view_);
}

bool RegistryFixture::Set(const wchar_t* name, const std::wstring& value, DWORD type) {
    return RegSetValueExW(key_.get(), name, 0, type, reinterpret_cast<const BYTE*>(value.c_str()),
                          static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

bool RegistryFixture::SetDword(const wchar_t* name, DWORD value) {
    return RegSetValueExW(key_.get(), name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof(value)) ==
           ERROR_SUCCESS;
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
    if (query == nullptr)
        return -1;
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

}  // namespace tavtest
