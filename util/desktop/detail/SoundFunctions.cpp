#include "desktop/detail/SoundFunctions.h"

#include "platform/detail/SystemBinding.h"

#include <mmsystem.h>

namespace {

// Process-wide: bound on the first sound, kept until the process ends.
TAV_SYSTEM_BINDING(g_playSound, "winmm.dll", PlaySoundW);

}  // namespace

namespace tav::desktop::detail {

BOOL PlaySoundW(const wchar_t* sound, HMODULE module, DWORD flags) {
    auto function = platform::detail::BoundFunction<decltype(&::PlaySoundW)>(g_playSound);
    return function != nullptr ? function(sound, module, flags) : FALSE;
}

}  // namespace tav::desktop::detail
