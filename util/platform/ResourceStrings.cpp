#include "platform/CString.h"
#include "platform/detail/LibraryModule.h"

#include <vector>

namespace tav {

namespace {

bool LoadFrom(HMODULE module, UINT id, std::wstring& text) {
    // With a zero buffer size, LoadStringW hands out a read-only pointer to the resource text itself.
    const wchar_t* resource = nullptr;
    int length = LoadStringW(module, id, reinterpret_cast<LPWSTR>(&resource), 0);
    if (length <= 0 || resource == nullptr)
        return false;
    text.assign(resource, static_cast<size_t>(length));
    return true;
}

}  // namespace

bool LoadResourceString(UINT id, std::wstring& text) {
    text.clear();
    return LoadFrom(GetModuleHandleW(nullptr), id, text) || LoadFrom(platform::detail::LibraryModule(), id, text);
}

std::wstring FormatWideV(const wchar_t* format, va_list args) {
    if (format == nullptr)
        return {};
    std::vector<wchar_t> buffer(1024);
    for (;;) {
        va_list attempt;
        va_copy(attempt, args);
        // The runtime's _vsnwprintf keeps the platform's wide conventions (%s is wide); -1 means too small.
        int n = _vsnwprintf(buffer.data(), buffer.size() - 1, format, attempt);
        va_end(attempt);
        if (n >= 0)
            return std::wstring(buffer.data(), static_cast<size_t>(n));
        if (buffer.size() >= (1u << 24))
            return std::wstring(buffer.data(), buffer.size() - 1);
        buffer.resize(buffer.size() * 2);
    }
}

}  // namespace tav
