// Verbs of the desktop helpers: clipboard text, event sounds, abortable waits, file and folder pickers.
#include "Cli.h"

#include <TavUtil.h>

#include <thread>

namespace {

int RunClip(const cli::Args& args) {
    cli::RequireCount(args, 1, 2);
    if (args[0] == L"get" && args.size() == 1) {
        ClassicClipboard clipboard;
        if (!clipboard.isOpen()) {
            cli::Err(L"tavutil: the clipboard is in use by another program\n");
            return 1;
        }
        cli::OutLine(clipboard.getText(CF_UNICODETEXT));
        return 0;
    }
    if (args[0] == L"set" && args.size() == 2) {
        ClassicClipboard clipboard;
        if (!clipboard.isOpen() || !clipboard.setText(args[1], CF_UNICODETEXT)) {
            cli::Err(L"tavutil: the text could not be put on the clipboard\n");
            return 1;
        }
        return 0;
    }
    throw cli::UsageError("expected 'get' or 'set TEXT'");
}

int RunSound(const cli::Args& given) {
    cli::Args args = given;
    const bool loop = cli::TakeFlag(args, L"--loop");
    const bool sync = cli::TakeFlag(args, L"--sync");
    cli::RequireCount(args, 1, 1);
    if (loop && sync)
        throw cli::UsageError("--loop and --sync exclude each other");
    const cWave::PlayModeEnum mode = loop ? cWave::PLAY_LOOP : sync ? cWave::PLAY_SYNC : cWave::PLAY_ASYNC;
    cWave wave;
    const bool played = wave.play(args[0], mode);
    cli::OutLine(played ? L"playing" : L"not played");
    if (!played)
        cli::OutLine(L"(looked for HKCU\\AppEvents\\Schemes\\Apps\\" + cWave::applicationName() + L"\\" + args[0] +
                     L"\\.Current)");
    return played ? 0 : 1;
}

int RunWait(const cli::Args& args) {
    cli::RequireCount(args, 1, 1);
    const int ms = cli::ParseInt(args[0], "MS");
    if (ms < 0)
        throw cli::UsageError("MS must not be negative");
    CWait wait;
    const DWORD start = GetTickCount();
    const CWaitStatus status = wait.Wait(static_cast<unsigned long>(ms), 10, false);
    cli::OutLine(std::to_wstring(status) + L" (" + cli::ResultText(TAV_RESULT_WAIT, status) + L") after about " +
                 std::to_wstring(GetTickCount() - start) + L" ms");
    return 0;
}

// For unattended runs (the demo): cancels the calling thread's dialog after a delay, as a user would.
class DelayedCancel {
public:
    explicit DelayedCancel(int delayMs) {
        if (delayMs < 0)
            return;
        const DWORD threadId = GetCurrentThreadId();
        thread_ = std::thread([threadId, delayMs] {
            Sleep(static_cast<DWORD>(delayMs));
            EnumThreadWindows(
                threadId,
                [](HWND window, LPARAM) -> BOOL {
                    wchar_t name[16] = {};
                    GetClassNameW(window, name, 16);
                    if (IsWindowVisible(window) && lstrcmpW(name, L"#32770") == 0)
                        PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
                    return TRUE;
                },
                0);
        });
    }
    ~DelayedCancel() {
        if (thread_.joinable())
            thread_.join();
    }

private:
    std::thread thread_;
};

int TakeCancelAfter(cli::Args& args) {
    for (size_t i = 0; i + 1 < args.size(); ++i) {
        if (args[i] == L"--cancel-after") {
            int ms = cli::ParseInt(args[i + 1], "--cancel-after MS");
            args.erase(args.begin() + static_cast<long>(i), args.begin() + static_cast<long>(i) + 2);
            return ms;
        }
    }
    return -1;
}

int Chosen(bool chosen, const std::wstring& what) {
    cli::OutLine(chosen ? what : L"cancelled");
    return chosen ? 0 : 1;
}

int RunPickFile(const cli::Args& given) {
    cli::Args args = given;
    const int cancelAfter = TakeCancelAfter(args);
    cli::RequireCount(args, 0, 1);
    const CStdStr<wchar_t> filter = args.empty() ? L"All files (*.*)|*.*||" : args[0];
    if (filter.empty())
        throw cli::UsageError("FILTER must not be empty");
    CStdStr<wchar_t> file;
    bool chosen = false;
    {
        DelayedCancel cancel(cancelAfter);
        chosen = BrowseFiles(filter, file, L"", L"");
    }
    return Chosen(chosen, file);
}

int RunPickFolder(const cli::Args& given) {
    cli::Args args = given;
    const int cancelAfter = TakeCancelAfter(args);
    cli::RequireCount(args, 0, 1);
    CStdStr<wchar_t> folder = args.empty() ? L"" : args[0];
    bool chosen = false;
    {
        DelayedCancel cancel(cancelAfter);
        chosen = BrowseForFolder(L"Choose a folder for the button's files", folder, nullptr);
    }
    return Chosen(chosen, folder);
}

cli::VerbRegistration clip{{L"clip", L"clip get | clip set TEXT", L"read or write the clipboard's text", &RunClip}};
cli::VerbRegistration sound{
    {L"sound", L"sound EVENT [--loop|--sync]", L"play the sound the scheme assigns to EVENT of tavutil", &RunSound}};
cli::VerbRegistration wait{{L"wait", L"wait MS", L"wait MS milliseconds while pumping messages", &RunWait}};
cli::VerbRegistration pickFile{{L"pick-file", L"pick-file [FILTER] [--cancel-after MS]",
                                L"ask for a file (FILTER like \"Text|*.txt||\")", &RunPickFile}};
cli::VerbRegistration pickFolder{{L"pick-folder", L"pick-folder [START] [--cancel-after MS]",
                                  L"ask for a folder, starting at START", &RunPickFolder}};

}  // namespace
