// CRegistryClass against Wine's real registry: key management, each value encoding byte for byte, the string
// limits, flushing, fonts and handles. Each test works in a scratch subtree of its own.
#include "ImportHook.h"
#include "RawRegistry.h"
#include "TestSupport.h"
#include "ScopeExit.h"

#include <TavUtil.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

using regtest::Bytes;
using tavtest::ScratchKey;

namespace {

// A settings object whose current key is a fresh scratch key of its own.
class RegistryClassTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(reg.CreateKey(scratch.path().c_str()), 1); }
    regtest::RawValue Raw(const wchar_t* name) { return regtest::RawQuery(scratch.root(), scratch.path(), name); }
    bool Set(const wchar_t* name, DWORD type, const Bytes& data) {
        return regtest::RawSet(scratch.root(), scratch.path(), name, type, data);
    }

    ScratchKey scratch;
    CRegistryClass reg;
};

LOGFONTW SampleLogFont() {
    LOGFONTW lf = {};
    lf.lfHeight = -17;
    lf.lfWeight = FW_BOLD;
    lf.lfItalic = TRUE;
    lf.lfCharSet = DEFAULT_CHARSET;
    wcscpy(lf.lfFaceName, L"Tahoma");
    return lf;
}

// Calls every typed write once (11 writes) with small sample values; `font` must hold a font.
const int kTypedWrites = 11;
void WriteEveryType(CRegistryClass& reg, CFont& font) {
    CRect rect(1, 2, 3, 4);
    CPoint point(1, 2);
    CSize size(3, 4);
    reg.WriteString(L"s", L"text");
    reg.WriteDword(L"d", 1);
    reg.WriteInt(L"i", 1);
    reg.WriteBool(L"b", 1);
    reg.WriteColor(L"c", 1);
    reg.WriteFloat(L"f", 1.0);
    reg.WriteDateTime(L"t", COleDateTime());
    reg.WriteRect(L"r", &rect);
    reg.WritePoint(L"p", &point);
    reg.WriteSize(L"z", &size);
    reg.WriteFont(L"n", &font);
}

// Key management ---------------------------------------------------------------------------------------------

TEST(RegistryClass, FreshObjectHasTheDefaults) {
    CRegistryClass reg;
    EXPECT_EQ(reg.GetRootKey(), HKEY_CURRENT_USER);
    EXPECT_EQ(reg.GetLazyWrite(), 1);
    EXPECT_EQ(reg.PathIsValid(), 0);
    EXPECT_TRUE(reg.GetCurrentPath().IsEmpty());
    EXPECT_EQ(reg.GetLastStatus(), 0);
}

TEST(RegistryClass, FreshObjectWritesIntoTheRootKeyItself) {
    const std::wstring name = L"TavUtilTest-" + std::to_wstring(GetCurrentProcessId()) + L"-root";
    tavtest::ScopeExit cleanup([&] { RegDeleteValueW(HKEY_CURRENT_USER, name.c_str()); });
    CRegistryClass reg;
    EXPECT_EQ(reg.WriteInt(name.c_str(), 7), 1);
    regtest::RawValue raw = regtest::RawQuery(HKEY_CURRENT_USER, L"", name.c_str());
    EXPECT_EQ(raw.status, ERROR_SUCCESS);
    EXPECT_EQ(raw.type, static_cast<DWORD>(REG_BINARY));
    EXPECT_EQ(reg.ReadInt(name.c_str(), 0), 7);
}

TEST(RegistryClass, SetRootKeyAcceptsOnlyTheFourRoots) {
    CRegistryClass reg;
    for (HKEY root : {HKEY_CLASSES_ROOT, HKEY_LOCAL_MACHINE, HKEY_USERS, HKEY_CURRENT_USER}) {
        EXPECT_EQ(reg.SetRootKey(root), 1);
        EXPECT_EQ(reg.GetRootKey(), root);
    }
    EXPECT_EQ(reg.SetRootKey(HKEY_LOCAL_MACHINE), 1);
    EXPECT_EQ(reg.SetRootKey(HKEY_CURRENT_CONFIG), 0);
    EXPECT_EQ(reg.GetRootKey(), HKEY_LOCAL_MACHINE);
    EXPECT_EQ(reg.SetRootKey(HKEY_PERFORMANCE_DATA), 0);
    EXPECT_EQ(reg.SetRootKey(nullptr), 0);
    EXPECT_EQ(reg.GetRootKey(), HKEY_LOCAL_MACHINE);
}

