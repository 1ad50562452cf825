// CFileName under Wine: the getters and composers on real text, existence and directory creation in a
// temporary folder, and the module constructor for this executable and for TavUtil.dll.
#include <TavUtil.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Str = CStdStr<wchar_t>;

std::wstring Text(const CFileName& name) { return name.c_str(); }

TEST(FileName, GettersSplitByThePlatformRules) {
    struct Row {
        const wchar_t* path;
        const wchar_t* drive;
        const wchar_t* noDrive;
        const wchar_t* file;
        const wchar_t* ext;
        const wchar_t* path2;
    } rows[] = {
        {L"D:\\dir\\sub\\file.txt", L"D:", L"\\dir\\sub\\", L"file", L".txt", L"D:\\dir\\sub\\"},
        {L"\\\\server\\share\\f.doc", L"", L"\\\\server\\share\\", L"f", L".doc", L"\\\\server\\share\\"},
        {L"D:/a/b/c.txt", L"D:", L"/a/b/", L"c", L".txt", L"D:/a/b/"},
        {L"D:\\a.b\\file", L"D:", L"\\a.b\\", L"file", L"", L"D:\\a.b\\"},
        {L"archive.tar.gz", L"", L"", L"archive.tar", L".gz", L""},
        {L"D:\\x\\noext", L"D:", L"\\x\\", L"noext", L"", L"D:\\x\\"},
        {L"D:\\x\\trail.", L"D:", L"\\x\\", L"trail", L".", L"D:\\x\\"},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        const CFileName name(rows[i].path);
        EXPECT_EQ(name.GetDrive(), rows[i].drive) << "row " << i;
        EXPECT_EQ(name.GetPathNoDrive(), rows[i].noDrive) << "row " << i;
        EXPECT_EQ(name.GetFile(), rows[i].file) << "row " << i;
        EXPECT_EQ(name.GetExtension(), rows[i].ext) << "row " << i;
        EXPECT_EQ(name.GetPath(), rows[i].path2) << "row " << i;
        EXPECT_EQ(Text(name), rows[i].path) << "row " << i << ": a query changed the object";
    }
}

TEST(FileName, SplitGivesFolderAndFullFileName) {
    CFileName name(L"D:\\dir\\archive.tar.gz");
    Str path = L"x", file = L"y";
    name.Split(path, file);
    EXPECT_EQ(path, L"D:\\dir\\");
    EXPECT_EQ(file, L"archive.tar.gz");
}

TEST(FileName, OverlongPartGivesEmptyResults) {
    std::wstring longName = L"C:\\dir\\" + std::wstring(300, L'n') + L".txt";
    CFileName name(longName.c_str());
    EXPECT_EQ(Text(name), longName);  // the text itself is kept as given
    EXPECT_TRUE(name.GetDrive().empty());
    EXPECT_TRUE(name.GetPath().empty());
    EXPECT_TRUE(name.GetFile().empty());
    EXPECT_TRUE(name.GetExtension().empty());
}

TEST(FileName, ThreePartConstructorAtTheDotRuleBoundaries) {
    struct Row {
        const wchar_t* path;
        const wchar_t* file;
        const wchar_t* ext;
        const wchar_t* expected;
    } rows[] = {
        {L"D:\\dir", L"a", L"txt", L"D:\\dir\\a.txt"},
        {L"D:\\dir\\", L"a", L".txt", L"D:\\dir\\a.txt"},
        {L"D:/dir", L"a", L"txt", L"D:/dir\\a.txt"},
        {L"D:\\dir\\b.exe", L"a", L"txt", L"D:\\dir\\b.exe"},  // three-letter extension: complete
        {L"D:\\dir\\b.htm", nullptr, nullptr, L"D:\\dir\\b.htm"},
        {L"D:\\dir\\b.html", L"a", L"txt", L"D:\\dir\\b.html\\a.txt"},  // dot five from the end: a folder
        {L"D:\\", L"a", L"txt", L"D:\\"},                               // four characters or fewer
        {L"D:\\a", L"a", L"txt", L"D:\\a"},                             // n = 4, no dot: still unchanged
        {L"D:\\ab", L"a", L"txt", L"D:\\ab\\a.txt"},                    // n = 5, no dot at n - 4
        {L"a.exe", L"a", L"txt", L"a.exe"},                             // n = 5, dot at n - 4
        {L"ab.ex", L"a", L"txt", L"ab.ex\\a.txt"},                      // n = 5, dot at n - 3
        {L"", L"a", L"txt", L""},
        {L"D:\\dir", nullptr, nullptr, L"D:\\dir\\"},
    };
    for (size_t i = 0; i < std::size(rows); ++i)
        EXPECT_EQ(Text(CFileName(rows[i].path, rows[i].file, rows[i].ext)), rows[i].expected) << "row " << i;
}

