// The soak runner: calls one operation many times and compares what the process holds before and after.
// Growth fails the operation unless a rule of the library settles that the operation keeps something;
// then exactly that growth is expected, and the line quotes the rule.
#pragma once

#include "Meter.h"

#include <cstdint>
#include <functional>
#include <string>

namespace soak {

// What a rule settles an operation keeps with each call.
struct Kept {
    std::string rule;         // the rule in the library's words; empty: nothing is kept
    long handlesPerCall = 0;  // kernel handles left open by each call
    bool memory = false;      // the kept objects are memory: the heap may grow
};

// A further count that a rule speaks of (the references of a found object), read before and after.
struct Counter {
    std::string name;
    std::function<int64_t()> read;
    int64_t perCall = 0;
};

// Objects of the platform that come and go on their own around some operations (the sound worker: a
// thread with its window and its stack). `prepare` runs before each reading and brings them into the same
// state for both; when their stacks still differ, the committed private pages are not compared (the heap
// comparison still is).
struct Platform {
    std::function<void()> prepare;
    bool comparePrivateMemory = true;
};

struct Options {
    bool quick = false;  // a smoke run: at most 100 calls per operation
    std::string filter;  // run only the operations whose name contains this text
};

class Runner {
public:
    explicit Runner(Options options) : options_(std::move(options)) {}

    // Calls `call` (after a warm-up) as often as its speed allows, prints one line and counts the result.
    void Check(const std::string& name, const std::function<void()>& call, const Kept& kept = {},
               const Counter* counter = nullptr, const Platform& platform = {});
    // A line for an operation that could not be set up; it counts as checked and grown.
    void Fail(const std::string& name, const std::string& why);
    // Checks the meters themselves: `leak` leaks one thing per call, and the readings must show it.
    void ExpectCaught(const std::string& name, const std::function<void()>& leak, int calls);
    // Prints the closing line; the number of operations that grew beyond their rules (and of meters that
    // failed their check).
    int Finish();

private:
    void Measured(const std::string& name, const std::function<void()>& call, const Kept& kept, const Counter* counter,
                  const Platform& platform);
    int CountFor(double msPerCall) const;

    Options options_;
    int checked_ = 0;
    int grown_ = 0;
    int blindMeters_ = 0;
};

}  // namespace soak