TEST(RegistryClass, CreateKeyCreatesAndSelects) {
    ScratchKey scratch;
    CRegistryClass reg;
    EXPECT_EQ(reg.CreateKey((scratch / L"Deep\\Er").c_str()), 1);
    EXPECT_TRUE(tavtest::KeyExists(scratch.root(), scratch / L"Deep\\Er"));
    EXPECT_EQ(reg.GetCurrentPath(), (scratch / L"Deep\\Er").c_str());
    EXPECT_EQ(reg.PathIsValid(), 1);
}

TEST(RegistryClass, SetKeySelectsCreatesOrRefuses) {
    ScratchKey scratch;
    CRegistryClass reg;
    const std::wstring missing = scratch / L"Missing";
    EXPECT_EQ(reg.SetKey(missing.c_str(), 0), 0);
    EXPECT_EQ(reg.GetLastStatus(), ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(reg.GetCurrentPath().IsEmpty());
    EXPECT_FALSE(tavtest::KeyExists(scratch.root(), missing));

    EXPECT_EQ(reg.SetKey(missing.c_str(), 1), 1);  // creates
    EXPECT_TRUE(tavtest::KeyExists(scratch.root(), missing));
    EXPECT_EQ(reg.GetCurrentPath(), missing.c_str());

    EXPECT_EQ(reg.SetKey(scratch.path().c_str(), 0), 1);  // exists now
    EXPECT_EQ(reg.GetLastStatus(), ERROR_SUCCESS);
    EXPECT_EQ(reg.GetCurrentPath(), scratch.path().c_str());

    EXPECT_EQ(reg.SetKey(L"", 0), 1);
    EXPECT_EQ(reg.PathIsValid(), 0);
}

TEST(RegistryClass, ClearKeyRestoresTheDefaults) {
    ScratchKey scratch;
    CRegistryClass reg;
    reg.SetRootKey(HKEY_LOCAL_MACHINE);
    reg.SetLazyWrite(0);
    reg.SetKey(L"SOFTWARE", 0);
    EXPECT_EQ(reg.ClearKey(), 1);
    EXPECT_EQ(reg.GetRootKey(), HKEY_CURRENT_USER);
    EXPECT_EQ(reg.GetLazyWrite(), 1);
    EXPECT_EQ(reg.PathIsValid(), 0);
}

TEST(RegistryClass, CopiesCarryAllFourFields) {
    ScratchKey scratch(HKEY_LOCAL_MACHINE, L"SOFTWARE");
    CRegistryClass reg;
    reg.SetRootKey(HKEY_LOCAL_MACHINE);
    reg.SetLazyWrite(0);
    reg.SetKey(scratch.path().c_str(), 0);  // missing: last status 2
    reg.SetKey(L"SOFTWARE", 0);             // found, but SetKey of an existing key sets last status 0 ...
    reg.GetDataType(L"no such value");      // ... so end with a failed query: 2
    CRegistryClass copy(reg);
    CRegistryClass assigned;
    assigned = reg;
    for (CRegistryClass* c : {&copy, &assigned}) {
        EXPECT_EQ(c->GetRootKey(), HKEY_LOCAL_MACHINE);
        EXPECT_EQ(c->GetLazyWrite(), 0);
        EXPECT_EQ(c->GetCurrentPath(), L"SOFTWARE");
        EXPECT_EQ(c->GetLastStatus(), ERROR_FILE_NOT_FOUND);
    }
}

TEST_F(RegistryClassTest, KeyExistsUnderTheObjectRootOrAGivenOne) {
    EXPECT_EQ(reg.KeyExists(scratch.path().c_str()), 1);
    EXPECT_EQ(reg.KeyExists((scratch / L"Missing").c_str()), 0);
    EXPECT_EQ(reg.KeyExists(scratch.path().c_str(), HKEY_LOCAL_MACHINE), 0);
    EXPECT_EQ(reg.KeyExists(L"SOFTWARE\\Microsoft", HKEY_LOCAL_MACHINE), 1);
}

TEST_F(RegistryClassTest, DeleteKeyRemovesALeafAndReportsSuccessForAMissingKey) {
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"Leaf"));
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"Branch\\Child"));
    EXPECT_EQ(reg.DeleteKey((scratch / L"Leaf").c_str()), 1);
    EXPECT_FALSE(tavtest::KeyExists(scratch.root(), scratch / L"Leaf"));
    EXPECT_EQ(reg.DeleteKey((scratch / L"Missing").c_str()), 1);
    EXPECT_EQ(reg.DeleteKey((scratch / L"Branch").c_str()), 0);  // has a subkey
    EXPECT_TRUE(tavtest::KeyExists(scratch.root(), scratch / L"Branch\\Child"));
}

