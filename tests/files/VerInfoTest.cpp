// CVerInfo on version resources built for these tests (verfix_*.dll beside the test executable) and on
// a file no one here wrote: Wine's own kernel32.dll, checked against raw VerQueryValueW reads.
#include <TavUtil.h>

#include "ImportHook.h"
#include "TestSupport.h"
#include "VersionBlock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using Str = CStdStr<wchar_t>;

std::wstring Fixture(const wchar_t* name) { return tavtest::BinDir() + L"\\verfix_" + name + L".dll"; }

// Exposes the protected string lookup so that sub-paths outside VERFIELD can be read.
class ProbeVerInfo : public CVerInfo {
public:
    using CVerInfo::CVerInfo;
    using CVerInfo::GetStringValue;
};

struct Expected {
    VERFIELD field;
    const wchar_t* text;
};

// Every field from 0 to 15: those listed give their text, every other one 0 and an empty output.
void ExpectFields(CVerInfo& info, const std::vector<Expected>& present) {
    for (int i = 0; i <= 15; ++i) {
        const Expected* row = nullptr;
        for (const Expected& candidate : present)
            row = candidate.field == i ? &candidate : row;
        Str out = L"stale";
        EXPECT_EQ(info.GetField(static_cast<VERFIELD>(i), out), row ? 1 : 0) << "field " << i;
        EXPECT_EQ(out, row ? row->text : L"") << "field " << i;
    }
}

void ExpectStringTable(CVerInfo& info, const wchar_t* language, const wchar_t* codePage) {
    EXPECT_STREQ(info.GetLanguageCode(), language);
    EXPECT_STREQ(info.GetKbdCodePage(), codePage);
}

TEST(VerInfo, FieldNamesAndTheirRange) {
    const wchar_t* names[] = {L"File Version Number", L"Product Version Number", L"Comments",
                              L"Company Name",        L"File Description",       L"File Version",
                              L"Internal Name",       L"Legal Copyright",        L"Legal Trademarks",
                              L"Original Filename",   L"Private Build",          L"Product Name",
                              L"Product Version",     L"Special Build",          L"ProductBuildNumber"};
    for (int i = 0; i < 15; ++i) {
        Str out = L"stale";
        EXPECT_EQ(CVerInfo::GetFieldName(static_cast<VERFIELD>(i), out), 1) << i;
        EXPECT_EQ(out, names[i]) << i;
    }
    Str out = L"stale";
    EXPECT_EQ(CVerInfo::GetFieldName(static_cast<VERFIELD>(15), out), 0);
    EXPECT_TRUE(out.empty());
    out = L"stale";
    EXPECT_EQ(CVerInfo::GetFieldName(static_cast<VERFIELD>(-1), out), 0);  // compared unsigned
    EXPECT_TRUE(out.empty());
}

TEST(VerInfo, EveryFieldWithATranslationTable) {
    CVerInfo info(Fixture(L"translation").c_str());
    ExpectStringTable(info, L"0407", L"04b0");  // lower-case digits from the table
    EXPECT_EQ(info.GetFileName(), Fixture(L"translation"));
    ExpectFields(info, {{VF_FileVersionNumber, L"1.2.3.4"},
                        {VF_ProductVersionNumber, L"5.6.7.8"},
                        {VF_Comments, L"Fixture comments"},
                        {VF_CompanyName, L"Fixture Company"},
                        {VF_FileDescription, L"Fixture with a translation table"},
                        {VF_FileVersion, L"1.2.3.4"},
                        {VF_InternalName, L"translation"},
                        {VF_LegalCopyright, L"Copyright fixture"},
                        {VF_LegalTrademarks, L"Trademark fixture"},
                        {VF_OriginalFilename, L"verfix_translation.dll"},
                        {VF_PrivateBuild, L"private fixture"},
                        {VF_ProductName, L"Fixture Product"},
                        {VF_ProductVersion, L"5.6.7.8"},
                        {VF_SpecialBuild, L"special fixture"},
                        {VF_ProductBuildNumber, L"9001"}});
}

