/* c/pickers.h: the file and folder pickers, driven by a thread of the test. */
#include "CTests.h"

#include <dlgs.h>

/* Drives the first dialog ("#32770") of the test's main thread that appears within `timeout_ms` (20 s): types
 * `file` into the file name box and confirms, or (file null) cancels. */
typedef struct dialog_action {
    DWORD thread;
    const wchar_t* file;
    HWND dialog;
    DWORD timeout_ms;
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
    if (!wait_until(dialog_found, action, action->timeout_ms))
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
    action->timeout_ms = 20000;
    return CreateThread(NULL, 0, drive_dialog, action, 0, NULL);
}

/* Watches for a dialog for two seconds, cancelling any that opens: a call that must not open one runs
 * meanwhile, and finish_watch says whether one opened. */
static HANDLE start_watch(dialog_action* action) {
    action->thread = GetCurrentThreadId();
    action->file = NULL;
    action->dialog = NULL;
    action->timeout_ms = 2000;
    return CreateThread(NULL, 0, drive_dialog, action, 0, NULL);
}

static void finish_watch(HANDLE watch) {
    DWORD cancelled = 1;
    WaitForSingleObject(watch, 30000);
    GetExitCodeThread(watch, &cancelled);
    CloseHandle(watch);
    EXPECT_INT(0, cancelled); /* no dialog opened */
}

static void finish_driver(HANDLE driver) {
    DWORD drove = 0;
    WaitForSingleObject(driver, 30000);
    GetExitCodeThread(driver, &drove);
    CloseHandle(driver);
    EXPECT_INT(1, drove);
}

void test_pickers(void) {
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_files(NULL, L"", L"", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_files(L"", NULL, L"", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_files(L"", L"", NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_files(L"", L"", L"", NULL, 260, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_folder(NULL, L"C:\\", NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_folder(L"", NULL, NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_folder(L"", L"C:\\", NULL, NULL, 260, NULL));
    wchar_t chosen[MAX_PATH];
    wchar_t existing[MAX_PATH];
    wchar_t start[MAX_PATH];
    size_t need = 0;
    dialog_action action;
    HANDLE driver;
    FILE* file;
    wchar_t* small;
    wchar_t* fetched;

    swprintf(existing, MAX_PATH, L"%lspicked.txt", g_scratch);
    file = _wfopen(existing, L"wb");
    fclose(file);

    driver = start_driver(&action, NULL);
    chosen[0] = L'x';
    EXPECT_INT(0, tav_picker_files(L"Text files|*.txt||", g_scratch, L"Pick a file", chosen, MAX_PATH, &need));
    finish_driver(driver);
    EXPECT_TEXT(L"", chosen);
    EXPECT_INT(1, need);

    driver = start_driver(&action, existing);
    EXPECT_INT(1, tav_picker_files(L"Text files|*.txt||", g_scratch, L"Pick a file", chosen, MAX_PATH, &need));
    finish_driver(driver);
    EXPECT_TRUE(_wcsicmp(existing, chosen) == 0);
    EXPECT_INT(wcslen(existing) + 1, need);

    /* The size query: a call whose buffer is too small opens the dialog once and keeps its answer; calls with
     * the same arguments give the kept answer without a dialog until it fits, and then it is forgotten. */
    driver = start_driver(&action, existing);
    need = 0;
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL,
               tav_picker_files(L"Text files|*.txt||", g_scratch, L"Size query", NULL, 0, &need));
    finish_driver(driver);
    EXPECT_INT(wcslen(existing) + 1, need);
    small = kit_buffer(need - 1);
    driver = start_watch(&action);
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL,
               tav_picker_files(L"Text files|*.txt||", g_scratch, L"Size query", small, need - 1, NULL));
    finish_watch(driver);
    EXPECT_TRUE(kit_intact(small, need - 1, 1));
    kit_release(small);
    fetched = kit_buffer(need);
    driver = start_watch(&action);
    EXPECT_INT(1, tav_picker_files(L"Text files|*.txt||", g_scratch, L"Size query", fetched, need, &need));
    finish_watch(driver);
    EXPECT_TRUE(_wcsicmp(existing, fetched) == 0);
    EXPECT_TRUE(kit_intact(fetched, need, 0));
    kit_release(fetched);
    /* Fetched: the next call asks the user again (who cancels). */
    driver = start_driver(&action, NULL);
    EXPECT_INT(0, tav_picker_files(L"Text files|*.txt||", g_scratch, L"Size query", chosen, MAX_PATH, &need));
    finish_driver(driver);
    EXPECT_TEXT(L"", chosen);
    /* A kept answer is for the same arguments only: other ones forget it and open the dialog anew. */
    driver = start_driver(&action, existing);
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL,
               tav_picker_files(L"Text files|*.txt||", g_scratch, L"Size query", NULL, 0, &need));
    finish_driver(driver);
    driver = start_driver(&action, NULL);
    EXPECT_INT(0, tav_picker_files(L"Text files|*.txt||", g_scratch, L"Another title", chosen, MAX_PATH, &need));
    finish_driver(driver);
    EXPECT_INT(1, need);
    driver = start_driver(&action, NULL);
    EXPECT_INT(0, tav_picker_files(L"Text files|*.txt||", g_scratch, L"Size query", chosen, MAX_PATH, &need));
    finish_driver(driver);

    /* A cancelled folder picker answers 0 and the folder as given. */
    wcscpy(start, g_scratch);
    start[wcslen(start) - 1] = 0;
    driver = start_driver(&action, NULL);
    EXPECT_INT(0, tav_picker_folder(L"Pick a folder", start, NULL, chosen, MAX_PATH, &need));
    finish_driver(driver);
    EXPECT_TEXT(start, chosen);
    DeleteFileW(existing);
}
