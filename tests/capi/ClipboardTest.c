/* c/clipboard.h: the text on the clipboard. */
#include "CTests.h"

static int32_t clipboard_text(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_clipboard_get_text(buffer, capacity, needed);
}

void test_clipboard(void) {
    EXPECT_INT(1, tav_clipboard_set_text(L"from C: \x00e9\x20ac"));
    CHECK_TEXT(1, L"from C: \x00e9\x20ac", clipboard_text, 0);
    EXPECT_INT(1, tav_clipboard_set_text(L""));
    CHECK_TEXT(1, L"", clipboard_text, 0);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_clipboard_set_text(NULL));
}
