/* c/textfile.h: a whole file in memory. */
#include "CTests.h"

void test_textfile(void) {
    static const char content[] = "first line\r\nsecond\xff\x00tail";
    const size_t length = sizeof content - 1;
    wchar_t path[MAX_PATH];
    tav_textfile file = tav_textfile_create();
    uint32_t size = 0;
    size_t need = 0;
    unsigned char bytes[64];
    FILE* out;

    swprintf(path, MAX_PATH, L"%lsbytes.txt", g_scratch);
    out = _wfopen(path, L"wb");
    fwrite(content, 1, length, out);
    fclose(out);

    EXPECT_TRUE(file != NULL);
    EXPECT_INT(TAV_OK, tav_textfile_size(file, &size));
    EXPECT_INT(0, size);
    EXPECT_INT(1, tav_textfile_read(file, path));
    EXPECT_INT(TAV_OK, tav_textfile_size(file, &size));
    EXPECT_INT(length, size);
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL, tav_textfile_bytes(file, NULL, 0, &need));
    EXPECT_INT(length, need);
    memset(bytes, 0xAA, sizeof bytes);
    EXPECT_INT(TAV_E_BUFFER_TOO_SMALL, tav_textfile_bytes(file, bytes, length - 1, NULL));
    EXPECT_INT(0xAA, bytes[0]);
    EXPECT_INT(0xAA, bytes[length - 1]);
    EXPECT_INT(TAV_OK, tav_textfile_bytes(file, bytes, length, &need));
    EXPECT_TRUE(memcmp(bytes, content, length) == 0);
    EXPECT_INT(0xAA, bytes[length]);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_textfile_bytes(file, NULL, 4, NULL));
    tav_textfile_destroy(file);

    file = tav_textfile_create();
    EXPECT_INT(0, tav_textfile_read(file, L"C:\\capi\\nothing.txt"));
    EXPECT_INT(TAV_OK, tav_textfile_bytes(file, NULL, 0, &need));
    EXPECT_INT(0, need);
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_textfile_read(file, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_textfile_size(file, NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_textfile_read(NULL, path));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_textfile_size(NULL, &size));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_textfile_bytes(NULL, bytes, 64, NULL));
    tav_textfile_destroy(file);
    tav_textfile_destroy(NULL);
    DeleteFileW(path);
}
