/* c/common.h: what every area shares. */
#include "CTests.h"

void test_common(void) { EXPECT_INT(1, tav_c_interface_version()); }
