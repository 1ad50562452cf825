#include "launch/detail/Environment.h"

#include <windows.h>

namespace tav::launch::detail {

CStdStr<wchar_t> ExpandEnvironment(const CStdStr<wchar_t>& text) {
    constexpr DWORD kCapacity = 512;
    wchar_t buffer[kCapacity];
    DWORD count = ExpandEnvironmentStringsW(text.c_str(), buffer, kCapacity);
    // A count above the capacity is the size that would have been needed: the buffer holds nothing usable.
    if (count == 0 || count > kCapacity)
        return text;
    return CStdStr<wchar_t>(buffer);
}

}  // namespace tav::launch::detail
