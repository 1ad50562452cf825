// Drivers for two entry points whose input reaches the system through one call that the drivers watch in
// TavUtil.dll's imports, so that nothing is shown or played:
//  - the file picker's filter: GetOpenFileNameW is replaced by a recorder that reads the filter list as the
//    dialog does and answers "cancelled", or "chosen" with a file name of any text, so that no dialog opens;
//  - event sounds: names of any text, and the sound path of the registry's scheme key as any value (any type,
//    any length, with or without a terminator); PlaySoundW is replaced by a recorder that answers as told,
//    and now and then passes the call on to the system.
// Both have a C counterpart that compares the C interface's answers with the C++ ones.
#include "CapiChecks.h"
#include "Fuzz.h"
#include "ImportHook.h"
#include "Inputs.h"

#include <TavUtil.h>

#include "capi/TavUtilC.h"

#include <gtest/gtest.h>

#include <commdlg.h>
#include <mmsystem.h>

#include <memory>

namespace fuzz {
namespace {

// ---- the file picker's filter ------------------------------------------------------------------------------

// What the replaced GetOpenFileNameW saw and what it answers.
struct PickerCall {
    int calls = 0;
    bool filterNull = false;
    Text filter;           // the list as the dialog reads it, within `bound` units
    bool overran = false;  // the dialog's walk would have read beyond `bound` units
    size_t bound = 0;      // set by the driver before each call: the size of the list the rule makes
    bool dirNull = false, titleNull = false;
    Text dir, title;
    DWORD size = 0, flags = 0, maxFile = 0;
    bool choose = false;  // answer "chosen" with `chosen` written into the file buffer
    Text chosen;
};
PickerCall* picker = nullptr;

// The dialog's walk: NUL-terminated strings (a description, a pattern, and so on) until an empty one. Units
// beyond `bound` are never read: a list that needs them would make the dialog read past its end.
void WalkFilter(const wchar_t* list, size_t bound, Text& read, bool& overran) {
    read.clear();
    overran = false;
    for (size_t at = 0, start = 0;; ++at) {
        if (at >= bound) {
            overran = true;
            return;
        }
        read += list[at];
        if (list[at] == L'\0') {
            if (at == start)
                return;
            start = at + 1;
        }
    }
}

BOOL WINAPI RecordOpenFileName(OPENFILENAMEW* ofn) {
    PickerCall& call = *picker;
    ++call.calls;
    call.size = ofn->lStructSize;
    call.flags = ofn->Flags;
    call.maxFile = ofn->nMaxFile;
    call.filterNull = ofn->lpstrFilter == nullptr;
    if (ofn->lpstrFilter)
        WalkFilter(ofn->lpstrFilter, call.bound, call.filter, call.overran);
    call.dirNull = ofn->lpstrInitialDir == nullptr;
    call.dir = ofn->lpstrInitialDir ? ofn->lpstrInitialDir : L"";
    call.titleNull = ofn->lpstrTitle == nullptr;
    call.title = ofn->lpstrTitle ? ofn->lpstrTitle : L"";
    if (!call.choose)
        return FALSE;
    const size_t units = std::min<size_t>(call.chosen.size(), ofn->nMaxFile - 1);
    std::copy(call.chosen.begin(), call.chosen.begin() + static_cast<ptrdiff_t>(units), ofn->lpstrFile);
    ofn->lpstrFile[units] = L'\0';
    return TRUE;
}

// The rule: the filter without its last unit, each "|" a NUL, and two NULs after; an empty filter is no list.
Text DialogList(const Text& filter) {
    Text list = filter.empty() ? Text() : filter.substr(0, filter.size() - 1);
    for (wchar_t& unit : list)
        if (unit == L'|')
            unit = L'\0';
    return list + Text(2, L'\0');
}

Text FilterText(Rng& rng) {
    const std::vector<Text> pieces = {L"Text files", L"*.txt",  L"*.*",    L"|", L"||",      L"",   L";",
                                      L"All",        L"\x00E9", L"\xD800", L" ", L"*.a;*.b", L"\\", L"\t"};
    Text filter;
    for (uint32_t n = rng.Below(10); n > 0; --n)
        filter += rng.Pick(pieces);
    return filter;
}

struct PickerDriver {
    PickerCall call;
    tavtest::ImportHook hook{"comdlg32.dll", "GetOpenFileNameW", reinterpret_cast<void*>(&RecordOpenFileName)};

    PickerDriver() { picker = &call; }
    ~PickerDriver() { picker = nullptr; }
    PickerDriver(const PickerDriver&) = delete;
    PickerDriver& operator=(const PickerDriver&) = delete;

