#include "ImportHook.h"

#include <cstring>

namespace regtest {

namespace {

void WriteSlot(void** slot, void* value) {
    DWORD oldProtection = 0;
    VirtualProtect(slot, sizeof(void*), PAGE_READWRITE, &oldProtection);
    *slot = value;
    VirtualProtect(slot, sizeof(void*), oldProtection, &oldProtection);
}

void** FindSlot(HMODULE module, const char* dll, const char* function) {
    auto base = reinterpret_cast<unsigned char*>(module);
    auto dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    auto nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& dir = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (dir.VirtualAddress == 0)
        return nullptr;
    for (auto desc = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + dir.VirtualAddress); desc->Name;
         ++desc) {
        if (_stricmp(reinterpret_cast<const char*>(base + desc->Name), dll) != 0 || desc->OriginalFirstThunk == 0)
            continue;
        auto names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + desc->OriginalFirstThunk);
        auto slots = reinterpret_cast<IMAGE_THUNK_DATA*>(base + desc->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal))
                continue;
            auto byName = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(byName->Name), function) == 0)
                return reinterpret_cast<void**>(&slots->u1.Function);
        }
    }
    return nullptr;
}

}  // namespace

ImportHook::ImportHook(HMODULE module, const char* dll, const char* function, void* replacement) {
    slot_ = module ? FindSlot(module, dll, function) : nullptr;
    if (slot_ == nullptr)
        return;
    original_ = *slot_;
    WriteSlot(slot_, replacement);
}

ImportHook::~ImportHook() {
    if (slot_ != nullptr)
        WriteSlot(slot_, original_);
}

HMODULE TavUtilModule() { return GetModuleHandleW(L"TavUtil.dll"); }

}  // namespace regtest
