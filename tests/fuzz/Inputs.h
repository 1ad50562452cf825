// Inputs that more than one driver makes: path-like text, and damaged copies of a version resource.
#pragma once

#include "Fuzz.h"
#include "VersionBlock.h"

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

namespace fuzz {

// Path-like text: drive letters, both separators, dots, names at and beyond the platform's limits.
Text PathText(Rng& rng);

// Copies of a library (the file tests' fixture with a version resource) whose resource is damaged: bits
// flipped, 16-bit values replaced, lengths made to lie, the block truncated.
class DamagedVersionResource {
public:
    DamagedVersionResource();  // reads verfix_translation.dll beside the test program
    bool found() const { return original_.length() != 0; }
    std::string Copy(Rng& rng) const;

private:
    tavtest::VersionBlockBytes original_;
};

// A file name inside `folder` made from any text: separators, colons and dots become '_' (one name, never
// a device or a stream); an empty or long text names "plain.txt".
std::wstring FileNameInside(const std::wstring& folder, const Text& text);
// Deletes the file at `path`, if any, when it goes out of scope. A driver that writes a file per input keeps
// its folder small with it: every new name is looked up by reading the whole folder (the platform matches
// names without regard to case), so a folder of a hundred thousand files made each input a hundred times
// slower.
struct DeletedAfterwards {
    std::wstring path;
    ~DeletedAfterwards();
};

// Version-number text: numbers at and beyond 16 bits, signs, blanks, runs of dots.
Text VersionText(Rng& rng);

// A registry value as the platform stores it: any type (a made-up one too) and bytes of any length,
// for writing raw into a scratch key.
struct RawValue {
    DWORD type;
    std::vector<BYTE> data;
};
RawValue RandomRawValue(Rng& rng);

// Support-page addresses: the hosts the query knows, seeds made of them, and address-like text.
struct SupportAddresses {
    std::vector<Text> hosts;
    std::vector<Text> seeds;
    Text Generate(Rng& rng) const;
};
SupportAddresses MakeSupportAddresses();

// A registry key of the driver's own, HKEY_CURRENT_USER\Software\TavUtilFuzz\<name><process id>, deleted
// with everything below it (and the TavUtilFuzz key, once empty) when the last owner lets it go; null if it
// could not be made.
std::shared_ptr<HKEY__> ScratchKey(const std::wstring& name, std::wstring* path);

}  // namespace fuzz
