#include "TestWindow.h"

#include <TavUtil.h>

#include "../support/TestSupport.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

using tavtest::TestWindow;

// Every test leaves the clipboard closed and empty, whatever happens in it.
class ClipboardTest : public ::testing::Test {
protected:
    void TearDown() override {
        CloseClipboard();  // in case a failing test left it open on this thread
        if (OpenClipboard(nullptr)) {
            EmptyClipboard();
            CloseClipboard();
        }
    }

    // Puts text on the clipboard with the raw calls, as another program would.
    static void PutRaw(const std::wstring& text) {
        ASSERT_TRUE(OpenClipboard(nullptr));
        EmptyClipboard();
        HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
        memcpy(GlobalLock(block), text.c_str(), (text.size() + 1) * sizeof(wchar_t));
        GlobalUnlock(block);
        EXPECT_NE(SetClipboardData(CF_UNICODETEXT, block), nullptr);
        CloseClipboard();
    }

    static std::wstring GetRaw() {
        std::wstring text;
        if (!OpenClipboard(nullptr))
            return L"<not opened>";
        if (HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
            text = static_cast<const wchar_t*>(GlobalLock(data));
            GlobalUnlock(data);
        }
        CloseClipboard();
        return text;
    }
};

// Holds the clipboard open from another thread (with its own window) until released.
class ForeignOwner {
public:
    ForeignOwner() {
        thread_ = std::thread([this] {
            TestWindow window;
            bool opened = OpenClipboard(window.hwnd()) != FALSE;
            {
                std::lock_guard<std::mutex> lock(m_);
                hwnd_ = window.hwnd();
                opened_ = opened;
                ready_ = true;
            }
            cv_.notify_all();
            std::unique_lock<std::mutex> lock(m_);
            cv_.wait(lock, [this] { return done_; });
            stillOwner_ = GetOpenClipboardWindow() == window.hwnd();
            if (opened)
                CloseClipboard();
        });
        std::unique_lock<std::mutex> lock(m_);
        cv_.wait(lock, [this] { return ready_; });
    }
    // Releases the clipboard; true when it was still open for the foreign window until then.
    bool Release() {
        {
            std::lock_guard<std::mutex> lock(m_);
            done_ = true;
        }
        cv_.notify_all();
        if (thread_.joinable())
            thread_.join();
        return stillOwner_;
    }
    ~ForeignOwner() { Release(); }
    bool opened() const { return opened_; }
    HWND hwnd() const { return hwnd_; }

private:
    std::thread thread_;
    std::mutex m_;
    std::condition_variable cv_;
    bool ready_ = false, done_ = false, opened_ = false, stillOwner_ = false;
    HWND hwnd_ = nullptr;
};

TEST_F(ClipboardTest, DefaultConstructorOpensWithNoOwnerAndDestructorCloses) {
    {
        ClassicClipboard clipboard;
        EXPECT_TRUE(clipboard.isOpen());
        EXPECT_EQ(GetOpenClipboardWindow(), nullptr);
        // Open: another thread cannot open it now.
        ForeignOwner other;
        EXPECT_FALSE(other.opened());
    }
    ForeignOwner after;
    EXPECT_TRUE(after.opened());
}

TEST_F(ClipboardTest, OpenNowWithOwnerRecordsOwner) {
    TestWindow window;
    ClassicClipboard clipboard(true, window.hwnd());
    EXPECT_TRUE(clipboard.isOpen());
    EXPECT_EQ(GetOpenClipboardWindow(), window.hwnd());
}

TEST_F(ClipboardTest, WithoutOpenNowNothingIsOpened) {
    ClassicClipboard clipboard(false, nullptr);
    EXPECT_FALSE(clipboard.isOpen());
    ForeignOwner other;
    EXPECT_TRUE(other.opened());
}

TEST_F(ClipboardTest, OpenFailsWhileAnotherOwnerHoldsIt) {
    ForeignOwner other;
    ASSERT_TRUE(other.opened());
    ClassicClipboard atConstruction(true, nullptr);
    EXPECT_FALSE(atConstruction.isOpen());
    ClassicClipboard later(false, nullptr);
    later.open(nullptr);
    EXPECT_FALSE(later.isOpen());
}

