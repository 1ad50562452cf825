// tavutil.exe: try TavUtil's capabilities from a shell. This file is the frame every verb shares: the verb
// list, each verb's --help, option parsing ("--" ends the options), and the one place where wrong usage and
// unexpected failures become a line on standard error and an exit status.
#include "Cli.h"

#include <TavUtil/TavUtil.h>

#include <windows.h>
#include <shellapi.h>

#include <new>
#include <sstream>

namespace {

const wchar_t* const kExitCodes = L"exit status:\n  0  done or found\n  1  %s\n  2  wrong usage\n";

std::wstring VerbList() {
    std::wstring text = L"usage: tavutil VERB [OPTIONS] [ARGS...]\n"
                        L"       tavutil VERB --help   (or tavutil help VERB): one verb's usage and examples\n"
                        L"       tavutil --version\n\nverbs:\n";
    // Usage and summary side by side; a usage too long for its column gets the summary on the next line.
    const size_t column = 34;
    for (const cli::Verb& verb : cli::Verbs()) {
        std::wstring usage = verb.usage;
        if (usage.size() <= column)
            text += L"  " + usage + std::wstring(column - usage.size(), L' ') + L" " + verb.summary + L"\n";
        else
            text += L"  " + usage + L"\n  " + std::wstring(column, L' ') + L" " + verb.summary + L"\n";
    }
    text += L"\n\"--\" ends the options of every verb: tavutil keys -- --dry-run types the text \"--dry-run\".\n"
            L"exit status: 0 done or found, 1 not found or refused by the system, 2 wrong usage\n"
            L"Answers go to standard output, every diagnostic to standard error.\n";
    return text;
}

std::wstring VerbHelp(const cli::Verb& verb) {
    std::wstring text = std::wstring(L"usage: tavutil ") + verb.usage + L"\n" + verb.summary + L".\n";
    if (verb.help[0] != L'\0')
        text += L"\n" + std::wstring(verb.help) + L"\n";
    std::wstring codes = kExitCodes;
    codes.replace(codes.find(L"%s"), 2, verb.notFound);
    return text + L"\n" + codes;
}

std::vector<std::wstring> VerbNames() {
    std::vector<std::wstring> names;
    for (const cli::Verb& verb : cli::Verbs())
        names.emplace_back(verb.name);
    return names;
}

// One line: what was wrong, the closest good spelling, and where to read more. Exit status 2.
int ReportUnknown(const std::wstring& what, const std::wstring& given, const std::vector<std::wstring>& candidates,
                  const std::wstring& helpCommand, bool ofVerb = false) {
    std::wstring line = what + L" '" + given + L"'";
    std::wstring closest = cli::Closest(given, candidates);
    if (!closest.empty())
        line += L" (did you mean '" + closest + L"'?)";
    else if (ofVerb)  // perhaps a text that starts with a dash
        line += L"; an argument that starts with '-' goes after '--'";
    cli::Diagnose(line + L"; see '" + helpCommand + L"'");
    return cli::kWrongUsage;
}

int WrongUsage(const std::string& message, const cli::Verb& verb) {
    cli::Diagnose(cli::Widen(message));
    cli::Err(std::wstring(L"usage: tavutil ") + verb.usage + L"   (more: tavutil " + verb.name + L" --help)\n");
    return cli::kWrongUsage;
}

struct DeclaredOption {
    std::wstring name;
    std::wstring value;  // empty for a flag
};

std::vector<DeclaredOption> OptionsOf(const cli::Verb& verb) {
    std::vector<DeclaredOption> declared;
    std::wistringstream words(verb.options);
    std::wstring word;
    while (words >> word) {
        size_t equals = word.find(L'=');
        declared.push_back({word.substr(0, equals), equals == std::wstring::npos ? L"" : word.substr(equals + 1)});
    }
    return declared;
}

// An argument that names an option: a dash and more, other than a negative number (that is an operand,
// and a verb that wants a positive one says so).
bool LooksLikeOption(const std::wstring& arg) {
    if (arg.size() < 2 || arg[0] != L'-')
        return false;
    return arg.find_first_not_of(L"0123456789", 1) != std::wstring::npos;
}

bool AsksForHelp(const cli::Args& args) {
    for (const std::wstring& arg : args) {
        if (arg == L"--")
            return false;
        if (arg == L"--help" || arg == L"-h")
            return true;
    }
    return false;
}

// Splits the arguments into options and operands; -1 when they are fine, otherwise the exit status after
// the diagnostic has been written.
int ParseCall(const cli::Verb& verb, const cli::Args& args, cli::Call& call) {
    const std::vector<DeclaredOption> declared = OptionsOf(verb);
    bool optionsEnded = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::wstring& arg = args[i];
        if (optionsEnded || !LooksLikeOption(arg)) {
            call.args.push_back(arg);
            continue;
        }
        if (arg == L"--") {
            optionsEnded = true;
            continue;
        }
        const size_t equals = arg.find(L'=');
        const std::wstring name = arg.substr(0, equals);
        const DeclaredOption* match = nullptr;
        for (const DeclaredOption& candidate : declared)
            if (candidate.name == name)
                match = &candidate;
        if (match == nullptr) {
            std::vector<std::wstring> names{L"--help"};
            for (const DeclaredOption& candidate : declared)
                names.push_back(candidate.name);
            return ReportUnknown(L"unknown option", name, names, std::wstring(L"tavutil ") + verb.name + L" --help",
                                 true);
        }
        if (match->value.empty()) {
            if (equals != std::wstring::npos)
                return WrongUsage(cli::Narrow(name) + " takes no value", verb);
            call.options.emplace_back(name, L"");
        } else if (equals != std::wstring::npos) {
            call.options.emplace_back(name, arg.substr(equals + 1));
        } else if (i + 1 < args.size()) {
            call.options.emplace_back(name, args[++i]);
        } else {
            return WrongUsage(cli::Narrow(name) + " needs a value (" + cli::Narrow(match->value) + ")", verb);
        }
    }
    return -1;
}

