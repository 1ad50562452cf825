#include "ImportHook.h"
#include "Desktop.h"
#include "TestWindow.h"

#include <TavUtil.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using tavtest::TestWindow;

static_assert(CWAIT_WAITING == 0 && CWAIT_ABORTED == 1 && CWAIT_TIMEOUT == 2 && CWAIT_QUIT == 3 && CWAIT_COMMAND == 4,
              "the status numbers are part of the interface");
static_assert(sizeof(CWaitStatus) == 4, "the status is stored as a 32-bit value");
static_assert(std::has_virtual_destructor<CWait>::value, "CWait is polymorphic");

// A window that counts what the pump hands it; every test starts and ends with an empty queue.
class WaitTest : public ::testing::Test {
protected:
    void SetUp() override { tavtest::PumpMessages(); }
    void TearDown() override { tavtest::PumpMessages(); }

    // Whether a message of `message` is waiting in the queue (it is removed).
    static bool TakeQueued(UINT message, MSG* out = nullptr) {
        MSG msg;
        if (!PeekMessageW(&msg, nullptr, message, message, PM_REMOVE))
            return false;
        if (out)
            *out = msg;
        return true;
    }
};

constexpr UINT kPing = WM_APP + 1;
constexpr UINT kAbortMe = WM_APP + 2;

TEST_F(WaitTest, NewWaitIsWaiting) {
    CWait wait;
    EXPECT_EQ(wait.GetStatus(), CWAIT_WAITING);
}

TEST_F(WaitTest, ZeroTimeoutTimesOut) {
    CWait wait;
    EXPECT_EQ(wait.Wait(0, 10, false), CWAIT_TIMEOUT);
    EXPECT_EQ(wait.GetStatus(), CWAIT_TIMEOUT);
}

TEST_F(WaitTest, TimesOutAfterTheTimeout) {
    CWait wait;
    const DWORD start = GetTickCount();
    EXPECT_EQ(wait.Wait(60, 5, false), CWAIT_TIMEOUT);
    EXPECT_GT(GetTickCount() - start, 60u);  // "more than" the timeout has passed
}

// The tick count as TavUtil.dll sees it during the wrap test: the start lies just before the wrap, every
// later reading just after it; from the third reading on time jumps well past any timeout, so that a wait
// that missed the wrap still ends (and the reading count tells).
int g_tickReadings = 0;
DWORD WINAPI WrappingTickCount() {
    ++g_tickReadings;
    if (g_tickReadings == 1)
        return 0xFFFFFFF0u;
    return g_tickReadings == 2 ? 5u : 0xFFFFFFF0u + 100000u;
}

TEST_F(WaitTest, WrappedTickCountEndsTheWaitAtTheFirstCheck) {
    tavtest::ImportHook hook("kernel32.dll", "GetTickCount", reinterpret_cast<void*>(&WrappingTickCount));
    ASSERT_TRUE(hook.installed());
    g_tickReadings = 0;
    CWait wait;
    EXPECT_EQ(wait.Wait(60000, 1, false), CWAIT_TIMEOUT);
    EXPECT_EQ(g_tickReadings, 2);  // the start, then the first check saw start > now
}

TEST_F(WaitTest, AbortBeforeWaitReturnsAbortedAtOnce) {
    int pinged = 0;
    TestWindow window([&](UINT message, WPARAM, LPARAM) { return message == kPing && ++pinged; });
    CWait wait;
    EXPECT_EQ(wait.Abort(), CWAIT_ABORTED);
    PostMessageW(window.hwnd(), kPing, 0, 0);
    EXPECT_EQ(wait.Wait(60000, 10, false), CWAIT_ABORTED);
    EXPECT_EQ(pinged, 0);  // nothing was pumped: the wait did not begin
    EXPECT_TRUE(TakeQueued(kPing));
}

TEST_F(WaitTest, AbortAfterTimeoutKeepsTimeout) {
    CWait wait;
    ASSERT_EQ(wait.Wait(0, 1, false), CWAIT_TIMEOUT);
    EXPECT_EQ(wait.Abort(), CWAIT_TIMEOUT);
    EXPECT_EQ(wait.GetStatus(), CWAIT_TIMEOUT);
}

