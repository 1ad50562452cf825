// Typing while the user holds modifiers: a person's Ctrl, Alt, Shift and Windows keys (and pairs) held down
// through the X server (xdotool), for every combination of the two flags, while the user keeps holding, lets
// go during typing, or lets go before. Each case checks what the Edit received, the key events a low-level
// hook saw, and which modifiers are down afterwards.
#include "HookLog.h"
#include "KeyTestWindows.h"

#include <PhysicalKeyboard.h>
#include <TavUtil.h>
#include <TestSupport.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using keytest::HookLog;
using tav::keys::SendOptions;
using tavtest::PhysicalKey;

class KeysHeldModifiers : public keytest::KeysTest {};

const std::vector<std::vector<PhysicalKey>> kHeldSets = {{tavtest::kCtrl},
                                                         {tavtest::kAlt},
                                                         {tavtest::kShift},
                                                         {tavtest::kSuper},
                                                         {tavtest::kCtrl, tavtest::kAlt},
                                                         {tavtest::kCtrl, tavtest::kShift},
                                                         {tavtest::kShift, tavtest::kSuper}};

const DWORD kFlagSets[] = {0, tav::keys::kSendWaitForRelease, tav::keys::kSendReleaseModifiers,
                           tav::keys::kSendWaitForRelease | tav::keys::kSendReleaseModifiers};

std::string Name(const std::vector<PhysicalKey>& keys, DWORD flags) {
    std::string name;
    for (const PhysicalKey& key : keys)
        name += std::string(name.empty() ? "" : "+") + key.name;
    name += (flags & tav::keys::kSendWaitForRelease) ? ", wait" : "";
    name += (flags & tav::keys::kSendReleaseModifiers) ? ", release" : "";
    return name + (flags == 0 ? ", no flags" : "");
}

bool Releases(DWORD flags) { return (flags & tav::keys::kSendReleaseModifiers) != 0; }

// What the log shows of one call.
struct Seen {
    int firstTyped = -1, lastTyped = -1;  // the injected keys that are not modifiers (the script's)
    std::vector<HookLog::Event> events;

    explicit Seen(const HookLog& log) : events(log.events) {
        for (int i = 0; i < static_cast<int>(events.size()); ++i) {
            const HookLog::Event& e = events[static_cast<size_t>(i)];
            if (e.injected && !HookLog::IsModifier(e.vk) && e.vk != VK_F24) {
                firstTyped = firstTyped < 0 ? i : firstTyped;
                lastTyped = i;
            }
        }
    }
    // The index of the first event of `vk` (injected or the user's) in [from, to), or -1.
    int Find(DWORD vk, bool up, bool injected, int from, int to) const {
        for (int i = from < 0 ? 0 : from; i < to && i < static_cast<int>(events.size()); ++i) {
            const HookLog::Event& e = events[static_cast<size_t>(i)];
            if (e.vk == vk && e.up == up && e.injected == injected)
                return i;
        }
        return -1;
    }
    int InjectedModifierEvents() const {
        int count = 0;
        for (const HookLog::Event& e : events)
            count += e.injected && HookLog::IsModifier(e.vk) ? 1 : 0;
        return count;
    }
};

// One case: the keys held, typing with `flags`, the text the Edit shows and the hook's events.
class Case {
public:
    Case(keytest::EditWindow& edit, HookLog& log, const std::vector<PhysicalKey>& keys)
        : edit_(edit), log_(log), keys_(keys), keyboard_(edit.window()) {
        EXPECT_TRUE(keyboard_.Ready()) << "the keys of xdotool do not reach Wine";
        for (const PhysicalKey& key : keys_)
            EXPECT_TRUE(keyboard_.Down(key)) << key.name << " did not go down";
        edit_.Clear();
        log_.events.clear();
    }

    tavtest::PhysicalKeyboard& Keyboard() { return keyboard_; }

    // Types `script` (SendKeysEx, or SendTextEx when `text`); the time the call took.
    DWORD Type(const wchar_t* script, const SendOptions& options, bool text = false) {
        const DWORD start = GetTickCount();
        EXPECT_EQ(SKERR_NONE, text ? SendTextEx(script, options) : SendKeysEx(script, options));
        const DWORD elapsed = GetTickCount() - start;
        EXPECT_TRUE(tavtest::Settle(edit_.window()));
        return elapsed;
    }
    void ExpectDown(bool down, const char* when) {
        for (const PhysicalKey& key : keys_)
            EXPECT_EQ(down, keytest::IsKeyDown(key.vk)) << key.name << " " << when;
    }
    void ExpectReleasedAndPutBack(const Seen& seen) {
        for (const PhysicalKey& key : keys_) {
            EXPECT_GE(seen.Find(key.vk, true, true, 0, seen.firstTyped), 0) << key.name << " was not released first";
            EXPECT_GE(seen.Find(key.vk, false, true, seen.lastTyped, 1 << 30), 0) << key.name << " was not put back";
        }
    }

private:
    keytest::EditWindow& edit_;
    HookLog& log_;
    std::vector<PhysicalKey> keys_;
    tavtest::PhysicalKeyboard keyboard_;
};

