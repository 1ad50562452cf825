#include "Cli.h"

#include "capi/c/common.h"

#include <windows.h>

#include <algorithm>
#include <cwctype>

namespace cli {

namespace {

std::vector<Verb>& Registry() {
    static std::vector<Verb> verbs;
    return verbs;
}

std::wstring& TheCurrentVerb() {
    static std::wstring name;
    return name;
}

void Write(DWORD which, const std::wstring& text) {
    HANDLE handle = GetStdHandle(which);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE || text.empty())
        return;
    DWORD mode = 0, written = 0;
    if (GetConsoleMode(handle, &mode)) {
        WriteConsoleW(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
        return;
    }
    std::string bytes = Narrow(text);
    WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace

VerbRegistration::VerbRegistration(const Verb& verb) {
    auto& verbs = Registry();
    verbs.push_back(verb);
    std::sort(verbs.begin(), verbs.end(), [](const Verb& a, const Verb& b) { return wcscmp(a.name, b.name) < 0; });
}

const std::vector<Verb>& Verbs() { return Registry(); }

const Verb* FindVerb(const std::wstring& name) {
    for (const Verb& verb : Registry())
        if (name == verb.name)
            return &verb;
    return nullptr;
}

void Out(const std::wstring& text) { Write(STD_OUTPUT_HANDLE, text); }
void Err(const std::wstring& text) { Write(STD_ERROR_HANDLE, text); }

std::string Narrow(const std::wstring& text) {
    if (text.empty())
        return {};
    int n = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<size_t>(n), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(), n, nullptr, nullptr);
    return bytes;
}

int ParseNumber(const std::wstring& text, const char* what, int min, int max) {
    size_t used = 0;
    long long value = 0;
    try {
        value = std::stoll(text, &used, 10);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != text.size() || value < min || value > max || iswspace(text[0]))
        throw UsageError(std::string(what) + " must be a whole number from " + std::to_string(min) + " to " +
                         std::to_string(max) + ", not '" + Narrow(text) + "'");
    return static_cast<int>(value);
}

void RequireCount(const Args& args, size_t min, size_t max) {
    if (args.size() < min)
        throw UsageError("missing argument");
    if (args.size() > max)
        throw UsageError("too many arguments");
}

bool Call::Has(const wchar_t* option) const {
    return std::any_of(options.begin(), options.end(), [&](const auto& given) { return given.first == option; });
}

std::wstring Call::Value(const wchar_t* option, const std::wstring& fallback) const {
    std::wstring value = fallback;
    for (const auto& given : options)  // the last one given counts
        if (given.first == option)
            value = given.second;
    return value;
}

int Call::Number(const wchar_t* option, int fallback, int min, int max) const {
    if (!Has(option))
        return fallback;
    return ParseNumber(Value(option), Narrow(option).c_str(), min, max);
}

void SetCurrentVerb(const std::wstring& name) { TheCurrentVerb() = name; }
const std::wstring& CurrentVerb() { return TheCurrentVerb(); }

void Diagnose(const std::wstring& what) {
    Err(L"tavutil" + (CurrentVerb().empty() ? L"" : L" " + CurrentVerb()) + L": " + what + L"\n");
}

int Fail(const std::wstring& what) {
    Diagnose(what);
    return kNotFound;
}

std::wstring Widen(const std::string& text) {
    if (text.empty())
        return {};
    int n = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring wide(static_cast<size_t>(n), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), n);
    return wide;
}

std::wstring Closest(const std::wstring& given, const std::vector<std::wstring>& candidates) {
    auto bare = [](const std::wstring& text) {
        return text.substr(text.find_first_not_of(L'-') == std::wstring::npos ? text.size()
                                                                              : text.find_first_not_of(L'-'));
    };
    const std::wstring wanted = bare(given);
    std::wstring best;
    size_t bestDistance = 3;  // more than two edits away is no suggestion
    for (const std::wstring& candidate : candidates) {
        const std::wstring name = bare(candidate);
        if (!wanted.empty() && name.compare(0, wanted.size(), wanted) == 0)
            return candidate;  // a prefix: what the person started to type
        // Edit distance (insertions, deletions, substitutions).
        std::vector<size_t> row(name.size() + 1);
        for (size_t j = 0; j < row.size(); ++j)
            row[j] = j;
        for (size_t i = 1; i <= wanted.size(); ++i) {
            size_t diagonal = row[0];
            row[0] = i;
            for (size_t j = 1; j <= name.size(); ++j) {
                size_t above = row[j];
                row[j] = std::min({row[j] + 1, row[j - 1] + 1,
                                   diagonal + (towlower(wanted[i - 1]) == towlower(name[j - 1]) ? 0 : 1)});
                diagonal = above;
            }
        }
        if (row.back() < bestDistance) {
            bestDistance = row.back();
            best = candidate;
        }
    }
    return best;
}

std::wstring YesNo(bool value) { return value ? L"yes" : L"no"; }

std::wstring ResultText(int32_t kind, int32_t code) {
    size_t needed = 0;
    if (tav_result_text(kind, code, nullptr, 0, &needed) != TAV_E_BUFFER_TOO_SMALL || needed == 0)
        return L"code " + std::to_wstring(code);
    std::wstring text(needed, L'\0');
    if (tav_result_text(kind, code, text.data(), text.size(), &needed) != TAV_OK)
        return L"code " + std::to_wstring(code);
    text.resize(needed - 1);
    if (!text.empty() && text.back() == L'.')
        text.pop_back();
    return text;
}

}  // namespace cli
