/**
 * @file windows.h
 * @brief Window look-ups across threads: the window that has the keyboard focus in another thread, a
 * descendant window by class name, and a window handle as text. Nothing here waits or shows anything.
 */
#ifndef TAVUTIL_C_WINDOWS_H
#define TAVUTIL_C_WINDOWS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief The window that has the keyboard focus in the thread of `window`, read while the calling
 * thread's input is briefly attached to that thread (cWindowsHelper::GetFocusWindow).
 * @param window A window of the thread to ask.
 * @return The focus window, or null when there is none or the attachment fails.
 */
TAVUTIL_C_API tav_hwnd tav_window_focus_window(tav_hwnd window);

/**
 * @brief The descendant of `parent` whose class name is `class_name`, ignoring case. Every descendant is
 * examined, so with several matches the one enumerated last is given.
 * @param parent The window whose descendants are searched.
 * @param class_name The class name.
 * @return The window, or null when none matches (and for a null or stray `class_name`).
 */
TAVUTIL_C_API tav_hwnd tav_window_child_by_class(tav_hwnd parent, const wchar_t* class_name);

/**
 * @brief A window handle as text: its low 32 bits as a signed decimal number.
 * @param window The handle (null gives "0").
 * @param buffer Receives the text.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the text needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_window_handle_to_text(tav_hwnd window, wchar_t* buffer, size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_WINDOWS_H */
