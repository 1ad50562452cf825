// The time a low-level keyboard hook costs per key event.
//
// The system gives a low-level hook LowLevelHooksTimeout from sending the hook's message to the hook's thread
// until the hook procedure returns, and every key the user types waits that long. Of that time, the thread's
// way to its next message wait is the host's (how often it pumps), and the system's call of the procedure
// and its CallNextHookEx, which hands the event on, are the system's (under Wine each is a request to the
// emulator's server process, and its time is set by when that process gets a processor). The procedure's own
// work is the library's: the goal (median at most 20 us, maximum at most 1 ms over 10,000 events) holds that
// row, timed call by call.
//
// Beside it, the hook as the system calls it: a timing hook set after the hooks under test is called before
// them, and times its own CallNextHookEx, which is the system's call of the hooks behind it. The same is timed
// for a hook of the benchmark's own that does nothing but hand the event on, the least any hook costs here,
// in rounds that alternate with the hook under test so that both see the same load. The library's hook must
// cost no more than that one through the chain: its median at most 1.10 times the pass-on hook's.
//
// On a machine busy with other work the server process waits for a processor now and then, for a
// scheduler slice or more; that, not the hook, sets a round's maximum (and a busy stretch its median). So a
// measurement runs in rounds and the smallest median and the smallest maximum of its rounds count, as the
// frame counts the fastest batch; every row says so and shows the machine's load average beside its figure.
#pragma once

#include "Bench.h"

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// The rounds of one measurement, microseconds per event, and the round that counts.
struct HookRounds {
    std::vector<Spread> rounds;
    Spread best;           // the smallest median, minimum and maximum of the rounds
    bool complete = true;  // every round timed all its events
    void Add(const std::vector<double>& times, size_t events);
};

// Times the low-level keyboard hooks the calling thread has set, for `events` events (key-down and key-up
// pairs of F24, a key that types nothing, sent with SendInput), pumping the thread's messages as a host
// does: microseconds per event, one per event timed.
std::vector<double> TimeHooksBehind(size_t events);

// A low-level keyboard hook of the calling thread that only hands each event on, while it lives.
class PassOnHook {
public:
    PassOnHook();
    ~PassOnHook();
    PassOnHook(const PassOnHook&) = delete;
    PassOnHook& operator=(const PassOnHook&) = delete;
    bool Active() const { return hook_ != nullptr; }

private:
    HHOOK hook_;
};

// The machine's load average over the last minute as text ("1.52"), read from /proc/loadavg where the
// emulator shows the host's files (drive Z:); empty where there is none.
std::string LoadAverage();

// The rows of one hook: "NAME callback per event, its own work" against the goal (median at most 20 us,
// maximum at most 1 ms), "NAME per event, through the hook chain" against the pass-on hook (median at most
// 1.10 times its median), and the pass-on hook's own row for reference.
void AddHookRows(const std::string& name, const HookRounds& ownWork, const HookRounds& chain, const HookRounds& passOn);

}  // namespace bench
