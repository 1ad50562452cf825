// Finding and creating application objects: the active-object table, the Running Object Table and
// CoCreateInstance.
#include "com/ComUtils.h"

#include "com/detail/BstrCopy.h"
#include "platform/ComOwners.h"
#include "platform/Handles.h"

#include <string>

namespace ComUtils {

namespace {

// System-parameter changes of TryToGetActiveObject are written to the user profile and broadcast.
constexpr UINT kWriteAndBroadcast = SPIF_UPDATEINIFILE | SPIF_SENDCHANGE;
constexpr int kForegroundAttempts = 5;
constexpr DWORD kRetryPauseMs = 200;
constexpr DWORD kIdleWaitMs = 500;
// The all-access mask of the systems the suite was first built for. The headers' PROCESS_ALL_ACCESS is
// 0x1FFFFF for this build's target version; the wait keeps asking for the older, settled mask.
constexpr DWORD kProcessAllAccess = 0x1F0FFF;

// The class identifier of a ProgID; a null ProgID becomes a null BSTR, which CLSIDFromProgID rejects.
HRESULT ClsidFromProgId(const wchar_t* progId, CLSID* clsid) {
    tav::UniqueBstr name = tav::com::detail::CopyToBstr(progId);
    return CLSIDFromProgID(name.get(), clsid);
}

// Lets the window that had the foreground settle before the lookup is retried: a synchronous WM_NULL,
// then up to 500 ms for its process to become idle. The process handle is used as OpenProcess gave it.
void WaitForWindowOwner(HWND window) {
    SendMessageW(window, WM_NULL, 0, 0);
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    tav::UniqueHandle process(OpenProcess(kProcessAllAccess, FALSE, processId));
    WaitForInputIdle(process.get(), kIdleWaitMs);
}

// The text form of a ProgID's class identifier ("{...}"), which the display name of a running object's
// moniker holds.
bool ClsidTextOf(const wchar_t* progId, std::wstring& text) {
    CLSID clsid;
    if (FAILED(ClsidFromProgId(progId, &clsid)))
        return false;
    tav::UniqueCoTaskString clsidText;
    if (FAILED(StringFromCLSID(clsid, clsidText.put())))
        return false;
    text = clsidText.get();
    return true;
}

// A bind context, the Running Object Table it reaches and an enumerator of the table's monikers.
bool OpenRunningObjects(CComPtr<IBindCtx>& bindContext, CComPtr<IRunningObjectTable>& table,
                        CComPtr<IEnumMoniker>& enumerator) {
    return SUCCEEDED(CreateBindCtx(0, &bindContext)) && SUCCEEDED(bindContext->GetRunningObjectTable(&table)) &&
           SUCCEEDED(table->EnumRunning(&enumerator));
}

// The moniker's display name; a null name reads as "". False when the moniker refuses to give one.
bool ReadDisplayName(IMoniker* moniker, IBindCtx* bindContext, std::wstring& name) {
    LPOLESTR rawName = nullptr;
    if (FAILED(moniker->GetDisplayName(bindContext, nullptr, &rawName)))
        return false;
    tav::UniqueCoTaskString ownedName(rawName);
    name = rawName ? rawName : L"";
    return true;
}

// The running object of `moniker` asked for IDispatch: the interface with the reference of the query, or
// null when the table or the object refuses.
IDispatch* RunningDispatch(IRunningObjectTable* table, IMoniker* moniker) {
    CComPtr<IUnknown> object;
    if (FAILED(table->GetObject(moniker, &object)))
        return nullptr;
    IDispatch* dispatch = nullptr;
    if (FAILED(object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch))))
        return nullptr;
    return dispatch;
}

}  // namespace

