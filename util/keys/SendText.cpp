// SendText: literal text as Unicode keyboard events, with Enter for line breaks and Tab for tabs.
#include "keys/SendText.h"

#include "keys/detail/KeysInternal.h"

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

// Unpaced, all events go to the system in one call: nothing the user types meanwhile lands in the middle
// of the text. Paced, each event goes on its own after the pause.
void SendEvents(std::vector<INPUT>& events, DWORD delayMs) {
    if (events.empty())
        return;
    if (delayMs == 0) {
        SendInput(static_cast<UINT>(events.size()), events.data(), sizeof(INPUT));
        return;
    }
    tav::keys::detail::EventPacer pacer(delayMs);
    for (INPUT& event : events) {
        pacer.BeforeEvent();
        SendInput(1, &event, sizeof(INPUT));
    }
}

}  // namespace

SKERR SendText(const wchar_t* text) { return SendTextPaced(text, 0); }

SKERR SendTextPaced(const wchar_t* text, DWORD delayMs) {
    // The same guard as SendKeys: a host that marks a send in progress gets the same answer from both.
    if (SendKeys_InProgress() != 0) {
        MessageBeep(MB_ICONEXCLAMATION);
        return SKERR_BUSY;
    }
    if (text == nullptr)
        return SKERR_NONE;
    std::vector<INPUT> events = TextEvents(text);
    SendEvents(events, delayMs);
    return SKERR_NONE;
}