TEST(FileName, ThreePartConstructorFailsEmptyWhenTooLong) {
    std::wstring folder = L"C:\\" + std::wstring(249, L'd');  // 252 units, 7 more with a file
    EXPECT_EQ(Text(CFileName(folder.c_str(), L"abc", L"tx")).size(), 259u);
    EXPECT_TRUE(Text(CFileName(folder.c_str(), L"abc", L"txt")).empty());
}

TEST(FileName, FromPathAndFileDropsTheLastComponent) {
    EXPECT_EQ(Text(CFileName::FromPathAndFile(L"D:\\dir\\sub", L"a", L"txt")), L"D:\\dir\\a.txt");
    EXPECT_EQ(Text(CFileName::FromPathAndFile(L"D:\\dir\\sub\\", L"a", L"txt")), L"D:\\dir\\sub\\a.txt");
    EXPECT_EQ(Text(CFileName::FromPathAndFile(L"\\\\srv\\share\\x.doc", L"y", L".log")), L"\\\\srv\\share\\y.log");
    EXPECT_EQ(Text(CFileName::FromPathAndFile(L"file.txt", L"a", L"b")), L"a.b");
}

TEST(FileName, SetFilenameKeepsDriveAndDirectory) {
    CFileName name(L"D:\\dir\\old.txt");
    name.SetFilename(L"new", L"log");
    EXPECT_EQ(Text(name), L"D:\\dir\\new.log");
    name.SetFilename(L"plain", nullptr);
    EXPECT_EQ(Text(name), L"D:\\dir\\plain");
    name.SetFilename(nullptr, nullptr);
    EXPECT_EQ(Text(name), L"D:\\dir\\");
    CFileName unc(L"\\\\srv\\share\\x.doc");
    unc.SetFilename(L"y", L".doc");
    EXPECT_EQ(Text(unc), L"\\\\srv\\share\\y.doc");
}

TEST(FileName, SetFilenameTooLongEmptiesTheText) {
    CFileName name(L"C:\\dir\\old.txt");
    std::wstring longFile(255, L'f');
    name.SetFilename(longFile.c_str(), L"txt");
    EXPECT_TRUE(Text(name).empty());
}

// A path whose split fails has no folder to keep: composing in it gives an empty text, never a name
// relative to the current folder.
TEST(FileName, ComposingInAPathWithAnOverlongPartIsEmpty) {
    std::wstring overlong = L"C:\\dir\\" + std::wstring(300, L'n') + L".txt";
    CFileName name(overlong.c_str());
    name.SetFilename(L"a", L"txt");
    EXPECT_EQ(Text(name), L"");
    EXPECT_EQ(Text(CFileName::FromPathAndFile(overlong.c_str(), L"a", L"txt")), L"");
    std::wstring overlongFolder = L"C:\\" + std::wstring(300, L'd') + L"\\x.txt";
    EXPECT_EQ(Text(CFileName::FromPathAndFile(overlongFolder.c_str(), L"a", L"txt")), L"");
}

TEST(FileName, AppendDirectoryAddsOneSeparatorAndNoTrailingOne) {
    struct Row {
        const wchar_t* path;
        const wchar_t* dir;
        const wchar_t* expected;
    } rows[] = {
        {L"D:\\dir", L"sub", L"D:\\dir\\sub"},
        {L"D:\\dir\\", L"sub", L"D:\\dir\\sub"},
        {L"D:/dir/", L"sub", L"D:/dir/sub"},
        {L"D:\\dir", L"a.b", L"D:\\dir\\a.b"},
        {L"", L"sub", L"sub"},
        {L"D:\\dir", nullptr, L"D:\\dir\\"},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        CFileName name(rows[i].path);
        name.AppendDirectory(rows[i].dir);
        EXPECT_EQ(Text(name), rows[i].expected) << "row " << i;
    }
}

// The static helpers: StripExtension searches the last dot in the whole text (a dot in a folder name
// counts, deliberately); StripPath and StripTrailingSeparator honour only the backslash.
TEST(FileName, StripHelpersTable) {
    struct Row {
        bool (*strip)(Str&);
        const wchar_t* input;
        bool result;
        const wchar_t* after;
    } rows[] = {
        {&CFileName::StripExtension, L"D:\\a.b\\file", true, L"D:\\a"},
        {&CFileName::StripExtension, L"D:\\dir\\file", false, L"D:\\dir\\file"},
        {&CFileName::StripExtension, L"archive.tar.gz", true, L"archive.tar"},
        {&CFileName::StripPath, L"D:/a/b", false, L"D:/a/b"},
        {&CFileName::StripPath, L"D:\\a\\b.txt", true, L"b.txt"},
        {&CFileName::StripPath, L"D:\\a\\", true, L""},
        {&CFileName::StripTrailingSeparator, L"D:/a/b", false, L"D:/a/b"},
        {&CFileName::StripTrailingSeparator, L"D:/a/b/", false, L"D:/a/b/"},
        {&CFileName::StripTrailingSeparator, L"D:\\a\\", true, L"D:\\a"},
        {&CFileName::StripTrailingSeparator, L"D:\\a\\b", false, L"D:\\a\\b"},
        {&CFileName::StripTrailingSeparator, L"\\", true, L""},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        Str text = rows[i].input;
        EXPECT_EQ(rows[i].strip(text), rows[i].result) << "row " << i;
        EXPECT_EQ(text, rows[i].after) << "row " << i;
    }
}

