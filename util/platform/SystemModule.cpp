#include "platform/SystemModule.h"

#include "platform/detail/SystemBinding.h"

#include <cstring>
#include <cwchar>
#include <string>

namespace tav {

HMODULE LoadSystemModule(const wchar_t* name) {
    // A path would leave the system folder (or, if relative, be searched for like a name).
    if (name == nullptr || *name == L'\0' || std::wcspbrk(name, L"\\/:") != nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    HMODULE module = LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (module != nullptr || GetLastError() != ERROR_INVALID_PARAMETER)
        return module;
    // The loader does not know the flag: the full path in the system folder. LOAD_WITH_ALTERED_SEARCH_PATH
    // makes the module's own dependencies be looked for in that folder first, not beside the program.
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH)
        return nullptr;  // GetSystemDirectoryW's error
    std::wstring path(folder, length);
    if (path.back() != L'\\')
        path += L'\\';
    path += name;
    return LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

namespace platform::detail {

void* Bind(SystemBinding& binding) {
    if (void* address = binding.address.load(std::memory_order_acquire))
        return address;
    const DWORD callersError = GetLastError();
    HMODULE module = binding.handle.load(std::memory_order_acquire);
    if (module == nullptr) {
        // Module names are ASCII.
        std::wstring name(binding.module, binding.module + std::strlen(binding.module));
        module = LoadSystemModule(name.c_str());
        if (module == nullptr)
            return nullptr;
        HMODULE expected = nullptr;
        if (!binding.handle.compare_exchange_strong(expected, module, std::memory_order_acq_rel)) {
            FreeLibrary(module);  // another thread was first: keep one reference
            module = expected;
        }
    }
    void* address = ModuleFunction<void*>(module, binding.function);
    if (address == nullptr)
        return nullptr;  // GetProcAddress's error
    binding.address.store(address, std::memory_order_release);
    SetLastError(callersError);
    return address;
}

}  // namespace platform::detail

}  // namespace tav
