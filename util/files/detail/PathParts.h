// Splitting a path into drive, directory, file name and extension, and composing one from those parts,
// by the platform's path rules and with its fixed part sizes.
//
// The C runtime has these routines (_wsplitpath_s, _wmakepath_s), but it reports a part or a result that
// does not fit through the process-wide invalid-parameter handler, which by default ends the process. A
// library cannot own that handler, so the same rules are written here once, and a part or a path that
// does not fit fails the operation with empty results instead.
#pragma once

#include <string>

namespace tav::files::detail {

// Capacities in units, terminator included, as the platform's path buffers have them.
constexpr size_t kDriveCapacity = 3;
constexpr size_t kDirCapacity = 256;
constexpr size_t kFileCapacity = 256;
constexpr size_t kExtCapacity = 256;
constexpr size_t kPathCapacity = 260;  // MAX_PATH

struct PathParts {
    std::wstring drive;  // "D:" or empty
    std::wstring dir;    // up to and including the last "\" or "/"; a UNC prefix lands here
    std::wstring file;   // up to the last "." after the directory
    std::wstring ext;    // from that "." to the end, dot included
};

// Splits `path`. When a part does not fit its capacity every part is empty and the result is false.
bool SplitPath(const std::wstring& path, PathParts& parts);

// Composes drive (":" added to a lone letter), directory (a "\" added unless it ends in "\" or "/"),
// file name and extension ("." added when missing); null or empty parts are skipped. When the result
// does not fit kPathCapacity, `out` is empty and the result is false.
bool MakePath(std::wstring& out, const wchar_t* drive, const wchar_t* dir, const wchar_t* file, const wchar_t* ext);

}  // namespace tav::files::detail
