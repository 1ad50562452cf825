/* c/processes.h: the process finder. */
#include "CTests.h"

void test_processes(HWND window) {
    const wchar_t* expected;
    wchar_t* out;
    size_t units;
    int found;
    const DWORD self = GetCurrentProcessId();

    EXPECT_INT(0, tav_process_finder_init(0));
    EXPECT_TRUE(tav_process_wait_foreground_window() == GetForegroundWindow());
    EXPECT_INT(0, tav_process_finder_init(1)); /* the first call chose */

    CHECK_TEXT(TAV_OK, L"capi_c_tests.exe", tav_process_foreground_name, (intptr_t)window);
    CHECK_TEXT(TAV_OK, ref_foreground_name((intptr_t)window), tav_process_foreground_name, (intptr_t)window);
    CHECK_TEXT(TAV_OK, ref_foreground_full_name((intptr_t)window), tav_process_foreground_full_name, (intptr_t)window);
    CHECK_TEXT(TAV_OK, ref_foreground_name(0), tav_process_foreground_name, 0);
    CHECK_TEXT(TAV_OK, L"", tav_process_foreground_name, (intptr_t)0x7ffffff0);

    CHECK_TEXT(1, L"capi_c_tests.exe", tav_process_name, self);
    CHECK_TEXT(0, L"", tav_process_name, 0xFFFFFFF0u);
    out = kit_buffer(MAX_PATH);
    EXPECT_INT(1, tav_process_full_name(self, out, MAX_PATH, NULL));
    EXPECT_TRUE(_wcsicmp(out, g_self) == 0);
    kit_release(out);
    CHECK_TEXT(0, L"", tav_process_full_name, 0xFFFFFFF0u);

    EXPECT_INT(1, tav_process_is_running(L"capi_c_tests.exe", 0));
    EXPECT_INT(1, tav_process_is_running(L"capi_c_tests", 0));
    EXPECT_INT(ref_process_is_running(L"capi_c_tests.exe", 1), tav_process_is_running(L"capi_c_tests.exe", 1));
    EXPECT_INT(0, tav_process_is_running(L"capi_no_such_process.exe", 0));
    EXPECT_INT(TAV_E_OUT_OF_RANGE, tav_process_is_running(L"abc", 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_process_is_running(NULL, 0));

    expected = ref_process_modules(self, &units, &found);
    EXPECT_INT(1, found);
    CHECK_OUT(out, found, expected, units, tav_process_modules, self);
    {
        /* TavUtil.dll is among the modules. */
        const wchar_t* item;
        int seen = 0;
        for (item = out; *item; item += wcslen(item) + 1)
            seen |= _wcsicmp(item, L"TavUtil.dll") == 0;
        EXPECT_TRUE(seen);
    }
    kit_release(out);
    CHECK_OUT(out, 0, L"\0", 2, tav_process_modules, 0xFFFFFFF0u);
    kit_release(out);
}
