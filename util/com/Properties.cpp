// Reading and writing properties of an IDispatch object by name, and its type name.
#include "com/ComUtils.h"

#include "com/detail/BstrCopy.h"
#include "platform/ComOwners.h"
#include "platform/Handles.h"

namespace ComUtils {

namespace {

// The dispatch identifier of `name`; false when the object does not know it.
bool LookUpName(IDispatch* object, const wchar_t* name, DISPID* dispid) {
    tav::UniqueBstr nameCopy = detail::CopyToBstr(name);
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

// Values whose type holds no pointer: empty and null, the integers, reals, currency, date, error code,
// boolean and decimal. GetPropW and GetDisp read such a value as nothing: taking its number for a
// pointer could only crash the host. Every other type is read without a check, as it always was.
bool HoldsNoPointer(VARTYPE type) {
    switch (type) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_ERROR:
    case VT_BOOL:
    case VT_DECIMAL: return true;
    default: return false;
    }
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
    if (!ReadProperty(object, name, value) || HoldsNoPointer(value->vt))
        return {};
    return CComPtr<IDispatch>(value->pdispVal);  // a reference of its own before the VARIANT is cleared
}

CStdStr<wchar_t> GetPropW(CComQIPtr<IDispatch>& object, const wchar_t* name) {
    tav::UniqueVariant value;
    if (!ReadProperty(object, name, value) || HoldsNoPointer(value->vt))
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
