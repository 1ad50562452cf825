// The C interface of the foundation: string helpers, the running Windows, logging.
#include "capi/TavUtilC.h"

#include "capi/detail/Boundary.h"
#include "log/VelmLog.h"
#include "platform/CString.h"
#include "strings/StringUtils.h"
#include "system/OSInfo.h"

#include <cstdio>
#include <cwchar>

using namespace tav::capi;

namespace {

bool IsLogLevel(int32_t level) { return level >= ERROR_LEVEL && level <= DEBUG4_LEVEL; }

// The log file this interface opened, if any: closed when the output changes again. Process-wide, like the
// log stream it stands behind.
FILE*& OpenedLogFile() {
    static FILE* file = nullptr;
    return file;
}

// The object whose FromString answers tav_log_level_from_name. A logger writes its record when it is
// destroyed, even one that was never given a record, so this one never is: made once, kept for the process.
VelmLog& LevelLookup() {
    static VelmLog* const lookup = new VelmLog();
    return *lookup;
}

void ReplaceLogStream(FILE* stream) {
    FILE*& opened = OpenedLogFile();
    OutputToFILE::Stream() = stream;
    if (opened != nullptr && opened != stream)
        std::fclose(opened);
    opened = nullptr;
}

}  // namespace

extern "C" {

int32_t tav_c_interface_version(void) { return 1; }

int32_t tav_string_cut(const wchar_t* text, int32_t width, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({text}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (text == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        const auto pieces = StringCut(text, width);
        return WithText(static_cast<int32_t>(pieces.size()), CopyList(pieces, buffer, capacity, needed));
    });
}

int32_t tav_set_string_length(const wchar_t* text, int32_t length, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({text}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (text == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        // Lengths beyond the text give the text itself: capped here so that no buffer is grown for nothing.
        const int32_t textLength = static_cast<int32_t>(std::wcslen(text));
        CString s(text);
        SetStringLength(s, length < textLength ? length : textLength);
        return CopyText(std::wstring(static_cast<const wchar_t*>(s)), buffer, capacity, needed);
    });
}

int32_t tav_ensure_trailing_backslash(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({path}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (path == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> s(path);
        EnsureTrailingBackslash(s);
        return CopyText(s, buffer, capacity, needed);
    });
}

int32_t tav_strip_trailing_backslash(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({path}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (path == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> s(path);
        StripTrailingBackslash(s);
        return CopyText(s, buffer, capacity, needed);
    });
}

int32_t tav_os_type(void) {
    return Guarded([] { return static_cast<int32_t>(OSInfo().version()); });
}
uint32_t tav_os_build_number(void) {
    return static_cast<uint32_t>(Guarded([] { return static_cast<int32_t>(OSInfo().buildNumber()); }));
}
uint32_t tav_os_platform_id(void) {
    return static_cast<uint32_t>(Guarded([] { return static_cast<int32_t>(OSInfo().platformId()); }));
}
uint32_t tav_os_service_pack_major(void) {
    return static_cast<uint32_t>(Guarded([] { return static_cast<int32_t>(OSInfo().servicePackMajor()); }));
}
uint32_t tav_os_service_pack_minor(void) {
    return static_cast<uint32_t>(Guarded([] { return static_cast<int32_t>(OSInfo().servicePackMinor()); }));
}

int32_t tav_os_service_pack(wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        return CopyText(OSInfo().servicePack(), buffer, capacity, needed);
    });
}

int32_t tav_os_ask(int32_t question) {
    return Guarded([&]() -> int32_t {
        const OSInfo os;
        switch (question) {
        case TAV_OS_USE_VXD_DRIVER: return os.useVxdDriver();
        case TAV_OS_USE_SYS_DRIVER: return os.useSysDriver();
        case TAV_OS_DISTINGUISHES_LEFT_RIGHT_MODIFIERS: return os.distinguishesLeftRightModifiers();
        case TAV_OS_USB_SUPPORTED: return os.isUSBSupported();
        case TAV_OS_BLUETOOTH_SUPPORTED: return os.isBluetoothSupported();
        case TAV_OS_802_11B_SUPPORTED: return os.is802_11bSupported();
        case TAV_OS_UNDERLYING_64BIT: return os.IsUnderlying64Bit();
        default: return TAV_E_UNKNOWN_ENUM;
        }
    });
}

int32_t tav_platform_classification(void) {
    return Guarded([] { return CPlatforme().GetClassification(); });
}
int32_t tav_platform_is_win9x(void) {
    return Guarded([] { return static_cast<int32_t>(CPlatforme().IsWin9x()); });
}

int32_t tav_vista_is_vista(void) {
    return Guarded([] { return static_cast<int32_t>(cVistaHelper().IsVista()); });
}
int32_t tav_vista_is_dwm_composition_enabled(void) {
    return Guarded([] { return static_cast<int32_t>(cVistaHelper().IsDWMCompositionEnabled()); });
}

int32_t tav_log_write(int32_t level, const wchar_t* file, int32_t line, const wchar_t* function,
                      const wchar_t* message) {
    if (StrayText({file, function, message}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (!IsLogLevel(level))
            return TAV_E_UNKNOWN_ENUM;
        if (file == nullptr || function == nullptr || message == nullptr)
            return TAV_E_NULL_ARGUMENT;
        const auto logLevel = static_cast<VelmLogLevel>(level);
        if (logLevel > VelmLog::ReportingLevel())
            return 0;
        VelmLog().Get(logLevel, file, line, function) << message;
        return 1;
    });
}

int32_t tav_log_reporting_level(void) {
    return Guarded([] { return static_cast<int32_t>(VelmLog::ReportingLevel()); });
}

int32_t tav_log_set_reporting_level(int32_t level) {
    return Guarded([&]() -> int32_t {
        if (!IsLogLevel(level))
            return TAV_E_UNKNOWN_ENUM;
        VelmLog::SetReportingLevel(static_cast<VelmLogLevel>(level));
        return TAV_OK;
    });
}

int32_t tav_log_level_name(int32_t level, wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (!IsLogLevel(level))
            return TAV_E_UNKNOWN_ENUM;
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        return CopyText(VelmLog::ToString(static_cast<VelmLogLevel>(level)), buffer, capacity, needed);
    });
}

int32_t tav_log_level_from_name(const wchar_t* name) {
    if (StrayText({name}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (name == nullptr)
            return TAV_E_NULL_ARGUMENT;
        return static_cast<int32_t>(LevelLookup().FromString(name));
    });
}

int32_t tav_log_set_output(int32_t output, const wchar_t* path) {
    if (StrayText({path}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        switch (output) {
        case TAV_LOG_TO_STDERR: ReplaceLogStream(stderr); return 1;
        case TAV_LOG_TO_NONE: ReplaceLogStream(nullptr); return 1;
        case TAV_LOG_TO_FILE: {
            if (path == nullptr)
                return TAV_E_NULL_ARGUMENT;
            FILE* file = _wfopen(path, L"a");
            if (file == nullptr)
                return 0;
            ReplaceLogStream(file);
            OpenedLogFile() = file;
            return 1;
        }
        default: return TAV_E_UNKNOWN_ENUM;
        }
    });
}

int32_t tav_log_set_debugger_copy(int32_t on) {
    return Guarded([&]() -> int32_t {
        OutputToFILE::OutputDebugStrings() = Flag(on);
        return TAV_OK;
    });
}

int32_t tav_log_debugger_copy(void) {
    return Guarded([] { return static_cast<int32_t>(OutputToFILE::OutputDebugStrings()); });
}

}  // extern "C"
