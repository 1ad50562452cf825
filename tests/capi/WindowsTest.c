/* c/windows.h: window look-ups. */
#include "CTests.h"

void test_windows(HWND window, HWND edit) {
    wchar_t number[32];

    EXPECT_TRUE(tav_window_focus_window(window) == ref_focus_window(window));
    EXPECT_TRUE(tav_window_child_by_class(window, L"EDIT") == edit);
    EXPECT_TRUE(tav_window_child_by_class(window, L"NoSuchClass") == NULL);
    EXPECT_TRUE(tav_window_child_by_class(window, NULL) == NULL);
    /* A null parent: whatever the C++ helper answers (it searches from the desktop), the C call answers too. */
    EXPECT_TRUE(tav_window_child_by_class(NULL, L"Edit") == ref_child_by_class(NULL, L"Edit"));
    swprintf(number, 32, L"%d", (int)(intptr_t)window);
    CHECK_TEXT(TAV_OK, number, tav_window_handle_to_text, window);
    EXPECT_TEXT(ref_handle_to_text(window), number);
    CHECK_TEXT(TAV_OK, L"0", tav_window_handle_to_text, NULL);
}
