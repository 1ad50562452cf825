// A small benchmark frame: each case times the library's operation and a raw Win32 baseline doing the
// same work in the same run, and reports the ratio (library time / baseline time).
#pragma once

#include <functional>
#include <string>

namespace bench {

// Runs `operation` `iterations` times and returns the mean time per call in microseconds (best of 3 rounds).
double MeanMicroseconds(const std::function<void()>& operation, int iterations);

// Prints "name: library X us, baseline Y us, ratio R" and returns the ratio.
double Report(const std::string& name, double libraryMicroseconds, double baselineMicroseconds);

// Times both and reports.
double Compare(const std::string& name, const std::function<void()>& library, const std::function<void()>& baseline,
               int iterations);

}  // namespace bench
