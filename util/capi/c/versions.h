/**
 * @file versions.h
 * @brief Version numbers (parsing and comparing major.minor.fix.build) and the version resources of
 * executable and library files (CVerNum, CVerInfo).
 */
#ifndef TAVUTIL_C_VERSIONS_H
#define TAVUTIL_C_VERSIONS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief What tav_version_compare() finds: how the first number relates to the second. */
enum tav_vernum_comparison {
    TAV_VERNUM_OLDER = 0,       /**< The first is lower. */
    TAV_VERNUM_EQUAL = 1,       /**< All four parts are equal. */
    TAV_VERNUM_NEWER_BUILD = 2, /**< Equal up to the fix, higher build. */
    TAV_VERNUM_NEWER_FIX = 3,   /**< Equal major and minor, higher fix. */
    TAV_VERNUM_NEWER_MINOR = 4, /**< Equal major, higher minor. */
    TAV_VERNUM_NEWER_MAJOR = 5  /**< Higher major. */
};

/** @brief The fields of a version resource (VERFIELD): 0 and 1 are the fixed numbers, the rest texts. */
enum tav_verfield {
    TAV_VERFIELD_FILE_VERSION_NUMBER = 0,    /**< The fixed file version, as "major.minor.fix.build". */
    TAV_VERFIELD_PRODUCT_VERSION_NUMBER = 1, /**< The fixed product version, as "major.minor.fix.build". */
    TAV_VERFIELD_COMMENTS = 2,               /**< The "Comments" text. */
    TAV_VERFIELD_COMPANY_NAME = 3,           /**< The "CompanyName" text. */
    TAV_VERFIELD_FILE_DESCRIPTION = 4,       /**< The "FileDescription" text. */
    TAV_VERFIELD_FILE_VERSION = 5,           /**< The "FileVersion" text. */
    TAV_VERFIELD_INTERNAL_NAME = 6,          /**< The "InternalName" text. */
    TAV_VERFIELD_LEGAL_COPYRIGHT = 7,        /**< The "LegalCopyright" text. */
    TAV_VERFIELD_LEGAL_TRADEMARKS = 8,       /**< The "LegalTrademarks" text. */
    TAV_VERFIELD_ORIGINAL_FILENAME = 9,      /**< The "OriginalFilename" text. */
    TAV_VERFIELD_PRIVATE_BUILD = 10,         /**< The "PrivateBuild" text. */
    TAV_VERFIELD_PRODUCT_NAME = 11,          /**< The "ProductName" text. */
    TAV_VERFIELD_PRODUCT_VERSION = 12,       /**< The "ProductVersion" text. */
    TAV_VERFIELD_SPECIAL_BUILD = 13,         /**< The "SpecialBuild" text. */
    TAV_VERFIELD_PRODUCT_BUILD_NUMBER = 14   /**< The "ProductBuildNumber" text (not a standard field). */
};

/**
 * @brief Reads a version number from text: up to four numbers separated by dots ("10.20.30.40"); missing
 * parts are 0 and empty parts are skipped ("7..8" is 7.8.0.0).
 * @param text The text.
 * @param version Receives the number; its `valid` is 0 for an empty text.
 * @return #TAV_OK, or #TAV_E_NULL_ARGUMENT.
 */
TAVUTIL_C_API int32_t tav_version_parse(const wchar_t* text, tav_version_number* version);

/**
 * @brief Compares two version numbers, part by part from the major.
 * @param a The first number.
 * @param b The second number.
 * @return One of #tav_vernum_comparison, or #TAV_E_NULL_ARGUMENT.
 */
TAVUTIL_C_API int32_t tav_version_compare(const tav_version_number* a, const tav_version_number* b);

/** @brief A loaded version resource, made by tav_verinfo_create(). */
typedef struct tav_verinfo_t* tav_verinfo;

/**
 * @brief Makes an object that holds no version resource.
 * @return The object, owned by the caller (release it with tav_verinfo_destroy()); null only when memory is
 * short.
 */
TAVUTIL_C_API tav_verinfo tav_verinfo_create(void);

/**
 * @brief Releases an object and the resource it loaded.
 * @param info The object (null: nothing happens).
 */
TAVUTIL_C_API void tav_verinfo_destroy(tav_verinfo info);

/**
 * @brief Loads the version resource of a file and picks its string table (the first translation, or US
 * English with code page 1252 when there is no single translation). Meant to be called once per object. A
 * damaged resource loads nothing, as a file without one.
 * @param info The object.
 * @param file The file's path.
 * @return Non-zero when loaded, 0 when the file has no (readable) version resource, or a negative
 * #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_verinfo_init(tav_verinfo info, const wchar_t* file);

/**
 * @brief A field of the loaded resource: the fixed versions as "major.minor.fix.build", the texts
 * without trailing blanks.
 * @param info The object.
 * @param field One of #tav_verfield.
 * @param buffer Receives the field, or an empty text.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return 1 when found; 0 when nothing is loaded or the resource lacks the field; #TAV_E_UNKNOWN_ENUM for
 * another field; or another negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_verinfo_field(tav_verinfo info, int32_t field, wchar_t* buffer, size_t capacity,
                                        size_t* needed);

/**
 * @brief The display name of a field ("CompanyName", ...).
 * @param field One of #tav_verfield.
 * @param buffer Receives the name.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the name needs (may be null).
 * @return #TAV_OK; #TAV_E_UNKNOWN_ENUM for another field; or another negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_verinfo_field_name(int32_t field, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The fixed file version as numbers.
 * @param info The object.
 * @param version Receives the number (`valid` 1), or 0.0.0.0 (`valid` 0) when nothing is loaded.
 * @return 1 when loaded, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_verinfo_file_version(tav_verinfo info, tav_version_number* version);

/**
 * @brief The fixed product version as numbers.
 * @param info The object.
 * @param version Receives the number (`valid` 1), or 0.0.0.0 (`valid` 0) when nothing is loaded.
 * @return 1 when loaded, 0 when not, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_verinfo_product_version(tav_verinfo info, tav_version_number* version);

/**
 * @brief The language code of the chosen string table, as four hexadecimal digits ("0409").
 * @param info The object.
 * @param buffer Receives the code (empty when nothing is loaded).
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_verinfo_language_code(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The code page of the chosen string table, as four hexadecimal digits ("04b0").
 * @param info The object.
 * @param buffer Receives the code page (empty when nothing is loaded).
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_verinfo_code_page(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The path of the file given to tav_verinfo_init().
 * @param info The object.
 * @param buffer Receives the path.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the answer needs (may be null).
 * @return #TAV_OK, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_verinfo_file_name(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_VERSIONS_H */
