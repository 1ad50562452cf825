/**
 * @file pickers.h
 * @brief The system's file and folder pickers. Both are modal dialogs on the calling thread: they show a
 * window, pump the thread's messages and wait until the user confirms or cancels.
 */
#ifndef TAVUTIL_C_PICKERS_H
#define TAVUTIL_C_PICKERS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief Asks the user for an existing file with the system's open-file dialog (BrowseFiles).
 *
 * The dialog opens once per answer, whatever the buffer: its answer is kept until it is fetched. A call
 * whose buffer is too small (a size query with capacity 0, for example) opens the dialog, keeps the
 * answer and returns #TAV_E_BUFFER_TOO_SMALL with `needed`; the next call with the same `filter`,
 * `initial_dir` and `title` gives the kept answer without opening the dialog again, and once the answer
 * fits it is handed over and forgotten. A call with other arguments forgets a kept answer and opens the
 * dialog anew. The kept answer is process-wide (one thread at a time, as everywhere in this interface).
 *
 * The dialog may change the process's current folder to the folder the user browsed to.
 * @param filter Pairs of description and pattern, each ended by "|", the whole ended by one more "|"
 * ("Text files|*.txt||").
 * @param initial_dir The folder the dialog starts in (empty: the dialog's own choice).
 * @param title The dialog's title (empty: the dialog's own).
 * @param buffer Receives the chosen file's full path, or an empty text when the user cancelled.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when the user chose a file, 0 when the user cancelled, or a negative #tav_c_error code
 * (#TAV_E_BUFFER_TOO_SMALL: the answer is kept for the next call).
 */
TAVUTIL_C_API int32_t tav_picker_files(const wchar_t* filter, const wchar_t* initial_dir, const wchar_t* title,
                                       wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief Asks the user for a folder with the system's folder dialog (BrowseForFolder).
 *
 * A starting folder that does not exist is made for the dialog and removed again unless the user chose it.
 * Unlike tav_picker_files(), nothing is kept: give a buffer of the system's path size (260 units) or more.
 * @param title The text shown above the folder tree.
 * @param folder The folder the dialog starts at.
 * @param parent The window that owns the dialog (null: the host's main window, if it has one).
 * @param buffer Receives the chosen folder, or `folder` as given when the user cancelled.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when the user chose a folder, 0 when the user cancelled, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_picker_folder(const wchar_t* title, const wchar_t* folder, tav_hwnd parent, wchar_t* buffer,
                                        size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_PICKERS_H */
