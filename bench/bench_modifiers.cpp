// Typing while the user holds modifiers: the modifier watch's hook callback time per event (every key the
// user types waits on it, and the system removes a low-level hook whose callback is slow), and the cost of
// kSendReleaseModifiers against the plain call when no modifier is held.
#include "Bench.h"
#include "BenchWindow.h"

#include <TavUtil.h>

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using bench::Pump;

size_t g_received = 0;  // the characters the target window received

// The watch's callback, called directly for 10,000 events of every kind (modifiers and other keys, down
// and up, injected and not) while the watch is active: microseconds per call. A round on a machine loaded by
// others has its maximum set by a preemption, never by the callback: of five rounds, the one with the
// smallest maximum counts (its median with it), as the frame counts the fastest batch.
bench::Spread CallbackRound(const tav::keys::ModifierWatch& watch) {
    const int kEvents = 10000;
    const DWORD keys[] = {VK_LSHIFT, 'A', VK_RCONTROL, VK_F5, VK_LMENU, VK_SPACE, VK_LWIN, VK_RETURN};
    std::vector<double> times;
    times.reserve(kEvents);
    const unsigned long before = watch.Events();
    for (int i = 0; i < kEvents; ++i) {
        KBDLLHOOKSTRUCT event = {};
        event.vkCode = keys[i % 8];
        event.flags = ((i / 8) % 2 ? LLKHF_UP : 0) | ((i / 16) % 2 ? LLKHF_INJECTED : 0);
        const double start = bench::NowMicroseconds();
        tav::keys::ModifierWatch::Callback(HC_ACTION, (event.flags & LLKHF_UP) ? WM_KEYUP : WM_KEYDOWN,
                                           reinterpret_cast<LPARAM>(&event));
        times.push_back(bench::NowMicroseconds() - start);
    }
    if (watch.Events() - before != static_cast<unsigned long>(kEvents))
        std::printf("the watch saw %lu of %d events\n", watch.Events() - before, kEvents);
    return bench::SpreadOf(times);
}

void CallbackTime() {
    tav::keys::ModifierWatch watch(0);
    if (!watch.Active()) {
        bench::AddRow("modifier watch callback", "the hook could not be installed", "-", false);
        return;
    }
    bench::Spread best = CallbackRound(watch);
    for (int round = 1; round < 5; ++round) {
        const bench::Spread spread = CallbackRound(watch);
        std::printf("callback round %d: median %.2f us, max %.1f us\n", round, spread.median, spread.max);
        if (spread.max < best.max)
            best = spread;
    }
    char median[64], max[64];
    std::snprintf(median, sizeof median, "%.2f us (min %.2f)", best.median, best.min);
    std::snprintf(max, sizeof max, "%.1f us", best.max);
    bench::AddRow("modifier watch callback per event, median of 10,000", median, "<= 20 us", best.median <= 20);
    bench::AddRow("modifier watch callback per event, max of 10,000", max, "<= 1000 us", best.max <= 1000);
}

}  // namespace

int main() {
    CallbackTime();

    const bench::Window target(L"bench modifiers", [](UINT message, WPARAM, LPARAM) {
        g_received += message == WM_CHAR ? 1 : 0;
        return message == WM_CHAR;
    });
    if (GetForegroundWindow() != target.get()) {
        std::fprintf(stderr, "bench_modifiers: the target window did not come to the front\n");
        return bench::Finish();
    }
    std::wstring script;
    for (int i = 0; i < 200; ++i)
        script += static_cast<wchar_t>(L'a' + i % 26);
    tav::keys::SendOptions release;
    release.flags = tav::keys::kSendReleaseModifiers;
    bench::Options options;
    options.pairs = 31;
    options.batches = 3;
    options.goal = 1.05;
    // Each turn types the script into the target; before it, what the last turn typed is delivered.
    const auto drain = [] {
        const double start = bench::NowMicroseconds();
        while (bench::NowMicroseconds() - start < 2e6) {
            const size_t before = g_received;
            Pump();
            Sleep(1);
            Pump();
            if (g_received == before)
                break;
        }
    };
    bench::Compare(
        "SendKeysEx release-modifiers vs SendKeys, 200 chars, no modifier held",
        [&] { SendKeysEx(script.c_str(), release); }, [&] { SendKeys(script.c_str()); }, options, drain);
    return bench::Finish();
}