TEST_F(RegistryClassTest, ValueQueriesAndDeletion) {
    ASSERT_EQ(reg.WriteString(L"Text", L"abc"), 1);
    EXPECT_EQ(reg.ValueExists(L"Text"), 1);
    EXPECT_EQ(reg.ValueExists(L"Missing"), 0);
    EXPECT_EQ(reg.GetDataSize(L"Text"), 8);
    EXPECT_EQ(reg.GetDataSize(L"Missing"), -1);
    EXPECT_EQ(reg.DeleteValue(L"Text"), 1);
    EXPECT_EQ(reg.ValueExists(L"Text"), 0);
    EXPECT_EQ(reg.DeleteValue(L"Text"), 0);
}

TEST_F(RegistryClassTest, GetDataTypeTellsIntFromDwordAndKeepsTheStatus) {
    ASSERT_EQ(reg.WriteInt(L"Int", 5), 1);
    ASSERT_EQ(reg.WriteDword(L"Dword", 5), 1);
    EXPECT_EQ(reg.GetDataType(L"Int"), static_cast<unsigned long>(REG_BINARY));
    EXPECT_EQ(reg.GetLastStatus(), ERROR_SUCCESS);
    EXPECT_EQ(reg.GetDataType(L"Dword"), static_cast<unsigned long>(REG_DWORD));
    EXPECT_EQ(reg.GetDataType(L"Missing"), static_cast<unsigned long>(REG_NONE));
    EXPECT_EQ(reg.GetLastStatus(), ERROR_FILE_NOT_FOUND);
    // Other operations leave the last status alone.
    EXPECT_EQ(reg.ValueExists(L"Int"), 1);
    EXPECT_EQ(reg.ReadInt(L"Int", 0), 5);
    EXPECT_EQ(reg.GetLastStatus(), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryClassTest, CountsAndSubkeyNames) {
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"One"));
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"Two"));
    reg.WriteInt(L"a", 1);
    reg.WriteInt(L"b", 2);
    reg.WriteInt(L"c", 3);
    EXPECT_EQ(reg.GetSubKeyCount(), 2);
    EXPECT_EQ(reg.GetValueCount(), 3);
    CString name;
    EXPECT_EQ(reg.GetSubKeyName(0, name), 1);
    EXPECT_EQ(name, L"One");
    EXPECT_EQ(reg.GetSubKeyName(1, name), 1);
    EXPECT_EQ(name, L"Two");
    EXPECT_EQ(reg.GetSubKeyName(2, name), 0);
    EXPECT_EQ(name, L"Two");

    reg.SetKey((scratch / L"Gone").c_str(), 1);
    RegDeleteKeyW(scratch.root(), (scratch / L"Gone").c_str());
    EXPECT_EQ(reg.GetSubKeyCount(), -1);
    EXPECT_EQ(reg.GetValueCount(), -1);
    EXPECT_EQ(reg.GetSubKeyName(0, name), 0);
}

TEST_F(RegistryClassTest, RenameValueDoesNothing) {
    ASSERT_EQ(reg.WriteString(L"From", L"kept"), 1);
    reg.RenameValue(L"From", L"To");
    EXPECT_EQ(reg.ReadString(L"From", L"default"), L"kept");
    EXPECT_EQ(reg.ValueExists(L"To"), 0);
}

