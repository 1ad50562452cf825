#include "log/VelmLog.h"

#include <windows.h>

#include <cwchar>
#include <new>

namespace {

// The log's process-wide state, all set on first use and never guarded: records are built per object
// and only emission touches these.
struct LogState {
    VelmLogLevel reportingLevel = DEBUG4_LEVEL;
    FILE* stream = nullptr;
    bool streamSet = false;
    bool outputDebugStrings = false;
    bool tickBaseSet = false;
    DWORD tickBase = 0;
};

LogState& State() {
    static LogState state;
    return state;
}

// "HH:mm:ss.mmm" where the milliseconds are those elapsed since the process's first time stamp, modulo
// 1000, not the wall clock's: the suite's log readers expect it so.
std::wstring NowTime() {
    wchar_t clock[64];
    if (GetTimeFormatW(LOCALE_USER_DEFAULT, 0, nullptr, L"HH':'mm':'ss", clock, 64) == 0)
        return L"Error in NowTime()";
    LogState& state = State();
    if (!state.tickBaseSet) {
        state.tickBase = GetTickCount();
        state.tickBaseSet = true;
    }
    long milliseconds = static_cast<long>((GetTickCount() - state.tickBase) % 1000);
    // A stamp that cannot be formatted is a failed time read: the fixed text, never the buffer's unwritten
    // contents.
    wchar_t stamp[96] = {};
    if (_snwprintf(stamp, 95, L"%ls.%03ld", clock, milliseconds) < 0)
        return L"Error in NowTime()";
    return stamp;
}

void Emit(const std::wstring& text) {
    if (OutputToFILE::OutputDebugStrings())
        OutputDebugStringW(text.c_str());
    FILE* stream = OutputToFILE::Stream();
    if (stream == nullptr)
        return;
    fwprintf(stream, L"%ls", text.c_str());
    fwprintf(stream, L"\"/>\n");
    fflush(stream);
}

}  // namespace

VelmLog::VelmLog() = default;

// A record that cannot be composed or written because memory is refused is dropped: the log reports nothing
// back, and an exception leaving a destructor would end the host program.
VelmLog::~VelmLog() {
    try {
        Emit(os.str());
    } catch (const std::bad_alloc&) {
    }
}

std::wostringstream& VelmLog::Get(VelmLogLevel level, const std::wstring& fileName, int lineNumber,
                                  const std::wstring& function) {
    os << L"\t<log time=\"" << NowTime() << L"\" ";
    os << L"level=\"" << ToString(level) << L"\" ";
    os << L"threadid=\"" << GetCurrentThreadId() << L"\" ";
    os << L"filename=\"" << fileName << L"\" ";
    os << L"linenumber=\"" << lineNumber << L"\" ";
    os << L"function=\"" << function << L"\" ";
    os << L"message=\"";
    // DEBUG1 to DEBUG4 messages are indented by one to four tabs.
    if (level > DEBUG_LEVEL)
        os << std::wstring(static_cast<size_t>(level - DEBUG_LEVEL), L'\t');
    return os;
}

std::wstring VelmLog::ToString(VelmLogLevel level) {
    static const wchar_t* const names[] = {L"ERROR  ", L"WARNING", L"INFO   ", L"DEBUG  ",
                                           L"DEBUG1 ", L"DEBUG2 ", L"DEBUG3 ", L"DEBUG4 "};
    if (level < ERROR_LEVEL || level > DEBUG4_LEVEL)
        return L"UNKNOWN";
    return names[level];
}

VelmLogLevel VelmLog::FromString(const std::wstring& level) {
    static const struct {
        const wchar_t* name;
        VelmLogLevel level;
    } known[] = {{L"DEBUG4", DEBUG4_LEVEL},   {L"DEBUG3", DEBUG3_LEVEL}, {L"DEBUG2", DEBUG2_LEVEL},
                 {L"DEBUG1", DEBUG1_LEVEL},   {L"DEBUG", DEBUG_LEVEL},   {L"INFO", INFO_LEVEL},
                 {L"WARNING", WARNING_LEVEL}, {L"ERROR", ERROR_LEVEL}};
    for (const auto& entry : known)
        if (level == entry.name)
            return entry.level;
    VelmLog().Get(WARNING_LEVEL, L".\\Log", 59, L"VelmLog::FromString")
        << L"Unknown logging level '" << level << L"'. Using INFO level as default.";
    return INFO_LEVEL;
}

VelmLogLevel VelmLog::ReportingLevel() { return State().reportingLevel; }

void VelmLog::SetReportingLevel(VelmLogLevel level) { State().reportingLevel = level; }

FILE*& OutputToFILE::Stream() {
    LogState& state = State();
    if (!state.streamSet) {
        state.stream = stderr;
        state.streamSet = true;
    }
    return state.stream;
}

bool& OutputToFILE::OutputDebugStrings() { return State().outputDebugStrings; }

void OutputToFILE::Output(const std::wstring& text) { Emit(text); }
