// The tests' own window (tests/support/TestWindow.h): every area's window tests stand on it, so what it
// promises is checked here.
#include "Desktop.h"
#include "TestWindow.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

namespace {

using tavtest::TestWindow;
using tavtest::WindowClass;

bool ClassExists(const wchar_t* name) {
    WNDCLASSW info = {};
    return GetClassInfoW(GetModuleHandleW(nullptr), name, &info) != FALSE;
}

static_assert(!std::is_copy_constructible_v<TestWindow> && !std::is_copy_assignable_v<TestWindow>);
static_assert(std::is_nothrow_move_constructible_v<TestWindow> && std::is_nothrow_move_assignable_v<TestWindow>);
static_assert(!std::is_copy_constructible_v<WindowClass> && std::is_nothrow_move_constructible_v<WindowClass>);

TEST(TestWindow, HandlerSeesTheMessagesAndTrueHandlesThem) {
    int pings = 0;
    TestWindow window([&](UINT message, WPARAM wParam, LPARAM) {
        if (message != WM_APP)
            return false;
        ++pings;
        return wParam == 1;  // handled: result 0; not handled: the default handling (also 0 for WM_APP)
    });
    ASSERT_NE(window.hwnd(), nullptr);
    EXPECT_EQ(SendMessageW(window.hwnd(), WM_APP, 1, 0), 0);
    EXPECT_EQ(SendMessageW(window.hwnd(), WM_APP, 0, 0), 0);
    EXPECT_EQ(pings, 2);
    // Not handled, WM_GETTEXTLENGTH reaches the default handling, which knows the title.
    EXPECT_EQ(SendMessageW(window.hwnd(), WM_GETTEXTLENGTH, 0, 0),
              static_cast<LRESULT>(std::wstring(TestWindow::Options().title).size()));
}

TEST(TestWindow, DestroysItsWindowAndTheLastOwnerUnregistersTheClass) {
    const wchar_t name[] = L"TavUtilTestWindowShared";
    ASSERT_FALSE(ClassExists(name));
    HWND first = nullptr, second = nullptr;
    {
        TestWindow::Options options;
        options.className = name;
        TestWindow a(options);
        {
            TestWindow b(options);
            first = a.hwnd();
            second = b.hwnd();
            ASSERT_NE(first, nullptr);
            ASSERT_NE(second, nullptr);
            EXPECT_TRUE(ClassExists(name));
        }
        EXPECT_FALSE(IsWindow(second));
        EXPECT_TRUE(IsWindow(first));
        EXPECT_TRUE(ClassExists(name)) << "the class went while a window of it was left";
    }
    EXPECT_FALSE(IsWindow(first));
    EXPECT_FALSE(ClassExists(name));
}

TEST(TestWindow, MovedOwnerKeepsTheWindowAndItsHandler) {
    int pings = 0;
    TestWindow from([&](UINT message, WPARAM, LPARAM) { return message == WM_APP && ++pings; });
    HWND window = from.hwnd();
    TestWindow to(std::move(from));
    EXPECT_EQ(from.hwnd(), nullptr);  // moved from, on purpose
    EXPECT_EQ(to.hwnd(), window);
    SendMessageW(window, WM_APP, 0, 0);
    EXPECT_EQ(pings, 1);
    TestWindow other;
    HWND replaced = other.hwnd();
    other = std::move(to);
    EXPECT_FALSE(IsWindow(replaced)) << "the window an assignment replaces goes";
    EXPECT_EQ(other.hwnd(), window);
    EXPECT_TRUE(IsWindow(window));
}

TEST(TestWindow, WindowTheTestDestroyedItselfIsNoLongerHeld) {
    TestWindow window;
    ASSERT_TRUE(DestroyWindow(window.hwnd()));
    EXPECT_EQ(window.hwnd(), nullptr);
}

TEST(TestWindow, ClassNamesTheSystemRefusesMakeNoWindow) {
    TestWindow::Options options;
    options.className = L"";
    TestWindow window(options);
    EXPECT_EQ(window.hwnd(), nullptr);
    EXPECT_FALSE(WindowClass(L"").registered());
    // A name of any units is the class's own: registered, shared, and gone with its last owner.
    const std::wstring hostile = L"\x00C9t\x00E9 #1\\ \x4E2D";
    {
        WindowClass one(hostile);
        WindowClass two(hostile);
        EXPECT_TRUE(one.registered());
        EXPECT_TRUE(two.registered());
        WindowClass moved(std::move(one));
        EXPECT_TRUE(moved.registered());
        EXPECT_FALSE(one.registered());
    }
    EXPECT_FALSE(ClassExists(hostile.c_str()));
}

TEST(TestWindow, OwnThreadMakesAndRunsTheWindowThere) {
    auto options = TestWindow::MessageOnly();
    options.ownThread = true;
    TestWindow window(options);
    ASSERT_NE(window.hwnd(), nullptr);
    EXPECT_NE(window.threadId(), GetCurrentThreadId());
    EXPECT_EQ(GetWindowThreadProcessId(window.hwnd(), nullptr), window.threadId());
    DWORD ranOn = 0;
    window.Run([&] { ranOn = GetCurrentThreadId(); });
    EXPECT_EQ(ranOn, window.threadId());
    HWND made = nullptr;
    window.Run(
        [&] { made = CreateWindowExW(0, L"Static", L"", 0, 0, 0, 0, 0, window.hwnd(), nullptr, nullptr, nullptr); });
    EXPECT_EQ(GetWindowThreadProcessId(made, nullptr), window.threadId());
}

TEST(TestWindow, EditChildTakesTheFocusAndItsHandlerSeesItsMessages) {
    int editPings = 0;
    auto options = TestWindow::Options();
    options.editChild = true;
    options.editHandler = [&](UINT message, WPARAM, LPARAM) { return message == WM_APP && ++editPings; };
    TestWindow window(options);
    ASSERT_NE(window.edit(), nullptr);
    EXPECT_EQ(GetParent(window.edit()), window.hwnd());
    ASSERT_TRUE(window.BringToFront());
    EXPECT_EQ(GetFocus(), window.edit());
    SetFocus(window.hwnd());
    EXPECT_EQ(GetFocus(), window.edit()) << "the window hands the focus on to its Edit";
    SendMessageW(window.edit(), WM_APP, 0, 0);
    EXPECT_EQ(editPings, 1);
    SetWindowTextW(window.edit(), L"typed");
    EXPECT_EQ(window.Text(), L"typed");
}

TEST(TestWindow, SystemClassWindowIsThatControlWithTheHandlerFirst) {
    int pings = 0;
    auto options = TestWindow::Options().Titled(L"an Edit").Styled(WS_OVERLAPPED);
    options.className = L"Edit";
    options.systemClass = true;
    TestWindow window(options, [&](UINT message, WPARAM, LPARAM) { return message == WM_APP && ++pings; });
    ASSERT_NE(window.hwnd(), nullptr);
    EXPECT_EQ(window.edit(), window.hwnd());
    EXPECT_EQ(window.Text(), L"an Edit");
    SendMessageW(window.hwnd(), WM_APP, 0, 0);
    EXPECT_EQ(pings, 1);
    wchar_t className[16] = {};
    GetClassNameW(window.hwnd(), className, 16);
    EXPECT_STREQ(className, L"Edit");
}

TEST(TestWindow, FrontOptionBringsItToTheForeground) {
    auto options = TestWindow::Options();
    options.front = true;
    TestWindow window(options);
    EXPECT_TRUE(window.InFront());
    EXPECT_TRUE(IsWindowVisible(window.hwnd()));
}

}  // namespace