TEST_F(RegistryClassTest, WritesNeverCreateTheCurrentKey) {
    ASSERT_EQ(RegDeleteKeyW(scratch.root(), scratch.path().c_str()), ERROR_SUCCESS);
    EXPECT_EQ(reg.WriteInt(L"x", 1), 0);
    EXPECT_EQ(reg.WriteString(L"x", L"y"), 0);
    EXPECT_FALSE(tavtest::KeyExists(scratch.root(), scratch.path()));
    EXPECT_EQ(reg.ReadInt(L"x", 42), 42);
    EXPECT_EQ(reg.ReadString(L"x", L"def"), L"def");
}

// Encodings --------------------------------------------------------------------------------------------------

struct Encoding {
    const wchar_t* name;
    DWORD type;
    Bytes bytes;
};

TEST_F(RegistryClassTest, EachTypeIsStoredInItsSettledEncoding) {
    CRect rect(-1, 2, 300, 400);
    CPoint point(-5, 6);
    CSize size(640, 480);
    COleDateTime date(2024, 2, 29, 13, 45, 30);
    CFont font;
    LOGFONTW lf = SampleLogFont();
    ASSERT_TRUE(font.CreateFontIndirect(&lf));
    LOGFONTW stored = {};
    ASSERT_EQ(GetObjectW(font.GetSafeHandle(), sizeof(stored), &stored), static_cast<int>(sizeof(LOGFONTW)));

    ASSERT_EQ(reg.WriteInt(L"Int", -2), 1);
    ASSERT_EQ(reg.WriteBool(L"Bool", 1), 1);
    ASSERT_EQ(reg.WriteColor(L"Color", 0x00112233), 1);
    ASSERT_EQ(reg.WriteDword(L"Dword", 0xDEADBEEF), 1);
    ASSERT_EQ(reg.WriteFloat(L"Float", 1.5), 1);
    ASSERT_EQ(reg.WriteDateTime(L"Date", date), 1);
    ASSERT_EQ(reg.WriteRect(L"Rect", &rect), 1);
    ASSERT_EQ(reg.WritePoint(L"Point", &point), 1);
    ASSERT_EQ(reg.WriteSize(L"Size", &size), 1);
    ASSERT_EQ(reg.WriteFont(L"Font", &font), 1);
    ASSERT_EQ(reg.WriteString(L"String", L"abc"), 1);

    const double onePointFive = 1.5;
    Bytes dateBytes = regtest::ObjectBytes(date.m_dt);
    Bytes status = regtest::ObjectBytes(static_cast<int>(COleDateTime::valid));
    dateBytes.insert(dateBytes.end(), status.begin(), status.end());
    dateBytes.insert(dateBytes.end(), 4, 0);
    const Encoding expected[] = {
        {L"Int", REG_BINARY, {0xFE, 0xFF, 0xFF, 0xFF}},
        {L"Bool", REG_BINARY, {1, 0, 0, 0}},
        {L"Color", REG_BINARY, {0x33, 0x22, 0x11, 0x00}},
        {L"Dword", REG_DWORD, {0xEF, 0xBE, 0xAD, 0xDE}},
        {L"Float", REG_BINARY, regtest::ObjectBytes(onePointFive)},
        {L"Date", REG_BINARY, dateBytes},
        {L"Rect", REG_BINARY, {0xFF, 0xFF, 0xFF, 0xFF, 2, 0, 0, 0, 0x2C, 1, 0, 0, 0x90, 1, 0, 0}},
        {L"Point", REG_BINARY, {0xFB, 0xFF, 0xFF, 0xFF, 6, 0, 0, 0}},
        {L"Size", REG_BINARY, {0x80, 2, 0, 0, 0xE0, 1, 0, 0}},
        {L"Font", REG_BINARY, regtest::ObjectBytes(stored)},
        {L"String", REG_SZ, regtest::TextBytes(std::wstring(L"abc\0", 4))},
    };
    for (const Encoding& e : expected) {
        SCOPED_TRACE(tavtest::Narrow(e.name));
        regtest::RawValue raw = Raw(e.name);
        EXPECT_EQ(raw.status, ERROR_SUCCESS);
        EXPECT_EQ(raw.type, e.type);
        EXPECT_EQ(raw.data, e.bytes);
    }
    EXPECT_EQ(Raw(L"Date").data.size(), 16u);
    EXPECT_EQ(Raw(L"Font").data.size(), 92u);
}

