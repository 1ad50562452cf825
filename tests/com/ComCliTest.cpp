// tavutil com: objects created by ProgID, properties and type names printed.
#include "ComFixtures.h"

namespace comtest {
namespace {

tavtest::ChildResult Tav(const std::wstring& arguments) {
    return tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" " + arguments);
}

TEST(ComCli, NameAndProperties) {
    struct Row {
        std::wstring arguments;
        std::string output;
    } rows[] = {{L"com name VBScript.RegExp", "IRegExp2\n"},
                {L"com get VBScript.RegExp Pattern", "\n"},
                {L"com get VBScript.RegExp Global --bool", "no\n"},
                {L"com get Scripting.Dictionary Count --long", "0\n"},
                {L"com get Scripting.FileSystemObject Drives --object", "IDriveCollection\n"}};
    for (const Row& row : rows) {
        tavtest::ChildResult result = Tav(row.arguments);
        EXPECT_EQ(result.exitCode, 0u) << tavtest::Narrow(row.arguments) << ": " << result.output;
        EXPECT_EQ(result.output, row.output) << tavtest::Narrow(row.arguments);
    }
}

TEST(ComCli, UnknownProgIdAndWrongUsage) {
    tavtest::ChildResult unknown = Tav(std::wstring(L"com name ") + kUnregisteredProgId);
    EXPECT_EQ(unknown.exitCode, 1u);
    EXPECT_NE(unknown.output.find("no automation object"), std::string::npos) << unknown.output;
    EXPECT_EQ(Tav(L"com frob").exitCode, 2u);
    EXPECT_EQ(Tav(L"com get VBScript.RegExp").exitCode, 2u);
    EXPECT_EQ(Tav(L"com get VBScript.RegExp Global --bool --long").exitCode, 2u);
}

}  // namespace
}  // namespace comtest
