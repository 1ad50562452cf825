/**
 * @file software.h
 * @brief Installed software, from the registry: when the suite was installed, where an application is
 * installed according to its App Paths registration, and which program serves the newest version of an
 * automation class. Keys are opened for reading only (native view first, then the 32-bit view).
 */
#ifndef TAVUTIL_C_SOFTWARE_H
#define TAVUTIL_C_SOFTWARE_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @brief The suite's install date exactly as its installer stored it (usually YYYYMMDD)
 * (TrimdialInstallDate).
 * @param buffer Receives the date, or an empty text when the setup key, its product identifier or the
 * matching uninstall entry is missing.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when found, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_software_install_date(wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief Where an application is installed: the default value of its registry key
 * "App Paths\<app>.<ext>" (FindApplicationPath).
 * @param app The application's file name without extension.
 * @param ext Its extension without the dot ("exe").
 * @param buffer Receives the path, or an empty text.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when found, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_software_application_path(const wchar_t* app, const wchar_t* ext, wchar_t* buffer,
                                                    size_t capacity, size_t* needed);

/**
 * @brief The local server command (arguments included) of the class that the current version of an
 * automation name (ProgID) names (FindMostRecentProgIdPath).
 * @param prog_id The automation name ("Vendor.Application").
 * @param buffer Receives the command, or an empty text for a name without a current version, a version
 * without a class or a class without a local server.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when found, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_software_progid_server(const wchar_t* prog_id, wchar_t* buffer, size_t capacity,
                                                 size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_SOFTWARE_H */
