#include "VersionBlock.h"

#include <cwchar>

namespace tavtest {

namespace {

constexpr size_t kKeyOffset = 6;  // length, value length and type come before a node's key

void Put16At(std::string& bytes, size_t at, unsigned value) {
    bytes.at(at) = static_cast<char>(value & 0xFF);
    bytes.at(at + 1) = static_cast<char>((value >> 8) & 0xFF);
}

void Append16(std::string& bytes, unsigned value) {
    bytes.append(2, '\0');
    Put16At(bytes, bytes.size() - 2, value);
}

void Append32(std::string& bytes, uint32_t value) {
    Append16(bytes, value & 0xFFFF);
    Append16(bytes, value >> 16);
}

// Zeros up to the next multiple of `unit`.
void PadTo(std::string& bytes, size_t unit) {
    while (bytes.size() % unit != 0)
        bytes += '\0';
}

// A name of a NE name table: its length in one byte, then its characters.
std::string CountedName(const std::string& name) { return static_cast<char>(name.size()) + name; }

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

std::string SixteenBitNode(const std::string& key, const std::string& value, const std::vector<std::string>& children) {
    std::string node;
    Append16(node, 0);
    Append16(node, static_cast<unsigned>(value.size()));
    node += key;
    node += '\0';
    PadTo(node, 4);
    node += value;
    for (const std::string& child : children) {
        PadTo(node, 4);
        node += child;
    }
    Put16At(node, 0, static_cast<unsigned>(node.size()));
    return node;
}

std::string FixedFileInfo(uint32_t fileMS, uint32_t fileLS, uint32_t productMS, uint32_t productLS) {
    std::string info;
    Append32(info, 0xFEEF04BD);  // the signature
    Append32(info, 0x00010000);  // the structure's version, 1.0
    Append32(info, fileMS);
    Append32(info, fileLS);
    Append32(info, productMS);
    Append32(info, productLS);
    Append32(info, 0x3F);        // the flags mask
    Append32(info, 0);           // no flags
    Append32(info, 0x00000001);  // for 16-bit Windows on DOS
    Append32(info, 0x00000002);  // a library
    Append32(info, 0);           // no subtype
    Append32(info, 0);           // no date
    Append32(info, 0);
    return info;
}

std::string SixteenBitLibrary(const std::string& versionBlock) {
    constexpr size_t kNewHeader = 0x80;  // where the NE header starts
    constexpr unsigned kShift = 4;       // resource offsets and lengths count 16-byte units

    // The DOS header, and a stub that ends with exit code 1 when the file is run under DOS.
    std::string file(0x40, '\0');
    file[0] = 'M';
    file[1] = 'Z';
    Put16At(file, 0x02, kNewHeader % 512);           // bytes on the last page
    Put16At(file, 0x04, 1);                          // pages
    Put16At(file, 0x08, 4);                          // the header's size in paragraphs
    Put16At(file, 0x0C, 0xFFFF);                     // the most memory
    Put16At(file, 0x10, 0xB8);                       // the stack pointer
    Put16At(file, 0x18, 0x40);                       // the relocation table (empty)
    Put16At(file, 0x3C, kNewHeader);                 // the NE header
    file += std::string("\xB8\x01\x4C\xCD\x21", 5);  // mov ax, 4C01h; int 21h
    file.resize(kNewHeader, '\0');

    // The tables after the NE header (64 bytes), offsets counted from the header.
    std::string resources;
    Append16(resources, kShift);
    Append16(resources, 0x8010);  // type 16 (version), by number
    Append16(resources, 1);       // one resource of that type
    Append32(resources, 0);
    const size_t entry = resources.size();
    Append16(resources, 0);       // its offset, set below
    Append16(resources, 0);       // its length, set below
    Append16(resources, 0x0030);  // moveable, pure
    Append16(resources, 0x8001);  // number 1, by number
    Append16(resources, 0);
    Append16(resources, 0);
    Append16(resources, 0);                                                            // no more types
    resources += '\0';                                                                 // no resource names
    const std::string residentNames = CountedName("VERFIX16") + std::string(3, '\0');  // ordinal 0, end
    const std::string importedNames(1, '\0');
    const std::string entries(2, '\0');  // no entry points
    const std::string nonResidentNames = CountedName("16-bit version resource") + std::string(3, '\0');

    const size_t resourceTable = 0x40;
    const size_t residentTable = resourceTable + resources.size();
    const size_t moduleTable = residentTable + residentNames.size();  // no modules: empty
    const size_t importTable = moduleTable;
    const size_t entryTable = importTable + importedNames.size();
    const size_t nonResidentTable = kNewHeader + entryTable + entries.size();  // from the file's start

    std::string header(0x40, '\0');
    header[0] = 'N';
    header[1] = 'E';
    header[2] = 5;  // the linker's version
    header[3] = 10;
    Put16At(header, 0x04, static_cast<unsigned>(entryTable));
    Put16At(header, 0x06, static_cast<unsigned>(entries.size()));
    Put16At(header, 0x0C, 0x8000);  // a library, no data segment
    Put16At(header, 0x20, static_cast<unsigned>(nonResidentNames.size()));
    Put16At(header, 0x22, static_cast<unsigned>(resourceTable));  // no segments
    Put16At(header, 0x24, static_cast<unsigned>(resourceTable));
    Put16At(header, 0x26, static_cast<unsigned>(residentTable));
    Put16At(header, 0x28, static_cast<unsigned>(moduleTable));
    Put16At(header, 0x2A, static_cast<unsigned>(importTable));
    Put16At(header, 0x2C, static_cast<unsigned>(nonResidentTable & 0xFFFF));
    Put16At(header, 0x2E, static_cast<unsigned>(nonResidentTable >> 16));
    Put16At(header, 0x32, kShift);  // segment alignment
    header[0x36] = 2;               // for Windows
    Put16At(header, 0x3E, 0x030A);  // Windows 3.10

    file += header;
    const size_t resourceEntry = file.size() + entry;
    file += resources + residentNames + importedNames + entries + nonResidentNames;
    PadTo(file, size_t{1} << kShift);
    const size_t resourceStart = file.size();
    file += versionBlock;
    PadTo(file, size_t{1} << kShift);
    Put16At(file, resourceEntry, static_cast<unsigned>(resourceStart >> kShift));
    Put16At(file, resourceEntry + 2, static_cast<unsigned>((file.size() - resourceStart) >> kShift));
    return file;
}

}  // namespace tavtest
