// c/log.h: The library's log: records, levels and where they go.
#include "capi/c/log.h"

#include "capi/detail/Boundary.h"
#include "log/VelmLog.h"

#include <cstdio>

using namespace tav::capi::detail;

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

int32_t tav_log_write(int32_t level, const wchar_t* file, int32_t line, const wchar_t* function,
                      const wchar_t* message) {
    // The level is checked before a missing text, as it always was.
    return OnArgs({OptionalText(file), OptionalText(function), OptionalText(message)}, [&]() -> int32_t {
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
    return OnArgs({name}, [&]() -> int32_t { return static_cast<int32_t>(LevelLookup().FromString(name)); });
}

int32_t tav_log_set_output(int32_t output, const wchar_t* path) {
    return OnArgs({OptionalText(path)}, [&]() -> int32_t {
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
