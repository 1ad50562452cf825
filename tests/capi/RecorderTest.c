/* c/recorder.h: recording a script by typing it. The typing is the library's own (injected events): the
 * round trip with keys a person presses is tested in tests/keys. */
#include "CTests.h"

typedef struct recorded {
    tav_recorder recorder;
    size_t length;
} recorded;

static int script_has_length(void* context) {
    recorded* r = (recorded*)context;
    size_t need = 0;
    tav_recorder_script(r->recorder, NULL, 0, &need);
    return need == r->length + 1;
}

void test_recorder(HWND edit) {
    tav_recorder recorder;
    tav_recorder ignoring;
    recorded r;
    wchar_t small[4];
    size_t need = 0;

    EXPECT_TRUE(tav_recorder_begin(0x2) == NULL);
    EXPECT_TRUE(tav_recorder_begin(0x80000000u) == NULL);
    EXPECT_INT(TAV_OK, tav_recorder_end(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_recorder_script(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_recorder_skipped(NULL));

    recorder = tav_recorder_begin(0);
    ignoring = tav_recorder_begin(TAV_RECORD_IGNORE_INJECTED);
    EXPECT_TRUE(recorder != NULL);
    EXPECT_TRUE(ignoring != NULL);
    if (recorder == NULL || ignoring == NULL) {
        tav_recorder_end(recorder);
        tav_recorder_end(ignoring);
        return;
    }
    CHECK_TEXT(TAV_OK, L"", tav_recorder_script, recorder);
    EXPECT_INT(0, tav_recorder_skipped(recorder));

    SetWindowTextW(edit, L"");
    /* Typed by the library, seen by the hook while this thread pumps: Shift folded into the character, the
     * language's characters in braces, a run of a named key counted, Enter as ~. Shift pressed alone is
     * left out and counted. */
    EXPECT_INT(TAV_SKERR_NONE, tav_send_keys(L"Ab{+}{TAB 3}~+"));
    r.recorder = recorder;
    r.length = wcslen(L"Ab{+}{TAB 3}~");
    EXPECT_TRUE(wait_until(script_has_length, &r, 10000));
    CHECK_TEXT(TAV_OK, L"Ab{+}{TAB 3}~", tav_recorder_script, recorder);
    EXPECT_INT(1, tav_recorder_skipped(recorder));
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL, tav_recorder_script(recorder, small, 4, &need));
    EXPECT_INT(r.length + 1, need);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_recorder_script(recorder, NULL, 4, NULL));

    /* The recorder that leaves out injected events saw none of it. */
    CHECK_TEXT(TAV_OK, L"", tav_recorder_script, ignoring);
    EXPECT_INT(0, tav_recorder_skipped(ignoring));

    EXPECT_INT(TAV_OK, tav_recorder_end(ignoring));
    EXPECT_INT(TAV_OK, tav_recorder_end(recorder));
    SetWindowTextW(edit, L""); /* the typing went into the Edit in front */
}
