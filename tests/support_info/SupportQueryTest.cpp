// The support query: address recognition, parameters carried over from the address, the registry facts
// ("Locale", "InstallationTime") with and without fixtures, the software version of this executable's
// own version resource (product version 4.6.321.7), and the trigger's device.
#include <TavUtil.h>
#include <gtest/gtest.h>

#include "RegistryFixture.h"
#include "TestSupport.h"

#include <string>
#include <vector>

namespace {

using Str = CStdStr<wchar_t>;

const std::wstring kSoftwareVersion = L"4.06.0";  // major, zero-padded minor, and always 0
constexpr const wchar_t* kLocalePath = L"Software\\velmorax";
constexpr const wchar_t* kSetupPath = L"SOFTWARE\\Velmorax\\TrimDial\\CurrentVersion\\Setup";

std::wstring Language() { return std::to_wstring(GetUserDefaultLangID()); }

std::wstring Support(const std::wstring& path = L"/support") {
    return L"http://" + CSWandDeviceInfo::s_strVelmURL + path;
}

// A string value under HKEY_LOCAL_MACHINE (in the given view) for the length of a test, in a key created for
// it: at the end the keys the fixture created are deleted.
class RegistryValue {
public:
    RegistryValue(const std::wstring& path, const wchar_t* name, const std::wstring& text, REGSAM view = 0)
        : key_(HKEY_LOCAL_MACHINE, path, view), ok_(key_.ok() && key_.Set(name, text)) {}
    bool ok() const { return ok_; }

private:
    tavtest::RegistryFixture key_;
    bool ok_;
};

bool KeyExists(const wchar_t* path, REGSAM view = 0) { return tavtest::KeyExists(HKEY_LOCAL_MACHINE, path, view); }

// The fixtures of this file start from a registry without the suite's keys.
class SupportQuery : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(KeyExists(kLocalePath)) << "the suite's key exists before the test";
        ASSERT_FALSE(KeyExists(kLocalePath, KEY_WOW64_32KEY)) << "the suite's 32-bit key exists before the test";
    }
    void TearDown() override {
        EXPECT_FALSE(KeyExists(kLocalePath)) << "a fixture was left behind";
        EXPECT_FALSE(KeyExists(kLocalePath, KEY_WOW64_32KEY)) << "a fixture was left behind";
    }
};

std::wstring BaseQuery(const std::wstring& locale, const std::wstring& button = L"-1",
                       const std::wstring& time = L"0") {
    return L"?L=" + locale + L"&V=" + kSoftwareVersion + L"&D=K.0.0.7&P=IEEE1394&B=" + button + L"&T=" + time;
}

// ---- The base class, no registry facts ---------------------------------------------------------------

TEST_F(SupportQuery, HostNamesAreLowerCaseConfiguration) {
    struct Row {
        const Str* host;
        size_t length;
    } rows[] = {{&CSWandDeviceInfo::s_striPlumeURL1, 22},
                {&CSWandDeviceInfo::s_striPlumeURL2, 16},
                {&CSWandDeviceInfo::s_striPlumeURL3, 23},
                {&CSWandDeviceInfo::s_strVelmURL, 16}};
    for (const Row& row : rows) {
        EXPECT_EQ(row.host->size(), row.length) << tavtest::Narrow(*row.host);
        EXPECT_EQ(row.host->ToLower(), *row.host);
    }
    EXPECT_EQ(CSWandDeviceInfo::s_LOCALE, L"L=");
    EXPECT_EQ(CSWandDeviceInfo::s_BUTTON, L"B=");
}

TEST_F(SupportQuery, BaseClassQueryForEverySupportHost) {
    CSWandDeviceInfo info;
    for (const Str* host : {&CSWandDeviceInfo::s_striPlumeURL1, &CSWandDeviceInfo::s_striPlumeURL2,
                            &CSWandDeviceInfo::s_striPlumeURL3, &CSWandDeviceInfo::s_strVelmURL}) {
        EXPECT_EQ(info.search(L"https://" + *host + L"/help"), BaseQuery(Language())) << tavtest::Narrow(*host);
    }
}