long TryToGetActiveObject(const GUID& clsid, void* /*reserved: never read*/, IUnknown** result) {
    HRESULT hr = GetActiveObject(clsid, nullptr, result);
    if (SUCCEEDED(hr))
        return hr;

    HWND previousForeground = GetForegroundWindow();
    HWND hiddenWindow = FindWindowW(L"HarrowHiddenWndClass", nullptr);
    if (hiddenWindow == nullptr)
        return hr;

    DWORD savedTimeout = 0;
    SystemParametersInfoW(SPI_GETFOREGROUNDLOCKTIMEOUT, 0, &savedTimeout, kWriteAndBroadcast);
    SystemParametersInfoW(SPI_SETFOREGROUNDLOCKTIMEOUT, 0, nullptr, kWriteAndBroadcast);
    SetForegroundWindow(hiddenWindow);
    WaitForWindowOwner(previousForeground);

    for (int attempt = 0; attempt < kForegroundAttempts; ++attempt) {
        hr = GetActiveObject(clsid, nullptr, result);
        if (SUCCEEDED(hr))
            break;
        Sleep(kRetryPauseMs);
    }

    SetForegroundWindow(previousForeground);
    // Intended as it stands: the restoring call is given the address of the saved value, the same
    // argument the reading call was given, although the setting takes the value itself. Hosts of the
    // suite have always run with the time-out this leaves behind.
    SystemParametersInfoW(SPI_SETFOREGROUNDLOCKTIMEOUT, 0, &savedTimeout, kWriteAndBroadcast);
    return hr;
}

CComQIPtr<IUnknown> GetActiveAppDispatch(const wchar_t* progId) {
    if (progId == nullptr)
        return {};
    CLSID clsid = CLSID_NULL;
    ClsidFromProgId(progId, &clsid);  // not tested: an unknown ProgID leaves CLSID_NULL, which is not running
    CComPtr<IUnknown> running;
    if (FAILED(GetActiveObject(clsid, nullptr, &running)))
        return {};
    CComQIPtr<IUnknown> object;
    object.Attach(running.Detach());
    return object;
}

CComPtr<IDispatch> GetAppDispatch(const wchar_t* progId, bool /*createIfNotRunning: never read*/) {
    if (progId == nullptr)
        return {};
    CComQIPtr<IUnknown> running = GetActiveAppDispatch(progId);
    if (!running)
        return {};
    CComQIPtr<IDispatch> dispatch(running.p);
    return CComPtr<IDispatch>(dispatch.p);
}

CComPtr<IDispatch> CreateObject(const wchar_t* progId) {
    if (progId == nullptr)
        return {};
    CLSID clsid;
    if (FAILED(ClsidFromProgId(progId, &clsid)))
        return {};
    CComPtr<IUnknown> created;
    if (FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_ALL, IID_IUnknown, reinterpret_cast<void**>(&created))))
        return {};
    CComQIPtr<IDispatch> dispatch(created.p);
    return CComPtr<IDispatch>(dispatch.p);
}

CComPtr<IDispatch> FindInROT(const wchar_t* progId) {
    std::wstring searchKey;
    if (!ClsidTextOf(progId, searchKey))
        return {};
    CComPtr<IBindCtx> bindContext;
    CComPtr<IRunningObjectTable> table;
    CComPtr<IEnumMoniker> enumerator;
    if (!OpenRunningObjects(bindContext, table, enumerator))
        return {};

    enumerator->Reset();
    for (;;) {
        CComPtr<IMoniker> moniker;
        ULONG fetched = 0;
        if (enumerator->Next(1, &moniker, &fetched) != S_OK)
            return {};
        std::wstring displayName;
        if (!ReadDisplayName(moniker, bindContext, displayName)) {
            // Intended: the walk ends here and leaves the moniker, enumerator, table and bind context held.
            moniker.Detach(), enumerator.Detach(), table.Detach(), bindContext.Detach();
            return {};
        }
        if (displayName.find(searchKey, 0) == std::wstring::npos)
            continue;
        IDispatch* dispatch = RunningDispatch(table, moniker);
        if (dispatch == nullptr)
            continue;
        // Intended: the found object keeps the reference of the query besides the one of the returned
        // pointer, and the moniker, enumerator, table and bind context stay held, as on the path above.
        moniker.Detach(), enumerator.Detach(), table.Detach(), bindContext.Detach();
        return CComPtr<IDispatch>(dispatch);
    }
}

}  // namespace ComUtils
