// Guards for paired calls that are not handles: each one makes the opening call (or takes its result)
// and makes the closing call when it ends, on every path. Guards are neither copyable nor movable: they
// live in the scope that needs the pairing. Closing never disturbs the caller's GetLastError value.
#pragma once

#include <windows.h>
#include <objbase.h>

namespace tav {

// GlobalLock of a memory block, unlocked when the guard ends. The block itself stays with its owner.
class GlobalLockGuard {
public:
    explicit GlobalLockGuard(HGLOBAL block) : block_(block), data_(GlobalLock(block)) {}
    ~GlobalLockGuard() {
        if (data_ != nullptr) {
            DWORD lastError = GetLastError();
            GlobalUnlock(block_);
            SetLastError(lastError);
        }
    }
    GlobalLockGuard(const GlobalLockGuard&) = delete;
    GlobalLockGuard& operator=(const GlobalLockGuard&) = delete;

    // The locked memory, null when the lock failed.
    template <typename T = void> T* get() const { return static_cast<T*>(data_); }
    explicit operator bool() const { return data_ != nullptr; }

private:
    HGLOBAL block_;
    void* data_;
};

// The input of one thread attached to another's (AttachThreadInput), detached when the guard ends; a
// failed attachment is not undone.
class InputAttachment {
public:
    InputAttachment(DWORD thread, DWORD toThread)
        : thread_(thread), toThread_(toThread), attached_(AttachThreadInput(thread, toThread, TRUE) != FALSE) {}
    ~InputAttachment() {
        if (attached_) {
            DWORD lastError = GetLastError();
            AttachThreadInput(thread_, toThread_, FALSE);
            SetLastError(lastError);
        }
    }
    InputAttachment(const InputAttachment&) = delete;
    InputAttachment& operator=(const InputAttachment&) = delete;

    bool attached() const { return attached_; }

private:
    DWORD thread_;
    DWORD toThread_;
    bool attached_;
};

// A GDI object selected into a device context, the previous selection restored when the guard ends.
class SelectionGuard {
public:
    SelectionGuard(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
    ~SelectionGuard() {
        if (selected()) {
            DWORD lastError = GetLastError();
            SelectObject(dc_, previous_);
            SetLastError(lastError);
        }
    }
    SelectionGuard(const SelectionGuard&) = delete;
    SelectionGuard& operator=(const SelectionGuard&) = delete;

    bool selected() const { return previous_ != nullptr && previous_ != HGDI_ERROR; }

private:
    HDC dc_;
    HGDIOBJ previous_;
};

// COM on the calling thread (CoInitializeEx), uninitialised when the guard ends if this guard's call
// succeeded (S_FALSE included: every successful call needs its own CoUninitialize).
class ComInitialization {
public:
    explicit ComInitialization(DWORD model = COINIT_APARTMENTTHREADED) : result_(CoInitializeEx(nullptr, model)) {}
    ~ComInitialization() {
        if (SUCCEEDED(result_)) {
            DWORD lastError = GetLastError();
            CoUninitialize();
            SetLastError(lastError);
        }
    }
    ComInitialization(const ComInitialization&) = delete;
    ComInitialization& operator=(const ComInitialization&) = delete;

    HRESULT result() const { return result_; }
    bool succeeded() const { return SUCCEEDED(result_); }

private:
    HRESULT result_;
};

}  // namespace tav
