// Replaces one imported function in the import table of a loaded module (TavUtil.dll) for the lifetime of the
// object, to observe the exact arguments the library hands to the platform where the platform's own answer
// hides them (it appends a terminator to a string stored without one) or where the platform call has no
// visible effect (RegFlushKey). The replacement forwards to the real function.
#pragma once

#include <windows.h>

namespace regtest {

class ImportHook {
public:
    // `module`: the importing module; `dll`: the exporting DLL as named in the import table (any case);
    // `function`: the import's name. `replacement` must have the imported function's signature.
    ImportHook(HMODULE module, const char* dll, const char* function, void* replacement);
    ~ImportHook();
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;

    bool installed() const { return slot_ != nullptr; }
    // The function the import table held before.
    void* original() const { return original_; }

private:
    void** slot_ = nullptr;
    void* original_ = nullptr;
};

HMODULE TavUtilModule();

}  // namespace regtest
