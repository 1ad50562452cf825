// Verbs of keystroke synthesis: send a script (or only parse it and show its key queue), escape literal
// text, release held keys, and a screenshot of the screen to show what a script typed.
#include "Cli.h"
#include "Json.h"
#include "Png.h"

#include <TavUtil.h>

#include <algorithm>
#include <cstdint>
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
std::vector<std::wstring> QueueItems() {
    const tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
    bool down[4] = {false, false, false, false};
    const WORD modifiers[4] = {VK_SHIFT, VK_CONTROL, VK_MENU, VK_LWIN};
    const wchar_t* modifierNames[4] = {L"Shift", L"Control", L"Alt", L"Windows"};
    std::vector<std::wstring> items;
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
        items.push_back(item);
    }
    return items;
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

// The longest pause between keys a command line may ask for (the longest wait is cli::kMaximumDelayMs).
const int kMaximumPerKeyMs = 10000;

std::wstring Entries(size_t count) { return std::to_wstring(count) + (count == 1 ? L" entry" : L" entries"); }

// keys --check --json and keys --dry-run --json: what the check found, as members of `record`.
void AddCheck(cli::Json& record, const std::wstring& script, const tav::keys::ScriptCheck& check) {
    record["script"] = cli::Narrow(script);
    record["valid"] = check.result == SKERR_NONE;
    record["result"] = static_cast<int>(check.result);
    record["result text"] = cli::Narrow(cli::ResultText(TAV_RESULT_SKERR, check.result));
    record["offset"] = static_cast<long long>(check.offset);
    record["message"] = cli::Narrow(check.message);
    record["command words"] = check.commandWords;
}

// keys --check: the check's sentence, and for an error the script with a caret under the failed item.
int PrintCheck(const std::wstring& script, bool json) {
    const tav::keys::ScriptCheck check = tav::keys::CheckKeyScript(script.c_str());
    if (json) {
        cli::Json record;
        AddCheck(record, script, check);
        cli::OutJson(record);
    } else {
        cli::OutLine(check.message);
        if (check.result != SKERR_NONE)
            cli::OutLine(ScriptWithCaret(script, check.offset));
    }
    return check.result == SKERR_NONE ? cli::kDone : cli::kNotFound;
}

// keys --dry-run: the key queue the script gives. A script that will type nothing shows no queue: what it
// does instead, or why nothing is typed.
int PrintDryRun(const std::wstring& script, bool json) {
    const tav::keys::ScriptCheck checked = tav::keys::CheckKeyScript(script.c_str());
    std::vector<std::wstring> queue;
    SKERR parsed = checked.result;
    if (!checked.commandWords && checked.result == SKERR_NONE) {
        parsed = tav::keys::ParseKeyScript(script.c_str());
        queue = QueueItems();
    }
    if (json) {
        cli::Json record;
        AddCheck(record, script, checked);
        record["types"] = !checked.commandWords && parsed == SKERR_NONE;
        cli::Json items = cli::Json::array();
        for (const std::wstring& item : queue)
            items.push_back(cli::Narrow(item));
        record["queue"] = items;
        cli::OutJson(record);
    } else if (checked.commandWords) {
        cli::OutLine(checked.message);
    } else if (checked.result != SKERR_NONE) {
        cli::OutLine(L"nothing will be typed: " + checked.message);
        cli::OutLine(ScriptWithCaret(script, checked.offset));
        cli::OutLine(ResultLine(checked.result));
    } else {
        std::wstring items;
        for (const std::wstring& item : queue)
            items += (items.empty() ? L"" : L", ") + item;
        cli::OutLine(queue.empty() ? std::wstring(L"key queue: empty")
                                   : L"key queue (" + Entries(queue.size()) + L"): " + items);
        cli::OutLine(ResultLine(parsed));
    }
    return parsed == SKERR_NONE ? cli::kDone : cli::kNotFound;
}

