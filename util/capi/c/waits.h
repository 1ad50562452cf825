/**
 * @file waits.h
 * @brief Abortable waits that keep the calling thread's window messages flowing (CWait).
 *
 * A wait looks at the calling thread's message queue every `step_ms` milliseconds and dispatches what it
 * finds, so the host's windows stay responsive, until the time is up, the wait is aborted (for example by
 * a message handler that the wait's own pump runs), a quit message is queued, or, if asked, a command
 * message is queued.
 */
#ifndef TAVUTIL_C_WAITS_H
#define TAVUTIL_C_WAITS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief The statuses of a wait (CWaitStatus). */
enum tav_wait_result {
    TAV_WAIT_WAITING = 0, /**< Not finished: made or reset, not yet waited. */
    TAV_WAIT_ABORTED = 1, /**< Ended by tav_wait_abort(). */
    TAV_WAIT_TIMEOUT = 2, /**< The time was up. */
    TAV_WAIT_QUIT = 3,    /**< A quit message (WM_QUIT) is queued; it is left in the queue for the host. */
    TAV_WAIT_COMMAND = 4  /**< A command message (WM_COMMAND) is queued; it is left in the queue. */
};

/** @brief An abortable wait, made by tav_wait_create(). */
typedef struct tav_wait_t* tav_wait;

/**
 * @brief Makes a wait, with the status #TAV_WAIT_WAITING.
 * @return The wait, owned by the caller (release it with tav_wait_destroy()); null only when memory is
 * short.
 */
TAVUTIL_C_API tav_wait tav_wait_create(void);

/**
 * @brief Waits, dispatching the calling thread's messages, until the wait ends.
 *
 * A wait that has already finished (or was aborted before it began) returns its status at once: waiting
 * never resets the status, so a finished wait waits again only after tav_wait_init(). An abort issued
 * before the wait is therefore never lost.
 * @param wait The wait.
 * @param timeout_ms The longest wait in milliseconds.
 * @param step_ms How often, in milliseconds, the message queue is looked at.
 * @param stop_on_command 1: a queued command message (WM_COMMAND) ends the wait; 0: it is dispatched.
 * @return The status (#tav_wait_result), or #TAV_E_NULL_HANDLE.
 */
TAVUTIL_C_API int32_t tav_wait_wait(tav_wait wait, uint32_t timeout_ms, uint32_t step_ms, int32_t stop_on_command);

/**
 * @brief Ends a running or future wait with #TAV_WAIT_ABORTED; a finished status is kept. May be called
 * from a message handler that the wait dispatches.
 * @param wait The wait.
 * @return The status after the call (#tav_wait_result), or #TAV_E_NULL_HANDLE.
 */
TAVUTIL_C_API int32_t tav_wait_abort(tav_wait wait);

/**
 * @brief Resets the status to #TAV_WAIT_WAITING, so that the wait can be used again.
 * @param wait The wait.
 * @return #TAV_OK, or #TAV_E_NULL_HANDLE.
 */
TAVUTIL_C_API int32_t tav_wait_init(tav_wait wait);

/**
 * @brief The wait's status.
 * @param wait The wait.
 * @return The status (#tav_wait_result), or #TAV_E_NULL_HANDLE.
 */
TAVUTIL_C_API int32_t tav_wait_status(tav_wait wait);

/**
 * @brief Releases a wait.
 * @param wait The wait (null: nothing happens).
 */
TAVUTIL_C_API void tav_wait_destroy(tav_wait wait);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_WAITS_H */
