// The numbers of the script language, read as the runtime's swscanf reads "%d" and "%x", without its heap:
// the runtime's swscanf gathers the characters of every number in a buffer it allocates, and writes through the
// null pointer when that allocation is refused. A count in a script ("{a 3}") and the numbers after a command
// word are read here instead, with the same answers.
#pragma once

#include <cstdint>

namespace tav::keys::detail {

// Reads one "%d" number at `text`: blanks (iswspace) skipped, an optional sign, then ASCII digits; the value as
// wcstol gives it for those characters (held at the 32-bit limits when it does not fit). Returns the position
// after the number, or null when none stands there (`value` is then left as it was).
const wchar_t* ScanDecimal(const wchar_t* text, int& value);

// Reads one "%x" number at `text`: blanks skipped, an optional sign, a "0x" or "0X" after a leading 0 skipped,
// then ASCII hexadecimal digits; the value as the runtime's wcstoul gives it (the largest value when it does not
// fit; after a minus sign, that or the value negated). Returns the position after the number, or null when none
// stands there.
const wchar_t* ScanHex(const wchar_t* text, unsigned& value);

}  // namespace tav::keys::detail
