#include "Soak.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace soak {

namespace {

// Allocator noise: the heaps keep caches (free lists, the low-fragmentation groups, buffers the platform
// fills as it goes) whose blocks count as busy; over a run they add up to a few bytes per call on average
// (the most measured here: under 6 bytes per call, with the sound plays). A leak of even one smallest
// allocation per call adds 16 bytes and more per call. So the heap may grow by 8 bytes per call, and by
// 16 KiB in any case for short runs: over 10,000 calls a leak of one 16-byte allocation per call (156 KiB
// and more) is caught, and the meter check shows it.
constexpr int64_t kHeapNoisePerCall = 8;
constexpr int64_t kHeapNoiseFloor = 16 * 1024;
int64_t HeapTolerance(int calls) { return std::max(kHeapNoiseFloor, kHeapNoisePerCall * calls); }
// Committed private pages move in whole pages and heap segments; 1 MiB catches a leak of 100 bytes per
// call over 10,000 calls that bypasses the heaps (stacks, VirtualAlloc).
constexpr int64_t kPrivateTolerance = 1024 * 1024;

constexpr int kFullCount = 10000;    // calls of an operation that takes under a millisecond
constexpr int kSlowBudgetMs = 8000;  // slower operations: as many calls as fit in this time
constexpr int kSlowMinimum = 100;
constexpr int kQuickMaximum = 100;
constexpr double kQuickBudgetMs = 250;  // the smoke run's time per operation, unless 10 calls take longer
constexpr int kWarmUpCalls = 20;
constexpr int kQuickWarmUpCalls = 5;
// An operation still running after this long hangs (the slowest takes about 10 s, 40 s in a full run).
constexpr ULONGLONG kQuickHangMs = 120000;
constexpr ULONGLONG kHangMs = 600000;

// The operation being checked, for the hang watch.
struct Running {
    std::mutex lock;
    std::string name;
    ULONGLONG startedAt = 0;  // 0: none
};
Running& Current() {
    static Running running;
    return running;
}

// An operation that hangs ends the run with its name, rather than leaving the test to its time limit
// without a word. The watching thread is started once, before the first reading, so it never counts as
// growth.
void WatchForHangs(ULONGLONG limitMs) {
    static std::once_flag once;
    std::call_once(once, [limitMs] {
        std::thread([limitMs] {
            for (;;) {
                std::this_thread::sleep_for(std::chrono::seconds(1));
                Running& running = Current();
                std::lock_guard<std::mutex> guard(running.lock);
                if (running.startedAt != 0 && GetTickCount64() - running.startedAt > limitMs) {
                    printf("%s: still running after %llu s: the run ends here\n", running.name.c_str(), limitMs / 1000);
                    fflush(stdout);
                    TerminateProcess(GetCurrentProcess(), 100);
                }
            }
        }).detach();
    });
}

void SetRunning(const std::string& name) {
    Running& running = Current();
    std::lock_guard<std::mutex> guard(running.lock);
    running.name = name;
    running.startedAt = name.empty() ? 0 : GetTickCount64();
}

double MillisecondsOf(const std::function<void()>& call, int times) {
    LARGE_INTEGER frequency, start, end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    for (int i = 0; i < times; ++i)
        call();
    QueryPerformanceCounter(&end);
    return 1000.0 * static_cast<double>(end.QuadPart - start.QuadPart) / static_cast<double>(frequency.QuadPart);
}

// Handles this thread's pending messages (operations that create windows or post to them leave some).
void PumpPending() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

std::string Delta(int64_t bytes) {
    // Appended rather than prefixed: GCC 12 with the hardened flags sees a false overlap in "+" + string.
    std::string text = bytes > 0 ? "+" : "";
    text += Bytes(bytes);
    return text;
}

struct Judgement {
    bool grew = false;
    std::string notes;
};

Judgement Judge(const Reading& before, const Reading& after, int calls, const Kept& kept,
                const Platform& platform = {}) {
    Judgement j;
    auto note = [&](const std::string& text) { j.notes += (j.notes.empty() ? "" : ", ") + text; };
    const long handlesExpected = kept.handlesPerCall * calls;
    if (after.handles - before.handles != handlesExpected) {
        j.grew = true;
        note("handles " + std::to_string(after.handles - before.handles) + " (expected " +
             std::to_string(handlesExpected) + ")");
    }
    if (after.gdiObjects != before.gdiObjects) {
        j.grew = true;
        note("GDI objects " + std::to_string(after.gdiObjects - before.gdiObjects));
    }
    if (after.windows != before.windows) {
        j.grew = true;
        note("windows " + std::to_string(after.windows - before.windows));
    }
    if (!kept.memory && after.heapBytes - before.heapBytes > HeapTolerance(calls)) {
        j.grew = true;
        note("heap " + Bytes(after.heapBytes - before.heapBytes) + " beyond " + Bytes(HeapTolerance(calls)));
    }
    if (!kept.memory && platform.comparePrivateMemory && after.privateBytes - before.privateBytes > kPrivateTolerance) {
        j.grew = true;
        note("private memory " + Bytes(after.privateBytes - before.privateBytes) + " beyond " +
             Bytes(kPrivateTolerance));
    }
    return j;
}

// A reading once transient objects are gone (threads of asynchronous calls end, posted messages are
// handled): readings are taken until they match the expectation or the time of Quiet passed.
Reading Settle(const Reading& before, int calls, const Kept& kept, const Platform& platform) {
    const std::function<void()>& prepare = platform.prepare;
    if (prepare)
        prepare();
    Reading after = Measure();
    for (DWORD start = GetTickCount();
         Judge(before, after, calls, kept, platform).grew && GetTickCount() - start < 3000;) {
        PumpPending();
        Sleep(50);
        if (prepare)
            prepare();
        after = Measure();
    }
    return after;
}

// A reading of the process at rest: threads that asynchronous calls started may still be ending, so the
// reading is repeated until two in a row, `apartMs` apart, agree (at most 3 s).
Reading Quiet(const std::function<void()>& prepare, DWORD apartMs) {
    if (prepare)
        prepare();
    Reading last = Measure();
    for (DWORD start = GetTickCount(); GetTickCount() - start < 3000;) {
        PumpPending();
        Sleep(apartMs);
        if (prepare)
            prepare();
        const Reading now = Measure();
        if (now.handles == last.handles && now.gdiObjects == last.gdiObjects && now.windows == last.windows)
            return now;
        last = now;
    }
    return last;
}

}  // namespace

