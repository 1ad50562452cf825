#include "KeyTestWindows.h"

#include "TestSupport.h"
#include "platform/Handles.h"

#include <TavUtil.h>

#include <cstdio>
#include <memory>
#include <string>

namespace keytest {

namespace {

tavtest::TestWindow::Options EditHost() {
    auto options = tavtest::TestWindow::Options().Titled(L"keys test: Edit").Placed(40, 40, 500, 300);
    options.editChild = true;  // the host hands the focus on to its Edit whenever it is activated
    return options;
}

// A lone Alt (a person's, held and let go) opens no system menu: its modal loop would stop the test.
bool RefuseKeyMenu(UINT message, WPARAM wParam, LPARAM) {
    return message == WM_SYSCOMMAND && (wParam & 0xFFF0) == SC_KEYMENU;
}

HMENU MakeMenuBar() {
    HMENU bar = CreateMenu();
    HMENU file = CreatePopupMenu();
    AppendMenuW(file, MF_STRING, 100, L"Open");
    AppendMenuW(file, MF_STRING, 101, L"Save");
    HMENU edit = CreatePopupMenu();
    AppendMenuW(edit, MF_STRING, 200, L"Copy");
    AppendMenuW(edit, MF_STRING, 201, L"Paste");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(file), L"File");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(edit), L"Edit");
    return bar;
}

}  // namespace

std::string Describe(const std::vector<KeyEvent>& events) {
    std::string text;
    for (const KeyEvent& e : events) {
        const char* kind = e.message == WM_KEYDOWN      ? "down"
                           : e.message == WM_KEYUP      ? "up"
                           : e.message == WM_SYSKEYDOWN ? "sysdown"
                                                        : "sysup";
        char item[48];
        snprintf(item, sizeof item, "%s %02X%s, ", kind, e.vk, e.extended ? " ext" : "");
        text += item;
    }
    return text;
}

EditWindow::EditWindow() : window_(EditHost(), RefuseKeyMenu) {
    EXPECT_TRUE(window_.BringToFront()) << "the Edit window did not come to the front";
}

void EditWindow::Clear() {
    SetWindowTextW(window_.edit(), L"");
    window_.BringToFront();
}

std::wstring EditWindow::WaitForText(const std::wstring& expected, DWORD timeoutMs) {
    tavtest::WaitUntil([&] { return Text() == expected; }, timeoutMs);
    tavtest::Settle(window());
    return Text();
}

RecorderWindow::RecorderWindow(bool withMenu)
    : window_(
          [withMenu] {
              auto options = tavtest::TestWindow::Options().Titled(L"keys test: recorder").Placed(60, 60, 400, 200);
              options.menu = withMenu ? MakeMenuBar() : nullptr;
              return options;
          }(),
          [this](UINT message, WPARAM wParam, LPARAM lParam) { return Record(message, wParam, lParam); }) {
    EXPECT_TRUE(window_.BringToFront()) << "the recorder did not come to the front";
    EXPECT_TRUE(Settle()) << "the recorder's queue did not settle";
    Clear();
}

const std::vector<KeyEvent>& RecorderWindow::WaitForKeys(size_t count, DWORD timeoutMs) {
    tavtest::WaitUntil([&] { return keys.size() >= count; }, timeoutMs);
    Settle();
    return keys;
}

bool RecorderWindow::Record(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_KEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
        keys.push_back({message, static_cast<UINT>(wParam), (lParam & (1 << 24)) != 0});
        return true;  // no menu activation by Alt or F10: the recorder only records
    case WM_SYSCHAR:
    case WM_CHAR: return true;
    case WM_COMMAND:
    case WM_INITMENU:
    case WM_INITMENUPOPUP:
    case WM_MENUSELECT: messages.push_back({message, wParam, lParam}); return true;
    default:
        if (message >= WM_USER)
            messages.push_back({message, wParam, lParam});
        return false;
    }
}

