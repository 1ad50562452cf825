/**
 * @file sounds.h
 * @brief Event sounds: plays the sound the user assigned to an event of the host application in the
 * Windows sound scheme (HKEY_CURRENT_USER "AppEvents\Schemes\Apps\<application>\<event>\.Current") (cWave).
 *
 * There is never a fallback to a default sound.
 */
#ifndef TAVUTIL_C_SOUNDS_H
#define TAVUTIL_C_SOUNDS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief How tav_sound_play() plays. */
enum tav_sound_mode {
    TAV_SOUND_ASYNC = 0, /**< In the background, once: the call returns at once. */
    TAV_SOUND_SYNC = 1,  /**< Once; the call waits until the sound has ended. */
    TAV_SOUND_LOOP = 2   /**< In the background, repeated until another sound is played. */
};

/** @brief A sound player, made by tav_sound_create(). */
typedef struct tav_sound_t* tav_sound;

/**
 * @brief Makes a sound player.
 * @return The player, owned by the caller (release it with tav_sound_destroy()); null only when memory is
 * short.
 */
TAVUTIL_C_API tav_sound tav_sound_create(void);

/**
 * @brief Plays the sound registered for an event of this application (see
 * tav_sound_application_name()). With #TAV_SOUND_SYNC, waits until the sound has ended.
 * @param sound The player.
 * @param event_name The event's name in the sound scheme.
 * @param mode One of #tav_sound_mode.
 * @return 1 when the sound started; 0 when the event has no sound registered or it could not be started
 * (the reason is logged at WARNING when the sound itself fails); or a negative #tav_c_error code
 * (#TAV_E_UNKNOWN_ENUM for another mode).
 */
TAVUTIL_C_API int32_t tav_sound_play(tav_sound sound, const wchar_t* event_name, int32_t mode);

/**
 * @brief Stops the sound while the player's repeat flag is set, and clears the flag. No play sets that flag,
 * so this stops nothing (on purpose: hosts end a loop by playing another sound).
 * @param sound The player.
 * @return #TAV_OK, or #TAV_E_NULL_HANDLE.
 */
TAVUTIL_C_API int32_t tav_sound_stop(tav_sound sound);

/**
 * @brief The player's repeat flag (see tav_sound_stop()).
 * @param sound The player.
 * @return 1 or 0 (always 0 after a play), or #TAV_E_NULL_HANDLE.
 */
TAVUTIL_C_API int32_t tav_sound_is_repeating(tav_sound sound);

/**
 * @brief Releases a player; stops as tav_sound_stop() does.
 * @param sound The player (null: nothing happens).
 */
TAVUTIL_C_API void tav_sound_destroy(tav_sound sound);

/**
 * @brief The application name the sound scheme is looked up under: the executable's name without folder
 * and extension.
 * @param buffer Receives the name.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the name needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_sound_application_name(wchar_t* buffer, size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_SOUNDS_H */
