#include "TestSupport.h"

#include "Desktop.h"
#include "platform/Handles.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cwctype>

namespace tavtest {

namespace {

std::wstring ExeBaseName() {
    std::wstring self = SelfPath();
    std::wstring name = self.substr(self.find_last_of(L'\\') + 1);
    return name.substr(0, name.size() - 4);  // without ".exe"
}

void DeleteAppDefaults(const std::wstring& exeName) {
    std::wstring key = L"Software\\Wine\\AppDefaults\\" + exeName;
    RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str());
}

bool SetAppDefault(const std::wstring& exeName, const std::wstring& subkey, const std::wstring& value,
                   const std::wstring& data) {
    std::wstring path = L"Software\\Wine\\AppDefaults\\" + exeName;
    if (!subkey.empty())
        path += L"\\" + subkey;
    tav::UniqueKey key;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr) !=
        ERROR_SUCCESS)
        return false;
    return RegSetValueExW(key.get(), value.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(data.c_str()),
                          static_cast<DWORD>((data.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

}  // namespace

std::wstring SelfPath() {
    wchar_t buffer[MAX_PATH * 4];
    DWORD n = GetModuleFileNameW(nullptr, buffer, static_cast<DWORD>(std::size(buffer)));
    return std::wstring(buffer, n);
}

std::wstring BinDir() {
    std::wstring self = SelfPath();
    return self.substr(0, self.find_last_of(L'\\'));
}

std::wstring SystemFolder() {
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
    return std::wstring(folder, length < MAX_PATH ? length : 0);
}

std::wstring ModulePath(HMODULE module) {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(module, path, MAX_PATH);
    return std::wstring(path, length);
}

std::wstring Lower(std::wstring text) {
    for (wchar_t& c : text)
        c = static_cast<wchar_t>(std::towlower(c));
    return text;
}

std::string Narrow(const std::wstring& text) {
    if (text.empty())
        return {};
    int n = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string out(n, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), out.data(), n, nullptr, nullptr);
    return out;
}

std::wstring Widen(const std::string& text) {
    if (text.empty())
        return {};
    int n = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring out(n, L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), out.data(), n);
    return out;
}

TempDir::TempDir(const std::wstring& hint, const std::wstring& parent) {
    static std::atomic<unsigned> counter{0};
    wchar_t temp[MAX_PATH] = {};
    if (parent.empty())
        GetTempPathW(MAX_PATH, temp);
    const std::wstring base = parent.empty() ? std::wstring(temp) : parent;
    for (;;) {
        std::wstring candidate =
            base + hint + L"-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(counter++);
        if (CreateDirectoryW(candidate.c_str(), nullptr)) {
            path_ = candidate;
            return;
        }
        if (GetLastError() != ERROR_ALREADY_EXISTS)
            return;
    }
}

TempDir::~TempDir() {
    if (!path_.empty())
        RemoveTree(path_);
}

bool RemoveTree(const std::wstring& path) {
    WIN32_FIND_DATAW data;
    HANDLE find = FindFirstFileW((path + L"\\*").c_str(), &data);
    if (find != INVALID_HANDLE_VALUE) {
        do {
            std::wstring name = data.cFileName;
            if (name == L"." || name == L"..")
                continue;
            std::wstring child = path + L"\\" + name;
            if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                RemoveTree(child);
            } else {
                SetFileAttributesW(child.c_str(), FILE_ATTRIBUTE_NORMAL);
                DeleteFileW(child.c_str());
            }
        } while (FindNextFileW(find, &data));
        FindClose(find);
    }
    RemoveDirectoryW(path.c_str());
    return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES;
}

bool WriteFileBytes(const std::wstring& path, const std::string& bytes) {
    tav::UniqueFile file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        return false;
    DWORD written = 0;
    return WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
}

std::string ReadFileBytes(const std::wstring& path) {
    tav::UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    std::string bytes;
    if (!file)
        return bytes;
    // Read to the end rather than to the size the file reports: files of /proc (through Z:) report 0.
    char buffer[4096];
    DWORD read = 0;
    while (ReadFile(file.get(), buffer, sizeof(buffer), &read, nullptr) && read > 0)
        bytes.append(buffer, read);
    return bytes;
}

