/* c/paths.h: paths as text. */
#include "CTests.h"

static int32_t exe_dir(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_path_exe_dir(buffer, capacity, needed);
}

void test_paths(void) {
    wchar_t too_long[400];
    wchar_t dir[64];
    wchar_t file[64];
    size_t dir_need = 0;
    size_t file_need = 0;
    wchar_t* small;
    wchar_t folder[MAX_PATH];
    int i;

    CHECK_TEXT(TAV_OK, L"C:", tav_path_drive, L"C:\\dir\\sub\\file.txt");
    CHECK_TEXT(TAV_OK, L"\\dir\\sub\\", tav_path_dir_no_drive, L"C:\\dir\\sub\\file.txt");
    CHECK_TEXT(TAV_OK, L"file", tav_path_file, L"C:\\dir\\sub\\file.txt");
    CHECK_TEXT(TAV_OK, L".txt", tav_path_extension, L"C:\\dir\\sub\\file.txt");
    CHECK_TEXT(TAV_OK, L"C:\\dir\\sub\\", tav_path_dir, L"C:\\dir\\sub\\file.txt");
    CHECK_TEXT(TAV_OK, L"", tav_path_drive, L"relative\\x.txt");
    /* Over-long paths do not fit the platform's sizes: empty parts. */
    for (i = 0; i < 399; ++i)
        too_long[i] = (i % 50 == 49) ? L'\\' : L'd';
    too_long[399] = 0;
    CHECK_TEXT(TAV_OK, L"", tav_path_dir, too_long);
    CHECK_TEXT(TAV_OK, L"", tav_path_file, too_long);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_drive(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_dir_no_drive(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_file(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_extension(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_dir(NULL, NULL, 0, NULL));

    EXPECT_INT(TAV_OK, tav_path_split(L"C:\\dir\\file.txt", dir, 64, &dir_need, file, 64, &file_need));
    EXPECT_TEXT(L"C:\\dir\\", dir);
    EXPECT_TEXT(L"file.txt", file);
    EXPECT_INT(8, dir_need);
    EXPECT_INT(9, file_need);
    small = kit_buffer(8);
    dir[0] = L'#';
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL, tav_path_split(L"C:\\dir\\file.txt", dir, 64, NULL, small, 8, NULL));
    EXPECT_TRUE(kit_intact(small, 8, 1));
    EXPECT_INT(L'#', dir[0]);
    kit_release(small);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_split(NULL, dir, 64, NULL, file, 64, NULL));

    CHECK_TEXT(TAV_OK, ref_path_compose(L"C:\\dir", L"file", L".txt"), tav_path_compose, L"C:\\dir", L"file", L".txt");
    CHECK_TEXT(TAV_OK, ref_path_compose(L"C:\\dir\\x.ini", L"file", L".txt"), tav_path_compose, L"C:\\dir\\x.ini",
               L"file", L".txt");
    CHECK_TEXT(TAV_OK, ref_path_beside_exe(L"notes", L".txt"), tav_path_beside_exe, L"notes", L".txt");
    CHECK_TEXT(TAV_OK, ref_path_exe_dir(), exe_dir, 0);
    CHECK_TEXT(TAV_OK, L"C:\\a\\c.ini", tav_path_from_path_and_file, L"C:\\a\\b.txt", L"c", L".ini");
    CHECK_TEXT(TAV_OK, L"C:\\a\\c.ini", tav_path_set_filename, L"C:\\a\\b.txt", L"c", L".ini");
    CHECK_TEXT(TAV_OK, L"C:\\a\\b", tav_path_append_directory, L"C:\\a", L"b");
    CHECK_TEXT(TAV_OK, L"C:\\a\\b", tav_path_append_directory, L"C:\\a\\", L"b");
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_compose(NULL, L"f", L".x", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_compose(L"C:\\", NULL, L".x", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_beside_exe(NULL, L".x", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_exe_dir(NULL, 4, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_from_path_and_file(L"C:\\", L"f", NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_set_filename(L"C:\\", NULL, L".x", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_append_directory(L"C:\\", NULL, NULL, 0, NULL));

    CHECK_TEXT(1, L"a.b", tav_path_strip_extension, L"a.b.c");
    CHECK_TEXT(0, L"abc", tav_path_strip_extension, L"abc");
    CHECK_TEXT(1, L"C:\\a", tav_path_strip_trailing_separator, L"C:\\a\\");
    CHECK_TEXT(0, L"C:\\a", tav_path_strip_trailing_separator, L"C:\\a");
    EXPECT_INT(TAV_E_OUT_OF_RANGE, tav_path_strip_trailing_separator(L"", NULL, 0, NULL));
    CHECK_TEXT(1, L"b.txt", tav_path_strip_path, L"C:\\a\\b.txt");
    CHECK_TEXT(0, L"b.txt", tav_path_strip_path, L"b.txt");
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_strip_extension(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_strip_trailing_separator(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_strip_path(NULL, NULL, 0, NULL));

    EXPECT_INT(1, tav_path_file_exists(L"C:\\windows\\system32\\kernel32.dll"));
    EXPECT_INT(1, tav_path_file_exists(L"C:\\windows\\system32\\kernel3?.dll"));
    EXPECT_INT(0, tav_path_file_exists(L"C:\\capi\\nothing.here"));
    EXPECT_INT(1, tav_path_exists(L"C:\\windows\\system32\\kernel32.dll"));
    EXPECT_INT(0, tav_path_exists(L"C:\\capi\\nothing.here"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_file_exists(NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_exists(NULL));
    swprintf(folder, MAX_PATH, L"%lsmade\\deeper\\file.txt", g_scratch);
    EXPECT_TRUE(tav_path_create_directory(folder, 1) != 0);
    EXPECT_INT(0, tav_path_create_directory(folder, 1)); /* exists already: not created by this call */
    swprintf(folder, MAX_PATH, L"%lsmade\\deeper", g_scratch);
    EXPECT_TRUE(RemoveDirectoryW(folder));
    swprintf(folder, MAX_PATH, L"%lsmade", g_scratch);
    EXPECT_TRUE(RemoveDirectoryW(folder));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_create_directory(NULL, 1));
}
