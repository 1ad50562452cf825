// CString: the wide string of the platform class library, as far as TavUtil's interface uses it. It keeps
// the class library's member spellings (GetLength, GetBuffer, ReleaseBuffer, LoadString, ...), so that hosts
// written against the class library read the same.
#pragma once

#include "Export.h"

#include <windows.h>

#include <cstdarg>
#include <cwchar>
#include <string>

namespace tav {
// Loads string resource `id`: from the host executable first, then from TavUtil.dll, as the class
// library's resource chain does. False (and `text` empty) when neither has it.
TAVUTIL_API bool LoadResourceString(UINT id, std::wstring& text);
// printf-style formatting with the platform's wide conventions (%s is a wide string).
TAVUTIL_API std::wstring FormatWideV(const wchar_t* format, va_list args);
}  // namespace tav

class CString {
public:
    CString() = default;
    CString(const wchar_t* text) { *this = text; }
    CString(const wchar_t* text, int length)
        : s_(text ? std::wstring(text, length < 0 ? 0 : length) : std::wstring()) {}
    CString(wchar_t ch, int repeat = 1) : s_(repeat > 0 ? repeat : 0, ch) {}
    CString(const std::wstring& text) : s_(text) {}

    CString& operator=(const wchar_t* text) {
        if (text == nullptr)
            s_.clear();
        else if (IS_INTRESOURCE(text))
            LoadString(static_cast<UINT>(reinterpret_cast<ULONG_PTR>(text)));
        else
            s_ = std::wstring(text);
        return *this;
    }

    int GetLength() const { return static_cast<int>(s_.size()); }
    bool IsEmpty() const { return s_.empty(); }
    void Empty() { s_.clear(); }
    operator const wchar_t*() const { return s_.c_str(); }
    const wchar_t* GetString() const { return s_.c_str(); }
    wchar_t GetAt(int index) const { return s_.at(static_cast<size_t>(index)); }

    // A writable buffer of at least `minLength` units; call ReleaseBuffer when done writing.
    wchar_t* GetBuffer(int minLength = 0) {
        if (minLength > GetLength())
            s_.resize(static_cast<size_t>(minLength));
        return s_.data();
    }
    // A writable buffer of exactly `length` units.
    wchar_t* GetBufferSetLength(int length) {
        s_.resize(static_cast<size_t>(length < 0 ? 0 : length));
        return s_.data();
    }
    // Ends buffer access: the length becomes `newLength`, or with -1 the length up to the first NUL.
    void ReleaseBuffer(int newLength = -1) {
        if (newLength < 0)
            s_.resize(wcsnlen(s_.c_str(), s_.size()));
        else if (static_cast<size_t>(newLength) <= s_.size())
            s_.resize(static_cast<size_t>(newLength));
    }

    BOOL LoadString(UINT id) { return tav::LoadResourceString(id, s_) ? TRUE : FALSE; }

    void Format(const wchar_t* format, ...) {
        va_list args;
        va_start(args, format);
        s_ = tav::FormatWideV(format, args);
        va_end(args);
    }

    CString Left(int count) const { return CString(s_.substr(0, Clamp(count))); }
    CString Right(int count) const { return CString(s_.substr(s_.size() - Clamp(count))); }
    CString Mid(int first) const { return Mid(first, GetLength()); }
    CString Mid(int first, int count) const {
        size_t start = Clamp(first);
        return CString(s_.substr(start, static_cast<size_t>(count < 0 ? 0 : count)));
    }
    int Find(wchar_t ch, int start = 0) const { return ToIndex(s_.find(ch, Clamp(start))); }
    int Find(const wchar_t* text, int start = 0) const { return ToIndex(s_.find(text, Clamp(start))); }
    int ReverseFind(wchar_t ch) const { return ToIndex(s_.rfind(ch)); }
    CString& MakeUpper() {
        CharUpperBuffW(s_.data(), static_cast<DWORD>(s_.size()));
        return *this;
    }
    CString& MakeLower() {
        CharLowerBuffW(s_.data(), static_cast<DWORD>(s_.size()));
        return *this;
    }
    CString& Trim() { return TrimRight().TrimLeft(); }
    CString& TrimLeft() {
        s_.erase(0, s_.find_first_not_of(L" \t\r\n"));
        return *this;
    }
    CString& TrimRight() {
        size_t last = s_.find_last_not_of(L" \t\r\n");
        s_.erase(last == std::wstring::npos ? 0 : last + 1);
        return *this;
    }
    int Replace(const wchar_t* oldText, const wchar_t* newText);
    int CompareNoCase(const wchar_t* other) const { return lstrcmpiW(s_.c_str(), other ? other : L""); }

    CString& operator+=(const wchar_t* text) {
        s_ += text ? text : L"";
        return *this;
    }
    CString& operator+=(wchar_t ch) {
        s_ += ch;
        return *this;
    }
    CString& operator+=(const CString& other) {
        s_ += other.s_;
        return *this;
    }
    friend CString operator+(CString left, const CString& right) { return left += right; }
    friend CString operator+(CString left, const wchar_t* right) { return left += right; }
    friend CString operator+(const wchar_t* left, const CString& right) { return CString(left) += right; }
    friend bool operator==(const CString& a, const CString& b) { return a.s_ == b.s_; }
    friend bool operator==(const CString& a, const wchar_t* b) { return a.s_ == (b ? b : L""); }
    friend bool operator!=(const CString& a, const CString& b) { return !(a == b); }
    friend bool operator!=(const CString& a, const wchar_t* b) { return !(a == b); }

    const std::wstring& str() const { return s_; }

private:
    size_t Clamp(int count) const {
        if (count < 0)
            return 0;
        return static_cast<size_t>(count) > s_.size() ? s_.size() : static_cast<size_t>(count);
    }
    static int ToIndex(size_t pos) { return pos == std::wstring::npos ? -1 : static_cast<int>(pos); }

    std::wstring s_;
};

inline int CString::Replace(const wchar_t* oldText, const wchar_t* newText) {
    std::wstring from = oldText ? oldText : L"", to = newText ? newText : L"";
    if (from.empty())
        return 0;
    int count = 0;
    for (size_t pos = s_.find(from); pos != std::wstring::npos; pos = s_.find(from, pos + to.size())) {
        s_.replace(pos, from.size(), to);
        ++count;
    }
    return count;
}
