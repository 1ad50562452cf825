// c/paths.h: Windows paths as text.
#include "capi/c/paths.h"

#include "capi/detail/Boundary.h"
#include "files/FileName.h"

using namespace tav::capi::detail;

namespace {

CStdStr<wchar_t> Text(const CFileName& name) { return CStdStr<wchar_t>(name.c_str()); }

// A text made by `make` from the texts it was given, with the checks at the boundary.
template <typename Make> int32_t PathText(Args texts, wchar_t* buffer, size_t capacity, size_t* needed, Make make) {
    return OnArgs(texts, [&]() -> int32_t {
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        return CopyText(make(), buffer, capacity, needed);
    });
}

// One of CFileName's static strippers applied to a copy of `text`: 1 or 0 and the text after the call.
template <typename Strip>
int32_t Stripped(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed, Strip strip) {
    return OnArgs({text, Out(buffer, capacity)}, [&]() -> int32_t {
        CStdStr<wchar_t> s(text);
        const bool removed = strip(s);
        return WithText(removed ? 1 : 0, CopyText(s, buffer, capacity, needed));
    });
}

}  // namespace

extern "C" {

int32_t tav_path_drive(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    return PathText({path}, buffer, capacity, needed, [&] { return CFileName(path).GetDrive(); });
}

int32_t tav_path_dir_no_drive(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    return PathText({path}, buffer, capacity, needed, [&] { return CFileName(path).GetPathNoDrive(); });
}

int32_t tav_path_file(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    return PathText({path}, buffer, capacity, needed, [&] { return CFileName(path).GetFile(); });
}

int32_t tav_path_extension(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    return PathText({path}, buffer, capacity, needed, [&] { return CFileName(path).GetExtension(); });
}

int32_t tav_path_dir(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    return PathText({path}, buffer, capacity, needed, [&] { return CFileName(path).GetPath(); });
}

int32_t tav_path_split(const wchar_t* path, wchar_t* dir, size_t dir_capacity, size_t* dir_needed, wchar_t* file,
                       size_t file_capacity, size_t* file_needed) {
    return OnArgs({path, Out(dir, dir_capacity), Out(file, file_capacity)}, [&]() -> int32_t {
        CStdStr<wchar_t> dirText;
        CStdStr<wchar_t> fileText;
        CFileName(path).Split(dirText, fileText);
        return CopyTwo(dirText, dir, dir_capacity, dir_needed, fileText, file, file_capacity, file_needed);
    });
}

int32_t tav_path_compose(const wchar_t* path, const wchar_t* file, const wchar_t* ext, wchar_t* buffer, size_t capacity,
                         size_t* needed) {
    return PathText({path, file, ext}, buffer, capacity, needed, [&] { return Text(CFileName(path, file, ext)); });
}

int32_t tav_path_beside_exe(const wchar_t* file, const wchar_t* ext, wchar_t* buffer, size_t capacity, size_t* needed) {
    return PathText({file, ext}, buffer, capacity, needed,
                    [&] { return Text(CFileName(CFileName::ExeInstance, file, ext)); });
}

int32_t tav_path_exe_dir(wchar_t* buffer, size_t capacity, size_t* needed) {
    return PathText({}, buffer, capacity, needed, [] { return Text(CFileName()); });
}

int32_t tav_path_from_path_and_file(const wchar_t* path, const wchar_t* file, const wchar_t* ext, wchar_t* buffer,
                                    size_t capacity, size_t* needed) {
    return PathText({path, file, ext}, buffer, capacity, needed,
                    [&] { return Text(CFileName::FromPathAndFile(path, file, ext)); });
}

int32_t tav_path_set_filename(const wchar_t* path, const wchar_t* file, const wchar_t* ext, wchar_t* buffer,
                              size_t capacity, size_t* needed) {
    return PathText({path, file, ext}, buffer, capacity, needed, [&] {
        CFileName name(path);
        name.SetFilename(file, ext);
        return Text(name);
    });
}

int32_t tav_path_append_directory(const wchar_t* path, const wchar_t* dir, wchar_t* buffer, size_t capacity,
                                  size_t* needed) {
    return PathText({path, dir}, buffer, capacity, needed, [&] {
        CFileName name(path);
        name.AppendDirectory(dir);
        return Text(name);
    });
}

int32_t tav_path_strip_extension(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed) {
    return Stripped(text, buffer, capacity, needed, [](CStdStr<wchar_t>& s) { return CFileName::StripExtension(s); });
}

int32_t tav_path_strip_trailing_separator(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed) {
    return Stripped(text, buffer, capacity, needed,
                    [](CStdStr<wchar_t>& s) { return CFileName::StripTrailingSeparator(s); });
}

int32_t tav_path_strip_path(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed) {
    return Stripped(text, buffer, capacity, needed, [](CStdStr<wchar_t>& s) { return CFileName::StripPath(s); });
}

int32_t tav_path_file_exists(const wchar_t* path) {
    return OnArgs({path}, [&] { return (CFileName::FileExists(path) ? 1 : 0); });
}

int32_t tav_path_exists(const wchar_t* path) {
    return OnArgs({path}, [&] { return (CFileName(path).Exists() ? 1 : 0); });
}

int32_t tav_path_create_directory(const wchar_t* path, int32_t recursive) {
    return OnArgs({path}, [&] { return int32_t{CFileName(path).CreateDirectoryW(recursive)}; });
}

}  // extern "C"
