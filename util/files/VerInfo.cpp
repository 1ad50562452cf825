#include "files/VerInfo.h"

#include "files/detail/VersionFunctions.h"

#include <algorithm>
#include <cwctype>
#include <new>

// version.dll is bound at run time, from the system folder only.
namespace version = tav::files::detail;

namespace {

struct FieldEntry {
    const wchar_t* displayName;
    const wchar_t* subPath;  // null for the fixed numbers
};

// Indexed by VERFIELD. "ProductBuildNumber" is shown without blanks, unlike the others: hosts match
// on that text.
const FieldEntry kFields[] = {
    {L"File Version Number", nullptr},
    {L"Product Version Number", nullptr},
    {L"Comments", L"\\Comments"},
    {L"Company Name", L"\\CompanyName"},
    {L"File Description", L"\\FileDescription"},
    {L"File Version", L"\\FileVersion"},
    {L"Internal Name", L"\\InternalName"},
    {L"Legal Copyright", L"\\LegalCopyright"},
    {L"Legal Trademarks", L"\\LegalTrademarks"},
    {L"Original Filename", L"\\OriginalFilename"},
    {L"Private Build", L"\\PrivateBuild"},
    {L"Product Name", L"\\ProductName"},
    {L"Product Version", L"\\ProductVersion"},
    {L"Special Build", L"\\SpecialBuild"},
    {L"ProductBuildNumber", L"\\ProductBuildNumber"},
};
constexpr unsigned kFieldCount = sizeof(kFields) / sizeof(kFields[0]);

// Used when the resource has no translation table, or one with more than one entry.
const wchar_t kFallbackLanguage[] = L"0409";  // US English
const wchar_t kFallbackCodePage[] = L"04E4";  // 1252

void TrimTrailingSpace(CStdStr<wchar_t>& text) {
    while (!text.empty() && (std::iswspace(text.back()) || std::iswblank(text.back())))
        text.pop_back();
}

CStdStr<wchar_t> FormatVersion(DWORD mostSignificant, DWORD leastSignificant) {
    CStdStr<wchar_t> text;
    text.Format(L"%lu.%lu.%lu.%lu", static_cast<unsigned long>(HIWORD(mostSignificant)),
                static_cast<unsigned long>(LOWORD(mostSignificant)),
                static_cast<unsigned long>(HIWORD(leastSignificant)),
                static_cast<unsigned long>(LOWORD(leastSignificant)));
    TrimTrailingSpace(text);
    return text;
}

CVerNum ToVerNum(DWORD mostSignificant, DWORD leastSignificant) {
    return CVerNum(HIWORD(mostSignificant), LOWORD(mostSignificant), HIWORD(leastSignificant),
                   LOWORD(leastSignificant));
}

// A version block is a tree of nodes. In the 32-bit layout a node is: WORD length, WORD value length, WORD
// type, a key of UTF-16 characters ending in a NUL, padding to four bytes (counted from the node), the value
// (characters when the type is not 0, else bytes), padding, then the children up to the node's length. The
// 16-bit layout of 16-bit executables has no type word: two words, a key of 8-bit characters ending in a
// NUL, the same padding, a value counted in bytes, the children. The platform tells them apart by the
// byte after the two words: a key character (from a blank up) means 16-bit.
//
// The platform's queries follow those lengths without checking them, so a damaged file could make them
// read past the block. Before a block is used we walk it as the queries do and check that everything they
// could touch lies within the root's length. Queries go at most three levels below the root
// ("\StringFileInfo\<table>\<name>"), so deeper nodes are never reached.
struct VersionBlock {
    const BYTE* bytes;
    size_t end;       // the root's length, within the buffer
    bool sixteenBit;  // the 16-bit layout

    static constexpr int kQueriedDepth = 3;

    WORD Word(size_t at) const { return static_cast<WORD>(bytes[at] | (bytes[at + 1] << 8)); }
    static size_t Align(size_t node, size_t at) { return node + ((at - node + 3) & ~size_t{3}); }
    size_t Header() const { return (sixteenBit ? 2 : 3) * sizeof(WORD); }
    size_t KeyUnit() const { return sixteenBit ? sizeof(char) : sizeof(WCHAR); }
    size_t ValueBytes(size_t node) const {
        if (sixteenBit)
            return Word(node + 2);
        return Word(node + 2) * (Word(node + 4) != 0 ? sizeof(WCHAR) : 1);
    }

