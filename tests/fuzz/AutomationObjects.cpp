#include "AutomationObjects.h"

#include <cstring>

namespace fuzz {

HRESULT PlainObject::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr)
        return E_POINTER;
    *object = nullptr;
    if (iid == IID_IUnknown || (offersDispatch_ && iid == IID_IDispatch)) {
        *object = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }
    return E_NOINTERFACE;
}

ULONG PlainObject::Release() {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0)
        delete this;
    return static_cast<ULONG>(left);
}

HRESULT PlainObject::GetTypeInfoCount(UINT* count) {
    *count = 0;
    return S_OK;
}

HRESULT PlainObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info != nullptr)
        *info = nullptr;
    return E_NOTIMPL;
}

HRESULT PlainObject::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) {
    if (ids != nullptr)
        ids[0] = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
}

HRESULT PlainObject::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) {
    return DISP_E_MEMBERNOTFOUND;
}

HRESULT NamedTypeInfo::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr)
        return E_POINTER;
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_ITypeInfo) {
        *object = static_cast<ITypeInfo*>(this);
        AddRef();
        return S_OK;
    }
    return E_NOINTERFACE;
}

ULONG NamedTypeInfo::Release() {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0)
        delete this;
    return static_cast<ULONG>(left);
}

HRESULT NamedTypeInfo::GetDocumentation(MEMBERID, BSTR* nameOut, BSTR* doc, DWORD* context, BSTR* helpFile) {
    if (doc != nullptr)
        *doc = nullptr;
    if (context != nullptr)
        *context = 0;
    if (helpFile != nullptr)
        *helpFile = nullptr;
    if (nameOut != nullptr && writeName)
        *nameOut = name ? SysAllocStringByteLen(reinterpret_cast<const char*>(name), SysStringByteLen(name)) : nullptr;
    return documentationResult;
}

HRESULT PropertySource::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr)
        return E_POINTER;
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IDispatch) {
        *object = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }
    return E_NOINTERFACE;
}

ULONG PropertySource::Release() {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0)
        delete this;
    return static_cast<ULONG>(left);
}

HRESULT PropertySource::GetTypeInfoCount(UINT* count) {
    *count = typeInfo ? 1 : 0;
    return S_OK;
}

HRESULT PropertySource::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info == nullptr)
        return E_POINTER;
    *info = typeInfo;
    if (typeInfo == nullptr)
        return typeInfoResult == S_OK ? E_NOTIMPL : typeInfoResult;
    typeInfo->AddRef();
    return typeInfoResult;
}

HRESULT PropertySource::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    if (count != 1)
        return E_INVALIDARG;
    lastNameNull = names[0] == nullptr;
    lastName = names[0] ? names[0] : L"";
    if (lookupFails) {
        ids[0] = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }
    ids[0] = 7;
    return S_OK;
}

HRESULT PropertySource::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) {
    if (id != 7 || !(flags & DISPATCH_PROPERTYGET) || result == nullptr)
        return DISP_E_MEMBERNOTFOUND;
    if (makeValue)
        makeValue(result);
    std::memcpy(&lastValue, result, sizeof lastValue);
    return invokeResult;
}

}  // namespace fuzz
