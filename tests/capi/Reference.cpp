// The C++ interface's answers for the C test (see Reference.h).
#include "Reference.h"

#include "com/ComUtils.h"
#include "desktop/Wave.h"
#include "desktop/WindowsHelper.h"
#include "files/FileName.h"
#include "files/InstalledSoftware.h"
#include "files/VerInfo.h"
#include "files/VerNum.h"
#include "keys/KeyState.h"
#include "keys/KeyStages.h"
#include "keys/ScriptCheck.h"
#include "keys/SendKeys.h"
#include "launch/CommandLine.h"
#include "launch/Messengers.h"
#include "process/ProcessFinder.h"
#include "security/VxWindowsPermissionsUtils.h"
#include "strings/StringUtils.h"
#include "support/SWandDeviceInfo.h"
#include "system/OSInfo.h"

#include <string>
#include <vector>

namespace {

CStdStr<wchar_t> Text(const CFileName& name) { return CStdStr<wchar_t>(name.c_str()); }

std::wstring Joined(const std::list<CStdStr<wchar_t>>& items, size_t* units) {
    std::wstring joined;
    for (const auto& item : items) {
        joined += item;
        joined += L'\0';
    }
    if (items.empty())
        joined += L'\0';
    *units = joined.size() + 1;  // the list's last NUL is the string's own terminator
    return joined;
}

class FixedDevice : public ITrigger, public ITriggerDevice {
public:
    explicit FixedDevice(const ref_trigger_device& device) : m_device(device) {}
    ITriggerDevice* GetCurrentDevice() override { return m_device.has_device ? this : nullptr; }
    int GetDeviceKind() const override { return m_device.kind; }
    unsigned int GetDeviceNumber() const override { return m_device.number; }

private:
    ref_trigger_device m_device;
};

}  // namespace

