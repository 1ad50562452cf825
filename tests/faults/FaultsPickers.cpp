// The file and folder pickers. Both are modal dialogs on the driving thread: a dialog driver (tests/support) plays
// the user from a thread of its own, confirming or cancelling, and stops waiting once the call has returned, so that
// a run whose dialog could not open is as bounded as one whose dialog did.
#include "Faults.h"

#include "Desktop.h"
#include "DialogDriver.h"
#include "TestWindow.h"

#include <TavUtil.h>
#include "capi/TavUtilC.h"

#include <windows.h>

#include <memory>

namespace faults {

namespace {

Operation Op(const char* name, std::function<Answer()> run, std::vector<Answer> neutral, int64_t expect,
             unsigned allow = 0) {
    Operation op{"pickers", name, std::move(run), std::move(neutral), allow, nullptr, {}, {}, false};
    op.expectStatus = expect;
    return op;
}

// Runs `pick` while a driver plays the user of its dialog with `action`.
Answer WithUser(const std::function<void(HWND)>& action, const std::function<Answer()>& pick) {
    desktoptest::DialogDriver user(action);
    Answer answer = pick();
    user.StopWaiting();
    user.Finish();
    return answer;
}

Answer PickFile(const std::wstring& folder) {
    return TextResult([&folder](wchar_t* b, size_t c, size_t* n) {
        return tav_picker_files(L"Text files|*.txt||", folder.c_str(), L"Fault picker", b, c, n);
    });
}

Answer PickFolder(const std::wstring& start) {
    return TextResult([&start](wchar_t* b, size_t c, size_t* n) {
        return tav_picker_folder(L"Fault picker", start.c_str(), nullptr, b, c, n);
    });
}

constexpr char kFillsTree[] = "the folder dialog fills its tree from the drives, about a second a run";

bool Exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// The file dialog moves the current folder to the one it showed: each run puts it back.
struct CurrentFolder {
    std::wstring saved;
    void Save() {
        wchar_t folder[MAX_PATH] = {};
        GetCurrentDirectoryW(MAX_PATH, folder);
        saved = folder;
    }
    void Restore() const { SetCurrentDirectoryW(saved.c_str()); }
};

// A folder helper of the test's own whose dialog is a window of the run's own: what SetStatusText shows goes into
// that window's "Edit" child, or, without one, to the window as the dialog's status-text message.
class StatusHelper : public CBrowseForFolderHelper {
public:
    explicit StatusHelper(HWND dialog) : CBrowseForFolderHelper(CStdStr<wchar_t>(), CStdStr<wchar_t>(), nullptr) {
        m_hWnd = dialog;
    }
};

// The stand-in dialog: its Edit child (if any) and the status texts it received.
struct StatusWindow {
    std::wstring status;
    std::unique_ptr<tavtest::TestWindow> window;

