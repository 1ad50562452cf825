/**
 * @file recorder.h
 * @brief Recording a keystroke script by typing it (`tav_recorder_*`): a low-level keyboard hook collects
 * what the user types, and the recorder writes the script a person would write for it.
 *
 * The hook is set on the thread that calls tav_recorder_begin(), and that thread must pump messages while
 * the user types (a host's UI thread does); the library starts no thread. Call every function of a recorder
 * on that thread.
 */
#ifndef TAVUTIL_C_RECORDER_H
#define TAVUTIL_C_RECORDER_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief A recorder (KeyRecorder), made by tav_recorder_begin(). */
typedef struct tav_recorder_t* tav_recorder;

/** @brief The flags of tav_recorder_begin(). */
enum tav_record_flag {
    TAV_RECORD_IGNORE_INJECTED = 0x1 /**< Leave out key events a program made (the library's typing too). */
};

/**
 * @brief Starts recording what the user types.
 * @param flags 0, or #TAV_RECORD_IGNORE_INJECTED.
 * @return The recorder, owned by the caller (end it with tav_recorder_end()); null for unknown flag bits,
 * when the keyboard hook cannot be set, or when memory is short.
 */
TAVUTIL_C_API tav_recorder tav_recorder_begin(uint32_t flags);

/**
 * @brief The script of what was typed so far, in its shortest natural form: characters as themselves with
 * Shift folded in ("A"), the script language's own characters in braces as tav_keys_escape() writes them,
 * named keys as `{NAME}` and runs of one as `{TAB 3}`, Enter as `~`, a modifier held over several keys as
 * a prefix and a group (`^(ac)`). Keys the language cannot express are left out (tav_recorder_skipped()).
 * @param recorder The recorder.
 * @param buffer Receives the script.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, #TAV_E_NULL_HANDLE, or a negative #tav_c_error code by the text-out rule.
 */
TAVUTIL_C_API int32_t tav_recorder_script(tav_recorder recorder, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief How many key presses the script leaves out: keys with neither a name in the language nor a
 * character, and modifiers pressed and released alone.
 * @param recorder The recorder.
 * @return The count, or #TAV_E_NULL_HANDLE.
 */
TAVUTIL_C_API int32_t tav_recorder_skipped(tav_recorder recorder);

/**
 * @brief Stops recording and releases the recorder.
 * @param recorder The recorder (null: nothing happens).
 * @return #TAV_OK.
 */
TAVUTIL_C_API int32_t tav_recorder_end(tav_recorder recorder);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_RECORDER_H */
