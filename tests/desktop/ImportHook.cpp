#include "ImportHook.h"

#include <cstring>

namespace desktoptest {

namespace {

template <typename T>
T* At(HMODULE base, DWORD rva) {
    return reinterpret_cast<T*>(reinterpret_cast<BYTE*>(base) + rva);
}

// The import address table slot of `dll`!`function` in `module`, or null.
void** FindSlot(HMODULE module, const char* dll, const char* function) {
    auto* dos = reinterpret_cast<IMAGE_DOS_HEADER*>(module);
    auto* nt = At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
    const IMAGE_DATA_DIRECTORY& dir = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (dir.VirtualAddress == 0)
        return nullptr;
    for (auto* desc = At<IMAGE_IMPORT_DESCRIPTOR>(module, dir.VirtualAddress); desc->Name != 0; ++desc) {
        if (_stricmp(At<char>(module, desc->Name), dll) != 0)
            continue;
        auto* names = At<IMAGE_THUNK_DATA>(module, desc->OriginalFirstThunk ? desc->OriginalFirstThunk
                                                                             : desc->FirstThunk);
        auto* slots = At<IMAGE_THUNK_DATA>(module, desc->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal))
                continue;
            auto* byName = At<IMAGE_IMPORT_BY_NAME>(module, static_cast<DWORD>(names->u1.AddressOfData));
            if (std::strcmp(reinterpret_cast<const char*>(byName->Name), function) == 0)
                return reinterpret_cast<void**>(&slots->u1.Function);
        }
    }
    return nullptr;
}

void Write(void** slot, void* value) {
    DWORD old = 0;
    VirtualProtect(slot, sizeof(void*), PAGE_READWRITE, &old);
    *slot = value;
    VirtualProtect(slot, sizeof(void*), old, &old);
}

}  // namespace

ImportHook::ImportHook(const char* dll, const char* function, void* replacement) {
    HMODULE library = GetModuleHandleW(L"TavUtil.dll");
    if (library == nullptr)
        return;
    slot_ = FindSlot(library, dll, function);
    if (slot_ == nullptr)
        return;
    original_ = *slot_;
    Write(slot_, replacement);
}

ImportHook::~ImportHook() {
    if (slot_ != nullptr)
        Write(slot_, original_);
}

}  // namespace desktoptest
