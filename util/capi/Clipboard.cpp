// c/clipboard.h: The Unicode text on the clipboard.
#include "capi/c/clipboard.h"

#include "capi/detail/Boundary.h"
#include "desktop/Clipboard.h"

using namespace tav::capi::detail;

extern "C" {

int32_t tav_clipboard_get_text(wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({Out(buffer, capacity)}, [&]() -> int32_t {
        ClassicClipboard clipboard(true, nullptr);
        if (!clipboard.isOpen())
            return 0;
        return WithText(1, CopyText(clipboard.getText(), buffer, capacity, needed));
    });
}

int32_t tav_clipboard_set_text(const wchar_t* text) {
    return OnArgs({text}, [&]() -> int32_t {
        ClassicClipboard clipboard(true, nullptr);
        return clipboard.isOpen() && clipboard.setText(text) ? 1 : 0;
    });
}

}  // extern "C"
