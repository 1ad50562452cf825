// One owner type per kind of system handle: the handle is released in the destructor, so that every
// path releases what it acquired. Owners are movable and not copyable. Releasing never disturbs the
// caller's GetLastError value. Paired calls that are not handles (a lock, an attachment) have guards
// in Guards.h.
#pragma once

#include <windows.h>
#include <oleauto.h>

#include <utility>

namespace tav {

namespace detail {

// The "no value" rules. Most kinds are absent when null.
template <typename T> struct NullIsNoValue {
    static T none() { return nullptr; }
    static bool holds(T value) { return value != nullptr; }
};

// Files, snapshots and find handles are absent when INVALID_HANDLE_VALUE. A null handle is never closed
// either: no call hands one out as a live handle of these kinds.
struct InvalidHandleIsNoValue {
    static HANDLE none() { return INVALID_HANDLE_VALUE; }
    static bool holds(HANDLE value) { return value != INVALID_HANDLE_VALUE && value != nullptr; }
};

}  // namespace detail

// Owns one value of type T, released with Closer::close(value) unless NoValue says there is none.
template <typename T, typename Closer, typename NoValue = detail::NullIsNoValue<T>> class UniqueResource {
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
    bool valid() const { return NoValue::holds(value_); }
    explicit operator bool() const { return valid(); }

    // Gives up ownership without releasing.
    T release() { return std::exchange(value_, NoValue::none()); }

    void reset(T value = NoValue::none()) {
        T old = std::exchange(value_, value);
        if (NoValue::holds(old)) {
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
    T value_ = NoValue::none();
};

namespace detail {
struct CloseKey {
    static void close(HKEY h) { RegCloseKey(h); }
};
struct CloseKernelHandle {
    static void close(HANDLE h) { CloseHandle(h); }
};
struct FreeModule {
    static void close(HMODULE h) { FreeLibrary(h); }
};
struct FreeGlobal {
    static void close(HGLOBAL h) { GlobalFree(h); }
};
struct FreeLocal {
    static void close(void* p) { LocalFree(p); }
};
struct FreeProcessHeap {
    static void close(void* p) { HeapFree(GetProcessHeap(), 0, p); }
};
struct FreeBstr {
    static void close(BSTR s) { SysFreeString(s); }
};
struct FreeSidCloser {
    static void close(PSID s) { FreeSid(s); }
};
struct DeleteGdiObject {
    static void close(HGDIOBJ h) { DeleteObject(h); }
};
struct DeleteMemoryDc {
    static void close(HDC h) { DeleteDC(h); }
};
struct CloseFind {
    static void close(HANDLE h) { FindClose(h); }
};
}  // namespace detail

// The "no handle" value of each kind is part of its type: a file or a snapshot is INVALID_HANDLE_VALUE
// when absent, a process, thread or token is null.
using UniqueKey = UniqueResource<HKEY, detail::CloseKey>;
using UniqueHandle = UniqueResource<HANDLE, detail::CloseKernelHandle>;  // process, thread, token, event
using UniqueModule = UniqueResource<HMODULE, detail::FreeModule>;
using UniqueGlobal = UniqueResource<HGLOBAL, detail::FreeGlobal>;
using UniqueBstr = UniqueResource<BSTR, detail::FreeBstr>;
using UniqueSid = UniqueResource<PSID, detail::FreeSidCloser>;  // from AllocateAndInitializeSid
using UniqueGdiObject = UniqueResource<HGDIOBJ, detail::DeleteGdiObject>;
using UniqueMemoryDc = UniqueResource<HDC, detail::DeleteMemoryDc>;  // from CreateCompatibleDC
using UniqueFile = UniqueResource<HANDLE, detail::CloseKernelHandle, detail::InvalidHandleIsNoValue>;
using UniqueSnapshot = UniqueResource<HANDLE, detail::CloseKernelHandle, detail::InvalidHandleIsNoValue>;
using UniqueFind = UniqueResource<HANDLE, detail::CloseFind, detail::InvalidHandleIsNoValue>;  // FindFirstFileW

// Memory the system handed out from the local heap (CommandLineToArgvW, FormatMessageW with
// FORMAT_MESSAGE_ALLOCATE_BUFFER), typed as what it holds.
template <typename T> using UniqueLocal = UniqueResource<T*, detail::FreeLocal>;

// Memory taken from the process heap (HeapAlloc of GetProcessHeap()), typed as what it holds.
template <typename T> using UniqueProcessHeap = UniqueResource<T*, detail::FreeProcessHeap>;

// A device context from GetDC, given back with ReleaseDC to the window it came from.
class UniqueWindowDc {
public:
    explicit UniqueWindowDc(HWND window) : window_(window), dc_(GetDC(window)) {}
    ~UniqueWindowDc() {
        if (dc_ != nullptr) {
            DWORD lastError = GetLastError();
            ReleaseDC(window_, dc_);
            SetLastError(lastError);
        }
    }
    UniqueWindowDc(const UniqueWindowDc&) = delete;
    UniqueWindowDc& operator=(const UniqueWindowDc&) = delete;

    HDC get() const { return dc_; }
    explicit operator bool() const { return dc_ != nullptr; }

private:
    HWND window_;
    HDC dc_;
};

}  // namespace tav