TEST(VerInfo, FixedVersionsAsNumbersKeepFixThenBuild) {
    CVerInfo info(Fixture(L"translation").c_str());
    CVerNum file, product;
    ASSERT_EQ(info.GetFileVersionNum(&file), 1);
    ASSERT_EQ(info.GetProductVersionNum(&product), 1);
    EXPECT_EQ(file.IsValid(), 1);
    EXPECT_EQ(file.GetMajor(), 1);
    EXPECT_EQ(file.GetMinor(), 2);
    EXPECT_EQ(file.GetFix(), 3);
    EXPECT_EQ(file.GetBuild(), 4);
    EXPECT_EQ(product.Compare(CVerNum(5, 6, 7, 8)), CVerNum::VERNUM_EQUAL);
}

TEST(VerInfo, WithoutVarFileInfoTheFallbacksAreUsed) {
    CVerInfo info(Fixture(L"novarfileinfo").c_str());
    ExpectStringTable(info, L"0409", L"04E4");  // upper-case E, unlike codes read from a table
    ExpectFields(info, {
                           {VF_FileVersionNumber, L"2.0.0.1"},
                           {VF_ProductVersionNumber, L"2.0.0.0"},
                           {VF_CompanyName, L"Fallback Company"},
                           {VF_ProductName, L"Fallback Product"},
                       });
}

TEST(VerInfo, ATableOfTwoTranslationsAlsoFallsBack) {
    CVerInfo info(Fixture(L"twotranslations").c_str());
    ExpectStringTable(info, L"0409", L"04E4");
    ExpectFields(info, {{VF_FileVersionNumber, L"3.0.0.0"},
                        {VF_ProductVersionNumber, L"3.0.0.0"},
                        {VF_CompanyName, L"English Company"}});
}

TEST(VerInfo, TrailingWhiteSpaceIsRemoved) {
    CVerInfo info(Fixture(L"blanks").c_str());
    ExpectStringTable(info, L"0409", L"04b0");
    ExpectFields(info, {
                           {VF_FileVersionNumber, L"4.1.0.0"},
                           {VF_ProductVersionNumber, L"4.1.0.0"},
                           {VF_CompanyName, L"Blank Company"},
                           {VF_ProductName, L"Tabbed Product"},
                           {VF_Comments, L"Two lines"},
                           {VF_FileDescription, L"  Leading blanks stay"},
                           {VF_LegalTrademarks, L""},
                       });
}

TEST(VerInfo, TheSuitesProductBuildNumber) {
    CVerInfo info(Fixture(L"buildnumber").c_str());
    ExpectStringTable(info, L"0409", L"04e4");
    ExpectFields(info, {
                           {VF_FileVersionNumber, L"6.20.1234.0"},
                           {VF_ProductVersionNumber, L"6.20.0.0"},
                           {VF_CompanyName, L"Velmorax"},
                           {VF_ProductName, L"Trimdial"},
                           {VF_ProductVersion, L"6.20"},
                           {VF_ProductBuildNumber, L"1234"},
                       });
    CVerNum file;
    ASSERT_EQ(info.GetFileVersionNum(&file), 1);
    EXPECT_EQ(file.GetFix(), 1234);
    EXPECT_EQ(file.GetBuild(), 0);
}

void ExpectEmpty(CVerInfo& info) {
    ExpectFields(info, {});
    CVerNum number(1, 1, 1, 1);
    EXPECT_EQ(info.GetFileVersionNum(&number), 0);
    EXPECT_EQ(info.GetProductVersionNum(&number), 0);
    EXPECT_EQ(number.Compare(CVerNum(1, 1, 1, 1)), CVerNum::VERNUM_EQUAL);  // untouched
}

TEST(VerInfo, AFileWithoutVersionResourceLeavesTheObjectEmpty) {
    ProbeVerInfo info;
    EXPECT_EQ(info.Init(Fixture(L"none").c_str()), 0);
    EXPECT_EQ(info.GetFileName(), Fixture(L"none"));
    EXPECT_STREQ(info.GetLanguageCode(), L"");
    EXPECT_STREQ(info.GetKbdCodePage(), L"");
    ExpectEmpty(info);
    Str out = L"untouched";
    EXPECT_EQ(info.GetStringValue(L"\\CompanyName", out), 0);
    EXPECT_EQ(out, L"untouched");  // with nothing loaded the output is left as it was
}

