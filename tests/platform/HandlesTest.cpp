// The owner template and the guards of the platform layer: one release per value owned, the "no value"
// rule of each kind, moves that hand ownership over, and a caller's GetLastError left as it was.
#include <TavUtil.h>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

std::vector<int*> g_closed;

struct RecordClose {
    static void close(int* value) {
        g_closed.push_back(value);
        SetLastError(ERROR_ACCESS_DENIED);  // a closer that disturbs the error, as system calls do
    }
};
using UniqueCounted = tav::UniqueResource<int*, RecordClose>;

class OwnerTest : public ::testing::Test {
protected:
    void SetUp() override { g_closed.clear(); }
    int a_ = 0, b_ = 0;
};

TEST_F(OwnerTest, ReleasesOnceWhenItEnds) {
    { UniqueCounted owner(&a_); }
    EXPECT_EQ(g_closed, std::vector<int*>{&a_});
}

TEST_F(OwnerTest, EmptyOwnerReleasesNothing) {
    {
        UniqueCounted owner;
        EXPECT_FALSE(owner);
    }
    EXPECT_TRUE(g_closed.empty());
}

TEST_F(OwnerTest, MoveHandsOwnershipOver) {
    UniqueCounted first(&a_);
    UniqueCounted second(std::move(first));
    EXPECT_EQ(first.get(), nullptr);
    EXPECT_EQ(second.get(), &a_);
    UniqueCounted third(&b_);
    third = std::move(second);  // b is released, a changes hands
    EXPECT_EQ(g_closed, std::vector<int*>{&b_});
    EXPECT_EQ(third.get(), &a_);
    third.reset();
    EXPECT_EQ(g_closed, (std::vector<int*>{&b_, &a_}));
}

TEST_F(OwnerTest, ReleaseGivesUpWithoutClosing) {
    UniqueCounted owner(&a_);
    EXPECT_EQ(owner.release(), &a_);
    EXPECT_FALSE(owner.valid());
    owner.reset();
    EXPECT_TRUE(g_closed.empty());
}

TEST_F(OwnerTest, PutReleasesTheCurrentValueFirst) {
    UniqueCounted owner(&a_);
    int** slot = owner.put();
    EXPECT_EQ(g_closed, std::vector<int*>{&a_});
    *slot = &b_;
    EXPECT_EQ(owner.get(), &b_);
}

TEST_F(OwnerTest, ClosingKeepsTheCallersLastError) {
    UniqueCounted owner(&a_);
    SetLastError(ERROR_FILE_NOT_FOUND);
    owner.reset(&b_);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(g_closed, std::vector<int*>{&a_});
}

bool IsOpenHandle(HANDLE handle) {
    DWORD flags = 0;
    return GetHandleInformation(handle, &flags) != FALSE;
}

TEST(Handles, KernelHandleIsClosedByItsOwner) {
    HANDLE raw = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ASSERT_NE(raw, nullptr);
    {
        tav::UniqueHandle event(raw);
        EXPECT_TRUE(IsOpenHandle(event.get()));
    }
    EXPECT_FALSE(IsOpenHandle(raw));
}

TEST(Handles, FileKindsHaveInvalidHandleValueForNoValue) {
    tav::UniqueFile none;
    EXPECT_EQ(none.get(), INVALID_HANDLE_VALUE);
    EXPECT_FALSE(none);
    tav::UniqueFile missing(
        CreateFileW(L"C:\\no such folder\\no such file", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_FALSE(missing);
    EXPECT_FALSE(tav::UniqueSnapshot(nullptr));  // null is never a live handle of these kinds either
    EXPECT_EQ(missing.release(), INVALID_HANDLE_VALUE);
}

TEST(Handles, KeyOwnerWritesThroughPut) {
    tav::UniqueKey key;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, key.put()), ERROR_SUCCESS);
    EXPECT_TRUE(key);
}

TEST(Handles, LocalMemoryOwnerFreesWhatTheSystemAllocated) {
    int count = 0;
    tav::UniqueLocal<LPWSTR> argv(CommandLineToArgvW(L"one two", &count));
    ASSERT_TRUE(argv);
    EXPECT_EQ(count, 2);
    EXPECT_STREQ(argv.get()[1], L"two");
}

TEST(Guards, GlobalLockGuardUnlocksWhenItEnds) {
    tav::UniqueGlobal block(GlobalAlloc(GMEM_MOVEABLE, 16));
    ASSERT_TRUE(block);
    {
        tav::GlobalLockGuard locked(block.get());
        ASSERT_TRUE(locked);
        EXPECT_EQ(GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 1u);
        locked.get<char>()[0] = 'x';
    }
    EXPECT_EQ(GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 0u);
}

TEST(Guards, ComInitializationPairsEverySuccessfulCall) {
    {
        tav::ComInitialization outer;
        ASSERT_EQ(outer.result(), S_OK);
        tav::ComInitialization inner;
        EXPECT_EQ(inner.result(), S_FALSE);  // already initialised: still needs its own uninitialise
    }
    // Both were undone: the thread may now enter the other apartment model.
    tav::ComInitialization multithreaded(COINIT_MULTITHREADED);
    EXPECT_EQ(multithreaded.result(), S_OK);
}

TEST(Guards, FailedComInitializationIsNotUndone) {
    tav::ComInitialization apartment;
    ASSERT_EQ(apartment.result(), S_OK);
    {
        tav::ComInitialization other(COINIT_MULTITHREADED);
        EXPECT_EQ(other.result(), RPC_E_CHANGED_MODE);
    }
    // Had the failed guard uninitialised, this would be a first initialisation (S_OK).
    tav::ComInitialization again;
    EXPECT_EQ(again.result(), S_FALSE);
}

TEST(Guards, SelectionGuardRestoresThePreviousObject) {
    tav::UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
    ASSERT_TRUE(dc);
    HGDIOBJ before = GetCurrentObject(dc.get(), OBJ_BITMAP);
    tav::UniqueGdiObject bitmap(CreateCompatibleBitmap(dc.get(), 4, 4));
    ASSERT_TRUE(bitmap);
    {
        tav::SelectionGuard selection(dc.get(), bitmap.get());
        ASSERT_TRUE(selection.selected());
        EXPECT_EQ(GetCurrentObject(dc.get(), OBJ_BITMAP), bitmap.get());
    }
    EXPECT_EQ(GetCurrentObject(dc.get(), OBJ_BITMAP), before);
}

}  // namespace
