// The recorder's round trip: keys pressed as a person presses them (xdotool, through the X server), recorded,
// and the recorded script typed by the library into the same Edit give exactly the same text.
//
// The key sequences come from the grammar generator of the keys tests: each generated script's key queue is
// pressed key by key as the player would press it. TAVTEST_RECORDER_CASES sets how many (30 by default;
// `make recorder-long` runs 1,000), TAVTEST_RECORDER_SEED the generator's seed and TAVTEST_RECORDER_FIRST the
// number of the first case pressed (the generator still makes the ones before it, so that case n of a seed is
// always the same sequence and a failing case can be run alone).
#include <TavUtil.h>
#include <TestSupport.h>

#include "KeyTestWindows.h"
#include "PhysicalKeyboard.h"
#include "ScriptGenerator.h"
#include "keys/KeyRecorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace {

using namespace keytest;

// The X key names of the virtual keys a person's keyboard has; keys missing here are not pressed (the lock
// keys, whose state would outlive a case, and keys this keyboard lacks).
const std::map<WORD, std::string>& XKeyNames() {
    static const std::map<WORD, std::string> names = [] {
        std::map<WORD, std::string> table = {
            {VK_SPACE, "space"},       {VK_OEM_1, "semicolon"},   {VK_OEM_PLUS, "equal"},     {VK_OEM_COMMA, "comma"},
            {VK_OEM_MINUS, "minus"},   {VK_OEM_PERIOD, "period"}, {VK_OEM_2, "slash"},        {VK_OEM_3, "grave"},
            {VK_OEM_4, "bracketleft"}, {VK_OEM_5, "backslash"},   {VK_OEM_6, "bracketright"}, {VK_OEM_7, "apostrophe"},
            {VK_RETURN, "Return"},     {VK_TAB, "Tab"},           {VK_BACK, "BackSpace"},     {VK_DELETE, "Delete"},
            {VK_INSERT, "Insert"},     {VK_LEFT, "Left"},         {VK_RIGHT, "Right"},        {VK_UP, "Up"},
            {VK_DOWN, "Down"},         {VK_PRIOR, "Prior"},       {VK_NEXT, "Next"},          {VK_HOME, "Home"},
            {VK_END, "End"},           {VK_ESCAPE, "Escape"},     {VK_SHIFT, "Shift_L"},      {VK_CONTROL, "Control_L"},
            {VK_MENU, "Alt_L"},        {VK_LWIN, "Super_L"},
        };
        for (WORD vk = 'A'; vk <= 'Z'; ++vk)
            table[vk] = std::string(1, static_cast<char>(vk - 'A' + 'a'));
        for (WORD vk = '0'; vk <= '9'; ++vk)
            table[vk] = std::string(1, static_cast<char>(vk));
        for (WORD f = 1; f <= 12; ++f)
            table[static_cast<WORD>(VK_F1 + f - 1)] = "F" + std::to_string(f);
        return table;
    }();
    return names;
}

bool IsToggle(WORD vk) { return vk == VK_SHIFT || vk == VK_CONTROL || vk == VK_MENU || vk == VK_LWIN; }

// Presses this test leaves out, as they do not reach a Wine program as the same key either way:
// - Control+Alt+F1 .. F12: the X keymap makes them the server's console-switch actions, and one of their
//   events never reaches Wine;
// - Control+Space: Wine types a space for the key pressed on the keyboard (X's own translation) and nothing
//   for the same key sent by a program (Wine's table), so no script can type what the person typed.
bool NotPressable(WORD vk, std::map<WORD, bool>& down) {
    if (vk >= VK_F1 && vk <= VK_F12 && down[VK_CONTROL] && down[VK_MENU])
        return true;
    return vk == VK_SPACE && down[VK_CONTROL];
}

// The xdotool commands that press a key queue as the player does (a modifier's first entry presses it, the
// next lets it go; other keys are tapped), and how many key events they make.
struct Presses {
    std::string commands;
    size_t events = 0;
};
Presses PressesOf(const std::vector<WORD>& queue) {
    Presses presses;
    std::map<WORD, bool> down;
    auto add = [&](const char* verb, const std::string& key) {
        presses.commands += std::string(presses.commands.empty() ? "" : " ") + verb + " " + key;
        ++presses.events;
    };
    for (WORD entry : queue) {
        const auto name = XKeyNames().find(entry);
        if (name == XKeyNames().end())
            continue;
        if (IsToggle(entry)) {
            down[entry] = !down[entry];
            add(down[entry] ? "keydown" : "keyup", name->second);
        } else if (NotPressable(entry, down)) {
            continue;
        } else {
            add("keydown", name->second);
            add("keyup", name->second);
        }
    }
    for (const auto& [vk, isDown] : down)
        if (isDown)
            add("keyup", XKeyNames().at(vk));
    return presses;
}