// The typing options of keys and type: --per-key paces the keys, --hold keeps each key down that long,
// --wait-release waits up to MS for the user to let go of the modifiers, --release-modifiers releases those the
// user holds and puts back those still held.
tav::keys::SendOptions TypingOptions(const cli::Call& call) {
    tav::keys::SendOptions send;
    send.keyDelayMs = static_cast<DWORD>(call.Number(L"--per-key", 0, 0, kMaximumPerKeyMs));
    send.keyHoldMs = static_cast<DWORD>(call.Number(L"--hold", 0, 0, kMaximumPerKeyMs));
    if (call.Has(L"--wait-release")) {
        send.flags |= tav::keys::kSendWaitForRelease;
        send.waitReleaseMs = static_cast<DWORD>(call.Number(L"--wait-release", 0, 0, cli::kMaximumDelayMs));
    }
    if (call.Has(L"--release-modifiers"))
        send.flags |= tav::keys::kSendReleaseModifiers;
    return send;
}

int RunKeys(const cli::Call& call) {
    const cli::Args& args = call.args;
    const int delay = call.Number(L"--delay", 0, 0, cli::kMaximumDelayMs);
    const tav::keys::SendOptions typing = TypingOptions(call);
    const bool json = call.Has(L"--json");
    cli::RequireCount(args, 1, 1);
    const std::wstring& script = args[0];
    if (call.Has(L"--check") && call.Has(L"--dry-run"))
        throw cli::UsageError("--check and --dry-run exclude each other");
    if (call.Has(L"--check"))
        return PrintCheck(script, json);
    if (call.Has(L"--dry-run"))
        return PrintDryRun(script, json);
    if (json)
        throw cli::UsageError("--json is for --check and --dry-run");
    if (delay > 0)
        Sleep(static_cast<DWORD>(delay));
    // The library's own run, as SendKeys does it, with the report SendKeys keeps to itself.
    const tav::keys::KeyRunReport report = tav::keys::CarryOutKeyScript(script.c_str(), typing);
    cli::OutLine(report.commandWords ? std::wstring(L"result: command words carried out") : ResultLine(report.result));
    if (call.Has(L"--show")) {
        Sleep(300);
        cli::OutLine(L"the focused window shows: \"" + FocusedText() + L"\"");
    }
    // The hold list ends with this process: what a script held is released here, or nothing ever could.
    if (int held = tav::keys::TheHoldList().Count()) {
        SendKeys_ReleaseAll();
        cli::OutLine(L"released " + std::to_wstring(held) + (held == 1 ? L" held key" : L" held keys") + L" at exit");
    }
    return report.result == SKERR_NONE ? cli::kDone : cli::kNotFound;
}

// --delay waits before typing (time to bring the target to the front), as for keys; the typing options as for keys.
int RunType(const cli::Call& call) {
    const cli::Args& args = call.args;
    const int delay = call.Number(L"--delay", 0, 0, cli::kMaximumDelayMs);
    const tav::keys::SendOptions typing = TypingOptions(call);
    cli::RequireCount(args, 1, 1);
    if (delay > 0)
        Sleep(static_cast<DWORD>(delay));
    SKERR sent = SendTextEx(args[0].c_str(), typing);
    cli::OutLine(ResultLine(sent));
    return sent == SKERR_NONE ? cli::kDone : cli::kNotFound;
}

int RunEscape(const cli::Call& call) {
    cli::RequireCount(call.args, 1, 1);
    CString text(call.args[0].c_str());
    SendKeysRemoveSpecialChars(text);
    cli::OutLine(text.str());
    return cli::kDone;
}

