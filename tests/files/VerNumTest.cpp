// CVerNum: construction, parsing and comparison, table by table.
#include <TavUtil.h>

#include <gtest/gtest.h>

namespace {

struct Parsed {
    const wchar_t* text;
    unsigned short major, minor, fix, build;
    int valid;
};

const Parsed kParseRows[] = {
    {L"1.2.3.4", 1, 2, 3, 4, 1},
    {L"5.10.1234", 5, 10, 1234, 0, 1},
    {L"", 0, 0, 0, 0, 0},
    {L"x", 0, 0, 0, 0, 1},
    {L"1..2", 1, 2, 0, 0, 1},
    {L"..1...2..", 1, 2, 0, 0, 1},
    {L"...", 0, 0, 0, 0, 0},
    {L"70000.1", 4464, 1, 0, 0, 1},  // low 16 bits of 70000
    {L"65535.65536", 65535, 0, 0, 0, 1},
    {L"-1.+2", 65535, 2, 0, 0, 1},       // signs accepted; -1 keeps its low 16 bits
    {L" 7. \t8.9 .10", 7, 8, 9, 10, 1},  // leading blanks skipped, a trailing one stops the number
    {L"1.2.3.4.5.6", 1, 2, 3, 4, 1},     // tokens after the fourth are ignored
    {L"3a.4b", 3, 4, 0, 0, 1},           // conversion stops at the first non-digit
    {L"a.7", 0, 7, 0, 0, 1},
    {L"99999999999.1", 65535, 1, 0, 0, 1},  // the runtime clamps to INT_MAX, whose low 16 bits are 0xFFFF
    {L"-99999999999", 0, 0, 0, 0, 1},       // clamped to INT_MIN, whose low 16 bits are 0
};

TEST(VerNum, SetTable) {
    for (size_t i = 0; i < std::size(kParseRows); ++i) {
        const Parsed& row = kParseRows[i];
        CVerNum v(L"9.9.9.9");  // Set starts from zero whatever was there
        v.Set(row.text);
        EXPECT_EQ(v.GetMajor(), row.major) << "row " << i;
        EXPECT_EQ(v.GetMinor(), row.minor) << "row " << i;
        EXPECT_EQ(v.GetFix(), row.fix) << "row " << i;
        EXPECT_EQ(v.GetBuild(), row.build) << "row " << i;
        EXPECT_EQ(v.IsValid(), row.valid) << "row " << i;
    }
}

TEST(VerNum, TextConstructorAndNullText) {
    CVerNum v(L"5.10.1234");
    EXPECT_EQ(v.GetMajor(), 5);
    EXPECT_EQ(v.GetMinor(), 10);
    EXPECT_EQ(v.GetFix(), 1234);  // the third number is the fix
    EXPECT_EQ(v.GetBuild(), 0);   // the fourth the build
    EXPECT_EQ(v.IsValid(), 1);
    CVerNum none(static_cast<const wchar_t*>(nullptr));
    EXPECT_EQ(none.IsValid(), 0);
}

TEST(VerNum, ConstructorsAndSetters) {
    CVerNum empty;
    EXPECT_EQ(empty.IsValid(), 0);
    EXPECT_EQ(empty.GetMajor() + empty.GetMinor() + empty.GetFix() + empty.GetBuild(), 0);
    CVerNum four(1, 2, 3, 4);
    EXPECT_EQ(four.IsValid(), 1);
    EXPECT_EQ(four.GetFix(), 3);
    EXPECT_EQ(four.GetBuild(), 4);

    CVerNum a, b, c, d;
    a.SetMajor(7);
    EXPECT_EQ(a.IsValid(), 1);
    EXPECT_EQ(a.GetMajor(), 7);
    b.SetMinor(8);
    EXPECT_EQ(b.IsValid(), 1);
    EXPECT_EQ(b.GetMinor(), 8);
    c.SetFix(9);
    EXPECT_EQ(c.IsValid(), 1);
    EXPECT_EQ(c.GetFix(), 9);
    d.SetBuild(65535);
    EXPECT_EQ(d.IsValid(), 1);
    EXPECT_EQ(d.GetBuild(), 65535);
}

TEST(VerNum, AssignmentCopiesAllFiveFields) {
    CVerNum target(1, 1, 1, 1);
    CVerNum source;
    target = source;
    EXPECT_EQ(target.IsValid(), 0);
    EXPECT_EQ(target.GetMajor(), 0);
    target = CVerNum(4, 3, 2, 1);
    EXPECT_EQ(target.IsValid(), 1);
    EXPECT_EQ(target.GetMajor(), 4);
    EXPECT_EQ(target.GetBuild(), 1);
}

struct Comparison {
    const wchar_t* self;
    const wchar_t* other;
    CVerNum::VERNUM_COMPARISON expected;
};

const Comparison kCompareRows[] = {
    {L"2.0.0.0", L"1.9.9.9", CVerNum::VERNUM_NEWER_MAJOR},
    {L"1.2.3.4", L"1.2.3.4", CVerNum::VERNUM_EQUAL},
    {L"1.2.3.4", L"1.2.3.5", CVerNum::VERNUM_OLDER},
    {L"1.2.4.0", L"1.2.3.9", CVerNum::VERNUM_NEWER_FIX},
    {L"1.3.0.0", L"1.2.9.9", CVerNum::VERNUM_NEWER_MINOR},
    {L"1.2.3.5", L"1.2.3.4", CVerNum::VERNUM_NEWER_BUILD},
    {L"1.9.9.9", L"2.0.0.0", CVerNum::VERNUM_OLDER},
    {L"1.2.9.9", L"1.3.0.0", CVerNum::VERNUM_OLDER},
    {L"1.2.3.9", L"1.2.4.0", CVerNum::VERNUM_OLDER},
    {L"0.0.0.0", L"0.0.0.0", CVerNum::VERNUM_EQUAL},
    {L"65535.0.0.0", L"65534.65535.65535.65535", CVerNum::VERNUM_NEWER_MAJOR},
};

TEST(VerNum, CompareCoversEveryResult) {
    for (size_t i = 0; i < std::size(kCompareRows); ++i) {
        CVerNum self(kCompareRows[i].self);
        EXPECT_EQ(self.Compare(CVerNum(kCompareRows[i].other)), kCompareRows[i].expected) << "row " << i;
    }
    EXPECT_EQ(CVerNum::VERNUM_OLDER, 0);
    EXPECT_EQ(CVerNum::VERNUM_EQUAL, 1);
    EXPECT_EQ(CVerNum::VERNUM_NEWER_BUILD, 2);
    EXPECT_EQ(CVerNum::VERNUM_NEWER_FIX, 3);
    EXPECT_EQ(CVerNum::VERNUM_NEWER_MINOR, 4);
    EXPECT_EQ(CVerNum::VERNUM_NEWER_MAJOR, 5);
}

TEST(VerNum, CompareIgnoresTheValidFlag) {
    CVerNum invalid;            // 0.0.0.0, not valid
    CVerNum valid(0, 0, 0, 0);  // 0.0.0.0, valid
    EXPECT_EQ(invalid.Compare(valid), CVerNum::VERNUM_EQUAL);
    EXPECT_EQ(valid.Compare(invalid), CVerNum::VERNUM_EQUAL);
}

}  // namespace
