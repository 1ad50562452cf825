// Verbs of files and versions: a path split into its parts, a file's version resource, and the
// comparison of two version numbers.
#include "Cli.h"

#include <TavUtil.h>

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

int RunPath(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    CFileName name(args[0].c_str());
    Field(L"drive", Quoted(name.GetDrive()));
    Field(L"directory", Quoted(name.GetPathNoDrive()));
    Field(L"file", Quoted(name.GetFile()));
    Field(L"extension", Quoted(name.GetExtension()));
    Field(L"path", Quoted(name.GetPath()));
    Field(L"exists", cli::YesNo(name.Exists()));
    return 0;
}

// Exit status 1 when the file has no version resource (or cannot be read).
int RunVersion(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    CVerInfo info;
    int loaded = info.Init(args[0].c_str());
    Field(L"file", info.GetFileName());
    if (!loaded) {
        cli::OutLine(L"no version resource");
        return 1;
    }
    Field(L"language code", info.GetLanguageCode());
    Field(L"code page", info.GetKbdCodePage());
    for (int i = VF_FileVersionNumber; i <= VF_ProductBuildNumber; ++i) {
        CStdStr<wchar_t> name, value;
        CVerInfo::GetFieldName(static_cast<VERFIELD>(i), name);
        bool found = info.GetField(static_cast<VERFIELD>(i), value) != 0;
        Field(name, found ? Quoted(value) : L"(none)");
    }
    CVerNum file, product;
    Field(L"file version (numeric)", info.GetFileVersionNum(&file) ? VersionText(file) : L"(none)");
    Field(L"product version (numeric)", info.GetProductVersionNum(&product) ? VersionText(product) : L"(none)");
    return 0;
}

const wchar_t* ComparisonName(CVerNum::VERNUM_COMPARISON result) {
    switch (result) {
    case CVerNum::VERNUM_OLDER: return L"VERNUM_OLDER";
    case CVerNum::VERNUM_EQUAL: return L"VERNUM_EQUAL";
    case CVerNum::VERNUM_NEWER_BUILD: return L"VERNUM_NEWER_BUILD";
    case CVerNum::VERNUM_NEWER_FIX: return L"VERNUM_NEWER_FIX";
    case CVerNum::VERNUM_NEWER_MINOR: return L"VERNUM_NEWER_MINOR";
    case CVerNum::VERNUM_NEWER_MAJOR: return L"VERNUM_NEWER_MAJOR";
    }
    return L"unknown";
}

int RunVercmp(const cli::Args& args) {
    cli::RequireCount(args, 2, 2);
    CVerNum a(args[0].c_str()), b(args[1].c_str());
    CVerNum::VERNUM_COMPARISON result = a.Compare(b);
    Field(L"A", VersionText(a) + (a.IsValid() ? L"" : L" (not valid)"));
    Field(L"B", VersionText(b) + (b.IsValid() ? L"" : L" (not valid)"));
    Field(L"A against B", std::wstring(ComparisonName(result)) + L" (" + std::to_wstring(result) + L")");
    return 0;
}

cli::VerbRegistration path{{L"path", L"path PATH", L"PATH split into drive, directory, file and extension", &RunPath}};
cli::VerbRegistration version{
    {L"version", L"version FILE", L"every version-resource field of FILE and its numeric versions", &RunVersion}};
cli::VerbRegistration vercmp{{L"vercmp", L"vercmp A B", L"version A compared with version B", &RunVercmp}};

}  // namespace
