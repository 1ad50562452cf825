// ForegroundAttentionGrabber against the real window system: the Alt tap, the input attachment to another
// process's foreground thread and its release.
#include "desktop/ForegroundAttentionGrabber.h"

#include "RunningProgram.h"
#include "TestSupport.h"
#include "TestWindow.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace {

using tavtest::PumpFor;

// Alt key messages that a foreground test window received: (message, virtual key).
std::vector<std::pair<UINT, WPARAM>> g_altMessages;

// A visible window of the test that records the Alt key messages it receives and handles them itself (a lone
// Alt would otherwise open its system menu's modal loop in the test's thread).
desktoptest::TestWindow MakeRecorder() {
    g_altMessages.clear();
    return desktoptest::TestWindow(
        [](UINT message, WPARAM wParam, LPARAM) {
            bool keyMessage = message == WM_KEYDOWN || message == WM_KEYUP || message == WM_SYSKEYDOWN ||
                              message == WM_SYSKEYUP;
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

TEST(ForegroundAttentionGrabber, IsAScopeGuardThatCannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<ForegroundAttentionGrabber>);
    EXPECT_FALSE(std::is_copy_assignable_v<ForegroundAttentionGrabber>);
    EXPECT_TRUE(std::has_virtual_destructor_v<ForegroundAttentionGrabber>);
}

// Makes `recorder` the foreground and focus window, then makes a grabber, handles the messages its Alt tap
// brings and destroys it. False when the recorder could not be brought in front; `attached` tells whether the
// grabber attached.
bool GrabInFrontOf(const desktoptest::TestWindow& recorder, bool& attached) {
    SetForegroundWindow(recorder.hwnd());
    SetFocus(recorder.hwnd());
    PumpFor(100);
    if (GetForegroundWindow() != recorder.hwnd())
        return false;
    g_altMessages.clear();
    ForegroundAttentionGrabber grabber;
    attached = grabber.IsAttached();
    PumpFor(300);
    return true;
}

TEST(ForegroundAttentionGrabber, OwnForegroundAttachesNothingButStillTapsAlt) {
    desktoptest::TestWindow recorder = MakeRecorder();
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
    desktoptest::TestWindow recorder = MakeRecorder();
    bool attached = true;
    ASSERT_TRUE(GrabInFrontOf(recorder, attached));
    EXPECT_FALSE(attached);
    EXPECT_FALSE(SawAltDown());
    EXPECT_FALSE(SawAltUp());
}

TEST(ForegroundAttentionGrabber, Windows98PlatformSendsNoAltTap) {
    tavtest::ChildResult child =
        tavtest::RunSelfAs({L"win98", {}, L""}, "ForegroundAttentionGrabber.DISABLED_NoAltTapOutsideNt");
    EXPECT_TRUE(child.finished);
    EXPECT_EQ(child.exitCode, 0u) << child.output;
    EXPECT_NE(child.output.find("[  PASSED  ] 1 test"), std::string::npos) << child.output;
}

TEST(ForegroundAttentionGrabber, AttachesToAnotherProcessForegroundUntilDestroyed) {
    tavtest::FrontNotepad notepad;
    ASSERT_TRUE(notepad.Start());
    HWND edit = notepad.edit;
    ASSERT_NE(GetFocus(), edit);  // this thread's own input has no focus window of notepad's

    {
        ForegroundAttentionGrabber grabber;
        EXPECT_TRUE(grabber.IsAttached());
        // With the input attached, this thread shares notepad's input state: its focus is notepad's Edit.
        EXPECT_EQ(GetFocus(), edit);
        // The unlock window was closed at once: no "Button" pop-up of this process is left.
        EXPECT_TRUE(tavtest::TopLevelWindowsOf(GetCurrentProcessId(), L"Button").empty());
    }
    // Destroyed: the input is detached again.
    EXPECT_NE(GetFocus(), edit);
}

}  // namespace
