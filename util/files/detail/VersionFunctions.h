// The functions of version.dll that the version-resource reader uses, bound from the system folder on first
// use (platform/detail/SystemBinding.h) rather than imported. Same names and arguments as the system's;
// when a function cannot be bound, the call fails as the system's does on a file without version data:
// 0 or FALSE, with the loader's error as the last error. The reader then reports no version data.
#pragma once

#include <windows.h>

namespace tav::files::detail {

DWORD GetFileVersionInfoSizeW(const wchar_t* file, DWORD* handle);
BOOL GetFileVersionInfoW(const wchar_t* file, DWORD handle, DWORD size, void* data);
BOOL VerQueryValueW(const void* block, const wchar_t* subBlock, void** buffer, UINT* length);

}  // namespace tav::files::detail
