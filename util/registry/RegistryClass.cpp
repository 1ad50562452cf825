#include "registry/RegistryClass.h"

#include "registry/detail/RegistryKey.h"

#include <cwchar>

namespace {

// The longest string WriteString stores, and the byte size of ReadString's buffer. With the terminator
// counted, a stored string of up to 126 characters fits the buffer; longer ones read as the default. The
// sizes are the settled format, kept as they are.
const int kWritableStringLength = 254;
const DWORD kStringReadBufferBytes = 255;

bool IsPredefinedRoot(HKEY root) {
    return root == HKEY_CLASSES_ROOT || root == HKEY_CURRENT_USER || root == HKEY_LOCAL_MACHINE || root == HKEY_USERS;
}

}  // namespace

CRegistryClass::CRegistryClass() : m_lastStatus(0), m_root(HKEY_CURRENT_USER), m_lazyWrite(1) {}

// The destructor puts the fields back to their defaults (an empty path, HKEY_CURRENT_USER, lazy writing).
// It looks dead and is settled: a host that reads an object after its end (a stale copy, a placement reuse)
// has always found these values, never the old path, so the resets stay.
CRegistryClass::~CRegistryClass() {
    m_path.Empty();
    m_root = HKEY_CURRENT_USER;
    m_lazyWrite = 1;
}

// Private helpers -----------------------------------------------------------------------------------------

LONG CRegistryClass::OpenCurrent(REGSAM access, tav::UniqueKey& key) {
    return tav::registry::detail::OpenKey(m_root, m_path, access, key);
}

void CRegistryClass::Release(tav::UniqueKey& key) {
    if (m_lazyWrite == 0 && key)
        RegFlushKey(key.get());
    key.reset();
}

// The query writes straight into the caller's object; the key is closed on every path.
int CRegistryClass::QueryBytes(const CString& name, void* data, DWORD size) {
    tav::UniqueKey key;
    if (OpenCurrent(KEY_QUERY_VALUE, key) != ERROR_SUCCESS)
        return 0;
    return RegQueryValueExW(key.get(), name, nullptr, nullptr, static_cast<BYTE*>(data), &size) == ERROR_SUCCESS ? 1
                                                                                                                 : 0;
}

int CRegistryClass::SetBytes(const CString& name, DWORD type, const void* data, DWORD size) {
    tav::UniqueKey key;
    if (OpenCurrent(KEY_WRITE, key) != ERROR_SUCCESS)
        return 0;
    if (RegSetValueExW(key.get(), name, 0, type, static_cast<const BYTE*>(data), size) != ERROR_SUCCESS)
        return 0;
    Release(key);
    return 1;
}

// Key management --------------------------------------------------------------------------------------------

int CRegistryClass::SetRootKey(HKEY root) {
    if (!IsPredefinedRoot(root))
        return 0;
    m_root = root;
    return 1;
}

HKEY CRegistryClass::GetRootKey() { return m_root; }

int CRegistryClass::CreateKey(CString path) {
    tav::UniqueKey key;
    if (tav::registry::detail::CreateKey(m_root, path, KEY_ALL_ACCESS, key) != ERROR_SUCCESS)
        return 0;
    Release(key);
    m_path = path;
    return 1;
}

int CRegistryClass::SetKey(CString path, int canCreate) {
    if (path.IsEmpty()) {
        m_path.Empty();
        return 1;
    }
    if (canCreate)
        return CreateKey(path);
    tav::UniqueKey key;
    m_lastStatus = tav::registry::detail::OpenKey(m_root, path, KEY_QUERY_VALUE, key);
    if (m_lastStatus != ERROR_SUCCESS)
        return 0;
    Release(key);
    m_path = path;
    return 1;
}

int CRegistryClass::ClearKey() {
    m_path.Empty();
    m_root = HKEY_CURRENT_USER;
    m_lazyWrite = 1;
    return 1;
}

int CRegistryClass::PathIsValid() { return m_path.IsEmpty() ? 0 : 1; }

CString CRegistryClass::GetCurrentPath() { return m_path; }

int CRegistryClass::KeyExists(CString path, HKEY root) {
    tav::UniqueKey key;
    return tav::registry::detail::OpenKey(root ? root : m_root, path, KEY_QUERY_VALUE, key) == ERROR_SUCCESS ? 1 : 0;
}

