#include "CliRun.h"

#include "TestSupport.h"

#include <TavUtil/TavUtil.h>

#include <fstream>
#include <iterator>

namespace clitest {

namespace {

std::string ReadAll(const std::wstring& path) {
    std::ifstream file(path.c_str(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

tav::UniqueFile InheritableFile(const std::wstring& path) {
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    return tav::UniqueFile(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit, CREATE_ALWAYS,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
}

}  // namespace

std::wstring Quote(const std::wstring& argument) {
    if (!argument.empty() && argument.find_first_of(L" \t\"") == std::wstring::npos)
        return argument;
    std::wstring quoted = L"\"";
    size_t backslashes = 0;
    for (wchar_t c : argument) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        // Backslashes before a quote are doubled, and the quote escaped.
        quoted.append(c == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
        backslashes = 0;
        quoted += c;
    }
    quoted.append(backslashes * 2, L'\\');  // before the closing quote
    return quoted + L"\"";
}

CliResult Tavutil(const std::vector<std::wstring>& arguments, DWORD timeoutMs) {
    CliResult result;
    tavtest::TempDir streams(L"tavcli");
    const std::wstring outPath = streams / L"out.txt", errPath = streams / L"err.txt";
    {
        tav::UniqueFile out = InheritableFile(outPath), err = InheritableFile(errPath);
        if (!out || !err) {
            result.err = "the test could not make its stream files: error " + std::to_string(GetLastError());
            return result;
        }
        std::wstring line = Quote(tavtest::BinDir() + L"\\tavutil.exe");
        for (const std::wstring& argument : arguments)
            line += L" " + Quote(argument);
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = out.get();
        startup.hStdError = err.get();
        startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
        PROCESS_INFORMATION info{};
        if (!tavtest::StartProcess(line, true, startup, nullptr, info)) {
            result.err = "the test could not start tavutil.exe: error " + std::to_string(GetLastError());
            return result;
        }
        tav::UniqueHandle process(info.hProcess), thread(info.hThread);
        result.finished = WaitForSingleObject(process.get(), timeoutMs) == WAIT_OBJECT_0;
        if (!result.finished) {
            TerminateProcess(process.get(), 99);
            WaitForSingleObject(process.get(), timeoutMs);
        }
        GetExitCodeProcess(process.get(), &result.status);
    }
    result.out = ReadAll(outPath);
    result.err = ReadAll(errPath);
    return result;
}

std::string Describe(const std::vector<std::wstring>& arguments, const CliResult& result) {
    std::string text = "tavutil";
    for (const std::wstring& argument : arguments)
        text += " " + tavtest::Narrow(Quote(argument));
    return text + "\nstatus " + std::to_string(result.status) + (result.finished ? "" : " (did not end)") +
           "\n--- out:\n" + result.out + "--- err:\n" + result.err;
}

}  // namespace clitest
