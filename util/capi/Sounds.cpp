// c/sounds.h: Event sounds of the Windows sound scheme.
#include "capi/c/sounds.h"

#include "capi/detail/Boundary.h"
#include "desktop/Wave.h"

using namespace tav::capi;

struct tav_sound_t {
    cWave wave;
};

extern "C" {

tav_sound tav_sound_create(void) {
    return GuardedHandle([]() -> tav_sound { return new tav_sound_t; });
}

int32_t tav_sound_play(tav_sound sound, const wchar_t* event_name, int32_t mode) {
    if (StrayText({event_name}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (sound == nullptr)
            return TAV_E_NULL_HANDLE;
        if (mode < TAV_SOUND_ASYNC || mode > TAV_SOUND_LOOP)
            return TAV_E_UNKNOWN_ENUM;
        if (event_name == nullptr)
            return TAV_E_NULL_ARGUMENT;
        return sound->wave.play(event_name, static_cast<cWave::PlayModeEnum>(mode)) ? 1 : 0;
    });
}

int32_t tav_sound_stop(tav_sound sound) {
    return Guarded([&]() -> int32_t {
        if (sound == nullptr)
            return TAV_E_NULL_HANDLE;
        sound->wave.stopPlay();
        return TAV_OK;
    });
}

int32_t tav_sound_is_repeating(tav_sound sound) {
    return sound ? static_cast<int32_t>(sound->wave.isRepeating()) : kNullHandle;
}

void tav_sound_destroy(tav_sound sound) { delete sound; }

int32_t tav_sound_application_name(wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        return CopyText(cWave::applicationName(), buffer, capacity, needed);
    });
}

}  // extern "C"
