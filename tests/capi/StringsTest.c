/* c/strings.h: display lines, cutting to a length, trailing backslashes. */
#include "CTests.h"

static void check_cut(const wchar_t* text, int width) {
    size_t units;
    int pieces;
    const wchar_t* expected = ref_string_cut(text, width, &units, &pieces);
    wchar_t* out;
    CHECK_OUT(out, pieces, expected, units, tav_string_cut, text, width);
    kit_release(out);
}

void test_strings(void) {
    wchar_t* long_text;
    size_t i;

    check_cut(L"hello world", 5);
    check_cut(L"a rather long line of text to cut into display lines", 12);
    check_cut(L"abc", 0);
    check_cut(L"", 10);
    check_cut(L"unbreakable_word here", 4);
    /* Over-long text: 100000 units. */
    long_text = (wchar_t*)malloc(100001 * sizeof(wchar_t));
    for (i = 0; i < 100000; ++i)
        long_text[i] = (i % 7 == 6) ? L' ' : L'x';
    long_text[100000] = 0;
    check_cut(long_text, 30);
    free(long_text);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_string_cut(NULL, 5, NULL, 0, NULL));

    CHECK_TEXT(TAV_OK, L"abc", tav_string_set_length, L"abcdef", 3);
    CHECK_TEXT(TAV_OK, L"abcdef", tav_string_set_length, L"abcdef", 2000000000);
    CHECK_TEXT(TAV_OK, L"", tav_string_set_length, L"abcdef", -4);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_string_set_length(NULL, 3, NULL, 0, NULL));

    CHECK_TEXT(TAV_OK, L"C:\\a\\", tav_string_ensure_trailing_backslash, L"C:\\a");
    CHECK_TEXT(TAV_OK, L"C:\\a\\", tav_string_ensure_trailing_backslash, L"C:\\a\\");
    CHECK_TEXT(TAV_OK, L"\\", tav_string_ensure_trailing_backslash, L"");
    CHECK_TEXT(TAV_OK, L"C:\\a", tav_string_strip_trailing_backslash, L"C:\\a\\");
    CHECK_TEXT(TAV_OK, L"\\", tav_string_strip_trailing_backslash, L"\\");
    CHECK_TEXT(TAV_OK, L"", tav_string_strip_trailing_backslash, L"");
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_string_ensure_trailing_backslash(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_string_strip_trailing_backslash(NULL, NULL, 0, NULL));
}
