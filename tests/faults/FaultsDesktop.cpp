// Operations that need the desktop session: the clipboard, typing, window look-ups, the foreground grabber,
// event sounds and waits. A window of the run's own (an Edit with the focus) receives what is typed.
#include "Faults.h"

#include "Desktop.h"
#include "KeyTestWindows.h"
#include "RegistryFixture.h"
#include "TestSupport.h"

#include "capi/TavUtilC.h"

#include <windows.h>

#include <stdexcept>
#include <thread>

namespace faults {

keytest::EditWindow& Target() {
    static keytest::EditWindow window;
    return window;
}

Answer Typed(const std::function<int32_t()>& type) {
    const int32_t result = type();
    tavtest::Settle(Target().window());
    return {result, Target().Text()};
}

void TypeIntoTarget() {
    Target().Clear();
    tavtest::BringToFront(Target().window());
}

namespace {

Operation Op(const char* area, const char* name, std::function<Answer()> run, std::vector<Answer> neutral,
             unsigned allow = 0) {
    return Operation{area, name, std::move(run), std::move(neutral), allow, nullptr, {}, {}, false};
}

// The clipboard's text as the test reads it (not through the library).
std::wstring ClipboardText() {
    std::wstring text;
    if (!OpenClipboard(nullptr))
        return L"(not opened)";
    if (HANDLE data = GetClipboardData(CF_UNICODETEXT))
        if (const auto* chars = static_cast<const wchar_t*>(GlobalLock(data))) {
            text = chars;
            GlobalUnlock(data);
        }
    CloseClipboard();
    return text;
}

void PutOnClipboard(const wchar_t* text) {
    if (!OpenClipboard(nullptr))
        return;
    EmptyClipboard();
    const size_t bytes = (wcslen(text) + 1) * sizeof(wchar_t);
    if (HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes)) {
        memcpy(GlobalLock(block), text, bytes);
        GlobalUnlock(block);
        if (!SetClipboardData(CF_UNICODETEXT, block))
            GlobalFree(block);
    }
    CloseClipboard();
}

// The clipboard must be closed after every run: another program could not use it otherwise. Asked from a thread
// of its own, which cannot open the clipboard while this thread holds it.
void ExpectClipboardClosed() {
    bool opened = false;
    std::thread([&opened] {
        opened = OpenClipboard(nullptr) != FALSE;
        if (opened)
            CloseClipboard();
    }).join();
    if (!opened)
        throw std::runtime_error("the clipboard was left open");
}

std::wstring AppKey() { return L"AppEvents\\Schemes\\Apps\\faults"; }

// One wait of 30 ms that looks at the queue every 10 ms and ends on a command message: its status, or
// TAV_E_OUT_OF_MEMORY when no wait could be made.
int32_t WaitOnce() {
    tav_wait wait = tav_wait_create();
    if (wait == nullptr)
        return TAV_E_OUT_OF_MEMORY;
    const int32_t status = tav_wait_wait(wait, 30, 10, 1);
    tav_wait_destroy(wait);
    return status;
}

}  // namespace

