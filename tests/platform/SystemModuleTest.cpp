// The loader of system DLLs: modules by name from the system folder only, the full path in the system folder
// where the loader refuses LOAD_LIBRARY_SEARCH_SYSTEM32 (Windows 7 without its loader update), and functions
// bound at run time whose failure is the operation's failure.
#include <TavUtil.h>

#include "ImportHook.h"
#include "ScopedLogStream.h"
#include "RegistryFixture.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cwctype>
#include <string>
#include <vector>

namespace {

using tavtest::Lower;
using tavtest::ModulePath;
using tavtest::SystemFolder;

// The loads TavUtil.dll asks for; with g_refuseSearchFlag, the answer of a loader that does not know
// LOAD_LIBRARY_SEARCH_SYSTEM32; with g_withoutVersionAndWinmm, that of a system without those DLLs.
struct LoadCall {
    std::wstring name;
    DWORD flags;
};
std::vector<LoadCall> g_loads;
bool g_refuseSearchFlag = false;
bool g_withoutVersionAndWinmm = false;
tavtest::ImportHook* g_loadHook = nullptr;

HMODULE WINAPI RecordLoad(LPCWSTR name, HANDLE file, DWORD flags) {
    g_loads.push_back({name != nullptr ? name : L"", flags});
    if (g_refuseSearchFlag && (flags & LOAD_LIBRARY_SEARCH_SYSTEM32) != 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const std::wstring lower = Lower(g_loads.back().name);
    if (g_withoutVersionAndWinmm && (lower == L"version.dll" || lower == L"winmm.dll")) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    return g_loadHook->original<decltype(&LoadLibraryExW)>()(name, file, flags);
}

class SystemModuleLoads : public testing::Test {
protected:
    void SetUp() override {
        hook_ = std::make_unique<tavtest::ImportHook>("kernel32.dll", "LoadLibraryExW",
                                                      reinterpret_cast<void*>(&RecordLoad));
        ASSERT_TRUE(hook_->installed());
        g_loadHook = hook_.get();
        g_loads.clear();
        g_refuseSearchFlag = false;
    }
    void TearDown() override {
        hook_.reset();
        g_loadHook = nullptr;
        g_refuseSearchFlag = false;
        g_withoutVersionAndWinmm = false;
    }
    std::unique_ptr<tavtest::ImportHook> hook_;
};

}  // namespace

TEST_F(SystemModuleLoads, ByNameFromTheSystemFolder) {
    tav::SystemModule dwmapi(L"dwmapi.dll");
    ASSERT_TRUE(dwmapi.valid());
    EXPECT_EQ(Lower(ModulePath(dwmapi.get())), Lower(SystemFolder() + L"\\dwmapi.dll"));
    ASSERT_EQ(g_loads.size(), 1u);
    EXPECT_EQ(g_loads[0].name, L"dwmapi.dll");
    EXPECT_EQ(g_loads[0].flags, static_cast<DWORD>(LOAD_LIBRARY_SEARCH_SYSTEM32));
    EXPECT_NE(dwmapi.getFunction<FARPROC>("DwmIsCompositionEnabled"), nullptr);
}

TEST_F(SystemModuleLoads, WhereTheFlagIsRefusedTheFullPathInTheSystemFolder) {
    g_refuseSearchFlag = true;
    cVistaHelper helper;
    EXPECT_TRUE(helper.IsVista());
    ASSERT_EQ(g_loads.size(), 2u);
    EXPECT_EQ(g_loads[0].name, L"dwmapi.dll");
    EXPECT_EQ(g_loads[0].flags, static_cast<DWORD>(LOAD_LIBRARY_SEARCH_SYSTEM32));
    EXPECT_EQ(Lower(g_loads[1].name), Lower(SystemFolder() + L"\\dwmapi.dll"));
    EXPECT_EQ(g_loads[1].flags, static_cast<DWORD>(LOAD_WITH_ALTERED_SEARCH_PATH));
}

TEST_F(SystemModuleLoads, AModuleTheSystemFolderLacksIsNotLookedForElsewhere) {
    SetLastError(0);
    EXPECT_EQ(tav::LoadSystemModule(L"tavutil-no-such-module.dll"), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_EQ(g_loads.size(), 1u);
}

TEST_F(SystemModuleLoads, APathIsRefused) {
    for (const wchar_t* path :
         {L"C:\\windows\\system32\\dwmapi.dll", L".\\dwmapi.dll", L"sub/dwmapi.dll", L"C:dwmapi.dll", L""}) {
        SetLastError(0);
        EXPECT_EQ(tav::LoadSystemModule(path), nullptr) << tavtest::Narrow(path);
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    }
    EXPECT_EQ(tav::LoadSystemModule(nullptr), nullptr);
    EXPECT_TRUE(g_loads.empty());
}

// TavUtil.dll imports only DLLs that Windows always takes from its system folder; the rest are bound at run
// time. Read from the import directory of the module as loaded.
TEST(SystemModuleImports, TavUtilImportsOnlyKnownSystemDlls) {
    HMODULE module = tavtest::TavUtilModule();
    ASSERT_NE(module, nullptr);
    auto* base = reinterpret_cast<BYTE*>(module);
    auto* nt = reinterpret_cast<IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const IMAGE_DATA_DIRECTORY& dir = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    ASSERT_NE(dir.VirtualAddress, 0u);
    const std::vector<std::string> known = {"kernel32.dll", "user32.dll", "gdi32.dll",    "advapi32.dll", "shell32.dll",
                                            "comdlg32.dll", "ole32.dll",  "oleaut32.dll", "msvcrt.dll"};
    int count = 0;
    for (auto* desc = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + dir.VirtualAddress); desc->Name != 0; ++desc) {
        std::string name = reinterpret_cast<const char*>(base + desc->Name);
        for (char& c : name)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        EXPECT_NE(std::find(known.begin(), known.end(), name), known.end()) << "TavUtil.dll imports " << name;
        ++count;
    }
    EXPECT_GT(count, 0);
    EXPECT_EQ(nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT].Size, 0u);
}

