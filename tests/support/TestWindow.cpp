#include "TestWindow.h"

#include "Desktop.h"

#include <future>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace tavtest {

namespace {

// The owner's state rides on the window as a property: it reaches the procedure from WM_NCCREATE on, and
// works the same for a system control (whose window bytes and user data are the control's own).
const wchar_t kStateProp[] = L"TavUtilTestWindowState";

// The message that carries a job to a window's thread (Run).
UINT RunMessage() {
    static const UINT message = RegisterWindowMessageW(L"TavUtilTestWindowRun");
    return message;
}

// How many owners hold each class the tests registered; guarded by ClassesLock, since windows of their own
// thread register and release classes there.
std::map<std::wstring, int>& Classes() {
    static std::map<std::wstring, int> classes;
    return classes;
}
std::mutex& ClassesLock() {
    static std::mutex lock;
    return lock;
}

bool IsEditClass(const std::wstring& name) { return lstrcmpiW(name.c_str(), L"Edit") == 0; }

}  // namespace

// ---- the class ----------------------------------------------------------------------------------------

WindowClass::WindowClass(const std::wstring& name) : name_(name) {
    if (name_.empty())
        return;
    std::lock_guard<std::mutex> guard(ClassesLock());
    auto found = Classes().find(name_);
    if (found != Classes().end()) {
        ++found->second;
        registered_ = true;
        return;
    }
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = &TestWindow::Proc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = name_.c_str();
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    registered_ = RegisterClassW(&windowClass) != 0;
    if (registered_)
        Classes()[name_] = 1;
}

WindowClass::~WindowClass() { Release(); }

WindowClass::WindowClass(WindowClass&& other) noexcept
    : name_(std::move(other.name_)), registered_(std::exchange(other.registered_, false)) {}

WindowClass& WindowClass::operator=(WindowClass&& other) noexcept {
    if (this != &other) {
        Release();
        name_ = std::move(other.name_);
        registered_ = std::exchange(other.registered_, false);
    }
    return *this;
}

void WindowClass::Release() {
    if (!registered_)
        return;
    registered_ = false;
    std::lock_guard<std::mutex> guard(ClassesLock());
    auto found = Classes().find(name_);
    if (found == Classes().end() || --found->second > 0)
        return;
    Classes().erase(found);
    UnregisterClassW(name_.c_str(), GetModuleHandleW(nullptr));
}

// ---- the window ---------------------------------------------------------------------------------------

struct TestWindow::State {
    Options options;
    Handler handler;
    WindowClass windowClass;
    HWND hwnd = nullptr;
    HWND edit = nullptr;
    WNDPROC baseProc = nullptr;      // a system control's own procedure
    WNDPROC editBaseProc = nullptr;  // the Edit child's own procedure, when editHandler sees its messages
    std::thread thread;
    DWORD threadId = 0;
};

TestWindow::Options TestWindow::MessageOnly() {
    Options options;
    options.title.clear();
    options.style = 0;
    options.x = options.y = options.width = options.height = 0;
    options.parent = HWND_MESSAGE;
    return options;
}

TestWindow::TestWindow(Handler handler, bool visible)
    : TestWindow(
          [visible] {
              Options options;
              options.visible = visible;
              return options;
          }(),
          std::move(handler)) {}

TestWindow::TestWindow(Options options, Handler handler) : state_(std::make_unique<State>()) {
    state_->options = std::move(options);
    state_->handler = std::move(handler);
    if (!state_->options.ownThread) {
        Create(*state_);
        return;
    }
    std::promise<void> made;
    std::future<void> ready = made.get_future();
    state_->thread = std::thread([state = state_.get(), &made] {
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);  // the thread's queue, for the quit that ends it
        Create(*state);
        made.set_value();
        while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    });
    ready.wait();
}

TestWindow::~TestWindow() { Close(); }

TestWindow::TestWindow(TestWindow&& other) noexcept = default;

TestWindow& TestWindow::operator=(TestWindow&& other) noexcept {
    if (this != &other) {
        Close();
        state_ = std::move(other.state_);
    }
    return *this;
}

void TestWindow::Create(State& state) {
    const Options& o = state.options;
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    state.threadId = GetCurrentThreadId();
    if (!o.systemClass)
        state.windowClass = WindowClass(o.className);
    const DWORD style = o.style | (o.visible || o.front ? WS_VISIBLE : 0);
    state.hwnd = CreateWindowExW(o.exStyle, o.className.c_str(), o.title.c_str(), style, o.x, o.y, o.width, o.height,
                                 o.parent, o.menu, instance, o.systemClass ? nullptr : &state);
    if (state.hwnd == nullptr) {
        if (o.menu != nullptr)
            DestroyMenu(o.menu);
        return;
    }
    if (o.systemClass) {
        SetPropW(state.hwnd, kStateProp, &state);
        state.baseProc = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(state.hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&TestWindow::SubclassProc)));
        if (IsEditClass(o.className))
            state.edit = state.hwnd;
    }
    if (o.editChild) {
        RECT client = {};
        GetClientRect(state.hwnd, &client);
        state.edit = CreateWindowExW(0, L"EDIT", L"", o.editStyle, 0, 0, client.right, client.bottom, state.hwnd,
                                     nullptr, instance, nullptr);
        SendMessageW(state.edit, EM_SETLIMITTEXT, 0, 0);
        if (o.editHandler) {
            SetPropW(state.edit, kStateProp, &state);
            state.editBaseProc = reinterpret_cast<WNDPROC>(
                SetWindowLongPtrW(state.edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&TestWindow::EditProc)));
        }
    }
    if (o.front)
        tavtest::BringToFront(state.hwnd, state.edit != nullptr ? state.edit : state.hwnd);
    else if (o.visible)
        PumpMessages();
}

