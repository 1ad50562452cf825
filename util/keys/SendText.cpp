// SendText: literal text as Unicode keyboard events, with Enter for line breaks and Tab for tabs.
#include "keys/SendText.h"

#include "keys/detail/KeysInternal.h"
#include "keys/detail/SendSession.h"

#include <vector>

namespace {

INPUT KeyboardInput(WORD virtualKey, WORD scan, DWORD flags) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.wScan = scan;
    input.ki.dwFlags = flags;
    return input;
}

// A key the target must see as that key (Enter, Tab): a text control turns a Unicode CR or tab into
// nothing or into something else, but every one of them knows the keys.
void AppendKeyPress(std::vector<INPUT>& events, WORD virtualKey) {
    WORD scan = static_cast<WORD>(MapVirtualKeyW(virtualKey, 0));
    events.push_back(KeyboardInput(virtualKey, scan, 0));
    events.push_back(KeyboardInput(virtualKey, scan, KEYEVENTF_KEYUP));
}

// One UTF-16 unit in the scan field; the system delivers it as VK_PACKET and the target sees the unit.
void AppendUnit(std::vector<INPUT>& events, wchar_t unit) {
    events.push_back(KeyboardInput(0, static_cast<WORD>(unit), KEYEVENTF_UNICODE));
    events.push_back(KeyboardInput(0, static_cast<WORD>(unit), KEYEVENTF_UNICODE | KEYEVENTF_KEYUP));
}

// The key events that type `text`, in order.
std::vector<INPUT> TextEvents(const wchar_t* text) {
    std::vector<INPUT> events;
    for (const wchar_t* at = text; *at != L'\0'; ++at) {
        if (*at == L'\r' || *at == L'\n') {
            if (at[0] == L'\r' && at[1] == L'\n')
                ++at;  // CR LF is one line break
            AppendKeyPress(events, VK_RETURN);
        } else if (*at == L'\t') {
            AppendKeyPress(events, VK_TAB);
        } else {
            AppendUnit(events, *at);
        }
    }
    return events;
}

// The key an event stands for, for its hold time: the virtual key, or the unit of a Unicode event.
DWORD EventKey(const INPUT& event) {
    return (event.ki.dwFlags & KEYEVENTF_UNICODE) != 0 ? tav::keys::detail::EventPacer::kUnitKey + event.ki.wScan
                                                       : event.ki.wVk;
}

// Unpaced, all events go to the system in one call: nothing the user types meanwhile lands in the middle
// of the text. Paced (or held), each event goes on its own after the pause.
void SendEvents(std::vector<INPUT>& events, tav::keys::detail::EventPacer& pacer) {
    if (events.empty())
        return;
    if (!pacer.OneByOne()) {
        pacer.BeforeEvent();
        SendInput(static_cast<UINT>(events.size()), events.data(), sizeof(INPUT));
        pacer.AfterEvent();
        return;
    }
    // A key-up the system refused would leave its key down (for a Unicode event, VK_PACKET) for the user and
    // every later program: it is sent again once the text is done. The room is made before the first event.
    std::vector<INPUT> refusedUps;
    refusedUps.reserve(events.size());
    for (INPUT& event : events) {
        const bool keyUp = (event.ki.dwFlags & KEYEVENTF_KEYUP) != 0;
        pacer.BeforeEvent(EventKey(event), keyUp);
        if (SendInput(1, &event, sizeof(INPUT)) == 0 && keyUp)
            refusedUps.push_back(event);
        pacer.AfterEvent(EventKey(event), keyUp);
    }
    if (!refusedUps.empty())
        SendInput(static_cast<UINT>(refusedUps.size()), refusedUps.data(), sizeof(INPUT));
}

}  // namespace

SKERR SendText(const wchar_t* text) { return SendTextPaced(text, 0); }

SKERR SendTextPaced(const wchar_t* text, DWORD delayMs) {
    tav::keys::SendOptions options;
    options.keyDelayMs = delayMs;
    return SendTextEx(text, options);
}

SKERR SendTextEx(const wchar_t* text, const tav::keys::SendOptions& options) {
    tav::keys::detail::CheckSendOptions(options);
    // The same guard as SendKeys: a host that marks a send in progress gets the same answer from both.
    if (SendKeys_InProgress() != 0) {
        MessageBeep(MB_ICONEXCLAMATION);
        return SKERR_BUSY;
    }
    if (text == nullptr)
        return SKERR_NONE;
    std::vector<INPUT> events = TextEvents(text);
    if (events.empty())
        return SKERR_NONE;
    tav::keys::detail::SendSession session(options);
    SendEvents(events, session.Pacer());
    return SKERR_NONE;
}