TEST_F(RegistryClassTest, EachTypeReadsBackWhatWasWritten) {
    CRect rect(-1, 2, 300, 400);
    CPoint point(-5, 6);
    CSize size(640, 480);
    COleDateTime date(2024, 2, 29, 13, 45, 30);
    reg.WriteInt(L"Int", -2);
    reg.WriteBool(L"Bool", 1);
    reg.WriteColor(L"Color", 0x00112233);
    reg.WriteDword(L"Dword", 0xDEADBEEF);
    reg.WriteFloat(L"Float", 1.5);
    reg.WriteDateTime(L"Date", date);
    reg.WriteRect(L"Rect", &rect);
    reg.WritePoint(L"Point", &point);
    reg.WriteSize(L"Size", &size);
    reg.WriteString(L"String", L"Grüße");

    EXPECT_EQ(reg.ReadInt(L"Int", 0), -2);
    EXPECT_EQ(reg.ReadBool(L"Bool", 0), 1);
    EXPECT_EQ(reg.ReadColor(L"Color", 0), 0x00112233u);
    EXPECT_EQ(reg.ReadDword(L"Dword", 0), 0xDEADBEEFu);
    EXPECT_EQ(reg.ReadFloat(L"Float", 0), 1.5);
    COleDateTime readDate = reg.ReadDateTime(L"Date", COleDateTime());
    EXPECT_EQ(readDate, date);
    EXPECT_EQ(readDate.GetYear(), 2024);
    EXPECT_EQ(readDate.GetSecond(), 30);
    CRect r;
    CPoint p;
    CSize s;
    EXPECT_EQ(reg.ReadRect(L"Rect", &r), 1);
    EXPECT_EQ(r, rect);
    EXPECT_EQ(reg.ReadPoint(L"Point", &p), 1);
    EXPECT_EQ(p, point);
    EXPECT_EQ(reg.ReadSize(L"Size", &s), 1);
    EXPECT_EQ(s, size);
    EXPECT_EQ(reg.ReadString(L"String", L""), L"Grüße");
    unsigned char raw[4] = {};
    EXPECT_EQ(reg.ReadBinary(L"Color", raw, sizeof(raw)), 1);
    EXPECT_EQ(raw[0], 0x33);
    // A point and a size share their encoding.
    EXPECT_EQ(reg.ReadSize(L"Point", &s), 1);
    EXPECT_EQ(s, CSize(-5, 6));
}

TEST_F(RegistryClassTest, ReadsReturnTheDefaultOnFailure) {
    COleDateTime def(2001, 1, 1, 0, 0, 0);
    EXPECT_EQ(reg.ReadInt(L"Missing", 11), 11);
    EXPECT_EQ(reg.ReadBool(L"Missing", 1), 1);
    EXPECT_EQ(reg.ReadColor(L"Missing", 0xABCDEF), 0xABCDEFu);
    EXPECT_EQ(reg.ReadDword(L"Missing", 12), 12u);
    EXPECT_EQ(reg.ReadFloat(L"Missing", 2.25), 2.25);
    EXPECT_EQ(reg.ReadDateTime(L"Missing", def), def);
    EXPECT_EQ(reg.ReadString(L"Missing", L"def"), L"def");
    CRect r(1, 2, 3, 4);
    EXPECT_EQ(reg.ReadRect(L"Missing", &r), 0);
    EXPECT_EQ(r, CRect(1, 2, 3, 4));
    unsigned char buffer[2];
    EXPECT_EQ(reg.ReadBinary(L"Missing", buffer, sizeof(buffer)), 0);

    // Data too large for the read's buffer: the default as well.
    reg.WriteFloat(L"Double", 3.0);
    EXPECT_EQ(reg.ReadInt(L"Double", 9), 9);
    EXPECT_EQ(reg.ReadBinary(L"Double", buffer, sizeof(buffer)), 0);
    CPoint p(7, 8);
    reg.WriteRect(L"Rect", &r);
    EXPECT_EQ(reg.ReadPoint(L"Rect", &p), 0);
    EXPECT_EQ(p, CPoint(7, 8));
}

