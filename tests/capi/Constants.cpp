// The named constants of the C headers against the enumerations of the C++ interface they mirror: checked
// here at compile time (this file is compiled with both headers), and at run time for the values a C
// compiler sees (ConstantsTest.c hands every constant to ref_constant).
#include "Reference.h"

#include "capi/TavUtilC.h"
#include "desktop/Wait.h"
#include "desktop/Wave.h"
#include "files/VerInfo.h"
#include "files/VerNum.h"
#include "keys/KeyRecorder.h"
#include "keys/KeyState.h"
#include "keys/SendKeys.h"
#include "keys/SendOptions.h"
#include "log/VelmLog.h"
#include "security/VxWindowsPermissionsUtils.h"
#include "system/OSInfo.h"

#include <windows.h>

#include <cstring>

namespace {

struct Mirror {
    const char* name;
    long long c;    // the C header's value
    long long cxx;  // the C++ interface's (or, for the show-window values, the Windows headers') value
};

#define TAV_MIRROR(c_name, cxx_value)                                                                                  \
    { #c_name, c_name, cxx_value }

constexpr Mirror kMirrors[] = {
    TAV_MIRROR(TAV_SKERR_NONE, SKERR_NONE),
    TAV_MIRROR(TAV_SKERR_MISSING_CLOSE_BRACE, SKERR_MISSINGCLOSEBRACE),
    TAV_MIRROR(TAV_SKERR_INVALID_KEY, SKERR_INVALIDKEY),
    TAV_MIRROR(TAV_SKERR_MISSING_CLOSE_PAREN, SKERR_MISSINGCLOSEPAREN),
    TAV_MIRROR(TAV_SKERR_INVALID_COUNT, SKERR_INVALIDCOUNT),
    TAV_MIRROR(TAV_SKERR_STRING_TOO_LONG, SKERR_STRINGTOOLONG),
    TAV_MIRROR(TAV_SKERR_BUSY, SKERR_BUSY),
    TAV_MIRROR(TAV_SKERR_MENU_FAILED, SKERR_MENUFAILED),
    TAV_MIRROR(TAV_SKERR_COMMAND_DONE, SKERR_COMMANDDONE),
    TAV_MIRROR(TAV_SEND_WAIT_FOR_RELEASE, tav::keys::kSendWaitForRelease),
    TAV_MIRROR(TAV_SEND_RELEASE_MODIFIERS, tav::keys::kSendReleaseModifiers),
    TAV_MIRROR(TAV_SEND_OPTIONS_SIZE_1, sizeof(tav_send_options)),
    TAV_MIRROR(TAV_KEYS_END_HOLD, tav::keys::kEndHold),
    TAV_MIRROR(TAV_KEYS_BEGIN_HOLD, tav::keys::kBeginHold),
    TAV_MIRROR(TAV_KEYS_SYNC, tav::keys::kNoKey),
    TAV_MIRROR(TAV_RECORD_IGNORE_INJECTED, tav::keys::KeyRecorder::kIgnoreInjected),
    TAV_MIRROR(TAV_WAIT_WAITING, CWAIT_WAITING),
    TAV_MIRROR(TAV_WAIT_ABORTED, CWAIT_ABORTED),
    TAV_MIRROR(TAV_WAIT_TIMEOUT, CWAIT_TIMEOUT),
    TAV_MIRROR(TAV_WAIT_QUIT, CWAIT_QUIT),
    TAV_MIRROR(TAV_WAIT_COMMAND, CWAIT_COMMAND),
    TAV_MIRROR(TAV_VERFIELD_FILE_VERSION_NUMBER, VF_FileVersionNumber),
    TAV_MIRROR(TAV_VERFIELD_PRODUCT_VERSION_NUMBER, VF_ProductVersionNumber),
    TAV_MIRROR(TAV_VERFIELD_COMMENTS, VF_Comments),
    TAV_MIRROR(TAV_VERFIELD_COMPANY_NAME, VF_CompanyName),
    TAV_MIRROR(TAV_VERFIELD_FILE_DESCRIPTION, VF_FileDescription),
    TAV_MIRROR(TAV_VERFIELD_FILE_VERSION, VF_FileVersion),
    TAV_MIRROR(TAV_VERFIELD_INTERNAL_NAME, VF_InternalName),
    TAV_MIRROR(TAV_VERFIELD_LEGAL_COPYRIGHT, VF_LegalCopyright),
    TAV_MIRROR(TAV_VERFIELD_LEGAL_TRADEMARKS, VF_LegalTrademarks),
    TAV_MIRROR(TAV_VERFIELD_ORIGINAL_FILENAME, VF_OriginalFilename),
    TAV_MIRROR(TAV_VERFIELD_PRIVATE_BUILD, VF_PrivateBuild),
    TAV_MIRROR(TAV_VERFIELD_PRODUCT_NAME, VF_ProductName),
    TAV_MIRROR(TAV_VERFIELD_PRODUCT_VERSION, VF_ProductVersion),
    TAV_MIRROR(TAV_VERFIELD_SPECIAL_BUILD, VF_SpecialBuild),
    TAV_MIRROR(TAV_VERFIELD_PRODUCT_BUILD_NUMBER, VF_ProductBuildNumber),
    TAV_MIRROR(TAV_VERNUM_OLDER, CVerNum::VERNUM_OLDER),
    TAV_MIRROR(TAV_VERNUM_EQUAL, CVerNum::VERNUM_EQUAL),
    TAV_MIRROR(TAV_VERNUM_NEWER_BUILD, CVerNum::VERNUM_NEWER_BUILD),
    TAV_MIRROR(TAV_VERNUM_NEWER_FIX, CVerNum::VERNUM_NEWER_FIX),
    TAV_MIRROR(TAV_VERNUM_NEWER_MINOR, CVerNum::VERNUM_NEWER_MINOR),
    TAV_MIRROR(TAV_VERNUM_NEWER_MAJOR, CVerNum::VERNUM_NEWER_MAJOR),
    TAV_MIRROR(TAV_OS_UNKNOWN, OSInfo::OS_UNKNOWN),
    TAV_MIRROR(TAV_OS_WIN95, OSInfo::OS_WIN95),
    TAV_MIRROR(TAV_OS_WIN9X_REVISED, OSInfo::OS_WIN9X_REVISED),
    TAV_MIRROR(TAV_OS_WIN98, OSInfo::OS_WIN98),
    TAV_MIRROR(TAV_OS_WINME, OSInfo::OS_WINME),
    TAV_MIRROR(TAV_OS_WINNT351, OSInfo::OS_WINNT351),
    TAV_MIRROR(TAV_OS_WINNT4, OSInfo::OS_WINNT4),
    TAV_MIRROR(TAV_OS_WIN2000, OSInfo::OS_WIN2000),
    TAV_MIRROR(TAV_OS_WINXP, OSInfo::OS_WINXP),
    TAV_MIRROR(TAV_OS_VISTA, OSInfo::OS_VISTA),
    TAV_MIRROR(TAV_OS_WIN7, OSInfo::OS_WIN7),
    TAV_MIRROR(TAV_OS_CLASS_WIN95, CPlatforme::PLATFORM_WIN95),
    TAV_MIRROR(TAV_OS_CLASS_WIN98, CPlatforme::PLATFORM_WIN98),
    TAV_MIRROR(TAV_OS_CLASS_WINME, CPlatforme::PLATFORM_WINME),
    TAV_MIRROR(TAV_OS_CLASS_NT3, CPlatforme::PLATFORM_NT3),
    TAV_MIRROR(TAV_OS_CLASS_NT4, CPlatforme::PLATFORM_NT4),
    TAV_MIRROR(TAV_OS_CLASS_WIN2K, CPlatforme::PLATFORM_WIN2K),
    TAV_MIRROR(TAV_OS_CLASS_WINXP, CPlatforme::PLATFORM_WINXP),
    TAV_MIRROR(TAV_OS_CLASS_NEWER, CPlatforme::PLATFORM_NEWER),
    TAV_MIRROR(TAV_LOG_ERROR, ERROR_LEVEL),
    TAV_MIRROR(TAV_LOG_WARNING, WARNING_LEVEL),
    TAV_MIRROR(TAV_LOG_INFO, INFO_LEVEL),
    TAV_MIRROR(TAV_LOG_DEBUG, DEBUG_LEVEL),
    TAV_MIRROR(TAV_LOG_DEBUG1, DEBUG1_LEVEL),
    TAV_MIRROR(TAV_LOG_DEBUG2, DEBUG2_LEVEL),
    TAV_MIRROR(TAV_LOG_DEBUG3, DEBUG3_LEVEL),
    TAV_MIRROR(TAV_LOG_DEBUG4, DEBUG4_LEVEL),
    TAV_MIRROR(TAV_SOUND_ASYNC, cWave::PLAY_ASYNC),
    TAV_MIRROR(TAV_SOUND_SYNC, cWave::PLAY_SYNC),
    TAV_MIRROR(TAV_SOUND_LOOP, cWave::PLAY_LOOP),
    TAV_MIRROR(TAV_ACCOUNT_GROUP_ADMINISTRATORS, VxWindowsPermissionsUtils::GROUP_ADMINISTRATORS),
    TAV_MIRROR(TAV_ACCOUNT_GROUP_POWER_USERS, VxWindowsPermissionsUtils::GROUP_POWER_USERS),
    TAV_MIRROR(TAV_ACCOUNT_GROUP_ADMINISTRATORS_OR_POWER_USERS,
               VxWindowsPermissionsUtils::GROUP_ADMINISTRATORS_OR_POWER_USERS),
    TAV_MIRROR(TAV_SW_HIDE, SW_HIDE),
    TAV_MIRROR(TAV_SW_SHOWNORMAL, SW_SHOWNORMAL),
    TAV_MIRROR(TAV_SW_SHOWMINIMIZED, SW_SHOWMINIMIZED),
    TAV_MIRROR(TAV_SW_SHOWMAXIMIZED, SW_SHOWMAXIMIZED),
    TAV_MIRROR(TAV_SW_SHOWNOACTIVATE, SW_SHOWNOACTIVATE),
    TAV_MIRROR(TAV_SW_SHOW, SW_SHOW),
    TAV_MIRROR(TAV_SW_MINIMIZE, SW_MINIMIZE),
    TAV_MIRROR(TAV_SW_SHOWMINNOACTIVE, SW_SHOWMINNOACTIVE),
    TAV_MIRROR(TAV_SW_SHOWNA, SW_SHOWNA),
    TAV_MIRROR(TAV_SW_RESTORE, SW_RESTORE),
    TAV_MIRROR(TAV_SW_SHOWDEFAULT, SW_SHOWDEFAULT),
    TAV_MIRROR(TAV_SW_FORCEMINIMIZE, SW_FORCEMINIMIZE),
};

constexpr bool AllAgree() {
    for (const Mirror& mirror : kMirrors)
        if (mirror.c != mirror.cxx)
            return false;
    return true;
}
static_assert(AllAgree(), "a constant of the C headers differs from the enumeration it mirrors");

}  // namespace

extern "C" int ref_constant(const char* name, long long* value) {
    for (const Mirror& mirror : kMirrors)
        if (std::strcmp(mirror.name, name) == 0) {
            *value = mirror.cxx;
            return 1;
        }
    return 0;
}
