// The ways TavUtil opens a registry key, in one place (private to util/registry, not exported). Every read-only open in
// the library goes through OpenKeyForReading, which looks in the native (64-bit) view first and then in the 32-bit
// view: TavUtil is a 64-bit module and must find the keys that 32-bit installers wrote. An open key is always owned by
// a tav::UniqueKey, so that every path closes what it opened.
#pragma once

#include "platform/Handles.h"

#include <windows.h>

namespace tav::registry::detail {

// One RegOpenKeyExW of `path` under `root` with `access` (which may name a view). On success `key` owns the
// new handle; on failure `key` is empty. Any key `key` held before is closed first. Returns the status.
LONG OpenKey(HKEY root, const wchar_t* path, REGSAM access, UniqueKey& key);

// RegCreateKeyExW of `path` under `root` (non-volatile, no class, no security attributes): the key is created
// when missing. `key` as for OpenKey. Returns the status.
LONG CreateKey(HKEY root, const wchar_t* path, REGSAM access, UniqueKey& key);

// The library's read-only open: KEY_READ in the native view; when that fails, once more with
// KEY_READ | KEY_WOW64_32KEY. Returns the status of the last attempt. Never creates a key.
LONG OpenKeyForReading(HKEY root, const wchar_t* path, UniqueKey& key);

}  // namespace tav::registry::detail
