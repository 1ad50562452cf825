// Command-line splitting: a line that a user typed into a configuration field (a program, possibly quoted,
// possibly followed by arguments, possibly holding %VARIABLES%) turned into the pieces the launchers need.
// None of these functions keeps state.
#pragma once

#include "../platform/Export.h"
#include "../strings/StdStr.h"

// Splits `cmd` into an existing program file and its argument text. The program is the shortest prefix
// ending just before a blank that names an existing file; `args` is the rest of the line, starting with
// the separating blank. Without such a prefix the whole line is the program and `args` is empty.
// False only for an empty line, and then neither output is touched.
TAVUTIL_API bool ExtractProgram(const CStdStr<wchar_t>& cmd, CStdStr<wchar_t>& program, CStdStr<wchar_t>& args);

// Cuts the arguments off `line` by textual rules only: a line opening with a quote becomes the quoted text;
// otherwise the line ends before the first blank that follows ".exe" or ".EXE". Throws std::out_of_range
// when the first blank lies within the first four characters of an unquoted line.
TAVUTIL_API void stripTrailingArgument(CStdStr<wchar_t>& line);

// True when the system search path finds the file that `path` names (its arguments cut off first when
// `stripArgs`; trailing backslashes removed, %VARIABLES% expanded). May throw as stripTrailingArgument does.
TAVUTIL_API bool isValidFile(const CStdStr<wchar_t>& path, bool stripArgs);
