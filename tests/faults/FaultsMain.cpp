// faults.exe [--quick] [--desktop | --all] [--area NAME] [--max-points N] [--trace]
// Runs every operation under the fault layer and ends with a table per area and the line
// "faults: N operations, M injection points, F failed"; non-zero when anything failed.
// --quick: the first and the last call of each function only, for the regular test run. The areas that need the
// desktop session (typing, the clipboard, windows, sounds, waits) run with --desktop (alone) or --all.
#include "Faults.h"

#include "FaultLayer.h"
#include "KeyTestWindows.h"
#include "Meter.h"

#include <TavUtil.h>
#include "capi/TavUtilC.h"

#include <objbase.h>
#include <windows.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <map>
#include <stdexcept>
#include <exception>
#include <thread>

namespace faults {

Answer CatchAll(const std::function<Answer()>& call) {
    try {
        return call();
    } catch (const std::bad_alloc&) {
        return {kBadAlloc, L""};
    } catch (const CMemoryException&) {
        return {kBadAlloc, L""};
    } catch (const COleException&) {
        return {kOleException, L""};
    } catch (const std::out_of_range&) {
        return {kOutOfRange, L""};
    } catch (const std::length_error&) {
        return {kLengthError, L""};
    } catch (...) {
        return {kOtherException, L""};
    }
}

Answer TextResult(const std::function<int32_t(wchar_t*, size_t, size_t*)>& fill) {
    wchar_t buffer[4096] = {};
    size_t needed = 0;
    const int32_t status = fill(buffer, 4096, &needed);
    return {status, status >= 0 ? std::wstring(buffer) : std::wstring()};
}

namespace {

using namespace tavtest::faults;

constexpr ULONGLONG kHangMs = 60000;     // one run of one operation; the slowest takes a few seconds
constexpr int kConfirmRuns = 8;          // runs of one injection point that confirm a growth seen once
constexpr int64_t kHeapLeakPerRun = 16;  // the smallest allocation; allocator noise is under 6 bytes per call

std::atomic<ULONGLONG> g_runStarted{0};
bool g_trace = false;   // --trace: every run's name before it starts (to find a run that ends the process)
std::string g_runName;  // written only by the driving thread, read by the watch when it gives up

void WatchForHangs() {
    std::thread([] {
        for (;;) {
            std::this_thread::sleep_for(std::chrono::seconds(1));
            const ULONGLONG started = g_runStarted;
            if (started != 0 && GetTickCount64() - started > kHangMs) {
                printf("FAIL hang: %s ran for more than %llu s\n", g_runName.c_str(), kHangMs / 1000);
                fflush(stdout);
                TerminateProcess(GetCurrentProcess(), 3);
            }
        }
    }).detach();
}

// The trace goes straight to faults-trace.txt in the current folder, unbuffered: it must survive a kill.
void Trace(const std::string& line) {
    static HANDLE file =
        CreateFileW(L"faults-trace.txt", GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

// A crash (an access violation, or the hardened build's trap) names the run it happened in.
LONG WINAPI OnCrash(EXCEPTION_POINTERS* info) {
    printf("FAIL crash 0x%08lx: %s\n", info->ExceptionRecord->ExceptionCode, g_runName.c_str());
    fflush(stdout);
    TerminateProcess(GetCurrentProcess(), 4);
    return EXCEPTION_CONTINUE_SEARCH;
}

// An exception that ends the process (through a noexcept boundary) names the run too.
void OnTerminate() {
    printf("FAIL terminate: %s\n", g_runName.c_str());
    fflush(stdout);
    TerminateProcess(GetCurrentProcess(), 5);
}

std::string Narrow(const std::wstring& text) {
    std::string out;
    for (wchar_t c : text)
        out += c < 128 ? static_cast<char>(c) : '?';
    return out.size() > 60 ? out.substr(0, 60) + "..." : out;
}

std::string Show(const Answer& answer) { return std::to_string(answer.status) + " \"" + Narrow(answer.text) + "\""; }

// Keys the session reports down (read on a fresh thread: see keytest::PressedKeys).
std::string KeysDown() {
    std::string down;
    for (UINT vk : keytest::PressedKeys())
        down += std::to_string(vk) + " ";
    return down;
}

struct Growth {
    long handles = 0, gdi = 0, windows = 0;
    int64_t heap = 0;
    bool any() const { return handles > 0 || gdi > 0 || windows > 0 || heap > 0; }
    std::string text() const {
        return "handles +" + std::to_string(handles) + ", GDI +" + std::to_string(gdi) + ", windows +" +
               std::to_string(windows) + ", heap +" + std::to_string(heap) + " B";
    }
};

Growth Between(const soak::Reading& before, const soak::Reading& after) {
    return {after.handles - before.handles, after.gdiObjects - before.gdiObjects, after.windows - before.windows,
            after.heapBytes - before.heapBytes};
}

// The growth that counts for `op`.
Growth Counted(const Operation& op, Growth growth) {
    if (op.platformKeepsHandles != nullptr)
        growth.handles = 0;
    if (op.platformWorkerWindow != nullptr) {
        growth.windows = 0;
        growth.heap = 0;
    }
    return growth;
}

// Growth over kConfirmRuns runs that is a leak: at least one object or one smallest allocation per run.
bool Leaked(const Growth& growth) {
    return growth.handles >= kConfirmRuns || growth.gdi >= kConfirmRuns || growth.windows >= kConfirmRuns ||
           growth.heap >= kHeapLeakPerRun * kConfirmRuns;
}

struct AreaTotals {
    int operations = 0;
    long points = 0;
    int failed = 0;
};

class Runner {
public:
    // `checkKeys`: keys are the session's, so only a run that types checks them (another program may type
    // while the areas without a desktop run).
    Runner(bool quick, int maxPoints, bool checkKeys) : quick_(quick), maxPoints_(maxPoints), checkKeys_(checkKeys) {}

    void Check(const Operation& op) {
        AreaTotals& area = areas_[op.area];
        ++area.operations;
        const std::string opName = std::string(op.area) + "." + op.name;

        // Warm-up: what the library and the platform set up once, before anything is measured.
        checkProblem_.clear();
        Once(op, opName + " (warm-up)");
        Arm(true);
        const Answer normal = Once(op, opName + " (counting)");
        Arm(false);
        const std::vector<uint64_t> counts = Counts();
        reached_.resize(std::max(reached_.size(), counts.size()));
        for (size_t function = 0; function < counts.size(); ++function)
            reached_[function] = reached_[function] || counts[function] > 0;
        if (!checkProblem_.empty()) {
            Fail(area, opName + ": with nothing refused: " + checkProblem_);
            return;
        }
        if (normal.status == TAV_E_EXCEPTION || normal.status <= kBadAlloc) {
            Fail(area, opName + ": fails with nothing refused: " + Show(normal));
            return;
        }
        if (op.expectStatus && normal.status != *op.expectStatus) {
            Fail(area,
                 opName + ": with nothing refused gives " + Show(normal) + ", not " + std::to_string(*op.expectStatus));
            return;
        }
        // With nothing failing, repeated runs must hold nothing more; otherwise no growth under failure could be
        // told from it. Two batches: the first may still meet what the platform sets up once.
        Growth growth;
        for (int batch = 0; batch < 2; ++batch) {
            const soak::Reading start = soak::Measure();
            for (int i = 0; i < kConfirmRuns; ++i)
                Once(op, opName + " (nothing failing)");
            growth = Counted(op, Between(start, soak::Measure()));
            if (!Leaked(growth))
                break;
        }
        if (Leaked(growth)) {
            Fail(area, opName + " leaks with nothing failing over " + std::to_string(kConfirmRuns) +
                           " runs: " + growth.text());
            return;
        }
        if (!checkProblem_.empty()) {
            Fail(area, opName + ": with nothing refused: " + checkProblem_);
            return;
        }
        long points = 0, failures = 0;
        for (size_t function = 0; function < counts.size(); ++function) {
            for (uint64_t call : Calls(counts[function])) {
                ++points;
                if (!Inject(op, opName, normal, function, call, area))
                    ++failures;
            }
        }
        area.points += points;
        printf("  %-44s %5ld points%s%s%s\n", opName.c_str(), points, failures ? "  FAILED" : "",
               op.silent ? "  (rules silent; neutral: " : "", op.silent ? (std::string(op.silent) + ")").c_str() : "");
        fflush(stdout);
    }

    int Finish() {
        int operations = 0, failed = 0;
        long points = 0;
        printf("\n%-12s %10s %16s %8s\n", "area", "operations", "injection points", "failed");
        for (const auto& [name, totals] : areas_) {
            printf("%-12s %10d %16ld %8d\n", name.c_str(), totals.operations, totals.points, totals.failed);
            operations += totals.operations;
            points += totals.points;
            failed += totals.failed;
        }
        // Watched functions no operation reached (the operations that call them are not driven here).
        std::string unreached;
        for (size_t function = 0; function < FunctionCount(); ++function)
            if (function >= reached_.size() || !reached_[function])
                unreached += " " + FunctionName(function);
        printf("watched functions no operation reached:%s\n", unreached.empty() ? " none" : unreached.c_str());
        for (const std::string& unknown : UnknownBindings()) {
            printf("FAIL run-time binding without a row: %s\n", unknown.c_str());
            ++failed;
        }
        printf("faults: %d operations, %ld injection points, %d failed\n", operations, points, failed);
        return failed;
    }

private:
    // The calls of a function to fail: all of them, or the first, the last and an even spread between.
    std::vector<uint64_t> Calls(uint64_t count) const {
        std::vector<uint64_t> calls;
        const uint64_t limit = quick_ ? 2 : static_cast<uint64_t>(maxPoints_);
        if (count <= limit) {
            for (uint64_t k = 1; k <= count; ++k)
                calls.push_back(k);
            return calls;
        }
        for (uint64_t i = 0; i < limit; ++i)
            calls.push_back(1 + i * (count - 1) / (limit - 1));
        return calls;
    }

    // One run; `target` is the call asked to fail in it, if any. What the operation's check finds wrong is kept in
    // checkProblem_ (the first finding since it was last cleared).
    Answer Once(const Operation& op, const std::string& name, const FailedCall* target = nullptr) {
        g_runName = name;
        if (g_trace)
            Trace("run " + name + "\n");
        if (op.setup)
            op.setup();
        g_runStarted = GetTickCount64();
        Answer answer = CatchAll(op.run);
        g_runStarted = 0;
        if (op.check) {
            const std::string wrong = op.check(target != nullptr && FailureDelivered() ? target : nullptr);
            if (!wrong.empty() && checkProblem_.empty())
                checkProblem_ = wrong;
        }
        if (op.teardown)
            op.teardown();
        return answer;
    }

    // One injection point; false when the run broke a rule (printed).
    bool Inject(const Operation& op, const std::string& opName, const Answer& normal, size_t function, uint64_t call,
                AreaTotals& area) {
        const Row& row = FunctionRow(function);
        const std::string name = opName + " with " + FunctionName(function) + " #" + std::to_string(call) + " failing";
        checkProblem_.clear();
        const soak::Reading before = soak::Measure();
        const Answer answer = Injected(op, name, function, call);
        const Growth growth = Counted(op, Between(before, soak::Measure()));
        std::string problems;
        if (!Allowed(op, normal, answer, row))
            problems += " answer " + Show(answer) + " (normal " + Show(normal) + ");";
        if (growth.any()) {
            // Confirmed only when it grows over two batches of runs: the heaps and the platform keep caches of their
            // own, and some are made on first use (the sound worker's window).
            Growth confirm;
            for (int batch = 0; batch < 2; ++batch) {
                const soak::Reading start = soak::Measure();
                for (int i = 0; i < kConfirmRuns; ++i)
                    Injected(op, name, function, call);
                confirm = Counted(op, Between(start, soak::Measure()));
                if (!Leaked(confirm))
                    break;
            }
            if (Leaked(confirm))
                problems += " leaks over " + std::to_string(kConfirmRuns) + " runs: " + confirm.text() + ";";
        }
        if (!checkProblem_.empty())
            problems += " " + checkProblem_ + ";";
        const std::string down = checkKeys_ ? KeysDown() : std::string();
        if (!down.empty())
            problems += " keys left down: " + down + ";";
        if (problems.empty())
            return true;
        Fail(area, name + ":" + problems);
        return false;
    }

    Answer Injected(const Operation& op, const std::string& name, size_t function, uint64_t call) {
        const FailedCall target{FunctionRow(function).function, call};
        FailAt(function, call);
        Arm(true);
        const Answer answer = Once(op, name, &target);
        Arm(false);
        FailNothing();
        return answer;
    }

    static bool Allowed(const Operation& op, const Answer& normal, const Answer& answer, const Row& row) {
        if (answer.status == TAV_E_EXCEPTION || answer.status == kOtherException)
            return false;
        if (answer == normal)
            return true;
        for (const Answer& neutral : op.neutral)
            if (answer == neutral)
                return true;
        if (row.allocates && (answer.status == TAV_E_OUT_OF_MEMORY || answer.status == kBadAlloc))
            return true;
        if (op.settledOutOfRange && answer.status == kOutOfRange)
            return true;
        if ((op.allow & kAnyText) && answer.status == normal.status)
            return true;
        if ((op.allow & kWindowsStatus) && answer.status > 0)
            return true;
        if ((op.allow & kAnyResult) && answer.status > kBadAlloc)
            return true;
        return false;
    }

    void Fail(AreaTotals& area, const std::string& what) {
        ++area.failed;
        printf("FAIL %s\n", what.c_str());
        fflush(stdout);
    }

    bool quick_;
    int maxPoints_;
    bool checkKeys_;
    std::map<std::string, AreaTotals> areas_;
    std::vector<bool> reached_;
    std::string checkProblem_;
};

}  // namespace

}  // namespace faults

int wmain(int argc, wchar_t** argv) {
    bool quick = false;
    int maxPoints = 64;
    std::wstring onlyArea;
    bool withSystem = true, withDesktop = false;
    for (int i = 1; i < argc; ++i) {
        if (wcscmp(argv[i], L"--trace") == 0)
            faults::g_trace = true;
        else if (wcscmp(argv[i], L"--desktop") == 0)
            withSystem = false, withDesktop = true;
        else if (wcscmp(argv[i], L"--all") == 0)
            withDesktop = true;
        else if (wcscmp(argv[i], L"--quick") == 0)
            quick = true;
        else if (wcscmp(argv[i], L"--area") == 0 && i + 1 < argc)
            onlyArea = argv[++i];
        else if (wcscmp(argv[i], L"--max-points") == 0 && i + 1 < argc)
            maxPoints = std::max(2, _wtoi(argv[++i]));
    }
    setvbuf(stdout, nullptr, _IONBF, 0);
    SetUnhandledExceptionFilter(faults::OnCrash);
    std::set_terminate(faults::OnTerminate);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    faults::WatchForHangs();

    tav_log_set_output(TAV_LOG_TO_NONE, nullptr);  // the library's own records stay out of the table
    std::string problems;
    const bool complete = tavtest::faults::Install(problems);
    if (!complete)
        printf("FAIL the fault table lacks rows:\n%s", problems.c_str());
    size_t watched = 0, cannotFail = 0, runtime = 0;
    for (const tavtest::faults::Row& row : tavtest::faults::Table())
        (row.contract == tavtest::faults::Contract::Fails        ? watched
         : row.contract == tavtest::faults::Contract::CannotFail ? cannotFail
                                                                 : runtime)++;
    printf("fault table: %zu functions that fail on request, %zu that cannot fail, %zu of the runtime alone\n", watched,
           cannotFail, runtime);

    std::vector<faults::Operation> operations;
    if (withSystem) {
        faults::AddTextOperations(operations);
        faults::AddRegistryOperations(operations);
        faults::AddFileOperations(operations);
        faults::AddSystemOperations(operations);
        faults::AddComOperations(operations);
        faults::AddCppOperations(operations);
    }
    if (withDesktop) {
        faults::AddDesktopOperations(operations);
        faults::AddComDesktopOperations(operations);
        faults::AddLaunchOperations(operations);
        faults::AddKeysOperations(operations);
        faults::AddPickerOperations(operations);
    }

    faults::Runner runner(quick, maxPoints, withDesktop);
    for (const faults::Operation& op : operations) {
        const std::wstring area(op.area, op.area + strlen(op.area));
        if ((onlyArea.empty() || onlyArea == area) && !(quick && op.fullRunOnly != nullptr))
            runner.Check(op);
    }
    const int failed = runner.Finish() + (complete ? 0 : 1);
    CoUninitialize();
    return failed == 0 ? 0 : 1;
}
