// One version everywhere: the project's version (TAVUTIL_EXPECTED_VERSION, from the top CMakeLists.txt) is the
// version of the macros in TavUtil/TavUtilVersion.h, of tav_version() in the loaded DLL, of the DLL's version
// resource, of `tavutil --version` and of the CMake package's version file.
#include "TestSupport.h"

#include <TavUtil/TavUtilVersion.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdint>
#include <cwchar>
#include <string>
#include <vector>

// The C interface's version call; the C header does not declare it yet (see util/capi/Version.cpp).
extern "C" int32_t tav_version(void);

namespace {

struct Version {
    int major = -1;
    int minor = -1;
    int patch = -1;
    int Number() const { return major * 10000 + minor * 100 + patch; }
};

Version Expected() {
    Version v;
    EXPECT_EQ(std::swscanf(TAVUTIL_EXPECTED_VERSION, L"%d.%d.%d", &v.major, &v.minor, &v.patch), 3);
    return v;
}

std::wstring DllPath() { return tavtest::BinDir() + L"\\TavUtil.dll"; }

TEST(Version, MacrosAreTheProjectVersion) {
    Version expected = Expected();
    EXPECT_EQ(TAVUTIL_VERSION_MAJOR, expected.major);
    EXPECT_EQ(TAVUTIL_VERSION_MINOR, expected.minor);
    EXPECT_EQ(TAVUTIL_VERSION_PATCH, expected.patch);
    EXPECT_EQ(TAVUTIL_VERSION, expected.Number());
    EXPECT_EQ(tavtest::Widen(TAVUTIL_VERSION_STRING), TAVUTIL_EXPECTED_VERSION);
}

TEST(Version, LoadedDllAnswersTheHeadersVersion) {
    EXPECT_EQ(tav_version(), TAVUTIL_VERSION);
    // Found by its plain name, as a host binding it at run time (C#, Python) finds it.
    HMODULE module = GetModuleHandleW(L"TavUtil.dll");
    ASSERT_NE(module, nullptr);
    auto call = reinterpret_cast<int32_t (*)(void)>(reinterpret_cast<void*>(GetProcAddress(module, "tav_version")));
    ASSERT_NE(call, nullptr);
    EXPECT_EQ(call(), Expected().Number());
}

TEST(Version, DllVersionResourceIsTheProjectVersion) {
    DWORD handle = 0;
    DWORD size = GetFileVersionInfoSizeW(DllPath().c_str(), &handle);
    ASSERT_GT(size, 0u);
    std::vector<BYTE> block(size);
    ASSERT_TRUE(GetFileVersionInfoW(DllPath().c_str(), 0, size, block.data()));
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
    Version expected = Expected();
    for (DWORD ms : {fixed->dwFileVersionMS, fixed->dwProductVersionMS}) {
        EXPECT_EQ(static_cast<int>(HIWORD(ms)), expected.major);
        EXPECT_EQ(static_cast<int>(LOWORD(ms)), expected.minor);
    }
    EXPECT_EQ(static_cast<int>(HIWORD(fixed->dwFileVersionLS)), expected.patch);
    EXPECT_EQ(static_cast<int>(HIWORD(fixed->dwProductVersionLS)), expected.patch);
    for (const wchar_t* name : {L"FileVersion", L"ProductVersion"}) {
        void* value = nullptr;
        std::wstring path = std::wstring(L"\\StringFileInfo\\040904b0\\") + name;
        ASSERT_TRUE(VerQueryValueW(block.data(), path.c_str(), &value, &length)) << tavtest::Narrow(name);
        EXPECT_EQ(std::wstring(static_cast<const wchar_t*>(value)), TAVUTIL_EXPECTED_VERSION) << tavtest::Narrow(name);
    }
}

TEST(Version, CommandLineToolPrintsTheProjectVersion) {
    tavtest::ChildResult run = tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" --version");
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.exitCode, 0u);
    std::string output = run.output;
    while (!output.empty() && (output.back() == '\n' || output.back() == '\r'))
        output.pop_back();
    EXPECT_EQ(tavtest::Widen(output), std::wstring(L"tavutil ") + TAVUTIL_EXPECTED_VERSION);
}

// The CMake package's version file, written by the build beside the build folder's bin folder and installed
// as it is: its one literal PACKAGE_VERSION is the project's version.
TEST(Version, CMakePackageVersionIsTheProjectVersion) {
    std::string file = tavtest::ReadFileBytes(tavtest::BinDir() + L"\\..\\TavUtilConfigVersion.cmake");
    ASSERT_FALSE(file.empty());
    const std::string assignment = "set(PACKAGE_VERSION \"";
    std::vector<std::string> literals;
    for (size_t at = file.find(assignment); at != std::string::npos; at = file.find(assignment, at + 1)) {
        size_t begin = at + assignment.size();
        if (begin < file.size() && file[begin] >= '0' && file[begin] <= '9')
            literals.push_back(file.substr(begin, file.find('"', begin) - begin));
    }
    EXPECT_EQ(literals, std::vector<std::string>{tavtest::Narrow(TAVUTIL_EXPECTED_VERSION)});
}

}  // namespace
