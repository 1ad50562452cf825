// Functions of system DLLs that the library binds at run time, once for the whole process, instead of
// importing them: version.dll and winmm.dll are not in the list of DLLs that Windows always takes from the
// system folder, so a static import of them would load a copy planted beside the host program. Each area
// declares its bindings in one place (files/detail/VersionFunctions.cpp, desktop/detail/SoundFunctions.cpp)
// and calls them through functions that fail the way the area's operation fails when a binding cannot be made.
#pragma once

#include <windows.h>

#include <atomic>

namespace tav::platform::detail {

// One function of a system DLL, bound on first use: process-wide state, not guarded by a lock (two threads
// binding at once both find the same address). Its module is loaded with LoadSystemModule and stays loaded
// until the process ends: the address must stay valid for every later call, and a DLL may not free modules
// while it is being unloaded. A failed binding is tried again at the next call.
// The records have a fixed layout and are gathered in the module's ".tavbind" section (TAV_SYSTEM_BINDING),
// so that the run-time bindings of TavUtil.dll can be listed and watched from outside the way its import
// table can (tests/support/ImportHook).
struct alignas(32) SystemBinding {
    const char* module;           // e.g. "winmm.dll"
    const char* function;         // e.g. "PlaySoundW"
    std::atomic<void*> address;   // null until bound
    std::atomic<HMODULE> handle;  // the module once loaded, kept until the process ends
};
static_assert(sizeof(SystemBinding) == 32, "the records of .tavbind are 32 bytes each");

// The bound address of `binding`; null when the module cannot be loaded from the system folder or lacks
// the export. A binding that succeeds leaves the caller's last error as it was; one that fails leaves the
// loader's error.
void* Bind(SystemBinding& binding);

template <typename Fn> Fn BoundFunction(SystemBinding& binding) { return reinterpret_cast<Fn>(Bind(binding)); }

}  // namespace tav::platform::detail

// Declares the binding `variable` of `function` (a plain name, e.g. PlaySoundW) in the system DLL `module`
// (e.g. "winmm.dll"), at namespace scope.
#define TAV_SYSTEM_BINDING(variable, module, function)                                                                 \
    __attribute__((section(".tavbind"), used)) ::tav::platform::detail::SystemBinding variable {                       \
        module, #function, {nullptr}, { nullptr }                                                                      \
    }
