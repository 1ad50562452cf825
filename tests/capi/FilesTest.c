/* Paths, version numbers, version resources, whole files and installed software. */
#include "CTests.h"

static int32_t exe_dir(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_path_exe_dir(buffer, capacity, needed);
}

static int32_t install_date(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_install_date(buffer, capacity, needed);
}

static void check_paths(void) {
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

    EXPECT_INT(1, tav_file_exists(L"C:\\windows\\system32\\kernel32.dll"));
    EXPECT_INT(1, tav_file_exists(L"C:\\windows\\system32\\kernel3?.dll"));
    EXPECT_INT(0, tav_file_exists(L"C:\\capi\\nothing.here"));
    EXPECT_INT(1, tav_path_exists(L"C:\\windows\\system32\\kernel32.dll"));
    EXPECT_INT(0, tav_path_exists(L"C:\\capi\\nothing.here"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_file_exists(NULL));
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

static void check_versions(void) {
    static const wchar_t* const pairs[][2] = {
        {L"1.2.3.4", L"1.2.3.4"}, {L"1.2.3.5", L"1.2.3.4"}, {L"1.2.4.0", L"1.2.3.9"}, {L"1.3", L"1.2.9.9"},
        {L"2", L"1.9.9.9"},       {L"1.2.3.4", L"1.2.3.5"}, {L"65537.2", L"1.2"}};
    tav_version a;
    tav_version b;
    size_t i;

    EXPECT_INT(TAV_OK, tav_version_parse(L"10.20.30.40", &a));
    EXPECT_TRUE(a.major == 10 && a.minor == 20 && a.fix == 30 && a.build == 40 && a.valid == 1);
    EXPECT_INT(TAV_OK, tav_version_parse(L"7..8", &a));
    EXPECT_TRUE(a.major == 7 && a.minor == 8 && a.fix == 0 && a.build == 0 && a.valid == 1);
    EXPECT_INT(TAV_OK, tav_version_parse(L"", &a));
    EXPECT_INT(0, a.valid);
    for (i = 0; i < sizeof pairs / sizeof pairs[0]; ++i) {
        tav_version_parse(pairs[i][0], &a);
        tav_version_parse(pairs[i][1], &b);
        EXPECT_INT(ref_version_compare(pairs[i][0], pairs[i][1]), tav_version_compare(&a, &b));
    }
    tav_version_parse(L"1.2.3.5", &a);
    tav_version_parse(L"1.2.3.4", &b);
    EXPECT_INT(2, tav_version_compare(&a, &b));
    EXPECT_INT(0, tav_version_compare(&b, &a));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_version_parse(NULL, &a));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_version_parse(L"1", NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_version_compare(NULL, &b));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_version_compare(&a, NULL));
}

