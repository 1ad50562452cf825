#include "FaultLayer.h"

#include "ImportHook.h"

#include <atomic>
#include <cstring>
#include <mutex>

namespace tavtest::faults {

namespace {

// One watched function. The record lives in executable memory: `code` is the stub the import slot points at,
// `mov r10, <this record>; mov rax, <dispatcher>; jmp rax`.
struct Stub {
    void* real;          // offset 0: the dispatcher jumps here to forward
    uint64_t failValue;  // offset 8: the dispatcher returns this to fail
    DWORD lastError;
    uint32_t index;
    int32_t releaseArgument;  // Row::releaseWhenZero
    unsigned char code[24];
};
static_assert(offsetof(Stub, real) == 0 && offsetof(Stub, failValue) == 8, "the dispatcher reads these offsets");

constexpr size_t kMaxStubs = 512;
Stub* g_stubs = nullptr;
size_t g_stubCount = 0;
std::vector<const Row*> g_rows;  // by stub index
std::atomic<uint64_t> g_counts[kMaxStubs];
std::atomic<bool> g_armed{false};
std::atomic<size_t> g_target{kMaxStubs};
std::atomic<uint64_t> g_targetCall{0};
std::atomic<bool> g_delivered{false};
std::mutex g_unknownLock;
std::vector<std::string> g_unknown;

using GetProcAddressFn = FARPROC(WINAPI*)(HMODULE, LPCSTR);
GetProcAddressFn g_realGetProcAddress = nullptr;
Stub* g_getProcAddressStub = nullptr;

}  // namespace

}  // namespace tavtest::faults

// Called by the dispatcher for every call of a watched function, with the first four arguments as the caller
// passed them: non-zero when this call must fail. Touches nothing but the counters on the forwarding path, so the
// last error reaches the real function as it was.
extern "C" int tavfault_decide(tavtest::faults::Stub* stub, const uint64_t* arguments) {
    using namespace tavtest::faults;
    if (!g_armed.load(std::memory_order_relaxed))
        return 0;
    if (stub->releaseArgument >= 0 && arguments[stub->releaseArgument] == 0)
        return 0;  // a release: forwarded, neither counted nor failed
    const uint64_t call = g_counts[stub->index].fetch_add(1, std::memory_order_relaxed) + 1;
    if (stub->index != g_target.load(std::memory_order_relaxed) || call != g_targetCall.load(std::memory_order_relaxed))
        return 0;
    g_delivered = true;
    if (stub->lastError != 0)
        SetLastError(stub->lastError);
    return 1;
}

// The dispatcher: entered by a jump from a stub with r10 = the stub's record and the caller's arguments in place
// (rcx, rdx, r8, r9, xmm0-3 and the stack). It keeps the argument registers across tavfault_decide, then either
// jumps to the real function (which returns straight to the library) or returns the failure value. The frame
// keeps rsp 16-byte aligned at the call (entry is at 8 mod 16; 0x88 bytes make it 0).
asm(R"(
    .text
    .globl tavfault_dispatch
tavfault_dispatch:
    subq $0x88, %rsp
    movq %rcx, 0x20(%rsp)
    movq %rdx, 0x28(%rsp)
    movq %r8, 0x30(%rsp)
    movq %r9, 0x38(%rsp)
    movdqa %xmm0, 0x40(%rsp)
    movdqa %xmm1, 0x50(%rsp)
    movdqa %xmm2, 0x60(%rsp)
    movdqa %xmm3, 0x70(%rsp)
    movq %r10, 0x80(%rsp)
    movq %r10, %rcx
    leaq 0x20(%rsp), %rdx
    call tavfault_decide
    movq 0x80(%rsp), %r10
    movq 0x20(%rsp), %rcx
    movq 0x28(%rsp), %rdx
    movq 0x30(%rsp), %r8
    movq 0x38(%rsp), %r9
    movdqa 0x40(%rsp), %xmm0
    movdqa 0x50(%rsp), %xmm1
    movdqa 0x60(%rsp), %xmm2
    movdqa 0x70(%rsp), %xmm3
    addq $0x88, %rsp
    testl %eax, %eax
    jnz 1f
    jmpq *(%r10)
1:
    movq 8(%r10), %rax
    ret
)");

