/**
 * @file launch.h
 * @brief Launching what a user configured: splitting a typed command line, starting a program or
 * document, waiting for it to be ready, bringing a process to the front, and the messengers.
 */
#ifndef TAVUTIL_C_LAUNCH_H
#define TAVUTIL_C_LAUNCH_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief How a started program shows its window: the values of the Windows SW_* constants, passed on to
 * the system as they are.
 */
enum tav_show_window {
    TAV_SW_HIDE = 0,            /**< Hidden. */
    TAV_SW_SHOWNORMAL = 1,      /**< Shown and activated at its normal size. */
    TAV_SW_SHOWMINIMIZED = 2,   /**< Activated and minimised. */
    TAV_SW_SHOWMAXIMIZED = 3,   /**< Activated and maximised. */
    TAV_SW_SHOWNOACTIVATE = 4,  /**< Shown at its normal size, not activated. */
    TAV_SW_SHOW = 5,            /**< Shown and activated at its current size. */
    TAV_SW_MINIMIZE = 6,        /**< Minimised; the next window is activated. */
    TAV_SW_SHOWMINNOACTIVE = 7, /**< Minimised, not activated. */
    TAV_SW_SHOWNA = 8,          /**< Shown at its current size, not activated. */
    TAV_SW_RESTORE = 9,         /**< Activated and restored from minimised or maximised. */
    TAV_SW_SHOWDEFAULT = 10,    /**< As the program's start-up information says. */
    TAV_SW_FORCEMINIMIZE = 11   /**< Minimised even when its thread does not respond. */
};

/**
 * @brief Splits a command line into an existing program file and its argument text (ExtractProgram).
 *
 * The program is the shortest start of the line that ends just before a blank and names an existing file
 * (looked up on the system's search path); the arguments are the rest of the line, starting with the
 * separating blank. Without such a start the whole line is the program and the arguments are empty. Both
 * outputs must fit or neither is written. Looks at the file system once per blank.
 * @param command_line The line.
 * @param program Receives the program.
 * @param program_capacity The size of `program` in `wchar_t` units.
 * @param program_needed Receives the units the program needs (may be null).
 * @param args Receives the argument text.
 * @param args_capacity The size of `args` in `wchar_t` units.
 * @param args_needed Receives the units the argument text needs (may be null).
 * @return 1; 0 for an empty line (two empty texts); or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_launch_extract_program(const wchar_t* command_line, wchar_t* program, size_t program_capacity,
                                                 size_t* program_needed, wchar_t* args, size_t args_capacity,
                                                 size_t* args_needed);

/**
 * @brief Cuts the arguments off a command line by textual rules only (stripTrailingArgument): a line that
 * opens with a quote becomes the quoted text; otherwise the line ends before the first blank after ".exe"
 * or ".EXE".
 * @param line The line.
 * @param buffer Receives the line without its arguments.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK; #TAV_E_OUT_OF_RANGE when the first blank of an unquoted line lies within its first four
 * characters; or another negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_launch_strip_trailing_argument(const wchar_t* line, wchar_t* buffer, size_t capacity,
                                                         size_t* needed);

/**
 * @brief Whether the system's search path finds the file a path names, after trailing backslashes are
 * removed and %VARIABLES% expanded (isValidFile).
 * @param path The path, possibly followed by arguments.
 * @param strip_args 1: cut the arguments off first, as tav_launch_strip_trailing_argument() does.
 * @return 1 or 0; #TAV_E_OUT_OF_RANGE as tav_launch_strip_trailing_argument(); or #TAV_E_NULL_ARGUMENT.
 */
TAVUTIL_C_API int32_t tav_launch_is_valid_file(const wchar_t* path, int32_t strip_args);

/**
 * @brief Splits a command line as tav_launch_extract_program() does and starts it as tav_launch_program()
 * does (ExecuteProgram).
 * @param command_line The line.
 * @param show_cmd How the program shows its window (#tav_show_window).
 * @param wait 1: start it as tav_launch_and_wait_for_init() does (waits up to 5 s).
 * @param process Receives the new process's handle, or null (may itself be null); see tav_launch_program().
 * @return 1 when started, 0 when not (also for an empty line), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_launch_command_line(const wchar_t* command_line, uint32_t show_cmd, int32_t wait,
                                              tav_handle* process);

/**
 * @brief Starts a program or document with parameters (ExecuteProgram).
 *
 * %VARIABLES% in `program` are expanded. Without `wait`, the shell opens it while the desktop holds the
 * foreground, and the window that had the foreground gets it back afterwards; a program text containing
 * ".lnk" anywhere (any case) is opened as a shortcut, without parameters and with #TAV_SW_SHOWNORMAL. With
 * `wait`, the process is created and waited for as tav_launch_and_wait_for_init() does, and `process`
 * receives nothing. The waiting path passes the command line unquoted: quote a program path with blanks.
 * @param program The program or document.
 * @param parameters Its parameters (may be empty).
 * @param show_cmd How the program shows its window (#tav_show_window).
 * @param wait 1: create the process and wait up to 5 s for it to be ready for input.
 * @param process Receives the new process's handle (null after a shortcut, a wait or a failure), which the
 * caller owns and closes with tav_launch_close_handle(); may itself be null.
 * @return 1 when started, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_launch_program(const wchar_t* program, const wchar_t* parameters, uint32_t show_cmd,
                                         int32_t wait, tav_handle* process);

/**
 * @brief Creates the process of a command line (its current folder: the folder part of the line), waits
 * up to 5 s for it to be ready for input and brings its window to the front (ExecProgAndWaitForInit).
 * @param command_line The line (passed unquoted to the system).
 * @param show_cmd How the program shows its window (#tav_show_window).
 * @return 1; 0 when it could not be started or did not become ready in time (it is then left running); or
 * a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_launch_and_wait_for_init(const wchar_t* command_line, uint32_t show_cmd);

/**
 * @brief Brings a window of a process to the front, trying three times a second apart (waits up to about
 * 3 s) (BringProcessToForeground).
 * @param process_id The process's identifier.
 * @param process Its handle, or null; when given and the process has ended, the call gives 0 at once.
 * @return 1 when a window was brought to the front, 0 when none was found or the process has ended, or a
 * negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_launch_bring_to_foreground(uint32_t process_id, tav_handle process);

/**
 * @brief Closes a process handle that tav_launch_program() or tav_launch_command_line() gave out.
 * @param handle The handle.
 * @return 1 when closed, 0 for null or a handle the system refused.
 */
TAVUTIL_C_API int32_t tav_launch_close_handle(tav_handle handle);

/**
 * @brief The display names of the supported messengers that are installed (judged from the registry entry
 * naming each program and whether that program can be found) (GetAvailableMessengers).
 * @param buffer Receives the names as a list.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the list needs (may be null).
 * @return The number of names, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_launch_messengers_available(wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief Starts a messenger by its display name (exact, case-sensitive) from its registered command line
 * (LaunchMessenger).
 * @param name The display name, as tav_launch_messengers_available() gives it.
 * @return 1 when a command line was registered, whether or not the start succeeded; 0 for an unknown or
 * unregistered name; or #TAV_E_NULL_ARGUMENT.
 */
TAVUTIL_C_API int32_t tav_launch_messenger(const wchar_t* name);

/**
 * @brief The registered command line of the maker's messenger companion program (IsPVAppInstalled).
 * @param buffer Receives the command line, or an empty text when the companion is not installed.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when installed, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_launch_is_pv_app_installed(wchar_t* buffer, size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_LAUNCH_H */
