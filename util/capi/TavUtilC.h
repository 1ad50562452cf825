/* TavUtil's C interface: every capability of TavUtil.dll as plain C functions, for hosts built with any
 * compiler (Microsoft's included) and for any language that can call C (C#, Python ctypes, Rust, Delphi,
 * scripts). The functions are exported from TavUtil.dll under these plain names, beside the C++ interface;
 * TavUtil.lib is their import library for Microsoft's linker, libTavUtil.dll.a for MinGW's. Only standard
 * headers are needed: valid C99 and C++.
 *
 * Conventions, the same for every function below:
 *
 * - Text in: const wchar_t*, UTF-16, NUL-terminated. A null pointer where text is expected gives
 *   TAV_E_NULL_ARGUMENT (the automation functions alone accept null names, as their C++ form does).
 *   A non-null text pointer below 0x10000 is taken for a stray integer, never read, and gives
 *   TAV_E_NULL_ARGUMENT in every function (tav_window_child_by_class: a null window).
 * - Text out: a caller buffer, its capacity in wchar_t units, and `needed` (may be null), which receives
 *   the units the whole answer needs, its terminating NUL included. When the capacity is smaller, nothing
 *   at all is written to the buffer and the call returns TAV_E_BUFFER_TOO_SMALL (never a silent
 *   truncation): ask with capacity 0 (the buffer may then be null), allocate `needed` units and call
 *   again. A null buffer with a non-zero capacity is TAV_E_NULL_ARGUMENT. Where one call has two text
 *   outputs, both must fit or neither is written.
 * - Lists (pieces, messengers, modules, subkeys) come back the same way as one text: the items, each ended
 *   by a NUL, and one more NUL after the last (an empty list is two NULs).
 * - Results: int32_t. Where the C++ interface has a result, it is passed on as it is: Windows status codes
 *   (registry: 0 = success), HRESULTs (accounts, automation), SKERR (keys), CWaitStatus (waits), 1/0 for
 *   true/false and the C++ numbers elsewhere; functions with no result of their own give TAV_OK. The C
 *   layer's own failures are the small negative numbers of tav_c_error below, which none of those codes
 *   uses. A function that fails with one of them has written no output.
 * - Exceptions never leave a function of this header. The settled exceptions of the C++ interface become
 *   codes: std::out_of_range (tav_strip_trailing_argument, tav_is_valid_file, tav_process_is_running,
 *   tav_path_strip_trailing_separator) gives TAV_E_OUT_OF_RANGE; the memory exception of automation gives
 *   TAV_E_OUT_OF_MEMORY and its OLE exception the HRESULT the exception carries; anything else caught
 *   gives TAV_E_EXCEPTION.
 * - Objects with state are opaque handles made by tav_X_create and released by tav_X_destroy; destroying
 *   null is allowed and does nothing. A null handle given to any other function gives TAV_E_NULL_HANDLE.
 *   Window, process and registry key handles are the system's own, as void*. COM interface pointers are
 *   passed as void* (COM's binary interface is compiler-independent); the caller owns every pointer it
 *   receives and releases it (tav_com_release).
 * - Threads: as with the C++ interface, the library keeps process-wide state (the OS facts, the key queue
 *   and hold list, the log stream and levels, the process finder, the registry's subkey buffer, the
 *   support strings) and guards none of it: call it from one thread at a time.
 * - Enumerations: numbers outside an enumeration's documented range give TAV_E_UNKNOWN_ENUM.
 */
#ifndef TAVUTIL_C_H
#define TAVUTIL_C_H

#include <stddef.h>
#include <stdint.h>

#include <TavUtil/TavUtilVersion.h>

#if defined(TAVUTIL_BUILDING_DLL)
#define TAVUTIL_C_API __declspec(dllexport)
#elif defined(_WIN32)
#define TAVUTIL_C_API __declspec(dllimport)
#else
#define TAVUTIL_C_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Results of the C layer itself ----------------------------------------------------------------- */
enum tav_c_error {
    TAV_OK = 0,
    TAV_E_NULL_ARGUMENT = -1,    /* a required pointer is null */
    TAV_E_BUFFER_TOO_SMALL = -2, /* an output buffer is too small; `needed` tells the size */
    TAV_E_NULL_HANDLE = -3,      /* a null object handle (or, for automation, a null object) */
    TAV_E_UNKNOWN_ENUM = -4,     /* a number outside its enumeration */
    TAV_E_EXCEPTION = -5,        /* an unforeseen exception was caught */
    TAV_E_OUT_OF_RANGE = -6,     /* the settled std::out_of_range of the C++ interface */
    TAV_E_OUT_OF_MEMORY = -7     /* memory could not be had */
};

/* The version of this interface: 1. */
TAVUTIL_C_API int32_t tav_c_interface_version(void);

/* ---- System handles and shared records ------------------------------------------------------------ */
typedef void* tav_hwnd;   /* HWND */
typedef void* tav_handle; /* HANDLE (a process) */
typedef void* tav_hkey;   /* HKEY: a predefined root below or a key the host opened */

