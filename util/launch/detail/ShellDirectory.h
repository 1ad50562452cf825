// The working folder handed to the shell for a program text.
#pragma once

#include "strings/StdStr.h"

namespace tav::launch::detail {

// The program text without everything from its last backslash on. A text without a backslash is returned
// whole (the program's own name then stands as its folder): hosts have always launched this way.
inline CStdStr<wchar_t> ShellDirectoryFor(const CStdStr<wchar_t>& programText) {
    int lastBackslash = programText.ReverseFind(L'\\');
    return lastBackslash < 0 ? programText : programText.Left(lastBackslash);
}

}  // namespace tav::launch::detail
