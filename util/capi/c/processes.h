/**
 * @file processes.h
 * @brief Running processes: which program owns the foreground window, whether a program runs, a process's
 * name, path and modules.
 *
 * The answers come from one process-wide finder, made by the first call of any function below (or of the
 * library's C++ interface). Whether the finder strips the extension from names is chosen once, by the
 * first call of tav_process_finder_init(); other first calls choose "keep".
 */
#ifndef TAVUTIL_C_PROCESSES_H
#define TAVUTIL_C_PROCESSES_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief Makes the process-wide finder, choosing whether names lose their extension; once the finder
 * exists, the argument is ignored.
 * @param strip_extension 1: names lose their extension ("app" instead of "app.exe").
 * @return 1 when the finder strips extensions, else 0; or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_process_finder_init(int32_t strip_extension);

/**
 * @brief The foreground window: while there is none, looks again a few times, dispatching the calling
 * thread's messages in between (CProcessFinder::WaitForegroundWindow). A queued quit or command message
 * ends the wait and stays queued.
 * @return The window, or null.
 */
TAVUTIL_C_API tav_hwnd tav_process_wait_foreground_window(void);

/**
 * @brief The executable name (without folder) of the process that owns a window.
 * @param window The window as a number; 0: the foreground window, found as
 * tav_process_wait_foreground_window() does.
 * @param buffer Receives the name, or an empty text when there is no such window or process.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_process_foreground_name(intptr_t window, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The executable's full path of the process that owns a window.
 * @param window The window as a number; 0: the foreground window, as for tav_process_foreground_name().
 * @param buffer Receives the path, or an empty text when there is no such window or process.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_process_foreground_full_name(intptr_t window, wchar_t* buffer, size_t capacity,
                                                       size_t* needed);

/**
 * @brief The executable name (without folder) of a process.
 * @param pid The process's identifier.
 * @param buffer Receives the name, or an empty text when there is no such process.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when found, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_process_name(uint32_t pid, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The executable's full path of a process.
 * @param pid The process's identifier.
 * @param buffer Receives the path, or an empty text when there is no such process.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when found, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_process_full_name(uint32_t pid, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief Whether a process of an executable name runs (IsProcessRunning).
 * @param name The executable name; ".exe" is added unless present.
 * @param console_session_only 1: count only processes of the console session.
 * @return 1 or 0; #TAV_E_OUT_OF_RANGE for a name shorter than four characters; or #TAV_E_NULL_ARGUMENT.
 */
TAVUTIL_C_API int32_t tav_process_is_running(const wchar_t* name, int32_t console_session_only);

/**
 * @brief The modules a process has loaded, in the order the system lists them.
 * @param pid The process's identifier.
 * @param buffer Receives the module names as a list (an empty list when the process is not found).
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the list needs (may be null).
 * @return 1 when found, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_process_modules(uint32_t pid, wchar_t* buffer, size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_PROCESSES_H */
