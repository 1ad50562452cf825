// Verbs of the desktop helpers: clipboard text, event sounds, abortable waits, file and folder pickers.
#include "Cli.h"

#include <TavUtil.h>

#include <thread>

namespace {

int RunClip(const cli::Call& call) {
    const cli::Args& args = call.args;
    cli::RequireCount(args, 1, 2);
    if (args[0] == L"get" && args.size() == 1) {
        ClassicClipboard clipboard;
        if (!clipboard.isOpen())
            return cli::Fail(L"the clipboard is in use by another program");
        cli::OutLine(clipboard.getText(CF_UNICODETEXT));
        return cli::kDone;
    }
    if (args[0] == L"set" && args.size() == 2) {
        ClassicClipboard clipboard;
        if (!clipboard.isOpen() || !clipboard.setText(args[1], CF_UNICODETEXT))
            return cli::Fail(L"the text could not be put on the clipboard");
        return cli::kDone;
    }
    throw cli::UsageError("expected 'get' or 'set TEXT'");
}

int RunSound(const cli::Call& call) {
    const cli::Args& args = call.args;
    const bool loop = call.Has(L"--loop");
    const bool sync = call.Has(L"--sync");
    cli::RequireCount(args, 1, 1);
    if (loop && sync)
        throw cli::UsageError("--loop and --sync exclude each other");
    const cWave::PlayModeEnum mode = loop ? cWave::PLAY_LOOP : sync ? cWave::PLAY_SYNC : cWave::PLAY_ASYNC;
    cWave wave;
    if (!wave.play(args[0], mode))
        return cli::Fail(L"no sound played for " + args[0] + L" (looked for HKCU\\AppEvents\\Schemes\\Apps\\" +
                         cWave::applicationName() + L"\\" + args[0] + L"\\.Current)");
    cli::OutLine(L"playing");
    return cli::kDone;
}

const int kMaximumWaitMs = 600000;

int RunWait(const cli::Call& call) {
    cli::RequireCount(call.args, 1, 1);
    const int ms = cli::ParseNumber(call.args[0], "MS", 0, kMaximumWaitMs);
    CWait wait;
    const DWORD start = GetTickCount();
    const CWaitStatus status = wait.Wait(static_cast<unsigned long>(ms), 10, false);
    cli::OutLine(cli::ResultText(TAV_RESULT_WAIT, status) + L" (" + std::to_wstring(status) + L") after about " +
                 std::to_wstring(GetTickCount() - start) + L" ms");
    return cli::kDone;
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

int Chosen(bool chosen, const std::wstring& what) {
    if (!chosen)
        return cli::Fail(L"cancelled");
    cli::OutLine(what);
    return cli::kDone;
}

int RunPickFile(const cli::Call& call) {
    const cli::Args& args = call.args;
    const int cancelAfter = call.Number(L"--cancel-after", -1, 0, kMaximumWaitMs);
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

int RunPickFolder(const cli::Call& call) {
    const cli::Args& args = call.args;
    const int cancelAfter = call.Number(L"--cancel-after", -1, 0, kMaximumWaitMs);
    cli::RequireCount(args, 0, 1);
    CStdStr<wchar_t> folder = args.empty() ? L"" : args[0];
    bool chosen = false;
    {
        DelayedCancel cancel(cancelAfter);
        chosen = BrowseForFolder(L"Choose a folder for the button's files", folder, nullptr);
    }
    return Chosen(chosen, folder);
}

cli::VerbRegistration clip{{L"clip", L"clip get | clip set TEXT", L"read or write the clipboard's text", &RunClip, L"",
                            L"examples:\n  tavutil clip set \"Hello\"\n  tavutil clip get",
                            L"the clipboard could not be opened or written"}};
cli::VerbRegistration sound{{L"sound", L"sound [--loop|--sync] EVENT",
                             L"play the sound the scheme assigns to EVENT of tavutil", &RunSound, L"--loop --sync",
                             L"Without a sound in the scheme nothing plays (there is no default beep).\n\n"
                             L"examples:\n  tavutil sound ProfileSwitched\n  tavutil sound --sync ProfileSwitched",
                             L"no sound was played"}};
cli::VerbRegistration wait{{L"wait", L"wait MS", L"wait MS milliseconds while pumping messages", &RunWait, L"",
                            L"MS is a whole number from 0 to 600000.\n\nexamples:\n  tavutil wait 250",
                            L"(not used by this verb)"}};
cli::VerbRegistration pickFile{{L"pick-file", L"pick-file [--cancel-after MS] [FILTER]",
                                L"ask for a file (FILTER like \"Text|*.txt||\")", &RunPickFile, L"--cancel-after=MS",
                                L"Prints the chosen file. --cancel-after cancels the dialog after MS milliseconds,\n"
                                L"as a user would (for unattended runs).\n\nexamples:\n"
                                L"  tavutil pick-file \"Text|*.txt||\"\n  tavutil pick-file --cancel-after 3000",
                                L"the dialog was cancelled"}};
cli::VerbRegistration pickFolder{{L"pick-folder", L"pick-folder [--cancel-after MS] [START]",
                                  L"ask for a folder, starting at START", &RunPickFolder, L"--cancel-after=MS",
                                  L"Prints the chosen folder. --cancel-after cancels the dialog after MS\n"
                                  L"milliseconds, as a user would (for unattended runs).\n\nexamples:\n"
                                  L"  tavutil pick-folder 'C:\\users\\Public'",
                                  L"the dialog was cancelled"}};

}  // namespace
