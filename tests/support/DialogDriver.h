// Plays the user of a modal dialog from a second thread: waits for the dialog that the test's thread
// opens, runs an action on it (fill in, confirm, cancel), and makes sure it closes.
#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>

namespace desktoptest {

class DialogDriver {
public:
    // Starts watching the calling thread for a visible dialog ("#32770"); `action` runs on the driver
    // thread once the dialog is found and ready.
    explicit DialogDriver(std::function<void(HWND dialog)> action);
    // Waits for the driver; a dialog still open after its action is cancelled, so that a failing test
    // cannot leave the modal loop hanging.
    ~DialogDriver();
    DialogDriver(const DialogDriver&) = delete;
    DialogDriver& operator=(const DialogDriver&) = delete;

    // Ends the wait for a dialog that will not come (the call that would open it has returned); an action
    // already begun runs to its end.
    void StopWaiting() { stop_ = true; }
    // Joins the driver thread; true when the dialog was found (then `dialog()` is its window).
    bool Finish();
    HWND dialog() const { return dialog_; }

private:
    void Run(std::function<void(HWND)> action);

    DWORD threadId_;
    std::atomic<bool> stop_{false};
    HWND dialog_ = nullptr;
    std::thread thread_;
};

// Waits until the dialog's modal loop runs and what it shows (its controls, the folder tree's selection) has
// stopped changing, within a generous bound.
void WaitUntilSettled(HWND dialog);

// Actions.
void Cancel(HWND dialog);
void Confirm(HWND dialog);
// Types `path` into the open-file dialog's file name box and confirms.
void ConfirmFile(HWND dialog, const std::wstring& path);
// Moves the folder dialog's selection to `path`, waits for it to settle, and confirms.
void ConfirmFolder(HWND dialog, const std::wstring& path);
// The name the folder dialog's tree shows for its selection (empty when none).
std::wstring SelectedFolderName(HWND dialog);

std::wstring WindowText(HWND window);
std::wstring ClassName(HWND window);

}  // namespace desktoptest
