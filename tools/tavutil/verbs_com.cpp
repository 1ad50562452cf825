// Verbs of the automation area: create an automation object by ProgID and print one of its properties,
// or the name of its type.
#include "Cli.h"

#include <TavUtil.h>

namespace {

CComQIPtr<IDispatch> Create(const std::wstring& progId) {
    CComQIPtr<IDispatch> object(ComUtils::CreateObject(progId.c_str()));
    if (!object)
        cli::Diagnose(L"no automation object could be created for '" + progId + L"'");
    return object;
}

// com get PROGID PROPERTY [--bool|--long|--object]: the property read as a string (the default), as a
// boolean, as a 32-bit number, or as an object (its type name is printed). The library reads the value
// without looking at its type, so the caller chooses the reading that fits the property.
int RunGet(const cli::Args& args, const cli::Call& call) {
    const bool asBool = call.Has(L"--bool"), asLong = call.Has(L"--long"), asObject = call.Has(L"--object");
    cli::RequireCount(args, 2, 2);
    if (asBool + asLong + asObject > 1)
        throw cli::UsageError("choose one of --bool, --long and --object");
    tav::ComInitialization com;  // COM for the verb's thread, for as long as the verb runs
    CComQIPtr<IDispatch> object = Create(args[0]);
    if (!object)
        return cli::kNotFound;
    const wchar_t* name = args[1].c_str();
    if (asBool)
        cli::OutLine(cli::YesNo(ComUtils::GetPropBool(object, name)));
    else if (asLong)
        cli::OutLine(std::to_wstring(ComUtils::GetPropLong(object, name)));
    else if (asObject)
        cli::OutLine(ComUtils::GetObjName(ComUtils::GetDisp(object, name)));
    else
        cli::OutLine(ComUtils::GetPropW(object, name));
    return cli::kDone;
}

int RunName(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    tav::ComInitialization com;  // COM for the verb's thread, for as long as the verb runs
    CComQIPtr<IDispatch> object = Create(args[0]);
    if (!object)
        return cli::kNotFound;
    cli::OutLine(ComUtils::GetObjName(object));
    return cli::kDone;
}

int RunCom(const cli::Call& call) {
    const cli::Args& args = call.args;
    if (args.empty())
        throw cli::UsageError("missing sub-command (get or name)");
    cli::Args rest(args.begin() + 1, args.end());
    if (args[0] == L"get")
        return RunGet(rest, call);
    if (call.Has(L"--bool") || call.Has(L"--long") || call.Has(L"--object"))
        throw cli::UsageError("--bool, --long and --object are for com get");
    if (args[0] == L"name")
        return RunName(rest);
    std::wstring closest = cli::Closest(args[0], {L"get", L"name"});
    throw cli::UsageError("unknown sub-command '" + cli::Narrow(args[0]) + "'" +
                          (closest.empty() ? "" : " (did you mean '" + cli::Narrow(closest) + "'?)"));
}

cli::VerbRegistration com{{L"com", L"com get [--bool|--long|--object] PROGID PROPERTY | com name PROGID",
                           L"a new automation object's property or type name", &RunCom, L"--bool --long --object",
                           L"The property is read as text unless --bool, --long or --object says how (the\n"
                           L"library reads it without looking at its type).\n\nexamples:\n"
                           L"  tavutil com name VBScript.RegExp\n  tavutil com get --bool VBScript.RegExp Global",
                           L"no automation object could be created for PROGID"}};

}  // namespace
