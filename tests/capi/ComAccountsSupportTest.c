/* Automation, accounts and support information. */
#include "CTests.h"

#include <objbase.h>

static int32_t object_name(void* object, wchar_t* buffer, size_t capacity, size_t* needed) {
    return tav_com_object_name(object, buffer, capacity, needed);
}

void test_automation(void) {
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

typedef struct device_facts {
    int32_t kind;
    uint32_t number;
    int calls;
} device_facts;

static int32_t has_device(void* context) {
    ++((device_facts*)context)->calls;
    return 1;
}
static int32_t device_kind(void* context) { return ((device_facts*)context)->kind; }
static uint32_t device_number(void* context) { return ((device_facts*)context)->number; }

void test_accounts_and_support(void) {
    static const wchar_t* const addresses[] = {L"http://www.velmorax.com/support?x=1",
                                               L"http://www.iplumekeyboard.com/help?L=de&B=7",
                                               L"http://www.example.com/", L""};
    int32_t member = -1;
    int reference_member = -1;
    size_t i;
    device_facts facts = {1, 42, 0};
    tav_trigger trigger = {&facts, has_device, device_kind, device_number};
    tav_trigger no_device = {&facts, NULL, device_kind, device_number};
    ref_trigger_device ref_mouse = {1, 1, 42};
    ref_trigger_device ref_keyboard = {1, 2, 7};
    ref_trigger_device ref_none = {0, 0, 0};

    EXPECT_INT(ref_is_member_of(0, &reference_member), tav_is_member_of(0, &member, 0));
    EXPECT_INT(reference_member, member);
    EXPECT_INT(1, member); /* Wine's user is an administrator */
    EXPECT_INT(0, tav_is_member_of(1, &member, 0));
    EXPECT_INT(0, member);
    EXPECT_INT(0, tav_is_member_of(2, &member, 1));
    EXPECT_INT(1, member);
    EXPECT_INT(E_FAIL, tav_is_member_of(0, NULL, 0));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_is_member_of(3, &member, 0));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_is_member_of(-1, &member, 0));
    EXPECT_INT(ref_is_administrator(), tav_is_administrator());
    EXPECT_INT(ref_is_administrator_or_power_user(), tav_is_administrator_or_power_user());

    for (i = 0; i < sizeof addresses / sizeof addresses[0]; ++i) {
        CHECK_TEXT(TAV_OK, ref_support_query(addresses[i]), tav_support_query, addresses[i]);
        CHECK_TEXT(TAV_OK, ref_support_query_with_trigger(addresses[i], NULL), tav_support_query_with_trigger,
                   addresses[i], NULL);
        CHECK_TEXT(TAV_OK, ref_support_query_with_trigger(addresses[i], &ref_mouse), tav_support_query_with_trigger,
                   addresses[i], &trigger);
        CHECK_TEXT(TAV_OK, ref_support_query_with_trigger(addresses[i], &ref_none), tav_support_query_with_trigger,
                   addresses[i], &no_device);
    }
    EXPECT_TRUE(facts.calls > 0);
    facts.kind = 2;
    facts.number = 7;
    CHECK_TEXT(TAV_OK, ref_support_query_with_trigger(addresses[0], &ref_keyboard), tav_support_query_with_trigger,
               addresses[0], &trigger);
    EXPECT_TRUE(ref_support_query(addresses[0])[0] == L'?');
    EXPECT_TRUE(ref_support_query(addresses[2])[0] == 0);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_support_query(NULL, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_support_query_with_trigger(NULL, &trigger, NULL, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_support_query_with_trigger(addresses[0], NULL, NULL, 9, NULL));
}
