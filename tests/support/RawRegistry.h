// Raw Win32 access for the registry tests, to check what the library stored byte for byte. The scratch
// subtree each test works in, and the process's handle count, come from tests/support.
#pragma once

#include "RegistryFixture.h"

#include <windows.h>

#include <string>
#include <vector>

namespace regtest {

using Bytes = std::vector<unsigned char>;

// Creates root\path (view: 0, KEY_WOW64_32KEY or KEY_WOW64_64KEY); true on success.
bool RawCreate(HKEY root, const std::wstring& path, REGSAM view = 0);
// Creates root\path when missing and stores the value.
bool RawSet(HKEY root, const std::wstring& path, const wchar_t* name, DWORD type, const Bytes& data, REGSAM view = 0);
// Text as stored bytes, without a terminator unless the text holds one (pass it in with std::wstring(..., n)).
Bytes TextBytes(const std::wstring& text);
template <typename T> Bytes ObjectBytes(const T& value) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(&value);
    return Bytes(p, p + sizeof(T));
}

struct RawValue {
    LONG status = ERROR_FILE_NOT_FOUND;
    DWORD type = REG_NONE;
    Bytes data;
};
RawValue RawQuery(HKEY root, const std::wstring& path, const wchar_t* name, REGSAM view = 0);

}  // namespace regtest
