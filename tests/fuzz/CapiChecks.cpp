#include "CapiChecks.h"

#include "capi/TavUtilC.h"

#include <algorithm>
#include <climits>

namespace fuzz {

bool Guarded(const std::vector<wchar_t>& buffer, size_t from) {
    for (size_t i = from; i < buffer.size(); ++i)
        if (buffer[i] != kGuard)
            return false;
    return true;
}

int32_t CheckText(const std::string& what, const TextCall& call, int32_t code, const Text& text) {
    const size_t units = text.size() + 1;
    const std::string at = what + ": ";
    if (code < 0 && code != TAV_E_BUFFER_TOO_SMALL) {
        std::vector<wchar_t> buffer(16, kGuard);
        for (size_t capacity : {size_t{0}, size_t{16}}) {
            size_t needed = kUnset;
            int32_t got = call(capacity ? buffer.data() : nullptr, capacity, &needed);
            Expect(got == code, at + "code " + Num(got) + " where the C++ interface gives " + Num(code));
            Expect(needed == kUnset && Guarded(buffer, 0), at + "output written with a failure code");
        }
        return code;
    }

    size_t needed = kUnset;
    int32_t got = call(nullptr, 0, &needed);
    Expect(got == TAV_E_BUFFER_TOO_SMALL, at + "the size query gives " + Num(got));
    Expect(needed == units, at + "the size query needs " + Num(static_cast<long long>(needed)) + ", the answer has " +
                                Num(static_cast<long long>(units)) + " units");

    std::vector<wchar_t> buffer(units + kGuardUnits, kGuard);
    needed = kUnset;
    got = call(buffer.data(), units - 1, &needed);
    Expect(got == TAV_E_BUFFER_TOO_SMALL, at + "one unit short gives " + Num(got));
    Expect(needed == units, at + "one unit short: needed " + Num(static_cast<long long>(needed)));
    Expect(Guarded(buffer, 0), at + "one unit short: the buffer was written");

    for (size_t capacity : {units, SIZE_MAX}) {
        std::fill(buffer.begin(), buffer.end(), kGuard);
        needed = kUnset;
        got = call(buffer.data(), capacity, capacity == units ? &needed : nullptr);
        Expect(got == code, at + "code " + Num(got) + ", the C++ interface gives " + Num(code));
        Expect(capacity != units || needed == units,
               at + "exact buffer: needed " + Num(static_cast<long long>(needed)));
        Expect(Text(buffer.data(), units - 1) == text && buffer[units - 1] == 0,
               at + "the text \"" + Narrow(Text(buffer.data(), units - 1)) + "\" differs from the C++ answer \"" +
                   Narrow(text) + "\"");
        Expect(Guarded(buffer, units), at + "written beyond the answer");
    }

    needed = kUnset;
    got = call(nullptr, 1 + (text.size() & 0xFF), &needed);
    Expect(got == TAV_E_NULL_ARGUMENT, at + "a null buffer with a capacity gives " + Num(got));
    Expect(needed == kUnset, at + "a null buffer with a capacity: needed written");
    return code;
}

void CheckTwo(const std::string& what, const TwoCall& call, int32_t code, const Text& first, const Text& second) {
    const std::string at = what + ": ";
    const size_t units1 = first.size() + 1, units2 = second.size() + 1;
    size_t needed1 = kUnset, needed2 = kUnset;
    int32_t got = call(nullptr, 0, &needed1, nullptr, 0, &needed2);
    Expect(got == TAV_E_BUFFER_TOO_SMALL, at + "the size query gives " + Num(got));
    Expect(needed1 == units1 && needed2 == units2, at + "the size query's needed");

    std::vector<wchar_t> buffer1(units1 + kGuardUnits, kGuard), buffer2(units2 + kGuardUnits, kGuard);
    for (int shortOne = 1; shortOne <= 2; ++shortOne) {
        needed1 = needed2 = kUnset;
        got = call(buffer1.data(), units1 - (shortOne == 1), &needed1, buffer2.data(), units2 - (shortOne == 2),
                   &needed2);
        Expect(got == TAV_E_BUFFER_TOO_SMALL, at + "output " + Num(shortOne) + " one unit short gives " + Num(got));
        Expect(needed1 == units1 && needed2 == units2, at + "one unit short: needed");
        Expect(Guarded(buffer1, 0) && Guarded(buffer2, 0), at + "one output short: the other was written");
    }
    for (bool huge : {false, true}) {
        std::fill(buffer1.begin(), buffer1.end(), kGuard);
        std::fill(buffer2.begin(), buffer2.end(), kGuard);
        needed1 = needed2 = kUnset;
        got = huge ? call(buffer1.data(), SIZE_MAX, nullptr, buffer2.data(), SIZE_MAX, nullptr)
                   : call(buffer1.data(), units1, &needed1, buffer2.data(), units2, &needed2);
        Expect(got == code, at + "code " + Num(got) + ", the C++ interface gives " + Num(code));
        Expect(huge || (needed1 == units1 && needed2 == units2), at + "exact buffers: needed");
        Expect(Text(buffer1.data(), units1 - 1) == first && buffer1[units1 - 1] == 0,
               at + "the first text \"" + Narrow(Text(buffer1.data(), units1 - 1)) + "\" differs from \"" +
                   Narrow(first) + "\"");
        Expect(Text(buffer2.data(), units2 - 1) == second && buffer2[units2 - 1] == 0,
               at + "the second text \"" + Narrow(Text(buffer2.data(), units2 - 1)) + "\" differs from \"" +
                   Narrow(second) + "\"");
        Expect(Guarded(buffer1, units1) && Guarded(buffer2, units2), at + "written beyond the answer");
    }
    needed1 = needed2 = kUnset;
    got = call(buffer1.data(), units1, &needed1, nullptr, 1, &needed2);
    Expect(got == TAV_E_NULL_ARGUMENT && needed1 == kUnset && needed2 == kUnset,
           at + "a null second buffer with a capacity gives " + Num(got) + " or writes needed");
}

Text Joined(const std::list<CStdStr<wchar_t>>& items) {
    Text joined;
    for (const auto& item : items) {
        joined += item;
        joined += L'\0';
    }
    if (items.empty())
        joined += L'\0';
    return joined;
}

int32_t Number(Rng& rng) {
    const int32_t numbers[] = {INT_MIN, INT_MIN + 1, -65536, -2, -1, 0,  1,   2,   3,     4,     5,           6,
                               7,       8,           14,     15, 16, 99, 255, 256, 65535, 65536, INT_MAX - 1, INT_MAX};
    return rng.OneIn(4) ? static_cast<int32_t>(rng.Next()) : numbers[rng.Below(sizeof numbers / sizeof *numbers)];
}

QuietLog::QuietLog() : level_(tav_log_reporting_level()) { tav_log_set_reporting_level(0); }
QuietLog::~QuietLog() { tav_log_set_reporting_level(level_); }

}  // namespace fuzz
