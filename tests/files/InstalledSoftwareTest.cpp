// Installed-software discovery against registry fixtures at the keys the suite's installer and Windows
// write (native and 32-bit view), and against Wine's own "WScript.Shell" registration.
#include "files/InstalledSoftware.h"

#include "RegistryFixture.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

using Str = CStdStr<wchar_t>;

const wchar_t kSetupKey[] = L"SOFTWARE\\Velmorax\\Trimdial\\CurrentVersion\\Setup";
const std::wstring kUninstall = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
const std::wstring kAppPaths = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\";
const std::wstring kClasses = L"SOFTWARE\\Classes\\";
const wchar_t kProductGuid[] = L"{6D1B5A2E-93C4-4F7A-B0D2-5E8F1C3A7B90}";
const wchar_t kClassId[] = L"{2F4E8C1A-7B3D-4A59-9E60-C1D2B3A4F5E6}";

class InstalledSoftwareTest : public testing::Test {
protected:
    tavtest::RegistryFixture& Key(HKEY root, const std::wstring& path, REGSAM view = 0) {
        fixtures_.push_back(std::make_unique<tavtest::RegistryFixture>(root, path, view));
        EXPECT_TRUE(fixtures_.back()->ok()) << "the key exists already";
        return *fixtures_.back();
    }
    void Setup(REGSAM view = 0) {
        EXPECT_TRUE(Key(HKEY_LOCAL_MACHINE, kSetupKey, view).Set(L"ProductGUID", kProductGuid));
    }
    void Uninstall(const wchar_t* date, REGSAM view = 0) {
        EXPECT_TRUE(Key(HKEY_LOCAL_MACHINE, kUninstall + kProductGuid, view).Set(L"InstallDate", date));
    }

    std::vector<std::unique_ptr<tavtest::RegistryFixture>> fixtures_;
};

TEST_F(InstalledSoftwareTest, InstallDateComesFromTheUninstallEntryOfTheProduct) {
    Setup();
    Uninstall(L"20240131");
    EXPECT_EQ(TrimdialInstallDate(), Str(L"20240131"));
}

TEST_F(InstalledSoftwareTest, InstallDateIsReturnedAsStored) {
    Setup();
    Uninstall(L"31.01.2024 ");
    EXPECT_EQ(TrimdialInstallDate(), Str(L"31.01.2024 "));
}

TEST_F(InstalledSoftwareTest, InstallDateIsFoundInThe32BitView) {
    Setup(KEY_WOW64_32KEY);
    Uninstall(L"20230705", KEY_WOW64_32KEY);
    EXPECT_EQ(TrimdialInstallDate(), Str(L"20230705"));
}

TEST_F(InstalledSoftwareTest, InstallDateIsEmptyWithoutTheSetupKey) {
    Uninstall(L"20240131");
    EXPECT_EQ(TrimdialInstallDate(), Str(L""));
}

TEST_F(InstalledSoftwareTest, InstallDateIsEmptyWithoutTheProductGuid) {
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kSetupKey).SetDword(L"ProductGUID", 7));
    Uninstall(L"20240131");
    EXPECT_EQ(TrimdialInstallDate(), Str(L""));
}

TEST_F(InstalledSoftwareTest, InstallDateIsEmptyWithoutTheUninstallEntry) {
    Setup();
    EXPECT_EQ(TrimdialInstallDate(), Str(L""));
}

TEST_F(InstalledSoftwareTest, InstallDateIsEmptyWhenTheEntryHasNoDate) {
    Setup();
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kUninstall + kProductGuid).Set(L"DisplayName", L"Trimdial"));
    EXPECT_EQ(TrimdialInstallDate(), Str(L""));
}

