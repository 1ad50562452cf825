// Environment-variable expansion of user-typed program text, shared by the command-line splitter and the
// launcher.
#pragma once

#include "strings/StdStr.h"

namespace tav::launch::detail {

// `text` with its %VARIABLES% expanded into a buffer of 512 characters. When the expansion fails or does not
// fit, the text is kept as typed.
CStdStr<wchar_t> ExpandEnvironment(const CStdStr<wchar_t>& text);

}  // namespace tav::launch::detail
