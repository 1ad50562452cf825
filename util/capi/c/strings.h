/**
 * @file strings.h
 * @brief Text helpers: cutting a text into display lines, cutting it to a length, and the trailing
 * backslash of a folder path. Pure text work: nothing waits, nothing touches the system.
 */
#ifndef TAVUTIL_C_STRINGS_H
#define TAVUTIL_C_STRINGS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief Cuts a text into display lines of at most `width` units (StringCut).
 *
 * Lines break at blanks, line feeds and carriage returns. A word longer than `width` becomes its first
 * `width` - 3 units followed by "...", and the rest of that word is dropped.
 * @param text The text.
 * @param width The most units a piece may have.
 * @param buffer Receives the pieces as a list (each ended by a NUL, one more NUL after the last).
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the list needs (may be null).
 * @return The number of pieces (at least 1; a piece may be empty), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_string_cut(const wchar_t* text, int32_t width, wchar_t* buffer, size_t capacity,
                                     size_t* needed);

/**
 * @brief A text cut to `length` units, or to its first NUL if that comes first (SetStringLength).
 * @param text The text.
 * @param length The units to keep; 0 or less keeps nothing.
 * @param buffer Receives the cut text.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_string_set_length(const wchar_t* text, int32_t length, wchar_t* buffer, size_t capacity,
                                            size_t* needed);

/**
 * @brief A path with one backslash at its end: added when missing (EnsureTrailingBackslash).
 * @param path The path (an empty path gives "\").
 * @param buffer Receives the path.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_string_ensure_trailing_backslash(const wchar_t* path, wchar_t* buffer, size_t capacity,
                                                           size_t* needed);

/**
 * @brief A path without the backslash at its end, unless the path is that backslash alone
 * (StripTrailingBackslash).
 * @param path The path.
 * @param buffer Receives the path.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_string_strip_trailing_backslash(const wchar_t* path, wchar_t* buffer, size_t capacity,
                                                          size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_STRINGS_H */
