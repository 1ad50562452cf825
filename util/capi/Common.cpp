// c/common.h: what every area shares: the interface's version and the sentence for a result code.
#include "capi/c/common.h"

#include "capi/c/keys.h"
#include "capi/c/waits.h"
#include "capi/detail/Boundary.h"
#include "platform/Handles.h"

#include <windows.h>

#include <cwchar>
#include <string>

using namespace tav::capi::detail;

namespace {

struct Sentence {
    int32_t code;
    const wchar_t* text;
};

// The sentences of the codes this interface defines, one table per kind; c/common.h, c/keys.h and
// c/waits.h name the same codes.
constexpr Sentence kCodes[] = {
    {TAV_OK, L"Success."},
    {TAV_E_NULL_ARGUMENT, L"A required pointer is null, or a text pointer is a stray number."},
    {TAV_E_BUFFER_TOO_SMALL, L"The output buffer is too small; the needed size was returned."},
    {TAV_E_NULL_HANDLE, L"The object handle is null."},
    {TAV_E_UNKNOWN_ENUM, L"A number is outside its enumeration."},
    {TAV_E_EXCEPTION, L"An unforeseen failure inside the library was caught."},
    {TAV_E_OUT_OF_RANGE, L"An input is out of the range the function accepts."},
    {TAV_E_OUT_OF_MEMORY, L"Memory could not be had."},
};
constexpr Sentence kKeystrokeCodes[] = {
    {TAV_SKERR_NONE, L"No keystroke error."},
    {TAV_SKERR_MISSING_CLOSE_BRACE, L"A '{' has no matching '}'."},
    {TAV_SKERR_INVALID_KEY, L"A braced name is neither a key name nor a single character."},
    {TAV_SKERR_MISSING_CLOSE_PAREN, L"A '(' group is not closed."},
    {TAV_SKERR_INVALID_COUNT, L"A braced count is not a number, or is 0."},
    {TAV_SKERR_STRING_TOO_LONG, L"The script needs more key events than the key queue holds."},
    {TAV_SKERR_BUSY, L"Another send is in progress; nothing was typed."},
    {TAV_SKERR_MENU_FAILED, L"A menu command found no menu, sub-menu or item."},
    {TAV_SKERR_COMMAND_DONE, L"A command word was carried out (used inside the library only)."},
};
constexpr Sentence kWaitStatuses[] = {
    {TAV_WAIT_WAITING, L"The wait has not finished."},
    {TAV_WAIT_ABORTED, L"The wait was aborted."},
    {TAV_WAIT_TIMEOUT, L"The wait timed out."},
    {TAV_WAIT_QUIT, L"A quit message ended the wait."},
    {TAV_WAIT_COMMAND, L"A command message ended the wait."},
};

template <size_t N> std::wstring FromTable(const Sentence (&table)[N], int32_t code, const wchar_t* kind) {
    for (const Sentence& sentence : table)
        if (sentence.code == code)
            return sentence.text;
    return std::wstring(L"Unknown ") + kind + L" " + std::to_wstring(code) + L".";
}

// The system's message for `code`, from the system's own message table only (never from a module's,
// never with inserts filled in), without the line break it ends with; empty when the system has none.
std::wstring SystemMessage(DWORD code) {
    wchar_t* message = nullptr;
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_ALLOCATE_BUFFER,
                       nullptr, code, 0, reinterpret_cast<wchar_t*>(&message), 0, nullptr);
    // Owned at once: the copy below may be refused its memory, and the system's buffer must go back then too.
    const tav::UniqueLocal<wchar_t> owned(message);
    std::wstring text(message != nullptr ? message : L"", message != nullptr ? length : 0);
    while (!text.empty() && std::wcschr(L" \t\r\n", text.back()) != nullptr)
        text.pop_back();
    return text;
}

std::wstring Hex(uint32_t value) {
    wchar_t digits[16];
    std::swprintf(digits, 16, L"0x%08X", static_cast<unsigned>(value));
    return digits;
}

std::wstring WindowsStatusText(int32_t code) {
    const std::wstring message = SystemMessage(static_cast<DWORD>(code));
    if (!message.empty())
        return message;
    return L"Unknown Windows status code " + std::to_wstring(static_cast<uint32_t>(code)) + L".";
}

// An HRESULT that wraps a Windows status has that status's message.
std::wstring HresultText(int32_t code) {
    const auto hr = static_cast<HRESULT>(code);
    std::wstring message = SystemMessage(static_cast<DWORD>(hr));
    if (message.empty() && HRESULT_FACILITY(hr) == FACILITY_WIN32)
        message = SystemMessage(HRESULT_CODE(hr));
    if (!message.empty())
        return message;
    return L"Unknown HRESULT " + Hex(static_cast<uint32_t>(code)) + L".";
}

}  // namespace

extern "C" {

int32_t tav_c_interface_version(void) { return 1; }

// The loaded DLL's version, from the project's version (TavUtil/TavUtilVersion.h, made by the build).
int32_t tav_version(void) { return TAVUTIL_VERSION; }

int32_t tav_result_text(int32_t kind, int32_t code, wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        std::wstring text;
        switch (kind) {
        case TAV_RESULT_C: text = FromTable(kCodes, code, L"C interface code"); break;
        case TAV_RESULT_WIN32: text = WindowsStatusText(code); break;
        case TAV_RESULT_HRESULT: text = HresultText(code); break;
        case TAV_RESULT_SKERR: text = FromTable(kKeystrokeCodes, code, L"keystroke code"); break;
        case TAV_RESULT_WAIT: text = FromTable(kWaitStatuses, code, L"wait status"); break;
        default: return TAV_E_UNKNOWN_ENUM;
        }
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        return CopyText(text, buffer, capacity, needed);
    });
}

}  // extern "C"
