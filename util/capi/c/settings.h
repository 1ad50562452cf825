/**
 * @file settings.h
 * @brief Typed application settings under one current registry key (CRegistryClass).
 *
 * A settings object keeps no key open: it remembers a root and a current path, and each call opens the
 * current key for exactly the access it needs, does one thing and closes it again. Results are non-zero
 * for success and 0 for failure unless a function says otherwise; typed reads give the caller's default on
 * any failure.
 *
 * How each type is stored (settled: hosts read each other's settings):
 * - text: REG_SZ with its NUL, at most 254 characters; longer stored texts read as the default;
 * - unsigned 32-bit number: REG_DWORD, 4 bytes;
 * - int, bool, colour: REG_BINARY, 4 bytes (an int is not a REG_DWORD, on purpose);
 * - double: REG_BINARY, 8 bytes as in memory;
 * - date and time: REG_BINARY, the 16 bytes of #tav_date_time;
 * - rectangle: REG_BINARY, 16 bytes (left, top, right, bottom); point and size: REG_BINARY, 8 bytes;
 * - font: REG_BINARY, the 92 bytes of #tav_logfont.
 */
#ifndef TAVUTIL_C_SETTINGS_H
#define TAVUTIL_C_SETTINGS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief A settings object, made by tav_settings_create(). */
typedef struct tav_settings_t* tav_settings;

/**
 * @brief Makes a settings object: root HKEY_CURRENT_USER, an empty current path, lazy write on.
 * @return The object, owned by the caller (release it with tav_settings_destroy()); null only when memory
 * is short.
 */
TAVUTIL_C_API tav_settings tav_settings_create(void);

/**
 * @brief Releases a settings object.
 * @param settings The object (null: nothing happens).
 */
TAVUTIL_C_API void tav_settings_destroy(tav_settings settings);

