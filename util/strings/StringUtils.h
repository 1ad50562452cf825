// Free string utilities: display-line cutting and path backslash handling.
#pragma once

#include "../platform/CString.h"
#include "../platform/Export.h"
#include "StdStr.h"

#include <list>

// Splits `text` into pieces of at most `width` units, breaking at blanks, line feeds and carriage
// returns. A word longer than `width` becomes its first width-3 units plus "..."; the rest of that word
// is dropped. Always returns at least one piece (possibly empty). `text` is not changed.
TAVUTIL_API std::list<CStdStr<wchar_t>> StringCut(const CStdStr<wchar_t>& text, int width);

// Truncates `s` to `length` units, or less where an embedded NUL comes first.
TAVUTIL_API void SetStringLength(CString& s, int length);

// Appends one backslash unless the last unit is one already; an empty string becomes "\".
TAVUTIL_API void EnsureTrailingBackslash(CStdStr<wchar_t>& path);

// Removes one trailing backslash, but keeps a lone "\" (a root). Not the inverse of
// EnsureTrailingBackslash on the empty string, by design.
TAVUTIL_API void StripTrailingBackslash(CStdStr<wchar_t>& path);
