// Verbs of program launching: splitting and running command lines, the installed messengers, and the
// installed-software look-ups.
#include "Cli.h"

#include <TavUtil.h>

#include <algorithm>

namespace {

// The argument text is shown in brackets: its leading blank is part of it.
void PrintSplit(const CStdStr<wchar_t>& program, const CStdStr<wchar_t>& args) {
    cli::OutLine(L"program:   " + program);
    cli::OutLine(L"arguments: [" + args + L"]");
}

int RunSplit(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    CStdStr<wchar_t> program, arguments;
    if (!ExtractProgram(args[0], program, arguments))
        throw cli::UsageError("the command line is empty");
    PrintSplit(program, arguments);
    return 0;
}

int RunRun(const cli::Args& given) {
    cli::Args args = given;
    bool wait = cli::TakeFlag(args, L"--wait");
    unsigned int show = SW_SHOWNORMAL;
    auto showFlag = std::find(args.begin(), args.end(), L"--show");
    if (showFlag != args.end()) {
        if (showFlag + 1 == args.end())
            throw cli::UsageError("--show needs a number");
        show = static_cast<unsigned int>(cli::ParseInt(*(showFlag + 1), "the show command"));
        args.erase(showFlag, showFlag + 2);
    }
    cli::RequireCount(args, 1, 1);
    CStdStr<wchar_t> program, arguments;
    if (ExtractProgram(args[0], program, arguments))
        PrintSplit(program, arguments);

    HANDLE process = nullptr;
    bool started = ExecuteProgram(args[0], show, wait, wait ? nullptr : &process);
    tav::UniqueHandle owned(process);
    cli::OutLine(L"started:   " + cli::YesNo(started));
    if (owned)
        cli::OutLine(L"process:   " + std::to_wstring(GetProcessId(owned.get())));
    return started ? 0 : 1;
}

int RunMessengers(const cli::Args& args) {
    cli::RequireCount(args, 0, 0);
    std::list<CStdStr<wchar_t>> messengers;
    GetAvailableMessengers(messengers);
    if (messengers.empty())
        cli::OutLine(L"(no messenger installed)");
    for (const CStdStr<wchar_t>& name : messengers)
        cli::OutLine(name);
    CStdStr<wchar_t> companion;
    if (IsPVAppInstalled(companion))
        cli::OutLine(L"companion program: " + companion);
    return 0;
}

int RunMessenger(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    if (!LaunchMessenger(args[0])) {
        cli::OutLine(L"no command line registered for \"" + args[0] + L"\"");
        return 1;
    }
    cli::OutLine(L"started \"" + args[0] + L"\" from its registered command line");
    return 0;
}

int RunAppPath(const cli::Args& args) {
    cli::RequireCount(args, 2, 2);
    CStdStr<wchar_t> path;
    if (!FindApplicationPath(args[0], path, args[1])) {
        cli::OutLine(L"no application path registered for " + args[0] + L"." + args[1]);
        return 1;
    }
    cli::OutLine(path);
    return 0;
}

int RunProgIdServer(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    CStdStr<wchar_t> path;
    if (!FindMostRecentProgIdPath(args[0], path)) {
        cli::OutLine(L"no local server for the current version of " + args[0]);
        return 1;
    }
    cli::OutLine(path);
    return 0;
}

int RunInstallDate(const cli::Args& args) {
    cli::RequireCount(args, 0, 0);
    CStdStr<wchar_t> date = TrimdialInstallDate();
    if (date.IsEmpty()) {
        cli::OutLine(L"no install date recorded");
        return 1;
    }
    cli::OutLine(date);
    return 0;
}

cli::VerbRegistration run{{L"run", L"run [--wait] [--show N] CMDLINE",
                           L"start a command line as a button would (shell, or --wait for its window)", &RunRun}};
cli::VerbRegistration split{{L"split", L"split CMDLINE", L"the program and arguments of a command line", &RunSplit}};
cli::VerbRegistration messengers{
    {L"messengers", L"messengers", L"the installed instant messengers (and the companion program)", &RunMessengers}};
cli::VerbRegistration messenger{
    {L"messenger", L"messenger NAME", L"start an instant messenger by its display name", &RunMessenger}};
cli::VerbRegistration apppath{{L"apppath", L"apppath APP EXT", L"the App Paths registration of APP.EXT", &RunAppPath}};
cli::VerbRegistration progidServer{{L"progid-server", L"progid-server PROGID",
                                    L"the local server of the current version of a ProgID", &RunProgIdServer}};
cli::VerbRegistration installdate{
    {L"installdate", L"installdate", L"the install date of the suite, as its installer stored it", &RunInstallDate}};

}  // namespace
