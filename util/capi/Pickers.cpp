// c/pickers.h: the file and folder pickers.
#include "capi/c/pickers.h"

#include "capi/detail/Boundary.h"
#include "desktop/BrowseDialogs.h"
#include "platform/CWnd.h"

#include <string>

using namespace tav::capi::detail;

namespace {

HWND Window(tav_hwnd window) { return static_cast<HWND>(window); }

// The answer of the last file dialog that did not fit the caller's buffer, kept until a call with the same
// arguments fetches it, so that a size query does not cost the user a second dialog. Process-wide like the
// interface's other state; only tav_picker_files touches it.
struct KeptAnswer {
    bool kept = false;
    std::wstring filter;
    std::wstring initialDir;
    std::wstring title;
    bool chosen = false;
    CStdStr<wchar_t> file;

    bool For(const wchar_t* otherFilter, const wchar_t* otherDir, const wchar_t* otherTitle) const {
        return kept && filter == otherFilter && initialDir == otherDir && title == otherTitle;
    }
};

KeptAnswer& LastFileAnswer() {
    static KeptAnswer answer;
    return answer;
}

}  // namespace

extern "C" {

int32_t tav_picker_files(const wchar_t* filter, const wchar_t* initial_dir, const wchar_t* title, wchar_t* buffer,
                         size_t capacity, size_t* needed) {
    return OnArgs({filter, initial_dir, title, Out(buffer, capacity)}, [&]() -> int32_t {
        KeptAnswer& answer = LastFileAnswer();
        if (!answer.For(filter, initial_dir, title)) {
            answer.kept = false;
            CStdStr<wchar_t> file;
            const bool chosen = BrowseFiles(filter, file, initial_dir, title);
            answer = KeptAnswer{true, filter, initial_dir, title, chosen, file};
        }
        const int32_t copied = CopyText(answer.file, buffer, capacity, needed);
        if (copied == TAV_OK)
            answer.kept = false;  // handed over: the next call asks the user again
        return WithText(answer.chosen ? 1 : 0, copied);
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
