/* A stand-in "dwmapi.dll" that the planting tests put beside a program and into its current folder, where a
 * DLL planted by someone else would be. Loading it leaves a mark: an empty file "dwmapi.dll.loaded" beside
 * it, made in DllMain. Its DwmIsCompositionEnabled answers the opposite of the system's dwmapi.dll, so that
 * an answer taken from it shows. */
#include <windows.h>

typedef HRESULT(WINAPI* IsCompositionEnabledFn)(BOOL*);

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
    (void)reserved;
    if (reason == DLL_PROCESS_ATTACH) {
        wchar_t marker[MAX_PATH + 16];
        DWORD length = GetModuleFileNameW(instance, marker, MAX_PATH);
        if (length > 0 && length < MAX_PATH) {
            lstrcatW(marker, L".loaded");
            HANDLE file = CreateFileW(marker, GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, NULL);
            if (file != INVALID_HANDLE_VALUE)
                CloseHandle(file);
        }
    }
    return TRUE;
}

__declspec(dllexport) HRESULT WINAPI DwmIsCompositionEnabled(BOOL* enabled) {
    BOOL systemAnswer = FALSE;
    wchar_t path[MAX_PATH + 16];
    UINT length = GetSystemDirectoryW(path, MAX_PATH);
    if (length > 0 && length < MAX_PATH) {
        lstrcatW(path, L"\\dwmapi.dll");
        HMODULE system = LoadLibraryExW(path, NULL, LOAD_WITH_ALTERED_SEARCH_PATH);
        if (system != NULL) {
            IsCompositionEnabledFn ask =
                (IsCompositionEnabledFn)(void*)GetProcAddress(system, "DwmIsCompositionEnabled");
            if (ask != NULL && ask != DwmIsCompositionEnabled)
                ask(&systemAnswer);
            FreeLibrary(system);
        }
    }
    if (enabled == NULL)
        return E_INVALIDARG;
    *enabled = !systemAnswer;
    return S_OK;
}
