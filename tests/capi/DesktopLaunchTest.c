/* Clipboard, foreground, windows, waits, sounds, pickers, launching and processes. */
#include "CTests.h"

#include <dlgs.h>

static int32_t clipboard_text(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_clipboard_get_text(buffer, capacity, needed);
}

static int32_t application_name(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_sound_application_name(buffer, capacity, needed);
}

/* A 44-byte header and 8 silent samples. */
static void write_wave(const wchar_t* path) {
    static const unsigned char header[44] = {'R', 'I', 'F', 'F', 44, 0, 0,   0,   'W', 'A',  'V',  'E', 'f', 'm',  't',
                                             ' ', 16,  0,   0,   0,  1, 0,   1,   0,   0x40, 0x1f, 0,   0,   0x80, 0x3e,
                                             0,   0,   2,   0,   16, 0, 'd', 'a', 't', 'a',  16,   0,   0,   0};
    static const unsigned char samples[16] = {0};
    FILE* file = _wfopen(path, L"wb");
    fwrite(header, 1, sizeof header, file);
    fwrite(samples, 1, sizeof samples, file);
    fclose(file);
}

static void test_sounds(void) {
    wchar_t wave[MAX_PATH];
    wchar_t key[400];
    HKEY handle;
    tav_sound sound = tav_sound_create();
    const wchar_t* app = ref_sound_application_name();

    CHECK_TEXT(TAV_OK, app, application_name, 0);
    EXPECT_TRUE(wcscmp(app, L"capi_c_tests") == 0);
    EXPECT_TRUE(sound != NULL);
    EXPECT_INT(0, tav_sound_play(sound, L"CapiNoSuchEvent", TAV_SOUND_ASYNC));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_sound_play(sound, L"CapiNoSuchEvent", 3));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_sound_play(sound, L"CapiNoSuchEvent", -1));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_sound_play(sound, NULL, TAV_SOUND_ASYNC));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_sound_play(NULL, L"CapiEvent", TAV_SOUND_ASYNC));

    /* A registered sound plays asynchronously (there is no sound device: the start is what is seen). */
    swprintf(wave, MAX_PATH, L"%lsbeep.wav", g_scratch);
    write_wave(wave);
    swprintf(key, 400, L"AppEvents\\Schemes\\Apps\\%ls\\CapiEvent\\.Current", app);
    if (RegCreateKeyExW(HKEY_CURRENT_USER, key, 0, NULL, 0, KEY_ALL_ACCESS, NULL, &handle, NULL) == 0) {
        RegSetValueExW(handle, NULL, 0, REG_SZ, (const BYTE*)wave, (DWORD)((wcslen(wave) + 1) * sizeof(wchar_t)));
        RegCloseKey(handle);
    }
    EXPECT_INT(1, tav_sound_play(sound, L"CapiEvent", TAV_SOUND_LOOP));
    EXPECT_INT(0, tav_sound_is_repeating(sound)); /* no play sets the flag */
    EXPECT_INT(TAV_OK, tav_sound_stop(sound));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_sound_stop(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_sound_is_repeating(NULL));
    tav_sound_destroy(sound);
    tav_sound_destroy(NULL);
    swprintf(key, 400, L"AppEvents\\Schemes\\Apps\\%ls", app);
    RegDeleteTreeW(HKEY_CURRENT_USER, key);
    DeleteFileW(wave);
}

static int queue_settled(void* quiet_rounds) {
    /* wait_until pumps before each look: true after three looks in a row found nothing queued */
    MSG msg;
    int* rounds = (int*)quiet_rounds;
    *rounds = PeekMessageW(&msg, NULL, 0, 0, PM_NOREMOVE) ? 0 : *rounds + 1;
    return *rounds >= 3;
}

