// The foreground full-name query of each process finder implementation against a raw
// QueryFullProcessImageNameW of the same process, with a window of the benchmark's own in front.
#include "Bench.h"

#include <TavUtil.h>

#include <windows.h>
#include <tlhelp32.h>

#include <cstdio>
#include <string>

namespace {

LRESULT CALLBACK BenchWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcW(window, message, wParam, lParam);
}

void Pump() {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

// A visible window of the benchmark, brought to the front (polled for up to two seconds).
HWND ShowWindowInFront() {
    WNDCLASSW wc{};
    wc.lpfnWndProc = BenchWindowProc;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = L"TavProcessBenchWindow";
    RegisterClassW(&wc);
    HWND window = CreateWindowExW(0, wc.lpszClassName, L"process bench", WS_OVERLAPPEDWINDOW, 30, 30, 300, 200,
                                  nullptr, nullptr, wc.hInstance, nullptr);
    ShowWindow(window, SW_SHOW);
    for (int i = 0; i < 200 && GetForegroundWindow() != window; ++i) {
        SetForegroundWindow(window);
        Pump();
        Sleep(10);
    }
    return window;
}

int RunningProcesses() {
    tav::UniqueSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    int count = 0;
    if (snapshot && Process32FirstW(snapshot.get(), &entry)) {
        do {
            ++count;
        } while (Process32NextW(snapshot.get(), &entry));
    }
    return count;
}

// What a host would write by hand: the foreground window's process, opened and asked for its image name.
std::wstring RawForegroundFullName() {
    DWORD pid = 0;
    GetWindowThreadProcessId(GetForegroundWindow(), &pid);
    tav::UniqueHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, pid));
    wchar_t buffer[MAX_PATH];
    DWORD size = MAX_PATH;
    if (!process || !QueryFullProcessImageNameW(process.get(), 0, buffer, &size))
        return {};
    return std::wstring(buffer, size);
}

}  // namespace

int main() {
    HWND window = ShowWindowInFront();
    if (GetForegroundWindow() != window) {
        std::fprintf(stderr, "bench_process: the benchmark window did not come to the front\n");
        return 1;
    }
    std::printf("processes running: %d\n", RunningProcesses());
    std::printf("foreground process: %ls\n", RawForegroundFullName().c_str());

    CProcessFinder95 toolhelp95;
    CProcessFinderNT psapi;
    CProcessFinder2kPlus toolhelp2k;
    const struct {
        const char* name;
        CProcessFinder* finder;
    } variants[] = {
        {"CProcessFinder95", &toolhelp95},
        {"CProcessFinderNT", &psapi},
        {"CProcessFinder2kPlus", &toolhelp2k},
    };
    volatile size_t sink = 0;
    const int kIterations = 200;
    for (const auto& variant : variants) {
        std::printf("%s reports: %ls\n", variant.name, variant.finder->GetForegroundProcessFullName(0).c_str());
        bench::Compare(
            std::string(variant.name) + "::GetForegroundProcessFullName vs QueryFullProcessImageNameW",
            [&] { sink = sink + variant.finder->GetForegroundProcessFullName(0).size(); },
            [&] { sink = sink + RawForegroundFullName().size(); }, kIterations);
    }
    DestroyWindow(window);
    return 0;
}
