// Desktop operations beside the plain typing of FaultsDesktop.cpp: paced typing and typing with options (the
// modifier watch), the keys run entry with its result, the script check, command words on a window with a menu,
// the busy refusal, recording on a thread of its own, the foreground process queries, a window handle as text,
// and a looping sound started and stopped.
#include "Faults.h"

#include "Desktop.h"
#include "KeyTestWindows.h"
#include "RegistryFixture.h"
#include "TestSupport.h"

#include <TavUtil.h>
#include "capi/TavUtilC.h"

#include <windows.h>

#include <mmsystem.h>

#include <memory>
#include <thread>

namespace faults {

namespace {

Operation Op(const char* area, const char* name, std::function<Answer()> run, std::vector<Answer> neutral,
             std::optional<int64_t> expect, unsigned allow = 0) {
    Operation op{area, name, std::move(run), std::move(neutral), allow, nullptr, {}, {}, false};
    op.expectStatus = expect;
    return op;
}

// A typing operation: the target in front and empty before, every held key released after; any shorter text is
// neutral (a refused key event types less).
Operation Typing(const char* name, std::function<int32_t()> type, int64_t expect) {
    Operation op = Op(
        "keys", name, [type] { return Typed(type); }, {}, expect, kAnyText);
    op.setup = TypeIntoTarget;
    op.teardown = [] { tav_send_keys_release_all(); };
    return op;
}

// Shift pressed or let go of as a keyboard would (the test's own input, not the library's).
void SendShift(bool up) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = VK_LSHIFT;
    input.ki.wScan = 0x2A;
    input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    SendInput(1, &input, sizeof(INPUT));
}

std::wstring OwnName() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::wstring(path, length);
}

std::wstring AppKey() { return L"AppEvents\\Schemes\\Apps\\faults"; }

}  // namespace

