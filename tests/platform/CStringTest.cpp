#include <TavUtil.h>

#include <gtest/gtest.h>

#include "TestWindow.h"

namespace {

TEST(CString, BufferAccessAndRelease) {
    CString s = L"hello";
    wchar_t* buffer = s.GetBuffer(32);
    wcscpy(buffer, L"hi");
    s.ReleaseBuffer();
    EXPECT_EQ(s.GetLength(), 2);
    EXPECT_TRUE(s == L"hi");

    buffer = s.GetBufferSetLength(4);
    buffer[0] = L'a';
    buffer[1] = L'b';
    buffer[2] = L'c';
    buffer[3] = L'd';
    s.ReleaseBuffer(3);
    EXPECT_TRUE(s == L"abc");
}

TEST(CString, LoadStringFromHostThenLibrary) {
    CString s;
    EXPECT_TRUE(s.LoadString(201));
    EXPECT_TRUE(s == L"From the host executable");
    EXPECT_FALSE(s.LoadString(4711));
    EXPECT_TRUE(s.IsEmpty());
    CString byId = MAKEINTRESOURCEW(201);
    EXPECT_TRUE(byId == L"From the host executable");
}

TEST(CString, FormatIsWide) {
    CString s;
    s.Format(L"%s:%d", L"n", 7);
    EXPECT_TRUE(s == L"n:7");
}

TEST(CString, EditingMembers) {
    CString s = L"  Alpha Beta  ";
    s.Trim();
    EXPECT_TRUE(s == L"Alpha Beta");
    EXPECT_EQ(s.Find(L'B'), 6);
    EXPECT_EQ(s.ReverseFind(L'a'), 9);
    EXPECT_TRUE(s.Left(5) == L"Alpha");
    EXPECT_TRUE(s.Right(4) == L"Beta");
    EXPECT_TRUE(s.Mid(6) == L"Beta");
    EXPECT_EQ(s.Replace(L"a", L"A"), 2);
    EXPECT_TRUE(s == L"AlphA BetA");
    EXPECT_EQ(s.CompareNoCase(L"alpha beta"), 0);
    s.MakeUpper();
    EXPECT_TRUE(s == L"ALPHA BETA");
    CString joined = s + L"!" + CString(L'?', 2);
    EXPECT_TRUE(joined == L"ALPHA BETA!??");
}

// The pump hands one message to its window procedure and answers FALSE on WM_QUIT.
TEST(MessagePump, DispatchesAndStopsAtQuit) {
    int received = 0;
    tavtest::TestWindow window(tavtest::TestWindow::MessageOnly(), [&](UINT message, WPARAM, LPARAM) {
        if (message == WM_APP + 1)
            ++received;
        return false;
    });
    ASSERT_NE(window.hwnd(), nullptr);
    PostMessageW(window.hwnd(), WM_APP + 1, 0, 0);
    EXPECT_TRUE(tav::PumpMessage());
    EXPECT_EQ(received, 1);
    PostQuitMessage(0);
    EXPECT_FALSE(tav::PumpMessage());
}

TEST(Handles, OwnerClosesAndKeepsLastError) {
    HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ASSERT_NE(event, nullptr);
    {
        tav::UniqueHandle owner(event);
        tav::UniqueHandle moved(std::move(owner));
        EXPECT_FALSE(owner.valid());
        EXPECT_TRUE(moved.valid());
        SetLastError(1234);
    }
    EXPECT_EQ(GetLastError(), 1234u);
    DWORD flags = 0;
    EXPECT_FALSE(GetHandleInformation(event, &flags));  // closed

    tav::UniqueFile none;
    EXPECT_EQ(none.get(), INVALID_HANDLE_VALUE);
    EXPECT_FALSE(none.valid());
}

}  // namespace
