#include "keys/detail/NumberScan.h"

#include <cwctype>

namespace tav::keys::detail {

namespace {

int DigitValue(wchar_t c, unsigned base) {
    if (c >= L'0' && c <= L'9')
        return c - L'0';
    if (base == 16 && c >= L'a' && c <= L'f')
        return c - L'a' + 10;
    if (base == 16 && c >= L'A' && c <= L'F')
        return c - L'A' + 10;
    return -1;
}

struct Scanned {
    const wchar_t* end = nullptr;  // null: no number
    bool negative = false;
    bool tooLarge = false;   // the magnitude passed 2^32 - 1
    uint64_t magnitude = 0;  // exact while !tooLarge
};

// What the runtime's conversion gathers: blanks, a sign, for base 16 a "0x" after a leading 0, then the digits.
// A lone sign is no number; a lone "0" (also before an "x" without digits after it) is the number 0.
Scanned Scan(const wchar_t* p, unsigned base) {
    Scanned scanned;
    while (*p != L'\0' && iswspace(*p))
        ++p;
    if (*p == L'+' || *p == L'-') {
        scanned.negative = *p == L'-';
        ++p;
    }
    bool digits = false;
    if (*p == L'0') {
        digits = true;
        ++p;
        if (base == 16 && (*p == L'x' || *p == L'X'))
            ++p;  // taken even when no digit follows, as the runtime does
    }
    for (int digit; (digit = DigitValue(*p, base)) >= 0; ++p) {
        digits = true;
        if (!scanned.tooLarge) {
            scanned.magnitude = scanned.magnitude * base + static_cast<unsigned>(digit);
            scanned.tooLarge = scanned.magnitude > UINT32_MAX;
        }
    }
    if (digits)
        scanned.end = p;
    return scanned;
}

}  // namespace

const wchar_t* ScanDecimal(const wchar_t* text, int& value) {
    const Scanned scanned = Scan(text, 10);
    if (scanned.end == nullptr)
        return nullptr;
    // wcstol's range: held at its limits.
    if (!scanned.negative)
        value = scanned.tooLarge || scanned.magnitude > INT32_MAX ? INT32_MAX : static_cast<int>(scanned.magnitude);
    else if (scanned.tooLarge || scanned.magnitude > static_cast<uint64_t>(INT32_MAX) + 1)
        value = INT32_MIN;
    else
        value = static_cast<int>(-static_cast<int64_t>(scanned.magnitude));
    return scanned.end;
}

const wchar_t* ScanHex(const wchar_t* text, unsigned& value) {
    const Scanned scanned = Scan(text, 16);
    if (scanned.end == nullptr)
        return nullptr;
    // The runtime's wcstoul: the largest value on overflow, and that (or the value) negated after a minus.
    const unsigned magnitude = scanned.tooLarge ? UINT32_MAX : static_cast<unsigned>(scanned.magnitude);
    value = scanned.negative ? 0u - magnitude : magnitude;
    return scanned.end;
}

}  // namespace tav::keys::detail
