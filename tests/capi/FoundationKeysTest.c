/* Strings, the running Windows, logging and keystrokes. */
#include "CTests.h"

static int32_t service_pack(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_os_service_pack(buffer, capacity, needed);
}

static void check_cut(const wchar_t* text, int width) {
    size_t units;
    int pieces;
    const wchar_t* expected = ref_string_cut(text, width, &units, &pieces);
    wchar_t* out;
    CHECK_OUT(out, pieces, expected, units, tav_string_cut, text, width);
    kit_release(out);
}

void test_foundation(void) {
    int question;
    wchar_t* long_text;
    size_t i;

    EXPECT_INT(1, tav_c_interface_version());

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

    CHECK_TEXT(TAV_OK, L"abc", tav_set_string_length, L"abcdef", 3);
    CHECK_TEXT(TAV_OK, L"abcdef", tav_set_string_length, L"abcdef", 2000000000);
    CHECK_TEXT(TAV_OK, L"", tav_set_string_length, L"abcdef", -4);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_set_string_length(NULL, 3, NULL, 0, NULL));

    CHECK_TEXT(TAV_OK, L"C:\\a\\", tav_ensure_trailing_backslash, L"C:\\a");
    CHECK_TEXT(TAV_OK, L"C:\\a\\", tav_ensure_trailing_backslash, L"C:\\a\\");
    CHECK_TEXT(TAV_OK, L"\\", tav_ensure_trailing_backslash, L"");
    CHECK_TEXT(TAV_OK, L"C:\\a", tav_strip_trailing_backslash, L"C:\\a\\");
    CHECK_TEXT(TAV_OK, L"\\", tav_strip_trailing_backslash, L"\\");
    CHECK_TEXT(TAV_OK, L"", tav_strip_trailing_backslash, L"");
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_ensure_trailing_backslash(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_strip_trailing_backslash(NULL, NULL, 0, NULL));

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
    EXPECT_INT(ref_platform_classification(), tav_platform_classification());
    EXPECT_INT(ref_platform_is_win9x(), tav_platform_is_win9x());
    EXPECT_INT(ref_vista_is_vista(), tav_vista_is_vista());
    EXPECT_INT(ref_vista_is_dwm_composition_enabled(), tav_vista_is_dwm_composition_enabled());
}

static char* read_file_bytes(const wchar_t* path) {
    FILE* file = _wfopen(path, L"rb");
    char* bytes = (char*)calloc(65537, 1);
    if (file != NULL) {
        fread(bytes, 1, 65536, file);
        fclose(file);
    }
    return bytes;
}

