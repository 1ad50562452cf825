/**
 * @file os.h
 * @brief The running Windows: its classification, version facts and capability questions, and whether
 * desktop composition is on.
 *
 * The facts are read from the system once, by the first call, and kept for the process. Nothing here
 * waits or shows anything.
 */
#ifndef TAVUTIL_C_OS_H
#define TAVUTIL_C_OS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief The classification of the running Windows that tav_os_type() gives (OSInfo::OSType). */
enum tav_os_type {
    TAV_OS_UNKNOWN = 0,       /**< Not recognised. */
    TAV_OS_WIN95 = 1,         /**< Windows 95. */
    TAV_OS_WIN9X_REVISED = 2, /**< A revised Windows 95 (" C") or Windows 98 second edition (" A"). */
    TAV_OS_WIN98 = 3,         /**< Windows 98. */
    TAV_OS_WINME = 5,         /**< Windows Me (4 is never given). */
    TAV_OS_WINNT351 = 6,      /**< Windows NT 3.51. */
    TAV_OS_WINNT4 = 7,        /**< Windows NT 4. */
    TAV_OS_WIN2000 = 8,       /**< Windows 2000. */
    TAV_OS_WINXP = 9,         /**< Windows XP (and Server 2003). */
    TAV_OS_VISTA = 10,        /**< Windows Vista. */
    TAV_OS_WIN7 = 11          /**< Windows 7 and every later version. */
};

/** @brief The older classification that tav_os_classification() gives (CPlatforme). */
enum tav_os_class {
    TAV_OS_CLASS_WIN95 = 0, /**< Windows 95. */
    TAV_OS_CLASS_WIN98 = 1, /**< Windows 98. */
    TAV_OS_CLASS_WINME = 2, /**< Windows Me. */
    TAV_OS_CLASS_NT3 = 3,   /**< Windows NT 3. */
    TAV_OS_CLASS_NT4 = 4,   /**< Windows NT 4. */
    TAV_OS_CLASS_WIN2K = 5, /**< Windows 2000. */
    TAV_OS_CLASS_WINXP = 6, /**< Windows XP. */
    TAV_OS_CLASS_NEWER = 7  /**< Anything else: taken as newer than all of the above. */
};

/** @brief The capability questions of tav_os_ask(). */
enum tav_os_question {
    TAV_OS_USE_VXD_DRIVER = 0,                     /**< The 9x family (classifications 1 to 5). */
    TAV_OS_USE_SYS_DRIVER = 1,                     /**< Unknown, or NT 3.51 and later. */
    TAV_OS_DISTINGUISHES_LEFT_RIGHT_MODIFIERS = 2, /**< As #TAV_OS_USE_SYS_DRIVER. */
    TAV_OS_USB_SUPPORTED = 3,                      /**< The system supports USB devices. */
    TAV_OS_BLUETOOTH_SUPPORTED = 4,                /**< Always 0. */
    TAV_OS_802_11B_SUPPORTED = 5,                  /**< XP and Vista only (not 7, on purpose). */
    TAV_OS_UNDERLYING_64BIT = 6                    /**< Always 1: the library is a 64-bit build. */
};

/**
 * @brief The classification of the running Windows.
 * @return One of #tav_os_type.
 */
TAVUTIL_C_API int32_t tav_os_type(void);

/**
 * @brief The build number of the running Windows.
 * @return The build number.
 */
TAVUTIL_C_API uint32_t tav_os_build_number(void);

/**
 * @brief The platform identifier of the running Windows (1 the 9x family, 2 the NT family).
 * @return The platform identifier.
 */
TAVUTIL_C_API uint32_t tav_os_platform_id(void);

/**
 * @brief The major number of the installed service pack.
 * @return The number (0 when none).
 */
TAVUTIL_C_API uint32_t tav_os_service_pack_major(void);

/**
 * @brief The minor number of the installed service pack.
 * @return The number (0 when none).
 */
TAVUTIL_C_API uint32_t tav_os_service_pack_minor(void);

/**
 * @brief The service pack's text as the system gives it ("Service Pack 1", or empty).
 * @param buffer Receives the text.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the text needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_os_service_pack(wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief Answers a capability question about the running Windows.
 * @param question One of #tav_os_question.
 * @return 1 or 0; #TAV_E_UNKNOWN_ENUM for another number.
 */
TAVUTIL_C_API int32_t tav_os_ask(int32_t question);

/**
 * @brief The older classification of the running Windows, used by the keystroke functions to choose how
 * they send keys.
 * @return One of #tav_os_class.
 */
TAVUTIL_C_API int32_t tav_os_classification(void);

/**
 * @brief Whether the running Windows is of the 9x family (95, 98, Me).
 * @return 1 or 0.
 */
TAVUTIL_C_API int32_t tav_os_is_win9x(void);

/**
 * @brief Whether the desktop composition library ("dwmapi.dll", Vista and later) could be loaded from the
 * system folder.
 * @return 1 or 0.
 */
TAVUTIL_C_API int32_t tav_os_is_vista(void);

/**
 * @brief Whether desktop composition is on.
 * @return 1 or 0 (0 where the system has no desktop composition).
 */
TAVUTIL_C_API int32_t tav_os_is_dwm_composition_enabled(void);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_OS_H */
