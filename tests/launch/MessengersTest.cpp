// Messenger discovery and launch against registry fixtures at the real messenger keys (native and 32-bit
// view) that name copies of tavlaunchprobe.exe.
#include "launch/Messengers.h"

#include "LaunchProbe.h"
#include "RegistryFixture.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using Str = CStdStr<wchar_t>;
using List = std::list<Str>;

const wchar_t kYahooKey[] = L"SOFTWARE\\Classes\\ymsgr\\shell\\open\\command";
const wchar_t kWindowsMessengerKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msmsgs.exe";
const wchar_t kMsnKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msnmsgr.exe";
const wchar_t kCompanionKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\PVCUHost.exe";

// Messenger programs (probe copies in folders with blanks) and the registry entries naming them; all are
// removed when the test ends.
class MessengersTest : public testing::Test {
protected:
    // A probe copy at <temp>\<folder>\<file>; its full path.
    std::wstring Program(const std::wstring& folder, const std::wstring& file) {
        std::wstring dir = report_.dir() / folder;
        CreateDirectoryW(dir.c_str(), nullptr);
        std::wstring path = dir + L"\\" + file;
        EXPECT_TRUE(launchtest::CopyProbeTo(path));
        return path;
    }
    // Registers `commandLine` as the default value of HKLM\`key` in `view`.
    void Register(const wchar_t* key, const std::wstring& commandLine, REGSAM view = 0) {
        auto fixture = std::make_unique<tavtest::RegistryFixture>(HKEY_LOCAL_MACHINE, key, view);
        ASSERT_TRUE(fixture->ok()) << "the key exists already";
        ASSERT_TRUE(fixture->Set(L"", commandLine));
        fixtures_.push_back(std::move(fixture));
    }
    List Available(List list = {}) {
        GetAvailableMessengers(list);
        return list;
    }

    launchtest::ProbeReport report_;
    std::vector<std::unique_ptr<tavtest::RegistryFixture>> fixtures_;
};

TEST_F(MessengersTest, NothingRegisteredFindsNothing) { EXPECT_EQ(Available({L"X"}), List({L"X"})); }

TEST_F(MessengersTest, OnlyMsnAndYahooAreAppendedInListOrder) {
    Register(kYahooKey, L"\"" + Program(L"Yahoo Messenger", L"YahooMessenger.exe") + L"\" \"%1\"");
    Register(kMsnKey, Program(L"MSN", L"msnmsgr.exe") + L" /background");
    EXPECT_EQ(Available({L"X"}), List({L"X", L"Yahoo! Messenger", L"MSN Messenger"}));
}

TEST_F(MessengersTest, AllThreeComeYahooMsnWindows) {
    Register(kWindowsMessengerKey, Program(L"Messenger", L"msmsgs.exe"));
    Register(kMsnKey, L"\"" + Program(L"MSN Messenger", L"msnmsgr.exe") + L"\"");
    Register(kYahooKey, L"\"" + Program(L"Yahoo", L"YahooMessenger.exe") + L"\" \"%1\"");
    EXPECT_EQ(Available(), List({L"Yahoo! Messenger", L"MSN Messenger", L"Windows Messenger"}));
}

TEST_F(MessengersTest, KeysOfThe32BitViewAreFound) {
    Register(kWindowsMessengerKey, Program(L"Messenger", L"msmsgs.exe"), KEY_WOW64_32KEY);
    Register(kYahooKey, L"\"" + Program(L"Yahoo", L"YahooMessenger.exe") + L"\" \"%1\"", KEY_WOW64_32KEY);
    EXPECT_EQ(Available(), List({L"Yahoo! Messenger", L"Windows Messenger"}));
}

TEST_F(MessengersTest, RegisteredProgramThatIsMissingIsLeftOut) {
    Register(kMsnKey, report_.dir() / L"gone\\msnmsgr.exe");
    Register(kYahooKey, L"");
    EXPECT_EQ(Available(), List());
}

TEST_F(MessengersTest, UnquotedValueWithAnEarlyBlankCountsAsNotInstalled) {
    // The argument cut throws for a blank within the first four characters; the probe catches it.
    Register(kWindowsMessengerKey, L"ab c.exe");
    Register(kMsnKey, Program(L"MSN", L"msnmsgr.exe"));
    EXPECT_EQ(Available(), List({L"MSN Messenger"}));
}

TEST_F(MessengersTest, NamesAreMatchedExactly) {
    Register(kMsnKey, Program(L"MSN", L"msnmsgr.exe"));
    EXPECT_EQ(LaunchMessenger(L"msn messenger"), 0);
    EXPECT_EQ(LaunchMessenger(L"Skype"), 0);
    EXPECT_EQ(LaunchMessenger(L"AIM Triton"), 0);
    EXPECT_EQ(LaunchMessenger(L"Yahoo! Messenger"), 0);  // not registered
    EXPECT_FALSE(report_.Wait(500));                     // nothing was started
}

TEST_F(MessengersTest, LaunchStartsTheRegisteredProgram) {
    std::wstring program = Program(L"MSN Messenger", L"msnmsgr.exe");
    Register(kMsnKey, L"\"" + program + L"\" /background");
    EXPECT_EQ(LaunchMessenger(L"MSN Messenger"), 1);
    ASSERT_TRUE(report_.Wait());
    std::wstring commandLine = report_.Field("cmdline");
    EXPECT_NE(commandLine.find(program), std::wstring::npos) << tavtest::Narrow(commandLine);
    EXPECT_NE(commandLine.find(L"/background"), std::wstring::npos) << tavtest::Narrow(commandLine);
}

TEST_F(MessengersTest, LaunchUsesThe32BitViewToo) {
    Register(kYahooKey, L"\"" + Program(L"Yahoo", L"YahooMessenger.exe") + L"\" -quiet", KEY_WOW64_32KEY);
    EXPECT_EQ(LaunchMessenger(L"Yahoo! Messenger"), 1);
    ASSERT_TRUE(report_.Wait());
    EXPECT_NE(report_.Field("cmdline").find(L"-quiet"), std::wstring::npos);
}

TEST_F(MessengersTest, LaunchReportsARegisteredCommandEvenWhenTheStartFails) {
    Register(kWindowsMessengerKey, report_.dir() / L"gone\\msmsgs.exe");
    EXPECT_EQ(LaunchMessenger(L"Windows Messenger"), 1);
}

TEST_F(MessengersTest, CompanionProgram) {
    Str path = L"untouched";
    EXPECT_EQ(IsPVAppInstalled(path), 0);
    EXPECT_EQ(path, Str(L"untouched"));

    std::wstring registered = L"\"" + Program(L"PV Companion", L"PVCUHost.exe") + L"\" -tray";
    Register(kCompanionKey, registered);
    EXPECT_EQ(IsPVAppInstalled(path), 1);
    EXPECT_EQ(path, Str(registered));  // the whole command line, arguments included
}

TEST_F(MessengersTest, CompanionWithAnUnusableValueIsNotInstalled) {
    Register(kCompanionKey, L"ab c.exe");
    Str path = L"untouched";
    EXPECT_EQ(IsPVAppInstalled(path), 0);
    EXPECT_EQ(path, Str(L"untouched"));
}

TEST(MessengerNames, LibraryConstants) {
    EXPECT_STREQ(kMessengerSkype, L"Skype");
    EXPECT_STREQ(kMessengerAimTriton, L"AIM Triton");
    EXPECT_STREQ(kMessengerYahoo, L"Yahoo! Messenger");
    EXPECT_STREQ(kMessengerNone, L"");
}

}  // namespace