/* The predefined registry roots, with the values the Windows headers give them. */
#define TAV_HKEY_CLASSES_ROOT ((tav_hkey)(intptr_t)(int32_t)0x80000000)
#define TAV_HKEY_CURRENT_USER ((tav_hkey)(intptr_t)(int32_t)0x80000001)
#define TAV_HKEY_LOCAL_MACHINE ((tav_hkey)(intptr_t)(int32_t)0x80000002)
#define TAV_HKEY_USERS ((tav_hkey)(intptr_t)(int32_t)0x80000003)

typedef struct tav_guid { /* GUID */
    uint32_t data1;
    uint16_t data2;
    uint16_t data3;
    uint8_t data4[8];
} tav_guid;

typedef struct tav_rect {
    int32_t left, top, right, bottom;
} tav_rect; /* RECT */
typedef struct tav_point {
    int32_t x, y;
} tav_point; /* POINT */
typedef struct tav_size {
    int32_t cx, cy;
} tav_size; /* SIZE */

/* A font description: the 92 bytes of a LOGFONTW. */
typedef struct tav_logfont {
    int32_t height, width, escapement, orientation, weight;
    uint8_t italic, underline, strike_out, char_set, out_precision, clip_precision, quality, pitch_and_family;
    wchar_t face_name[32];
} tav_logfont;

/* A date and time: the 16 bytes of the class library's COleDateTime (an automation DATE, its status 0 valid,
 * 1 invalid, 2 null, -1 error, and 4 bytes kept zero). */
typedef struct tav_date_time {
    double date;
    int32_t status;
    int32_t reserved;
} tav_date_time;

/* A four-part version number major.minor.fix.build (CVerNum); `valid` as CVerNum::IsValid. */
typedef struct tav_version {
    uint16_t major, minor, fix, build;
    int32_t valid;
} tav_version;

/* ---- Foundation: strings ---------------------------------------------------------------------------- */
/* StringCut: the pieces of `text` of at most `width` units, as a list. Returns the number of pieces (at
 * least 1). */
TAVUTIL_C_API int32_t tav_string_cut(const wchar_t* text, int32_t width, wchar_t* buffer, size_t capacity,
                                     size_t* needed);
/* SetStringLength: `text` cut to `length` units, or to its first NUL. TAV_OK. */
TAVUTIL_C_API int32_t tav_set_string_length(const wchar_t* text, int32_t length, wchar_t* buffer, size_t capacity,
                                            size_t* needed);
/* EnsureTrailingBackslash / StripTrailingBackslash applied to `path`. TAV_OK. */
TAVUTIL_C_API int32_t tav_ensure_trailing_backslash(const wchar_t* path, wchar_t* buffer, size_t capacity,
                                                    size_t* needed);
TAVUTIL_C_API int32_t tav_strip_trailing_backslash(const wchar_t* path, wchar_t* buffer, size_t capacity,
                                                   size_t* needed);

/* ---- Foundation: the running Windows ---------------------------------------------------------------- */
/* OSInfo: the classification (OSInfo::OSType: 0 unknown, 1 Windows 95, 2 95/98 revised, 3 98, 5 Me,
 * 6 NT 3.51, 7 NT 4, 8 2000, 9 XP, 10 Vista, 11 7) and the facts captured with it. */
TAVUTIL_C_API int32_t tav_os_type(void);
TAVUTIL_C_API uint32_t tav_os_build_number(void);
TAVUTIL_C_API uint32_t tav_os_platform_id(void);
TAVUTIL_C_API uint32_t tav_os_service_pack_major(void);
TAVUTIL_C_API uint32_t tav_os_service_pack_minor(void);
TAVUTIL_C_API int32_t tav_os_service_pack(wchar_t* buffer, size_t capacity, size_t* needed);

/* The capability questions of OSInfo: 1 or 0. */
enum tav_os_question {
    TAV_OS_USE_VXD_DRIVER = 0,
    TAV_OS_USE_SYS_DRIVER = 1,
    TAV_OS_DISTINGUISHES_LEFT_RIGHT_MODIFIERS = 2,
    TAV_OS_USB_SUPPORTED = 3,
    TAV_OS_BLUETOOTH_SUPPORTED = 4,
    TAV_OS_802_11B_SUPPORTED = 5,
    TAV_OS_UNDERLYING_64BIT = 6
};
TAVUTIL_C_API int32_t tav_os_ask(int32_t question);

/* CPlatforme: its classification (0 Windows 95 ... 6 XP, 7 newer) and whether it is the 9x family. */
TAVUTIL_C_API int32_t tav_platform_classification(void);
TAVUTIL_C_API int32_t tav_platform_is_win9x(void);

/* cVistaHelper: "dwmapi.dll" could be loaded; desktop composition is on. 1 or 0. */
TAVUTIL_C_API int32_t tav_vista_is_vista(void);
TAVUTIL_C_API int32_t tav_vista_is_dwm_composition_enabled(void);

/* ---- Foundation: logging ------------------------------------------------------------------------------ */
/* Levels (VelmLogLevel): 0 ERROR, 1 WARNING, 2 INFO, 3 DEBUG, 4 to 7 DEBUG1 to DEBUG4. */
/* One record, as VELM_LOG writes it: 1 when written, 0 when `level` is above the reporting level. */
TAVUTIL_C_API int32_t tav_log_write(int32_t level, const wchar_t* file, int32_t line, const wchar_t* function,
                                    const wchar_t* message);
