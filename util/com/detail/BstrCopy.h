// Copying the caller's names and ProgIDs into BSTRs, shared by the ComUtils functions.
#pragma once

#include "platform/Handles.h"
#include "platform/OleException.h"

namespace tav::com::detail {

// A null text stays a null BSTR. A copy that cannot be made raises the class library's memory exception:
// it is the one failure these functions let pass to their caller.
inline tav::UniqueBstr CopyToBstr(const wchar_t* text) {
    if (text == nullptr)
        return {};
    BSTR copy = SysAllocString(text);
    if (copy == nullptr)
        AfxCheckError(E_OUTOFMEMORY);
    return tav::UniqueBstr(copy);
}

}  // namespace tav::com::detail
