#include "security/VxWindowsPermissionsUtils.h"

#include "platform/Handles.h"
#include "system/OSInfo.h"
#include "system/detail/WindowsVersion.h"

#include <iostream>

// Diagnostic lines, written only when the caller asked for them: progress to the wide standard output,
// errors (with the system error number in decimal) to the wide standard error.
class VxWindowsPermissionsUtils::Diagnostics {
public:
    explicit Diagnostics(int verbose) : verbose_(verbose != 0) {}
    template <typename... Parts> void Progress(const Parts&... parts) const {
        if (verbose_)
            (std::wcout << ... << parts) << std::endl;
    }
    template <typename... Parts> void Error(const Parts&... parts) const {
        if (verbose_)
            (std::wcerr << ... << parts) << std::endl;
    }

private:
    bool verbose_;
};

VxWindowsPermissionsUtils::VxWindowsPermissionsUtils() {
    if (!tav::system::detail::IsNtFamily())
        return;
    m_hAdvApi32 = tav::LoadSystemModule(L"advapi32.dll");
    m_dwLoadError = GetLastError();
    if (m_hAdvApi32 == nullptr)
        return;
    OpenThreadToken = tav::ModuleFunction<OpenThreadTokenFn>(m_hAdvApi32, "OpenThreadToken");
    GetTokenInformation = tav::ModuleFunction<GetTokenInformationFn>(m_hAdvApi32, "GetTokenInformation");
    AllocateAndInitializeSid = tav::ModuleFunction<AllocateAndInitializeSidFn>(m_hAdvApi32, "AllocateAndInitializeSid");
    IsValidSid = tav::ModuleFunction<IsValidSidFn>(m_hAdvApi32, "IsValidSid");
    EqualSid = tav::ModuleFunction<EqualSidFn>(m_hAdvApi32, "EqualSid");
    FreeSid = tav::ModuleFunction<FreeSidFn>(m_hAdvApi32, "FreeSid");
}

VxWindowsPermissionsUtils::~VxWindowsPermissionsUtils() {
    if (m_hAdvApi32 != nullptr) {
        FreeLibrary(m_hAdvApi32);  // a plain handle: the class is copyable and each copy frees it
        m_hAdvApi32 = nullptr;
        m_dwLoadError = 0;
    }
    OpenThreadToken = nullptr;
    GetTokenInformation = nullptr;
    AllocateAndInitializeSid = nullptr;
    IsValidSid = nullptr;
    EqualSid = nullptr;
    FreeSid = nullptr;
}

bool VxWindowsPermissionsUtils::AllFunctionsUsable() const {
    auto callable = [](auto function) {
        return function != nullptr && !IsBadCodePtr(reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function)));
    };
    return m_hAdvApi32 != nullptr && callable(OpenThreadToken) && callable(GetTokenInformation) &&
           callable(AllocateAndInitializeSid) && callable(IsValidSid) && callable(EqualSid) && callable(FreeSid);
}

long VxWindowsPermissionsUtils::IsMemberOf(enumQueryGroup group, int* isMember, int verbose) {
    try {
        return QueryMembership(group, isMember, verbose);
    } catch (...) {
        return E_UNEXPECTED;
    }
}

bool VxWindowsPermissionsUtils::BuildGroupSid(DWORD aliasRid, PSID* sid) const {
    SID_IDENTIFIER_AUTHORITY ntAuthority = SECURITY_NT_AUTHORITY;
    return AllocateAndInitializeSid(&ntAuthority, 2, SECURITY_BUILTIN_DOMAIN_RID, aliasRid, 0, 0, 0, 0, 0, 0, sid) !=
           FALSE;
}

long VxWindowsPermissionsUtils::QueryMembership(enumQueryGroup group, int* isMember, int verbose) {
    const Diagnostics say(verbose);
    if (IsBadWritePtr(isMember, sizeof *isMember))
        return E_FAIL;
    *isMember = FALSE;

    if (!AllFunctionsUsable() && !tav::system::detail::IsNtFamily()) {
        say.Progress(L"Is 9x, so returning TRUE for IsMemberOf().");
        *isMember = TRUE;
        return S_OK;
    }
    // On Windows NT without the six functions there is nothing to ask: the query fails here rather than
    // calling through an unbound function.
    if (!AllFunctionsUsable()) {
        say.Error(L"Error, the security functions of advapi32.dll are not available.  Errno: ", m_dwLoadError);
        return E_FAIL;
    }

    tav::UniqueGlobal groups;
    if (const long result = ReadTokenGroups(groups, say); result != S_OK)
        return result;
    bool inAdministrators = false, inPowerUsers = false;
    if (const long result =
            MatchGroups(*static_cast<const TOKEN_GROUPS*>(groups.get()), inAdministrators, inPowerUsers, say);
        result != S_OK)
        return result;
    groups.reset();

    say.Progress(L"is a member of Administrators group:\t", inAdministrators);
    say.Progress(L"is a member of Power Users group:\t\t", inPowerUsers);
    switch (group) {
    case GROUP_ADMINISTRATORS: *isMember = inAdministrators; break;
    case GROUP_POWER_USERS: *isMember = inPowerUsers; break;
    default: *isMember = inAdministrators || inPowerUsers; break;
    }
    return S_OK;
}

