// The class library's exceptions for memory exhaustion and for failed OLE calls, and the helper that turns
// an HRESULT into one of them. TavUtil raises them only where its interface says so.
#pragma once

#include <windows.h>

class CException {
public:
    virtual ~CException() = default;
};

class CMemoryException : public CException {};

class COleException : public CException {
public:
    explicit COleException(SCODE code) : m_sc(code) {}
    SCODE m_sc;  // the failure code the exception carries
};

// E_OUTOFMEMORY raises a CMemoryException, any other failure a COleException with that code; a success
// code returns normally.
inline void AfxCheckError(SCODE code) {
    if (SUCCEEDED(code))
        return;
    if (code == E_OUTOFMEMORY)
        throw CMemoryException();
    throw COleException(code);
}