extern "C" void tavfault_dispatch();

namespace tavtest::faults {

namespace {

template <typename T> T* At(HMODULE base, DWORD rva) {
    return reinterpret_cast<T*>(reinterpret_cast<BYTE*>(base) + rva);
}

const Row* FindRow(const char* dll, const char* function) {
    for (const Row& row : Table())
        if (_stricmp(row.dll, dll) == 0 && std::strcmp(row.function, function) == 0)
            return &row;
    return nullptr;
}

// The stub of `row`, made on first use; `real` is filled in when it is not known yet.
Stub* StubFor(const Row* row, void* real) {
    for (size_t i = 0; i < g_stubCount; ++i)
        if (g_rows[i] == row) {
            if (g_stubs[i].real == nullptr)
                g_stubs[i].real = real;
            return &g_stubs[i];
        }
    if (g_stubCount == kMaxStubs)
        return nullptr;
    Stub* stub = &g_stubs[g_stubCount];
    stub->real = real;
    stub->failValue = row->failValue;
    stub->lastError = row->lastError;
    stub->index = static_cast<uint32_t>(g_stubCount);
    stub->releaseArgument = row->releaseWhenZero;
    unsigned char* code = stub->code;
    const auto r10 = reinterpret_cast<uint64_t>(stub);
    const auto rax = reinterpret_cast<uint64_t>(&tavfault_dispatch);
    code[0] = 0x49, code[1] = 0xBA;  // mov r10, imm64
    std::memcpy(code + 2, &r10, 8);
    code[10] = 0x48, code[11] = 0xB8;  // mov rax, imm64
    std::memcpy(code + 12, &rax, 8);
    code[20] = 0xFF, code[21] = 0xE0;  // jmp rax
    g_rows.push_back(row);
    ++g_stubCount;
    return stub;
}

void WriteSlot(void** slot, void* value) {
    DWORD old = 0;
    VirtualProtect(slot, sizeof(void*), PAGE_READWRITE, &old);
    *slot = value;
    VirtualProtect(slot, sizeof(void*), old, &old);
}

// The base name of a loaded module: "kernel32.dll".
std::string ModuleBaseName(HMODULE module) {
    char path[MAX_PATH] = {};
    const DWORD length = GetModuleFileNameA(module, path, MAX_PATH);
    std::string name(path, length);
    const size_t slash = name.find_last_of("\\/");
    return slash == std::string::npos ? name : name.substr(slash + 1);
}

// What the library's GetProcAddress import now points at: counted and failed like any watched function; a found
// function with a row is handed back as its stub.
FARPROC WINAPI WatchedGetProcAddress(HMODULE module, LPCSTR name) {
    const uint64_t arguments[4] = {reinterpret_cast<uint64_t>(module), reinterpret_cast<uint64_t>(name), 0, 0};
    if (tavfault_decide(g_getProcAddressStub, arguments))
        return nullptr;
    FARPROC real = g_realGetProcAddress(module, name);
    if (real == nullptr || IS_INTRESOURCE(name))
        return real;
    const DWORD error = GetLastError();
    const std::string dll = ModuleBaseName(module);
    const Row* row = FindRow(dll.c_str(), name);
    FARPROC answer = real;
    if (row == nullptr) {
        std::lock_guard<std::mutex> lock(g_unknownLock);
        g_unknown.push_back(dll + "!" + name);
    } else if (row->contract == Contract::Fails) {
        if (Stub* stub = StubFor(row, reinterpret_cast<void*>(real)))
            answer = reinterpret_cast<FARPROC>(reinterpret_cast<void*>(stub->code));
    }
    SetLastError(error);
    return answer;
}

// A run-time binding of TavUtil.dll as util/platform/detail/SystemBinding.h lays it out.
struct BindingRecord {
    const char* module;
    const char* function;
    void* address;
    HMODULE handle;
};

void PointBindings(HMODULE module, std::string& problems) {
    auto* nt = At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(reinterpret_cast<IMAGE_DOS_HEADER*>(module)->e_lfanew));
    IMAGE_SECTION_HEADER* section = IMAGE_FIRST_SECTION(nt);
    for (WORD i = 0; i < nt->FileHeader.NumberOfSections; ++i, ++section) {
        if (std::strncmp(reinterpret_cast<const char*>(section->Name), ".tavbind", IMAGE_SIZEOF_SHORT_NAME) != 0)
            continue;
        auto* records = At<BindingRecord>(module, section->VirtualAddress);
        for (size_t n = 0; n < section->Misc.VirtualSize / sizeof(BindingRecord); ++n) {
            BindingRecord& record = records[n];
            if (record.module == nullptr || record.function == nullptr)
                continue;
            const Row* row = FindRow(record.module, record.function);
            if (row == nullptr) {
                problems +=
                    std::string("run-time binding without a row: ") + record.module + "!" + record.function + "\n";
                continue;
            }
            // Bound already: point it at the stub. Not bound yet: the library binds it through GetProcAddress.
            if (record.address != nullptr && row->contract == Contract::Fails)
                if (Stub* stub = StubFor(row, record.address))
                    WriteSlot(&record.address, stub->code);
        }
    }
}

}  // namespace

