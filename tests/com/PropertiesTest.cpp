// Property access and type names: on automation objects of the system ("VBScript.RegExp",
// "Scripting.Dictionary", "Scripting.FileSystemObject") and on the tests' own object, whose record of
// calls shows what the library asked for.
#include "ComFixtures.h"

namespace comtest {
namespace {

using namespace ComUtils;

// Writes a string property straight through IDispatch (the library has no string write).
HRESULT PutString(IDispatch* object, const wchar_t* name, const wchar_t* value) {
    DISPID id;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(hr))
        return hr;
    tav::UniqueVariant argument;
    argument->vt = VT_BSTR;
    argument->bstrVal = SysAllocString(value);
    DISPID putId = DISPID_PROPERTYPUT;
    DISPPARAMS params = {argument.get(), &putId, 1, 1};
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr);
}

TEST_F(ComTest, RegExpPropertiesReadAndWrittenByName) {
    CComQIPtr<IDispatch> regExp(CreateObject(L"VBScript.RegExp"));
    ASSERT_TRUE(regExp);
    EXPECT_EQ(GetPropW(regExp, L"Pattern"), L"");
    ASSERT_HRESULT_SUCCEEDED(PutString(regExp, L"Pattern", L"th[a-z]+mb"));
    EXPECT_EQ(GetPropW(regExp, L"Pattern"), L"th[a-z]+mb");

    for (const wchar_t* name : {L"IgnoreCase", L"Global"}) {
        EXPECT_FALSE(GetPropBool(regExp, name)) << tavtest::Narrow(name);
        EXPECT_TRUE(SetPropBool(regExp, name, true)) << tavtest::Narrow(name);
        EXPECT_TRUE(GetPropBool(regExp, name)) << tavtest::Narrow(name);
        EXPECT_TRUE(SetPropBool(regExp, name, false)) << tavtest::Narrow(name);
        EXPECT_FALSE(GetPropBool(regExp, name)) << tavtest::Narrow(name);
    }
    // Property names are looked up by the object, which ignores case.
    EXPECT_TRUE(SetPropBool(regExp, L"global", true));
    EXPECT_TRUE(GetPropBool(regExp, L"GLOBAL"));
}

TEST_F(ComTest, RegExpTypeNameThroughBothPointerKinds) {
    CComPtr<IDispatch> created = CreateObject(L"VBScript.RegExp");
    ASSERT_TRUE(created);
    CComQIPtr<IDispatch> queried(created);
    EXPECT_EQ(GetObjName(created), L"IRegExp2");
    EXPECT_EQ(GetObjName(queried), L"IRegExp2");
}

TEST_F(ComTest, LongOfAStringPropertyIsTheLowPartOfItsPointer) {
    CComQIPtr<IDispatch> regExp(CreateObject(L"VBScript.RegExp"));
    ASSERT_TRUE(regExp);
    ASSERT_HRESULT_SUCCEEDED(PutString(regExp, L"Pattern", L"abc"));
    EXPECT_NE(GetPropLong(regExp, L"Pattern"), 0);  // a BSTR pointer, read as a number

    // Exactly: the object of the tests records the string it handed out.
    CComPtr<TestDispatch> own = MakeObject(L"own");
    CComQIPtr<IDispatch> object(own.p);
    long value = GetPropLong(object, L"Name");
    EXPECT_EQ(value, static_cast<long>(reinterpret_cast<UINT_PTR>(own->LastStringHandedOut())));
    EXPECT_EQ(GetPropLong(object, L"Count"), 42);
}

// A value whose type holds no pointer is never taken for one: GetPropW gives "" and GetDisp nothing,
// while the settled number reads stay as they are.
TEST_F(ComTest, StringAndObjectReadsOfValuesWithoutPointers) {
    CComPtr<TestDispatch> own = MakeObject(L"own");
    CComQIPtr<IDispatch> object(own.p);
    for (const wchar_t* name : {L"Count", L"IntFFFF", L"BoolTrue", L"BoolOne", L"Real", L"Null", L"Price"}) {
        EXPECT_EQ(GetPropW(object, name), L"") << name;
        EXPECT_FALSE(GetDisp(object, name)) << name;
    }
    EXPECT_EQ(GetPropLong(object, L"Count"), 42);
    EXPECT_EQ(GetPropLong(object, L"Price"), 0x56789ABC);  // the low bits, read without a type check
    EXPECT_TRUE(GetPropBool(object, L"BoolTrue"));
    EXPECT_EQ(GetPropW(object, L"Name"), L"own");
    EXPECT_TRUE(GetDisp(object, L"Child"));
}

