// The rules every function of the C interface follows at its boundary: which arguments it refuses (OnHandle,
// OnArgs: each wrapper lists its arguments once), how text and lists are copied into caller buffers, and how
// exceptions become result codes. Private to util/capi.
#pragma once

#include "capi/c/common.h"
#include "strings/StdStr.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <list>
#include <string>

namespace tav::capi::detail {

// A text pointer below 0x10000 that is not null is a stray number, never text: the C++ interface reads such
// a pointer as the number of a string in the host's resources, which a C host never means. Every function
// refuses it with TAV_E_NULL_ARGUMENT before anything else; null keeps the meaning each function gives it.
inline bool StrayText(std::initializer_list<const wchar_t*> texts) {
    for (const wchar_t* text : texts)
        if (text != nullptr && reinterpret_cast<uintptr_t>(text) < 0x10000)
            return true;
    return false;
}

// A null buffer is allowed only with capacity 0 (a size query).
inline bool BadBuffer(const void* buffer, size_t capacity) { return buffer == nullptr && capacity != 0; }

// Copies `text` and its terminator when they fit, else writes nothing. `needed` (may be null) receives the
// units the copy needs in both cases. TAV_OK or TAV_E_BUFFER_TOO_SMALL.
int32_t CopyText(const std::wstring& text, wchar_t* buffer, size_t capacity, size_t* needed);
// The items, each NUL-terminated, and one more NUL: by the same rule.
int32_t CopyList(const std::list<CStdStr<wchar_t>>& items, wchar_t* buffer, size_t capacity, size_t* needed);
// Two texts that are written both or neither.
int32_t CopyTwo(const std::wstring& first, wchar_t* firstBuffer, size_t firstCapacity, size_t* firstNeeded,
                const std::wstring& second, wchar_t* secondBuffer, size_t secondCapacity, size_t* secondNeeded);
// Raw bytes by the same rule, without a terminator.
int32_t CopyBytes(const void* data, size_t size, void* buffer, size_t capacity, size_t* needed);

// A function's own result once its text is out: the copy's failure wins.
inline int32_t WithText(int32_t result, int32_t copied) { return copied < 0 ? copied : result; }

// The code for the exception being handled (call only inside a catch block).
int32_t CurrentExceptionCode() noexcept;

// Runs `body` (which returns int32_t) so that no exception leaves it.
template <typename Body> int32_t Guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (...) {
        return CurrentExceptionCode();
    }
}

// Runs `body` (which returns a pointer or handle) so that no exception leaves it; null when one was thrown.
template <typename Body> auto GuardedHandle(Body&& body) noexcept -> decltype(body()) {
    try {
        return body();
    } catch (...) {
        return nullptr;
    }
}

inline bool Flag(int32_t value) { return value != 0; }

// One argument of a wrapper, as the checks at the boundary see it: a text (neither a stray number nor null),
// an optional text (may be null, never a stray number), a pointer that must not be null, or an output buffer
// (null only with capacity 0, a size query).
class Arg {
public:
    Arg(const wchar_t* text) : m_pointer(text), m_text(true), m_required(true) {}
    template <typename T> Arg(T* pointer) : m_pointer(pointer), m_text(false), m_required(true) {}

    static Arg OptionalText(const wchar_t* text) { return Arg(text, true, false); }
    static Arg Out(const void* buffer, size_t capacity) { return Arg(buffer, false, capacity != 0); }

    bool Stray() const { return m_text && StrayText({static_cast<const wchar_t*>(m_pointer)}); }
    bool Missing() const { return m_required && m_pointer == nullptr; }

private:
    Arg(const void* pointer, bool text, bool required) : m_pointer(pointer), m_text(text), m_required(required) {}

    const void* m_pointer;
    bool m_text;
    bool m_required;
};
using Args = std::initializer_list<Arg>;

inline Arg OptionalText(const wchar_t* text) { return Arg::OptionalText(text); }
inline Arg Out(const void* buffer, size_t capacity) { return Arg::Out(buffer, capacity); }

// The checks every wrapper makes, in this order, before `body` runs with no exception leaving it: a stray
// number among the texts, a null handle (TAV_E_NULL_HANDLE), a missing argument. A stray number and a
// missing argument are both TAV_E_NULL_ARGUMENT.
template <typename Handle, typename Body> int32_t OnHandle(Handle handle, Args args, Body body) {
    for (const Arg& arg : args)
        if (arg.Stray())
            return TAV_E_NULL_ARGUMENT;
    return Guarded([&]() -> int32_t {
        if (handle == nullptr)
            return TAV_E_NULL_HANDLE;
        for (const Arg& arg : args)
            if (arg.Missing())
                return TAV_E_NULL_ARGUMENT;
        return body();
    });
}

// The same checks for a wrapper without a handle.
template <typename Body> int32_t OnArgs(Args args, Body body) {
    for (const Arg& arg : args)
        if (arg.Stray() || arg.Missing())
            return TAV_E_NULL_ARGUMENT;
    return Guarded(body);
}

// A look-up's answer: 1 and the text, or 0 and an empty text.
inline int32_t FoundText(bool found, const CStdStr<wchar_t>& text, wchar_t* buffer, size_t capacity, size_t* needed) {
    return WithText(found ? 1 : 0, CopyText(found ? text : CStdStr<wchar_t>(), buffer, capacity, needed));
}

// A look-up that fills a text and says whether it found something: 1 and the text, or 0 and an empty text.
template <typename Query> int32_t QueriedText(Query query, wchar_t* buffer, size_t capacity, size_t* needed) {
    if (BadBuffer(buffer, capacity))
        return TAV_E_NULL_ARGUMENT;
    CStdStr<wchar_t> text;
    const bool found = query(text);
    if (!found)
        text.clear();
    return WithText(found ? 1 : 0, CopyText(text, buffer, capacity, needed));
}

// A registry root or key of the C interface as Windows has it (the predefined keys keep their values).
inline HKEY HkeyOf(tav_hkey key) { return static_cast<HKEY>(key); }

}  // namespace tav::capi::detail