// The thread's impersonation token if there is one, else the process token.
long VxWindowsPermissionsUtils::OpenQueryToken(tav::UniqueHandle& token, const Diagnostics& say) const {
    if (OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, token.put()))
        return S_OK;
    const DWORD error = GetLastError();
    if (error != ERROR_NO_TOKEN) {
        token.reset();
        say.Error(L"Error from ::OpenThreadToken(). Got token but had other error.  Errno: ", error);
        return E_FAIL;
    }
    SetLastError(0);
    if (!::OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put())) {
        const DWORD processError = GetLastError();
        token.reset();
        say.Error(L"Error from ::OpenProcessToken().  Errno: ", processError);
        return E_FAIL;
    }
    return S_OK;
}

// The groups of the query token, in a block of their own; the token is closed before this returns.
long VxWindowsPermissionsUtils::ReadTokenGroups(tav::UniqueGlobal& groups, const Diagnostics& say) const {
    tav::UniqueHandle token;
    if (const long result = OpenQueryToken(token, say); result != S_OK)
        return result;
    DWORD size = 0;
    GetTokenInformation(token.get(), TokenGroups, nullptr, 0, &size);  // asks for the size only
    groups.reset(GlobalAlloc(GPTR, size));
    if (!groups) {
        say.Error(L"Error, cannot allocate memory.");
        return E_OUTOFMEMORY;
    }
    const BOOL read = GetTokenInformation(token.get(), TokenGroups, groups.get(), size, &size);
    const DWORD readError = GetLastError();
    token.reset();
    if (!read) {
        say.Error(L"Error from ::GetTokenInformation().  Errno: ", readError);
        return E_FAIL;
    }
    return S_OK;
}

// Whether Administrators and Power Users are among `groups`. An invalid entry ends the walk: what was found
// before it stands.
long VxWindowsPermissionsUtils::MatchGroups(const TOKEN_GROUPS& groups, bool& inAdministrators, bool& inPowerUsers,
                                            const Diagnostics& say) const {
    // The two failure texts differ by one blank, so that a log tells which of the two SIDs failed.
    tav::UniqueSid administrators, powerUsers;
    if (!BuildGroupSid(DOMAIN_ALIAS_RID_ADMINS, administrators.put())) {
        say.Error(L"Failed to ::AllocateAndInitializeSid(). Errno: ", GetLastError());
        return E_FAIL;
    }
    if (!BuildGroupSid(DOMAIN_ALIAS_RID_POWER_USERS, powerUsers.put())) {
        say.Error(L"Failed to ::AllocateAndInitializeSid().  Errno: ", GetLastError());
        return E_FAIL;
    }

    const SID_AND_ATTRIBUTES* entries = groups.Groups;
    say.Progress(L"member of ", groups.GroupCount, L" groups.");
    for (DWORD i = 0; i < groups.GroupCount; ++i) {
        if (!IsValidSid(entries[i].Sid)) {
            say.Error(L"ERROR!  invalid Sid.  Errno: ", GetLastError());
            break;
        }
        if (EqualSid(entries[i].Sid, administrators.get()))
            inAdministrators = true;
        if (EqualSid(entries[i].Sid, powerUsers.get()))
            inPowerUsers = true;
    }
    administrators.reset();  // freed in the order they were made
    powerUsers.reset();
    return S_OK;
}

int VxWindowsPermissionsUtils::AskAsTemporary(enumQueryGroup group) {
    VxWindowsPermissionsUtils utils;
    int isMember = FALSE;
    utils.IsMemberOf(group, &isMember, 1);  // the HRESULT is not looked at: a failure reads as FALSE
    return isMember;
}

int VxWindowsPermissionsUtils::IsAdministrator() { return AskAsTemporary(GROUP_ADMINISTRATORS); }

int VxWindowsPermissionsUtils::IsAdministratorOrPowerUser() {
    return AskAsTemporary(GROUP_ADMINISTRATORS_OR_POWER_USERS);
}