int RunReleaseAll(const cli::Call& call) {
    cli::RequireCount(call.args, 0, 0);
    // The hold list belongs to this process: a new tavutil holds nothing, so this shows the call only.
    int held = tav::keys::TheHoldList().Count();
    SendKeys_ReleaseAll();
    cli::OutLine(L"released the keys held by this process: " + (held == 0 ? L"none" : std::to_wstring(held)) +
                 L" (keys held by another program's scripts are released only by that program)");
    return cli::kDone;
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

int RunScreenshot(const cli::Call& call) {
    const cli::Args& args = call.args;
    cli::RequireCount(args, 1, 1);
    int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    std::vector<uint8_t> rows = width > 0 && height > 0 ? CaptureScreenRows(width, height) : std::vector<uint8_t>();
    if (rows.empty())
        return cli::Fail(L"the screen could not be read");
    std::vector<uint8_t> png = cli::EncodePng(width, height, rows);
    // A file that cannot be made (a missing folder, no right to write) is refused by the system: status 1.
    tav::UniqueFile file(
        CreateFileW(args[0].c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        const DWORD error = GetLastError();
        return cli::Fail(L"cannot write " + args[0] + L": " +
                         cli::ResultText(TAV_RESULT_WIN32, static_cast<int32_t>(error)) + L" (Windows error " +
                         std::to_wstring(error) + L")");
    }
    DWORD written = 0;
    if (!WriteFile(file.get(), png.data(), static_cast<DWORD>(png.size()), &written, nullptr) ||
        written != png.size()) {
        const DWORD error = GetLastError();
        return cli::Fail(L"cannot write " + args[0] + L": " +
                         cli::ResultText(TAV_RESULT_WIN32, static_cast<int32_t>(error)));
    }
    cli::OutLine(L"saved " + std::to_wstring(width) + L"x" + std::to_wstring(height) + L" screenshot to " + args[0]);
    return cli::kDone;
}

cli::VerbRegistration keys{
    {L"keys",
     L"keys [--delay MS] [--per-key MS] [--hold MS] [--wait-release MS] [--release-modifiers] [--show] "
     L"[--dry-run|--check] [--json] SCRIPT",
     L"type a keystroke script into the focused window (--dry-run: show its key queue; --check: say what is "
     L"wrong with it, or what it does)",
     &RunKeys,
     L"--delay=MS --per-key=MS --hold=MS --wait-release=MS --release-modifiers --show --dry-run --check --json",
     L"--delay waits MS milliseconds first (time to bring the target to the front), --per-key pauses\n"
     L"between keys, --show prints what the focused control shows afterwards. --dry-run only parses the\n"
     L"script and shows its key queue; --check says what is wrong and where (a caret under it), or what the\n"
     L"script will do; neither types anything, and --json gives their answer as a JSON object. A script\n"
     L"that starts with \"-\" follows \"--\".\n\nexamples:\n"
     L"  tavutil keys --delay 2000 \"Dear Sir,~\"\n  tavutil keys --check \"abc{ENTR}\"\n"
     L"  tavutil keys --dry-run --json \"+(hi) there~{TAB 2}\"\n  tavutil keys -- \"-- signature --\"",
     L"the script is not valid, or not every key could be sent"}};
cli::VerbRegistration type{
    {L"type", L"type [--delay MS] [--per-key MS] [--hold MS] [--wait-release MS] [--release-modifiers] TEXT",
     L"type TEXT literally into the focused window, whatever the keyboard layout", &RunType,
     L"--delay=MS --per-key=MS --hold=MS --wait-release=MS --release-modifiers",
     L"Every character is typed as it is: braces, +, ^, % and ~ have no meaning here. The typing\n"
     L"options are those of keys (see tavutil keys --help).\n\n"
     L"examples:\n  tavutil type --delay 2000 \"50% off {today}\"\n  tavutil type -- -x",
     L"not every key could be sent"}};
cli::VerbRegistration escape{{L"escape", L"escape TEXT", L"TEXT escaped so that a keystroke script types it literally",
                              &RunEscape, L"", L"examples:\n  tavutil escape \"50% (a+b) {x}\"",
                              L"(not used by this verb)"}};
cli::VerbRegistration releaseAll{
    {L"release-all", L"release-all", L"release the keys held by this process (from a shell: none)", &RunReleaseAll, L"",
     L"Keys that a script holds belong to the process that sent it, and are released there; a new tavutil\n"
     L"holds none, so from a shell this only shows the call.\n\nexamples:\n  tavutil release-all",
     L"(not used by this verb)"}};
cli::VerbRegistration screenshot{{L"screenshot", L"screenshot FILE.png", L"save the screen as a PNG", &RunScreenshot,
                                  L"", L"examples:\n  tavutil screenshot 'C:\\users\\Public\\screen.png'",
                                  L"the screen could not be read or the file not written"}};

}  // namespace
