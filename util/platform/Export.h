// TAVUTIL_API marks what TavUtil.dll exports: dllexport while the DLL is built, dllimport for its hosts.
#pragma once

#if defined(TAVUTIL_BUILDING_DLL)
#define TAVUTIL_API __declspec(dllexport)
#else
#define TAVUTIL_API __declspec(dllimport)
#endif
