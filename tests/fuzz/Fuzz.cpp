#include "Fuzz.h"

#include "Regressions.h"
#include "TestSupport.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <unordered_set>

namespace fuzz {

namespace {

constexpr double kQuickSecondsPerDriver = 2.0;  // the quick pass: every driver, half a minute in all
constexpr uint64_t kLongInputsDefault = 1000000;
constexpr uint64_t kProgressEvery = 50000;  // inputs between two progress lines of a long pass
// A single call that takes longer than this is a hang: the input is recorded and the process ends.
constexpr ULONGLONG kCallBoundMs = 60000;
// Random inputs stay below these sizes (the extremes themselves are larger and run once per pass): a
// 100,000-unit input costs a system entry point seconds, and a million inputs must fit in a long pass.
constexpr size_t kMaxWindowUnits = 4096;
constexpr size_t kMaxGrownUnits = 100000;

uint64_t EnvNumber(const char* name, uint64_t fallback) {
    const char* value = std::getenv(name);
    return value && *value ? std::strtoull(value, nullptr, 0) : fallback;
}

uint64_t BaseSeed() {
    static const uint64_t seed = [] {
        uint64_t fallback = (static_cast<uint64_t>(GetTickCount64()) << 20) ^ GetCurrentProcessId() ^
                            static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        uint64_t chosen = EnvNumber("TAVUTIL_FUZZ_SEED", fallback);
        std::printf("fuzz: seed 0x%llx (TAVUTIL_FUZZ_SEED=0x%llx repeats this run), %s pass\n",
                    static_cast<unsigned long long>(chosen), static_cast<unsigned long long>(chosen),
                    LongPass() ? "long" : "quick");
        std::fflush(stdout);
        return chosen;
    }();
    return seed;
}

uint64_t Hash(const std::string& text) {
    uint64_t h = 1469598103934665603ull;
    for (unsigned char c : text)
        h = (h ^ c) * 1099511628211ull;
    return h;
}

uint64_t Mix(uint64_t a, uint64_t b) {
    uint64_t x = a ^ (b + 0x9E3779B97F4A7C15ull + (a << 6) + (a >> 2));
    x ^= x >> 31;
    x *= 0xBF58476D1CE4E5B9ull;
    return x ^ (x >> 29);
}

std::wstring FailureFile() { return tavtest::BinDir() + L"\\fuzz-failures.txt"; }

// The call in progress, for the watchdog and the crash handler (one driver runs at a time).
struct CurrentCall {
    const char* driver = nullptr;
    const Input* input = nullptr;
    uint64_t index = 0;
    std::atomic<ULONGLONG> startedAt{0};
} current;

void RecordFailure(const char* driver, const Input& input, uint64_t index, const std::string& why) {
    std::string row = std::string("    {\"") + driver + "\", L\"" + Escaped(input.text) + "\", " +
                      std::to_string(input.choices) + "ull},";
    std::printf("fuzz: FAILURE in %s, input %llu (seed 0x%llx): %s\n  row: %s\n", driver,
                static_cast<unsigned long long>(index), static_cast<unsigned long long>(BaseSeed()),
                why.substr(0, 2000).c_str(),
                row.size() > 4000 ? "(longer than 4000 characters: see the file)" : row.c_str());
    std::fflush(stdout);
    if (FILE* file = _wfopen(FailureFile().c_str(), L"ab")) {
        std::fprintf(file, "// %s: %s\n%s\n", driver, why.substr(0, 2000).c_str(), row.c_str());
        std::fclose(file);
    }
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS* info) {
    if (current.input != nullptr) {
        char why[64];
        std::snprintf(why, sizeof why, "crashed with exception 0x%08lx",
                      static_cast<unsigned long>(info->ExceptionRecord->ExceptionCode));
        RecordFailure(current.driver, *current.input, current.index, why);
    }
    return EXCEPTION_EXECUTE_HANDLER;  // end the process without a debugger
}

void StartWatchdog() {
    static bool started = false;
    if (started)
        return;
    started = true;
    SetUnhandledExceptionFilter(&OnCrash);
    std::thread([] {
        for (;;) {
            Sleep(1000);
            ULONGLONG started = current.startedAt.load();
            if (started != 0 && GetTickCount64() - started > kCallBoundMs && current.input != nullptr) {
                RecordFailure(current.driver, *current.input, current.index, "one call ran over 60 s");
                TerminateProcess(GetCurrentProcess(), 3);
            }
        }
    }).detach();
}

struct Report {
    std::string driver;
    uint64_t inputs;
    size_t outcomes;
    double seconds;
    uint64_t failures;
};
std::vector<Report>& Reports() {
    static std::vector<Report> reports;
    return reports;
}

class TablePrinter : public testing::Environment {
public:
    void TearDown() override {
        std::printf("\n%-16s %10s %10s %9s %9s\n", "driver", "inputs", "outcomes", "seconds", "failures");
        for (const Report& r : Reports())
            std::printf("%-16s %10llu %10zu %9.1f %9llu\n", r.driver.c_str(), static_cast<unsigned long long>(r.inputs),
                        r.outcomes, r.seconds, static_cast<unsigned long long>(r.failures));
        std::fflush(stdout);
    }
};
const testing::Environment* const kTable = testing::AddGlobalTestEnvironment(new TablePrinter);

const std::vector<wchar_t>& InterestingUnits() {
    static const std::vector<wchar_t> units = {L' ',   L'\t',  L'\r',  L'\n',  L'{',   L'}',   L'(',   L')',   L'[',
                                               L']',   L'+',   L'^',   L'%',   L'*',   L'~',   L'\\',  L'/',   L':',
                                               L'.',   L'"',   L'&',   L'=',   L'-',   L'0',   L'1',   L'9',   L'a',
                                               L'Z',   L'x',   L'?',   L'<',   L'|',   0x00E9, 0x20AC, 0x4E2D, 0xD800,
                                               0xDBFF, 0xDC00, 0xDFFF, 0xFEFF, 0xFFFE, 0xFFFF, 0x007F, 0x0080, 0x0001};
    return units;
}

// A random window of an extreme for the mutator: it keeps the extreme's character (deep nesting, runs of
// one unit, every unit, lone surrogates) at a size a million inputs can afford. Each whole extreme still
// runs once per pass, before the random inputs.
Text WindowOf(Rng& rng, const Text& extreme) {
    if (extreme.size() <= kMaxWindowUnits)
        return extreme;
    size_t length = 1 + rng.Below(static_cast<uint32_t>(kMaxWindowUnits));
    size_t at = rng.Below(static_cast<uint32_t>(extreme.size() - length + 1));
    return extreme.substr(at, length);
}

wchar_t RandomUnit(Rng& rng) {
    if (rng.OneIn(3))
        return static_cast<wchar_t>(rng.Below(0x10000));
    return rng.Pick(InterestingUnits());
}

}  // namespace

void Expect(bool ok, const std::string& what) {
    if (!ok)
        throw Mismatch(what);
}

std::string Narrow(const Text& text) {
    std::string out;
    for (wchar_t ch : text) {
        if (ch >= 0x20 && ch < 0x7F) {
            out += static_cast<char>(ch);
        } else {
            char code[8];
            std::snprintf(code, sizeof code, "\\u%04X", static_cast<unsigned>(ch));
            out += code;
        }
    }
    return out;
}

std::string Escaped(const Text& text) {
    std::string out;
    for (wchar_t ch : text) {
        if (ch == L'\\' || ch == L'"') {
            out += '\\';
            out += static_cast<char>(ch);
        } else if (ch >= 0x20 && ch < 0x7F) {
            out += static_cast<char>(ch);
        } else {
            // The literal is closed after the escape so that a following hex digit cannot extend it.
            char code[16];
            std::snprintf(code, sizeof code, "\\x%04X\" L\"", static_cast<unsigned>(ch));
            out += code;
        }
    }
    return out;
}

bool LongPass() {
    static const bool isLong = std::wstring(GetCommandLineW()).find(L" --long") != std::wstring::npos ||
                               EnvNumber("TAVUTIL_FUZZ_LONG", 0) != 0;
    return isLong;
}

std::vector<Text> Extremes() {
    std::vector<Text> extremes = {L"", L" ", L"\\", L".", L"{", L"}", L"(", L")", L"\"", L"%", L"%%"};
    extremes.push_back(Text(1 << 20, L'a'));  // a megabyte (in units)
    Text words;
    while (words.size() < (1 << 20))
        words += L"word ";
    extremes.push_back(words);
    extremes.push_back(Text(100000, L'(') + L"a" + Text(100000, L')'));  // 100,000 levels of nesting
    extremes.push_back(Text(100000, L'('));
    extremes.push_back(Text(100000, L'+') + L"x");
    Text modifiersAndGroups;
    for (int i = 0; i < 100000; ++i)
        modifiersAndGroups += L"^(";
    extremes.push_back(modifiersAndGroups);
    extremes.push_back(Text(100000, L'{'));
    extremes.push_back(Text(100000, L'\\'));
    Text every;  // every UTF-16 unit but the terminator, in order
    for (unsigned unit = 1; unit < 0x10000; ++unit)
        every += static_cast<wchar_t>(unit);
    extremes.push_back(every);
    extremes.push_back(Text(1, static_cast<wchar_t>(0xD800)));  // lone surrogates
    extremes.push_back(Text(1, static_cast<wchar_t>(0xDFFF)));
    extremes.push_back(L"a\xDC00\xD800z");
    extremes.push_back(Text(4000, static_cast<wchar_t>(0xD83D)));
    return extremes;
}

Text Mutate(Rng& rng, const Text& original, const std::vector<Text>& seeds) {
    Text text = original;
    int steps = 1 + static_cast<int>(rng.Below(4));
    for (int step = 0; step < steps; ++step) {
        size_t size = text.size();
        switch (rng.Below(5)) {
        case 0: {  // insert
            size_t at = rng.Below(static_cast<uint32_t>(size + 1));
            size_t count = rng.OneIn(8) ? rng.Below(64) : 1;
            Text units;
            for (size_t i = 0; i < count; ++i)
                units += RandomUnit(rng);
            text.insert(at, units);
            break;
        }
        case 1:  // delete
            if (size > 0) {
                size_t at = rng.Below(static_cast<uint32_t>(size));
                text.erase(at, 1 + rng.Below(static_cast<uint32_t>(size - at < 8 ? size - at : 8)));
            }
            break;
        case 2:  // flip
            if (size > 0)
                text[rng.Below(static_cast<uint32_t>(size))] ^= static_cast<wchar_t>(1u << rng.Below(16));
            break;
        case 3:  // duplicate
            if (size > 0 && size < kMaxGrownUnits) {
                size_t at = rng.Below(static_cast<uint32_t>(size));
                size_t length = 1 + rng.Below(static_cast<uint32_t>(size - at));
                Text piece = text.substr(at, length);
                size_t times = rng.OneIn(10) ? 1 + rng.Below(200) : 1;
                for (size_t i = 0; i < times && text.size() + length <= kMaxGrownUnits; ++i)
                    text.insert(at, piece);
            }
            break;
        default: {  // splice with another seed
            if (seeds.empty())
                break;
            const Text& other = rng.Pick(seeds);
            size_t cut = rng.Below(static_cast<uint32_t>(size + 1));
            size_t from = rng.Below(static_cast<uint32_t>(other.size() + 1));
            text = text.substr(0, cut) + other.substr(from);
            break;
        }
        }
    }
    return text;
}

void RunDriver(const Driver& driver) {
    StartWatchdog();
    const uint64_t seed = Mix(BaseSeed(), Hash(driver.name));
    const bool isLong = LongPass();
    const uint64_t limit = isLong ? EnvNumber("TAVUTIL_FUZZ_INPUTS", kLongInputsDefault) : UINT64_MAX;
    // A long pass can be cut into ranges of input numbers run by separate processes (or sessions): an
    // input depends only on the seed and its number, so the ranges together are the whole pass.
    const uint64_t from = isLong ? EnvNumber("TAVUTIL_FUZZ_FROM", 0) : 0;
    const uint64_t until = isLong ? std::min(limit, EnvNumber("TAVUTIL_FUZZ_UNTIL", limit)) : UINT64_MAX;
    if (isLong && (from > 0 || until < limit))
        std::printf("fuzz: %s runs inputs %llu to %llu of %llu\n", driver.name, static_cast<unsigned long long>(from),
                    static_cast<unsigned long long>(until - 1), static_cast<unsigned long long>(limit));
    const std::vector<Text> extremes = Extremes();
    std::unordered_set<uint64_t> outcomes;
    uint64_t inputs = 0, failures = 0, run = 0;  // inputs: the next input's number; run: those run here
    auto started = std::chrono::steady_clock::now();
    auto elapsed = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count(); };

