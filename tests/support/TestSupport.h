// Helpers for tests that run under Wine: temporary folders, child processes with captured output, and
// runs of a test executable under another emulated Windows version.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace tavtest {

// Full path of the running test executable, and the folder that holds it and TavUtil.dll.
std::wstring SelfPath();
std::wstring BinDir();
// The system folder (GetSystemDirectoryW), and the file a loaded module was loaded from.
std::wstring SystemFolder();
std::wstring ModulePath(HMODULE module);
// `text` in lower case, for comparing paths.
std::wstring Lower(std::wstring text);

// UTF-8 <-> UTF-16 for messages and captured output.
std::string Narrow(const std::wstring& text);
std::wstring Widen(const std::string& text);
// The system's text for an error code (GetLastError), without its line end, for a failure's message.
std::string ErrorText(DWORD error);

// A new, empty folder under %TEMP% (its name starts with `hint`), removed with its content on destruction.
class TempDir {
public:
    // Made in `parent` (with its trailing backslash), by default in the temporary folder that every test
    // program shares.
    explicit TempDir(const std::wstring& hint = L"tavtest", const std::wstring& parent = {});
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::wstring& path() const { return path_; }
    // path() + L"\\" + name
    std::wstring operator/(const std::wstring& name) const { return path_ + L"\\" + name; }

private:
    std::wstring path_;
};

// Removes a folder and everything below it; true when it is gone afterwards.
bool RemoveTree(const std::wstring& path);
// Writes bytes to a file, replacing it.
bool WriteFileBytes(const std::wstring& path, const std::string& bytes);
// A whole file's bytes; empty when it cannot be read.
std::string ReadFileBytes(const std::wstring& path);
// A playable sound file's bytes: `samples` samples of silence, 8 kHz, 8-bit mono (800 samples: 0.1 s).
std::string SilentWave(unsigned samples);

struct ChildResult {
    DWORD exitCode = static_cast<DWORD>(-1);
    bool finished = false;  // false: it did not end within the time-out and was terminated
    std::string output;     // standard output and standard error together
};

// Runs a command line, captures its output, waits for it to end. `directory`: the folder it starts in
// (empty: this process's current folder).
// CreateProcessW as every test starts a program of its own. A refused start is tried up to three times, each
// refusal reported on standard error with the system's code and sentence, and a test that needs a program of
// its own must not fail on one. A child that ends before it runs gives 1359 (ERROR_INTERNAL_ERROR): seen on
// clean clones when Wine's loader heap was placed over the shared user data page, which the test session now
// prevents (cmake/wine-session.sh, tests/process/WineStartTest.cpp). False with the last refusal's code as the
// last error.
// `application` is CreateProcessW's first argument (null: the program is the command line's first word).
bool StartProcess(const std::wstring& commandLine, bool inheritHandles, STARTUPINFOW& startup, const wchar_t* directory,
                  PROCESS_INFORMATION& created, const wchar_t* application = nullptr);

ChildResult RunProgram(const std::wstring& commandLine, DWORD timeoutMs = 60000, const std::wstring& directory = {});

struct EmulatedRun {
    std::wstring windowsVersion;             // Wine's name: win95, win98, winme, nt40, win2k, winxp, ...
    std::vector<std::wstring> disabledDlls;  // e.g. L"dwmapi": LoadLibraryW of it fails in the child
    std::wstring environment;                // value of TAVTEST_ARG in the child
};

// Runs a copy of this test executable under the given emulated Windows version, with only the tests
// matching `filter` (disabled tests included, so that child-only tests are named DISABLED_...).
// The copy and its Wine application settings are removed afterwards.
ChildResult RunSelfAs(const EmulatedRun& run, const std::string& filter, DWORD timeoutMs = 60000);

// DLL planting: a copy of this test executable runs from a new folder of its own, with TavUtil.dll beside
// it, and starts in a second new folder; every planted file is copied into both folders first.
struct PlantedRun {
    std::vector<std::wstring> planted;  // full paths of the files to plant, e.g. a stand-in dwmapi.dll
    std::wstring environment;           // value of TAVTEST_ARG in the child
};
struct PlantedResult {
    ChildResult child;
    // The markers a planted DLL left ("NAME.loaded" beside itself, made when it is loaded), full paths.
    std::vector<std::wstring> loadedMarkers;
};
// Only the tests matching `filter` run in the copy (disabled ones included). Both folders are removed
// afterwards.
PlantedResult RunSelfWithPlanted(const PlantedRun& run, const std::string& filter, DWORD timeoutMs = 60000);

// Success when a child test run finished, ended with status 0 and reported at least one test passed (a
// filter that matches no test passes "0 tests" and is a failure here); otherwise the failure with the
// child's output.
testing::AssertionResult ChildPassed(const ChildResult& result);

// The TAVTEST_ARG of the process (empty when not set).
std::wstring ChildArgument();

}  // namespace tavtest
