// Verbs of files and versions: a path split into its parts, a file's version resource, and the
// comparison of two version numbers.
#include "Cli.h"

#include "Json.h"

#include <TavUtil.h>

#include <utility>
#include <vector>

namespace {

void Field(const std::wstring& name, const std::wstring& value) {
    std::wstring label = name + L":";
    label.resize(label.size() < 27 ? 27 : label.size(), L' ');
    cli::OutLine(label + value);
}

std::wstring Quoted(const std::wstring& text) { return L"\"" + text + L"\""; }

std::wstring VersionText(const CVerNum& v) {
    return std::to_wstring(v.GetMajor()) + L"." + std::to_wstring(v.GetMinor()) + L"." + std::to_wstring(v.GetFix()) +
           L"." + std::to_wstring(v.GetBuild());
}

// Each line as a label and its text; --json gets the same facts as one object.
void Print(const std::vector<std::pair<std::wstring, std::wstring>>& lines) {
    for (const auto& [name, value] : lines)
        Field(name, value);
}

int RunPath(const cli::Call& call) {
    cli::RequireCount(call.args, 1, 1);
    CFileName name(call.args[0].c_str());
    if (call.Has(L"--json")) {
        cli::OutJson({{"drive", cli::Narrow(name.GetDrive())},
                      {"directory", cli::Narrow(name.GetPathNoDrive())},
                      {"file", cli::Narrow(name.GetFile())},
                      {"extension", cli::Narrow(name.GetExtension())},
                      {"path", cli::Narrow(name.GetPath())},
                      {"exists", static_cast<bool>(name.Exists())}});
        return cli::kDone;
    }
    Print({{L"drive", Quoted(name.GetDrive())},
           {L"directory", Quoted(name.GetPathNoDrive())},
           {L"file", Quoted(name.GetFile())},
           {L"extension", Quoted(name.GetExtension())},
           {L"path", Quoted(name.GetPath())},
           {L"exists", cli::YesNo(name.Exists())}});
    return cli::kDone;
}

// A file that is not there is "file not found", not "no version resource".
int RunVersion(const cli::Call& call) {
    cli::RequireCount(call.args, 1, 1);
    const std::wstring& path = call.args[0];
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        const DWORD error = GetLastError();
        if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME)
            return cli::Fail(L"file not found: " + path);
        return cli::Fail(L"cannot read " + path + L": " +
                         cli::ResultText(TAV_RESULT_WIN32, static_cast<int32_t>(error)));
    }
    CVerInfo info;
    if (!info.Init(path.c_str()))
        return cli::Fail(path + L" has no version resource");
    std::vector<std::pair<std::wstring, std::wstring>> lines = {{L"file", info.GetFileName()},
                                                                {L"language code", info.GetLanguageCode()},
                                                                {L"code page", info.GetKbdCodePage()}};
    cli::Json json = {{"file", cli::Narrow(info.GetFileName())},
                      {"language code", cli::Narrow(info.GetLanguageCode())},
                      {"code page", cli::Narrow(info.GetKbdCodePage())}};
    cli::Json fields = cli::Json::object();
    for (int i = VF_FileVersionNumber; i <= VF_ProductBuildNumber; ++i) {
        CStdStr<wchar_t> name, value;
        CVerInfo::GetFieldName(static_cast<VERFIELD>(i), name);
        bool found = info.GetField(static_cast<VERFIELD>(i), value) != 0;
        lines.emplace_back(name, found ? Quoted(value) : L"(none)");
        fields[cli::Narrow(name)] = found ? cli::JsonText(value) : cli::Json();
    }
    json["fields"] = fields;
    CVerNum file, product;
    const bool hasFile = info.GetFileVersionNum(&file), hasProduct = info.GetProductVersionNum(&product);
    lines.emplace_back(L"file version (numeric)", hasFile ? VersionText(file) : L"(none)");
    lines.emplace_back(L"product version (numeric)", hasProduct ? VersionText(product) : L"(none)");
    json["file version"] = hasFile ? cli::JsonText(VersionText(file)) : cli::Json();
    json["product version"] = hasProduct ? cli::JsonText(VersionText(product)) : cli::Json();
    if (call.Has(L"--json"))
        cli::OutJson(json);
    else
        Print(lines);
    return cli::kDone;
}

// The comparison in words: which of the four numbers decides it.
const wchar_t* ComparisonText(CVerNum::VERNUM_COMPARISON result) {
    switch (result) {
    case CVerNum::VERNUM_OLDER: return L"older";
    case CVerNum::VERNUM_EQUAL: return L"equal";
    case CVerNum::VERNUM_NEWER_BUILD: return L"newer, by its build number";
    case CVerNum::VERNUM_NEWER_FIX: return L"newer, by its fix number";
    case CVerNum::VERNUM_NEWER_MINOR: return L"newer, by its minor number";
    case CVerNum::VERNUM_NEWER_MAJOR: return L"newer, by its major number";
    }
    return L"not comparable";
}

int RunVercmp(const cli::Call& call) {
    cli::RequireCount(call.args, 2, 2);
    CVerNum a(call.args[0].c_str()), b(call.args[1].c_str());
    CVerNum::VERNUM_COMPARISON result = a.Compare(b);
    Field(L"A", VersionText(a) + (a.IsValid() ? L"" : L" (not valid)"));
    Field(L"B", VersionText(b) + (b.IsValid() ? L"" : L" (not valid)"));
    Field(L"A against B", ComparisonText(result));
    return cli::kDone;
}

cli::VerbRegistration path{{L"path", L"path [--json] PATH", L"PATH split into drive, directory, file and extension",
                            &RunPath, L"--json",
                            L"examples:\n  tavutil path 'C:\\windows\\system32\\kernel32.dll'\n"
                            L"  tavutil path --json 'C:\\windows\\notepad.exe'",
                            L"(not used by this verb)"}};
cli::VerbRegistration version{{L"version", L"version [--json] FILE",
                               L"every version-resource field of FILE and its numeric versions", &RunVersion, L"--json",
                               L"examples:\n  tavutil version 'C:\\windows\\system32\\kernel32.dll'\n"
                               L"  tavutil version --json 'C:\\windows\\system32\\kernel32.dll'",
                               L"the file is not there or has no version resource"}};
cli::VerbRegistration vercmp{
    {L"vercmp", L"vercmp A B", L"version A compared with version B", &RunVercmp, L"",
     L"A and B are major.minor.fix.build.\n\nexamples:\n  tavutil vercmp 6.20.1234.7 6.20.1199.9",
     L"(not used by this verb)"}};

}  // namespace
