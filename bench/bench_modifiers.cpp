// Typing while the user holds modifiers: the modifier watch's hook time per event, its own work and as the
// system calls it (every key the user types waits on it, and the system removes a low-level hook that is
// slow: HookChain.h), and the cost of kSendReleaseModifiers against the plain call when no modifier is held.
#include "BenchWindow.h"
#include "HookChain.h"

#include <TavUtil.h>

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using bench::Pump;

size_t g_received = 0;  // the characters the target window received

// What the watch's hook does with each of 10,000 events of every kind (modifiers and other keys, down and up,
// injected and not), timed call by call: microseconds per call. A round on a machine loaded by others has
// its maximum set by a preemption, never by the callback: of five rounds, the smallest median and the
// smallest maximum count (HookChain.h), as the frame counts the fastest batch.
std::vector<double> OwnWorkRound(tav::keys::ModifierWatch& watch) {
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
        watch.Note(event);
        times.push_back(bench::NowMicroseconds() - start);
    }
    if (watch.Events() - before != static_cast<unsigned long>(kEvents))
        times.clear();
    return times;
}

// The watch's hook as the system calls it (HookChain.h), in rounds that alternate with a hook that only
// hands events on, then its own work.
void CallbackTime() {
    constexpr size_t kEvents = 10000;
    constexpr int kRounds = 5;
    bench::HookRounds chain, passOn, own;
    for (int round = 0; round < kRounds; ++round) {
        {
            tav::keys::ModifierWatch watch(0);
            if (!watch.Active()) {
                bench::AddRow("modifier watch hook", "the hook could not be installed", "-", false);
                return;
            }
            std::printf("modifier watch hook, through the hook chain:\n");
            const std::vector<double> times = bench::TimeHooksBehind(kEvents);
            chain.Add(times, kEvents);
            if (watch.Events() < times.size())
                chain.complete = false;  // an event the timing hook saw never reached the watch
        }
        {
            const bench::PassOnHook hook;
            std::printf("a hook that only hands events on:\n");
            passOn.Add(hook.Active() ? bench::TimeHooksBehind(kEvents) : std::vector<double>{}, kEvents);
        }
    }
    tav::keys::ModifierWatch watch(0);
    std::printf("the modifier watch's callback, its own work:\n");
    for (int round = 0; round < kRounds; ++round)
        own.Add(OwnWorkRound(watch), kEvents);
    bench::AddHookRows("modifier watch hook", own, chain, passOn);
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
