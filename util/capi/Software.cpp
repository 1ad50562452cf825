// c/software.h: Installed software, from the registry.
#include "capi/c/software.h"

#include "capi/detail/Boundary.h"
#include "files/InstalledSoftware.h"

using namespace tav::capi;

extern "C" {

int32_t tav_software_install_date(wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        const CStdStr<wchar_t> date = TrimdialInstallDate();
        return FoundText(!date.empty(), date, buffer, capacity, needed);
    });
}

int32_t tav_software_application_path(const wchar_t* app, const wchar_t* ext, wchar_t* buffer, size_t capacity,
                                      size_t* needed) {
    if (StrayText({app, ext}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (app == nullptr || ext == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> path;
        const bool found = FindApplicationPath(app, path, ext);
        return FoundText(found, path, buffer, capacity, needed);
    });
}

int32_t tav_software_progid_server(const wchar_t* prog_id, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({prog_id}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (prog_id == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> path;
        const bool found = FindMostRecentProgIdPath(prog_id, path);
        return FoundText(found, path, buffer, capacity, needed);
    });
}

}  // extern "C"
