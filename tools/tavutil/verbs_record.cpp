// The record verb: what the user types, as a keystroke script (keys/KeyRecorder.h).
#include "Cli.h"
#include "Json.h"

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
// until-key went down. Prints the script (or, with --json, the script and the count of what it leaves out);
// what the script leaves out is told on standard error.
int RunRecord(const cli::Call& call) {
    cli::RequireCount(call.args, 0, 0);
    const WORD untilKey = call.Has(L"--until-key") ? UntilKey(call.Value(L"--until-key")) : 0;
    const int seconds = call.Number(L"--seconds", untilKey != 0 ? 3600 : 10, 1, 86400);
    const bool json = call.Has(L"--json");
    tav::keys::KeyRecorder recorder(call.Has(L"--ignore-injected") ? tav::keys::KeyRecorder::kIgnoreInjected : 0);
    if (!recorder.IsRecording())
        return cli::Fail(L"the keyboard hook could not be set (" +
                         cli::ResultText(TAV_RESULT_WIN32, static_cast<int32_t>(recorder.HookError())) + L")");
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
    if (json) {
        cli::Json record;
        record["script"] = cli::Narrow(recorded.script);
        record["skipped"] = recorded.skipped;
        cli::OutJson(record);
    } else {
        cli::OutLine(recorded.script);
    }
    if (recorded.skipped > 0)
        cli::Diagnose(L"left out " + std::to_wstring(recorded.skipped) +
                      (recorded.skipped == 1 ? L" key press" : L" key presses") +
                      L" that the script language cannot express");
    return cli::kDone;
}

cli::VerbRegistration record{
    {L"record", L"record [--seconds N] [--until-key NAME] [--ignore-injected] [--json]",
     L"print what is typed meanwhile as a keystroke script", &RunRecord,
     L"--seconds=N --until-key=NAME --ignore-injected --json",
     L"Records the keys typed anywhere on the desktop for N seconds (10; 3600 with --until-key), or until\n"
     L"the key NAME (ESC, F12, ... or a single character) is pressed, and prints them as a keystroke script\n"
     L"that types the same. --ignore-injected leaves out keys that programs sent. Keys the script language\n"
     L"cannot express are left out and counted on standard error.\n\nexamples:\n"
     L"  tavutil record --seconds 5\n  tavutil record --until-key ESC --json",
     L"the keyboard hook could not be set"}};

}  // namespace