    // One call through `browse` (the C++ or the C form); checks what the dialog was given.
    void Check(const std::string& what, const Text& filter, const Text& dir, const Text& title,
               const std::function<bool()>& browse) {
        const Text expected = DialogList(filter);
        call.bound = expected.size();
        call.calls = 0;
        const bool chosen = browse();
        Expect(call.calls == 1, what + ": the dialog was asked " + Num(call.calls) + " times");
        Expect(chosen == call.choose, what + ": the answer differs from the dialog's");
        if (filter.empty()) {
            Expect(call.filterNull, what + ": an empty filter gave a list");
        } else {
            Text wanted;
            bool wantedOverran = false;
            WalkFilter(expected.c_str(), expected.size(), wanted, wantedOverran);
            Expect(!call.filterNull && Same(call.filter, wanted) && !call.overran && !wantedOverran,
                   what + ": the dialog read \"" + Narrow(call.filter) + "\"" + (call.overran ? " and beyond" : "") +
                       ", the rule's list reads \"" + Narrow(wanted) + "\"" + (wantedOverran ? " and beyond" : ""));
        }
        Expect(call.dirNull == dir.empty() && Same(call.dir, dir) && call.titleNull == title.empty() &&
                   Same(call.title, title),
               what + ": the folder or title given to the dialog differs");
        Expect(call.maxFile == MAX_PATH && call.flags == 0x181804 && (call.size == 136 || call.size == 152),
               what + ": the dialog's size, flags or file buffer");
    }
};

std::string RunPicker(PickerDriver& driver, const Input& input, bool capi) {
    Rng rng(input.choices);
    const Text& filter = input.text;
    const Text dir = rng.OneIn(3) ? Text() : L"C:\\" + FilterText(rng);
    const Text title = rng.OneIn(3) ? Text() : FilterText(rng);
    driver.call.choose = rng.OneIn(3);
    driver.call.chosen = FilterText(rng);
    if (rng.OneIn(20))
        driver.call.chosen = Text(400, L'n');
    const Text chosenText = driver.call.chosen.substr(0, std::min<size_t>(driver.call.chosen.size(), MAX_PATH - 1));
    const Text expectedFile = chosenText.substr(0, chosenText.find(L'\0'));

    CStdStr<wchar_t> file = L"untouched";
    driver.Check("BrowseFiles", filter, dir, title, [&] {
        return BrowseFiles(CStdStr<wchar_t>(filter), file, CStdStr<wchar_t>(dir), CStdStr<wchar_t>(title));
    });
    Expect(Same(file, driver.call.choose ? expectedFile : Text(L"untouched")),
           "BrowseFiles gave the file \"" + Narrow(file) + "\"");
    if (capi) {
        // The C interface takes NUL-terminated texts: its filter ends at the first NUL.
        const Text cFilter = filter.substr(0, filter.find(L'\0'));
        const Text cDir = dir.substr(0, dir.find(L'\0')), cTitle = title.substr(0, title.find(L'\0'));
        std::vector<wchar_t> buffer(MAX_PATH + 8, kGuard);
        size_t needed = kUnset;
        driver.Check("tav_picker_files", cFilter, cDir, cTitle, [&] {
            return tav_picker_files(cFilter.c_str(), cDir.c_str(), cTitle.c_str(), buffer.data(), buffer.size(),
                                    &needed) == 1;
        });
        const Text answer = driver.call.choose ? expectedFile : Text();
        Expect(needed == answer.size() + 1 && Text(buffer.data()) == answer,
               "tav_picker_files gave the file \"" + Narrow(Text(buffer.data())) + "\"");
        Expect(tav_picker_files(nullptr, L"", L"", buffer.data(), buffer.size(), &needed) == TAV_E_NULL_ARGUMENT &&
                   tav_picker_files(cFilter.c_str(), nullptr, L"", buffer.data(), buffer.size(), &needed) ==
                       TAV_E_NULL_ARGUMENT &&
                   tav_picker_files(cFilter.c_str(), L"", L"", nullptr, 4, &needed) == TAV_E_NULL_ARGUMENT,
               "null texts and buffers");
    }
    return std::string(filter.empty() ? "empty" : "list") + (driver.call.overran ? " overran" : "") + " c" +
           Num(driver.call.choose);
}

const std::vector<Text> kFilterSeeds = {L"Text files (*.txt)|*.txt|All files (*.*)|*.*||",
                                        L"Text|*.txt||",
                                        L"Text|*.txt|",
                                        L"Text|*.txt",
                                        L"|",
                                        L"||",
                                        L"a",
                                        L"",
                                        L"A|",
                                        L"A||B|",
                                        L"Images|*.png;*.jpg|\x00E9|*.\x00E9||"};

TEST(Fuzz, FilePicker) {
    auto driver = std::make_shared<PickerDriver>();
    ASSERT_TRUE(driver->hook.installed()) << "TavUtil.dll imports GetOpenFileNameW";
    RunDriver({"filepicker", kFilterSeeds, FilterText,
               [driver](const Input& input) { return RunPicker(*driver, input, false); }, false, 4096});
}

TEST(Fuzz, CapiFilePicker) {
    auto driver = std::make_shared<PickerDriver>();
    ASSERT_TRUE(driver->hook.installed()) << "TavUtil.dll imports GetOpenFileNameW";
    RunDriver({"capi-filepicker", kFilterSeeds, FilterText,
               [driver](const Input& input) { return RunPicker(*driver, input, true); }, false, 4096});
}

// ---- event sounds ------------------------------------------------------------------------------------------

struct SoundCall {
    int calls = 0;
    Text name;
    bool nameNull = false;
    HMODULE module = nullptr;
    DWORD flags = 0;
    BOOL answer = FALSE;
    bool passOn = false;  // pass the call on to the system and answer what it answers
};
SoundCall* sound = nullptr;

BOOL WINAPI RecordPlaySound(LPCWSTR name, HMODULE module, DWORD flags);
tavtest::ImportHook* soundHook = nullptr;

BOOL WINAPI RecordPlaySound(LPCWSTR name, HMODULE module, DWORD flags) {
    SoundCall& call = *sound;
    ++call.calls;
    call.nameNull = name == nullptr;
    call.name = name ? name : L"";
    call.module = module;
    call.flags = flags;
    if (call.passOn) {
        // Never a loop: the system would keep it going after the input.
        call.answer = soundHook->original<decltype(&PlaySoundW)>()(name, module, flags & ~static_cast<DWORD>(SND_LOOP));
        soundHook->original<decltype(&PlaySoundW)>()(nullptr, nullptr, 0);
    }
    return call.answer;
}

struct SoundDriver {
    SoundCall call;
    std::unique_ptr<tavtest::ImportHook> hook;
    std::wstring appKey;  // AppEvents\Schemes\Apps\<this program>: the subtree the driver owns
    QuietLog quiet;       // a failed play is logged as a warning