int Runner::CountFor(double msPerCall) const {
    int count = kFullCount;
    if (msPerCall >= 1.0)
        count = std::clamp(static_cast<int>(kSlowBudgetMs / msPerCall), kSlowMinimum, kFullCount);
    if (options_.quick)
        count = std::clamp(static_cast<int>(kQuickBudgetMs / std::max(msPerCall, 0.01)), 10, kQuickMaximum);
    return count;
}

void Runner::Check(const std::string& name, const std::function<void()>& call, const Kept& kept, const Counter* counter,
                   const Platform& platform) {
    if (!options_.filter.empty() && name.find(options_.filter) == std::string::npos)
        return;
    WatchForHangs(options_.quick ? kQuickHangMs : kHangMs);
    SetRunning(name);
    try {
        Measured(name, call, kept, counter, platform);
    } catch (const std::exception& error) {
        Fail(name, std::string("the call failed: ") + error.what());
    }
    SetRunning({});
}

void Runner::Measured(const std::string& name, const std::function<void()>& call, const Kept& kept,
                      const Counter* counter, const Platform& platform) {
    const int warmUpCalls = options_.quick ? kQuickWarmUpCalls : kWarmUpCalls;
    const double msPerCall = MillisecondsOf(call, warmUpCalls) / warmUpCalls;
    const int calls = CountFor(msPerCall);
    MillisecondsOf(call, std::max(0, calls / 100 - warmUpCalls));  // caches and lazy state settle first

    // The smoke run looks twice as often: it checks a hundred operations inside the regular tests.
    const Reading before = Quiet(platform.prepare, options_.quick ? 25 : 100);
    const int64_t counterBefore = counter ? counter->read() : 0;
    const double ms = MillisecondsOf(call, calls);
    PumpPending();
    const Reading after = Settle(before, calls, kept, platform);
    const int64_t counterAfter = counter ? counter->read() : 0;

    Judgement j = Judge(before, after, calls, kept, platform);
    if (counter && counterAfter - counterBefore != counter->perCall * calls) {
        j.grew = true;
        j.notes += (j.notes.empty() ? "" : ", ") + counter->name + " " + std::to_string(counterAfter - counterBefore) +
                   " (expected " + std::to_string(counter->perCall * calls) + ")";
    }
    ++checked_;
    if (j.grew)
        ++grown_;

    printf("%-56s %5d calls %8.3f ms/call | handles %5ld -> %-5ld | GDI %4ld -> %-4ld | windows %3ld -> %-3ld | "
           "heap %10s | private %10s | ",
           name.c_str(), calls, ms / calls, before.handles, after.handles, before.gdiObjects, after.gdiObjects,
           before.windows, after.windows, Delta(after.heapBytes - before.heapBytes).c_str(),
           Delta(after.privateBytes - before.privateBytes).c_str());
    if (j.grew)
        printf("GREW: %s\n", j.notes.c_str());
    else if (!kept.rule.empty()) {
        std::string growth;
        if (kept.handlesPerCall)
            growth += std::to_string(kept.handlesPerCall) + " handle per call";
        if (kept.memory)
            growth += std::string(growth.empty() ? "" : ", ") + Bytes((after.heapBytes - before.heapBytes) / calls) +
                      " of heap per call";
        if (counter)
            growth +=
                (growth.empty() ? "" : ", ") + std::to_string(counter->perCall) + " " + counter->name + " per call";
        printf("ok, kept as settled (%s): %s\n", growth.c_str(), kept.rule.c_str());
    } else
        printf("ok\n");
    fflush(stdout);
}

void Runner::Fail(const std::string& name, const std::string& why) {
    if (!options_.filter.empty() && name.find(options_.filter) == std::string::npos)
        return;
    ++checked_;
    ++grown_;
    printf("%-56s NOT RUN: %s\n", name.c_str(), why.c_str());
    fflush(stdout);
}

void Runner::ExpectCaught(const std::string& name, const std::function<void()>& leak, int calls) {
    leak();  // the first call may fill caches of its own
    PumpPending();
    const Reading before = Measure();
    for (int i = 0; i < calls; ++i)
        leak();
    PumpPending();
    const Reading after = Measure();
    const Judgement j = Judge(before, after, calls, Kept{});
    if (!j.grew)
        ++blindMeters_;
    printf("meter check: %-43s %5d calls | %s\n", name.c_str(), calls,
           j.grew ? ("caught: " + j.notes).c_str() : "NOT CAUGHT: this soak cannot see such a leak");
    fflush(stdout);
}

int Runner::Finish() {
    if (blindMeters_)
        printf("soak: %d meter checks failed: the readings above cannot be trusted\n", blindMeters_);
    printf("soak: %d APIs checked, %d grew beyond what their rules settle\n", checked_, grown_);
    fflush(stdout);
    return grown_ + blindMeters_;
}

}  // namespace soak
