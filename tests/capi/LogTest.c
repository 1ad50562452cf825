/* c/log.h: records, levels and outputs. */
#include "CTests.h"

static char* read_file_bytes(const wchar_t* path) {
    FILE* file = _wfopen(path, L"rb");
    char* bytes = (char*)calloc(65537, 1);
    if (file != NULL) {
        fread(bytes, 1, 65536, file);
        fclose(file);
    }
    return bytes;
}

void test_log(void) {
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
