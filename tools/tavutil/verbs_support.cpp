// Verbs of the support-information area: the query the suite appends to a support address.
#include "Cli.h"

#include <TavUtil.h>

namespace {

// Prints the query CSWandDeviceInfo builds for URL (an empty line when URL is not a support address).
int RunSupportQuery(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    CSWandDeviceInfo info;
    cli::OutLine(info.search(args[0]));
    return 0;
}

cli::VerbRegistration supportQuery{
    {L"support-query", L"support-query URL", L"the support query appended to URL", &RunSupportQuery}};

}  // namespace
