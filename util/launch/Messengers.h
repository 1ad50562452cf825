// Messenger discovery and launch: which of the supported instant messengers are installed (judged from the
// registry entry naming the program and whether that program can be found), starting one by its display
// name, and finding the maker's messenger companion program.
#pragma once

#include "../platform/Export.h"
#include "../strings/StdStr.h"

#include <list>

// Display names the library once defined for further messengers. No operation reads them: discovery and
// launch know only the three clients of GetAvailableMessengers.
TAVUTIL_API extern const wchar_t* const kMessengerSkype;
TAVUTIL_API extern const wchar_t* const kMessengerAimTriton;
TAVUTIL_API extern const wchar_t* const kMessengerYahoo;
TAVUTIL_API extern const wchar_t* const kMessengerNone;

// Appends the display names of the installed messengers, in the order "Yahoo! Messenger", "MSN Messenger",
// "Windows Messenger" (only those found). The list is not cleared first.
TAVUTIL_API void GetAvailableMessengers(std::list<CStdStr<wchar_t>>& messengers);

// Starts the messenger named exactly (case-sensitive) `name` from its registered command line. 1 when a
// command line was registered, whether or not the start succeeded; 0 for an unknown or unregistered name.
TAVUTIL_API int LaunchMessenger(CStdStr<wchar_t> name);

// 1 and `path` = the companion program's registered command line when it is installed; 0 otherwise
// (`path` untouched).
TAVUTIL_API int IsPVAppInstalled(CStdStr<wchar_t>& path);