TEST(FileName, StripTrailingSeparatorOnEmptyThrowsOutOfRange) {
    Str empty;
    EXPECT_THROW(CFileName::StripTrailingSeparator(empty), std::out_of_range);
    Str none;
    EXPECT_FALSE(CFileName::StripPath(none));  // the other helpers answer false
    EXPECT_FALSE(CFileName::StripExtension(none));
}

TEST(FileName, CopiesAreDeep) {
    CFileName original(L"D:\\dir\\a.txt");
    CFileName copy(original);
    CFileName assigned(L"x");
    assigned = original;
    original.SetFilename(L"b", L"txt");
    EXPECT_EQ(Text(copy), L"D:\\dir\\a.txt");
    EXPECT_EQ(Text(assigned), L"D:\\dir\\a.txt");
    EXPECT_EQ(Text(original), L"D:\\dir\\b.txt");
    CFileName& self = assigned;
    assigned = self;
    EXPECT_EQ(Text(assigned), L"D:\\dir\\a.txt");
}

TEST(FileName, ConvertsToItsText) {
    CFileName name(L"D:\\dir\\a.txt");
    const wchar_t* raw = name;
    const Str& text = name;
    EXPECT_STREQ(raw, L"D:\\dir\\a.txt");
    EXPECT_EQ(text, L"D:\\dir\\a.txt");
    EXPECT_EQ(CFileName(static_cast<const wchar_t*>(nullptr)).c_str(), std::wstring());
}

TEST(FileName, ExistenceOfFilesFoldersAndPatterns) {
    tavtest::TempDir dir(L"fnexist");
    ASSERT_TRUE(tavtest::WriteFileBytes(dir / L"present.txt", "x"));
    EXPECT_TRUE(CFileName::FileExists((dir / L"present.txt").c_str()));
    EXPECT_TRUE(CFileName((dir / L"present.txt").c_str()).Exists());
    EXPECT_TRUE(CFileName::FileExists(dir.path().c_str()));
    EXPECT_TRUE(CFileName::FileExists((dir / L"*.txt").c_str()));
    EXPECT_FALSE(CFileName::FileExists((dir / L"*.doc").c_str()));
    EXPECT_FALSE(CFileName::FileExists((dir / L"missing.txt").c_str()));
    EXPECT_FALSE(CFileName((dir / L"missing\\x.txt").c_str()).Exists());
    EXPECT_FALSE(CFileName::FileExists(nullptr));
}

TEST(FileName, CreateDirectoryClimbsAndSaysZeroWhenItExists) {
    tavtest::TempDir dir(L"fnmkdir");
    ASSERT_TRUE(CreateDirectoryW((dir / L"x").c_str(), nullptr));
    CFileName target((dir / L"x\\y\\z\\f.txt").c_str());
    EXPECT_NE(target.CreateDirectoryW(1), 0);
    EXPECT_TRUE(CFileName::FileExists((dir / L"x\\y").c_str()));
    EXPECT_TRUE(CFileName::FileExists((dir / L"x\\y\\z").c_str()));
    EXPECT_FALSE(CFileName::FileExists((dir / L"x\\y\\z\\f.txt").c_str()));  // the file part is ignored
    EXPECT_EQ(target.CreateDirectoryW(1), 0);
    EXPECT_EQ(target.CreateDirectoryW(0), 0);
}

TEST(FileName, CreateDirectoryWithoutRecursionNeedsTheParent) {
    tavtest::TempDir dir(L"fnmkdir");
    CFileName deep((dir / L"a\\b\\").c_str());
    EXPECT_EQ(deep.CreateDirectoryW(0), 0);
    EXPECT_FALSE(CFileName::FileExists((dir / L"a").c_str()));
    CFileName folder((dir / L"a\\").c_str());  // a folder ends in a backslash to be created itself
    EXPECT_NE(folder.CreateDirectoryW(0), 0);
    EXPECT_NE(deep.CreateDirectoryW(0), 0);
    EXPECT_TRUE(CFileName::FileExists((dir / L"a\\b").c_str()));
}

