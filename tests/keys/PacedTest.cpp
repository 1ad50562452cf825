// Paced typing: SendKeysPaced and SendTextPaced send the events of their unpaced twins, spaced by at least
// the delay (message times are checked from below only: a loaded machine may always be slower).
#include "KeyTestWindows.h"
#include "TextRecorder.h"

#include <TavUtil.h>
#include <TestSupport.h>

#include <gtest/gtest.h>

#include <functional>

namespace {

using keytest::TextRecorder;

class KeysPaced : public keytest::KeysTest {};

constexpr DWORD kDelayMs = 25;

// Every pair of neighbouring key messages lies at least about `delayMs` apart.
void ExpectSpaced(const std::vector<TextRecorder::Message>& keys, DWORD delayMs, const std::string& what) {
    ASSERT_GE(keys.size(), 2u) << what;
    for (size_t i = 1; i < keys.size(); ++i)
        EXPECT_GE(keys[i].time - keys[i - 1].time, static_cast<LONG>(delayMs / 2)) << what << ", event " << i;
    LONG span = keys.back().time - keys.front().time;
    EXPECT_GE(span, static_cast<LONG>((keys.size() - 1) * (delayMs - 1))) << what;
}

// The key messages `send` makes, as text (and the messages themselves in `keys`); what hold mode left
// pressed is released afterwards.
std::string Record(TextRecorder& recorder, size_t count, const std::function<void()>& send,
                   std::vector<TextRecorder::Message>* keys = nullptr) {
    recorder.Clear();
    send();
    recorder.WaitForKeyMessages(count);
    std::string described = recorder.DescribeKeys();
    if (keys != nullptr)
        *keys = recorder.KeyMessages();
    SendKeys_ReleaseAll();
    tavtest::WaitUntil([] { return keytest::PressedKeys().empty(); });
    return described;
}

TEST_F(KeysPaced, ScriptsSendTheSameEventsSpacedByTheDelay) {
    const struct {
        const wchar_t* script;
        size_t events;
    } rows[] = {
        {L"+(ab)c~", 10},   {L"%a", 4},   {L"{BREAK}x{BREAK}", 4},
        {L"{a 3}{TAB}", 8}, {L"[+x]", 2},  // hold: Shift and x go down and are listed; their releases are dropped
    };
    TextRecorder recorder;
    for (const auto& row : rows) {
        const std::string what = "script " + tavtest::Narrow(row.script);
        std::vector<TextRecorder::Message> keys;
        const std::string unpaced = Record(
            recorder, row.events, [&] { EXPECT_EQ(SKERR_NONE, SendKeys(row.script)); }, &keys);
        EXPECT_EQ(row.events, keys.size()) << what << ": " << unpaced;
        EXPECT_EQ(unpaced, Record(recorder, row.events, [&] { SendKeysPaced(row.script, 0); })) << what;
        const std::string paced = Record(
            recorder, row.events, [&] { EXPECT_EQ(SKERR_NONE, SendKeysPaced(row.script, kDelayMs)); }, &keys);
        EXPECT_EQ(unpaced, paced) << what;
        ExpectSpaced(keys, kDelayMs, what);
    }
}

TEST_F(KeysPaced, ClipboardShortcutIsPacedToo) {
    TextRecorder recorder;
    std::vector<TextRecorder::Message> keys;
    const std::string unpaced = Record(recorder, 4, [] { SendKeys(L"^v"); });
    const std::string paced = Record(
        recorder, 4, [] { EXPECT_EQ(SKERR_NONE, SendKeysPaced(L"^v", 60)); }, &keys);
    EXPECT_EQ(unpaced, paced);
    ExpectSpaced(keys, 60, "^v");
}

TEST_F(KeysPaced, HoldModeCarriesOverAsUnpaced) {
    TextRecorder recorder;
    EXPECT_EQ(SKERR_NONE, SendKeysPaced(L"[{F13}", kDelayMs));
    EXPECT_TRUE(tav::keys::IsHoldModeOn());
    EXPECT_EQ(SKERR_NONE, SendKeysPaced(L"{F13}{F14}]", kDelayMs));  // F13 again: pressed, not listed twice
    EXPECT_FALSE(tav::keys::IsHoldModeOn());
    recorder.WaitForKeyMessages(3);
    EXPECT_EQ(TextRecorder::Describe(WM_KEYDOWN, VK_F13, 0) + TextRecorder::Describe(WM_KEYDOWN, VK_F13, 0) +
                  TextRecorder::Describe(WM_KEYDOWN, VK_F14, 0),
              recorder.DescribeKeys());
    ASSERT_EQ(2, tav::keys::TheHoldList().Count());
    SendKeys_ReleaseAll();
}

TEST_F(KeysPaced, ResultsAreThoseOfSendKeys) {
    keytest::RecorderWindow recorder;
    EXPECT_EQ(SKERR_NONE, SendKeysPaced(L"x{PostCommand 1f4}", kDelayMs));  // a command: no keys
    EXPECT_EQ(SKERR_NONE, SendKeysPaced(L"abc{ENTR}", kDelayMs));           // an error: nothing typed
    SendKeys_SetInProgress(3);
    EXPECT_EQ(SKERR_BUSY, SendKeysPaced(L"abc", kDelayMs));
    SendKeys_ClearInProgress();
    EXPECT_EQ(SKERR_NONE, SendKeysPaced(L"z", kDelayMs));
    const std::vector<keytest::KeyEvent>& keys = recorder.WaitForKeys(2);
    EXPECT_EQ(keytest::Describe({keytest::Down('Z'), keytest::Up('Z')}), keytest::Describe(keys));
    ASSERT_EQ(1u, recorder.messages.size());
    EXPECT_EQ(keytest::WindowMessage({WM_COMMAND, 0x1F4, 0}), recorder.messages[0]);
}

TEST_F(KeysPaced, TextSendsTheSameEventsSpacedByTheDelay) {
    const wchar_t text[] = L"a\u00E9\r\n{\U0001F600\t";
    TextRecorder recorder;
    std::vector<TextRecorder::Message> keys;
    const std::string unpaced = Record(
        recorder, 14, [&] { EXPECT_EQ(SKERR_NONE, SendText(text)); }, &keys);
    EXPECT_EQ(14u, keys.size()) << unpaced;
    EXPECT_EQ(unpaced, Record(recorder, 14, [&] { SendTextPaced(text, 0); }));
    const std::string paced = Record(
        recorder, 14, [&] { EXPECT_EQ(SKERR_NONE, SendTextPaced(text, kDelayMs)); }, &keys);
    EXPECT_EQ(unpaced, paced);
    EXPECT_TRUE(recorder.Characters() == L"a\u00E9\r{\U0001F600\t");
    ExpectSpaced(keys, kDelayMs, "text");
}

}  // namespace
