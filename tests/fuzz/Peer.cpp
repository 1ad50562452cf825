#include "Peer.h"

#include "TestSupport.h"

#include <cstdlib>
#include <string>
#include <vector>

namespace fuzz {

std::wstring PeerProgram() { return tavtest::BinDir() + L"\\fuzz_peer.exe"; }

bool Peer::Start(const std::wstring& path, const std::wstring& argument) {
    End();
    SECURITY_ATTRIBUTES inherit = {sizeof inherit, nullptr, TRUE};
    HANDLE childInput = nullptr, childOutput = nullptr;
    if (!CreatePipe(&childInput, &input_, &inherit, 0))
        return false;
    if (!CreatePipe(&output_, &childOutput, &inherit, 0)) {
        CloseHandle(childInput);
        return false;
    }
    SetHandleInformation(input_, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(output_, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = childInput;
    startup.hStdOutput = childOutput;
    startup.hStdError = childOutput;
    std::wstring line = L"\"" + path + L"\" " + argument;
    PROCESS_INFORMATION created = {};
    const bool started = tavtest::StartProcess(line, true, startup, nullptr, created, path.c_str());
    CloseHandle(childInput);
    CloseHandle(childOutput);
    if (!started) {
        End();
        return false;
    }
    CloseHandle(created.hThread);
    process_ = created.hProcess;
    processId_ = created.dwProcessId;
    // "ready <window>\n"
    std::string ready;
    char unit = 0;
    while (ready.size() < 40 && Read(&unit, 1, 10000) && unit != '\n')
        ready += unit;
    if (ready.compare(0, 6, "ready ") != 0) {
        End();
        return false;
    }
    window_ = reinterpret_cast<HWND>(static_cast<intptr_t>(std::strtoll(ready.c_str() + 6, nullptr, 10)));
    return true;
}

void Peer::End() {
    if (input_)
        CloseHandle(input_);
    if (process_) {
        // The child ends when its input closes; one that does not is ended here.
        if (WaitForSingleObject(process_, 2000) != WAIT_OBJECT_0) {
            TerminateProcess(process_, 1);
            WaitForSingleObject(process_, 5000);
        }
        CloseHandle(process_);
    }
    if (output_)
        CloseHandle(output_);
    process_ = input_ = output_ = nullptr;
    processId_ = 0;
    window_ = nullptr;
}

bool Peer::Write(const void* data, size_t size) {
    DWORD written = 0;
    return WriteFile(input_, data, static_cast<DWORD>(size), &written, nullptr) && written == size;
}

bool Peer::Read(void* data, size_t size, DWORD timeoutMs) {
    char* at = static_cast<char*>(data);
    const ULONGLONG until = GetTickCount64() + timeoutMs;
    while (size > 0) {
        DWORD available = 0;
        if (!PeekNamedPipe(output_, nullptr, 0, nullptr, &available, nullptr))
            return false;
        if (available == 0) {
            if (GetTickCount64() > until)
                return false;
            Sleep(1);
            continue;
        }
        DWORD got = 0;
        if (!ReadFile(output_, at, static_cast<DWORD>(size < available ? size : available), &got, nullptr) || got == 0)
            return false;
        at += got;
        size -= got;
    }
    return true;
}

}  // namespace fuzz