void test_logging(void) {
    wchar_t path[MAX_PATH];
    wchar_t missing[MAX_PATH];
    wchar_t lookups[MAX_PATH];
    char* bytes;
    int level;

    swprintf(path, MAX_PATH, L"%lslog.txt", g_scratch);
    swprintf(missing, MAX_PATH, L"%lsno\\such\\folder\\log.txt", g_scratch);
    swprintf(lookups, MAX_PATH, L"%lslookups.txt", g_scratch);

    EXPECT_INT(1, tav_log_set_output(TAV_LOG_TO_FILE, path));
    EXPECT_INT(TAV_OK, tav_log_set_reporting_level(2));
    EXPECT_INT(2, tav_log_reporting_level());
    EXPECT_INT(1, tav_log_write(2, L"capi.c", 42, L"test_logging", L"from C"));
    EXPECT_INT(0, tav_log_write(3, L"capi.c", 43, L"test_logging", L"filtered out"));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_log_write(8, L"capi.c", 1, L"f", L"m"));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_log_write(-1, L"capi.c", 1, L"f", L"m"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_log_write(0, NULL, 1, L"f", L"m"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_log_write(0, L"capi.c", 1, NULL, L"m"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_log_write(0, L"capi.c", 1, L"f", NULL));
    /* A file that cannot be opened keeps the output as it was. */
    EXPECT_INT(0, tav_log_set_output(TAV_LOG_TO_FILE, missing));
    EXPECT_INT(1, tav_log_write(0, L"capi.c", 44, L"test_logging", L"still to the file"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_log_set_output(TAV_LOG_TO_FILE, NULL));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_log_set_output(3, NULL));
    EXPECT_INT(1, tav_log_set_output(TAV_LOG_TO_NONE, NULL));
    EXPECT_INT(1, tav_log_write(0, L"capi.c", 45, L"test_logging", L"nowhere"));

    bytes = read_file_bytes(path);
    EXPECT_TRUE(strstr(bytes, "level=\"INFO   \"") != NULL);
    EXPECT_TRUE(strstr(bytes, "filename=\"capi.c\" linenumber=\"42\" function=\"test_logging\" message=\"from C\"") !=
                NULL);
    EXPECT_TRUE(strstr(bytes, "still to the file") != NULL);
    EXPECT_TRUE(strstr(bytes, "filtered out") == NULL);
    EXPECT_TRUE(strstr(bytes, "nowhere") == NULL);
    free(bytes);

    CHECK_TEXT(TAV_OK, L"INFO   ", tav_log_level_name, 2);
    CHECK_TEXT(TAV_OK, L"ERROR  ", tav_log_level_name, 0);
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_log_level_name(8, NULL, 0, NULL));
    EXPECT_INT(3, tav_log_level_from_name(L"DEBUG"));
    EXPECT_INT(2, tav_log_level_from_name(L"debug")); /* exact match only: anything else is INFO */
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_log_level_from_name(NULL));

    /* A name lookup writes nothing to the log; an unknown name writes its warning, one record and no more. */
    DeleteFileW(lookups);
    EXPECT_INT(1, tav_log_set_output(TAV_LOG_TO_FILE, lookups));
    EXPECT_INT(7, tav_log_level_from_name(L"DEBUG4"));
    EXPECT_INT(2, tav_log_level_from_name(L"INFO"));
    EXPECT_INT(0, tav_log_level_from_name(L"ERROR"));
    EXPECT_INT(1, tav_log_set_output(TAV_LOG_TO_NONE, NULL));
    bytes = read_file_bytes(lookups);
    EXPECT_INT(0, (int)strlen(bytes));
    free(bytes);
    EXPECT_INT(1, tav_log_set_output(TAV_LOG_TO_FILE, lookups));
    EXPECT_INT(2, tav_log_level_from_name(L"Info"));
    EXPECT_INT(1, tav_log_set_output(TAV_LOG_TO_NONE, NULL));
    bytes = read_file_bytes(lookups);
    EXPECT_TRUE(strncmp(bytes, "\t<log time=", 11) == 0);
    EXPECT_TRUE(strstr(bytes, "message=\"Unknown logging level 'Info'. Using INFO level as default.\"/>") != NULL);
    EXPECT_TRUE(strstr(bytes, "\"/>") == strrchr(bytes, '/') - 1); /* one record's end */
    EXPECT_TRUE(strchr(bytes, '\n') == bytes + strlen(bytes) - 1); /* one line */
    free(bytes);
    DeleteFileW(lookups);

    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_log_set_reporting_level(8));
    EXPECT_INT(2, tav_log_reporting_level());

    EXPECT_INT(TAV_OK, tav_log_set_debugger_copy(1));
    EXPECT_INT(1, tav_log_debugger_copy());
    EXPECT_INT(TAV_OK, tav_log_set_debugger_copy(0));
    EXPECT_INT(0, tav_log_debugger_copy());

    for (level = 0; level <= 7; ++level)
        EXPECT_INT(TAV_OK, tav_log_set_reporting_level(level));
    EXPECT_INT(7, tav_log_reporting_level());
    EXPECT_INT(1, tav_log_set_output(TAV_LOG_TO_STDERR, NULL));
    DeleteFileW(path);
}

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

    CHECK_TEXT(TAV_OK, L"50{%} {(}a{+}b{)}", tav_send_keys_escape, L"50% (a+b)");
    CHECK_TEXT(TAV_OK, L"", tav_send_keys_escape, L"");
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_keys_escape(NULL, NULL, 0, NULL));

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