TEST_F(InstalledSoftwareTest, ApplicationPathOfAppAndExtension) {
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kAppPaths + L"msnmsgr.exe").Set(L"", L"C:\\Program Files\\MSN\\msnmsgr.exe"));
    Str path;
    EXPECT_TRUE(FindApplicationPath(L"msnmsgr", path, L"exe"));
    EXPECT_EQ(path, Str(L"C:\\Program Files\\MSN\\msnmsgr.exe"));
    // The dot is always inserted: an app that carries its extension is not found with one more.
    path = L"untouched";
    EXPECT_FALSE(FindApplicationPath(L"msnmsgr.exe", path, L"exe"));
    EXPECT_EQ(path, Str(L"untouched"));
}

TEST_F(InstalledSoftwareTest, ApplicationPathIsReturnedAsStoredAndFoundInThe32BitView) {
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kAppPaths + L"tavtestapp.exe", KEY_WOW64_32KEY)
                    .Set(L"", L"\"C:\\Tav Test\\tavtestapp.exe\""));
    Str path;
    EXPECT_TRUE(FindApplicationPath(L"tavtestapp", path, L"exe"));
    EXPECT_EQ(path, Str(L"\"C:\\Tav Test\\tavtestapp.exe\""));
}

TEST_F(InstalledSoftwareTest, ApplicationPathWithoutDefaultValueIsFalseAndEmpty) {
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kAppPaths + L"tavtestapp.exe").Set(L"Path", L"C:\\Tav"));
    Str path = L"old";
    EXPECT_FALSE(FindApplicationPath(L"tavtestapp", path, L"exe"));
    EXPECT_EQ(path, Str(L""));
}

TEST_F(InstalledSoftwareTest, ApplicationPathOfAMissingRegistrationIsFalse) {
    Str path = L"untouched";
    EXPECT_FALSE(FindApplicationPath(L"tavtest-missing", path, L"exe"));
    EXPECT_EQ(path, Str(L"untouched"));
}

TEST_F(InstalledSoftwareTest, ProgIdResolvesThroughCurVerToTheLocalServer) {
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kClasses + L"TavTest.Launch\\CurVer").Set(L"", L"TavTest.Launch.2"));
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kClasses + L"TavTest.Launch.2\\CLSID").Set(L"", kClassId));
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kClasses + L"CLSID\\" + kClassId + L"\\LocalServer32")
                    .Set(L"", L"\"C:\\Tav Test\\server.exe\" /Automation"));
    Str path;
    EXPECT_TRUE(FindMostRecentProgIdPath(L"TavTest.Launch", path));
    EXPECT_EQ(path, Str(L"\"C:\\Tav Test\\server.exe\" /Automation"));
    // The versioned ProgID itself has no CurVer: it is not resolved.
    EXPECT_FALSE(FindMostRecentProgIdPath(L"TavTest.Launch.2", path));
}

TEST_F(InstalledSoftwareTest, ProgIdWhoseCurrentVersionHasNoClsidIsFalse) {
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kClasses + L"TavTest.Launch\\CurVer").Set(L"", L"TavTest.Launch.3"));
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kClasses + L"TavTest.Launch.3").Set(L"", L"no class"));
    Str path;
    EXPECT_FALSE(FindMostRecentProgIdPath(L"TavTest.Launch", path));
}

TEST_F(InstalledSoftwareTest, ProgIdWhoseClassHasNoLocalServerIsFalse) {
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kClasses + L"TavTest.Launch\\CurVer").Set(L"", L"TavTest.Launch.2"));
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kClasses + L"TavTest.Launch.2\\CLSID").Set(L"", kClassId));
    ASSERT_TRUE(Key(HKEY_LOCAL_MACHINE, kClasses + L"CLSID\\" + kClassId + L"\\InprocServer32").Set(L"", L"x.dll"));
    Str path;
    EXPECT_FALSE(FindMostRecentProgIdPath(L"TavTest.Launch", path));
}

TEST(InstalledSoftware, WineScriptingShellHasCurVerButNoLocalServer) {
    Str path;
    EXPECT_FALSE(FindMostRecentProgIdPath(L"WScript.Shell", path));
    EXPECT_FALSE(FindMostRecentProgIdPath(L"TavTest.NoSuchProgId", path));
}

}  // namespace
