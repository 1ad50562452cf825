// Verbs of keystroke synthesis: send a script (or only parse it and show its key queue), escape literal
// text, release held keys, and a screenshot of the screen to show what a script typed.
#include "Cli.h"
#include "Png.h"

#include <TavUtil.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <vector>

namespace {

std::wstring ResultLine(SKERR result) {
    return L"result: " + std::to_wstring(result) + L" (" + cli::ResultText(TAV_RESULT_SKERR, result) + L")";
}

// A readable name of a queued key: the script's own key name, the character the key types, or its code.
std::wstring KeyName(WORD code) {
    static const wchar_t* const names[] = {L"ENTER", L"TAB",   L"ESC",      L"BACKSPACE", L"DELETE",    L"INSERT",
                                           L"LEFT",  L"RIGHT", L"UP",       L"DOWN",      L"PGUP",      L"PGDN",
                                           L"HOME",  L"END",   L"CAPSLOCK", L"NUMLOCK",   L"SCROLLOCK", L"HELP",
                                           L"PRTSC", L"CLEAR", L"SLEEP"};
    for (const wchar_t* name : names)
        if (tav::keys::LookupKeyName(name) == code)
            return name;
    if (code >= VK_F1 && code <= VK_F16)
        return L"F" + std::to_wstring(code - VK_F1 + 1);
    UINT ch = MapVirtualKeyW(code, MAPVK_VK_TO_CHAR) & 0xFFFF;
    if (code == VK_SPACE)
        return L"SPACE";
    if (ch > L' ')
        return std::wstring(1, static_cast<wchar_t>(ch));
    wchar_t hex[16];
    swprintf(hex, 16, L"key %02X", code);
    return hex;
}

// The queue as the player will press it: a modifier's first occurrence presses it, the next releases it.
std::wstring DescribeQueue() {
    const tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
    bool down[4] = {false, false, false, false};
    const WORD modifiers[4] = {VK_SHIFT, VK_CONTROL, VK_MENU, VK_LWIN};
    const wchar_t* modifierNames[4] = {L"Shift", L"Control", L"Alt", L"Windows"};
    std::wstring text;
    for (int i = 0; i < queue.Count(); ++i) {
        WORD code = queue.At(i);
        std::wstring item;
        if (code == tav::keys::kBeginHold)
            item = L"hold begin";
        else if (code == tav::keys::kEndHold)
            item = L"hold end";
        for (int m = 0; m < 4 && item.empty(); ++m)
            if (code == modifiers[m]) {
                down[m] = !down[m];
                item = std::wstring(modifierNames[m]) + (down[m] ? L" down" : L" up");
            }
        if (item.empty())
            item = KeyName(code);
        text += (text.empty() ? L"" : L", ") + item;
    }
    return text;
}

// The script on one line with a caret under the item at `offset` (UTF-16 units): control characters show
// as blanks and a surrogate pair takes one column, so that the caret stands under its item.
std::wstring ScriptWithCaret(const std::wstring& script, ptrdiff_t offset) {
    std::wstring line, caret;
    for (size_t i = 0; i < script.size(); ++i) {
        const bool secondHalf = i > 0 && IS_SURROGATE_PAIR(script[i - 1], script[i]);
        line += script[i] < L' ' ? L' ' : script[i];
        if (static_cast<ptrdiff_t>(i) < offset && !secondHalf)
            caret += L' ';
    }
    return line + L"\n" + caret + L"^";
}

// keys --check: the check's sentence, and for an error the script with a caret under the failed item.
int PrintCheck(const std::wstring& script) {
    const tav::keys::ScriptCheck check = tav::keys::CheckKeyScript(script.c_str());
    cli::OutLine(check.message);
    if (check.result == SKERR_NONE)
        return 0;
    cli::OutLine(ScriptWithCaret(script, check.offset));
    return 1;
}

// The text of the control that has the focus in the foreground window.
std::wstring FocusedText() {
    HWND foreground = GetForegroundWindow();
    GUITHREADINFO info = {};
    info.cbSize = sizeof(info);
    if (foreground == nullptr || !GetGUIThreadInfo(GetWindowThreadProcessId(foreground, nullptr), &info))
        return L"";
    HWND focus = info.hwndFocus != nullptr ? info.hwndFocus : foreground;
    std::vector<wchar_t> buffer(65536, L'\0');
    SendMessageTimeoutW(focus, WM_GETTEXT, buffer.size(), reinterpret_cast<LPARAM>(buffer.data()), SMTO_ABORTIFHUNG,
                        2000, nullptr);
    return buffer.data();
}

// The typing options of keys and type: --delay waits before typing (time to bring the target to the front),
// --per-key paces the keys, --hold keeps each key down that long, --wait-release waits up to MS for the user to
// let go of the modifiers, --release-modifiers releases those the user holds and puts back those still held.
struct TypingOptions {
    int delay = 0;
    tav::keys::SendOptions send;
};

TypingOptions TakeTypingOptions(cli::Args& args) {
    TypingOptions typing;
    if (cli::TakeFlag(args, L"--release-modifiers"))
        typing.send.flags |= tav::keys::kSendReleaseModifiers;
    int perKey = 0, hold = 0, waitRelease = -1;
    while (cli::TakeLeadingMilliseconds(args, L"--delay", typing.delay) ||
           cli::TakeLeadingMilliseconds(args, L"--per-key", perKey) ||
           cli::TakeLeadingMilliseconds(args, L"--hold", hold) ||
           cli::TakeLeadingMilliseconds(args, L"--wait-release", waitRelease)) {
    }
    typing.send.keyDelayMs = static_cast<DWORD>(perKey);
    typing.send.keyHoldMs = static_cast<DWORD>(hold);
    if (waitRelease >= 0) {
        typing.send.flags |= tav::keys::kSendWaitForRelease;
        typing.send.waitReleaseMs = static_cast<DWORD>(waitRelease);
    }
    return typing;
}

int RunKeys(const cli::Args& arguments) {
    cli::Args args = arguments;
    bool dryRun = cli::TakeFlag(args, L"--dry-run");
    bool show = cli::TakeFlag(args, L"--show");
    bool check = cli::TakeFlag(args, L"--check");
    const TypingOptions typing = TakeTypingOptions(args);
    const int delay = typing.delay;
    cli::RequireCount(args, 1, 1);
    const std::wstring& script = args[0];
    if (check)
        return PrintCheck(script);
    if (dryRun) {
        // A script that will type nothing shows no queue: what it does instead, or why nothing is typed.
        const tav::keys::ScriptCheck checked = tav::keys::CheckKeyScript(script.c_str());
        if (checked.commandWords) {
            cli::OutLine(checked.message);
            return 0;
        }
        if (checked.result != SKERR_NONE) {
            cli::OutLine(L"nothing will be typed: " + checked.message);
            cli::OutLine(ScriptWithCaret(script, checked.offset));
            cli::OutLine(ResultLine(checked.result));
            return 1;
        }
        SKERR parsed = tav::keys::ParseKeyScript(script.c_str());
        cli::OutLine(L"queue (" + std::to_wstring(tav::keys::TheKeyQueue().Count()) + L" entries): " + DescribeQueue());
        cli::OutLine(ResultLine(parsed));
        return parsed == SKERR_NONE ? 0 : 1;
    }
    if (delay > 0)
        Sleep(static_cast<DWORD>(delay));
    // The library's own run, as SendKeys does it, with the report SendKeys keeps to itself.
    const tav::keys::KeyRunReport report = tav::keys::CarryOutKeyScript(script.c_str(), typing.send);
    cli::OutLine(report.commandWords ? std::wstring(L"result: command words carried out") : ResultLine(report.result));
    if (show) {
        Sleep(300);
        cli::OutLine(L"the focused window shows: \"" + FocusedText() + L"\"");
    }
    // The hold list ends with this process: what a script held is released here, or nothing ever could.
    if (int held = tav::keys::TheHoldList().Count()) {
        SendKeys_ReleaseAll();
        cli::OutLine(L"released " + std::to_wstring(held) + L" held keys at exit");
    }
    return report.result == SKERR_NONE ? 0 : 1;
}

// The typing options as for keys (TakeTypingOptions).
int RunType(const cli::Args& arguments) {
    cli::Args args = arguments;
    const TypingOptions typing = TakeTypingOptions(args);
    cli::RequireCount(args, 1, 1);
    if (typing.delay > 0)
        Sleep(static_cast<DWORD>(typing.delay));
    SKERR sent = SendTextEx(args[0].c_str(), typing.send);
    cli::OutLine(ResultLine(sent));
    return sent == SKERR_NONE ? 0 : 1;
}

int RunEscape(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    CString text(args[0].c_str());
    SendKeysRemoveSpecialChars(text);
    cli::OutLine(text.str());
    return 0;
}

int RunReleaseAll(const cli::Args& args) {
    cli::RequireCount(args, 0, 0);
    // The hold list belongs to this process: a new tavutil holds nothing, so this shows the call only.
    int held = tav::keys::TheHoldList().Count();
    SendKeys_ReleaseAll();
    cli::OutLine(L"released " + std::to_wstring(held) + L" held keys");
    return 0;
}

// The screen's pixels as PNG rows: each row a filter byte (none) and then red, green, blue per pixel.
// Empty when the screen cannot be read.
std::vector<uint8_t> CaptureScreenRows(int width, int height) {
    tav::UniqueWindowDc screen(nullptr);
    if (!screen)
        return {};
    tav::UniqueMemoryDc memory(CreateCompatibleDC(screen.get()));
    if (!memory)
        return {};
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    tav::UniqueGdiObject bitmap(CreateDIBSection(screen.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!bitmap || bits == nullptr)
        return {};
    tav::SelectionGuard selection(memory.get(), bitmap.get());
    if (!selection.selected() || !BitBlt(memory.get(), 0, 0, width, height, screen.get(), 0, 0, SRCCOPY))
        return {};
    GdiFlush();
    std::vector<uint8_t> rows;
    rows.reserve(static_cast<size_t>(height) * (width * 3 + 1));
    const auto* pixels = static_cast<const uint8_t*>(bits);
    for (int y = 0; y < height; ++y) {
        rows.push_back(0);  // no filter
        for (int x = 0; x < width; ++x) {
            const uint8_t* p = pixels + (static_cast<size_t>(y) * width + x) * 4;
            rows.insert(rows.end(), {p[2], p[1], p[0]});
        }
    }
    return rows;
}

int RunScreenshot(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    std::vector<uint8_t> rows = width > 0 && height > 0 ? CaptureScreenRows(width, height) : std::vector<uint8_t>();
    if (rows.empty()) {
        cli::Err(L"tavutil: the screen could not be read\n");
        return 1;
    }
    std::vector<uint8_t> png = cli::EncodePng(width, height, rows);
    std::ofstream file(args[0].c_str(), std::ios::binary);
    file.write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
    if (!file)
        throw cli::UsageError("cannot write " + cli::Narrow(args[0]));
    cli::OutLine(L"saved " + std::to_wstring(width) + L"x" + std::to_wstring(height) + L" screenshot to " + args[0]);
    return 0;
}

cli::VerbRegistration keys{
    {L"keys",
     L"keys [--delay MS] [--per-key MS] [--hold MS] [--wait-release MS] [--release-modifiers] [--show] "
     L"[--dry-run] [--check] SCRIPT",
     L"type a keystroke script into the focused window (--dry-run: show its key queue; --check: say what is "
     L"wrong with it, or what it does)",
     &RunKeys}};
cli::VerbRegistration type{
    {L"type", L"type [--delay MS] [--per-key MS] [--hold MS] [--wait-release MS] [--release-modifiers] TEXT",
     L"type TEXT literally into the focused window, whatever the keyboard layout", &RunType}};
cli::VerbRegistration escape{
    {L"escape", L"escape TEXT", L"TEXT escaped so that a keystroke script types it literally", &RunEscape}};
cli::VerbRegistration releaseAll{
    {L"release-all", L"release-all", L"release the keys a held script left pressed", &RunReleaseAll}};
cli::VerbRegistration screenshot{{L"screenshot", L"screenshot FILE.png", L"save the screen as a PNG", &RunScreenshot}};

}  // namespace
