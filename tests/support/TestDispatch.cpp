#include "TestDispatch.h"

#include <cstring>
#include <cwchar>

namespace comtest {

namespace {

enum : DISPID {
    kName = 1,
    kIntOne,
    kBoolOne,
    kBoolTrue,
    kIntFFFF,
    kCount,
    kFlag,
    kChild,
    kReal,
    kNull,
    kPrice,
    kCrafted,
    kChildUnknown,
    kPlain,
    kNoObject,
    kNameByRef
};

struct Property {
    const wchar_t* name;
    DISPID id;
};
constexpr Property kProperties[] = {{L"Name", kName},
                                    {L"IntOne", kIntOne},
                                    {L"BoolOne", kBoolOne},
                                    {L"BoolTrue", kBoolTrue},
                                    {L"IntFFFF", kIntFFFF},
                                    {L"Count", kCount},
                                    {L"Flag", kFlag},
                                    {L"Child", kChild},
                                    {L"Real", kReal},
                                    {L"Null", kNull},
                                    {L"Price", kPrice},
                                    {L"Crafted", kCrafted},
                                    {L"ChildUnknown", kChildUnknown},
                                    {L"Plain", kPlain},
                                    {L"NoObject", kNoObject},
                                    {L"NameByRef", kNameByRef}};

// The table that the bytes of "Crafted" point at: three entries, where an interface keeps QueryInterface,
// AddRef and Release. Each entry counts its calls and does nothing else.
volatile LONG craftedCalls = 0;
ULONG STDMETHODCALLTYPE CountCraftedCall(void*) { return static_cast<ULONG>(InterlockedIncrement(&craftedCalls)); }
using CraftedEntry = ULONG(STDMETHODCALLTYPE*)(void*);
const CraftedEntry kCraftedTable[3] = {CountCraftedCall, CountCraftedCall, CountCraftedCall};

// A BSTR whose first eight bytes are the table's address: read as an object, it is an object whose
// functions are the table's.
BSTR CraftedString() {
    const void* table = kCraftedTable;
    BSTR text = SysAllocStringLen(nullptr, sizeof table / sizeof(OLECHAR));
    memcpy(text, &table, sizeof table);
    return text;
}

}  // namespace

TestDispatch::TestDispatch(std::wstring name, bool offersDispatch)
    : name_(std::move(name)), offersDispatch_(offersDispatch) {}

TestDispatch::~TestDispatch() {
    if (child_ != nullptr)
        child_->Release();
    SysFreeString(nameForReference_);
}

long TestDispatch::CraftedCalls() { return craftedCalls; }

HRESULT TestDispatch::QueryInterface(REFIID iid, void** object) {
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

ULONG TestDispatch::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&references_)); }

ULONG TestDispatch::Release() {
    LONG left = InterlockedDecrement(&references_);
    if (left == 0)
        delete this;
    return static_cast<ULONG>(left);
}

HRESULT TestDispatch::GetTypeInfoCount(UINT* count) {
    *count = 0;
    return S_OK;
}

HRESULT TestDispatch::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info != nullptr)
        *info = nullptr;
    return E_NOTIMPL;  // an object without type information
}

HRESULT TestDispatch::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid, DISPID* ids) {
    if (count != 1)
        return E_INVALIDARG;
    const wchar_t* name = names[0];
    lookups_.push_back({name == nullptr, name ? name : L"", lcid, iid == IID_NULL});
    for (const Property& property : kProperties) {
        if (name != nullptr && _wcsicmp(name, property.name) == 0) {
            ids[0] = property.id;
            return S_OK;
        }
    }
    ids[0] = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
}

IDispatch* TestDispatch::Child() {
    if (child_ == nullptr)
        child_ = new TestDispatch(L"child");
    return child_;
}

HRESULT TestDispatch::Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result,
                             EXCEPINFO*, UINT*) {
    Call call = {id, flags,    lcid, iid == IID_NULL, params ? params->cArgs : 0, params ? params->cNamedArgs : 0,
                 0,  VT_EMPTY, 0};
    if (params != nullptr && params->cNamedArgs > 0)
        call.namedId = params->rgdispidNamedArgs[0];
    if (params != nullptr && params->cArgs > 0) {
        call.type = params->rgvarg[0].vt;
        call.value = params->rgvarg[0].boolVal;
    }
    calls_.push_back(call);

    if (flags & DISPATCH_PROPERTYPUT) {
        if (id != kFlag || call.arguments != 1 || call.type != VT_BOOL)
            return DISP_E_MEMBERNOTFOUND;
        flag_ = call.value == VARIANT_TRUE;
        return S_OK;
    }
    if (!(flags & DISPATCH_PROPERTYGET) || result == nullptr)
        return DISP_E_MEMBERNOTFOUND;
    switch (id) {
    case kName:
        result->vt = VT_BSTR;
        result->bstrVal = lastString_ = SysAllocString(name_.c_str());
        return S_OK;
    case kIntOne: result->vt = VT_I4, result->lVal = 1; return S_OK;
    case kBoolOne: result->vt = VT_BOOL, result->boolVal = 1; return S_OK;
    case kBoolTrue: result->vt = VT_BOOL, result->boolVal = VARIANT_TRUE; return S_OK;
    case kIntFFFF: result->vt = VT_I4, result->lVal = 0xFFFF; return S_OK;
    case kCount: result->vt = VT_I4, result->lVal = 42; return S_OK;
    case kFlag: result->vt = VT_BOOL, result->boolVal = flag_ ? VARIANT_TRUE : VARIANT_FALSE; return S_OK;
    case kReal: result->vt = VT_R8, result->dblVal = 1.5; return S_OK;
    case kNull: result->vt = VT_NULL; return S_OK;
    case kPrice: result->vt = VT_CY, result->cyVal.int64 = 0x123456789ABCLL; return S_OK;
    case kChild:
        result->vt = VT_DISPATCH;
        result->pdispVal = Child();
        result->pdispVal->AddRef();
        return S_OK;
    case kCrafted: result->vt = VT_BSTR, result->bstrVal = CraftedString(); return S_OK;
    case kChildUnknown:
        result->vt = VT_UNKNOWN;
        result->punkVal = Child();
        result->punkVal->AddRef();
        return S_OK;
    case kPlain: result->vt = VT_UNKNOWN, result->punkVal = new TestDispatch(L"plain", false); return S_OK;
    case kNoObject: result->vt = VT_DISPATCH, result->pdispVal = nullptr; return S_OK;
    case kNameByRef:
        // A reference stays the server's: VariantClear does not free what it points at.
        if (nameForReference_ == nullptr)
            nameForReference_ = SysAllocString(name_.c_str());
        result->vt = VT_BYREF | VT_BSTR;
        result->pbstrVal = &nameForReference_;
        return S_OK;
    default: return DISP_E_MEMBERNOTFOUND;
    }
}

}  // namespace comtest
