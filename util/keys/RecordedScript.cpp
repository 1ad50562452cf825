// From recorded key events to the script a person would write for them.
//
// Every key press becomes a token: its text in the language (a character, {NAME} or ~) and the modifiers
// that must be held around it. Runs of one named key become {NAME n}; then the tokens are written left to
// right, a modifier held over several neighbours becoming a prefix and a group. A token's character is the
// one the layout's key gives with the Shift state held (VkKeyScanW read backwards), so that playing the
// script presses the same keys the user pressed: that is what makes a recording type what was typed, lock
// keys and all.
#include "keys/KeyRecorder.h"

#include "keys/KeyStages.h"
#include "keys/detail/KeysInternal.h"

#include <array>
#include <map>

namespace tav::keys {

namespace {

// The names the recorder writes, the shortest of each key's names first. ENTER is written as ~; BREAK (the
// Control key) and QUEUESYNC never stand for a key press.
const wchar_t* const kWrittenNames[] = {
    L"ESC",       L"BS",    L"DEL",  L"TAB", L"INSERT", L"LEFT",  L"RIGHT", L"UP",       L"DOWN",
    L"PGUP",      L"PGDN",  L"HOME", L"END", L"HELP",   L"PRTSC", L"CLEAR", L"CAPSLOCK", L"NUMLOCK",
    L"SCROLLOCK", L"SLEEP", L"F1",   L"F2",  L"F3",     L"F4",    L"F5",    L"F6",       L"F7",
    L"F8",        L"F9",    L"F10",  L"F11", L"F12",    L"F13",   L"F14",   L"F15",      L"F16",
};

// The keyboard as the script language sees it: which character each key gives with which of Shift,
// Control and Alt, and each key's name.
class Keyboard {
public:
    Keyboard() {
        for (wchar_t ch = 0x20; ch <= 0xFF; ++ch) {
            if (ch >= 0x7F && ch < 0xA0)
                continue;
            const SHORT code = VkKeyScanW(ch);
            if (code == -1)
                continue;
            characters_.emplace(static_cast<WORD>(code), ch);  // the first character of a key wins
        }
        for (const wchar_t* name : kWrittenNames)
            if (const WORD code = LookupKeyName(name); code != 0 && code < 0x100 && names_[code] == nullptr)
                names_[code] = name;
    }
    // The character key `vk` gives with the shift-state bits `shift`, or 0.
    wchar_t Character(WORD vk, unsigned shift) const {
        const auto found = characters_.find(static_cast<WORD>((shift << 8) | (vk & 0xFF)));
        return found == characters_.end() ? L'\0' : found->second;
    }
    bool Typable(wchar_t ch) const { return ch >= 0x20 && VkKeyScanW(ch) != -1; }
    const wchar_t* Name(WORD vk) const { return vk < 0x100 ? names_[vk] : nullptr; }

private:
    std::map<WORD, wchar_t> characters_;
    std::array<const wchar_t*, 0x100> names_{};
};

// A digit or operator of the number pad, typed with Num Lock on: written as the character.
wchar_t NumberPadCharacter(WORD vk) {
    if (vk >= VK_NUMPAD0 && vk <= VK_NUMPAD9)
        return static_cast<wchar_t>(L'0' + (vk - VK_NUMPAD0));
    switch (vk) {
    case VK_MULTIPLY: return L'*';
    case VK_ADD: return L'+';
    case VK_SUBTRACT: return L'-';
    case VK_DECIMAL: return L'.';
    case VK_DIVIDE: return L'/';
    default: return L'\0';
    }
}

// The modifier bit of a modifier key, or 0.
unsigned ModifierBit(WORD vk) {
    switch (vk) {
    case VK_SHIFT:
    case VK_LSHIFT:
    case VK_RSHIFT: return kRecordShift;
    case VK_CONTROL:
    case VK_LCONTROL:
    case VK_RCONTROL: return kRecordControl;
    case VK_MENU:
    case VK_LMENU:
    case VK_RMENU: return kRecordAlt;
    case VK_LWIN:
    case VK_RWIN: return kRecordWindows;
    default: return 0;
    }
}

// Which modifier keys are down: one bit per key, so that both Shift keys may be held and let go apart.
int ModifierSlot(WORD vk) {
    static const WORD kSlots[] = {VK_SHIFT, VK_LSHIFT, VK_RSHIFT, VK_CONTROL, VK_LCONTROL, VK_RCONTROL,
                                  VK_MENU,  VK_LMENU,  VK_RMENU,  VK_LWIN,    VK_RWIN};
    for (int i = 0; i < static_cast<int>(sizeof kSlots / sizeof kSlots[0]); ++i)
        if (kSlots[i] == vk)
            return i;
    return -1;
}

// A key press as the script writes it; small and without text of its own, so that a long recording stays
// cheap to write.
struct Token {
    const wchar_t* name = nullptr;  // a named key ({NAME}); null for a character
    wchar_t character = 0;          // a character; for Enter, ~
    unsigned modifiers = 0;         // RecordedModifier bits to hold around it
    int count = 1;                  // presses in a run (named keys and the language's own characters only)

    // Whether a run of this press is written with a count ({TAB 3}, {+ 2}) rather than repeated.
    bool enter = false;  // Enter, written as ~

