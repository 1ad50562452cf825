// String utilities against plain code doing the same work: CStdStr::Format against _snwprintf into a
// string, StringCut against a plain reference cut of the same text (checked to give the same pieces), and
// how StringCut's time grows with the text.
#include "Bench.h"

#include <TavUtil.h>

#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <algorithm>
#include <list>
#include <string>

namespace {

bool IsSeparator(wchar_t unit) { return unit == L' ' || unit == L'\n' || unit == L'\r'; }

// The cut written plainly from its rules, on positions of the text: trim; a remainder within the width is
// the last piece; else break at the last separator among the first width+1 units when the first separator
// lies within the width; else the first width-3 units and "...", continuing after the word.
std::list<std::wstring> ReferenceCut(const std::wstring& text, size_t width) {
    std::list<std::wstring> pieces;
    size_t begin = 0, end = text.size();
    for (;;) {
        while (begin < end && IsSeparator(text[begin]))
            ++begin;
        while (end > begin && IsSeparator(text[end - 1]))
            --end;
        if (end - begin <= width) {
            pieces.emplace_back(text, begin, end - begin);
            return pieces;
        }
        size_t first = begin;
        while (first < end && !IsSeparator(text[first]))
            ++first;
        if (first < end && first - begin <= width) {
            size_t at = begin + width;
            while (!IsSeparator(text[at]))
                --at;
            pieces.emplace_back(text, begin, at - begin);
            begin = at;
            continue;
        }
        pieces.push_back(text.substr(begin, width > 3 ? width - 3 : 0) + L"...");
        if (first == end)
            return pieces;
        begin = first;
    }
}

// Words of 1 to 11 letters with a blank, now and then a line end: about `units` units.
std::wstring Prose(size_t units) {
    std::wstring text;
    for (unsigned i = 0; text.size() < units; ++i) {
        text.append(1 + (i * 7) % 11, static_cast<wchar_t>(L'a' + i % 26));
        text += (i % 13 == 12) ? L"\r\n" : L" ";
    }
    return text;
}

bool SamePieces(const std::list<CStdStr<wchar_t>>& a, const std::list<std::wstring>& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [](const std::wstring& x, const std::wstring& y) { return x == y; });
}

}  // namespace

int main() {
    const wchar_t* text = L"The quick brown fox jumps over the lazy dog while the keyboard types a script";
    volatile size_t sink = 0;

    bench::Options format;
    format.callsPerBatch = 200;
    format.batches = 10;
    format.goal = 1.3;
    // The baseline formats into a stack buffer and makes a string of it: the work Format does for its caller.
    bench::Compare(
        "CStdStr::Format vs _snwprintf into a string",
        [&] {
            CStdStr<wchar_t> s;
            s.Format(L"%s %d %08x", text, 42, 0xBEEF);
            sink = sink + s.size();
        },
        [&] {
            wchar_t buffer[2049];
            int n = _snwprintf(buffer, 2048, L"%s %d %08x", text, 42, 0xBEEF);
            std::wstring s(buffer, n > 0 ? static_cast<size_t>(n) : 0);
            sink = sink + s.size();
        },
        format);

    const std::wstring prose = Prose(1000);
    const std::wstring prose10 = Prose(10000);
    for (const std::wstring* sample : {&prose, &prose10})
        if (!SamePieces(StringCut(*sample, 20), ReferenceCut(*sample, 20))) {
            std::fprintf(stderr, "bench_strings: StringCut and the reference cut disagree\n");
            return 1;
        }
    bench::Options cut;
    cut.callsPerBatch = 20;
    cut.batches = 10;  // for reference: the cut has no goal of its own against plain code
    bench::Compare(
        "StringCut(1000 units, width 20) vs reference cut", [&] { sink = sink + StringCut(prose, 20).size(); },
        [&] { sink = sink + ReferenceCut(prose, 20).size(); }, cut);

    // Growth: the same cut of ten times the text, turn by turn against the short one. Linear means a
    // ratio of about 10; the goal allows 11.
    bench::Options growth;
    growth.callsPerBatch = 10;
    growth.batches = 10;
    growth.goal = 11;
    bench::Compare(
        "StringCut time, 10000 units vs 1000 units", [&] { sink = sink + StringCut(prose10, 20).size(); },
        [&] { sink = sink + StringCut(prose, 20).size(); }, growth);
    // The same growth of the plain cut: what the machine's allocator and caches add to ten times the work.
    growth.goal = 0;
    bench::Compare(
        "reference cut time, 10000 units vs 1000 units", [&] { sink = sink + ReferenceCut(prose10, 20).size(); },
        [&] { sink = sink + ReferenceCut(prose, 20).size(); }, growth);
    return bench::Finish();
}
