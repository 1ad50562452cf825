#include "RawRegistry.h"

#include "platform/Handles.h"

namespace regtest {

bool RawCreate(HKEY root, const std::wstring& path, REGSAM view) {
    tav::UniqueKey key;
    return RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | view, nullptr, key.put(), nullptr) ==
           ERROR_SUCCESS;
}

bool RawSet(HKEY root, const std::wstring& path, const wchar_t* name, DWORD type, const Bytes& data, REGSAM view) {
    tav::UniqueKey key;
    if (RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | view, nullptr, key.put(), nullptr) !=
        ERROR_SUCCESS)
        return false;
    // The platform adds a terminator to a string value whose counted data is followed by a NUL: the copy
    // is followed by non-NUL bytes, so that the value is stored exactly as given.
    Bytes guarded = data;
    guarded.insert(guarded.end(), 4, 0xFF);
    return RegSetValueExW(key.get(), name, 0, type, guarded.data(), static_cast<DWORD>(data.size())) == ERROR_SUCCESS;
}

Bytes TextBytes(const std::wstring& text) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text.data());
    return Bytes(p, p + text.size() * sizeof(wchar_t));
}

RawValue RawQuery(HKEY root, const std::wstring& path, const wchar_t* name, REGSAM view) {
    RawValue result;
    tav::UniqueKey key;
    result.status = RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, key.put());
    if (result.status != ERROR_SUCCESS)
        return result;
    DWORD size = 0;
    result.status = RegQueryValueExW(key.get(), name, nullptr, &result.type, nullptr, &size);
    if (result.status == ERROR_SUCCESS) {
        result.data.resize(size);
        result.status = RegQueryValueExW(key.get(), name, nullptr, &result.type, result.data.data(), &size);
        result.data.resize(size);
    }
    return result;
}

}  // namespace regtest
