/* c/software.h: installed software. */
#include "CTests.h"

static int32_t install_date(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_software_install_date(buffer, capacity, needed);
}

void test_software(void) {
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
    CHECK_TEXT(found, expected, tav_software_application_path, L"capitestapp", L"exe");
    CHECK_TEXT(1, L"C:\\capi\\capitestapp.exe", tav_software_application_path, L"capitestapp", L"exe");
    CHECK_TEXT(0, L"", tav_software_application_path, L"capinosuchapp", L"exe");
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\capitestapp.exe");
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_software_application_path(NULL, L"exe", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_software_application_path(L"x", NULL, NULL, 0, NULL));

    found = ref_find_progid_server(L"WScript.Shell", &expected);
    CHECK_TEXT(found, expected, tav_software_progid_server, L"WScript.Shell");
    CHECK_TEXT(0, L"", tav_software_progid_server, L"Capi.NoSuchProgId");
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_software_progid_server(NULL, NULL, 0, NULL));
}
