/* c/os.h: the running Windows. */
#include "CTests.h"

static int32_t service_pack(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_os_service_pack(buffer, capacity, needed);
}

void test_os(void) {
    int question;

    EXPECT_INT(ref_os_type(), tav_os_type());
    EXPECT_INT(11, tav_os_type()); /* Wine's default: Windows 7 */
    EXPECT_INT(ref_os_build_number(), tav_os_build_number());
    EXPECT_INT(ref_os_platform_id(), tav_os_platform_id());
    EXPECT_INT(ref_os_service_pack_major(), tav_os_service_pack_major());
    EXPECT_INT(ref_os_service_pack_minor(), tav_os_service_pack_minor());
    CHECK_TEXT(TAV_OK, ref_os_service_pack(), service_pack, 0);
    for (question = TAV_OS_USE_VXD_DRIVER; question <= TAV_OS_UNDERLYING_64BIT; ++question)
        EXPECT_INT(ref_os_ask(question), tav_os_ask(question));
    EXPECT_INT(1, tav_os_ask(TAV_OS_UNDERLYING_64BIT));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_os_ask(7));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_os_ask(-1));
    EXPECT_INT(ref_platform_classification(), tav_os_classification());
    EXPECT_INT(ref_platform_is_win9x(), tav_os_is_win9x());
    EXPECT_INT(ref_vista_is_vista(), tav_os_is_vista());
    EXPECT_INT(ref_vista_is_dwm_composition_enabled(), tav_os_is_dwm_composition_enabled());
}
