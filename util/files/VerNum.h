// CVerNum: a four-part version number major.minor.fix.build, each part an unsigned 16-bit number, with
// parsing from text and an ordered comparison. The third number of the text form is the fix and the
// fourth the build, as in the four numbers of a version resource; comparison runs in that order.
#pragma once

#include "../platform/Export.h"

class TAVUTIL_API CVerNum {
public:
    // Result of Compare: this number against the argument.
    enum VERNUM_COMPARISON {
        VERNUM_OLDER = 0,        // this is lower
        VERNUM_EQUAL = 1,        // all four numbers equal
        VERNUM_NEWER_BUILD = 2,  // equal up to the fix, higher build
        VERNUM_NEWER_FIX = 3,    // equal major and minor, higher fix
        VERNUM_NEWER_MINOR = 4,  // equal major, higher minor
        VERNUM_NEWER_MAJOR = 5,  // higher major
    };

    CVerNum();  // 0.0.0.0, not valid
    CVerNum(unsigned short major, unsigned short minor, unsigned short fix, unsigned short build);  // valid
    CVerNum(const wchar_t* text);                                                                   // Set(text)
    CVerNum(const CVerNum&) = default;
    CVerNum& operator=(const CVerNum&) = default;

    // Parses "a.b.c.d": up to four dot-separated tokens (runs of dots count as one separator), each
    // converted as a decimal integer with leading blanks and a sign accepted and its low 16 bits kept.
    // Valid when at least one token was found; numbers not reached stay 0.
    void Set(const wchar_t* text);

    void SetMajor(unsigned short value);
    void SetMinor(unsigned short value);
    void SetFix(unsigned short value);
    void SetBuild(unsigned short value);
    unsigned short GetMajor() const { return m_major; }
    unsigned short GetMinor() const { return m_minor; }
    unsigned short GetFix() const { return m_fix; }
    unsigned short GetBuild() const { return m_build; }
    int IsValid() const { return m_valid; }

    // Orders by major, minor, fix and build; the valid flags play no part.
    VERNUM_COMPARISON Compare(const CVerNum& other);

private:
    unsigned short m_major;
    unsigned short m_minor;
    unsigned short m_fix;
    unsigned short m_build;
    int m_valid;
};
