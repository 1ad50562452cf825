// The bytes of a library with a version resource, whose version block can be read and changed in place:
// for tests that give the version-resource reader a damaged copy of a real file. And the makings of a
// 16-bit library with a version resource, which no tool here builds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavtest {

// Offsets count from the start of the version block (its "VS_VERSION_INFO" node); the block's words are
// 16-bit, least significant byte first. A read or write outside the bytes throws std::out_of_range.
class VersionBlockBytes {
public:
    static constexpr size_t npos = std::string::npos;

    explicit VersionBlockBytes(std::string bytes);

    bool found() const { return block_ != npos; }
    // The length the block gives itself, in bytes (0 when there is no block).
    size_t length() const { return found() ? Get16(0) : 0; }
    // Where the node whose key is `key` starts, or npos: a node starts with three words before its key.
    size_t Node(const wchar_t* key) const;

    unsigned Get16(size_t offset) const;
    void Put16(size_t offset, unsigned value);
    void FlipBit(size_t offset, unsigned bit);

    const std::string& bytes() const { return bytes_; }

private:
    size_t Find(const wchar_t* key) const;  // from the start of the file

    std::string bytes_;
    size_t block_ = npos;
};

// One node of a version block in the 16-bit layout: WORD length, WORD value length (in bytes), the key in
// 8-bit characters with its NUL, padding to four bytes counted from the node, the value, then each child
// after padding to four bytes. The length counts everything but padding after the last byte.
std::string SixteenBitNode(const std::string& key, const std::string& value,
                           const std::vector<std::string>& children = {});
// A text value as the 16-bit layout keeps it: the characters and their NUL.
inline std::string SixteenBitText(const std::string& text) { return text + '\0'; }
// The fixed information (VS_FIXEDFILEINFO, 52 bytes) of a 16-bit Windows library with these versions,
// each given as its most and least significant double words.
std::string FixedFileInfo(uint32_t fileMS, uint32_t fileLS, uint32_t productMS, uint32_t productLS);

// A 16-bit (NE) library with no code, as resource-only libraries are: a DOS header and stub, the NE header,
// its resource table with one VERSIONINFO resource (type 16, number 1), its name tables and entry table,
// and `versionBlock` as that resource, padded to the resource table's 16-byte units.
std::string SixteenBitLibrary(const std::string& versionBlock);

}  // namespace tavtest
