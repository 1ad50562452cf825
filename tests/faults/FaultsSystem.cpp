// Operations that ask the system: the running Windows, the user's groups, the processes and the launch
// look-ups that only read.
#include "Faults.h"

#include "capi/TavUtilC.h"

#include <windows.h>

namespace faults {

namespace {

Operation Op(const char* area, const char* name, std::function<Answer()> run, std::vector<Answer> neutral,
             unsigned allow = 0) {
    return Operation{area, name, std::move(run), std::move(neutral), allow, nullptr, {}, {}, false};
}

// A failed HRESULT, whichever: the accounts' failure rules name several.
constexpr int64_t kFailedHresult = 1ll << 40;

std::wstring OwnName() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring name(path, length);
    return name.substr(name.find_last_of(L'\\') + 1);
}

}  // namespace

void AddSystemOperations(std::vector<Operation>& out) {
    // os: every failure is silent; missing exports give false answers. The facts are captured once per process
    // (the first construction), so later runs reach only what is asked again at every call.
    out.push_back(Op("os", "type", [] { return Answer{tav_os_type(), L""}; }, {}));
    out.push_back(Op("os", "classification", [] { return Answer{tav_os_classification(), L""}; }, {}));
    out.push_back(Op("os", "ask_usb", [] { return Answer{tav_os_ask(TAV_OS_USB_SUPPORTED), L""}; }, {{0, L""}}));
    out.push_back(Op(
        "os", "service_pack",
        [] { return TextResult([](wchar_t* b, size_t c, size_t* n) { return tav_os_service_pack(b, c, n); }); }, {}));
    out.push_back(Op("os", "dwm_composition",
                     [] {
                         return Answer{tav_os_is_dwm_composition_enabled(), L""};
                     },
                     {{0, L""}}));

    // The capture itself: the facts are read again whenever the classification is 0, so each run starts from 0
    // (the exported static that holds it) and the first construction reads the system under the fault. A failed
    // version read leaves classification 0 and the other facts as they were; the teardown captures afresh.
    {
        auto* classification = reinterpret_cast<int*>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"TavUtil.dll"), "_ZN6OSInfo3os_E")));
        Operation op = Op("os", "capture", [] { return Answer{tav_os_type(), L""}; }, {{0, L""}});
        op.setup = [classification] {
            if (classification != nullptr)
                *classification = 0;
        };
        op.teardown = [] { tav_os_type(); };
        out.push_back(op);
    }

    // accounts: every failure is a failed HRESULT with the answer left FALSE; the yes/no forms answer 0.
    out.push_back(Op("accounts", "is_member_of",
                     [] {
                         int32_t member = 7;
                         const int32_t hr = tav_account_is_member_of(TAV_ACCOUNT_GROUP_ADMINISTRATORS, &member, 0);
                         return Answer{hr < -100 ? kFailedHresult : hr, std::to_wstring(member)};
                     },
                     {{kFailedHresult, L"0"}}));
    out.push_back(Op("accounts", "is_member_of_verbose",
                     [] {
                         int32_t member = 7;
                         const int32_t hr =
                             tav_account_is_member_of(TAV_ACCOUNT_GROUP_ADMINISTRATORS_OR_POWER_USERS, &member, 1);
                         return Answer{hr < -100 ? kFailedHresult : hr, std::to_wstring(member)};
                     },
                     {{kFailedHresult, L"0"}}));
    out.push_back(Op("accounts", "is_administrator",
                     [] {
                         return Answer{tav_account_is_administrator(), L""};
                     },
                     {{0, L""}}));
    out.push_back(Op("accounts", "is_administrator_or_power_user",
                     [] {
                         return Answer{tav_account_is_administrator_or_power_user(), L""};
                     },
                     {{0, L""}}));

    // processes: every failure yields false or an empty name.
    const std::wstring own = OwnName();
    const uint32_t pid = GetCurrentProcessId();
    out.push_back(Op(
        "processes", "name",
        [pid] { return TextResult([pid](wchar_t* b, size_t c, size_t* n) { return tav_process_name(pid, b, c, n); }); },
        {{0, L""}}));
    out.push_back(Op("processes", "full_name",
                     [pid] {
                         return TextResult(
                             [pid](wchar_t* b, size_t c, size_t* n) { return tav_process_full_name(pid, b, c, n); });
                         // A failed module snapshot falls back to the process entry's bare name, as settled.
                     },
                     {{0, L""}, {1, own}}));
    out.push_back(Op("processes", "is_running",
                     [own] {
                         return Answer{tav_process_is_running(own.c_str(), 0), L""};
                     },
                     {{0, L""}}));
    out.push_back(Op("processes", "is_running_console",
                     [own] {
                         return Answer{tav_process_is_running(own.c_str(), 1), L""};
                     },
                     {{0, L""}}));
    // The module list: a failed step ends the list with the modules read so far.
    out.push_back(Op(
        "processes", "modules",
        [pid] {
            return TextResult([pid](wchar_t* b, size_t c, size_t* n) { return tav_process_modules(pid, b, c, n); });
        },
        {{0, L""}}, kAnyText));
    out.back().silent = "a module list that fails part way holds the modules read until then";

    // launch, the parts that only look: false answers.
    wchar_t notepad[MAX_PATH];
    GetSystemDirectoryW(notepad, MAX_PATH);
    const std::wstring program = std::wstring(notepad) + L"\\notepad.exe";
    out.push_back(Op("launch", "is_valid_file",
                     [program] {
                         return Answer{tav_launch_is_valid_file(program.c_str(), 0), L""};
                     },
                     {{0, L""}}));
    out.push_back(Op("launch", "is_valid_file_args",
                     [program] {
                         return Answer{tav_launch_is_valid_file((L"\"" + program + L"\" /a").c_str(), 1), L""};
                     },
                     {{0, L""}}));
    out.push_back(Op("launch", "messengers_available",
                     [] {
                         return TextResult(
                             [](wchar_t* b, size_t c, size_t* n) { return tav_launch_messengers_available(b, c, n); });
                     },
                     {{0, L""}}));
    out.back().silent = "missing keys and unreadable values leave a messenger out: none at worst";
    out.push_back(Op("launch", "is_pv_app_installed",
                     [] {
                         return TextResult(
                             [](wchar_t* b, size_t c, size_t* n) { return tav_launch_is_pv_app_installed(b, c, n); });
                     },
                     {{0, L""}}));
}

}  // namespace faults
