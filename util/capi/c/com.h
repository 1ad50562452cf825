/**
 * @file com.h
 * @brief Automation: finding a running application object, creating one, and reading and writing simple
 * properties by name (ComUtils).
 *
 * The calling thread must have initialised COM. Objects go in and out as `void*` (IUnknown* or
 * IDispatch*); every pointer given out carries a reference of its own, which the caller releases with
 * tav_com_release(). Names and automation names (ProgIDs) may be null. A null object gives
 * #TAV_E_NULL_HANDLE. The functions that take an object ask it for IDispatch (QueryInterface) and work on
 * the interface that answers, whichever of its interfaces was passed: for an object with several dispatch
 * interfaces, its default one. An object that answers none reads as nothing (0, an empty text, null) and
 * takes no write (0). A name that cannot be handed to the object gives #TAV_E_OUT_OF_MEMORY or the failure's
 * HRESULT. Calls into another process wait for it to answer.
 */
#ifndef TAVUTIL_C_COM_H
#define TAVUTIL_C_COM_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief Releases one reference of an object (IUnknown::Release).
 * @param object The object.
 * @return #TAV_OK, or #TAV_E_NULL_HANDLE.
 */
TAVUTIL_C_API int32_t tav_com_release(void* object);

/**
 * @brief The running object of a class (TryToGetActiveObject). When it is not registered yet and the
 * suite's hidden window exists, the foreground is handed to that window for a moment and the lookup tried
 * again, up to five times 200 ms apart: the call may wait about a second.
 * @param clsid The class identifier.
 * @param object Receives the object (an IUnknown*, owned by the caller) or null.
 * @return The HRESULT of the last lookup (0 when found), or #TAV_E_NULL_ARGUMENT.
 */
TAVUTIL_C_API int32_t tav_com_try_get_active_object(const tav_guid* clsid, void** object);

/**
 * @brief The running object registered for an automation name (GetActiveAppDispatch).
 * @param prog_id The automation name.
 * @param object Receives the object (an IUnknown*, owned by the caller) or null.
 * @return 1 when found, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_com_get_active_app(const wchar_t* prog_id, void** object);

/**
 * @brief The IDispatch of the running object of an automation name (GetAppDispatch). Never creates one.
 * @param prog_id The automation name.
 * @param create_if_not_running Not read (kept for the interface's shape).
 * @param object Receives the object (an IDispatch*, owned by the caller) or null.
 * @return 1 when found, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_com_get_app_dispatch(const wchar_t* prog_id, int32_t create_if_not_running, void** object);

/**
 * @brief Creates a new object of an automation name, in or out of process (CreateObject). May start a
 * program and wait for it.
 * @param prog_id The automation name.
 * @param object Receives the object (an IDispatch*, owned by the caller) or null.
 * @return 1 when created, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_com_create_object(const wchar_t* prog_id, void** object);

/**
 * @brief The first object of the Running Object Table whose display name contains the class identifier of
 * an automation name ("{XXXXXXXX-...}", upper case) and that offers IDispatch (FindInROT).
 * @param prog_id The automation name.
 * @param object Receives the object (an IDispatch*, owned by the caller) or null.
 * @return 1 when found, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_com_find_in_rot(const wchar_t* prog_id, void** object);

/**
 * @brief Reads a property as a 32-bit number, whatever its type (GetPropLong).
 * @param object The object.
 * @param name The property's name.
 * @param value Receives the number (0 when the property cannot be read).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_com_get_prop_long(void* object, const wchar_t* name, int32_t* value);

/**
 * @brief Reads a property as a boolean: true only when its 16-bit value is the automation true (GetPropBool).
 * @param object The object.
 * @param name The property's name.
 * @param value Receives 1 or 0.
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_com_get_prop_bool(void* object, const wchar_t* name, int32_t* value);

/**
 * @brief Reads a property that holds an object (GetDisp).
 * @param object The object.
 * @param name The property's name.
 * @param value Receives the property's object (an IDispatch*, owned by the caller) or null.
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_com_get_disp(void* object, const wchar_t* name, void** value);

/**
 * @brief Reads a property that holds a text (GetPropW).
 * @param object The object.
 * @param name The property's name.
 * @param buffer Receives the text, or an empty text when the property holds none.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_com_get_prop_string(void* object, const wchar_t* name, wchar_t* buffer, size_t capacity,
                                              size_t* needed);

/**
 * @brief Writes a boolean property (SetPropBool).
 * @param object The object.
 * @param name The property's name.
 * @param value 1 for true, 0 for false.
 * @return 1 when the object accepted it, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_com_set_prop_bool(void* object, const wchar_t* name, int32_t value);

/**
 * @brief The name of the object's type, from its type information ("IRegExp2") (GetObjName).
 * @param object The object.
 * @param buffer Receives the name, or an empty text.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_com_object_name(void* object, wchar_t* buffer, size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_COM_H */
