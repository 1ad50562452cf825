#include "Bench.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace bench {
namespace {

struct Row {
    std::string name;
    std::string measured;
    std::string goal;
    bool met;
};

std::vector<Row>& Rows() {
    static std::vector<Row> rows;  // this program's rows, in the order the cases ran
    return rows;
}

std::string Printf(const char* format, double a, double b = 0, double c = 0) {
    char text[128];
    std::snprintf(text, sizeof text, format, a, b, c);
    return text;
}

std::string FormatLine(const std::string& name, const std::string& measured, const std::string& goal,
                       const std::string& status) {
    char line[256];
    std::snprintf(line, sizeof line, "%-54.54s %-22s %-9s %s", name.c_str(), measured.c_str(), goal.c_str(),
                  status.c_str());
    return line;
}

std::string FormatRow(const Row& row) {
    const bool reference = row.goal == "-";  // a figure shown for reference, held to no goal
    return FormatLine(row.name, row.measured, row.goal, reference ? "" : row.met ? "met" : "MISSED");
}

// bench_table.txt in the folder of the executable: `make bench` gathers the rows of every program there.
std::string TablePath() {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    std::string folder(path);
    folder.erase(folder.find_last_of("\\/") + 1);
    return folder + "bench_table.txt";
}

}  // namespace

double NowMicroseconds() {
    static const double ticksPerMicrosecond = [] {
        LARGE_INTEGER frequency;
        QueryPerformanceFrequency(&frequency);
        return double(frequency.QuadPart) / 1e6;
    }();
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    return double(now.QuadPart) / ticksPerMicrosecond;
}

double MicrosecondsPerCall(const std::function<void()>& operation, int calls) {
    const double start = NowMicroseconds();
    for (int i = 0; i < calls; ++i)
        operation();
    return (NowMicroseconds() - start) / calls;
}

Spread SpreadOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    const double median = n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
    return {median, values.front(), values.back()};
}

std::vector<Comparison> ComparePhases(const std::string& name, const std::vector<std::string>& phaseNames,
                                      const std::function<Phases()>& library, const std::function<Phases()>& baseline,
                                      int pairs, const std::vector<double>& goals) {
    const size_t phases = phaseNames.size();
    std::vector<std::vector<double>> libraryTimes(phases), baselineTimes(phases), ratios(phases);
    for (int pair = 0; pair < pairs; ++pair) {
        const Phases a = library();
        const Phases b = baseline();
        for (size_t p = 0; p < phases; ++p) {
            libraryTimes[p].push_back(a[p]);
            baselineTimes[p].push_back(b[p]);
            ratios[p].push_back(b[p] > 0 ? a[p] / b[p] : 0);
        }
    }
    std::vector<Comparison> comparisons;
    for (size_t p = 0; p < phases; ++p) {
        Comparison c{SpreadOf(libraryTimes[p]), SpreadOf(baselineTimes[p]), SpreadOf(ratios[p])};
        const std::string rowName = phaseNames[p].empty() ? name : name + ": " + phaseNames[p];
        std::printf("%-56s library %10.2f us  baseline %10.2f us  ratio %5.2f (min %5.2f, max %5.2f)\n",
                    rowName.c_str(), c.library.median, c.baseline.median, c.ratio.median, c.ratio.min, c.ratio.max);
        std::fflush(stdout);
        AddRatioRow(rowName, c, p < goals.size() ? goals[p] : 0);
        comparisons.push_back(c);
    }
    return comparisons;
}

Comparison Compare(const std::string& name, const std::function<void()>& library, const std::function<void()>& baseline,
                   const Options& options, const std::function<void()>& prepare) {
    auto timed = [&](const std::function<void()>& side) {
        return [&, side]() -> Phases {
            if (prepare)
                prepare();
            double fastest = MicrosecondsPerCall(side, options.callsPerBatch);
            for (int batch = 1; batch < options.batches; ++batch)
                fastest = std::min(fastest, MicrosecondsPerCall(side, options.callsPerBatch));
            return {fastest};
        };
    };
    library();  // warm both paths once
    baseline();
    return ComparePhases(name, {""}, timed(library), timed(baseline), options.pairs, {options.goal})[0];
}

void AddRow(const std::string& name, const std::string& measured, const std::string& goal, bool met) {
    Rows().push_back({name, measured, goal, met});
}

void AddRatioRow(const std::string& name, const Comparison& comparison, double goal) {
    const Spread& r = comparison.ratio;
    AddRow(name, Printf("%.2f (%.2f-%.2f)", r.median, r.min, r.max), goal > 0 ? Printf("<= %.2f", goal) : "-",
           goal <= 0 || r.median <= goal);
}

int Finish() {
    const std::string path = TablePath();
    const bool first = GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES;
    std::ofstream table(path, std::ios::app);
    if (first)  // the first program of a `make bench` run writes the column heads
        table << FormatLine("case", "median (min-max)", "goal", "status") << "\n";
    for (const Row& row : Rows()) {
        const std::string line = FormatRow(row);
        std::printf("%s\n", line.c_str());
        table << line << "\n";
    }
    std::fflush(stdout);
    return 0;
}

}  // namespace bench
