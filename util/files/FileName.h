// CFileName: one Windows path as a value. It holds the full path text and nothing else; the parts
// (drive, directory, file name, extension) are split out on each query by the platform's path rules,
// and recomposition builds new text from them. Copies are deep.
//
// Paths and parts have the platform's fixed sizes: drive 3, directory, file name and extension 256
// each, a composed path 260 units, terminators included. A part or a path that does not fit fails the
// operation with an empty result: a getter returns an empty string, a composing constructor or member
// leaves the text empty.
#pragma once

#include "../platform/Export.h"
#include "../strings/StdStr.h"

#include <windows.h>

class TAVUTIL_API CFileName {
public:
    // Passed to the module constructor, denotes the executable of the current process.
    static constexpr HINSTANCE ExeInstance = nullptr;

    // The directory of the running executable, with a trailing backslash.
    CFileName();
    // The module's directory (null: the executable's) joined with `file` and `ext`.
    CFileName(HINSTANCE module, const wchar_t* file, const wchar_t* ext);
    // The text as given (a value below 0x10000 is a string-resource identifier); no normalisation.
    CFileName(const wchar_t* path);
    // `path` joined with `file` and `ext`, unless `path` looks complete already: see the definition.
    CFileName(const wchar_t* path, const wchar_t* file, const wchar_t* ext);
    CFileName(const CFileName& other);
    CFileName& operator=(const CFileName& other);

    // The drive and directory of `path` (its own file name and extension dropped) joined with `file`
    // and `ext`. A last component without a trailing backslash counts as a file name.
    static CFileName FromPathAndFile(const wchar_t* path, const wchar_t* file, const wchar_t* ext);
    // True when a find-first search on `path` matches something (files, directories, wildcards).
    static bool FileExists(const wchar_t* path);
    // Erases from the last "." anywhere in `s` to the end; false when there is no dot.
    static bool StripExtension(CStdStr<wchar_t>& s);
    // Erases a backslash that is the last character. Throws std::out_of_range on an empty string.
    static bool StripTrailingSeparator(CStdStr<wchar_t>& s);
    // Erases everything up to and including the last backslash; false when there is none.
    static bool StripPath(CStdStr<wchar_t>& s);

    CStdStr<wchar_t> GetDrive() const;        // "D:", or empty
    CStdStr<wchar_t> GetPathNoDrive() const;  // the directory with its trailing separator
    CStdStr<wchar_t> GetFile() const;         // the file name without extension
    CStdStr<wchar_t> GetExtension() const;    // the extension with its dot, or empty
    CStdStr<wchar_t> GetPath() const;         // drive and directory
    // `path` = drive + directory, `file` = file name + extension.
    void Split(CStdStr<wchar_t>& path, CStdStr<wchar_t>& file);

    // Keeps drive and directory and composes them with `file` and `ext`.
    void SetFilename(const wchar_t* file, const wchar_t* ext);
    // Appends `dir` after a backslash (unless the text ends in a separator already); no trailing one.
    void AppendDirectory(const wchar_t* dir);
    // Creates the directory part of the path, climbing up first when `recursive`; non-zero only when the
    // directory was created by this call. See the definition.
    int CreateDirectoryW(int recursive);
    bool Exists() const;

    const wchar_t* c_str() const { return m_path.c_str(); }
    operator const wchar_t*() const { return m_path.c_str(); }
    operator const CStdStr<wchar_t>&() const { return m_path; }

private:
    CStdStr<wchar_t> m_path;
};
