// tavutil.exe: try TavUtil's capabilities from a shell.
#include "Cli.h"

#include <TavUtil/TavUtil.h>

#include <windows.h>
#include <shellapi.h>

namespace {

void PrintUsage(bool toError) {
    std::wstring text = L"usage: tavutil VERB [ARGS...]\n       tavutil --help | --version\n\nverbs:\n";
    // Usage and summary side by side; a usage too long for its column gets the summary on the next line.
    const size_t column = 34;
    for (const cli::Verb& verb : cli::Verbs()) {
        std::wstring usage = verb.usage;
        if (usage.size() <= column)
            text += L"  " + usage + std::wstring(column - usage.size(), L' ') + L" " + verb.summary + L"\n";
        else
            text += L"  " + usage + L"\n  " + std::wstring(column, L' ') + L" " + verb.summary + L"\n";
    }
    toError ? cli::Err(text) : cli::Out(text);
}

int UsageFailure(const std::string& message, const cli::Verb* verb) {
    cli::Err(L"tavutil: " + std::wstring(message.begin(), message.end()) + L"\n");
    if (verb)
        cli::Err(std::wstring(L"usage: tavutil ") + verb->usage + L"\n");
    else
        PrintUsage(true);
    return 2;
}

std::vector<std::wstring> CommandLineArguments() {
    int count = 0;
    tav::UniqueLocal<LPWSTR> argv(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::wstring> args;
    for (int i = 1; argv && i < count; ++i)
        args.emplace_back(argv.get()[i]);
    return args;
}

}  // namespace

int main() {
    std::vector<std::wstring> args = CommandLineArguments();
    if (args.empty())
        return UsageFailure("no verb given", nullptr);
    const std::wstring& first = args.front();
    if (first == L"--help" || first == L"-h" || first == L"help") {
        PrintUsage(false);
        return 0;
    }
    if (first == L"--version") {
        const char* version = TAVUTIL_VERSION_STRING;  // from the project's version, like the DLL's
        cli::OutLine(L"tavutil " + std::wstring(version, version + strlen(version)));
        return 0;
    }
    for (const cli::Verb& verb : cli::Verbs()) {
        if (first != verb.name)
            continue;
        try {
            return verb.run(cli::Args(args.begin() + 1, args.end()));
        } catch (const cli::UsageError& e) {
            return UsageFailure(e.what(), &verb);
        } catch (const std::exception& e) {
            cli::Err(L"tavutil: " + std::wstring(e.what(), e.what() + strlen(e.what())) + L"\n");
            return 1;
        }
    }
    return UsageFailure("unknown verb '" + cli::Narrow(first) + "'", nullptr);
}
