/* The C test program of the C interface (compiled as C11): calls every function of the C interface (one test function
 * per area header) with good input, comparing with what the C++ interface answers (Reference.h), and with bad input,
 * checking the documented codes and that no buffer is written past its capacity. Also the child process that the launch
 * tests start ("--child": ends at once). */
#include "CTests.h"

wchar_t g_self[MAX_PATH];
wchar_t g_scratch[MAX_PATH];

int wait_until(int (*condition)(void*), void* context, DWORD timeout_ms) {
    DWORD start = GetTickCount();
    MSG msg;
    for (;;) {
        if (condition(context))
            return 1;
        if (GetTickCount() - start > timeout_ms)
            return 0;
        while (PeekMessageW(&msg, NULL, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        /* Idle until a message arrives or 10 ms pass, then look again. */
        MsgWaitForMultipleObjects(0, NULL, FALSE, 10, QS_ALLINPUT);
    }
}

/* The test window. The foreground grabber taps Alt: that must not start the window's menu loop, which would
 * hold the thread until a key ends it. */
static LRESULT CALLBACK main_proc(HWND window, UINT message, WPARAM w, LPARAM l) {
    if (message == WM_SYSCOMMAND && (w & 0xFFF0) == SC_KEYMENU)
        return 0;
    return DefWindowProcW(window, message, w, l);
}

static int edit_has_focus(void* edit) { return GetForegroundWindow() == GetParent((HWND)edit); }

int wmain(int argc, wchar_t** argv) {
    HWND window;
    HWND edit;
    DWORD length;
    if (argc > 1 && wcscmp(argv[1], L"--child") == 0)
        return 0;

    setvbuf(stdout, NULL, _IONBF, 0);
    GetModuleFileNameW(NULL, g_self, MAX_PATH);
    length = GetTempPathW(MAX_PATH, g_scratch);
    swprintf(g_scratch + length, MAX_PATH - length, L"capi_c_tests_%lu\\", GetCurrentProcessId());
    CreateDirectoryW(g_scratch, NULL);

    {
        WNDCLASSW wc;
        memset(&wc, 0, sizeof wc);
        wc.lpfnWndProc = main_proc;
        wc.hInstance = GetModuleHandleW(NULL);
        wc.lpszClassName = L"capi_main";
        RegisterClassW(&wc);
    }
    window = CreateWindowExW(0, L"capi_main", L"capi test window", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 480, 300,
                             NULL, NULL, GetModuleHandleW(NULL), NULL);
    edit = CreateWindowExW(0, L"Edit", L"", WS_CHILD | WS_VISIBLE | ES_MULTILINE | ES_AUTOVSCROLL, 10, 10, 440, 240,
                           window, NULL, GetModuleHandleW(NULL), NULL);
    SetForegroundWindow(window);
    SetFocus(edit);
    wait_until(edit_has_focus, edit, 5000);

    puts("-- test_common");
    test_common();
    puts("-- test_strings");
    test_strings();
    puts("-- test_os");
    test_os();
    puts("-- test_log");
    test_log();
    puts("-- test_keys");
    test_keys(edit);
    puts("-- test_recorder");
    test_recorder(edit);
    puts("-- test_clipboard");
    test_clipboard();
    puts("-- test_foreground");
    test_foreground();
    puts("-- test_windows");
    test_windows(window, edit);
    puts("-- test_waits");
    test_waits(window);
    puts("-- test_sounds");
    test_sounds();
    puts("-- test_pickers");
    test_pickers();
    puts("-- test_launch");
    test_launch();
    puts("-- test_processes");
    test_processes(window);
    puts("-- test_registry");
    test_registry();
    puts("-- test_settings");
    test_settings();
    puts("-- test_paths");
    test_paths();
    puts("-- test_versions");
    test_versions();
    puts("-- test_textfile");
    test_textfile();
    puts("-- test_software");
    test_software();
    puts("-- test_com");
    test_com();
    puts("-- test_accounts");
    test_accounts();
    puts("-- test_support");
    test_support();
    puts("-- test_constants");
    test_constants();
    puts("-- test_stray_text");
    test_stray_text();

    DestroyWindow(window);
    printf("capi_c_tests: %d checks, %d failed\n", g_checks, g_failures);
    return g_failures == 0 ? 0 : 1;
}
