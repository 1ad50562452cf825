/**
 * @file common.h
 * @brief What every area of TavUtil's C interface shares: the conventions, the export macro, the result
 * codes of the C layer, the handle types, the shared records and the calls that turn a code into text.
 *
 * Every area header includes this one; `TavUtilC.h` includes them all. Besides the standard headers, only
 * `TavUtil/TavUtilVersion.h` (the version macros, made by the build) is needed, and each header is valid C99
 * and C++ on its own.
 *
 * Conventions, the same for every function of the interface:
 *
 * - **Text in**: `const wchar_t*`, UTF-16, ended by a NUL. A null pointer where text is expected gives
 *   #TAV_E_NULL_ARGUMENT (the automation functions alone accept null names). A non-null text pointer below
 *   0x10000 is taken for a stray integer, never read, and gives #TAV_E_NULL_ARGUMENT in every function
 *   (tav_window_child_by_class(): a null window).
 * - **Text out**: a caller buffer, its capacity in `wchar_t` units, and `needed` (may be null), which
 *   receives the units the whole answer needs, its ending NUL included. When the capacity is smaller,
 *   nothing at all is written to the buffer and the call returns #TAV_E_BUFFER_TOO_SMALL (never a silent
 *   truncation): ask with capacity 0 (the buffer may then be null), allocate `needed` units and call again.
 *   A null buffer with a capacity other than 0 is #TAV_E_NULL_ARGUMENT. Where one call has two text
 *   outputs, both must fit or neither is written. The caller owns every buffer; the library keeps none.
 * - **Lists** (pieces, messengers, modules, subkeys) come back the same way as one text: the items, each
 *   ended by a NUL, and one more NUL after the last (an empty list is two NULs).
 * - **Results** are `int32_t`. Where the underlying library has a result, it is passed on as it is: Windows
 *   status codes (registry: 0 is success), HRESULTs (accounts, automation), the keystroke codes
 *   (#tav_skerr), the wait statuses (#tav_wait_result), 1 and 0 for yes and no, and the numbers each
 *   function documents; a function with no result of its own gives #TAV_OK. The C layer's own failures are
 *   the small negative numbers of #tav_c_error, which none of those codes uses. A function that fails with
 *   one of them has written no output. tav_result_text() turns any of these codes into a sentence.
 * - **No exception or crash for bad arguments**: every function catches what the library below it
 *   throws. An index out of range (documented per function) gives #TAV_E_OUT_OF_RANGE, a lack of memory
 *   #TAV_E_OUT_OF_MEMORY, a failed automation call the HRESULT it carries, anything else #TAV_E_EXCEPTION.
 * - **Objects with state** are opaque handles made by `tav_<area>_create` and released by
 *   `tav_<area>_destroy`; destroying null is allowed and does nothing. A null handle given to any other
 *   function gives #TAV_E_NULL_HANDLE. Window, process and registry key handles are the system's own, as
 *   `void*`. COM interface pointers are passed as `void*` (COM's binary interface does not depend on the
 *   compiler); the caller owns every pointer it receives and releases it (tav_com_release()).
 * - **Threads**: the library keeps process-wide state (the system facts, the key queue and hold list, the
 *   log output and levels, the process finder, the registry's subkey list, the support strings, the file
 *   picker's kept answer) and guards none of it: call the interface from one thread at a time.
 * - **Enumerations**: numbers outside an enumeration's documented range give #TAV_E_UNKNOWN_ENUM.
 * - **Waiting and UI**: each function says when it may wait, pump the calling thread's messages or show a
 *   window; the others return at once.
 */
#ifndef TAVUTIL_C_COMMON_H
#define TAVUTIL_C_COMMON_H

#include <stddef.h>
#include <stdint.h>

#include <TavUtil/TavUtilVersion.h>

/**
 * @brief Marks a function of the C interface: exported when the DLL is built, imported by a host on
 * Windows, nothing elsewhere.
 */
#if defined(TAVUTIL_BUILDING_DLL)
#define TAVUTIL_C_API __declspec(dllexport)
#elif defined(_WIN32)
#define TAVUTIL_C_API __declspec(dllimport)
#else
#define TAVUTIL_C_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** @brief The C layer's own results: success, and the failures of a call that did nothing. */
enum tav_c_error {
    TAV_OK = 0,                  /**< Success (for functions without a result of their own). */
    TAV_E_NULL_ARGUMENT = -1,    /**< A required pointer is null, or a text pointer is a stray number. */
    TAV_E_BUFFER_TOO_SMALL = -2, /**< An output buffer is too small; `needed` tells the size. */
    TAV_E_NULL_HANDLE = -3,      /**< A null object handle (or, for automation, a null object). */
    TAV_E_UNKNOWN_ENUM = -4,     /**< A number outside its enumeration. */
    TAV_E_EXCEPTION = -5,        /**< An unforeseen failure inside the library was caught. */
    TAV_E_OUT_OF_RANGE = -6,     /**< An input the function documents as out of range (a too-short text). */
    TAV_E_OUT_OF_MEMORY = -7     /**< Memory could not be had. */
};

/**
 * @brief The version of this interface's conventions.
 * @return 1.
 */
TAVUTIL_C_API int32_t tav_c_interface_version(void);

/**
 * @brief The version of the TavUtil.dll that is loaded, to compare at start-up with the #TAVUTIL_VERSION of
 * the headers the host was built against.
 * @return major * 10000 + minor * 100 + patch, the same number as #TAVUTIL_VERSION of the DLL's own build.
 */
TAVUTIL_C_API int32_t tav_version(void);

