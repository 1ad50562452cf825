// CRegistry against Wine's real registry. Each test works in a scratch subtree of its own.
#include "RawRegistry.h"
#include "ImportHook.h"
#include "TestSupport.h"

#include <TavUtil.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

using regtest::Bytes;
using tavtest::ScratchKey;

namespace {

const bool kReadOnly = true;
const bool kWritable = false;

CStdStr<wchar_t> Str(const wchar_t* text) { return CStdStr<wchar_t>(text); }

// Opening --------------------------------------------------------------------------------------------------

TEST(Registry, WritableOpenCreatesMissingKey) {
    ScratchKey scratch;
    ASSERT_FALSE(tavtest::KeyExists(scratch.root(), scratch.path()));
    CRegistry reg;
    EXPECT_EQ(reg.OpenKey(scratch.root(), scratch.path().c_str(), kWritable), ERROR_SUCCESS);
    EXPECT_NE(reg.IsValid(), 0);
    EXPECT_TRUE(tavtest::KeyExists(scratch.root(), scratch.path()));
}

TEST(Registry, ReadOnlyOpenNeverCreatesKey) {
    ScratchKey scratch(HKEY_LOCAL_MACHINE, L"SOFTWARE");
    CRegistry reg;
    EXPECT_EQ(reg.OpenKey(scratch.root(), scratch.path().c_str(), kReadOnly), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(reg.IsValid(), 0);
    EXPECT_FALSE(tavtest::KeyExists(scratch.root(), scratch.path(), KEY_WOW64_64KEY));
    EXPECT_FALSE(tavtest::KeyExists(scratch.root(), scratch.path(), KEY_WOW64_32KEY));
}

TEST(Registry, ReadOnlyOpenFindsKeyOfThe32BitViewOnly) {
    ScratchKey scratch(HKEY_LOCAL_MACHINE, L"SOFTWARE");
    ASSERT_TRUE(regtest::RawSet(scratch.root(), scratch.path(), L"Path", REG_SZ, regtest::TextBytes(L"C:\\x86"),
                                KEY_WOW64_32KEY));
    ASSERT_FALSE(tavtest::KeyExists(scratch.root(), scratch.path()));  // the first attempt fails

    CRegistry reg;
    EXPECT_EQ(reg.OpenKey(scratch.root(), scratch.path().c_str(), kReadOnly), ERROR_SUCCESS);
    CStdStr<wchar_t> text;
    EXPECT_EQ(reg.ReadStringValue(L"Path", text), 0);
    EXPECT_EQ(text, L"C:\\x86");

    CRegistry constructed(scratch.root(), scratch.path().c_str(), kReadOnly);
    EXPECT_NE(constructed.IsValid(), 0);
}

TEST(Registry, ReadOnlyOpenPrefersTheNativeView) {
    ScratchKey scratch(HKEY_LOCAL_MACHINE, L"SOFTWARE");
    ASSERT_TRUE(
        regtest::RawSet(scratch.root(), scratch.path(), L"Which", REG_SZ, regtest::TextBytes(L"32"), KEY_WOW64_32KEY));
    ASSERT_TRUE(
        regtest::RawSet(scratch.root(), scratch.path(), L"Which", REG_SZ, regtest::TextBytes(L"64"), KEY_WOW64_64KEY));
    CRegistry reg(scratch.root(), scratch.path().c_str(), kReadOnly);
    CStdStr<wchar_t> text;
    EXPECT_EQ(reg.ReadStringValue(L"Which", text), 0);
    EXPECT_EQ(text, L"64");
}

TEST(Registry, WritableOpenDoesNotFallBackToThe32BitView) {
    ScratchKey scratch(HKEY_LOCAL_MACHINE, L"SOFTWARE");
    ASSERT_TRUE(
        regtest::RawSet(scratch.root(), scratch.path(), L"Only32", REG_SZ, regtest::TextBytes(L"x"), KEY_WOW64_32KEY));
    CRegistry reg(scratch.root(), scratch.path().c_str(), kWritable);  // creates the native key
    CStdStr<wchar_t> text;
    EXPECT_EQ(reg.ReadStringValue(L"Only32", text), 1);
    EXPECT_TRUE(tavtest::KeyExists(scratch.root(), scratch.path(), KEY_WOW64_64KEY));
}

TEST(Registry, ConstructorOpensLikeOpenKeyAndFailedOpenLeavesNoKey) {
    ScratchKey scratch;
    CRegistry missing(scratch.root(), scratch.path().c_str(), kReadOnly);
    EXPECT_EQ(missing.IsValid(), 0);
    CRegistry created(scratch.root(), scratch.path().c_str(), kWritable);
    EXPECT_NE(created.IsValid(), 0);
    EXPECT_TRUE(tavtest::KeyExists(scratch.root(), scratch.path()));
}

TEST(Registry, OpenKeyOnAnOpenObjectGivesUpTheOldKey) {
    ScratchKey scratch;
    CRegistry reg(scratch.root(), scratch.path().c_str(), kWritable);
    int before = tavtest::OwnHandleCount();
    EXPECT_EQ(reg.OpenKey(scratch.root(), scratch.path().c_str(), kReadOnly), ERROR_SUCCESS);
    EXPECT_EQ(tavtest::OwnHandleCount(), before);
    EXPECT_EQ(reg.OpenKey(scratch.root(), (scratch / L"missing").c_str(), kReadOnly), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(reg.IsValid(), 0);
    EXPECT_EQ(tavtest::OwnHandleCount(), before - 1);
}

TEST(Registry, CloseKeyTwiceGivesInvalidHandleTheSecondTime) {
    ScratchKey scratch;
    CRegistry reg(scratch.root(), scratch.path().c_str(), kWritable);
    EXPECT_EQ(reg.CloseKey(), ERROR_SUCCESS);
    EXPECT_EQ(reg.IsValid(), 0);
    EXPECT_EQ(reg.CloseKey(), ERROR_INVALID_HANDLE);
}

// Null key ------------------------------------------------------------------------------------------------

TEST(Registry, EveryOperationOnANullKeyReportsInvalidHandle) {
    CRegistry reg;
    unsigned long type = 0, size = 0;
    unsigned char data[8] = {};
    EXPECT_EQ(reg.IsValid(), 0);
    EXPECT_EQ(reg.CloseKey(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(reg.DeleteKey(L"x"), ERROR_INVALID_HANDLE);
    EXPECT_EQ(reg.DeleteValue(L"x"), ERROR_INVALID_HANDLE);
    EXPECT_EQ(reg.QueryValueEx(L"x", &type, data, &size), ERROR_INVALID_HANDLE);
    EXPECT_EQ(reg.QueryValueEx(Str(L"x"), &type, nullptr, &size), ERROR_INVALID_HANDLE);
    EXPECT_EQ(reg.SetValueEx(L"x", REG_SZ, L"a", 2), ERROR_INVALID_HANDLE);
    // WriteStringValue hands the null handle to the platform, which refuses it with the same status.
    EXPECT_EQ(reg.WriteStringValue(L"x", Str(L"a")), ERROR_INVALID_HANDLE);
    EXPECT_EQ(reg.WriteStringValue(Str(L"x"), Str(L"a")), ERROR_INVALID_HANDLE);
    CStdStr<wchar_t> out = L"stale";
    EXPECT_EQ(reg.ReadStringValue(L"x", out), 1);
    EXPECT_TRUE(out.empty());
    EXPECT_EQ(reg.GetFirstSubkey(), nullptr);
    EXPECT_EQ(reg.GetNextSubkey(), nullptr);
}

// Reading strings ----------------------------------------------------------------------------------------

struct ReadCase {
    const wchar_t* label;
    DWORD type;
    Bytes data;
    long expectedResult;
    std::wstring expectedText;
};

TEST(Registry, ReadStringValueByTypeAndShape) {
    const DWORD one = 1;
    const std::wstring embedded(L"ab\0cd\0", 6);
    const ReadCase cases[] = {
        {L"dword", REG_DWORD, regtest::ObjectBytes(one), 1, L""},
        {L"binary", REG_BINARY, regtest::TextBytes(L"abc"), 1, L""},
        {L"multi", REG_MULTI_SZ, regtest::TextBytes(std::wstring(L"a\0b\0\0", 5)), 1, L""},
        {L"empty sz", REG_SZ, Bytes(), 0, L""},
        {L"terminator only", REG_SZ, regtest::TextBytes(std::wstring(1, L'\0')), 0, L""},
        {L"expand", REG_EXPAND_SZ, regtest::TextBytes(std::wstring(L"%SystemRoot%\\x\0", 15)), 0, L"%SystemRoot%\\x"},
        {L"no terminator", REG_SZ, regtest::TextBytes(L"abc"), 0, L"abc"},
        {L"embedded nul", REG_SZ, regtest::TextBytes(embedded), 0, L"ab"},
        {L"odd byte count", REG_SZ, Bytes{'a', 0, 'b'}, 0, L"a"},
        {L"long", REG_SZ, regtest::TextBytes(std::wstring(5000, L'z')), 0, std::wstring(5000, L'z')},
    };
    ScratchKey scratch;
    for (const ReadCase& c : cases) {
        ASSERT_TRUE(regtest::RawSet(scratch.root(), scratch.path(), c.label, c.type, c.data));
        ASSERT_EQ(regtest::RawQuery(scratch.root(), scratch.path(), c.label).data, c.data);  // stored as given
    }
    CRegistry reg(scratch.root(), scratch.path().c_str(), kReadOnly);
    for (const ReadCase& c : cases) {
        SCOPED_TRACE(tavtest::Narrow(c.label));
        CStdStr<wchar_t> out = L"stale";
        EXPECT_EQ(reg.ReadStringValue(c.label, out), c.expectedResult);
        EXPECT_EQ(out, c.expectedText);
        CStdStr<wchar_t> viaString = L"stale";
        EXPECT_EQ(reg.ReadStringValue(Str(c.label), viaString), c.expectedResult);
        EXPECT_EQ(viaString, c.expectedText);
    }
    CStdStr<wchar_t> out = L"stale";
    EXPECT_EQ(reg.ReadStringValue(L"missing", out), 1);
    EXPECT_TRUE(out.empty());
}

// Writing strings ----------------------------------------------------------------------------------------

// What WriteStringValue hands to RegSetValueExW, seen through TavUtil.dll's import table.
struct SetValueCall {
    int calls = 0;
    DWORD type = REG_NONE;
    DWORD size = 0;
    Bytes data;
};
SetValueCall s_setValue;
decltype(&RegSetValueExW) s_realSetValue = nullptr;

LONG WINAPI RecordingSetValue(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    ++s_setValue.calls;
    s_setValue.type = type;
    s_setValue.size = size;
    s_setValue.data.assign(data, data + size);
    return s_realSetValue(key, name, reserved, type, data, size);
}

TEST(Registry, WriteStringValueCountsNoTerminatorAndReadsBack) {
    ScratchKey scratch;
    CRegistry reg(scratch.root(), scratch.path().c_str(), kWritable);
    {
        tavtest::ImportHook hook("advapi32.dll", "RegSetValueExW", reinterpret_cast<void*>(&RecordingSetValue));
        ASSERT_TRUE(hook.installed());
        s_realSetValue = hook.original<decltype(&RegSetValueExW)>();
        s_setValue = SetValueCall();
        EXPECT_EQ(reg.WriteStringValue(L"Name", Str(L"Trimdial")), ERROR_SUCCESS);
        EXPECT_EQ(s_setValue.calls, 1);
        EXPECT_EQ(s_setValue.type, static_cast<DWORD>(REG_SZ));
        EXPECT_EQ(s_setValue.size, 16u);  // 2 x 8 characters, the terminator not counted
        EXPECT_EQ(s_setValue.data, regtest::TextBytes(L"Trimdial"));
        EXPECT_EQ(reg.WriteStringValue(Str(L"Empty"), Str(L"")), ERROR_SUCCESS);
        EXPECT_EQ(s_setValue.calls, 2);
        EXPECT_EQ(s_setValue.size, 0u);
    }
    // The platform itself appends the terminator when the byte after the counted data is a NUL (as NT
    // does); the library's reader does not depend on either form.
    regtest::RawValue raw = regtest::RawQuery(scratch.root(), scratch.path(), L"Name");
    ASSERT_EQ(raw.status, ERROR_SUCCESS);
    EXPECT_EQ(raw.type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(raw.data, regtest::TextBytes(std::wstring(L"Trimdial\0", 9)));
    CStdStr<wchar_t> back;
    EXPECT_EQ(reg.ReadStringValue(L"Name", back), 0);
    EXPECT_EQ(back, L"Trimdial");
    back = L"stale";
    EXPECT_EQ(reg.ReadStringValue(L"Empty", back), 0);
    EXPECT_TRUE(back.empty());
}

TEST(Registry, TextStoredWithoutTerminatorReadsBackWhole) {
    ScratchKey scratch;
    ASSERT_TRUE(regtest::RawSet(scratch.root(), scratch.path(), L"Bare", REG_SZ, regtest::TextBytes(L"Trimdial")));
    ASSERT_EQ(regtest::RawQuery(scratch.root(), scratch.path(), L"Bare").data.size(), 16u);
    CRegistry reg(scratch.root(), scratch.path().c_str(), kReadOnly);
    CStdStr<wchar_t> back;
    EXPECT_EQ(reg.ReadStringValue(Str(L"Bare"), back), 0);
    EXPECT_EQ(back, L"Trimdial");
}

TEST(Registry, WriteStringValueOnAReadOnlyKeyIsRefusedByThePlatform) {
    ScratchKey scratch;
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch.path()));
    CRegistry reg(scratch.root(), scratch.path().c_str(), kReadOnly);
    EXPECT_EQ(reg.WriteStringValue(L"Name", Str(L"x")), ERROR_ACCESS_DENIED);
}

// Raw values ------------------------------------------------------------------------------------------------

TEST(Registry, SetValueExStoresTheGivenByteCount) {
    ScratchKey scratch;
    CRegistry reg(scratch.root(), scratch.path().c_str(), kWritable);
    EXPECT_EQ(reg.SetValueEx(L"WithNul", REG_SZ, L"ab", 6), ERROR_SUCCESS);
    EXPECT_EQ(reg.SetValueEx(L"Three", REG_BINARY, L"ab", 3), ERROR_SUCCESS);
    regtest::RawValue withNul = regtest::RawQuery(scratch.root(), scratch.path(), L"WithNul");
    EXPECT_EQ(withNul.data, regtest::TextBytes(std::wstring(L"ab\0", 3)));
    regtest::RawValue three = regtest::RawQuery(scratch.root(), scratch.path(), L"Three");
    EXPECT_EQ(three.type, static_cast<DWORD>(REG_BINARY));
    EXPECT_EQ(three.data, (Bytes{'a', 0, 'b'}));
}

TEST(Registry, QueryValueExPassesArgumentsThrough) {
    ScratchKey scratch;
    const DWORD value = 0x12345678;
    ASSERT_TRUE(regtest::RawSet(scratch.root(), scratch.path(), L"Number", REG_DWORD, regtest::ObjectBytes(value)));
    CRegistry reg(scratch.root(), scratch.path().c_str(), kReadOnly);
    unsigned long type = 0, size = 0;
    EXPECT_EQ(reg.QueryValueEx(L"Number", &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, static_cast<unsigned long>(REG_DWORD));
    EXPECT_EQ(size, 4u);
    DWORD read = 0;
    size = sizeof(read);
    EXPECT_EQ(reg.QueryValueEx(Str(L"Number"), &type, reinterpret_cast<unsigned char*>(&read), &size), ERROR_SUCCESS);
    EXPECT_EQ(read, value);
    unsigned char small[2];
    size = sizeof(small);
    EXPECT_EQ(reg.QueryValueEx(L"Number", &type, small, &size), ERROR_MORE_DATA);
    EXPECT_EQ(reg.QueryValueEx(L"missing", &type, nullptr, &size), ERROR_FILE_NOT_FOUND);
}

// Deleting ---------------------------------------------------------------------------------------------------

TEST(Registry, DeleteValueAndDeleteKey) {
    ScratchKey scratch;
    ASSERT_TRUE(regtest::RawSet(scratch.root(), scratch.path(), L"Gone", REG_SZ, regtest::TextBytes(L"x")));
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"Leaf"));
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"Branch\\Child"));
    CRegistry reg(scratch.root(), scratch.path().c_str(), kWritable);

    EXPECT_EQ(reg.DeleteValue(L"Gone"), ERROR_SUCCESS);
    EXPECT_EQ(regtest::RawQuery(scratch.root(), scratch.path(), L"Gone").status, ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(reg.DeleteValue(L"Gone"), ERROR_FILE_NOT_FOUND);

    EXPECT_EQ(reg.DeleteKey(L"Leaf"), ERROR_SUCCESS);
    EXPECT_FALSE(tavtest::KeyExists(scratch.root(), scratch / L"Leaf"));
    EXPECT_EQ(reg.DeleteKey(L"Leaf"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(reg.DeleteKey(L"Branch"), ERROR_ACCESS_DENIED);  // it has a subkey of its own
    EXPECT_TRUE(tavtest::KeyExists(scratch.root(), scratch / L"Branch\\Child"));
}

// Enumerating ------------------------------------------------------------------------------------------------

TEST(Registry, EnumerationVisitsEverySubkeyAndStaysAtTheEnd) {
    ScratchKey scratch;
    for (const wchar_t* name : {L"Alpha", L"Beta", L"Gamma"})
        ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / name));
    CRegistry reg(scratch.root(), scratch.path().c_str(), kReadOnly);

    std::set<std::wstring> seen;
    for (const wchar_t* name = reg.GetFirstSubkey(); name != nullptr; name = reg.GetNextSubkey())
        seen.insert(name);
    EXPECT_EQ(seen, (std::set<std::wstring>{L"Alpha", L"Beta", L"Gamma"}));
    EXPECT_EQ(reg.GetNextSubkey(), nullptr);
    EXPECT_EQ(reg.GetNextSubkey(), nullptr);

    // A failed call leaves the index where it was: a subkey added now is the next one returned.
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"Zeta"));  // sorts after the others
    const wchar_t* added = reg.GetNextSubkey();
    ASSERT_NE(added, nullptr);
    EXPECT_STREQ(added, L"Zeta");
    EXPECT_EQ(reg.GetNextSubkey(), nullptr);

