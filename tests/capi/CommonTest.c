/* c/common.h: what every area shares: the interface's version and the sentence for every result code. */
#include "CTests.h"

/* The system's own message for `code`, without its line break: what a Windows status code must read as. */
static void system_message(DWORD code, wchar_t* text, size_t capacity) {
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, NULL, code, 0, text,
                                  (DWORD)capacity, NULL);
    while (length > 0 && wcschr(L" \t\r\n", text[length - 1]) != NULL)
        --length;
    text[length] = 0;
}

/* The sentence for `code` of `kind`, fetched with the size-query idiom (the caller frees it). */
static wchar_t* sentence(int32_t kind, int32_t code) {
    size_t needed = 0;
    wchar_t* text;
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL, tav_result_text(kind, code, NULL, 0, &needed));
    text = (wchar_t*)calloc(needed + 1, sizeof(wchar_t));
    EXPECT_INT(TAV_OK, tav_result_text(kind, code, text, needed, NULL));
    return text;
}

/* Every code of a kind has a sentence of its own that is not the "unknown" one; the whole text-out protocol
 * holds for each. */
static void check_known(int32_t kind, const int32_t* codes, size_t count) {
    wchar_t* texts[16];
    size_t i;
    size_t j;
    for (i = 0; i < count; ++i) {
        texts[i] = sentence(kind, codes[i]);
        EXPECT_TRUE(wcsncmp(texts[i], L"Unknown", 7) != 0);
        EXPECT_TRUE(wcslen(texts[i]) > 5 && texts[i][wcslen(texts[i]) - 1] == L'.');
        CHECK_TEXT(TAV_OK, texts[i], tav_result_text, kind, codes[i]);
        for (j = 0; j < i; ++j)
            EXPECT_TRUE(wcscmp(texts[i], texts[j]) != 0);
    }
    for (i = 0; i < count; ++i)
        free(texts[i]);
}

static void check_result_text(void) {
    static const int32_t c_codes[] = {
        TAV_OK,          TAV_E_NULL_ARGUMENT, TAV_E_BUFFER_TOO_SMALL, TAV_E_NULL_HANDLE, TAV_E_UNKNOWN_ENUM,
        TAV_E_EXCEPTION, TAV_E_OUT_OF_RANGE,  TAV_E_OUT_OF_MEMORY};
    static const int32_t skerr_codes[] = {
        TAV_SKERR_NONE,          TAV_SKERR_MISSING_CLOSE_BRACE, TAV_SKERR_INVALID_KEY, TAV_SKERR_MISSING_CLOSE_PAREN,
        TAV_SKERR_INVALID_COUNT, TAV_SKERR_STRING_TOO_LONG,     TAV_SKERR_BUSY,        TAV_SKERR_MENU_FAILED,
        TAV_SKERR_COMMAND_DONE};
    static const int32_t wait_codes[] = {TAV_WAIT_WAITING, TAV_WAIT_ABORTED, TAV_WAIT_TIMEOUT, TAV_WAIT_QUIT,
                                         TAV_WAIT_COMMAND};
    static const DWORD windows_codes[] = {0, 2, 5, 6, 87, 234, 259, 1008};
    wchar_t expected[512];
    wchar_t* text;
    size_t i;

    check_known(TAV_RESULT_C, c_codes, sizeof c_codes / sizeof c_codes[0]);
    check_known(TAV_RESULT_SKERR, skerr_codes, sizeof skerr_codes / sizeof skerr_codes[0]);
    check_known(TAV_RESULT_WAIT, wait_codes, sizeof wait_codes / sizeof wait_codes[0]);
    CHECK_TEXT(TAV_OK, L"The output buffer is too small; the needed size was returned.", tav_result_text, TAV_RESULT_C,
               TAV_E_BUFFER_TOO_SMALL);
    CHECK_TEXT(TAV_OK, L"Another send is in progress; nothing was typed.", tav_result_text, TAV_RESULT_SKERR,
               TAV_SKERR_BUSY);
    CHECK_TEXT(TAV_OK, L"The wait timed out.", tav_result_text, TAV_RESULT_WAIT, TAV_WAIT_TIMEOUT);

    /* Codes a kind does not know: a sentence that says so, with the number. */
    CHECK_TEXT(TAV_OK, L"Unknown C interface code 1.", tav_result_text, TAV_RESULT_C, 1);
    CHECK_TEXT(TAV_OK, L"Unknown C interface code -8.", tav_result_text, TAV_RESULT_C, -8);
    CHECK_TEXT(TAV_OK, L"Unknown keystroke code 6.", tav_result_text, TAV_RESULT_SKERR, 6);
    CHECK_TEXT(TAV_OK, L"Unknown keystroke code -1.", tav_result_text, TAV_RESULT_SKERR, -1);
    CHECK_TEXT(TAV_OK, L"Unknown keystroke code 10.", tav_result_text, TAV_RESULT_SKERR, 10);
    CHECK_TEXT(TAV_OK, L"Unknown wait status 5.", tav_result_text, TAV_RESULT_WAIT, 5);
    CHECK_TEXT(TAV_OK, L"Unknown wait status -2147483648.", tav_result_text, TAV_RESULT_WAIT, INT32_MIN);
    CHECK_TEXT(TAV_OK, L"Unknown Windows status code 2147418113.", tav_result_text, TAV_RESULT_WIN32, 0x7FFF0001);
    CHECK_TEXT(TAV_OK, L"Unknown HRESULT 0x8BADF00D.", tav_result_text, TAV_RESULT_HRESULT, (int32_t)0x8BADF00Du);

    /* Windows status codes read as the system's own message. */
    for (i = 0; i < sizeof windows_codes / sizeof windows_codes[0]; ++i) {
        system_message(windows_codes[i], expected, 512);
        if (expected[0] == 0)
            swprintf(expected, 512, L"Unknown Windows status code %lu.", windows_codes[i]);
        CHECK_TEXT(TAV_OK, expected, tav_result_text, TAV_RESULT_WIN32, (int32_t)windows_codes[i]);
    }
    system_message(2, expected, 512);
    EXPECT_TRUE(expected[0] != 0); /* the system knows "file not found" */
    /* An HRESULT that wraps a Windows status reads as that status, unless the system has a message of its own. */
    text = sentence(TAV_RESULT_HRESULT, (int32_t)0x80070002u);
    system_message(0x80070002u, expected, 512);
    if (expected[0] == 0)
        system_message(2, expected, 512);
    EXPECT_TEXT(expected, text);
    free(text);
    text = sentence(TAV_RESULT_HRESULT, (int32_t)0x80004005u); /* E_FAIL */
    system_message(0x80004005u, expected, 512);
    if (expected[0] == 0)
        wcscpy(expected, L"Unknown HRESULT 0x80004005.");
    EXPECT_TEXT(expected, text);
    free(text);

    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_result_text(5, 0, NULL, 0, NULL));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_result_text(-1, 0, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_result_text(TAV_RESULT_C, 0, NULL, 8, NULL));
}

void test_common(void) {
    EXPECT_INT(1, tav_c_interface_version());
    /* The loaded DLL is the one these headers were made with. */
    EXPECT_INT(TAVUTIL_VERSION, tav_version());
    EXPECT_INT(TAVUTIL_VERSION_MAJOR * 10000 + TAVUTIL_VERSION_MINOR * 100 + TAVUTIL_VERSION_PATCH, tav_version());
    check_result_text();
}
