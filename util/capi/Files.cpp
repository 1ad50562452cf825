// The C interface of files: path objects, version numbers, version resources, whole files and installed
// software.
#include "capi/TavUtilC.h"

#include "capi/detail/Boundary.h"
#include "files/FileName.h"
#include "files/InstalledSoftware.h"
#include "files/TextFile.h"
#include "files/VerInfo.h"
#include "files/VerNum.h"

using namespace tav::capi;

struct tav_verinfo_t {
    CVerInfo info;
};
struct tav_textfile_t {
    cTextFile file;
};

namespace {

CStdStr<wchar_t> Text(const CFileName& name) { return CStdStr<wchar_t>(name.c_str()); }

bool IsVerField(int32_t field) { return field >= VF_FileVersionNumber && field <= VF_ProductBuildNumber; }

void ToRecord(const CVerNum& number, tav_version* version) {
    version->major = number.GetMajor();
    version->minor = number.GetMinor();
    version->fix = number.GetFix();
    version->build = number.GetBuild();
    version->valid = number.IsValid();
}

CVerNum FromRecord(const tav_version& version) {
    return CVerNum(version.major, version.minor, version.fix, version.build);
}

// A text made from `path` by `make`, with the C layer's checks.
template <typename Make>
int32_t PathText(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed, Make make) {
    return Guarded([&]() -> int32_t {
        if (path == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        return CopyText(make(), buffer, capacity, needed);
    });
}

// One of CFileName's static strippers applied to a copy of `text`: 1 or 0 and the text after the call.
template <typename Strip>
int32_t Stripped(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed, Strip strip) {
    return Guarded([&]() -> int32_t {
        if (text == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> s(text);
        const bool removed = strip(s);
        return WithText(removed ? 1 : 0, CopyText(s, buffer, capacity, needed));
    });
}

// A finder answer: 1 and the text, or 0 and an empty text.
int32_t Found(bool found, const CStdStr<wchar_t>& text, wchar_t* buffer, size_t capacity, size_t* needed) {
    return WithText(found ? 1 : 0, CopyText(found ? text : CStdStr<wchar_t>(), buffer, capacity, needed));
}

}  // namespace

extern "C" {

int32_t tav_path_drive(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({path}))
        return kNullArgument;
    return PathText(path, buffer, capacity, needed, [&] { return CFileName(path).GetDrive(); });
}

int32_t tav_path_dir_no_drive(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({path}))
        return kNullArgument;
    return PathText(path, buffer, capacity, needed, [&] { return CFileName(path).GetPathNoDrive(); });
}

int32_t tav_path_file(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({path}))
        return kNullArgument;
    return PathText(path, buffer, capacity, needed, [&] { return CFileName(path).GetFile(); });
}

int32_t tav_path_extension(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({path}))
        return kNullArgument;
    return PathText(path, buffer, capacity, needed, [&] { return CFileName(path).GetExtension(); });
}

int32_t tav_path_dir(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({path}))
        return kNullArgument;
    return PathText(path, buffer, capacity, needed, [&] { return CFileName(path).GetPath(); });
}

