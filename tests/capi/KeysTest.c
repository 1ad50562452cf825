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

void test_keys(HWND edit) {
    typed_text typed;

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

    /* Typing with options: null or all zero is the plain call; an older size or an unknown flag is refused
       before anything is typed. */
    {
        tav_send_options options;
        memset(&options, 0, sizeof options);
        EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_keys_ex(NULL, NULL));
        EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_text_ex(NULL, &options));
        options.size = TAV_SEND_OPTIONS_SIZE_1 - 4;
        EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_send_keys_ex(L"no", &options));
        EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_send_text_ex(L"no", &options));
        options.size = sizeof options;
        options.flags = 0x4;
        EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_send_keys_ex(L"no", &options));
        EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_send_text_ex(L"no", &options));
        options.flags = 0;
        EXPECT_INT(0, tav_send_keys_ex(L"k", NULL));
        EXPECT_INT(0, tav_send_text_ex(L"l", &options));
        options.flags = TAV_SEND_WAIT_FOR_RELEASE | TAV_SEND_RELEASE_MODIFIERS;
        options.key_delay_ms = 5;
        options.key_hold_ms = 5;
        options.wait_release_ms = 100;
        EXPECT_INT(0, tav_send_keys_ex(L"+(m)", &options));
        EXPECT_INT(0, tav_send_text_ex(L"n", &options));
        typed.expected = L"HiC\r\nxa+b {x}\r\n\x00e9\x20acQzklMn";
        EXPECT_TRUE(wait_until(edit_shows, &typed, 10000));
        EXPECT_INT(TAV_OK, tav_send_keys_set_in_progress(1));
        EXPECT_INT(7, tav_send_keys_ex(L"x", &options));
        EXPECT_INT(TAV_OK, tav_send_keys_set_in_progress(1));
        EXPECT_INT(7, tav_send_text_ex(L"x", NULL));
        EXPECT_INT(TAV_OK, tav_send_keys_clear_in_progress());
    }

    /* Hold mode: a key pressed inside '[' stays down until everything is released. */
    EXPECT_INT(0, tav_send_keys(L"[a"));
    EXPECT_TRUE((GetAsyncKeyState('A') & 0x8000) != 0);
    EXPECT_INT(TAV_OK, tav_send_keys_release_all());
    EXPECT_INT(0, GetAsyncKeyState('A') & 0x8000);
    EXPECT_INT(0, tav_send_keys(L"]"));
}
