// The typing calls with options, without a person at the keyboard: null or all-zero options send exactly
// the events of the plain calls, and so does kSendReleaseModifiers when no modifier is down; the delay is
// that of the paced forms; each key stays down at least the hold time (message times are checked from
// below only: a loaded machine may always be slower).
#include "KeyTestWindows.h"
#include "TextRecorder.h"

#include <ImportHook.h>
#include <TavUtil.h>
#include <TestSupport.h>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace {

using keytest::TextRecorder;
using tav::keys::SendOptions;

class KeysSendOptions : public keytest::KeysTest {};

// The key messages `send` makes, as text (and the messages themselves in `keys`).
std::string Record(TextRecorder& recorder, size_t count, const std::function<void()>& send,
                   std::vector<TextRecorder::Message>* keys = nullptr) {
    recorder.Clear();
    send();
    recorder.WaitForKeyMessages(count);
    if (keys != nullptr)
        *keys = recorder.KeyMessages();
    return recorder.DescribeKeys();
}

SendOptions Options(DWORD flags, DWORD delayMs = 0, DWORD holdMs = 0, DWORD waitMs = 0) {
    SendOptions options;
    options.flags = flags;
    options.keyDelayMs = delayMs;
    options.keyHoldMs = holdMs;
    options.waitReleaseMs = waitMs;
    return options;
}

TEST_F(KeysSendOptions, PlainOptionsSendThePlainEvents) {
    const struct {
        const wchar_t* script;
        size_t events;
    } rows[] = {{L"+(ab)c~", 10}, {L"%a", 4}, {L"{BREAK}x{BREAK}", 4}, {L"^v", 4}};
    const SendOptions released = Options(tav::keys::kSendReleaseModifiers | tav::keys::kSendWaitForRelease, 0, 0, 50);
    TextRecorder recorder;
    for (const auto& row : rows) {
        const std::string what = "script " + tavtest::Narrow(row.script);
        std::vector<TextRecorder::Message> keys;
        const std::string plain = Record(
            recorder, row.events, [&] { SendKeys(row.script); }, &keys);
        EXPECT_EQ(row.events, keys.size()) << what << ": " << plain;
        EXPECT_EQ(plain, Record(recorder, row.events, [&] { SendKeysEx(row.script, SendOptions()); })) << what;
        EXPECT_EQ(plain, Record(recorder, row.events, [&] { tav_send_keys_ex(row.script, nullptr); })) << what;
        // No modifier is down: nothing to wait for, nothing to release.
        EXPECT_EQ(plain, Record(recorder, row.events, [&] { SendKeysEx(row.script, released); })) << what;
    }
    const wchar_t text[] = L"a\u00E9\r\n{\t";
    const std::string plain = Record(recorder, 10, [&] { SendText(text); });
    EXPECT_EQ(plain, Record(recorder, 10, [&] { SendTextEx(text, SendOptions()); }));
    EXPECT_EQ(plain, Record(recorder, 10, [&] { SendTextEx(text, released); }));
    tav_send_options zero = {};
    zero.size = sizeof zero;
    EXPECT_EQ(plain, Record(recorder, 10, [&] { tav_send_text_ex(text, &zero); }));
}

TEST_F(KeysSendOptions, DelayIsThatOfThePacedForms) {
    TextRecorder recorder;
    std::vector<TextRecorder::Message> keys;
    const std::string paced = Record(recorder, 10, [] { SendKeysPaced(L"+(ab)c~", 20); });
    EXPECT_EQ(paced, Record(
                         recorder, 10, [] { SendKeysEx(L"+(ab)c~", Options(0, 20)); }, &keys));
    for (size_t i = 1; i < keys.size(); ++i)
        EXPECT_GE(keys[i].time - keys[i - 1].time, 10) << "event " << i;
}

// Each key-up comes at least the hold time after its key-down.
void ExpectHeld(const std::vector<TextRecorder::Message>& keys, DWORD holdMs, const std::string& what) {
    int pairs = 0;
    for (size_t up = 0; up < keys.size(); ++up) {
        if (keys[up].message != WM_KEYUP && keys[up].message != WM_SYSKEYUP)
            continue;
        for (size_t down = up; down-- > 0;) {
            const bool sameKey = keys[down].wParam == keys[up].wParam &&
                                 (keys[up].wParam != VK_PACKET || HIWORD(keys[down].lParam) == HIWORD(keys[up].lParam));
            if (sameKey && (keys[down].message == WM_KEYDOWN || keys[down].message == WM_SYSKEYDOWN)) {
                EXPECT_GE(keys[up].time - keys[down].time, static_cast<LONG>(holdMs)) << what << ", key-up " << up;
                ++pairs;
                break;
            }
        }
    }
    EXPECT_GE(pairs, 3) << what;
}

