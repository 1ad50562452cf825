// String utilities against the raw Win32 equivalents.
#include "Bench.h"

#include <TavUtil.h>

#include <windows.h>

int main() {
    const wchar_t* text = L"The quick brown fox jumps over the lazy dog while the keyboard types a script";
    volatile size_t sink = 0;
    bench::Compare(
        "CStdStr::Format vs _snwprintf",
        [&] {
            CStdStr<wchar_t> s;
            s.Format(L"%s %d %08x", text, 42, 0xBEEF);
            sink = sink + s.size();
        },
        [&] {
            wchar_t buffer[2049];
            int n = _snwprintf(buffer, 2048, L"%s %d %08x", text, 42, 0xBEEF);
            sink = sink + static_cast<size_t>(n);
        },
        20000);
    bench::Compare(
        "StringCut(width 20) vs wcschr scan",
        [&] { sink = sink + StringCut(text, 20).size(); },
        [&] {
            size_t pieces = 1;
            for (const wchar_t* p = text; (p = wcschr(p, L' ')) != nullptr; ++p)
                ++pieces;
            sink = sink + pieces;
        },
        20000);
    return 0;
}