TEST_F(ClipboardTest, FailedOpenLeavesOpenFlagAsItWas) {
    ClassicClipboard clipboard(true, nullptr);
    ASSERT_TRUE(clipboard.isOpen());
    CloseClipboard();  // behind the object's back
    ForeignOwner other;
    ASSERT_TRUE(other.opened());
    clipboard.open(nullptr);
    EXPECT_TRUE(clipboard.isOpen());
}

TEST_F(ClipboardTest, CloseClosesUnconditionallyAndClearsFlag) {
    ClassicClipboard clipboard(false, nullptr);
    TestWindow window;
    ASSERT_TRUE(OpenClipboard(window.hwnd()));  // opened by this thread, not by the object
    clipboard.close();
    EXPECT_FALSE(clipboard.isOpen());
    EXPECT_EQ(GetOpenClipboardWindow(), nullptr);
    EXPECT_FALSE(CloseClipboard());  // it was closed by the object
}

TEST_F(ClipboardTest, ObjectThatNeverOpenedDoesNotCloseAnotherOwnersClipboard) {
    TestWindow window;
    ASSERT_TRUE(OpenClipboard(window.hwnd()));
    { ClassicClipboard neverOpened(false, nullptr); }
    EXPECT_EQ(GetOpenClipboardWindow(), window.hwnd());
    EXPECT_TRUE(CloseClipboard());  // still open until now
}

TEST_F(ClipboardTest, ObjectWhoseOpenFailedDoesNotCloseForeignOwner) {
    ForeignOwner other;
    ASSERT_TRUE(other.opened());
    { ClassicClipboard failed(true, nullptr); }
    EXPECT_EQ(GetOpenClipboardWindow(), other.hwnd());
    EXPECT_TRUE(other.Release());
}

TEST_F(ClipboardTest, CloseAfterOpenReleasesForOthers) {
    ClassicClipboard clipboard(false, nullptr);
    clipboard.open(nullptr);
    ASSERT_TRUE(clipboard.isOpen());
    clipboard.close();
    EXPECT_FALSE(clipboard.isOpen());
    ForeignOwner other;
    EXPECT_TRUE(other.opened());
}

TEST_F(ClipboardTest, UnicodeTextRoundTrips) {
    const std::wstring texts[] = {L"plain", L"caf\u00e9 \u20ac 5 \u4e2d\u6587", L"line one\r\nline two",
                                  std::wstring(5000, L'\u4e2d')};
    for (const std::wstring& text : texts) {
        {
            ClassicClipboard clipboard;
            ASSERT_TRUE(clipboard.isOpen());
            EXPECT_TRUE(clipboard.setText(text, CF_UNICODETEXT));
        }
        EXPECT_EQ(GetRaw(), text);
        ClassicClipboard reader;
        EXPECT_EQ(reader.getText(CF_UNICODETEXT), text);
    }
}

TEST_F(ClipboardTest, SetTextEmptiesFirst) {
    const UINT other = RegisterClipboardFormatW(L"TavUtil.DesktopTest.Other");
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 4);
    ASSERT_NE(SetClipboardData(other, block), nullptr);
    CloseClipboard();
    ASSERT_TRUE(Clipboard::isFormatAvailable(other));
    {
        ClassicClipboard clipboard;
        EXPECT_TRUE(clipboard.setText(L"only this", CF_UNICODETEXT));
    }
    EXPECT_FALSE(Clipboard::isFormatAvailable(other));
    EXPECT_TRUE(Clipboard::isFormatAvailable(CF_UNICODETEXT));
}

// The block holds the text and its terminator; an empty string gives a block of the terminator alone.
TEST_F(ClipboardTest, BlockHoldsTextAndTerminator) {
    for (const std::wstring& text : {std::wstring(), std::wstring(L"abc")}) {
        {
            ClassicClipboard clipboard;
            ASSERT_TRUE(clipboard.setText(text, CF_UNICODETEXT));
        }
        ASSERT_TRUE(OpenClipboard(nullptr));
        HANDLE data = GetClipboardData(CF_UNICODETEXT);
        ASSERT_NE(data, nullptr);
        EXPECT_EQ(GlobalSize(data), (text.size() + 1) * sizeof(wchar_t)) << tavtest::Narrow(text);
        EXPECT_EQ(static_cast<const wchar_t*>(GlobalLock(data))[text.size()], L'\0');
        GlobalUnlock(data);
        CloseClipboard();
        ClassicClipboard reader;
        EXPECT_EQ(reader.getText(CF_UNICODETEXT), text);
    }
}

