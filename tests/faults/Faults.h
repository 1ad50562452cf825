// The fault run: every operation of the library, once counting the system calls it makes, then once per
// (function, k-th call) with exactly that call failing (tests/support/FaultLayer.h). Each run must end without
// a crash or a hang, without an exception the library does not settle, without TAV_E_EXCEPTION through the C
// interface, with nothing leaked and no key left down, and with an answer the operation's failure rules allow.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace keytest {
class EditWindow;
}

namespace faults {

// What an operation answered: the C function's result (or a code below for the C++ form) and its text out.
struct Answer {
    int64_t status = 0;
    std::wstring text;
    bool operator==(const Answer& other) const { return status == other.status && text == other.text; }
};

// Codes of the C++ form: the exceptions that leave it.
constexpr int64_t kBadAlloc = -1000;        // std::bad_alloc (or the class library's memory exception)
constexpr int64_t kOutOfRange = -1001;      // std::out_of_range
constexpr int64_t kLengthError = -1002;     // std::length_error
constexpr int64_t kOtherException = -1003;  // anything else: never allowed
constexpr int64_t kOleException = -1004;    // the class library's OLE exception

// Answers allowed under failure besides the normal one (the answer with nothing failing).
enum Allow : unsigned {
    kAnyText = 1u << 0,        // the same result with another text (text read from a changing system)
    kWindowsStatus = 1u << 1,  // a Windows status passed on unchanged (a positive code)
    kAnyResult = 1u << 2,      // any result but TAV_E_EXCEPTION: the operation's answer is the system's
};

// The call that was made to fail in a run: the function's name as its row gives it and which call (1-based).
struct FailedCall {
    std::string function;  // "SystemParametersInfoW"
    uint64_t call = 0;
};

struct Operation {
    const char* area;
    std::string name;
    std::function<Answer()> run;
    // The answers the failure rules allow (the neutral ones), beside the normal answer, the flags of Allow, and
    // TAV_E_OUT_OF_MEMORY (or kBadAlloc) where the failed call was an allocation.
    std::vector<Answer> neutral;
    unsigned allow = 0;
    // Where the operation's failure rules say nothing: why the neutral answer is the one expected.
    const char* silent = nullptr;
    // Around every run, unwatched (raw Win32 of the test, not the library): fixtures in, fixtures out.
    std::function<void()> setup;
    std::function<void()> teardown;
    // Answers of the C++ form that carry a settled exception (e.g. kOutOfRange).
    bool settledOutOfRange = false;
    // Set where the platform itself keeps kernel handles with every run (measured with raw calls, outside
    // the library): why; the handle count is then not compared, the other counts are.
    const char* platformKeepsHandles = nullptr;
    // Set where the platform makes and ends a window of its own, with its memory, on a thread of its own while
    // the operation runs, so that the window and heap counts of a batch depend on when that thread last ran:
    // why; those two counts are then not compared, handles and GDI objects are.
    const char* platformWorkerWindow = nullptr;
    // Where set, the status the operation must give with nothing failing (an operation that cannot do its work
    // here would otherwise pass on its failure answer alone).
    std::optional<int64_t> expectStatus = std::nullopt;
    // Set where one run takes seconds (a dialog that fills a folder tree): why the quick run leaves it out.
    const char* fullRunOnly = nullptr;
    // Where set, called after every run (before the teardown) for what the run must have put back: what is wrong,
    // empty when nothing is. `failing` is the injected failure the run met, or null when nothing failed.
    std::function<std::string(const FailedCall* failing)> check = nullptr;
};

// Runs the C++ form `call`, turning the exceptions that leave it into the codes above.
Answer CatchAll(const std::function<Answer()>& call);

// The operations of each group of areas (FaultsText.cpp, FaultsSystem.cpp, ...).
void AddTextOperations(std::vector<Operation>& out);
void AddRegistryOperations(std::vector<Operation>& out);
void AddFileOperations(std::vector<Operation>& out);
void AddSystemOperations(std::vector<Operation>& out);
void AddComOperations(std::vector<Operation>& out);
void AddCppOperations(std::vector<Operation>& out);      // the C++ forms the C interface cannot tell apart
void AddDesktopOperations(std::vector<Operation>& out);  // the desktop session's, as the three below
void AddLaunchOperations(std::vector<Operation>& out);
void AddPickerOperations(std::vector<Operation>& out);
void AddKeysOperations(std::vector<Operation>& out);
void AddComDesktopOperations(std::vector<Operation>& out);  // the desktop session's too: hand the foreground on

// A folder of the run's own, made on first use (with a trailing backslash), and a file in it with `content`.
const std::wstring& Scratch();
std::wstring ScratchFile(const wchar_t* name, const std::string& content);

// The typing target of the desktop operations (an Edit of the run's own), made on first use and kept for the whole
// run; a setup that puts it, empty, in front; and a typing call's result with what arrived in the target (where
// keys could not be sent the text is shorter).
keytest::EditWindow& Target();
void TypeIntoTarget();
Answer Typed(const std::function<int32_t()>& type);

// Answer helpers for the text-out rule of the C interface: call `fill(buffer, capacity, &needed)`.
Answer TextResult(const std::function<int32_t(wchar_t*, size_t, size_t*)>& fill);

}  // namespace faults
