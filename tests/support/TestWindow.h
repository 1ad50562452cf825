// The one window of the tests: a window of the test's own, its messages handed to a handler, destroyed with
// its owner. Every test that needs a window of its own (a foreground window, a key recorder, an Edit to type
// into, a message-only receiver, a window with a hostile class name or title, a window on a thread of its
// own) makes one of these; no test registers a window class itself.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace tavtest {

// A window class of the tests, registered with the tests' window procedure (which hands each message to its
// window's handler). Owners of the same name share the registration: the first registers the class, the last
// to go unregisters it. A name the system refuses (empty, or taken by a class the tests did not register)
// leaves the owner unregistered.
class WindowClass {
public:
    WindowClass() = default;
    explicit WindowClass(const std::wstring& name);
    ~WindowClass();
    WindowClass(WindowClass&& other) noexcept;
    WindowClass& operator=(WindowClass&& other) noexcept;
    WindowClass(const WindowClass&) = delete;
    WindowClass& operator=(const WindowClass&) = delete;

    // True when the class exists through this owner.
    bool registered() const { return registered_; }
    const std::wstring& name() const { return name_; }

private:
    void Release();
    std::wstring name_;
    bool registered_ = false;
};

class TestWindow {
public:
    // The handler sees every message of the window (from WM_NCCREATE until the owner lets it go); returning
    // true marks it handled (result 0), false passes it on to the class's own handling.
    using Handler = std::function<bool(UINT message, WPARAM wParam, LPARAM lParam)>;
    // The one the tests share when they name none.
    static constexpr const wchar_t* kDefaultClass = L"TavUtilTestWindow";

    struct Options {
        std::wstring title = L"TavUtil test window";
        // Registered for the window (shared with the other windows of that name), or, with systemClass, a
        // class of the system ("Edit", "Static") that the window is made of: its messages then reach the
        // handler first and the control's own procedure after.
        std::wstring className = kDefaultClass;
        bool systemClass = false;
        DWORD style = WS_OVERLAPPEDWINDOW;
        DWORD exStyle = 0;
        int x = 40, y = 40, width = 400, height = 300;
        HWND parent = nullptr;  // HWND_MESSAGE makes a message-only window
        HMENU menu = nullptr;   // a menu bar, destroyed with the window
        // A multi-line Edit child filling the window: the window hands the focus on to it whenever it gets
        // it, and editHandler (if any) sees the Edit's messages before the control does.
        bool editChild = false;
        DWORD editStyle = WS_CHILD | WS_VISIBLE | ES_MULTILINE | ES_WANTRETURN | ES_AUTOVSCROLL;
        Handler editHandler;
        // Shown (and the messages of its showing handled); with front, also brought to the foreground with
        // the focus on the Edit (or the window): InFront() tells whether that took.
        bool visible = false;
        bool front = false;
        // Made and owned by a thread of its own that runs a message loop until the window goes; Run() hands
        // that thread work. Without it the window belongs to the thread that makes the owner.
        bool ownThread = false;

        // For options made in one expression: TestWindow::Options().Titled(L"recorder").Placed(60, 60, 400, 200).
        Options& Titled(std::wstring text) {
            title = std::move(text);
            return *this;
        }
        Options& Styled(DWORD windowStyle) {
            style = windowStyle;
            return *this;
        }
        Options& Placed(int left, int top, int w, int h) {
            x = left, y = top, width = w, height = h;
            return *this;
        }
    };

    // A message-only window (no title, no size, never shown): a receiver of posted and sent messages.
    static Options MessageOnly();

    // A top-level window of the tests' class: WS_OVERLAPPEDWINDOW, hidden unless `visible`.
    explicit TestWindow(Handler handler = nullptr, bool visible = false);
    explicit TestWindow(Options options, Handler handler = nullptr);
    ~TestWindow();
    TestWindow(TestWindow&& other) noexcept;
    TestWindow& operator=(TestWindow&& other) noexcept;
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    // Null when the window could not be made (or the owner was moved from).
    HWND hwnd() const;
    // The Edit child, or the window itself when it is an Edit; null otherwise.
    HWND edit() const;
    // Adds a child control of `className` (e.g. L"Edit"); it goes with the window.
    HWND AddChild(const wchar_t* className) const;

    // The Edit's text (empty without one).
    std::wstring Text() const;
    // Shows the window, makes it the foreground window and gives the focus to the Edit (or the window);
    // true when that took in time. The window must belong to the calling thread.
    bool BringToFront() const;
    bool InFront() const { return GetForegroundWindow() == hwnd(); }

    // Runs `job` on the window's thread and returns when it is done.
    void Run(const std::function<void()>& job) const;
    DWORD threadId() const;

private:
    friend class WindowClass;  // registers Proc
    struct State;
    static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK SubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK EditProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT Dispatch(State* state, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static void Create(State& state);
    static void Destroy(State& state);
    void Close();

    std::unique_ptr<State> state_;
};

}  // namespace tavtest