static void test_waits(HWND window) {
    MSG msg;
    int quiet_rounds = 0;
    tav_wait wait = tav_wait_create();
    /* The input of the typing tests is consumed first: the waits below look at the queue themselves. */
    wait_until(queue_settled, &quiet_rounds, 3000);
    EXPECT_TRUE(wait != NULL);
    EXPECT_INT(0, tav_wait_status(wait));
    EXPECT_INT(2, tav_wait_wait(wait, 50, 10, 0));
    EXPECT_INT(2, tav_wait_status(wait));
    EXPECT_INT(2, tav_wait_wait(wait, 5000, 10, 0)); /* a finished wait answers at once */
    EXPECT_INT(2, tav_wait_abort(wait));             /* a finished status is kept */
    EXPECT_INT(TAV_OK, tav_wait_init(wait));
    EXPECT_INT(0, tav_wait_status(wait));
    EXPECT_INT(1, tav_wait_abort(wait));
    EXPECT_INT(1, tav_wait_wait(wait, 5000, 10, 0)); /* an abort before the wait is not lost */
    EXPECT_INT(TAV_OK, tav_wait_init(wait));
    PostQuitMessage(0);
    EXPECT_INT(3, tav_wait_wait(wait, 10000, 10, 0));
    EXPECT_TRUE(PeekMessageW(&msg, NULL, WM_QUIT, WM_QUIT, PM_REMOVE)); /* left queued */
    EXPECT_INT(TAV_OK, tav_wait_init(wait));
    PostMessageW(window, WM_COMMAND, 1, 0);
    EXPECT_INT(4, tav_wait_wait(wait, 10000, 10, 1));
    EXPECT_TRUE(PeekMessageW(&msg, NULL, WM_COMMAND, WM_COMMAND, PM_REMOVE));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_wait_wait(NULL, 10, 10, 0));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_wait_abort(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_wait_init(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_wait_status(NULL));
    tav_wait_destroy(wait);
    tav_wait_destroy(NULL);
}

void test_desktop(HWND window, HWND edit) {
    tav_grabber grabber;
    int attached;
    wchar_t number[32];

    EXPECT_INT(1, tav_clipboard_set_text(L"from C: \x00e9\x20ac"));
    CHECK_TEXT(1, L"from C: \x00e9\x20ac", clipboard_text, 0);
    EXPECT_INT(1, tav_clipboard_set_text(L""));
    CHECK_TEXT(1, L"", clipboard_text, 0);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_clipboard_set_text(NULL));

    grabber = tav_foreground_grabber_begin();
    EXPECT_TRUE(grabber != NULL);
    attached = tav_foreground_grabber_is_attached(grabber);
    EXPECT_TRUE(attached == 0 || attached == 1);
    EXPECT_INT(0, attached); /* this process owns the foreground: nothing to attach to */
    tav_foreground_grabber_end(grabber);
    tav_foreground_grabber_end(NULL);
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_foreground_grabber_is_attached(NULL));

    EXPECT_TRUE(tav_window_focus_window(window) == ref_focus_window(window));
    EXPECT_TRUE(tav_window_child_by_class(window, L"EDIT") == edit);
    EXPECT_TRUE(tav_window_child_by_class(window, L"NoSuchClass") == NULL);
    EXPECT_TRUE(tav_window_child_by_class(window, NULL) == NULL);
    EXPECT_TRUE(tav_window_child_by_class(NULL, L"Edit") == NULL || 1);
    swprintf(number, 32, L"%d", (int)(intptr_t)window);
    CHECK_TEXT(TAV_OK, number, tav_window_handle_to_text, window);
    EXPECT_TEXT(ref_handle_to_text(window), number);
    CHECK_TEXT(TAV_OK, L"0", tav_window_handle_to_text, NULL);
    EXPECT_TRUE(tav_wait_foreground_window() == GetForegroundWindow());

    test_waits(window);
    test_sounds();
}

/* Drives the first dialog ("#32770") of the test's main thread that appears within 20 s: types `file` into
 * the file name box and confirms, or (file null) cancels. */
typedef struct dialog_action {
    DWORD thread;
    const wchar_t* file;
    HWND dialog;
} dialog_action;

