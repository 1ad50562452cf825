#include "ImportHook.h"

#include <cstring>

namespace tavtest {

namespace {

template <typename T> T* At(HMODULE base, DWORD rva) {
    return reinterpret_cast<T*>(reinterpret_cast<BYTE*>(base) + rva);
}

// The import address table slot of `dll`!`function` in `module`, or null. Imports by ordinal are skipped;
// a module linked without a separate name table keeps the names in the address table until it is bound.
void** FindSlot(HMODULE module, const char* dll, const char* function) {
    auto* dos = reinterpret_cast<IMAGE_DOS_HEADER*>(module);
    auto* nt = At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
    const IMAGE_DATA_DIRECTORY& dir = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (dir.VirtualAddress == 0)
        return nullptr;
    for (auto* desc = At<IMAGE_IMPORT_DESCRIPTOR>(module, dir.VirtualAddress); desc->Name != 0; ++desc) {
        if (_stricmp(At<char>(module, desc->Name), dll) != 0)
            continue;
        auto* names =
            At<IMAGE_THUNK_DATA>(module, desc->OriginalFirstThunk ? desc->OriginalFirstThunk : desc->FirstThunk);
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

void WriteSlot(void** slot, void* value) {
    DWORD old = 0;
    VirtualProtect(slot, sizeof(void*), PAGE_READWRITE, &old);
    *slot = value;
    VirtualProtect(slot, sizeof(void*), old, &old);
}

}  // namespace

HMODULE TavUtilModule() { return GetModuleHandleW(L"TavUtil.dll"); }

ImportHook::ImportHook(const char* dll, const char* function, void* replacement)
    : ImportHook(TavUtilModule(), dll, function, replacement) {}

ImportHook::ImportHook(HMODULE module, const char* dll, const char* function, void* replacement) {
    slot_ = module != nullptr ? FindSlot(module, dll, function) : nullptr;
    if (slot_ == nullptr)
        return;
    original_ = *slot_;
    WriteSlot(slot_, replacement);
}

ImportHook::~ImportHook() {
    if (slot_ != nullptr)
        WriteSlot(slot_, original_);
}

}  // namespace tavtest
