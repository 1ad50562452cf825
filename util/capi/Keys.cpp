// c/keys.h: Keystrokes: the typing calls and the script tools.
#include "capi/c/keys.h"

#include "capi/detail/Boundary.h"
#include "keys/KeyStages.h"
#include "keys/KeyState.h"
#include "keys/ScriptCheck.h"
#include "keys/SendKeys.h"
#include "keys/SendText.h"
#include "platform/CString.h"

#include <cstdint>
#include <cstring>
#include <vector>

using namespace tav::capi::detail;

extern "C" {

int32_t tav_send_keys(const wchar_t* script) {
    return OnArgs({script}, [&] { return static_cast<int32_t>(SendKeys(script)); });
}

int32_t tav_send_text(const wchar_t* text) {
    return OnArgs({text}, [&] { return static_cast<int32_t>(SendText(text)); });
}

int32_t tav_send_keys_paced(const wchar_t* script, uint32_t delay_ms) {
    return OnArgs({script}, [&] { return static_cast<int32_t>(SendKeysPaced(script, delay_ms)); });
}

int32_t tav_send_text_paced(const wchar_t* text, uint32_t delay_ms) {
    return OnArgs({text}, [&] { return static_cast<int32_t>(SendTextPaced(text, delay_ms)); });
}

int32_t tav_send_keys_release_all(void) {
    return Guarded([]() -> int32_t {
        SendKeys_ReleaseAll();
        return TAV_OK;
    });
}

int32_t tav_send_keys_set_in_progress(uintptr_t marker) {
    return Guarded([&]() -> int32_t {
        SendKeys_SetInProgress(marker);
        return TAV_OK;
    });
}

int32_t tav_send_keys_clear_in_progress(void) {
    return Guarded([]() -> int32_t {
        SendKeys_ClearInProgress();
        return TAV_OK;
    });
}

uintptr_t tav_send_keys_in_progress(void) { return SendKeys_InProgress(); }

int32_t tav_keys_run(const wchar_t* script) {
    return OnArgs({script}, [&] { return static_cast<int32_t>(tav::keys::CarryOutKeyScript(script).result); });
}

int32_t tav_keys_run_paced(const wchar_t* script, uint32_t delay_ms) {
    return OnArgs({script},
                  [&] { return static_cast<int32_t>(tav::keys::CarryOutKeyScript(script, delay_ms).result); });
}

int32_t tav_keys_escape(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({text, Out(buffer, capacity)}, [&]() -> int32_t {
        CString escaped(text);
        SendKeysRemoveSpecialChars(escaped);
        return CopyText(escaped.GetString(), buffer, capacity, needed);
    });
}

int32_t tav_keys_parse(const wchar_t* script, uint16_t* entries, size_t capacity, size_t* needed) {
    return OnArgs({script, Out(entries, capacity)}, [&]() -> int32_t {
        const SKERR result = tav::keys::ParseKeyScript(script);
        const tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
        std::vector<uint16_t> copy(static_cast<size_t>(queue.Count()));
        for (int i = 0; i < queue.Count(); ++i)
            copy[static_cast<size_t>(i)] = queue.At(i);
        // Counted in entries, never in bytes: a capacity near SIZE_MAX would overflow as a byte count.
        if (needed != nullptr)
            *needed = copy.size();
        if (copy.size() > capacity)
            return TAV_E_BUFFER_TOO_SMALL;
        if (!copy.empty())
            std::memcpy(entries, copy.data(), copy.size() * sizeof(uint16_t));
        return static_cast<int32_t>(result);
    });
}

int32_t tav_keys_check(const wchar_t* script, int32_t* offset, wchar_t* message, size_t capacity, size_t* needed) {
    return OnArgs({script, Out(message, capacity)}, [&]() -> int32_t {
        const tav::keys::ScriptCheck check = tav::keys::CheckKeyScript(script);
        if (offset != nullptr)
            *offset = static_cast<int32_t>(check.offset > INT32_MAX ? INT32_MAX : check.offset);
        return WithText(static_cast<int32_t>(check.result), CopyText(check.message, message, capacity, needed));
    });
}

int32_t tav_keys_lookup_name(const wchar_t* name) {
    return OnArgs({name}, [&] { return static_cast<int32_t>(tav::keys::LookupKeyName(name)); });
}

}  // extern "C"
