// cWave: plays the sound the user has assigned to an application event in the Windows sound scheme
// (HKEY_CURRENT_USER "AppEvents\Schemes\Apps\<application>\<event>\.Current").
#pragma once

#include "../platform/Export.h"
#include "../strings/StdStr.h"

class TAVUTIL_API cWave {
public:
    enum PlayModeEnum {
        PLAY_ASYNC = 0,  // any value other than 1 and 2 plays asynchronously, once
        PLAY_SYNC = 1,   // returns when the sound has ended
        PLAY_LOOP = 2,   // asynchronously, repeated until another sound is played or sounds are stopped
    };

    cWave() = default;
    cWave(const cWave&) = default;
    cWave& operator=(const cWave&) = default;
    // Stops the sound as stopPlay() does.
    virtual ~cWave();

    // Plays the sound registered for `eventName` of this application (the executable's name without
    // folder and extension). Never falls back to a default sound: false when the event has no key, no
    // value, an empty value (no sound registered), or the sound could not be started. The reason goes to the log at
    // WARNING when the sound itself fails.
    bool play(const CStdStr<wchar_t>& eventName, PlayModeEnum mode);
    // Stops the sound when the repeat flag is set, and clears it.
    virtual cWave& stopPlay();
    bool isRepeating() const { return m_repeat; }

    // The application name the sound scheme is looked up under.
    static CStdStr<wchar_t> applicationName();

private:
    // Cleared by play and set by nothing: after a looping play, isRepeating() answers false and
    // stopPlay() and the destructor stop nothing. Hosts stop a loop by playing another sound or by
    // stopping all sounds; that is the class's settled behaviour.
    bool m_repeat = false;
};
