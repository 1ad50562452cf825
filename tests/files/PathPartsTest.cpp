// The split and compose rules, table by table. The routines are private to the library, so this test
// executable compiles its own copy of them.
#include "files/detail/PathParts.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using tav::files::detail::MakePath;
using tav::files::detail::PathParts;
using tav::files::detail::SplitPath;

struct SplitRow {
    const wchar_t* path;
    const wchar_t* drive;
    const wchar_t* dir;
    const wchar_t* file;
    const wchar_t* ext;
};

const SplitRow kSplitRows[] = {
    {L"D:\\dir\\sub\\file.txt", L"D:", L"\\dir\\sub\\", L"file", L".txt"},
    {L"\\\\server\\share\\f.doc", L"", L"\\\\server\\share\\", L"f", L".doc"},
    {L"\\\\server\\share", L"", L"\\\\server\\", L"share", L""},
    {L"D:/a/b/c.txt", L"D:", L"/a/b/", L"c", L".txt"},
    {L"a/b\\c", L"", L"a/b\\", L"c", L""},
    {L"D:\\a.b\\file", L"D:", L"\\a.b\\", L"file", L""},
    {L"C:\\x\\archive.tar.gz", L"C:", L"\\x\\", L"archive.tar", L".gz"},
    {L"name.", L"", L"", L"name", L"."},
    {L"noext", L"", L"", L"noext", L""},
    {L".hidden", L"", L"", L"", L".hidden"},
    {L"D:", L"D:", L"", L"", L""},
    {L"D:file.txt", L"D:", L"", L"file", L".txt"},
    {L"D:\\", L"D:", L"\\", L"", L""},
    {L"\\dir\\", L"", L"\\dir\\", L"", L""},
    {L"", L"", L"", L"", L""},
    {L"1:\\x", L"1:", L"\\", L"x", L""},
};

TEST(PathParts, SplitTable) {
    for (size_t i = 0; i < std::size(kSplitRows); ++i) {
        const SplitRow& row = kSplitRows[i];
        PathParts parts;
        EXPECT_TRUE(SplitPath(row.path, parts)) << "row " << i;
        EXPECT_EQ(parts.drive, row.drive) << "row " << i;
        EXPECT_EQ(parts.dir, row.dir) << "row " << i;
        EXPECT_EQ(parts.file, row.file) << "row " << i;
        EXPECT_EQ(parts.ext, row.ext) << "row " << i;
    }
}

// Each part holds at most capacity - 1 units; one more fails the split and empties every part.
TEST(PathParts, SplitPartsAtTheirCapacity) {
    std::wstring dir255 = L"\\" + std::wstring(253, L'd') + L"\\";
    std::wstring name255(255, L'f');
    std::wstring ext255 = L"." + std::wstring(254, L'e');
    struct Row {
        std::wstring path;
        bool fits;
    } rows[] = {
        {L"C:" + dir255 + L"f.x", true},     {L"C:" + dir255 + L"d\\f.x", false}, {L"C:\\" + name255 + L".x", true},
        {L"C:\\" + name255 + L"f.x", false}, {L"C:\\f" + ext255, true},           {L"C:\\f" + ext255 + L"e", false},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        PathParts parts;
        parts.drive = L"stale";
        EXPECT_EQ(SplitPath(rows[i].path, parts), rows[i].fits) << "row " << i;
        if (!rows[i].fits) {
            EXPECT_TRUE(parts.drive.empty() && parts.dir.empty() && parts.file.empty() && parts.ext.empty())
                << "row " << i;
        } else {
            EXPECT_EQ(parts.drive, L"C:") << "row " << i;
        }
    }
}

struct MakeRow {
    const wchar_t* drive;
    const wchar_t* dir;
    const wchar_t* file;
    const wchar_t* ext;
    const wchar_t* expected;
};

const MakeRow kMakeRows[] = {
    {L"D:", L"\\dir\\", L"a", L".txt", L"D:\\dir\\a.txt"},
    {L"D", L"\\dir", L"a", L"txt", L"D:\\dir\\a.txt"},
    {L"D:", L"/dir/", L"a", L"txt", L"D:/dir/a.txt"},
    {L"D:", L"\\dir/", L"a", L"txt", L"D:\\dir/a.txt"},
    {nullptr, L"\\\\server\\share", L"f", L"doc", L"\\\\server\\share\\f.doc"},
    {nullptr, nullptr, L"f", nullptr, L"f"},
    {L"", L"", L"", L"", L""},
    {nullptr, nullptr, nullptr, nullptr, L""},
    {L"D:", nullptr, L"a", L"txt", L"D:a.txt"},
    {L"D:", L"\\dir", nullptr, nullptr, L"D:\\dir\\"},
    {nullptr, L"dir", nullptr, L".", L"dir\\."},
    {nullptr, nullptr, L"a.b", L"c", L"a.b.c"},
};

TEST(PathParts, MakeTable) {
    for (size_t i = 0; i < std::size(kMakeRows); ++i) {
        const MakeRow& row = kMakeRows[i];
        std::wstring out = L"stale";
        EXPECT_TRUE(MakePath(out, row.drive, row.dir, row.file, row.ext)) << "row " << i;
        EXPECT_EQ(out, row.expected) << "row " << i;
    }
}

// The composed path holds at most 259 units.
TEST(PathParts, MakeAtThePathCapacity) {
    std::wstring out;
    std::wstring file(254, L'f');
    EXPECT_TRUE(MakePath(out, L"C:", L"\\", file.c_str(), L"x"));  // 2 + 1 + 254 + 2 = 259
    EXPECT_EQ(out.size(), 259u);
    EXPECT_FALSE(MakePath(out, L"C:", L"\\", file.c_str(), L"xy"));
    EXPECT_TRUE(out.empty());
}

}  // namespace
