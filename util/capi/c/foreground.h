/**
 * @file foreground.h
 * @brief Permission to bring the host's own windows to the front while another program owns the
 * foreground.
 *
 * Windows refuses foreground changes from programs in the background. While a grabber lives, a tap of the
 * Alt key and a temporary attachment of the calling thread's input to the foreground thread's input lift
 * that lock. Keep the pair tav_foreground_grabber_begin() / tav_foreground_grabber_end() short and on the
 * thread that activates its window.
 */
#ifndef TAVUTIL_C_FOREGROUND_H
#define TAVUTIL_C_FOREGROUND_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief A foreground grabber (ForegroundAttentionGrabber), made by tav_foreground_grabber_begin(). */
typedef struct tav_grabber_t* tav_grabber;

/**
 * @brief Makes a grabber: taps Alt and attaches the calling thread's input to the foreground thread's when
 * another process owns the foreground.
 * @return The grabber, owned by the caller (end it with tav_foreground_grabber_end()); null only when
 * memory is short.
 */
TAVUTIL_C_API tav_grabber tav_foreground_grabber_begin(void);

/**
 * @brief Whether the grabber attached the calling thread's input to the foreground thread's (another
 * process owned the foreground and the attachment succeeded).
 * @param grabber The grabber.
 * @return 1 or 0, or #TAV_E_NULL_HANDLE.
 */
TAVUTIL_C_API int32_t tav_foreground_grabber_is_attached(tav_grabber grabber);

/**
 * @brief Ends a grabber: detaches the input again and releases the grabber.
 * @param grabber The grabber (null: nothing happens).
 */
TAVUTIL_C_API void tav_foreground_grabber_end(tav_grabber grabber);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_FOREGROUND_H */
