/* c/support.h: the support query, with the device told by the test's callbacks. */
#include "CTests.h"

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

void test_support(void) {
    static const wchar_t* const addresses[] = {L"http://www.velmorax.com/support?x=1",
                                               L"http://www.iplumekeyboard.com/help?L=de&B=7",
                                               L"http://www.example.com/", L""};
    size_t i;
    device_facts facts = {1, 42, 0};
    tav_trigger trigger = {&facts, has_device, device_kind, device_number};
    tav_trigger no_device = {&facts, NULL, device_kind, device_number};
    ref_trigger_device ref_mouse = {1, 1, 42};
    ref_trigger_device ref_keyboard = {1, 2, 7};
    ref_trigger_device ref_none = {0, 0, 0};

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
