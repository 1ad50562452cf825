// Internals of keystroke synthesis shared between the parser, the command words and the player.
#pragma once

#include "keys/KeyState.h"
#include "keys/ModifierWatch.h"
#include "keys/KeyStages.h"
#include "keys/SendKeys.h"

#include <windows.h>

#include <cwchar>
#include <vector>

namespace tav::keys::detail {

// The language's own characters, typed literally only in braces: SendKeysRemoveSpecialChars escapes them and
// the recorder writes them so. A NUL is not one of them.
inline bool IsScriptSpecial(wchar_t ch) { return ch != L'\0' && wcschr(L"%()*+[]^{}~", ch) != nullptr; }

// The player's state between two key events.
struct PlayerState {
    WORD currentKey = 0;        // the entry being played, 0 when none
    bool keyUpPending = false;  // an ordinary current key still owes its key-up
    bool shift = false;         // the four modifier toggles: a modifier entry presses when its toggle
    bool control = false;       // turns on and releases when it turns off
    bool alt = false;
    bool windows = false;
    bool keySinceAlt = false;  // an ordinary key went by since Alt went down (kept for hosts; unread)
    bool hold = false;         // hold mode: survives runs on purpose
};

// The process-wide state of keystroke synthesis, defined together in KeyState.cpp.
struct KeyState {
    KeyQueue queue;                      // written by the parser only, read by the player only
    HoldList holdList;                   // written by the player and SendKeys_ReleaseAll only
    PlayerState player;                  // the player only; reset per run except `hold`
    const wchar_t* cursor = nullptr;     // the parser's position in the script being parsed
    const wchar_t* itemStart = nullptr;  // where the top-level item being parsed begins (an error's place)
    const wchar_t* failedAt = nullptr;   // with a parse error: the innermost item that failed
    ULONG_PTR inProgress = 0;            // set by hosts, cleared by a run, read by SendKeys
};
KeyState& State();

// Parses `script` into `state`'s queue (the parser's cursor, item start and failed item included) and
// sends nothing: ParseKeyScript on the process-wide state, and the script check on a state of its own.
SKERR ParseScript(KeyState& state, const wchar_t* script);

// Carries out the command words of `script` for the foreground window: SKERR_COMMANDDONE when one ran,
// SKERR_MENUFAILED when a {Menu failed, SKERR_NONE when the script holds none.
SKERR CarryOutCommandWords(const wchar_t* script);

// A command word of a script as it will be carried out: the word, where it stands and its numbers.
struct CommandWord {
    enum Kind { None, PostCommand, SendCommand, SendMessage, PostMessage, Menu } kind = None;
    const wchar_t* at = nullptr;  // the position the word was read at (a '{', or the script's start)
    unsigned number = 0;          // the command id, or the message
    unsigned wParam = 0, lParam = 0;
    int top = 0, item = 0;  // {Menu top item}
};
// The command words that CarryOutCommandWords would carry out, in order, each where it would be read;
// carries out nothing (a failing {Menu would stop the ones after it, which a look cannot know).
std::vector<CommandWord> FindCommandWords(const wchar_t* script);

// Spaces the key events of one call: waits `delayMs` before every event but the first, so that a target
// that drops keys arriving back to back sees them one by one, and keeps each key down at least `holdMs`
// before its key-up. A delay and a hold of 0 never wait and never yield: an unpaced call sends exactly as it
// always has. With a modifier watch (kSendReleaseModifiers) the waits handle the calling thread's messages,
// so that the watch's hook sees the user's keys, and the messages are handled after every event too.
class EventPacer {
public:
    explicit EventPacer(DWORD delayMs) : delayMs_(delayMs) {}
    EventPacer(DWORD delayMs, DWORD holdMs, ModifierWatch* watch) : delayMs_(delayMs), holdMs_(holdMs), watch_(watch) {}
    // Before the event of `key` (a virtual key, or a Unicode unit with kUnitKey added) goes out.
    void BeforeEvent(DWORD key = 0, bool keyUp = false);
    // After it went out.
    void AfterEvent(DWORD key = 0, bool keyUp = false);
    // True when every event must go out on its own (a delay or a hold); false: a whole call may go at once.
    bool OneByOne() const { return delayMs_ != 0 || holdMs_ != 0; }

    static constexpr DWORD kUnitKey = 0x10000;

private:
    void Wait(DWORD ms);

    DWORD delayMs_;
    DWORD holdMs_ = 0;
    ModifierWatch* watch_ = nullptr;
    bool sentOne_ = false;
    struct Press {
        DWORD key;
        LARGE_INTEGER at;
    };
    Press presses_[8] = {};  // the last keys pressed, for their hold time
    int nextPress_ = 0;
};

// Resets the player's per-run state (everything but hold mode and the hold list) and rewinds the queue.
void ResetPlayer();
// Plays one key event, paced by `pacer` when one is sent: true while events remain, false when the queue
// is exhausted.
bool PlayOneEvent(EventPacer& pacer);
// Resets the player and plays the whole queue through `pacer`.
void PlayQueue(EventPacer& pacer);

}  // namespace tav::keys::detail
