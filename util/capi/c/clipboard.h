/**
 * @file clipboard.h
 * @brief The Unicode text on the Windows clipboard. Each call opens the clipboard, does its work and
 * closes it again; it fails at once (no waiting) when another program holds the clipboard open.
 */
#ifndef TAVUTIL_C_CLIPBOARD_H
#define TAVUTIL_C_CLIPBOARD_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief The Unicode text on the clipboard.
 * @param buffer Receives the text (empty when the clipboard holds no text).
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the text needs (may be null).
 * @return 1; 0 when the clipboard could not be opened (nothing is written); or a negative #tav_c_error
 * code.
 */
TAVUTIL_C_API int32_t tav_clipboard_get_text(wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief Empties the clipboard and puts a Unicode text on it.
 * @param text The text.
 * @return 1; 0 when the clipboard could not be opened or refused the text; or #TAV_E_NULL_ARGUMENT.
 */
TAVUTIL_C_API int32_t tav_clipboard_set_text(const wchar_t* text);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_CLIPBOARD_H */