    // The offset just past the NUL of the key that starts at `at`; 0 when the key does not end in the block.
    size_t KeyEnd(size_t at) const {
        for (; at + KeyUnit() <= end; at += KeyUnit())
            if (sixteenBit ? bytes[at] == 0 : Word(at) == 0)
                return at + KeyUnit();
        return 0;
    }

    // A 16-bit text is converted to UTF-16 from its start up to its NUL, whatever its value length says.
    bool TextEndsInside(size_t value) const {
        for (size_t at = value; at < end; ++at)
            if (bytes[at] == 0)
                return true;
        return false;
    }

    bool NodeIsInside(size_t node, int depth) const {
        if (node + Header() > end)
            return false;
        const size_t length = Word(node);
        const size_t keyEnd = KeyEnd(node + Header());
        if (node + length > end || keyEnd == 0)
            return false;
        const size_t value = Align(node, keyEnd);
        const size_t valueBytes = ValueBytes(node);
        if (value + valueBytes > end)
            return false;
        if (depth == kQueriedDepth)
            return !sixteenBit || TextEndsInside(value);
        for (size_t child = Align(node, value + valueBytes); child < node + length;) {
            if (!NodeIsInside(child, depth + 1))
                return false;
            const size_t childLength = Word(child);
            if (childLength == 0)
                break;  // the queries stop at an empty child too
            child += (childLength + 3) & ~size_t{3};
        }
        return true;
    }
};

// The platform answers a text of a 16-bit block from spare room after the block: the text's UTF-16 form
// goes at the root's length plus twice the text's offset, and the room ends at four times the root's
// length less the fixed information (52 bytes), a size it reckons from the root's length alone. A root too
// short for that sum leaves the room without an end; a root longer than the data the platform read (a
// 32-bit file damaged into the 16-bit layout, or a 16-bit one whose root lies) puts it past the buffer.
bool ConversionRoomFits(size_t rootLength, size_t size) {
    const size_t fixedInfo = sizeof(VS_FIXEDFILEINFO);
    if (rootLength < fixedInfo)
        return false;
    const size_t roomEnd = (rootLength - fixedInfo) * 4;
    return roomEnd >= rootLength && roomEnd <= size;
}

// True when the queries on `block` (as GetFileVersionInfoW filled it, `size` bytes) stay inside it, and,
// for a block in the 16-bit layout, when the platform's conversions of its texts stay inside it too. A byte
// from 0x80 after the root's two words is neither a type of the 32-bit layout nor a key character of the
// 16-bit one: such a block is refused.
bool QueriesStayInside(const BYTE* block, size_t size) {
    if (size < 3 * sizeof(WORD) || block[4] >= 0x80)
        return false;
    const bool sixteenBit = block[4] >= ' ';
    const size_t rootLength = VersionBlock{block, size, sixteenBit}.Word(0);
    if (rootLength > size || (sixteenBit && !ConversionRoomFits(rootLength, size)))
        return false;
    return VersionBlock{block, rootLength, sixteenBit}.NodeIsInside(0, 0);
}

// The largest size the platform asks for a real block (see Init).
constexpr DWORD kMaxPlatformBlockSize = 4 * 0x10000;

}  // namespace

CVerInfo::CVerInfo() = default;

CVerInfo::CVerInfo(const wchar_t* file) { Init(file); }

// Copies share the loaded block (not duplicated); the shared owner frees it with the last reference.
CVerInfo::CVerInfo(const CVerInfo& other) = default;
CVerInfo& CVerInfo::operator=(const CVerInfo& other) = default;
CVerInfo::~CVerInfo() = default;