TAVUTIL_C_API int32_t tav_log_reporting_level(void);
TAVUTIL_C_API int32_t tav_log_set_reporting_level(int32_t level); /* TAV_OK */
/* The level's name padded to seven characters ("INFO   "). */
TAVUTIL_C_API int32_t tav_log_level_name(int32_t level, wchar_t* buffer, size_t capacity, size_t* needed);
/* The level of a name (exact, case-sensitive; anything else logs a warning and gives INFO). */
TAVUTIL_C_API int32_t tav_log_level_from_name(const wchar_t* name);

/* Where records go: the standard error stream (the initial output), a file (appended to in text mode, so
 * the C runtime writes the records in the ANSI code page; `path` is read only for TAV_LOG_TO_FILE) or
 * nowhere. A file this interface opened is closed when the output changes again. 1; 0 when the file cannot
 * be opened (the output is then kept). */
enum tav_log_output { TAV_LOG_TO_STDERR = 0, TAV_LOG_TO_FILE = 1, TAV_LOG_TO_NONE = 2 };
TAVUTIL_C_API int32_t tav_log_set_output(int32_t output, const wchar_t* path);
/* The copy of each record to the debugger (OutputDebugStringW): 1 or 0. */
TAVUTIL_C_API int32_t tav_log_set_debugger_copy(int32_t on); /* TAV_OK */
TAVUTIL_C_API int32_t tav_log_debugger_copy(void);

/* ---- Keystrokes ------------------------------------------------------------------------------------- */
/* SendKeys: SKERR (0 none, 7 busy, ...). A script with an error types nothing and still gives 0. */
TAVUTIL_C_API int32_t tav_send_keys(const wchar_t* script);
/* The run behind SendKeys with its own result (RunKeyScript): SKERR_NONE, SKERR_MENUFAILED or a parse error.
 */
TAVUTIL_C_API int32_t tav_keys_run(const wchar_t* script);
/* SendText: `text` typed literally as Unicode key events (a line break is Enter, a tab is Tab, every other
 * unit just that character): SKERR_NONE, or SKERR_BUSY while the in-progress marker is set. */
TAVUTIL_C_API int32_t tav_send_text(const wchar_t* text);
/* SendKeysPaced, SendTextPaced and the paced run: as above with a pause of `delay_ms` before every key event
 * but the first (0: none). */
TAVUTIL_C_API int32_t tav_send_keys_paced(const wchar_t* script, uint32_t delay_ms);
TAVUTIL_C_API int32_t tav_send_text_paced(const wchar_t* text, uint32_t delay_ms);
TAVUTIL_C_API int32_t tav_keys_run_paced(const wchar_t* script, uint32_t delay_ms);
/* SendKeysRemoveSpecialChars: `text` escaped so that SendKeys types it literally. TAV_OK. */
TAVUTIL_C_API int32_t tav_send_keys_escape(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed);
/* SendKeys_ReleaseAll. TAV_OK. */
TAVUTIL_C_API int32_t tav_send_keys_release_all(void);
/* The process-wide in-progress marker. */
TAVUTIL_C_API int32_t tav_send_keys_set_in_progress(uintptr_t marker); /* TAV_OK */
TAVUTIL_C_API int32_t tav_send_keys_clear_in_progress(void);           /* TAV_OK */
TAVUTIL_C_API uintptr_t tav_send_keys_in_progress(void);
/* Parses `script` into the key queue and sends nothing (ParseKeyScript); the queue's entries (virtual-key
 * codes, 0xFFFE begin hold, 0xFFFD end hold, 0xFFFF sync) are copied to `entries`, whose capacity and
 * `needed` count entries (no terminator). Returns the SKERR of the parse. */
TAVUTIL_C_API int32_t tav_keys_parse(const wchar_t* script, uint16_t* entries, size_t capacity, size_t* needed);
/* The virtual-key code of a key name of the script language, or 0. */
TAVUTIL_C_API int32_t tav_keys_lookup_name(const wchar_t* name);

/* ---- Desktop: clipboard ------------------------------------------------------------------------------ */
/* The Unicode text on the clipboard (empty when none): 1; 0 when the clipboard could not be opened. */
TAVUTIL_C_API int32_t tav_clipboard_get_text(wchar_t* buffer, size_t capacity, size_t* needed);
/* Empties the clipboard and puts `text` on it: 1; 0 when the clipboard could not be opened or refused. */
TAVUTIL_C_API int32_t tav_clipboard_set_text(const wchar_t* text);

/* ---- Desktop: foreground and windows ---------------------------------------------------------------- */
/* ForegroundAttentionGrabber: begin makes the guard (null only when memory is short), end releases it.
 * Keep the pair short and on the thread that activates its window. */
typedef struct tav_grabber_t* tav_grabber;
TAVUTIL_C_API tav_grabber tav_foreground_grabber_begin(void);
TAVUTIL_C_API int32_t tav_foreground_grabber_is_attached(tav_grabber grabber); /* 1 or 0 */
TAVUTIL_C_API void tav_foreground_grabber_end(tav_grabber grabber);
/* cWindowsHelper: the focus window of `window`'s thread; the descendant of `parent` of class `class_name`
 * (null when none, and for a null or stray class name); the handle as text. */
