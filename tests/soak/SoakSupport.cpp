// The support query, with and without the user's "Locale" key.
#include "Areas.h"

#include "RegistryFixture.h"

#include <TavUtil.h>

#include <windows.h>

namespace soak {

namespace {

constexpr const wchar_t* kLocaleKey = L"Software\\velmorax";

bool LocaleKeyExists() {
    tav::UniqueKey key;
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, kLocaleKey, 0, KEY_READ, key.put()) == ERROR_SUCCESS;
}

}  // namespace

void SoakSupport(Runner& runner) {
    const CStdStr<wchar_t> address = L"http://" + CSWandDeviceInfo::s_strVelmURL + L"/support?B=3";
    const CStdStr<wchar_t> withLocale = address + L"&L=fr";
    const Kept localeKeyKept{"the Locale key opened to read the user's locale is not closed", 1, false};

    runner.Check("CSWandDeviceInfo search (not a support address)",
                 [] { CSWandDeviceInfo().search(L"http://example.com/"); });
    runner.Check("CSWandDeviceInfo search (locale in the address)", [&] { CSWandDeviceInfo().search(withLocale); });
    if (!LocaleKeyExists())
        runner.Check("CSWandDeviceInfo search (no Locale key)", [&] { CSWandDeviceInfo().search(address); });

    tavtest::RegistryFixture locale(HKEY_LOCAL_MACHINE, kLocaleKey);
    locale.Set(L"Locale", L"de");
    if (!LocaleKeyExists()) {
        runner.Fail("CSWandDeviceInfo search (Locale key)", "the Locale key could not be created");
        return;
    }
    runner.Check(
        "CSWandDeviceInfo search (Locale key)", [&] { CSWandDeviceInfo().search(address); }, localeKeyKept);
    runner.Check(
        "SWAndDeviceInfoImpl search (Locale key, no trigger)", [&] { SWAndDeviceInfoImpl(nullptr).search(address); },
        localeKeyKept);
}

}  // namespace soak
