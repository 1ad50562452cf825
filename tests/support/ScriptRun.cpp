#include "ScriptRun.h"

#include <TavUtil.h>

namespace keytest {

namespace {

void ReleaseByHand(const std::set<BYTE>& keys) {
    for (BYTE vk : keys)
        keybd_event(vk, static_cast<BYTE>(MapVirtualKeyW(vk, 0)), KEYEVENTF_KEYUP, 0);
}

}  // namespace

std::string ScriptText(const std::wstring& script) {
    std::string text;
    int size =
        WideCharToMultiByte(CP_UTF8, 0, script.c_str(), static_cast<int>(script.size()), nullptr, 0, nullptr, nullptr);
    text.resize(static_cast<size_t>(size));
    WideCharToMultiByte(CP_UTF8, 0, script.c_str(), static_cast<int>(script.size()), text.data(), size, nullptr,
                        nullptr);
    return text;
}

ScriptOutcome TypeAndCheck(const GeneratedScript& script, RecorderWindow& window) {
    ScriptOutcome outcome;
    auto fail = [&](const std::string& problem) {
        outcome.ok = false;
        outcome.problem += (outcome.problem.empty() ? "" : "; ") + problem;
    };
    auto expect = [&](const std::set<BYTE>& rules, const char* when) {
        const std::set<BYTE> now = KeysDownNow();
        if (now != rules)
            fail(std::string(when) + ": down " + KeyList(now) + ", the rules say " + KeyList(rules));
    };

    KeyModel model;
    window.Clear();
    SendKeys(script.script.c_str());
    model.Play(script.queue);
    const size_t events = script.shortcut ? 4 : model.EventsSent();
    // The window must see every event the rules send, and no more: everything typed has arrived once the
    // marker typed after it has (a count that never comes would otherwise cost the whole wait).
    window.Settle();
    if (window.keys.size() != events)
        fail("the window received " + std::to_string(window.keys.size()) + " key events, the rules send " +
             std::to_string(events));
    expect(model.Down(), "after the run");
    outcome.leftKeys = !model.Down().empty();

    if (model.Held() != 0 || model.HoldMode()) {
        SendKeys_ReleaseAll();
        model.ReleaseAll();
        if (model.HoldMode()) {
            SendKeys(L"]");
            model.EndHold();
        }
        expect(model.Down(), "after SendKeys_ReleaseAll");
    }
    if (model.Down().count(VK_CONTROL)) {  // BREAK: Control stays pressed until someone releases it
        ReleaseByHand({VK_CONTROL});
        model.Release(VK_CONTROL);
        expect(model.Down(), "after releasing Control");
    }
    if (!model.Down().empty()) {
        // A modifier pressed before '[' and released inside hold mode: the release is dropped and the
        // key is not listed, exactly as the rules say. Nothing of the library releases it.
        outcome.beyondRelease = true;
        ReleaseByHand(model.Down());
    }
    const std::set<BYTE> left = KeysDownNow();
    if (!left.empty()) {
        ReleaseByHand(left);
        fail("at the end: down " + KeyList(left));
    }
    window.Settle();  // the releases' messages, before the next script counts its own
    return outcome;
}

}  // namespace keytest