    // GetFirstSubkey starts over.
    int count = 0;
    for (const wchar_t* name = reg.GetFirstSubkey(); name != nullptr; name = reg.GetNextSubkey())
        ++count;
    EXPECT_EQ(count, 4);
}

TEST(Registry, EnumerationOfAKeyWithoutSubkeysReturnsNull) {
    ScratchKey scratch;
    CRegistry reg(scratch.root(), scratch.path().c_str(), kWritable);
    EXPECT_EQ(reg.GetFirstSubkey(), nullptr);
    EXPECT_EQ(reg.GetNextSubkey(), nullptr);
}

TEST(Registry, SubkeyNameStaysValidUntilTheNextEnumerationCallOnAnyObject) {
    ScratchKey scratch;
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"First\\Inner"));
    CRegistry outer(scratch.root(), scratch.path().c_str(), kReadOnly);
    const wchar_t* name = outer.GetFirstSubkey();
    ASSERT_NE(name, nullptr);
    EXPECT_STREQ(name, L"First");

    // Calls that do not enumerate leave the name alone.
    CRegistry inner(scratch.root(), (scratch / L"First").c_str(), kWritable);
    CStdStr<wchar_t> ignored;
    inner.WriteStringValue(L"v", Str(L"value"));
    inner.ReadStringValue(L"v", ignored);
    EXPECT_STREQ(name, L"First");

    // An enumeration on another object reuses the same buffer.
    const wchar_t* other = inner.GetFirstSubkey();
    EXPECT_EQ(other, name);
    EXPECT_STREQ(name, L"Inner");
}

