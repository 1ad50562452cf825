// Verbs of program launching: splitting and running command lines, the installed messengers, and the
// installed-software look-ups.
#include "Cli.h"

#include "Json.h"

#include <TavUtil.h>

#include <algorithm>

namespace {

// The argument text is shown in brackets: its leading blank is part of it.
void PrintSplit(const CStdStr<wchar_t>& program, const CStdStr<wchar_t>& args) {
    cli::OutLine(L"program:   " + program);
    cli::OutLine(L"arguments: [" + args + L"]");
}

int RunSplit(const cli::Call& call) {
    cli::RequireCount(call.args, 1, 1);
    CStdStr<wchar_t> program, arguments;
    if (!ExtractProgram(call.args[0], program, arguments))
        throw cli::UsageError("the command line is empty");
    if (call.Has(L"--json"))
        cli::OutJson({{"program", cli::Narrow(program)}, {"arguments", cli::Narrow(arguments)}});
    else
        PrintSplit(program, arguments);
    return cli::kDone;
}

int RunRun(const cli::Call& call) {
    const cli::Args& args = call.args;
    const bool wait = call.Has(L"--wait");
    const unsigned int show = static_cast<unsigned int>(call.Number(L"--show", SW_SHOWNORMAL, 0, SW_MAX));
    cli::RequireCount(args, 1, 1);
    CStdStr<wchar_t> program, arguments;
    if (!ExtractProgram(args[0], program, arguments))
        throw cli::UsageError("the command line is empty");
    PrintSplit(program, arguments);

    HANDLE process = nullptr;
    bool started = ExecuteProgram(args[0], show, wait, wait ? nullptr : &process);
    tav::UniqueHandle owned(process);
    if (!started)
        return cli::Fail(L"the command line could not be started");
    cli::OutLine(L"started:   yes");
    if (owned)
        cli::OutLine(L"process:   " + std::to_wstring(GetProcessId(owned.get())));
    return cli::kDone;
}

int RunMessengers(const cli::Call& call) {
    cli::RequireCount(call.args, 0, 0);
    std::list<CStdStr<wchar_t>> messengers;
    GetAvailableMessengers(messengers);
    CStdStr<wchar_t> companion;
    const bool hasCompanion = IsPVAppInstalled(companion) != 0;
    if (call.Has(L"--json")) {
        cli::Json names = cli::Json::array();
        for (const CStdStr<wchar_t>& name : messengers)
            names.push_back(cli::Narrow(name));
        cli::OutJson({{"messengers", names}, {"companion", hasCompanion ? cli::JsonText(companion) : cli::Json()}});
        return cli::kDone;
    }
    if (messengers.empty())
        cli::OutLine(L"(no messenger installed)");
    for (const CStdStr<wchar_t>& name : messengers)
        cli::OutLine(name);
    if (hasCompanion)
        cli::OutLine(L"companion program: " + companion);
    return cli::kDone;
}

int RunMessenger(const cli::Call& call) {
    cli::RequireCount(call.args, 1, 1);
    const std::wstring& name = call.args[0];
    if (!LaunchMessenger(name))
        return cli::Fail(L"no command line registered for \"" + name + L"\"");
    cli::OutLine(L"started \"" + name + L"\" from its registered command line");
    return cli::kDone;
}

int RunAppPath(const cli::Call& call) {
    cli::RequireCount(call.args, 2, 2);
    CStdStr<wchar_t> path;
    if (!FindApplicationPath(call.args[0], path, call.args[1]))
        return cli::Fail(L"no application path registered for " + call.args[0] + L"." + call.args[1]);
    cli::OutLine(path);
    return cli::kDone;
}

int RunProgIdServer(const cli::Call& call) {
    cli::RequireCount(call.args, 1, 1);
    CStdStr<wchar_t> path;
    if (!FindMostRecentProgIdPath(call.args[0], path))
        return cli::Fail(L"no local server for the current version of " + call.args[0]);
    cli::OutLine(path);
    return cli::kDone;
}

int RunInstallDate(const cli::Call& call) {
    cli::RequireCount(call.args, 0, 0);
    CStdStr<wchar_t> date = TrimdialInstallDate();
    if (date.IsEmpty())
        return cli::Fail(L"no install date recorded");
    cli::OutLine(date);
    return cli::kDone;
}

cli::VerbRegistration run{{L"run", L"run [--wait] [--show N] CMDLINE",
                           L"start a command line as a button would (shell, or --wait for its window)", &RunRun,
                           L"--wait --show=N",
                           L"The line is split as split does, then started. --show is a ShowWindow command\n"
                           L"(0 to 11; 1 shows normally), --wait waits until the program's window is ready.\n\n"
                           L"examples:\n  tavutil run notepad.exe\n  tavutil run --wait '%WINDIR%\\notepad.exe a.txt'",
                           L"the program could not be started"}};
cli::VerbRegistration split{
    {L"split", L"split [--json] CMDLINE", L"the program and arguments of a command line", &RunSplit, L"--json",
     L"The program is the shortest part before a blank that names an existing file; the\n"
     L"arguments keep their leading blank.\n\nexamples:\n"
     L"  tavutil split '%WINDIR%\\notepad.exe readme.txt'\n  tavutil split --json 'notepad a b'",
     L"(not used by this verb)"}};
cli::VerbRegistration messengers{{L"messengers", L"messengers [--json]",
                                  L"the installed instant messengers (and the companion program)", &RunMessengers,
                                  L"--json", L"examples:\n  tavutil messengers\n  tavutil messengers --json",
                                  L"(not used by this verb)"}};
cli::VerbRegistration messenger{{L"messenger", L"messenger NAME", L"start an instant messenger by its display name",
                                 &RunMessenger, L"", L"examples:\n  tavutil messenger \"Windows Messenger\"",
                                 L"no command line is registered for NAME"}};
cli::VerbRegistration apppath{{L"apppath", L"apppath APP EXT", L"the App Paths registration of APP.EXT", &RunAppPath,
                               L"", L"examples:\n  tavutil apppath iexplore exe",
                               L"no application path is registered"}};
cli::VerbRegistration progidServer{{L"progid-server", L"progid-server PROGID",
                                    L"the local server of the current version of a ProgID", &RunProgIdServer, L"",
                                    L"examples:\n  tavutil progid-server Word.Application",
                                    L"no local server is registered for the current version"}};
cli::VerbRegistration installdate{{L"installdate", L"installdate",
                                   L"the install date of the suite, as its installer stored it", &RunInstallDate, L"",
                                   L"examples:\n  tavutil installdate", L"no install date is recorded"}};

}  // namespace
