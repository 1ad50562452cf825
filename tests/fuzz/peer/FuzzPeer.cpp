// fuzz_peer.exe: the other program of the hostile-input drivers. It shows no window and ends when its standard
// input closes, or after two minutes without an order, so that a driver that failed never leaves it behind
// (a range of the long pass gives it orders for far longer than two minutes).
//
//   fuzz_peer.exe wait        writes "ready <window>\n" (a hidden top-level window of its own, in decimal) to
//                             its standard output, then waits: a child under whatever name it was copied to.
//   fuzz_peer.exe clipboard   writes "ready 0\n", then reads orders from its standard input and fills the
//                             clipboard with them, answering one byte 'k' to each. An order: a 32-bit count,
//                             then each item as three 32-bit numbers (format, how, byte count) and the bytes.
//                             How: 0 the data now; 1 delayed, rendered when asked; 2 delayed, and never
//                             rendered when asked.
//   idle=<ms>                 after either: the time without an order after which it ends (120000).
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

namespace {

constexpr UINT kOrder = WM_APP + 1;
constexpr UINT_PTR kIdleTimer = 1;
UINT idleMs = 120000;

struct Item {
    uint32_t format = 0, how = 0;
    std::vector<char> bytes;
};
std::vector<Item> items;  // the order being served; rendered from on request

HANDLE Output() { return GetStdHandle(STD_OUTPUT_HANDLE); }

void Write(const std::string& text) {
    DWORD written = 0;
    WriteFile(Output(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

bool ReadExactly(void* data, DWORD size) {
    char* at = static_cast<char*>(data);
    while (size > 0) {
        DWORD got = 0;
        if (!ReadFile(GetStdHandle(STD_INPUT_HANDLE), at, size, &got, nullptr) || got == 0)
            return false;
        at += got;
        size -= got;
    }
    return true;
}

HGLOBAL Block(const Item& item) {
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, item.bytes.size());
    if (block == nullptr)
        return nullptr;
    if (!item.bytes.empty()) {
        void* data = GlobalLock(block);
        std::memcpy(data, item.bytes.data(), item.bytes.size());
        GlobalUnlock(block);
    }
    return block;
}

void Serve(HWND window, std::vector<Item>* order) {
    SetTimer(window, kIdleTimer, idleMs, nullptr);  // starts the idle time again
    items = std::move(*order);
    delete order;
    if (OpenClipboard(window)) {
        EmptyClipboard();
        for (const Item& item : items) {
            if (item.how != 0) {
                SetClipboardData(item.format, nullptr);
            } else if (HGLOBAL block = Block(item)) {
                if (SetClipboardData(item.format, block) == nullptr)
                    GlobalFree(block);
            }
        }
        CloseClipboard();
    }
    Write("k");
}

LRESULT CALLBACK PeerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case kOrder: Serve(window, reinterpret_cast<std::vector<Item>*>(lParam)); return 0;
    case WM_RENDERFORMAT:
        for (const Item& item : items)
            if (item.format == wParam && item.how == 1)
                if (HGLOBAL block = Block(item))
                    if (SetClipboardData(item.format, block) == nullptr)
                        GlobalFree(block);
        return 0;
    case WM_RENDERALLFORMATS: return 0;  // what was not rendered goes with the program
    case WM_TIMER:
    case WM_CLOSE: DestroyWindow(window); return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcW(window, message, wParam, lParam);
    }
}

// Reads orders (clipboard) or only waits for the end of the input (wait), then closes the window.
DWORD WINAPI Reader(void* parameter) {
    HWND window = static_cast<HWND>(parameter);
    for (;;) {
        uint32_t count = 0;
        if (!ReadExactly(&count, sizeof count))
            break;
        auto* order = new std::vector<Item>(count);
        bool complete = true;
        for (Item& item : *order) {
            uint32_t header[3];
            complete = ReadExactly(header, sizeof header);
            if (!complete)
                break;
            item.format = header[0];
            item.how = header[1];
            item.bytes.resize(header[2]);
            complete = header[2] == 0 || ReadExactly(item.bytes.data(), header[2]);
            if (!complete)
                break;
        }
        if (!complete) {
            delete order;
            break;
        }
        PostMessageW(window, kOrder, 0, reinterpret_cast<LPARAM>(order));
    }
    PostMessageW(window, WM_CLOSE, 0, 0);
    return 0;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR commandLine, int) {
    const std::wstring arguments = commandLine;
    const bool clipboard = arguments.find(L"clipboard") != std::wstring::npos;
    const size_t idle = arguments.find(L"idle=");
    if (idle != std::wstring::npos)
        idleMs = static_cast<UINT>(std::wcstoul(arguments.c_str() + idle + 5, nullptr, 10));
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = PeerProc;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = L"TavFuzzPeer";
    RegisterClassW(&windowClass);
    HWND window = CreateWindowExW(0, windowClass.lpszClassName, L"fuzz peer", WS_OVERLAPPED, 0, 0, 10, 10, nullptr,
                                  nullptr, instance, nullptr);
    if (window == nullptr)
        return 1;
    SetTimer(window, kIdleTimer, idleMs, nullptr);
    char ready[64];
    std::snprintf(ready, sizeof ready, "ready %lld\n",
                  clipboard ? 0LL : static_cast<long long>(reinterpret_cast<intptr_t>(window)));
    Write(ready);
    HANDLE reader = CreateThread(nullptr, 0, Reader, window, 0, nullptr);
    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    if (reader != nullptr)
        CloseHandle(reader);
    ExitProcess(0);  // the reader may still wait on the input
}
