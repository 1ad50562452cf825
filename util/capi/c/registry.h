/**
 * @file registry.h
 * @brief One open registry key (CRegistry).
 *
 * Every function gives the Windows status code of the registry call it makes (0 success, 2 not found,
 * 6 no key open, ...; tav_result_text() with #TAV_RESULT_WIN32 describes them) unless it says otherwise.
 * Value names may be empty: the key's default value. Read-only opens look in the native view of the
 * registry first and then in the 32-bit view.
 */
#ifndef TAVUTIL_C_REGISTRY_H
#define TAVUTIL_C_REGISTRY_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief An owner of one open registry key, made by tav_registry_create(). */
typedef struct tav_registry_t* tav_registry;

/**
 * @brief Makes a key owner that holds no key.
 * @return The owner, owned by the caller (release it with tav_registry_destroy()); null only when memory
 * is short.
 */
TAVUTIL_C_API tav_registry tav_registry_create(void);

/**
 * @brief Closes the key the owner holds, if any, and releases the owner.
 * @param key The owner (null: nothing happens).
 */
TAVUTIL_C_API void tav_registry_destroy(tav_registry key);

/**
 * @brief Opens a key; a key the owner already holds is closed first.
 * @param key The owner.
 * @param root A predefined root (#TAV_HKEY_CURRENT_USER, ...) or a key the host opened.
 * @param path The key's path below `root`.
 * @param read_only 0: the key is created when missing and opened with full access; 1: opened for reading
 * (native view, then the 32-bit view), never created.
 * @return The status of the last registry call, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_registry_open(tav_registry key, tav_hkey root, const wchar_t* path, int32_t read_only);

/**
 * @brief Closes the key; the owner holds none afterwards in every case.
 * @param key The owner.
 * @return The status; 6 when no key was open; or #TAV_E_NULL_HANDLE.
 */
TAVUTIL_C_API int32_t tav_registry_close(tav_registry key);

/**
 * @brief Whether the owner holds an open key.
 * @param key The owner.
 * @return 1 or 0, or #TAV_E_NULL_HANDLE.
 */
TAVUTIL_C_API int32_t tav_registry_is_valid(tav_registry key);

/**
 * @brief Reads a text value (REG_SZ or REG_EXPAND_SZ, not expanded), up to its first NUL or the end of its
 * data.
 * @param key The owner.
 * @param name The value's name.
 * @param buffer Receives the text, or an empty text on any failure or for another type.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 0 when read (an empty value too), 1 on any failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_registry_read_string(tav_registry key, const wchar_t* name, wchar_t* buffer, size_t capacity,
                                               size_t* needed);

/**
 * @brief Writes a text value as REG_SZ, stored without its ending NUL.
 * @param key The owner.
 * @param name The value's name.
 * @param value The text.
 * @return The status, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_registry_write_string(tav_registry key, const wchar_t* name, const wchar_t* value);

/**
 * @brief Reads a value's type and data, as the system's RegQueryValueExW does.
 * @param key The owner.
 * @param name The value's name.
 * @param type Receives the value's type (REG_SZ 1, REG_BINARY 3, REG_DWORD 4, ...; may be null).
 * @param data Receives the data (null: only the size is asked for).
 * @param size In: the room in `data`, in bytes; out: the data's size in bytes (may be null when `data` is).
 * @return The status (234 when `data` is too small), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_registry_query_value(tav_registry key, const wchar_t* name, uint32_t* type, void* data,
                                               uint32_t* size);

/**
 * @brief Writes a value of any type, as the system's RegSetValueExW does.
 * @param key The owner.
 * @param name The value's name.
 * @param type The value's type (REG_SZ 1, REG_BINARY 3, REG_DWORD 4, ...).
 * @param data The bytes to store (may be null when `size` is 0).
 * @param size The number of bytes.
 * @return The status, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_registry_set_value(tav_registry key, const wchar_t* name, uint32_t type, const void* data,
                                             uint32_t size);

/**
 * @brief Deletes a value.
 * @param key The owner.
 * @param name The value's name.
 * @return The status (2 when there is no such value), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_registry_delete_value(tav_registry key, const wchar_t* name);

/**
 * @brief Deletes a subkey that has no subkeys of its own.
 * @param key The owner.
 * @param subkey The subkey's name.
 * @return The status, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_registry_delete_key(tav_registry key, const wchar_t* subkey);

/**
 * @brief The names of the key's subkeys, in the system's enumeration order.
 * @param key The owner.
 * @param buffer Receives the names as a list (an empty list when no key is open).
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the list needs (may be null).
 * @return The number of names, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_registry_subkeys(tav_registry key, wchar_t* buffer, size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_REGISTRY_H */