static void check_version_resources(void) {
    const wchar_t* kernel = L"C:\\windows\\system32\\kernel32.dll";
    tav_verinfo info = tav_verinfo_create();
    tav_verinfo empty = tav_verinfo_create();
    tav_version version;
    int field;

    EXPECT_TRUE(info != NULL);
    EXPECT_TRUE(tav_verinfo_init(info, kernel) != 0);
    for (field = 0; field <= 14; ++field) {
        const wchar_t* expected;
        const int found = ref_verinfo_field(kernel, field, &expected);
        CHECK_TEXT(found, expected, tav_verinfo_field, info, field);
        CHECK_TEXT(TAV_OK, ref_verinfo_field_name(field), tav_verinfo_field_name, field);
    }
    CHECK_TEXT(1, L"Microsoft Corporation", tav_verinfo_field, info, 3);
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_verinfo_field(info, 15, NULL, 0, NULL));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_verinfo_field(info, -1, NULL, 0, NULL));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_verinfo_field_name(15, NULL, 0, NULL));
    EXPECT_INT(1, tav_verinfo_file_version(info, &version));
    EXPECT_TRUE(version.major == 10 && version.minor == 0 && version.fix == 18362 && version.build == 1350);
    EXPECT_INT(1, tav_verinfo_product_version(info, &version));
    EXPECT_INT(1, version.valid);
    CHECK_TEXT(TAV_OK, L"0409", tav_verinfo_language_code, info);
    CHECK_TEXT(TAV_OK, L"04b0", tav_verinfo_code_page, info);
    CHECK_TEXT(TAV_OK, kernel, tav_verinfo_file_name, info);

    /* Nothing loaded: every answer is "nothing". */
    EXPECT_INT(0, tav_verinfo_init(empty, L"C:\\capi\\nothing.dll"));
    CHECK_TEXT(0, L"", tav_verinfo_field, empty, 3);
    EXPECT_INT(0, tav_verinfo_file_version(empty, &version));
    EXPECT_INT(0, tav_verinfo_product_version(empty, &version));

    EXPECT_INT(TAV_E_NULL_HANDLE, tav_verinfo_init(NULL, kernel));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_verinfo_init(info, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_verinfo_field(NULL, 3, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_verinfo_file_version(NULL, &version));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_verinfo_file_version(info, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_verinfo_product_version(NULL, &version));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_verinfo_language_code(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_verinfo_code_page(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_verinfo_file_name(NULL, NULL, 0, NULL));
    tav_verinfo_destroy(info);
    tav_verinfo_destroy(empty);
    tav_verinfo_destroy(NULL);
}

static void check_text_files(void) {
    static const char content[] = "first line\r\nsecond\xff\x00tail";
    const size_t length = sizeof content - 1;
    wchar_t path[MAX_PATH];
    tav_textfile file = tav_textfile_create();
    uint32_t size = 0;
    size_t need = 0;
    unsigned char bytes[64];
    FILE* out;

    swprintf(path, MAX_PATH, L"%lsbytes.txt", g_scratch);
    out = _wfopen(path, L"wb");
    fwrite(content, 1, length, out);
    fclose(out);

    EXPECT_TRUE(file != NULL);
    EXPECT_INT(TAV_OK, tav_textfile_size(file, &size));
    EXPECT_INT(0, size);
    EXPECT_INT(1, tav_textfile_read(file, path));
    EXPECT_INT(TAV_OK, tav_textfile_size(file, &size));
    EXPECT_INT(length, size);
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL, tav_textfile_bytes(file, NULL, 0, &need));
    EXPECT_INT(length, need);
    memset(bytes, 0xAA, sizeof bytes);
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL, tav_textfile_bytes(file, bytes, length - 1, NULL));
    EXPECT_INT(0xAA, bytes[0]);
    EXPECT_INT(0xAA, bytes[length - 1]);
    EXPECT_INT(TAV_OK, tav_textfile_bytes(file, bytes, length, &need));
    EXPECT_TRUE(memcmp(bytes, content, length) == 0);
    EXPECT_INT(0xAA, bytes[length]);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_textfile_bytes(file, NULL, 4, NULL));
    tav_textfile_destroy(file);

    file = tav_textfile_create();
    EXPECT_INT(0, tav_textfile_read(file, L"C:\\capi\\nothing.txt"));
    EXPECT_INT(TAV_OK, tav_textfile_bytes(file, NULL, 0, &need));
    EXPECT_INT(0, need);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_textfile_read(file, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_textfile_size(file, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_textfile_read(NULL, path));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_textfile_size(NULL, &size));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_textfile_bytes(NULL, bytes, 64, NULL));
    tav_textfile_destroy(file);
    tav_textfile_destroy(NULL);
    DeleteFileW(path);
}

static void check_installed_software(void) {
    const wchar_t* expected;
    HKEY key;
    int found;

    expected = ref_install_date();
    CHECK_TEXT(expected[0] != 0, expected, install_date, 0);

    /* An App Paths entry of the test's own. */
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\capitestapp.exe",
                        0, NULL, 0, KEY_ALL_ACCESS, NULL, &key, NULL) == 0) {
        RegSetValueExW(key, NULL, 0, REG_SZ, (const BYTE*)L"C:\\capi\\capitestapp.exe", 48);
        RegCloseKey(key);
    }
    found = ref_find_application_path(L"capitestapp", L"exe", &expected);
    EXPECT_INT(1, found);
    CHECK_TEXT(found, expected, tav_find_application_path, L"capitestapp", L"exe");
    CHECK_TEXT(1, L"C:\\capi\\capitestapp.exe", tav_find_application_path, L"capitestapp", L"exe");
    CHECK_TEXT(0, L"", tav_find_application_path, L"capinosuchapp", L"exe");
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\capitestapp.exe");
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_find_application_path(NULL, L"exe", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_find_application_path(L"x", NULL, NULL, 0, NULL));

    found = ref_find_progid_server(L"WScript.Shell", &expected);
    CHECK_TEXT(found, expected, tav_find_progid_server, L"WScript.Shell");
    CHECK_TEXT(0, L"", tav_find_progid_server, L"Capi.NoSuchProgId");
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_find_progid_server(NULL, NULL, 0, NULL));
}

void test_files(void) {
    check_paths();
    check_versions();
    check_version_resources();
    check_text_files();
    check_installed_software();
}
