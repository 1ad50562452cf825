#include "PhysicalKeyboard.h"

#include "Desktop.h"
#include "KeyTestWindows.h"

#include <algorithm>

namespace tavtest {

namespace {

// A key that types nothing and that the tests do not hold: pressed to learn that the X focus reached Wine.
// (A key the X keymap lacks, F20 say, would be bound by xdotool for the moment, and Wine, which reads the
// keymap at start, would not know it.)
constexpr PhysicalKey kProbe{"Shift_R", VK_RSHIFT, "right Shift"};

}  // namespace

bool PhysicalKeyboard::Run(const std::string& arguments) {
    std::wstring command = L"/usr/bin/xdotool " + std::wstring(arguments.begin(), arguments.end());
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        return false;
    // A Unix program comes with no handles; should a later Wine give them, they are not needed.
    if (process.hProcess != nullptr)
        CloseHandle(process.hProcess);
    if (process.hThread != nullptr)
        CloseHandle(process.hThread);
    return true;
}

PhysicalKeyboard::PhysicalKeyboard(HWND window) {
    // The click may take a moment to give Wine the focus: the probe key is pressed again until it arrives.
    for (int attempt = 0; attempt < 3 && !ready_; ++attempt) {
        if (!Click(window))
            return;
        ready_ = Down(kProbe) && Up(kProbe);
    }
}

PhysicalKeyboard::~PhysicalKeyboard() {
    while (!down_.empty())
        Up(down_.back());
}

bool PhysicalKeyboard::Click(HWND window) {
    RECT rect = {};
    GetWindowRect(window, &rect);
    const int x = (rect.left + rect.right) / 2, y = (rect.top + rect.bottom) / 2;
    if (!Run("mousemove " + std::to_string(x) + " " + std::to_string(y) + " click 1"))
        return false;
    PumpFor(50);  // the click's own messages; its effect is checked by the probe key
    return true;
}

bool PhysicalKeyboard::Down(const PhysicalKey& key) {
    if (!Run(std::string("keydown ") + key.xName))
        return false;
    down_.push_back(key);
    return WaitUntil([&] { return keytest::IsKeyDown(key.vk); }, 5000);
}

bool PhysicalKeyboard::StartUp(const PhysicalKey& key) {
    down_.erase(std::remove_if(down_.begin(), down_.end(), [&](const PhysicalKey& k) { return k.vk == key.vk; }),
                down_.end());
    return Run(std::string("keyup ") + key.xName);
}

bool PhysicalKeyboard::Up(const PhysicalKey& key) {
    if (!StartUp(key))
        return false;
    return WaitUntil([&] { return !keytest::IsKeyDown(key.vk); }, 5000);
}

bool PhysicalKeyboard::StartType(const std::string& text) { return Run("type -- '" + text + "'"); }

}  // namespace tavtest