TEST_F(SupportQuery, AddressTable) {
    const std::wstring upperHost = Str(CSWandDeviceInfo::s_striPlumeURL1).ToUpper();
    struct Row {
        std::wstring address;
        std::wstring expected;
    } rows[] = {
        // Not a support address: nothing to append.
        {L"http://www.example.com/support", L""},
        {L"", L""},
        {L"http://www.velmorax.org/", L""},
        // Recognised on a lower-cased copy, anywhere in the text.
        {L"HTTP://" + upperHost + L"/FAQ", BaseQuery(Language())},
        {L"http://www.example.com/?next=" + CSWandDeviceInfo::s_strVelmURL, BaseQuery(Language())},
        // A locale the address carries is kept; the key is matched case-sensitively, in the address as given.
        {Support(L"/?L=fr"), BaseQuery(L"fr")},
        {Support(L"/?L=fr&B=3"), BaseQuery(L"fr", L"3")},
        {Support(L"/?l=fr"), BaseQuery(Language())},
        {L"HTTP://" + upperHost + L"/?L=fr", BaseQuery(L"fr")},
        // "L=" is also found inside a longer name, and the first occurrence wins.
        {Support(L"/?URL=x"), BaseQuery(L"x")},
        {Support(L"/?URL=x&L=de"), BaseQuery(L"x")},
        {Support(L"/go?target=HTML=5&lang=1"), BaseQuery(L"5")},
        // A button the address carries is kept; an empty one is asked for.
        {Support(L"/?B=12&L=de&x=1"), BaseQuery(L"de", L"12")},
        {Support(L"/?L=de&B="), BaseQuery(L"de")},
        {Support(L"/?L=&B=7"), BaseQuery(Language(), L"7")},
    };
    CSWandDeviceInfo info;
    for (size_t i = 0; i < std::size(rows); ++i)
        EXPECT_EQ(info.search(rows[i].address), rows[i].expected)
            << "row " << i << ": " << tavtest::Narrow(rows[i].address);
}

TEST_F(SupportQuery, AddressIsNotPartOfTheQuery) {
    CSWandDeviceInfo info;
    const Str address = Support(L"/?L=fr");
    Str query = info.search(address);
    EXPECT_EQ(query.find(L"http"), Str::npos);
    EXPECT_EQ(query.front(), L'?');
    EXPECT_EQ(address, Support(L"/?L=fr"));
}

// ---- Registry facts ----------------------------------------------------------------------------------

TEST_F(SupportQuery, LocaleChosenByTheUserComesFromTheRegistry) {
    RegistryValue locale(kLocalePath, L"Locale", L"de");
    ASSERT_TRUE(locale.ok());
    CSWandDeviceInfo info;
    EXPECT_EQ(info.search(Support()), BaseQuery(L"de"));
    EXPECT_EQ(info.search(Support(L"/?L=fr")), BaseQuery(L"fr"));  // the address wins
}

TEST_F(SupportQuery, LocaleOfNineCharactersIsReadAndOfTenIsNot) {
    CSWandDeviceInfo info;
    {
        RegistryValue locale(kLocalePath, L"Locale", L"abcdefghi");
        ASSERT_TRUE(locale.ok());
        EXPECT_EQ(info.search(Support()), BaseQuery(L"abcdefghi"));
    }
    {
        RegistryValue locale(kLocalePath, L"Locale", L"abcdefghij");
        ASSERT_TRUE(locale.ok());
        EXPECT_EQ(info.search(Support()), BaseQuery(Language()));  // too long for the buffer
    }
}

TEST_F(SupportQuery, LocaleOnlyInThe32BitViewIsNotRead) {
    RegistryValue locale(kLocalePath, L"Locale", L"de", KEY_WOW64_32KEY);
    ASSERT_TRUE(locale.ok());
    EXPECT_EQ(CSWandDeviceInfo().search(Support()), BaseQuery(Language()));
}

TEST_F(SupportQuery, InstallationTimeAsStored) {
    RegistryValue time(kSetupPath, L"InstallationTime", L"2011-05-04 10:20");
    ASSERT_TRUE(time.ok());
    EXPECT_EQ(CSWandDeviceInfo().search(Support()), BaseQuery(Language(), L"-1", L"2011-05-04 10:20"));
}

TEST_F(SupportQuery, InstallationTimeAlsoFromThe32BitView) {
    RegistryValue time(kSetupPath, L"InstallationTime", L"1300000000", KEY_WOW64_32KEY);
    ASSERT_TRUE(time.ok());
    EXPECT_EQ(CSWandDeviceInfo().search(Support()), BaseQuery(Language(), L"-1", L"1300000000"));
}

TEST_F(SupportQuery, BothRegistryFactsTogether) {
    RegistryValue locale(kLocalePath, L"Locale", L"1031");
    RegistryValue time(kSetupPath, L"InstallationTime", L"");
    ASSERT_TRUE(locale.ok());
    ASSERT_TRUE(time.ok());
    EXPECT_EQ(CSWandDeviceInfo().search(Support(L"/?B=4")), BaseQuery(L"1031", L"4", L""));
}

// ---- Facts left out ----------------------------------------------------------------------------------

class WithoutLocale : public CSWandDeviceInfo {
    bool GetLocalEnterByUser(CStdStr<wchar_t>*) const override {
        ++asked;
        return false;
    }

public:
    mutable int asked = 0;
};

class NothingKnown : public CSWandDeviceInfo {
    bool GetLocalEnterByUser(CStdStr<wchar_t>*) const override { return false; }
    bool GetSWVersion(CStdStr<wchar_t>*) const override { return false; }
    bool GetDeviceVersion(CStdStr<wchar_t>*) const override { return false; }
    bool GetPort(CStdStr<wchar_t>*) const override { return false; }
    bool GetButtonNr(CStdStr<wchar_t>*) const override { return false; }
    bool GetInstallTime(CStdStr<wchar_t>*) const override { return false; }
};