// A window with no system menu around a multi-line Edit: Alt, F10 and Alt+F4 typed by the generator's
// scripts open no menu and close nothing (the window refuses every system command), and Shift+F10 opens no
// context menu (the Edit's menu would hold the test in its own loop until a click).
//
// The Edit paints what is pending before it handles each key, as a screen keeps up with a person's typing.
// Wine 8's multi-line Edit moves the caret by a page (Page Up, Page Down) to the column nearest the caret only
// when the target line's layout is current: an edit drops the layout of the line it changes and of the line
// above, painting makes it again, and the page move asks for a line past the text's ends and so makes none
// (the caret lands at the line's start). Keys pressed on the keyboard arrive with paints between them; a
// played script arrives at once, so without the paint "abcde~abc{PGUP}" leaves the caret at column 0 after
// the replay only (seed 26, case 58 of the long run: the same keys, another column).
class RoundTripWindow {
public:
    RoundTripWindow() : window_(Options(), [](UINT message, WPARAM, LPARAM) { return Refused(message); }) {
        EXPECT_TRUE(window_.BringToFront()) << "the round-trip window did not come to the front";
    }

    HWND window() const { return window_.hwnd(); }
    std::wstring Text() const { return window_.Text(); }
    // An empty Edit with the focus, an empty undo buffer and an empty clipboard: both halves of a case start
    // from the same state (the scripts press Control+V, Control+X and Control+Z now and then).
    void Reset() {
        SetWindowTextW(window_.edit(), L"");
        SendMessageW(window_.edit(), EM_EMPTYUNDOBUFFER, 0, 0);
        if (OpenClipboard(window_.hwnd())) {
            EmptyClipboard();
            CloseClipboard();
        }
        window_.BringToFront();
    }

private:
    static tavtest::TestWindow::Options Options() {
        auto options = tavtest::TestWindow::Options().Titled(L"recorder round trip").Styled(WS_POPUP | WS_BORDER);
        options.Placed(80, 80, 500, 300).editChild = true;
        options.editHandler = [](UINT message, WPARAM, LPARAM) {
            if (message == WM_KEYDOWN || message == WM_SYSKEYDOWN)
                UpdateWindow(GetFocus());  // a key goes to the focus: the Edit itself
            return message == WM_CONTEXTMENU;
        };
        return options;
    }
    static bool Refused(UINT message) { return message == WM_SYSCOMMAND || message == WM_CLOSE; }
    tavtest::TestWindow window_;
};

int EnvNumber(const char* name, int fallback) {
    const char* text = std::getenv(name);
    const int number = text != nullptr ? std::atoi(text) : -1;
    return number >= 0 ? number : fallback;
}

class KeysRecorderRoundTrip : public KeysTest {
protected:
    void SetUp() override {
        if (!tavtest::PhysicalKeyboard::Available())
            GTEST_SKIP() << "xdotool or the X display is missing";
    }
};

TEST_F(KeysRecorderRoundTrip, TypedTextIsRecordedAsItsEscape) {
    tavtest::PhysicalKeyboard keyboard;
    RoundTripWindow window;
    ASSERT_TRUE(keyboard.Click(window.window())) << "xdotool could not click the window";
    window.Reset();
    tav::keys::KeyRecorder recorder(tav::keys::KeyRecorder::kIgnoreInjected);
    ASSERT_TRUE(recorder.IsRecording());
    const std::wstring text = L"Hello, (World) 50% ~x{y} <a+b>";
    ASSERT_TRUE(keyboard.Type(tavtest::Narrow(text))) << "xdotool failed";
    EXPECT_TRUE(tavtest::WaitUntil([&] { return window.Text() == text; })) << tavtest::Narrow(window.Text());
    EXPECT_EQ(L"Hello, {(}World{)} 50{%} {~}x{{}y{}} <a{+}b>", recorder.Script());
    EXPECT_EQ(0u, recorder.Skipped());
    EXPECT_TRUE(std::all_of(recorder.Keys().begin(), recorder.Keys().end(), [](const tav::keys::RecordedKey& key) {
        return !key.injected;
    })) << "a key typed on the keyboard came as injected";
}

