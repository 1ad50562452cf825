// A program nobody here wrote: Wine's notepad receives a script and shows exactly what it means.
#include "KeyTestWindows.h"

#include <TavUtil.h>

#include "RunningProgram.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

namespace {

using namespace keytest;

std::wstring TextOf(HWND window) {
    wchar_t buffer[1024] = L"";
    SendMessageW(window, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(buffer));
    return buffer;
}

class KeysNotepad : public KeysTest {};

TEST_F(KeysNotepad, TypesIntoNotepad) {
    tavtest::FrontNotepad notepad;
    ASSERT_TRUE(notepad.Start()) << "notepad did not come up in front";
    const HWND edit = notepad.edit;

    EXPECT_EQ(SKERR_NONE, SendKeys(L"Dear +notepad,{TAB}+(shift) group~{- 3}{ENTER}{x 2}+y{BS}z (done)"));
    const std::wstring expected = L"Dear Notepad,\tSHIFT group\r\n---\r\nxxz done";  // (done) is a group
    tavtest::WaitUntil([&] { return TextOf(edit) == expected; });
    EXPECT_EQ(tavtest::Narrow(expected), tavtest::Narrow(TextOf(edit)));
}

}  // namespace