namespace {

struct KeyStates {
    bool down[256] = {};
};

// One read, shared by the reader thread and the test that waits for it: the reader fills in the state and
// sets `done`; whichever of the two lets go last frees it (a test may stop waiting for a slow reader).
struct KeyStateRead {
    KeyStates states;
    tav::UniqueHandle done{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

DWORD WINAPI ReadKeyStates(void* context) {
    const std::unique_ptr<std::shared_ptr<KeyStateRead>> read(static_cast<std::shared_ptr<KeyStateRead>*>(context));
    for (int vk = 0; vk < 256; ++vk)
        (*read)->states.down[vk] = (GetAsyncKeyState(vk) & 0x8000) != 0;
    SetEvent((*read)->done.get());
    return 0;
}

// What a refused call says, for the test's output; read right after the call, before anything can change it.
std::string Refusal(const char* call) {
    const DWORD error = GetLastError();
    return std::string(call) + " failed with error " + std::to_string(error) + ": " + tavtest::ErrorText(error);
}

// The state as a new thread reads it, if the thread answers within `timeoutMs`; otherwise, why not. The
// test waits for the answer, not for the thread to end: once, under Wine, a reader stalled for minutes while
// it ended (its backtrace: in the system's thread exit), and the test that joined it stalled with it.
std::string TryReadOnNewThread(KeyStates& states, DWORD timeoutMs) {
    const auto read = std::make_shared<KeyStateRead>();
    if (!read->done)
        return Refusal("CreateEventW");
    auto forReader = std::make_unique<std::shared_ptr<KeyStateRead>>(read);
    const tav::UniqueHandle thread(CreateThread(nullptr, 0, &ReadKeyStates, forReader.get(), 0, nullptr));
    if (!thread)
        return Refusal("CreateThread");
    forReader.release();  // the reader's now: it lets go of it when it is done
    if (WaitForSingleObject(read->done.get(), timeoutMs) != WAIT_OBJECT_0)
        return "no key-state reader answered in " + std::to_string(timeoutMs) + " ms";
    states = read->states;
    return {};
}

// The whole state, read on a new thread (the header says why). A reader that gives no answer in time (not
// seen yet, but a thread's start under Wine could stall as its end did) is left to finish on its own and
// the state is read again, saying so in the test's output.
KeyStates ReadOnNewThread() {
    constexpr DWORD kAnswerMs = 3000;
    constexpr int kAttempts = 5;
    KeyStates states;
    for (int attempt = 1; attempt <= kAttempts; ++attempt) {
        const std::string failure = TryReadOnNewThread(states, kAnswerMs);
        if (failure.empty())
            return states;
        std::printf("%s (attempt %d of %d)\n", failure.c_str(), attempt, kAttempts);
        std::fflush(stdout);
    }
    ADD_FAILURE() << "no key-state read succeeded in " << kAttempts << " attempts";
    return states;
}

}  // namespace

std::vector<UINT> PressedKeys() {
    const KeyStates states = ReadOnNewThread();
    std::vector<UINT> pressed;
    for (UINT vk = 0x07; vk <= 0xFE; ++vk)
        if (states.down[vk])
            pressed.push_back(vk);
    return pressed;
}

bool IsKeyDown(UINT vk) { return vk < 256 && ReadOnNewThread().down[vk]; }

testing::AssertionResult NoKeyPressed() {
    const std::vector<UINT> pressed = PressedKeys();
    if (pressed.empty())
        return testing::AssertionSuccess();
    testing::AssertionResult failure = testing::AssertionFailure();
    failure << "keys left pressed (virtual keys):";
    for (UINT vk : pressed)
        failure << " " << vk;
    return failure;
}

void KeysTest::TearDown() {
    if (tav::keys::TheHoldList().Count() != 0) {
        ADD_FAILURE() << "the test left " << tav::keys::TheHoldList().Count() << " keys in the hold list";
        SendKeys_ReleaseAll();
    }
    if (tav::keys::IsHoldModeOn()) {
        ADD_FAILURE() << "the test left hold mode on";
        tav::keys::ParseKeyScript(L"]");
        tav::keys::PlayKeyQueue();
    }
    if (SendKeys_InProgress() != 0) {
        ADD_FAILURE() << "the test left the in-progress marker set";
        SendKeys_ClearInProgress();
    }
    for (int round = 0; round < 2; ++round) {
        std::vector<UINT> pressed = PressedKeys();
        if (pressed.empty())
            break;
        std::string names;
        for (UINT vk : pressed) {
            names += std::to_string(vk) + " ";
            keybd_event(static_cast<BYTE>(vk), static_cast<BYTE>(MapVirtualKeyW(vk, 0)), KEYEVENTF_KEYUP, 0);
        }
        if (round == 0)
            ADD_FAILURE() << "keys left pressed (virtual keys, released now): " << names;
        tavtest::PumpFor(20);
    }
}

}  // namespace keytest
