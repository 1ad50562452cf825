// SendKeys, the run behind it, and the escaping of literal text.
#include "keys/KeyStages.h"
#include "keys/SendKeys.h"

#include "keys/PressKeyHelper.h"
#include "keys/detail/KeysInternal.h"
#include "keys/detail/SendSession.h"

#include <cwchar>
#include <utility>

namespace {

// The clipboard shortcuts go through the press helper, which paces its keys for the target; a paced call
// adds its own delay before each key after the first.
bool PressShortcut(const wchar_t* script, const tav::keys::SendOptions& options) {
    WORD letter = 0;
    if (wcscmp(script, L"^C") == 0 || wcscmp(script, L"^c") == 0)
        letter = 'C';
    else if (wcscmp(script, L"^V") == 0 || wcscmp(script, L"^v") == 0)
        letter = 'V';
    else if (wcscmp(script, L"^X") == 0 || wcscmp(script, L"^x") == 0)
        letter = 'X';
    if (letter == 0)
        return false;
    PressKeyHelper helper;
    tav::keys::detail::SendSession session(options);
    tav::keys::detail::EventPacer& pacer = session.Pacer();
    const struct {
        WORD key;
        DWORD flags;
    } presses[] = {{VK_CONTROL, 0}, {letter, 0}, {letter, KEYEVENTF_KEYUP}, {VK_CONTROL, KEYEVENTF_KEYUP}};
    for (const auto& press : presses) {
        const bool keyUp = press.flags == KEYEVENTF_KEYUP;
        pacer.BeforeEvent(press.key, keyUp);
        helper.Press(press.key, press.flags);
        pacer.AfterEvent(press.key, keyUp);
    }
    return true;
}

}  // namespace

namespace tav::keys {

namespace {

// Command words, then parse, then play: the run behind both RunKeyScript and CarryOutKeyScript.
void RunScript(const wchar_t* script, const SendOptions& options, KeyRunReport& report) {
    if (script == nullptr)
        script = L"";
    const SKERR commands = detail::CarryOutCommandWords(script);
    if (commands == SKERR_COMMANDDONE) {
        report.commandWords = true;
        return;
    }
    if (commands != SKERR_NONE) {
        report.result = commands;
        return;
    }
    if (SKERR e = ParseKeyScript(script)) {
        report.result = e;
        report.errorAt = static_cast<size_t>(detail::State().itemStart - script);
        return;
    }
    detail::State().inProgress = 0;
    detail::SendSession session(options);
    detail::PlayQueue(session.Pacer());
    report.played = true;
}

}  // namespace

SKERR RunKeyScript(const wchar_t* script) { return RunKeyScript(script, 0); }

SKERR RunKeyScript(const wchar_t* script, DWORD perEventDelayMs) {
    KeyRunReport report;
    SendOptions options;
    options.keyDelayMs = perEventDelayMs;
    RunScript(script, options, report);
    return report.result;
}

KeyRunReport CarryOutKeyScript(const wchar_t* script, DWORD perEventDelayMs) {
    SendOptions options;
    options.keyDelayMs = perEventDelayMs;
    return CarryOutKeyScript(script, options);
}

KeyRunReport CarryOutKeyScript(const wchar_t* script, const SendOptions& options) {
    detail::CheckSendOptions(options);
    KeyRunReport report;
    if (SendKeys_InProgress() != 0) {
        MessageBeep(MB_ICONEXCLAMATION);
        report.result = SKERR_BUSY;
        return report;
    }
    if (script != nullptr && PressShortcut(script, options)) {
        report.shortcut = true;
        return report;
    }
    RunScript(script, options, report);
    return report;
}

}  // namespace tav::keys

SKERR SendKeys(const wchar_t* script) { return SendKeysPaced(script, 0); }

SKERR SendKeysPaced(const wchar_t* script, DWORD delayMs) {
    tav::keys::SendOptions options;
    options.keyDelayMs = delayMs;
    return SendKeysEx(script, options);
}

SKERR SendKeysEx(const wchar_t* script, const tav::keys::SendOptions& options) {
    // The run's result is not passed on, on purpose: hosts treat every accepted script as sent, and a
    // script with an error simply types nothing. Only a refused run (another is in progress) says so.
    const tav::keys::KeyRunReport report = tav::keys::CarryOutKeyScript(script, options);
    return report.result == SKERR_BUSY ? SKERR_BUSY : SKERR_NONE;
}

void SendKeysRemoveSpecialChars(CString& text) {
    // Sized once: every special character takes two more units. Text of any length is escaped in one pass
    // over it and one over the result, with no reallocation (make bench's growth row).
    const int length = text.GetLength();
    int specials = 0;
    for (int i = 0; i < length; ++i)
        specials += tav::keys::detail::IsScriptSpecial(text.GetAt(i)) ? 1 : 0;
    CString escaped;
    wchar_t* out = escaped.GetBufferSetLength(length + 2 * specials);
    for (int i = 0; i < length; ++i) {
        const wchar_t ch = text.GetAt(i);
        if (tav::keys::detail::IsScriptSpecial(ch)) {
            *out++ = L'{';
            *out++ = ch;
            *out++ = L'}';
        } else {
            *out++ = ch;
        }
    }
    text = std::move(escaped);
}
