#include <TavUtil.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>

namespace {

// What a process sees of OSInfo, CPlatforme and cVistaHelper, as "key=value;" pairs.
std::wstring Observe() {
    OSInfo os;
    CPlatforme platform;
    cVistaHelper vista;
    std::wostringstream out;
    out << L"os=" << os.version() << L";platform=" << os.platformId() << L";vxd=" << os.useVxdDriver() << L";sys="
        << os.useSysDriver() << L";lr=" << os.distinguishesLeftRightModifiers() << L";usb=" << os.isUSBSupported()
        << L";bt=" << os.isBluetoothSupported() << L";wifi=" << os.is802_11bSupported() << L";x64="
        << os.IsUnderlying64Bit() << L";cplat=" << platform.GetClassification() << L";9x=" << platform.IsWin9x()
        << L";vista=" << vista.IsVista() << L";dwm=" << vista.IsDWMCompositionEnabled();
    return out.str();
}

std::map<std::wstring, std::wstring> Parse(const std::wstring& text) {
    std::map<std::wstring, std::wstring> values;
    std::wistringstream in(text);
    std::wstring pair;
    while (std::getline(in, pair, L';')) {
        size_t eq = pair.find(L'=');
        if (eq != std::wstring::npos)
            values[pair.substr(0, eq)] = pair.substr(eq + 1);
    }
    return values;
}

// Runs in a copy of this executable under an emulated Windows version: every expected pair passed by the
// parent must match what the library answers there.
TEST(OSInfoChild, DISABLED_MatchesExpectation) {
    auto expected = Parse(tavtest::ChildArgument());
    auto actual = Parse(Observe());
    ASSERT_FALSE(expected.empty());
    for (const auto& [key, value] : expected)
        EXPECT_EQ(actual[key], value) << tavtest::Narrow(key);
}

struct EmulatedCase {
    const wchar_t* version;
    const wchar_t* expected;
};

// Expected answers per emulated system. Wine's win98 reports the text " A " (with a trailing blank), which
// is not " A": a plain Windows 98. Version 5.2 is not in the classification: 0, with useSysDriver true and
// USB false.
const EmulatedCase kCases[] = {
    {L"win95", L"os=1;platform=1;vxd=1;sys=0;lr=0;usb=0;bt=0;wifi=0;x64=1;cplat=0;9x=1"},
    {L"win98", L"os=3;platform=1;vxd=1;sys=0;lr=0;usb=1;bt=0;wifi=0;x64=1;cplat=1;9x=1"},
    {L"winme", L"os=5;platform=1;vxd=1;sys=0;lr=0;usb=1;bt=0;wifi=0;x64=1;cplat=2;9x=1"},
    {L"nt40", L"os=7;platform=2;vxd=0;sys=1;lr=1;usb=0;bt=0;wifi=0;x64=1;cplat=4;9x=0"},
    {L"win2k", L"os=8;platform=2;vxd=0;sys=1;lr=1;usb=1;bt=0;wifi=0;x64=1;cplat=5;9x=0"},
    {L"winxp", L"os=9;platform=2;vxd=0;sys=1;lr=1;usb=1;bt=0;wifi=1;x64=1;cplat=6;9x=0"},
    {L"winxp64", L"os=0;platform=2;vxd=0;sys=1;lr=1;usb=0;bt=0;wifi=0;x64=1;cplat=7;9x=0"},
    {L"vista", L"os=10;platform=2;vxd=0;sys=1;lr=1;usb=1;bt=0;wifi=1;x64=1;cplat=7;9x=0"},
    {L"win7", L"os=11;platform=2;vxd=0;sys=1;lr=1;usb=1;bt=0;wifi=0;x64=1;cplat=7;9x=0"},
};

class EmulatedWindows : public testing::TestWithParam<EmulatedCase> {};

TEST_P(EmulatedWindows, ClassifiesAsExpected) {
    const EmulatedCase& c = GetParam();
    auto result = tavtest::RunSelfAs({c.version, {}, c.expected}, "OSInfoChild.DISABLED_MatchesExpectation");
    EXPECT_TRUE(tavtest::ChildPassed(result));
}

INSTANTIATE_TEST_SUITE_P(AllVersions, EmulatedWindows, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<EmulatedCase>& info) {
                             return tavtest::Narrow(info.param.version);
                         });

