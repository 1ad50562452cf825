// Clipboard, abortable waits, event sounds and the foreground grabber.
#include "Areas.h"

#include "KeySink.h"
#include "RawRegistry.h"
#include "RunningProgram.h"
#include "TestSupport.h"

#include <TavUtil.h>

#include <windows.h>

#include <stdexcept>

namespace soak {

namespace {

void SoakClipboard(Runner& runner) {
    runner.Check("ClassicClipboard open + close", [] {
        ClassicClipboard clipboard(false, nullptr);
        clipboard.open(nullptr);
        clipboard.close();
    });
    runner.Check("ClassicClipboard opening constructor + destructor", [] { ClassicClipboard clipboard; });
    runner.Check("ClassicClipboard setText", [] {
        ClassicClipboard clipboard;
        clipboard.setText(L"soak text");
    });
    runner.Check("ClassicClipboard getText", [] {
        ClassicClipboard clipboard;
        clipboard.getText(CF_UNICODETEXT);
    });
    runner.Check("ClassicClipboard empty + isFormatAvailable", [] {
        ClassicClipboard clipboard;
        clipboard.empty();
        Clipboard::isFormatAvailable(CF_UNICODETEXT);
    });
}

void SoakWaits(Runner& runner) {
    runner.Check("CWait Wait (times out) + Init", [] {
        CWait wait;
        wait.Wait(0, 0, false);
        wait.Init();
    });
    runner.Check("CWait Abort + Wait", [] {
        CWait wait;
        wait.Abort();
        wait.Wait(1000, 10, true);
    });
}

void SoakSounds(Runner& runner) {
    tavtest::TempDir folder(L"tavsoak");
    const std::wstring wave = folder / L"silence.wav";
    tavtest::WriteFileBytes(wave, tavtest::SilentWave(400));
    const std::wstring appKey = L"AppEvents\\Schemes\\Apps\\" + cWave::applicationName();
    regtest::RawSet(HKEY_CURRENT_USER, appKey + L"\\SoakEvent\\.Current", nullptr, REG_SZ,
                    regtest::TextBytes(wave + L'\0'));

    // The platform's sound worker (a thread with a window) comes with a sound and ends some seconds after
    // the last: right before each reading a sound played by the platform directly (synchronously, which also
    // ends an asynchronous one still going) starts it, so that both readings see it.
    const Platform kSoundRest{[wave] { PlaySoundW(wave.c_str(), nullptr, SND_FILENAME | SND_SYNC | SND_NODEFAULT); },
                              false};
    // Without a sound device every play fails and logs a warning: the records are made, not printed.
    FILE* const logStream = OutputToFILE::Stream();
    OutputToFILE::Stream() = nullptr;
    runner.Check(
        "cWave play synchronous", [] { cWave().play(L"SoakEvent", cWave::PLAY_SYNC); }, {}, nullptr, kSoundRest);
    runner.Check(
        "cWave play asynchronous + stop by caller",
        [] {
            cWave().play(L"SoakEvent", cWave::PLAY_ASYNC);
            PlaySoundW(nullptr, nullptr, 0);
        },
        {}, nullptr, kSoundRest);
    // stopPlay stops nothing after a looping play (the repeat flag is never set): the caller stops the loop.
    runner.Check(
        "cWave play looping + stopPlay + stop by caller",
        [] {
            cWave sound;
            sound.play(L"SoakEvent", cWave::PLAY_LOOP);
            sound.stopPlay();
            PlaySoundW(nullptr, nullptr, 0);
        },
        {}, nullptr, kSoundRest);
    runner.Check("cWave play unregistered event", [] { cWave().play(L"SoakNoSuchEvent", cWave::PLAY_SYNC); });
    OutputToFILE::Stream() = logStream;
    RegDeleteTreeW(HKEY_CURRENT_USER, appKey.c_str());
}

void SoakForegroundGrabber(Runner& runner) {
    {
        tavtest::TestWindow sink = KeySink();
        if (sink.BringToFront())
            runner.Check("ForegroundAttentionGrabber (own window in front)", [] { ForegroundAttentionGrabber grab; });
        else
            runner.Fail("ForegroundAttentionGrabber (own window in front)",
                        "the soak's window did not come to the front");
    }
    tavtest::RunningProgram other;
    HWND window = nullptr;
    if (other.Start(L"\"" + tavtest::SelfPath() + L"\" " + kForegroundOption))
        window = other.WaitForWindow(L"TavSoakKeySink");
    for (DWORD start = GetTickCount(); window && GetForegroundWindow() != window && GetTickCount() - start < 5000;)
        Sleep(20);
    if (!window || GetForegroundWindow() != window) {
        runner.Fail("ForegroundAttentionGrabber (other process in front)",
                    "the second process's window is not in front");
        return;
    }
    runner.Check("ForegroundAttentionGrabber (other process in front)", [] {
        ForegroundAttentionGrabber grab;
        if (!grab.IsAttached())
            throw std::runtime_error("the grabber did not attach to the foreground thread");
    });
}

}  // namespace

void SoakDesktop(Runner& runner) {
    SoakClipboard(runner);
    SoakWaits(runner);
    SoakSounds(runner);
    SoakForegroundGrabber(runner);
}

}  // namespace soak