// Copies and moves -----------------------------------------------------------------------------------------

TEST(Registry, AssignmentSharesTheHandleWithoutDuplicatingIt) {
    ScratchKey scratch;
    ASSERT_TRUE(regtest::RawSet(scratch.root(), scratch.path(), L"v", REG_SZ, regtest::TextBytes(L"shared")));
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"A"));
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"B"));
    CRegistry original(scratch.root(), scratch.path().c_str(), kReadOnly);
    ASSERT_NE(original.GetFirstSubkey(), nullptr);  // index 1

    int before = tavtest::OwnHandleCount();
    {
        CRegistry copy(scratch.root(), scratch.path().c_str(), kReadOnly);  // a key of its own ...
        EXPECT_EQ(tavtest::OwnHandleCount(), before + 1);
        copy = original;  // ... closed here; no new handle
        EXPECT_EQ(tavtest::OwnHandleCount(), before);
        CStdStr<wchar_t> text;
        EXPECT_EQ(copy.ReadStringValue(L"v", text), 0);
        EXPECT_EQ(text, L"shared");
        const wchar_t* next = copy.GetNextSubkey();  // the index came along
        ASSERT_NE(next, nullptr);
        EXPECT_EQ(copy.GetNextSubkey(), nullptr);
        copy = copy;
        EXPECT_NE(copy.IsValid(), 0);
        EXPECT_EQ(copy.CloseKey(), ERROR_SUCCESS);  // closes the one shared key
    }
    EXPECT_EQ(tavtest::OwnHandleCount(), before - 1);
    CStdStr<wchar_t> text;
    EXPECT_EQ(original.ReadStringValue(L"v", text), 1);  // its handle is the closed one
    EXPECT_EQ(original.CloseKey(), ERROR_INVALID_HANDLE);
}

