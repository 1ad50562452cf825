// c/accounts.h: Membership of the Administrators and Power Users groups.
#include "capi/c/accounts.h"

#include "capi/detail/Boundary.h"
#include "security/VxWindowsPermissionsUtils.h"

using namespace tav::capi::detail;

namespace {

bool IsGroup(int32_t group) {
    return group >= VxWindowsPermissionsUtils::GROUP_ADMINISTRATORS &&
           group <= VxWindowsPermissionsUtils::GROUP_ADMINISTRATORS_OR_POWER_USERS;
}

}  // namespace

extern "C" {

int32_t tav_account_is_member_of(int32_t group, int32_t* is_member, int32_t verbose) {
    return Guarded([&]() -> int32_t {
        if (!IsGroup(group))
            return TAV_E_UNKNOWN_ENUM;
        static_assert(sizeof(int) == sizeof(int32_t), "int is 32 bits");
        return VxWindowsPermissionsUtils().IsMemberOf(static_cast<VxWindowsPermissionsUtils::enumQueryGroup>(group),
                                                      reinterpret_cast<int*>(is_member), verbose);
    });
}

int32_t tav_account_is_administrator(void) {
    return Guarded([]() -> int32_t { return VxWindowsPermissionsUtils::IsAdministrator() ? 1 : 0; });
}

int32_t tav_account_is_administrator_or_power_user(void) {
    return Guarded([]() -> int32_t { return VxWindowsPermissionsUtils::IsAdministratorOrPowerUser() ? 1 : 0; });
}

}  // extern "C"
