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

std::list<CStdStr<wchar_t>> StringCut(const CStdStr<wchar_t>& text, int width) {
    std::list<CStdStr<wchar_t>> pieces;
    CStdStr<wchar_t> rest = text;
    for (;;) {
        rest.Trim(kSeparators);
        if (rest.GetLength() <= width) {
            AppendPiece(pieces, rest);
            return pieces;
        }
        int firstSeparator = rest.FindOneOf(kSeparators);
        if (firstSeparator >= 0 && firstSeparator <= width) {
            // Break at the last separator within the first width+1 units.
            int breakAt = rest.Left(width + 1).FindLastOneOf(kSeparators);
            AppendPiece(pieces, rest.Left(breakAt));
            rest = rest.Mid(breakAt);
            continue;
        }
        // The first word is longer than the width: abbreviate it and drop the rest of the word.
        // Widths of 3 or less leave no room for text: the piece is then only the mark.
        int kept = width - kAbbreviationLength < 0 ? 0 : width - kAbbreviationLength;
        AppendPiece(pieces, rest.Left(kept) + kAbbreviation);
        if (firstSeparator < 0)
            return pieces;
        rest = rest.Mid(firstSeparator);
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
