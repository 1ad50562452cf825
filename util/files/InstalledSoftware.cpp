#include "files/InstalledSoftware.h"

#include "registry/Registry.h"

namespace {

const wchar_t kSetupKey[] = L"SOFTWARE\\Velmorax\\Trimdial\\CurrentVersion\\Setup";
const wchar_t kUninstallKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
const wchar_t kAppPathsKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\";

// Reads value `name` of root\path (read-only open) into `out`; false when the key does not open or the value
// is not a readable string.
bool ReadString(HKEY root, const CStdStr<wchar_t>& path, const wchar_t* name, CStdStr<wchar_t>& out) {
    CRegistry key;
    if (key.OpenKey(root, path.c_str(), true) != ERROR_SUCCESS)
        return false;
    return key.ReadStringValue(name, out) == 0;
}

}  // namespace

CStdStr<wchar_t> TrimdialInstallDate() {
    CStdStr<wchar_t> date, productGuid;
    if (!ReadString(HKEY_LOCAL_MACHINE, kSetupKey, L"ProductGUID", productGuid))
        return CStdStr<wchar_t>();
    // The GUID is appended as read, braces included.
    ReadString(HKEY_LOCAL_MACHINE, kUninstallKey + productGuid, L"InstallDate", date);
    return date;
}

bool FindApplicationPath(CStdStr<wchar_t> app, CStdStr<wchar_t>& path, const CStdStr<wchar_t>& ext) {
    CRegistry key;
    if (key.OpenKey(HKEY_LOCAL_MACHINE, (kAppPathsKey + app + L"." + ext).c_str(), true) != ERROR_SUCCESS)
        return false;
    return key.ReadStringValue(L"", path) == 0;
}

bool FindMostRecentProgIdPath(const CStdStr<wchar_t>& progId, CStdStr<wchar_t>& path) {
    // A failed CurVer read leaves the version empty and the next open ("\CLSID") fails.
    CStdStr<wchar_t> currentVersion, classId;
    ReadString(HKEY_CLASSES_ROOT, progId + L"\\CurVer", L"", currentVersion);
    CRegistry classKey;
    if (classKey.OpenKey(HKEY_CLASSES_ROOT, (currentVersion + L"\\CLSID").c_str(), true) != ERROR_SUCCESS)
        return false;
    classKey.ReadStringValue(L"", classId);
    return ReadString(HKEY_CLASSES_ROOT, L"CLSID\\" + classId + L"\\LocalServer32", L"", path);
}
