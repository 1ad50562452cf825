// The hostile-input harness: inputs made from seeds (the rows of the regular test tables), from grammar
// generators and from a list of extremes, each run through one entry point and checked; a failing input
// is printed and written to fuzz-failures.txt beside the executable, ready to become a regression row.
//
// Quick pass (the default, under CTest): two seconds per driver. Long pass (`--long`, `make fuzz`): a
// fixed number of inputs per driver (TAVUTIL_FUZZ_INPUTS, default 1,000,000) and a table at the end.
// Every run prints its seed; TAVUTIL_FUZZ_SEED repeats it. TAVUTIL_FUZZ_FROM and TAVUTIL_FUZZ_UNTIL run
// only the inputs numbered from..until-1 of a long pass, so that one pass can be shared out between
// processes or continued later; a long pass prints how far it has come every 50,000 inputs.
#pragma once

#include <cstdint>
#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace fuzz {

using Text = std::wstring;

// xorshift64*: small, fast and the same everywhere, so that a seed names an input for good.
class Rng {
public:
    explicit Rng(uint64_t seed) : state_(seed ? seed : 0x9E3779B97F4A7C15ull) {}
    uint64_t Next() {
        state_ ^= state_ >> 12;
        state_ ^= state_ << 25;
        state_ ^= state_ >> 27;
        return state_ * 0x2545F4914F6CDD1Dull;
    }
    uint32_t Below(uint32_t n) { return n == 0 ? 0 : static_cast<uint32_t>(Next() % n); }
    bool OneIn(uint32_t n) { return Below(n) == 0; }
    template <typename T> const T& Pick(const std::vector<T>& items) {
        return items[Below(static_cast<uint32_t>(items.size()))];
    }

private:
    uint64_t state_;
};

// One input: its text and a number from which the driver draws its other choices (a width, a flag...).
struct Input {
    Text text;
    uint64_t choices = 0;
};

// A check that failed: the input's answer differs from the reference model's, or a rule was broken.
struct Mismatch : std::runtime_error {
    using std::runtime_error::runtime_error;
};
void Expect(bool ok, const std::string& what);
// Equal as whole texts, embedded NULs included.
inline bool Same(const std::wstring& a, const std::wstring& b) { return a == b; }
std::string Narrow(const Text& text);   // for messages and outcomes: UTF-8, lone surrogates as \uXXXX
std::string Escaped(const Text& text);  // as a wide C++ literal's contents, for regression rows

struct Driver {
    const char* name;
    std::vector<Text> seeds;                       // rows of the regular tests, mutated
    std::function<Text(Rng&)> generate;            // optional grammar-following generator
    std::function<std::string(const Input&)> run;  // one call; the outcome, or throws Mismatch
    bool cString = true;                           // the entry point takes a C string: inputs end at a NUL
    size_t maxLength = SIZE_MAX;                   // longer inputs are cut (entry points that touch the system)
    // An input costs a window, a process or typed keys: the quick pass runs the extremes its two seconds
    // allow (the long pass runs them all).
    bool costly = false;
};

struct Row {  // a regression row: an input that once failed, run first on every pass
    const char* driver;
    const wchar_t* text;
    uint64_t choices;
};

// Runs `driver` for this pass and records its line of the table; fails the current test on a failure.
void RunDriver(const Driver& driver);

bool LongPass();
std::vector<Text> Extremes();  // empty, a megabyte, deep nesting, every UTF-16 unit, lone surrogates, ...
Text Mutate(Rng& rng, const Text& text, const std::vector<Text>& seeds);

}  // namespace fuzz