TAVUTIL_C_API tav_hwnd tav_window_focus_window(tav_hwnd window);
TAVUTIL_C_API tav_hwnd tav_window_child_by_class(tav_hwnd parent, const wchar_t* class_name);
TAVUTIL_C_API int32_t tav_window_handle_to_text(tav_hwnd window, wchar_t* buffer, size_t capacity, size_t* needed);
/* CProcessFinder::WaitForegroundWindow: the foreground window, waiting a few rounds while there is none. */
TAVUTIL_C_API tav_hwnd tav_wait_foreground_window(void);

/* ---- Desktop: abortable waits ----------------------------------------------------------------------- */
/* CWait. Statuses (CWaitStatus): 0 waiting, 1 aborted, 2 timeout, 3 quit, 4 command. */
typedef struct tav_wait_t* tav_wait;
TAVUTIL_C_API tav_wait tav_wait_create(void);
TAVUTIL_C_API int32_t tav_wait_wait(tav_wait wait, uint32_t timeout_ms, uint32_t step_ms, int32_t stop_on_command);
TAVUTIL_C_API int32_t tav_wait_abort(tav_wait wait); /* the status after the abort */
TAVUTIL_C_API int32_t tav_wait_init(tav_wait wait);  /* TAV_OK */
TAVUTIL_C_API int32_t tav_wait_status(tav_wait wait);
TAVUTIL_C_API void tav_wait_destroy(tav_wait wait);

/* ---- Desktop: event sounds -------------------------------------------------------------------------- */
/* cWave: plays the sound registered for an event of this application. Modes 0 async, 1 sync, 2 loop.
 * stop is cWave::stopPlay as it is: it stops a sound only while the repeat flag is set, which no play sets
 * (a loop ends when another sound is played). */
enum tav_sound_mode { TAV_SOUND_ASYNC = 0, TAV_SOUND_SYNC = 1, TAV_SOUND_LOOP = 2 };
typedef struct tav_sound_t* tav_sound;
TAVUTIL_C_API tav_sound tav_sound_create(void);
TAVUTIL_C_API int32_t tav_sound_play(tav_sound sound, const wchar_t* event_name, int32_t mode); /* 1 or 0 */
TAVUTIL_C_API int32_t tav_sound_stop(tav_sound sound);                                          /* TAV_OK */
TAVUTIL_C_API int32_t tav_sound_is_repeating(tav_sound sound);                                  /* 1 or 0 */
TAVUTIL_C_API void tav_sound_destroy(tav_sound sound); /* stops as tav_sound_stop does */
/* The application name the sound scheme is looked up under. */
TAVUTIL_C_API int32_t tav_sound_application_name(wchar_t* buffer, size_t capacity, size_t* needed);

/* ---- Desktop: pickers ------------------------------------------------------------------------------- */
/* BrowseFiles: 1 and the chosen path, or 0 (cancelled; an empty text). `filter` as "Text|*.txt||". The
 * dialog runs before the answer is copied: give a buffer of at least 260 units. */
TAVUTIL_C_API int32_t tav_browse_files(const wchar_t* filter, const wchar_t* initial_dir, const wchar_t* title,
                                       wchar_t* buffer, size_t capacity, size_t* needed);
/* BrowseForFolder starting at `folder`, owned by `parent` (null: the host's main window): 1 and the chosen
 * folder, or 0 and `folder` as given. */
TAVUTIL_C_API int32_t tav_browse_for_folder(const wchar_t* title, const wchar_t* folder, tav_hwnd parent,
                                            wchar_t* buffer, size_t capacity, size_t* needed);

/* ---- Launching ---------------------------------------------------------------------------------------- */
/* ExtractProgram: 1 with the program and the argument text; 0 for an empty line (two empty texts). */
TAVUTIL_C_API int32_t tav_extract_program(const wchar_t* command_line, wchar_t* program, size_t program_capacity,
                                          size_t* program_needed, wchar_t* args, size_t args_capacity,
                                          size_t* args_needed);
/* stripTrailingArgument: TAV_OK, or TAV_E_OUT_OF_RANGE where the C++ form throws. */
TAVUTIL_C_API int32_t tav_strip_trailing_argument(const wchar_t* line, wchar_t* buffer, size_t capacity,
                                                  size_t* needed);
/* isValidFile: 1 or 0, or TAV_E_OUT_OF_RANGE. */
TAVUTIL_C_API int32_t tav_is_valid_file(const wchar_t* path, int32_t strip_args);
/* ExecuteProgram of a whole command line, and of a program and its parameters: 1 or 0. `process` (may be
 * null) receives the new process's handle or null; close it with tav_close_handle. */
TAVUTIL_C_API int32_t tav_execute_command_line(const wchar_t* command_line, uint32_t show_cmd, int32_t wait,
                                               tav_handle* process);
TAVUTIL_C_API int32_t tav_execute_program(const wchar_t* program, const wchar_t* parameters, uint32_t show_cmd,
                                          int32_t wait, tav_handle* process);