TEST_F(SupportQuery, WithoutLocaleTheVersionFollowsTheQuestionMark) {
    WithoutLocale info;
    EXPECT_EQ(info.search(Support()), L"?V=" + kSoftwareVersion + L"&D=K.0.0.7&P=IEEE1394&B=-1&T=0");
    EXPECT_EQ(info.asked, 1);
    // A locale in the address: the user's choice is not asked for.
    EXPECT_EQ(info.search(Support(L"/?L=it")), BaseQuery(L"it"));
    EXPECT_EQ(info.asked, 1);
}

TEST_F(SupportQuery, QueryOfNothingKnownIsTheQuestionMarkAndWhatTheAddressCarries) {
    NothingKnown info;
    EXPECT_EQ(info.search(Support()), L"?");
    EXPECT_EQ(info.search(Support(L"/?B=5")), L"?B=5");
    EXPECT_EQ(info.search(Support(L"/?B=5&L=nl")), L"?L=nl&B=5");
    EXPECT_EQ(info.search(L"http://www.example.com/"), L"");
}

TEST_F(SupportQuery, ExecutableWithoutVersionResourceHasNoVersionParameter) {
    tavtest::ChildResult probe =
        tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\support_query_probe.exe\" \"" + Support() + L"\"");
    ASSERT_TRUE(probe.finished);
    EXPECT_EQ(probe.exitCode, 0u);
    EXPECT_EQ(probe.output, "[?L=" + tavtest::Narrow(Language()) + "&D=K.0.0.7&P=IEEE1394&B=-1&T=0]\r\n");
}

// ---- SWAndDeviceInfoImpl -----------------------------------------------------------------------------

class TestDevice : public ITriggerDevice {
public:
    TestDevice(int kind, unsigned int number) : kind_(kind), number_(number) {}
    int GetDeviceKind() const override { return kind_; }
    unsigned int GetDeviceNumber() const override { return number_; }

private:
    int kind_;
    unsigned int number_;
};

class TestTrigger : public ITrigger {
public:
    explicit TestTrigger(ITriggerDevice* device) : device_(device) {}
    ITriggerDevice* GetCurrentDevice() override {
        ++asked;
        return device_;
    }
    int asked = 0;

private:
    ITriggerDevice* device_;
};

std::wstring ImplQuery(const std::wstring& device, const std::wstring& locale = Language()) {
    return L"?L=" + locale + L"&V=D." + kSoftwareVersion + L"&D=" + device + L"&P=1&B=-1&T=0";
}

TEST_F(SupportQuery, ImplWithoutTriggerReportsAnUnknownDevice) {
    SWAndDeviceInfoImpl info(nullptr);
    EXPECT_EQ(info.search(Support()), ImplQuery(L"K.0_0"));
    EXPECT_EQ(info.search(L"http://www.example.com/"), L"");
}

TEST_F(SupportQuery, ImplAsksTheTriggerForTheDeviceInUse) {
    struct Row {
        int kind;
        unsigned int number;
        std::wstring expected;
    } rows[] = {{ITriggerDevice::DEVICE_KIND_MOUSE, 1234, L"M.1234"},
                {ITriggerDevice::DEVICE_KIND_KEYBOARD, 7, L"K.7"},
                {3, 4294967295u, L"4294967295"},
                {0, 0, L"0"}};
    for (const Row& row : rows) {
        TestDevice device(row.kind, row.number);
        TestTrigger trigger(&device);
        SWAndDeviceInfoImpl info(&trigger);
        EXPECT_EQ(info.search(Support()), ImplQuery(row.expected)) << row.kind;
        EXPECT_EQ(trigger.asked, 1);
    }
}

TEST_F(SupportQuery, ImplWithTriggerWithoutDevice) {
    TestTrigger trigger(nullptr);
    EXPECT_EQ(SWAndDeviceInfoImpl(&trigger).search(Support()), ImplQuery(L"K.0_0"));
}

TEST_F(SupportQuery, ImplInheritsTheRegistryFactsAndTheCarriedParameters) {
    RegistryValue locale(kLocalePath, L"Locale", L"fr");
    RegistryValue time(kSetupPath, L"InstallationTime", L"20110504");
    TestDevice device(ITriggerDevice::DEVICE_KIND_MOUSE, 1234);
    TestTrigger trigger(&device);
    SWAndDeviceInfoImpl info(&trigger);
    EXPECT_EQ(info.search(Support()), L"?L=fr&V=D." + kSoftwareVersion + L"&D=M.1234&P=1&B=-1&T=20110504");
    EXPECT_EQ(info.search(Support(L"/?B=2&L=es")), L"?L=es&V=D." + kSoftwareVersion + L"&D=M.1234&P=1&B=2&T=20110504");
}

TEST_F(SupportQuery, ImplNeitherOwnsNorReleasesTheTrigger) {
    TestDevice device(ITriggerDevice::DEVICE_KIND_KEYBOARD, 9);
    auto* trigger = new TestTrigger(&device);
    { SWAndDeviceInfoImpl info(trigger); }
    EXPECT_EQ(trigger->GetCurrentDevice(), &device);  // still alive after the info object ended
    delete trigger;
}

}  // namespace