extern "C" {

int ref_os_type(void) { return OSInfo().version(); }
unsigned ref_os_build_number(void) { return OSInfo().buildNumber(); }
unsigned ref_os_platform_id(void) { return OSInfo().platformId(); }
unsigned ref_os_service_pack_major(void) { return OSInfo().servicePackMajor(); }
unsigned ref_os_service_pack_minor(void) { return OSInfo().servicePackMinor(); }
const wchar_t* ref_os_service_pack(void) {
    static CStdStr<wchar_t> text;
    text = OSInfo().servicePack();
    return text.c_str();
}
int ref_os_ask(int question) {
    const OSInfo os;
    const bool answers[] = {os.useVxdDriver(),     os.useSysDriver(),         os.distinguishesLeftRightModifiers(),
                            os.isUSBSupported(),   os.isBluetoothSupported(), os.is802_11bSupported(),
                            os.IsUnderlying64Bit()};
    return answers[question];
}
int ref_platform_classification(void) { return CPlatforme().GetClassification(); }
int ref_platform_is_win9x(void) { return CPlatforme().IsWin9x(); }
int ref_vista_is_vista(void) { return cVistaHelper().IsVista(); }
int ref_vista_is_dwm_composition_enabled(void) { return cVistaHelper().IsDWMCompositionEnabled(); }

const wchar_t* ref_string_cut(const wchar_t* text, int width, size_t* units, int* pieces) {
    static std::wstring joined;
    const auto cut = StringCut(text, width);
    *pieces = static_cast<int>(cut.size());
    joined = Joined(cut, units);
    return joined.c_str();
}

int ref_keys_parse(const wchar_t* script, const uint16_t** entries, size_t* count) {
    static std::vector<uint16_t> copy;
    const int result = tav::keys::ParseKeyScript(script);
    const auto& queue = tav::keys::TheKeyQueue();
    copy.assign(static_cast<size_t>(queue.Count()), 0);
    for (int i = 0; i < queue.Count(); ++i)
        copy[static_cast<size_t>(i)] = queue.At(i);
    *entries = copy.data();
    *count = copy.size();
    return result;
}

int ref_keys_run_result(const wchar_t* script) { return tav::keys::CarryOutKeyScript(script).result; }

int ref_keys_check(const wchar_t* script, int32_t* offset, const wchar_t** message) {
    static std::wstring text;
    const tav::keys::ScriptCheck check = tav::keys::CheckKeyScript(script);
    text = check.message;
    *offset = static_cast<int32_t>(check.offset);
    *message = text.c_str();
    return check.result;
}

void* ref_focus_window(void* window) { return cWindowsHelper::GetFocusWindow(static_cast<HWND>(window)); }

void* ref_child_by_class(void* parent, const wchar_t* class_name) {
    return cWindowsHelper().GetChildWindow(static_cast<HWND>(parent), class_name);
}

const wchar_t* ref_handle_to_text(void* window) {
    static CStdStr<wchar_t> text;
    text = cWindowsHelper::HandleToString(static_cast<HWND>(window));
    return text.c_str();
}

const wchar_t* ref_sound_application_name(void) {
    static CStdStr<wchar_t> text;
    text = cWave::applicationName();
    return text.c_str();
}

int ref_extract_program(const wchar_t* line, const wchar_t** program, const wchar_t** args) {
    static CStdStr<wchar_t> programText;
    static CStdStr<wchar_t> argsText;
    programText.clear();
    argsText.clear();
    const bool split = ExtractProgram(line, programText, argsText);
    *program = programText.c_str();
    *args = argsText.c_str();
    return split;
}

const wchar_t* ref_strip_trailing_argument(const wchar_t* line) {
    static CStdStr<wchar_t> text;
    text = line;
    stripTrailingArgument(text);
    return text.c_str();
}

const wchar_t* ref_messengers(size_t* units, int* count) {
    static std::wstring joined;
    std::list<CStdStr<wchar_t>> messengers;
    GetAvailableMessengers(messengers);
    *count = static_cast<int>(messengers.size());
    joined = Joined(messengers, units);
    return joined.c_str();
}

int ref_is_pv_app_installed(const wchar_t** path) {
    static CStdStr<wchar_t> text;
    text.clear();
    const int found = IsPVAppInstalled(text);
    *path = text.c_str();
    return found;
}

const wchar_t* ref_foreground_name(intptr_t window) {
    static CStdStr<wchar_t> text;
    text = CProcessFinder::Instance(false)->GetForegroundProcessName(window);
    return text.c_str();
}

const wchar_t* ref_foreground_full_name(intptr_t window) {
    static CStdStr<wchar_t> text;
    text = CProcessFinder::Instance(false)->GetForegroundProcessFullName(window);
    return text.c_str();
}

int ref_process_is_running(const wchar_t* name, int console_only) {
    return CProcessFinder::Instance(false)->IsProcessRunning(name, console_only != 0);
}

const wchar_t* ref_process_modules(unsigned pid, size_t* units, int* found) {
    static std::wstring joined;
    std::list<CStdStr<wchar_t>> modules;
    *found = CProcessFinder::Instance(false)->GetProcessModules(pid, modules);
    joined = Joined(modules, units);
    return joined.c_str();
}

const wchar_t* ref_path_compose(const wchar_t* path, const wchar_t* file, const wchar_t* ext) {
    static CStdStr<wchar_t> text;
    text = Text(CFileName(path, file, ext));
    return text.c_str();
}

const wchar_t* ref_path_beside_exe(const wchar_t* file, const wchar_t* ext) {
    static CStdStr<wchar_t> text;
    text = Text(CFileName(CFileName::ExeInstance, file, ext));
    return text.c_str();
}

const wchar_t* ref_path_exe_dir(void) {
    static CStdStr<wchar_t> text;
    text = Text(CFileName());
    return text.c_str();
}

int ref_version_compare(const wchar_t* a, const wchar_t* b) { return CVerNum(a).Compare(CVerNum(b)); }

int ref_verinfo_field(const wchar_t* file, int field, const wchar_t** text) {
    static CStdStr<wchar_t> value;
    CVerInfo info(file);
    const int found = info.GetField(static_cast<VERFIELD>(field), value);
    *text = value.c_str();
    return found;
}

const wchar_t* ref_verinfo_field_name(int field) {
    static CStdStr<wchar_t> name;
    CVerInfo::GetFieldName(static_cast<VERFIELD>(field), name);
    return name.c_str();
}

const wchar_t* ref_install_date(void) {
    static CStdStr<wchar_t> text;
    text = TrimdialInstallDate();
    return text.c_str();
}

int ref_find_application_path(const wchar_t* app, const wchar_t* ext, const wchar_t** path) {
    static CStdStr<wchar_t> text;
    text.clear();
    const bool found = FindApplicationPath(app, text, ext);
    *path = text.c_str();
    return found;
}

int ref_find_progid_server(const wchar_t* prog_id, const wchar_t** path) {
    static CStdStr<wchar_t> text;
    text.clear();
    const bool found = FindMostRecentProgIdPath(prog_id, text);
    *path = text.c_str();
    return found;
}

long ref_try_get_active_object_result(const void* clsid) {
    IUnknown* object = nullptr;
    const long result = ComUtils::TryToGetActiveObject(*static_cast<const GUID*>(clsid), nullptr, &object);
    if (object != nullptr)
        object->Release();
    return result;
}

const wchar_t* ref_object_name(void* dispatch) {
    static CStdStr<wchar_t> text;
    text = ComUtils::GetObjName(CComQIPtr<IDispatch>(static_cast<IUnknown*>(dispatch)));
    return text.c_str();
}

long ref_is_member_of(int group, int* is_member) {
    return VxWindowsPermissionsUtils().IsMemberOf(static_cast<VxWindowsPermissionsUtils::enumQueryGroup>(group),
                                                  is_member, 0);
}
int ref_is_administrator(void) { return VxWindowsPermissionsUtils::IsAdministrator(); }
int ref_is_administrator_or_power_user(void) { return VxWindowsPermissionsUtils::IsAdministratorOrPowerUser(); }

const wchar_t* ref_support_query(const wchar_t* address) {
    static CStdStr<wchar_t> text;
    text = CSWandDeviceInfo().search(address);
    return text.c_str();
}

const wchar_t* ref_support_query_with_trigger(const wchar_t* address, const ref_trigger_device* device) {
    static CStdStr<wchar_t> text;
    if (device == nullptr) {
        text = SWAndDeviceInfoImpl(nullptr).search(address);
    } else {
        FixedDevice trigger(*device);
        text = SWAndDeviceInfoImpl(&trigger).search(address);
    }
    return text.c_str();
}

}  // extern "C"
