// Reading and writing properties of an IDispatch object by name, and its type name.
#include "com/ComUtils.h"

#include "com/detail/BstrCopy.h"
#include "platform/ComOwners.h"
#include "platform/Handles.h"

namespace ComUtils {

namespace {

// The dispatch identifier of `name`; false when the object does not know it.
bool LookUpName(IDispatch* object, const wchar_t* name, DISPID* dispid) {
    tav::UniqueBstr nameCopy = tav::com::detail::CopyToBstr(name);
    LPOLESTR names[] = {nameCopy.get()};
    return SUCCEEDED(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, dispid));
}

// The shared read: name lookup, then DISPATCH_PROPERTYGET without arguments into `value`. False on an
// empty object or any failure; `value` is cleared by its owner on every path.
bool ReadProperty(IDispatch* object, const wchar_t* name, tav::UniqueVariant& value) {
    if (object == nullptr)
        return false;
    DISPID dispid;
    if (!LookUpName(object, name, &dispid))
        return false;
    DISPPARAMS noArguments = {nullptr, nullptr, 0, 0};
    return SUCCEEDED(object->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &noArguments,
                                    value.get(), nullptr, nullptr));
}

// Object-like values (interfaces, arrays, references) are first offered by reference.
bool IsPutByReference(VARTYPE type) {
    return type == VT_UNKNOWN || type == VT_DISPATCH || (type & VT_ARRAY) != 0 || (type & VT_BYREF) != 0;
}

// Puts `value` into property `dispid` as its one, named (DISPID_PROPERTYPUT) argument.
HRESULT PutProperty(IDispatch* object, DISPID dispid, VARIANT* value) {
    if (object == nullptr)
        return E_INVALIDARG;
    DISPID putId = DISPID_PROPERTYPUT;
    DISPPARAMS arguments = {value, &putId, 1, 1};
    if (IsPutByReference(value->vt)) {
        HRESULT hr = object->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUTREF, &arguments, nullptr,
                                    nullptr, nullptr);
        if (SUCCEEDED(hr))
            return hr;
    }
    return object->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &arguments, nullptr, nullptr,
                          nullptr);
}

CStdStr<wchar_t> TypeNameOf(IDispatch* object) {
    if (object == nullptr)
        return {};
    CComPtr<ITypeInfo> typeInfo;
    if (FAILED(object->GetTypeInfo(0, 0, &typeInfo)) || !typeInfo)
        return {};
    tav::UniqueBstr name;
    // Not tested: on failure the name stays null and the answer is "".
    typeInfo->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
    return CStdStr<wchar_t>(name.get());
}

// An object-valued property as IDispatch: a VT_DISPATCH value is the pointer itself; a VT_UNKNOWN value is
// asked for IDispatch. Any other value is not an object: its bytes were put there by another program, and
// taking them for an interface pointer would let that program choose the code the host runs.
CComPtr<IDispatch> DispatchOf(const VARIANT& value) {
    if (value.vt == VT_DISPATCH)
        return CComPtr<IDispatch>(value.pdispVal);  // a reference of its own before the VARIANT is cleared
    CComPtr<IDispatch> queried;
    if (value.vt == VT_UNKNOWN && value.punkVal != nullptr)
        value.punkVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&queried));
    return queried;
}

}  // namespace

long GetPropLong(CComQIPtr<IDispatch>& object, const wchar_t* name) {
    tav::UniqueVariant value;
    if (!ReadProperty(object, name, value))
        return 0;
    return value->lVal;  // whatever the type: a string property gives the low bits of its pointer
}

bool GetPropBool(CComQIPtr<IDispatch>& object, const wchar_t* name) {
    tav::UniqueVariant value;
    if (!ReadProperty(object, name, value))
        return false;
    return static_cast<unsigned short>(value->boolVal) == 0xFFFF;
}

CComPtr<IDispatch> GetDisp(CComQIPtr<IDispatch>& object, const wchar_t* name) {
    tav::UniqueVariant value;
    if (!ReadProperty(object, name, value))
        return {};
    return DispatchOf(*value.get());
}

CStdStr<wchar_t> GetPropW(CComQIPtr<IDispatch>& object, const wchar_t* name) {
    tav::UniqueVariant value;
    // Only a string is read as one: any other value's pointer (an object, a reference, an array) has no
    // length word in front of it to read.
    if (!ReadProperty(object, name, value) || value->vt != VT_BSTR)
        return {};
    tav::UniqueBstr copy(SysAllocStringLen(value->bstrVal, SysStringLen(value->bstrVal)));
    return CStdStr<wchar_t>(copy.get());
}

bool SetPropBool(CComQIPtr<IDispatch>& object, const wchar_t* name, bool value) {
    if (!object)
        return false;
    tav::UniqueVariant argument;
    argument->vt = VT_BOOL;
    argument->boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    DISPID dispid;
    if (!LookUpName(object, name, &dispid))
        return false;
    return SUCCEEDED(PutProperty(object, dispid, argument.get()));
}

CStdStr<wchar_t> GetObjName(const CComPtr<IDispatch>& object) { return TypeNameOf(object.p); }
CStdStr<wchar_t> GetObjName(const CComQIPtr<IDispatch>& object) { return TypeNameOf(object.p); }

}  // namespace ComUtils
