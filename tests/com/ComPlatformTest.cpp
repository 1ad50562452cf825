// The class-library stand-ins the automation helpers use: CComPtr, CComQIPtr, the VARIANT owner and the
// exceptions of a failed BSTR copy.
#include "ComFixtures.h"

namespace comtest {
namespace {

TEST(ComPtr, HoldsOneReferenceOfItsOwn) {
    CComPtr<TestDispatch> owner = MakeObject(L"counted");
    TestDispatch* raw = owner.p;
    EXPECT_EQ(raw->References(), 1u);
    {
        CComPtr<IDispatch> copy(raw);
        EXPECT_EQ(raw->References(), 2u);
        CComPtr<IDispatch> assigned;
        assigned = copy;
        EXPECT_EQ(raw->References(), 3u);
        CComPtr<IDispatch> moved(std::move(assigned));
        EXPECT_FALSE(assigned);
        EXPECT_EQ(raw->References(), 3u);
        moved.Release();
        EXPECT_FALSE(moved);
        EXPECT_EQ(raw->References(), 2u);
        IDispatch* detached = copy.Detach();
        EXPECT_EQ(raw->References(), 2u);
        moved.Attach(detached);
        EXPECT_EQ(raw->References(), 2u);
        IDispatch* copied = nullptr;
        EXPECT_EQ(moved.CopyTo(&copied), S_OK);
        EXPECT_EQ(raw->References(), 3u);
        copied->Release();
        EXPECT_EQ(moved.CopyTo(nullptr), E_POINTER);
    }
    EXPECT_EQ(raw->References(), 1u);
}

TEST(ComPtr, QueryingPointerAsksForItsInterface) {
    CComPtr<TestDispatch> dispatching = MakeObject(L"dispatching");
    CComPtr<TestDispatch> plain = MakeObject(L"plain", false);
    IUnknown* dispatchingUnknown = dispatching.p;
    IUnknown* plainUnknown = plain.p;

    CComQIPtr<IDispatch> found(dispatchingUnknown);
    EXPECT_EQ(found.p, static_cast<IDispatch*>(dispatching.p));
    EXPECT_EQ(dispatching->References(), 2u);
    CComQIPtr<IDispatch> missing(plainUnknown);
    EXPECT_FALSE(missing);
    found = plainUnknown;  // assignment queries too, and drops the previous object
    EXPECT_FALSE(found);
    EXPECT_EQ(dispatching->References(), 1u);

    CComQIPtr<IUnknown> identity(plainUnknown);
    EXPECT_EQ(identity.p, plainUnknown);
    EXPECT_EQ(plain->References(), 2u);
}

TEST(ComPtr, VariantOwnerClearsItsValue) {
    CComPtr<TestDispatch> object = MakeObject(L"held");
    {
        tav::UniqueVariant value;
        EXPECT_EQ(value->vt, VT_EMPTY);
        value->vt = VT_DISPATCH;
        value->pdispVal = object.p;
        object->AddRef();
        EXPECT_EQ(object->References(), 2u);
    }
    EXPECT_EQ(object->References(), 1u);
}

TEST(ComPtr, FailedCopiesRaiseTheClassLibraryExceptions) {
    EXPECT_NO_THROW(AfxCheckError(S_OK));
    EXPECT_THROW(AfxCheckError(E_OUTOFMEMORY), CMemoryException);
    try {
        AfxCheckError(E_INVALIDARG);
        ADD_FAILURE() << "no exception";
    } catch (const COleException& e) {
        EXPECT_EQ(e.m_sc, E_INVALIDARG);
    }
}

}  // namespace
}  // namespace comtest