/* ExecProgAndWaitForInit: 1 or 0. */
TAVUTIL_C_API int32_t tav_exec_and_wait_for_init(const wchar_t* command_line, uint32_t show_cmd);
/* BringProcessToForeground: 1 or 0 (`process` may be null). */
TAVUTIL_C_API int32_t tav_bring_process_to_foreground(uint32_t process_id, tav_handle process);
/* CloseHandle for a handle this interface gave out: 1 or 0. */
TAVUTIL_C_API int32_t tav_close_handle(tav_handle handle);
/* GetAvailableMessengers as a list; returns their number. */
TAVUTIL_C_API int32_t tav_messengers_available(wchar_t* buffer, size_t capacity, size_t* needed);
/* LaunchMessenger: 1 when the name has a registered command line, else 0. */
TAVUTIL_C_API int32_t tav_launch_messenger(const wchar_t* name);
/* IsPVAppInstalled: 1 and the companion's command line, or 0 and an empty text. */
TAVUTIL_C_API int32_t tav_is_pv_app_installed(wchar_t* buffer, size_t capacity, size_t* needed);

/* ---- Processes ------------------------------------------------------------------------------------------
 */
/* The process-wide finder is made by the first call of any function below; the first call of
 * tav_process_finder_init chooses whether names lose their extension (later calls, and the other functions,
 * keep the choice made). Returns 1 when the finder strips extensions. */
TAVUTIL_C_API int32_t tav_process_finder_init(int32_t strip_extension);
/* Name / full path of the process that owns `window` (0: the foreground window); an empty text when none.
 * TAV_OK. */