/**
 * @brief Sets the root: HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE or HKEY_USERS.
 * @param settings The settings object.
 * @param root The root (#TAV_HKEY_CURRENT_USER, ...); any other key is refused and the root kept.
 * @return Non-zero when set, 0 when refused, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_set_root(tav_settings settings, tav_hkey root);

/**
 * @brief The root.
 * @param settings The settings object.
 * @param root Receives the root.
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_get_root(tav_settings settings, tav_hkey* root);

/**
 * @brief Creates a key below the root when it is missing; it becomes the current path.
 * @param settings The settings object.
 * @param path The key's path.
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_create_key(tav_settings settings, const wchar_t* path);

/**
 * @brief Makes a key the current path.
 * @param settings The settings object.
 * @param path The key's path (empty: the root itself).
 * @param can_create Non-zero: create the key when missing; 0: fail when it is missing.
 * @return Non-zero on success, 0 on failure (tav_settings_last_status() tells why), or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_set_key(tav_settings settings, const wchar_t* path, int32_t can_create);

/**
 * @brief Resets the object: an empty current path, root HKEY_CURRENT_USER, lazy write on.
 * @param settings The settings object.
 * @return 1, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_clear_key(tav_settings settings);

/**
 * @brief Whether a current path is set (it is not checked against the registry).
 * @param settings The settings object.
 * @return Non-zero or 0, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_path_is_valid(tav_settings settings);

/**
 * @brief The current path.
 * @param settings The settings object.
 * @param buffer Receives the path.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the path needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_current_path(tav_settings settings, wchar_t* buffer, size_t capacity,
                                                size_t* needed);

/**
 * @brief Whether a key exists.
 * @param settings The settings object.
 * @param path The key's path.
 * @param root The root to look under (null: the object's root).
 * @return Non-zero or 0, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_key_exists(tav_settings settings, const wchar_t* path, tav_hkey root);

/**
 * @brief Deletes a key below the root; a key that has subkeys of its own is not deleted.
 * @param settings The settings object.
 * @param path The key's path.
 * @return Non-zero on success, also when there was nothing to delete; 0 on failure; or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_delete_key(tav_settings settings, const wchar_t* path);

/**
 * @brief Deletes a value of the current key.
 * @param settings The settings object.
 * @param name The value's name.
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_delete_value(tav_settings settings, const wchar_t* name);

/**
 * @brief Whether a value of the current key exists.
 * @param settings The settings object.
 * @param name The value's name.
 * @return Non-zero or 0, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_value_exists(tav_settings settings, const wchar_t* name);

/**
 * @brief The size of a value's data.
 * @param settings The settings object.
 * @param name The value's name.
 * @return The size in bytes, -1 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_data_size(tav_settings settings, const wchar_t* name);

/**
 * @brief The type of a value.
 * @param settings The settings object.
 * @param name The value's name.
 * @return The registry type (REG_SZ 1, REG_BINARY 3, REG_DWORD 4, ...), 0 (REG_NONE) on failure, or a negative
 * #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_data_type(tav_settings settings, const wchar_t* name);

/**
 * @brief The number of subkeys of the current key.
 * @param settings The settings object.
 * @return The number, -1 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_subkey_count(tav_settings settings);

/**
 * @brief The number of values of the current key.
 * @param settings The settings object.
 * @return The number, -1 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_value_count(tav_settings settings);

/**
 * @brief The name of a subkey of the current key.
 * @param settings The settings object.
 * @param index The subkey's position in the system's enumeration, from 0.
 * @param buffer Receives the name, or an empty text when there is none.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return Non-zero when found, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_subkey_name(tav_settings settings, int32_t index, wchar_t* buffer, size_t capacity,
                                               size_t* needed);

/**
 * @brief Does nothing: renaming values is not supported, deliberately.
 * @param settings The settings object.
 * @param from A value's name.
 * @param to Another name.
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_rename_value(tav_settings settings, const wchar_t* from, const wchar_t* to);

/**
 * @brief Sets lazy write: on (the default) leaves writing to disk to the system; off flushes every key the object
 * creates, selects or writes before closing it.
 * @param settings The settings object.
 * @param lazy_write 1 for on, 0 for off.
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_set_lazy_write(tav_settings settings, int32_t lazy_write);

/**
 * @brief Whether lazy write is on.
 * @param settings The settings object.
 * @return 1 or 0, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_lazy_write(tav_settings settings);

/**
 * @brief The Windows status code of the last open or query made by tav_settings_data_type(), tav_settings_set_key() or
 * tav_settings_read_string().
 * @param settings The settings object.
 * @return The status code, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_last_status(tav_settings settings);

/**
 * @brief Reads a text value of the current key.
 * @param settings The settings object.
 * @param name The value's name.
 * @param def The default.
 * @param buffer Receives the text, or `def` on any failure.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_string(tav_settings settings, const wchar_t* name, const wchar_t* def,
                                               wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief Reads an unsigned 32-bit value of the current key.
 * @param settings The settings object.
 * @param name The value's name.
 * @param def The default.
 * @param value Receives the number, or `def` on any failure.
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_dword(tav_settings settings, const wchar_t* name, uint32_t def,
                                              uint32_t* value);

/**
 * @brief Reads an int value of the current key.
 * @param settings The settings object.
 * @param name The value's name.
 * @param def The default.
 * @param value Receives the number, or `def` on any failure.
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_int(tav_settings settings, const wchar_t* name, int32_t def, int32_t* value);

/**
 * @brief Reads a bool value of the current key.
 * @param settings The settings object.
 * @param name The value's name.
 * @param def The default.
 * @param value Receives the value (1 or 0), or `def` on any failure.
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_bool(tav_settings settings, const wchar_t* name, int32_t def, int32_t* value);

/**
 * @brief Reads a colour value of the current key.
 * @param settings The settings object.
 * @param name The value's name.
 * @param def The default.
 * @param value Receives the colour (0x00BBGGRR), or `def` on any failure.
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_color(tav_settings settings, const wchar_t* name, uint32_t def,
                                              uint32_t* value);

/**
 * @brief Reads a floating-point value of the current key.
 * @param settings The settings object.
 * @param name The value's name.
 * @param def The default.
 * @param value Receives the number, or `def` on any failure.
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_float(tav_settings settings, const wchar_t* name, double def, double* value);

/**
 * @brief Reads a date and time of the current key.
 * @param settings The settings object.
 * @param name The value's name.
 * @param def The default.
 * @param value Receives the date and time, or `def` on any failure.
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_date_time(tav_settings settings, const wchar_t* name, const tav_date_time* def,
                                                  tav_date_time* value);

/**
 * @brief Reads the bytes of a binary value into a caller buffer.
 * @param settings The settings object.
 * @param name The value's name.
 * @param data Receives the bytes.
 * @param size The room in `data`, in bytes.
 * @return 1 when read, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_binary(tav_settings settings, const wchar_t* name, void* data, uint32_t size);

/**
 * @brief Reads a rectangle of the current key into a caller record. A stored value shorter than the record replaces
 * only its first bytes and leaves the rest as the caller had it.
 * @param settings The settings object.
 * @param name The value's name.
 * @param rect In: the record as it is; out: the record read.
 * @return 1 when read, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_rect(tav_settings settings, const wchar_t* name, tav_rect* rect);

/**
 * @brief Reads a point of the current key into a caller record. A stored value shorter than the record replaces only
 * its first bytes and leaves the rest as the caller had it.
 * @param settings The settings object.
 * @param name The value's name.
 * @param point In: the record as it is; out: the record read.
 * @return 1 when read, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_point(tav_settings settings, const wchar_t* name, tav_point* point);

/**
 * @brief Reads a size of the current key into a caller record. A stored value shorter than the record replaces only its
 * first bytes and leaves the rest as the caller had it.
 * @param settings The settings object.
 * @param name The value's name.
 * @param size In: the record as it is; out: the record read.
 * @return 1 when read, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_size(tav_settings settings, const wchar_t* name, tav_size* size);

/**
 * @brief Reads a font: the description the system gives of the font made from the stored record.
 * @param settings The settings object.
 * @param name The value's name.
 * @param font Receives the description (untouched on failure).
 * @return 1 when read, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_read_font(tav_settings settings, const wchar_t* name, tav_logfont* font);

/**
 * @brief Writes a text value. The current key must exist (tav_settings_create_key() or tav_settings_set_key() first).
 * @param settings The settings object.
 * @param name The value's name.
 * @param value The text (refused, 0, from 255 characters on).
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_write_string(tav_settings settings, const wchar_t* name, const wchar_t* value);

/**
 * @brief Writes an unsigned 32-bit number. The current key must exist (tav_settings_create_key() or
 * tav_settings_set_key() first).
 * @param settings The settings object.
 * @param name The value's name.
 * @param value The value.
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_write_dword(tav_settings settings, const wchar_t* name, uint32_t value);

/**
 * @brief Writes an int. The current key must exist (tav_settings_create_key() or tav_settings_set_key() first).
 * @param settings The settings object.
 * @param name The value's name.
 * @param value The value.
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_write_int(tav_settings settings, const wchar_t* name, int32_t value);

/**
 * @brief Writes a bool (1 or 0). The current key must exist (tav_settings_create_key() or tav_settings_set_key()
 * first).
 * @param settings The settings object.
 * @param name The value's name.
 * @param value The value.
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_write_bool(tav_settings settings, const wchar_t* name, int32_t value);

/**
 * @brief Writes a colour (0x00BBGGRR). The current key must exist (tav_settings_create_key() or tav_settings_set_key()
 * first).
 * @param settings The settings object.
 * @param name The value's name.
 * @param value The value.
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_write_color(tav_settings settings, const wchar_t* name, uint32_t value);

/**
 * @brief Writes a floating-point number. The current key must exist (tav_settings_create_key() or
 * tav_settings_set_key() first).
 * @param settings The settings object.
 * @param name The value's name.
 * @param value The value.
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_write_float(tav_settings settings, const wchar_t* name, double value);

/**
 * @brief Writes a date and time. The current key must exist (tav_settings_create_key() or tav_settings_set_key()
 * first).
 * @param settings The settings object.
 * @param name The value's name.
 * @param value The date and time.
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_write_date_time(tav_settings settings, const wchar_t* name,
                                                   const tav_date_time* value);

/**
 * @brief Writes a rectangle. The current key must exist (tav_settings_create_key() or tav_settings_set_key() first).
 * @param settings The settings object.
 * @param name The value's name.
 * @param rect The rectangle.
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_write_rect(tav_settings settings, const wchar_t* name, const tav_rect* rect);

/**
 * @brief Writes a point. The current key must exist (tav_settings_create_key() or tav_settings_set_key() first).
 * @param settings The settings object.
 * @param name The value's name.
 * @param point The point.
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_write_point(tav_settings settings, const wchar_t* name, const tav_point* point);

/**
 * @brief Writes a size. The current key must exist (tav_settings_create_key() or tav_settings_set_key() first).
 * @param settings The settings object.
 * @param name The value's name.
 * @param size The size.
 * @return Non-zero on success, 0 on failure, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_write_size(tav_settings settings, const wchar_t* name, const tav_size* size);

/**
 * @brief Writes a font: the description the system gives of the font it makes from `font`. The current key must exist
 * (tav_settings_create_key() or tav_settings_set_key() first).
 * @param settings The settings object.
 * @param name The value's name.
 * @param font The font's description.
 * @return Non-zero on success, 0 when the font cannot be made or written, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_settings_write_font(tav_settings settings, const wchar_t* name, const tav_logfont* font);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_SETTINGS_H */
