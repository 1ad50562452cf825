// c/textfile.h: A whole file in memory as raw bytes.
#include "capi/c/textfile.h"

#include "capi/detail/Boundary.h"
#include "files/TextFile.h"

using namespace tav::capi;

struct tav_textfile_t {
    cTextFile file;
};

extern "C" {

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

}  // extern "C"
