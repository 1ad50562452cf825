/* c/foreground.h: the foreground grabber. */
#include "CTests.h"

void test_foreground(void) {
    tav_grabber grabber;
    int attached;

    grabber = tav_foreground_grabber_begin();
    EXPECT_TRUE(grabber != NULL);
    attached = tav_foreground_grabber_is_attached(grabber);
    EXPECT_TRUE(attached == 0 || attached == 1);
    EXPECT_INT(0, attached); /* this process owns the foreground: nothing to attach to */
    tav_foreground_grabber_end(grabber);
    tav_foreground_grabber_end(NULL);
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_foreground_grabber_is_attached(NULL));
}
