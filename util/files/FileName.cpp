#include "files/FileName.h"

#include "files/detail/PathParts.h"
#include "platform/Handles.h"
#include "strings/StringUtils.h"

#include <io.h>

namespace {

using tav::files::detail::PathParts;

PathParts Parts(const std::wstring& path) {
    PathParts parts;
    tav::files::detail::SplitPath(path, parts);
    return parts;
}

CStdStr<wchar_t> Compose(const wchar_t* drive, const wchar_t* dir, const wchar_t* file, const wchar_t* ext) {
    std::wstring out;
    tav::files::detail::MakePath(out, drive, dir, file, ext);
    return CStdStr<wchar_t>(std::move(out));
}

// The drive and directory of `path` composed with `file` and `ext`. A path whose split fails has no
// drive or directory to keep: the result is empty rather than a name relative to the current folder.
CStdStr<wchar_t> ComposeInFolderOf(const std::wstring& path, const wchar_t* file, const wchar_t* ext) {
    PathParts parts;
    if (!tav::files::detail::SplitPath(path, parts))
        return {};
    return Compose(parts.drive.c_str(), parts.dir.c_str(), file, ext);
}

// The module's file name as the loader reports it, cut at the platform's path size.
std::wstring ModulePath(HINSTANCE module) {
    wchar_t buffer[MAX_PATH] = L"";
    DWORD length = GetModuleFileNameW(module, buffer, MAX_PATH);
    return std::wstring(buffer, length < MAX_PATH ? length : MAX_PATH - 1);
}

}  // namespace

CFileName::CFileName() : CFileName(ExeInstance, nullptr, nullptr) {}

CFileName::CFileName(HINSTANCE module, const wchar_t* file, const wchar_t* ext)
    : m_path(ComposeInFolderOf(ModulePath(module), file, ext)) {}

CFileName::CFileName(const wchar_t* path) : m_path(path) {}

// A path whose fourth character from the end is a dot is taken as a complete file name with a
// three-letter extension, and so is any path of four characters or fewer: `file` and `ext` are then
// ignored. Hosts pass either a folder or a finished file name here and rely on this test.
CFileName::CFileName(const wchar_t* path, const wchar_t* file, const wchar_t* ext) {
    CStdStr<wchar_t> text(path);
    size_t n = text.size();
    if (n >= 5 && text[n - 4] != L'.')
        m_path = Compose(nullptr, text.c_str(), file, ext);
    else
        m_path = text;
}

CFileName::CFileName(const CFileName& other) : m_path(other.m_path) {}

CFileName& CFileName::operator=(const CFileName& other) {
    m_path = other.m_path;  // CStdStr leaves self-assignment alone
    return *this;
}

CFileName CFileName::FromPathAndFile(const wchar_t* path, const wchar_t* file, const wchar_t* ext) {
    CFileName result;
    result.m_path = ComposeInFolderOf(CStdStr<wchar_t>(path), file, ext);
    return result;
}

bool CFileName::FileExists(const wchar_t* path) {
    if (path == nullptr)
        return false;
    _wfinddata64i32_t found;
    intptr_t search = _wfindfirst64i32(path, &found);
    if (search == -1)
        return false;
    _findclose(search);
    return true;
}

bool CFileName::StripExtension(CStdStr<wchar_t>& s) {
    size_t dot = s.rfind(L'.');
    if (dot == std::wstring::npos)
        return false;
    s.erase(dot);
    return true;
}

// On an empty string the not-found position equals length - 1 (both wrap to the largest size), so
// the erase below runs at that position and the string library throws std::out_of_range. Hosts have
// always seen this exception for an empty string; it is kept as it is.
bool CFileName::StripTrailingSeparator(CStdStr<wchar_t>& s) {
    size_t last = s.rfind(L'\\');
    if (last != s.size() - 1)
        return false;
    s.erase(last, 1);
    return true;
}

bool CFileName::StripPath(CStdStr<wchar_t>& s) {
    size_t last = s.rfind(L'\\');
    if (last == std::wstring::npos)
        return false;
    s.erase(0, last + 1);
    return true;
}

CStdStr<wchar_t> CFileName::GetDrive() const { return Parts(m_path).drive; }
CStdStr<wchar_t> CFileName::GetPathNoDrive() const { return Parts(m_path).dir; }
CStdStr<wchar_t> CFileName::GetFile() const { return Parts(m_path).file; }
CStdStr<wchar_t> CFileName::GetExtension() const { return Parts(m_path).ext; }

CStdStr<wchar_t> CFileName::GetPath() const {
    PathParts parts = Parts(m_path);
    return parts.drive + parts.dir;
}

void CFileName::Split(CStdStr<wchar_t>& path, CStdStr<wchar_t>& file) {
    PathParts parts = Parts(m_path);
    path = parts.drive + parts.dir;
    file = parts.file + parts.ext;
}

void CFileName::SetFilename(const wchar_t* file, const wchar_t* ext) { m_path = ComposeInFolderOf(m_path, file, ext); }

void CFileName::AppendDirectory(const wchar_t* dir) {
    CStdStr<wchar_t> current = m_path;
    m_path = Compose(nullptr, current.c_str(), dir, nullptr);
}

// Creates the folder of GetPath(); the file-name part is ignored, so a name of a file creates that
// file's folder and a folder must end in a backslash to be created itself. With `recursive` a failed
// creation first creates the parent (recursively) and then tries once more.
//
// The result is non-zero only when the directory was created by this call: a directory that exists
// already gives 0 (the climb reaches the drive, where creation fails and no backslash remains). Hosts
// that need "exists afterwards" test Exists() first; this result is settled and kept.
//
// Without a drive letter (`\\host\share\...`, `\x\...`) the climb ends at a lone backslash, which is
// not stripped and is its own parent: the climb stops where the parent's folder is no shorter than this
// one, the only place where it would never end. A folder that ends in a backslash (from a doubled
// separator, `C:\x\a\\f.txt`) is not such a place: its parent's folder loses that backslash, and the
// climb goes on from there as it always did.
int CFileName::CreateDirectoryW(int recursive) {
    CStdStr<wchar_t> dir = GetPath();
    StripTrailingBackslash(dir);
    int created = ::CreateDirectoryW(dir.c_str(), nullptr);
    if (created != 0 || recursive == 0)
        return created;
    size_t lastBackslash = dir.rfind(L'\\');
    if (lastBackslash == std::wstring::npos)
        return 0;
    CFileName parent(dir.substr(0, lastBackslash + 1).c_str());
    CStdStr<wchar_t> parentDir = parent.GetPath();
    StripTrailingBackslash(parentDir);
    if (parentDir.size() >= dir.size())
        return 0;
    if (parent.CreateDirectoryW(1) == 0)
        return 0;
    return CreateDirectoryW(0);
}

bool CFileName::Exists() const { return FileExists(m_path.c_str()); }