TEST(OSInfoEmulated, WithoutDwmapiNoVistaAndNoComposition) {
    auto result =
        tavtest::RunSelfAs({L"win7", {L"dwmapi"}, L"os=11;vista=0;dwm=0"}, "OSInfoChild.DISABLED_MatchesExpectation");
    EXPECT_TRUE(tavtest::ChildPassed(result));
}

TEST(OSInfoEmulated, WithDwmapiIsVista) {
    auto result = tavtest::RunSelfAs({L"win7", {}, L"os=11;vista=1"}, "OSInfoChild.DISABLED_MatchesExpectation");
    EXPECT_TRUE(tavtest::ChildPassed(result));
}

// The parent's own run is the default Wine system: Windows 7 SP1.
TEST(OSInfo, NativeRunIsWindows7WithServicePack) {
    OSInfo os;
    EXPECT_EQ(os.version(), OSInfo::OS_WIN7);
    EXPECT_EQ(os.platformId(), 2u);
    EXPECT_EQ(os.buildNumber(), 7601u);
    EXPECT_EQ(os.servicePack(), L"Service Pack 1");
    EXPECT_EQ(os.servicePackMajor(), 1);
    EXPECT_EQ(os.servicePackMinor(), 0);
}

// Records the system cannot be made to report (the service-pack texts " A" and " C", NT 3.51) are fed to
// the capture directly.
class CapturingOSInfo : public OSInfo {
public:
    static void Capture(DWORD major, DWORD minor, DWORD platform, const wchar_t* text, DWORD build = 0) {
        OSVERSIONINFOW info{};
        info.dwOSVersionInfoSize = sizeof(info);
        info.dwMajorVersion = major;
        info.dwMinorVersion = minor;
        info.dwPlatformId = platform;
        info.dwBuildNumber = build;
        wcscpy(info.szCSDVersion, text);
        captureFrom(info, nullptr);
    }
    static void Restore() {
        OSVERSIONINFOEXW ex{};
        ex.dwOSVersionInfoSize = sizeof(ex);
        GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&ex));
        captureFrom(*reinterpret_cast<OSVERSIONINFOW*>(&ex), &ex);
    }
};

class OSInfoCapture : public testing::Test {
protected:
    void TearDown() override { CapturingOSInfo::Restore(); }
};

TEST_F(OSInfoCapture, Windows98WithTextAIsTheRevisedValueWithoutUsb) {
    CapturingOSInfo::Capture(4, 10, 1, L" A");
    OSInfo os;
    EXPECT_EQ(os.version(), OSInfo::OS_WIN9X_REVISED);
    EXPECT_FALSE(os.isUSBSupported());
    CapturingOSInfo::Capture(4, 10, 1, L"");
    EXPECT_EQ(os.version(), OSInfo::OS_WIN98);
    EXPECT_TRUE(os.isUSBSupported());
}

TEST_F(OSInfoCapture, Windows95TextsAreExact) {
    CapturingOSInfo::Capture(4, 0, 1, L" C");
    EXPECT_EQ(OSInfo().version(), OSInfo::OS_WIN9X_REVISED);
    CapturingOSInfo::Capture(4, 0, 1, L"C");  // no leading blank: not the revised one
    EXPECT_EQ(OSInfo().version(), OSInfo::OS_WIN95);
    CapturingOSInfo::Capture(4, 0, 1, L" B");
    EXPECT_EQ(OSInfo().version(), OSInfo::OS_WIN95);
}

TEST_F(OSInfoCapture, BuildNumberOf9xFamilyKeepsTheLowWord) {
    CapturingOSInfo::Capture(4, 10, 1, L"", 0x040A08AE);
    EXPECT_EQ(OSInfo().buildNumber(), 0x08AEu);
    CapturingOSInfo::Capture(5, 1, 2, L"", 0x00010A28);
    EXPECT_EQ(OSInfo().buildNumber(), 0x00010A28u);
}

TEST_F(OSInfoCapture, UnknownPairsKeepThePreviousClassification) {
    CapturingOSInfo::Capture(3, 51, 2, L"");
    EXPECT_EQ(OSInfo().version(), OSInfo::OS_WINNT351);
    CapturingOSInfo::Capture(3, 50, 2, L"");  // another NT 3 minor: unchanged
    EXPECT_EQ(OSInfo().version(), OSInfo::OS_WINNT351);
    CapturingOSInfo::Capture(10, 0, 2, L"");
    EXPECT_EQ(OSInfo().version(), OSInfo::OS_WINNT351);
    // The reserved value 4 is never produced.
    for (DWORD major : {3u, 4u, 5u, 6u})
        for (DWORD minor : {0u, 1u, 10u, 51u, 90u})
            for (DWORD platform : {1u, 2u}) {
                CapturingOSInfo::Capture(major, minor, platform, L"");
                EXPECT_NE(static_cast<int>(OSInfo().version()), 4);
            }
}

