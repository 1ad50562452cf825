// The test session's keyboard: the US layout with every key (cmake/wine-session.sh clears the keys of
// Xvfb's keymap that hid parentheses from Wine; tests/support/TestKeyboard.md).
#include <TavUtil.h>
#include <TestSupport.h>

#include "KeyTestWindows.h"

#include <gtest/gtest.h>

namespace {

using namespace keytest;

class KeysTestKeyboard : public KeysTest {};

TEST_F(KeysTestKeyboard, EveryPrintableAsciiCharacterHasItsUsKey) {
    std::string missing;
    for (wchar_t ch = 0x20; ch < 0x7F; ++ch)
        if (VkKeyScanW(ch) == -1)
            missing += static_cast<char>(ch);
    EXPECT_EQ("", missing) << "characters no key types";
    EXPECT_EQ(0x0139, VkKeyScanW(L'(')) << "( is Shift+9";
    EXPECT_EQ(0x0130, VkKeyScanW(L')')) << ") is Shift+0";
    EXPECT_EQ(0x01BC, VkKeyScanW(L'<')) << "< is Shift+comma";
    EXPECT_EQ(0x01BE, VkKeyScanW(L'>')) << "> is Shift+period";
    EXPECT_EQ(0x024A, VkKeyScanW(L'\n')) << "a line feed is Control+J, no longer a key of its own";
}

TEST_F(KeysTestKeyboard, BracedParenthesesTypeParentheses) {
    EditWindow edit;
    EXPECT_EQ(SKERR_NONE, SendKeys(L"{(}x{)} {( 3}<a>"));
    EXPECT_EQ(L"(x) (((<a>", edit.WaitForText(L"(x) (((<a>"));
    EXPECT_TRUE(NoKeyPressed());
}

}  // namespace
