// The frame of tavutil.exe: verbs register themselves, output is Unicode-correct on a console and when
// redirected (UTF-8), and wrong usage ends with status 2.
#pragma once

#include <stdexcept>
#include <cstdint>
#include <string>
#include <vector>

namespace cli {

using Args = std::vector<std::wstring>;  // the arguments after the verb

struct Verb {
    const wchar_t* name;
    const wchar_t* usage;    // e.g. L"cut WIDTH TEXT"
    const wchar_t* summary;  // one line for --help
    int (*run)(const Args& args);
};

// Registers a verb at start-up: static cli::VerbRegistration r{{L"name", L"usage", L"summary", &Run}};
struct VerbRegistration {
    explicit VerbRegistration(const Verb& verb);
};

const std::vector<Verb>& Verbs();

// Thrown by a verb for wrong usage: main prints "tavutil: <message>", the verb's usage, and exits 2.
struct UsageError : std::runtime_error {
    explicit UsageError(const std::string& message) : std::runtime_error(message) {}
};

// Writes text to standard output / standard error.
void Out(const std::wstring& text);
void Err(const std::wstring& text);
inline void OutLine(const std::wstring& text) { Out(text + L"\n"); }

// Helpers for verbs.
std::string Narrow(const std::wstring& text);
// The library's sentence for a result code of `kind` (TAV_RESULT_SKERR, TAV_RESULT_WIN32, TAV_RESULT_WAIT, ...:
// tav_result_text), without its final full stop, so that it can stand inside a line.
std::wstring ResultText(int32_t kind, int32_t code);
int ParseInt(const std::wstring& text, const char* what);     // throws UsageError when not a number
void RequireCount(const Args& args, size_t min, size_t max);  // throws UsageError
bool TakeFlag(Args& args, const std::wstring& flag);          // removes `flag` when present
// When args start with `option MS`, removes both, stores MS in `ms` and returns true. Throws UsageError
// when MS is not a whole number or is negative. Options of this kind stand before the other arguments,
// so that a text argument that happens to look like one is left alone.
bool TakeLeadingMilliseconds(Args& args, const std::wstring& option, int& ms);
std::wstring YesNo(bool value);

}  // namespace cli
