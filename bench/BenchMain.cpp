#include "Bench.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>

namespace bench {

double MeanMicroseconds(const std::function<void()>& operation, int iterations) {
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    double best = 1e300;
    for (int round = 0; round < 3; ++round) {
        LARGE_INTEGER start, end;
        QueryPerformanceCounter(&start);
        for (int i = 0; i < iterations; ++i)
            operation();
        QueryPerformanceCounter(&end);
        double us = double(end.QuadPart - start.QuadPart) * 1e6 / double(frequency.QuadPart) / iterations;
        best = std::min(best, us);
    }
    return best;
}

double Report(const std::string& name, double libraryMicroseconds, double baselineMicroseconds) {
    double ratio = baselineMicroseconds > 0 ? libraryMicroseconds / baselineMicroseconds : 0.0;
    std::printf("%-48s library %10.3f us  baseline %10.3f us  ratio %6.2f\n", name.c_str(), libraryMicroseconds,
                baselineMicroseconds, ratio);
    std::fflush(stdout);
    return ratio;
}

double Compare(const std::string& name, const std::function<void()>& library, const std::function<void()>& baseline,
               int iterations) {
    library();  // warm both paths once
    baseline();
    double lib = MeanMicroseconds(library, iterations);
    double base = MeanMicroseconds(baseline, iterations);
    return Report(name, lib, base);
}

}  // namespace bench
