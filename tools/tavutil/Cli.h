// The frame of tavutil.exe: verbs register themselves, main parses their options, output is Unicode-correct
// on a console and when redirected (UTF-8). One meaning for the exit status everywhere: 0 done or found,
// 1 not found or refused by the system, 2 wrong usage. Answers go to standard output, every diagnostic to
// standard error, in the form "tavutil VERB: what went wrong".
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace cli {

// The longest wait a command line may ask for (a delay before typing, a wait for the user to let go).
inline constexpr int kMaximumDelayMs = 600000;

using Args = std::vector<std::wstring>;  // the operands after the verb

enum Status : int { kDone = 0, kNotFound = 1, kWrongUsage = 2 };

// A verb's command line once main has parsed it: options (anywhere before "--") and operands.
struct Call {
    Args args;                                                   // the operands, in order
    std::vector<std::pair<std::wstring, std::wstring>> options;  // given options, with their values

    bool Has(const wchar_t* option) const;
    // The option's value; `fallback` when the option was not given.
    std::wstring Value(const wchar_t* option, const std::wstring& fallback = L"") const;
    // The option's value as a whole number from `min` to `max` (a usage error otherwise).
    int Number(const wchar_t* option, int fallback, int min, int max) const;
};

struct Verb {
    const wchar_t* name;
    const wchar_t* usage;    // e.g. L"cut WIDTH TEXT"
    const wchar_t* summary;  // one line for the verb list
    int (*run)(const Call& call);
    // The options the verb takes, separated by blanks; an option that takes a value names it after "=":
    // L"--delay=MS --per-key=MS --show". "--help", "-h" and "--" are the frame's, for every verb.
    const wchar_t* options;
    // The rest of `tavutil VERB --help`: a line or two of explanation, then "examples:" lines.
    const wchar_t* help;
    // What exit status 1 means for this verb (the other codes mean the same everywhere).
    const wchar_t* notFound;
};

// Registers a verb at start-up: static cli::VerbRegistration r{{L"name", L"usage", ...}};
struct VerbRegistration {
    explicit VerbRegistration(const Verb& verb);
};

const std::vector<Verb>& Verbs();
const Verb* FindVerb(const std::wstring& name);

// Thrown for wrong usage: main prints "tavutil VERB: <message>" and the verb's usage, and exits 2.
struct UsageError : std::runtime_error {
    explicit UsageError(const std::string& message) : std::runtime_error(message) {}
};

// Writes text to standard output / standard error.
void Out(const std::wstring& text);
void Err(const std::wstring& text);
inline void OutLine(const std::wstring& text) { Out(text + L"\n"); }

// The name of the verb being run ("" before one is chosen); set by main.
void SetCurrentVerb(const std::wstring& name);
const std::wstring& CurrentVerb();
// "tavutil VERB: what" on standard error; returns kNotFound, the status for "not found or refused".
int Fail(const std::wstring& what);
// "tavutil VERB: what" on standard error, nothing more.
void Diagnose(const std::wstring& what);

// Helpers for verbs.
std::string Narrow(const std::wstring& text);
std::wstring Widen(const std::string& text);
// The library's sentence for a result code of `kind` (TAV_RESULT_SKERR, TAV_RESULT_WIN32, TAV_RESULT_WAIT, ...:
// tav_result_text), without its final full stop, so that it can stand inside a line.
std::wstring ResultText(int32_t kind, int32_t code);
// A whole number from `min` to `max`, or a UsageError naming `what`.
int ParseNumber(const std::wstring& text, const char* what, int min, int max);
void RequireCount(const Args& args, size_t min, size_t max);  // throws UsageError
std::wstring YesNo(bool value);
// The closest of `candidates` to `given` (a typo or a prefix), or "" when none is close.
std::wstring Closest(const std::wstring& given, const std::vector<std::wstring>& candidates);

}  // namespace cli
