// ForegroundAttentionGrabber against the real window system: the Alt tap, the input attachment to another
// process's foreground thread and its release.
#include "desktop/ForegroundAttentionGrabber.h"

#include "Desktop.h"
#include "RunningProgram.h"
#include "TestSupport.h"
#include "TestWindow.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace {

// Alt key messages that a foreground test window received: (message, virtual key).
std::vector<std::pair<UINT, WPARAM>> g_altMessages;

// A visible window of the test that records the Alt key messages it receives and handles them itself (a lone
// Alt would otherwise open its system menu's modal loop in the test's thread).
tavtest::TestWindow MakeRecorder() {
    g_altMessages.clear();
    return tavtest::TestWindow(
        [](UINT message, WPARAM wParam, LPARAM) {
            bool keyMessage =
                message == WM_KEYDOWN || message == WM_KEYUP || message == WM_SYSKEYDOWN || message == WM_SYSKEYUP;
            if (!keyMessage || (wParam != VK_MENU && wParam != VK_LMENU))
                return false;
            g_altMessages.emplace_back(message, wParam);
            return true;
        },
        true);
}

bool SawAltDown() {
    for (auto& [message, key] : g_altMessages)
        if (message == WM_SYSKEYDOWN || message == WM_KEYDOWN)
            return true;
    return false;
}

bool SawAltUp() {
    for (auto& [message, key] : g_altMessages)
        if (message == WM_SYSKEYUP || message == WM_KEYUP)
            return true;
    return false;
}

// Windows created and destroyed on this thread while it lives (a thread-local CBT hook): their class, style,
// title, the focus window of the input they were created on, and whether they are gone again.
class WindowCreations {
public:
    struct Created {
        HWND window;
        std::wstring className;
        LONG style;
        std::wstring title;
        HWND focusAtCreation;
        bool destroyed;
    };

    WindowCreations() {
        s_created.clear();
        m_hook = SetWindowsHookExW(WH_CBT, &WindowCreations::Proc, nullptr, GetCurrentThreadId());
    }
    ~WindowCreations() {
        if (m_hook)
            UnhookWindowsHookEx(m_hook);
    }
    WindowCreations(const WindowCreations&) = delete;
    WindowCreations& operator=(const WindowCreations&) = delete;

