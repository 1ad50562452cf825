/* c/waits.h: abortable waits. */
#include "CTests.h"

static int queue_settled(void* quiet_rounds) {
    /* wait_until pumps before each look: true after three looks in a row found nothing queued */
    MSG msg;
    int* rounds = (int*)quiet_rounds;
    *rounds = PeekMessageW(&msg, NULL, 0, 0, PM_NOREMOVE) ? 0 : *rounds + 1;
    return *rounds >= 3;
}

void test_waits(HWND window) {
    MSG msg;
    int quiet_rounds = 0;
    tav_wait wait = tav_wait_create();
    /* The input of the typing tests is consumed first: the waits below look at the queue themselves. */
    wait_until(queue_settled, &quiet_rounds, 3000);
    EXPECT_TRUE(wait != NULL);
    EXPECT_INT(0, tav_wait_status(wait));
    EXPECT_INT(2, tav_wait_wait(wait, 50, 10, 0));
    EXPECT_INT(2, tav_wait_status(wait));
    EXPECT_INT(2, tav_wait_wait(wait, 5000, 10, 0)); /* a finished wait answers at once */
    EXPECT_INT(2, tav_wait_abort(wait));             /* a finished status is kept */
    EXPECT_INT(TAV_OK, tav_wait_init(wait));
    EXPECT_INT(0, tav_wait_status(wait));
    EXPECT_INT(1, tav_wait_abort(wait));
    EXPECT_INT(1, tav_wait_wait(wait, 5000, 10, 0)); /* an abort before the wait is not lost */
    EXPECT_INT(TAV_OK, tav_wait_init(wait));
    PostQuitMessage(0);
    EXPECT_INT(3, tav_wait_wait(wait, 10000, 10, 0));
    EXPECT_TRUE(PeekMessageW(&msg, NULL, WM_QUIT, WM_QUIT, PM_REMOVE)); /* left queued */
    EXPECT_INT(TAV_OK, tav_wait_init(wait));
    PostMessageW(window, WM_COMMAND, 1, 0);
    EXPECT_INT(4, tav_wait_wait(wait, 10000, 10, 1));
    EXPECT_TRUE(PeekMessageW(&msg, NULL, WM_COMMAND, WM_COMMAND, PM_REMOVE));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_wait_wait(NULL, 10, 10, 0));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_wait_abort(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_wait_init(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_wait_status(NULL));
    tav_wait_destroy(wait);
    tav_wait_destroy(NULL);
}