TEST(VerInfo, AMissingFileAndAnEmptyObject) {
    CVerInfo missing((tavtest::BinDir() + L"\\no-such-file.dll").c_str());
    ExpectEmpty(missing);
    CVerInfo empty;
    ExpectEmpty(empty);
    EXPECT_TRUE(empty.GetFileName().empty());
}

TEST(VerInfo, StringValueOutsideTheFieldList) {
    ProbeVerInfo info(Fixture(L"translation").c_str());
    Str out;
    EXPECT_EQ(info.GetStringValue(L"\\InternalName", out), 1);
    EXPECT_EQ(out, L"translation");
    out = L"stale";
    EXPECT_EQ(info.GetStringValue(L"\\NoSuchString", out), 0);
    EXPECT_TRUE(out.empty());
}

// ---- damaged copies of the translation fixture -----------------------------------------------------------

// A copy of verfix_translation.dll whose version block can be changed before it is written to a folder of
// its own. Offsets are counted from the start of the block.
class DamagedCopy : public tavtest::VersionBlockBytes {
public:
    DamagedCopy() : VersionBlockBytes(tavtest::ReadFileBytes(Fixture(L"translation"))) {
        EXPECT_TRUE(found()) << "the fixture has no version block";
    }
    size_t Node(const wchar_t* key) const {
        const size_t at = VersionBlockBytes::Node(key);
        EXPECT_NE(at, npos) << "the fixture's version block has no key " << Str(key).c_str();
        return at;
    }
    std::wstring Write() const {
        const std::wstring path = dir_ / L"damaged.dll";
        EXPECT_TRUE(tavtest::WriteFileBytes(path, bytes()));
        return path;
    }

private:
    tavtest::TempDir dir_{L"verdamaged"};
};

TEST(VerInfo, AStringWhoseLengthRunsPastTheBlockLeavesTheObjectEmpty) {
    // Queries for later strings would walk from this one into memory past the block.
    DamagedCopy copy;
    copy.Put16(copy.Node(L"PrivateBuild"), 0xFFFF);
    ProbeVerInfo info;
    EXPECT_EQ(info.Init(copy.Write().c_str()), 0);
    ExpectEmpty(info);
    Str out = L"untouched";
    EXPECT_EQ(info.GetStringValue(L"\\ProductName", out), 0);
    EXPECT_EQ(out, L"untouched");
}

TEST(VerInfo, ABlockShorterThanItsChildrenLeavesTheObjectEmpty) {
    DamagedCopy copy;
    copy.Put16(0, copy.Node(L"StringFileInfo") + 8);  // the root now ends inside its first child's header
    CVerInfo info;
    EXPECT_EQ(info.Init(copy.Write().c_str()), 0);
    ExpectEmpty(info);
}

TEST(VerInfo, AKeyWithoutItsEndLeavesTheObjectEmpty) {
    // The block and the nodes on the way now end two units into the last string's key, which runs on.
    DamagedCopy copy;
    const size_t oldEnd = copy.Get16(0);
    const size_t last = copy.Node(L"ProductBuildNumber");
    const size_t end = last + 6 + 4;
    for (size_t node : {size_t{0}, copy.Node(L"StringFileInfo"), copy.Node(L"040704b0"), last})
        copy.Put16(node, static_cast<unsigned>(end - node));
    copy.Put16(last + 2, 0);  // no value
    for (size_t at = end; at < oldEnd; at += 2)
        copy.Put16(at, L'x');
    CVerInfo info;
    EXPECT_EQ(info.Init(copy.Write().c_str()), 0);
    ExpectEmpty(info);
}

TEST(VerInfo, ABlockInTheSixteenBitLayoutLeavesTheObjectEmpty) {
    // A character where the 32-bit layout has its type makes the platform read the block as 16-bit, and
    // convert its texts into room reckoned for a 16-bit file: past the end of the buffer sized for this one.
    DamagedCopy copy;
    copy.Put16(4, 'V');
    CVerInfo info;
    EXPECT_EQ(info.Init(copy.Write().c_str()), 0);
    ExpectEmpty(info);
}

