#include <TavUtil.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Str = CStdStr<wchar_t>;

std::vector<std::wstring> Cut(const wchar_t* text, int width) {
    std::vector<std::wstring> pieces;
    for (const Str& piece : StringCut(text, width))
        pieces.push_back(piece);
    return pieces;
}

struct CutCase {
    const wchar_t* text;
    int width;
    std::vector<std::wstring> expected;
};

TEST(StringCut, Table) {
    const CutCase cases[] = {
        {L"", 10, {L""}},
        {L" \n\r  ", 10, {L""}},
        {L"aaa bbb ccc", 7, {L"aaa bbb", L"ccc"}},
        {L"aaa bbb ccc", 11, {L"aaa bbb ccc"}},
        {L"  padded  ", 6, {L"padded"}},
        // A separator at exactly position `width` is a valid break.
        {L"abcde fgh", 5, {L"abcde", L"fgh"}},
        // A separator just past the width is not.
        {L"abcdef gh", 5, {L"ab...", L"gh"}},
        // A word longer than the width: width-3 units and the mark, the rest of the word dropped.
        {L"aaaaaaaaaaaaaaaaaaaa", 10, {L"aaaaaaa..."}},
        {L"aaaaaaaaaaaaaaaaaaaa tail", 10, {L"aaaaaaa...", L"tail"}},
        {L"line one\nline two", 9, {L"line one", L"line two"}},
        {L"a\r\nb", 1, {L"a", L"b"}},
        // The last separator among the first width+1 units decides the break.
        {L"a b c d e f", 5, {L"a b c", L"d e f"}},
        // Widths of 3 or less leave room for the mark only.
        {L"abcdef", 3, {L"..."}},
        {L"abcdef", 0, {L"..."}},
    };
    int row = 0;
    for (const CutCase& c : cases) {
        EXPECT_EQ(Cut(c.text, c.width), c.expected) << "row " << row;
        ++row;
    }
}

TEST(StringCut, LeavesInputUnchanged) {
    const Str text = L"  aaa bbb ccc  ";
    StringCut(text, 4);
    EXPECT_EQ(text, L"  aaa bbb ccc  ");
}

TEST(SetStringLength, TruncatesToLength) {
    CString s = L"abcdef";
    SetStringLength(s, 3);
    EXPECT_EQ(s.GetLength(), 3);
    EXPECT_TRUE(s == L"abc");
}

TEST(SetStringLength, StopsAtAnEmbeddedNul) {
    CString s(L"ab\0cdef", 7);
    ASSERT_EQ(s.GetLength(), 7);
    SetStringLength(s, 5);
    EXPECT_EQ(s.GetLength(), 2);
    EXPECT_TRUE(s == L"ab");
}

TEST(SetStringLength, ZeroEmpties) {
    CString s = L"abc";
    SetStringLength(s, 0);
    EXPECT_TRUE(s.IsEmpty());
}

TEST(Backslash, EnsureAppendsOnlyWhenMissing) {
    Str drive = L"D:";
    EnsureTrailingBackslash(drive);
    EXPECT_EQ(drive, L"D:\\");
    EnsureTrailingBackslash(drive);
    EXPECT_EQ(drive, L"D:\\");
    Str empty;
    EnsureTrailingBackslash(empty);
    EXPECT_EQ(empty, L"\\");
}

TEST(Backslash, StripRemovesOneButKeepsALoneRoot) {
    Str root = L"\\";
    StripTrailingBackslash(root);
    EXPECT_EQ(root, L"\\");
    Str twice = L"C:\\dir\\\\";
    StripTrailingBackslash(twice);
    EXPECT_EQ(twice, L"C:\\dir\\");
    Str none = L"C:\\dir";
    StripTrailingBackslash(none);
    EXPECT_EQ(none, L"C:\\dir");
    Str empty;
    StripTrailingBackslash(empty);
    EXPECT_TRUE(empty.empty());
}

TEST(Backslash, NotInverseOnEmptyString) {
    Str s;
    EnsureTrailingBackslash(s);
    StripTrailingBackslash(s);
    EXPECT_EQ(s, L"\\");  // the root stays
}

}  // namespace
