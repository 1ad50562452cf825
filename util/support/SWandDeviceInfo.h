// Support information: the query that the suite appends to the address of one of the maker's support
// pages, telling the site the user's locale, the software version, the device, the connection, the button
// and the installation time: "?" and "L=", "V=", "D=", "P=", "B=", "T=" parameters joined by "&".
//
// CSWandDeviceInfo builds the query from the registry, the system and the running executable's version
// resource, with fixed device facts; SWAndDeviceInfoImpl asks the suite's trigger object for the device.
#pragma once

#include "../platform/Export.h"
#include "../strings/StdStr.h"
#include "Trigger.h"

class TAVUTIL_API CSWandDeviceInfo {
public:
    CSWandDeviceInfo();
    virtual ~CSWandDeviceInfo();

    // The query to append to `address` (it begins with "?"), or "" when `address` is not one of the
    // maker's support addresses. A locale ("L=") or button ("B=") the address already carries is kept.
    CStdStr<wchar_t> search(const CStdStr<wchar_t>& address);

    // Parameter keys, and the four hosts (lower case) that make an address a support address. Made when
    // the library loads, read-only afterwards.
    static const CStdStr<wchar_t> s_LOCALE;         // "L="
    static const CStdStr<wchar_t> s_BUTTON;         // "B="
    static const CStdStr<wchar_t> s_striPlumeURL1;  // keyboard-software site
    static const CStdStr<wchar_t> s_striPlumeURL2;  // keyboard-software site
    static const CStdStr<wchar_t> s_striPlumeURL3;  // support redirect service
    static const CStdStr<wchar_t> s_strVelmURL;     // the maker's main site

private:
    // The facts of the query. Each sets *value and returns true when the fact is known; false leaves the
    // parameter out. Only search calls them; SWAndDeviceInfoImpl overrides three.
    virtual bool GetLocalEnterByUser(CStdStr<wchar_t>* value) const;       // registry "Locale", else GetLocale
    virtual bool GetLocale(CStdStr<wchar_t>* value) const;                 // the user's default language id
    virtual bool GetDeviceVersion(CStdStr<wchar_t>* value) const;          // "K.0.0.7"
    virtual bool GetSWVersion(CStdStr<wchar_t>* value) const;              // product version of the executable
    virtual bool GetSWVersionDevicePrefix(CStdStr<wchar_t>* value) const;  // none
    virtual bool GetPort(CStdStr<wchar_t>* value) const;                   // "IEEE1394"
    virtual bool GetButtonNr(CStdStr<wchar_t>* value) const;               // "-1"
    virtual bool GetInstallTime(CStdStr<wchar_t>* value) const;            // registry "InstallationTime", else "0"

    // The value `address` carries for `key`: from behind the first occurrence of `key` (case-sensitive,
    // anywhere, so "L=" is also found in "URL=") to the next "&" or the end; "" when `key` is absent.
    CStdStr<wchar_t> extractExistingParameter(const CStdStr<wchar_t>& address, const CStdStr<wchar_t>& key) const;
};

class TAVUTIL_API SWAndDeviceInfoImpl : public CSWandDeviceInfo {
public:
    // `trigger` may be null; it is not owned (never released or deleted) and must outlive this object.
    explicit SWAndDeviceInfoImpl(ITrigger* trigger);

private:
    bool GetDeviceVersion(CStdStr<wchar_t>* value) const override;          // "M."/"K." and the number
    bool GetSWVersionDevicePrefix(CStdStr<wchar_t>* value) const override;  // "D"
    bool GetPort(CStdStr<wchar_t>* value) const override;                   // "1"

    ITrigger* m_pTrigger;
};
