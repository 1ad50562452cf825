#include "registry/Registry.h"

#include "registry/detail/RegistryKey.h"

#include <memory>
#include <new>

namespace {

// Process-wide state of CRegistry: the buffer that receives the subkey names returned by GetFirstSubkey and
// GetNextSubkey. Only those two functions write it. The library is used from one thread at a time, so it
// is not guarded; a returned name is valid until the next enumeration call on any CRegistry.
wchar_t s_subkeyName[kRegistrySubkeyNameCapacity];

const BYTE* Bytes(const wchar_t* text) { return reinterpret_cast<const BYTE*>(text); }

}  // namespace

CRegistry::CRegistry() = default;

CRegistry::CRegistry(HKEY root, const wchar_t* path, const bool& readOnly) { OpenKey(root, path, readOnly); }

CRegistry::~CRegistry() = default;  // m_key closes the key

CRegistry::CRegistry(CRegistry&& other) noexcept
    : m_key(std::move(other.m_key)), m_readOnly(other.m_readOnly), m_enumIndex(other.m_enumIndex) {}

CRegistry& CRegistry::operator=(CRegistry&& other) noexcept {
    if (this != &other) {
        m_key = std::move(other.m_key);
        m_readOnly = other.m_readOnly;
        m_enumIndex = other.m_enumIndex;
    }
    return *this;
}

CRegistry& CRegistry::operator=(const CRegistry& other) {
    if (this != &other) {
        if (m_key.get() != other.m_key.get())
            m_key.reset(other.m_key.get());  // shares the handle on purpose; see the declaration
        m_readOnly = other.m_readOnly;
        m_enumIndex = other.m_enumIndex;
    }
    return *this;
}

long CRegistry::OpenKey(HKEY root, const wchar_t* path, const bool& readOnly) {
    m_readOnly = readOnly;
    if (readOnly)
        return tav::registry::detail::OpenKeyForReading(root, path, m_key);
    return tav::registry::detail::CreateKey(root, path, KEY_ALL_ACCESS, m_key);
}

long CRegistry::CloseKey() {
    if (!m_key)
        return ERROR_INVALID_HANDLE;
    return RegCloseKey(m_key.release());  // by hand: the caller gets the status of the close
}

int CRegistry::IsValid() { return m_key ? 1 : 0; }

long CRegistry::DeleteKey(const wchar_t* subkey) {
    if (!m_key)
        return ERROR_INVALID_HANDLE;
    return RegDeleteKeyW(m_key.get(), subkey);
}

long CRegistry::DeleteValue(const wchar_t* name) {
    if (!m_key)
        return ERROR_INVALID_HANDLE;
    return RegDeleteValueW(m_key.get(), name);
}

long CRegistry::QueryValueEx(const wchar_t* name, unsigned long* type, unsigned char* data, unsigned long* size) {
    if (!m_key)
        return ERROR_INVALID_HANDLE;
    return RegQueryValueExW(m_key.get(), name, nullptr, type, data, size);
}

long CRegistry::QueryValueEx(const CStdStr<wchar_t>& name, unsigned long* type, unsigned char* data,
                             unsigned long* size) {
    return QueryValueEx(name.c_str(), type, data, size);
}

long CRegistry::SetValueEx(const wchar_t* name, unsigned long type, const wchar_t* data, long size) {
    if (!m_key)
        return ERROR_INVALID_HANDLE;
    return RegSetValueExW(m_key.get(), name, 0, type, Bytes(data), static_cast<DWORD>(size));
}

long CRegistry::ReadStringValue(const wchar_t* name, CStdStr<wchar_t>& out) {
    out.clear();
    unsigned long type = REG_NONE, size = 0;
    if (QueryValueEx(name, &type, nullptr, &size) != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ))
        return 1;
    if (size == 0)
        return 0;
    // Twice the reported size: deliberately generous, so that a value that grew since the first query
    // still fits.
    unsigned long capacity = 2 * size;
    std::unique_ptr<unsigned char[]> buffer(new (std::nothrow) unsigned char[capacity]());
    if (!buffer || QueryValueEx(name, &type, buffer.get(), &capacity) != ERROR_SUCCESS)
        return 1;
    // Values written by WriteStringValue carry no terminator: stop at the first NUL or at the data's end.
    const wchar_t* text = reinterpret_cast<const wchar_t*>(buffer.get());
    out.assign(text, wcsnlen(text, capacity / sizeof(wchar_t)));
    return 0;
}

long CRegistry::ReadStringValue(const CStdStr<wchar_t>& name, CStdStr<wchar_t>& out) {
    return ReadStringValue(name.c_str(), out);
}

// The stored byte count leaves out the terminator: this is the library's settled string format, and
// ReadStringValue reads it back. A closed object passes the null handle to the platform, which refuses it.
long CRegistry::WriteStringValue(const wchar_t* name, const CStdStr<wchar_t>& value) {
    return RegSetValueExW(m_key.get(), name, 0, REG_SZ, Bytes(value.c_str()),
                          static_cast<DWORD>(value.size() * sizeof(wchar_t)));
}

long CRegistry::WriteStringValue(const CStdStr<wchar_t>& name, const CStdStr<wchar_t>& value) {
    return WriteStringValue(name.c_str(), value);
}

const wchar_t* CRegistry::GetFirstSubkey() {
    m_enumIndex = 0;
    return GetNextSubkey();
}

const wchar_t* CRegistry::GetNextSubkey() {
    if (!m_key)
        return nullptr;
    DWORD length = kRegistrySubkeyNameCapacity;
    if (RegEnumKeyExW(m_key.get(), m_enumIndex, s_subkeyName, &length, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS)
        return nullptr;  // the index stays where it is
    ++m_enumIndex;
    return s_subkeyName;
}
