#include "desktop/Wave.h"

#include "desktop/detail/SoundFunctions.h"
#include "log/VelmLog.h"
#include "platform/Handles.h"

#include <windows.h>
#include <mmsystem.h>

namespace {

// SND_NOWAIT | SND_APPLICATION | SND_NODEFAULT always: a missing sound stays silent, never the default
// beep, and a busy device is not waited for.
DWORD SoundFlags(cWave::PlayModeEnum mode) {
    const DWORD always = SND_NOWAIT | SND_APPLICATION | SND_NODEFAULT;
    switch (mode) {
    case cWave::PLAY_SYNC: return always;
    case cWave::PLAY_LOOP: return always | SND_LOOP | SND_ASYNC;
    default: return always | SND_ASYNC;
    }
}

CStdStr<wchar_t> SchemeKeyPath(const CStdStr<wchar_t>& eventName) {
    CStdStr<wchar_t> path;
    path.Format(L"AppEvents\\Schemes\\Apps\\%s\\%s\\.Current", cWave::applicationName().c_str(), eventName.c_str());
    return path;
}

// The key's default value as text, read into the scheme's file-name buffer of 260 units; false when it
// is missing or longer.
bool ReadSoundText(HKEY key, CStdStr<wchar_t>& text) {
    wchar_t buffer[MAX_PATH + 1] = {};
    DWORD bytes = MAX_PATH * sizeof(wchar_t);
    if (RegQueryValueExW(key, nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer), &bytes) != ERROR_SUCCESS)
        return false;
    text = buffer;
    return true;
}

}  // namespace

cWave::~cWave() { stopPlay(); }

CStdStr<wchar_t> cWave::applicationName() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    CStdStr<wchar_t> name = path;
    size_t slash = name.find_last_of(L"\\/");
    if (slash != CStdStr<wchar_t>::npos)
        name.erase(0, slash + 1);
    size_t dot = name.rfind(L'.');
    if (dot != CStdStr<wchar_t>::npos)
        name.erase(dot);
    return name;
}

bool cWave::play(const CStdStr<wchar_t>& eventName, PlayModeEnum mode) {
    m_repeat = false;
    const DWORD flags = SoundFlags(mode);
    const CStdStr<wchar_t> keyPath = SchemeKeyPath(eventName);

    tav::UniqueKey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, keyPath.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS)
        return false;
    CStdStr<wchar_t> soundText;
    if (!ReadSoundText(key.get(), soundText))
        return false;
    // An empty value is the scheme's "no sound" for the event: the answer is false without asking the
    // sound system, which accepts an asynchronous play before it looks at the name.
    if (soundText.empty())
        return false;

    SetLastError(0);
    const bool played = tav::desktop::detail::PlaySoundW(soundText.c_str(), nullptr, flags) != FALSE;
    if (!played) {
        CStdStr<wchar_t> diagnostic;
        diagnostic.Format(L"cWave-Error opening WAVE file from Registry: %s\nFile: %s", keyPath.c_str(),
                          soundText.c_str());
        VELM_LOG(WARNING_LEVEL) << diagnostic;
    }
    return played;
}

cWave& cWave::stopPlay() {
    if (m_repeat) {
        tav::desktop::detail::PlaySoundW(nullptr, nullptr, 0);
        m_repeat = false;
    }
    return *this;
}