    SoundDriver() {
        sound = &call;
        hook =
            std::make_unique<tavtest::ImportHook>("winmm.dll", "PlaySoundW", reinterpret_cast<void*>(&RecordPlaySound));
        soundHook = hook.get();
        appKey = L"AppEvents\\Schemes\\Apps\\" + std::wstring(cWave::applicationName());
    }
    ~SoundDriver() {
        hook.reset();
        soundHook = nullptr;
        sound = nullptr;
        RegDeleteTreeW(HKEY_CURRENT_USER, appKey.c_str());
        RegDeleteKeyW(HKEY_CURRENT_USER, appKey.c_str());
    }
    SoundDriver(const SoundDriver&) = delete;
    SoundDriver& operator=(const SoundDriver&) = delete;
};

std::string RunSound(SoundDriver& driver, const Input& input, bool capi) {
    Rng rng(input.choices);
    const Text& event = input.text;
    // The scheme key of the event, made below the driver's own subtree; a name with backslashes makes a
    // deeper key there, never one elsewhere.
    const std::wstring keyPath = driver.appKey + L"\\" + event + L"\\.Current";
    bool registered = false;
    RawValue value = RandomRawValue(rng);
    if (rng.OneIn(2)) {  // mostly a string: a path of any text
        const Text path = rng.OneIn(3) ? PathText(rng) : Text(rng.Below(300), L'p') + L".wav";
        value.type = rng.OneIn(8) ? REG_EXPAND_SZ : REG_SZ;
        value.data.assign(reinterpret_cast<const BYTE*>(path.c_str()),
                          reinterpret_cast<const BYTE*>(path.c_str() + path.size() + (rng.OneIn(4) ? 0 : 1)));
    }
    if (!rng.OneIn(6)) {
        HKEY key = nullptr;
        if (RegCreateKeyExW(HKEY_CURRENT_USER, keyPath.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                            nullptr) == ERROR_SUCCESS) {
            // One key in ten has no default value.
            registered = !rng.OneIn(10) && RegSetValueExW(key, nullptr, 0, value.type, value.data.data(),
                                                          static_cast<DWORD>(value.data.size())) == ERROR_SUCCESS;
            RegCloseKey(key);
        }
    }
    const int mode = static_cast<int>(rng.Below(4));  // 3: a number outside the modes, played as asynchronous
    driver.call.answer = rng.OneIn(2) ? TRUE : FALSE;
    driver.call.passOn = rng.OneIn(16);

    // The rule: the default value of the key the path names, its bytes read raw into 260 units of zeros (a
    // longer value is not read), up to its first NUL; nothing is played for an empty text. The value is read back here
    // as the registry resolves the path, which may differ from what was written (an odd path, no value).
    Text expected;
    bool readable = false;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, keyPath.c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS) {
        std::vector<BYTE> data(100000);
        DWORD bytes = static_cast<DWORD>(data.size());
        if (RegQueryValueExW(key, nullptr, nullptr, nullptr, data.data(), &bytes) == ERROR_SUCCESS &&
            bytes <= MAX_PATH * sizeof(wchar_t)) {
            // The bytes land in a buffer of zeros: an odd last byte is a unit of its own.
            readable = true;
            data.resize(bytes + 1, 0);
            expected.assign(reinterpret_cast<const wchar_t*>(data.data()), (bytes + 1) / sizeof(wchar_t));
            expected = expected.substr(0, expected.find(L'\0'));
        }
        RegCloseKey(key);
    }
    const DWORD flags = (SND_NOWAIT | SND_APPLICATION | SND_NODEFAULT) | (mode == 1   ? 0
                                                                          : mode == 2 ? (SND_LOOP | SND_ASYNC)
                                                                                      : SND_ASYNC);