int CRegistryClass::DeleteKey(CString path) {
    {
        tav::UniqueKey key;
        if (tav::registry::detail::OpenKey(m_root, path, KEY_QUERY_VALUE, key) != ERROR_SUCCESS)
            return 1;  // nothing to delete
    }
    return RegDeleteKeyW(m_root, path) == ERROR_SUCCESS ? 1 : 0;
}

int CRegistryClass::DeleteValue(CString name) {
    tav::UniqueKey key;
    if (OpenCurrent(KEY_SET_VALUE, key) != ERROR_SUCCESS)
        return 0;
    return RegDeleteValueW(key.get(), name) == ERROR_SUCCESS ? 1 : 0;
}

int CRegistryClass::ValueExists(CString name) {
    tav::UniqueKey key;
    if (OpenCurrent(KEY_QUERY_VALUE, key) != ERROR_SUCCESS)
        return 0;
    return RegQueryValueExW(key.get(), name, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS ? 1 : 0;
}

int CRegistryClass::GetDataSize(CString name) {
    tav::UniqueKey key;
    DWORD size = 0;
    if (OpenCurrent(KEY_QUERY_VALUE, key) != ERROR_SUCCESS ||
        RegQueryValueExW(key.get(), name, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS)
        return -1;
    return static_cast<int>(size);
}

unsigned long CRegistryClass::GetDataType(CString name) {
    tav::UniqueKey key;
    m_lastStatus = OpenCurrent(KEY_QUERY_VALUE, key);
    if (m_lastStatus != ERROR_SUCCESS)
        return REG_NONE;
    DWORD type = REG_NONE;
    m_lastStatus = RegQueryValueExW(key.get(), name, nullptr, &type, nullptr, nullptr);
    return m_lastStatus == ERROR_SUCCESS ? type : REG_NONE;
}

int CRegistryClass::GetSubKeyCount() {
    tav::UniqueKey key;
    DWORD count = 0;
    if (OpenCurrent(KEY_QUERY_VALUE, key) != ERROR_SUCCESS ||
        RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr, nullptr,
                         nullptr, nullptr) != ERROR_SUCCESS)
        return -1;
    return static_cast<int>(count);
}

int CRegistryClass::GetValueCount() {
    tav::UniqueKey key;
    DWORD count = 0;
    if (OpenCurrent(KEY_QUERY_VALUE, key) != ERROR_SUCCESS ||
        RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr, nullptr,
                         nullptr, nullptr) != ERROR_SUCCESS)
        return -1;
    return static_cast<int>(count);
}

int CRegistryClass::GetSubKeyName(int index, CString& name) {
    tav::UniqueKey key;
    wchar_t buffer[256] = {};
    if (OpenCurrent(KEY_ENUMERATE_SUB_KEYS, key) != ERROR_SUCCESS ||
        RegEnumKeyW(key.get(), static_cast<DWORD>(index), buffer, 256) != ERROR_SUCCESS)
        return 0;
    name = buffer;
    return 1;
}

void CRegistryClass::RenameValue(CString, CString) {}

void CRegistryClass::SetLazyWrite(int lazyWrite) { m_lazyWrite = lazyWrite; }

int CRegistryClass::GetLazyWrite() { return m_lazyWrite; }

long CRegistryClass::GetLastStatus() { return m_lastStatus; }

// Typed reads ---------------------------------------------------------------------------------------------------

CString CRegistryClass::ReadString(CString name, CString def) {
    DWORD type = REG_NONE;
    {
        tav::UniqueKey key;
        m_lastStatus = OpenCurrent(KEY_QUERY_VALUE, key);
        if (m_lastStatus != ERROR_SUCCESS)
            return def;
        m_lastStatus = RegQueryValueExW(key.get(), name, nullptr, &type, nullptr, nullptr);
        if (m_lastStatus != ERROR_SUCCESS)
            return def;
    }
    if (type != REG_SZ && type != REG_EXPAND_SZ)
        return def;
    tav::UniqueKey key;
    m_lastStatus = OpenCurrent(KEY_QUERY_VALUE, key);
    if (m_lastStatus != ERROR_SUCCESS)
        return def;
    wchar_t buffer[(kStringReadBufferBytes + 1) / sizeof(wchar_t)] = {};
    DWORD size = kStringReadBufferBytes;
    m_lastStatus = RegQueryValueExW(key.get(), name, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer), &size);
    if (m_lastStatus != ERROR_SUCCESS)
        return def;  // also a value too long for the buffer
    return CString(buffer, static_cast<int>(wcsnlen(buffer, size / sizeof(wchar_t))));
}

