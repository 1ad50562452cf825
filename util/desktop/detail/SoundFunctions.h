// winmm.dll's PlaySoundW, bound from the system folder on the first sound (platform/detail/SystemBinding.h)
// rather than imported. Same arguments as the system's; when it cannot be bound, the sound does not play:
// FALSE, with the loader's error as the last error.
#pragma once

#include <windows.h>

namespace tav::desktop::detail {

BOOL PlaySoundW(const wchar_t* sound, HMODULE module, DWORD flags);

}  // namespace tav::desktop::detail
