// Watches a system call that a loaded module (TavUtil.dll unless told otherwise) makes: the module's import
// of the function is pointed at a replacement for the object's lifetime. An import is either an entry of
// the module's import table or, for the functions TavUtil.dll binds at run time from the system folder
// (version.dll, winmm.dll), a record of its ".tavbind" section (util/platform/detail/SystemBinding.h); a
// record not bound yet is bound by the hook, and given back unbound. The replacement forwards to the real
// function, so the system still does the work, and the test sees the arguments the library chose where they
// leave no other trace (flags, sizes, a string stored without a terminator, a call with no visible effect).
#pragma once

#include <windows.h>

namespace tavtest {

// TavUtil.dll as loaded in this process.
HMODULE TavUtilModule();

class ImportHook {
public:
    // `dll`: the exporting DLL as the import table names it (any case), e.g. "winmm.dll"; `function`: the
    // import's name, e.g. "PlaySoundW". `replacement` must have the imported function's signature.
    ImportHook(const char* dll, const char* function, void* replacement);
    // The same for the imports of `module`.
    ImportHook(HMODULE module, const char* dll, const char* function, void* replacement);
    ~ImportHook();
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;

    bool installed() const { return slot_ != nullptr; }
    // The function the import table held before: the real one.
    template <typename Fn> Fn original() const { return reinterpret_cast<Fn>(original_); }

private:
    void** slot_ = nullptr;
    void* original_ = nullptr;
    void* previous_ = nullptr;  // what the slot held: the original, or null for a run-time binding not made yet
};

}  // namespace tavtest
