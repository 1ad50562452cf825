#include "PhysicalKeyboard.h"

#include "Desktop.h"
#include "KeyTestWindows.h"

#include <algorithm>
#include <cstdio>

namespace tavtest {

namespace {

constexpr const wchar_t* kShell = L"Z:\\bin\\sh";
constexpr const wchar_t* kXdotool = L"Z:\\usr\\bin\\xdotool";

// A key that types nothing and that the tests do not hold: pressed to learn that the X focus reached Wine.
// (A key the X keymap lacks, F20 say, would be bound by xdotool for the moment, and Wine, which reads the
// keymap at start, would not know it.)
constexpr PhysicalKey kProbe{"Shift_R", VK_RSHIFT, "right Shift"};

std::wstring Widen(const std::string& text) { return std::wstring(text.begin(), text.end()); }

bool Exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// Single quotes for /bin/sh: the text as one word, whatever it holds.
std::string ShellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (char ch : text)
        quoted += ch == '\'' ? std::string("'\\''") : std::string(1, ch);
    return quoted + "'";
}

// Double quotes by the rules Windows programs split their command line with (backslashes double before a
// quote).
std::string CommandLineQuoted(const std::string& text) {
    std::string quoted = "\"";
    size_t backslashes = 0;
    for (char ch : text) {
        if (ch == '\\') {
            ++backslashes;
            continue;
        }
        quoted.append(ch == '"' ? backslashes * 2 + 1 : backslashes, '\\');
        backslashes = 0;
        quoted += ch;
    }
    quoted.append(backslashes * 2, '\\');
    return quoted + "\"";
}

// Starts a Unix program by its path; a Unix program comes with no handles (should a later Wine give them, they
// are not needed).
bool StartUnixProgram(const wchar_t* program, std::wstring commandLine) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(program, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        return false;
    if (process.hProcess != nullptr)
        CloseHandle(process.hProcess);
    if (process.hThread != nullptr)
        CloseHandle(process.hThread);
    return true;
}

}  // namespace

bool PhysicalKeyboard::Available() {
    wchar_t display[64];
    return Exists(kXdotool) && Exists(kShell) && GetEnvironmentVariableW(L"DISPLAY", display, 64) > 0;
}

bool PhysicalKeyboard::Start(const std::string& arguments) {
    return StartUnixProgram(nullptr, L"/usr/bin/xdotool " + Widen(arguments));
}

bool PhysicalKeyboard::Run(const std::string& arguments) {
    static unsigned s_runs = 0;
    char done[96];
    std::snprintf(done, sizeof done, "/tmp/tavtest-xdotool-%lu-%u", GetCurrentProcessId(), ++s_runs);
    std::wstring donePath = L"Z:" + Widen(done);
    std::replace(donePath.begin(), donePath.end(), L'/', L'\\');
    DeleteFileW(donePath.c_str());
    // The status goes to a scratch name first and is renamed when complete: the test never reads half.
    const std::string script = "xdotool " + arguments + "; echo $? > " + done + ".part && mv " + done + ".part " + done;
    // Wine splits the command line into the Unix program's arguments by the Windows rules.
    if (!StartUnixProgram(kShell, L"/bin/sh -c " + Widen(CommandLineQuoted(script))))
        return false;
    if (!WaitUntil([&] { return Exists(donePath); }, kWaitMs * 3))
        return false;
    char status[16] = {};
    if (FILE* file = _wfopen(donePath.c_str(), L"rb")) {
        std::fread(status, 1, sizeof status - 1, file);
        std::fclose(file);
    }
    DeleteFileW(donePath.c_str());
    return status[0] == '0';
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
    if (!GetWindowRect(window, &rect))
        return false;
    char arguments[96];
    std::snprintf(arguments, sizeof arguments, "mousemove %ld %ld click 1", (rect.left + rect.right) / 2,
                  (rect.top + rect.bottom) / 2);
    return Run(arguments);
}

bool PhysicalKeyboard::Down(const PhysicalKey& key) {
    if (!Start(std::string("keydown ") + key.xName))
        return false;
    down_.push_back(key);
    return WaitUntil([&] { return keytest::IsKeyDown(key.vk); }, 5000);
}

bool PhysicalKeyboard::StartUp(const PhysicalKey& key) {
    down_.erase(std::remove_if(down_.begin(), down_.end(), [&](const PhysicalKey& k) { return k.vk == key.vk; }),
                down_.end());
    return Start(std::string("keyup ") + key.xName);
}

bool PhysicalKeyboard::Up(const PhysicalKey& key) {
    if (!StartUp(key))
        return false;
    return WaitUntil([&] { return !keytest::IsKeyDown(key.vk); }, 5000);
}

bool PhysicalKeyboard::Type(const std::string& text) { return Run("type -- " + ShellQuoted(text)); }

bool PhysicalKeyboard::StartType(const std::string& text) { return Start("type -- " + ShellQuoted(text)); }

}  // namespace tavtest
