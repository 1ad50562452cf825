// CStdStr<wchar_t>: TavUtil's wide string. A std::wstring with no data of its own, plus the conveniences
// the library and its hosts rely on: construction from string-resource identifiers, trimming and searching
// by character sets, Left/Right with clamped counts, and printf-style formatting.
#pragma once

#include "../platform/CString.h"
#include "../platform/Export.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

template <typename CT> class CStdStr;

namespace tav::detail {

// The first buffer of CStdStr::Format, which most texts fit. After a failed conversion Format keeps the
// text up to its first NUL, so the buffer must be all zeros before the formatter writes into it: one buffer
// per module is kept that way between calls, and only what a call wrote is cleared after it, so that a
// short Format neither allocates nor clears 4 KiB. A thread that finds it in use gets a cleared buffer of
// its own.
class FirstFormatBuffer {
public:
    static constexpr size_t kUnits = 2049;  // CStdStr<wchar_t>::kFormatBufferSizes[0]

    FirstFormatBuffer() : shared_(!InUse().test_and_set(std::memory_order_acquire)) {
        if (!shared_)
            own_.assign(kUnits, L'\0');
    }
    ~FirstFormatBuffer() {
        if (shared_) {
            std::fill_n(Shared(), written_, L'\0');
            InUse().clear(std::memory_order_release);
        }
    }
    FirstFormatBuffer(const FirstFormatBuffer&) = delete;
    FirstFormatBuffer& operator=(const FirstFormatBuffer&) = delete;

    wchar_t* units() { return shared_ ? Shared() : own_.data(); }
    // The formatter wrote into the first `count` units (at most all of them).
    void Wrote(size_t count) { written_ = std::max(written_, std::min(count, kUnits)); }

private:
    static wchar_t* Shared() {
        static wchar_t units[kUnits];
        return units;
    }
    static std::atomic_flag& InUse() {
        static std::atomic_flag flag = ATOMIC_FLAG_INIT;
        return flag;
    }

    const bool shared_;
    size_t written_ = 0;
    std::vector<wchar_t> own_;
};

}  // namespace tav::detail

