// c/launch.h: Launching: command lines, execution, the messengers.
#include "capi/c/launch.h"

#include "capi/detail/Boundary.h"
#include "launch/CommandLine.h"
#include "launch/Execute.h"
#include "launch/Messengers.h"

#include <windows.h>

using namespace tav::capi::detail;

extern "C" {

int32_t tav_launch_extract_program(const wchar_t* command_line, wchar_t* program, size_t program_capacity,
                                   size_t* program_needed, wchar_t* args, size_t args_capacity, size_t* args_needed) {
    return OnArgs({command_line, Out(program, program_capacity), Out(args, args_capacity)}, [&]() -> int32_t {
        CStdStr<wchar_t> programText;
        CStdStr<wchar_t> argsText;
        const bool split = ExtractProgram(command_line, programText, argsText);
        return WithText(split ? 1 : 0, CopyTwo(programText, program, program_capacity, program_needed, argsText, args,
                                               args_capacity, args_needed));
    });
}

int32_t tav_launch_strip_trailing_argument(const wchar_t* line, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({line, Out(buffer, capacity)}, [&]() -> int32_t {
        CStdStr<wchar_t> text(line);
        stripTrailingArgument(text);
        return CopyText(text, buffer, capacity, needed);
    });
}

int32_t tav_launch_is_valid_file(const wchar_t* path, int32_t strip_args) {
    return OnArgs({path}, [&]() -> int32_t { return isValidFile(path, Flag(strip_args)) ? 1 : 0; });
}

int32_t tav_launch_command_line(const wchar_t* command_line, uint32_t show_cmd, int32_t wait, tav_handle* process) {
    return OnArgs({command_line}, [&]() -> int32_t {
        if (process != nullptr)
            *process = nullptr;
        return ExecuteProgram(command_line, show_cmd, Flag(wait), reinterpret_cast<HANDLE*>(process)) ? 1 : 0;
    });
}

int32_t tav_launch_program(const wchar_t* program, const wchar_t* parameters, uint32_t show_cmd, int32_t wait,
                           tav_handle* process) {
    return OnArgs({program, parameters}, [&]() -> int32_t {
        if (process != nullptr)
            *process = nullptr;
        return ExecuteProgram(program, parameters, show_cmd, Flag(wait), reinterpret_cast<HANDLE*>(process)) ? 1 : 0;
    });
}

int32_t tav_launch_and_wait_for_init(const wchar_t* command_line, uint32_t show_cmd) {
    return OnArgs({command_line}, [&]() -> int32_t { return ExecProgAndWaitForInit(command_line, show_cmd) ? 1 : 0; });
}

int32_t tav_launch_bring_to_foreground(uint32_t process_id, tav_handle process) {
    return Guarded([&]() -> int32_t { return BringProcessToForeground(process_id, process) ? 1 : 0; });
}

int32_t tav_launch_close_handle(tav_handle handle) { return handle != nullptr && CloseHandle(handle) ? 1 : 0; }

int32_t tav_launch_messengers_available(wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({Out(buffer, capacity)}, [&]() -> int32_t {
        std::list<CStdStr<wchar_t>> messengers;
        GetAvailableMessengers(messengers);
        return WithText(static_cast<int32_t>(messengers.size()), CopyList(messengers, buffer, capacity, needed));
    });
}

int32_t tav_launch_messenger(const wchar_t* name) {
    return OnArgs({name}, [&] { return int32_t{LaunchMessenger(name)}; });
}

int32_t tav_launch_is_pv_app_installed(wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        return QueriedText([](CStdStr<wchar_t>& path) { return IsPVAppInstalled(path) != 0; }, buffer, capacity,
                           needed);
    });
}

}  // extern "C"
