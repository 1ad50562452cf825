// tavutil support-query: the query the base class appends, for tavutil.exe itself.
#include <TavUtil.h>
#include <gtest/gtest.h>

#include "TestSupport.h"

#include <string>

namespace {

tavtest::ChildResult Tav(const std::wstring& arguments) {
    return tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" " + arguments);
}

std::string Expected(const std::string& carried) {
    // The query of tavutil.exe: a locale, its version if it carries a version resource, the fixed device
    // facts, the button and the time.
    wchar_t path[MAX_PATH];
    std::wstring exe = tavtest::BinDir() + L"\\tavutil.exe";
    wcscpy_s(path, exe.c_str());
    CVerInfo info(path);
    CVerNum version;
    std::string versionPart;
    if (info.GetProductVersionNum(&version)) {
        char text[32];
        std::snprintf(text, sizeof text, "&V=%u.%02u.0", version.GetMajor(), version.GetMinor());
        versionPart = text;
    }
    return "?L=" + carried + versionPart + "&D=K.0.0.7&P=IEEE1394&B=3&T=0\n";
}

TEST(SupportCli, QueryForASupportAddress) {
    tavtest::ChildResult result = Tav(L"support-query \"http://" + CSWandDeviceInfo::s_strVelmURL + L"/x?L=fr&B=3\"");
    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_EQ(result.output, Expected("fr"));
}

TEST(SupportCli, NothingForOtherAddresses) {
    tavtest::ChildResult result = Tav(L"support-query http://www.example.com/");
    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_EQ(result.output, "\n");
    EXPECT_EQ(Tav(L"support-query").exitCode, 2u);
}

}  // namespace