    bool Counted() const { return name != nullptr || (!enter && detail::IsScriptSpecial(character)); }
    bool SameKey(const Token& other) const {
        return name == other.name && character == other.character && enter == other.enter &&
               modifiers == other.modifiers;
    }
    void WriteTo(std::wstring& out) const {
        if (!Counted()) {
            out.append(static_cast<size_t>(count), character);
            return;
        }
        out += L'{';
        if (name != nullptr)
            out += name;
        else
            out += character;
        if (count > 1) {
            out += L' ';
            out += std::to_wstring(count);
        }
        out += L'}';
    }
};

Token CharacterToken(wchar_t ch, unsigned modifiers) { return {nullptr, ch, modifiers, 1, false}; }

// The token of a key press with `held` modifiers down; false for a key the language cannot express.
bool PressToken(const Keyboard& keyboard, const RecordedKey& key, unsigned held, Token& token) {
    if (key.vk == VK_PACKET) {
        const wchar_t ch = static_cast<wchar_t>(key.unit);
        if (!keyboard.Typable(ch))
            return false;
        token = CharacterToken(ch, held);
        return true;
    }
    if (key.vk == VK_RETURN) {
        token = {nullptr, L'~', held, 1, true};
        return true;
    }
    const unsigned shiftState = held & (kRecordShift | kRecordControl | kRecordAlt);
    // The character as the keys held give it (Shift folded in, or the layout's Control+Alt characters);
    // else the one with Shift alone, the other modifiers held around it; else the bare key's.
    if (const wchar_t ch = keyboard.Character(key.vk, shiftState)) {
        token = CharacterToken(ch, held & ~shiftState);
        return true;
    }
    if (const wchar_t ch = keyboard.Character(key.vk, held & kRecordShift)) {
        token = CharacterToken(ch, held & ~kRecordShift);
        return true;
    }
    if (const wchar_t ch = keyboard.Character(key.vk, 0)) {
        token = CharacterToken(ch, held);
        return true;
    }
    if (const wchar_t* name = keyboard.Name(key.vk)) {
        token = {name, 0, held, 1, false};
        return true;
    }
    if (const wchar_t ch = NumberPadCharacter(key.vk); ch != L'\0' && (held & kRecordShift) == 0) {
        token = CharacterToken(ch, held);
        return true;
    }
    return false;
}

// The tokens of the key presses, runs of one named key joined, and the presses left out.
std::vector<Token> Tokens(const std::vector<RecordedKey>& keys, unsigned heldAtStart, size_t& skipped) {
    const Keyboard keyboard;
    std::vector<Token> tokens;
    unsigned slotsDown = 0;            // ModifierSlot bits
    unsigned slotsPressedAlone = 0;    // modifier keys pressed since the last other key
    unsigned startHeld = heldAtStart;  // a modifier held when recording began counts until a key-up of it
    for (const RecordedKey& key : keys) {
        const int slot = ModifierSlot(key.vk);
        if (slot >= 0) {
            const unsigned bit = 1u << slot;
            if (key.up) {
                startHeld &= ~ModifierBit(key.vk);
                if ((slotsPressedAlone & bit) != 0)
                    ++skipped;
                slotsDown &= ~bit;
                slotsPressedAlone &= ~bit;
            } else if ((slotsDown & bit) == 0) {
                slotsDown |= bit;
                slotsPressedAlone |= bit;
            }
            continue;
        }
        if (key.up)
            continue;
        slotsPressedAlone = 0;
        unsigned held = startHeld;
        for (WORD vk : {VK_SHIFT, VK_LSHIFT, VK_RSHIFT, VK_CONTROL, VK_LCONTROL, VK_RCONTROL, VK_MENU, VK_LMENU,
                        VK_RMENU, VK_LWIN, VK_RWIN})
            if ((slotsDown & (1u << ModifierSlot(vk))) != 0)
                held |= ModifierBit(vk);
        Token token;
        if (!PressToken(keyboard, key, held, token)) {
            ++skipped;
            continue;
        }
        if (!tokens.empty() && token.Counted() && tokens.back().SameKey(token))
            ++tokens.back().count;
        else
            tokens.push_back(token);
    }
    return tokens;
}

// The modifiers in the order their prefixes are written.
struct Prefix {
    unsigned bit;
    wchar_t character;
};
const Prefix kPrefixes[] = {{kRecordControl, L'^'}, {kRecordAlt, L'%'}, {kRecordWindows, L'*'}, {kRecordShift, L'+'}};

// Writes tokens [begin, end), each of which has the modifiers `outer` held already; returns the number of
// items written (a group with one item needs no parentheses).
size_t Write(const std::vector<Token>& tokens, size_t begin, size_t end, unsigned outer, std::wstring& out) {
    size_t items = 0;
    size_t i = begin;
    while (i < end) {
        const unsigned extra = tokens[i].modifiers & ~outer;
        if (extra == 0) {
            tokens[i].WriteTo(out);
            ++items;
            ++i;
            continue;
        }
        // The modifier held over the longest run of neighbours goes outside.
        const Prefix* best = nullptr;
        size_t bestEnd = i;
        for (const Prefix& prefix : kPrefixes) {
            if ((extra & prefix.bit) == 0)
                continue;
            size_t runEnd = i;
            while (runEnd < end && (tokens[runEnd].modifiers & prefix.bit) != 0)
                ++runEnd;
            if (runEnd > bestEnd) {
                best = &prefix;
                bestEnd = runEnd;
            }
        }
        // Written in place; the parenthesis goes again when the group holds one item only.
        out += best->character;
        const size_t open = out.size();
        out += L'(';
        if (Write(tokens, i, bestEnd, outer | best->bit, out) == 1)
            out.erase(open, 1);
        else
            out += L')';
        ++items;
        i = bestEnd;
    }
    return items;
}

}  // namespace

RecordedScript ScriptFromKeys(const std::vector<RecordedKey>& keys, unsigned heldAtStart) {
    RecordedScript result;
    const std::vector<Token> tokens = Tokens(keys, heldAtStart, result.skipped);
    Write(tokens, 0, tokens.size(), 0, result.script);
    return result;
}

}  // namespace tav::keys
