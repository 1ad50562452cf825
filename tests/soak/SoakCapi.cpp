// The handles of the C interface: each object made and released, the key and COM pointers it hands out,
// and the settled growth of the support query and FindInROT as seen through it.
#include "Areas.h"

#include "RegistryFixture.h"
#include "RawRegistry.h"
#include "TestSupport.h"

#include "capi/TavUtilC.h"

#include <TavUtil.h>

#include <windows.h>
#include <objbase.h>

namespace soak {

namespace {

constexpr const wchar_t* kSupportAddress = L"http://www.velmorax.com/support?B=3";

void SoakCapiObjects(Runner& runner) {
    tavtest::ScratchKey scratch;
    const std::wstring path = scratch.path();
    regtest::RawCreate(HKEY_CURRENT_USER, scratch / L"child");
    wchar_t text[512];
    size_t needed = 0;

    runner.Check("C tav_registry create/open/write/read/subkeys/close", [&] {
        tav_registry key = tav_registry_create();
        tav_registry_open(key, HKEY_CURRENT_USER, path.c_str(), 0);
        tav_registry_write_string(key, L"text", L"soak value");
        tav_registry_read_string(key, L"text", text, 512, &needed);
        tav_registry_subkeys(key, text, 512, &needed);
        tav_registry_close(key);
        tav_registry_destroy(key);
    });
    runner.Check("C tav_registry destroyed while open", [&] {
        tav_registry key = tav_registry_create();
        tav_registry_open(key, HKEY_CURRENT_USER, path.c_str(), 1);
        tav_registry_destroy(key);
    });
    runner.Check("C tav_settings create/create_key/write/read/destroy", [&] {
        tav_settings settings = tav_settings_create();
        tav_settings_create_key(settings, path.c_str());
        uint32_t value = 0;
        tav_settings_read_dword(settings, L"missing", 7, &value);
        tav_settings_read_string(settings, L"text", L"default", text, 512, &needed);
        tav_settings_subkey_name(settings, 0, text, 512, &needed);
        tav_settings_destroy(settings);
    });

    wchar_t system[MAX_PATH];
    GetSystemDirectoryW(system, MAX_PATH);
    const std::wstring kernel = std::wstring(system) + L"\\kernel32.dll";
    runner.Check("C tav_verinfo create/init/field/destroy", [&] {
        tav_verinfo info = tav_verinfo_create();
        tav_verinfo_init(info, kernel.c_str());
        tav_verinfo_field(info, 3, text, 512, &needed);
        tav_version_number version;
        tav_verinfo_file_version(info, &version);
        tav_verinfo_destroy(info);
    });
    tavtest::TempDir folder(L"tavsoak");
    const std::wstring file = folder / L"text.txt";
    tavtest::WriteFileBytes(file, "first line\r\nsecond line\r\n");
    runner.Check("C tav_textfile create/read/bytes/destroy", [&] {
        tav_textfile textFile = tav_textfile_create();
        tav_textfile_read(textFile, file.c_str());
        char bytes[64];
        tav_textfile_bytes(textFile, bytes, sizeof bytes, &needed);
        tav_textfile_destroy(textFile);
    });
    runner.Check("C tav_wait create/wait/abort/destroy", [] {
        tav_wait wait = tav_wait_create();
        tav_wait_wait(wait, 0, 0, 0);
        tav_wait_init(wait);
        tav_wait_abort(wait);
        tav_wait_destroy(wait);
    });
    FILE* const logStream = OutputToFILE::Stream();
    OutputToFILE::Stream() = nullptr;  // plays fail without a sound device, and log
    runner.Check("C tav_sound create/play/destroy", [] {
        tav_sound sound = tav_sound_create();
        tav_sound_play(sound, L"SoakNoSuchEvent", TAV_SOUND_SYNC);
        tav_sound_destroy(sound);
    });
    OutputToFILE::Stream() = logStream;
    runner.Check("C tav_clipboard set/get", [&] {
        tav_clipboard_set_text(L"soak text");
        tav_clipboard_get_text(text, 512, &needed);
    });
    runner.Check("C tav_foreground_grabber begin/end", [] {
        tav_grabber grabber = tav_foreground_grabber_begin();
        tav_foreground_grabber_end(grabber);
    });
}

void SoakCapiCom(Runner& runner) {
    if (FAILED(CoInitialize(nullptr)))
        return runner.Fail("C tav_com", "COM could not be initialised");
    runner.Check("C tav_com create_object/object_name/release", [] {
        void* object = nullptr;
        if (tav_com_create_object(L"VBScript.RegExp", &object) == 1) {
            wchar_t name[64];
            size_t needed = 0;
            tav_com_object_name(object, name, 64, &needed);
            tav_com_release(object);
        }
    });
    runner.Check("C tav_com find_in_rot (no match)", [] {
        void* object = nullptr;
        if (tav_com_find_in_rot(L"VBScript.RegExp", &object) == 1)
            tav_com_release(object);
    });
    CoUninitialize();
}

void SoakCapiSupport(Runner& runner) {
    wchar_t query[512];
    size_t needed = 0;
    tavtest::RegistryFixture locale(HKEY_LOCAL_MACHINE, L"Software\\velmorax");
    tav::UniqueKey probe;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\velmorax", 0, KEY_READ, probe.put()) != ERROR_SUCCESS)
        return runner.Fail("C tav_support_query (Locale key)", "the Locale key could not be created");
    runner.Check("C tav_support_query (Locale key)", [&] { tav_support_query(kSupportAddress, query, 512, &needed); },
                 {"the Locale key opened to read the user's locale is not closed", 1, false});
}

}  // namespace

void SoakCapi(Runner& runner) {
    SoakCapiObjects(runner);
    SoakCapiCom(runner);
    SoakCapiSupport(runner);
}

}  // namespace soak
