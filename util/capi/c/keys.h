/**
 * @file keys.h
 * @brief Keystrokes: typing a keystroke script or literal text into the window that has the keyboard
 * focus (`tav_send_*`), and the script tools (`tav_keys_*`).
 *
 * The script language in brief: plain characters are typed as they are; `+x`, `^x`, `%x` and `*x` hold
 * Shift, Control, Alt or the Windows key around the next item; `(...)` groups items; `{NAME}` and
 * `{NAME n}` press a named key (ENTER, TAB, F1, ...) or a single character n times; `~` is Enter; keys
 * pressed inside `[ ... ]` stay down until tav_send_keys_release_all(); `{PostCommand id}`,
 * `{SendCommand id}`, `{PostMessage msg w l}`, `{SendMessage msg w l}` and `{Menu top item}` send commands
 * to the foreground window instead. A character with a meaning of its own is typed in braces: `{+}`.
 *
 * Key events go to whichever window has the keyboard focus: keep the target in front. The typing calls
 * return once the events are queued; the paced forms wait between events.
 */
#ifndef TAVUTIL_C_KEYS_H
#define TAVUTIL_C_KEYS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief The results of the keystroke functions (SKERR). 6 is never given. */
enum tav_skerr {
    TAV_SKERR_NONE = 0,                /**< Success (also for a script with an error: see tav_send_keys()). */
    TAV_SKERR_MISSING_CLOSE_BRACE = 1, /**< A '{' without a following blank or '}', or no '}' after a count. */
    TAV_SKERR_INVALID_KEY = 2,         /**< A braced name that is neither a key name nor a single character. */
    TAV_SKERR_MISSING_CLOSE_PAREN = 3, /**< A '(' group that reaches the end of the script. */
    TAV_SKERR_INVALID_COUNT = 4,       /**< A braced count that is not a number, or is 0. */
    TAV_SKERR_STRING_TOO_LONG = 5,     /**< The script needs more key events than the key queue holds. */
    TAV_SKERR_BUSY = 7,                /**< The in-progress marker is set: nothing was typed. */
    TAV_SKERR_MENU_FAILED = 8,         /**< A `{Menu ...}` command found no menu, sub-menu or item. */
    TAV_SKERR_COMMAND_DONE = 9         /**< Used inside the library only: no function gives it. */
};

/** @brief The entries of the key queue (tav_keys_parse()) that are not virtual-key codes. */
enum tav_keys_entry {
    TAV_KEYS_END_HOLD = 0xFFFD,   /**< A ']': the end of hold mode. */
    TAV_KEYS_BEGIN_HOLD = 0xFFFE, /**< A '[': the start of hold mode. */
    TAV_KEYS_SYNC = 0xFFFF        /**< A pause until the target has taken the keys so far (QUEUESYNC). */
};

/**
 * @brief Types a keystroke script into the focused window (SendKeys).
 *
 * A script with an error anywhere types nothing at all and still gives #TAV_SKERR_NONE: use
 * tav_keys_parse() or tav_keys_run() to learn why. May send or post messages to the foreground window
 * (command words); beeps when busy.
 * @param script The script.
 * @return #TAV_SKERR_NONE, or #TAV_SKERR_BUSY while the in-progress marker is set; or a negative
 * #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_send_keys(const wchar_t* script);

/**
 * @brief Types literal text into the focused window as Unicode key events (SendText): a line break is
 * Enter, a tab is Tab, every other unit just that character (script characters included).
 * @param text The text.
 * @return #TAV_SKERR_NONE, or #TAV_SKERR_BUSY while the in-progress marker is set; or a negative
 * #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_send_text(const wchar_t* text);

/**
 * @brief tav_send_keys() with a pause before every key event but the first, for targets that drop keys
 * that come without a pause (SendKeysPaced). Waits while it types.
 * @param script The script.
 * @param delay_ms The pause in milliseconds (0: none).
 * @return As tav_send_keys().
 */
TAVUTIL_C_API int32_t tav_send_keys_paced(const wchar_t* script, uint32_t delay_ms);

/**
 * @brief tav_send_text() with a pause before every key event but the first (SendTextPaced). Waits while
 * it types.
 * @param text The text.
 * @param delay_ms The pause in milliseconds (0: none).
 * @return As tav_send_text().
 */
TAVUTIL_C_API int32_t tav_send_text_paced(const wchar_t* text, uint32_t delay_ms);

/**
 * @brief Releases every key that hold mode ('[') left pressed, the last held first (SendKeys_ReleaseAll).
 * Hold mode itself stays as it is.
 * @return #TAV_OK.
 */
TAVUTIL_C_API int32_t tav_send_keys_release_all(void);