// Without a drive letter the climb ends at a lone backslash, which is its own parent: a folder that
// cannot be created gives 0 instead of climbing forever, doubled separators included.
TEST(FileName, CreateDirectoryWithoutADriveEndsItsClimb) {
    for (const wchar_t* path : {L"\\tav<bad>\\d\\f.txt", L"\\\\tav<bad>\\share\\d\\f.txt", L"tav<bad>\\d\\f.txt",
                                L"\\tav<bad>\\\\d\\f.txt", L"\\\\f.txt", L"\\tav<bad>\\d\\\\f.txt"}) {
        CFileName name(path);
        EXPECT_EQ(name.CreateDirectoryW(1), 0) << Text(name);
    }
}

// The names in a folder, sorted ("." and ".." left out).
std::vector<std::wstring> FolderEntries(const std::wstring& folder) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return names;
    do {
        const std::wstring name = found.cFileName;
        if (name != L"." && name != L"..")
            names.push_back(name);
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
}

// A doubled separator before the file name leaves the folder with a backslash at its end: its parent's
// folder is shorter, so the climb goes on and creates every missing folder. The last step asks for the
// folder with its backslash, which exists by then, so the result is 0.
TEST(FileName, CreateDirectoryWithADoubledSeparatorOnADriveCreatesTheFolders) {
    tavtest::TempDir dir(L"fnmkdir");
    ASSERT_EQ(dir.path().compare(1, 2, L":\\"), 0) << "a drive path: " << tavtest::Narrow(dir.path());
    ASSERT_TRUE(CreateDirectoryW((dir / L"x").c_str(), nullptr));
    CFileName target((dir / L"x\\a\\b\\\\f.txt").c_str());
    EXPECT_EQ(target.CreateDirectoryW(1), 0);
    EXPECT_EQ(FolderEntries(dir / L"x"), std::vector<std::wstring>{L"a"});
    EXPECT_EQ(FolderEntries(dir / L"x\\a"), std::vector<std::wstring>{L"b"});
    EXPECT_EQ(FolderEntries(dir / L"x\\a\\b"), std::vector<std::wstring>{});
    EXPECT_EQ(target.CreateDirectoryW(1), 0);  // everything is there: nothing more is created
    EXPECT_EQ(FolderEntries(dir / L"x\\a\\b"), std::vector<std::wstring>{});
}

TEST(FileName, ModuleConstructorForThisExecutableAndTheDll) {
    std::wstring bin = tavtest::BinDir() + L"\\";
    EXPECT_EQ(Text(CFileName()), bin);
    EXPECT_EQ(Text(CFileName(CFileName::ExeInstance, nullptr, nullptr)), bin);
    EXPECT_TRUE(CFileName(CFileName::ExeInstance, L"files_tests", L"exe").Exists());
    EXPECT_EQ(Text(CFileName(CFileName::ExeInstance, L"files_tests", L".exe")), tavtest::SelfPath());

    HMODULE dll = GetModuleHandleW(L"TavUtil.dll");
    ASSERT_NE(dll, nullptr);
    CFileName library(dll, L"TavUtil", L"dll");
    EXPECT_EQ(Text(library), bin + L"TavUtil.dll");
    EXPECT_TRUE(library.Exists());
    EXPECT_EQ(Text(CFileName(dll, nullptr, nullptr)), bin);
}

// Run by the next test from a copy of this executable in a folder with a blank in its name.
TEST(FileNameChild, DISABLED_PrintDefaultConstructed) {
    printf("default=[%s]\n", tavtest::Narrow(Text(CFileName())).c_str());
}

TEST(FileName, DefaultConstructorInAFolderWithBlanks) {
    tavtest::TempDir dir(L"fnexe");
    std::wstring folder = dir / L"Program Files";
    ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
    folder += L"\\X";
    ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
    ASSERT_TRUE(CopyFileW(tavtest::SelfPath().c_str(), (folder + L"\\app.exe").c_str(), FALSE));
    ASSERT_TRUE(CopyFileW((tavtest::BinDir() + L"\\TavUtil.dll").c_str(), (folder + L"\\TavUtil.dll").c_str(), FALSE));
    tavtest::ChildResult run = tavtest::RunProgram(L"\"" + folder +
                                                   L"\\app.exe\" --gtest_also_run_disabled_tests "
                                                   L"--gtest_filter=FileNameChild.DISABLED_PrintDefaultConstructed");
    EXPECT_TRUE(tavtest::ChildPassed(run));
    EXPECT_NE(run.output.find("default=[" + tavtest::Narrow(folder) + "\\]"), std::string::npos) << run.output;
}

}  // namespace