int RunVerb(const cli::Verb& verb, const cli::Args& args) {
    cli::SetCurrentVerb(verb.name);
    if (AsksForHelp(args)) {
        cli::Out(VerbHelp(verb));
        return cli::kDone;
    }
    cli::Call call;
    int status = ParseCall(verb, args, call);
    if (status >= 0)
        return status;
    // No exception text reaches the user: the library's settled exceptions are turned into sentences by the
    // verbs that can meet them; anything else is reported as what it is, a failure of the command.
    try {
        return verb.run(call);
    } catch (const cli::UsageError& e) {
        return WrongUsage(e.what(), verb);
    } catch (const std::bad_alloc&) {
        return cli::Fail(L"there was not enough memory to finish");
    } catch (const CMemoryException&) {
        return cli::Fail(L"there was not enough memory to finish");
    } catch (const COleException& e) {
        wchar_t code[16];
        swprintf(code, 16, L"0x%08lX", static_cast<unsigned long>(e.m_sc));
        return cli::Fail(L"an automation call failed: " + cli::ResultText(TAV_RESULT_HRESULT, e.m_sc) + L" (" + code +
                         L")");
    } catch (...) {
        return cli::Fail(L"the command stopped on an unexpected error inside the library");
    }
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
    if (args.empty()) {
        cli::Diagnose(L"no verb given; 'tavutil --help' lists the verbs, 'tavutil help VERB' explains one");
        return cli::kWrongUsage;
    }
    const std::wstring& first = args.front();
    const bool helpOfHelp = args.size() == 2 && (args[1] == L"--help" || args[1] == L"-h" || args[1] == L"help");
    if (first == L"--help" || first == L"-h" || (first == L"help" && (args.size() == 1 || helpOfHelp))) {
        cli::Out(VerbList());
        return cli::kDone;
    }
    if (first == L"help") {
        if (args.size() > 2) {
            cli::Diagnose(L"help explains one verb: tavutil help VERB");
            return cli::kWrongUsage;
        }
        if (const cli::Verb* verb = cli::FindVerb(args[1])) {
            cli::Out(VerbHelp(*verb));
            return cli::kDone;
        }
        return ReportUnknown(L"unknown verb", args[1], VerbNames(), L"tavutil --help");
    }
    if (first == L"--version") {
        const char* version = TAVUTIL_VERSION_STRING;  // from the project's version, like the DLL's
        cli::OutLine(L"tavutil " + cli::Widen(version));
        return cli::kDone;
    }
    if (const cli::Verb* verb = cli::FindVerb(first))
        return RunVerb(*verb, cli::Args(args.begin() + 1, args.end()));
    if (LooksLikeOption(first))
        return ReportUnknown(L"unknown option", first, {L"--help", L"--version"}, L"tavutil --help");
    return ReportUnknown(L"unknown verb", first, VerbNames(), L"tavutil --help");
}