// ---- 16-bit libraries -------------------------------------------------------------------------------------

// The version block of a 16-bit library with five strings in the table 040904E4 and that translation. With
// `textsLast` the string table comes after the translation, and `openLastText` leaves the last text without
// its NUL: the block then ends inside that text.
std::string SixteenBitBlock(bool textsLast = false, bool openLastText = false) {
    using tavtest::SixteenBitNode;
    using tavtest::SixteenBitText;
    const std::vector<std::string> strings = {
        SixteenBitNode("CompanyName", SixteenBitText("Sixteen Company")),
        SixteenBitNode("FileDescription", SixteenBitText("A 16-bit library  ")),
        SixteenBitNode("FileVersion", SixteenBitText("3.10.0.7")),
        SixteenBitNode("ProductVersion", SixteenBitText("3.10")),
        SixteenBitNode("ProductName",
                       openLastText ? std::string("Sixteen Product") : SixteenBitText("Sixteen Product")),
    };
    const std::string texts = SixteenBitNode("StringFileInfo", "", {SixteenBitNode("040904E4", "", strings)});
    const std::string translation =
        SixteenBitNode("VarFileInfo", "", {SixteenBitNode("Translation", std::string("\x09\x04\xE4\x04", 4))});
    return SixteenBitNode("VS_VERSION_INFO", tavtest::FixedFileInfo(0x0003000A, 0x00000007, 0x0003000A, 0),
                          textsLast ? std::vector<std::string>{translation, texts}
                                    : std::vector<std::string>{texts, translation});
}

// A 16-bit library with `block` as its version resource, written to a folder of its own.
class SixteenBitFile {
public:
    explicit SixteenBitFile(const std::string& block) {
        EXPECT_TRUE(tavtest::WriteFileBytes(path(), tavtest::SixteenBitLibrary(block)));
    }
    std::wstring path() const { return dir_ / L"sixteen.dll"; }

private:
    tavtest::TempDir dir_{L"ver16"};
};

TEST(VerInfo, AWellFormedSixteenBitLibraryIsRead) {
    for (bool textsLast : {false, true}) {
        SCOPED_TRACE(textsLast ? "the string table last" : "the translation last");
        SixteenBitFile file(SixteenBitBlock(textsLast));
        ASSERT_GT(GetFileVersionInfoSizeW(file.path().c_str(), nullptr), 0u) << "the platform does not load it";
        ProbeVerInfo info;
        EXPECT_EQ(info.Init(file.path().c_str()), 1);
        ExpectStringTable(info, L"0409", L"04e4");
        for (int read = 0; read < 2; ++read)  // each read converts the text again, to the same answer
            ExpectFields(info, {{VF_FileVersionNumber, L"3.10.0.7"},
                                {VF_ProductVersionNumber, L"3.10.0.0"},
                                {VF_CompanyName, L"Sixteen Company"},
                                {VF_FileDescription, L"A 16-bit library"},
                                {VF_FileVersion, L"3.10.0.7"},
                                {VF_ProductName, L"Sixteen Product"},
                                {VF_ProductVersion, L"3.10"}});
        CVerNum number;
        ASSERT_EQ(info.GetFileVersionNum(&number), 1);
        EXPECT_EQ(number.Compare(CVerNum(3, 10, 0, 7)), CVerNum::VERNUM_EQUAL);
        ASSERT_EQ(info.GetProductVersionNum(&number), 1);
        EXPECT_EQ(number.Compare(CVerNum(3, 10, 0, 0)), CVerNum::VERNUM_EQUAL);
        Str out;
        EXPECT_EQ(info.GetStringValue(L"\\CompanyName", out), 1);
        EXPECT_EQ(out, L"Sixteen Company");
    }
}

// The largest block TavUtil.dll asked the runtime for while the watch was on.
size_t g_largestAllocation = 0;
tavtest::ImportHook* g_mallocHook = nullptr;
void* __cdecl RecordMalloc(size_t size) {
    g_largestAllocation = std::max(g_largestAllocation, size);
    return g_mallocHook->original<void*(__cdecl*)(size_t)>()(size);
}

