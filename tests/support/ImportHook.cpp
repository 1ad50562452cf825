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

// A run-time binding of TavUtil.dll as util/platform/detail/SystemBinding.h lays it out.
struct BindingRecord {
    const char* module;
    const char* function;
    void* address;
    HMODULE handle;
};
static_assert(sizeof(BindingRecord) == 32, "the records of .tavbind are 32 bytes each");

// The address slot of the run-time binding of `dll`!`function` in `module`'s ".tavbind" section, or null.
void** FindBindingSlot(HMODULE module, const char* dll, const char* function) {
    auto* dos = reinterpret_cast<IMAGE_DOS_HEADER*>(module);
    auto* nt = At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
    IMAGE_SECTION_HEADER* section = IMAGE_FIRST_SECTION(nt);
    for (WORD i = 0; i < nt->FileHeader.NumberOfSections; ++i, ++section) {
        if (std::strncmp(reinterpret_cast<const char*>(section->Name), ".tavbind", IMAGE_SIZEOF_SHORT_NAME) != 0)
            continue;
        auto* records = At<BindingRecord>(module, section->VirtualAddress);
        const size_t count = section->Misc.VirtualSize / sizeof(BindingRecord);
        for (size_t n = 0; n < count; ++n) {
            const BindingRecord& record = records[n];
            if (record.module != nullptr && record.function != nullptr && _stricmp(record.module, dll) == 0 &&
                std::strcmp(record.function, function) == 0)
                return &records[n].address;
        }
    }
    return nullptr;
}

// `dll`!`function` as the library binds it: from the system folder.
void* SystemFunction(const char* dll, const char* function) {
    HMODULE module = LoadLibraryExA(dll, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return module != nullptr ? reinterpret_cast<void*>(GetProcAddress(module, function)) : nullptr;
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
    if (module == nullptr)
        return;
    slot_ = FindSlot(module, dll, function);
    if (slot_ == nullptr) {
        slot_ = FindBindingSlot(module, dll, function);
        if (slot_ != nullptr && *slot_ == nullptr && SystemFunction(dll, function) == nullptr)
            slot_ = nullptr;  // nothing to forward to
    }
    if (slot_ == nullptr)
        return;
    previous_ = *slot_;
    original_ = previous_ != nullptr ? previous_ : SystemFunction(dll, function);
    WriteSlot(slot_, replacement);
}

ImportHook::~ImportHook() {
    if (slot_ != nullptr)
        WriteSlot(slot_, previous_);
}

}  // namespace tavtest
