// The fault layer: every system call TavUtil.dll makes goes through a counting stub that forwards to the real
// function or, on request, fails the way the function documents its failure.
//
// Where the calls are caught:
// - The import table of TavUtil.dll: every imported function with a row that can fail gets its slot pointed
//   at a stub (a few bytes of generated code that hand the call to one dispatcher).
// - The functions the library binds at run time: the library's own import of GetProcAddress is pointed at a
//   typed replacement that forwards the look-up and hands back, instead of the real address, the stub of the
//   function's row. Every run-time binding the library makes (the Toolhelp and PSAPI functions, SendInput, the
//   token and SID functions, GetProductInfo, DwmIsCompositionEnabled, and the version.dll and winmm.dll functions
//   of its ".tavbind" records, which it binds through the same GetProcAddress) therefore lands on a stub. The
//   ".tavbind" records already bound when the layer is installed are pointed at their stubs directly.
// - Memory: the DLL links its C++ runtime statically, and that runtime's operator new, and the library's own
//   allocations, reach the heap through the DLL's imports of msvcrt.dll's malloc, calloc and realloc; failing
//   those imports refuses memory to everything the library allocates (std::string, std::vector, new). Below
//   them msvcrt uses the process heap directly, not through the DLL, so HeapAlloc is watched only where the
//   library calls it itself.
//
// Every import must have a row (FaultTable.cpp): an import without one is reported by Install, and a run-time
// binding without one is reported by UnknownBindings, so that the next import gets a row. Functions that cannot
// fail by contract (GetCurrentProcessId, wcslen, the critical sections) are listed as such and left unwatched.
//
// Process-wide state, installed once for the whole run and never taken out: objects of the library keep the
// stub addresses they bound, so the stubs stay valid (and forward) until the process ends. One thread drives
// it; calls the library makes on other threads are counted and failed the same way.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tavtest::faults {

// How a function answers when it fails.
enum class Contract {
    Fails,       // returns `failValue` and sets `lastError` (0: leaves the last error alone)
    CannotFail,  // cannot fail by contract, or is a release whose refusal would leak by construction: not watched
    Runtime,     // reached only by the statically linked C/C++ runtime's own plumbing (threads, locks, unwinding,
                 // stdio of the standard streams): not the library's call, not watched
};

struct Row {
    const char* dll;       // as the import table names it, any case: "kernel32.dll"
    const char* function;  // "RegOpenKeyExW"
    Contract contract;
    uint64_t failValue;  // the documented failure value: 0, FALSE, INVALID_HANDLE_VALUE, an LSTATUS, an HRESULT
    DWORD lastError;
    bool allocates;  // a refusal of this call is a refusal of memory
    // -1, or the index (0 to 3) of an argument that makes a call a release when it is 0: such a call undoes what an
    // earlier call of the same function did (AttachThreadInput with FALSE detaches), and is forwarded, neither
    // counted nor failed, as the releases of their own are left unwatched.
    int releaseWhenZero = -1;
};

// The table of every function TavUtil.dll imports or binds at run time.
const std::vector<Row>& Table();

// Points the imports of TavUtil.dll at their stubs. Returns false, with the reasons in `problems` (one line
// each), when an import has no row; the stubs are in place either way.
bool Install(std::string& problems);

// The watched functions, by index: the row of each.
size_t FunctionCount();
const Row& FunctionRow(size_t index);
std::string FunctionName(size_t index);  // "KERNEL32.dll!CreateFileW"

// Counting: Arm(true) zeroes the counts and counts every call from then on; Arm(false) stops counting.
void Arm(bool on);
// The calls of each function counted since Arm(true).
std::vector<uint64_t> Counts();
// While armed, the `call`-th call (1-based) of function `index` fails; FailNothing() lifts it.
void FailAt(size_t index, uint64_t call);
void FailNothing();
// Whether the failure asked for was delivered since the last FailAt.
bool FailureDelivered();

// Run-time bindings the library made of functions without a row ("psapi.dll!EnumProcesses").
std::vector<std::string> UnknownBindings();

}  // namespace tavtest::faults
