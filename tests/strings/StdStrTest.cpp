#include <TavUtil.h>

#include "ImportHook.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <string>
#include <thread>
#include <vector>

namespace {

using Str = CStdStr<wchar_t>;

TEST(StdStr, NullPointerGivesEmptyString) {
    Str s(static_cast<const wchar_t*>(nullptr));
    EXPECT_TRUE(s.empty());
    Str t = L"x";
    t = static_cast<const wchar_t*>(nullptr);
    EXPECT_TRUE(t.empty());
}

TEST(StdStr, ResourceIdentifierLoadsFromStringTable) {
    Str s(MAKEINTRESOURCEW(101));
    EXPECT_EQ(s, L"Loaded from the test executable");
    s = MAKEINTRESOURCEW(102);
    EXPECT_EQ(s, L"Zweite Zeile");
    // The largest identifier value is still an identifier.
    Str high(MAKEINTRESOURCEW(0xFFFF));
    EXPECT_TRUE(high.empty());
}

TEST(StdStr, MissingResourceLeavesStringEmpty) {
    Str s(MAKEINTRESOURCEW(4711));
    EXPECT_TRUE(s.empty());
    Str t = L"before";
    t = MAKEINTRESOURCEW(4711);
    EXPECT_TRUE(t.empty());
}

TEST(StdStr, AssigningOwnBufferIsNoOp) {
    Str s = L"unchanged";
    s = s.c_str();
    EXPECT_EQ(s, L"unchanged");
}

TEST(StdStr, AssigningPointerIntoOwnBufferKeepsTheTail) {
    Str s = L"C:\\folder\\file.txt";
    s = s.c_str() + 3;
    EXPECT_EQ(s, L"folder\\file.txt");
    s = s.c_str() + s.size();  // the terminator: empty tail
    EXPECT_TRUE(s.empty());
}

TEST(StdStr, LeftAndRightClampTheirCount) {
    Str s = L"abcdef";
    EXPECT_EQ(s.Left(2), L"ab");
    EXPECT_EQ(s.Left(-5), L"");
    EXPECT_EQ(s.Left(100), L"abcdef");
    EXPECT_EQ(s.Right(2), L"ef");
    EXPECT_EQ(s.Right(-1), L"");
    EXPECT_EQ(s.Right(100), L"abcdef");
    EXPECT_EQ(s.Mid(2, 3), L"cde");
    EXPECT_EQ(s.Mid(10), L"");
}

TEST(StdStr, TrimBySetDropsLeadingThenTrailing) {
    Str s = L" \r\nword one\n \r";
    s.Trim(L" \n\r");
    EXPECT_EQ(s, L"word one");
    Str only = L" \n\r ";
    only.Trim(L" \n\r");
    EXPECT_TRUE(only.empty());
    Str custom = L"xxabcxx";
    custom.TrimLeft(L"x");
    EXPECT_EQ(custom, L"abcxx");
    custom.TrimRight(L"x");
    EXPECT_EQ(custom, L"abc");
}

TEST(StdStr, SearchesBySetAndUnit) {
    Str s = L"ab cd\nef";
    EXPECT_EQ(s.FindOneOf(L" \n"), 2);
    EXPECT_EQ(s.FindLastOneOf(L" \n"), 5);
    EXPECT_EQ(s.FindNotOneOf(L"ab"), 2);
    EXPECT_EQ(s.FindLastNotOneOf(L"ef"), 5);
    EXPECT_EQ(s.ReverseFind(L'b'), 1);
    EXPECT_EQ(s.ReverseFind(L'z'), -1);
    EXPECT_EQ(s.FindOneOf(L"xyz"), -1);
    EXPECT_EQ(s.Find(L"cd"), 3);
}

TEST(StdStr, ConcatenationAndEquality) {
    Str a = L"key";
    Str b = a + L'-' + L"word" + Str(L"!");
    EXPECT_EQ(b, L"key-word!");
    EXPECT_TRUE(b == L"key-word!");
    EXPECT_FALSE(b == L"KEY-WORD!");  // case-sensitive
    EXPECT_TRUE(b != L"other");
    Str c = L"x";
    c += L'y';
    c += L"z";
    c += Str(L"!");
    EXPECT_EQ(c, L"xyz!");
    Str d = L"pre" + a;
    EXPECT_EQ(d, L"prekey");
    EXPECT_TRUE(Str() == static_cast<const wchar_t*>(nullptr));
}

TEST(StdStr, CaseHelpers) {
    Str s = L"Mixed Case";
    EXPECT_EQ(s.ToUpper(), L"MIXED CASE");
    EXPECT_EQ(s.ToLower(), L"mixed case");
    EXPECT_TRUE(s.EqualsNoCase(L"MIXED case"));
    EXPECT_EQ(s.Replace(L"e", L"E"), 2);
    EXPECT_EQ(s, L"MixEd CasE");
}

TEST(StdStr, FormatUsesWideStringConventions) {
    Str s;
    s.Format(L"%s=%d (%04X) %c", L"value", 42, 0xBE, L'z');
    EXPECT_EQ(s, L"value=42 (00BE) z");
}

// The formatter grows its buffer 2049, 6145, 12289, 20481, 30721, 43009 units and keeps the text
// truncated to 43008 units after the last attempt.
TEST(StdStr, FormatGrowsThroughItsBufferSizes) {
    const int fits[] = {2048, 2049, 6144, 6145, 43008};
    for (int length : fits) {
        Str s;
        std::wstring text(static_cast<size_t>(length), L'q');
        s.Format(L"%s", text.c_str());
        EXPECT_EQ(s.GetLength(), length) << "length " << length;
        EXPECT_EQ(s, text.c_str());
    }
}

TEST(StdStr, FormatTruncatesBeyondTheLastBuffer) {
    std::wstring text(50000, L'r');
    text[43007] = L'A';
    text[43008] = L'B';
    Str s;
    s.Format(L"%s", text.c_str());
    ASSERT_EQ(s.GetLength(), 43008);
    EXPECT_EQ(s.back(), L'A');
    EXPECT_EQ(Str::kFormatBufferSizes[5], 43009);
    for (int i = 1; i < 6; ++i) {
        int growth = Str::kFormatBufferSizes[i] - Str::kFormatBufferSizes[i - 1];
        int previous = i == 1 ? 2048 : Str::kFormatBufferSizes[i - 1] - Str::kFormatBufferSizes[i - 2];
        EXPECT_EQ(growth, previous + 2048) << "step " << i;
    }
}

// The formatter of this platform answers -1 both for text that does not fit and for a conversion it
// cannot make; Wine's formatter never fails a conversion, so the test stands in for it: it writes "ab",
// then fails, whatever the buffer size. The sizes it was called with are recorded.
std::vector<size_t> formatterCalls;

int __cdecl FailingFormatter(wchar_t* buffer, size_t count, const wchar_t*, va_list) {
    formatterCalls.push_back(count);
    if (count >= 2) {
        buffer[0] = L'a';
        buffer[1] = L'b';
    }
    return -1;
}

int __cdecl FailingCounter(const wchar_t*, va_list) { return -1; }

TEST(StdStr, FormatConversionErrorKeepsTheTextBeforeItWithoutPadding) {
    HMODULE self = GetModuleHandleW(nullptr);
    tavtest::ImportHook formatter(self, "msvcrt.dll", "_vsnwprintf", reinterpret_cast<void*>(&FailingFormatter));
    tavtest::ImportHook counter(self, "msvcrt.dll", "_vscwprintf", reinterpret_cast<void*>(&FailingCounter));
    ASSERT_TRUE(formatter.installed());  // the counter is imported only by a formatter that asks it
    formatterCalls.clear();
    Str s;
    s.Format(L"ab%hs", "x");
    EXPECT_EQ(s, L"ab");
    EXPECT_EQ(s.GetLength(), 2);
    EXPECT_EQ(formatterCalls, std::vector<size_t>{2048});  // no larger buffer is tried
}

// A stand-in that formats 3,000 units of text (digits in turn) before a conversion it cannot make: what
// fits in the buffer is written, then -1, whatever the size.
constexpr size_t kTextBeforeFailure = 3000;

wchar_t UnitBeforeFailure(size_t at) { return static_cast<wchar_t>(L'0' + at % 10); }

int __cdecl LongTextThenFailingFormatter(wchar_t* buffer, size_t count, const wchar_t*, va_list) {
    formatterCalls.push_back(count);
    for (size_t at = 0; at < count && at < kTextBeforeFailure; ++at)
        buffer[at] = UnitBeforeFailure(at);
    return -1;
}

TEST(StdStr, FormatConversionErrorKeepsTheTextBeforeItWhateverItsLength) {
    HMODULE self = GetModuleHandleW(nullptr);
    tavtest::ImportHook formatter(self, "msvcrt.dll", "_vsnwprintf",
                                  reinterpret_cast<void*>(&LongTextThenFailingFormatter));
    tavtest::ImportHook counter(self, "msvcrt.dll", "_vscwprintf", reinterpret_cast<void*>(&FailingCounter));
    ASSERT_TRUE(formatter.installed());
    formatterCalls.clear();
    Str s;
    s.Format(L"%s%hs", L"text", "x");
    ASSERT_EQ(s.size(), kTextBeforeFailure);  // not cut at the first buffer's 2,048 units
    for (size_t at = 0; at < kTextBeforeFailure; ++at)
        ASSERT_EQ(s[at], UnitBeforeFailure(at)) << "unit " << at;
    // The first buffer is filled, so the text may go on: the second holds it with room to spare.
    EXPECT_EQ(formatterCalls, (std::vector<size_t>{2048, 6144}));
}

// The first buffer is kept cleared between calls: a failed conversion after a long text keeps nothing of
// that text.
TEST(StdStr, FormatConversionErrorAfterALongTextKeepsNothingOfIt) {
    Str longText;
    longText.Format(L"%s", std::wstring(2040, L'z').c_str());
    ASSERT_EQ(longText.GetLength(), 2040);
    HMODULE self = GetModuleHandleW(nullptr);
    tavtest::ImportHook formatter(self, "msvcrt.dll", "_vsnwprintf", reinterpret_cast<void*>(&FailingFormatter));
    tavtest::ImportHook counter(self, "msvcrt.dll", "_vscwprintf", reinterpret_cast<void*>(&FailingCounter));
    ASSERT_TRUE(formatter.installed());
    Str s;
    s.Format(L"ab%hs", "x");
    EXPECT_EQ(s, L"ab");
}

// Threads that format at the same time each get their own text (one of them may format in a buffer of its
// own while another holds the shared one).
TEST(StdStr, FormatFromSeveralThreadsAtOnce) {
    std::vector<std::thread> threads;
    std::vector<int> wrong(4, 0);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([t, &wrong] {
            for (int i = 0; i < 3000; ++i) {
                Str s;
                const int length = (i * 37 + t) % 2000;
                s.Format(L"%d:%s", t,
                         std::wstring(static_cast<size_t>(length), static_cast<wchar_t>(L'a' + t)).c_str());
                if (s != std::to_wstring(t) + L":" +
                             std::wstring(static_cast<size_t>(length), static_cast<wchar_t>(L'a' + t)))
                    ++wrong[static_cast<size_t>(t)];
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, std::vector<int>(4, 0));
}

}  // namespace
