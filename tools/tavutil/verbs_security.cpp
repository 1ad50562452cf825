// Verbs of the account-permissions area: is the current user an administrator (or a power user)?
#include "Cli.h"

#include <TavUtil.h>

namespace {

// Each query writes the library's own progress lines, then the verb prints the answer.
int RunAdmin(const cli::Call& call) {
    cli::RequireCount(call.args, 0, 0);
    const int administrator = VxWindowsPermissionsUtils::IsAdministrator();
    cli::OutLine(L"IsAdministrator: " + cli::YesNo(administrator != 0));
    const int eitherGroup = VxWindowsPermissionsUtils::IsAdministratorOrPowerUser();
    cli::OutLine(L"IsAdministratorOrPowerUser: " + cli::YesNo(eitherGroup != 0));
    return cli::kDone;
}

cli::VerbRegistration admin{{L"admin", L"admin", L"membership of Administrators and Power Users", &RunAdmin, L"",
                             L"The library writes its own progress lines first, then the two answers follow.\n\n"
                             L"examples:\n  tavutil admin",
                             L"(not used by this verb)"}};

}  // namespace
