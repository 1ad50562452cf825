// c/launch.h: Launching: command lines, execution, the messengers.
#include "capi/c/launch.h"

#include "capi/detail/Boundary.h"
#include "launch/CommandLine.h"
#include "launch/Execute.h"
#include "launch/Messengers.h"

#include <windows.h>

using namespace tav::capi;

extern "C" {

int32_t tav_launch_extract_program(const wchar_t* command_line, wchar_t* program, size_t program_capacity,
                                   size_t* program_needed, wchar_t* args, size_t args_capacity, size_t* args_needed) {
    if (StrayText({command_line}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (command_line == nullptr || BadBuffer(program, program_capacity) || BadBuffer(args, args_capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> programText;
        CStdStr<wchar_t> argsText;
        const bool split = ExtractProgram(command_line, programText, argsText);
        return WithText(split ? 1 : 0, CopyTwo(programText, program, program_capacity, program_needed, argsText, args,
                                               args_capacity, args_needed));
    });
}

int32_t tav_launch_strip_trailing_argument(const wchar_t* line, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({line}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (line == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> text(line);
        stripTrailingArgument(text);
        return CopyText(text, buffer, capacity, needed);
    });
}

int32_t tav_launch_is_valid_file(const wchar_t* path, int32_t strip_args) {
    if (StrayText({path}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (path == nullptr)
            return TAV_E_NULL_ARGUMENT;
        return isValidFile(path, Flag(strip_args)) ? 1 : 0;
    });
}

int32_t tav_launch_command_line(const wchar_t* command_line, uint32_t show_cmd, int32_t wait, tav_handle* process) {
    if (StrayText({command_line}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (command_line == nullptr)
            return TAV_E_NULL_ARGUMENT;
        if (process != nullptr)
            *process = nullptr;
        return ExecuteProgram(command_line, show_cmd, Flag(wait), reinterpret_cast<HANDLE*>(process)) ? 1 : 0;
    });
}

int32_t tav_launch_program(const wchar_t* program, const wchar_t* parameters, uint32_t show_cmd, int32_t wait,
                           tav_handle* process) {
    if (StrayText({program, parameters}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (program == nullptr || parameters == nullptr)
            return TAV_E_NULL_ARGUMENT;
        if (process != nullptr)
            *process = nullptr;
        return ExecuteProgram(program, parameters, show_cmd, Flag(wait), reinterpret_cast<HANDLE*>(process)) ? 1 : 0;
    });
}

int32_t tav_launch_and_wait_for_init(const wchar_t* command_line, uint32_t show_cmd) {
    if (StrayText({command_line}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (command_line == nullptr)
            return TAV_E_NULL_ARGUMENT;
        return ExecProgAndWaitForInit(command_line, show_cmd) ? 1 : 0;
    });
}

int32_t tav_launch_bring_to_foreground(uint32_t process_id, tav_handle process) {
    return Guarded([&]() -> int32_t { return BringProcessToForeground(process_id, process) ? 1 : 0; });
}

int32_t tav_launch_close_handle(tav_handle handle) { return handle != nullptr && CloseHandle(handle) ? 1 : 0; }

int32_t tav_launch_messengers_available(wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        std::list<CStdStr<wchar_t>> messengers;
        GetAvailableMessengers(messengers);
        return WithText(static_cast<int32_t>(messengers.size()), CopyList(messengers, buffer, capacity, needed));
    });
}

int32_t tav_launch_messenger(const wchar_t* name) {
    if (StrayText({name}))
        return kNullArgument;
    return Guarded([&]() -> int32_t { return name ? LaunchMessenger(name) : kNullArgument; });
}

int32_t tav_launch_is_pv_app_installed(wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        return QueriedText([](CStdStr<wchar_t>& path) { return IsPVAppInstalled(path) != 0; }, buffer, capacity,
                           needed);
    });
}

}  // extern "C"
