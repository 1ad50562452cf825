/* c/versions.h: version numbers and version resources. */
#include "CTests.h"

static void check_versions(void) {
    static const wchar_t* const pairs[][2] = {
        {L"1.2.3.4", L"1.2.3.4"}, {L"1.2.3.5", L"1.2.3.4"}, {L"1.2.4.0", L"1.2.3.9"}, {L"1.3", L"1.2.9.9"},
        {L"2", L"1.9.9.9"},       {L"1.2.3.4", L"1.2.3.5"}, {L"65537.2", L"1.2"}};
    tav_version_number a;
    tav_version_number b;
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
    tav_version_number version;
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

void test_versions(void) {
    check_versions();
    check_version_resources();
}