TEST_F(KeysSendOptions, EachKeyStaysDownAtLeastTheHoldTime) {
    TextRecorder recorder;
    std::vector<TextRecorder::Message> keys;
    const std::string plain = Record(recorder, 8, [] { SendKeys(L"+(a)bc"); });
    EXPECT_EQ(plain, Record(
                         recorder, 8, [] { SendKeysEx(L"+(a)bc", Options(0, 0, 40)); }, &keys));
    ExpectHeld(keys, 40, "script, hold 40");
    Record(
        recorder, 8, [] { SendKeysEx(L"+(a)bc", Options(0, 15, 30)); }, &keys);
    ExpectHeld(keys, 30, "script, delay 15 and hold 30");
    const std::string text = Record(recorder, 6, [] { SendText(L"x\u00E9\t"); });
    EXPECT_EQ(text, Record(
                        recorder, 6, [] { SendTextEx(L"x\u00E9\t", Options(0, 0, 40)); }, &keys));
    ExpectHeld(keys, 40, "text, hold 40");
}

TEST_F(KeysSendOptions, UnknownFlagsAreRefused) {
    keytest::RecorderWindow recorder;
    EXPECT_THROW(SendKeysEx(L"a", Options(0x4)), std::invalid_argument);
    EXPECT_THROW(SendTextEx(L"a", Options(0x80000000u)), std::invalid_argument);
    tav_send_options options = {};
    options.size = sizeof options;
    options.flags = 0x8;
    EXPECT_EQ(TAV_E_UNKNOWN_ENUM, tav_send_keys_ex(L"a", &options));
    options.flags = 0;
    options.size = TAV_SEND_OPTIONS_SIZE_1 - 1;
    EXPECT_EQ(TAV_E_UNKNOWN_ENUM, tav_send_text_ex(L"a", &options));
    options.size = sizeof options + 16;  // a newer, larger struct: its first version is read
    EXPECT_EQ(SKERR_NONE, tav_send_keys_ex(L"a", &options));
    EXPECT_EQ(keytest::Describe({keytest::Down('A'), keytest::Up('A')}), keytest::Describe(recorder.WaitForKeys(2)));
}

// The user's left Shift, as the keyboard would send it (not by the library).
void UserShift(bool keyUp) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = VK_LSHIFT;
    input.ki.wScan = 0x2A;
    input.ki.dwFlags = keyUp ? KEYEVENTF_KEYUP : 0;
    SendInput(1, &input, sizeof input);
}

// The library's import of SetWindowsHookExW while the test below runs: the user lets go of Shift just
// before the call's watch starts its hook, so that no hook sees the release.
tavtest::ImportHook* g_hookStart = nullptr;
HHOOK WINAPI LetGoOfShiftThenHook(int id, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    UserShift(true);
    return g_hookStart->original<decltype(&SetWindowsHookExW)>()(id, procedure, module, thread);
}

TEST_F(KeysSendOptions, KeyLetGoOfBeforeTheWatchStartsIsNotPutBack) {
    // The call reads Shift as held, then the user lets go of it before the watch's hook runs: Shift is not
    // the user's to put back any more, and put back it would stay down with nobody holding it.
    keytest::RecorderWindow recorder;
    UserShift(false);
    ASSERT_TRUE(keytest::IsKeyDown(VK_LSHIFT));
    tavtest::ImportHook hook("user32.dll", "SetWindowsHookExW", reinterpret_cast<void*>(&LetGoOfShiftThenHook));
    ASSERT_TRUE(hook.installed());
    g_hookStart = &hook;
    EXPECT_EQ(SKERR_NONE, SendKeysEx(L"a", Options(tav::keys::kSendReleaseModifiers)));
    g_hookStart = nullptr;
    // The user's Shift, then the typed key: the library sends no Shift of its own.
    EXPECT_EQ(keytest::Describe({keytest::Down(VK_SHIFT), keytest::Up(VK_SHIFT), keytest::Down('A'), keytest::Up('A')}),
              keytest::Describe(recorder.WaitForKeys(4)));
    EXPECT_FALSE(keytest::IsKeyDown(VK_LSHIFT)) << "Shift was put back after the user let go of it";
}

}  // namespace
