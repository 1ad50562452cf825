// How the test session starts Windows programs. Wine here has no preloader, so the loader's heap lands
// wherever the kernel randomises it (anywhere in the 1 GiB above the loader at 0x7d000000); when it covers
// 0x7ffe0000, where the shared user data page must go, the new process ends before it runs. The session
// (cmake/wine-session.sh) starts Wine without address randomisation, which every child inherits: these
// checks read this process's own Unix side through Wine's Z: drive.
#include <TestSupport.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <sstream>
#include <string>

namespace {

constexpr unsigned long kAddrNoRandomize = 0x0040000;  // Linux personality flag
constexpr unsigned long long kLoaderBase = 0x7d000000;
constexpr unsigned long long kSharedUserData = 0x7ffe0000;

// The /proc folder of this process's Unix side. Not /proc/self: Wine's server opens files for its clients,
// so "self" would be the server. The Unix side of a program started by path is named by that path (as its
// starter wrote it: relative or not), and holds the Wine prefix of its session in its environment.
std::wstring OwnProcFolder() {
    wchar_t module[MAX_PATH], prefix[MAX_PATH];
    const std::wstring path(module, GetModuleFileNameW(nullptr, module, MAX_PATH));
    const std::string name = "/" + tavtest::Narrow(path.substr(path.find_last_of(L'\\') + 1));
    const DWORD prefixLength = GetEnvironmentVariableW(L"WINEPREFIX", prefix, MAX_PATH);
    const std::string environment = "WINEPREFIX=" + tavtest::Narrow(std::wstring(prefix, prefixLength));

    std::wstring found;
    WIN32_FIND_DATAW entry;
    HANDLE search = FindFirstFileW(L"Z:\\proc\\*", &entry);
    if (search == INVALID_HANDLE_VALUE)
        return {};
    do {
        if (entry.cFileName[0] < L'0' || entry.cFileName[0] > L'9')
            continue;
        const std::wstring folder = std::wstring(L"Z:\\proc\\") + entry.cFileName;
        const std::string first = tavtest::ReadFileBytes(folder + L"\\cmdline").c_str();  // its first word
        const std::string block =
            std::string(1, '\0') + tavtest::ReadFileBytes(folder + L"\\environ");  // NUL before each
        const bool named =
            first.size() >= name.size() && first.compare(first.size() - name.size(), name.size(), name) == 0;
        if (named && block.find(std::string(1, '\0') + environment + '\0') != std::string::npos)
            found = folder;
    } while (found.empty() && FindNextFileW(search, &entry));
    FindClose(search);
    return found;
}

TEST(WineStart, ProgramsRunWithoutAddressRandomisation) {
    const std::wstring folder = OwnProcFolder();
    ASSERT_FALSE(folder.empty()) << "this program's Unix process was not found in Z:\\proc";
    const std::string personality = tavtest::ReadFileBytes(folder + L"\\personality");
    const unsigned long flags = std::strtoul(personality.c_str(), nullptr, 16);
    EXPECT_NE(0u, flags & kAddrNoRandomize) << tavtest::Narrow(folder) << ": personality " << personality;
}

TEST(WineStart, TheLoadersHeapFollowsTheLoader) {
    const std::wstring folder = OwnProcFolder();
    ASSERT_FALSE(folder.empty()) << "this program's Unix process was not found in Z:\\proc";
    const std::string maps = tavtest::ReadFileBytes(folder + L"\\maps");
    std::istringstream lines(maps);
    std::string line;
    bool found = false;
    while (std::getline(lines, line)) {
        if (line.find("[heap]") == std::string::npos)
            continue;
        found = true;
        const unsigned long long start = std::strtoull(line.c_str(), nullptr, 16);
        const unsigned long long end = std::strtoull(line.c_str() + line.find('-') + 1, nullptr, 16);
        // Right after the loader's few pages, not up to 1 GiB away; and clear of the shared user data page.
        EXPECT_LT(start, kLoaderBase + 0x100000) << line;
        EXPECT_TRUE(end <= kSharedUserData || start > kSharedUserData) << line;
    }
    EXPECT_TRUE(found) << maps;
}

}  // namespace