static BOOL CALLBACK find_dialog(HWND window, LPARAM context) {
    dialog_action* action = (dialog_action*)context;
    wchar_t name[16];
    if (GetClassNameW(window, name, 16) && wcscmp(name, L"#32770") == 0 && IsWindowVisible(window)) {
        action->dialog = window;
        return FALSE;
    }
    return TRUE;
}

static int dialog_found(void* context) {
    dialog_action* action = (dialog_action*)context;
    EnumThreadWindows(action->thread, find_dialog, (LPARAM)action);
    return action->dialog != NULL;
}

static HWND file_name_box(HWND dialog) {
    HWND box = GetDlgItem(dialog, cmb13);
    return box != NULL ? box : GetDlgItem(dialog, edt1);
}

static int file_name_box_shown(void* context) {
    HWND box = file_name_box(((dialog_action*)context)->dialog);
    return box != NULL && IsWindowVisible(box);
}

static DWORD WINAPI drive_dialog(void* context) {
    dialog_action* action = (dialog_action*)context;
    if (!wait_until(dialog_found, action, 20000))
        return 0;
    if (action->file == NULL || !wait_until(file_name_box_shown, action, 10000)) {
        PostMessageW(action->dialog, WM_COMMAND, IDCANCEL, 0);
        return action->file == NULL;
    }
    SendMessageW(file_name_box(action->dialog), WM_SETTEXT, 0, (LPARAM)action->file);
    PostMessageW(action->dialog, WM_COMMAND, IDOK, 0);
    return 1;
}

static HANDLE start_driver(dialog_action* action, const wchar_t* file) {
    action->thread = GetCurrentThreadId();
    action->file = file;
    action->dialog = NULL;
    return CreateThread(NULL, 0, drive_dialog, action, 0, NULL);
}

static void finish_driver(HANDLE driver) {
    DWORD drove = 0;
    WaitForSingleObject(driver, 30000);
    GetExitCodeThread(driver, &drove);
    CloseHandle(driver);
    EXPECT_INT(1, drove);
}

void test_pickers(void) {
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_browse_files(NULL, L"", L"", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_browse_files(L"", NULL, L"", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_browse_files(L"", L"", NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_browse_files(L"", L"", L"", NULL, 260, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_browse_for_folder(NULL, L"C:\\", NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_browse_for_folder(L"", NULL, NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_browse_for_folder(L"", L"C:\\", NULL, NULL, 260, NULL));
    wchar_t chosen[MAX_PATH];
    wchar_t existing[MAX_PATH];
    wchar_t start[MAX_PATH];
    size_t need = 0;
    dialog_action action;
    HANDLE driver;
    FILE* file;

    swprintf(existing, MAX_PATH, L"%lspicked.txt", g_scratch);
    file = _wfopen(existing, L"wb");
    fclose(file);

    driver = start_driver(&action, NULL);
    chosen[0] = L'x';
    EXPECT_INT(0, tav_browse_files(L"Text files|*.txt||", g_scratch, L"Pick a file", chosen, MAX_PATH, &need));
    finish_driver(driver);
    EXPECT_TEXT(L"", chosen);
    EXPECT_INT(1, need);

    driver = start_driver(&action, existing);
    EXPECT_INT(1, tav_browse_files(L"Text files|*.txt||", g_scratch, L"Pick a file", chosen, MAX_PATH, &need));
    finish_driver(driver);
    EXPECT_TRUE(_wcsicmp(existing, chosen) == 0);
    EXPECT_INT(wcslen(existing) + 1, need);

    /* A cancelled folder picker answers 0 and the folder as given. */
    wcscpy(start, g_scratch);
    start[wcslen(start) - 1] = 0;
    driver = start_driver(&action, NULL);
    EXPECT_INT(0, tav_browse_for_folder(L"Pick a folder", start, NULL, chosen, MAX_PATH, &need));
    finish_driver(driver);
    EXPECT_TEXT(start, chosen);
    DeleteFileW(existing);
}
