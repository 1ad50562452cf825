// The parser of the keystroke script language: script text in, key queue out. It sends nothing.
#include "keys/KeyStages.h"
#include "keys/detail/NumberScan.h"
#include "keys/SendKeys.h"

#include "keys/detail/KeysInternal.h"

#include <cwchar>
#include <array>
#include <vector>

namespace tav::keys {

namespace {

struct KeyName {
    WORD code;
    const wchar_t* name;
};

// The key names of the script language, compared without regard to case. Three rows look odd and are
// intended: BREAK is the Control key (a lone {BREAK} toggles Control and leaves it down), SLEEP is the
// keyboard's Sleep key, and QUEUESYNC is accepted and types nothing.
const KeyName kKeyNames[] = {
    {0xFFFF, L"QUEUESYNC"}, {0x14, L"CAPSLOCK"}, {0x90, L"NUMLOCK"},   {0x91, L"SCROLLOCK"}, {0x1B, L"ESCAPE"},
    {0x1B, L"ESC"},         {0x0D, L"ENTER"},    {0x2F, L"HELP"},      {0x2C, L"PRTSC"},     {0x09, L"TAB"},
    {0x11, L"BREAK"},       {0x0C, L"CLEAR"},    {0x08, L"BACKSPACE"}, {0x08, L"BS"},        {0x08, L"BKSP"},
    {0x2E, L"DELETE"},      {0x2E, L"DEL"},      {0x2D, L"INSERT"},    {0x25, L"LEFT"},      {0x27, L"RIGHT"},
    {0x26, L"UP"},          {0x28, L"DOWN"},     {0x21, L"PGUP"},      {0x22, L"PGDN"},      {0x24, L"HOME"},
    {0x23, L"END"},         {0x70, L"F1"},       {0x71, L"F2"},        {0x72, L"F3"},        {0x73, L"F4"},
    {0x74, L"F5"},          {0x75, L"F6"},       {0x76, L"F7"},        {0x77, L"F8"},        {0x78, L"F9"},
    {0x79, L"F10"},         {0x7A, L"F11"},      {0x7B, L"F12"},       {0x7C, L"F13"},       {0x7D, L"F14"},
    {0x7E, L"F15"},         {0x7F, L"F16"},      {0x5F, L"SLEEP"},     {0, nullptr},
};

// The brace name is copied into a buffer of this size. Longer names cannot be in the table (its longest
// name has 9 characters) and are not single characters, so they are rejected without being copied.
constexpr size_t kMaxBraceName = 15;

// Internal result of starting an item: a group or modifier frame was opened and waits for its next item.
constexpr int kNeedItem = -1;

bool IsBlank(wchar_t ch) { return ch == L' '; }

// Items that contain items (modifiers and groups) are kept on an explicit stack rather than on the
// machine stack, so that a script of any nesting depth is parsed without running out of stack.
struct Frame {
    enum Kind { Modifier, Group } kind;
    WORD code;          // the modifier's key code
    const wchar_t* at;  // where the modifier or the '(' stands
};

class ScriptParser {
public:
    explicit ScriptParser(detail::KeyState& state) : state_(state), cursor_(state.cursor) {}

    // Parses one item at the cursor and advances past it. On an error, the state's `failedAt` is the item
    // that failed: the innermost one, or the group that reached the end of the script.
    SKERR ParseItem() {
        std::vector<Frame> frames;
        int result = StartItem(frames);
        for (;;) {
            if (result > 0 && state_.failedAt == nullptr)
                state_.failedAt = itemAt_;
            if (result == kNeedItem) {
                result = StartItem(frames);
                continue;
            }
            if (frames.empty())
                return static_cast<SKERR>(result);
            result = FinishItemOf(frames, static_cast<SKERR>(result));
        }
    }

private:
    int StartItem(std::vector<Frame>& frames) {
        itemAt_ = cursor_;
        wchar_t ch = *cursor_++;
        switch (ch) {
        case L'\0':
            --cursor_;  // stay on the terminator
            return SKERR_NONE;
        case L'+': return StartModifier(frames, VK_SHIFT);
        case L'^': return StartModifier(frames, VK_CONTROL);
        case L'%': return StartModifier(frames, VK_MENU);
        case L'*': return StartModifier(frames, VK_LWIN);
        case L'(':
            if (*cursor_ == L'\0')
                return SKERR_MISSINGCLOSEPAREN;
            frames.push_back({Frame::Group, 0, itemAt_});
            return NextInGroup(frames);
        case L'[': return Append(kBeginHold);
        case L']': return Append(kEndHold);
        case L'~': return Append(VK_RETURN);
        case L'{': return ParseBrace();
        default: return AppendKey(KeyOfCharacter(ch), 1);
        }
    }

    // A modifier covers exactly the next item: its code goes before and after it.
    int StartModifier(std::vector<Frame>& frames, WORD code) {
        if (SKERR e = Append(code))
            return e;
        frames.push_back({Frame::Modifier, code, itemAt_});
        return kNeedItem;
    }

    // The innermost open frame receives the result of its last item.
    int FinishItemOf(std::vector<Frame>& frames, SKERR itemResult) {
        Frame frame = frames.back();
        if (frame.kind == Frame::Modifier) {
            frames.pop_back();
            return itemResult != SKERR_NONE ? itemResult : FailAt(Append(frame.code), frame.at);
        }
        if (itemResult != SKERR_NONE) {
            frames.pop_back();
            if (*cursor_ == L'\0')
                return FailAt(SKERR_MISSINGCLOSEPAREN, frame.at);
            ++cursor_;
            return itemResult;
        }
        if (*cursor_ == L'\0') {
            frames.pop_back();
            return FailAt(SKERR_MISSINGCLOSEPAREN, frame.at);
        }
        return NextInGroup(frames);
    }