std::string SilentWave(unsigned samples) {
    std::string bytes;
    auto put32 = [&](unsigned v) { bytes.append(reinterpret_cast<const char*>(&v), 4); };
    auto put16 = [&](unsigned short v) { bytes.append(reinterpret_cast<const char*>(&v), 2); };
    bytes += "RIFF";
    put32(36 + samples);
    bytes += "WAVEfmt ";
    put32(16);    // format block size
    put16(1);     // PCM
    put16(1);     // mono
    put32(8000);  // samples a second
    put32(8000);  // bytes a second
    put16(1);     // block alignment
    put16(8);     // bits a sample
    bytes += "data";
    put32(samples);
    bytes.append(samples, '\x80');  // the 8-bit silence level
    return bytes;
}

std::string ErrorText(DWORD error) {
    wchar_t text[256] = L"";
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text, 256, nullptr);
    std::wstring reason = text;
    while (!reason.empty() && (reason.back() == L'\n' || reason.back() == L'\r' || reason.back() == L' '))
        reason.pop_back();
    return Narrow(reason);
}

namespace {

void ReportStartFailure(const std::wstring& commandLine, DWORD error) {
    std::fprintf(stderr, "StartProcess: CreateProcessW of %s failed with error %lu: %s\n", Narrow(commandLine).c_str(),
                 error, ErrorText(error).c_str());
    std::fflush(stderr);
}

}  // namespace

bool StartProcess(const std::wstring& commandLine, bool inheritHandles, STARTUPINFOW& startup, const wchar_t* directory,
                  PROCESS_INFORMATION& created, const wchar_t* application) {
    const int kAttempts = 3;
    DWORD error = 0;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        std::vector<wchar_t> line(commandLine.begin(), commandLine.end());  // CreateProcessW may write to it
        line.push_back(L'\0');
        if (CreateProcessW(application, line.data(), nullptr, nullptr, inheritHandles ? TRUE : FALSE, 0, nullptr,
                           directory, &startup, &created))
            return true;
        error = GetLastError();
        ReportStartFailure(commandLine, error);
    }
    SetLastError(error);
    return false;
}

ChildResult RunProgram(const std::wstring& commandLine, DWORD timeoutMs, const std::wstring& directory) {
    ChildResult result;
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    HANDLE readRaw = nullptr, writeRaw = nullptr;
    if (!CreatePipe(&readRaw, &writeRaw, &inherit, 0)) {
        result.output = "the test could not make a pipe: error " + std::to_string(GetLastError());
        return result;
    }
    tav::UniqueHandle readEnd(readRaw), writeEnd(writeRaw);
    SetHandleInformation(readEnd.get(), HANDLE_FLAG_INHERIT, 0);

    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = writeEnd.get();
    startup.hStdError = writeEnd.get();
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    PROCESS_INFORMATION info{};
    if (!StartProcess(commandLine, true, startup, directory.empty() ? nullptr : directory.c_str(), info)) {
        // Said in the output, so that a failing check shows why no program ran (status stays -1).
        result.output = "the test could not start the program: error " + std::to_string(GetLastError());
        return result;
    }
    tav::UniqueHandle process(info.hProcess), thread(info.hThread);
    writeEnd.reset();  // the child holds the only write end now: its exit ends our reads

    // Read until the child closes its end; the time-out is enforced by a watchdog wait below.
    DWORD start = GetTickCount();
    char buffer[4096];
    for (;;) {
        DWORD available = 0;
        if (!PeekNamedPipe(readEnd.get(), nullptr, 0, nullptr, &available, nullptr))
            break;  // the child closed the pipe
        if (available > 0) {
            DWORD got = 0;
            if (!ReadFile(readEnd.get(), buffer, sizeof(buffer), &got, nullptr) || got == 0)
                break;
            result.output.append(buffer, got);
            continue;
        }
        if (WaitForSingleObject(process.get(), 10) == WAIT_OBJECT_0) {
            // Drain what is left, then stop.
            while (PeekNamedPipe(readEnd.get(), nullptr, 0, nullptr, &available, nullptr) && available > 0) {
                DWORD got = 0;
                if (!ReadFile(readEnd.get(), buffer, sizeof(buffer), &got, nullptr) || got == 0)
                    break;
                result.output.append(buffer, got);
            }
            break;
        }
        if (GetTickCount() - start > timeoutMs)
            break;
    }
    if (WaitForSingleObject(process.get(), 0) != WAIT_OBJECT_0) {
        DWORD remaining = GetTickCount() - start > timeoutMs ? 0 : timeoutMs - (GetTickCount() - start);
        if (WaitForSingleObject(process.get(), remaining) != WAIT_OBJECT_0) {
            TerminateProcess(process.get(), 1);
            WaitForSingleObject(process.get(), 5000);
            return result;
        }
    }
    result.finished = true;
    GetExitCodeProcess(process.get(), &result.exitCode);
    return result;
}

