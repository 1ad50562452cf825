/**
 * @file paths.h
 * @brief Windows paths as text (CFileName): their parts, composing new paths, stripping, and whether a
 * path exists.
 *
 * The parts follow the system's fixed sizes: drive 3 units, directory, file name and extension 256 each, a
 * composed path 260, NULs included. A part or a path that does not fit gives an empty text. Only
 * tav_path_file_exists(), tav_path_exists() and tav_path_create_directory() touch the file system.
 */
#ifndef TAVUTIL_C_PATHS_H
#define TAVUTIL_C_PATHS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief The drive of a path ("D:"), or an empty text.
 * @param path The path.
 * @param buffer Receives the answer.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK (an empty text where the part is missing or does not fit), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_drive(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The directory of a path without its drive, with its ending backslash ("\\dir\\sub\\").
 * @param path The path.
 * @param buffer Receives the answer.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK (an empty text where the part is missing or does not fit), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_dir_no_drive(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The file name of a path without its extension.
 * @param path The path.
 * @param buffer Receives the answer.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK (an empty text where the part is missing or does not fit), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_file(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The extension of a path with its dot (".txt"), or an empty text.
 * @param path The path.
 * @param buffer Receives the answer.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK (an empty text where the part is missing or does not fit), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_extension(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The drive and directory of a path, with the ending backslash.
 * @param path The path.
 * @param buffer Receives the answer.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK (an empty text where the part is missing or does not fit), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_dir(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief Splits a path into its drive and directory, and its file name with extension. Both outputs must fit or neither
 * is written.
 * @param path The path.
 * @param dir Receives the drive and directory.
 * @param dir_capacity The size of `dir` in `wchar_t` units.
 * @param dir_needed Receives the units the directory needs (may be null).
 * @param file Receives the file name and extension.
 * @param file_capacity The size of `file` in `wchar_t` units.
 * @param file_needed Receives the units the file name needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_split(const wchar_t* path, wchar_t* dir, size_t dir_capacity, size_t* dir_needed,
                                     wchar_t* file, size_t file_capacity, size_t* file_needed);

/**
 * @brief A path composed of a folder, a file name and an extension; a `path` of five or more units whose fourth unit
 * from the end is a dot is taken as complete and given back as it is.
 * @param path The folder (or a complete path).
 * @param file The file name.
 * @param ext The extension with its dot.
 * @param buffer Receives the answer.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_compose(const wchar_t* path, const wchar_t* file, const wchar_t* ext, wchar_t* buffer,
                                       size_t capacity, size_t* needed);

/**
 * @brief A path in the folder of the running executable, with a file name and an extension.
 * @param file The file name.
 * @param ext The extension with its dot.
 * @param buffer Receives the answer.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_beside_exe(const wchar_t* file, const wchar_t* ext, wchar_t* buffer, size_t capacity,
                                          size_t* needed);

/**
 * @brief The folder of the running executable, with its ending backslash.
 * @param buffer Receives the answer.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_exe_dir(wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The drive and directory of `path` (its own file name and extension dropped; a last part without an ending
 * backslash counts as a file name) joined with a file name and an extension (FromPathAndFile).
 * @param path The path.
 * @param file The file name.
 * @param ext The extension with its dot.
 * @param buffer Receives the answer.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_from_path_and_file(const wchar_t* path, const wchar_t* file, const wchar_t* ext,
                                                  wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief A path with its file name and extension replaced; drive and directory are kept (SetFilename).
 * @param path The path.
 * @param file The new file name.
 * @param ext The new extension with its dot.
 * @param buffer Receives the answer.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_set_filename(const wchar_t* path, const wchar_t* file, const wchar_t* ext,
                                            wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief A path with a folder appended after a backslash (none is added when the path ends in one already); no
 * backslash at the end.
 * @param path The path.
 * @param dir The folder to append.
 * @param buffer Receives the answer.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_append_directory(const wchar_t* path, const wchar_t* dir, wchar_t* buffer,
                                                size_t capacity, size_t* needed);

/**
 * @brief A text with everything from its last dot on removed.
 * @param text The text.
 * @param buffer Receives the text after the removal.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when something was removed, 0 when the text has no dot, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_strip_extension(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief A text without the backslash at its end.
 * @param text The text.
 * @param buffer Receives the text after the removal.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when a backslash was removed, 0 when there was none; #TAV_E_OUT_OF_RANGE for an empty text; or a negative
 * #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_strip_trailing_separator(const wchar_t* text, wchar_t* buffer, size_t capacity,
                                                        size_t* needed);

/**
 * @brief A text with everything up to and including its last backslash removed.
 * @param text The text.
 * @param buffer Receives the text after the removal.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when something was removed, 0 when the text has no backslash, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_strip_path(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief Whether a search of the file system for `path` matches anything: a file, a folder, or a name that matches the
 * wildcards * and ? in it (FileExists).
 * @param path The path, wildcards allowed.
 * @return 1 or 0, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_file_exists(const wchar_t* path);

/**
 * @brief Whether a path exists, judged as tav_path_file_exists() judges it (Exists).
 * @param path The path.
 * @return 1 or 0, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_path_exists(const wchar_t* path);

/**
 * @brief Creates the directory part of a path (everything before the last backslash).
 * @param path The path (a file name at its end is ignored).
 * @param recursive 1: create missing parent folders first.
 * @return Non-zero only when this call created the folder (0 also when it existed already), or a negative #tav_c_error
 * code.
 */
TAVUTIL_C_API int32_t tav_path_create_directory(const wchar_t* path, int32_t recursive);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_PATHS_H */