/**
 * @brief Sets the process-wide in-progress marker: until it is cleared, the typing calls type nothing and
 * give #TAV_SKERR_BUSY. Nothing in the library sets it; a host sets it to guard against re-entry. A run
 * that goes ahead clears it.
 * @param marker Any value other than 0.
 * @return #TAV_OK.
 */
TAVUTIL_C_API int32_t tav_send_keys_set_in_progress(uintptr_t marker);

/**
 * @brief Clears the in-progress marker.
 * @return #TAV_OK.
 */
TAVUTIL_C_API int32_t tav_send_keys_clear_in_progress(void);

/**
 * @brief The in-progress marker.
 * @return The marker, 0 when clear.
 */
TAVUTIL_C_API uintptr_t tav_send_keys_in_progress(void);

/**
 * @brief Carries out a script exactly as tav_send_keys() does (the in-progress refusal, the clipboard
 * shortcuts, the command words, the keys) and gives the run's own result, which tav_send_keys() keeps to
 * itself (CarryOutKeyScript).
 * @param script The script.
 * @return #TAV_SKERR_NONE when the script ran (keys, a shortcut or command words), #TAV_SKERR_BUSY while the
 * in-progress marker is set, #TAV_SKERR_MENU_FAILED, or the parse error (#tav_skerr); or a negative
 * #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_keys_run(const wchar_t* script);

/**
 * @brief tav_keys_run() with a pause before every key event but the first. Waits while it types.
 * @param script The script.
 * @param delay_ms The pause in milliseconds (0: none).
 * @return As tav_keys_run().
 */
TAVUTIL_C_API int32_t tav_keys_run_paced(const wchar_t* script, uint32_t delay_ms);

/**
 * @brief A text escaped so that tav_send_keys() types it literally: each of `% ( ) * + [ ] ^ { } ~` is put
 * in braces ("50% (a+b)" becomes "50{%} {(}a{+}b{)}") (SendKeysRemoveSpecialChars).
 * @param text The text.
 * @param buffer Receives the escaped text.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_keys_escape(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief Parses a script into the process-wide key queue and sends nothing (ParseKeyScript); copies the
 * queue's entries out.
 *
 * Each entry is a virtual-key code or one of #tav_keys_entry. Unlike the text functions, `capacity` and
 * `needed` count entries, and there is no terminator.
 * @param script The script.
 * @param entries Receives the entries (may be null when `capacity` is 0).
 * @param capacity The room in `entries`, in entries.
 * @param needed Receives the number of entries (may be null).
 * @return The parse's #tav_skerr (#TAV_SKERR_NONE or the first error), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_keys_parse(const wchar_t* script, uint16_t* entries, size_t capacity, size_t* needed);

/**
 * @brief Checks a script without sending anything (CheckKeyScript): whether it is valid, where it goes
 * wrong, and what it will do, in one sentence in the words of the script writers' guide.
 *
 * Nothing is typed, no window command is carried out and no menu item chosen; the key queue, hold mode,
 * the held keys and the in-progress marker stay as they are. The message has no final full stop: "unknown
 * key name 'ENTR'", "a { at 3 has no closing }", "types 14 keys", "carries out 1 window command and types
 * nothing else"; a hint follows for a spelling of another tool ("{INS}") and a note for a valid script that
 * probably does something not meant ("{BREAK}" leaves Control down). The message is copied as the other
 * text functions copy theirs: when it does not fit, nothing is written and #TAV_E_BUFFER_TOO_SMALL is
 * returned instead of the script's result (`*offset` and `*needed` are still set); a null `message` with
 * `capacity` 0 asks for the size.
 * @param script The script.
 * @param offset Receives the position of the item that failed, in UTF-16 units from the script's start,
 * or -1 for a valid script (may be null).
 * @param message Receives the message (may be null when `capacity` is 0).
 * @param capacity The message buffer's size in `wchar_t` units.
 * @param needed Receives the units the message needs, its terminator included (may be null).
 * @return #TAV_SKERR_NONE for a script that will be carried out (keys, a clipboard shortcut or window
 * commands), the parse error (#tav_skerr) that makes tav_send_keys() type nothing, or a negative
 * #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_keys_check(const wchar_t* script, int32_t* offset, wchar_t* message, size_t capacity,
                                     size_t* needed);

/**
 * @brief The virtual-key code of a key name of the script language ("ENTER", "f5", ...; any case).
 * "QUEUESYNC" gives #TAV_KEYS_SYNC.
 * @param name The name.
 * @return The code, 0 for a name that is not in the table, or #TAV_E_NULL_ARGUMENT.
 */
TAVUTIL_C_API int32_t tav_keys_lookup_name(const wchar_t* name);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_KEYS_H */
