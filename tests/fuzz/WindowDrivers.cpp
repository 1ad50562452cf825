// Drivers for the window lookups of cWindowsHelper and the tav_window_* functions on windows of the test's own
// with hostile class names and titles: a thread of the driver registers, input by input, a window class named
// by the input (a class of the tests' window, tavtest::WindowClass) and builds a hidden window tree (the
// class, its other spellings, the system's classes, nested children, titles of any text), sets the focus in
// it, and takes it all down again. The lookup by class must give the last descendant in enumeration order
// whose class equals the name (ignoring case, as the platform compares), the focus lookup the focus of the
// thread, and the handle text the low 32 bits in decimal.
#include "CapiChecks.h"
#include "Fuzz.h"
#include "TestWindow.h"

#include <TavUtil.h>

#include "capi/TavUtilC.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <functional>
#include <memory>

namespace fuzz {
namespace {

// The window thread: a message-only window on a thread of its own, whose message loop runs jobs for the
// driver (windows must be made and destroyed by the thread that owns them) and owns every window they make.
using WindowThread = tavtest::TestWindow;

std::shared_ptr<WindowThread> StartWindowThread() {
    auto options = tavtest::TestWindow::MessageOnly();
    options.className = L"TavFuzzWindowJobs";
    options.ownThread = true;
    return std::make_shared<WindowThread>(options);
}

Text HostileTitle(Rng& rng) {
    Text title;
    for (uint32_t n = rng.OneIn(20) ? 3000 : rng.Below(30); n > 0; --n)
        title += static_cast<wchar_t>(rng.OneIn(3) ? rng.Below(0x10000) : L'a' + rng.Below(26));
    return title;
}

// The other spellings of a name: another letter case, a unit more or less.
Text Respelled(Rng& rng, const Text& name) {
    Text other = name;
    switch (rng.Below(4)) {
    case 0:
        for (wchar_t& unit : other)
            unit = static_cast<wchar_t>(rng.OneIn(2) ? std::towupper(unit) : std::towlower(unit));
        break;
    case 1: other += static_cast<wchar_t>(L'a' + rng.Below(26)); break;
    case 2:
        if (!other.empty())
            other.pop_back();
        break;
    default: other = L" " + other; break;
    }
    return other;
}

// One input's window tree, built and taken down on the window thread.
struct WindowTree {
    WindowThread& thread;
    Text className;  // the input's class, registered for this input (when the system accepts it)
    tavtest::WindowClass windowClass;
    bool registered = false;
    HWND parent = nullptr;
    std::vector<HWND> windows;  // every descendant, made by this input
    HWND focus = nullptr;       // the thread's focus after the build, as the thread itself sees it

    // Wine 8 corrupts its own heap when a class name longer than 256 units is registered (measured here):
    // the class is made of the name's first 256 units, and longer names are searched for all the same.
    WindowTree(WindowThread& owner, const Text& name, Rng& rng) : thread(owner), className(name.substr(0, 256)) {
        thread.Run([&] { Build(rng); });
    }
    ~WindowTree() {
        thread.Run([&] {
            if (parent)
                DestroyWindow(parent);
        });
    }  // and the class goes after its windows
    WindowTree(const WindowTree&) = delete;
    WindowTree& operator=(const WindowTree&) = delete;