template <> class CStdStr<wchar_t> : public std::wstring {
public:
    using Base = std::wstring;

    CStdStr() = default;
    CStdStr(const Base& text) : Base(text) {}
    CStdStr(Base&& text) : Base(std::move(text)) {}
    CStdStr(const CStdStr&) = default;
    CStdStr(CStdStr&&) = default;
    CStdStr(const wchar_t* text, size_type length) : Base(text, length) {}
    CStdStr(size_type count, wchar_t ch) : Base(count, ch) {}
    CStdStr(const CString& text) : Base(text.str()) {}
    // A null pointer gives the empty string; a value below 0x10000 is a string-resource identifier.
    CStdStr(const wchar_t* text) { *this = text; }

    CStdStr& operator=(const CStdStr& other) {
        if (this != &other)
            Base::operator=(other);
        return *this;
    }
    CStdStr& operator=(CStdStr&&) = default;
    CStdStr& operator=(const Base& text) {
        Base::operator=(text);
        return *this;
    }
    CStdStr& operator=(wchar_t ch) {
        Base::assign(1, ch);
        return *this;
    }
    CStdStr& operator=(const wchar_t* text) {
        if (text == nullptr) {
            clear();
        } else if (IS_INTRESOURCE(text)) {
            LoadString(static_cast<UINT>(reinterpret_cast<ULONG_PTR>(text)));
        } else if (text == data()) {
            // Assigning the string to itself leaves it as it is.
        } else if (text > data() && text <= data() + size()) {
            // A pointer into our own buffer: keep the tail, dropping what precedes it.
            erase(0, static_cast<size_type>(text - data()));
        } else {
            Base::assign(text);
        }
        return *this;
    }

    // Loads a string resource (the host executable first, then TavUtil.dll); empty when missing.
    bool LoadString(UINT id) {
        std::wstring text;
        bool found = tav::LoadResourceString(id, text);
        Base::operator=(std::move(text));
        return found;
    }

    int GetLength() const { return static_cast<int>(size()); }
    bool IsEmpty() const { return empty(); }
    void Empty() { clear(); }
    operator const wchar_t*() const { return c_str(); }

    // The first or last `count` units, `count` clamped to 0 and to the length.
    CStdStr Left(int count) const { return CStdStr(substr(0, Clamp(count))); }
    CStdStr Right(int count) const { return CStdStr(substr(size() - Clamp(count))); }
    CStdStr Mid(int first) const { return first >= GetLength() ? CStdStr() : CStdStr(substr(Clamp(first))); }
    CStdStr Mid(int first, int count) const {
        return first >= GetLength() ? CStdStr() : CStdStr(substr(Clamp(first), Clamp(count)));
    }

    // Trimming drops leading units found in `set`, then trailing ones. Without a set: white space.
    CStdStr& TrimLeft(const wchar_t* set = L" \t\r\n\f\v") {
        erase(0, find_first_not_of(set));
        return *this;
    }
    CStdStr& TrimRight(const wchar_t* set = L" \t\r\n\f\v") {
        size_type last = find_last_not_of(set);
        erase(last == npos ? 0 : last + 1);
        return *this;
    }
    CStdStr& Trim(const wchar_t* set = L" \t\r\n\f\v") { return TrimLeft(set).TrimRight(set); }

    // Searches; -1 when not found.
    int Find(wchar_t ch, int start = 0) const { return ToIndex(find(ch, Clamp(start))); }
    int Find(const wchar_t* text, int start = 0) const { return ToIndex(find(text, Clamp(start))); }
    int ReverseFind(wchar_t ch) const { return ToIndex(rfind(ch)); }
    int FindOneOf(const wchar_t* set) const { return ToIndex(find_first_of(set)); }
    int FindLastOneOf(const wchar_t* set) const { return ToIndex(find_last_of(set)); }
    int FindNotOneOf(const wchar_t* set) const { return ToIndex(find_first_not_of(set)); }
    int FindLastNotOneOf(const wchar_t* set) const { return ToIndex(find_last_not_of(set)); }

    CStdStr& MakeUpper() {
        if (!empty())
            CharUpperBuffW(data(), static_cast<DWORD>(size()));
        return *this;
    }
    CStdStr& MakeLower() {
        if (!empty())
            CharLowerBuffW(data(), static_cast<DWORD>(size()));
        return *this;
    }
    CStdStr ToUpper() const { return CStdStr(*this).MakeUpper(); }
    CStdStr ToLower() const { return CStdStr(*this).MakeLower(); }

    // Case-insensitive comparison by the system's rules (like lstrcmpiW): <0, 0, >0.
    int CompareNoCase(const wchar_t* other) const { return lstrcmpiW(c_str(), other ? other : L""); }
    bool EqualsNoCase(const wchar_t* other) const { return CompareNoCase(other) == 0; }

    // Replaces every occurrence of `from`; returns how many were replaced.
    int Replace(const wchar_t* from, const wchar_t* to) {
        std::wstring oldText = from ? from : L"", newText = to ? to : L"";
        if (oldText.empty())
            return 0;
        int count = 0;
        for (size_type pos = find(oldText); pos != npos; pos = find(oldText, pos + newText.size())) {
            replace(pos, oldText.size(), newText);
            ++count;
        }
        return count;
    }

    // printf-style formatting with wide format strings (%s is a wide string, as on the platform).
    void Format(const wchar_t* format, ...) {
        va_list args;
        va_start(args, format);
        FormatV(format, args);
        va_end(args);
    }
    void FormatV(const wchar_t* format, va_list args);

    // The buffer sizes Format tries, in units, terminator included: each step adds the previous growth
    // plus 2048. After the last one, the text is kept truncated to that buffer.
    static constexpr int kFormatBufferSizes[] = {2049, 6145, 12289, 20481, 30721, 43009};

    CStdStr& operator+=(const CStdStr& text) {
        append(text);
        return *this;
    }
    CStdStr& operator+=(const Base& text) {
        append(text);
        return *this;
    }
    CStdStr& operator+=(const wchar_t* text) {
        if (text)
            append(text);
        return *this;
    }
    CStdStr& operator+=(wchar_t ch) {
        push_back(ch);
        return *this;
    }

private:
    size_type Clamp(int count) const {
        if (count < 0)
            return 0;
        return static_cast<size_type>(count) > size() ? size() : static_cast<size_type>(count);
    }
    static int ToIndex(size_type pos) { return pos == npos ? -1 : static_cast<int>(pos); }
};

