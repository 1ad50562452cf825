// The C++ forms where the C interface cannot see the difference: out-parameters that a failure must leave alone
// (or set as the failure rules say), and the exceptions that leave the C++ interface (std::bad_alloc where memory
// was refused, allowed by the runner for every allocating call). Each out-parameter starts as "untouched".
#include "Faults.h"

#include "RegistryFixture.h"

#include <TavUtil.h>
#include "capi/TavUtilC.h"

#include <windows.h>

namespace faults {

namespace {

Operation Op(const char* area, const char* name, std::function<Answer()> run, std::vector<Answer> neutral,
             int64_t expect) {
    Operation op{area, name, std::move(run), std::move(neutral), 0, nullptr, {}, {}, false};
    op.expectStatus = expect;
    return op;
}

constexpr wchar_t kUntouched[] = L"untouched";
constexpr wchar_t kValueKey[] = L"Software\\TavUtilFaults\\Cpp";
constexpr wchar_t kAppKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\faultsapp.exe";

void SetString(HKEY root, const wchar_t* path, const wchar_t* name, const std::wstring& value) {
    HKEY key = nullptr;
    if (RegCreateKeyExW(root, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) != 0)
        return;
    RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                   static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
}

std::wstring Text(const CStdStr<wchar_t>& text) { return std::wstring(text.c_str()); }

}  // namespace

void AddCppOperations(std::vector<Operation>& out) {
    // CRegistry::ReadStringValue: 0 and the value; 1 and an empty text on any failure (as settled).
    {
        Operation op = Op(
            "registry", "read_string_value_cpp",
            [] {
                CRegistry key(HKEY_CURRENT_USER, kValueKey, true);
                CStdStr<wchar_t> value = kUntouched;
                const long status = key.ReadStringValue(L"text", value);
                return Answer{status, Text(value)};
            },
            {{1, L""}}, 0);
        op.setup = [] { SetString(HKEY_CURRENT_USER, kValueKey, L"text", L"stored"); };
        op.teardown = [] { tavtest::DeleteKeyTree(HKEY_CURRENT_USER, L"Software\\TavUtilFaults"); };
        out.push_back(op);
    }

    // FindApplicationPath: true and the registered path; false with `path` untouched where the key could not be
    // opened, false with `path` empty where its value could not be read.
    {
        Operation op = Op(
            "software", "find_application_path_cpp",
            [] {
                CStdStr<wchar_t> path = kUntouched;
                const bool found = FindApplicationPath(L"faultsapp", path, L"exe");
                return Answer{found ? 1 : 0, Text(path)};
            },
            {{0, kUntouched}, {0, L""}}, 1);
        op.setup = [] { SetString(HKEY_LOCAL_MACHINE, kAppKey, L"", L"C:\\faults\\faultsapp.exe"); };
        op.teardown = [] { RegDeleteKeyW(HKEY_LOCAL_MACHINE, kAppKey); };
        out.push_back(op);
    }

    // IsPVAppInstalled with no companion registered: 0, and `path` left alone whatever fails.
    out.push_back(Op(
        "launch", "is_pv_app_installed_cpp",
        [] {
            CStdStr<wchar_t> path = kUntouched;
            return Answer{IsPVAppInstalled(path), Text(path)};
        },
        {}, 0));

    // The sentence of a Windows status: the system's message, or the sentence naming the number where the
    // system's message could not be had.
    out.push_back(Op(
        "support", "result_text_win32",
        [] {
            wchar_t sentence[512] = {};
            size_t needed = 0;
            const int32_t status = tav_result_text(TAV_RESULT_WIN32, 5, sentence, 512, &needed);
            return Answer{status, sentence};
        },
        {}, TAV_OK));
    out.back().allow = kAnyText;
    out.back().silent = "a status whose message the system could not give is described by its number";

    // ExtractProgram: where no start of the line can be found (a look-up refused), the whole line is the program
    // and the arguments are empty; the answer stays true.
    out.push_back(Op(
        "launch", "extract_program_cpp",
        [] {
            CStdStr<wchar_t> program = kUntouched, args = kUntouched;
            const bool split = ExtractProgram(L"notepad.exe /a", program, args);
            return Answer{split ? 1 : 0, Text(program) + L"|" + Text(args)};
        },
        {{1, L"notepad.exe /a|"}}, 1));

    // A module loaded by name and a function looked up in it: null where the module could not be loaded or the
    // look-up was refused.
    out.push_back(Op(
        "os", "dyn_func_load_cpp",
        [] {
            const CDynFuncLoad version(L"version.dll");
            return Answer{version.getFunction("GetFileVersionInfoSizeW") != nullptr ? 1 : 0, L""};
        },
        {{0, L""}}, 1));

    // String resources (the program's table first, then the library's, which has none): true and the text; false
    // and an empty text where it could not be loaded, as for a number with no string.
    constexpr UINT kStringId = 301;  // faults.rc
    out.push_back(Op(
        "strings", "load_string_cpp",
        [] {
            CStdStr<wchar_t> text = kUntouched;
            const bool found = text.LoadString(kStringId);
            return Answer{found ? 1 : 0, Text(text)};
        },
        {{0, L""}}, 1));
    out.push_back(Op(
        "strings", "assign_resource_id_cpp",
        [] {
            CString text(kUntouched);
            text = MAKEINTRESOURCEW(kStringId);
            return Answer{1, std::wstring(static_cast<const wchar_t*>(text))};
        },
        {{1, L""}}, 1));
    out.push_back(Op(
        "strings", "load_string_missing_cpp",
        [] {
            CStdStr<wchar_t> text = kUntouched;
            const bool found = text.LoadString(4711);
            return Answer{found ? 1 : 0, Text(text)};
        },
        {}, 0));
}

}  // namespace faults