    auto runOne = [&](Input input, uint64_t index) {
        if (index < from || index >= until) {
            ++inputs;
            return;
        }
        if (driver.cString)
            input.text = input.text.substr(0, input.text.find(L'\0'));
        if (input.text.size() > driver.maxLength)
            input.text.resize(driver.maxLength);
        current.driver = driver.name;
        current.input = &input;
        current.index = index;
        current.startedAt = GetTickCount64();
        try {
            outcomes.insert(Hash(driver.run(input)));
        } catch (const Mismatch& mismatch) {
            ++failures;
            RecordFailure(driver.name, input, index, mismatch.what());
        } catch (const std::exception& e) {
            ++failures;
            RecordFailure(driver.name, input, index, std::string("unexpected exception: ") + e.what());
        } catch (...) {
            ++failures;
            RecordFailure(driver.name, input, index, "unexpected exception of an unknown type");
        }
        ULONGLONG took = GetTickCount64() - current.startedAt;
        if (took > 2000)
            std::printf("fuzz: %s input %llu took %.1f s (%zu units)\n", driver.name,
                        static_cast<unsigned long long>(index), took / 1000.0, input.text.size());
        current.startedAt = 0;
        current.input = nullptr;
        ++inputs;
        ++run;
        if (isLong && run % kProgressEvery == 0) {  // what a pass cut short still shows
            std::printf("fuzz: %s reached input %llu, %llu run, %llu failures, %.0f s\n", driver.name,
                        static_cast<unsigned long long>(index), static_cast<unsigned long long>(run),
                        static_cast<unsigned long long>(failures), elapsed());
            std::fflush(stdout);
        }
    };

