// The numbers of the script language (a count in braces, the indexes of {Menu}) are read as the runtime's
// swscanf reads "%d", without the heap buffer that swscanf allocates: each row is compared with what swscanf
// itself answers for the same text.
#include <TavUtil.h>

#include <gtest/gtest.h>

#include <cwchar>
#include <iterator>
#include <string>

namespace {

using tav::keys::CheckKeyScript;

// Number texts that test every step of the reading: blanks, signs, leading zeros, a "0x" that base 10 does not
// take, the 32-bit limits and far beyond them, digits of other scripts (not ASCII: no number), and no digit.
const wchar_t* const kNumbers[] = {L"3",
                                   L"+3",
                                   L"-3",
                                   L"\t7",
                                   L"  12",
                                   L"00012",
                                   L"-0",
                                   L"0",
                                   L"0x10",
                                   L"12abc",
                                   L"2147483647",
                                   L"2147483648",
                                   L"-2147483648",
                                   L"-2147483649",
                                   L"4294967296",
                                   L"99999999999999999999999",
                                   L"-99999999999999999999999",
                                   L"+",
                                   L"-",
                                   L"+-5",
                                   L"x",
                                   L"\u0663",
                                   L"\uff11",
                                   L"",
                                   L"1 2",
                                   L"-7 x",
                                   L"5-",
                                   L"0009999999999"};

TEST(NumberRead, CountsAreReadAsSwscanfReadsThem) {
    for (size_t row = 0; row < std::size(kNumbers); ++row) {
        SCOPED_TRACE(testing::Message() << "count text #" << row);
        const wchar_t* number = kNumbers[row];
        const std::wstring delimited = std::wstring(L" ") + number;
        int expected = 0;
        const bool read = swscanf(delimited.c_str(), L"%d", &expected) == 1;
        const std::wstring script = L"{a" + delimited + L"}";
        const auto check = CheckKeyScript(script.c_str());
        EXPECT_EQ(!read || expected == 0, check.result == SKERR_INVALIDCOUNT);
        // A negative count is named in the message about the full queue.
        if (read && expected < 0) {
            EXPECT_EQ(SKERR_STRINGTOOLONG, check.result);
            EXPECT_NE(std::wstring::npos, check.message.find(L"the count " + std::to_wstring(expected) + L" in"));
        }
    }
}

TEST(NumberRead, MenuIndexesAreReadAsSwscanfReadsThem) {
    for (size_t row = 0; row < std::size(kNumbers); ++row)
        for (const wchar_t* second : {L"4", L"-2", L"", L"x", L"2147483648"}) {
            const wchar_t* first = kNumbers[row];
            const std::wstring rest = std::wstring(L" ") + first + L" " + second + L"}";
            int top = 0, item = 0;
            swscanf(rest.c_str(), L"%d %d", &top, &item);
            const auto check = CheckKeyScript((L"{Menu" + rest).c_str());
            const std::wstring expected =
                L"chooses item " + std::to_wstring(item) + L" of menu " + std::to_wstring(top) + L" ";
            EXPECT_NE(std::wstring::npos, check.message.find(expected))
                << "menu text #" << row << ": " << testing::PrintToString(check.message);
        }
}

}  // namespace
