/* A short C host of TavUtil: the size-query idiom for text, a list, an object handle, and the result codes.
 * Any C compiler will do; see the README's section "From C, MSVC and other languages". */
#include <TavUtil/TavUtilC.h>

#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>

/* Asks for the size first, then fetches the text into a buffer of that size. */
static wchar_t* file_part(const wchar_t* path) {
    size_t needed = 0;
    wchar_t* text;
    if (tav_path_file(path, NULL, 0, &needed) != TAV_E_BUFFER_TOO_SMALL)
        return NULL;
    text = (wchar_t*)malloc(needed * sizeof(wchar_t));
    if (text != NULL && tav_path_file(path, text, needed, NULL) != TAV_OK) {
        free(text);
        text = NULL;
    }
    return text;
}

int main(void) {
    wchar_t pieces[64];
    const wchar_t* piece;
    tav_version_number mine, theirs;
    tav_registry key;
    wchar_t* name = file_part(L"C:\\Program Files\\Suite\\host.exe");
    int32_t count;
    int ok = name != NULL && wcscmp(name, L"host") == 0;
    free(name);

    /* A list: NUL-separated pieces ending in a double NUL. */
    count = tav_string_cut(L"one two three", 7, pieces, 64, NULL);
    ok = ok && count == 2;
    for (piece = pieces; *piece; piece += wcslen(piece) + 1)
        printf("c_host: piece \"%ls\"\n", piece);

    /* Numbers in plain records, results as the C++ interface has them. */
    tav_version_parse(L"2.1.0.7", &mine);
    tav_version_parse(L"2.0.9.9", &theirs);
    ok = ok && tav_version_compare(&mine, &theirs) == 4; /* newer minor */

    /* An object with state: a handle, Windows status codes, and a destroy that accepts null. */
    key = tav_registry_create();
    ok = ok && tav_registry_open(key, TAV_HKEY_CURRENT_USER, L"Software", 1) == 0;
    ok = ok && tav_registry_close(key) == 0 && tav_registry_close(key) == 6;
    tav_registry_destroy(key);

    /* The C layer's own failures are small negative numbers. */
    ok = ok && tav_launch_strip_trailing_argument(L"ab c", NULL, 0, NULL) == TAV_E_OUT_OF_RANGE;
    ok = ok && tav_wait_status(NULL) == TAV_E_NULL_HANDLE;

    printf("c_host: TavUtil's C interface %s (Windows classification %d)\n", ok ? "works" : "FAILED",
           (int)tav_os_type());
    return ok ? 0 : 1;
}