void TestWindow::Destroy(State& state) {
    if (state.hwnd == nullptr)
        return;
    // The handlers see no more messages: what the window receives while it goes is no test's business.
    if (state.editBaseProc != nullptr) {
        SetWindowLongPtrW(state.edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(state.editBaseProc));
        RemovePropW(state.edit, kStateProp);
    }
    if (state.baseProc != nullptr)
        SetWindowLongPtrW(state.hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(state.baseProc));
    RemovePropW(state.hwnd, kStateProp);
    const bool wasVisible = IsWindowVisible(state.hwnd) != FALSE;
    DestroyWindow(state.hwnd);  // its children and menu bar with it
    state.hwnd = state.edit = nullptr;
    if (wasVisible)
        PumpMessages();  // the activation changes its going made
}

void TestWindow::Close() {
    if (!state_)
        return;
    if (state_->thread.joinable()) {
        State* state = state_.get();
        if (state->hwnd != nullptr)
            Run([state] {
                Destroy(*state);
                PostQuitMessage(0);
            });
        else
            PostThreadMessageW(state->threadId, WM_QUIT, 0, 0);
        state->thread.join();
    } else {
        Destroy(*state_);
    }
    state_.reset();  // the class goes after its window
}

HWND TestWindow::hwnd() const { return state_ ? state_->hwnd : nullptr; }

HWND TestWindow::edit() const { return state_ ? state_->edit : nullptr; }

DWORD TestWindow::threadId() const { return state_ ? state_->threadId : 0; }

HWND TestWindow::AddChild(const wchar_t* className) const {
    return CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE, 0, 0, 200, 24, hwnd(), nullptr,
                           GetModuleHandleW(nullptr), nullptr);
}

std::wstring TestWindow::Text() const {
    if (edit() == nullptr)
        return {};
    std::wstring text(static_cast<size_t>(GetWindowTextLengthW(edit())) + 1, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(edit(), text.data(), static_cast<int>(text.size()))));
    return text;
}

bool TestWindow::BringToFront() const {
    bool inFront = false;
    Run([&] { inFront = tavtest::BringToFront(hwnd(), edit() != nullptr ? edit() : hwnd()); });
    return inFront;
}

void TestWindow::Run(const std::function<void()>& job) const {
    if (state_ && state_->thread.joinable() && state_->thread.get_id() != std::this_thread::get_id())
        SendMessageW(state_->hwnd, RunMessage(), 0, reinterpret_cast<LPARAM>(&job));
    else
        job();
}

// ---- the procedures -----------------------------------------------------------------------------------

LRESULT TestWindow::Dispatch(State* state, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == RunMessage()) {
        (*reinterpret_cast<const std::function<void()>*>(lParam))();
        return 0;
    }
    if (state->handler && state->handler(message, wParam, lParam))
        return 0;
    if (message == WM_SETFOCUS && state->edit != nullptr && state->edit != window) {
        SetFocus(state->edit);
        return 0;
    }
    if (message == WM_NCDESTROY) {  // a window the test destroyed itself: the owner has nothing left to destroy
        RemovePropW(window, kStateProp);
        if (window == state->hwnd)
            state->hwnd = state->edit = nullptr;
    }
    return state->baseProc != nullptr ? CallWindowProcW(state->baseProc, window, message, wParam, lParam)
                                      : DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK TestWindow::Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        // Windows of a tests' class that no owner made (children of a class under test) carry no state.
        if (void* state = reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams)
            SetPropW(window, kStateProp, state);
    }
    auto* state = static_cast<State*>(GetPropW(window, kStateProp));
    if (state == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    return Dispatch(state, window, message, wParam, lParam);
}

LRESULT CALLBACK TestWindow::SubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* state = static_cast<State*>(GetPropW(window, kStateProp));
    if (state == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    return Dispatch(state, window, message, wParam, lParam);
}

LRESULT CALLBACK TestWindow::EditProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* state = static_cast<State*>(GetPropW(window, kStateProp));
    if (state->options.editHandler(message, wParam, lParam))
        return 0;
    return CallWindowProcW(state->editBaseProc, window, message, wParam, lParam);
}

}  // namespace tavtest
