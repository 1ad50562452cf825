// Installed-software discovery from the registry: when the suite was installed, where an application is
// installed according to its App Paths registration, and which executable serves the newest version of a
// COM ProgID. Keys are opened read-only (native view first, then the 32-bit view); nothing is written.
#pragma once

#include "../platform/Export.h"
#include "../strings/StdStr.h"

// The suite's install date exactly as the installer stored it (usually YYYYMMDD), or empty when the setup
// key, its product GUID or the matching uninstall entry is missing.
TAVUTIL_API CStdStr<wchar_t> TrimdialInstallDate();

// True and `path` = the default value of App Paths\<app>.<ext> (the dot is always inserted: give `ext`
// without one). False when the key is missing (`path` untouched) or its default value is not readable
// (`path` empty).
TAVUTIL_API bool FindApplicationPath(CStdStr<wchar_t> app, CStdStr<wchar_t>& path, const CStdStr<wchar_t>& ext);

// True and `path` = the LocalServer32 command of the class that the ProgID's current version (its CurVer)
// names, as registered (arguments included). False for a ProgID without CurVer, a version without CLSID, or
// a class without a local server.
TAVUTIL_API bool FindMostRecentProgIdPath(const CStdStr<wchar_t>& progId, CStdStr<wchar_t>& path);