inline void CStdStr<wchar_t>::FormatV(const wchar_t* format, va_list args) {
    if (format == nullptr) {
        clear();
        return;
    }
    // Most texts fit the first size, whose buffer is kept cleared between calls (FirstFormatBuffer): a
    // short Format allocates nothing but the string itself. Larger sizes go to the heap.
    static_assert(kFormatBufferSizes[0] == tav::detail::FirstFormatBuffer::kUnits, "the first size");
    tav::detail::FirstFormatBuffer first;
    std::vector<wchar_t> largerBuffer;
    wchar_t* buffer = first.units();
    int size = kFormatBufferSizes[0];
    for (int candidate : kFormatBufferSizes) {
        if (candidate != kFormatBufferSizes[0]) {
            largerBuffer.assign(static_cast<size_t>(candidate), L'\0');
            buffer = largerBuffer.data();
            size = candidate;
        }
        va_list attempt;
        va_copy(attempt, args);
        // -1: the text did not fit in size - 1 units, or a conversion failed.
        int written = _vsnwprintf(buffer, static_cast<size_t>(size - 1), format, attempt);
        va_end(attempt);
        // The text and its terminator; a failed call may have written anywhere below the size.
        first.Wrote(written >= 0 ? static_cast<size_t>(written) + 1 : static_cast<size_t>(size));
        if (written >= 0) {
            Base::assign(buffer, static_cast<size_t>(written));
            return;
        }
        va_copy(attempt, args);
        bool conversionFailed = _vscwprintf(format, attempt) < 0;
        va_end(attempt);
        if (conversionFailed) {
            // The text formatted before the failing conversion is kept, up to its first NUL, and none of
            // the buffer's padding. A text that filled the whole buffer may go on beyond it: the next size
            // is tried, as for a text that did not fit.
            const size_t before = wcsnlen(buffer, static_cast<size_t>(size - 1));
            if (before < static_cast<size_t>(size - 1)) {
                Base::assign(buffer, before);
                return;
            }
        }
    }
    Base::assign(buffer, static_cast<size_t>(size - 1));
}

// Concatenation: the result is always a CStdStr.
inline CStdStr<wchar_t> operator+(CStdStr<wchar_t> left, const CStdStr<wchar_t>& right) { return left += right; }
inline CStdStr<wchar_t> operator+(CStdStr<wchar_t> left, const std::wstring& right) { return left += right; }
inline CStdStr<wchar_t> operator+(CStdStr<wchar_t> left, std::wstring&& right) { return left += right; }
inline CStdStr<wchar_t> operator+(const std::wstring& left, const CStdStr<wchar_t>& right) {
    return CStdStr<wchar_t>(left) += right;
}
inline CStdStr<wchar_t> operator+(std::wstring&& left, const CStdStr<wchar_t>& right) {
    return CStdStr<wchar_t>(std::move(left)) += right;
}
inline CStdStr<wchar_t> operator+(CStdStr<wchar_t> left, const wchar_t* right) { return left += right; }
inline CStdStr<wchar_t> operator+(CStdStr<wchar_t> left, wchar_t right) { return left += right; }
inline CStdStr<wchar_t> operator+(const wchar_t* left, const CStdStr<wchar_t>& right) {
    return CStdStr<wchar_t>(left) += right;
}
inline CStdStr<wchar_t> operator+(wchar_t left, const CStdStr<wchar_t>& right) {
    return CStdStr<wchar_t>(1, left) += right;
}
// Case-sensitive equality with a C string (a null pointer equals the empty string).
inline bool operator==(const CStdStr<wchar_t>& a, const wchar_t* b) { return a.compare(b ? b : L"") == 0; }
inline bool operator==(const wchar_t* a, const CStdStr<wchar_t>& b) { return b == a; }
inline bool operator!=(const CStdStr<wchar_t>& a, const wchar_t* b) { return !(a == b); }
inline bool operator!=(const wchar_t* a, const CStdStr<wchar_t>& b) { return !(b == a); }

using CStdStringW = CStdStr<wchar_t>;
