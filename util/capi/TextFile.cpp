// c/textfile.h: a whole file in memory as raw bytes.
#include "capi/c/textfile.h"

#include "capi/detail/Boundary.h"
#include "files/TextFile.h"

using namespace tav::capi::detail;

struct tav_textfile_t {
    cTextFile file;
};

extern "C" {

tav_textfile tav_textfile_create(void) {
    return GuardedHandle([]() -> tav_textfile { return new tav_textfile_t; });
}

void tav_textfile_destroy(tav_textfile file) { delete file; }

int32_t tav_textfile_read(tav_textfile file, const wchar_t* path) {
    return OnHandle(file, {path}, [&] { return int32_t{file->file.Read(path) ? 1 : 0}; });
}

int32_t tav_textfile_size(tav_textfile file, uint32_t* size) {
    return OnHandle(file, {size}, [&] {
        *size = file->file.GetSize();
        return int32_t{TAV_OK};
    });
}

int32_t tav_textfile_bytes(tav_textfile file, void* buffer, size_t capacity, size_t* needed) {
    return OnHandle(file, {Out(buffer, capacity)}, [&] {
        const char* bytes = file->file.GetBuffer();
        const size_t size = bytes ? file->file.GetSize() : 0;
        return CopyBytes(bytes, size, buffer, capacity, needed);
    });
}

}  // extern "C"
