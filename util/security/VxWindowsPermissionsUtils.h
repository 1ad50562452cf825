// VxWindowsPermissionsUtils: is the current user (the thread's impersonation token, else the process
// token) a member of the built-in Administrators or Power Users group? The security functions are bound
// from "advapi32.dll" at run time, on Windows NT only; on Windows 9x every user counts as a member of
// every group.
#pragma once

#include "../platform/Export.h"
#include "../platform/Handles.h"

#include <windows.h>

class TAVUTIL_API VxWindowsPermissionsUtils {
public:
    enum enumQueryGroup {
        GROUP_ADMINISTRATORS = 0,                 // S-1-5-32-544
        GROUP_POWER_USERS = 1,                    // S-1-5-32-547
        GROUP_ADMINISTRATORS_OR_POWER_USERS = 2,  // either of the two (also any other value)
    };

    // Binds the six security functions (on Windows NT).
    VxWindowsPermissionsUtils();
    // Frees "advapi32.dll" if it was loaded and clears every member.
    ~VxWindowsPermissionsUtils();
    // Copies are shallow: every member, the module handle included, is copied without adding a reference
    // to the module, and each copy frees it when it ends. Kept so for the hosts that copy the object.
    VxWindowsPermissionsUtils(const VxWindowsPermissionsUtils&) = default;
    VxWindowsPermissionsUtils& operator=(const VxWindowsPermissionsUtils&) = default;

    // Sets *isMember to TRUE or FALSE for `group`. S_OK; E_FAIL for an unwritable result pointer or a failed
    // token or SID call; E_OUTOFMEMORY; E_UNEXPECTED for anything unforeseen. With `verbose` non-zero,
    // progress lines go to the wide standard output and errors to the wide standard error.
    long IsMemberOf(enumQueryGroup group, int* isMember, int verbose);

    // Membership of Administrators (respectively of either group), with the progress lines written;
    // a failure reads as FALSE.
    static int IsAdministrator();
    static int IsAdministratorOrPowerUser();

    // For diagnosis: the loaded "advapi32.dll" (null on Windows 9x), the error of loading it, and whether
    // all six functions are bound to callable code.
    HMODULE ModuleHandle() const { return m_hAdvApi32; }
    DWORD LoadError() const { return m_dwLoadError; }
    bool AllFunctionsUsable() const;

private:
    using OpenThreadTokenFn = BOOL(WINAPI*)(HANDLE, DWORD, BOOL, PHANDLE);
    using GetTokenInformationFn = BOOL(WINAPI*)(HANDLE, TOKEN_INFORMATION_CLASS, LPVOID, DWORD, PDWORD);
    using AllocateAndInitializeSidFn = BOOL(WINAPI*)(PSID_IDENTIFIER_AUTHORITY, BYTE, DWORD, DWORD, DWORD, DWORD, DWORD,
                                                     DWORD, DWORD, DWORD, PSID*);
    using IsValidSidFn = BOOL(WINAPI*)(PSID);
    using EqualSidFn = BOOL(WINAPI*)(PSID, PSID);
    using FreeSidFn = PVOID(WINAPI*)(PSID);

    class Diagnostics;  // the progress and error lines of a verbose query

    // The query reads as its steps: open the token, read its groups, match them against the two SIDs.
    long QueryMembership(enumQueryGroup group, int* isMember, int verbose);
    long OpenQueryToken(tav::UniqueHandle& token, const Diagnostics& say) const;
    long ReadTokenGroups(tav::UniqueGlobal& groups, const Diagnostics& say) const;
    long MatchGroups(const TOKEN_GROUPS& groups, bool& inAdministrators, bool& inPowerUsers,
                     const Diagnostics& say) const;
    bool BuildGroupSid(DWORD aliasRid, PSID* sid) const;
    static int AskAsTemporary(enumQueryGroup group);

    // Named after the functions they hold; bound from m_hAdvApi32.
    OpenThreadTokenFn OpenThreadToken = nullptr;
    GetTokenInformationFn GetTokenInformation = nullptr;
    AllocateAndInitializeSidFn AllocateAndInitializeSid = nullptr;
    IsValidSidFn IsValidSid = nullptr;
    EqualSidFn EqualSid = nullptr;
    FreeSidFn FreeSid = nullptr;
    HMODULE m_hAdvApi32 = nullptr;  // owned: freed by the destructor (of each shallow copy)
    DWORD m_dwLoadError = 0;        // GetLastError() of loading "advapi32.dll"
};
