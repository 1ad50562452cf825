// CRegistryClass: typed application settings under one current key. It keeps no key open: it remembers a
// root and a current path, and each call opens the current key for exactly the access it needs, does one
// operation and closes it again. Results are non-zero for success unless stated otherwise; typed reads
// return the caller's default on any failure.
//
// Storage format of each type (settled; hosts read each other's settings):
//   string                REG_SZ with terminator, at most 254 characters written; read through a 255-byte
//                         buffer, so longer stored strings read as the default
//   unsigned 32-bit       REG_DWORD, 4 bytes
//   int, bool, colour     REG_BINARY, 4 bytes (an int is not a REG_DWORD, on purpose)
//   double                REG_BINARY, 8 bytes as in memory
//   date and time         REG_BINARY, 16 bytes: the COleDateTime as in memory
//   rectangle             REG_BINARY, 16 bytes: left, top, right, bottom
//   point, size           REG_BINARY, 8 bytes: x, y (cx, cy)
//   font                  REG_BINARY, 92 bytes: its LOGFONTW
#pragma once

#include "../platform/CFont.h"
#include "../platform/COleDateTime.h"
#include "../platform/CRect.h"
#include "../platform/CString.h"
#include "../platform/Export.h"

#include <windows.h>

class TAVUTIL_API CRegistryClass {
public:
    CRegistryClass();
    CRegistryClass(const CRegistryClass&) = default;
    CRegistryClass& operator=(const CRegistryClass&) = default;
    ~CRegistryClass();

    // Key management.
    int SetRootKey(HKEY root);  // HKCR, HKCU, HKLM or HKU; anything else is refused and the root kept
    HKEY GetRootKey();
    int CreateKey(CString path);              // creates when missing; becomes the current path
    int SetKey(CString path, int canCreate);  // empty path: the root itself
    int ClearKey();                           // empty path, root HKEY_CURRENT_USER, lazy write 1
    int PathIsValid();
    CString GetCurrentPath();
    int KeyExists(CString path, HKEY root = nullptr);  // null root: the object's root
    int DeleteKey(CString path);                       // 1 also when there is nothing to delete
    int DeleteValue(CString name);
    int ValueExists(CString name);
    int GetDataSize(CString name);            // bytes; -1 on failure
    unsigned long GetDataType(CString name);  // REG_ type; REG_NONE on failure
    int GetSubKeyCount();                     // -1 on failure
    int GetValueCount();                      // -1 on failure
    int GetSubKeyName(int index, CString& name);
    // Renaming is not supported: the call does nothing, deliberately.
    void RenameValue(CString from, CString to);

    // Lazy write 1 (the default) leaves writing to disk to the system; 0 flushes every key the object
    // creates, selects or writes before closing it.
    void SetLazyWrite(int lazyWrite);
    int GetLazyWrite();
    // Windows status of the last open or query made by GetDataType, SetKey or ReadString.
    long GetLastStatus();

    // Typed reads: the default on any failure.
    CString ReadString(CString name, CString def);
    unsigned long ReadDword(CString name, unsigned long def);
    int ReadInt(CString name, int def);
    int ReadBool(CString name, int def);
    unsigned long ReadColor(CString name, unsigned long def);
    double ReadFloat(CString name, double def);
    COleDateTime ReadDateTime(CString name, COleDateTime def);

    // Reads into caller objects: 1 on success, 0 on failure.
    int ReadBinary(CString name, unsigned char* data, unsigned long size);
    int ReadRect(CString name, CRect* rect);
    int ReadPoint(CString name, CPoint* point);
    int ReadSize(CString name, CSize* size);
    // On success the font held by `font` is detached, not deleted (it belongs to whoever attached it), and
    // a new font made from the stored LOGFONTW is attached.
    int ReadFont(CString name, CFont* font);

    // Writes into the current key, which must exist (CreateKey or SetKey with canCreate first).
    int WriteString(CString name, CString value);  // refused (0) from 255 characters on
    int WriteDword(CString name, unsigned long value);
    int WriteInt(CString name, int value);
    int WriteBool(CString name, int value);
    int WriteColor(CString name, unsigned long value);
    int WriteFloat(CString name, double value);
    int WriteDateTime(CString name, COleDateTime value);
    int WriteRect(CString name, CRect* rect);
    int WritePoint(CString name, CPoint* point);
    int WriteSize(CString name, CSize* size);
    int WriteFont(CString name, CFont* font);

private:
    LONG OpenCurrent(REGSAM access, tav::UniqueKey& key);
    void Release(tav::UniqueKey& key);  // flushes when lazy write is 0, then closes
    int QueryBytes(const CString& name, void* data, DWORD size);
    int SetBytes(const CString& name, DWORD type, const void* data, DWORD size);

    long m_lastStatus;
    HKEY m_root;
    int m_lazyWrite;
    CString m_path;
};
