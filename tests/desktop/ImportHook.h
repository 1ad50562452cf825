// Watches a system call that TavUtil.dll makes: the DLL's import of the function is pointed at a recorder
// for the object's lifetime. The recorder forwards to the real function, so the system still does the
// work; the test sees the arguments the library chose (flags, sizes, strings) that leave no other trace.
#pragma once

#include <windows.h>

namespace desktoptest {

class ImportHook {
public:
    // `dll` and `function` name the import of TavUtil.dll to replace, e.g. "winmm.dll", "PlaySoundW".
    ImportHook(const char* dll, const char* function, void* replacement);
    ~ImportHook();
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;

    bool installed() const { return slot_ != nullptr; }
    // The real function.
    template <typename Fn>
    Fn original() const {
        return reinterpret_cast<Fn>(original_);
    }

private:
    void** slot_ = nullptr;
    void* original_ = nullptr;
};

}  // namespace desktoptest
