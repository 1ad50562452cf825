// Literal text into a focused window: SendText against a raw SendInput loop sending the same events, each
// timed inside the call (injection) and until the window has received every character (delivery). The
// window only collects its WM_CHAR units: an Edit control would spend most of the time laying out CJK and
// emoji glyphs, which is not typing. The two alternate through the shared frame (Bench.h).
#include "Bench.h"
#include "BenchWindow.h"

#include <TavUtil.h>

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

std::wstring g_received;  // the units the window's WM_CHAR messages carried, in order

void PumpUntilReceived(size_t length) {
    DWORD start = GetTickCount();
    while (g_received.size() < length && GetTickCount() - start < 20000)
        bench::Pump();
}

INPUT Key(WORD vk, WORD scan, DWORD flags) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = vk;
    input.ki.wScan = scan;
    input.ki.dwFlags = flags;
    return input;
}

// The events SendText makes of `text` (a line break here is LF alone), sent one SendInput call each.
void RawType(const std::wstring& text) {
    for (wchar_t unit : text) {
        WORD vk = unit == L'\n' ? VK_RETURN : unit == L'\t' ? VK_TAB : 0;
        INPUT events[2];
        if (vk != 0) {
            WORD scan = static_cast<WORD>(MapVirtualKeyW(vk, 0));
            events[0] = Key(vk, scan, 0);
            events[1] = Key(vk, scan, KEYEVENTF_KEYUP);
        } else {
            events[0] = Key(0, unit, KEYEVENTF_UNICODE);
            events[1] = Key(0, unit, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
        }
        SendInput(1, &events[0], sizeof(INPUT));
        SendInput(1, &events[1], sizeof(INPUT));
    }
}

// 1,000 UTF-16 units of mixed text: Latin with accents, the euro, CJK, an emoji (two units), script
// characters, tabs and line breaks.
std::wstring MixedText() {
    const std::wstring words[] = {L"Gr\u00FC\u00DFe", L"caf\u00E9", L"\u20AC12", L"\u674E\u660E", L"\U0001F600",
                                  L"{+^%~}",          L"(a+b)",     L"\t",       L"plain",        L"\n"};
    std::wstring text;
    for (size_t i = 0; text.size() < 1000; ++i) {
        text += words[(i * 7) % 10];
        text += L' ';
    }
    text.resize(1000);
    if (text.back() >= 0xD800 && text.back() <= 0xDBFF)
        text.back() = L'x';  // never end on half a surrogate pair
    return text;
}

// One turn of one side: the text typed once, timed inside the call and until it arrived; counts the
// turns in which exactly the expected text arrived.
struct TypingSide {
    void (*type)(const std::wstring&);
    const std::wstring& text;
    const std::wstring& expected;
    int turns = 0;
    int whole = 0;

    bench::Phases Turn() {
        g_received.clear();
        const double start = bench::NowMicroseconds();
        type(text);
        const double injected = bench::NowMicroseconds();
        PumpUntilReceived(expected.size());
        const double complete = bench::NowMicroseconds();
        ++turns;
        whole += g_received == expected ? 1 : 0;
        return {injected - start, complete - start};
    }
};

std::string WholeText(const TypingSide& side) {
    char text[64];
    std::snprintf(text, sizeof text, "%d of %d turns", side.whole, side.turns);
    return text;
}

void LibraryType(const std::wstring& text) { SendText(text.c_str()); }

}  // namespace

int main() {
    const bench::Window window(L"bench text", bench::KeepCharacters(g_received));
    PumpUntilReceived(0);

    const std::wstring text = MixedText();
    std::wstring expected;  // what the window receives: Enter makes a CR
    for (wchar_t unit : text)
        expected += unit == L'\n' ? L'\r' : unit;

    TypingSide library{LibraryType, text, expected};
    TypingSide baseline{RawType, text, expected};
    library.Turn();  // warm both paths once
    baseline.Turn();
    library.turns = library.whole = baseline.turns = baseline.whole = 0;
    bench::ComparePhases(
        "SendText 1000 mixed units vs SendInput loop", {"injection", "delivery"}, [&] { return library.Turn(); },
        [&] { return baseline.Turn(); }, 21, {0, 0});
    bench::AddRow("SendText 1000 mixed units: delivered whole", WholeText(library), "all",
                  library.whole == library.turns);
    bench::AddRow("SendInput loop: delivered whole", WholeText(baseline), "-", true);
    bench::Finish();
    return library.whole == library.turns ? 0 : 1;
}
