// DLL planting: a dwmapi.dll of the test's own (tests/system/planted) lies beside a copy of this program and
// in the folder it starts in. cVistaHelper loads dwmapi.dll from the system folder only: the planted copy is
// never loaded (it would leave a marker file beside itself), and the answers are the system DLL's.
//
// Wine 8, as measured here (with the session's WINEDLLOVERRIDES="mscoree,mshtml=" and no setting for dwmapi):
// - a plain LoadLibraryW("dwmapi.dll") loads a native copy beside the program in preference to Wine's own
//   dwmapi.dll, as Windows does, so no load-order setting is needed (PlainLoadTakesThePlantedCopy keeps
//   showing it); the old plain load in cVistaHelper took the copy and answered "composition on" where the
//   system says off;
// - a copy in the current folder alone is not taken by a plain load: the system folder comes first, as in
//   Windows' safe search order;
// - LoadLibraryExW with LOAD_LIBRARY_SEARCH_SYSTEM32 is honoured: it loads C:\windows\system32\dwmapi.dll
//   and leaves both copies alone.
#include <TavUtil.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <string>

namespace {

using tavtest::Lower;
using tavtest::SystemFolder;

std::wstring FolderOf(const std::wstring& path) { return path.substr(0, path.find_last_of(L'\\')); }

std::wstring CurrentFolder() {
    wchar_t folder[MAX_PATH];
    DWORD length = GetCurrentDirectoryW(MAX_PATH, folder);
    std::wstring text(folder, length);
    if (!text.empty() && text.back() == L'\\')
        text.pop_back();
    return text;
}

bool Exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// The file of the module `name` loaded in this process; empty when none is.
std::wstring LoadedPath(const wchar_t* name) {
    HMODULE module = GetModuleHandleW(name);
    if (module == nullptr)
        return {};
    wchar_t path[MAX_PATH];
    DWORD length = GetModuleFileNameW(module, path, MAX_PATH);
    return std::wstring(path, length);
}

// What the system's dwmapi.dll, loaded by its full path, answers; and what cVistaHelper makes of it (a Home
// Basic edition reports no composition).
bool SystemCompositionAnswer() {
    HMODULE dwmapi = LoadLibraryExW((SystemFolder() + L"\\dwmapi.dll").c_str(), nullptr, 0);
    if (dwmapi == nullptr)
        return false;
    using Fn = HRESULT(WINAPI*)(BOOL*);
    auto ask = reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(dwmapi, "DwmIsCompositionEnabled")));
    BOOL enabled = FALSE;
    if (ask != nullptr)
        ask(&enabled);
    FreeLibrary(dwmapi);
    OSVERSIONINFOEXW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&version));
    DWORD product = 0;
    const bool homeBasic = GetProductInfo(version.dwMajorVersion, version.dwMinorVersion, version.wServicePackMajor,
                                          version.wServicePackMinor, &product) &&
                           product == 2;
    return enabled && !homeBasic;
}

const tavtest::PlantedRun kPlantedDwmapi = {{tavtest::BinDir() + L"\\planted\\dwmapi.dll"}, {}};

}  // namespace

// Runs in the copy, with the planted dwmapi.dll beside it and in its current folder.
TEST(PlantedDwmapiChild, DISABLED_VistaHelperUsesTheSystemDll) {
    ASSERT_TRUE(Exists(FolderOf(tavtest::SelfPath()) + L"\\dwmapi.dll"));
    ASSERT_TRUE(Exists(CurrentFolder() + L"\\dwmapi.dll"));
    ASSERT_TRUE(LoadedPath(L"dwmapi.dll").empty()) << "dwmapi.dll was loaded before the library asked for it";

    bool vista = false, composition = false;
    {
        cVistaHelper helper;
        vista = helper.IsVista();
        EXPECT_EQ(Lower(LoadedPath(L"dwmapi.dll")), Lower(SystemFolder() + L"\\dwmapi.dll"));
        composition = helper.IsDWMCompositionEnabled();
    }
    // Through the C interface, and again after the first helper freed the module.
    const int32_t cVista = tav_os_is_vista();
    const int32_t cComposition = tav_os_is_dwm_composition_enabled();

    EXPECT_TRUE(vista);
    EXPECT_EQ(cVista, 1);
    const bool expected = SystemCompositionAnswer();
    EXPECT_EQ(composition, expected);
    EXPECT_EQ(cComposition, expected ? 1 : 0);
}

// Runs in the copy: the planting works, a plain load by name takes the copy beside the program.
TEST(PlantedDwmapiChild, DISABLED_PlainLoadTakesThePlantedCopy) {
    HMODULE module = LoadLibraryW(L"dwmapi.dll");
    ASSERT_NE(module, nullptr);
    wchar_t path[MAX_PATH];
    DWORD length = GetModuleFileNameW(module, path, MAX_PATH);
    EXPECT_EQ(Lower(std::wstring(path, length)), Lower(FolderOf(tavtest::SelfPath()) + L"\\dwmapi.dll"));
    FreeLibrary(module);
}

TEST(PlantedDll, DwmapiBesideTheProgramOrInTheCurrentFolderIsNeverLoaded) {
    auto result =
        tavtest::RunSelfWithPlanted(kPlantedDwmapi, "PlantedDwmapiChild.DISABLED_VistaHelperUsesTheSystemDll");
    EXPECT_TRUE(tavtest::ChildPassed(result.child));
    for (const std::wstring& marker : result.loadedMarkers)
        ADD_FAILURE() << "the planted DLL was loaded: " << tavtest::Narrow(marker);
}

// The control: without it, a run where Wine never loads a planted DLL at all would pass the test above.
TEST(PlantedDll, APlainLoadByNameWouldTakeThePlantedCopy) {
    auto result =
        tavtest::RunSelfWithPlanted(kPlantedDwmapi, "PlantedDwmapiChild.DISABLED_PlainLoadTakesThePlantedCopy");
    EXPECT_TRUE(tavtest::ChildPassed(result.child));
    ASSERT_EQ(result.loadedMarkers.size(), 1u);
    EXPECT_EQ(result.loadedMarkers[0].find(L"tavplantcwd"), std::wstring::npos) << "not the copy beside the program";
}
