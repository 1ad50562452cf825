// c/sounds.h: event sounds of the Windows sound scheme.
#include "capi/c/sounds.h"

#include "capi/detail/Boundary.h"
#include "desktop/Wave.h"

using namespace tav::capi::detail;

struct tav_sound_t {
    cWave wave;
};

extern "C" {

tav_sound tav_sound_create(void) {
    return GuardedHandle([]() -> tav_sound { return new tav_sound_t; });
}

int32_t tav_sound_play(tav_sound sound, const wchar_t* event_name, int32_t mode) {
    // The mode is checked before the name is missed, as it always was.
    return OnHandle(sound, {OptionalText(event_name)}, [&]() -> int32_t {
        if (mode < TAV_SOUND_ASYNC || mode > TAV_SOUND_LOOP)
            return TAV_E_UNKNOWN_ENUM;
        if (event_name == nullptr)
            return TAV_E_NULL_ARGUMENT;
        return sound->wave.play(event_name, static_cast<cWave::PlayModeEnum>(mode)) ? 1 : 0;
    });
}

int32_t tav_sound_stop(tav_sound sound) {
    return OnHandle(sound, {}, [&] {
        sound->wave.stopPlay();
        return int32_t{TAV_OK};
    });
}

int32_t tav_sound_is_repeating(tav_sound sound) {
    return OnHandle(sound, {}, [&] { return int32_t{sound->wave.isRepeating()}; });
}

void tav_sound_destroy(tav_sound sound) { delete sound; }

int32_t tav_sound_application_name(wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({Out(buffer, capacity)},
                  [&] { return CopyText(cWave::applicationName(), buffer, capacity, needed); });
}

}  // extern "C"