void AddDesktopOperations(std::vector<Operation>& out) {
    // waits: the status tells how the wait ended. They run first: after the typing and the sounds below, a wait on
    // this thread under Wine finds a message with PeekMessageW that GetMessageW then never returns, and blocks
    // (seen with nothing failing; not followed further here).
    out.push_back(Op("waits", "wait", [] { return Answer{WaitOnce(), L""}; }, {}));
    out.back().setup = [] { tavtest::PumpMessages(); };
    // With a message already queued the wait takes it (GetMessageW) and hands it on before it waits on; a message it
    // could not take stays queued and is taken on the next turn.
    out.push_back(Op("waits", "wait_message_queued",
                     [] {
                         const int32_t status = WaitOnce();
                         MSG left;
                         const bool queued = PeekMessageW(&left, nullptr, WM_APP + 7, WM_APP + 7, PM_NOREMOVE) != FALSE;
                         return Answer{status, queued ? L"message left queued" : L""};
                     },
                     {}));
    out.back().setup = [] {
        tavtest::PumpMessages();
        PostThreadMessageW(GetCurrentThreadId(), WM_APP + 7, 0, 0);
    };
    out.back().teardown = [] { tavtest::PumpMessages(); };

    // clipboard: failures give false or an empty text; the clipboard is closed after every call.
    {
        Operation op = Op("clipboard", "get_text",
                          [] {
                              Answer answer = TextResult(
                                  [](wchar_t* b, size_t c, size_t* n) { return tav_clipboard_get_text(b, c, n); });
                              ExpectClipboardClosed();
                              return answer;
                          },
                          {{0, L""}, {1, L""}});
        op.setup = [] { PutOnClipboard(L"clipboard text"); };
        out.push_back(op);
    }
    {
        Operation op = Op("clipboard", "set_text",
                          [] {
                              const int32_t result = tav_clipboard_set_text(L"set by the library");
                              ExpectClipboardClosed();
                              return Answer{result, ClipboardText()};
                          },
                          {{0, L""}, {0, L"before"}});
        op.setup = [] { PutOnClipboard(L"before"); };
        out.push_back(op);
    }

    // keys: the results of keybd_event, SendInput and MapVirtualKeyW are ignored, so a refused call types less;
    // no key may stay down (checked after every run).
    for (const auto& [name, script] : {std::pair<const char*, const wchar_t*>{"send_keys", L"ab+c{LEFT}d"},
                                       std::pair<const char*, const wchar_t*>{"send_keys_held", L"[+]x"}}) {
        const std::wstring text = script;
        Operation op = Op("keys", name, [text] { return Typed([&text] { return tav_send_keys(text.c_str()); }); }, {});
        op.allow = kAnyText;
        op.setup = [] {
            Target().Clear();
            tavtest::BringToFront(Target().window());
        };
        op.teardown = [] { tav_send_keys_release_all(); };
        out.push_back(op);
    }
    {
        Operation op = Op("keys", "send_text", [] { return Typed([] { return tav_send_text(L"Text \u00e9!"); }); }, {});
        op.allow = kAnyText;
        op.setup = [] {
            Target().Clear();
            tavtest::BringToFront(Target().window());
        };
        out.push_back(op);
    }

    // windows: null answers where the look-up fails.
    out.push_back(Op("windows", "focus_window",
                     [] {
                         tavtest::BringToFront(Target().window());
                         return Answer{tav_window_focus_window(Target().window()) != nullptr, L""};
                     },
                     {{0, L""}}));
    out.push_back(Op("windows", "child_by_class",
                     [] {
                         return Answer{tav_window_child_by_class(Target().window(), L"edit") != nullptr, L""};
                     },
                     {{0, L""}}));

    // foreground: no attachment means no detachment.
    out.push_back(Op("foreground", "grabber",
                     [] {
                         tav_grabber grabber = tav_foreground_grabber_begin();
                         if (grabber == nullptr)
                             return Answer{TAV_E_OUT_OF_MEMORY, L""};
                         const int32_t attached = tav_foreground_grabber_is_attached(grabber);
                         tav_foreground_grabber_end(grabber);
                         return Answer{attached, L""};
                     },
                     {{0, L""}}));

    // sounds: play reports only through its result (0 when the sound could not be started).
    {
        const std::wstring wave = ScratchFile(L"chime.wav", tavtest::SilentWave(800));
        Operation op = Op("sounds", "play",
                          [] {
                              tav_sound sound = tav_sound_create();
                              if (sound == nullptr)
                                  return Answer{TAV_E_OUT_OF_MEMORY, L""};
                              const int32_t played = tav_sound_play(sound, L"FaultEvent", TAV_SOUND_SYNC);
                              tav_sound_destroy(sound);
                              return Answer{played, L""};
                          },
                          {{0, L""}});
        op.setup = [wave] {
            HKEY key = nullptr;
            if (RegCreateKeyExW(HKEY_CURRENT_USER, (AppKey() + L"\\FaultEvent\\.Current").c_str(), 0, nullptr, 0,
                                KEY_ALL_ACCESS, nullptr, &key, nullptr) == 0) {
                RegSetValueExW(key, L"", 0, REG_SZ, reinterpret_cast<const BYTE*>(wave.c_str()),
                               static_cast<DWORD>((wave.size() + 1) * sizeof(wchar_t)));
                RegCloseKey(key);
            }
        };
        op.teardown = [] { tavtest::DeleteKeyTree(HKEY_CURRENT_USER, AppKey()); };
        // Seen in the full suite, at a different injection point each time: one more window and about 2 KB
        // more heap over a whole batch of runs, with nothing of the library's own left behind.
        op.platformWorkerWindow = "Wine's sound API plays on a worker thread of its own with a window of its own, "
                                  "ended after the play returns";
        out.push_back(op);
    }
    // An event name longer than the first buffer of the key path's formatting (2,048 units): the formatter is asked
    // for the length and the path made in a larger buffer; no such key exists, so nothing plays.
    out.push_back(Op("sounds", "play_long_event_name",
                     [] {
                         tav_sound sound = tav_sound_create();
                         if (sound == nullptr)
                             return Answer{TAV_E_OUT_OF_MEMORY, L""};
                         const std::wstring name(2100, L'e');
                         const int32_t played = tav_sound_play(sound, name.c_str(), TAV_SOUND_SYNC);
                         tav_sound_destroy(sound);
                         return Answer{played, L""};
                     },
                     {}));
    out.push_back(Op(
        "sounds", "application_name",
        [] { return TextResult([](wchar_t* b, size_t c, size_t* n) { return tav_sound_application_name(b, c, n); }); },
        {{0, L""}}));
}

}  // namespace faults
