// ComUtils: late-bound access to other applications through OLE Automation. Find an application object
// that is already running (by class identifier, by ProgID, or in the Running Object Table), create one,
// read and write simple properties of an IDispatch object by name, and ask an object for its type name.
//
// Every function runs on the caller's thread, which must have initialised COM already; none keeps state
// between calls. Failure is reported by an empty pointer, 0, false, "" or, for TryToGetActiveObject, a
// failed HRESULT. The one exception that can leave them: when a property name or ProgID cannot be copied
// into a BSTR, CMemoryException (out of memory) or COleException (any other failure code) is thrown.
// Property names and ProgIDs may be null (a null BSTR is passed on).
#pragma once

#include "../platform/ComPtr.h"
#include "../platform/Export.h"
#include "../platform/OleException.h"
#include "../strings/StdStr.h"

#include <windows.h>
#include <oaidl.h>
#include <ole2.h>

namespace ComUtils {

// The running object of `clsid`, through `result`. When it is not registered yet and the suite's hidden
// window (class "HarrowHiddenWndClass") exists, the foreground is handed to that window for a moment and
// the lookup retried (up to five times, 200 ms apart), because some servers register their object only
// once they have been in the foreground. Returns the HRESULT of the last lookup. `reserved` is never read.
TAVUTIL_API long TryToGetActiveObject(const GUID& clsid, void* reserved, IUnknown** result);

// The running object registered for `progId` (GetActiveObject), or empty.
TAVUTIL_API CComQIPtr<IUnknown> GetActiveAppDispatch(const wchar_t* progId);

// The IDispatch of the running object of `progId`, or empty. Never creates an object: the flag is part of
// the interface and is not read.
TAVUTIL_API CComPtr<IDispatch> GetAppDispatch(const wchar_t* progId, bool createIfNotRunning);

// The IDispatch of a new object of `progId` (CoCreateInstance with CLSCTX_ALL), or empty.
TAVUTIL_API CComPtr<IDispatch> CreateObject(const wchar_t* progId);

// The first object of the Running Object Table whose moniker display name contains the registry form of
// the class identifier of `progId` ("{XXXXXXXX-...}", upper case, matched case-sensitively) and that
// offers IDispatch, or empty.
TAVUTIL_API CComPtr<IDispatch> FindInROT(const wchar_t* progId);

// Property reads (DISPATCH_PROPERTYGET, no arguments). The value is taken out of the result without
// looking at its type: GetPropLong reads the 32-bit member, GetPropBool is true only when the 16-bit member
// is 0xFFFF (VARIANT_TRUE), GetDisp takes the object member (with a reference of its own), GetPropW copies
// the string member. A value whose type holds no pointer (empty, null, a number, currency, date, error or
// boolean) gives GetPropW "" and GetDisp an empty pointer.
TAVUTIL_API long GetPropLong(CComQIPtr<IDispatch>& object, const wchar_t* name);
TAVUTIL_API bool GetPropBool(CComQIPtr<IDispatch>& object, const wchar_t* name);
TAVUTIL_API CComPtr<IDispatch> GetDisp(CComQIPtr<IDispatch>& object, const wchar_t* name);
TAVUTIL_API CStdStr<wchar_t> GetPropW(CComQIPtr<IDispatch>& object, const wchar_t* name);

// Writes a boolean property (VT_BOOL, DISPATCH_PROPERTYPUT); true when the object accepted it.
TAVUTIL_API bool SetPropBool(CComQIPtr<IDispatch>& object, const wchar_t* name, bool value);

// The name of the object's type (its type information's own documentation name), or "".
TAVUTIL_API CStdStr<wchar_t> GetObjName(const CComPtr<IDispatch>& object);
TAVUTIL_API CStdStr<wchar_t> GetObjName(const CComQIPtr<IDispatch>& object);

}  // namespace ComUtils
