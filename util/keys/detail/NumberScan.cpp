#include "keys/detail/NumberScan.h"

#include <cstdint>
#include <cwchar>
#include <cwctype>

namespace tav::keys::detail {

namespace {

constexpr wint_t kEnd = WEOF;  // 0xFFFF: the runtime reads the end of the text and the unit 0xFFFF alike

// The runtime's reader over a text: the end is read again and again; a unit 0xFFFF reads as the end but is
// taken, and what reads as the end is never put back.
struct Reader {
    const wchar_t* at;
    bool other = false;  // a unit beyond ASCII that is no blank was read: the runtime's own reading decides
    wint_t In() {
        if (*at == L'\0')
            return kEnd;
        const wchar_t unit = *at++;
        other = other || (unit >= 0x80 && !iswspace(unit));
        return static_cast<wint_t>(unit);
    }
    void Back(wint_t c) {
        if (c != kEnd)
            --at;
    }
    void SkipBlanks() {
        wint_t c;
        do
            c = In();
        while (iswspace(c));
        Back(c);
    }
};

// The value the runtime's own conversion gives one unit as a digit of `base`, -1 when it is none.
int RuntimeDigit(wchar_t unit, int base) {
    const wchar_t text[2] = {unit, L'\0'};
    wchar_t* end = nullptr;
    const unsigned long value = wcstoul(text, &end, base);
    return end == text ? -1 : static_cast<int>(value);
}

struct Number {
    bool read = false;
    bool endedAtEnd = false;  // the units stopped at what reads as the end: nothing after it is read
    bool negative = false;
    bool tooLarge = false;   // past 2^32 - 1
    uint64_t magnitude = 0;  // exact while !tooLarge
};

// One "%d" (base 10) or "%x" (base 16) conversion as the runtime makes it: blanks skipped, a sign, a leading 0
// (and for base 16 an x after it, skipped), then the units the base takes (base 10: ASCII digits; base 16: the
// units iswxdigit accepts); the value is what wcstol or wcstoul makes of the units gathered, which stops at the
// first unit it cannot take. The reader ends after the units gathered.
Number Convert(Reader& reader, int base) {
    Number number;
    reader.SkipBlanks();
    wint_t c = reader.In();
    if (c == kEnd)
        return number;
    bool gathered = false;   // a unit beyond the sign
    bool converting = true;  // the conversion of the gathered units has not stopped yet
    bool converted = false;  // it took at least one digit
    auto take = [&](wint_t unit) {
        gathered = true;
        const int digit = converting ? RuntimeDigit(static_cast<wchar_t>(unit), base) : -1;
        if (digit < 0) {
            converting = false;
            return;
        }
        converted = true;
        if (!number.tooLarge) {
            number.magnitude = number.magnitude * static_cast<unsigned>(base) + static_cast<unsigned>(digit);
            number.tooLarge = number.magnitude > UINT32_MAX;
        }
    };
    if (c == L'+' || c == L'-') {
        number.negative = c == L'-';
        c = reader.In();
    }
    if (c == L'0') {
        take(c);
        c = reader.In();
        if (base == 16 && (c == L'x' || c == L'X'))
            c = reader.In();
    }
    while (c != kEnd) {
        if (base == 16 ? !iswxdigit(c) : (!iswdigit(c) || static_cast<int>(c - L'0') >= base))
            break;
        take(c);
        c = reader.In();
    }
    reader.Back(c);
    number.endedAtEnd = c == kEnd;
    number.read = gathered && converted;
    return number;
}

int Decimal(const Number& number) {
    // wcstol's range: held at its limits.
    if (!number.negative)
        return number.tooLarge || number.magnitude > INT32_MAX ? INT32_MAX : static_cast<int>(number.magnitude);
    if (number.tooLarge || number.magnitude > static_cast<uint64_t>(INT32_MAX) + 1)
        return INT32_MIN;
    return static_cast<int>(-static_cast<int64_t>(number.magnitude));
}

unsigned Hex(const Number& number) {
    // The runtime's wcstoul: the largest value on overflow, and that (or the value) negated after a minus.
    const unsigned magnitude = number.tooLarge ? UINT32_MAX : static_cast<unsigned>(number.magnitude);
    return number.negative ? 0u - magnitude : magnitude;
}

// Reads up to `count` numbers of `base` separated by format blanks into `values` (as far as they stand there);
// false when a unit the runtime reads in its own way was met (nothing is stored then).
template <typename T, size_t N> bool Scan(const wchar_t* text, int base, T (&values)[N], bool (&read)[N]) {
    Reader reader{text};
    for (size_t i = 0; i < N; ++i) {
        if (i > 0)
            reader.SkipBlanks();
        const Number number = Convert(reader, base);
        if (reader.other)
            return false;
        read[i] = number.read;
        if (!number.read)
            break;
        values[i] = static_cast<T>(base == 10 ? static_cast<T>(Decimal(number)) : static_cast<T>(Hex(number)));
        if (number.endedAtEnd)
            break;  // (an ASCII text ends there)
    }
    return true;
}

}  // namespace

bool ScanDecimal(const wchar_t* text, int& value) {
    int values[1] = {value};
    bool read[1] = {false};
    if (!Scan(text, 10, values, read))
        return swscanf(text, L"%d", &value) == 1;
    if (read[0])
        value = values[0];
    return read[0];
}

void ScanHex(const wchar_t* text, unsigned& value) {
    unsigned values[1] = {value};
    bool read[1] = {false};
    if (!Scan(text, 16, values, read)) {
        swscanf(text, L"%x", &value);
        return;
    }
    if (read[0])
        value = values[0];
}

void ScanThreeHex(const wchar_t* text, unsigned& a, unsigned& b, unsigned& c) {
    unsigned values[3] = {a, b, c};
    bool read[3] = {false, false, false};
    if (!Scan(text, 16, values, read)) {
        swscanf(text, L"%x %x %x", &a, &b, &c);
        return;
    }
    a = read[0] ? values[0] : a;
    b = read[0] && read[1] ? values[1] : b;
    c = read[0] && read[1] && read[2] ? values[2] : c;
}

void ScanTwoDecimal(const wchar_t* text, int& a, int& b) {
    int values[2] = {a, b};
    bool read[2] = {false, false};
    if (!Scan(text, 10, values, read)) {
        swscanf(text, L"%d %d", &a, &b);
        return;
    }
    a = read[0] ? values[0] : a;
    b = read[0] && read[1] ? values[1] : b;
}

}  // namespace tav::keys::detail
