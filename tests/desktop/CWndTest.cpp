#include "TestWindow.h"

#include <TavUtil.h>

#include <gtest/gtest.h>

namespace {

TEST(CWnd, HoldsAHandleItDoesNotOwn) {
    tavtest::TestWindow window;
    {
        CWnd wnd;
        EXPECT_EQ(wnd.GetSafeHwnd(), nullptr);
        EXPECT_TRUE(wnd.Attach(window.hwnd()));
        EXPECT_EQ(wnd.GetSafeHwnd(), window.hwnd());
        EXPECT_EQ(static_cast<HWND>(wnd), window.hwnd());
        EXPECT_EQ(wnd.Detach(), window.hwnd());
        EXPECT_EQ(wnd.m_hWnd, nullptr);
        CWnd other(window.hwnd());
        EXPECT_EQ(other.GetSafeHwnd(), window.hwnd());
    }
    EXPECT_TRUE(IsWindow(window.hwnd()));  // not destroyed with the objects
}

TEST(CWnd, MainWindowIsWhatTheHostSet) {
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
    CWnd main;
    tav::SetMainWnd(&main);
    EXPECT_EQ(AfxGetMainWnd(), &main);
    tav::SetMainWnd(nullptr);
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
}

}  // namespace
