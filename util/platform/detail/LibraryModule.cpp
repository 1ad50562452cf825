#include "platform/detail/LibraryModule.h"

namespace tav::platform::detail {

HMODULE LibraryModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&LibraryModule), &module);
    return module;
}

}  // namespace tav::platform::detail
