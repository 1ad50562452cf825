#include "launch/CommandLine.h"

#include "launch/detail/Environment.h"
#include "platform/CString.h"

#include <windows.h>

namespace {

constexpr DWORD kPathCapacity = 512;

// Whether `candidate` names an existing file, resolved as a program name is: a name without a folder is
// looked for in the current folder and along the system search order; no extension is added. The test is
// made with wide-character calls so that names outside the OEM code page are found too; folders are not
// programs and do not count.
bool ProgramFileExists(const CString& candidate) {
    if (candidate.IsEmpty())
        return false;
    wchar_t found[kPathCapacity];
    DWORD length = SearchPathW(nullptr, candidate, nullptr, kPathCapacity, found, nullptr);
    if (length == 0 || length >= kPathCapacity)
        return false;
    DWORD attributes = GetFileAttributesW(found);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

void EraseTrailingQuote(CString& text) {
    int length = text.GetLength();
    if (length > 0 && text.GetAt(length - 1) == L'"')
        text.ReleaseBuffer(length - 1);
}

}  // namespace

bool ExtractProgram(const CStdStr<wchar_t>& cmd, CStdStr<wchar_t>& program, CStdStr<wchar_t>& args) {
    if (cmd.IsEmpty())
        return false;
    CString line(tav::launch::detail::ExpandEnvironment(cmd).c_str());
    if (line.GetLength() > 0 && line.GetAt(0) == L'"')
        line = line.Mid(1);  // only the opening quote; the closing one goes with the candidate that ends in it

    for (int blank = line.Find(L' '); blank >= 1; blank = line.Find(L' ', blank + 1)) {
        CString candidate = line.Left(blank);
        EraseTrailingQuote(candidate);
        if (ProgramFileExists(candidate)) {
            program = CStdStr<wchar_t>(candidate);
            // The argument text keeps its separating blank: callers pass it on as it is.
            args = CStdStr<wchar_t>(line.Mid(blank));
            return true;
        }
    }

    EraseTrailingQuote(line);
    program = CStdStr<wchar_t>(line);
    args = L"";
    return true;
}

void stripTrailingArgument(CStdStr<wchar_t>& line) {
    // The first character is taken to be the opening quote without looking at it.
    int quote = line.Find(L'"', 1);
    if (quote >= 0) {
        line = CStdStr<wchar_t>(line.substr(1, static_cast<size_t>(quote - 1)));
        return;
    }
    for (int blank = line.Find(L' '); blank >= 0; blank = line.Find(L' ', blank + 1)) {
        // No guard on blank - 4: a blank within the first four characters makes substr throw
        // std::out_of_range, which callers rely on to reject such lines.
        const std::wstring ending = line.substr(static_cast<size_t>(blank) - 4, 4);
        if (ending == L".exe" || ending == L".EXE") {
            line.resize(static_cast<size_t>(blank));
            return;
        }
    }
}

bool isValidFile(const CStdStr<wchar_t>& path, bool stripArgs) {
    CStdStr<wchar_t> file = path;
    if (stripArgs)
        stripTrailingArgument(file);
    while (!file.IsEmpty() && file.back() == L'\\')
        file.pop_back();
    file = tav::launch::detail::ExpandEnvironment(file);
    // An empty text (a missing registry value, a line of backslashes) names no file.
    if (file.IsEmpty())
        return false;
    wchar_t found[kPathCapacity];
    return SearchPathW(nullptr, file.c_str(), nullptr, kPathCapacity, found, nullptr) != 0;
}
