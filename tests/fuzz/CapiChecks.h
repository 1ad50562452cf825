// The C interface's buffer protocol, checked the same way by every driver of the C interface: the size
// query, a buffer one unit short (nothing written), the exact size, a capacity far larger than the answer,
// null buffers and null `needed`. Also shared by those drivers: lists as the C interface gives them, integer
// extremes, and a quiet log for drivers whose inputs make the library warn.
#pragma once

#include "Fuzz.h"

#include <TavUtil.h>

#include <cstdint>
#include <functional>
#include <list>
#include <cstring>
#include <string>
#include <vector>

namespace fuzz {

constexpr wchar_t kGuard = 0xFDFD;
constexpr size_t kUnset = 0x5EED5EEDu;
constexpr size_t kGuardUnits = 4;

inline std::string Num(long long n) { return std::to_string(n); }
// Whether two blocks hold the same bytes.
inline bool SameBytes(const void* a, const void* b, size_t size) { return std::memcmp(a, b, size) == 0; }

bool Guarded(const std::vector<wchar_t>& buffer, size_t from);

using TextCall = std::function<int32_t(wchar_t*, size_t, size_t*)>;
// Checks that `call` answers `code` and `text` (the whole answer: a list's NULs included, the terminator not)
// at every step of the protocol. A negative `code` is a failure of the C layer: every step gives it and
// writes nothing. Returns the code the exact buffer gave.
int32_t CheckText(const std::string& what, const TextCall& call, int32_t code, const Text& text);

using TwoCall = std::function<int32_t(wchar_t*, size_t, size_t*, wchar_t*, size_t, size_t*)>;
// Two outputs of one call: both fit or neither is written.
void CheckTwo(const std::string& what, const TwoCall& call, int32_t code, const Text& first, const Text& second);

// A list as the C interface gives it: each item NUL-terminated, and one more NUL (the terminator) after.
Text Joined(const std::list<CStdStr<wchar_t>>& items);

// Integer extremes and the edges of the enumerations, with an occasional number at random.
int32_t Number(Rng& rng);

// Lowers the log's reporting level for its life, so that the warning of an unknown level name (or of any
// other input the library warns about) is not written a million times; restores it after.
class QuietLog {
public:
    QuietLog();
    ~QuietLog();
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;

private:
    int32_t level_;
};

}  // namespace fuzz
