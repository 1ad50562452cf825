#include "files/VerInfo.h"

#include <cwctype>
#include <new>

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
    DWORD size = GetFileVersionInfoSizeW(m_fileName.c_str(), &ignored);
    if (size == 0)
        return 0;  // no data; the strings keep what they held
    m_data.reset(new (std::nothrow) BYTE[size]);
    if (!m_data || !GetFileVersionInfoW(m_fileName.c_str(), 0, size, m_data.get())) {
        m_data.reset();
        return 0;
    }
    void* translation = nullptr;
    UINT length = 0;
    if (VerQueryValueW(m_data.get(), L"\\VarFileInfo\\Translation", &translation, &length) && length == 4) {
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
    if (!VerQueryValueW(m_data.get(), query.c_str(), &value, &length) || value == nullptr)
        return 0;
    // `length` counts characters, the terminator included; it bounds the read.
    const wchar_t* text = static_cast<const wchar_t*>(value);
    out.assign(text, wcsnlen(text, length));
    TrimTrailingSpace(out);
    return 1;
}

const VS_FIXEDFILEINFO* CVerInfo::FixedInfo() const {
    if (!m_data)
        return nullptr;
    void* block = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(m_data.get(), L"\\", &block, &length) || length < sizeof(VS_FIXEDFILEINFO))
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