    for (const Row& row : kRegressionRows)
        if (std::string(row.driver) == driver.name)
            runOne({row.text, row.choices}, inputs);
    for (const Text& seedText : driver.seeds)
        runOne({seedText, Mix(seed, inputs)}, inputs);
    for (const Text& extreme : extremes)
        if (isLong || !driver.costly || elapsed() < kQuickSecondsPerDriver)
            runOne({extreme, Mix(seed, inputs)}, inputs);
    if (isLong) {  // every UTF-16 unit alone, or an even spread of them in a pass of fewer than 1,000,000 inputs
        unsigned step = limit >= kLongInputsDefault ? 1 : static_cast<unsigned>(0x10000 * 10 / (limit + 1) + 1);
        for (unsigned unit = 0; unit < 0x10000 && inputs < limit; unit += step)
            runOne({Text(1, static_cast<wchar_t>(unit)), Mix(seed, inputs)}, inputs);
    }

    inputs = std::max(inputs, from);
    while (isLong ? inputs < until : elapsed() < kQuickSecondsPerDriver) {
        Rng rng(Mix(seed, inputs));
        Input input;
        input.choices = rng.Next();
        unsigned kind = rng.Below(10);
        if (driver.generate && (kind < 5 || driver.seeds.empty()))
            input.text = driver.generate(rng);
        else if (kind < 9 && !driver.seeds.empty())
            input.text = Mutate(rng, rng.Pick(driver.seeds), driver.seeds);
        else
            input.text = Mutate(rng, rng.OneIn(4) ? WindowOf(rng, rng.Pick(extremes)) : Text(), driver.seeds);
        runOne(std::move(input), inputs);
    }

    Reports().push_back({driver.name, run, outcomes.size(), elapsed(), failures});
    std::printf("fuzz: %-16s %llu inputs, %zu outcomes, %.1f s, %llu failures\n", driver.name,
                static_cast<unsigned long long>(run), outcomes.size(), elapsed(),
                static_cast<unsigned long long>(failures));
    std::fflush(stdout);
    EXPECT_EQ(failures, 0u) << driver.name << ": see the FAILURE lines above and fuzz-failures.txt";
}

}  // namespace fuzz
