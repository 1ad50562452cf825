/**
 * @file textfile.h
 * @brief A whole file in memory as raw bytes (cTextFile): no character conversion and no line splitting,
 * for hosts that scan small files themselves.
 */
#ifndef TAVUTIL_C_TEXTFILE_H
#define TAVUTIL_C_TEXTFILE_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief A file held in memory, made by tav_textfile_create(). */
typedef struct tav_textfile_t* tav_textfile;

/**
 * @brief Makes an object that holds no file.
 * @return The object, owned by the caller (release it with tav_textfile_destroy()); null only when memory
 * is short.
 */
TAVUTIL_C_API tav_textfile tav_textfile_create(void);

/**
 * @brief Releases an object, its bytes and the file it keeps open.
 * @param file The object (null: nothing happens).
 */
TAVUTIL_C_API void tav_textfile_destroy(tav_textfile file);

/**
 * @brief Opens a file for reading and reads it whole; the file stays open (others may read it meanwhile)
 * until the object is released or reads another file, which replaces the first.
 * @param file The object.
 * @param path The file's path.
 * @return 1 when bytes were read; 0 when the file cannot be opened or read, and for an empty file (which
 * reads as nothing to scan, on purpose); or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_textfile_read(tav_textfile file, const wchar_t* path);

/**
 * @brief The number of bytes read.
 * @param file The object.
 * @param size Receives the number (0 before a read).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_textfile_size(tav_textfile file, uint32_t* size);

/**
 * @brief The bytes as read. Unlike the text functions, `capacity` and `needed` count bytes, and no
 * terminator is added.
 * @param file The object.
 * @param buffer Receives the bytes (may be null when `capacity` is 0).
 * @param capacity The buffer's size in bytes.
 * @param needed Receives the number of bytes (may be null).
 * @return #TAV_OK (also for no bytes), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_textfile_bytes(tav_textfile file, void* buffer, size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_TEXTFILE_H */
