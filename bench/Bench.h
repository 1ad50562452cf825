// The benchmark frame shared by every bench_*.cpp. A case runs the library and a raw baseline doing the
// same work in turns (A B A B ...), takes the ratio library / baseline of each pair of turns, and reports
// the median of those ratios with their minimum and maximum: a burst of load from elsewhere on the machine
// spoils a pair or two, not the figure. A side may time several phases of one run itself (the time inside
// the call, the time until the target has everything); each phase then gets its own ratio.
//
// Every figure becomes a row of one table: printed when the program ends and appended to bench_table.txt
// beside the executable, which `make bench` shows at the end of all benchmarks.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

// Microseconds from a fixed, high-resolution start.
double NowMicroseconds();

// Microseconds per call of `operation`, run `calls` times back to back.
double MicrosecondsPerCall(const std::function<void()>& operation, int calls);

// What one turn of one side measured: microseconds per phase, in the order of the case's phase names.
using Phases = std::vector<double>;

struct Spread {
    double median = 0, min = 0, max = 0;
};
Spread SpreadOf(std::vector<double> values);  // of a non-empty list

// The outcome of one phase of one case.
struct Comparison {
    Spread library;   // microseconds per turn
    Spread baseline;  // microseconds per turn
    Spread ratio;     // of the per-pair ratios
};

// How a case is run, and the goal its ratio is held to (0: no goal, the row is for reference).
// A turn of the simple form runs `batches` batches of `callsPerBatch` calls and counts its fastest batch:
// on a machine loaded by others a batch that was preempted is slow, never fast, so the fastest batch is
// the operation's own cost. Give a batch enough calls to last well above the clock's resolution.
struct Options {
    int pairs = 15;
    int callsPerBatch = 1;
    int batches = 1;
    double goal = 0;
};

// The simple form: each turn times the side's operation as above, in microseconds per call. Before the
// first pair each side runs once unmeasured, and `prepare` (if given) runs before every turn, untimed.
Comparison Compare(const std::string& name, const std::function<void()>& library, const std::function<void()>& baseline,
                   const Options& options, const std::function<void()>& prepare = nullptr);

// The phased form: each turn calls the side once and takes the phases it measured. One row per phase,
// named "<name>: <phase>"; `goals` holds one goal per phase (0: none).
std::vector<Comparison> ComparePhases(const std::string& name, const std::vector<std::string>& phaseNames,
                                      const std::function<Phases()>& library, const std::function<Phases()>& baseline,
                                      int pairs, const std::vector<double>& goals);

// A row for a figure that is not a time ratio (a share of characters delivered, a growth factor): the
// value with its spread, the goal as text, and whether it was met.
void AddRow(const std::string& name, const std::string& measured, const std::string& goal, bool met);

// A ratio row with a goal of "at most `goal`" (0: reference only).
void AddRatioRow(const std::string& name, const Comparison& comparison, double goal);

// Prints this program's rows and appends them to bench_table.txt beside the executable. Returns the exit
// code of the benchmark program: 0, as a missed goal is a finding shown in the table, not a failed run.
int Finish();

}  // namespace bench