// Registers a sound for this program's event "Chime" and removes the program's scheme afterwards.
class ChimeScheme {
public:
    ChimeScheme() : appKey_(L"AppEvents\\Schemes\\Apps\\" + std::wstring(cWave::applicationName())) {
        const std::wstring wave = temp_ / L"chime.wav";
        tavtest::WriteFileBytes(wave, tavtest::SilentWave(800));
        tav::UniqueKey key;
        if (RegCreateKeyExW(HKEY_CURRENT_USER, (appKey_ + L"\\Chime\\.Current").c_str(), 0, nullptr, 0, KEY_WRITE,
                            nullptr, key.put(), nullptr) == ERROR_SUCCESS)
            RegSetValueExW(key.get(), nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(wave.c_str()),
                           static_cast<DWORD>((wave.size() + 1) * sizeof(wchar_t)));
    }
    ~ChimeScheme() { tavtest::DeleteKeyTree(HKEY_CURRENT_USER, appKey_); }

private:
    tavtest::TempDir temp_{L"tavbind"};
    std::wstring appKey_;
};

// Runs in a copy of this program, whose first version read and first sound are made while version.dll and
// winmm.dll cannot be loaded: they fail as a file without version data and a sound that cannot play do;
// once the DLLs can be loaded, the bindings are made at the next call.
TEST_F(SystemModuleLoads, DISABLED_UnboundFunctionsFailTheOperation) {
    const std::wstring kernel32 = SystemFolder() + L"\\kernel32.dll";  // Wine's has a version resource
    ChimeScheme scheme;
    tavtest::ScopedLogStream quiet(nullptr);
    g_withoutVersionAndWinmm = true;
    {
        CVerInfo info;
        EXPECT_EQ(info.Init(kernel32.c_str()), 0);
        CStdStr<wchar_t> field;
        EXPECT_EQ(info.GetField(VF_CompanyName, field), 0);
        EXPECT_TRUE(field.empty());
        cWave sound;
        EXPECT_FALSE(sound.play(L"Chime", cWave::PLAY_ASYNC));
    }
    g_withoutVersionAndWinmm = false;
    {
        CVerInfo info;
        EXPECT_EQ(info.Init(kernel32.c_str()), 1);
        cWave sound;
        EXPECT_TRUE(sound.play(L"Chime", cWave::PLAY_ASYNC));  // no sound device here: accepted all the same
        sound.stopPlay();
    }
}

// In a child: a test program that read a version or played a sound before has those bound for good.
TEST(SystemBinding, UnboundFunctionsFailTheOperationWithoutACrash) {
    auto result = tavtest::RunSelfAs({}, "SystemModuleLoads.DISABLED_UnboundFunctionsFailTheOperation");
    EXPECT_TRUE(tavtest::ChildPassed(result));
}
