#include "files/VerNum.h"

#include <cstdlib>
#include <string>

CVerNum::CVerNum() : m_major(0), m_minor(0), m_fix(0), m_build(0), m_valid(0) {}

CVerNum::CVerNum(unsigned short major, unsigned short minor, unsigned short fix, unsigned short build)
    : m_major(major), m_minor(minor), m_fix(fix), m_build(build), m_valid(1) {}

CVerNum::CVerNum(const wchar_t* text) : CVerNum() { Set(text); }

// Tokens are the runs between dots; empty runs (leading, trailing or doubled dots) give no token. Each
// token goes through the runtime's _wtoi, so "x" counts as a token with the value 0 and an out-of-range
// number is clamped by the runtime before its low 16 bits are kept.
void CVerNum::Set(const wchar_t* text) {
    m_major = m_minor = m_fix = m_build = 0;
    m_valid = 0;
    if (text == nullptr)
        return;
    unsigned short* const numbers[] = {&m_major, &m_minor, &m_fix, &m_build};
    std::wstring work(text);
    size_t next = 0;
    for (unsigned short* number : numbers) {
        size_t start = work.find_first_not_of(L'.', next);
        if (start == std::wstring::npos)
            return;
        size_t end = work.find(L'.', start);
        std::wstring token = work.substr(start, end == std::wstring::npos ? std::wstring::npos : end - start);
        *number = static_cast<unsigned short>(_wtoi(token.c_str()) & 0xFFFF);
        m_valid = 1;
        if (end == std::wstring::npos)
            return;
        next = end;
    }
}

void CVerNum::SetMajor(unsigned short value) {
    m_major = value;
    m_valid = 1;
}

void CVerNum::SetMinor(unsigned short value) {
    m_minor = value;
    m_valid = 1;
}

void CVerNum::SetFix(unsigned short value) {
    m_fix = value;
    m_valid = 1;
}

void CVerNum::SetBuild(unsigned short value) {
    m_build = value;
    m_valid = 1;
}

CVerNum::VERNUM_COMPARISON CVerNum::Compare(const CVerNum& other) {
    if (m_major > other.m_major)
        return VERNUM_NEWER_MAJOR;
    if (m_major == other.m_major) {
        if (m_minor > other.m_minor)
            return VERNUM_NEWER_MINOR;
        if (m_minor == other.m_minor) {
            if (m_fix > other.m_fix)
                return VERNUM_NEWER_FIX;
            if (m_fix == other.m_fix && m_build > other.m_build)
                return VERNUM_NEWER_BUILD;
        }
    }
    if (m_major < other.m_major || m_minor < other.m_minor || m_fix < other.m_fix)
        return VERNUM_OLDER;
    return m_build == other.m_build ? VERNUM_EQUAL : VERNUM_OLDER;
}
