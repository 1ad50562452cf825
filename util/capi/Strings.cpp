// c/strings.h: Text helpers: display lines, cutting to a length, trailing backslashes.
#include "capi/c/strings.h"

#include "capi/detail/Boundary.h"
#include "platform/CString.h"
#include "strings/StringUtils.h"

#include <cwchar>

using namespace tav::capi::detail;

extern "C" {

int32_t tav_string_cut(const wchar_t* text, int32_t width, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({text, Out(buffer, capacity)}, [&]() -> int32_t {
        const auto pieces = StringCut(text, width);
        return WithText(static_cast<int32_t>(pieces.size()), CopyList(pieces, buffer, capacity, needed));
    });
}

int32_t tav_string_set_length(const wchar_t* text, int32_t length, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({text, Out(buffer, capacity)}, [&]() -> int32_t {
        // Lengths beyond the text give the text itself: capped here so that no buffer is grown for nothing.
        const int32_t textLength = static_cast<int32_t>(std::wcslen(text));
        CString s(text);
        SetStringLength(s, length < textLength ? length : textLength);
        return CopyText(std::wstring(static_cast<const wchar_t*>(s)), buffer, capacity, needed);
    });
}

int32_t tav_string_ensure_trailing_backslash(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({path, Out(buffer, capacity)}, [&]() -> int32_t {
        CStdStr<wchar_t> s(path);
        EnsureTrailingBackslash(s);
        return CopyText(s, buffer, capacity, needed);
    });
}

int32_t tav_string_strip_trailing_backslash(const wchar_t* path, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({path, Out(buffer, capacity)}, [&]() -> int32_t {
        CStdStr<wchar_t> s(path);
        StripTrailingBackslash(s);
        return CopyText(s, buffer, capacity, needed);
    });
}

}  // extern "C"
