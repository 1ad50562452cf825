// Verbs of the support-information area: the query the suite appends to a support address.
#include "Cli.h"

#include <TavUtil.h>

namespace {

// Prints the query CSWandDeviceInfo builds for URL (an empty line when URL is not a support address).
int RunSupportQuery(const cli::Call& call) {
    const cli::Args& args = call.args;
    cli::RequireCount(args, 1, 1);
    CSWandDeviceInfo info;
    cli::OutLine(info.search(args[0]));
    return cli::kDone;
}

cli::VerbRegistration supportQuery{
    {L"support-query", L"support-query URL", L"the support query appended to URL", &RunSupportQuery, L"",
     L"Only the maker's support addresses get a query; for any other address the line is empty.\n\n"
     L"examples:\n  tavutil support-query 'http://www.velmorax.com/support?B=3'",
     L"(not used by this verb)"}};

}  // namespace