    auto check = [&](const std::string& what, int played) {
        if (!readable || expected.empty()) {
            Expect(driver.call.calls == 0 && played == 0,
                   what + ": played \"" + Narrow(driver.call.name) + "\" (" + Num(played) +
                       ") where nothing is read (a value of type " + Num(value.type) + ", " + Num(value.data.size()) +
                       " bytes, " + (registered ? "written" : "not written") + ")");
            return;
        }
        Expect(driver.call.calls == 1 && !driver.call.nameNull && Same(driver.call.name, expected) &&
                   driver.call.module == nullptr && driver.call.flags == flags,
               what + ": played \"" + Narrow(driver.call.name) + "\" with flags " + Num(driver.call.flags) +
                   ", the value says \"" + Narrow(expected) + "\" with " + Num(flags));
        Expect(played == (driver.call.answer ? 1 : 0), what + ": answered " + Num(played));
    };
    driver.call.calls = 0;
    cWave wave;
    const int played = wave.play(event, static_cast<cWave::PlayModeEnum>(mode)) ? 1 : 0;
    check("cWave::play", played);
    Expect(!wave.isRepeating(), "cWave::play set the repeat flag");
    if (capi) {
        tav_sound c = tav_sound_create();
        const BOOL firstAnswer = driver.call.answer;
        driver.call.calls = 0;
        driver.call.passOn = false;
        const int32_t got = tav_sound_play(c, event.c_str(), mode);
        if (mode <= TAV_SOUND_LOOP) {
            driver.call.answer = firstAnswer;
            check("tav_sound_play", got);
        } else {
            Expect(got == TAV_E_UNKNOWN_ENUM && driver.call.calls == 0, "tav_sound_play(mode 3) gives " + Num(got));
        }
        Expect(tav_sound_play(c, nullptr, 0) == TAV_E_NULL_ARGUMENT &&
                   tav_sound_play(nullptr, L"x", 0) == TAV_E_NULL_HANDLE,
               "null sound or name");
        tav_sound_destroy(c);
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, driver.appKey.c_str());
    return "r" + Num(registered) + " e" + Num(expected.empty()) + " m" + Num(mode) + " p" + Num(played);
}

const std::vector<Text> kEventSeeds = {L"Default", L".Default", L"SystemAsterisk",      L"",
                                       L"a\\b",    L"..\\..",   L"\x00E9v\x00E9nement", L"x y",
                                       L"%TEMP%",  L".Current"};

TEST(Fuzz, Sounds) {
    auto driver = std::make_shared<SoundDriver>();
    ASSERT_TRUE(driver->hook->installed()) << "TavUtil.dll imports PlaySoundW";
    RunDriver({"sounds", kEventSeeds, nullptr, [driver](const Input& input) { return RunSound(*driver, input, false); },
               true, 200});
}

TEST(Fuzz, CapiSounds) {
    auto driver = std::make_shared<SoundDriver>();
    ASSERT_TRUE(driver->hook->installed()) << "TavUtil.dll imports PlaySoundW";
    RunDriver({"capi-sounds", kEventSeeds, nullptr,
               [driver](const Input& input) { return RunSound(*driver, input, true); }, true, 200});
}

}  // namespace
}  // namespace fuzz
