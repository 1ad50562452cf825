// tavutil.exe run as a shell would: each argument quoted as the C runtime splits it again, standard output
// and standard error captured apart, so that a test can say which stream a line went to.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace clitest {

struct CliResult {
    DWORD status = static_cast<DWORD>(-1);
    bool finished = false;  // false: it did not end within the bound and was terminated
    std::string out;        // standard output (UTF-8)
    std::string err;        // standard error (UTF-8)
};

// One argument as CommandLineToArgvW reads it back: quoted when it holds blanks, quotes or nothing.
std::wstring Quote(const std::wstring& argument);

CliResult Tavutil(const std::vector<std::wstring>& arguments, DWORD timeoutMs = 60000);

// What a failing check shows: the arguments, the status and both streams.
std::string Describe(const std::vector<std::wstring>& arguments, const CliResult& result);

}  // namespace clitest
