// An automation object of the tests' own: a handful of properties of known types and values, no type
// information, and a record of how it was called, so that tests can check what the library asked for.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <vector>

namespace comtest {

class TestDispatch final : public IDispatch {
public:
    // Properties by name: "Name" (VT_BSTR: the name given here), "IntOne" (VT_I4 1), "BoolOne" (VT_BOOL
    // holding 1), "BoolTrue" (VT_BOOL VARIANT_TRUE), "IntFFFF" (VT_I4 0xFFFF), "Count" (VT_I4 42),
    // "Flag" (VT_BOOL, writable), "Child" (VT_DISPATCH: a second TestDispatch named "child"), "Real" (VT_R8
    // 1.5), "Null" (VT_NULL), "Price" (VT_CY 0x123456789ABC).
    // Values of a hostile or careless server: "Crafted" (VT_BSTR whose bytes are the address of a table of
    // functions, as an interface pointer's are: see CraftedCalls), "ChildUnknown" (VT_UNKNOWN: the child),
    // "Plain" (VT_UNKNOWN: an object that answers only IUnknown), "NoObject" (VT_DISPATCH null),
    // "NameByRef" (VT_BYREF | VT_BSTR: the address of a BSTR holding the name).
    // Without `offersDispatch` the object answers only IUnknown.
    explicit TestDispatch(std::wstring name, bool offersDispatch = true);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO* exception, UINT* argumentError) override;

    struct Call {
        DISPID id;
        WORD flags;
        LCID lcid;
        bool iidNull;
        UINT arguments;
        UINT namedArguments;
        DISPID namedId;      // the first named argument's identifier, or 0
        VARTYPE type;        // the first argument's type, or VT_EMPTY
        VARIANT_BOOL value;  // the first argument's boolean member
    };
    struct Lookup {
        bool nameNull;
        std::wstring name;
        LCID lcid;
        bool iidNull;
    };

    ULONG References() const { return references_; }
    IDispatch* Child();
    bool Flag() const { return flag_; }
    const std::vector<Call>& Calls() const { return calls_; }
    const std::vector<Lookup>& Lookups() const { return lookups_; }
    BSTR LastStringHandedOut() const { return lastString_; }
    // How often a function of the table behind "Crafted" was called: a reader that took the string for an
    // object called it (AddRef, Release); the bytes chose what ran.
    static long CraftedCalls();

private:
    ~TestDispatch();

    volatile LONG references_ = 1;
    std::wstring name_;
    bool offersDispatch_;
    bool flag_ = false;
    IDispatch* child_ = nullptr;
    BSTR nameForReference_ = nullptr;  // what "NameByRef" points at; owned
    BSTR lastString_ = nullptr;        // not owned: the caller frees what Invoke hands out
    std::vector<Call> calls_;
    std::vector<Lookup> lookups_;
};

}  // namespace comtest
