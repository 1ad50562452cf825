/* c/accounts.h: group membership. */
#include "CTests.h"

void test_accounts(void) {
    int32_t member = -1;
    int reference_member = -1;

    EXPECT_INT(ref_is_member_of(0, &reference_member), tav_account_is_member_of(0, &member, 0));
    EXPECT_INT(reference_member, member);
    EXPECT_INT(1, member); /* Wine's user is an administrator */
    EXPECT_INT(0, tav_account_is_member_of(1, &member, 0));
    EXPECT_INT(0, member);
    EXPECT_INT(0, tav_account_is_member_of(2, &member, 1));
    EXPECT_INT(1, member);
    EXPECT_INT(E_FAIL, tav_account_is_member_of(0, NULL, 0));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_account_is_member_of(3, &member, 0));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_account_is_member_of(-1, &member, 0));
    EXPECT_INT(ref_is_administrator(), tav_account_is_administrator());
    EXPECT_INT(ref_is_administrator_or_power_user(), tav_account_is_administrator_or_power_user());
}