// A 16-bit block shorter than its fixed part: the platform's reckoning of the room it needs wraps to about
// 4 GiB. The object reads the file as one without data, and never asks for that much memory.
TEST(VerInfo, ASixteenBitBlockShorterThanItsFixedPartLeavesTheObjectEmptyWithoutAHugeBuffer) {
    const std::string block = tavtest::SixteenBitNode("VS_VERSION_INFO", "");
    ASSERT_LT(block.size(), 52u);
    SixteenBitFile file(block);
    ASSERT_GT(GetFileVersionInfoSizeW(file.path().c_str(), nullptr), 4u * 0x10000)
        << "the platform's reckoning no longer wraps for this block";
    ProbeVerInfo info;
    tavtest::ImportHook watch("msvcrt.dll", "malloc", reinterpret_cast<void*>(&RecordMalloc));
    ASSERT_TRUE(watch.installed());
    g_mallocHook = &watch;
    g_largestAllocation = 0;
    EXPECT_EQ(info.Init(file.path().c_str()), 0);
    EXPECT_LT(g_largestAllocation, size_t{1} << 20);
}

TEST(VerInfo, ASixteenBitRootLongerThanItsResourceLeavesTheObjectEmpty) {
    // The platform sizes the room for converted texts from the resource, and fills it up to an end it
    // reckons from the root's length: 200 bytes more would put that end past the buffer.
    std::string block = SixteenBitBlock();
    const size_t longer = block.size() + 200;
    block[0] = static_cast<char>(longer & 0xFF);
    block[1] = static_cast<char>(longer >> 8);
    SixteenBitFile file(block);
    ASSERT_GT(GetFileVersionInfoSizeW(file.path().c_str(), nullptr), 0u);
    CVerInfo info;
    EXPECT_EQ(info.Init(file.path().c_str()), 0);
    ExpectEmpty(info);
}

TEST(VerInfo, ASixteenBitTextWithoutItsEndLeavesTheObjectEmpty) {
    // The platform converts a 16-bit text up to its NUL: this one has none before the block ends.
    SixteenBitFile file(SixteenBitBlock(true, true));
    ASSERT_GT(GetFileVersionInfoSizeW(file.path().c_str(), nullptr), 0u);
    CVerInfo info;
    EXPECT_EQ(info.Init(file.path().c_str()), 0);
    ExpectEmpty(info);
}

TEST(VerInfo, ATextTypedAsBytesIsStillReadWhenItStaysInside) {
    // Only what runs past the block is refused: a string whose type says bytes is read as text, the same.
    DamagedCopy copy;
    const size_t node = copy.Node(L"PrivateBuild");
    ASSERT_EQ(copy.Get16(node + 4), 1u);
    copy.Put16(node + 4, 0);
    CVerInfo info;
    EXPECT_EQ(info.Init(copy.Write().c_str()), 1);
    Str out;
    EXPECT_EQ(info.GetField(VF_PrivateBuild, out), 1);
    EXPECT_EQ(out, L"private fixture");
    EXPECT_EQ(info.GetField(VF_SpecialBuild, out), 1);
    EXPECT_EQ(out, L"special fixture");
}

TEST(VerInfo, CopiesShareTheLoadedBlock) {
    Str company;
    CVerInfo copy;
    {
        CVerInfo original(Fixture(L"translation").c_str());
        CVerInfo constructed(original);
        copy = constructed;
        ASSERT_EQ(constructed.GetField(VF_CompanyName, company), 1);
    }  // the originals are gone; the block lives on in the copy
    Str out;
    EXPECT_EQ(copy.GetField(VF_CompanyName, out), 1);
    EXPECT_EQ(out, company);
    EXPECT_STREQ(copy.GetLanguageCode(), L"0407");
    EXPECT_EQ(copy.GetFileName(), Fixture(L"translation"));

    // Assignment releases the target's own block and takes the source's.
    CVerInfo other(Fixture(L"buildnumber").c_str());
    other = copy;
    EXPECT_EQ(other.GetField(VF_ProductBuildNumber, out), 1);
    EXPECT_EQ(out, L"9001");
    other = other;
    EXPECT_EQ(other.GetField(VF_CompanyName, out), 1);
    EXPECT_EQ(out, company);
    other = CVerInfo();
    EXPECT_EQ(other.GetField(VF_CompanyName, out), 0);
    EXPECT_EQ(copy.GetField(VF_CompanyName, out), 1);
}

