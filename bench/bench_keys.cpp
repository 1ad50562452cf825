// Typing into a focused window: SendKeys against a raw keybd_event loop sending the same events. Each
// turn is measured twice: the time inside the call (injection) and the time until the target holds every
// character (delivery); every turn checks that exactly the text arrived. Then the parse of a full queue
// as a share of typing it.
#include "Bench.h"
#include "BenchWindow.h"

#include <TavUtil.h>

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

const int kCharacters = 1000;
const int kPairs = 25;
const int kRepetitions = 3;  // per turn; the fastest counts (see Bench.h)

// The target: a window of the benchmark's own with the keyboard focus, keeping every character it is
// sent. Unlike an Edit control it costs nothing per character, so delivery measures the way of the
// keystrokes and not the receiver's layout work.
std::wstring g_received;

using bench::Pump;

// Pumps until the target holds `length` characters (20 s at most); answers how many it holds.
int PumpUntilLength(size_t length) {
    const double start = bench::NowMicroseconds();
    while (g_received.size() < length && bench::NowMicroseconds() - start < 20e6)
        Pump();
    return static_cast<int>(g_received.size());
}

void ClearTarget() {
    Pump();  // nothing of the previous turn is left to arrive later
    g_received.clear();
}

// The events the player sends for a plain lower-case script: each key down, then up, with the scan code
// the player gives it.
void RawType(const std::wstring& text) {
    for (wchar_t ch : text) {
        BYTE vk = LOBYTE(VkKeyScanW(ch));
        BYTE scan = static_cast<BYTE>(MapVirtualKeyW(vk, 0));
        keybd_event(vk, scan, 0, 0);
        keybd_event(vk, scan, KEYEVENTF_KEYUP, 0);
    }
}

// One side of the typing case. A turn types the text kRepetitions times and counts the fastest
// injection (time inside the call) and the fastest delivery (time until the target holds the whole text);
// every repetition also checks that exactly the text arrived.
struct TypingSide {
    const std::wstring& text;
    std::function<void()> type;
    int fewestDelivered = kCharacters;

    bench::Phases Turn() {
        double injection = 1e300, delivery = 1e300;
        for (int i = 0; i < kRepetitions; ++i) {
            ClearTarget();
            const double start = bench::NowMicroseconds();
            type();
            const double injected = bench::NowMicroseconds();
            PumpUntilLength(text.size());
            const double complete = bench::NowMicroseconds();
            const int delivered = g_received == text ? kCharacters : MatchingPrefix();
            fewestDelivered = std::min(fewestDelivered, delivered);
            injection = std::min(injection, injected - start);
            delivery = std::min(delivery, complete - start);
        }
        return {injection, delivery};
    }

    int MatchingPrefix() const {
        size_t n = 0;
        while (n < text.size() && n < g_received.size() && text[n] == g_received[n])
            ++n;
        return static_cast<int>(n);
    }
};

std::string DeliveredText(int delivered) {
    char text[64];
    std::snprintf(text, sizeof text, "%d of %d (%.0f%%)", delivered, kCharacters, 100.0 * delivered / kCharacters);
    return text;
}

}  // namespace

int main() {
    const bench::Window target(L"bench keys", bench::KeepCharacters(g_received));
    if (GetForegroundWindow() != target.get() || GetFocus() != target.get()) {
        std::fprintf(stderr, "bench_keys: the target window did not come to the front\n");
        return 1;
    }

    std::wstring script;
    for (int i = 0; i < kCharacters; ++i)
        script += (i % 7 == 6) ? L' ' : static_cast<wchar_t>(L'a' + i % 26);

    TypingSide library{script, [&] { SendKeys(script.c_str()); }};
    TypingSide baseline{script, [&] { RawType(script); }};
    library.Turn();  // warm both paths once
    baseline.Turn();
    library.fewestDelivered = baseline.fewestDelivered = kCharacters;
    bench::ComparePhases(
        "SendKeys 1000 chars vs keybd_event loop", {"injection", "delivery"}, [&] { return library.Turn(); },
        [&] { return baseline.Turn(); }, kPairs, {1.05, 0});
    bench::AddRow("SendKeys 1000 chars: delivered (fewest of all turns)", DeliveredText(library.fewestDelivered),
                  "100%", library.fewestDelivered == kCharacters);
    bench::AddRow("keybd_event loop: delivered (fewest of all turns)", DeliveredText(baseline.fewestDelivered), "-",
                  true);

    // The parse of a full queue, measured alone, against typing the same queue.
    std::wstring full(6144, L'q');
    const double parse = bench::MicrosecondsPerCall([&] { tav::keys::ParseKeyScript(full.c_str()); }, 100);
    ClearTarget();
    const double start = bench::NowMicroseconds();
    SendKeys(full.c_str());
    PumpUntilLength(6144);
    const double type = bench::NowMicroseconds() - start;
    std::printf("parse of a full queue: %.0f us, typing it until delivered: %.0f us\n", parse, type);
    char share[32];
    std::snprintf(share, sizeof share, "%.2f%%", 100.0 * parse / type);
    bench::AddRow("parse of a full queue (6144) as a share of typing it", share, "-", true);
    return bench::Finish();
}