    bool hooked() const { return m_hook != nullptr; }
    // The windows of class `className` created so far.
    std::vector<Created> OfClass(const wchar_t* className) const {
        std::vector<Created> found;
        for (const Created& created : s_created)
            if (lstrcmpiW(created.className.c_str(), className) == 0)
                found.push_back(created);
        return found;
    }

private:
    static LRESULT CALLBACK Proc(int code, WPARAM wParam, LPARAM lParam) {
        HWND window = reinterpret_cast<HWND>(wParam);
        if (code == HCBT_CREATEWND) {
            const CREATESTRUCTW* create = reinterpret_cast<CBT_CREATEWNDW*>(lParam)->lpcs;
            wchar_t className[260] = {};
            GetClassNameW(window, className, 260);
            std::wstring title = create->lpszName && !IS_INTRESOURCE(create->lpszName) ? create->lpszName : L"";
            s_created.push_back({window, className, create->style, title, GetFocus(), false});
        } else if (code == HCBT_DESTROYWND) {
            for (Created& created : s_created)
                if (created.window == window)
                    created.destroyed = true;
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static std::vector<Created> s_created;
    HHOOK m_hook = nullptr;
};
std::vector<WindowCreations::Created> WindowCreations::s_created;

TEST(ForegroundAttentionGrabber, IsAScopeGuardThatCannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<ForegroundAttentionGrabber>);
    EXPECT_FALSE(std::is_copy_assignable_v<ForegroundAttentionGrabber>);
    EXPECT_TRUE(std::has_virtual_destructor_v<ForegroundAttentionGrabber>);
}

// Makes `recorder` the foreground and focus window, then makes a grabber, handles the messages its Alt tap
// brings and destroys it. False when the recorder could not be brought in front; `attached` tells whether the
// grabber attached.
bool GrabInFrontOf(const tavtest::TestWindow& recorder, bool& attached) {
    if (!tavtest::BringToFront(recorder.hwnd(), recorder.hwnd()))
        return false;
    g_altMessages.clear();
    WindowCreations creations;
    ForegroundAttentionGrabber grabber;
    attached = grabber.IsAttached();
    // Every key the grabber typed has arrived once the marker typed after it did.
    EXPECT_TRUE(tavtest::Settle(recorder.hwnd()));
    // Without an attachment no unlock window is made.
    EXPECT_TRUE(creations.hooked());
    EXPECT_TRUE(creations.OfClass(L"Button").empty());
    return true;
}

TEST(ForegroundAttentionGrabber, OwnForegroundAttachesNothingButStillTapsAlt) {
    tavtest::TestWindow recorder = MakeRecorder();
    bool attached = true;
    ASSERT_TRUE(GrabInFrontOf(recorder, attached));
    EXPECT_FALSE(attached);
    EXPECT_TRUE(SawAltDown());
    EXPECT_TRUE(SawAltUp());
    EXPECT_EQ(GetForegroundWindow(), recorder.hwnd());
    EXPECT_EQ(GetFocus(), recorder.hwnd());
}

// Runs in a copy of the test executable that Wine presents as Windows 98 (not the NT platform).
TEST(ForegroundAttentionGrabber, DISABLED_NoAltTapOutsideNt) {
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof(version);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    ASSERT_TRUE(GetVersionExW(&version));
#pragma GCC diagnostic pop
    ASSERT_EQ(version.dwPlatformId, static_cast<DWORD>(VER_PLATFORM_WIN32_WINDOWS));
    tavtest::TestWindow recorder = MakeRecorder();
    bool attached = true;
    ASSERT_TRUE(GrabInFrontOf(recorder, attached));
    EXPECT_FALSE(attached);
    EXPECT_FALSE(SawAltDown());
    EXPECT_FALSE(SawAltUp());
}

TEST(ForegroundAttentionGrabber, Windows98PlatformSendsNoAltTap) {
    tavtest::ChildResult child =
        tavtest::RunSelfAs({L"win98", {}, L""}, "ForegroundAttentionGrabber.DISABLED_NoAltTapOutsideNt");
    EXPECT_TRUE(tavtest::ChildPassed(child));
}

TEST(ForegroundAttentionGrabber, AttachesToAnotherProcessForegroundUntilDestroyed) {
    tavtest::FrontNotepad notepad;
    ASSERT_TRUE(notepad.Start());
    HWND edit = notepad.edit;
    ASSERT_NE(GetFocus(), edit);  // this thread's own input has no focus window of notepad's

    {
        WindowCreations creations;
        ASSERT_TRUE(creations.hooked());
        ForegroundAttentionGrabber grabber;
        EXPECT_TRUE(grabber.IsAttached());
        // The unlock: one hidden, untitled "Button" pop-up made on the attached input (its focus is notepad's
        // Edit) and closed again before the constructor returned.
        std::vector<WindowCreations::Created> buttons = creations.OfClass(L"Button");
        ASSERT_EQ(buttons.size(), 1u);
        EXPECT_EQ(buttons[0].style, static_cast<LONG>(WS_POPUP));
        EXPECT_EQ(buttons[0].title, L"");
        EXPECT_EQ(buttons[0].focusAtCreation, edit);
        EXPECT_TRUE(buttons[0].destroyed);
        // With the input attached, this thread shares notepad's input state: its focus is notepad's Edit.
        EXPECT_EQ(GetFocus(), edit);
        // The unlock window was closed at once: no "Button" pop-up of this process is left.
        EXPECT_TRUE(tavtest::TopLevelWindowsOf(GetCurrentProcessId(), L"Button").empty());
    }
    // Destroyed: the input is detached again.
    EXPECT_NE(GetFocus(), edit);
}

}  // namespace