// Reads what a raw VerQueryValueW gives for one string, trailing white space dropped; false when absent.
bool RawString(const std::vector<BYTE>& block, const std::wstring& query, std::wstring& text) {
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(block.data(), query.c_str(), &value, &length))
        return false;
    text = static_cast<const wchar_t*>(value);
    while (!text.empty() && iswspace(text.back()))
        text.pop_back();
    return true;
}

TEST(VerInfo, WinesKernel32MatchesRawQueries) {
    const wchar_t* path = L"C:\\windows\\system32\\kernel32.dll";
    DWORD size = GetFileVersionInfoSizeW(path, nullptr);
    ASSERT_GT(size, 0u);
    std::vector<BYTE> block(size);
    ASSERT_TRUE(GetFileVersionInfoW(path, 0, size, block.data()));
    WORD* translation = nullptr;
    UINT length = 0;
    ASSERT_TRUE(
        VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", reinterpret_cast<void**>(&translation), &length));
    ASSERT_EQ(length, 4u);
    wchar_t language[8], codePage[8];
    swprintf(language, 8, L"%04x", translation[0]);
    swprintf(codePage, 8, L"%04x", translation[1]);

    CVerInfo info(path);
    EXPECT_STREQ(info.GetLanguageCode(), language);
    EXPECT_STREQ(info.GetKbdCodePage(), codePage);

    std::wstring prefix = std::wstring(L"\\StringFileInfo\\") + language + codePage + L"\\";
    const wchar_t* keys[] = {L"Comments",          L"CompanyName",    L"FileDescription", L"FileVersion",
                             L"InternalName",      L"LegalCopyright", L"LegalTrademarks", L"OriginalFilename",
                             L"PrivateBuild",      L"ProductName",    L"ProductVersion",  L"SpecialBuild",
                             L"ProductBuildNumber"};
    VS_FIXEDFILEINFO* fixed = nullptr;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
    wchar_t fileText[64], productText[64];
    swprintf(fileText, 64, L"%u.%u.%u.%u", HIWORD(fixed->dwFileVersionMS), LOWORD(fixed->dwFileVersionMS),
             HIWORD(fixed->dwFileVersionLS), LOWORD(fixed->dwFileVersionLS));
    swprintf(productText, 64, L"%u.%u.%u.%u", HIWORD(fixed->dwProductVersionMS), LOWORD(fixed->dwProductVersionMS),
             HIWORD(fixed->dwProductVersionLS), LOWORD(fixed->dwProductVersionLS));

    std::vector<std::wstring> raw(13);
    std::vector<Expected> present{{VF_FileVersionNumber, fileText}, {VF_ProductVersionNumber, productText}};
    for (int i = 0; i < 13; ++i) {
        if (RawString(block, prefix + keys[i], raw[i]))
            present.push_back({static_cast<VERFIELD>(i + 2), raw[i].c_str()});
    }
    EXPECT_GE(present.size(), 5u);  // at least company, description and file version are there to compare
    ExpectFields(info, present);

    CVerNum file;
    ASSERT_EQ(info.GetFileVersionNum(&file), 1);
    EXPECT_EQ(file.GetMajor(), HIWORD(fixed->dwFileVersionMS));
    EXPECT_EQ(file.GetMinor(), LOWORD(fixed->dwFileVersionMS));
    EXPECT_EQ(file.GetFix(), HIWORD(fixed->dwFileVersionLS));
    EXPECT_EQ(file.GetBuild(), LOWORD(fixed->dwFileVersionLS));
    CVerNum product;
    ASSERT_EQ(info.GetProductVersionNum(&product), 1);
    EXPECT_EQ(product.GetMajor(), HIWORD(fixed->dwProductVersionMS));
    EXPECT_EQ(product.GetBuild(), LOWORD(fixed->dwProductVersionLS));
}

}  // namespace