    void Build(Rng& rng) {
        const HINSTANCE instance = GetModuleHandleW(nullptr);
        windowClass = tavtest::WindowClass(className);
        registered = windowClass.registered();
        parent = CreateWindowExW(0, L"Static", HostileTitle(rng).c_str(), WS_POPUP, 0, 0, 50, 50, nullptr, nullptr,
                                 instance, nullptr);
        if (parent == nullptr)
            return;
        std::vector<HWND> containers = {parent};
        for (uint32_t n = rng.Below(7); n > 0; --n) {
            const Text classes[] = {className, Respelled(rng, className).substr(0, 256), L"Edit", L"Button", L"Static"};
            const Text& chosen = classes[rng.Below(5)];
            HWND within = containers[rng.Below(static_cast<uint32_t>(containers.size()))];
            HWND child = CreateWindowExW(0, chosen.c_str(), HostileTitle(rng).c_str(), WS_CHILD | WS_VISIBLE, 0, 0, 10,
                                         10, within, nullptr, instance, nullptr);
            if (child == nullptr)
                continue;
            windows.push_back(child);
            containers.push_back(child);
        }
        if (!windows.empty() && rng.OneIn(2))
            SetFocus(windows[rng.Below(static_cast<uint32_t>(windows.size()))]);
        focus = GetFocus();
    }
};

// The rule: every descendant examined in enumeration order, the last whose class (read into 260 units)
// equals the name as the platform compares it ignoring case.
HWND ExpectedChild(HWND parent, const Text& name) {
    struct Search {
        const wchar_t* name;
        HWND found;
    } search = {name.c_str(), nullptr};
    EnumChildWindows(
        parent,
        [](HWND window, LPARAM context) -> BOOL {
            auto* s = reinterpret_cast<Search*>(context);
            wchar_t className[260] = {};
            GetClassNameW(window, className, 260);
            if (lstrcmpiW(s->name, className) == 0)
                s->found = window;
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

Text HandleText(HWND window) {
    return std::to_wstring(static_cast<long>(static_cast<int32_t>(reinterpret_cast<uintptr_t>(window) & 0xFFFFFFFFu)));
}

std::string RunWindows(WindowThread& thread, const Input& input, bool capi) {
    Rng rng(input.choices);
    WindowTree tree(thread, input.text, rng);
    // The search name: the class itself, another spelling of it, or a class of the system.
    Text name = input.text;
    const unsigned pick = rng.Below(6);
    if (pick == 1)
        name = Respelled(rng, input.text);
    else if (pick == 2)
        name = std::vector<Text>{L"Edit", L"EDIT", L"button", L"Static", L"#32770", L""}[rng.Below(6)];
    // The tree's root, one of its windows, or a window that is gone.
    HWND root = tree.parent;
    if (!tree.windows.empty() && rng.OneIn(4))
        root = tree.windows[rng.Below(static_cast<uint32_t>(tree.windows.size()))];
    std::unique_ptr<WindowTree> gone;
    if (rng.OneIn(10)) {
        Rng other(rng.Next());
        gone = std::make_unique<WindowTree>(thread, L"TavFuzzGone", other);
        root = gone->parent;
        gone.reset();
    }

    const HWND expected = root ? ExpectedChild(root, name) : nullptr;
    cWindowsHelper helper;
    const HWND found = helper.GetChildWindow(root, CStdStr<wchar_t>(name));
    Expect(found == expected, "GetChildWindow(\"" + Narrow(name) + "\") gave " + Narrow(HandleText(found)) +
                                  ", the rule says " + Narrow(HandleText(expected)));
    // The focus of the window thread, read through an attachment to it. The platform reports the focus of a
    // thread whose windows are hidden and inactive only at times: the answer is that focus or none.
    const HWND probe = tree.windows.empty() ? tree.parent : tree.windows.back();
    const HWND focus = cWindowsHelper::GetFocusWindow(probe);
    Expect(probe == nullptr || focus == tree.focus || focus == nullptr,
           "GetFocusWindow gave " + Narrow(HandleText(focus)) + ", the thread's focus is " +
               Narrow(HandleText(tree.focus)));
    const HWND any = reinterpret_cast<HWND>(static_cast<uintptr_t>(rng.Next()));
    const HWND handles[] = {found, probe, any, nullptr};
    for (HWND window : handles)
        Expect(Same(cWindowsHelper::HandleToString(window), HandleText(window)),
               "HandleToString gave " + Narrow(cWindowsHelper::HandleToString(window)));

    if (capi) {
        const Text cName = name.substr(0, name.find(L'\0'));
        const HWND cExpected = root ? ExpectedChild(root, cName) : nullptr;
        Expect(tav_window_child_by_class(root, cName.c_str()) == cExpected,
               "tav_window_child_by_class differs from the rule");
        Expect(tav_window_child_by_class(root, nullptr) == nullptr, "tav_window_child_by_class with no name");
        const HWND cFocus = static_cast<HWND>(tav_window_focus_window(probe));
        Expect(cFocus == nullptr || (probe && cFocus == tree.focus),
               "tav_window_focus_window differs from the thread's focus");
        for (HWND window : handles)
            CheckText(
                "tav_window_handle_to_text",
                [&](wchar_t* b, size_t c, size_t* w) { return tav_window_handle_to_text(window, b, c, w); }, TAV_OK,
                HandleText(window));
    }
    return "r" + Num(tree.registered) + " f" + Num(found != nullptr) + " w" +
           Num(std::min<size_t>(tree.windows.size(), 3)) + " k" + Num(focus != nullptr);
}

const std::vector<Text> kClassSeeds = {
    L"TavFuzzClass",  L"Edit",         L"edit",         L"a",   L"",       L"#32770", L"#1",
    L"\x00C9t\x00E9", Text(255, L'c'), Text(256, L'c'), L"a b", L"\xD800x"};

Text ClassName(Rng& rng) {
    Text name = L"TavFuzz";
    for (uint32_t n = rng.Below(12); n > 0; --n)
        name += static_cast<wchar_t>(rng.OneIn(3) ? rng.Below(0x10000) : L"aAzZ#.\\ 19"[rng.Below(10)]);
    return name;
}

TEST(Fuzz, Windows) {
    auto thread = StartWindowThread();
    RunDriver({"windows", kClassSeeds, ClassName,
               [thread](const Input& input) { return RunWindows(*thread, input, false); }, false, 300, true});
}

TEST(Fuzz, CapiWindows) {
    auto thread = StartWindowThread();
    RunDriver({"capi-windows", kClassSeeds, ClassName,
               [thread](const Input& input) { return RunWindows(*thread, input, true); }, false, 300, true});
}

}  // namespace
}  // namespace fuzz
