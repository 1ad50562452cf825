// The record verb: what the user types, as a keystroke script (keys/KeyRecorder.h).
#include "Cli.h"

#include <TavUtil.h>

#include <algorithm>
#include <vector>

namespace {

// The virtual key of --until-key's NAME: a key name of the script language, or a single character's key.
WORD UntilKey(const std::wstring& name) {
    if (const WORD code = tav::keys::LookupKeyName(name.c_str()); code != 0 && code != 0xFFFF)
        return code;
    if (name.size() == 1 && VkKeyScanW(name[0]) != -1)
        return LOBYTE(VkKeyScanW(name[0]));
    throw cli::UsageError("--until-key wants a key name (ESC, F12, ...) or a single character");
}

// The events before the first press of `key` (all of them when it was not pressed); whether it was.
bool CutAtKey(const std::vector<tav::keys::RecordedKey>& keys, WORD key, std::vector<tav::keys::RecordedKey>& before) {
    for (const tav::keys::RecordedKey& event : keys) {
        if (event.vk == key && !event.up)
            return true;
        before.push_back(event);
    }
    return false;
}

// Records on this thread, pumping its messages (the hook is called from them), until the time is up or the
// until-key went down. Prints the script; what the script leaves out is told on standard error.
int RunRecord(const cli::Args& arguments) {
    cli::Args args = arguments;
    const bool ignoreInjected = cli::TakeFlag(args, L"--ignore-injected");
    int seconds = -1;
    WORD untilKey = 0;
    while (args.size() >= 2 && (args[0] == L"--seconds" || args[0] == L"--until-key")) {
        if (args[0] == L"--seconds")
            seconds = cli::ParseInt(args[1], "--seconds");
        else
            untilKey = UntilKey(args[1]);
        args.erase(args.begin(), args.begin() + 2);
    }
    cli::RequireCount(args, 0, 0);
    if (seconds < 0)
        seconds = untilKey != 0 ? 3600 : 10;
    tav::keys::KeyRecorder recorder(ignoreInjected ? tav::keys::KeyRecorder::kIgnoreInjected : 0);
    if (!recorder.IsRecording()) {
        cli::Err(L"tavutil: the keyboard hook could not be set (" +
                 cli::ResultText(TAV_RESULT_WIN32, static_cast<int32_t>(recorder.HookError())) + L")\n");
        return 1;
    }
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(seconds) * 1000;
    std::vector<tav::keys::RecordedKey> keys;
    for (;;) {
        keys.clear();
        if (CutAtKey(recorder.Keys(), untilKey, keys) && untilKey != 0)
            break;
        const ULONGLONG now = GetTickCount64();
        if (now >= end)
            break;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(std::min<ULONGLONG>(end - now, 100)),
                                  QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    const tav::keys::RecordedScript recorded = tav::keys::ScriptFromKeys(keys, recorder.HeldAtStart());
    cli::OutLine(recorded.script);
    if (recorded.skipped > 0)
        cli::Err(L"left out: " + std::to_wstring(recorded.skipped) +
                 L" key presses the script language cannot express\n");
    return 0;
}

cli::VerbRegistration record{{L"record", L"record [--seconds N] [--until-key NAME] [--ignore-injected]",
                              L"print what is typed meanwhile as a keystroke script", &RunRecord}};

}  // namespace
