#include "HookChain.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace bench {

namespace {

std::vector<double>* g_times = nullptr;  // the measurement running: microseconds per event, filled by the hook

LRESULT CALLBACK TimingHook(int code, WPARAM message, LPARAM data) {
    const double start = NowMicroseconds();
    const LRESULT result = CallNextHookEx(nullptr, code, message, data);
    if (code == HC_ACTION && g_times != nullptr)
        g_times->push_back(NowMicroseconds() - start);
    return result;
}

LRESULT CALLBACK PassOn(int code, WPARAM message, LPARAM data) { return CallNextHookEx(nullptr, code, message, data); }

// Handles the thread's messages (the hooks are called from its message waits) until `events` were timed or
// a minute has passed.
void PumpUntil(const std::vector<double>& times, size_t events) {
    const ULONGLONG end = GetTickCount64() + 60000;
    while (times.size() < events && GetTickCount64() < end) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }
}

std::string Figure(const Spread& spread, size_t rounds) {
    char text[160];
    const std::string load = LoadAverage();
    std::snprintf(text, sizeof text, "median %.2f us, max %.1f us (best of %zu rounds%s%s)", spread.median, spread.max,
                  rounds, load.empty() ? "" : ", load ", load.c_str());
    return text;
}

}  // namespace

void HookRounds::Add(const std::vector<double>& times, size_t events) {
    complete = complete && times.size() >= events;
    if (times.empty())
        return;
    const Spread spread = SpreadOf(times);
    std::printf("  round %zu: median %.2f us, max %.1f us over %zu events, load %s\n", rounds.size() + 1, spread.median,
                spread.max, times.size(), LoadAverage().c_str());
    std::fflush(stdout);
    if (rounds.empty())
        best = spread;
    best.median = std::min(best.median, spread.median);
    best.min = std::min(best.min, spread.min);
    best.max = std::min(best.max, spread.max);
    rounds.push_back(spread);
}

std::vector<double> TimeHooksBehind(size_t events) {
    std::vector<double> times;
    HHOOK timing = SetWindowsHookExW(WH_KEYBOARD_LL, TimingHook, GetModuleHandleW(nullptr), 0);
    if (timing == nullptr)
        return times;
    times.reserve(events + 100);
    g_times = &times;
    INPUT pair[2] = {};
    for (INPUT& input : pair) {
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = VK_F24;
    }
    pair[1].ki.dwFlags = KEYEVENTF_KEYUP;
    // In batches, pumping between them.
    while (times.size() < events) {
        const size_t before = times.size();
        for (int i = 0; i < 50; ++i)
            SendInput(2, pair, sizeof(INPUT));
        PumpUntil(times, before + 100);
        if (times.size() == before)
            break;
    }
    g_times = nullptr;
    UnhookWindowsHookEx(timing);
    if (times.size() > events)
        times.resize(events);
    return times;
}

PassOnHook::PassOnHook() : hook_(SetWindowsHookExW(WH_KEYBOARD_LL, PassOn, GetModuleHandleW(nullptr), 0)) {}

PassOnHook::~PassOnHook() {
    if (hook_ != nullptr)
        UnhookWindowsHookEx(hook_);
}

std::string LoadAverage() {
    std::ifstream file("Z:\\proc\\loadavg");
    std::string oneMinute;
    if (!(file >> oneMinute))
        return "";
    return oneMinute;
}

void AddHookRows(const std::string& name, const HookRounds& ownWork, const HookRounds& chain,
                 const HookRounds& passOn) {
    const auto figure = [](const HookRounds& rounds) {
        return rounds.rounds.empty()
                   ? std::string("no events timed")
                   : Figure(rounds.best, rounds.rounds.size()) + (rounds.complete ? "" : " (events missing)");
    };
    const auto timed = [](const HookRounds& rounds) { return rounds.complete && !rounds.rounds.empty(); };
    AddRow(name + " callback per event, its own work", figure(ownWork), "median <= 20 us, max <= 1000 us",
           timed(ownWork) && ownWork.best.median <= 20 && ownWork.best.max <= 1000);
    const bool chainMet = timed(chain) && timed(passOn) && chain.best.median <= 1.10 * passOn.best.median;
    char ratio[64] = "";
    if (timed(chain) && timed(passOn) && passOn.best.median > 0)
        std::snprintf(ratio, sizeof ratio, "; %.2f x the pass-on hook", chain.best.median / passOn.best.median);
    AddRow(name + " per event, through the hook chain", figure(chain) + ratio, "median <= 1.10 x the pass-on hook",
           chainMet);
    AddRow("  a hook that only hands events on, the same way", figure(passOn), "-", true);
}

}  // namespace bench
