#include "Cli.h"

#include "capi/c/common.h"

#include <windows.h>

#include <algorithm>

namespace cli {

namespace {

std::vector<Verb>& Registry() {
    static std::vector<Verb> verbs;
    return verbs;
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

int ParseInt(const std::wstring& text, const char* what) {
    size_t used = 0;
    int value = 0;
    try {
        value = std::stoi(text, &used, 10);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != text.size())
        throw UsageError(std::string(what) + " must be a whole number, not '" + Narrow(text) + "'");
    return value;
}

void RequireCount(const Args& args, size_t min, size_t max) {
    if (args.size() < min)
        throw UsageError("missing argument");
    if (args.size() > max)
        throw UsageError("too many arguments");
}

bool TakeFlag(Args& args, const std::wstring& flag) {
    auto it = std::find(args.begin(), args.end(), flag);
    if (it == args.end())
        return false;
    args.erase(it);
    return true;
}

bool TakeLeadingMilliseconds(Args& args, const std::wstring& option, int& ms) {
    if (args.size() < 2 || args[0] != option)
        return false;
    int value = ParseInt(args[1], "MS");
    if (value < 0)
        throw UsageError("MS must not be negative, not '" + Narrow(args[1]) + "'");
    ms = value;
    args.erase(args.begin(), args.begin() + 2);
    return true;
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
