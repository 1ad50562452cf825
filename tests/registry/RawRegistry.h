// Fixtures of the registry tests: a scratch subtree per test, removed in both registry views whatever the
// test's outcome; raw Win32 access to check what the library stored byte for byte; and the process's handle
// count (GetProcessHandleCount answers 0 under Wine, the system handle list is exact).
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace regtest {

using Bytes = std::vector<unsigned char>;

// A key root\parent\TavUtilTest-<pid>-<n> that does not exist yet; the destructor deletes it with everything
// below it in the 64-bit and in the 32-bit view.
class ScratchKey {
public:
    explicit ScratchKey(HKEY root = HKEY_CURRENT_USER, const std::wstring& parent = L"Software");
    ~ScratchKey();
    ScratchKey(const ScratchKey&) = delete;
    ScratchKey& operator=(const ScratchKey&) = delete;

    HKEY root() const { return root_; }
    const std::wstring& path() const { return path_; }
    std::wstring operator/(const std::wstring& sub) const { return path_ + L"\\" + sub; }

private:
    HKEY root_;
    std::wstring path_;
};

// Creates root\path (view: 0, KEY_WOW64_32KEY or KEY_WOW64_64KEY); true on success.
bool RawCreate(HKEY root, const std::wstring& path, REGSAM view = 0);
// True when root\path opens with KEY_READ | view.
bool RawExists(HKEY root, const std::wstring& path, REGSAM view = 0);
// Creates root\path when missing and stores the value.
bool RawSet(HKEY root, const std::wstring& path, const wchar_t* name, DWORD type, const Bytes& data,
            REGSAM view = 0);
// Text as stored bytes, without a terminator unless the text holds one (pass it in with std::wstring(..., n)).
Bytes TextBytes(const std::wstring& text);
template <typename T>
Bytes ObjectBytes(const T& value) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(&value);
    return Bytes(p, p + sizeof(T));
}

struct RawValue {
    LONG status = ERROR_FILE_NOT_FOUND;
    DWORD type = REG_NONE;
    Bytes data;
};
RawValue RawQuery(HKEY root, const std::wstring& path, const wchar_t* name, REGSAM view = 0);

// Number of handles this process holds (keys included).
int OwnHandleCount();

}  // namespace regtest
