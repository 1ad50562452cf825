#include "system/detail/WindowsVersion.h"

namespace tav::system::detail {

static_assert(sizeof(OSVERSIONINFOW) == 276, "version record size");
static_assert(sizeof(OSVERSIONINFOEXW) == 284, "extended version record size");

// GetVersionExW is deprecated in the headers; the classification is defined by what it reports.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

bool ReadVersion(OSVERSIONINFOW& info) {
    ZeroMemory(&info, sizeof(info));
    info.dwOSVersionInfoSize = sizeof(OSVERSIONINFOW);
    return GetVersionExW(&info) != FALSE;
}

bool ReadVersionEx(OSVERSIONINFOEXW& info) {
    ZeroMemory(&info, sizeof(info));
    info.dwOSVersionInfoSize = sizeof(OSVERSIONINFOEXW);
    return GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&info)) != FALSE;
}

#pragma GCC diagnostic pop

bool IsNtFamily() {
    OSVERSIONINFOEXW extended;
    if (ReadVersionEx(extended))
        return IsNtFamily(reinterpret_cast<const OSVERSIONINFOW&>(extended));
    OSVERSIONINFOW plain;
    return ReadVersion(plain) && IsNtFamily(plain);
}

}  // namespace tav::system::detail
