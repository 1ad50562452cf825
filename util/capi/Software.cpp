// c/software.h: Installed software, from the registry.
#include "capi/c/software.h"

#include "capi/detail/Boundary.h"
#include "files/InstalledSoftware.h"

using namespace tav::capi::detail;

extern "C" {

int32_t tav_software_install_date(wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({Out(buffer, capacity)}, [&]() -> int32_t {
        const CStdStr<wchar_t> date = TrimdialInstallDate();
        return FoundText(!date.empty(), date, buffer, capacity, needed);
    });
}

int32_t tav_software_application_path(const wchar_t* app, const wchar_t* ext, wchar_t* buffer, size_t capacity,
                                      size_t* needed) {
    return OnArgs({app, ext, Out(buffer, capacity)}, [&]() -> int32_t {
        CStdStr<wchar_t> path;
        const bool found = FindApplicationPath(app, path, ext);
        return FoundText(found, path, buffer, capacity, needed);
    });
}

int32_t tav_software_progid_server(const wchar_t* prog_id, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({prog_id, Out(buffer, capacity)}, [&]() -> int32_t {
        CStdStr<wchar_t> path;
        const bool found = FindMostRecentProgIdPath(prog_id, path);
        return FoundText(found, path, buffer, capacity, needed);
    });
}

}  // extern "C"
