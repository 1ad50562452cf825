// Automation objects of the hostile-input drivers' own: a property source whose one property returns, call by
// call, whatever VARIANT the driver chose (any type, any bits), whose name lookup and call can fail, and whose
// type information names it with any text; and the plain objects such a VARIANT points to. Each counts its
// references, so that a driver can tell that the library gave back every reference it took.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <functional>
#include <string>

namespace fuzz {

// An object that answers IUnknown, and IDispatch when asked to (its IDispatch answers no name).
class PlainObject final : public IDispatch {
public:
    explicit PlainObject(bool offersDispatch) : offersDispatch_(offersDispatch) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override;
    LONG References() const { return references_; }

private:
    ~PlainObject() = default;
    volatile LONG references_ = 1;
    bool offersDispatch_;
};

// Type information that answers only its own documentation: the name the driver chose (a BSTR of any length,
// with NULs, or null) and the code it chose, written even with a failure code.
class NamedTypeInfo final : public ITypeInfo {
public:
    BSTR name = nullptr;  // handed out as a copy on each call; owned by the object
    HRESULT documentationResult = S_OK;
    bool writeName = true;

    NamedTypeInfo() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() override;
    LONG References() const { return references_; }

    HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID id, BSTR* name, BSTR* doc, DWORD* context,
                                               BSTR* helpFile) override;
    HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT, FUNCDESC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetVarDesc(UINT, VARDESC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetNames(MEMBERID, BSTR*, UINT, UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT, HREFTYPE*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT, INT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR*, UINT, MEMBERID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(PVOID, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE AddressOfMember(MEMBERID, INVOKEKIND, PVOID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, PVOID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMops(MEMBERID, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib**, UINT*) override { return E_NOTIMPL; }
    void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR*) override {}
    void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC*) override {}
    void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC*) override {}

private:
    ~NamedTypeInfo() { SysFreeString(name); }
    volatile LONG references_ = 1;
};

// The property source. Every name lookup gives dispatch identifier 7 unless `lookupFails`; every property
// get runs `makeValue` into the caller's VARIANT (ownership passes to the caller, as the rules of Invoke
// say) and answers `invokeResult`; the value handed out last is kept bit for bit in `lastValue`.
class PropertySource final : public IDispatch {
public:
    std::function<void(VARIANT*)> makeValue;
    bool lookupFails = false;
    HRESULT invokeResult = S_OK;
    VARIANT lastValue = {};
    bool lastNameNull = false;
    std::wstring lastName;
    // GetTypeInfo: null and a failure code when `typeInfo` is null, else it with `typeInfoResult`.
    NamedTypeInfo* typeInfo = nullptr;  // not owned
    HRESULT typeInfoResult = S_OK;

    PropertySource() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                     UINT*) override;
    LONG References() const { return references_; }

private:
    ~PropertySource() = default;
    volatile LONG references_ = 1;
};

}  // namespace fuzz
