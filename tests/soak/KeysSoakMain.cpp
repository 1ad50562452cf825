// keys_soak.exe: types generated scripts for real into a window of its own and checks after each that no
// key is down, or for scripts with '[' or BREAK exactly the keys the rules leave, cleared again by
// SendKeys_ReleaseAll or a Control release. Prints the counts; each failing script is written to a file
// (one per line, UTF-8) to become a row of the regular tests.
//
//   keys_soak.exe [--count N] [--seed S] [--failures FILE]
//
// N plain scripts (default 10,000), and N/10 each with '[', with BREAK, and with both; then N plain scripts
// typed with kSendReleaseModifiers while a person holds a modifier (HeldModifierSoak.h).
#include "HeldModifierSoak.h"
#include "KeyTestWindows.h"
#include "ScriptGenerator.h"
#include "ScriptRun.h"

#include "TestSupport.h"

#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

struct Tally {
    int typed = 0, failed = 0, leftKeys = 0, beyondRelease = 0;
};

}  // namespace

int wmain(int argc, wchar_t** argv) {
    int count = 10000;
    unsigned seed = 1;
    std::wstring failuresPath = L"keys_soak_failures.txt";
    for (int i = 1; i < argc; ++i) {
        if (wcscmp(argv[i], L"--count") == 0 && i + 1 < argc)
            count = _wtoi(argv[++i]);
        else if (wcscmp(argv[i], L"--seed") == 0 && i + 1 < argc)
            seed = static_cast<unsigned>(_wtoi(argv[++i]));
        else if (wcscmp(argv[i], L"--failures") == 0 && i + 1 < argc)
            failuresPath = argv[++i];
        else {
            fprintf(stderr, "usage: keys_soak.exe [--count N] [--seed S] [--failures FILE]\n");
            return 2;
        }
    }
    const struct {
        const char* name;
        keytest::ScriptKinds kinds;
        int count;
    } runs[] = {{"text, modifiers, groups, braces", {false, false}, count},
                {"... and '['/']'", {true, false}, count / 10},
                {"... and BREAK", {false, true}, count / 10},
                {"... and '['/']' and BREAK", {true, true}, count / 10}};

    const keytest::LockStates locks;
    keytest::RecorderWindow window;
    if (GetForegroundWindow() != window.window()) {
        fprintf(stderr, "keys soak: the test window did not come to the front\n");
        return 1;
    }
    FILE* failures = nullptr;
    keytest::ScriptGenerator generator(seed);
    int failedTotal = 0, refronted = 0;
    const DWORD start = GetTickCount();
    for (const auto& run : runs) {
        Tally tally;
        const DWORD runStart = GetTickCount();
        for (int i = 0; i < run.count; ++i) {
            if (GetForegroundWindow() != window.window()) {  // input reaches the foreground window only
                ++refronted;
                tavtest::BringToFront(window.window(), window.window());
            }
            const keytest::GeneratedScript script = generator.Next(run.kinds);
            const keytest::ScriptOutcome outcome = keytest::TypeAndCheck(script, window);
            ++tally.typed;
            tally.leftKeys += outcome.leftKeys;
            tally.beyondRelease += outcome.beyondRelease;
            if (!outcome.ok) {
                ++tally.failed;
                if (!failures)
                    failures = _wfopen(failuresPath.c_str(), L"w");
                const std::string text = keytest::ScriptText(script.script);
                if (failures)
                    fprintf(failures, "%s\n", text.c_str());
                printf("FAILED %s: %s\n", text.c_str(), outcome.problem.c_str());
            }
        }
        printf("keys soak: %-34s %6d scripts, %d failed; %d left keys down as the rules say, %d of them keys no "
               "release of the library reaches (%.1f s)\n",
               run.name, tally.typed, tally.failed, tally.leftKeys, tally.beyondRelease,
               (GetTickCount() - runStart) / 1000.0);
        fflush(stdout);
        failedTotal += tally.failed;
    }
    if (failures)
        fclose(failures);
    const DWORD heldStart = GetTickCount();
    const soak::HeldModifierTally held = soak::RunHeldModifierSoak(window, generator, count);
    printf("keys soak: %-34s %6d scripts with Ctrl, Alt, Shift or Windows held and released by the call; %d keys "
           "left down, %d times the held key lost (%.1f s)%s\n",
           "held modifier, release-modifiers", held.typed, held.leftDown, held.heldLost,
           (GetTickCount() - heldStart) / 1000.0, held.ready ? "" : " - xdotool's keys do not reach Wine");
    if (!held.ready || held.leftDown != 0 || held.heldLost != 0)
        ++failedTotal;
    locks.Restore();
    printf("keys soak: seed %u, %.1f s, window brought back to the front %d times; %d scripts failed%s\n", seed,
           (GetTickCount() - start) / 1000.0, refronted, failedTotal,
           failedTotal ? (" (saved to " + tavtest::Narrow(failuresPath) + ")").c_str() : "");
    return failedTotal == 0 ? 0 : 1;
}
