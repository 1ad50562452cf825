// The C interface of keystrokes and of the desktop helpers: clipboard, foreground, windows, waits, sounds
// and pickers.
#include "capi/TavUtilC.h"

#include "capi/detail/Boundary.h"
#include "desktop/BrowseDialogs.h"
#include "desktop/Clipboard.h"
#include "desktop/ForegroundAttentionGrabber.h"
#include "desktop/Wait.h"
#include "desktop/Wave.h"
#include "desktop/WindowsHelper.h"
#include "keys/KeyState.h"
#include "keys/KeyStages.h"
#include "keys/SendKeys.h"
#include "keys/SendText.h"
#include "platform/CString.h"
#include "platform/CWnd.h"
#include "process/ProcessFinder.h"

#include <cstring>
#include <vector>

using namespace tav::capi;

struct tav_grabber_t {
    ForegroundAttentionGrabber grabber;
};
struct tav_wait_t {
    CWait wait;
};
struct tav_sound_t {
    cWave wave;
};

namespace {

HWND Window(tav_hwnd window) { return static_cast<HWND>(window); }

}  // namespace

extern "C" {

int32_t tav_send_keys(const wchar_t* script) {
    if (StrayText({script}))
        return kNullArgument;
    return Guarded([&]() -> int32_t { return script ? static_cast<int32_t>(SendKeys(script)) : kNullArgument; });
}

int32_t tav_keys_run(const wchar_t* script) {
    if (StrayText({script}))
        return kNullArgument;
    return Guarded(
        [&]() -> int32_t { return script ? static_cast<int32_t>(tav::keys::RunKeyScript(script)) : kNullArgument; });
}

int32_t tav_send_text(const wchar_t* text) {
    if (StrayText({text}))
        return kNullArgument;
    return Guarded([&]() -> int32_t { return text ? static_cast<int32_t>(SendText(text)) : kNullArgument; });
}

int32_t tav_send_keys_paced(const wchar_t* script, uint32_t delay_ms) {
    if (StrayText({script}))
        return kNullArgument;
    return Guarded(
        [&]() -> int32_t { return script ? static_cast<int32_t>(SendKeysPaced(script, delay_ms)) : kNullArgument; });
}

int32_t tav_send_text_paced(const wchar_t* text, uint32_t delay_ms) {
    if (StrayText({text}))
        return kNullArgument;
    return Guarded(
        [&]() -> int32_t { return text ? static_cast<int32_t>(SendTextPaced(text, delay_ms)) : kNullArgument; });
}

int32_t tav_keys_run_paced(const wchar_t* script, uint32_t delay_ms) {
    if (StrayText({script}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        return script ? static_cast<int32_t>(tav::keys::RunKeyScript(script, delay_ms)) : kNullArgument;
    });
}

int32_t tav_send_keys_escape(const wchar_t* text, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (StrayText({text}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (text == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CString escaped(text);
        SendKeysRemoveSpecialChars(escaped);
        return CopyText(escaped.GetString(), buffer, capacity, needed);
    });
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

int32_t tav_keys_parse(const wchar_t* script, uint16_t* entries, size_t capacity, size_t* needed) {
    if (StrayText({script}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (script == nullptr || BadBuffer(entries, capacity))
            return TAV_E_NULL_ARGUMENT;
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

int32_t tav_keys_lookup_name(const wchar_t* name) {
    if (StrayText({name}))
        return kNullArgument;
    return Guarded(
        [&]() -> int32_t { return name ? static_cast<int32_t>(tav::keys::LookupKeyName(name)) : kNullArgument; });
}

int32_t tav_clipboard_get_text(wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        ClassicClipboard clipboard(true, nullptr);
        if (!clipboard.isOpen())
            return 0;
        return WithText(1, CopyText(clipboard.getText(), buffer, capacity, needed));
    });
}

int32_t tav_clipboard_set_text(const wchar_t* text) {
    if (StrayText({text}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (text == nullptr)
            return TAV_E_NULL_ARGUMENT;
        ClassicClipboard clipboard(true, nullptr);
        return clipboard.isOpen() && clipboard.setText(text) ? 1 : 0;
    });
}

tav_grabber tav_foreground_grabber_begin(void) {
    return GuardedHandle([]() -> tav_grabber { return new tav_grabber_t; });
}

int32_t tav_foreground_grabber_is_attached(tav_grabber grabber) {
    return grabber ? static_cast<int32_t>(grabber->grabber.IsAttached()) : kNullHandle;
}

void tav_foreground_grabber_end(tav_grabber grabber) { delete grabber; }

tav_hwnd tav_window_focus_window(tav_hwnd window) {
    return GuardedHandle([&]() -> tav_hwnd { return cWindowsHelper::GetFocusWindow(Window(window)); });
}

tav_hwnd tav_window_child_by_class(tav_hwnd parent, const wchar_t* class_name) {
    return GuardedHandle([&]() -> tav_hwnd {
        if (class_name == nullptr || StrayText({class_name}))
            return nullptr;
        return cWindowsHelper().GetChildWindow(Window(parent), class_name);
    });
}

int32_t tav_window_handle_to_text(tav_hwnd window, wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        return CopyText(cWindowsHelper::HandleToString(Window(window)), buffer, capacity, needed);
    });
}

tav_hwnd tav_wait_foreground_window(void) {
    return GuardedHandle([]() -> tav_hwnd { return CProcessFinder::WaitForegroundWindow(); });
}

tav_wait tav_wait_create(void) {
    return GuardedHandle([]() -> tav_wait { return new tav_wait_t; });
}

int32_t tav_wait_wait(tav_wait wait, uint32_t timeout_ms, uint32_t step_ms, int32_t stop_on_command) {
    return Guarded([&]() -> int32_t {
        if (wait == nullptr)
            return TAV_E_NULL_HANDLE;
        return wait->wait.Wait(timeout_ms, step_ms, Flag(stop_on_command));
    });
}

int32_t tav_wait_abort(tav_wait wait) { return wait ? static_cast<int32_t>(wait->wait.Abort()) : kNullHandle; }

int32_t tav_wait_init(tav_wait wait) {
    if (wait == nullptr)
        return TAV_E_NULL_HANDLE;
    wait->wait.Init();
    return TAV_OK;
}

int32_t tav_wait_status(tav_wait wait) { return wait ? static_cast<int32_t>(wait->wait.GetStatus()) : kNullHandle; }

void tav_wait_destroy(tav_wait wait) { delete wait; }

tav_sound tav_sound_create(void) {
    return GuardedHandle([]() -> tav_sound { return new tav_sound_t; });
}

int32_t tav_sound_play(tav_sound sound, const wchar_t* event_name, int32_t mode) {
    if (StrayText({event_name}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (sound == nullptr)
            return TAV_E_NULL_HANDLE;
        if (mode < TAV_SOUND_ASYNC || mode > TAV_SOUND_LOOP)
            return TAV_E_UNKNOWN_ENUM;
        if (event_name == nullptr)
            return TAV_E_NULL_ARGUMENT;
        return sound->wave.play(event_name, static_cast<cWave::PlayModeEnum>(mode)) ? 1 : 0;
    });
}

int32_t tav_sound_stop(tav_sound sound) {
    return Guarded([&]() -> int32_t {
        if (sound == nullptr)
            return TAV_E_NULL_HANDLE;
        sound->wave.stopPlay();
        return TAV_OK;
    });
}

int32_t tav_sound_is_repeating(tav_sound sound) {
    return sound ? static_cast<int32_t>(sound->wave.isRepeating()) : kNullHandle;
}

void tav_sound_destroy(tav_sound sound) { delete sound; }

int32_t tav_sound_application_name(wchar_t* buffer, size_t capacity, size_t* needed) {
    return Guarded([&]() -> int32_t {
        if (BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        return CopyText(cWave::applicationName(), buffer, capacity, needed);
    });
}

int32_t tav_browse_files(const wchar_t* filter, const wchar_t* initial_dir, const wchar_t* title, wchar_t* buffer,
                         size_t capacity, size_t* needed) {
    if (StrayText({filter, initial_dir, title}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (filter == nullptr || initial_dir == nullptr || title == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> file;
        const bool chosen = BrowseFiles(filter, file, initial_dir, title);
        return WithText(chosen ? 1 : 0, CopyText(file, buffer, capacity, needed));
    });
}

int32_t tav_browse_for_folder(const wchar_t* title, const wchar_t* folder, tav_hwnd parent, wchar_t* buffer,
                              size_t capacity, size_t* needed) {
    if (StrayText({title, folder}))
        return kNullArgument;
    return Guarded([&]() -> int32_t {
        if (title == nullptr || folder == nullptr || BadBuffer(buffer, capacity))
            return TAV_E_NULL_ARGUMENT;
        CStdStr<wchar_t> chosenFolder(folder);
        CWnd owner(Window(parent));
        const bool chosen = BrowseForFolder(title, chosenFolder, parent ? &owner : nullptr);
        return WithText(chosen ? 1 : 0, CopyText(chosenFolder, buffer, capacity, needed));
    });
}

}  // extern "C"
