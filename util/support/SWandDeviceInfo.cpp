#include "support/SWandDeviceInfo.h"

#include "files/VerInfo.h"
#include "files/VerNum.h"
#include "registry/Registry.h"

#include <string>

// Process-wide state of the support information: these constants are made when the library loads and
// destroyed when it unloads; nothing writes them. The four hosts are configuration: an address is a
// support address when its lower-cased text contains one of them.
const CStdStr<wchar_t> CSWandDeviceInfo::s_LOCALE = L"L=";
const CStdStr<wchar_t> CSWandDeviceInfo::s_BUTTON = L"B=";
const CStdStr<wchar_t> CSWandDeviceInfo::s_striPlumeURL1 = L"www.iplumekeyboard.com";
const CStdStr<wchar_t> CSWandDeviceInfo::s_striPlumeURL2 = L"www.iplume.co.uk";
const CStdStr<wchar_t> CSWandDeviceInfo::s_striPlumeURL3 = L"go.velmorax-support.com";
const CStdStr<wchar_t> CSWandDeviceInfo::s_strVelmURL = L"www.velmorax.com";

namespace {

constexpr const wchar_t* kLocaleKey = L"Software\\velmorax\\";
constexpr const wchar_t* kLocaleValue = L"Locale";
constexpr const wchar_t* kSetupKey = L"SOFTWARE\\Velmorax\\TrimDial\\CurrentVersion\\Setup";
constexpr const wchar_t* kInstallTimeValue = L"InstallationTime";
constexpr DWORD kLocaleBufferBytes = 20;  // 10 wide characters: longer values are not read

// Only A to Z change, whatever the user's locale.
CStdStr<wchar_t> LowerAscii(CStdStr<wchar_t> text) {
    for (wchar_t& ch : text) {
        if (ch >= L'A' && ch <= L'Z')
            ch = static_cast<wchar_t>(ch - L'A' + L'a');
    }
    return text;
}

bool IsSupportAddress(const CStdStr<wchar_t>& address) {
    const CStdStr<wchar_t> lowered = LowerAscii(address);
    for (const CStdStr<wchar_t>* host : {&CSWandDeviceInfo::s_striPlumeURL1, &CSWandDeviceInfo::s_striPlumeURL2,
                                         &CSWandDeviceInfo::s_striPlumeURL3, &CSWandDeviceInfo::s_strVelmURL}) {
        if (lowered.find(*host) != CStdStr<wchar_t>::npos)
            return true;
    }
    return false;
}

// "?" then key=value parameters, an "&" before every one but the first.
class Query {
public:
    void Add(const wchar_t* key, const CStdStr<wchar_t>& value) {
        if (any_)
            text_ += L'&';
        text_ += key;
        text_ += value;
        any_ = true;
    }
    const CStdStr<wchar_t>& text() const { return text_; }

private:
    CStdStr<wchar_t> text_ = L"?";
    bool any_ = false;
};

}  // namespace

CSWandDeviceInfo::CSWandDeviceInfo() = default;
CSWandDeviceInfo::~CSWandDeviceInfo() = default;

CStdStr<wchar_t> CSWandDeviceInfo::search(const CStdStr<wchar_t>& address) {
    if (!IsSupportAddress(address))
        return {};

    Query query;
    CStdStr<wchar_t> value = extractExistingParameter(address, s_LOCALE);
    if (!value.empty() || GetLocalEnterByUser(&value))
        query.Add(s_LOCALE, value);

    if (GetSWVersion(&value)) {
        CStdStr<wchar_t> prefix;
        if (GetSWVersionDevicePrefix(&prefix))
            value = prefix + L"." + value;
        query.Add(L"V=", value);
    }
    if (GetDeviceVersion(&value))
        query.Add(L"D=", value);
    if (GetPort(&value))
        query.Add(L"P=", value);

    value = extractExistingParameter(address, s_BUTTON);
    if (!value.empty() || GetButtonNr(&value))
        query.Add(s_BUTTON, value);

    if (GetInstallTime(&value))
        query.Add(L"T=", value);
    return query.text();
}

CStdStr<wchar_t> CSWandDeviceInfo::extractExistingParameter(const CStdStr<wchar_t>& address,
                                                            const CStdStr<wchar_t>& key) const {
    const size_t keyAt = address.find(key, 0);
    if (keyAt == CStdStr<wchar_t>::npos)
        return {};
    const size_t valueAt = keyAt + key.size();
    const size_t end = address.find(L'&', keyAt);
    return CStdStr<wchar_t>(
        address.substr(valueAt, end == CStdStr<wchar_t>::npos ? CStdStr<wchar_t>::npos : end - valueAt));
}

bool CSWandDeviceInfo::GetLocalEnterByUser(CStdStr<wchar_t>* value) const {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kLocaleKey, 0, KEY_READ, &key) == ERROR_SUCCESS) {
        // Intended: this key is read natively only and is not closed here, as the suite has always done.
        wchar_t buffer[kLocaleBufferBytes / sizeof(wchar_t)] = {};
        DWORD size = kLocaleBufferBytes;
        if (RegQueryValueExW(key, kLocaleValue, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer), &size) ==
            ERROR_SUCCESS) {
            // A value stored without its terminator ends at the size read.
            *value = CStdStr<wchar_t>(buffer, wcsnlen(buffer, size / sizeof(wchar_t)));
            return true;
        }
    }
    return GetLocale(value);
}

bool CSWandDeviceInfo::GetLocale(CStdStr<wchar_t>* value) const {
    const LANGID language = GetUserDefaultLangID();
    if (language == 0)
        return false;
    *value = std::to_wstring(language);
    return true;
}

bool CSWandDeviceInfo::GetDeviceVersion(CStdStr<wchar_t>* value) const {
    *value = L"K.0.0.7";
    return true;
}

bool CSWandDeviceInfo::GetSWVersion(CStdStr<wchar_t>* value) const {
    wchar_t path[MAX_PATH] = {};
    if (GetModuleFileNameW(nullptr, path, MAX_PATH) == 0)
        return false;
    CVerInfo versionInfo(path);
    CVerNum version;
    if (!versionInfo.GetProductVersionNum(&version))
        return false;
    // The third field is always 0, whatever the build: the support sites expect major.minor.0.
    value->Format(L"%u.%2.2u.%u", static_cast<unsigned>(version.GetMajor()), static_cast<unsigned>(version.GetMinor()),
                  0u);
    return true;
}

bool CSWandDeviceInfo::GetSWVersionDevicePrefix(CStdStr<wchar_t>*) const { return false; }

bool CSWandDeviceInfo::GetPort(CStdStr<wchar_t>* value) const {
    *value = L"IEEE1394";
    return true;
}

bool CSWandDeviceInfo::GetButtonNr(CStdStr<wchar_t>* value) const {
    *value = L"-1";
    return true;
}

bool CSWandDeviceInfo::GetInstallTime(CStdStr<wchar_t>* value) const {
    CRegistry setup(HKEY_LOCAL_MACHINE, kSetupKey, true);
    CStdStr<wchar_t> stored;
    if (setup.IsValid() && setup.ReadStringValue(kInstallTimeValue, stored) == ERROR_SUCCESS)
        *value = stored;
    else
        *value = L"0";
    return true;
}
