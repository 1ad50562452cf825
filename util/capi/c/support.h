/**
 * @file support.h
 * @brief Support information: the query the suite appends to the address of one of the maker's support
 * pages, telling the site the user's locale, the software version, the device, the connection, the button
 * and the installation time ("?" and "L=", "V=", "D=", "P=", "B=", "T=" parameters joined by "&").
 *
 * The facts come from the registry, the system and the running executable's version resource; the
 * device may come from the host through #tav_trigger.
 */
#ifndef TAVUTIL_C_SUPPORT_H
#define TAVUTIL_C_SUPPORT_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief The device in use, told by the host through callbacks (the suite's trigger object). Each callback
 * is given `context`.
 */
typedef struct tav_trigger {
    void* context;                            /**< Handed to every callback as it is. */
    int32_t (*has_device)(void* context);     /**< Non-zero when a device is in use; null: no device. */
    int32_t (*device_kind)(void* context);    /**< 1 mouse, 2 keyboard, other values other devices; null: 0. */
    uint32_t (*device_number)(void* context); /**< The device's number; null: 0. */
} tav_trigger;

/**
 * @brief The support query for an address, with the library's fixed device facts (CSWandDeviceInfo).
 * @param address The support page's address. A locale ("L=") or button ("B=") it carries already is kept.
 * @param buffer Receives the query (beginning with "?"), or an empty text when the address is not one of
 * the maker's support addresses.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_support_query(const wchar_t* address, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The support query for an address, with the device the host's callbacks tell
 * (SWAndDeviceInfoImpl). The callbacks are called during this call only.
 * @param address The support page's address.
 * @param trigger The callbacks (null: no device in use).
 * @param buffer Receives the query, or an empty text when the address is not a support address.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_support_query_with_trigger(const wchar_t* address, const tav_trigger* trigger,
                                                     wchar_t* buffer, size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_SUPPORT_H */
