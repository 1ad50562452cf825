#include "strings/StringUtils.h"

#include <algorithm>
#include <stdexcept>

namespace {

// The separators: blank, line feed and carriage return.
bool IsSeparator(wchar_t unit) { return unit == L' ' || unit == L'\n' || unit == L'\r'; }
const wchar_t kAbbreviation[] = L"...";
const int kAbbreviationLength = 3;

void AppendPiece(std::list<CStdStr<wchar_t>>& pieces, CStdStr<wchar_t> piece) {
    if (pieces.size() >= pieces.max_size())
        throw std::length_error("list<T> too long");
    pieces.push_back(std::move(piece));
}

}  // namespace

// The remainder is a window [begin, end) of the text rather than a copy of it, so that a cut takes time in
// proportion to the text: copying the rest after every piece made long texts quadratic.
std::list<CStdStr<wchar_t>> StringCut(const CStdStr<wchar_t>& text, int width) {
    std::list<CStdStr<wchar_t>> pieces;
    const wchar_t* const units = text.data();
    size_t begin = 0;
    size_t end = text.size();
    for (;;) {
        while (begin < end && IsSeparator(units[begin]))
            ++begin;
        while (end > begin && IsSeparator(units[end - 1]))
            --end;
        const size_t length = end - begin;
        if (width >= 0 && length <= static_cast<size_t>(width)) {
            AppendPiece(pieces, CStdStr<wchar_t>(units + begin, length));
            return pieces;
        }
        const size_t firstSeparator = static_cast<size_t>(std::find_if(units + begin, units + end, IsSeparator) -
                                                          (units + begin));  // `length` when there is none
        if (firstSeparator < length && width >= 0 && firstSeparator <= static_cast<size_t>(width)) {
            // Break at the last separator within the first width+1 units (the remainder is longer than that).
            size_t breakAt = static_cast<size_t>(width);
            while (!IsSeparator(units[begin + breakAt]))
                --breakAt;
            AppendPiece(pieces, CStdStr<wchar_t>(units + begin, breakAt));
            begin += breakAt;
            continue;
        }
        // The first word is longer than the width: abbreviate it and drop the rest of the word.
        // Widths of 3 or less leave no room for text: the piece is then only the mark.
        // In 64 bits: the most negative width must not overflow.
        const long long room = static_cast<long long>(width) - kAbbreviationLength;
        const size_t kept = room < 0 ? 0 : static_cast<size_t>(room);
        AppendPiece(pieces, CStdStr<wchar_t>(units + begin, kept) + kAbbreviation);
        if (firstSeparator == length)
            return pieces;
        begin += firstSeparator;
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
