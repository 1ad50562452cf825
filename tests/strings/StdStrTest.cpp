#include <TavUtil.h>

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(StdStr, NullPointerGivesEmptyString) {
    CStdStr<wchar_t> s(static_cast<const wchar_t*>(nullptr));
    EXPECT_TRUE(s.empty());
    CStdStr<wchar_t> t = L"x";
    t = static_cast<const wchar_t*>(nullptr);
    EXPECT_TRUE(t.empty());
}

TEST(StdStr, ResourceIdentifierLoadsFromStringTable) {
    CStdStr<wchar_t> s(MAKEINTRESOURCEW(101));
    EXPECT_EQ(s, L"Loaded from the test executable");
    s = MAKEINTRESOURCEW(102);
    EXPECT_EQ(s, L"Zweite Zeile");
}

TEST(StdStr, MissingResourceLeavesStringEmpty) {
    CStdStr<wchar_t> s(MAKEINTRESOURCEW(4711));
    EXPECT_TRUE(s.empty());
    CStdStr<wchar_t> t = L"before";
    t = MAKEINTRESOURCEW(4711);
    EXPECT_TRUE(t.empty());
}

}  // namespace
