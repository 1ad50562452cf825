// Reference models: small restatements of the library's rules, written from the rules alone and sharing
// no code with the library, against which the drivers compare its answers. Platform calls (VkKeyScanW,
// SearchPathW, ExpandEnvironmentStringsW) stand for themselves.
#pragma once

#include "Fuzz.h"

#include <windows.h>

#include <list>
#include <optional>

namespace fuzz::model {

// StringCut: pieces of at most `width` units, broken at blanks and line breaks, overlong words cut to
// width - 3 units and "...".
std::list<Text> StringCut(const Text& text, int width);

// CVerNum: the four numbers and the valid flag after Set, or nothing when a token's number is too long
// for the rules to say what the platform's conversion makes of it.
struct Version {
    unsigned short part[4] = {0, 0, 0, 0};
    int valid = 0;
};
std::optional<Version> ParseVersion(const Text& text);
int CompareVersions(const Version& a, const Version& b);

// stripTrailingArgument; nothing when the rules say the call throws std::out_of_range.
std::optional<Text> StripTrailingArgument(const Text& line);

// Path parts by the platform's rules and capacities (drive 3, parts 256, path 260, terminators included).
struct Parts {
    Text drive, dir, file, ext;
    bool ok = true;
};
Parts Split(const Text& path);
Text Compose(const Text& drive, const Text& dir, const Text& file, const Text& ext);  // "" when too long

// The textual part of ExtractProgram, the existence of a candidate asked of `exists`.
struct Extracted {
    bool result;
    Text program, args;
};
Extracted ExtractProgram(const Text& line, const std::function<bool(const Text&)>& exists);
Text Expand(const Text& text);  // environment variables, 512 units, the text itself on failure or overflow

// The key queue of a script made of plain characters, modifiers, groups, braces and holds: the result
// and the entries; nothing when the script leaves the rules' simple ground (a count too long to read).
struct Queue {
    int result = 0;
    std::vector<WORD> entries;
};
std::optional<Queue> ParseScript(const Text& script);

// The escape of literal text.
Text Escape(const Text& text);

}  // namespace fuzz::model