/** @brief A window handle of the system (a Windows HWND). */
typedef void* tav_hwnd;
/** @brief A process handle of the system (a Windows HANDLE). */
typedef void* tav_handle;
/** @brief A registry key: one of the predefined roots below or a key the host opened (a Windows HKEY). */
typedef void* tav_hkey;

/** @brief The registry root HKEY_CLASSES_ROOT. */
#define TAV_HKEY_CLASSES_ROOT ((tav_hkey)(intptr_t)(int32_t)0x80000000)
/** @brief The registry root HKEY_CURRENT_USER. */
#define TAV_HKEY_CURRENT_USER ((tav_hkey)(intptr_t)(int32_t)0x80000001)
/** @brief The registry root HKEY_LOCAL_MACHINE. */
#define TAV_HKEY_LOCAL_MACHINE ((tav_hkey)(intptr_t)(int32_t)0x80000002)
/** @brief The registry root HKEY_USERS. */
#define TAV_HKEY_USERS ((tav_hkey)(intptr_t)(int32_t)0x80000003)

/** @brief A class or interface identifier, laid out as the system's GUID (16 bytes). */
typedef struct tav_guid {
    uint32_t data1;   /**< The first 8 hexadecimal digits. */
    uint16_t data2;   /**< The next 4 digits. */
    uint16_t data3;   /**< The next 4 digits. */
    uint8_t data4[8]; /**< The last 16 digits, as bytes. */
} tav_guid;

/** @brief A rectangle in pixels, laid out as the system's RECT. */
typedef struct tav_rect {
    int32_t left;   /**< The left edge. */
    int32_t top;    /**< The top edge. */
    int32_t right;  /**< The right edge (outside the rectangle). */
    int32_t bottom; /**< The bottom edge (outside the rectangle). */
} tav_rect;

/** @brief A point in pixels, laid out as the system's POINT. */
typedef struct tav_point {
    int32_t x; /**< The horizontal position. */
    int32_t y; /**< The vertical position. */
} tav_point;

/** @brief A size in pixels, laid out as the system's SIZE. */
typedef struct tav_size {
    int32_t cx; /**< The width. */
    int32_t cy; /**< The height. */
} tav_size;

/** @brief A font description: the 92 bytes of the system's LOGFONTW. */
typedef struct tav_logfont {
    int32_t height;           /**< The character height (negative: the em height) in logical units. */
    int32_t width;            /**< The average character width; 0 lets the system choose. */
    int32_t escapement;       /**< The angle of the text line, in tenths of a degree. */
    int32_t orientation;      /**< The angle of each character, in tenths of a degree. */
    int32_t weight;           /**< The weight: 400 normal, 700 bold. */
    uint8_t italic;           /**< 1 for italic. */
    uint8_t underline;        /**< 1 for underlined. */
    uint8_t strike_out;       /**< 1 for struck out. */
    uint8_t char_set;         /**< The character set number. */
    uint8_t out_precision;    /**< The output precision number. */
    uint8_t clip_precision;   /**< The clipping precision number. */
    uint8_t quality;          /**< The output quality number. */
    uint8_t pitch_and_family; /**< The pitch and family bits. */
    wchar_t face_name[32];    /**< The typeface name, ended by a NUL. */
} tav_logfont;

/**
 * @brief A date and time, 16 bytes: an automation date (days since 30 December 1899, the time of day as
 * the fraction) and its status.
 */
typedef struct tav_date_time {
    double date;      /**< The automation date. */
    int32_t status;   /**< 0 valid, 1 invalid, 2 null, -1 error. */
    int32_t reserved; /**< Kept 0. */
} tav_date_time;

/** @brief A four-part version number major.minor.fix.build (the C++ CVerNum). */
typedef struct tav_version_number {
    uint16_t major; /**< The first part. */
    uint16_t minor; /**< The second part. */
    uint16_t fix;   /**< The third part. */
    uint16_t build; /**< The fourth part. */
    int32_t valid;  /**< 1 when the number was read from a version text or resource, else 0. */
} tav_version_number;

/** @brief The kinds of code that tav_result_text() describes. */
enum tav_result_kind {
    TAV_RESULT_C = 0,       /**< The C layer's own codes (#tav_c_error). */
    TAV_RESULT_WIN32 = 1,   /**< A Windows status code (the registry's results, for example). */
    TAV_RESULT_HRESULT = 2, /**< An HRESULT (the automation and account functions). */
    TAV_RESULT_SKERR = 3,   /**< A keystroke code (#tav_skerr). */
    TAV_RESULT_WAIT = 4     /**< A wait status (#tav_wait_result). */
};

/**
 * @brief A short sentence that says what a result code means.
 *
 * For #TAV_RESULT_WIN32 the sentence is the system's own message for the code, in the user's language
 * (from the system's message table only, never from a module of the host); an HRESULT that wraps a Windows
 * status gives that status's message. A code the kind does not know gives a sentence that says so and
 * names the number. Never waits and shows nothing.
 * @param kind One of #tav_result_kind.
 * @param code The code to describe.
 * @param buffer Receives the sentence (may be null when `capacity` is 0).
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the sentence needs, its NUL included (may be null).
 * @return #TAV_OK; #TAV_E_UNKNOWN_ENUM for an unknown `kind`; #TAV_E_BUFFER_TOO_SMALL or
 * #TAV_E_NULL_ARGUMENT by the text-out rule.
 */
TAVUTIL_C_API int32_t tav_result_text(int32_t kind, int32_t code, wchar_t* buffer, size_t capacity, size_t* needed);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_COMMON_H */
