// cTextFile on files in a temporary folder: missing, empty, ten bytes, bytes kept raw.
#include <TavUtil.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>

namespace {

static_assert(!std::is_copy_constructible_v<cTextFile> && !std::is_copy_assignable_v<cTextFile>,
              "a cTextFile owns its file and buffer: copies are not allowed");
static_assert(std::has_virtual_destructor_v<cTextFile>);

TEST(TextFile, MissingFile) {
    tavtest::TempDir dir(L"textfile");
    cTextFile file;
    EXPECT_FALSE(file.Read((dir / L"missing.txt").c_str()));
    EXPECT_EQ(file.GetBuffer(), nullptr);
    EXPECT_EQ(file.GetSize(), 0u);
}

TEST(TextFile, TenBytesAreFollowedByAZeroByte) {
    tavtest::TempDir dir(L"textfile");
    const std::string bytes = "0123456789";
    ASSERT_TRUE(tavtest::WriteFileBytes(dir / L"ten.txt", bytes));
    cTextFile file;
    EXPECT_EQ(file.GetBuffer(), nullptr);
    ASSERT_TRUE(file.Read((dir / L"ten.txt").c_str()));
    EXPECT_EQ(file.GetSize(), 10u);
    ASSERT_NE(file.GetBuffer(), nullptr);
    EXPECT_EQ(std::memcmp(file.GetBuffer(), bytes.data(), 10), 0);
    EXPECT_EQ(file.GetBuffer()[10], '\0');
}

TEST(TextFile, BytesAreKeptAsStored) {
    tavtest::TempDir dir(L"textfile");
    const std::string bytes("\xEF\xBB\xBF"
                            "caf\xC3\xA9\r\nline\0two\r\n",
                            19);
    ASSERT_TRUE(tavtest::WriteFileBytes(dir / L"raw.txt", bytes));
    cTextFile file;
    ASSERT_TRUE(file.Read((dir / L"raw.txt").c_str()));
    ASSERT_EQ(file.GetSize(), bytes.size());
    EXPECT_EQ(std::string(file.GetBuffer(), file.GetSize()), bytes);
    EXPECT_EQ(file.GetBuffer()[bytes.size()], '\0');
}

TEST(TextFile, EmptyFileReadsAsFalse) {
    tavtest::TempDir dir(L"textfile");
    ASSERT_TRUE(tavtest::WriteFileBytes(dir / L"empty.txt", ""));
    cTextFile file;
    EXPECT_FALSE(file.Read((dir / L"empty.txt").c_str()));
    EXPECT_EQ(file.GetSize(), 0u);
    EXPECT_NE(file.GetBuffer(), nullptr);  // the buffer was allocated before the empty read
}

TEST(TextFile, TheFileStaysOpenForReadingUntilTheObjectGoes) {
    tavtest::TempDir dir(L"textfile");
    std::wstring path = dir / L"open.txt";
    ASSERT_TRUE(tavtest::WriteFileBytes(path, "abc"));
    {
        cTextFile file;
        ASSERT_TRUE(file.Read(path.c_str()));
        // Opened with read sharing only: a writer is refused while the object lives.
        tav::UniqueFile writer(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                           OPEN_EXISTING, 0, nullptr));
        EXPECT_FALSE(writer.valid());
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
    }
    EXPECT_TRUE(DeleteFileW(path.c_str()));
}

TEST(TextFile, GetNextLineIsNotProvided) {
    tavtest::TempDir dir(L"textfile");
    ASSERT_TRUE(tavtest::WriteFileBytes(dir / L"lines.txt", "first\r\nsecond\r\n"));
    cTextFile file;
    CStdStr<wchar_t> line = L"stale";
    EXPECT_FALSE(file.GetNextLine(line));
    EXPECT_TRUE(line.empty());
    ASSERT_TRUE(file.Read((dir / L"lines.txt").c_str()));
    line = L"stale";
    EXPECT_FALSE(file.GetNextLine(line));
    EXPECT_TRUE(line.empty());
}

TEST(TextFile, ASecondReadReplacesTheFirst) {
    tavtest::TempDir dir(L"textfile");
    ASSERT_TRUE(tavtest::WriteFileBytes(dir / L"one.txt", "one"));
    ASSERT_TRUE(tavtest::WriteFileBytes(dir / L"three.txt", "three"));
    cTextFile file;
    ASSERT_TRUE(file.Read((dir / L"one.txt").c_str()));
    ASSERT_TRUE(file.Read((dir / L"three.txt").c_str()));
    EXPECT_EQ(file.GetSize(), 5u);
    EXPECT_STREQ(file.GetBuffer(), "three");
    EXPECT_TRUE(DeleteFileW((dir / L"one.txt").c_str()));  // the first file is no longer held open
}

TEST(TextFile, AnEmptySecondReadLeavesNoSizeBeyondItsBuffer) {
    tavtest::TempDir dir(L"textfile");
    ASSERT_TRUE(tavtest::WriteFileBytes(dir / L"three.txt", "three"));
    ASSERT_TRUE(tavtest::WriteFileBytes(dir / L"empty.txt", ""));
    cTextFile file;
    ASSERT_TRUE(file.Read((dir / L"three.txt").c_str()));
    ASSERT_EQ(file.GetSize(), 5u);
    EXPECT_FALSE(file.Read((dir / L"empty.txt").c_str()));
    EXPECT_EQ(file.GetSize(), 0u);  // the new buffer holds one byte: a size of 5 would read past it
}

}  // namespace
