// The numbers of the script language, read as the runtime's swscanf reads "%d", "%x", "%x %x %x" and "%d %d".
// The runtime's swscanf gathers the units of every number in a buffer it allocates, and writes through the null
// pointer when that allocation is refused. The texts people write (ASCII digits, signs and blanks) are read here
// instead, with swscanf's answers and without the heap; a text whose numbers hold other units (digits of other
// scripts, the unit 0xFFFF, which swscanf reads as the end) is still handed to swscanf, whose readings of those
// are kept as they are.
#pragma once

namespace tav::keys::detail {

// swscanf(text, L"%d", &value) == 1: a count. `value` is left alone when no number stands there.
bool ScanDecimal(const wchar_t* text, int& value);
// swscanf(text, L"%x", &value): the number after a command word.
void ScanHex(const wchar_t* text, unsigned& value);
// swscanf(text, L"%x %x %x", &a, &b, &c): a message and its two values.
void ScanThreeHex(const wchar_t* text, unsigned& a, unsigned& b, unsigned& c);
// swscanf(text, L"%d %d", &a, &b): a menu's position and its item's.
void ScanTwoDecimal(const wchar_t* text, int& a, int& b);

}  // namespace tav::keys::detail
