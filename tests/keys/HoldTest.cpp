// Hold mode: keys pressed between '[' and ']' stay down, across calls, until SendKeys_ReleaseAll.
#include "KeyTestWindows.h"

#include <TavUtil.h>

#include <gtest/gtest.h>

namespace {

using namespace keytest;

bool IsDown(UINT vk) { return IsKeyDown(vk); }

std::vector<WORD> HeldCodes() {
    std::vector<WORD> codes;
    for (int i = 0; i < tav::keys::TheHoldList().Count(); ++i)
        codes.push_back(tav::keys::TheHoldList().At(i));
    return codes;
}

class KeysHold : public KeysTest {};

TEST_F(KeysHold, ClosedHoldLeavesKeysDownAndReleaseAllReleasesLastFirst) {
    RecorderWindow recorder;
    EXPECT_EQ(SKERR_NONE, SendKeys(L"[+a]"));
    EXPECT_EQ(Describe({Down(VK_SHIFT), Down('A')}), Describe(recorder.WaitForKeys(2)));
    EXPECT_TRUE(IsDown(VK_SHIFT));
    EXPECT_TRUE(IsDown('A'));
    EXPECT_EQ((std::vector<WORD>{VK_SHIFT, 'A'}), HeldCodes());
    EXPECT_FALSE(tav::keys::IsHoldModeOn());

    // ']' ended hold mode: the next call types normally and holds nothing more.
    recorder.Clear();
    EXPECT_EQ(SKERR_NONE, SendKeys(L"b"));
    EXPECT_EQ(Describe({Down('B'), Up('B')}), Describe(recorder.WaitForKeys(2)));
    EXPECT_EQ(2, tav::keys::TheHoldList().Count());

    recorder.Clear();
    SendKeys_ReleaseAll();
    EXPECT_EQ(Describe({Up('A'), Up(VK_SHIFT)}), Describe(recorder.WaitForKeys(2)));
    EXPECT_FALSE(IsDown(VK_SHIFT));
    EXPECT_FALSE(IsDown('A'));
    EXPECT_EQ(0, tav::keys::TheHoldList().Count());
    // Reading outside the count gives 0, not the keys released a moment ago.
    for (int index : {0, 1, -1, tav::keys::HoldList::kCapacity, 1 << 30})
        EXPECT_EQ(0, tav::keys::TheHoldList().At(index)) << index;
}

TEST_F(KeysHold, MissingCloseKeepsTheNextCallInHoldMode) {
    RecorderWindow recorder;
    EXPECT_EQ(SKERR_NONE, SendKeys(L"[+a"));
    EXPECT_TRUE(tav::keys::IsHoldModeOn());
    EXPECT_EQ(SKERR_NONE, SendKeys(L"b"));
    EXPECT_EQ(Describe({Down(VK_SHIFT), Down('A'), Down('B')}), Describe(recorder.WaitForKeys(3)));
    EXPECT_TRUE(IsDown('B'));
    EXPECT_EQ((std::vector<WORD>{VK_SHIFT, 'A', 'B'}), HeldCodes());

    recorder.Clear();
    SendKeys_ReleaseAll();
    EXPECT_EQ(Describe({Up('B'), Up('A'), Up(VK_SHIFT)}), Describe(recorder.WaitForKeys(3)));
    EXPECT_TRUE(tav::keys::IsHoldModeOn()) << "releasing leaves hold mode as it is";

    recorder.Clear();
    EXPECT_EQ(SKERR_NONE, SendKeys(L"]c"));
    EXPECT_FALSE(tav::keys::IsHoldModeOn());
    EXPECT_EQ(Describe({Down('C'), Up('C')}), Describe(recorder.WaitForKeys(2)));
}

TEST_F(KeysHold, HeldModifierIsNotPressedTwiceButKeysRepeat) {
    RecorderWindow recorder;
    EXPECT_EQ(SKERR_NONE, SendKeys(L"[+a+a]"));
    EXPECT_EQ(Describe({Down(VK_SHIFT), Down('A'), Down('A')}), Describe(recorder.WaitForKeys(3)));
    EXPECT_EQ((std::vector<WORD>{VK_SHIFT, 'A'}), HeldCodes()) << "a held key is listed once";
    // A second call: Shift is held already and not pressed again.
    recorder.Clear();
    EXPECT_EQ(SKERR_NONE, SendKeys(L"[+b]"));
    EXPECT_EQ(Describe({Down('B')}), Describe(recorder.WaitForKeys(1)));
    EXPECT_EQ((std::vector<WORD>{VK_SHIFT, 'A', 'B'}), HeldCodes());
    recorder.Clear();
    SendKeys_ReleaseAll();
    EXPECT_EQ(Describe({Up('B'), Up('A'), Up(VK_SHIFT)}), Describe(recorder.WaitForKeys(3)));
}

TEST_F(KeysHold, ReleaseAllWithNothingHeldSendsNothing) {
    RecorderWindow recorder;
    ASSERT_EQ(0, tav::keys::TheHoldList().Count());
    SendKeys_ReleaseAll();
    EXPECT_TRUE(recorder.KeysSoFar().empty()) << Describe(recorder.keys);
}

// The list holds 200 keys; a further key is neither listed nor pressed, so that ReleaseAll can always
// release every key hold mode pressed. The script language reaches fewer distinct keys than that, so the
// queue is loaded by hand: 201 distinct codes that all press the A key.
TEST_F(KeysHold, The201stHeldKeyIsRefused) {
    RecorderWindow recorder;
    tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
    queue.Reset();
    ASSERT_TRUE(queue.Append(tav::keys::kBeginHold));
    for (WORD i = 0; i <= 200; ++i)
        ASSERT_TRUE(queue.Append(static_cast<WORD>((i << 8) | 'A')));
    ASSERT_TRUE(queue.Append(tav::keys::kEndHold));
    tav::keys::PlayKeyQueue();
    EXPECT_EQ(200, tav::keys::TheHoldList().Count());
    EXPECT_EQ(static_cast<WORD>((199 << 8) | 'A'), tav::keys::TheHoldList().At(199));
    EXPECT_EQ(std::vector<KeyEvent>(200, Down('A')), recorder.WaitForKeys(200));
    recorder.Clear();
    SendKeys_ReleaseAll();
    EXPECT_EQ(std::vector<KeyEvent>(200, Up('A')), recorder.WaitForKeys(200));
    EXPECT_EQ(0, tav::keys::TheHoldList().Count());
}

// The sided modifier keys count as modifiers too: held once, never pressed again while held. Any other
// key (Apps here) is pressed again. The script language cannot produce these codes: loaded by hand.
TEST_F(KeysHold, SidedModifiersAreHeldOnceOtherKeysAgain) {
    RecorderWindow recorder;
    const std::vector<WORD> codes = {VK_LSHIFT, VK_RSHIFT, VK_LCONTROL, VK_RWIN, VK_APPS};
    tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
    queue.Reset();
    ASSERT_TRUE(queue.Append(tav::keys::kBeginHold));
    for (WORD code : codes) {
        ASSERT_TRUE(queue.Append(code));
        ASSERT_TRUE(queue.Append(code));
    }
    ASSERT_TRUE(queue.Append(tav::keys::kEndHold));
    tav::keys::PlayKeyQueue();
    EXPECT_EQ(codes, HeldCodes());
    const std::vector<KeyEvent>& seen = recorder.WaitForKeys(codes.size() + 1);
    ASSERT_EQ(codes.size() + 1, seen.size()) << Describe(seen);
    for (const KeyEvent& event : seen)
        EXPECT_TRUE(event.message == WM_KEYDOWN || event.message == WM_SYSKEYDOWN) << Describe(seen);
    EXPECT_EQ(static_cast<UINT>(VK_APPS), seen[seen.size() - 2].vk);
    EXPECT_EQ(static_cast<UINT>(VK_APPS), seen.back().vk);
    recorder.Clear();
    SendKeys_ReleaseAll();
    EXPECT_EQ(codes.size(), recorder.WaitForKeys(codes.size()).size()) << Describe(recorder.keys);
    EXPECT_EQ(0, tav::keys::TheHoldList().Count());
}

// BREAK is the Control key: alone in a script it presses Control and leaves it down (the toggles start
// afresh with every run, and no run releases what an earlier one pressed).
TEST_F(KeysHold, BreakLeavesControlDown) {
    RecorderWindow recorder;
    EXPECT_EQ(SKERR_NONE, SendKeys(L"{BREAK}"));
    EXPECT_EQ(Describe({Down(VK_CONTROL)}), Describe(recorder.WaitForKeys(1)));
    EXPECT_TRUE(IsDown(VK_CONTROL));
    recorder.Clear();
    EXPECT_EQ(SKERR_NONE, SendKeys(L"{BREAK}"));  // a second run presses it again, it does not release
    EXPECT_EQ(Describe({Down(VK_CONTROL)}), Describe(recorder.WaitForKeys(1)));
    EXPECT_TRUE(IsDown(VK_CONTROL));
    keybd_event(VK_CONTROL, static_cast<BYTE>(MapVirtualKeyW(VK_CONTROL, 0)), KEYEVENTF_KEYUP, 0);
    recorder.WaitForKeys(1);
    EXPECT_FALSE(IsDown(VK_CONTROL));
}

}  // namespace
