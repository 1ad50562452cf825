#include "strings/StringUtils.h"

#include <stdexcept>

namespace {

const wchar_t kSeparators[] = L" \n\r";
const wchar_t kAbbreviation[] = L"...";
const int kAbbreviationLength = 3;

void AppendPiece(std::list<CStdStr<wchar_t>>& pieces, CStdStr<wchar_t> piece) {
    if (pieces.size() >= pieces.max_size())
        throw std::length_error("list<T> too long");
    pieces.push_back(std::move(piece));
}

}  // namespace

// Each step works on the remainder of the text; the remainder is kept as a position in `text` rather than
// as a copy, so that a long text costs time in proportion to its length. The remainder always runs to the
// text's end, so its trailing separators are trimmed once, here.
std::list<CStdStr<wchar_t>> StringCut(const CStdStr<wchar_t>& text, int width) {
    std::list<CStdStr<wchar_t>> pieces;
    const std::wstring& all = text;
    size_t lastUnit = all.find_last_not_of(kSeparators);
    const size_t end = lastUnit == std::wstring::npos ? 0 : lastUnit + 1;
    size_t pos = 0;
    for (;;) {
        pos = all.find_first_not_of(kSeparators, pos);
        if (pos == std::wstring::npos || pos > end)
            pos = end;
        if (static_cast<long long>(end - pos) <= width) {
            AppendPiece(pieces, CStdStr<wchar_t>(all.substr(pos, end - pos)));
            return pieces;
        }
        size_t firstSeparator = all.find_first_of(kSeparators, pos);
        bool hasSeparator = firstSeparator < end;
        if (hasSeparator && static_cast<long long>(firstSeparator - pos) <= width) {
            // Break at the last separator within the first width+1 units.
            size_t breakAt = all.find_last_of(kSeparators, pos + static_cast<size_t>(width));
            AppendPiece(pieces, CStdStr<wchar_t>(all.substr(pos, breakAt - pos)));
            pos = breakAt;
            continue;
        }
        // The first word is longer than the width: abbreviate it and drop the rest of the word.
        // Widths of 3 or less leave no room for text: the piece is then only the mark.
        long long kept = static_cast<long long>(width) - kAbbreviationLength;
        AppendPiece(pieces, CStdStr<wchar_t>(all.substr(pos, kept < 0 ? 0 : static_cast<size_t>(kept))) +
                                kAbbreviation);
        if (!hasSeparator)
            return pieces;
        pos = firstSeparator;
    }
}

void SetStringLength(CString& s, int length) {
    s.GetBufferSetLength(length);
    s.ReleaseBuffer();
}

void EnsureTrailingBackslash(CStdStr<wchar_t>& path) {
    if (path.empty() || path.back() != L'\\')
        path += L'\\';
}

void StripTrailingBackslash(CStdStr<wchar_t>& path) {
    if (path.size() > 1 && path.back() == L'\\')
        path.pop_back();
}
