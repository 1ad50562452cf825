/* c/sounds.h: event sounds. */
#include "CTests.h"

static int32_t application_name(int unused, wchar_t* buffer, size_t capacity, size_t* needed) {
    (void)unused;
    return tav_sound_application_name(buffer, capacity, needed);
}

/* A 44-byte header and 8 silent samples. */
static void write_wave(const wchar_t* path) {
    static const unsigned char header[44] = {'R', 'I', 'F', 'F', 44, 0, 0,   0,   'W', 'A',  'V',  'E', 'f', 'm',  't',
                                             ' ', 16,  0,   0,   0,  1, 0,   1,   0,   0x40, 0x1f, 0,   0,   0x80, 0x3e,
                                             0,   0,   2,   0,   16, 0, 'd', 'a', 't', 'a',  16,   0,   0,   0};
    static const unsigned char samples[16] = {0};
    FILE* file = _wfopen(path, L"wb");
    fwrite(header, 1, sizeof header, file);
    fwrite(samples, 1, sizeof samples, file);
    fclose(file);
}

void test_sounds(void) {
    wchar_t wave[MAX_PATH];
    wchar_t key[400];
    HKEY handle;
    tav_sound sound = tav_sound_create();
    const wchar_t* app = ref_sound_application_name();

    CHECK_TEXT(TAV_OK, app, application_name, 0);
    EXPECT_TRUE(wcscmp(app, L"capi_c_tests") == 0);
    EXPECT_TRUE(sound != NULL);
    EXPECT_INT(0, tav_sound_play(sound, L"CapiNoSuchEvent", TAV_SOUND_ASYNC));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_sound_play(sound, L"CapiNoSuchEvent", 3));
    EXPECT_INT(TAV_E_UNKNOWN_ENUM, tav_sound_play(sound, L"CapiNoSuchEvent", -1));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_sound_play(sound, NULL, TAV_SOUND_ASYNC));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_sound_play(NULL, L"CapiEvent", TAV_SOUND_ASYNC));

    /* A registered sound plays asynchronously (there is no sound device: the start is what is seen). */
    swprintf(wave, MAX_PATH, L"%lsbeep.wav", g_scratch);
    write_wave(wave);
    swprintf(key, 400, L"AppEvents\\Schemes\\Apps\\%ls\\CapiEvent\\.Current", app);
    if (RegCreateKeyExW(HKEY_CURRENT_USER, key, 0, NULL, 0, KEY_ALL_ACCESS, NULL, &handle, NULL) == 0) {
        RegSetValueExW(handle, NULL, 0, REG_SZ, (const BYTE*)wave, (DWORD)((wcslen(wave) + 1) * sizeof(wchar_t)));
        RegCloseKey(handle);
    }
    EXPECT_INT(1, tav_sound_play(sound, L"CapiEvent", TAV_SOUND_LOOP));
    EXPECT_INT(0, tav_sound_is_repeating(sound)); /* no play sets the flag */
    EXPECT_INT(TAV_OK, tav_sound_stop(sound));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_sound_stop(NULL));
    EXPECT_INT(TAV_E_NULL_HANDLE, tav_sound_is_repeating(NULL));
    tav_sound_destroy(sound);
    tav_sound_destroy(NULL);
    swprintf(key, 400, L"AppEvents\\Schemes\\Apps\\%ls", app);
    RegDeleteTreeW(HKEY_CURRENT_USER, key);
    DeleteFileW(wave);
}
