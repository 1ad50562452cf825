/**
 * @file log.h
 * @brief The library's log: records written at a level, the reporting level that filters them, and
 * where they go.
 *
 * A record is one line of the form `<log time="..." level="INFO   " filename="..." linenumber="..."
 * function="..." message="..."/>`. The output and the levels are process-wide.
 */
#ifndef TAVUTIL_C_LOG_H
#define TAVUTIL_C_LOG_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief The log levels, most important first (VelmLogLevel). */
enum tav_log_level {
    TAV_LOG_ERROR = 0,   /**< Errors. */
    TAV_LOG_WARNING = 1, /**< Warnings. */
    TAV_LOG_INFO = 2,    /**< Information. */
    TAV_LOG_DEBUG = 3,   /**< Debugging detail. */
    TAV_LOG_DEBUG1 = 4,  /**< More debugging detail. */
    TAV_LOG_DEBUG2 = 5,  /**< More debugging detail. */
    TAV_LOG_DEBUG3 = 6,  /**< More debugging detail. */
    TAV_LOG_DEBUG4 = 7   /**< The most debugging detail. */
};

/** @brief Where records go (tav_log_set_output()). */
enum tav_log_output {
    TAV_LOG_TO_STDERR = 0, /**< The standard error stream (the initial output). */
    TAV_LOG_TO_FILE = 1,   /**< A file, appended to. */
    TAV_LOG_TO_NONE = 2    /**< Nowhere. */
};

/**
 * @brief Writes one record, unless `level` is above the reporting level.
 * @param level One of #tav_log_level.
 * @param file The source file name the record names.
 * @param line The source line the record names.
 * @param function The function name the record names.
 * @param message The message.
 * @return 1 when written, 0 when filtered out; #TAV_E_UNKNOWN_ENUM for another level.
 */
TAVUTIL_C_API int32_t tav_log_write(int32_t level, const wchar_t* file, int32_t line, const wchar_t* function,
                                    const wchar_t* message);

/**
 * @brief The reporting level: records above it are not written. It starts at #TAV_LOG_DEBUG4 (everything).
 * @return One of #tav_log_level.
 */
TAVUTIL_C_API int32_t tav_log_reporting_level(void);

/**
 * @brief Sets the reporting level.
 * @param level One of #tav_log_level.
 * @return #TAV_OK; #TAV_E_UNKNOWN_ENUM for another number (the level is kept).
 */
TAVUTIL_C_API int32_t tav_log_set_reporting_level(int32_t level);

/**
 * @brief A level's name as records show it, padded with blanks to seven characters ("INFO   ").
 * @param level One of #tav_log_level.
 * @param buffer Receives the name.
 * @param capacity The buffer's size in `wchar_t` units.
 * @param needed Receives the units the name needs (may be null).
 * @return #TAV_OK; #TAV_E_UNKNOWN_ENUM for another number; or another negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_log_level_name(int32_t level, wchar_t* buffer, size_t capacity, size_t* needed);

/**
 * @brief The level of a name ("ERROR", "WARNING", "INFO", "DEBUG", "DEBUG1" to "DEBUG4"; exact and
 * case-sensitive). Any other name writes a warning record and gives #TAV_LOG_INFO.
 * @param name The name.
 * @return One of #tav_log_level, or #TAV_E_NULL_ARGUMENT.
 */
TAVUTIL_C_API int32_t tav_log_level_from_name(const wchar_t* name);

/**
 * @brief Chooses where records go.
 *
 * A file is opened for appending in text mode, so that records are written in the system's ANSI code page.
 * A file this interface opened is closed when the output changes again.
 * @param output One of #tav_log_output.
 * @param path The file, for #TAV_LOG_TO_FILE (read only then; may be null otherwise).
 * @return 1; 0 when the file cannot be opened (the output is then kept); #TAV_E_UNKNOWN_ENUM for another
 * output.
 */
TAVUTIL_C_API int32_t tav_log_set_output(int32_t output, const wchar_t* path);

/**
 * @brief Turns the copy of each record to the debugger's output (OutputDebugStringW) on or off.
 * @param on 1 for on, 0 for off.
 * @return #TAV_OK.
 */
TAVUTIL_C_API int32_t tav_log_set_debugger_copy(int32_t on);

/**
 * @brief Whether each record is copied to the debugger's output.
 * @return 1 or 0.
 */
TAVUTIL_C_API int32_t tav_log_debugger_copy(void);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_LOG_H */