int CVerInfo::Init(const wchar_t* file) {
    m_fileName = file;
    DWORD ignored = 0;
    DWORD size = version::GetFileVersionInfoSizeW(m_fileName.c_str(), &ignored);
    if (size == 0)
        return 0;  // no data; the strings keep what they held
    // A version block counts its length in a 16-bit word, and the platform asks for at most four times that
    // (a 16-bit block gets room for its texts converted). A larger size is not a block's: the platform's
    // reckoning for a 16-bit block shorter than its fixed part wraps to about 4 GiB, which would be allocated
    // and cleared in the host. Such a file is read as one without data.
    if (size > kMaxPlatformBlockSize)
        return 0;
    // Zero-filled, so that a read past the resource but inside the buffer finds the same bytes every time.
    m_data.reset(new (std::nothrow) BYTE[size]());
    if (!m_data || !version::GetFileVersionInfoW(m_fileName.c_str(), 0, size, m_data.get()) ||
        !QueriesStayInside(m_data.get(), size)) {
        // A damaged block is not read at all, as if the file had none.
        m_data.reset();
        return 0;
    }
    m_size = size;
    void* translation = nullptr;
    UINT length = 0;
    if (version::VerQueryValueW(m_data.get(), L"\\VarFileInfo\\Translation", &translation, &length) && length == 4) {
        const WORD* words = static_cast<const WORD*>(translation);
        m_languageCode.Format(L"%.4x", words[0]);
        m_codePage.Format(L"%.4x", words[1]);
    } else {
        m_languageCode = kFallbackLanguage;
        m_codePage = kFallbackCodePage;
    }
    m_prefix = L"\\StringFileInfo\\" + m_languageCode + m_codePage;
    return 1;
}

int CVerInfo::GetField(VERFIELD field, CStdStr<wchar_t>& out) {
    out.clear();
    if (!m_data || static_cast<unsigned>(field) >= kFieldCount)
        return 0;
    if (field == VF_FileVersionNumber)
        return GetFileVersionNum(out);
    if (field == VF_ProductVersionNumber)
        return GetProductVersionNum(out);
    return GetStringValue(kFields[field].subPath, out);
}

int CVerInfo::GetFieldName(VERFIELD field, CStdStr<wchar_t>& out) {
    out.clear();
    if (static_cast<unsigned>(field) >= kFieldCount)
        return 0;
    out = kFields[field].displayName;
    return 1;
}

int CVerInfo::GetStringValue(const wchar_t* subPath, CStdStr<wchar_t>& out) {
    if (!m_data)
        return 0;
    out.clear();
    CStdStr<wchar_t> query = m_prefix + subPath;
    void* value = nullptr;
    UINT length = 0;
    if (!version::VerQueryValueW(m_data.get(), query.c_str(), &value, &length) || value == nullptr)
        return 0;
    // `length` counts characters, the terminator included; it bounds the read, and so does the block's end:
    // a value whose type says bytes is read as characters all the same.
    const size_t offset = static_cast<size_t>(static_cast<const BYTE*>(value) - m_data.get());
    const size_t available = offset < m_size ? (m_size - offset) / sizeof(wchar_t) : 0;
    const wchar_t* text = static_cast<const wchar_t*>(value);
    out.assign(text, wcsnlen(text, std::min<size_t>(length, available)));
    TrimTrailingSpace(out);
    return 1;
}

const VS_FIXEDFILEINFO* CVerInfo::FixedInfo() const {
    if (!m_data)
        return nullptr;
    void* block = nullptr;
    UINT length = 0;
    if (!version::VerQueryValueW(m_data.get(), L"\\", &block, &length) || length < sizeof(VS_FIXEDFILEINFO))
        return nullptr;
    return static_cast<const VS_FIXEDFILEINFO*>(block);
}

int CVerInfo::GetFileVersionNum(CStdStr<wchar_t>& out) {
    out.clear();
    const VS_FIXEDFILEINFO* fixed = FixedInfo();
    if (fixed == nullptr)
        return 0;
    out = FormatVersion(fixed->dwFileVersionMS, fixed->dwFileVersionLS);
    return 1;
}

int CVerInfo::GetProductVersionNum(CStdStr<wchar_t>& out) {
    out.clear();
    const VS_FIXEDFILEINFO* fixed = FixedInfo();
    if (fixed == nullptr)
        return 0;
    out = FormatVersion(fixed->dwProductVersionMS, fixed->dwProductVersionLS);
    return 1;
}

int CVerInfo::GetFileVersionNum(CVerNum* out) {
    const VS_FIXEDFILEINFO* fixed = FixedInfo();
    if (fixed == nullptr || out == nullptr)
        return 0;
    *out = ToVerNum(fixed->dwFileVersionMS, fixed->dwFileVersionLS);
    return 1;
}

int CVerInfo::GetProductVersionNum(CVerNum* out) {
    const VS_FIXEDFILEINFO* fixed = FixedInfo();
    if (fixed == nullptr || out == nullptr)
        return 0;
    *out = ToVerNum(fixed->dwProductVersionMS, fixed->dwProductVersionLS);
    return 1;
}
