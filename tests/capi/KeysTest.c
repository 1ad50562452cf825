/* c/keys.h: typing and the script tools. */
#include "CTests.h"

typedef struct typed_text {
    HWND edit;
    const wchar_t* expected;
} typed_text;

static int edit_shows(void* context) {
    typed_text* typed = (typed_text*)context;
    wchar_t text[64];
    GetWindowTextW(typed->edit, text, 64);
    return wcscmp(text, typed->expected) == 0;
}

static void check_parse(const wchar_t* script) {
    const uint16_t* expected;
    size_t count;
    size_t need = 999;
    uint16_t entries[64];
    uint16_t small[65];
    const int result = ref_keys_parse(script, &expected, &count);
    EXPECT_INT(result, tav_keys_parse(script, entries, 64, &need));
    EXPECT_INT(count, need);
    EXPECT_TRUE(memcmp(entries, expected, count * sizeof(uint16_t)) == 0);
    /* A capacity far beyond the entries, counted in entries: as a byte count it once overflowed to 0. */
    EXPECT_INT(result, tav_keys_parse(script, entries, SIZE_MAX / 2 + 1, &need));
    EXPECT_INT(count, need);
    EXPECT_INT(result, tav_keys_parse(script, entries, SIZE_MAX, NULL));
    if (count > 0) {
        memset(small, 0xAA, sizeof small);
        small[count - 1] = 0xBEEF;
        EXPECT_INT(TAV_E_BUFFER_TOO_SMALL, tav_keys_parse(script, small, count - 1, &need));
        EXPECT_INT(count, need);
        EXPECT_INT(0xBEEF, small[count - 1]);
        EXPECT_INT(0xAAAA, small[0]);
    }
}

/* The check: result, offset and message, through the whole text-out protocol, and as the C++ call says. */
static void check_script(const wchar_t* script, int result, int offset, const wchar_t* message) {
    int32_t at = 12345;
    int32_t ref_at = 0;
    const wchar_t* ref_message = NULL;
    wchar_t text[256];
    size_t need = 0;
    CHECK_TEXT(result, message, tav_keys_check, script, &at);
    EXPECT_INT(offset, at);
    EXPECT_INT(ref_keys_check(script, &ref_at, &ref_message), tav_keys_check(script, NULL, text, 256, &need));
    EXPECT_INT(ref_at, offset);
    EXPECT_TEXT(ref_message, text);
    EXPECT_INT(wcslen(message) + 1, need);
}

static void test_keys_check(void) {
    static const struct {
        const wchar_t* script;
        int result;
        int offset;
        const wchar_t* message;
    } rows[] = {
        {L"abc{ENTR}", TAV_SKERR_INVALID_KEY, 3, L"unknown key name 'ENTR'"},
        {L"abc{ENTER", TAV_SKERR_MISSING_CLOSE_BRACE, 3, L"a { at 3 has no closing }"},
        {L"{ENTER x}", TAV_SKERR_INVALID_COUNT, 0, L"the count 'x' in {ENTER x} is not a number above 0"},
        {L"(ab", TAV_SKERR_MISSING_CLOSE_PAREN, 0, L"the group ( at 0 is not closed"},
        {L"{a 9999}", TAV_SKERR_STRING_TOO_LONG, 0, L"the script would need more than 6144 key entries"},
        {L"xy{INS}", TAV_SKERR_INVALID_KEY, 2, L"unknown key name 'INS' (the Insert key is {INSERT})"},
        {L"+(ab{SPACE})", TAV_SKERR_INVALID_KEY, 4, L"unknown key name 'SPACE' (a space is typed as a blank)"},
        {L"Hello, World!{ENTER}", TAV_SKERR_NONE, -1, L"types 14 keys"},
        {L"[^a]", TAV_SKERR_NONE, -1, L"holds 2 keys until released"},
        {L"{PostCommand 1f4}", TAV_SKERR_NONE, -1, L"carries out 1 window command and types nothing else"},
        {L"", TAV_SKERR_NONE, -1, L"types nothing"},
        {L"^x", TAV_SKERR_NONE, -1, L"presses Control+X"},
    };
    size_t i;
    int32_t at = 7;
    size_t need = 0;
    wchar_t small[4];
    for (i = 0; i < sizeof rows / sizeof rows[0]; ++i)
        check_script(rows[i].script, rows[i].result, rows[i].offset, rows[i].message);
    /* A message that does not fit: the copy's failure is the answer, the offset is still given. */
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL, tav_keys_check(L"abc{ENTR}", &at, small, 4, &need));
    EXPECT_INT(3, at);
    EXPECT_INT(24, need);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_check(NULL, NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_check(L"a", NULL, NULL, 8, NULL));
}