TEST_F(OSInfoCapture, WirelessAnswersXpAndVistaOnly) {
    const struct {
        DWORD major, minor;
        bool wifi;
    } rows[] = {{5, 0, false}, {5, 1, true}, {6, 0, true}, {6, 1, false}};
    for (const auto& row : rows) {
        CapturingOSInfo::Capture(row.major, row.minor, 2, L"");
        EXPECT_EQ(OSInfo().is802_11bSupported(), row.wifi) << row.major << "." << row.minor;
    }
}

TEST(OSInfo, CopiesShareTheStatics) {
    OSInfo a;
    OSInfo b(a);
    OSInfo c;
    c = a;
    EXPECT_EQ(b.version(), a.version());
    EXPECT_EQ(c.servicePack(), a.servicePack());
    EXPECT_EQ(sizeof(OSInfo), sizeof(void*));  // nothing but the class identity
}

TEST(CPlatforme, CopiesRecordFlagAndClassification) {
    CPlatforme a;
    a.Init();
    CPlatforme b(a);
    EXPECT_EQ(b.GetClassification(), a.GetClassification());
    EXPECT_EQ(b.IsWin9x(), a.IsWin9x());
    EXPECT_EQ(b.GetVersionInfo().dwOSVersionInfoSize, 276u);
    EXPECT_EQ(b.GetVersionInfo().dwMajorVersion, 6u);
}

TEST(CDynFuncLoad, LooksUpExportsOfALoadedModule) {
    CDynFuncLoad kernel(L"kernel32.dll");
    ASSERT_NE(kernel.getInstanceHandle(), nullptr);
    EXPECT_EQ(kernel.getFunction("GetTickCount"), GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetTickCount"));
    EXPECT_EQ(kernel.getFunction("NoSuchExport"), nullptr);
    using TickFn = DWORD(WINAPI*)();
    auto tick = kernel.getFunction<TickFn>("GetTickCount");
    ASSERT_NE(tick, nullptr);
    EXPECT_GT(tick(), 0u);
}

TEST(CDynFuncLoad, MissingModuleGivesNullEverywhere) {
    CDynFuncLoad missing(L"no-such-module-4711.dll");
    EXPECT_EQ(missing.getInstanceHandle(), nullptr);
    EXPECT_EQ(missing.getFunction("GetTickCount"), nullptr);
}

TEST(CDynFuncLoad, FreesItsModuleOnDestruction) {
    ASSERT_EQ(GetModuleHandleW(L"msimg32.dll"), nullptr) << "msimg32 must not be loaded before this test";
    {
        CDynFuncLoad module(L"msimg32.dll");
        ASSERT_NE(module.getInstanceHandle(), nullptr);
        EXPECT_NE(GetModuleHandleW(L"msimg32.dll"), nullptr);
    }
    EXPECT_EQ(GetModuleHandleW(L"msimg32.dll"), nullptr);
}

// A helper whose ShutDown and Initialize can be called from a test.
class TestVistaHelper : public cVistaHelper {
public:
    using cVistaHelper::Initialize;
    using cVistaHelper::IsVistaHomeBasic;
    using cVistaHelper::ShutDown;
    FARPROC compositionFunction() const { return m_pfnDwmIsCompositionEnabled; }
};

TEST(cVistaHelper, ShutDownAndInitializeReloadTheModule) {
    TestVistaHelper helper;
    EXPECT_TRUE(helper.IsVista());
    helper.IsDWMCompositionEnabled();
    EXPECT_NE(helper.compositionFunction(), nullptr);  // remembered after the look-up
    helper.ShutDown();
    EXPECT_FALSE(helper.IsVista());
    EXPECT_FALSE(helper.IsDWMCompositionEnabled());
    helper.Initialize();
    EXPECT_EQ(helper.compositionFunction(), nullptr);  // cleared by Initialize
    EXPECT_TRUE(helper.IsVista());
    // Wine's Windows 7 is not a Home Basic edition.
    EXPECT_FALSE(helper.IsVistaHomeBasic());
}

}  // namespace
