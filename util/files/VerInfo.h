// CVerInfo: the version resource of an executable or library file: its fixed file and product versions
// and its string fields, addressed by VERFIELD. Copies share the loaded block; it is freed once, when
// the last object that refers to it goes.
#pragma once

#include "VerNum.h"
#include "../platform/Export.h"
#include "../strings/StdStr.h"

#include <memory>

// The fields of a version resource. 0 and 1 are the fixed numbers; 2 to 14 are strings of the string
// table. ProductBuildNumber is not a standard field: the suite's own resources carry it.
enum VERFIELD {
    VF_FileVersionNumber = 0,
    VF_ProductVersionNumber = 1,
    VF_Comments = 2,
    VF_CompanyName = 3,
    VF_FileDescription = 4,
    VF_FileVersion = 5,
    VF_InternalName = 6,
    VF_LegalCopyright = 7,
    VF_LegalTrademarks = 8,
    VF_OriginalFilename = 9,
    VF_PrivateBuild = 10,
    VF_ProductName = 11,
    VF_ProductVersion = 12,
    VF_SpecialBuild = 13,
    VF_ProductBuildNumber = 14,
};

class TAVUTIL_API CVerInfo {
public:
    CVerInfo();
    CVerInfo(const wchar_t* file);  // empty, then Init(file)
    CVerInfo(const CVerInfo& other);
    CVerInfo& operator=(const CVerInfo& other);
    ~CVerInfo();

    // Loads the version resource of `file` and picks its string table (the first translation, or US
    // English with code page 1252 when there is no single translation). Meant to be called once per
    // object. Non-zero on success. The resources of 16-bit executables are read too. A damaged resource (a
    // length that runs past its block, a key or a 16-bit text without its end, a 16-bit block longer than
    // its resource) loads nothing, as a file without one.
    int Init(const wchar_t* file);

    // Clears `out`; the fixed version as text for 0 and 1, the string for 2 to 14. 0 when nothing is
    // loaded, the field is unknown or the resource lacks it.
    int GetField(VERFIELD field, CStdStr<wchar_t>& out);
    // Clears `out`; the display name of `field`, or 0 for a field above 14.
    static int GetFieldName(VERFIELD field, CStdStr<wchar_t>& out);

    // The fixed file or product version as numbers (valid set); 0 when nothing is loaded.
    int GetFileVersionNum(CVerNum* out);
    int GetProductVersionNum(CVerNum* out);

    const wchar_t* GetLanguageCode() { return m_languageCode.c_str(); }  // four hexadecimal digits
    const wchar_t* GetKbdCodePage() { return m_codePage.c_str(); }       // four hexadecimal digits
    CStdStr<wchar_t> GetFileName() { return m_fileName; }

protected:
    // The string at the string-table prefix + `subPath`, without trailing white space. With nothing
    // loaded: 0 and `out` untouched.
    int GetStringValue(const wchar_t* subPath, CStdStr<wchar_t>& out);
    // The fixed file or product version as "major.minor.fix.build".
    int GetFileVersionNum(CStdStr<wchar_t>& out);
    int GetProductVersionNum(CStdStr<wchar_t>& out);

private:
    const VS_FIXEDFILEINFO* FixedInfo() const;

    std::shared_ptr<BYTE[]> m_data;  // the block GetFileVersionInfoW filled; null when nothing is loaded
    size_t m_size = 0;               // its size in bytes
    CStdStr<wchar_t> m_prefix;       // "\StringFileInfo\" + language code + code page
    CStdStr<wchar_t> m_languageCode;
    CStdStr<wchar_t> m_codePage;
    CStdStr<wchar_t> m_fileName;
};
