// The open-file picker's filter list, as the dialog reads it, without opening the dialog: TavUtil.dll's call
// of GetOpenFileNameW is answered here with a cancel.
#include "ImportHook.h"

#include <TavUtil.h>

#include "../support/TestSupport.h"

#include <gtest/gtest.h>

#include <commdlg.h>
#include <malloc.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

// The filter list as the dialog reads it, without opening the dialog: the walk of description and pattern
// pairs up to an empty description, and whether that walk stayed inside the memory the library handed over.
// The list lives in a heap block of the library's (every filter below is longer than a string keeps
// inside itself), so the block's size bounds the walk.
struct FilterWalk {
    std::vector<std::wstring> items;
    bool insideTheCopy = false;
};
FilterWalk g_filterWalk;

FilterWalk WalkFilter(const wchar_t* list) {
    FilterWalk walk;
    const size_t units = _msize(const_cast<wchar_t*>(list)) / sizeof(wchar_t);
    size_t at = 0;
    for (bool description = true;; description = !description) {
        if (at >= units)
            return walk;  // the dialog would read past the copy
        if (description && list[at] == L'\0')
            break;
        const wchar_t* end = std::find(list + at, list + units, L'\0');
        if (end == list + units)
            return walk;
        walk.items.emplace_back(list + at, end);
        at = static_cast<size_t>(end - list) + 1;
    }
    walk.insideTheCopy = true;
    return walk;
}

BOOL WINAPI WalkFilterAndCancel(OPENFILENAMEW* ofn) {
    g_filterWalk = WalkFilter(ofn->lpstrFilter);
    return FALSE;
}

TEST(BrowseFiles, FilterListEndsInsideItsCopyWhateverTheFilter) {
    struct Row {
        const wchar_t* filter;
        std::vector<std::wstring> items;
    };
    const Row rows[] = {
        {L"Text files|*.txt|All files|*.*||", {L"Text files", L"*.txt", L"All files", L"*.*"}},  // well-formed
        {L"Text files|*.txt|All files|*.*|", {L"Text files", L"*.txt", L"All files", L"*.*"}},   // no final "|"
        {L"Text files|*.txt|All files|*.*", {L"Text files", L"*.txt", L"All files", L"*."}},     // no "|" at the end
        {L"Text files|*.txt|All files||", {L"Text files", L"*.txt", L"All files", L""}},         // a pattern missing
        {L"Text files|*.txt|All files", {L"Text files", L"*.txt", L"All file", L""}},  // an odd number of items
        {L"Only a description here", {L"Only a description her", L""}},
    };
    tavtest::ImportHook walk("comdlg32.dll", "GetOpenFileNameW", reinterpret_cast<void*>(&WalkFilterAndCancel));
    ASSERT_TRUE(walk.installed());
    for (const Row& row : rows) {
        g_filterWalk = {};
        CStdStr<wchar_t> file = L"unchanged";
        EXPECT_FALSE(BrowseFiles(row.filter, file, L"", L""));
        EXPECT_TRUE(g_filterWalk.insideTheCopy) << tavtest::Narrow(row.filter);
        EXPECT_EQ(g_filterWalk.items, row.items) << tavtest::Narrow(row.filter);
        EXPECT_EQ(file, L"unchanged");
    }
}

}  // namespace
