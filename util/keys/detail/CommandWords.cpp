// The command words of the script language: window messages and menu commands for the foreground window.
// They are carried out before the script is parsed, and a script that holds one types nothing.
#include "keys/detail/KeysInternal.h"
#include "keys/detail/NumberScan.h"

#include <cwchar>
#include <cwctype>
#include <string>

namespace tav::keys::detail {

namespace {

// A word is copied into a buffer of this size. The command words have at most 12 characters; a longer
// word is kept only as far as the buffer goes (it cannot match), and reading goes on after its real end.
constexpr size_t kMaxWord = 31;

// Reads the whitespace-delimited word at `p` (as "%s" would) into `word`; returns the position after it.
const wchar_t* ReadWord(const wchar_t* p, wchar_t (&word)[kMaxWord + 1]) {
    while (*p != L'\0' && iswspace(*p))
        ++p;
    size_t length = 0;
    for (; *p != L'\0' && !iswspace(*p); ++p)
        if (length < kMaxWord)
            word[length++] = *p;
    word[length] = L'\0';
    return p;
}

// The same for a word whose end is already known: copies at most kMaxWord characters of it.
void ReadWord(const wchar_t* p, wchar_t (&word)[kMaxWord + 1], const wchar_t* end) {
    size_t length = 0;
    for (; p != end && length < kMaxWord; ++p)
        word[length++] = *p;
    word[length] = L'\0';
}

bool Is(const wchar_t* word, const wchar_t* command) { return _wcsicmp(word, command) == 0; }

// Opens the window's menu as a click would and chooses item `item` of pop-up `top`.
SKERR ChooseMenuItem(HWND window, int top, int item) {
    HMENU menu = GetMenu(window);
    if (menu == nullptr || !IsMenu(menu))
        return SKERR_MENUFAILED;
    SendMessageW(window, WM_INITMENU, reinterpret_cast<WPARAM>(menu), 0);
    SendMessageW(window, WM_MENUSELECT, static_cast<WPARAM>(static_cast<DWORD>(top) | 0x80900000u),
                 reinterpret_cast<LPARAM>(menu));
    HMENU popup = GetSubMenu(menu, top);
    if (popup == nullptr || !IsMenu(popup))
        return SKERR_MENUFAILED;
    SendMessageW(window, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup), top);
    UINT id = GetMenuItemID(popup, item);
    if (id == static_cast<UINT>(-1))
        return SKERR_MENUFAILED;
    PostMessageW(window, WM_MENUSELECT, (id & 0xFFFF) | 0x80800000u, reinterpret_cast<LPARAM>(popup));
    PostMessageW(window, WM_MENUSELECT, 0xFFFF0000u, 0);
    PostMessageW(window, WM_COMMAND, id, 0);
    return SKERR_COMMANDDONE;
}

// The text after a word up to the next '{' (which starts the next word). No number reader after a command
// word ("%x", "%x %x %x", "%d %d", read as swscanf reads them: keys/detail/NumberScan.h) can read a '{', so the
// answers on this copy are those on the whole rest of the script; but the cost no longer grows with the
// script's length (the runtime's swscanf measured the whole string it was given: done at every brace, that made
// the scan quadratic). The copies of successive words do not overlap.
std::wstring NumberText(const wchar_t* rest) {
    const wchar_t* end = rest;
    while (*end != L'\0' && *end != L'{')
        ++end;
    return std::wstring(rest, end);
}

// The word at a position, the text after it and the number read there. Positions inside one word share its
// end and what follows it: they read them once. (Reading the same text again would give the same number,
// or leave it as it is.)
struct WordScanner {
    const wchar_t* wordEnd = nullptr;  // the end of the word last read (a blank or the terminator)
    std::wstring numberText;           // the number text after it

    // Reads the word at `position` and returns the number text after it.
    const std::wstring& Read(const wchar_t* position, wchar_t (&word)[kMaxWord + 1], unsigned& number) {
        if (wordEnd != nullptr && position < wordEnd) {
            ReadWord(position, word, wordEnd);
            return numberText;
        }
        wordEnd = ReadWord(position, word);
        numberText = NumberText(wordEnd);
        ScanHex(numberText.c_str(), number);
        return numberText;
    }
};

// Reads the command word at `position`, if there is one there (kind None otherwise). `number` is the
// hexadecimal number after the word; it keeps the value of an earlier position when none follows (as it
// always has).
CommandWord ReadWordAt(const wchar_t* position, WordScanner& scanner, unsigned& number) {
    wchar_t word[kMaxWord + 1] = L"";
    const wchar_t* rest = scanner.Read(position, word, number).c_str();
    CommandWord command;
    command.at = position;
    if (Is(word, L"{PostCommand") || Is(word, L"{SendCommand")) {
        command.kind = Is(word, L"{PostCommand") ? CommandWord::PostCommand : CommandWord::SendCommand;
        command.number = number;
    } else if (Is(word, L"{SendMessage") || Is(word, L"{PostMessage")) {
        // Missing values are 0 (the message itself is the number read above).
        command.kind = Is(word, L"{SendMessage") ? CommandWord::SendMessage : CommandWord::PostMessage;
        command.number = number;
        ScanThreeHex(rest, command.number, command.wParam, command.lParam);
    } else if (Is(word, L"{Menu")) {
        command.kind = CommandWord::Menu;
        ScanTwoDecimal(rest, command.top, command.item);  // missing indexes are 0
    }
    return command;
}

SKERR CarryOut(HWND window, const CommandWord& command) {
    switch (command.kind) {
    case CommandWord::PostCommand: PostMessageW(window, WM_COMMAND, command.number, 0); break;
    case CommandWord::SendCommand: SendMessageW(window, WM_COMMAND, command.number, 0); break;
    case CommandWord::SendMessage:
        SendMessageW(window, command.number, command.wParam, static_cast<LPARAM>(command.lParam));
        break;
    case CommandWord::PostMessage:
        PostMessageW(window, command.number, command.wParam, static_cast<LPARAM>(command.lParam));
        break;
    case CommandWord::Menu: return ChooseMenuItem(window, command.top, command.item);
    case CommandWord::None: return SKERR_NONE;
    }
    return SKERR_COMMANDDONE;
}

// Calls `visit` with the word at the script's start and at every '{', so command words may stand anywhere,
// until it returns false.
template <typename Visit> void ForEachWordPosition(const wchar_t* script, Visit visit) {
    unsigned number = 0;
    WordScanner scanner;
    for (const wchar_t* position = script; position != nullptr && *position != L'\0';
         position = wcschr(position + 1, L'{'))
        if (!visit(ReadWordAt(position, scanner, number)))
            return;
}

}  // namespace

SKERR CarryOutCommandWords(const wchar_t* script) {
    // The commands go to the foreground window; while there is none (a switch in progress), wait for one.
    HWND window = GetForegroundWindow();
    while (window == nullptr) {
        Sleep(0);
        window = GetForegroundWindow();
    }
    SKERR result = SKERR_NONE;
    ForEachWordPosition(script, [&](const CommandWord& command) {
        SKERR done = CarryOut(window, command);
        if (done == SKERR_MENUFAILED) {
            result = done;
            return false;
        }
        if (done == SKERR_COMMANDDONE)
            result = done;
        return true;
    });
    return result;
}

std::vector<CommandWord> FindCommandWords(const wchar_t* script) {
    std::vector<CommandWord> found;
    ForEachWordPosition(script, [&](const CommandWord& command) {
        if (command.kind != CommandWord::None)
            found.push_back(command);
        return true;
    });
    return found;
}

}  // namespace tav::keys::detail