TAVUTIL_C_API int32_t tav_process_foreground_name(intptr_t window, wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_process_foreground_full_name(intptr_t window, wchar_t* buffer, size_t capacity,
                                                       size_t* needed);
/* The executable name / full path of process `pid`: 1, or 0 and an empty text. */
TAVUTIL_C_API int32_t tav_process_name(uint32_t pid, wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_process_full_name(uint32_t pid, wchar_t* buffer, size_t capacity, size_t* needed);
/* IsProcessRunning: 1 or 0; TAV_E_OUT_OF_RANGE for names shorter than four characters. */
TAVUTIL_C_API int32_t tav_process_is_running(const wchar_t* name, int32_t console_session_only);
/* The modules of process `pid` as a list: 1, or 0 and an empty list. */
TAVUTIL_C_API int32_t tav_process_modules(uint32_t pid, wchar_t* buffer, size_t capacity, size_t* needed);

/* ---- Registry: one key (CRegistry) ---------------------------------------------------------------- */
/* Results are Windows status codes (0 success, 6 no key open) unless stated. Value names may be empty
 * (the default value). */
typedef struct tav_registry_t* tav_registry;
TAVUTIL_C_API tav_registry tav_registry_create(void);
TAVUTIL_C_API void tav_registry_destroy(tav_registry key);
/* read_only 0: created when missing, full access; 1: read access, native view then the 32-bit view. */
TAVUTIL_C_API int32_t tav_registry_open(tav_registry key, tav_hkey root, const wchar_t* path, int32_t read_only);
TAVUTIL_C_API int32_t tav_registry_close(tav_registry key);
TAVUTIL_C_API int32_t tav_registry_is_valid(tav_registry key); /* 1 or 0 */
/* ReadStringValue: 0 and the text, or 1 and an empty text. */
TAVUTIL_C_API int32_t tav_registry_read_string(tav_registry key, const wchar_t* name, wchar_t* buffer, size_t capacity,
                                               size_t* needed);
TAVUTIL_C_API int32_t tav_registry_write_string(tav_registry key, const wchar_t* name, const wchar_t* value);
/* RegQueryValueExW passed through: `size` in bytes in and out; a null `data` asks for the size. */
TAVUTIL_C_API int32_t tav_registry_query_value(tav_registry key, const wchar_t* name, uint32_t* type, void* data,
                                               uint32_t* size);
/* RegSetValueExW with `size` bytes of `data`. */
TAVUTIL_C_API int32_t tav_registry_set_value(tav_registry key, const wchar_t* name, uint32_t type, const void* data,
                                             uint32_t size);
TAVUTIL_C_API int32_t tav_registry_delete_value(tav_registry key, const wchar_t* name);
TAVUTIL_C_API int32_t tav_registry_delete_key(tav_registry key, const wchar_t* subkey);
/* The subkey names, in enumeration order, as a list. Returns their number. */
TAVUTIL_C_API int32_t tav_registry_subkeys(tav_registry key, wchar_t* buffer, size_t capacity, size_t* needed);

/* ---- Registry: typed settings (CRegistryClass) --------------------------------------------------------- */
/* Non-zero for success unless stated; reads give the default on any failure. Names and paths as text. */
typedef struct tav_settings_t* tav_settings;
TAVUTIL_C_API tav_settings tav_settings_create(void);
TAVUTIL_C_API void tav_settings_destroy(tav_settings settings);
TAVUTIL_C_API int32_t tav_settings_set_root(tav_settings settings, tav_hkey root);
/* The root through `root`: TAV_OK. */
TAVUTIL_C_API int32_t tav_settings_get_root(tav_settings settings, tav_hkey* root);
TAVUTIL_C_API int32_t tav_settings_create_key(tav_settings settings, const wchar_t* path);
TAVUTIL_C_API int32_t tav_settings_set_key(tav_settings settings, const wchar_t* path, int32_t can_create);
TAVUTIL_C_API int32_t tav_settings_clear_key(tav_settings settings);
TAVUTIL_C_API int32_t tav_settings_path_is_valid(tav_settings settings);
TAVUTIL_C_API int32_t tav_settings_current_path(tav_settings settings, wchar_t* buffer, size_t capacity,
                                                size_t* needed); /* TAV_OK */
/* `root` null: the object's root. */
TAVUTIL_C_API int32_t tav_settings_key_exists(tav_settings settings, const wchar_t* path, tav_hkey root);
TAVUTIL_C_API int32_t tav_settings_delete_key(tav_settings settings, const wchar_t* path);
TAVUTIL_C_API int32_t tav_settings_delete_value(tav_settings settings, const wchar_t* name);
TAVUTIL_C_API int32_t tav_settings_value_exists(tav_settings settings, const wchar_t* name);
TAVUTIL_C_API int32_t tav_settings_data_size(tav_settings settings, const wchar_t* name); /* bytes; -1 */
TAVUTIL_C_API int32_t tav_settings_data_type(tav_settings settings, const wchar_t* name); /* REG_ type */
TAVUTIL_C_API int32_t tav_settings_subkey_count(tav_settings settings);                   /* -1 on failure */
TAVUTIL_C_API int32_t tav_settings_value_count(tav_settings settings);                    /* -1 on failure */
TAVUTIL_C_API int32_t tav_settings_subkey_name(tav_settings settings, int32_t index, wchar_t* buffer, size_t capacity,
                                               size_t* needed);
/* Does nothing, as RenameValue: TAV_OK. */
TAVUTIL_C_API int32_t tav_settings_rename_value(tav_settings settings, const wchar_t* from, const wchar_t* to);
TAVUTIL_C_API int32_t tav_settings_set_lazy_write(tav_settings settings, int32_t lazy_write); /* TAV_OK */
TAVUTIL_C_API int32_t tav_settings_lazy_write(tav_settings settings);
TAVUTIL_C_API int32_t tav_settings_last_status(tav_settings settings); /* a Windows status code */

/* Typed reads: TAV_OK and the value (or the default) through the last pointer. */
TAVUTIL_C_API int32_t tav_settings_read_string(tav_settings settings, const wchar_t* name, const wchar_t* def,
                                               wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_settings_read_dword(tav_settings settings, const wchar_t* name, uint32_t def,
                                              uint32_t* value);
TAVUTIL_C_API int32_t tav_settings_read_int(tav_settings settings, const wchar_t* name, int32_t def, int32_t* value);
TAVUTIL_C_API int32_t tav_settings_read_bool(tav_settings settings, const wchar_t* name, int32_t def, int32_t* value);
TAVUTIL_C_API int32_t tav_settings_read_color(tav_settings settings, const wchar_t* name, uint32_t def,
                                              uint32_t* value);
TAVUTIL_C_API int32_t tav_settings_read_float(tav_settings settings, const wchar_t* name, double def, double* value);
TAVUTIL_C_API int32_t tav_settings_read_date_time(tav_settings settings, const wchar_t* name, const tav_date_time* def,
                                                  tav_date_time* value);
/* Reads into caller records: 1 or 0. */
TAVUTIL_C_API int32_t tav_settings_read_binary(tav_settings settings, const wchar_t* name, void* data, uint32_t size);
TAVUTIL_C_API int32_t tav_settings_read_rect(tav_settings settings, const wchar_t* name, tav_rect* rect);
TAVUTIL_C_API int32_t tav_settings_read_point(tav_settings settings, const wchar_t* name, tav_point* point);
TAVUTIL_C_API int32_t tav_settings_read_size(tav_settings settings, const wchar_t* name, tav_size* size);
/* The stored font as the system describes it once created from the stored record. */
TAVUTIL_C_API int32_t tav_settings_read_font(tav_settings settings, const wchar_t* name, tav_logfont* font);

/* Writes into the current key, which must exist. */
TAVUTIL_C_API int32_t tav_settings_write_string(tav_settings settings, const wchar_t* name, const wchar_t* value);
TAVUTIL_C_API int32_t tav_settings_write_dword(tav_settings settings, const wchar_t* name, uint32_t value);
TAVUTIL_C_API int32_t tav_settings_write_int(tav_settings settings, const wchar_t* name, int32_t value);
TAVUTIL_C_API int32_t tav_settings_write_bool(tav_settings settings, const wchar_t* name, int32_t value);
TAVUTIL_C_API int32_t tav_settings_write_color(tav_settings settings, const wchar_t* name, uint32_t value);
TAVUTIL_C_API int32_t tav_settings_write_float(tav_settings settings, const wchar_t* name, double value);
TAVUTIL_C_API int32_t tav_settings_write_date_time(tav_settings settings, const wchar_t* name,
                                                   const tav_date_time* value);
TAVUTIL_C_API int32_t tav_settings_write_rect(tav_settings settings, const wchar_t* name, const tav_rect* rect);
TAVUTIL_C_API int32_t tav_settings_write_point(tav_settings settings, const wchar_t* name, const tav_point* point);
TAVUTIL_C_API int32_t tav_settings_write_size(tav_settings settings, const wchar_t* name, const tav_size* size);
/* Writes the font that the system creates from `font`. */
TAVUTIL_C_API int32_t tav_settings_write_font(tav_settings settings, const wchar_t* name, const tav_logfont* font);

/* ---- Files: paths (CFileName) ------------------------------------------------------------------------ */
/* The parts of `path`: drive ("D:"), directory without the drive, file name without extension, extension
 * with its dot, drive and directory. TAV_OK (an empty text where the part is missing or does not fit). */
TAVUTIL_C_API int32_t tav_path_drive(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_path_dir_no_drive(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_path_file(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_path_extension(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_path_dir(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed);
/* Split: drive and directory, and file name with extension. TAV_OK. */
TAVUTIL_C_API int32_t tav_path_split(const wchar_t* path, wchar_t* dir, size_t dir_capacity, size_t* dir_needed,
                                     wchar_t* file, size_t file_capacity, size_t* file_needed);
/* Composition: CFileName(path, file, ext); CFileName(module of the executable, file, ext); CFileName();
 * FromPathAndFile; SetFilename; AppendDirectory. TAV_OK. */
TAVUTIL_C_API int32_t tav_path_compose(const wchar_t* path, const wchar_t* file, const wchar_t* ext, wchar_t* buffer,
                                       size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_path_beside_exe(const wchar_t* file, const wchar_t* ext, wchar_t* buffer, size_t capacity,
                                          size_t* needed);
TAVUTIL_C_API int32_t tav_path_exe_dir(wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_path_from_path_and_file(const wchar_t* path, const wchar_t* file, const wchar_t* ext,
                                                  wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_path_set_filename(const wchar_t* path, const wchar_t* file, const wchar_t* ext,
                                            wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_path_append_directory(const wchar_t* path, const wchar_t* dir, wchar_t* buffer,
                                                size_t capacity, size_t* needed);
/* StripExtension, StripTrailingSeparator (TAV_E_OUT_OF_RANGE on an empty text), StripPath: 1 when something
 * was removed, else 0; the text after the call. */
TAVUTIL_C_API int32_t tav_path_strip_extension(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_path_strip_trailing_separator(const wchar_t* text, wchar_t* buffer, size_t capacity,
                                                        size_t* needed);
TAVUTIL_C_API int32_t tav_path_strip_path(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed);
/* FileExists (a find-first match) and Exists: 1 or 0. */
TAVUTIL_C_API int32_t tav_file_exists(const wchar_t* path);
TAVUTIL_C_API int32_t tav_path_exists(const wchar_t* path);
/* CreateDirectory of the directory part of `path`: non-zero only when this call created it. */
TAVUTIL_C_API int32_t tav_path_create_directory(const wchar_t* path, int32_t recursive);

/* ---- Files: version numbers (CVerNum) ------------------------------------------------------------ */
TAVUTIL_C_API int32_t tav_version_parse(const wchar_t* text, tav_version* version); /* TAV_OK */
/* `a` against `b`: VERNUM_COMPARISON (0 older, 1 equal, 2 newer build, 3 newer fix, 4 newer minor, 5 newer
 * major). */
TAVUTIL_C_API int32_t tav_version_compare(const tav_version* a, const tav_version* b);

/* ---- Files: version resources (CVerInfo) ---------------------------------------------------------- */
/* Fields (VERFIELD): 0 file version, 1 product version, 2 Comments ... 14 ProductBuildNumber. */
typedef struct tav_verinfo_t* tav_verinfo;
TAVUTIL_C_API tav_verinfo tav_verinfo_create(void);
TAVUTIL_C_API void tav_verinfo_destroy(tav_verinfo info);
TAVUTIL_C_API int32_t tav_verinfo_init(tav_verinfo info, const wchar_t* file); /* non-zero on success */
/* GetField: 1 and the text, or 0 and an empty text. */
TAVUTIL_C_API int32_t tav_verinfo_field(tav_verinfo info, int32_t field, wchar_t* buffer, size_t capacity,
                                        size_t* needed);
TAVUTIL_C_API int32_t tav_verinfo_field_name(int32_t field, wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_verinfo_file_version(tav_verinfo info, tav_version* version);    /* 1 or 0 */
TAVUTIL_C_API int32_t tav_verinfo_product_version(tav_verinfo info, tav_version* version); /* 1 or 0 */
/* The language code and code page (four hexadecimal digits each) and the file name. TAV_OK. */
TAVUTIL_C_API int32_t tav_verinfo_language_code(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_verinfo_code_page(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_verinfo_file_name(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed);

/* ---- Files: whole files in memory (cTextFile) ------------------------------------------------------ */
typedef struct tav_textfile_t* tav_textfile;
TAVUTIL_C_API tav_textfile tav_textfile_create(void);
TAVUTIL_C_API void tav_textfile_destroy(tav_textfile file);
TAVUTIL_C_API int32_t tav_textfile_read(tav_textfile file, const wchar_t* path); /* 1 or 0 */
/* The size in bytes: TAV_OK. */
TAVUTIL_C_API int32_t tav_textfile_size(tav_textfile file, uint32_t* size);
/* The bytes as read (without the zero byte the buffer ends with); capacity and `needed` in bytes. TAV_OK. */
TAVUTIL_C_API int32_t tav_textfile_bytes(tav_textfile file, void* buffer, size_t capacity, size_t* needed);

/* ---- Files: installed software ---------------------------------------------------------------------- */
/* TrimdialInstallDate: 1 and the date as stored, or 0 and an empty text. */
TAVUTIL_C_API int32_t tav_install_date(wchar_t* buffer, size_t capacity, size_t* needed);
/* FindApplicationPath (`ext` without its dot): 1 and the path, or 0 and an empty text. */
TAVUTIL_C_API int32_t tav_find_application_path(const wchar_t* app, const wchar_t* ext, wchar_t* buffer,
                                                size_t capacity, size_t* needed);
/* FindMostRecentProgIdPath: 1 and the local server's command, or 0 and an empty text. */
TAVUTIL_C_API int32_t tav_find_progid_server(const wchar_t* prog_id, wchar_t* buffer, size_t capacity, size_t* needed);

/* ---- Automation (ComUtils) ------------------------------------------------------------------------- */
/* The caller's thread has initialised COM. Objects go in and out as void* (IUnknown* / IDispatch*); every
 * pointer given out carries a reference of its own. Names and ProgIDs may be null, as in C++. A null
 * object gives TAV_E_NULL_HANDLE. The functions that take an object ask it for IDispatch (QueryInterface)
 * and work on the interface that answers, whichever of its interfaces was passed: for an object with
 * several dispatch interfaces, that is its default one. An object that answers none reads as nothing (0,
 * an empty text, null) and takes no write (0). */
TAVUTIL_C_API int32_t tav_com_release(void* object); /* Release: TAV_OK */
/* TryToGetActiveObject: its HRESULT; *object receives an IUnknown* or null. */
TAVUTIL_C_API int32_t tav_com_try_get_active_object(const tav_guid* clsid, void** object);
/* GetActiveAppDispatch (IUnknown*), GetAppDispatch, CreateObject, FindInROT (IDispatch*): 1 and the object,
 * or 0 and null. */
TAVUTIL_C_API int32_t tav_com_get_active_app(const wchar_t* prog_id, void** object);
TAVUTIL_C_API int32_t tav_com_get_app_dispatch(const wchar_t* prog_id, int32_t create_if_not_running, void** object);
TAVUTIL_C_API int32_t tav_com_create_object(const wchar_t* prog_id, void** object);
TAVUTIL_C_API int32_t tav_com_find_in_rot(const wchar_t* prog_id, void** object);
/* Property reads as GetPropLong, GetPropBool (1 or 0), GetDisp (an IDispatch* or null), GetPropW: TAV_OK. */
TAVUTIL_C_API int32_t tav_com_get_prop_long(void* object, const wchar_t* name, int32_t* value);
TAVUTIL_C_API int32_t tav_com_get_prop_bool(void* object, const wchar_t* name, int32_t* value);
TAVUTIL_C_API int32_t tav_com_get_disp(void* object, const wchar_t* name, void** value);
TAVUTIL_C_API int32_t tav_com_get_prop_string(void* object, const wchar_t* name, wchar_t* buffer, size_t capacity,
                                              size_t* needed);
/* SetPropBool: 1 when the object accepted it, else 0. */
TAVUTIL_C_API int32_t tav_com_set_prop_bool(void* object, const wchar_t* name, int32_t value);
/* GetObjName: the type name, or an empty text. TAV_OK. */
TAVUTIL_C_API int32_t tav_com_object_name(void* object, wchar_t* buffer, size_t capacity, size_t* needed);

/* ---- Accounts (VxWindowsPermissionsUtils) --------------------------------------------------------- */
/* Groups: 0 Administrators, 1 Power Users, 2 either. IsMemberOf: its HRESULT (E_FAIL for a null
 * `is_member`), 1 or 0 through `is_member`; with `verbose`, its progress lines. */
TAVUTIL_C_API int32_t tav_is_member_of(int32_t group, int32_t* is_member, int32_t verbose);
TAVUTIL_C_API int32_t tav_is_administrator(void);               /* 1 or 0 */
TAVUTIL_C_API int32_t tav_is_administrator_or_power_user(void); /* 1 or 0 */

/* ---- Support information ---------------------------------------------------------------------------- */
/* The suite's trigger object as callbacks: `device_kind` (1 mouse, 2 keyboard, other values other devices)
 * and `device_number` of the device in use, each given `context`. `has_device` null, or answering 0, means
 * there is no device in use. */
typedef struct tav_trigger {
    void* context;
    int32_t (*has_device)(void* context);
    int32_t (*device_kind)(void* context);
    uint32_t (*device_number)(void* context);
} tav_trigger;
/* The query for `address` from the base builder (CSWandDeviceInfo), and from the trigger variant
 * (SWAndDeviceInfoImpl; `trigger` may be null: no trigger). An empty text for an address that is not a
 * support address. TAV_OK. */
TAVUTIL_C_API int32_t tav_support_query(const wchar_t* address, wchar_t* buffer, size_t capacity, size_t* needed);
TAVUTIL_C_API int32_t tav_support_query_with_trigger(const wchar_t* address, const tav_trigger* trigger,
                                                     wchar_t* buffer, size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_H */