void AddKeysOperations(std::vector<Operation>& out) {
    // Paced typing: a pause before every key event but the first.
    out.push_back(Typing(
        "send_keys_paced", [] { return tav_send_keys_paced(L"ab{LEFT}c", 2); }, TAV_SKERR_NONE));
    out.push_back(Typing(
        "send_text_paced", [] { return tav_send_text_paced(L"pq", 2); }, TAV_SKERR_NONE));
    // Typing with options: the wait for released modifiers and their release watch a low-level hook and the
    // key state while typing; a hook that cannot be set types as the plain call does.
    out.push_back(Typing(
        "send_keys_ex",
        [] {
            tav_send_options options = {};
            options.size = sizeof(options);
            options.flags = TAV_SEND_WAIT_FOR_RELEASE | TAV_SEND_RELEASE_MODIFIERS;
            options.key_hold_ms = 1;
            options.wait_release_ms = 200;
            return tav_send_keys_ex(L"x+y", &options);
        },
        TAV_SKERR_NONE));
    // The wait for released modifiers while one is down (Shift, pressed before the run and let go of after it): the
    // wait handles messages (MsgWaitForMultipleObjects) until its time runs out, then the keys are typed as they are.
    // A wait that could not sleep polls instead, within the same time.
    {
        Operation op = Typing(
            "send_keys_ex_shift_down",
            [] {
                tav_send_options options = {};
                options.size = sizeof(options);
                options.flags = TAV_SEND_WAIT_FOR_RELEASE;
                options.wait_release_ms = 40;
                return tav_send_keys_ex(L"x", &options);
            },
            TAV_SKERR_NONE);
        op.setup = [] {
            TypeIntoTarget();
            SendShift(false);
        };
        // Before the check that no key is left down, which follows every run.
        op.teardown = [] {
            SendShift(true);
            tav_send_keys_release_all();
        };
        out.push_back(op);
    }
    out.push_back(Typing(
        "send_text_ex",
        [] {
            tav_send_options options = {};
            options.size = sizeof(options);
            options.flags = TAV_SEND_RELEASE_MODIFIERS;
            options.key_delay_ms = 1;
            return tav_send_text_ex(L"rs", &options);
        },
        TAV_SKERR_NONE));

    // The keys run entry: the run's own result, which the plain call keeps to itself. The parse does not ask the
    // system but for the characters' keys: a refused look-up is the settled unmappable character, and the script
    // then types less.
    out.push_back(Typing(
        "run", [] { return tav_keys_run(L"ab{LEFT}c"); }, TAV_SKERR_NONE));
    out.push_back(Typing(
        "run_paced", [] { return tav_keys_run_paced(L"k{BS}m", 2); }, TAV_SKERR_NONE));
    out.push_back(Typing(
        "run_invalid", [] { return tav_keys_run(L"a{NOKEY}"); }, TAV_SKERR_INVALID_KEY));
    out.push_back(Op(
        "keys", "check",
        [] {
            int32_t offset = -2;
            Answer answer = TextResult(
                [&offset](wchar_t* b, size_t c, size_t* n) { return tav_keys_check(L"a{F5 2}(bc", &offset, b, c, n); });
            answer.text += L" @" + std::to_wstring(offset);
            return answer;
        },
        {}, TAV_SKERR_MISSING_CLOSE_PAREN));

    // The busy refusal: nothing typed, and a beep that may be refused.
    {
        Operation op = Typing(
            "busy", [] { return tav_send_keys(L"z"); }, TAV_SKERR_BUSY);
        op.setup = [] {
            TypeIntoTarget();
            tav_send_keys_set_in_progress(0x5a);
        };
        op.teardown = [] { tav_send_keys_clear_in_progress(); };
        out.push_back(op);
    }

    // Command words on a window with a menu: the menu command is posted (its WM_COMMAND arrives), or the run
    // gives TAV_SKERR_MENU_FAILED where the menu, its sub-menu or the item could not be read; posted commands
    // that were refused do not arrive.
    {
        auto window = std::make_shared<std::unique_ptr<keytest::RecorderWindow>>();
        Operation op = Op(
            "keys", "command_words",
            [window] {
                keytest::RecorderWindow& target = **window;
                const int32_t result = tav_keys_run(L"{Menu 1 1}{PostCommand 65}");
                target.Settle();
                std::wstring commands;
                for (const keytest::WindowMessage& message : target.messages)
                    if (message.message == WM_COMMAND)
                        commands += std::to_wstring(LOWORD(message.wParam)) + L" ";
                return Answer{result, commands};
            },
            {{TAV_SKERR_MENU_FAILED, L""}}, TAV_SKERR_NONE, kAnyText);
        op.setup = [window] {
            if (!*window)
                *window = std::make_unique<keytest::RecorderWindow>(true);
            (*window)->Clear();
            tavtest::BringToFront((*window)->window());
        };
        out.push_back(op);
    }

    // Recording, on a thread of its own each run (the first recorder of a thread sets the thread's hook): the
    // keys typed meanwhile; null where the hook or memory was refused.
    out.push_back(Op(
        "recorder", "record_on_new_thread",
        [] {
            Answer answer{-1, L""};
            std::thread([&answer] {
                tav_recorder recorder = tav_recorder_begin(0);
                if (recorder == nullptr) {
                    answer = {0, L""};
                    return;
                }
                tav_send_keys(L"ab");
                // The hook is called while this thread waits for messages.
                tavtest::WaitUntil(
                    [&] {
                        answer = TextResult([recorder](wchar_t* b, size_t c, size_t* n) {
                            return tav_recorder_script(recorder, b, c, n);
                        });
                        return answer.text == L"ab" || answer.status < 0;
                    },
                    2000);
                tav_recorder_end(recorder);
                answer.status = answer.status == TAV_OK ? 1 : answer.status;
            }).join();
            return answer;
        },
        {{0, L""}}, 1, kAnyText));
    out.back().setup = TypeIntoTarget;
    out.back().silent = "the keys a recorder saw are what it recorded: fewer where the typing was refused";

    // The foreground process queries: the run's own typing target is in front.
    out.push_back(Op(
        "processes", "wait_foreground_window",
        [] {
            return Answer{tav_process_wait_foreground_window() == Target().window(), L""};
        },
        {{0, L""}}, 1));
    out.back().setup = TypeIntoTarget;
    const std::wstring own = OwnName();
    const std::wstring ownName = own.substr(own.find_last_of(L'\\') + 1);
    out.push_back(Op(
        "processes", "foreground_name",
        [] {
            return TextResult([](wchar_t* b, size_t c, size_t* n) { return tav_process_foreground_name(0, b, c, n); });
        },
        {{TAV_OK, L""}}, TAV_OK));
    out.back().setup = TypeIntoTarget;
    out.push_back(Op(
        "processes", "foreground_full_name",
        [] {
            return TextResult(
                [](wchar_t* b, size_t c, size_t* n) { return tav_process_foreground_full_name(0, b, c, n); });
        },
        // A failed module read falls back to the process entry's bare name, as settled.
        {{TAV_OK, L""}, {TAV_OK, ownName}}, TAV_OK));
    out.back().setup = TypeIntoTarget;

    // The C++ form's clipboard format check: false where the system could not say.
    out.push_back(Op(
        "clipboard", "is_format_available_cpp",
        [] {
            return Answer{Clipboard::isFormatAvailable(CF_UNICODETEXT) ? 1 : 0, L""};
        },
        {{0, L""}}, 1));
    out.back().setup = [] { tav_clipboard_set_text(L"format check"); };

    // A window handle as text: pure formatting.
    out.push_back(Op(
        "windows", "handle_to_text",
        [] {
            return TextResult([](wchar_t* b, size_t c, size_t* n) {
                return tav_window_handle_to_text(reinterpret_cast<tav_hwnd>(-2), b, c, n);
            });
        },
        {}, TAV_OK));

    // A looping sound started, asked about and stopped: the stop stops nothing (no play sets the repeat flag, as
    // settled); the loop ends when the test stops every sound of the process.
    {
        const std::wstring wave = ScratchFile(L"loop.wav", tavtest::SilentWave(800));
        Operation op = Op(
            "sounds", "loop_start_stop",
            [] {
                tav_sound sound = tav_sound_create();
                if (sound == nullptr)
                    return Answer{TAV_E_OUT_OF_MEMORY, L""};
                const int32_t played = tav_sound_play(sound, L"FaultLoop", TAV_SOUND_LOOP);
                const int32_t repeating = tav_sound_is_repeating(sound);
                tav_sound_stop(sound);
                tav_sound_destroy(sound);
                return Answer{played, L"repeating " + std::to_wstring(repeating)};
            },
            {{0, L"repeating 0"}}, 1);
        op.setup = [wave] {
            HKEY key = nullptr;
            if (RegCreateKeyExW(HKEY_CURRENT_USER, (AppKey() + L"\\FaultLoop\\.Current").c_str(), 0, nullptr, 0,
                                KEY_ALL_ACCESS, nullptr, &key, nullptr) == 0) {
                RegSetValueExW(key, L"", 0, REG_SZ, reinterpret_cast<const BYTE*>(wave.c_str()),
                               static_cast<DWORD>((wave.size() + 1) * sizeof(wchar_t)));
                RegCloseKey(key);
            }
        };
        op.teardown = [] {
            PlaySoundW(nullptr, nullptr, 0);
            tavtest::DeleteKeyTree(HKEY_CURRENT_USER, AppKey());
        };
        op.platformWorkerWindow = "Wine's sound API plays on a worker thread of its own with a window of its own, "
                                  "ended after the sound stops";
        out.push_back(op);
    }
}

}  // namespace faults
