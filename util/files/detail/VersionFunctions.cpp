#include "files/detail/VersionFunctions.h"

#include "platform/detail/SystemBinding.h"

namespace {

// Process-wide: bound on the first version read, kept until the process ends.
TAV_SYSTEM_BINDING(g_getFileVersionInfoSize, "version.dll", GetFileVersionInfoSizeW);
TAV_SYSTEM_BINDING(g_getFileVersionInfo, "version.dll", GetFileVersionInfoW);
TAV_SYSTEM_BINDING(g_verQueryValue, "version.dll", VerQueryValueW);

}  // namespace

namespace tav::files::detail {

DWORD GetFileVersionInfoSizeW(const wchar_t* file, DWORD* handle) {
    auto function = platform::detail::BoundFunction<decltype(&::GetFileVersionInfoSizeW)>(g_getFileVersionInfoSize);
    return function != nullptr ? function(file, handle) : 0;
}

BOOL GetFileVersionInfoW(const wchar_t* file, DWORD handle, DWORD size, void* data) {
    auto function = platform::detail::BoundFunction<decltype(&::GetFileVersionInfoW)>(g_getFileVersionInfo);
    return function != nullptr ? function(file, handle, size, data) : FALSE;
}

BOOL VerQueryValueW(const void* block, const wchar_t* subBlock, void** buffer, UINT* length) {
    auto function = platform::detail::BoundFunction<decltype(&::VerQueryValueW)>(g_verQueryValue);
    return function != nullptr ? function(block, subBlock, buffer, length) : FALSE;
}

}  // namespace tav::files::detail
