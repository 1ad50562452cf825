// CComPtr and CComQIPtr: the class library's COM smart pointers, as far as TavUtil's interface uses them.
// They keep the class library's member spellings (p, Release, Attach, Detach, CopyTo, operator&), so that
// hosts written against the class library read the same. A CComPtr holds one reference of its own; a
// CComQIPtr is a CComPtr that asks the assigned object for its interface (QueryInterface) when it is given
// a pointer of another interface.
#pragma once

#include <windows.h>
#include <ole2.h>
#include <unknwn.h>

#include <memory>

template <class T> class CComPtr {
public:
    CComPtr() noexcept = default;
    CComPtr(T* lp) noexcept : p(lp) {
        if (p)
            p->AddRef();
    }
    CComPtr(const CComPtr& lp) noexcept : CComPtr(lp.p) {}
    CComPtr(CComPtr&& lp) noexcept : p(lp.p) { lp.p = nullptr; }
    ~CComPtr() { Release(); }

    T* operator=(T* lp) noexcept {
        if (p != lp) {
            if (lp)
                lp->AddRef();
            Attach(lp);
        }
        return p;
    }
    T* operator=(const CComPtr& lp) noexcept { return *this = lp.p; }
    T* operator=(CComPtr&& lp) noexcept {
        if (this != std::addressof(lp))
            Attach(lp.Detach());
        return p;
    }

    operator T*() const noexcept { return p; }
    T& operator*() const { return *p; }
    T* operator->() const noexcept { return p; }
    // The address of the held pointer, for calls that return an interface through an out parameter; the
    // pointer must be empty (as with the class library, a held reference would otherwise be lost).
    T** operator&() noexcept { return &p; }
    bool operator!() const noexcept { return p == nullptr; }
    bool operator==(T* other) const noexcept { return p == other; }
    bool operator!=(T* other) const noexcept { return p != other; }

    // Drops the held reference and empties the pointer.
    void Release() noexcept {
        T* old = p;
        if (old) {
            p = nullptr;
            old->Release();
        }
    }
    // Takes over a reference without adding one; the previous one is released.
    void Attach(T* other) noexcept {
        T* old = p;
        p = other;
        if (old)
            old->Release();
    }
    // Gives up the held reference without releasing it.
    T* Detach() noexcept {
        T* held = p;
        p = nullptr;
        return held;
    }
    HRESULT CopyTo(T** target) const noexcept {
        if (target == nullptr)
            return E_POINTER;
        *target = p;
        if (p)
            p->AddRef();
        return S_OK;
    }

    T* p = nullptr;
};

template <class T> class CComQIPtr : public CComPtr<T> {
public:
    CComQIPtr() noexcept = default;
    CComQIPtr(T* lp) noexcept : CComPtr<T>(lp) {}
    CComQIPtr(const CComQIPtr& lp) noexcept : CComPtr<T>(lp.p) {}
    CComQIPtr(CComQIPtr&& lp) noexcept : CComPtr<T>(static_cast<CComPtr<T>&&>(lp)) {}
    // Queries `lp` for T; stays empty when the object does not offer it.
    CComQIPtr(IUnknown* lp) noexcept { Query(lp); }

    T* operator=(T* lp) noexcept { return CComPtr<T>::operator=(lp); }
    T* operator=(const CComQIPtr& lp) noexcept { return CComPtr<T>::operator=(lp.p); }
    T* operator=(CComQIPtr&& lp) noexcept { return CComPtr<T>::operator=(static_cast<CComPtr<T>&&>(lp)); }
    T* operator=(IUnknown* lp) noexcept {
        CComQIPtr queried(lp);
        return *this = static_cast<CComQIPtr&&>(queried);
    }

private:
    void Query(IUnknown* lp) noexcept {
        if (lp)
            lp->QueryInterface(__uuidof(T), reinterpret_cast<void**>(&this->p));
    }
};

// For IUnknown the "other interface" is the same one: assignment still asks the object for IUnknown, so
// that the pointer held is the object's identity.
template <> class CComQIPtr<IUnknown> : public CComPtr<IUnknown> {
public:
    CComQIPtr() noexcept = default;
    CComQIPtr(const CComQIPtr& lp) noexcept : CComPtr<IUnknown>(lp.p) {}
    CComQIPtr(CComQIPtr&& lp) noexcept : CComPtr<IUnknown>(static_cast<CComPtr<IUnknown>&&>(lp)) {}
    CComQIPtr(IUnknown* lp) noexcept {
        if (lp)
            lp->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&p));
    }

    IUnknown* operator=(const CComQIPtr& lp) noexcept { return CComPtr<IUnknown>::operator=(lp.p); }
    IUnknown* operator=(CComQIPtr&& lp) noexcept {
        return CComPtr<IUnknown>::operator=(static_cast<CComPtr<IUnknown>&&>(lp));
    }
    IUnknown* operator=(IUnknown* lp) noexcept {
        CComQIPtr queried(lp);
        return *this = static_cast<CComQIPtr&&>(queried);
    }
};
