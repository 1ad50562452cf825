// VelmLog: one log record per object. Get() writes the record's head and returns the stream for the
// message; the record is emitted, as one XML-like line, when the object is destroyed:
//
//   \t<log time="12:34:56.789" level="INFO   " threadid="42" filename="x.cpp" linenumber="7"
//       function="f" message="text"/>
//
// (one line in reality). Values are not escaped.
#pragma once

#include "../platform/Export.h"

#include <cstdio>
#include <cstring>
#include <sstream>
#include <string>

enum VelmLogLevel {
    ERROR_LEVEL = 0,
    WARNING_LEVEL = 1,
    INFO_LEVEL = 2,
    DEBUG_LEVEL = 3,
    DEBUG1_LEVEL = 4,
    DEBUG2_LEVEL = 5,
    DEBUG3_LEVEL = 6,
    DEBUG4_LEVEL = 7,
};

class TAVUTIL_API VelmLog {
public:
    VelmLog();
    virtual ~VelmLog();
    VelmLog(const VelmLog&) = delete;
    VelmLog& operator=(const VelmLog&) = delete;

    std::wostringstream& Get(VelmLogLevel level, const std::wstring& fileName, int lineNumber,
                             const std::wstring& function);

    // The level's name padded to seven characters ("INFO   ").
    static std::wstring ToString(VelmLogLevel level);
    // Exact, case-sensitive; anything else logs a warning and gives INFO.
    VelmLogLevel FromString(const std::wstring& level);

    // The process-wide reporting level (initially DEBUG4: everything). The class itself never filters:
    // callers compare, or use VELM_LOG, which does.
    static VelmLogLevel ReportingLevel();
    static void SetReportingLevel(VelmLogLevel level);

protected:
    std::wostringstream os;
};

// Where records go. The stream is the standard error stream until a caller replaces it; null disables
// file output. The debugger flag copies each record to OutputDebugStringW.
class TAVUTIL_API OutputToFILE {
public:
    static FILE*& Stream();
    static bool& OutputDebugStrings();
    static void Output(const std::wstring& text);
};

// Logs one record when `level` is within the reporting level:  VELM_LOG(INFO_LEVEL) << L"text";
inline std::wstring VelmLogSourceText(const char* text) { return std::wstring(text, text + std::strlen(text)); }
#define VELM_LOG(level)                                                                                                \
    for (bool velmLogOnce = (level) <= VelmLog::ReportingLevel(); velmLogOnce; velmLogOnce = false)                    \
    VelmLog().Get((level), VelmLogSourceText(__FILE__), __LINE__, VelmLogSourceText(__FUNCTION__))
