// Drivers for automation answers that come from another program: the property readers and the type name
// against an object of the test's own whose property returns, input by input, a VARIANT of every type (each
// scalar with any bits, strings of odd lengths and with NULs, objects that do or do not offer IDispatch,
// references, arrays, empty and null, and types that do not exist with random bits), whose name lookup and
// call can fail, and whose type information names it with any text; and the search of the Running Object
// Table against monikers with hostile display names registered by the test. Each has a C counterpart that
// compares the C interface's answers with the C++ ones.
#include "AutomationObjects.h"
#include "CapiChecks.h"
#include "Fuzz.h"
#include "RegistryFixture.h"

#include <TavUtil.h>

#include "capi/TavUtilC.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <cwctype>
#include <memory>
#include <vector>

namespace fuzz {
namespace {

// ---- values of every type ------------------------------------------------------------------------------

BSTR HostileString(Rng& rng) {
    if (rng.OneIn(10))
        return nullptr;
    size_t units = rng.OneIn(4) ? std::vector<size_t>{0, 1, 2, 7, 8, 255, 256, 4096}[rng.Below(8)] : rng.Below(40);
    if (rng.OneIn(500))
        units = 70000;
    std::vector<wchar_t> text(units);
    for (wchar_t& unit : text)
        unit = rng.OneIn(8) ? L'\0' : static_cast<wchar_t>(rng.OneIn(3) ? rng.Below(0x10000) : L'a' + rng.Below(26));
    // An odd byte length: the last unit is cut in half.
    const UINT bytes = static_cast<UINT>(units * sizeof(wchar_t)) - (units > 0 && rng.OneIn(4) ? 1 : 0);
    return SysAllocStringByteLen(reinterpret_cast<const char*>(text.data()), bytes);
}

// The text of a copy of a BSTR made with its length in units (GetPropW): its whole units (an odd last byte
// does not make one), up to the first NUL.
Text TextOfCopy(BSTR value) {
    if (value == nullptr)
        return Text();
    Text text(value, SysStringLen(value));
    return text.substr(0, text.find(L'\0'));
}

// The text of a BSTR read as a C string (GetObjName): up to the first NUL, where an odd last byte and the
// zero byte of the terminator after it make one more unit.
Text TextOfMemory(BSTR value) {
    if (value == nullptr)
        return Text();
    const UINT bytes = SysStringByteLen(value);
    std::vector<unsigned char> padded(reinterpret_cast<const unsigned char*>(value),
                                      reinterpret_cast<const unsigned char*>(value) + bytes);
    padded.resize(bytes + 1, 0);
    Text text(reinterpret_cast<const wchar_t*>(padded.data()), padded.size() / sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

// What one input hands out: the objects and storage its VARIANTs point to, and what the readers must answer.
struct ValuePlan {
    PlainObject* withDispatch = new PlainObject(true);
    PlainObject* withoutDispatch = new PlainObject(false);
    // Storage of the references (VT_BYREF): the library must never free or release what they point to.
    LONG byrefLong = 0;
    BSTR byrefString = nullptr;
    IDispatch* byrefObject = nullptr;
    VARIANT byrefVariant = {};
    SAFEARRAY* byrefArray = nullptr;

    IDispatch* expectedObject = nullptr;  // GetDisp
    Text expectedText;                    // GetPropW: taken when the string is made (the reader frees it)
    std::string kind;

    ValuePlan() { byrefObject = withDispatch; }
    ~ValuePlan() {
        SysFreeString(byrefString);
        if (byrefArray)
            SafeArrayDestroy(byrefArray);
        withDispatch->Release();
        withoutDispatch->Release();
    }
    ValuePlan(const ValuePlan&) = delete;
    ValuePlan& operator=(const ValuePlan&) = delete;

    // Fills `value` by `seed` (the same seed gives the same value, with fresh allocations).
    void Make(uint64_t seed, VARIANT* value) {
        Rng rng(seed);
        unsigned char bits[sizeof(VARIANT)];
        for (unsigned char& byte : bits)
            byte = static_cast<unsigned char>(rng.Below(256));
        std::memcpy(value, bits, sizeof bits);
        expectedObject = nullptr;
        expectedText.clear();
        const VARTYPE scalars[] = {VT_I1,   VT_I2, VT_I4, VT_I8, VT_INT,  VT_UI1,   VT_UI2,  VT_UI4,    VT_UI8,
                                   VT_UINT, VT_R4, VT_R8, VT_CY, VT_DATE, VT_ERROR, VT_BOOL, VT_DECIMAL};
        switch (rng.Below(12)) {
        case 0:
            value->vt = rng.OneIn(2) ? VT_EMPTY : VT_NULL;
            kind = value->vt == VT_EMPTY ? "empty" : "null";
            break;
        case 1:
        case 2: {  // a number of any type and any bits
            const VARTYPE type = scalars[rng.Below(sizeof scalars / sizeof *scalars)];
            if (type == VT_BOOL && rng.OneIn(2))
                value->boolVal = static_cast<VARIANT_BOOL>(std::vector<unsigned>{0xFFFF, 1, 0, 0x7FFF}[rng.Below(4)]);
            value->vt = type;  // after the bits: a decimal's first word is the type
            kind = "scalar";
            break;
        }
        case 3:
        case 4:
            value->vt = VT_BSTR;
            value->bstrVal = HostileString(rng);
            expectedText = TextOfCopy(value->bstrVal);
            kind = "string";
            break;
        case 5:
            value->vt = VT_DISPATCH;
            value->pdispVal = rng.OneIn(6) ? nullptr : withDispatch;
            if (value->pdispVal)
                value->pdispVal->AddRef();
            expectedObject = value->pdispVal;
            kind = "dispatch";
            break;
        case 6: {
            value->vt = VT_UNKNOWN;
            const unsigned which = rng.Below(6);
            value->punkVal = which == 0 ? nullptr : which < 4 ? withDispatch : withoutDispatch;
            if (value->punkVal)
                value->punkVal->AddRef();
            expectedObject = which > 0 && which < 4 ? withDispatch : nullptr;
            kind = "unknown";
            break;
        }
        case 7: {  // references to storage of the plan's own
            switch (rng.Below(5)) {
            case 0: value->vt = VT_BYREF | VT_I4, value->plVal = &byrefLong; break;
            case 1:
                if (byrefString == nullptr)
                    byrefString = SysAllocString(L"by reference");
                value->vt = VT_BYREF | VT_BSTR, value->pbstrVal = &byrefString;
                break;
            case 2: value->vt = VT_BYREF | VT_DISPATCH, value->ppdispVal = &byrefObject; break;
            case 3: value->vt = VT_BYREF | VT_VARIANT, value->pvarVal = &byrefVariant; break;
            default:
                if (byrefArray == nullptr)
                    byrefArray = SafeArrayCreateVector(VT_I4, 0, 3);
                value->vt = VT_BYREF | VT_ARRAY | VT_I4, value->pparray = &byrefArray;
                break;
            }
            kind = "byref";
            break;
        }
        case 8: {  // arrays, of numbers, strings, objects and values
            const VARTYPE elements[] = {VT_I4, VT_BSTR, VT_DISPATCH, VT_VARIANT, VT_UI1};
            const VARTYPE element = elements[rng.Below(5)];
            const ULONG count = rng.Below(4);
            SAFEARRAY* array = SafeArrayCreateVector(element, 0, count);
            for (LONG i = 0; array != nullptr && element == VT_DISPATCH && i < static_cast<LONG>(count); ++i)
                SafeArrayPutElement(array, &i, withDispatch);  // each element holds a reference
            value->vt = VT_ARRAY | element;
            value->parray = array;
            kind = "array";
            break;
        }
        case 9: {  // a reference with random bits: whatever it points to is never read
            const VARTYPE types[] = {VT_I4, VT_BSTR, VT_DISPATCH, VT_UNKNOWN, VT_VARIANT, VT_BOOL};
            value->vt = VT_BYREF | types[rng.Below(6)];
            kind = "byref-random";
            break;
        }
        default: {  // a type that does not exist, with random bits
            const VARTYPE invalid[] = {15,       VT_VOID,   VT_HRESULT,          VT_PTR,
                                       VT_LPSTR, VT_LPWSTR, VT_FILETIME,         VT_BLOB,
                                       0x0FFF,   0x7FFF,    VT_VECTOR | VT_BSTR, VT_RESERVED | VT_DISPATCH};
            value->vt = invalid[rng.Below(sizeof invalid / sizeof *invalid)];
            kind = "invalid";
            break;
        }
        }
    }
};

// One source, its type information and the plan of the value, made once per input.
struct AutomationCase {
    PropertySource* source = new PropertySource;
    NamedTypeInfo* typeInfo = new NamedTypeInfo;
    ValuePlan plan;
    uint64_t valueSeed = 0;
    bool nameNull = false;
    Text name;

    explicit AutomationCase(const Input& input) {
        Rng rng(input.choices);
        valueSeed = rng.Next();
        name = input.text;
        nameNull = rng.OneIn(16);
        source->lookupFails = rng.OneIn(10);
        source->invokeResult = rng.OneIn(10) ? (rng.OneIn(2) ? DISP_E_EXCEPTION : E_FAIL) : S_OK;
        source->makeValue = [this](VARIANT* value) { plan.Make(valueSeed, value); };
        // The type name: none, a failure with or without an object, or any text with any code.
        switch (rng.Below(5)) {
        case 0: source->typeInfoResult = E_NOTIMPL; break;
        case 1:
            source->typeInfo = typeInfo;
            source->typeInfoResult = rng.OneIn(2) ? TYPE_E_ELEMENTNOTFOUND : S_OK;
            typeInfo->writeName = false;
            break;
        default:
            source->typeInfo = typeInfo;
            source->typeInfoResult = rng.OneIn(8) ? E_FAIL : S_OK;
            typeInfo->name = HostileString(rng);
            typeInfo->documentationResult = rng.OneIn(6) ? TYPE_E_ELEMENTNOTFOUND : S_OK;
            typeInfo->writeName = !rng.OneIn(10);
            break;
        }
    }
    ~AutomationCase() {
        source->Release();
        typeInfo->Release();
    }
    AutomationCase(const AutomationCase&) = delete;
    AutomationCase& operator=(const AutomationCase&) = delete;

    const wchar_t* Name() const { return nameNull ? nullptr : name.c_str(); }
    bool Read() const { return !source->lookupFails && source->invokeResult == S_OK; }

    // The rules of one read, from the value the source handed out last.
    void CheckLookup(const char* what) const {
        Expect(source->lastNameNull == nameNull && (nameNull || source->lastName == name),
               std::string(what) + ": the name looked up differs from the one given");
    }
    long ExpectedLong() const { return Read() ? source->lastValue.lVal : 0; }
    bool ExpectedBool() const { return Read() && static_cast<unsigned short>(source->lastValue.boolVal) == 0xFFFF; }
    IDispatch* ExpectedObject() const { return Read() ? plan.expectedObject : nullptr; }
    Text ExpectedText() const { return Read() ? plan.expectedText : Text(); }
    // The type name: the text the type information wrote (its code is not looked at), when it gave one.
    Text ExpectedTypeName() const {
        if (source->typeInfo == nullptr || source->typeInfoResult != S_OK || !typeInfo->writeName)
            return Text();
        return TextOfMemory(typeInfo->name);
    }

    // Every reference the library took is given back: the source, its type information and the objects.
    void CheckReferences() const {
        Expect(source->References() == 1 && typeInfo->References() == 1,
               "a reference to the source or its type information was kept: " + Num(source->References()) + ", " +
                   Num(typeInfo->References()));
        Expect(plan.withDispatch->References() == 1 && plan.withoutDispatch->References() == 1,
               "a reference to an object of the value was kept or given back twice: " +
                   Num(plan.withDispatch->References()) + ", " + Num(plan.withoutDispatch->References()));
    }
};

std::string ReadCpp(AutomationCase& c) {
    CComQIPtr<IDispatch> object(static_cast<IDispatch*>(c.source));
    const long number = ComUtils::GetPropLong(object, c.Name());
    c.CheckLookup("GetPropLong");
    Expect(number == c.ExpectedLong(),
           "GetPropLong " + Num(number) + ", the value holds " + Num(c.ExpectedLong()) + " (" + c.plan.kind + ")");
    const bool flag = ComUtils::GetPropBool(object, c.Name());
    Expect(flag == c.ExpectedBool(), "GetPropBool " + Num(flag) + " (" + c.plan.kind + ")");
    {
        CComPtr<IDispatch> got = ComUtils::GetDisp(object, c.Name());
        Expect(got.p == c.ExpectedObject(), "GetDisp gave " + std::string(got.p ? "an object" : "nothing") +
                                                " where the rule says " +
                                                (c.ExpectedObject() ? "the object" : "nothing") + " (" + c.plan.kind +
                                                ", type " + Num(c.source->lastValue.vt) + ")");
    }
    const CStdStr<wchar_t> text = ComUtils::GetPropW(object, c.Name());
    Expect(Same(text, c.ExpectedText()), "GetPropW \"" + Narrow(text) + "\", the rule says \"" +
                                             Narrow(c.ExpectedText()) + "\" (" + c.plan.kind + ", type " +
                                             Num(c.source->lastValue.vt) + ", read " + Num(c.Read()) + ")");
    const CStdStr<wchar_t> typeName = ComUtils::GetObjName(CComPtr<IDispatch>(object.p));
    Expect(Same(typeName, c.ExpectedTypeName()), "GetObjName \"" + Narrow(typeName) +
                                                     "\", the type information says \"" + Narrow(c.ExpectedTypeName()) +
                                                     "\"");
    const CStdStr<wchar_t> again = ComUtils::GetObjName(object);
    Expect(Same(again, typeName), "the two forms of GetObjName differ");
    object.Release();
    c.CheckReferences();
    return c.plan.kind + " r" + Num(c.Read()) + " t" + Num(!typeName.empty()) + " n" + Num(!text.empty());
}

std::string ReadC(AutomationCase& c) {
    void* object = static_cast<IDispatch*>(c.source);
    int32_t number = 0x5EED;
    Expect(tav_com_get_prop_long(object, c.Name(), &number) == TAV_OK && number == c.ExpectedLong(),
           "tav_com_get_prop_long gives " + Num(number) + ", the value holds " + Num(c.ExpectedLong()));
    int32_t flag = 7;
    Expect(tav_com_get_prop_bool(object, c.Name(), &flag) == TAV_OK && flag == (c.ExpectedBool() ? 1 : 0),
           "tav_com_get_prop_bool gives " + Num(flag));
    void* got = reinterpret_cast<void*>(1);
    Expect(tav_com_get_disp(object, c.Name(), &got) == TAV_OK && got == c.ExpectedObject(),
           "tav_com_get_disp differs from the rule (" + c.plan.kind + ")");
    if (got != nullptr)
        tav_com_release(got);
    CheckText(
        "tav_com_get_prop_string (" + c.plan.kind + ")",
        [&](wchar_t* b, size_t cap, size_t* w) { return tav_com_get_prop_string(object, c.Name(), b, cap, w); }, TAV_OK,
        c.ExpectedText());
    CheckText(
        "tav_com_object_name",
        [&](wchar_t* b, size_t cap, size_t* w) { return tav_com_object_name(object, b, cap, w); }, TAV_OK,
        c.ExpectedTypeName());
    size_t needed = kUnset;
    Expect(tav_com_get_prop_long(nullptr, c.Name(), &number) == TAV_E_NULL_HANDLE &&
               tav_com_get_prop_long(object, c.Name(), nullptr) == TAV_E_NULL_ARGUMENT &&
               tav_com_get_disp(object, c.Name(), nullptr) == TAV_E_NULL_ARGUMENT &&
               tav_com_get_prop_string(nullptr, c.Name(), nullptr, 0, &needed) == TAV_E_NULL_HANDLE &&
               tav_com_object_name(nullptr, nullptr, 0, &needed) == TAV_E_NULL_HANDLE && needed == kUnset,
           "null objects and pointers");
    c.CheckReferences();
    return c.plan.kind + " r" + Num(c.Read());
}

const std::vector<Text> kNameSeeds = {L"Name", L"Value", L"", L"x", L"\x00E9t\x00E9", L"a b", L"Item(1)", L"\xD800"};

TEST(Fuzz, Automation) {
    auto com = std::make_shared<tav::ComInitialization>();
    RunDriver({"automation", kNameSeeds, nullptr, [com](const Input& input) {
                   AutomationCase c(input);
                   return ReadCpp(c);
               }});
}

TEST(Fuzz, CapiAutomation) {
    auto com = std::make_shared<tav::ComInitialization>();
    RunDriver({"capi-automation", kNameSeeds, nullptr, [com](const Input& input) {
                   AutomationCase c(input);
                   return ReadC(c);
               }});
}

// ---- the Running Object Table ----------------------------------------------------------------------------

// A ProgID of the driver's own (HKEY_CLASSES_ROOT\TavUtilFuzz.Rot<process id>) naming a fresh class
// identifier, removed with the driver.
struct RotDriver {
    std::wstring progId = L"TavUtilFuzz.Rot" + std::to_wstring(GetCurrentProcessId());
    std::unique_ptr<tavtest::RegistryFixture> registration;
    Text key;  // the class identifier's registry form, the text the search looks for
    CComPtr<IRunningObjectTable> table;

    RotDriver() {
        GUID clsid;
        wchar_t text[64] = {};
        if (FAILED(CoCreateGuid(&clsid)) || StringFromGUID2(clsid, text, 64) == 0)
            return;
        key = text;
        registration = std::make_unique<tavtest::RegistryFixture>(HKEY_CLASSES_ROOT, progId + L"\\CLSID");
        if (!registration->ok() || !registration->Set(L"", key))
            registration.reset();
        GetRunningObjectTable(0, &table);
    }
    bool ok() const { return registration != nullptr && table; }
};

// The rule's walk of the table: the first moniker whose display name holds `key` (exactly, anywhere) and whose
// object offers IDispatch; a display name that cannot be had ends the walk with nothing.
IUnknown* ExpectedRunning(const Text& key) {
    CComPtr<IBindCtx> context;
    CComPtr<IRunningObjectTable> table;
    CComPtr<IEnumMoniker> monikers;
    if (FAILED(CreateBindCtx(0, &context)) || FAILED(context->GetRunningObjectTable(&table)) ||
        FAILED(table->EnumRunning(&monikers)))
        return nullptr;
    for (;;) {
        CComPtr<IMoniker> moniker;
        if (monikers->Next(1, &moniker, nullptr) != S_OK)
            return nullptr;
        LPOLESTR name = nullptr;
        if (FAILED(moniker->GetDisplayName(context, nullptr, &name)))
            return nullptr;
        const Text displayName = name ? name : L"";
        CoTaskMemFree(name);
        if (displayName.find(key) == Text::npos)
            continue;
        CComPtr<IUnknown> object;
        if (FAILED(table->GetObject(moniker, &object)))
            continue;
        CComQIPtr<IDispatch> dispatch(object.p);
        if (dispatch)
            return dispatch.p;  // the table holds it while it is registered
    }
}

// A display name made from the input: the class identifier inside it (whole, in lower case, cut short) or not.
Text HostileDisplayName(Rng& rng, const Text& text, const Text& key) {
    Text name = text.substr(0, text.find(L'\0'));
    Text inside = key;
    switch (rng.Below(5)) {
    case 0: inside.clear(); break;
    case 1:
        for (wchar_t& unit : inside)
            unit = static_cast<wchar_t>(towlower(unit));
        break;
    case 2: inside = inside.substr(0, 1 + rng.Below(static_cast<uint32_t>(inside.size() - 1))); break;
    default: break;
    }
    name.insert(rng.Below(static_cast<uint32_t>(name.size() + 1)), inside);
    return name;
}

// Names up to this length always fit the table's limit, whichever kind of moniker carries them.
constexpr size_t kLongestNameTaken = 1000;

std::string HexCode(HRESULT code) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08lx", static_cast<unsigned long>(code));
    return text;
}

// What one input put in the table, taken out again however the input ends.
struct RotEntries {
    IRunningObjectTable* table;
    std::vector<DWORD> cookies;
    std::vector<PlainObject*> objects;

    explicit RotEntries(IRunningObjectTable* t) : table(t) {}
    RotEntries(const RotEntries&) = delete;
    RotEntries& operator=(const RotEntries&) = delete;
    ~RotEntries() {
        for (DWORD cookie : cookies)
            table->Revoke(cookie);
        for (PlainObject* object : objects)
            object->Release();  // what the search keeps of a match stays with it, as its rule says
    }
};

std::string RunRot(RotDriver& driver, const Input& input, bool capi) {
    Rng rng(input.choices);
    RotEntries entries(driver.table);
    for (uint32_t n = 1 + rng.Below(4); n > 0; --n) {
        const Text name = HostileDisplayName(rng, input.text, driver.key);
        CComPtr<IMoniker> moniker;
        const HRESULT made = rng.OneIn(3) ? CreateFileMoniker(name.c_str(), &moniker)
                                          : CreateItemMoniker(rng.OneIn(4) ? L"" : L"!", name.c_str(), &moniker);
        if (FAILED(made))
            continue;
        auto* object = new PlainObject(!rng.OneIn(4));
        entries.objects.push_back(object);
        DWORD cookie = 0;
        const HRESULT registered = driver.table->Register(0, object, moniker, &cookie);
        // The table keeps at most 2 KB of a moniker's comparison data and refuses a longer name
        // (E_OUTOFMEMORY). A refused shorter name means a broken table, one that would leave every search
        // empty and the driver testing nothing.
        if (FAILED(registered)) {
            Expect(name.size() > kLongestNameTaken,
                   "the table refused an entry of " + Num(name.size()) + " units: " + HexCode(registered));
            continue;
        }
        entries.cookies.push_back(cookie);
    }
    // The driver's ProgID mostly; now and then the input itself as a ProgID.
    const Text progId = rng.OneIn(8) ? input.text.substr(0, input.text.find(L'\0')) : driver.progId;
    CLSID clsid;
    Text key;
    wchar_t text[64] = {};
    if (SUCCEEDED(CLSIDFromProgID(progId.c_str(), &clsid)) && StringFromGUID2(clsid, text, 64) != 0)
        key = text;
    IUnknown* expected = key.empty() ? nullptr : ExpectedRunning(key);

    std::string outcome;
    {
        CComPtr<IDispatch> found = ComUtils::FindInROT(progId.c_str());
        Expect(found.p == expected, "FindInROT gave " + std::string(found.p ? "an object" : "nothing") +
                                        " where the table's first match is " + (expected ? "an object" : "nothing"));
        outcome = std::string(found.p ? "found" : "none") + " k" + Num(entries.cookies.size());
    }
    if (capi) {
        void* object = reinterpret_cast<void*>(1);
        const int32_t got = tav_com_find_in_rot(progId.c_str(), &object);
        Expect(got == (expected ? 1 : 0) && object == expected, "tav_com_find_in_rot differs from the C++ answer");
        if (object != nullptr)
            tav_com_release(object);
        Expect(tav_com_find_in_rot(progId.c_str(), nullptr) == TAV_E_NULL_ARGUMENT &&
                   tav_com_find_in_rot(nullptr, &object) == 0 && object == nullptr,
               "null ProgID or pointer");
    }
    return outcome;
}

const std::vector<Text> kDisplaySeeds = {L"", L"!", L"C:\\dir\\file.doc", L"\x00E9", L"a b", L"\xD800", L"{", L"}"};

TEST(Fuzz, RunningObjects) {
    auto com = std::make_shared<tav::ComInitialization>();
    auto driver = std::make_shared<RotDriver>();
    ASSERT_TRUE(driver->ok()) << "the ProgID of the driver could not be registered";
    RunDriver({"rot", kDisplaySeeds, nullptr,
               [com, driver](const Input& input) { return RunRot(*driver, input, false); }, true, 2000});
}

TEST(Fuzz, CapiRunningObjects) {
    auto com = std::make_shared<tav::ComInitialization>();
    auto driver = std::make_shared<RotDriver>();
    ASSERT_TRUE(driver->ok()) << "the ProgID of the driver could not be registered";
    RunDriver({"capi-rot", kDisplaySeeds, nullptr,
               [com, driver](const Input& input) { return RunRot(*driver, input, true); }, true, 2000});
}

}  // namespace
}  // namespace fuzz
