// c/versions.h: version numbers and version resources.
#include "capi/c/versions.h"

#include "capi/detail/Boundary.h"
#include "files/VerInfo.h"
#include "files/VerNum.h"

using namespace tav::capi::detail;

struct tav_verinfo_t {
    CVerInfo info;
};

namespace {

bool IsVerField(int32_t field) { return field >= VF_FileVersionNumber && field <= VF_ProductBuildNumber; }

void ToRecord(const CVerNum& number, tav_version_number* version) {
    version->major = number.GetMajor();
    version->minor = number.GetMinor();
    version->fix = number.GetFix();
    version->build = number.GetBuild();
    version->valid = number.IsValid();
}

CVerNum FromRecord(const tav_version_number& version) {
    return CVerNum(version.major, version.minor, version.fix, version.build);
}

}  // namespace

extern "C" {

int32_t tav_version_parse(const wchar_t* text, tav_version_number* version) {
    return OnArgs({text, version}, [&] {
        ToRecord(CVerNum(text), version);
        return int32_t{TAV_OK};
    });
}

int32_t tav_version_compare(const tav_version_number* a, const tav_version_number* b) {
    return OnArgs({a, b}, [&] { return int32_t{FromRecord(*a).Compare(FromRecord(*b))}; });
}

tav_verinfo tav_verinfo_create(void) {
    return GuardedHandle([]() -> tav_verinfo { return new tav_verinfo_t; });
}

void tav_verinfo_destroy(tav_verinfo info) { delete info; }

int32_t tav_verinfo_init(tav_verinfo info, const wchar_t* file) {
    return OnHandle(info, {file}, [&] { return int32_t{info->info.Init(file)}; });
}

int32_t tav_verinfo_field(tav_verinfo info, int32_t field, wchar_t* buffer, size_t capacity, size_t* needed) {
    // The field is checked before the buffer, as it always was.
    return OnHandle(info, {}, [&]() -> int32_t {
        if (!IsVerField(field))
            return TAV_E_UNKNOWN_ENUM;
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> text;
        const int found = info->info.GetField(static_cast<VERFIELD>(field), text);
        return FoundText(found != 0, text, buffer, capacity, needed);
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

int32_t tav_verinfo_file_version(tav_verinfo info, tav_version_number* version) {
    return OnHandle(info, {version}, [&] {
        CVerNum number;
        const int found = info->info.GetFileVersionNum(&number);
        ToRecord(number, version);
        return int32_t{found ? 1 : 0};
    });
}

int32_t tav_verinfo_product_version(tav_verinfo info, tav_version_number* version) {
    return OnHandle(info, {version}, [&] {
        CVerNum number;
        const int found = info->info.GetProductVersionNum(&number);
        ToRecord(number, version);
        return int32_t{found ? 1 : 0};
    });
}

int32_t tav_verinfo_language_code(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnHandle(info, {Out(buffer, capacity)},
                    [&] { return CopyText(info->info.GetLanguageCode(), buffer, capacity, needed); });
}

int32_t tav_verinfo_code_page(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnHandle(info, {Out(buffer, capacity)},
                    [&] { return CopyText(info->info.GetKbdCodePage(), buffer, capacity, needed); });
}

int32_t tav_verinfo_file_name(tav_verinfo info, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnHandle(info, {Out(buffer, capacity)},
                    [&] { return CopyText(info->info.GetFileName(), buffer, capacity, needed); });
}

}  // extern "C"
