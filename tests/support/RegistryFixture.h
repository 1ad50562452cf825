// Registry keys a test owns, removed whatever the test's outcome, and what a test needs to tell that it
// left the registry as it found it.
//  - ScratchKey: a subtree of a fresh name of the test's own (HKCU\Software\TavUtilTest-<pid>-<n>).
//  - RegistryFixture: a key at an exact path that the code under test looks up (a messenger's App Paths
//    entry, the suite's setup key). A key that exists already is left alone and reported as not usable, so
//    that a test never changes entries it does not own.
#pragma once

#include "platform/Handles.h"

#include <windows.h>

#include <string>

namespace tavtest {

// True when root\path opens for reading in `view` (0, KEY_WOW64_32KEY or KEY_WOW64_64KEY). A probe that
// changes nothing: use it to check that a key is absent.
bool KeyExists(HKEY root, const std::wstring& path, REGSAM view = 0);

// Deletes root\path with everything below it in `view`; true when it is gone afterwards.
bool DeleteKeyTree(HKEY root, const std::wstring& path, REGSAM view = 0);

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

// root\path created for the test in one registry view, and removed afterwards with every key the fixture
// had to create above it.
class RegistryFixture {
public:
    // `view`: 0 (native) or KEY_WOW64_32KEY.
    RegistryFixture(HKEY root, const std::wstring& path, REGSAM view = 0);
    ~RegistryFixture();
    RegistryFixture(const RegistryFixture&) = delete;
    RegistryFixture& operator=(const RegistryFixture&) = delete;

    // The key was created for this test.
    bool ok() const { return key_.valid(); }

    // Stores a string value (REG_SZ unless told otherwise), terminator included; true on success.
    bool Set(const wchar_t* name, const std::wstring& value, DWORD type = REG_SZ);
    bool SetDword(const wchar_t* name, DWORD value);

private:
    HKEY root_;
    REGSAM view_;
    std::wstring createdTop_;
    tav::UniqueKey key_;
};

// Number of handles this process holds, keys included, read from the system's handle list
// (GetProcessHandleCount answers 0 under Wine; the list is exact). -1 when it cannot be read.
int OwnHandleCount();

}  // namespace tavtest
