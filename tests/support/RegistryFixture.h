// A registry key at an exact path that a test needs (a messenger's App Paths entry, the suite's setup key),
// created for the test in one registry view and removed afterwards with every key the fixture had to
// create above it. A key that exists already is left alone and the fixture reports it as not usable, so
// that a test never changes entries it does not own.
#pragma once

#include "platform/Handles.h"

#include <windows.h>

#include <string>

namespace tavtest {

class RegistryFixture {
public:
    // `view`: 0 (native) or KEY_WOW64_32KEY.
    RegistryFixture(HKEY root, const std::wstring& path, REGSAM view = 0) : root_(root), view_(view) {
        if (Exists(path))
            return;
        // The highest missing key is the one to delete afterwards.
        for (size_t end = path.find(L'\\'); ; end = path.find(L'\\', end + 1)) {
            std::wstring prefix = path.substr(0, end);
            if (!Exists(prefix)) {
                createdTop_ = prefix;
                break;
            }
            if (end == std::wstring::npos)
                break;
        }
        RegCreateKeyExW(root_, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | view_, nullptr, key_.put(), nullptr);
    }
    ~RegistryFixture() {
        key_.reset();
        if (createdTop_.empty())
            return;
        tav::UniqueKey top;
        if (RegOpenKeyExW(root_, createdTop_.c_str(), 0, KEY_ALL_ACCESS | view_, top.put()) == ERROR_SUCCESS)
            RegDeleteTreeW(top.get(), nullptr);
        top.reset();
        RegDeleteKeyExW(root_, createdTop_.c_str(), view_, 0);
    }
    RegistryFixture(const RegistryFixture&) = delete;
    RegistryFixture& operator=(const RegistryFixture&) = delete;

    // The key was created for this test.
    bool ok() const { return key_.valid(); }

    bool Set(const wchar_t* name, const std::wstring& value, DWORD type = REG_SZ) {
        return RegSetValueExW(key_.get(), name, 0, type, reinterpret_cast<const BYTE*>(value.c_str()),
                              static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
    }
    bool SetDword(const wchar_t* name, DWORD value) {
        return RegSetValueExW(key_.get(), name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                              sizeof(value)) == ERROR_SUCCESS;
    }

private:
    bool Exists(const std::wstring& path) const {
        tav::UniqueKey key;
        return RegOpenKeyExW(root_, path.c_str(), 0, KEY_READ | view_, key.put()) == ERROR_SUCCESS;
    }

    HKEY root_;
    REGSAM view_;
    std::wstring createdTop_;
    tav::UniqueKey key_;
};

}  // namespace tavtest
