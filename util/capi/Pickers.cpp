// c/pickers.h: The file and folder pickers.
#include "capi/c/pickers.h"

#include "capi/detail/Boundary.h"
#include "desktop/BrowseDialogs.h"
#include "platform/CWnd.h"

using namespace tav::capi;

namespace {

HWND Window(tav_hwnd window) { return static_cast<HWND>(window); }

}  // namespace

extern "C" {

int32_t tav_picker_files(const wchar_t* filter, const wchar_t* initial_dir, const wchar_t* title, wchar_t* buffer,
                         size_t capacity, size_t* needed) {
    return OnArgs({filter, initial_dir, title, Out(buffer, capacity)}, [&]() -> int32_t {
        CStdStr<wchar_t> file;
        const bool chosen = BrowseFiles(filter, file, initial_dir, title);
        return WithText(chosen ? 1 : 0, CopyText(file, buffer, capacity, needed));
    });
}

int32_t tav_picker_folder(const wchar_t* title, const wchar_t* folder, tav_hwnd parent, wchar_t* buffer,
                          size_t capacity, size_t* needed) {
    return OnArgs({title, folder, Out(buffer, capacity)}, [&]() -> int32_t {
        CStdStr<wchar_t> chosenFolder(folder);
        CWnd owner(Window(parent));
        const bool chosen = BrowseForFolder(title, chosenFolder, parent ? &owner : nullptr);
        return WithText(chosen ? 1 : 0, CopyText(chosenFolder, buffer, capacity, needed));
    });
}

}  // extern "C"
