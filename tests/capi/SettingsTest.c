/* c/settings.h: typed settings, under a key of the test's own. */
#include "CTests.h"

#define TEST_KEY L"Software\\TavUtilCapiTest"

static int32_t current_path(tav_settings settings, wchar_t* buffer, size_t capacity, size_t* needed) {
    return tav_settings_current_path(settings, buffer, capacity, needed);
}

void test_settings(void) {
    tav_settings settings = tav_settings_create();
    tav_hkey root = NULL;
    uint32_t dword = 0;
    int32_t number = 0;
    double real = 0;
    tav_date_time when = {45123.75, 0, 0};
    tav_date_time fallback = {1.5, 1, 0};
    tav_date_time read_when;
    tav_rect rect = {1, 2, 300, 400};
    tav_rect read_rect;
    tav_point point = {-5, 7};
    tav_point read_point;
    tav_size size = {640, 480};
    tav_size read_size;
    tav_logfont font;
    tav_logfont read_font;
    unsigned char bytes[16];
    wchar_t too_long[300];
    int i;

    RegDeleteTreeW(HKEY_CURRENT_USER, TEST_KEY);
    EXPECT_TRUE(settings != NULL);
    EXPECT_TRUE(tav_settings_set_root(settings, TAV_HKEY_CURRENT_USER) != 0);
    EXPECT_INT(0, tav_settings_set_root(settings, (tav_hkey)(intptr_t)5));
    EXPECT_INT(TAV_OK, tav_settings_get_root(settings, &root));
    EXPECT_TRUE(root == TAV_HKEY_CURRENT_USER);
    EXPECT_TRUE(tav_settings_create_key(settings, TEST_KEY L"\\settings") != 0);
    CHECK_TEXT(TAV_OK, TEST_KEY L"\\settings", current_path, settings);
    EXPECT_TRUE(tav_settings_path_is_valid(settings) != 0);

    EXPECT_TRUE(tav_settings_write_string(settings, L"s", L"settings text") != 0);
    CHECK_TEXT(TAV_OK, L"settings text", tav_settings_read_string, settings, L"s", L"default");
    CHECK_TEXT(TAV_OK, L"default", tav_settings_read_string, settings, L"missing", L"default");
    for (i = 0; i < 299; ++i)
        too_long[i] = L'x';
    too_long[299] = 0;
    EXPECT_INT(0, tav_settings_write_string(settings, L"long", too_long)); /* refused from 255 characters on */
    EXPECT_INT(0, tav_settings_value_exists(settings, L"long"));

    EXPECT_TRUE(tav_settings_write_dword(settings, L"dw", 0xCAFEF00Du) != 0);
    EXPECT_INT(TAV_OK, tav_settings_read_dword(settings, L"dw", 1, &dword));
    EXPECT_INT(0xCAFEF00Du, dword);
    EXPECT_TRUE(tav_settings_write_int(settings, L"i", -42) != 0);
    EXPECT_INT(TAV_OK, tav_settings_read_int(settings, L"i", 1, &number));
    EXPECT_INT(-42, number);
    EXPECT_INT(REG_BINARY, tav_settings_data_type(settings, L"i")); /* an int is binary, on purpose */
    EXPECT_INT(REG_DWORD, tav_settings_data_type(settings, L"dw"));
    EXPECT_INT(4, tav_settings_data_size(settings, L"i"));
    EXPECT_INT(-1, tav_settings_data_size(settings, L"missing"));
    EXPECT_TRUE(tav_settings_write_bool(settings, L"b", 1) != 0);
    EXPECT_INT(TAV_OK, tav_settings_read_bool(settings, L"b", 0, &number));
    EXPECT_INT(1, number);
    EXPECT_TRUE(tav_settings_write_color(settings, L"c", 0x00FF8040u) != 0);
    EXPECT_INT(TAV_OK, tav_settings_read_color(settings, L"c", 0, &dword));
    EXPECT_INT(0x00FF8040u, dword);
    EXPECT_TRUE(tav_settings_write_float(settings, L"f", 2.625) != 0);
    EXPECT_INT(TAV_OK, tav_settings_read_float(settings, L"f", 0, &real));
    EXPECT_TRUE(real == 2.625);
    EXPECT_INT(TAV_OK, tav_settings_read_float(settings, L"missing", 9.5, &real));
    EXPECT_TRUE(real == 9.5);
    EXPECT_TRUE(tav_settings_write_date_time(settings, L"d", &when) != 0);
    EXPECT_INT(16, tav_settings_data_size(settings, L"d"));
    EXPECT_INT(TAV_OK, tav_settings_read_date_time(settings, L"d", &fallback, &read_when));
    EXPECT_TRUE(memcmp(&when, &read_when, sizeof when) == 0);
    EXPECT_INT(TAV_OK, tav_settings_read_date_time(settings, L"missing", &fallback, &read_when));
    EXPECT_TRUE(memcmp(&fallback, &read_when, sizeof fallback) == 0);
    EXPECT_TRUE(tav_settings_write_rect(settings, L"r", &rect) != 0);
    EXPECT_INT(1, tav_settings_read_rect(settings, L"r", &read_rect));
    EXPECT_TRUE(memcmp(&rect, &read_rect, sizeof rect) == 0);
    EXPECT_INT(1, tav_settings_read_binary(settings, L"r", bytes, 16));
    EXPECT_TRUE(memcmp(&rect, bytes, 16) == 0);
    EXPECT_INT(0, tav_settings_read_rect(settings, L"missing", &read_rect));
    EXPECT_TRUE(tav_settings_write_point(settings, L"p", &point) != 0);
    EXPECT_INT(1, tav_settings_read_point(settings, L"p", &read_point));
    EXPECT_TRUE(read_point.x == -5 && read_point.y == 7);
    EXPECT_TRUE(tav_settings_write_size(settings, L"z", &size) != 0);
    EXPECT_INT(1, tav_settings_read_size(settings, L"z", &read_size));
    EXPECT_TRUE(read_size.cx == 640 && read_size.cy == 480);
    /* A stored value shorter than the record replaces its first bytes and keeps the rest, as the C++ reads
     * do (the C reads once gave zeros there). */
    read_rect = rect;
    EXPECT_INT(1, tav_settings_read_rect(settings, L"i", &read_rect));
    EXPECT_TRUE(read_rect.left == -42 && read_rect.top == 2 && read_rect.right == 300 && read_rect.bottom == 400);
    read_point = point;
    EXPECT_INT(1, tav_settings_read_point(settings, L"i", &read_point));
    EXPECT_TRUE(read_point.x == -42 && read_point.y == 7);
    read_size = size;
    EXPECT_INT(1, tav_settings_read_size(settings, L"i", &read_size));
    EXPECT_TRUE(read_size.cx == -42 && read_size.cy == 480);

    memset(&font, 0, sizeof font);
    font.height = -13;
    font.weight = 700;
    font.italic = 1;
    wcscpy(font.face_name, L"Tahoma");
    EXPECT_INT(92, sizeof(tav_logfont));
    EXPECT_TRUE(tav_settings_write_font(settings, L"font", &font) != 0);
    EXPECT_INT(92, tav_settings_data_size(settings, L"font"));
    EXPECT_INT(1, tav_settings_read_font(settings, L"font", &read_font));
    EXPECT_INT(-13, read_font.height);
    EXPECT_INT(700, read_font.weight);
    EXPECT_INT(1, read_font.italic);
    EXPECT_TEXT(L"Tahoma", read_font.face_name);
    EXPECT_INT(0, tav_settings_read_font(settings, L"missing", &read_font));

    EXPECT_TRUE(tav_settings_value_exists(settings, L"s") != 0);
    EXPECT_INT(11, tav_settings_value_count(settings));
    EXPECT_INT(TAV_OK, tav_settings_rename_value(settings, L"s", L"t")); /* does nothing */
    EXPECT_TRUE(tav_settings_value_exists(settings, L"s") != 0);
    EXPECT_TRUE(tav_settings_delete_value(settings, L"s") != 0);
    EXPECT_INT(0, tav_settings_value_exists(settings, L"s"));

    EXPECT_INT(1, tav_settings_lazy_write(settings));
    EXPECT_INT(TAV_OK, tav_settings_set_lazy_write(settings, 0));
    EXPECT_INT(0, tav_settings_lazy_write(settings));
    EXPECT_TRUE(tav_settings_create_key(settings, TEST_KEY L"\\settings\\child") != 0);
    EXPECT_TRUE(tav_settings_set_key(settings, TEST_KEY L"\\settings", 0) != 0);
    EXPECT_INT(1, tav_settings_subkey_count(settings));
    CHECK_TEXT(1, L"child", tav_settings_subkey_name, settings, 0);
    CHECK_TEXT(0, L"", tav_settings_subkey_name, settings, 5);
    EXPECT_TRUE(tav_settings_key_exists(settings, TEST_KEY L"\\settings\\child", NULL) != 0);
    EXPECT_INT(0, tav_settings_key_exists(settings, TEST_KEY L"\\nothing", TAV_HKEY_CURRENT_USER));
    EXPECT_TRUE(tav_settings_delete_key(settings, TEST_KEY L"\\settings\\child") != 0);
    EXPECT_INT(0, tav_settings_set_key(settings, TEST_KEY L"\\absent", 0));
    EXPECT_INT(2, tav_settings_last_status(settings));
    EXPECT_TRUE(tav_settings_clear_key(settings) != 0);
    CHECK_TEXT(TAV_OK, L"", current_path, settings);

    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_set_root(NULL, TAV_HKEY_CURRENT_USER));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_get_root(NULL, &root));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_get_root(settings, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_create_key(NULL, L"x"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_create_key(settings, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_set_key(NULL, L"x", 0));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_clear_key(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_path_is_valid(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_current_path(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_key_exists(NULL, L"x", NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_delete_key(NULL, L"x"));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_delete_value(NULL, L"x"));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_value_exists(NULL, L"x"));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_data_size(NULL, L"x"));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_data_type(NULL, L"x"));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_subkey_count(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_value_count(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_subkey_name(NULL, 0, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_rename_value(NULL, L"a", L"b"));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_set_lazy_write(NULL, 1));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_lazy_write(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_last_status(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_string(NULL, L"x", L"d", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_string(settings, L"x", NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_dword(NULL, L"x", 0, &dword));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_dword(settings, L"x", 0, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_int(NULL, L"x", 0, &number));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_bool(NULL, L"x", 0, &number));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_color(NULL, L"x", 0, &dword));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_float(NULL, L"x", 0, &real));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_date_time(settings, L"x", NULL, &read_when));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_date_time(NULL, L"x", &fallback, &read_when));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_binary(settings, L"x", NULL, 4));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_binary(NULL, L"x", bytes, 4));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_rect(NULL, L"x", &read_rect));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_point(NULL, L"x", &read_point));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_size(NULL, L"x", &read_size));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_font(settings, L"x", NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_read_font(NULL, L"x", &read_font));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_write_string(NULL, L"x", L"y"));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_write_dword(NULL, L"x", 1));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_write_int(NULL, L"x", 1));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_write_bool(NULL, L"x", 1));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_write_color(NULL, L"x", 1));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_write_float(NULL, L"x", 1));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_write_date_time(NULL, L"x", &when));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_date_time(settings, L"x", NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_write_rect(NULL, L"x", &rect));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_rect(settings, L"x", NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_write_point(NULL, L"x", &point));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_write_size(NULL, L"x", &size));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_settings_write_font(NULL, L"x", &font));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_font(settings, NULL, &font));
    tav_settings_destroy(settings);
    tav_settings_destroy(NULL);
    RegDeleteTreeW(HKEY_CURRENT_USER, TEST_KEY);
}
