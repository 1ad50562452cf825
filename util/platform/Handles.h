// One owner type per kind of system handle: the handle is released in the destructor, so that every
// path releases what it acquired. Owners are movable and not copyable. Releasing never disturbs the
// caller's GetLastError value.
#pragma once

#include <windows.h>
#include <oleauto.h>

#include <utility>

namespace tav {

template <typename T, T Invalid, typename Closer>
class UniqueResource {
public:
    UniqueResource() = default;
    explicit UniqueResource(T value) : value_(value) {}
    ~UniqueResource() { reset(); }

    UniqueResource(const UniqueResource&) = delete;
    UniqueResource& operator=(const UniqueResource&) = delete;
    UniqueResource(UniqueResource&& other) noexcept : value_(other.release()) {}
    UniqueResource& operator=(UniqueResource&& other) noexcept {
        if (this != &other)
            reset(other.release());
        return *this;
    }

    T get() const { return value_; }
    bool valid() const { return value_ != Invalid; }
    explicit operator bool() const { return valid(); }

    // Gives up ownership without releasing.
    T release() { return std::exchange(value_, Invalid); }

    void reset(T value = Invalid) {
        T old = std::exchange(value_, value);
        if (old != Invalid) {
            DWORD lastError = GetLastError();
            Closer::close(old);
            SetLastError(lastError);
        }
    }

    // For APIs that return the handle through an out pointer: releases the current one first.
    T* put() {
        reset();
        return &value_;
    }

private:
    T value_ = Invalid;
};

namespace detail {
struct CloseKey { static void close(HKEY h) { RegCloseKey(h); } };
struct CloseKernelHandle { static void close(HANDLE h) { CloseHandle(h); } };
struct FreeModule { static void close(HMODULE h) { FreeLibrary(h); } };
struct FreeGlobal { static void close(HGLOBAL h) { GlobalFree(h); } };
struct FreeBstr { static void close(BSTR s) { SysFreeString(s); } };
struct FreeSidCloser { static void close(PSID s) { FreeSid(s); } };
struct DeleteGdiObject { static void close(HGDIOBJ h) { DeleteObject(h); } };
struct CloseFind { static void close(HANDLE h) { FindClose(h); } };
}  // namespace detail

// The "no handle" value of each kind is part of its type: a file or a snapshot is INVALID_HANDLE_VALUE
// when absent, a process, thread or token is null.
using UniqueKey = UniqueResource<HKEY, nullptr, detail::CloseKey>;
using UniqueHandle = UniqueResource<HANDLE, nullptr, detail::CloseKernelHandle>;  // process, thread, token, event
using UniqueModule = UniqueResource<HMODULE, nullptr, detail::FreeModule>;
using UniqueGlobal = UniqueResource<HGLOBAL, nullptr, detail::FreeGlobal>;
using UniqueBstr = UniqueResource<BSTR, nullptr, detail::FreeBstr>;
using UniqueSid = UniqueResource<PSID, nullptr, detail::FreeSidCloser>;  // from AllocateAndInitializeSid
using UniqueGdiObject = UniqueResource<HGDIOBJ, nullptr, detail::DeleteGdiObject>;

// INVALID_HANDLE_VALUE is not a constant expression, so the "invalid" kinds carry their own test.
template <typename Closer>
class UniqueInvalidableHandle {
public:
    UniqueInvalidableHandle() = default;
    explicit UniqueInvalidableHandle(HANDLE value) : value_(value) {}
    ~UniqueInvalidableHandle() { reset(); }

    UniqueInvalidableHandle(const UniqueInvalidableHandle&) = delete;
    UniqueInvalidableHandle& operator=(const UniqueInvalidableHandle&) = delete;
    UniqueInvalidableHandle(UniqueInvalidableHandle&& other) noexcept : value_(other.release()) {}
    UniqueInvalidableHandle& operator=(UniqueInvalidableHandle&& other) noexcept {
        if (this != &other)
            reset(other.release());
        return *this;
    }

    HANDLE get() const { return value_; }
    bool valid() const { return value_ != INVALID_HANDLE_VALUE && value_ != nullptr; }
    explicit operator bool() const { return valid(); }
    HANDLE release() { return std::exchange(value_, INVALID_HANDLE_VALUE); }
    void reset(HANDLE value = INVALID_HANDLE_VALUE) {
        HANDLE old = std::exchange(value_, value);
        if (old != INVALID_HANDLE_VALUE && old != nullptr) {
            DWORD lastError = GetLastError();
            Closer::close(old);
            SetLastError(lastError);
        }
    }

private:
    HANDLE value_ = INVALID_HANDLE_VALUE;
};

using UniqueFile = UniqueInvalidableHandle<detail::CloseKernelHandle>;
using UniqueSnapshot = UniqueInvalidableHandle<detail::CloseKernelHandle>;  // CreateToolhelp32Snapshot
using UniqueFind = UniqueInvalidableHandle<detail::CloseFind>;              // FindFirstFileW

// Runs a callable when the scope ends, for one-off clean-ups that have no owner type.
template <typename F>
class ScopeExit {
public:
    explicit ScopeExit(F f) : f_(std::move(f)) {}
    ~ScopeExit() {
        if (active_)
            f_();
    }
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;
    void dismiss() { active_ = false; }

private:
    F f_;
    bool active_ = true;
};

}  // namespace tav
