/* c/launch.h: command lines, execution, messengers. */
#include "CTests.h"

static int32_t messengers(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_launch_messengers_available(buffer, capacity, needed);
}

static int32_t pv_app(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_launch_is_pv_app_installed(buffer, capacity, needed);
}

static int child_window_shown(void* found) {
    *(HWND*)found = FindWindowW(L"Notepad", NULL);
    return *(HWND*)found != NULL;
}

static void check_extract(const wchar_t* line) {
    const wchar_t* program;
    const wchar_t* args;
    wchar_t program_out[MAX_PATH + 50];
    wchar_t args_out[MAX_PATH + 50];
    size_t program_need = 0;
    size_t args_need = 0;
    wchar_t* small;
    const int split = ref_extract_program(line, &program, &args);
    EXPECT_INT(split, tav_launch_extract_program(line, program_out, MAX_PATH + 50, &program_need, args_out,
                                                 MAX_PATH + 50, &args_need));
    EXPECT_TEXT(program, program_out);
    EXPECT_TEXT(args, args_out);
    EXPECT_INT(wcslen(program) + 1, program_need);
    EXPECT_INT(wcslen(args) + 1, args_need);
    /* One output too small: neither is written. */
    small = kit_buffer(args_need - 1);
    program_out[0] = L'#';
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL,
               tav_launch_extract_program(line, program_out, MAX_PATH + 50, NULL, small, args_need - 1, NULL));
    EXPECT_TRUE(kit_intact(small, args_need - 1, 1));
    EXPECT_INT(L'#', program_out[0]);
    kit_release(small);
}

void test_launch(void) {
    wchar_t line[MAX_PATH + 40];
    tav_handle process = NULL;
    HWND child = NULL;
    int units;
    size_t list_units;
    int count;
    const wchar_t* expected;

    swprintf(line, MAX_PATH + 40, L"%ls --child now", g_self);
    check_extract(line);
    check_extract(L"C:\\windows\\system32\\notepad.exe some.txt");
    check_extract(L"no_such_program.exe arg");
    check_extract(L"");
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_extract_program(NULL, NULL, 0, NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_extract_program(L"x", NULL, 5, NULL, NULL, 0, NULL));

    CHECK_TEXT(TAV_OK, ref_strip_trailing_argument(L"\"C:\\a b\\x.exe\" -y"), tav_launch_strip_trailing_argument,
               L"\"C:\\a b\\x.exe\" -y");
    CHECK_TEXT(TAV_OK, ref_strip_trailing_argument(L"C:\\ab\\x.exe -y z"), tav_launch_strip_trailing_argument,
               L"C:\\ab\\x.exe -y z");
    EXPECT_INT(TAV_E_OUT_OF_RANGE, tav_launch_strip_trailing_argument(L"ab c", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_strip_trailing_argument(NULL, NULL, 0, NULL));

    EXPECT_INT(1, tav_launch_is_valid_file(L"notepad.exe", 0));
    EXPECT_INT(1, tav_launch_is_valid_file(L"C:\\windows\\system32\\notepad.exe -x", 1));
    EXPECT_INT(0, tav_launch_is_valid_file(L"capi_no_such_file.exe", 0));
    EXPECT_INT(TAV_E_OUT_OF_RANGE, tav_launch_is_valid_file(L"ab c", 1));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_is_valid_file(NULL, 0));

    /* Starting this program as a child that ends at once: the handle comes out and is ours to close. */
    EXPECT_INT(1, tav_launch_program(g_self, L"--child", SW_HIDE, 0, &process));
    EXPECT_TRUE(process != NULL);
    if (process != NULL) {
        EXPECT_INT(WAIT_OBJECT_0, WaitForSingleObject(process, 20000));
        /* An ended process is not brought to the front. */
        EXPECT_INT(0, tav_launch_bring_to_foreground(GetProcessId(process), process));
        EXPECT_INT(1, tav_launch_close_handle(process));
    }
    swprintf(line, MAX_PATH + 40, L"%ls --child", g_self);
    process = NULL;
    EXPECT_INT(1, tav_launch_command_line(line, SW_HIDE, 0, &process));
    EXPECT_TRUE(process != NULL);
    if (process != NULL) {
        EXPECT_INT(WAIT_OBJECT_0, WaitForSingleObject(process, 20000));
        EXPECT_INT(1, tav_launch_close_handle(process));
    }
    EXPECT_INT(0, tav_launch_command_line(L"", SW_HIDE, 0, &process));
    EXPECT_TRUE(process == NULL);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_command_line(NULL, SW_HIDE, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_program(NULL, L"", SW_HIDE, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_program(g_self, NULL, SW_HIDE, 0, NULL));
    EXPECT_INT(0, tav_launch_close_handle(NULL));

    /* A program with a window (a console program never becomes idle for input): started and waited for,
     * then brought to the front again. */
    EXPECT_INT(1, tav_launch_and_wait_for_init(L"notepad.exe", SW_SHOWNORMAL));
    EXPECT_TRUE(wait_until(child_window_shown, &child, 20000));
    if (child != NULL) {
        DWORD pid = 0;
        GetWindowThreadProcessId(child, &pid);
        SetForegroundWindow(FindWindowW(L"capi_main", NULL));
        EXPECT_INT(1, tav_launch_bring_to_foreground(pid, NULL));
        PostMessageW(child, WM_CLOSE, 0, 0);
    }
    EXPECT_INT(0, tav_launch_and_wait_for_init(L"C:\\capi\\no_such_program.exe", SW_SHOWNORMAL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_and_wait_for_init(NULL, SW_SHOWNORMAL));
    SetForegroundWindow(FindWindowW(L"capi_main", NULL));

    expected = ref_messengers(&list_units, &count);
    {
        wchar_t* out;
        CHECK_OUT(out, count, expected, list_units, messengers, 0);
        kit_release(out);
    }
    EXPECT_INT(0, tav_launch_messenger(L"No Such Messenger"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_messenger(NULL));
    units = ref_is_pv_app_installed(&expected);
    CHECK_TEXT(units, expected, pv_app, 0);
}
