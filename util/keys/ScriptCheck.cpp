// The script check: the parser on a key state of its own (so the process-wide queue is left alone), then
// a description of the error or of what the queue will do, in the guide's words.
#include "keys/ScriptCheck.h"
#include "keys/detail/NumberScan.h"

#include "keys/detail/KeysInternal.h"

#include <cwchar>
#include <cwctype>
#include <memory>
#include <vector>

namespace tav::keys {

namespace {

// Names and snippets quoted in a message are cut to this many units, so that a message stays a sentence.
constexpr size_t kQuoteLimit = 32;

std::wstring Quote(const std::wstring& text) {
    if (text.size() <= kQuoteLimit)
        return text;
    const size_t cut = IS_HIGH_SURROGATE(text[kQuoteLimit - 1]) ? kQuoteLimit - 1 : kQuoteLimit;  // whole pairs
    return text.substr(0, cut) + L"...";
}

std::wstring Counted(int count, const wchar_t* noun) {
    return std::to_wstring(count) + L" " + noun + (count == 1 ? L"" : L"s");
}

bool Same(const std::wstring& a, const wchar_t* b) { return _wcsicmp(a.c_str(), b) == 0; }

// A braced item as the parser reads it: "{NAME}", "{NAME count}", "{}}"; `at` is the '{'.
struct Brace {
    std::wstring name;  // empty for "{}}" and for a '{' followed at once by a blank
    bool closingBrace = false;
    const wchar_t* delimiter = nullptr;  // the blank or '}' after the name; null when there is none
    std::wstring countText;              // the word after the blank ("" when none)
    std::wstring text;                   // the item from '{' to its '}' (or to the script's end)
};

Brace ReadBrace(const wchar_t* at) {
    Brace brace;
    const wchar_t* start = at + 1;
    brace.closingBrace = *start == L'}';
    if (brace.closingBrace)
        ++start;
    brace.delimiter = wcspbrk(start, L" }");
    if (brace.delimiter == nullptr) {
        brace.text = at;
        return brace;
    }
    if (!brace.closingBrace)
        brace.name.assign(start, brace.delimiter);
    if (*brace.delimiter == L' ') {
        const wchar_t* word = brace.delimiter;
        while (*word == L' ')
            ++word;
        const wchar_t* end = word;
        while (*end != L'\0' && *end != L' ' && *end != L'}')
            ++end;
        brace.countText.assign(word, end);
    }
    const wchar_t* close = wcschr(brace.delimiter, L'}');
    brace.text = close != nullptr ? std::wstring(at, close + 1) : std::wstring(at);
    return brace;
}

// Hints for names that other tools use and this language spells otherwise.
std::wstring NameHint(const std::wstring& name) {
    const struct {
        const wchar_t* names[5];
        const wchar_t* hint;
    } hints[] = {
        {{L"INS"}, L"the Insert key is {INSERT}"},
        {{L"SCROLLLOCK", L"SCRLK"}, L"the Scroll Lock key is {SCROLLOCK}"},
        {{L"SPACE", L"SPACEBAR", L"SPC"}, L"a space is typed as a blank"},
        {{L"RETURN"}, L"Enter is {ENTER} or ~"},
        {{L"CTRL", L"CONTROL", L"LCTRL", L"RCTRL"}, L"Control is ^ before a key, as in ^c"},
        {{L"SHIFT", L"LSHIFT", L"RSHIFT"}, L"Shift is + before a key, as in +a"},
        {{L"ALT", L"LALT", L"RALT"}, L"Alt is % before a key, as in %f"},
        {{L"WIN", L"LWIN", L"RWIN", L"WINDOWS"}, L"the Windows key is * before a key, as in *e"},
        {{L"PAUSE"}, L"there is no Pause key in the script language, and {BREAK} is the Control key"},
        {{L"PostCommand", L"SendCommand"}, L"a command needs its number after a blank: {PostCommand 1f4}"},
        {{L"PostMessage", L"SendMessage"}, L"a message needs its number after a blank: {PostMessage 400 1 0}"},
        {{L"Menu"}, L"a menu command needs its positions after a blank: {Menu 0 1}"},
    };
    for (const auto& row : hints)
        for (const wchar_t* candidate : row.names)
            if (candidate != nullptr && Same(name, candidate))
                return row.hint;
    return L"";
}

// "{Ctrl down}", "{a up}": how other tools hold a key.
std::wstring CountHint(const std::wstring& countText) {
    return Same(countText, L"down") || Same(countText, L"up") ? L"a key is held down between [ and ], as in [^a]" : L"";
}

std::wstring WithHints(std::wstring message, const std::wstring& first, const std::wstring& second = L"") {
    std::wstring hints = first;
    if (!second.empty())
        hints += (hints.empty() ? L"" : L"; ") + second;
    return hints.empty() ? message : message + L" (" + hints + L")";
}

std::wstring ErrorMessage(SKERR result, const wchar_t* script, ptrdiff_t offset) {
    const wchar_t* at = script + offset;
    const std::wstring where = std::to_wstring(offset);
    switch (result) {
    case SKERR_MISSINGCLOSEBRACE:
        return WithHints(L"a { at " + where + L" has no closing }",
                         wcscmp(at, L"{}") == 0 ? L"a } is typed as {}}" : L"");
    case SKERR_INVALIDKEY: {
        const Brace brace = ReadBrace(at);
        if (brace.name.empty())
            return L"a { at " + where + L" is not followed by a key name";
        return WithHints(L"unknown key name '" + Quote(brace.name) + L"'", NameHint(brace.name),
                         CountHint(brace.countText));
    }
    case SKERR_INVALIDCOUNT: {
        const Brace brace = ReadBrace(at);
        if (brace.countText.empty())
            return L"the blank in " + Quote(brace.text) + L" is not followed by a number above 0";
        return WithHints(L"the count '" + Quote(brace.countText) + L"' in " + Quote(brace.text) +
                             L" is not a number above 0",
                         CountHint(brace.countText));
    }
    case SKERR_MISSINGCLOSEPAREN: return L"the group ( at " + where + L" is not closed";
    case SKERR_STRINGTOOLONG: {
        const std::wstring tooLong =
            L"the script would need more than " + std::to_wstring(KeyQueue::kCapacity) + L" key entries";
        int count = 0;
        if (*at == L'{') {
            const Brace brace = ReadBrace(at);
            if (brace.delimiter != nullptr && *brace.delimiter == L' ' && detail::ScanDecimal(brace.delimiter, count) &&
                count < 0)
                return L"the count " + std::to_wstring(count) + L" in " + Quote(brace.text) +
                       L" is not a number above 0: it repeats the key until " + tooLong;
        }
        return tooLong;
    }
    default: return L"the script cannot be typed (" + std::to_wstring(static_cast<int>(result)) + L")";
    }
}

// What the player will do with a queue, played as a first script (hold mode off, nothing held), by the
// player's rules: a modifier entry flips its toggle, hold mode drops releases and presses a key once.
struct Playback {
    int typed = 0;  // ordinary key presses that are released again
    int held = 0;   // keys that stay down until released
    bool holdModeLeftOn = false;
    std::vector<WORD> modifiersLeftDown;  // pressed outside hold mode and never released
    bool keyOfNoCharacter = false;        // a character no key of the layout produces was queued
};

Playback Play(const KeyQueue& queue) {
    Playback playback;
    const WORD modifiers[4] = {VK_SHIFT, VK_CONTROL, VK_MENU, VK_LWIN};
    bool toggle[4] = {false, false, false, false};
    bool downOutsideHold[4] = {false, false, false, false};
    bool hold = false;
    std::vector<WORD> holdList;
    auto listed = [&](WORD code) {
        for (WORD held : holdList)
            if (held == code)
                return true;
        return false;
    };
    for (int i = 0; i < queue.Count(); ++i) {
        const WORD code = queue.At(i);
        if (code == kBeginHold || code == kEndHold) {
            hold = code == kBeginHold;
            continue;
        }
        int modifier = -1;
        for (int m = 0; m < 4; ++m)
            if (code == modifiers[m])
                modifier = m;
        if (modifier >= 0) {
            toggle[modifier] = !toggle[modifier];
            if (!hold) {
                downOutsideHold[modifier] = toggle[modifier];
            } else if (toggle[modifier] && !listed(code) &&
                       holdList.size() < static_cast<size_t>(HoldList::kCapacity)) {
                holdList.push_back(code);
                ++playback.held;
            }
            continue;
        }
        if (LOBYTE(code) == 0xFF)
            playback.keyOfNoCharacter = true;
        if (!hold) {
            ++playback.typed;
        } else if (listed(code)) {
            ++playback.typed;  // an ordinary held key is pressed again
        } else if (holdList.size() < static_cast<size_t>(HoldList::kCapacity)) {
            holdList.push_back(code);
            ++playback.held;
        }
    }
    playback.holdModeLeftOn = hold;
    for (int m = 0; m < 4; ++m)
        if (downOutsideHold[m])
            playback.modifiersLeftDown.push_back(modifiers[m]);
    return playback;
}

const wchar_t* ModifierName(WORD code) {
    return code == VK_SHIFT ? L"Shift" : code == VK_CONTROL ? L"Control" : code == VK_MENU ? L"Alt" : L"Windows";
}

// The plain characters of a script (outside braces), each with what follows it.
template <typename Visit> void ForEachPlainCharacter(const wchar_t* script, Visit visit) {
    for (const wchar_t* p = script; *p != L'\0'; ++p) {
        if (*p == L'{') {
            const wchar_t* close = wcschr(p + (p[1] == L'}' ? 2 : 1), L'}');
            if (close == nullptr)
                return;
            p = close;
            continue;
        }
        visit(p);
    }
}

// Notes on a valid script that probably does not do what its writer meant.
std::vector<std::wstring> Notes(const wchar_t* script, const Playback& playback) {
    std::vector<std::wstring> notes;
    bool bang = false, hash = false;
    wchar_t missing = 0;
    ForEachPlainCharacter(script, [&](const wchar_t* p) {
        // "!f", "#e": a modifier of another tool in front of a letter. Not before a brace or a digit, which
        // text has often ("Thanks!{ENTER}", "#1").
        const bool beforeKey = iswalpha(p[1]) != 0;
        bang = bang || (*p == L'!' && beforeKey);
        hash = hash || (*p == L'#' && beforeKey);
        // Asked only when such a key was queued: the layout's answer costs more than the rest of the look.
        if (playback.keyOfNoCharacter && missing == 0 && VkKeyScanW(*p) == -1 && wcschr(L"+^%*()[]~", *p) == nullptr)
            missing = *p;
    });
    for (WORD code : playback.modifiersLeftDown) {
        if (code == VK_CONTROL && wcsstr(script, L"{") != nullptr) {
            bool breakKey = false;
            for (const wchar_t* p = wcschr(script, L'{'); p != nullptr; p = wcschr(p + 1, L'{'))
                breakKey = breakKey || _wcsnicmp(p, L"{BREAK", 6) == 0;
            if (breakKey) {
                notes.push_back(L"{BREAK} presses Control and leaves it down: it is the Control key, not Pause");
                continue;
            }
        }
        notes.push_back(std::wstring(L"it leaves ") + ModifierName(code) + L" down");
    }
    if (bang)
        notes.push_back(L"! is an ordinary character here: Alt is %, as in %f");
    if (hash)
        notes.push_back(L"# is an ordinary character here: the Windows key is *, as in *e");
    if (playback.keyOfNoCharacter && missing != 0)
        notes.push_back(std::wstring(L"no key of this keyboard layout types ") + missing +
                        L": it goes out as Shift, Control and Alt around a key that types nothing");
    return notes;
}

std::wstring DescribeKeys(const wchar_t* script, const KeyQueue& queue) {
    const Playback playback = Play(queue);
    std::wstring message;
    if (playback.typed > 0)
        message = L"types " + Counted(playback.typed, L"key");
    if (playback.held > 0)
        message +=
            (message.empty() ? L"" : L" and ") + (L"holds " + Counted(playback.held, L"key")) + L" until released";
    if (message.empty())
        message = L"types nothing";
    if (playback.holdModeLeftOn)
        message += L", and keeps holding in the scripts that follow";
    for (const std::wstring& note : Notes(script, playback))
        message += L"; " + note;
    return message;
}

std::wstring DescribeCommands(const std::vector<detail::CommandWord>& commands) {
    std::wstring message =
        L"carries out " + Counted(static_cast<int>(commands.size()), L"window command") + L" and types nothing else";
    for (const detail::CommandWord& command : commands)
        if (command.kind == detail::CommandWord::Menu)
            message += L"; {Menu " + std::to_wstring(command.top) + L" " + std::to_wstring(command.item) +
                       L"} chooses item " + std::to_wstring(command.item) + L" of menu " +
                       std::to_wstring(command.top) + L" of the window in front, counted from 0";
    return message;
}

// The clipboard shortcuts that SendKeys presses as they are (keys/SendKeys.cpp).
wchar_t ShortcutLetter(const wchar_t* script) {
    if (script[0] != L'^' || script[1] == L'\0' || script[2] != L'\0')
        return 0;
    const wchar_t letter = static_cast<wchar_t>(towupper(script[1]));
    return letter == L'C' || letter == L'V' || letter == L'X' ? letter : 0;
}

}  // namespace

ScriptCheck CheckKeyScript(const wchar_t* script) {
    if (script == nullptr)
        script = L"";
    ScriptCheck check;
    if (wchar_t letter = ShortcutLetter(script)) {
        check.message = std::wstring(L"presses Control+") + letter;
        return check;
    }
    const std::vector<detail::CommandWord> commands = detail::FindCommandWords(script);
    if (!commands.empty()) {
        check.commandWords = true;
        check.message = DescribeCommands(commands);
        return check;
    }
    // A key state of the check's own: the process-wide queue, hold mode and hold list are not touched.
    auto state = std::make_unique<detail::KeyState>();
    check.result = detail::ParseScript(*state, script);
    if (check.result == SKERR_NONE) {
        check.message = DescribeKeys(script, state->queue);
        return check;
    }
    check.itemStart = state->itemStart - script;
    check.offset = (state->failedAt != nullptr ? state->failedAt : state->itemStart) - script;
    check.message = ErrorMessage(check.result, script, check.offset);
    return check;
}

}  // namespace tav::keys
