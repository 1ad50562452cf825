// Loading the DLLs of Windows itself. Every module the library loads on its own account comes from the
// system folder and from nowhere else: never from the host program's folder, the current folder or PATH,
// where a planted copy ("dwmapi.dll", "version.dll" beside a program) would run its code in the host.
//
// - LoadSystemModule: the loader, by module name ("dwmapi.dll", "PSAPI").
// - SystemModule: an owner of one module loaded that way, freed with the object.
// - ModuleFunction: the typed look-up of a function in a loaded module.
// Functions bound once for the whole process (those of version.dll and winmm.dll) are declared with
// platform/detail/SystemBinding.h.
//
// What a caller names itself (CDynFuncLoad) is loaded the way the caller asked: that choice is the caller's.
#pragma once

#include "Export.h"
#include "Handles.h"

#include <windows.h>

namespace tav {

// `name` from the system folder only (LoadLibraryExW with LOAD_LIBRARY_SEARCH_SYSTEM32), or, where the
// loader refuses that flag (Windows 7 without its loader update answers ERROR_INVALID_PARAMETER), by its
// full path in GetSystemDirectoryW. `name` is a module name, not a path: one with a folder or a drive in
// it is refused (ERROR_INVALID_PARAMETER). Null on failure, with the loader's error as the last error.
// Never changes the search path of the process (no SetDllDirectory, no SetDefaultDllDirectories).
TAVUTIL_API HMODULE LoadSystemModule(const wchar_t* name);

// The typed look-up: null when the module is null or lacks the export.
template <typename Fn> Fn ModuleFunction(HMODULE module, const char* name) {
    return module != nullptr ? reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(module, name))) : nullptr;
}

// A system DLL loaded by LoadSystemModule, freed when the owner goes.
class SystemModule {
public:
    SystemModule() = default;
    explicit SystemModule(const wchar_t* name) : module_(LoadSystemModule(name)) {}

    // Frees the module held, then loads `name`.
    void load(const wchar_t* name) { module_.reset(LoadSystemModule(name)); }
    void reset() { module_.reset(); }

    HMODULE get() const { return module_.get(); }
    bool valid() const { return module_.valid(); }
    explicit operator bool() const { return valid(); }

    // Null when the module is not loaded or lacks the export.
    template <typename Fn> Fn getFunction(const char* name) const { return ModuleFunction<Fn>(module_.get(), name); }

private:
    UniqueModule module_;
};

}  // namespace tav