// One scenario: every held set with every combination of the flags, each a case of its own on one Edit with
// one hook log (the user holds the set when `body` starts; the options carry the flags and the wait for
// release). After each set no key may be left pressed. A fatal failure in a case ends the scenario.
using CaseBody = std::function<void(keytest::EditWindow& edit, HookLog& log, Case& run,
                                    const std::vector<PhysicalKey>& keys, DWORD flags, SendOptions& options)>;
void EveryCase(DWORD waitReleaseMs, const CaseBody& body) {
    keytest::EditWindow edit;
    HookLog log;
    ASSERT_TRUE(log.Active());
    for (const auto& keys : kHeldSets) {
        for (DWORD flags : kFlagSets) {
            SCOPED_TRACE(Name(keys, flags));
            Case run(edit, log, keys);
            SendOptions options;
            options.flags = flags;
            options.waitReleaseMs = waitReleaseMs;
            body(edit, log, run, keys, flags, options);
            if (testing::Test::HasFatalFailure())
                return;
        }
        EXPECT_TRUE(keytest::NoKeyPressed());
    }
}

bool HasCtrlOrAlt(const std::vector<PhysicalKey>& keys) {
    for (const PhysicalKey& key : keys)
        if (key.vk == VK_LCONTROL || key.vk == VK_LMENU)
            return true;
    return false;
}
bool HasShift(const std::vector<PhysicalKey>& keys) {
    for (const PhysicalKey& key : keys)
        if (key.vk == VK_LSHIFT)
            return true;
    return false;
}

TEST_F(KeysHeldModifiers, UserStillHolding) {
    // The user does not let go: the wait runs out.
    EveryCase(300, [&](keytest::EditWindow& edit, HookLog& log, Case& run, const std::vector<PhysicalKey>& keys,
                       DWORD flags, SendOptions& options) {
        const DWORD elapsed = run.Type(L"kqw", options);
        const Seen seen(log);
        if ((flags & tav::keys::kSendWaitForRelease) != 0) {
            EXPECT_GE(elapsed, 290u) << "the wait ended although the user holds the keys";
        }
        if (Releases(flags)) {
            EXPECT_TRUE(edit.Text() == L"kqw") << tavtest::Narrow(edit.Text()) << "; " << log.Describe();
            run.ExpectReleasedAndPutBack(seen);
            // Literal text, the same way.
            edit.Clear();
            log.events.clear();
            run.Type(L"kqw", options, true);
            EXPECT_TRUE(edit.Text() == L"kqw") << tavtest::Narrow(edit.Text()) << "; " << log.Describe();
            run.ExpectReleasedAndPutBack(Seen(log));
        } else {
            // As ever: the held modifiers reach the target with every key.
            EXPECT_EQ(0, seen.InjectedModifierEvents()) << log.Describe();
            if (HasCtrlOrAlt(keys)) {
                EXPECT_TRUE(edit.Text().empty()) << tavtest::Narrow(edit.Text());
            } else if (HasShift(keys)) {
                EXPECT_TRUE(edit.Text() == L"KQW") << tavtest::Narrow(edit.Text());
            }
        }
        run.ExpectDown(true, "is not down although the user holds it");
    });
}

// The user lets go after the third typed key, while the call still types.
struct LetGo {
    tavtest::PhysicalKeyboard* keyboard;
    const std::vector<PhysicalKey>* keys;
    int typed = 0;
    bool done = false;
};

void LetGoAfterThirdKey(const HookLog::Event& event, void* context) {
    auto* letGo = static_cast<LetGo*>(context);
    if (!event.injected || event.up || HookLog::IsModifier(event.vk) || letGo->done || ++letGo->typed < 3)
        return;
    letGo->done = true;
    for (const PhysicalKey& key : *letGo->keys)
        letGo->keyboard->StartUp(key);
}

