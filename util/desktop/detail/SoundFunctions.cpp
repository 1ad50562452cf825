#include "desktop/detail/SoundFunctions.h"

#include "platform/detail/SystemBinding.h"

#include <mmsystem.h>

namespace {

// Process-wide: bound on the first sound, kept until the process ends.
TAV_SYSTEM_BINDING(g_playSound, "winmm.dll", PlaySoundW);

}  // namespace

namespace tav::sound {

BOOL PlaySoundW(const wchar_t* sound, HMODULE module, DWORD flags) {
    auto function = BoundFunction<decltype(&::PlaySoundW)>(g_playSound);
    return function != nullptr ? function(sound, module, flags) : FALSE;
}

}  // namespace tav::sound
