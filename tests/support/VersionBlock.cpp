#include "VersionBlock.h"

#include <cwchar>

namespace tavtest {

namespace {

constexpr size_t kKeyOffset = 6;  // length, value length and type come before a node's key

}  // namespace

VersionBlockBytes::VersionBlockBytes(std::string bytes) : bytes_(std::move(bytes)) {
    const size_t key = Find(L"VS_VERSION_INFO");
    if (key != npos && key >= kKeyOffset && key + 2 <= bytes_.size())
        block_ = key - kKeyOffset;
}

size_t VersionBlockBytes::Node(const wchar_t* key) const {
    const size_t at = found() ? Find(key) : npos;
    return at == npos || at < block_ + kKeyOffset ? npos : at - kKeyOffset - block_;
}

unsigned VersionBlockBytes::Get16(size_t offset) const {
    return static_cast<unsigned char>(bytes_.at(block_ + offset)) |
           (static_cast<unsigned char>(bytes_.at(block_ + offset + 1)) << 8);
}

void VersionBlockBytes::Put16(size_t offset, unsigned value) {
    bytes_.at(block_ + offset) = static_cast<char>(value & 0xFF);
    bytes_.at(block_ + offset + 1) = static_cast<char>((value >> 8) & 0xFF);
}

void VersionBlockBytes::FlipBit(size_t offset, unsigned bit) {
    bytes_.at(block_ + offset) = static_cast<char>(bytes_.at(block_ + offset) ^ (1u << (bit & 7)));
}

size_t VersionBlockBytes::Find(const wchar_t* key) const {
    std::string utf16;
    for (const wchar_t* ch = key; *ch != 0; ++ch) {
        utf16 += static_cast<char>(*ch & 0xFF);
        utf16 += static_cast<char>((*ch >> 8) & 0xFF);
    }
    return bytes_.find(utf16);
}

}  // namespace tavtest