// Another program's value is never taken for what it is not. A string read as an object would have the
// host call through the string's bytes: the crafted bytes point at a table of functions that count their
// calls, and none may run. An object or a reference read as a string would have its length read from bytes
// in front of it that are no length.
TEST_F(ComTest, ObjectReadsTakeOnlyObjects) {
    CComPtr<TestDispatch> own = MakeObject(L"own");
    CComQIPtr<IDispatch> object(own.p);
    long callsBefore = TestDispatch::CraftedCalls();
    EXPECT_FALSE(GetDisp(object, L"Crafted"));
    EXPECT_EQ(TestDispatch::CraftedCalls(), callsBefore);
    EXPECT_FALSE(GetDisp(object, L"Name"));
    EXPECT_FALSE(GetDisp(object, L"NameByRef"));
    EXPECT_FALSE(GetDisp(object, L"NoObject"));
    EXPECT_FALSE(GetDisp(object, L"Plain"));  // an object that is no automation object

    // An object handed out as IUnknown is asked for IDispatch.
    CComPtr<IDispatch> child = GetDisp(object, L"ChildUnknown");
    ASSERT_TRUE(child);
    EXPECT_EQ(child.p, own->Child());
    CComQIPtr<IDispatch> childQueried(child);
    EXPECT_EQ(GetPropW(childQueried, L"Name"), L"child");
}

TEST_F(ComTest, StringReadsTakeOnlyStrings) {
    CComPtr<TestDispatch> own = MakeObject(L"own");
    CComQIPtr<IDispatch> object(own.p);
    for (const wchar_t* name : {L"Child", L"ChildUnknown", L"Plain", L"NoObject", L"NameByRef"})
        EXPECT_EQ(GetPropW(object, name), L"") << tavtest::Narrow(name);
    EXPECT_EQ(GetPropW(object, L"Name"), L"own");
    // The number reads stay as they are: the settled answer is the value's low bits, whatever its type.
    EXPECT_EQ(GetPropLong(object, L"Name"), static_cast<long>(reinterpret_cast<UINT_PTR>(own->LastStringHandedOut())));
}

// The C interface answers through the same readers.
TEST_F(ComTest, CInterfaceReadsTakeOnlyTheirTypes) {
    CComPtr<TestDispatch> own = MakeObject(L"own");
    long callsBefore = TestDispatch::CraftedCalls();
    void* found = reinterpret_cast<void*>(1);
    EXPECT_EQ(tav_com_get_disp(own.p, L"Crafted", &found), TAV_OK);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(TestDispatch::CraftedCalls(), callsBefore);
    EXPECT_EQ(tav_com_get_disp(own.p, L"ChildUnknown", &found), TAV_OK);
    EXPECT_EQ(found, static_cast<void*>(own->Child()));
    tav_com_release(found);

    wchar_t text[16] = L"untouched";
    size_t needed = 0;
    EXPECT_EQ(tav_com_get_prop_string(own.p, L"Child", text, 16, &needed), TAV_OK);
    EXPECT_STREQ(text, L"");
    EXPECT_EQ(needed, 1u);
}

TEST_F(ComTest, UnknownPropertiesGiveNeutralAnswers) {
    CComQIPtr<IDispatch> regExp(CreateObject(L"VBScript.RegExp"));
    ASSERT_TRUE(regExp);
    EXPECT_EQ(GetPropW(regExp, L"NoSuchProperty"), L"");
    EXPECT_EQ(GetPropLong(regExp, L"NoSuchProperty"), 0);
    EXPECT_FALSE(GetPropBool(regExp, L"NoSuchProperty"));
    EXPECT_FALSE(GetDisp(regExp, L"NoSuchProperty"));
    EXPECT_FALSE(SetPropBool(regExp, L"NoSuchProperty", true));
}

TEST_F(ComTest, EmptyObjectPointersGiveNeutralAnswers) {
    CComQIPtr<IDispatch> empty;
    EXPECT_EQ(GetPropW(empty, L"Name"), L"");
    EXPECT_EQ(GetPropLong(empty, L"Name"), 0);
    EXPECT_FALSE(GetPropBool(empty, L"Name"));
    EXPECT_FALSE(GetDisp(empty, L"Name"));
    EXPECT_FALSE(SetPropBool(empty, L"Name", true));
    EXPECT_EQ(GetObjName(empty), L"");
    EXPECT_EQ(GetObjName(CComPtr<IDispatch>()), L"");
}

TEST_F(ComTest, DictionaryThroughCreateObject) {
    CComPtr<IDispatch> created = CreateObject(L"Scripting.Dictionary");
    ASSERT_TRUE(created);
    CComQIPtr<IDispatch> dictionary(created);
    EXPECT_EQ(GetObjName(dictionary), L"IDictionary");
    EXPECT_EQ(GetPropLong(dictionary, L"Count"), 0);
}

TEST_F(ComTest, FileSystemObjectDrivesThroughGetDisp) {
    CComQIPtr<IDispatch> fileSystem(CreateObject(L"Scripting.FileSystemObject"));
    ASSERT_TRUE(fileSystem);
    CComQIPtr<IDispatch> drives(GetDisp(fileSystem, L"Drives"));
    ASSERT_TRUE(drives);
    EXPECT_EQ(GetObjName(drives), L"IDriveCollection");
    EXPECT_GE(GetPropLong(drives, L"Count"), 1);  // C: at least
}

