// Name handling shared by the process finder's implementations: the path trims applied to the names it
// reports, and the executable name a running-process search looks for.
#pragma once

#include "strings/StdStr.h"

namespace tav::process {

// Erases everything up to and including the last backslash; false when there is none.
inline bool TrimPath(CStdStr<wchar_t>& text) {
    int slash = text.ReverseFind(L'\\');
    if (slash < 0)
        return false;
    text.erase(0, static_cast<size_t>(slash) + 1);
    return true;
}

// Erases from the last dot of the whole text to the end; false when there is none.
inline bool TrimExtension(CStdStr<wchar_t>& text) {
    int dot = text.ReverseFind(L'.');
    if (dot < 0)
        return false;
    text.erase(static_cast<size_t>(dot));
    return true;
}

// `name` with ".exe" added unless its last four characters already spell it (in any case); an ".exe"
// inside the name is not looked at ("a.EXE.exe" stays as it is). Names shorter than four characters have
// no such suffix to read: the request starts beyond the text and throws std::out_of_range, which hosts
// have always seen and is kept.
CStdStr<wchar_t> WantedExecutableName(const CStdStr<wchar_t>& name);

}  // namespace tav::process
