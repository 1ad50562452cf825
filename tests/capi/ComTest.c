/* c/com.h: automation. */
#include "CTests.h"

#include <objbase.h>

static int32_t object_name(void* object, wchar_t* buffer, size_t capacity, size_t* needed) {
    return tav_com_object_name(object, buffer, capacity, needed);
}

void test_com(void) {
    void* regexp = NULL;
    void* dictionary = NULL;
    void* found = (void*)1;
    int32_t value = -1;
    CLSID clsid;
    tav_guid id;

    CoInitialize(NULL);
    EXPECT_INT(1, tav_com_create_object(L"VBScript.RegExp", &regexp));
    EXPECT_TRUE(regexp != NULL);
    EXPECT_INT(1, tav_com_create_object(L"Scripting.Dictionary", &dictionary));
    EXPECT_INT(0, tav_com_create_object(L"Capi.NoSuchObject", &found));
    EXPECT_TRUE(found == NULL);
    EXPECT_INT(0, tav_com_create_object(NULL, &found));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_create_object(L"VBScript.RegExp", NULL));

    if (regexp != NULL) {
        CHECK_TEXT(TAV_OK, ref_object_name(regexp), object_name, regexp);
        CHECK_TEXT(TAV_OK, L"IRegExp2", object_name, regexp);
        EXPECT_INT(1, tav_com_set_prop_bool(regexp, L"IgnoreCase", 1));
        EXPECT_INT(TAV_OK, tav_com_get_prop_bool(regexp, L"IgnoreCase", &value));
        EXPECT_INT(1, value);
        EXPECT_INT(1, tav_com_set_prop_bool(regexp, L"IgnoreCase", 0));
        EXPECT_INT(TAV_OK, tav_com_get_prop_bool(regexp, L"IgnoreCase", &value));
        EXPECT_INT(0, value);
        EXPECT_INT(0, tav_com_set_prop_bool(regexp, L"NoSuchProperty", 1));
        EXPECT_INT(0, tav_com_set_prop_bool(regexp, NULL, 1));
        CHECK_TEXT(TAV_OK, L"", tav_com_get_prop_string, regexp, L"Pattern");
        CHECK_TEXT(TAV_OK, L"", tav_com_get_prop_string, regexp, L"NoSuchProperty");
        EXPECT_INT(TAV_OK, tav_com_get_disp(regexp, L"NoSuchProperty", &found));
        EXPECT_TRUE(found == NULL);
    }
    if (dictionary != NULL) {
        EXPECT_INT(TAV_OK, tav_com_get_prop_long(dictionary, L"Count", &value));
        EXPECT_INT(0, value);
        EXPECT_INT(TAV_OK, tav_com_get_prop_long(dictionary, L"NoSuchProperty", &value));
        EXPECT_INT(0, value);
    }

    /* Nothing of these is running. */
    found = (void*)1;
    EXPECT_INT(0, tav_com_get_active_app(L"VBScript.RegExp", &found));
    EXPECT_TRUE(found == NULL);
    found = (void*)1;
    EXPECT_INT(0, tav_com_get_app_dispatch(L"VBScript.RegExp", 1, &found));
    EXPECT_TRUE(found == NULL);
    found = (void*)1;
    EXPECT_INT(0, tav_com_find_in_rot(L"VBScript.RegExp", &found));
    EXPECT_TRUE(found == NULL);
    CLSIDFromProgID(L"VBScript.RegExp", &clsid);
    memcpy(&id, &clsid, sizeof id);
    found = (void*)1;
    EXPECT_INT(ref_try_get_active_object_result(&clsid), tav_com_try_get_active_object(&id, &found));
    EXPECT_TRUE(tav_com_try_get_active_object(&id, &found) < 0);
    EXPECT_TRUE(found == NULL);

    /* Once registered as the active object, it is found. */
    if (regexp != NULL) {
        DWORD cookie = 0;
        if (RegisterActiveObject((IUnknown*)regexp, &clsid, ACTIVEOBJECT_STRONG, &cookie) == S_OK) {
            EXPECT_INT(0, tav_com_try_get_active_object(&id, &found));
            EXPECT_TRUE(found != NULL);
            if (found != NULL)
                EXPECT_INT(TAV_OK, tav_com_release(found));
            EXPECT_INT(1, tav_com_get_active_app(L"VBScript.RegExp", &found));
            if (found != NULL)
                tav_com_release(found);
            EXPECT_INT(1, tav_com_get_app_dispatch(L"VBScript.RegExp", 0, &found));
            if (found != NULL) {
                CHECK_TEXT(TAV_OK, L"IRegExp2", object_name, found);
                tav_com_release(found);
            }
            RevokeActiveObject(cookie, NULL);
        }
    }

    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_try_get_active_object(NULL, &found));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_try_get_active_object(&id, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_get_active_app(L"x", NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_get_app_dispatch(L"x", 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_find_in_rot(L"x", NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_com_get_prop_long(NULL, L"Count", &value));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_get_prop_long(dictionary, L"Count", NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_com_get_prop_bool(NULL, L"x", &value));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_get_prop_bool(regexp, L"x", NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_com_get_disp(NULL, L"x", &found));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_get_disp(regexp, L"x", NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_com_get_prop_string(NULL, L"x", NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_com_set_prop_bool(NULL, L"x", 1));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_com_object_name(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_com_release(NULL));

    if (regexp != NULL)
        EXPECT_INT(TAV_OK, tav_com_release(regexp));
    if (dictionary != NULL)
        EXPECT_INT(TAV_OK, tav_com_release(dictionary));
    CoUninitialize();
}