bool Install(std::string& problems) {
    HMODULE module = TavUtilModule();
    if (module == nullptr) {
        problems += "TavUtil.dll is not loaded\n";
        return false;
    }
    if (g_stubs != nullptr)
        return true;
    g_stubs = static_cast<Stub*>(
        VirtualAlloc(nullptr, sizeof(Stub) * kMaxStubs, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
    g_rows.reserve(kMaxStubs);
    const size_t before = problems.size();

    auto* nt = At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(reinterpret_cast<IMAGE_DOS_HEADER*>(module)->e_lfanew));
    const IMAGE_DATA_DIRECTORY& dir = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* desc = At<IMAGE_IMPORT_DESCRIPTOR>(module, dir.VirtualAddress); dir.VirtualAddress && desc->Name;
         ++desc) {
        const char* dll = At<char>(module, desc->Name);
        auto* names =
            At<IMAGE_THUNK_DATA>(module, desc->OriginalFirstThunk ? desc->OriginalFirstThunk : desc->FirstThunk);
        auto* slots = At<IMAGE_THUNK_DATA>(module, desc->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) {
                problems += std::string("import by ordinal from ") + dll + " has no row\n";
                continue;
            }
            const char* function =
                reinterpret_cast<const char*>(At<IMAGE_IMPORT_BY_NAME>(module, names->u1.AddressOfData)->Name);
            const Row* row = FindRow(dll, function);
            auto** slot = reinterpret_cast<void**>(&slots->u1.Function);
            if (row == nullptr) {
                problems += std::string("import without a row: ") + dll + "!" + function + "\n";
            } else if (std::strcmp(function, "GetProcAddress") == 0) {
                g_realGetProcAddress = reinterpret_cast<GetProcAddressFn>(*slot);
                g_getProcAddressStub = StubFor(row, *slot);
                WriteSlot(slot, reinterpret_cast<void*>(&WatchedGetProcAddress));
            } else if (row->contract == Contract::Fails) {
                if (Stub* stub = StubFor(row, *slot))
                    WriteSlot(slot, stub->code);
                else
                    problems += "more watched functions than stubs\n";
            }
        }
    }
    PointBindings(module, problems);
    FlushInstructionCache(GetCurrentProcess(), g_stubs, sizeof(Stub) * kMaxStubs);
    return problems.size() == before;
}

size_t FunctionCount() { return g_stubCount; }

const Row& FunctionRow(size_t index) { return *g_rows[index]; }

std::string FunctionName(size_t index) { return std::string(g_rows[index]->dll) + "!" + g_rows[index]->function; }

void Arm(bool on) {
    if (on)
        for (auto& count : g_counts)
            count = 0;
    g_armed = on;
}

std::vector<uint64_t> Counts() {
    std::vector<uint64_t> counts(g_stubCount);
    for (size_t i = 0; i < g_stubCount; ++i)
        counts[i] = g_counts[i];
    return counts;
}

void FailAt(size_t index, uint64_t call) {
    g_delivered = false;
    g_targetCall = call;
    g_target = index;
}

void FailNothing() { g_target = kMaxStubs; }

bool FailureDelivered() { return g_delivered; }

std::vector<std::string> UnknownBindings() {
    std::lock_guard<std::mutex> lock(g_unknownLock);
    return g_unknown;
}

}  // namespace tavtest::faults