void test_keys(HWND edit) {
    typed_text typed;

    test_keys_check();

    check_parse(L"ab");
    check_parse(L"+(ab)~{TAB 3}");
    check_parse(L"[+a]");
    check_parse(L"{nosuchkey}");
    check_parse(L"{");
    EXPECT_INT(1, tav_keys_parse(L"{", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_parse(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_parse(L"a", NULL, 4, NULL));

    EXPECT_INT(VK_RETURN, tav_keys_lookup_name(L"ENTER"));
    EXPECT_INT(VK_F5, tav_keys_lookup_name(L"f5"));
    EXPECT_INT(0, tav_keys_lookup_name(L"nosuchkey"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_lookup_name(NULL));

    CHECK_TEXT(TAV_OK, L"50{%} {(}a{+}b{)}", tav_keys_escape, L"50% (a+b)");
    CHECK_TEXT(TAV_OK, L"", tav_keys_escape, L"");
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_escape(NULL, NULL, 0, NULL));

    /* A script with an error types nothing: SendKeys says 0, the run says why. */
    EXPECT_INT(ref_keys_run_result(L"{nosuchkey}"), tav_keys_run(L"{nosuchkey}"));
    EXPECT_INT(2, tav_keys_run(L"{nosuchkey}"));
    EXPECT_INT(0, tav_send_keys(L"{nosuchkey}"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_keys(NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_run(NULL));

    /* The in-progress marker: set, a busy answer that keeps it, cleared. */
    EXPECT_INT(TAV_OK, tav_send_keys_set_in_progress(5));
    EXPECT_INT(5, tav_send_keys_in_progress());
    EXPECT_INT(7, tav_send_keys(L"x"));
    EXPECT_INT(5, tav_send_keys_in_progress());
    /* The run is the one tav_send_keys carries out: it refuses as well, and says so. */
    EXPECT_INT(7, tav_keys_run(L"x"));
    EXPECT_INT(7, tav_keys_run_paced(L"x", 5));
    EXPECT_INT(5, tav_send_keys_in_progress());
    EXPECT_INT(TAV_OK, tav_send_keys_clear_in_progress());
    EXPECT_INT(0, tav_send_keys_in_progress());

    /* Real typing into the test window's edit control. */
    SetForegroundWindow(GetParent(edit));
    SetFocus(edit);
    SetWindowTextW(edit, L"");
    EXPECT_INT(0, tav_send_keys(L"Hi+(c)~"));
    typed.edit = edit;
    typed.expected = L"HiC\r\n";
    EXPECT_TRUE(wait_until(edit_shows, &typed, 10000));
    EXPECT_INT(0, tav_keys_run(L"x"));
    typed.expected = L"HiC\r\nx";
    EXPECT_TRUE(wait_until(edit_shows, &typed, 10000));

    /* Literal text, and paced typing. */
    EXPECT_INT(0, tav_send_text(L"a+b {x}\n"));
    typed.expected = L"HiC\r\nxa+b {x}\r\n";
    EXPECT_TRUE(wait_until(edit_shows, &typed, 10000));
    EXPECT_INT(0, tav_send_text_paced(L"\x00e9\x20ac", 5));
    typed.expected = L"HiC\r\nxa+b {x}\r\n\x00e9\x20ac";
    EXPECT_TRUE(wait_until(edit_shows, &typed, 10000));
    EXPECT_INT(0, tav_send_keys_paced(L"+(q)", 5));
    typed.expected = L"HiC\r\nxa+b {x}\r\n\x00e9\x20acQ";
    EXPECT_TRUE(wait_until(edit_shows, &typed, 10000));
    EXPECT_INT(0, tav_keys_run_paced(L"z", 0));
    typed.expected = L"HiC\r\nxa+b {x}\r\n\x00e9\x20acQz";
    EXPECT_TRUE(wait_until(edit_shows, &typed, 10000));
    EXPECT_INT(2, tav_keys_run_paced(L"{nosuchkey}", 5));
    EXPECT_INT(0, tav_send_keys_paced(L"{nosuchkey}", 5));
    EXPECT_INT(TAV_OK, tav_send_keys_set_in_progress(1));
    EXPECT_INT(7, tav_send_text(L"x"));
    EXPECT_INT(TAV_OK, tav_send_keys_set_in_progress(1));
    EXPECT_INT(7, tav_send_text_paced(L"x", 5));
    EXPECT_INT(TAV_OK, tav_send_keys_set_in_progress(1));
    EXPECT_INT(7, tav_send_keys_paced(L"x", 5));
    EXPECT_INT(TAV_OK, tav_send_keys_clear_in_progress());
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_text(NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_text_paced(NULL, 5));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_keys_paced(NULL, 5));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_run_paced(NULL, 5));
    typed.expected = L"HiC\r\nxa+b {x}\r\n\x00e9\x20acQz";
    EXPECT_TRUE(wait_until(edit_shows, &typed, 2000));

    /* Hold mode: a key pressed inside '[' stays down until everything is released. */
    EXPECT_INT(0, tav_send_keys(L"[a"));
    EXPECT_TRUE((GetAsyncKeyState('A') & 0x8000) != 0);
    EXPECT_INT(TAV_OK, tav_send_keys_release_all());
    EXPECT_INT(0, GetAsyncKeyState('A') & 0x8000);
    EXPECT_INT(0, tav_send_keys(L"]"));
}
