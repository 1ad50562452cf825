/* c/registry.h: one open key, under a key of the test's own. */
#include "CTests.h"

#define TEST_KEY L"Software\\TavUtilCapiTest"

static int32_t subkeys(tav_registry key, wchar_t* buffer, size_t capacity, size_t* needed) {
    return tav_registry_subkeys(key, buffer, capacity, needed);
}

void test_registry(void) {
    tav_registry key;
    tav_registry sub;
    uint32_t type = 0;
    uint32_t size = 0;
    uint32_t value = 0x12345678;
    uint32_t read = 0;
    wchar_t* out;
    wchar_t long_value[2001];
    int i;

    RegDeleteTreeW(HKEY_CURRENT_USER, TEST_KEY);
    key = tav_registry_create();
    EXPECT_TRUE(key != NULL);
    EXPECT_INT(0, tav_registry_is_valid(key));
    EXPECT_INT(2, tav_registry_open(key, TAV_HKEY_CURRENT_USER, TEST_KEY, 1)); /* read-only never creates */
    EXPECT_INT(0, tav_registry_open(key, TAV_HKEY_CURRENT_USER, TEST_KEY, 0));
    EXPECT_INT(1, tav_registry_is_valid(key));

    EXPECT_INT(0, tav_registry_write_string(key, L"text", L"written from C"));
    CHECK_TEXT(0, L"written from C", tav_registry_read_string, key, L"text");
    CHECK_TEXT(1, L"", tav_registry_read_string, key, L"missing");
    for (i = 0; i < 2000; ++i)
        long_value[i] = (wchar_t)(L'a' + i % 26);
    long_value[2000] = 0;
    EXPECT_INT(0, tav_registry_write_string(key, L"long", long_value));
    CHECK_TEXT(0, long_value, tav_registry_read_string, key, L"long");

    EXPECT_INT(0, tav_registry_set_value(key, L"number", REG_DWORD, &value, 4));
    EXPECT_INT(0, tav_registry_query_value(key, L"number", &type, NULL, &size));
    EXPECT_INT(REG_DWORD, type);
    EXPECT_INT(4, size);
    EXPECT_INT(0, tav_registry_query_value(key, L"number", &type, &read, &size));
    EXPECT_INT(0x12345678, read);
    size = 2;
    EXPECT_INT(ERROR_MORE_DATA, tav_registry_query_value(key, L"number", &type, &read, &size));
    EXPECT_INT(2, tav_registry_query_value(key, L"absent", &type, NULL, &size));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_set_value(key, L"number", REG_DWORD, NULL, 4));
    EXPECT_INT(0, tav_registry_delete_value(key, L"number"));
    EXPECT_INT(2, tav_registry_delete_value(key, L"number"));

    sub = tav_registry_create();
    EXPECT_INT(0, tav_registry_open(sub, TAV_HKEY_CURRENT_USER, TEST_KEY L"\\one", 0));
    EXPECT_INT(0, tav_registry_open(sub, TAV_HKEY_CURRENT_USER, TEST_KEY L"\\two", 0));
    EXPECT_INT(0, tav_registry_close(sub));
    EXPECT_INT(6, tav_registry_close(sub));
    tav_registry_destroy(sub);
    CHECK_OUT(out, 2, L"one\0two\0", 9, subkeys, key);
    kit_release(out);
    EXPECT_INT(0, tav_registry_delete_key(key, L"one"));
    EXPECT_INT(0, tav_registry_delete_key(key, L"two"));
    CHECK_OUT(out, 0, L"\0", 2, subkeys, key);
    kit_release(out);

    EXPECT_INT(0, tav_registry_close(key));
    EXPECT_INT(0, tav_registry_is_valid(key));
    EXPECT_INT(6, tav_registry_write_string(key, L"text", L"x"));
    EXPECT_INT(6, tav_registry_delete_value(key, L"text"));
    CHECK_OUT(out, 0, L"\0", 2, subkeys, key);
    kit_release(out);

    /* The 32-bit view is found by a read-only open. */
    {
        HKEY handle;
        if (RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\TavUtilCapiTest32", 0, NULL, 0,
                            KEY_ALL_ACCESS | KEY_WOW64_32KEY, NULL, &handle, NULL) == 0)
            RegCloseKey(handle);
        EXPECT_INT(0, tav_registry_open(key, TAV_HKEY_CURRENT_USER, L"Software\\TavUtilCapiTest32", 1));
        EXPECT_INT(0, tav_registry_close(key));
        RegDeleteKeyExW(HKEY_CURRENT_USER, L"Software\\TavUtilCapiTest32", KEY_WOW64_32KEY, 0);
    }

    EXPECT_INT(TAV_E_NULL_HANDLE, tav_registry_open(NULL, TAV_HKEY_CURRENT_USER, TEST_KEY, 1));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_open(key, TAV_HKEY_CURRENT_USER, NULL, 1));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_registry_close(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_registry_is_valid(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_registry_read_string(NULL, L"x", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_read_string(key, NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_read_string(key, L"x", NULL, 3, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_registry_write_string(NULL, L"x", L"y"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_write_string(key, L"x", NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_registry_query_value(NULL, L"x", NULL, NULL, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_registry_set_value(NULL, L"x", REG_SZ, L"", 2));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_registry_delete_value(NULL, L"x"));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_registry_delete_key(NULL, L"x"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_delete_key(key, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_registry_subkeys(NULL, NULL, 0, NULL));
    tav_registry_destroy(key);
    tav_registry_destroy(NULL);
    RegDeleteTreeW(HKEY_CURRENT_USER, TEST_KEY);
}