ChildResult RunSelfAs(const EmulatedRun& run, const std::string& filter, DWORD timeoutMs) {
    static std::atomic<unsigned> counter{0};
    std::wstring copyName = ExeBaseName() + L"-" + (run.windowsVersion.empty() ? L"native" : run.windowsVersion) +
                            L"-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(counter++) + L".exe";
    std::wstring copyPath = BinDir() + L"\\" + copyName;
    ChildResult result;
    if (!CopyFileW(SelfPath().c_str(), copyPath.c_str(), FALSE))
        return result;
    if (!run.windowsVersion.empty())
        SetAppDefault(copyName, L"", L"Version", run.windowsVersion);
    for (const std::wstring& dll : run.disabledDlls)
        SetAppDefault(copyName, L"DllOverrides", dll, L"");

    SetEnvironmentVariableW(L"TAVTEST_ARG", run.environment.empty() ? nullptr : run.environment.c_str());
    result = RunProgram(L"\"" + copyPath + L"\" --gtest_color=no --gtest_also_run_disabled_tests --gtest_filter=" +
                            Widen(filter),
                        timeoutMs);
    SetEnvironmentVariableW(L"TAVTEST_ARG", nullptr);

    DeleteAppDefaults(copyName);
    // The copy can be held a moment after its process ended.
    WaitUntil([&] { return DeleteFileW(copyPath.c_str()) != FALSE; }, 1000);
    return result;
}

PlantedResult RunSelfWithPlanted(const PlantedRun& run, const std::string& filter, DWORD timeoutMs) {
    static std::atomic<unsigned> counter{0};
    PlantedResult result;
    TempDir programDir(L"tavplant"), currentDir(L"tavplantcwd");
    std::wstring copyName = ExeBaseName() + L"-planted-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                            std::to_wstring(counter++) + L".exe";
    std::wstring copyPath = programDir / copyName;
    if (!CopyFileW(SelfPath().c_str(), copyPath.c_str(), FALSE) ||
        !CopyFileW((BinDir() + L"\\TavUtil.dll").c_str(), (programDir / L"TavUtil.dll").c_str(), FALSE)) {
        result.child.output = "the test could not copy itself and TavUtil.dll: error " + std::to_string(GetLastError());
        return result;
    }
    std::vector<std::wstring> markers;
    for (const std::wstring& file : run.planted) {
        const std::wstring name = file.substr(file.find_last_of(L'\\') + 1);
        for (const TempDir* dir : {&programDir, &currentDir}) {
            if (!CopyFileW(file.c_str(), (*dir / name).c_str(), FALSE)) {
                result.child.output = "the test could not plant " + Narrow(file);
                return result;
            }
            markers.push_back(*dir / (name + L".loaded"));
        }
    }

    SetEnvironmentVariableW(L"TAVTEST_ARG", run.environment.empty() ? nullptr : run.environment.c_str());
    result.child = RunProgram(
        L"\"" + copyPath + L"\" --gtest_color=no --gtest_also_run_disabled_tests --gtest_filter=" + Widen(filter),
        timeoutMs, currentDir.path());
    SetEnvironmentVariableW(L"TAVTEST_ARG", nullptr);

    for (const std::wstring& marker : markers)
        if (GetFileAttributesW(marker.c_str()) != INVALID_FILE_ATTRIBUTES)
            result.loadedMarkers.push_back(marker);
    // The copy and the planted DLLs can be held a moment after the process ended.
    WaitUntil([&] { return DeleteFileW(copyPath.c_str()) != FALSE; }, 1000);
    return result;
}

testing::AssertionResult ChildPassed(const ChildResult& result) {
    if (!result.finished)
        return testing::AssertionFailure() << "the child run did not end in time\n" << result.output;
    if (result.exitCode != 0)
        return testing::AssertionFailure() << "the child run ended with status " << result.exitCode << "\n"
                                           << result.output;
    const std::string passed = "[  PASSED  ] ";
    const size_t at = result.output.rfind(passed);
    if (at == std::string::npos || std::atoi(result.output.c_str() + at + passed.size()) < 1)
        return testing::AssertionFailure() << "the child run passed no test\n" << result.output;
    return testing::AssertionSuccess();
}

std::wstring ChildArgument() {
    wchar_t buffer[4096];
    DWORD n = GetEnvironmentVariableW(L"TAVTEST_ARG", buffer, static_cast<DWORD>(std::size(buffer)));
    return n && n < std::size(buffer) ? std::wstring(buffer, n) : std::wstring();
}

}  // namespace tavtest
