// DLL planting on the launch path: ExecuteProgram asks cVistaHelper whether desktop composition exists before
// every shell launch. With a dwmapi.dll of the test's own (tests/system/planted) beside a copy of this program
// and in the folder it starts in, a launch never loads it (it would leave a marker file beside itself).
#include "launch/Execute.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

namespace {

bool Exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

}  // namespace

// Runs in the copy, with the planted dwmapi.dll beside it and in its current folder. The program does not
// exist: the shell refuses it after the composition question was asked.
TEST(PlantedDwmapiLaunchChild, DISABLED_ShellLaunch) {
    const std::wstring self = tavtest::SelfPath();
    ASSERT_TRUE(Exists(self.substr(0, self.find_last_of(L'\\')) + L"\\dwmapi.dll"));
    tavtest::TempDir empty(L"tavplantrun");
    const CStdStr<wchar_t> program = (empty / L"no-such-program.exe").c_str();
    HANDLE process = nullptr;
    EXPECT_FALSE(ExecuteProgram(program, L"", SW_HIDE, false, &process));
    EXPECT_EQ(process, nullptr);
}

TEST(PlantedDll, AShellLaunchNeverLoadsADwmapiBesideTheProgramOrInTheCurrentFolder) {
    auto result = tavtest::RunSelfWithPlanted({{tavtest::BinDir() + L"\\planted\\dwmapi.dll"}, {}},
                                              "PlantedDwmapiLaunchChild.DISABLED_ShellLaunch");
    EXPECT_TRUE(tavtest::ChildPassed(result.child));
    for (const std::wstring& marker : result.loadedMarkers)
        ADD_FAILURE() << "the planted DLL was loaded: " << tavtest::Narrow(marker);
}