TEST(Registry, MovingTransfersTheKey) {
    ScratchKey scratch;
    int before = tavtest::OwnHandleCount();
    CRegistry first(scratch.root(), scratch.path().c_str(), kWritable);
    CRegistry second(std::move(first));
    EXPECT_EQ(first.IsValid(), 0);
    EXPECT_NE(second.IsValid(), 0);
    CRegistry third(scratch.root(), scratch.path().c_str(), kReadOnly);
    EXPECT_EQ(tavtest::OwnHandleCount(), before + 2);
    third = std::move(second);  // third's own key is closed
    EXPECT_EQ(tavtest::OwnHandleCount(), before + 1);
    EXPECT_EQ(third.WriteStringValue(L"v", Str(L"moved")), ERROR_SUCCESS);
}

// Handles -------------------------------------------------------------------------------------------------

TEST(Registry, ThousandsOfCallsLeakNoHandle) {
    ScratchKey scratch(HKEY_LOCAL_MACHINE, L"SOFTWARE");
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"Sub"));
    ASSERT_TRUE(regtest::RawCreate(scratch.root(), scratch / L"Only32", KEY_WOW64_32KEY));
    const std::wstring path = scratch.path();
    const std::wstring only32 = scratch / L"Only32";
    const std::wstring missing = scratch / L"Missing";
    int before = tavtest::OwnHandleCount();
    ASSERT_GT(before, 0);
    for (int i = 0; i < 2000; ++i) {
        CRegistry writable(scratch.root(), path.c_str(), kWritable);
        writable.WriteStringValue(L"v", Str(L"text"));
        writable.SetValueEx(L"w", REG_SZ, L"ab", 4);
        CStdStr<wchar_t> text;
        writable.ReadStringValue(L"v", text);
        unsigned long size = 0;
        writable.QueryValueEx(L"v", nullptr, nullptr, &size);
        writable.DeleteValue(L"w");
        writable.DeleteKey(L"NotThere");
        for (const wchar_t* name = writable.GetFirstSubkey(); name != nullptr; name = writable.GetNextSubkey()) {
        }
        CRegistry reader;
        reader.OpenKey(scratch.root(), only32.c_str(), kReadOnly);
        reader.OpenKey(scratch.root(), path.c_str(), kReadOnly);
        reader.OpenKey(scratch.root(), missing.c_str(), kReadOnly);
        CRegistry closed(scratch.root(), path.c_str(), kReadOnly);
        closed.CloseKey();
        CRegistry assigned;
        assigned = std::move(closed);
    }
    EXPECT_EQ(tavtest::OwnHandleCount(), before);
}

}  // namespace
