// soak.exe: calls each stateful operation of the library thousands of times and prints, for each, the
// handles, GDI objects, windows and memory of the process before and after. Growth that no rule of the
// library settles fails the run.
//
//   soak.exe [--quick] [--filter TEXT]
//
// --quick: at most 100 calls per operation (a smoke run for the regular tests); --filter: only the
// operations whose name contains TEXT. The exit code is the number of operations that grew (capped).
#include "Areas.h"
#include "KeySink.h"

#include "TestSupport.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <vector>

namespace {

// Before any operation is judged, the meters show that they see the smallest leak of each kind. What the
// checks leak is kept in room reserved beforehand (so the keeping itself does not grow the heap) and
// released afterwards.
void CheckMeters(soak::Runner& runner) {
    std::vector<void*> kept;
    kept.reserve(10001);
    auto keep = [&kept](void* thing) { kept.push_back(thing); };

    runner.ExpectCaught(
        "one 16-byte allocation per call", [&] { keep(malloc(16)); }, 10000);
    for (void* block : kept)
        free(block);
    kept.clear();
    runner.ExpectCaught(
        "one page of VirtualAlloc per call",
        [&] { keep(VirtualAlloc(nullptr, 4096, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE)); }, 512);
    for (void* page : kept)
        VirtualFree(page, 0, MEM_RELEASE);
    kept.clear();
    runner.ExpectCaught(
        "one registry key handle per call",
        [&] {
            HKEY key = nullptr;
            RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, &key);
            keep(key);
        },
        100);
    for (void* key : kept)
        RegCloseKey(static_cast<HKEY>(key));
    kept.clear();
    runner.ExpectCaught(
        "one GDI brush per call", [&] { keep(CreateSolidBrush(RGB(1, 2, 3))); }, 100);
    for (void* brush : kept)
        DeleteObject(brush);
    kept.clear();
    runner.ExpectCaught(
        "one window per call",
        [&] { keep(CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr)); },
        100);
    for (void* window : kept)
        DestroyWindow(static_cast<HWND>(window));
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    soak::Options options;
    for (int i = 1; i < argc; ++i) {
        if (wcscmp(argv[i], soak::kForegroundOption) == 0)
            return soak::RunForegroundWindow();
        if (wcscmp(argv[i], L"--quick") == 0)
            options.quick = true;
        else if (wcscmp(argv[i], L"--filter") == 0 && i + 1 < argc)
            options.filter = tavtest::Narrow(argv[++i]);
        else {
            fprintf(stderr, "usage: soak.exe [--quick] [--filter TEXT]\n");
            return 2;
        }
    }
    soak::Runner runner(options);
    CheckMeters(runner);
    soak::SoakRegistry(runner);
    soak::SoakRegistryClass(runner);
    soak::SoakDesktop(runner);
    soak::SoakFiles(runner);
    soak::SoakProcesses(runner);
    soak::SoakCom(runner);
    soak::SoakSystem(runner);
    soak::SoakSupport(runner);
    soak::SoakCapi(runner);
    const int grown = runner.Finish();
    return grown > 100 ? 100 : grown;
}