// A played script that types on a line and pages up at once keeps the caret's column, as keys typed by a person
// do (the window's paint before each key; without it Wine's Edit puts the X at the first line's start).
TEST_F(KeysRecorderRoundTrip, PageKeyRightAfterTypingKeepsTheColumn) {
    RoundTripWindow window;
    window.Reset();
    ASSERT_EQ(SKERR_NONE, tav::keys::RunKeyScript(L"abcde~abc{PGUP}X"));
    EXPECT_TRUE(tavtest::WaitUntil([&] { return window.Text() == L"abcXde\r\nabc"; }))
        << tavtest::Narrow(window.Text());
    window.Reset();
    ASSERT_EQ(SKERR_NONE, tav::keys::RunKeyScript(L"abc~abcde^{HOME}{RIGHT 2}{PGDN}X"));
    EXPECT_TRUE(tavtest::WaitUntil([&] { return window.Text() == L"abc\r\nabXcde"; }))
        << tavtest::Narrow(window.Text());
}

TEST_F(KeysRecorderRoundTrip, GeneratedKeySequences) {
    tavtest::PhysicalKeyboard keyboard;
    RoundTripWindow window;
    ASSERT_TRUE(keyboard.Click(window.window())) << "xdotool could not click the window";
    const LockStates locks;
    const char* seed = std::getenv("TAVTEST_RECORDER_SEED");
    ScriptGenerator generator(seed != nullptr ? static_cast<uint32_t>(std::strtoul(seed, nullptr, 10)) : 24u);
    const int first = EnvNumber("TAVTEST_RECORDER_FIRST", 0);
    const int cases = EnvNumber("TAVTEST_RECORDER_CASES", 0) > 0 ? EnvNumber("TAVTEST_RECORDER_CASES", 0) : 30;
    for (int n = 0; n < first; ++n)
        generator.Next({});
    int matched = 0;
    for (int n = first; n < first + cases; ++n) {
        const GeneratedScript generated = generator.Next({});
        const Presses presses = PressesOf(generated.queue);
        if (presses.events == 0) {
            ++matched;
            continue;
        }
        window.Reset();
        std::wstring script;
        std::wstring typed;
        {
            tav::keys::KeyRecorder recorder(tav::keys::KeyRecorder::kIgnoreInjected);
            ASSERT_TRUE(recorder.IsRecording());
            ASSERT_TRUE(keyboard.Run(presses.commands)) << "xdotool " << presses.commands;
            EXPECT_TRUE(tavtest::WaitUntil([&] { return recorder.Keys().size() >= presses.events; }))
                << "case " << n << ": the hook saw " << recorder.Keys().size() << " of " << presses.events
                << " events\n  generated " << tavtest::Narrow(generated.script) << "\n  pressed " << presses.commands;
            tavtest::Settle(window.window());
            typed = window.Text();
            script = recorder.Script();
        }
        const std::string about = "case " + std::to_string(n) + ": generated " + tavtest::Narrow(generated.script) +
                                  "\n  pressed " + presses.commands + "\n  recorded " + tavtest::Narrow(script);
        EXPECT_EQ(SKERR_NONE, tav::keys::ParseKeyScript(script.c_str())) << about;
        window.Reset();
        EXPECT_EQ(SKERR_NONE, tav::keys::RunKeyScript(script.c_str())) << about;
        tavtest::WaitUntil([&] { return window.Text() == typed; });
        tavtest::Settle(window.window());
        const std::wstring played = window.Text();
        EXPECT_EQ(tavtest::Narrow(typed), tavtest::Narrow(played)) << about;
        matched += played == typed ? 1 : 0;
        if (!NoKeyPressed())
            ADD_FAILURE() << about << "\n  left keys pressed";
        locks.Restore();
    }
    std::printf("recorder round trip: %d of %d generated cases (from case %d) typed the same\n", matched, cases, first);
    EXPECT_EQ(cases, matched);
}

}  // namespace
