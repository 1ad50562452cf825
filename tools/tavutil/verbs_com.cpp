// Verbs of the automation area: create an automation object by ProgID and print one of its properties,
// or the name of its type.
#include "Cli.h"

#include <TavUtil.h>

namespace {

CComQIPtr<IDispatch> Create(const std::wstring& progId) {
    CComQIPtr<IDispatch> object(ComUtils::CreateObject(progId.c_str()));
    if (!object)
        cli::Err(L"tavutil: no automation object could be created for '" + progId + L"'\n");
    return object;
}

// com get PROGID PROPERTY [--bool|--long|--object]: the property read as a string (the default), as a
// boolean, as a 32-bit number, or as an object (its type name is printed). The library reads the value
// without looking at its type, so the caller chooses the reading that fits the property.
int RunGet(cli::Args args) {
    const bool asBool = cli::TakeFlag(args, L"--bool"), asLong = cli::TakeFlag(args, L"--long"),
               asObject = cli::TakeFlag(args, L"--object");
    cli::RequireCount(args, 2, 2);
    if (asBool + asLong + asObject > 1)
        throw cli::UsageError("choose one of --bool, --long and --object");
    tav::ComInitialization com;  // COM for the verb's thread, for as long as the verb runs
    CComQIPtr<IDispatch> object = Create(args[0]);
    if (!object)
        return 1;
    const wchar_t* name = args[1].c_str();
    if (asBool)
        cli::OutLine(cli::YesNo(ComUtils::GetPropBool(object, name)));
    else if (asLong)
        cli::OutLine(std::to_wstring(ComUtils::GetPropLong(object, name)));
    else if (asObject)
        cli::OutLine(ComUtils::GetObjName(ComUtils::GetDisp(object, name)));
    else
        cli::OutLine(ComUtils::GetPropW(object, name));
    return 0;
}

int RunName(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    tav::ComInitialization com;  // COM for the verb's thread, for as long as the verb runs
    CComQIPtr<IDispatch> object = Create(args[0]);
    if (!object)
        return 1;
    cli::OutLine(ComUtils::GetObjName(object));
    return 0;
}

int RunCom(const cli::Args& args) {
    if (args.empty())
        throw cli::UsageError("missing argument");
    cli::Args rest(args.begin() + 1, args.end());
    if (args[0] == L"get")
        return RunGet(rest);
    if (args[0] == L"name")
        return RunName(rest);
    throw cli::UsageError("unknown com command '" + cli::Narrow(args[0]) + "'");
}

cli::VerbRegistration com{{L"com", L"com get PROGID PROPERTY [--bool|--long|--object] | com name PROGID",
                           L"a new automation object's property or type name", &RunCom}};

}  // namespace
