// A program nobody here wrote: Wine's notepad receives a script and shows exactly what it means.
#include "KeyTestWindows.h"

#include <TavUtil.h>
#include <TestSupport.h>

#include <gtest/gtest.h>

namespace {

using namespace keytest;

struct FoundWindow {
    DWORD processId;
    HWND window;
};

BOOL CALLBACK FindNotepad(HWND window, LPARAM param) {
    auto* found = reinterpret_cast<FoundWindow*>(param);
    DWORD pid = 0;
    GetWindowThreadProcessId(window, &pid);
    wchar_t className[64] = L"";
    GetClassNameW(window, className, 64);
    if (pid == found->processId && wcscmp(className, L"Notepad") == 0 && IsWindowVisible(window)) {
        found->window = window;
        return FALSE;
    }
    return TRUE;
}

std::wstring TextOf(HWND window) {
    wchar_t buffer[1024] = L"";
    SendMessageW(window, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(buffer));
    return buffer;
}

class KeysNotepad : public KeysTest {};

TEST_F(KeysNotepad, TypesIntoNotepad) {
    wchar_t commandLine[] = L"notepad.exe";
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION info = {};
    ASSERT_TRUE(CreateProcessW(nullptr, commandLine, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info));
    tav::UniqueHandle process(info.hProcess), thread(info.hThread);
    tav::ScopeExit stop([&] {
        TerminateProcess(process.get(), 0);
        WaitForSingleObject(process.get(), 5000);
    });
    WaitForInputIdle(process.get(), 5000);
    FoundWindow found = {info.dwProcessId, nullptr};
    ASSERT_TRUE(PumpUntil(
        [&] {
            EnumWindows(FindNotepad, reinterpret_cast<LPARAM>(&found));
            return found.window != nullptr;
        },
        10000));
    HWND edit = FindWindowExW(found.window, nullptr, L"Edit", nullptr);
    ASSERT_NE(nullptr, edit);
    SetForegroundWindow(found.window);
    ASSERT_TRUE(PumpUntil([&] { return GetForegroundWindow() == found.window; }, 5000));

    EXPECT_EQ(SKERR_NONE, SendKeys(L"Dear +notepad,{TAB}+(shift) group~{- 3}{ENTER}{x 2}+y{BS}z (done)"));
    const std::wstring expected = L"Dear Notepad,\tSHIFT group\r\n---\r\nxxz done";  // (done) is a group
    PumpUntil([&] { return TextOf(edit) == expected; }, 10000);
    EXPECT_EQ(tavtest::Narrow(expected), tavtest::Narrow(TextOf(edit)));
}

}  // namespace
