// The module this code is linked into: TavUtil.dll (or the program a test links the sources into). Hooks
// and resource strings are looked up in it.
#pragma once

#include <windows.h>

namespace tav::platform::detail {

// Found from an address inside the module, so it holds whatever the module's file is called; the module's
// reference count is left as it is.
HMODULE LibraryModule();

}  // namespace tav::platform::detail
