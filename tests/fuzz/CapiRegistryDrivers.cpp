// Drivers for the C interface over the registry: values written raw into a scratch key and read through the
// registry and settings functions, and key paths and the lookups of installed software by name. Each answer
// must equal the C++ interface's for the same input and keep the buffer protocol of the C headers.
#include "CapiChecks.h"
#include "Fuzz.h"
#include "Inputs.h"
#include "RegistryFixture.h"
#include "TestSupport.h"

#include <TavUtil.h>

#include "capi/TavUtilC.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <list>
#include <memory>

namespace fuzz {
namespace {

// ---- registry values ----------------------------------------------------------------------------------------

// The C interface's objects, released at the end of each input.
struct RegistryHandle {
    tav_registry key = tav_registry_create();
    ~RegistryHandle() { tav_registry_destroy(key); }
};
struct SettingsHandle {
    tav_settings settings = tav_settings_create();
    ~SettingsHandle() { tav_settings_destroy(settings); }
};

TEST(Fuzz, CapiRegistry) {
    std::wstring keyPath;
    const std::shared_ptr<HKEY__> key = ScratchKey(L"Capi", &keyPath);
    ASSERT_TRUE(key != nullptr);
    HKEY sub = nullptr;  // one subkey, so that an index can name something
    ASSERT_EQ(ERROR_SUCCESS,
              RegCreateKeyExW(key.get(), L"sub\x00E9", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &sub, nullptr));
    RegCloseKey(sub);
    RunDriver(
        {"capi-registry",
         {L"", L"value", L"Name With Blanks", L"\x00E9", L"a\\b"},
         nullptr,
         [key, keyPath](const Input& input) {
             Rng rng(input.choices);
             const RawValue value = RandomRawValue(rng);
             const DWORD type = value.type;
             const size_t length = value.data.size();
             const std::vector<BYTE>& data = value.data;
             const Text& name = input.text;
             const wchar_t* n = name.c_str();
             const LONG written = RegSetValueExW(key.get(), n, 0, type, data.data(), static_cast<DWORD>(length));

             // One key, read only.
             CRegistry registry(HKEY_CURRENT_USER, keyPath.c_str(), true);
             RegistryHandle c;
             Expect(tav_registry_open(c.key, TAV_HKEY_CURRENT_USER, keyPath.c_str(), 1) == 0, "tav_registry_open");
             CStdStr<wchar_t> text;
             const long status = registry.ReadStringValue(n, text);
             CheckText(
                 "tav_registry_read_string",
                 [&](wchar_t* b, size_t cap, size_t* w) { return tav_registry_read_string(c.key, n, b, cap, w); },
                 static_cast<int32_t>(status), text);
             unsigned long cppType = 0, cppSize = 0;
             const long cppQuery = registry.QueryValueEx(n, &cppType, nullptr, &cppSize);
             uint32_t cType = 0, cSize = 0;
             const int32_t cQuery = tav_registry_query_value(c.key, n, &cType, nullptr, &cSize);
             Expect(cQuery == cppQuery && cType == cppType && cSize == cppSize,
                    "tav_registry_query_value gives " + Num(cQuery) + " type " + Num(cType) + " size " + Num(cSize));

             // The typed settings store, on the same key.
             CRegistryClass settings;
             settings.SetRootKey(HKEY_CURRENT_USER);
             settings.SetKey(CString(keyPath.c_str()), 0);
             SettingsHandle s;
             tav_settings_set_root(s.settings, TAV_HKEY_CURRENT_USER);
             tav_settings_set_key(s.settings, keyPath.c_str(), 0);
             const CString valueName(n);
             const Text def = rng.OneIn(4) ? Text(L"default") : Text();
             CheckText(
                 "tav_settings_read_string",
                 [&](wchar_t* b, size_t cap, size_t* w) {
                     return tav_settings_read_string(s.settings, n, def.c_str(), b, cap, w);
                 },
                 TAV_OK, settings.ReadString(valueName, CString(def.c_str())).GetString());

             const uint32_t dwordDefault = static_cast<uint32_t>(Number(rng));
             uint32_t dword = 0;
             int32_t integer = 0, flag = 0;
             double real = 0;
             Expect(tav_settings_read_dword(s.settings, n, dwordDefault, &dword) == TAV_OK &&
                        dword == settings.ReadDword(valueName, dwordDefault),
                    "tav_settings_read_dword");
             Expect(tav_settings_read_int(s.settings, n, static_cast<int32_t>(dwordDefault), &integer) == TAV_OK &&
                        integer == settings.ReadInt(valueName, static_cast<int>(dwordDefault)),
                    "tav_settings_read_int");
             Expect(tav_settings_read_bool(s.settings, n, static_cast<int32_t>(dwordDefault), &flag) == TAV_OK &&
                        flag == settings.ReadBool(valueName, static_cast<int>(dwordDefault)),
                    "tav_settings_read_bool");
             Expect(tav_settings_read_color(s.settings, n, dwordDefault, &dword) == TAV_OK &&
                        dword == settings.ReadColor(valueName, dwordDefault),
                    "tav_settings_read_color");
             const double realDefault = static_cast<double>(static_cast<int32_t>(dwordDefault)) / 3;
             const double cppReal = settings.ReadFloat(valueName, realDefault);
             Expect(tav_settings_read_float(s.settings, n, realDefault, &real) == TAV_OK &&
                        SameBytes(&real, &cppReal, sizeof real),
                    "tav_settings_read_float");
             tav_date_time dateDefault = {realDefault, static_cast<int32_t>(rng.Below(4)) - 1, 0}, date;
             COleDateTime cppDefault;
             std::memcpy(static_cast<void*>(&cppDefault), &dateDefault, sizeof cppDefault);
             const COleDateTime cppDate = settings.ReadDateTime(valueName, cppDefault);
             Expect(tav_settings_read_date_time(s.settings, n, &dateDefault, &date) == TAV_OK &&
                        SameBytes(&date, &cppDate, sizeof date),
                    "tav_settings_read_date_time");

             const uint32_t binarySize = rng.Below(65);
             unsigned char cBinary[64] = {}, cppBinary[64] = {};
             const int32_t cRead = tav_settings_read_binary(s.settings, n, cBinary, binarySize);
             const int cppRead = settings.ReadBinary(valueName, cppBinary, binarySize);
             Expect(cRead == cppRead && SameBytes(cBinary, cppBinary, sizeof cBinary),
                    "tav_settings_read_binary(" + Num(binarySize) + ") gives " + Num(cRead));

             tav_rect rect = {1, 2, 3, 4};
             tav_point point = {5, 6};
             tav_size size = {7, 8};
             CRect cppRect(1, 2, 3, 4);
             CPoint cppPoint(5, 6);
             CSize cppSize2(7, 8);
             const int32_t shapes = tav_settings_read_rect(s.settings, n, &rect) * 100 +
                                    tav_settings_read_point(s.settings, n, &point) * 10 +
                                    tav_settings_read_size(s.settings, n, &size);
             const int cppShapes = settings.ReadRect(valueName, &cppRect) * 100 +
                                   settings.ReadPoint(valueName, &cppPoint) * 10 +
                                   settings.ReadSize(valueName, &cppSize2);
             Expect(shapes == cppShapes && SameBytes(&rect, &cppRect, sizeof rect) &&
                        SameBytes(&point, &cppPoint, sizeof point) && SameBytes(&size, &cppSize2, sizeof size),
                    "the geometry reads give " + Num(shapes) + ", the C++ " + Num(cppShapes));

             const int32_t exists = tav_settings_value_exists(s.settings, n);
             const int32_t dataSize = tav_settings_data_size(s.settings, n);
             const int32_t dataType = tav_settings_data_type(s.settings, n);
             Expect(exists == settings.ValueExists(valueName) && dataSize == settings.GetDataSize(valueName) &&
                        dataType == static_cast<int32_t>(settings.GetDataType(valueName)),
                    "exists, size or type differ: " + Num(exists) + " " + Num(dataSize) + " " + Num(dataType));

             const int32_t index = rng.OneIn(3) ? 0 : Number(rng);
             CString subkey;
             const int found = settings.GetSubKeyName(index, subkey);
             CheckText(
                 "tav_settings_subkey_name(" + Num(index) + ")",
                 [&](wchar_t* b, size_t cap, size_t* w) {
                     return tav_settings_subkey_name(s.settings, index, b, cap, w);
                 },
                 found, found ? Text(subkey.GetString()) : Text());

             size_t needed = kUnset;
             Expect(tav_registry_read_string(nullptr, n, nullptr, 0, &needed) == TAV_E_NULL_HANDLE &&
                        tav_registry_read_string(c.key, nullptr, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                        tav_settings_read_string(nullptr, n, L"", nullptr, 0, &needed) == TAV_E_NULL_HANDLE &&
                        tav_settings_read_string(s.settings, n, nullptr, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                        tav_settings_read_dword(s.settings, n, 0, nullptr) == TAV_E_NULL_ARGUMENT &&
                        tav_settings_read_binary(s.settings, n, nullptr, binarySize) == TAV_E_NULL_ARGUMENT &&
                        needed == kUnset,
                    "null handles and pointers");
             RegDeleteValueW(key.get(), n);
             return std::string("w") + Num(written == ERROR_SUCCESS) + " t" + Num(type & 0xF) + " s" + Num(status) +
                    " b" + Num(cRead) + " r" + Num(shapes) + " k" + Num(found);
         },
         true,
         20000});
}

// ---- key paths and lookups by name ---------------------------------------------------------------------

// What the lookups by name can find: an App Paths entry, and a ProgID whose current version names a class with
// a local server, all with this process's id in their names. Their values are written raw (any type, any
// length) before each input that names them. Everything is deleted when the driver ends.
class LookupRegistrations {
public:
    LookupRegistrations()
        : pid_(std::to_wstring(GetCurrentProcessId())), app_(L"tavfuzz" + pid_), progId_(L"TavFuzz" + pid_ + L".App"),
          classId_(L"{7A5F0000-0000-4000-8000-" + Padded(pid_) + L"}"),
          appKey_(HKEY_LOCAL_MACHINE, AppKey(app_, L"exe")), curVer_(HKEY_CLASSES_ROOT, progId_ + L"\\CurVer"),
          version_(HKEY_CLASSES_ROOT, progId_ + L".1\\CLSID"), server_(HKEY_CLASSES_ROOT, ServerKey()) {
        ok_ = appKey_.ok() && curVer_.ok() && version_.ok() && server_.ok() && curVer_.Set(nullptr, progId_ + L".1") &&
              version_.Set(nullptr, classId_);
    }

    bool ok() const { return ok_; }
    const Text& app() const { return app_; }
    const Text& progId() const { return progId_; }
    // Whether `name` is the application's or the ProgID's (the registry compares names without case).
    bool Names(const Text& name) const {
        return CompareStringOrdinal(name.c_str(), -1, app_.c_str(), -1, TRUE) == CSTR_EQUAL ||
               CompareStringOrdinal(name.c_str(), -1, progId_.c_str(), -1, TRUE) == CSTR_EQUAL;
    }
    // The default values that the lookups read: the application's path and the class's server command.
    void Store(const RawValue& appPath, const RawValue& server) const {
        SetDefault(HKEY_LOCAL_MACHINE, AppKey(app_, L"exe"), appPath);
        SetDefault(HKEY_CLASSES_ROOT, ServerKey(), server);
    }
    // The App Paths key that FindApplicationPath opens for `app` and `ext`.
    static Text AppKey(const Text& app, const Text& ext) {
        return L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\" + app + L"." + ext;
    }

private:
    static Text Padded(const Text& digits) { return Text(12 - std::min<size_t>(12, digits.size()), L'0') + digits; }
    Text ServerKey() const { return L"CLSID\\" + classId_ + L"\\LocalServer32"; }
    static void SetDefault(HKEY root, const Text& path, const RawValue& value) {
        RegSetKeyValueW(root, path.c_str(), nullptr, value.type, value.data.data(),
                        static_cast<DWORD>(value.data.size()));
    }

    Text pid_, app_, progId_, classId_;
    tavtest::RegistryFixture appKey_, curVer_, version_, server_;  // each removed with the keys it created
    bool ok_ = false;
};

// Whether root\path opens for reading in either registry view, as the library's read-only opens try them.
bool KeyOpens(HKEY root, const Text& path) {
    return tavtest::KeyExists(root, path) || tavtest::KeyExists(root, path, KEY_WOW64_32KEY);
}

Text KeyPathText(Rng& rng, const Text& app, const Text& progId) {
    const std::vector<Text> pieces = {
        L"a",    L"b",      L"\\",     L"\\\\", L"sub\x00E9",    L"Name With Blanks", L".", L"..", L"exe",
        L".exe", L"CurVer", L"CLSID",  L" ",    L"\x00C9",       L"\xD800",           L"*", L"?",  app,
        progId,  L".1",     L"%TEMP%", L"/",    Text(255, L'k'), Text(256, L'k')};
    Text path;
    for (uint32_t n = 1 + rng.Below(6); n > 0; --n)
        path += rng.Pick(pieces);
    return path;
}

// A lookup that found nothing answers 0 and an empty text: one exact call checks that. A lookup that found its
// text gets every step of the buffer protocol. Each step repeats the registry reads, and the protocol code is
// the same as for every other text output, so repeating it for every miss would only make the pass slower.
void CheckLookup(const std::string& what, const TextCall& call, bool found, const Text& text) {
    if (found) {
        CheckText(what, call, 1, text);
        return;
    }
    std::vector<wchar_t> buffer(1 + kGuardUnits, kGuard);
    size_t needed = kUnset;
    const int32_t got = call(buffer.data(), 1, &needed);
    Expect(got == 0 && needed == 1 && buffer[0] == 0 && Guarded(buffer, 1),
           what + ": a miss gives " + Num(got) + ", needed " + Num(static_cast<long long>(needed)));
}

// Under Wine 8 a ProgID that is not there costs the process two handles inside the platform: the library's
// read-only open tries the 32-bit view after the native one, and RegOpenKeyExW of HKEY_CLASSES_ROOT with
// KEY_WOW64_32KEY keeps one handle per call, found or not (measured: 1,000 calls, 1,000 more handles; none
// without the flag or on HKEY_LOCAL_MACHINE). The library closes every handle it is given. A long pass holds
// about three handles per input, and as they pile up the Wine server takes longer per input (its CPU time came
// to 1.5 times the driver's after 120,000 inputs, twice after 250,000): run the long pass in ranges of 100,000
// inputs, each in a fresh process.

// One answer of the lookups and key opens for an input: the C interface's against the C++ interface's, and the
// rules of their headers that need no second implementation.
struct KeyPathsDriver {
    std::shared_ptr<HKEY__> scratch;
    Text scratchPath;
    std::shared_ptr<LookupRegistrations> registered;

    // Keys below "made" are created by the input and deleted right after, so that the scratch key stays small.
    void DeleteMade() const { RegDeleteTreeW(scratch.get(), L"made"); }

    std::string Lookups(Rng& rng, const Text& text) const {
        // One lookup in four is for the registered name itself, so that answers that were found are checked too.
        const Text name = rng.OneIn(4) ? registered->app() : text;
        const Text ext = std::vector<Text>{L"exe", L"exe", L"", L"EXE", L"exe\\x", text}[rng.Below(6)];
        const Text progId = rng.OneIn(4) ? registered->progId() : text;
        const RawValue appPathValue = RandomRawValue(rng), serverValue = RandomRawValue(rng);
        if (registered->Names(name) || registered->Names(progId))  // only then does a lookup read them
            registered->Store(appPathValue, serverValue);
        const wchar_t* n = name.c_str();

        CStdStr<wchar_t> appPath(L"untouched");
        const bool app = FindApplicationPath(CStdStr<wchar_t>(name), appPath, CStdStr<wchar_t>(ext));
        // Found, or the path changed: only an existing key can do either (a missing key leaves the path as it was).
        const bool touched = appPath != L"untouched";
        Expect(!(app || touched) || KeyOpens(HKEY_LOCAL_MACHINE, LookupRegistrations::AppKey(name, ext)),
               "FindApplicationPath found \"" + Narrow(name) + "." + Narrow(ext) +
                   "\" or changed its path, and there is no such key");
        CheckLookup(
            "tav_software_application_path",
            [&](wchar_t* b, size_t c, size_t* w) { return tav_software_application_path(n, ext.c_str(), b, c, w); },
            app, Text(appPath));

        CStdStr<wchar_t> server;
        const bool prog = FindMostRecentProgIdPath(CStdStr<wchar_t>(progId), server);
        Expect(!prog || KeyOpens(HKEY_CLASSES_ROOT, progId + L"\\CurVer"),
               "FindMostRecentProgIdPath found a server for a ProgID without CurVer");
        CheckLookup(
            "tav_software_progid_server",
            [&](wchar_t* b, size_t c, size_t* w) { return tav_software_progid_server(progId.c_str(), b, c, w); }, prog,
            Text(server));

        size_t needed = kUnset;
        Expect(tav_software_application_path(nullptr, L"exe", nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                   tav_software_application_path(n, nullptr, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                   tav_software_progid_server(nullptr, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT && needed == kUnset,
               "null names");
        return std::string("a") + Num(app) + Num(touched) + " p" + Num(prog);
    }

    std::string Keys(Rng& rng, const Text& text) const {
        const bool below = !rng.OneIn(4);  // mostly below the scratch key, where the subkeys are
        const Text path = below ? scratchPath + L"\\" + text : text;
        const Text made = scratchPath + L"\\made\\" + text;

        long cppOpen;
        Text cppSubkeys;
        int32_t subkeyCount;
        {
            CRegistry cpp;
            cppOpen = cpp.OpenKey(HKEY_CURRENT_USER, path.c_str(), true);
            Expect((cppOpen == ERROR_SUCCESS) == (cpp.IsValid() == 1), "CRegistry::IsValid after an open");
            std::list<CStdStr<wchar_t>> names;
            for (const wchar_t* name = cpp.GetFirstSubkey(); name != nullptr; name = cpp.GetNextSubkey())
                names.emplace_back(name);
            cppSubkeys = Joined(names);
            subkeyCount = static_cast<int32_t>(names.size());
        }
        RegistryHandle c;
        Expect(tav_registry_open(c.key, TAV_HKEY_CURRENT_USER, path.c_str(), 1) == cppOpen &&
                   tav_registry_is_valid(c.key) == (cppOpen == ERROR_SUCCESS ? 1 : 0),
               "tav_registry_open (read-only) differs from the C++ open, " + Num(cppOpen));
        if (below)  // elsewhere the subkeys are other programs' and may change between the two reads
            CheckText(
                "tav_registry_subkeys",
                [&](wchar_t* b, size_t cap, size_t* w) { return tav_registry_subkeys(c.key, b, cap, w); }, subkeyCount,
                cppSubkeys);

        // One input in four creates its key (below "made", deleted after each creation), the rest only open.
        const int canCreate = rng.OneIn(4) ? 1 : 0;
        long cppMade = -1;
        if (canCreate) {
            {
                CRegistry cpp;
                cppMade = cpp.OpenKey(HKEY_CURRENT_USER, made.c_str(), false);
            }
            DeleteMade();
            RegistryHandle created;
            Expect(tav_registry_open(created.key, TAV_HKEY_CURRENT_USER, made.c_str(), 0) == cppMade,
                   "tav_registry_open (creating) differs from the C++ open, " + Num(cppMade));
            tav_registry_close(created.key);
            DeleteMade();
        }

        const Text settingsPath = canCreate ? made : path;
        CRegistryClass cpp;
        cpp.SetRootKey(HKEY_CURRENT_USER);
        const int cppSet = cpp.SetKey(CString(settingsPath.c_str()), canCreate);
        if (canCreate)
            DeleteMade();
        SettingsHandle s;
        tav_settings_set_root(s.settings, TAV_HKEY_CURRENT_USER);
        Expect(tav_settings_set_key(s.settings, settingsPath.c_str(), canCreate) == cppSet &&
                   tav_settings_path_is_valid(s.settings) == cpp.PathIsValid(),
               "tav_settings_set_key(" + Num(canCreate) + ") differs from the C++ SetKey, " + Num(cppSet));
        if (canCreate)
            DeleteMade();
        CheckText(
            "tav_settings_current_path",
            [&](wchar_t* b, size_t cap, size_t* w) { return tav_settings_current_path(s.settings, b, cap, w); }, TAV_OK,
            cpp.GetCurrentPath().GetString());

        const tav_hkey roots[] = {nullptr, TAV_HKEY_CURRENT_USER, TAV_HKEY_LOCAL_MACHINE, TAV_HKEY_CLASSES_ROOT};
        const tav_hkey root = roots[rng.Below(4)];
        const int cppExists = cpp.KeyExists(CString(text.c_str()), static_cast<HKEY>(root));
        Expect(tav_settings_key_exists(s.settings, text.c_str(), root) == cppExists,
               "tav_settings_key_exists differs from the C++ KeyExists, " + Num(cppExists));

        Expect(tav_registry_open(nullptr, TAV_HKEY_CURRENT_USER, path.c_str(), 1) == TAV_E_NULL_HANDLE &&
                   tav_registry_open(c.key, TAV_HKEY_CURRENT_USER, nullptr, 1) == TAV_E_NULL_ARGUMENT &&
                   tav_settings_set_key(s.settings, nullptr, 0) == TAV_E_NULL_ARGUMENT &&
                   tav_settings_set_key(nullptr, path.c_str(), 0) == TAV_E_NULL_HANDLE &&
                   tav_settings_key_exists(s.settings, nullptr, root) == TAV_E_NULL_ARGUMENT,
               "null handles and paths");
        return std::string("o") + Num(cppOpen) + " m" + Num(cppMade) + " s" + Num(cppSet) + Num(canCreate) + " k" +
               Num(cppExists);
    }
};

TEST(Fuzz, CapiKeyPaths) {
    auto driver = std::make_shared<KeyPathsDriver>();
    driver->scratch = ScratchKey(L"CapiKeys", &driver->scratchPath);
    ASSERT_TRUE(driver->scratch != nullptr);
    for (const wchar_t* subkey : {L"a", L"a\\b", L"sub\x00E9", L"Name With Blanks", L"k"}) {
        tav::UniqueKey key;
        ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(driver->scratch.get(), subkey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                                 key.put(), nullptr));
    }
    driver->registered = std::make_shared<LookupRegistrations>();
    ASSERT_TRUE(driver->registered->ok());
    const Text app = driver->registered->app(), progId = driver->registered->progId();
    RunDriver({"capi-keypaths",
               {app, progId, L"a", L"a\\b", L"", L"sub\x00E9", L"Name With Blanks\\", L"\\a", L"A\\B\\", L"k"},
               [app, progId](Rng& rng) { return KeyPathText(rng, app, progId); },
               [driver](const Input& input) {
                   Rng rng(input.choices);
                   return driver->Lookups(rng, input.text) + " " + driver->Keys(rng, input.text);
               },
               true,
               4096});
}

}  // namespace
}  // namespace fuzz