    explicit StatusWindow(bool withEdit) {
        tavtest::TestWindow::Options options;
        options.editChild = withEdit;
        window = std::make_unique<tavtest::TestWindow>(options, [this](UINT message, WPARAM, LPARAM lParam) {
            if (message != BFFM_SETSTATUSTEXTW)
                return false;
            status = lParam != 0 ? reinterpret_cast<const wchar_t*>(lParam) : L"(null)";
            return true;
        });
    }
    void Reset() {
        status.clear();
        if (window->edit() != nullptr)
            SetWindowTextW(window->edit(), L"before");
    }
    Answer Shown() const { return {1, L"edit: " + window->Text() + L" | status: " + status}; }
};

// The path shortened as SetStatusText shows it: the first 5 units, "...", and the end, `limit` units in all.
std::wstring Shortened(const std::wstring& path, size_t limit) {
    return path.substr(0, 5) + L"..." + path.substr(path.size() - (limit - 8));
}

}  // namespace

void AddPickerOperations(std::vector<Operation>& out) {
    const std::wstring folder = Scratch().substr(0, Scratch().size() - 1);
    const std::wstring file = ScratchFile(L"picked.txt", "picked");
    auto current = std::make_shared<CurrentFolder>();

    // The file picker: 0 and an empty text when the dialog could not be shown (as when the user cancelled).
    {
        Operation op = Op(
            "files_cancel", [folder] { return WithUser(desktoptest::Cancel, [&folder] { return PickFile(folder); }); },
            {}, 0);
        op.setup = [current] { current->Save(); };
        op.teardown = [current] { current->Restore(); };
        out.push_back(op);
    }
    {
        Operation op = Op(
            "files_choose",
            [folder, file] {
                return WithUser([file](HWND dialog) { desktoptest::ConfirmFile(dialog, file); },
                                [&folder] { return PickFile(folder); });
            },
            {{0, L""}}, 1);
        op.setup = [current] { current->Save(); };
        op.teardown = [current] { current->Restore(); };
        op.platformKeepsHandles = "Wine's open-file dialog keeps a handle of the process each time a file is chosen "
                                  "(measured with GetOpenFileNameW called directly)";
        out.push_back(op);
    }

    // The C++ form: the file is written only when one was chosen.
    {
        Operation op = Op(
            "browse_files_cpp",
            [folder] {
                return WithUser(desktoptest::Cancel, [&folder] {
                    CStdStr<wchar_t> file = L"untouched";
                    const bool chosen = BrowseFiles(L"Text files|*.txt||", file, folder.c_str(), L"");
                    return Answer{chosen ? 1 : 0, std::wstring(file.c_str())};
                });
            },
            {}, 0);
        op.setup = [current] { current->Save(); };
        op.teardown = [current] { current->Restore(); };
        out.push_back(op);
    }

    // The folder picker: with the dialog refused, the folder as given and 0 (as when the user cancelled). Where
    // the start could not be selected the user confirms what the dialog shows instead: any folder with 1.
    {
        const std::wstring start = folder + L"\\chosen";
        CreateDirectoryW(start.c_str(), nullptr);
        Operation op = Op(
            "folder_choose", [start] { return WithUser(desktoptest::Confirm, [&start] { return PickFolder(start); }); },
            {{0, start}}, 1, kAnyText);
        op.silent = "a start folder the dialog could not select leaves the dialog's own selection to confirm";
        op.fullRunOnly = kFillsTree;
        out.push_back(op);
    }
    // A start folder that does not exist is made for the dialog and removed when the user cancels.
    {
        const std::wstring start = folder + L"\\made for the dialog";
        Operation op = Op(
            "folder_missing_cancel",
            [start] {
                Answer answer = WithUser(desktoptest::Cancel, [&start] { return PickFolder(start); });
                if (Exists(start))
                    answer.text += L" (left behind)";
                return answer;
            },
            {{0, start + L" (left behind)"}}, 0);
        op.silent = "a removal the system refuses leaves the folder made for the dialog behind";
        op.teardown = [start] { RemoveDirectoryW(start.c_str()); };
        op.fullRunOnly = kFillsTree;
        out.push_back(op);
    }

    // The status text of a folder dialog, on a window of the run's own, with an "Edit" child (shortened to 40 units
    // and written into it) and without (shortened to 50 and sent to the window). Where the Edit could not be found
    // the text goes to the window instead; where the system refused to write or send it, nothing is shown.
    const std::wstring path = L"C:\\Program Files\\Faults\\a rather long folder name\\deeper still\\chosen";
    for (const bool withEdit : {true, false}) {
        auto window = std::make_shared<std::unique_ptr<StatusWindow>>();
        std::vector<Answer> neutral = {{1, L"edit:  | status: "}};
        if (withEdit)
            neutral = {{1, L"edit: before | status: "}, {1, L"edit: before | status: " + Shortened(path, 50)}};
        Operation op = Op(
            withEdit ? "set_status_text_edit_cpp" : "set_status_text_cpp",
            [window, path] {
                StatusHelper helper((*window)->window->hwnd());
                helper.SetStatusText(path.c_str());
                return (*window)->Shown();
            },
            neutral, 1);
        op.silent = "a text the system refused to show is not shown";
        op.setup = [window, withEdit] {
            if (!*window)
                *window = std::make_unique<StatusWindow>(withEdit);
            (*window)->Reset();
        };
        out.push_back(op);
    }
}

}  // namespace faults