int32_t tav_path_split(const wchar_t* path, wchar_t* dir, size_t dir_capacity, size_t* dir_needed, wchar_t* file,
                       size_t file_capacity, size_t* file_needed) {
    if (StrayText({path}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (path == nullptr || BadBuffer(dir, dir_capacity) || BadBuffer(file, file_capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> dirText;
        CStdStr<wchar_t> fileText;
        CFileName(path).Split(dirText, fileText);
        return CopyTwo(dirText, dir, dir_capacity, dir_needed, fileText, file, file_capacity, file_needed);
    });
}

int32_t tav_path_compose(const wchar_t* path, const wchar_t* file, const wchar_t* ext, wchar_t* buffer, size_t capacity,
                         size_t* needed) {
    if (StrayText({path, file, ext}))
        return kNullArgument;
    if (file == nullptr || ext == nullptr)
        return TAV_E_NULL_ARGUMENT;
    return PathText(path, buffer, capacity, needed, [&] { return Text(CFileName(path, file, ext)); });
}

int32_t tav_path_beside_exe(const wchar_t* file, const wchar_t* ext, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({file, ext}))
        return kNullArgument;
    if (ext == nullptr)
        return TAV_E_NULL_ARGUMENT;
    return PathText(file, buffer, capacity, needed, [&] { return Text(CFileName(CFileName::ExeInstance, file, ext)); });
}

int32_t tav_path_exe_dir(wchar_t* buffer, size_t capacity, size_t* needed) {
    return PathText(L"", buffer, capacity, needed, [] { return Text(CFileName()); });
}

int32_t tav_path_from_path_and_file(const wchar_t* path, const wchar_t* file, const wchar_t* ext, wchar_t* buffer,
                                    size_t capacity, size_t* needed) {
    if (StrayText({path, file, ext}))
        return kNullArgument;
    if (file == nullptr || ext == nullptr)
        return TAV_E_NULL_ARGUMENT;
    return PathText(path, buffer, capacity, needed, [&] { return Text(CFileName::FromPathAndFile(path, file, ext)); });
}

int32_t tav_path_set_filename(const wchar_t* path, const wchar_t* file, const wchar_t* ext, wchar_t* buffer,
                              size_t capacity, size_t* needed) {
    if (StrayText({path, file, ext}))
        return kNullArgument;
    if (file == nullptr || ext == nullptr)
        return TAV_E_NULL_ARGUMENT;
    return PathText(path, buffer, capacity, needed, [&] {
        CFileName name(path);
        name.SetFilename(file, ext);
        return Text(name);
    });
}

int32_t tav_path_append_directory(const wchar_t* path, const wchar_t* dir, wchar_t* buffer, size_t capacity,
                                  size_t* needed) {
    if (StrayText({path, dir}))
        return kNullArgument;
    if (dir == nullptr)
        return TAV_E_NULL_ARGUMENT;
    return PathText(path, buffer, capacity, needed, [&] {
        CFileName name(path);
        name.AppendDirectory(dir);
        return Text(name);
    });
}

int32_t tav_path_strip_extension(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({text}))
        return kNullArgument;
    return Stripped(text, buffer, capacity, needed, [](CStdStr<wchar_t>& s) { return CFileName::StripExtension(s); });
}

int32_t tav_path_strip_trailing_separator(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({text}))
        return kNullArgument;
    return Stripped(text, buffer, capacity, needed,
                    [](CStdStr<wchar_t>& s) { return CFileName::StripTrailingSeparator(s); });
}

int32_t tav_path_strip_path(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({text}))
        return kNullArgument;
    return Stripped(text, buffer, capacity, needed, [](CStdStr<wchar_t>& s) { return CFileName::StripPath(s); });
}

int32_t tav_file_exists(const wchar_t* path) {
    if (StrayText({path}))
        return kNullArgument;
    return Guarded([&]() -> int32_t { return path ? (CFileName::FileExists(path) ? 1 : 0) : kNullArgument; });
}

int32_t tav_path_exists(const wchar_t* path) {
    if (StrayText({path}))
        return kNullArgument;
    return Guarded([&]() -> int32_t { return path ? (CFileName(path).Exists() ? 1 : 0) : kNullArgument; });
}

int32_t tav_path_create_directory(const wchar_t* path, int32_t recursive) {
    if (StrayText({path}))
        return kNullArgument;
    return Guarded([&]() -> int32_t { return path ? CFileName(path).CreateDirectoryW(recursive) : kNullArgument; });
}

int32_t tav_version_parse(const wchar_t* text, tav_version* version) {
    if (StrayText({text}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (text == nullptr || version == nullptr)
            return TAV_E_NULL_ARGUMENT;
        ToRecord(CVerNum(text), version);
        return TAV_OK;
    });
}

int32_t tav_version_compare(const tav_version* a, const tav_version* b) {
    return Guarded([&]() -> int32_t {
        if (a == nullptr || b == nullptr)
            return TAV_E_NULL_ARGUMENT;
        return FromRecord(*a).Compare(FromRecord(*b));
    });
}

tav_verinfo tav_verinfo_create(void) {
    return GuardedHandle([]() -> tav_verinfo { return new tav_verinfo_t; });
}

void tav_verinfo_destroy(tav_verinfo info) { delete info; }

int32_t tav_verinfo_init(tav_verinfo info, const wchar_t* file) {
    if (StrayText({file}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (info == nullptr)
            return TAV_E_NULL_HANDLE;
        return file ? info->info.Init(file) : kNullArgument;
    });
}

