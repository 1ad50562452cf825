// tavutil reg: read, list and write through CRegistry, with the Windows status on failure.
#include "RawRegistry.h"
#include "TestSupport.h"

#include <TavUtil.h>

#include <gtest/gtest.h>

#include <string>

using tavtest::ScratchKey;

namespace {

tavtest::ChildResult Tav(const std::wstring& arguments) {
    return tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" " + arguments);
}

std::wstring Quoted(const std::wstring& text) { return L"\"" + text + L"\""; }

TEST(RegistryCli, WriteThenReadAString) {
    ScratchKey scratch;
    const std::wstring key = L"HKCU\\" + scratch.path();
    tavtest::ChildResult write = Tav(L"reg write " + Quoted(key) + L" Greeting \"hello there\"");
    EXPECT_EQ(write.exitCode, 0u) << write.output;
    regtest::RawValue raw = regtest::RawQuery(scratch.root(), scratch.path(), L"Greeting");
    EXPECT_EQ(raw.type, static_cast<DWORD>(REG_SZ));
    tavtest::ChildResult read = Tav(L"reg read " + Quoted(key) + L" Greeting");
    EXPECT_EQ(read.exitCode, 0u);
    EXPECT_EQ(read.output, "hello there\n");
}

TEST(RegistryCli, ReadsOtherTypesAsBytesAndFallsBackToThe32BitView) {
    ScratchKey scratch(HKEY_LOCAL_MACHINE, L"SOFTWARE");
    const DWORD number = 258;
    ASSERT_TRUE(regtest::RawSet(scratch.root(), scratch.path(), L"Count", REG_DWORD, regtest::ObjectBytes(number),
                                KEY_WOW64_32KEY));
    tavtest::ChildResult read = Tav(L"reg read " + Quoted(L"HKLM\\" + scratch.path()) + L" Count");
    EXPECT_EQ(read.exitCode, 0u) << read.output;
    EXPECT_EQ(read.output, "REG_DWORD, 4 bytes: 02 01 00 00 (258)\n");
}

TEST(RegistryCli, ListsSubkeys) {
    ScratchKey scratch;
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"One"));
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"Two"));
    tavtest::ChildResult list = Tav(L"reg list " + Quoted(L"HKEY_CURRENT_USER\\" + scratch.path()));
    EXPECT_EQ(list.exitCode, 0u);
    EXPECT_EQ(list.output, "One\nTwo\n");
}

// The status as the command line words it: the library's sentence for it (tav_result_text) and the number.
std::string StatusWords(int32_t status) {
    wchar_t sentence[512] = L"";
    EXPECT_EQ(TAV_OK, tav_result_text(TAV_RESULT_WIN32, status, sentence, 512, nullptr));
    std::wstring text = sentence;
    if (!text.empty() && text.back() == L'.')
        text.pop_back();
    return tavtest::Narrow(text) + " (Windows error " + std::to_string(status) + ")";
}

TEST(RegistryCli, MissingKeyOrValueFailsWithTheWindowsStatus) {
    ScratchKey scratch;
    const std::wstring key = L"HKCU\\" + scratch.path();
    tavtest::ChildResult missingKey = Tav(L"reg read " + Quoted(key));
    EXPECT_EQ(missingKey.exitCode, 1u);
    EXPECT_NE(missingKey.output.find("cannot open key"), std::string::npos) << missingKey.output;
    EXPECT_NE(missingKey.output.find(StatusWords(ERROR_FILE_NOT_FOUND)), std::string::npos) << missingKey.output;
    EXPECT_FALSE(tavtest::KeyExists(scratch.root(), scratch.path()));  // reading never creates

    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch.path()));
    tavtest::ChildResult missingValue = Tav(L"reg read " + Quoted(key) + L" Nothing");
    EXPECT_EQ(missingValue.exitCode, 1u);
    EXPECT_NE(missingValue.output.find("cannot read value Nothing"), std::string::npos) << missingValue.output;
    EXPECT_NE(missingValue.output.find(StatusWords(ERROR_FILE_NOT_FOUND)), std::string::npos) << missingValue.output;
}

TEST(RegistryCli, WrongUsageExitsWithTwo) {
    EXPECT_EQ(Tav(L"reg").exitCode, 2u);
    EXPECT_EQ(Tav(L"reg read").exitCode, 2u);
    EXPECT_EQ(Tav(L"reg read XYZ\\Software").exitCode, 2u);
    EXPECT_EQ(Tav(L"reg write HKCU\\Software\\x v").exitCode, 2u);
    EXPECT_EQ(Tav(L"reg frobnicate HKCU\\Software").exitCode, 2u);
}

}  // namespace
