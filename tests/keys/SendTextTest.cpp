// Literal text (SendText) against real windows: an Edit of this process, Wine's notepad, and a recorder
// that sees the key messages themselves.
#include "KeyTestWindows.h"
#include "TextRecorder.h"

#include <RunningProgram.h>
#include <TavUtil.h>
#include <TestSupport.h>

#include <gtest/gtest.h>

namespace {

using keytest::EditWindow;
using keytest::PressedKeys;
using keytest::TextRecorder;
using tavtest::WaitUntil;

class KeysText : public keytest::KeysTest {};

// Accented letters, a letter no US key types, the euro, CJK, an emoji outside the basic plane, every
// character a script gives a meaning, and line breaks of each kind (CR, LF, CR LF, and LF CR, which is two).
const wchar_t kMixedText[] = L"Gr\u00FC\u00DFe, caf\u00E9 \u20AC5 \u674E\u660E \U0001F600!\r"
                             L"+^%~()[]{}*\n"
                             L"tab\there\r\n"
                             L"two\n\rbreaks";
const wchar_t kMixedTextInAnEdit[] = L"Gr\u00FC\u00DFe, caf\u00E9 \u20AC5 \u674E\u660E \U0001F600!\r\n"
                                     L"+^%~()[]{}*\r\n"
                                     L"tab\there\r\n"
                                     L"two\r\n\r\nbreaks";

HWND EditOf(const EditWindow& window) { return GetWindow(window.window(), GW_CHILD); }

TEST_F(KeysText, EditShowsExactlyTheText) {
    EditWindow edit;
    SendMessageW(EditOf(edit), EM_SETLIMITTEXT, 0, 0);
    EXPECT_EQ(SKERR_NONE, SendText(kMixedText));
    EXPECT_EQ(tavtest::Narrow(kMixedTextInAnEdit), tavtest::Narrow(edit.WaitForText(kMixedTextInAnEdit)));
    EXPECT_TRUE(PressedKeys().empty());
}

TEST_F(KeysText, NotepadShowsExactlyTheText) {
    tavtest::FrontNotepad notepad;
    ASSERT_TRUE(notepad.Start());
    EXPECT_EQ(SKERR_NONE, SendText(kMixedText));
    auto text = [&] {
        std::wstring buffer(4096, L'\0');
        buffer.resize(static_cast<size_t>(
            SendMessageW(notepad.edit, WM_GETTEXT, buffer.size(), reinterpret_cast<LPARAM>(buffer.data()))));
        return buffer;
    };
    WaitUntil([&] { return text() == kMixedTextInAnEdit; }, 10000);
    EXPECT_EQ(tavtest::Narrow(kMixedTextInAnEdit), tavtest::Narrow(text()));
}

// What the text becomes as key messages: a VK_PACKET press per UTF-16 unit carrying the unit, and the
// keys themselves for line breaks and tabs. `count` is the number of messages.
std::string ExpectedMessages(const std::wstring& text, size_t& count) {
    std::string expected;
    count = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        wchar_t unit = text[i];
        if (unit == L'\r' || unit == L'\n') {
            if (unit == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n')
                ++i;
            expected +=
                TextRecorder::Describe(WM_KEYDOWN, VK_RETURN, 0) + TextRecorder::Describe(WM_KEYUP, VK_RETURN, 0);
        } else if (unit == L'\t') {
            expected += TextRecorder::Describe(WM_KEYDOWN, VK_TAB, 0) + TextRecorder::Describe(WM_KEYUP, VK_TAB, 0);
        } else {
            expected +=
                TextRecorder::Describe(WM_KEYDOWN, VK_PACKET, unit) + TextRecorder::Describe(WM_KEYUP, VK_PACKET, unit);
        }
        count += 2;
    }
    return expected;
}

TEST_F(KeysText, RecorderSeesOnePacketPressPerUnit) {
    TextRecorder recorder;
    const std::wstring text = kMixedText;
    size_t count = 0;
    const std::string expected = ExpectedMessages(text, count);
    EXPECT_EQ(SKERR_NONE, SendText(text.c_str()));
    recorder.WaitForKeyMessages(count);
    EXPECT_EQ(expected, recorder.DescribeKeys());
    // The characters the window made of them: the text, with a CR for each Enter.
    EXPECT_EQ(tavtest::Narrow(L"Gr\u00FC\u00DFe, caf\u00E9 \u20AC5 \u674E\u660E \U0001F600!\r+^%~()[]{}*\rtab\there\r"
                              L"two\r\rbreaks"),
              tavtest::Narrow(recorder.Characters()));
    EXPECT_TRUE(PressedKeys().empty());
}

// Every unit arrives, in order. Counted at a recorder: an Edit this long spends seconds per thousand
// characters laying itself out, which would time the Edit rather than the typing.
TEST_F(KeysText, TenThousandCharactersArriveWhole) {
    const std::wstring pattern = L"abc \u00E9\u00DF\u20AC\u4E2D{+}~ xyz\U0001F600";
    std::wstring text, characters;
    for (size_t i = 0; text.size() < 10000; ++i) {
        wchar_t unit = i % 50 == 49 ? L'\n' : pattern[i % pattern.size()];
        text += unit;
        characters += unit == L'\n' ? L'\r' : unit;  // Enter makes a CR
    }
    TextRecorder recorder;
    EXPECT_EQ(SKERR_NONE, SendText(text.c_str()));
    recorder.WaitForKeyMessages(2 * text.size(), 60000);
    EXPECT_EQ(2 * text.size(), recorder.KeyMessages().size());
    EXPECT_EQ(characters.size(), recorder.Characters().size());
    EXPECT_TRUE(recorder.Characters() == characters) << "the text arrived changed";
    EXPECT_TRUE(PressedKeys().empty());
}

TEST_F(KeysText, BusyMarkerRefusesAndTypesNothing) {
    EditWindow edit;
    SendKeys_SetInProgress(0x55);
    EXPECT_EQ(SKERR_BUSY, SendText(L"abc"));
    EXPECT_EQ(SKERR_BUSY, SendTextPaced(L"abc", 5));
    EXPECT_EQ(SKERR_BUSY, SendText(nullptr));
    EXPECT_EQ(0x55u, SendKeys_InProgress()) << "a refused call leaves the marker as it is";
    SendKeys_ClearInProgress();
    // Whatever a refused call might have sent would arrive before this.
    EXPECT_EQ(SKERR_NONE, SendText(L"ok"));
    EXPECT_EQ(L"ok", edit.WaitForText(L"ok"));
}

TEST_F(KeysText, NullAndEmptyTextTypeNothing) {
    EditWindow edit;
    EXPECT_EQ(SKERR_NONE, SendText(nullptr));
    EXPECT_EQ(SKERR_NONE, SendText(L""));
    EXPECT_EQ(SKERR_NONE, SendTextPaced(nullptr, 10));
    EXPECT_EQ(SKERR_NONE, SendText(L"ok"));
    EXPECT_EQ(L"ok", edit.WaitForText(L"ok"));
}

TEST_F(KeysText, LeavesTheKeyQueueAndHoldAlone) {
    EditWindow edit;
    ASSERT_EQ(SKERR_NONE, SendKeys(L"[{F13}"));
    ASSERT_EQ(SKERR_NONE, tav::keys::ParseKeyScript(L"qrs"));
    const tav::keys::KeyQueue before = tav::keys::TheKeyQueue();
    ASSERT_TRUE(tav::keys::IsHoldModeOn());

    EXPECT_EQ(SKERR_NONE, SendText(L"[x]{y}"));
    EXPECT_EQ(L"[x]{y}", edit.WaitForText(L"[x]{y}"));

    const tav::keys::KeyQueue& after = tav::keys::TheKeyQueue();
    ASSERT_EQ(before.Count(), after.Count());
    for (int i = 0; i < after.Count(); ++i)
        EXPECT_EQ(before.At(i), after.At(i)) << "queue entry " << i;
    EXPECT_TRUE(tav::keys::IsHoldModeOn());
    ASSERT_EQ(1, tav::keys::TheHoldList().Count());
    EXPECT_EQ(VK_F13, tav::keys::TheHoldList().At(0));

    SendKeys_ReleaseAll();
    EXPECT_EQ(SKERR_NONE, SendKeys(L"]"));
}

}  // namespace
