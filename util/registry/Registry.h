// CRegistry: the owner of one open registry key. Every operation returns the Windows status of the registry
// call it makes (0 = ERROR_SUCCESS; 6 = ERROR_INVALID_HANDLE when no key is open), except ReadStringValue
// (0 or 1) and the subkey enumerators (a name or null). Read-only opens look in the native view first and
// then in the 32-bit view (see registry/detail/RegistryKey.h).
#pragma once

#include "../platform/Export.h"
#include "../platform/Handles.h"
#include "../strings/StdStr.h"

#include <windows.h>

// Capacity, in characters, of the name buffer that GetFirstSubkey/GetNextSubkey return.
constexpr DWORD kRegistrySubkeyNameCapacity = 4096;

class TAVUTIL_API CRegistry {
public:
    CRegistry();
    // Opens as OpenKey does; the status is not kept (IsValid tells whether the key opened).
    CRegistry(HKEY root, const wchar_t* path, const bool& readOnly);
    ~CRegistry();

    // A copy-constructed object would close the same handle as its original a second time, and nothing in
    // the library or its hosts needs one: copy construction is refused. Moving transfers the key.
    CRegistry(const CRegistry&) = delete;
    CRegistry(CRegistry&& other) noexcept;
    CRegistry& operator=(CRegistry&& other) noexcept;

    // Shallow copy, kept as hosts know it: handle, read-only flag and enumeration index are copied as they
    // are and the handle is not duplicated, so both objects refer to (and on destruction close) one key; only
    // one of them may be used after the other is gone. A key this object held before is closed.
    CRegistry& operator=(const CRegistry& other);

    // readOnly false: creates the key when missing (KEY_ALL_ACCESS). readOnly true: opens it with KEY_READ,
    // native view first, then the 32-bit view; never creates. A key the object already holds is closed first.
    // Returns the status of the last registry call.
    long OpenKey(HKEY root, const wchar_t* path, const bool& readOnly);
    // Closes the key; the object holds none afterwards in every case. 6 when none was open.
    long CloseKey();
    int IsValid();

    long DeleteKey(const wchar_t* subkey);  // one subkey without subkeys of its own
    long DeleteValue(const wchar_t* name);
    // RegQueryValueExW with the arguments passed through (null `data` asks for the size only).
    long QueryValueEx(const wchar_t* name, unsigned long* type, unsigned char* data, unsigned long* size);
    long QueryValueEx(const CStdStr<wchar_t>& name, unsigned long* type, unsigned char* data, unsigned long* size);
    // RegSetValueExW with `size` in bytes, as given.
    long SetValueEx(const wchar_t* name, unsigned long type, const wchar_t* data, long size);

    // A REG_SZ or REG_EXPAND_SZ value (unexpanded) up to its first NUL or the end of its data: 0 and `out`
    // set; 1 and `out` empty on any failure or any other type. An empty value is a success.
    long ReadStringValue(const wchar_t* name, CStdStr<wchar_t>& out);
    long ReadStringValue(const CStdStr<wchar_t>& name, CStdStr<wchar_t>& out);
    // Stores `value` as REG_SZ with a byte count of twice its length: no terminator is stored.
    long WriteStringValue(const wchar_t* name, const CStdStr<wchar_t>& value);
    long WriteStringValue(const CStdStr<wchar_t>& name, const CStdStr<wchar_t>& value);

    // Subkey names in enumeration order; null after the last one and for a closed object. The returned text
    // lives in a buffer shared by all CRegistry objects: it is valid until the next enumeration call on any
    // of them, so callers copy it at once.
    const wchar_t* GetFirstSubkey();
    const wchar_t* GetNextSubkey();

private:
    tav::UniqueKey m_key;
    bool m_readOnly = false;
    DWORD m_enumIndex = 0;
};