TEST_F(RegistryClassTest, TypedReadsIgnoreTheStoredType) {
    reg.WriteInt(L"Int", -2);
    EXPECT_EQ(reg.ReadDword(L"Int", 0), 0xFFFFFFFEu);  // the same 32 bits
    reg.WriteDword(L"Dword", 77);
    EXPECT_EQ(reg.ReadInt(L"Dword", 0), 77);
    ASSERT_TRUE(Set(L"Short", REG_SZ, regtest::TextBytes(std::wstring(L"A\0", 2))));
    EXPECT_EQ(reg.ReadInt(L"Short", -1), 0x41);  // 4 bytes of text fit an int's buffer
    // ReadString alone checks the type.
    EXPECT_EQ(reg.ReadString(L"Dword", L"def"), L"def");
    ASSERT_TRUE(Set(L"Expand", REG_EXPAND_SZ, regtest::TextBytes(std::wstring(L"%TEMP%\\x\0", 9))));
    EXPECT_EQ(reg.ReadString(L"Expand", L"def"), L"%TEMP%\\x");
}

// Strings at their limits -------------------------------------------------------------------------------------

TEST_F(RegistryClassTest, WriteStringAcceptsUpTo254Characters) {
    EXPECT_EQ(reg.WriteString(L"S", CString(L'w', 254)), 1);
    regtest::RawValue raw = Raw(L"S");
    EXPECT_EQ(raw.data.size(), 510u);  // 254 characters and the terminator
    EXPECT_EQ(raw.data[508], 0);
    EXPECT_EQ(raw.data[509], 0);
    EXPECT_EQ(reg.WriteString(L"S", CString(L'x', 255)), 0);  // refused without touching the value
    EXPECT_EQ(Raw(L"S").data.size(), 510u);
    EXPECT_EQ(Raw(L"S").data[0], 'w');
    EXPECT_EQ(reg.WriteString(L"New", CString(L'x', 255)), 0);
    EXPECT_EQ(Raw(L"New").status, ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryClassTest, ReadStringFitsItsBufferOf255Bytes) {
    // Written strings carry their terminator: 126 characters (254 bytes) fit, 127 (256 bytes) do not.
    reg.WriteString(L"126", CString(L'a', 126));
    reg.WriteString(L"127", CString(L'b', 127));
    reg.WriteString(L"200", CString(L'c', 200));
    EXPECT_EQ(reg.ReadString(L"126", L"def"), CString(L'a', 126));
    EXPECT_EQ(reg.GetLastStatus(), ERROR_SUCCESS);
    EXPECT_EQ(reg.ReadString(L"127", L"def"), L"def");
    EXPECT_EQ(reg.GetLastStatus(), ERROR_MORE_DATA);
    EXPECT_EQ(reg.ReadString(L"200", L"def"), L"def");  // written, yet read as the default
    // 127 characters stored without a terminator are 254 bytes and do fit.
    ASSERT_TRUE(Set(L"Bare127", REG_SZ, regtest::TextBytes(std::wstring(127, L'd'))));
    EXPECT_EQ(reg.ReadString(L"Bare127", L"def"), CString(L'd', 127));
    ASSERT_TRUE(Set(L"Bare128", REG_SZ, regtest::TextBytes(std::wstring(128, L'e'))));
    EXPECT_EQ(reg.ReadString(L"Bare128", L"def"), L"def");
    // An empty string reads back empty, not as the default.
    reg.WriteString(L"Empty", L"");
    EXPECT_EQ(reg.ReadString(L"Empty", L"def"), L"");
}

// Flushing ---------------------------------------------------------------------------------------------------------

int s_flushes = 0;
decltype(&RegFlushKey) s_realFlush = nullptr;
LONG WINAPI CountingFlush(HKEY key) {
    ++s_flushes;
    return s_realFlush(key);
}

TEST(RegistryClass, LazyWriteZeroFlushesEveryCreatedSelectedOrWrittenKey) {
    tavtest::ImportHook hook("advapi32.dll", "RegFlushKey", reinterpret_cast<void*>(&CountingFlush));
    ASSERT_TRUE(hook.installed());
    s_realFlush = hook.original<decltype(&RegFlushKey)>();
    ScratchKey scratch;
    CRegistryClass reg;
    CFont font;
    LOGFONTW lf = SampleLogFont();
    ASSERT_TRUE(font.CreateFontIndirect(&lf));
    s_flushes = 0;
    ASSERT_EQ(reg.CreateKey(scratch.path().c_str()), 1);
    ASSERT_EQ(reg.SetKey(scratch.path().c_str(), 0), 1);
    WriteEveryType(reg, font);
    EXPECT_EQ(s_flushes, 0);  // lazy write 1: the system decides

    reg.SetLazyWrite(0);
    ASSERT_EQ(reg.CreateKey(scratch.path().c_str()), 1);
    EXPECT_EQ(s_flushes, 1);
    ASSERT_EQ(reg.SetKey(scratch.path().c_str(), 0), 1);
    EXPECT_EQ(s_flushes, 2);
    WriteEveryType(reg, font);
    EXPECT_EQ(s_flushes, 2 + kTypedWrites);
    // Reads, queries, deletions and failed writes flush nothing.
    reg.ReadString(L"s", L"");
    reg.ReadInt(L"i", 0);
    reg.GetDataType(L"i");
    reg.ValueExists(L"i");
    reg.DeleteValue(L"i");
    reg.WriteString(L"s", CString(L'x', 300));
    reg.SetKey((scratch / L"Missing").c_str(), 0);
    EXPECT_EQ(s_flushes, 2 + kTypedWrites);

    reg.ClearKey();  // lazy write back to 1
    reg.CreateKey(scratch.path().c_str());
    EXPECT_EQ(s_flushes, 2 + kTypedWrites);
}

// Fonts --------------------------------------------------------------------------------------------------------

TEST_F(RegistryClassTest, ReadFontReplacesTheHeldFontWithoutDeletingIt) {
    CFont written;
    LOGFONTW lf = SampleLogFont();
    ASSERT_TRUE(written.CreateFontIndirect(&lf));
    ASSERT_EQ(reg.WriteFont(L"Font", &written), 1);

    HFONT created = nullptr;
    HGDIOBJ previous = GetStockObject(DEFAULT_GUI_FONT);
    LOGFONTW other = SampleLogFont();
    other.lfHeight = -30;
    wcscpy(other.lfFaceName, L"Courier New");
    HFONT held = CreateFontIndirectW(&other);
    ASSERT_NE(held, nullptr);
    {
        CFont font;
        font.Attach(held);
        EXPECT_EQ(reg.ReadFont(L"Missing", &font), 0);
        EXPECT_EQ(font.GetSafeHandle(), held);  // left as it was

        ASSERT_EQ(reg.ReadFont(L"Font", &font), 1);
        created = font.GetSafeHandle();
        ASSERT_NE(created, nullptr);
        EXPECT_NE(created, held);
        LOGFONTW back = {};
        ASSERT_EQ(font.GetLogFont(&back), static_cast<int>(sizeof(back)));
        EXPECT_EQ(back.lfHeight, -17);
        EXPECT_EQ(back.lfWeight, FW_BOLD);
        EXPECT_STREQ(back.lfFaceName, L"Tahoma");
        EXPECT_EQ(GetObjectType(held), static_cast<DWORD>(OBJ_FONT));  // detached, still alive
    }
    // The new font belonged to the CFont (deleted with it); the old one is ours to delete.
    EXPECT_EQ(GetObjectType(created), 0u);
    EXPECT_TRUE(DeleteObject(held));
    EXPECT_EQ(GetObjectType(held), 0u);
    EXPECT_EQ(GetObjectType(previous), static_cast<DWORD>(OBJ_FONT));
}

// Every font the library creates, seen through TavUtil.dll's import of CreateFontIndirectW.
std::vector<HFONT> s_createdFonts;
decltype(&CreateFontIndirectW) s_realCreateFont = nullptr;
HFONT WINAPI RecordingCreateFont(const LOGFONTW* logFont) {
    HFONT font = s_realCreateFont(logFont);
    s_createdFonts.push_back(font);
    return font;
}

// The GDI object count (GetGuiResources) is not kept by Wine, so the fonts are followed one by one: each
// one ReadFont makes is the one it attaches, and none outlives the CFont objects that held it.
TEST_F(RegistryClassTest, ReadFontCreatesOnlyTheFontItAttaches) {
    CFont written;
    LOGFONTW lf = SampleLogFont();
    ASSERT_TRUE(written.CreateFontIndirect(&lf));
    ASSERT_EQ(reg.WriteFont(L"Font", &written), 1);
    tavtest::ImportHook hook("gdi32.dll", "CreateFontIndirectW", reinterpret_cast<void*>(&RecordingCreateFont));
    ASSERT_TRUE(hook.installed());
    s_realCreateFont = hook.original<decltype(&CreateFontIndirectW)>();
    s_createdFonts.clear();
    std::vector<HFONT> attached;
    for (int i = 0; i < 50; ++i) {
        CFont font;
        ASSERT_EQ(reg.ReadFont(L"Font", &font), 1);
        attached.push_back(static_cast<HFONT>(font.GetSafeHandle()));
        EXPECT_EQ(reg.ReadFont(L"Missing", &font), 0);
    }
    EXPECT_EQ(s_createdFonts, attached);
    for (HFONT font : s_createdFonts)
        EXPECT_EQ(GetObjectType(font), 0u);
}

TEST_F(RegistryClassTest, WriteFontRefusesAMissingFont) {
    CFont empty;
    EXPECT_EQ(reg.WriteFont(L"Font", &empty), 0);
    EXPECT_EQ(reg.WriteFont(L"Font", nullptr), 0);
    EXPECT_EQ(Raw(L"Font").status, ERROR_FILE_NOT_FOUND);
}

// Handles ------------------------------------------------------------------------------------------------------

TEST_F(RegistryClassTest, ThousandsOfCallsLeakNoHandleAndNoFont) {
    CFont font;
    LOGFONTW lf = SampleLogFont();
    ASSERT_TRUE(font.CreateFontIndirect(&lf));
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"Sub"));
    CRect rect(1, 2, 3, 4);
    CPoint point(1, 2);
    CSize size(3, 4);
    const CString path = scratch.path().c_str();
    int before = tavtest::OwnHandleCount();
    ASSERT_GT(before, 0);
    for (int i = 0; i < 2000; ++i) {
        reg.CreateKey(path);
        reg.SetKey(path, 0);
        reg.SetKey(path + L"\\Missing", 0);
        reg.KeyExists(path);
        WriteEveryType(reg, font);
        reg.ReadString(L"s", L"");
        reg.ReadString(L"d", L"");
        reg.ReadDword(L"d", 0);
        reg.ReadInt(L"i", 0);
        reg.ReadFloat(L"f", 0);
        reg.ReadDateTime(L"t", COleDateTime());
        reg.ReadRect(L"r", &rect);
        reg.ReadPoint(L"p", &point);
        reg.ReadSize(L"z", &size);
        unsigned char buffer[2];
        reg.ReadBinary(L"f", buffer, sizeof(buffer));
        reg.ValueExists(L"s");
        reg.GetDataSize(L"s");
        reg.GetDataType(L"s");
        reg.GetSubKeyCount();
        reg.GetValueCount();
        CString name;
        reg.GetSubKeyName(0, name);
        reg.DeleteValue(L"s");
        reg.DeleteKey(path + L"\\Missing");
        reg.RenameValue(L"i", L"j");

        CFont read;
        ASSERT_EQ(reg.ReadFont(L"n", &read), 1);
        HGDIOBJ previous = read.GetSafeHandle();
        ASSERT_EQ(reg.ReadFont(L"n", &read), 1);
        ASSERT_EQ(GetObjectType(previous), static_cast<DWORD>(OBJ_FONT));
        ASSERT_TRUE(DeleteObject(previous));  // the detached font is the caller's to delete
    }
    EXPECT_EQ(tavtest::OwnHandleCount(), before);
}

}  // namespace
