// Reading the system's version record, and the one answer to "is this the NT family", for every area of
// the library that asks.
#pragma once

#include <windows.h>

namespace tav::system::detail {

// The version records with the size fields the system expects: 276 bytes plain, 284 extended. Both
// start zeroed; false when the system refuses the read.
bool ReadVersion(OSVERSIONINFOW& info);
bool ReadVersionEx(OSVERSIONINFOEXW& info);

// The platform of a record already read: the NT family (platform 2), as opposed to the 9x family (1).
inline bool IsNtFamily(const OSVERSIONINFOW& info) { return info.dwPlatformId == VER_PLATFORM_WIN32_NT; }

// Reads the version, the extended record first and the plain one when the system refuses that, and
// answers for its platform. False when neither read succeeds.
bool IsNtFamily();

}  // namespace tav::system::detail
