// The bytes of a library with a version resource, whose version block can be read and changed in place:
// for tests that give the version-resource reader a damaged copy of a real file.
#pragma once

#include <cstddef>
#include <string>

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

}  // namespace tavtest