    // Records that the item at `at` failed with `result` (nothing for SKERR_NONE).
    SKERR FailAt(SKERR result, const wchar_t* at) {
        if (result != SKERR_NONE)
            state_.failedAt = at;
        return result;
    }

    // In a group: ')' closes it, anything else is its next item.
    int NextInGroup(std::vector<Frame>& frames) {
        if (*cursor_ == L')') {
            ++cursor_;
            frames.pop_back();
            return SKERR_NONE;
        }
        return kNeedItem;
    }

    // {NAME}, {NAME count}, {}} and {{}; the cursor stands after the '{'.
    SKERR ParseBrace() {
        WORD key = 0;
        bool closingBrace = *cursor_ == L'}';
        if (closingBrace) {
            key = KeyOfCharacter(L'}');
            ++cursor_;
        }
        const wchar_t* delimiter = wcspbrk(cursor_, L" }");
        if (delimiter == nullptr)
            return SKERR_MISSINGCLOSEBRACE;
        if (!closingBrace) {
            key = KeyOfName(cursor_, static_cast<size_t>(delimiter - cursor_));
            if (key == 0)
                return SKERR_INVALIDKEY;
        }
        int count = 1;
        if (IsBlank(*delimiter) && (!detail::ScanDecimal(delimiter, count) || count == 0))
            return SKERR_INVALIDCOUNT;
        // Whatever stands between the count and the closing brace is ignored.
        const wchar_t* close = wcschr(delimiter, L'}');
        if (close == nullptr)
            return SKERR_MISSINGCLOSEBRACE;
        cursor_ = close + 1;
        if (key == kNoKey)
            return SKERR_NONE;
        return AppendKey(key, count);
    }

    WORD KeyOfName(const wchar_t* name, size_t length) {
        if (length > kMaxBraceName)
            return 0;
        wchar_t buffer[kMaxBraceName + 1];
        wmemcpy(buffer, name, length);
        buffer[length] = L'\0';
        if (WORD code = LookupKeyName(buffer))
            return code;
        if (length == 1)
            return KeyOfCharacter(buffer[0]);
        return 0;
    }

    // The key and shift state that type `ch` on the current layout (VkKeyScanW). This thread's layout cannot change
    // in the middle of a parse, so the answers for the first 128 characters are kept for the rest of it:
    // asked for every character, the layout's answer costs more than the rest of the parse.
    WORD KeyOfCharacter(wchar_t ch) {
        if (ch >= asciiKeys_.size())
            return static_cast<WORD>(VkKeyScanW(ch));
        if (!asciiKnown_[ch]) {
            asciiKeys_[ch] = static_cast<WORD>(VkKeyScanW(ch));
            asciiKnown_[ch] = true;
        }
        return asciiKeys_[ch];
    }

    // A key as VkKeyScanW encodes it: the shift-state byte's Shift, Control and Alt around the key,
    // pressed in that order and released in the same order (not mirrored; intended). A character that
    // no key produces (0xFFFF) therefore gives Shift, Control and Alt around key 0xFF, as it always has.
    // A negative count repeats until the queue is full; the countdown is wider than the count so that
    // the most negative count does not overflow on its first step.
    SKERR AppendKey(WORD code, int count) {
        BYTE shiftState = HIBYTE(code);
        if (SKERR e = AppendShiftState(shiftState))
            return e;
        for (long long left = count; left != 0; --left)
            if (SKERR e = Append(LOBYTE(code)))
                return e;
        return AppendShiftState(shiftState);
    }

    SKERR AppendShiftState(BYTE shiftState) {
        const WORD modifiers[] = {VK_SHIFT, VK_CONTROL, VK_MENU};
        for (int bit = 0; bit < 3; ++bit)
            if ((shiftState & (1 << bit)) != 0)
                if (SKERR e = Append(modifiers[bit]))
                    return e;
        return SKERR_NONE;
    }

    SKERR Append(WORD entry) { return state_.queue.Append(entry) ? SKERR_NONE : SKERR_STRINGTOOLONG; }

    detail::KeyState& state_;
    const wchar_t*& cursor_;
    const wchar_t* itemAt_ = nullptr;  // where the item started last begins
    std::array<WORD, 128> asciiKeys_ = {};
    std::array<bool, 128> asciiKnown_ = {};
};

}  // namespace

WORD LookupKeyName(const wchar_t* name) {
    if (name == nullptr)
        return 0;
    for (const KeyName* row = kKeyNames; row->code != 0; ++row)
        if (_wcsicmp(row->name, name) == 0)
            return row->code;
    return 0;
}

namespace detail {

SKERR ParseScript(KeyState& state, const wchar_t* script) {
    state.queue.Reset();
    state.cursor = script != nullptr ? script : L"";
    state.failedAt = nullptr;
    ScriptParser parser(state);
    while (*state.cursor != L'\0') {
        state.itemStart = state.cursor;
        if (SKERR e = parser.ParseItem())
            return e;
    }
    return SKERR_NONE;
}

}  // namespace detail

// The whole script is parsed before anything is played, so an error anywhere sends nothing.
SKERR ParseKeyScript(const wchar_t* script) { return detail::ParseScript(detail::State(), script); }

}  // namespace tav::keys
