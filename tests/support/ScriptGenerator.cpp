#include "ScriptGenerator.h"

#include "KeyNames.h"

#include <algorithm>
#include <cstdio>
#include <cwctype>

namespace keytest {

namespace {

constexpr size_t kQueueCapacity = 6144;
constexpr size_t kHoldListCapacity = 200;
constexpr WORD kBeginHold = 0xFFFE, kEndHold = 0xFFFD, kNothing = 0xFFFF;

// The key names the generator uses: every name but BREAK (added only on request), in the table's order.
std::vector<tavtest::KeyNameRow> GeneratedNames() {
    std::vector<tavtest::KeyNameRow> names;
    for (const tavtest::KeyNameRow& row : tavtest::kKeyNames)
        if (std::wstring(row.name) != L"BREAK")
            names.push_back(row);
    return names;
}
const std::vector<tavtest::KeyNameRow> kNames = GeneratedNames();

// Plain text: characters with no meaning in the language, a few no key of the layout produces, and the
// closing brace (plain outside a brace).
const std::wstring kText = L"abcxyzABCXYZ0189 ,.;'/\\-=`!@#$&_:\"<>?|}\u00e9\u20ac";
// Characters that only a brace types literally.
const std::wstring kLanguageCharacters = L"+^%*()[]{}~";
const wchar_t kModifiers[] = L"+^%*";
const WORD kModifierCodes[] = {VK_SHIFT, VK_CONTROL, VK_MENU, VK_LWIN};

bool IsScriptModifier(WORD code) {
    return code == VK_SHIFT || code == VK_CONTROL || code == VK_MENU || code == VK_LWIN;
}

bool IsModifierKey(WORD code) {
    return IsScriptModifier(code) || code == VK_RWIN || (code >= VK_LSHIFT && code <= VK_RMENU);
}

void Append(GeneratedScript& out, WORD code) { out.queue.push_back(code); }

}  // namespace

// A plain character (or a braced one with its count): the modifiers its shift state asks for around the
// key, in the same order before and after.
void ScriptGenerator::Character(wchar_t ch, int count, GeneratedScript& out) {
    const WORD code = static_cast<WORD>(VkKeyScanW(ch));
    const BYTE shift = HIBYTE(code);
    for (int bit = 0; bit < 3; ++bit)
        if (shift & (1 << bit))
            Append(out, static_cast<WORD>(VK_SHIFT + bit));
    for (int i = 0; i < count; ++i)
        Append(out, LOBYTE(code));
    for (int bit = 0; bit < 3; ++bit)
        if (shift & (1 << bit))
            Append(out, static_cast<WORD>(VK_SHIFT + bit));
}

void ScriptGenerator::BracedKey(const ScriptKinds& kinds, GeneratedScript& out) {
    const int count = Below(3) == 0 ? 1 + Below(5) : 1;
    const bool writeCount = count > 1 || Below(4) == 0;
    const std::wstring countText = writeCount ? L" " + std::to_wstring(count) : L"";
    const int kind = Below(kinds.breakKey ? 4 : 3);
    if (kind == 3) {  // BREAK: Control, as often as the count says
        out.script += L"{BREAK" + countText + L"}";
        for (int i = 0; i < count; ++i)
            Append(out, VK_CONTROL);
        return;
    }
    if (kind == 0) {  // a single character, the language's own characters included
        const std::wstring pool = kText + kLanguageCharacters;
        wchar_t ch = L' ';
        while (ch == L' ')  // a blank ends a brace's name: "{ }" names nothing
            ch = pool[static_cast<size_t>(Below(static_cast<int>(pool.size())))];
        if (ch == L'}' && !writeCount)
            out.script += L"{}}";
        else
            out.script += std::wstring(L"{") + ch + countText + L"}";
        if (static_cast<WORD>(VkKeyScanW(ch)) != kNothing)
            Character(ch, count, out);
        return;
    }
    const tavtest::KeyNameRow& key = kNames[Below(static_cast<int>(kNames.size()))];
    std::wstring name = key.name;
    if (Below(2) == 0)  // names compare without case
        std::transform(name.begin(), name.end(), name.begin(), [](wchar_t c) { return std::towlower(c); });
    out.script += L"{" + name + countText + L"}";
    if (key.code != kNothing)
        for (int i = 0; i < count; ++i)
            Append(out, key.code);
}

void ScriptGenerator::Item(const ScriptKinds& kinds, int depth, bool inGroup, GeneratedScript& out) {
    const int choice = Below(depth >= 3 ? 10 : 16);
    if (choice < 5) {  // text
        wchar_t ch = kText[static_cast<size_t>(Below(static_cast<int>(kText.size())))];
        out.script += ch;
        Character(ch, 1, out);
    } else if (choice == 5) {
        out.script += L'~';
        Append(out, VK_RETURN);
    } else if (choice == 6 && !inGroup) {  // a closing parenthesis outside a group is plain text
        out.script += L')';
        Character(L')', 1, out);
    } else if (choice < 9) {
        BracedKey(kinds, out);
    } else if (choice == 9 && kinds.hold) {
        const bool begin = Below(2) == 0;
        out.script += begin ? L'[' : L']';
        Append(out, begin ? kBeginHold : kEndHold);
    } else if (choice < 13) {  // a modifier covers the next item (or nothing at the end)
        const int m = Below(4);
        out.script += kModifiers[m];
        Append(out, kModifierCodes[m]);
        Item(kinds, depth + 1, inGroup, out);
        Append(out, kModifierCodes[m]);
    } else {  // a group
        out.script += L'(';
        for (int n = Below(4); n > 0; --n)
            Item(kinds, depth + 1, true, out);
        out.script += L')';
    }
}

GeneratedScript ScriptGenerator::Next(const ScriptKinds& kinds) {
    for (;;) {
        GeneratedScript out;
        for (int n = 1 + Below(8); n > 0; --n)
            Item(kinds, 0, false, out);
        // A modifier as the last character wraps nothing: Item never ends a script that way, so add it
        // now and then by hand.
        if (Below(20) == 0) {
            const int m = Below(4);
            out.script += kModifiers[m];
            Append(out, kModifierCodes[m]);
            Append(out, kModifierCodes[m]);
        }
        if (out.queue.size() > kQueueCapacity)
            continue;
        std::wstring lower = out.script;
        std::transform(lower.begin(), lower.end(), lower.begin(), [](wchar_t c) { return std::towlower(c); });
        if (lower == L"^c" || lower == L"^v" || lower == L"^x") {
            out.queue.clear();
            out.shortcut = true;
        }
        return out;
    }
}

void KeyModel::Send(WORD code, bool up) {
    ++events_;
    if (up)
        down_.erase(LOBYTE(code));
    else
        down_.insert(LOBYTE(code));
}

void KeyModel::Play(const std::vector<WORD>& queue) {
    bool toggles[4] = {};
    for (WORD code : queue) {
        bool up[2] = {false, true};  // an ordinary key: down, then up
        int events = 2;
        if (IsScriptModifier(code)) {
            bool& toggle = toggles[code == VK_SHIFT ? 0 : code == VK_CONTROL ? 1 : code == VK_MENU ? 2 : 3];
            toggle = !toggle;
            up[0] = !toggle;
            events = 1;
        }
        for (int e = 0; e < events; ++e) {
            if (code == kBeginHold || code == kEndHold) {
                hold_ = code == kBeginHold;
                continue;
            }
            if (!hold_) {
                Send(code, up[e]);
                continue;
            }
            if (up[e])
                continue;  // hold mode drops releases
            if (std::find(holdList_.begin(), holdList_.end(), code) != holdList_.end()) {
                if (!IsModifierKey(code))
                    Send(code, false);
            } else if (holdList_.size() < kHoldListCapacity) {
                holdList_.push_back(code);
                Send(code, false);
            }
        }
    }
}

void KeyModel::ReleaseAll() {
    while (!holdList_.empty()) {
        Send(holdList_.back(), true);
        holdList_.pop_back();
    }
}

std::set<BYTE> KeysDownNow() {
    std::set<BYTE> down;
    for (int vk = 0; vk < 256; ++vk) {
        if ((GetAsyncKeyState(vk) & 0x8000) == 0)
            continue;
        if (vk == VK_LSHIFT || vk == VK_RSHIFT)
            down.insert(VK_SHIFT);
        else if (vk == VK_LCONTROL || vk == VK_RCONTROL)
            down.insert(VK_CONTROL);
        else if (vk == VK_LMENU || vk == VK_RMENU)
            down.insert(VK_MENU);
        else
            down.insert(static_cast<BYTE>(vk));
    }
    return down;
}

std::string KeyList(const std::set<BYTE>& keys) {
    std::string text = "{";
    for (BYTE vk : keys) {
        char item[8];
        snprintf(item, sizeof item, "%s0x%02X", text.size() > 1 ? " " : "", vk);
        text += item;
    }
    return text + "}";
}

LockStates::LockStates()
    : caps((GetKeyState(VK_CAPITAL) & 1) != 0), num((GetKeyState(VK_NUMLOCK) & 1) != 0),
      scroll((GetKeyState(VK_SCROLL) & 1) != 0) {}

void LockStates::Restore() const {
    const LockStates now;
    auto tap = [](BYTE vk) {
        keybd_event(vk, static_cast<BYTE>(MapVirtualKeyW(vk, 0)), 0, 0);
        keybd_event(vk, static_cast<BYTE>(MapVirtualKeyW(vk, 0)), KEYEVENTF_KEYUP, 0);
    };
    if (now.caps != caps)
        tap(VK_CAPITAL);
    if (now.num != num)
        tap(VK_NUMLOCK);
    if (now.scroll != scroll)
        tap(VK_SCROLL);
}

}  // namespace keytest