// The typed reads below accept any stored type whose data fits their buffer. A shorter value fills the start
// of a zeroed buffer.
unsigned long CRegistryClass::ReadDword(CString name, unsigned long def) {
    DWORD value = 0;
    return QueryBytes(name, &value, sizeof(value)) ? value : def;
}

int CRegistryClass::ReadInt(CString name, int def) {
    int value = 0;
    return QueryBytes(name, &value, sizeof(value)) ? value : def;
}

int CRegistryClass::ReadBool(CString name, int def) { return ReadInt(name, def); }

unsigned long CRegistryClass::ReadColor(CString name, unsigned long def) {
    return static_cast<unsigned long>(ReadInt(name, static_cast<int>(def)));
}

double CRegistryClass::ReadFloat(CString name, double def) {
    double value = 0;
    return QueryBytes(name, &value, sizeof(value)) ? value : def;
}

COleDateTime CRegistryClass::ReadDateTime(CString name, COleDateTime def) {
    COleDateTime value;
    return QueryBytes(name, &value, sizeof(value)) ? value : def;
}

int CRegistryClass::ReadBinary(CString name, unsigned char* data, unsigned long size) {
    return QueryBytes(name, data, size);
}

int CRegistryClass::ReadRect(CString name, CRect* rect) { return QueryBytes(name, rect, sizeof(RECT)); }

int CRegistryClass::ReadPoint(CString name, CPoint* point) { return QueryBytes(name, point, sizeof(POINT)); }

int CRegistryClass::ReadSize(CString name, CSize* size) { return QueryBytes(name, size, sizeof(SIZE)); }

int CRegistryClass::ReadFont(CString name, CFont* font) {
    LOGFONTW logFont = {};
    if (!QueryBytes(name, &logFont, sizeof(logFont)))
        return 0;
    font->Detach();  // not deleted: the font belongs to whoever attached it
    font->Attach(CreateFontIndirectW(&logFont));
    return 1;
}

// Writes ---------------------------------------------------------------------------------------------------------

int CRegistryClass::WriteString(CString name, CString value) {
    if (value.GetLength() > kWritableStringLength)
        return 0;
    return SetBytes(name, REG_SZ, value.GetString(), static_cast<DWORD>((value.GetLength() + 1) * sizeof(wchar_t)));
}

int CRegistryClass::WriteDword(CString name, unsigned long value) {
    DWORD stored = value;
    return SetBytes(name, REG_DWORD, &stored, sizeof(stored));
}

int CRegistryClass::WriteInt(CString name, int value) { return SetBytes(name, REG_BINARY, &value, sizeof(value)); }

int CRegistryClass::WriteBool(CString name, int value) { return WriteInt(name, value); }

int CRegistryClass::WriteColor(CString name, unsigned long value) { return WriteInt(name, static_cast<int>(value)); }

int CRegistryClass::WriteFloat(CString name, double value) { return SetBytes(name, REG_BINARY, &value, sizeof(value)); }

int CRegistryClass::WriteDateTime(CString name, COleDateTime value) {
    return SetBytes(name, REG_BINARY, &value, sizeof(value));
}

int CRegistryClass::WriteRect(CString name, CRect* rect) { return SetBytes(name, REG_BINARY, rect, sizeof(RECT)); }

int CRegistryClass::WritePoint(CString name, CPoint* point) { return SetBytes(name, REG_BINARY, point, sizeof(POINT)); }

int CRegistryClass::WriteSize(CString name, CSize* size) { return SetBytes(name, REG_BINARY, size, sizeof(SIZE)); }

int CRegistryClass::WriteFont(CString name, CFont* font) {
    LOGFONTW logFont = {};
    if (font == nullptr || GetObjectW(font->GetSafeHandle(), sizeof(logFont), &logFont) != sizeof(logFont))
        return 0;
    return SetBytes(name, REG_BINARY, &logFont, sizeof(logFont));
}
