// Random keystroke scripts of the script language, and what playing them must leave pressed.
//
// The generator writes a script from its grammar (text, modifiers, groups, braced keys with counts, and on
// request hold brackets and BREAK) together with the key queue that the language's rules give for it on
// the current keyboard layout. The model plays a queue the way the player's rules do and keeps which keys
// are down, the hold flag and the hold list, so that a test can compare the real keyboard state with it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace keytest {

struct ScriptKinds {
    bool hold = false;      // '[' and ']' may appear
    bool breakKey = false;  // {BREAK} and {BREAK n} may appear
};

struct GeneratedScript {
    std::wstring script;
    std::vector<WORD> queue;  // the key queue the parser builds (empty for the ^C/^V/^X shortcuts)
    bool shortcut = false;    // exactly ^c, ^v or ^x: pressed and released by the press helper
};

class ScriptGenerator {
public:
    explicit ScriptGenerator(uint32_t seed) : random_(seed) {}
    GeneratedScript Next(const ScriptKinds& kinds);

private:
    void Item(const ScriptKinds& kinds, int depth, bool inGroup, GeneratedScript& out);
    void Character(wchar_t ch, int count, GeneratedScript& out);
    void BracedKey(const ScriptKinds& kinds, GeneratedScript& out);
    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }

    std::mt19937 random_;
};

// The queue that the language's rules give for a script, computed by the same code as the generator's.
class KeyModel {
public:
    // Plays `queue` as the player's rules say (modifier toggles start afresh, hold state carries over).
    void Play(const std::vector<WORD>& queue);
    // SendKeys_ReleaseAll: every listed key goes up, last first; the hold flag stays.
    void ReleaseAll();
    // A key released by hand.
    void Release(BYTE vk) { down_.erase(vk); }
    void EndHold() { hold_ = false; }

    const std::set<BYTE>& Down() const { return down_; }
    bool HoldMode() const { return hold_; }
    size_t Held() const { return holdList_.size(); }
    size_t EventsSent() const { return events_; }

private:
    void Send(WORD code, bool up);

    bool hold_ = false;
    std::vector<WORD> holdList_;
    std::set<BYTE> down_;
    size_t events_ = 0;
};

// Virtual keys that GetAsyncKeyState reports down, over all 256 codes; the sided modifier codes are folded
// into VK_SHIFT, VK_CONTROL and VK_MENU (the player presses the unsided ones).
std::set<BYTE> KeysDownNow();

// "{0x10 0x41}"
std::string KeyList(const std::set<BYTE>& keys);

// The lock keys' toggle states, to put back what generated scripts toggled.
struct LockStates {
    LockStates();
    void Restore() const;
    bool caps, num, scroll;
};

}  // namespace keytest
