#include "files/detail/PathParts.h"

namespace tav::files::detail {

namespace {

bool IsSeparator(wchar_t ch) { return ch == L'\\' || ch == L'/'; }
bool Fits(const std::wstring& part, size_t capacity) { return part.size() < capacity; }
bool IsEmpty(const wchar_t* part) { return part == nullptr || *part == L'\0'; }

}  // namespace

bool SplitPath(const std::wstring& path, PathParts& parts) {
    parts = PathParts{};
    size_t start = 0;
    if (path.size() >= 2 && path[1] == L':') {
        parts.drive = path.substr(0, 2);
        start = 2;
    }
    size_t lastSeparator = path.find_last_of(L"\\/");
    size_t nameStart = start;
    if (lastSeparator != std::wstring::npos && lastSeparator >= start) {
        parts.dir = path.substr(start, lastSeparator + 1 - start);
        nameStart = lastSeparator + 1;
    }
    size_t dot = path.rfind(L'.');
    if (dot != std::wstring::npos && dot >= nameStart) {
        parts.file = path.substr(nameStart, dot - nameStart);
        parts.ext = path.substr(dot);
    } else {
        parts.file = path.substr(nameStart);
    }
    if (Fits(parts.drive, kDriveCapacity) && Fits(parts.dir, kDirCapacity) && Fits(parts.file, kFileCapacity) &&
        Fits(parts.ext, kExtCapacity))
        return true;
    parts = PathParts{};
    return false;
}

bool MakePath(std::wstring& out, const wchar_t* drive, const wchar_t* dir, const wchar_t* file, const wchar_t* ext) {
    out.clear();
    if (!IsEmpty(drive)) {
        out += drive;
        if (out.size() == 1)
            out += L':';
    }
    if (!IsEmpty(dir)) {
        out += dir;
        if (!IsSeparator(out.back()))
            out += L'\\';
    }
    if (!IsEmpty(file))
        out += file;
    if (!IsEmpty(ext)) {
        if (*ext != L'.')
            out += L'.';
        out += ext;
    }
    if (Fits(out, kPathCapacity))
        return true;
    out.clear();
    return false;
}

}  // namespace tav::files::detail