TEST_F(ClipboardTest, SetTextUsesTheCallersFormat) {
    const UINT custom = RegisterClipboardFormatW(L"TavUtil.DesktopTest.Format");
    {
        ClassicClipboard clipboard;
        ASSERT_TRUE(clipboard.setText(L"in a custom format", custom));
    }
    EXPECT_TRUE(Clipboard::isFormatAvailable(custom));
    ASSERT_TRUE(OpenClipboard(nullptr));
    HANDLE data = GetClipboardData(custom);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(std::wstring(static_cast<const wchar_t*>(GlobalLock(data))), L"in a custom format");
    GlobalUnlock(data);
    CloseClipboard();
}

TEST_F(ClipboardTest, GetTextIgnoresTheFormatArgument) {
    PutRaw(L"unicode \u20ac");
    const UINT custom = RegisterClipboardFormatW(L"TavUtil.DesktopTest.Format");
    ClassicClipboard clipboard;
    for (UINT format : {UINT(CF_TEXT), UINT(CF_OEMTEXT), UINT(CF_UNICODETEXT), UINT(CF_BITMAP), custom, 0u})
        EXPECT_EQ(clipboard.getText(format), L"unicode \u20ac") << "format " << format;
}

TEST_F(ClipboardTest, GetTextWithoutTextIsEmpty) {
    ClassicClipboard clipboard;
    clipboard.empty();
    EXPECT_FALSE(Clipboard::isFormatAvailable(CF_UNICODETEXT));
    EXPECT_EQ(clipboard.getText(CF_UNICODETEXT), L"");
}

TEST_F(ClipboardTest, SetTextWithoutOpenClipboardFails) {
    PutRaw(L"kept");
    ClassicClipboard clipboard(false, nullptr);
    EXPECT_FALSE(clipboard.setText(L"refused", CF_UNICODETEXT));
    EXPECT_EQ(GetRaw(), L"kept");
}

TEST_F(ClipboardTest, EmptyRemovesEverything) {
    PutRaw(L"to be removed");
    ClassicClipboard clipboard;
    clipboard.empty();
    EXPECT_FALSE(Clipboard::isFormatAvailable(CF_UNICODETEXT));
}

TEST_F(ClipboardTest, IsFormatAvailable) {
    PutRaw(L"x");
    EXPECT_TRUE(Clipboard::isFormatAvailable(CF_UNICODETEXT));
    EXPECT_FALSE(Clipboard::isFormatAvailable(CF_ENHMETAFILE));
}

// The text crosses to and from another process (tavutil.exe) through the system clipboard.
std::wstring Tavutil(const std::wstring& args, tavtest::ChildResult* result) {
    *result = tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" " + args);
    return tavtest::Widen(result->output);
}

TEST_F(ClipboardTest, TextSetHereIsReadByAnotherProcess) {
    const std::wstring text = L"caf\u00e9 \u20ac \u4e2d from the test";
    {
        ClassicClipboard clipboard;
        ASSERT_TRUE(clipboard.setText(text, CF_UNICODETEXT));
    }
    tavtest::ChildResult result;
    std::wstring output = Tavutil(L"clip get", &result);
    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_EQ(output, text + L"\n");
}

TEST_F(ClipboardTest, TextSetByAnotherProcessIsReadHere) {
    const std::wstring text = L"\u4e2d\u6587 \u00e9\u00e8 \u20ac from the child";
    tavtest::ChildResult result;
    Tavutil(L"clip set \"" + text + L"\"", &result);
    ASSERT_EQ(result.exitCode, 0u) << result.output;
    ClassicClipboard clipboard;
    ASSERT_TRUE(clipboard.isOpen());
    EXPECT_EQ(clipboard.getText(CF_UNICODETEXT), text);
}

}  // namespace
