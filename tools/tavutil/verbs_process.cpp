// Verbs of foreground process tracking: the process in front, whether a program runs, a process's modules.
#include "Cli.h"

#include "Json.h"

#include <TavUtil.h>

#include <stdexcept>

namespace {

int RunForeground(const cli::Call& call) {
    const bool full = call.Has(L"--full");
    const bool strip = call.Has(L"--strip");
    const int delay = call.Number(L"--after", 0, 0, cli::kMaximumDelayMs);
    cli::RequireCount(call.args, 0, 0);
    Sleep(static_cast<DWORD>(delay));

    CProcessFinder* finder = CProcessFinder::Instance(strip);
    CStdStr<wchar_t> name = full ? finder->GetForegroundProcessFullName(0) : finder->GetForegroundProcessName(0);
    if (name.empty())
        return cli::Fail(L"no process owns a foreground window");
    if (call.Has(L"--json"))
        cli::OutJson({{full ? "path" : "name", cli::Narrow(name)}});
    else
        cli::OutLine(name);
    return cli::kDone;
}

int RunRunning(const cli::Call& call) {
    const bool console = call.Has(L"--console");
    cli::RequireCount(call.args, 1, 1);
    const std::wstring& name = call.args[0];
    bool running = false;
    try {
        running = CProcessFinder::Instance(false)->IsProcessRunning(name.c_str(), console);
    } catch (const std::out_of_range&) {
        // The library's look-up takes the last four characters of the name to see whether it ends with .exe.
        throw cli::UsageError("NAME needs at least four characters, not '" + cli::Narrow(name) + "'");
    }
    const std::wstring where = console ? L" in the console session" : L"";
    if (!running)
        return cli::Fail(name + L" is not running" + where);
    cli::OutLine(name + L" is running" + where);
    return cli::kDone;
}

int RunModules(const cli::Call& call) {
    cli::RequireCount(call.args, 1, 1);
    const int pid = cli::ParseNumber(call.args[0], "PID", 0, 0x7FFFFFFF);
    std::list<CStdStr<wchar_t>> modules;
    if (!CProcessFinder::Instance(false)->GetProcessModules(static_cast<DWORD>(pid), modules))
        return cli::Fail(L"no module list for process " + call.args[0]);
    if (call.Has(L"--json")) {
        cli::Json list = cli::Json::array();
        for (const CStdStr<wchar_t>& module : modules)
            list.push_back(cli::Narrow(module));
        cli::OutJson({{"process", pid}, {"modules", list}});
        return cli::kDone;
    }
    for (const CStdStr<wchar_t>& module : modules)
        cli::OutLine(module);
    return cli::kDone;
}

cli::VerbRegistration foreground{{L"foreground", L"foreground [--full] [--strip] [--after MS] [--json]",
                                  L"name (or full path) of the process in front, after an optional delay",
                                  &RunForeground, L"--full --strip --after=MS --json",
                                  L"--full prints the whole path, --strip the name without its extension, --after\n"
                                  L"waits MS milliseconds first (time to bring a window to the front).\n\n"
                                  L"examples:\n  tavutil foreground --after 1500\n  tavutil foreground --full --json",
                                  L"no process owns a foreground window"}};
cli::VerbRegistration running{{L"running", L"running [--console] NAME",
                               L"whether a program of that name runs (exit 0 when it does)", &RunRunning, L"--console",
                               L"\".exe\" is added unless NAME ends with it; NAME needs at least four characters.\n"
                               L"--console counts only programs of the console session.\n\n"
                               L"examples:\n  tavutil running notepad\n  tavutil running --console NOTEPAD.EXE",
                               L"no such program is running"}};
cli::VerbRegistration modules{{L"modules", L"modules [--json] PID", L"the modules a process has loaded, in load order",
                               &RunModules, L"--json", L"examples:\n  tavutil modules 32\n  tavutil modules --json 32",
                               L"the process's modules could not be listed"}};

}  // namespace