int32_t tav_verinfo_field(tav_verinfo info, int32_t field, wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (info == nullptr)
            return TAV_E_NULL_HANDLE;
        if (!IsVerField(field))
            return TAV_E_UNKNOWN_ENUM;
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> text;
        const int found = info->info.GetField(static_cast<VERFIELD>(field), text);
        return Found(found != 0, text, buffer, capacity, needed);
    });
}

int32_t tav_verinfo_field_name(int32_t field, wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (!IsVerField(field))
            return TAV_E_UNKNOWN_ENUM;
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> name;
        CVerInfo::GetFieldName(static_cast<VERFIELD>(field), name);
        return CopyText(name, buffer, capacity, needed);
    });
}

int32_t tav_verinfo_file_version(tav_verinfo info, tav_version* version) {
    return Guarded([&]() -> int32_t {
        if (info == nullptr)
            return TAV_E_NULL_HANDLE;
        if (version == nullptr)
            return TAV_E_NULL_ARGUMENT;
        CVerNum number;
        const int found = info->info.GetFileVersionNum(&number);
        ToRecord(number, version);
        return found ? 1 : 0;
    });
}

int32_t tav_verinfo_product_version(tav_verinfo info, tav_version* version) {
    return Guarded([&]() -> int32_t {
        if (info == nullptr)
            return TAV_E_NULL_HANDLE;
        if (version == nullptr)
            return TAV_E_NULL_ARGUMENT;
        CVerNum number;
        const int found = info->info.GetProductVersionNum(&number);
        ToRecord(number, version);
        return found ? 1 : 0;
    });
}

int32_t tav_verinfo_language_code(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (info == nullptr)
        return TAV_E_NULL_HANDLE;
    return PathText(L"", buffer, capacity, needed, [&] { return CStdStr<wchar_t>(info->info.GetLanguageCode()); });
}

int32_t tav_verinfo_code_page(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (info == nullptr)
        return TAV_E_NULL_HANDLE;
    return PathText(L"", buffer, capacity, needed, [&] { return CStdStr<wchar_t>(info->info.GetKbdCodePage()); });
}

int32_t tav_verinfo_file_name(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (info == nullptr)
        return TAV_E_NULL_HANDLE;
    return PathText(L"", buffer, capacity, needed, [&] { return info->info.GetFileName(); });
}

tav_textfile tav_textfile_create(void) {
    return GuardedHandle([]() -> tav_textfile { return new tav_textfile_t; });
}

void tav_textfile_destroy(tav_textfile file) { delete file; }

int32_t tav_textfile_read(tav_textfile file, const wchar_t* path) {
    if (StrayText({path}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (file == nullptr)
            return TAV_E_NULL_HANDLE;
        return path ? (file->file.Read(path) ? 1 : 0) : kNullArgument;
    });
}

int32_t tav_textfile_size(tav_textfile file, uint32_t* size) {
    if (file == nullptr)
        return TAV_E_NULL_HANDLE;
    if (size == nullptr)
        return TAV_E_NULL_ARGUMENT;
    *size = file->file.GetSize();
    return TAV_OK;
}

int32_t tav_textfile_bytes(tav_textfile file, void* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (file == nullptr)
            return TAV_E_NULL_HANDLE;
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        const char* bytes = file->file.GetBuffer();
        const size_t size = bytes ? file->file.GetSize() : 0;
        return CopyBytes(bytes, size, buffer, capacity, needed);
    });
}

int32_t tav_install_date(wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        const CStdStr<wchar_t> date = TrimdialInstallDate();
        return Found(!date.empty(), date, buffer, capacity, needed);
    });
}

int32_t tav_find_application_path(const wchar_t* app, const wchar_t* ext, wchar_t* buffer, size_t capacity,
                                  size_t* needed) {
    if (StrayText({app, ext}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (app == nullptr || ext == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> path;
        const bool found = FindApplicationPath(app, path, ext);
        return Found(found, path, buffer, capacity, needed);
    });
}

int32_t tav_find_progid_server(const wchar_t* prog_id, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({prog_id}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (prog_id == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> path;
        const bool found = FindMostRecentProgIdPath(prog_id, path);
        return Found(found, path, buffer, capacity, needed);
    });
}

}  // extern "C"
