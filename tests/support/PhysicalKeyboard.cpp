#include "PhysicalKeyboard.h"

#include "Desktop.h"

#include <cstdio>

namespace tavtest {

namespace {

constexpr const wchar_t* kShell = L"Z:\\bin\\sh";
constexpr const wchar_t* kXdotool = L"Z:\\usr\\bin\\xdotool";

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

}  // namespace

bool PhysicalKeyboard::Available() {
    wchar_t display[64];
    return Exists(kXdotool) && Exists(kShell) && GetEnvironmentVariableW(L"DISPLAY", display, 64) > 0;
}

bool PhysicalKeyboard::Run(const std::string& arguments) {
    static unsigned s_runs = 0;
    char done[96];
    std::snprintf(done, sizeof done, "/tmp/tavtest-xdotool-%lu-%u", GetCurrentProcessId(), ++s_runs);
    std::wstring donePath = L"Z:" + Widen(done);
    for (wchar_t& ch : donePath)
        if (ch == L'/')
            ch = L'\\';
    DeleteFileW(donePath.c_str());
    // The status goes to a scratch name first and is renamed when complete: the test never reads half.
    const std::string script = "xdotool " + arguments + "; echo $? > " + done + ".part && mv " + done + ".part " + done;
    // Wine splits the command line into the Unix program's arguments by the Windows rules.
    std::wstring command = L"/bin/sh -c " + Widen(CommandLineQuoted(script));
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(kShell, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        return false;
    if (process.hProcess != nullptr)
        CloseHandle(process.hProcess);
    if (process.hThread != nullptr)
        CloseHandle(process.hThread);
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

bool PhysicalKeyboard::Type(const std::string& text) { return Run("type -- " + ShellQuoted(text)); }

bool PhysicalKeyboard::Click(HWND window) {
    RECT rect = {};
    if (!GetWindowRect(window, &rect))
        return false;
    char arguments[96];
    std::snprintf(arguments, sizeof arguments, "mousemove %ld %ld click 1", (rect.left + rect.right) / 2,
                  (rect.top + rect.bottom) / 2);
    return Run(arguments);
}

}  // namespace tavtest
