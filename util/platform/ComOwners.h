// Owners for the Automation values that are not handles: a VARIANT (cleared with VariantClear) and a
// string the COM task allocator handed out (freed with CoTaskMemFree). BSTRs have their owner in
// Handles.h (tav::UniqueBstr).
#pragma once

#include <windows.h>
#include <objbase.h>
#include <oleauto.h>

#include "platform/Handles.h"

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
struct FreeCoTaskMem { static void close(LPOLESTR s) { CoTaskMemFree(s); } };
}  // namespace detail

// A wide string from the COM task allocator (display names, StringFromCLSID).
using UniqueCoTaskString = UniqueResource<LPOLESTR, nullptr, detail::FreeCoTaskMem>;

}  // namespace tav