TEST_F(KeysHeldModifiers, UserLetsGoDuringTyping) {
    const wchar_t script[] = L"kqwkqwkqwkqwkqwkqw";
    EveryCase(200, [&](keytest::EditWindow& edit, HookLog& log, Case& run, const std::vector<PhysicalKey>& keys,
                       DWORD flags, SendOptions& options) {
        LetGo letGo{&run.Keyboard(), &keys};
        log.onEvent = &LetGoAfterThirdKey;
        log.context = &letGo;
        options.keyDelayMs = 40;  // about 1.2 s after the third key: time for xdotool on a loaded machine
        run.Type(script, options);
        log.onEvent = nullptr;
        tavtest::WaitUntil([&] { return keytest::PressedKeys().empty(); }, 5000);
        const Seen seen(log);
        ASSERT_TRUE(letGo.done) << log.Describe();
        for (const PhysicalKey& key : keys) {
            // With the watch, the call handles messages while it types and the user's release comes in
            // the middle. Without it the call handles none, and Wine reads the X server's events only
            // when the window's thread handles messages: the release comes after the call, as ever.
            const int userUp = seen.Find(key.vk, true, false, 0, 1 << 30);
            EXPECT_GE(userUp, 0) << key.name << ": " << log.Describe();
            EXPECT_EQ(Releases(flags), userUp < seen.lastTyped) << key.name << ": " << log.Describe();
            if (Releases(flags)) {
                EXPECT_LT(seen.Find(key.vk, false, true, seen.firstTyped, 1 << 30), 0)
                    << key.name << " was pressed again after the user let go: " << log.Describe();
            }
        }
        if (Releases(flags)) {
            EXPECT_TRUE(edit.Text() == script) << tavtest::Narrow(edit.Text());
        } else {
            EXPECT_EQ(0, seen.InjectedModifierEvents()) << log.Describe();
        }
        run.ExpectDown(false, "is down although the user let go");
    });
}

TEST_F(KeysHeldModifiers, UserLetsGoBeforeTyping) {
    // The wait ends when the user lets go, long before.
    EveryCase(20000, [&](keytest::EditWindow& edit, HookLog& log, Case& run, const std::vector<PhysicalKey>& keys,
                         DWORD flags, SendOptions& options) {
        for (const PhysicalKey& key : keys)
            run.Keyboard().StartUp(key);
        const DWORD elapsed = run.Type(L"kqw", options);
        tavtest::WaitUntil([&] { return keytest::PressedKeys().empty(); }, 5000);
        const Seen seen(log);
        if ((flags & tav::keys::kSendWaitForRelease) != 0) {
            EXPECT_LT(elapsed, 10000u);
            EXPECT_TRUE(edit.Text() == L"kqw") << tavtest::Narrow(edit.Text()) << "; " << log.Describe();
            EXPECT_EQ(0, seen.InjectedModifierEvents()) << "nothing was left to release: " << log.Describe();
            for (const PhysicalKey& key : keys) {
                const int userUp = seen.Find(key.vk, true, false, 0, 1 << 30);
                EXPECT_TRUE(userUp >= 0 && userUp < seen.firstTyped) << key.name << ": " << log.Describe();
            }
        } else if (Releases(flags)) {
            EXPECT_TRUE(edit.Text() == L"kqw") << tavtest::Narrow(edit.Text()) << "; " << log.Describe();
        }
        run.ExpectDown(false, "is down although the user let go");
    });
}

// A modifier the library holds itself ('[') is not the user's: it is neither released nor pressed again.
TEST_F(KeysHeldModifiers, KeysOfTheHoldListStayAsTheyAre) {
    keytest::EditWindow edit;
    HookLog log;
    ASSERT_TRUE(log.Active());
    tavtest::PhysicalKeyboard keyboard(edit.window());
    ASSERT_TRUE(keyboard.Ready());
    ASSERT_TRUE(keyboard.Down(tavtest::kCtrl));
    EXPECT_EQ(SKERR_NONE, SendKeys(L"[+"));  // Shift held by the library (its release is dropped)
    EXPECT_EQ(SKERR_NONE, SendKeys(L"]"));
    ASSERT_TRUE(tavtest::WaitUntil([] { return keytest::IsKeyDown(VK_SHIFT); }));
    edit.Clear();
    log.events.clear();
    SendOptions options;
    options.flags = tav::keys::kSendReleaseModifiers;
    EXPECT_EQ(SKERR_NONE, SendKeysEx(L"kq", options));
    edit.WaitForText(L"KQ");
    EXPECT_TRUE(edit.Text() == L"KQ") << tavtest::Narrow(edit.Text()) << "; " << log.Describe();
    const Seen seen(log);
    EXPECT_LT(seen.Find(VK_LSHIFT, true, true, 0, 1 << 30), 0) << log.Describe();
    EXPECT_GE(seen.Find(VK_LCONTROL, true, true, 0, seen.firstTyped), 0) << log.Describe();
    EXPECT_TRUE(keytest::IsKeyDown(VK_LCONTROL));
    SendKeys_ReleaseAll();
    EXPECT_TRUE(keyboard.Up(tavtest::kCtrl));
    EXPECT_TRUE(tavtest::WaitUntil([] { return keytest::PressedKeys().empty(); }));
}

}  // namespace
