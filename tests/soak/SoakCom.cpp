// Automation: objects of the platform (VBScript.RegExp, Scripting.FileSystemObject) for creation and
// property access, and an object of the run's own for the active-object table and the Running Object
// Table, whose references can be counted.
#include "Areas.h"

#include "TestDispatch.h"

#include <TavUtil.h>

#include <windows.h>
#include <objbase.h>

namespace soak {

namespace {

constexpr const wchar_t* kProgId = L"TavUtilSoak.RunningApp";
constexpr const wchar_t* kClsidText = L"{5C2D3E8A-0B7F-4C11-9E0D-7A61B2F4C3D9}";
constexpr const wchar_t* kUnregisteredProgId = L"TavUtilSoak.NotRegistered";

// HKLM\Software\Classes\<progId>\CLSID = clsid, for as long as the object lives.
class ProgId {
public:
    ProgId() {
        const std::wstring value = kClsidText;
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, (key_ + L"\\CLSID").c_str(), nullptr, REG_SZ, value.c_str(),
                        static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    }
    ~ProgId() { RegDeleteTreeW(HKEY_LOCAL_MACHINE, key_.c_str()), RegDeleteKeyW(HKEY_LOCAL_MACHINE, key_.c_str()); }

private:
    std::wstring key_ = std::wstring(L"Software\\Classes\\") + kProgId;
};

void SoakProperties(Runner& runner) {
    runner.Check("ComUtils CreateObject", [] { ComUtils::CreateObject(L"VBScript.RegExp"); });
    runner.Check("ComUtils CreateObject unregistered", [] { ComUtils::CreateObject(kUnregisteredProgId); });
    CComQIPtr<IDispatch> regExp(ComUtils::CreateObject(L"VBScript.RegExp").p);
    CComQIPtr<IDispatch> files(ComUtils::CreateObject(L"Scripting.FileSystemObject").p);
    if (!regExp || !files) {
        runner.Fail("ComUtils properties", "VBScript.RegExp or Scripting.FileSystemObject cannot be created");
        return;
    }
    ComUtils::SetPropBool(regExp, L"Global", true);
    runner.Check("ComUtils GetPropW", [&] { ComUtils::GetPropW(regExp, L"Pattern"); });
    runner.Check("ComUtils GetPropBool", [&] { ComUtils::GetPropBool(regExp, L"IgnoreCase"); });
    runner.Check("ComUtils SetPropBool", [&] { ComUtils::SetPropBool(regExp, L"IgnoreCase", true); });
    runner.Check("ComUtils GetPropLong", [&] { ComUtils::GetPropLong(regExp, L"Global"); });
    runner.Check("ComUtils GetPropLong unknown name", [&] { ComUtils::GetPropLong(regExp, L"NoSuchProperty"); });
    runner.Check("ComUtils GetDisp", [&] { ComUtils::GetDisp(files, L"Drives"); });
    runner.Check("ComUtils GetObjName", [&] { ComUtils::GetObjName(regExp); });
}

void SoakRunningObjects(Runner& runner) {
    ProgId progId;
    CLSID clsid;
    CLSIDFromString(kClsidText, &clsid);
    comtest::TestDispatch* object = new comtest::TestDispatch(L"soak");  // born with one reference
    DWORD activeCookie = 0, rotCookie = 0;
    RegisterActiveObject(object, clsid, ACTIVEOBJECT_STRONG, &activeCookie);
    CComPtr<IRunningObjectTable> table;
    CComPtr<IMoniker> moniker;
    GetRunningObjectTable(0, &table);
    CreateItemMoniker(L"!", kClsidText, &moniker);
    if (table && moniker)
        table->Register(ROTFLAGS_REGISTRATIONKEEPSALIVE, object, moniker, &rotCookie);
    if (activeCookie == 0 || rotCookie == 0) {
        runner.Fail("ComUtils running objects", "the object could not be registered");
        return;
    }

    runner.Check("ComUtils TryToGetActiveObject (registered)", [&] {
        IUnknown* found = nullptr;
        if (SUCCEEDED(ComUtils::TryToGetActiveObject(clsid, nullptr, &found)))
            found->Release();
    });
    runner.Check("ComUtils TryToGetActiveObject (none, no hidden window)", [] {
        IUnknown* found = nullptr;
        ComUtils::TryToGetActiveObject(CLSID_NULL, nullptr, &found);
    });
    runner.Check("ComUtils GetActiveAppDispatch", [] { ComUtils::GetActiveAppDispatch(kProgId); });
    runner.Check("ComUtils GetAppDispatch", [] { ComUtils::GetAppDispatch(kProgId, false); });
    runner.Check("ComUtils FindInROT (no match)", [] { ComUtils::FindInROT(L"VBScript.RegExp"); });
    runner.Check("ComUtils FindInROT (unregistered ProgID)", [] { ComUtils::FindInROT(kUnregisteredProgId); });
    const Counter references{"reference of the found object", [object] { return int64_t{object->References()}; }, 1};
    runner.Check(
        "ComUtils FindInROT (match)", [] { ComUtils::FindInROT(kProgId); },
        {"on a match the moniker, the enumerator, the table and the bind context are left unreleased, "
         "and the found object keeps the reference of the query",
         0, true},
        &references);

    table->Revoke(rotCookie);
    RevokeActiveObject(activeCookie, nullptr);
    // The object keeps the references FindInROT left it: it is not freed.
}

}  // namespace

void SoakCom(Runner& runner) {
    if (FAILED(CoInitialize(nullptr))) {
        runner.Fail("ComUtils", "COM could not be initialised");
        return;
    }
    SoakProperties(runner);
    SoakRunningObjects(runner);
    CoUninitialize();
}

}  // namespace soak
