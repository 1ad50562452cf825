// c/windows.h: Window look-ups across threads.
#include "capi/c/windows.h"

#include "capi/detail/Boundary.h"
#include "desktop/WindowsHelper.h"

using namespace tav::capi::detail;

namespace {

HWND Window(tav_hwnd window) { return static_cast<HWND>(window); }

}  // namespace

extern "C" {

tav_hwnd tav_window_focus_window(tav_hwnd window) {
    return GuardedHandle([&]() -> tav_hwnd { return cWindowsHelper::GetFocusWindow(Window(window)); });
}

tav_hwnd tav_window_child_by_class(tav_hwnd parent, const wchar_t* class_name) {
    return GuardedHandle([&]() -> tav_hwnd {
        if (class_name == nullptr || StrayText({class_name}))
            return nullptr;
        return cWindowsHelper().GetChildWindow(Window(parent), class_name);
    });
}

int32_t tav_window_handle_to_text(tav_hwnd window, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({Out(buffer, capacity)}, [&]() -> int32_t {
        return CopyText(cWindowsHelper::HandleToString(Window(window)), buffer, capacity, needed);
    });
}

}  // extern "C"