TEST_F(WaitTest, FinishedWaitReturnsAtOnceUntilInit) {
    int pinged = 0;
    TestWindow window([&](UINT message, WPARAM, LPARAM) { return message == kPing && ++pinged; });
    CWait wait;
    ASSERT_EQ(wait.Wait(0, 1, false), CWAIT_TIMEOUT);
    PostMessageW(window.hwnd(), kPing, 0, 0);
    EXPECT_EQ(wait.Wait(60000, 10, false), CWAIT_TIMEOUT);  // not reset by Wait
    EXPECT_EQ(pinged, 0);
    wait.Init();
    EXPECT_EQ(wait.GetStatus(), CWAIT_WAITING);
    EXPECT_EQ(wait.Wait(50, 5, false), CWAIT_TIMEOUT);
    EXPECT_EQ(pinged, 1);  // a real wait again: it pumped the ping
}

TEST_F(WaitTest, InitAfterAbortAllowsWaitingAgain) {
    CWait wait;
    wait.Abort();
    wait.Init();
    EXPECT_EQ(wait.Wait(0, 1, false), CWAIT_TIMEOUT);
}

TEST_F(WaitTest, QuitMessageEndsWaitAndStaysQueued) {
    CWait wait;
    PostQuitMessage(42);
    EXPECT_EQ(wait.Wait(60000, 10, false), CWAIT_QUIT);
    MSG msg;
    ASSERT_TRUE(TakeQueued(WM_QUIT, &msg));
    EXPECT_EQ(msg.wParam, 42u);
}

TEST_F(WaitTest, QuitMessageEndsWaitAlsoWithStopOnCommand) {
    CWait wait;
    PostQuitMessage(0);
    EXPECT_EQ(wait.Wait(60000, 10, true), CWAIT_QUIT);
    EXPECT_TRUE(TakeQueued(WM_QUIT));
}

TEST_F(WaitTest, CommandMessageEndsWaitWithStopOnCommandAndStaysQueued) {
    int commands = 0;
    TestWindow window([&](UINT message, WPARAM, LPARAM) { return message == WM_COMMAND && ++commands; });
    CWait wait;
    PostMessageW(window.hwnd(), WM_COMMAND, 1234, 0);
    EXPECT_EQ(wait.Wait(60000, 10, true), CWAIT_COMMAND);
    EXPECT_EQ(commands, 0);
    MSG msg;
    ASSERT_TRUE(TakeQueued(WM_COMMAND, &msg));
    EXPECT_EQ(msg.hwnd, window.hwnd());
    EXPECT_EQ(msg.wParam, 1234u);
}

TEST_F(WaitTest, CommandMessageIsPumpedWithoutStopOnCommand) {
    int commands = 0;
    TestWindow window([&](UINT message, WPARAM, LPARAM) { return message == WM_COMMAND && ++commands; });
    CWait wait;
    PostMessageW(window.hwnd(), WM_COMMAND, 1234, 0);
    EXPECT_EQ(wait.Wait(100, 5, false), CWAIT_TIMEOUT);
    EXPECT_EQ(commands, 1);
    EXPECT_FALSE(TakeQueued(WM_COMMAND));
}

TEST_F(WaitTest, OtherMessagesArePumpedWhileWaiting) {
    int pinged = 0;
    TestWindow window([&](UINT message, WPARAM, LPARAM) { return message == kPing && ++pinged; });
    CWait wait;
    for (int i = 0; i < 3; ++i)
        PostMessageW(window.hwnd(), kPing, 0, 0);
    EXPECT_EQ(wait.Wait(200, 5, true), CWAIT_TIMEOUT);
    EXPECT_EQ(pinged, 3);
}

TEST_F(WaitTest, AbortFromHandlerRunByThePump) {
    CWait wait;
    CWaitStatus seenInHandler = CWAIT_WAITING;
    TestWindow window([&](UINT message, WPARAM, LPARAM) {
        if (message != kAbortMe)
            return false;
        seenInHandler = wait.Abort();
        return true;
    });
    PostMessageW(window.hwnd(), kAbortMe, 0, 0);
    const DWORD start = GetTickCount();
    EXPECT_EQ(wait.Wait(60000, 10, false), CWAIT_ABORTED);
    EXPECT_EQ(seenInHandler, CWAIT_ABORTED);
    EXPECT_LT(GetTickCount() - start, 30000u);  // ended by the abort, not by the timeout
}

TEST_F(WaitTest, CopiesCarryTheStatus) {
    CWait wait;
    wait.Abort();
    CWait copy(wait);
    EXPECT_EQ(copy.GetStatus(), CWAIT_ABORTED);
    CWait assigned;
    ASSERT_EQ(assigned.Wait(0, 1, false), CWAIT_TIMEOUT);
    assigned = wait;
    EXPECT_EQ(assigned.GetStatus(), CWAIT_ABORTED);
    EXPECT_EQ(assigned.Wait(60000, 10, false), CWAIT_ABORTED);
}

}  // namespace
