// The process finder: each query of the live instance and of the two other variants, and IsProcessRunning.
#include "Areas.h"

#include "KeySink.h"

#include <TavUtil.h>

#include <windows.h>

namespace soak {

void SoakProcesses(Runner& runner) {
    tavtest::TestWindow sink = KeySink();  // a foreground window of this process for the foreground queries
    sink.BringToFront();
    CProcessFinder* finder = CProcessFinder::Instance(false);
    const DWORD self = GetCurrentProcessId();
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const CStdStr<wchar_t> selfName = CStdStr<wchar_t>(path).substr(CStdStr<wchar_t>(path).find_last_of(L'\\') + 1);

    runner.Check("CProcessFinder GetProcessName", [&] {
        CStdStr<wchar_t> name;
        finder->GetProcessName(self, name);
    });
    runner.Check("CProcessFinder GetProcessFullName", [&] {
        CStdStr<wchar_t> name;
        finder->GetProcessFullName(self, name);
    });
    runner.Check("CProcessFinder GetProcessModules", [&] {
        std::list<CStdStr<wchar_t>> modules;
        finder->GetProcessModules(self, modules);
    });
    runner.Check("CProcessFinder GetForegroundProcessName", [&] { finder->GetForegroundProcessName(0); });
    runner.Check("CProcessFinder GetForegroundProcessFullName", [&] { finder->GetForegroundProcessFullName(0); });
    runner.Check("CProcessFinder WaitForegroundWindow", [] { CProcessFinder::WaitForegroundWindow(); });
    runner.Check("CProcessFinder IsProcessRunning (running)", [&] { finder->IsProcessRunning(selfName, false); });
    runner.Check("CProcessFinder IsProcessRunning (console session)",
                 [&] { finder->IsProcessRunning(selfName, true); });
    runner.Check("CProcessFinder IsProcessRunning (not running)",
                 [&] { finder->IsProcessRunning(L"tav-no-such-program", false); });

    runner.Check("CProcessFinder95 create + query + destroy", [&] {
        CProcessFinder95 toolhelp;
        CStdStr<wchar_t> name;
        toolhelp.GetProcessFullName(self, name);
    });
    runner.Check("CProcessFinderNT create + queries + destroy", [&] {
        CProcessFinderNT psapi;
        CStdStr<wchar_t> name;
        psapi.GetProcessName(self, name);
        psapi.GetProcessFullName(self, name);
    });
    CProcessFinderNT psapi;
    runner.Check("CProcessFinderNT IsProcessRunning", [&] { psapi.IsProcessRunning(selfName, false); });
}

}  // namespace soak
