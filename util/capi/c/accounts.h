/**
 * @file accounts.h
 * @brief Whether the user running the host belongs to the Administrators or Power Users group
 * (VxWindowsPermissionsUtils).
 */
#ifndef TAVUTIL_C_ACCOUNTS_H
#define TAVUTIL_C_ACCOUNTS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief The groups tav_account_is_member_of() asks about. */
enum tav_account_group {
    TAV_ACCOUNT_GROUP_ADMINISTRATORS = 0,               /**< Administrators (S-1-5-32-544). */
    TAV_ACCOUNT_GROUP_POWER_USERS = 1,                  /**< Power Users (S-1-5-32-547). */
    TAV_ACCOUNT_GROUP_ADMINISTRATORS_OR_POWER_USERS = 2 /**< Either of the two. */
};

/**
 * @brief Whether the user belongs to a group, judged from the thread's or the process's access token
 * (IsMemberOf).
 * @param group One of #tav_account_group.
 * @param is_member Receives 1 or 0.
 * @param verbose 1: write progress lines to the standard output stream.
 * @return The HRESULT of the check (0 on success; E_FAIL, 0x80004005, for a null `is_member`);
 * #TAV_E_UNKNOWN_ENUM for another group; or another negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_account_is_member_of(int32_t group, int32_t* is_member, int32_t verbose);

/**
 * @brief Whether the user is an administrator; a failed check reads as 0.
 * @return 1 or 0, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_account_is_administrator(void);

/**
 * @brief Whether the user is an administrator or a power user; a failed check reads as 0.
 * @return 1 or 0, or a negative #tav_c_error code.
 */
TAVUTIL_C_API int32_t tav_account_is_administrator_or_power_user(void);

#ifdef __cplusplus
}
#endif

#endif /* TAVUTIL_C_ACCOUNTS_H */
