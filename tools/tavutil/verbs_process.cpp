// Verbs of foreground process tracking: the process in front, whether a program runs, a process's modules.
#include "Cli.h"

#include <TavUtil.h>

#include <algorithm>
#include <stdexcept>

namespace {

// Removes `option VALUE` from the arguments; false when the option is absent.
bool TakeOption(cli::Args& args, const std::wstring& option, std::wstring& value) {
    auto it = std::find(args.begin(), args.end(), option);
    if (it == args.end())
        return false;
    if (it + 1 == args.end())
        throw cli::UsageError(cli::Narrow(option) + " needs a value");
    value = *(it + 1);
    args.erase(it, it + 2);
    return true;
}

int RunForeground(const cli::Args& arguments) {
    cli::Args args = arguments;
    const bool full = cli::TakeFlag(args, L"--full");
    const bool strip = cli::TakeFlag(args, L"--strip");
    std::wstring after;
    int delay = TakeOption(args, L"--after", after) ? cli::ParseInt(after, "MS") : 0;
    cli::RequireCount(args, 0, 0);
    if (delay < 0)
        throw cli::UsageError("MS must not be negative");
    Sleep(static_cast<DWORD>(delay));

    CProcessFinder* finder = CProcessFinder::Instance(strip);
    CStdStr<wchar_t> name = full ? finder->GetForegroundProcessFullName(0) : finder->GetForegroundProcessName(0);
    if (name.empty()) {
        cli::Err(L"tavutil: no process owns a foreground window\n");
        return 1;
    }
    cli::OutLine(name);
    return 0;
}

int RunRunning(const cli::Args& arguments) {
    cli::Args args = arguments;
    const bool console = cli::TakeFlag(args, L"--console");
    cli::RequireCount(args, 1, 1);
    bool running = false;
    try {
        running = CProcessFinder::Instance(false)->IsProcessRunning(args[0].c_str(), console);
    } catch (const std::out_of_range& error) {
        throw cli::UsageError(std::string("NAME needs at least four characters (") + error.what() + ")");
    }
    cli::OutLine(args[0] + (running ? L": running" : L": not running") + (console ? L" in the console session" : L""));
    return running ? 0 : 1;
}

int RunModules(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    const int pid = cli::ParseInt(args[0], "PID");
    std::list<CStdStr<wchar_t>> modules;
    if (!CProcessFinder::Instance(false)->GetProcessModules(static_cast<DWORD>(pid), modules)) {
        cli::Err(L"tavutil: no module list for process " + args[0] + L"\n");
        return 1;
    }
    for (const CStdStr<wchar_t>& module : modules)
        cli::OutLine(module);
    return 0;
}

cli::VerbRegistration foreground{{L"foreground", L"foreground [--full] [--strip] [--after MS]",
                                  L"name (or full path) of the process in front, after an optional delay",
                                  &RunForeground}};
cli::VerbRegistration running{{L"running", L"running NAME [--console]",
                               L"whether a program of that name runs (exit 0 when it does)", &RunRunning}};
cli::VerbRegistration modules{
    {L"modules", L"modules PID", L"the modules a process has loaded, in load order", &RunModules}};

}  // namespace
