// c/processes.h: The process finder: foreground owner, names, paths, modules.
#include "capi/c/processes.h"

#include "capi/detail/Boundary.h"
#include "process/ProcessFinder.h"

using namespace tav::capi::detail;

namespace {

// The process-wide finder; the first call that makes it (here or in the C++ interface) chose its flag.
CProcessFinder& Finder() { return *CProcessFinder::Instance(false); }

}  // namespace

extern "C" {

int32_t tav_process_finder_init(int32_t strip_extension) {
    return Guarded(
        [&]() -> int32_t { return CProcessFinder::Instance(Flag(strip_extension))->StripsExtension() ? 1 : 0; });
}

tav_hwnd tav_process_wait_foreground_window(void) {
    return GuardedHandle([]() -> tav_hwnd { return CProcessFinder::WaitForegroundWindow(); });
}

int32_t tav_process_foreground_name(intptr_t window, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({Out(buffer, capacity)}, [&]() -> int32_t {
        return CopyText(Finder().GetForegroundProcessName(window), buffer, capacity, needed);
    });
}

int32_t tav_process_foreground_full_name(intptr_t window, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({Out(buffer, capacity)}, [&]() -> int32_t {
        return CopyText(Finder().GetForegroundProcessFullName(window), buffer, capacity, needed);
    });
}

int32_t tav_process_name(uint32_t pid, wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        return QueriedText([&](CStdStr<wchar_t>& name) { return Finder().GetProcessName(pid, name); }, buffer, capacity,
                           needed);
    });
}

int32_t tav_process_full_name(uint32_t pid, wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        return QueriedText([&](CStdStr<wchar_t>& path) { return Finder().GetProcessFullName(pid, path); }, buffer,
                           capacity, needed);
    });
}

int32_t tav_process_is_running(const wchar_t* name, int32_t console_session_only) {
    return OnArgs({name},
                  [&]() -> int32_t { return Finder().IsProcessRunning(name, Flag(console_session_only)) ? 1 : 0; });
}

int32_t tav_process_modules(uint32_t pid, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({Out(buffer, capacity)}, [&]() -> int32_t {
        std::list<CStdStr<wchar_t>> modules;
        const bool found = Finder().GetProcessModules(pid, modules);
        if (!found)
            modules.clear();
        return WithText(found ? 1 : 0, CopyList(modules, buffer, capacity, needed));
    });
}

}  // extern "C"