TEST_F(ComTest, CreateObjectOfUnknownOrNullProgIdIsEmpty) {
    EXPECT_FALSE(CreateObject(nullptr));
    EXPECT_FALSE(CreateObject(kUnregisteredProgId));
}

TEST_F(ComTest, BooleanIsTrueOnlyForAllOnesInTheLowSixteenBits) {
    CComPtr<TestDispatch> own = MakeObject(L"own");
    CComQIPtr<IDispatch> object(own.p);
    struct Row {
        const wchar_t* property;
        bool expected;
    } rows[] = {{L"IntOne", false}, {L"BoolOne", false}, {L"BoolTrue", true}, {L"IntFFFF", true}, {L"Count", false}};
    for (const Row& row : rows)
        EXPECT_EQ(GetPropBool(object, row.property), row.expected) << tavtest::Narrow(row.property);
}

TEST_F(ComTest, ReadsAskForAPropertyGetWithoutArguments) {
    CComPtr<TestDispatch> own = MakeObject(L"own");
    CComQIPtr<IDispatch> object(own.p);
    EXPECT_EQ(GetPropW(object, L"Name"), L"own");
    ASSERT_EQ(own->Lookups().size(), 1u);
    EXPECT_EQ(own->Lookups()[0].name, L"Name");
    EXPECT_EQ(own->Lookups()[0].lcid, static_cast<LCID>(LOCALE_USER_DEFAULT));
    EXPECT_TRUE(own->Lookups()[0].iidNull);
    ASSERT_EQ(own->Calls().size(), 1u);
    const TestDispatch::Call& call = own->Calls()[0];
    EXPECT_EQ(call.flags, DISPATCH_PROPERTYGET);
    EXPECT_EQ(call.lcid, static_cast<LCID>(LOCALE_USER_DEFAULT));
    EXPECT_TRUE(call.iidNull);
    EXPECT_EQ(call.arguments, 0u);
    EXPECT_EQ(call.namedArguments, 0u);
}

TEST_F(ComTest, NullPropertyNameIsPassedAsNullBstr) {
    CComPtr<TestDispatch> own = MakeObject(L"own");
    CComQIPtr<IDispatch> object(own.p);
    EXPECT_EQ(GetPropW(object, nullptr), L"");
    EXPECT_FALSE(SetPropBool(object, nullptr, true));
    ASSERT_EQ(own->Lookups().size(), 2u);
    EXPECT_TRUE(own->Lookups()[0].nameNull);
    EXPECT_TRUE(own->Lookups()[1].nameNull);
    EXPECT_TRUE(own->Calls().empty());
}

TEST_F(ComTest, BooleanWriteIsOnePlainPutWithANamedArgument) {
    CComPtr<TestDispatch> own = MakeObject(L"own");
    CComQIPtr<IDispatch> object(own.p);
    for (bool value : {true, false}) {
        EXPECT_TRUE(SetPropBool(object, L"Flag", value));
        EXPECT_EQ(own->Flag(), value);
        EXPECT_EQ(GetPropBool(object, L"Flag"), value);
    }
    ASSERT_EQ(own->Calls().size(), 4u);  // put, get, put, get
    for (size_t i : {0u, 2u}) {
        const TestDispatch::Call& put = own->Calls()[i];
        EXPECT_EQ(put.flags, DISPATCH_PROPERTYPUT) << i;
        EXPECT_EQ(put.arguments, 1u) << i;
        EXPECT_EQ(put.namedArguments, 1u) << i;
        EXPECT_EQ(put.namedId, DISPID_PROPERTYPUT) << i;
        EXPECT_EQ(put.type, VT_BOOL) << i;
        EXPECT_EQ(put.value, i == 0 ? VARIANT_TRUE : VARIANT_FALSE) << i;
    }
    // A property that refuses the write: false, after one attempt only.
    EXPECT_FALSE(SetPropBool(object, L"Count", true));
    EXPECT_EQ(own->Calls().size(), 5u);
}

TEST_F(ComTest, ObjectPropertyCarriesItsOwnReference) {
    CComPtr<TestDispatch> own = MakeObject(L"own");
    CComQIPtr<IDispatch> object(own.p);
    IDispatch* child = own->Child();
    ULONG before = static_cast<TestDispatch*>(child)->References();
    {
        CComPtr<IDispatch> got = GetDisp(object, L"Child");
        EXPECT_EQ(got.p, child);
        EXPECT_EQ(static_cast<TestDispatch*>(child)->References(), before + 1);
        CComQIPtr<IDispatch> gotQueried(got);
        EXPECT_EQ(GetPropW(gotQueried, L"Name"), L"child");
    }
    EXPECT_EQ(static_cast<TestDispatch*>(child)->References(), before);
}

TEST_F(ComTest, ObjectWithoutTypeInformationHasNoName) {
    CComPtr<TestDispatch> own = MakeObject(L"own");
    CComPtr<IDispatch> object(own.p);
    EXPECT_EQ(GetObjName(object), L"");
}

}  // namespace
}  // namespace comtest
