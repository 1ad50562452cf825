#include "launch/Messengers.h"

#include "launch/CommandLine.h"
#include "launch/Execute.h"
#include "registry/Registry.h"

#include <exception>

const wchar_t* const kMessengerSkype = L"Skype";
const wchar_t* const kMessengerAimTriton = L"AIM Triton";
const wchar_t* const kMessengerYahoo = L"Yahoo! Messenger";
const wchar_t* const kMessengerNone = L"";

namespace {

const wchar_t kYahooKey[] = L"SOFTWARE\\Classes\\ymsgr\\shell\\open\\command";
const wchar_t kWindowsMessengerKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msmsgs.exe";
const wchar_t kMsnKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\msnmsgr.exe";
const wchar_t kCompanionKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\PVCUHost.exe";

// The three display names, made on first use.
const CStdStr<wchar_t>& YahooName() {
    static const CStdStr<wchar_t> name = L"Yahoo! Messenger";
    return name;
}
const CStdStr<wchar_t>& WindowsMessengerName() {
    static const CStdStr<wchar_t> name = L"Windows Messenger";
    return name;
}
const CStdStr<wchar_t>& MsnName() {
    static const CStdStr<wchar_t> name = L"MSN Messenger";
    return name;
}

// The default value of HKEY_LOCAL_MACHINE\`key` (native view, then the 32-bit view); empty when missing.
CStdStr<wchar_t> RegisteredCommandLine(const wchar_t* key) {
    CStdStr<wchar_t> value;
    CRegistry registry(HKEY_LOCAL_MACHINE, key, true);
    registry.ReadStringValue(L"", value);
    return value;
}

// Whether the program registered under `key` can be found; `value` receives the registered text. A
// standard-library exception (a line that the argument cut cannot handle) counts as not installed.
bool ProbeInstalled(const wchar_t* key, CStdStr<wchar_t>& value) {
    try {
        value = RegisteredCommandLine(key);
        return isValidFile(value, true);
    } catch (const std::exception&) {
        return false;
    }
}

bool ProbeInstalled(const wchar_t* key) {
    CStdStr<wchar_t> ignored;
    return ProbeInstalled(key, ignored);
}

}  // namespace

void GetAvailableMessengers(std::list<CStdStr<wchar_t>>& messengers) {
    bool yahoo = ProbeInstalled(kYahooKey);
    bool windowsMessenger = ProbeInstalled(kWindowsMessengerKey);
    bool msn = ProbeInstalled(kMsnKey);
    // The list order differs from the probe order; hosts show the list as it comes.
    if (yahoo)
        messengers.push_back(YahooName());
    if (msn)
        messengers.push_back(MsnName());
    if (windowsMessenger)
        messengers.push_back(WindowsMessengerName());
    // Nothing was written; the flush is made as hosts have always seen it.
    RegFlushKey(HKEY_CURRENT_USER);
}

int LaunchMessenger(CStdStr<wchar_t> name) {
    CStdStr<wchar_t> commandLine;
    if (name.compare(YahooName()) == 0)
        commandLine = RegisteredCommandLine(kYahooKey);
    else if (name.compare(WindowsMessengerName()) == 0)
        commandLine = RegisteredCommandLine(kWindowsMessengerKey);
    else if (name.compare(MsnName()) == 0)
        commandLine = RegisteredCommandLine(kMsnKey);
    if (commandLine.IsEmpty())
        return 0;
    // No existence check before launching; a failed start is not reported.
    CStdStr<wchar_t> program, args;
    if (ExtractProgram(commandLine, program, args))
        ExecuteProgram(program, args, SW_SHOWNORMAL, false, nullptr);
    return 1;
}

int IsPVAppInstalled(CStdStr<wchar_t>& path) {
    CStdStr<wchar_t> value;
    if (!ProbeInstalled(kCompanionKey, value))
        return 0;
    path = value;
    return 1;
}
