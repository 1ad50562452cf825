#include "registry/detail/RegistryKey.h"

namespace tav::registry::detail {

LONG OpenKey(HKEY root, const wchar_t* path, REGSAM access, UniqueKey& key) {
    key.reset();
    HKEY opened = nullptr;
    LONG status = RegOpenKeyExW(root, path, 0, access, &opened);
    if (status == ERROR_SUCCESS)
        key.reset(opened);
    return status;
}

LONG CreateKey(HKEY root, const wchar_t* path, REGSAM access, UniqueKey& key) {
    key.reset();
    HKEY created = nullptr;
    LONG status = RegCreateKeyExW(root, path, 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, &created, nullptr);
    if (status == ERROR_SUCCESS)
        key.reset(created);
    return status;
}

LONG OpenKeyForReading(HKEY root, const wchar_t* path, UniqueKey& key) {
    LONG status = OpenKey(root, path, KEY_READ, key);
    if (status == ERROR_SUCCESS)
        return status;
    return OpenKey(root, path, KEY_READ | KEY_WOW64_32KEY, key);
}

}  // namespace tav::registry::detail
