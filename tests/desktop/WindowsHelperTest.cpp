// cWindowsHelper: focus window of another thread, descendant search by class, handle text.
#include "desktop/WindowsHelper.h"

#include "RunningProgram.h"
#include "TestWindow.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(WindowsHelper, FocusWindowOfNotepadIsItsEdit) {
    tavtest::FrontNotepad notepad;
    ASSERT_TRUE(notepad.Start());
    EXPECT_EQ(cWindowsHelper::GetFocusWindow(notepad.main), notepad.edit);
    EXPECT_NE(GetFocus(), notepad.edit);  // the attachment was undone
}

TEST(WindowsHelper, FocusWindowIsNullWhenTheAttachmentFails) {
    // A window of the calling thread: a thread cannot attach its input to itself.
    tavtest::TestWindow own(nullptr, true);
    ASSERT_NE(own.hwnd(), nullptr);
    EXPECT_EQ(cWindowsHelper::GetFocusWindow(own.hwnd()), nullptr);
}

std::vector<HWND> DescendantsOfClass(HWND parent, const wchar_t* className) {
    struct Context {
        const wchar_t* className;
        std::vector<HWND> found;
    } context{className, {}};
    EnumChildWindows(
        parent,
        [](HWND window, LPARAM param) -> BOOL {
            Context* c = reinterpret_cast<Context*>(param);
            wchar_t name[260] = {};
            GetClassNameW(window, name, 260);
            if (lstrcmpiW(name, c->className) == 0)
                c->found.push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&context));
    return context.found;
}

HWND MakeChild(HWND parent, const wchar_t* className, int id) {
    return CreateWindowExW(0, className, L"child", WS_CHILD | WS_VISIBLE, 0, 20 * id, 100, 20, parent,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
}

TEST(WindowsHelper, ChildSearchReturnsTheLastMatchInEnumerationOrder) {
    tavtest::TestWindow parent;
    ASSERT_NE(parent.hwnd(), nullptr);
    ASSERT_NE(MakeChild(parent.hwnd(), L"Button", 1), nullptr);
    HWND box = MakeChild(parent.hwnd(), L"Static", 2);
    ASSERT_NE(box, nullptr);
    ASSERT_NE(MakeChild(parent.hwnd(), L"Button", 3), nullptr);

    std::vector<HWND> buttons = DescendantsOfClass(parent.hwnd(), L"Button");
    ASSERT_EQ(buttons.size(), 2u);
    cWindowsHelper helper;
    EXPECT_EQ(helper.GetChildWindow(parent.hwnd(), L"Button"), buttons.back());
    // Class names compare without case.
    EXPECT_EQ(helper.GetChildWindow(parent.hwnd(), L"bUTTON"), buttons.back());
    EXPECT_EQ(helper.GetChildWindow(parent.hwnd(), L"static"), box);
}

TEST(WindowsHelper, ChildSearchLooksAtGrandchildrenAndForgetsEarlierResults) {
    tavtest::TestWindow parent;
    HWND box = MakeChild(parent.hwnd(), L"Static", 1);
    ASSERT_NE(box, nullptr);
    HWND nested = MakeChild(box, L"Edit", 2);
    ASSERT_NE(nested, nullptr);
    cWindowsHelper helper;
    EXPECT_EQ(helper.GetChildWindow(parent.hwnd(), L"Edit"), nested);
    EXPECT_EQ(helper.GetChildWindow(parent.hwnd(), L"ListBox"), nullptr);
}

TEST(WindowsHelper, HandleToStringPrintsTheLow32BitsSigned) {
    struct Row {
        ULONG_PTR handle;
        const wchar_t* expected;
    } rows[] = {
        {0, L"0"},           {0x12345, L"74565"},           {0x7FFFFFFF, L"2147483647"}, {0x80000001, L"-2147483647"},
        {0xFFFFFFFF, L"-1"}, {0x0000000500000007ull, L"7"},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        HWND window = reinterpret_cast<HWND>(rows[i].handle);
        EXPECT_EQ(cWindowsHelper::HandleToString(window), CStdStr<wchar_t>(rows[i].expected)) << "row " << i;
    }
}

}  // namespace
