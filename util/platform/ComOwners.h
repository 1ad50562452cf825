// Owners for the Automation and shell values that are not handles: a VARIANT (cleared with VariantClear),
// a string the COM task allocator handed out (freed with CoTaskMemFree) and a shell item list. BSTRs have
// their owner in Handles.h (tav::UniqueBstr); COM initialisation has its guard in Guards.h.
#pragma once

#include <windows.h>
#include <objbase.h>
#include <oleauto.h>
#include <shlobj.h>

#include "Handles.h"

namespace tav {

// A VARIANT that starts out VT_EMPTY (with its value bits zero) and is cleared when the owner ends.
class UniqueVariant {
public:
    UniqueVariant() noexcept {
        ZeroMemory(&value_, sizeof value_);
        VariantInit(&value_);
    }
    ~UniqueVariant() { VariantClear(&value_); }
    UniqueVariant(const UniqueVariant&) = delete;
    UniqueVariant& operator=(const UniqueVariant&) = delete;

    VARIANT* get() noexcept { return &value_; }
    const VARIANT* get() const noexcept { return &value_; }
    VARIANT* operator->() noexcept { return &value_; }
    const VARIANT* operator->() const noexcept { return &value_; }

private:
    VARIANT value_;
};

namespace detail {
struct FreeCoTaskMem {
    static void close(LPOLESTR s) { CoTaskMemFree(s); }
};
// An item list goes back to the shell's allocator. Should the shell not hand that allocator out, the
// list is freed all the same: on every system this library runs on, the shell allocator is the COM task
// allocator.
struct FreeItemList {
    static void close(LPITEMIDLIST item) {
        IMalloc* allocator = nullptr;
        if (SUCCEEDED(SHGetMalloc(&allocator)) && allocator != nullptr) {
            allocator->Free(item);
            allocator->Release();
        } else {
            CoTaskMemFree(item);
        }
    }
};
}  // namespace detail

// A wide string from the COM task allocator (display names, StringFromCLSID).
using UniqueCoTaskString = UniqueResource<LPOLESTR, detail::FreeCoTaskMem>;

// An item list the shell handed out (SHBrowseForFolderW and friends).
using UniqueItemList = UniqueResource<LPITEMIDLIST, detail::FreeItemList>;

}  // namespace tav
