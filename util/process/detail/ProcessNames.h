// The executable name a running-process search looks for, shared by the process finder's implementations.
#pragma once

#include "strings/StdStr.h"

namespace tav::process::detail {

// `name` with ".exe" added unless its last four characters already spell it (in any case); an ".exe"
// inside the name is not looked at ("a.EXE.exe" stays as it is). Names shorter than four characters have
// no such suffix to read: the request starts beyond the text and throws std::out_of_range, which hosts
// have always seen and is kept.
CStdStr<wchar_t> WantedExecutableName(const CStdStr<wchar_t>& name);

}  // namespace tav::process::detail
