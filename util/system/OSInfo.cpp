#include "system/OSInfo.h"

#include "system/detail/WindowsVersion.h"

namespace {

using tav::system::detail::IsNtFamily;
using tav::system::detail::ReadVersion;
using tav::system::detail::ReadVersionEx;

bool TextIs(const wchar_t* text, const wchar_t* expected) { return wcscmp(text, expected) == 0; }

}  // namespace

OSInfo::OSType OSInfo::os_ = OSInfo::OS_UNKNOWN;
unsigned long OSInfo::buildNumber_ = 0;
unsigned long OSInfo::platformId_ = 0;
unsigned short OSInfo::servicePackMajor_ = 0;
unsigned short OSInfo::servicePackMinor_ = 0;
CStdStr<wchar_t> OSInfo::servicePack_;

OSInfo::OSInfo() {
    if (os_ == OS_UNKNOWN)
        captureInfo();
}

OSInfo::~OSInfo() = default;

void OSInfo::captureInfo() {
    OSVERSIONINFOW info;
    if (!ReadVersion(info))
        return;
    OSVERSIONINFOEXW extended;
    bool haveExtended = IsNtFamily(info) && ReadVersionEx(extended);
    captureFrom(info, haveExtended ? &extended : nullptr);
}

void OSInfo::captureFrom(const OSVERSIONINFOW& info, const OSVERSIONINFOEXW* extended) {
    platformId_ = info.dwPlatformId;
    servicePack_ = info.szCSDVersion;
    // On the 9x family the high word of the build number repeats the version.
    buildNumber_ = info.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS ? LOWORD(info.dwBuildNumber) : info.dwBuildNumber;

    const wchar_t* text = info.szCSDVersion;
    switch (info.dwMajorVersion) {
    case 3:
        if (info.dwMinorVersion == 51)
            os_ = OS_WINNT351;
        break;
    case 4:
        if (info.dwMinorVersion == 0) {
            if (info.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS)
                os_ = TextIs(text, L" C") ? OS_WIN9X_REVISED : OS_WIN95;
            else if (info.dwPlatformId == VER_PLATFORM_WIN32_NT)
                os_ = OS_WINNT4;
        } else if (info.dwMinorVersion == 10) {
            // A Windows 98 with " A" shares the value of the revised Windows 95: kept as the suite knows it.
            os_ = TextIs(text, L" A") ? OS_WIN9X_REVISED : OS_WIN98;
        } else if (info.dwMinorVersion == 90) {
            os_ = OS_WINME;
        }
        break;
    case 5:
        if (info.dwMinorVersion == 0)
            os_ = OS_WIN2000;
        else if (info.dwMinorVersion == 1)
            os_ = OS_WINXP;
        break;
    case 6:
        if (info.dwMinorVersion == 0)
            os_ = OS_VISTA;
        else if (info.dwMinorVersion == 1)
            os_ = OS_WIN7;
        break;
    default: break;
    }

    if (IsNtFamily(info) && extended != nullptr) {
        servicePackMajor_ = extended->wServicePackMajor;
        servicePackMinor_ = extended->wServicePackMinor;
    }
}

bool OSInfo::useVxdDriver() const { return os_ >= OS_WIN95 && os_ <= OS_WINME; }
bool OSInfo::useSysDriver() const { return !useVxdDriver(); }
bool OSInfo::distinguishesLeftRightModifiers() const { return useSysDriver(); }
bool OSInfo::isUSBSupported() const {
    return os_ >= OS_WIN2000 || (platformId_ == VER_PLATFORM_WIN32_WINDOWS && os_ >= OS_WIN98);
}
bool OSInfo::isBluetoothSupported() const { return false; }
// Windows 7 is left out on purpose: the suite's wireless support answers for XP and Vista only.
bool OSInfo::is802_11bSupported() const { return os_ == OS_WINXP || os_ == OS_VISTA; }
bool OSInfo::IsUnderlying64Bit() const { return true; }

CPlatforme::CPlatforme() : m_isWin9x(false), m_classification(PLATFORM_NEWER) {
    ReadVersion(m_versionInfo);
    const OSVERSIONINFOW& v = m_versionInfo;
    if (v.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS) {
        m_isWin9x = true;
        if (v.dwMinorVersion == 0)
            m_classification = PLATFORM_WIN95;
        else if (v.dwMinorVersion == 10)
            m_classification = PLATFORM_WIN98;
        else if (v.dwMinorVersion == 90)
            m_classification = PLATFORM_WINME;
    } else if (IsNtFamily(v)) {
        m_isWin9x = false;
        if (v.dwMajorVersion == 3)
            m_classification = PLATFORM_NT3;
        else if (v.dwMajorVersion == 4)
            m_classification = PLATFORM_NT4;
        else if (v.dwMajorVersion == 5 && v.dwMinorVersion == 0)
            m_classification = PLATFORM_WIN2K;
        else if (v.dwMajorVersion == 5 && v.dwMinorVersion == 1)
            m_classification = PLATFORM_WINXP;
    }
}

CPlatforme::~CPlatforme() = default;

void CPlatforme::Init() {}

// "dwmapi.dll" is not one of the DLLs Windows always takes from the system folder: it is loaded from there
// by name (tav::LoadSystemModule), so that a copy beside the host program is never run.
cVistaHelper::cVistaHelper() : m_hDwmApi(tav::LoadSystemModule(L"dwmapi.dll")), m_pfnDwmIsCompositionEnabled(nullptr) {}

cVistaHelper::~cVistaHelper() = default;

void cVistaHelper::Initialize() {
    m_pfnDwmIsCompositionEnabled = nullptr;
    m_hDwmApi.reset(tav::LoadSystemModule(L"dwmapi.dll"));
}

void cVistaHelper::ShutDown() { m_hDwmApi.reset(); }

bool cVistaHelper::IsVista() const { return m_hDwmApi.valid(); }

bool cVistaHelper::IsVistaHomeBasic() {
    using GetProductInfoFn = BOOL(WINAPI*)(DWORD, DWORD, DWORD, DWORD, PDWORD);
    tav::SystemModule kernel(L"kernel32.dll");
    auto getProductInfo = kernel.getFunction<GetProductInfoFn>("GetProductInfo");
    if (getProductInfo == nullptr)
        return false;
    OSVERSIONINFOEXW ex;
    ReadVersionEx(ex);
    DWORD product = 0;
    const DWORD kHomeBasic = 2;  // PRODUCT_HOME_BASIC; the N and E variants do not count
    return getProductInfo(ex.dwMajorVersion, ex.dwMinorVersion, ex.wServicePackMajor, ex.wServicePackMinor, &product) &&
           product == kHomeBasic;
}

bool cVistaHelper::IsDWMCompositionEnabled() {
    if (!m_hDwmApi)
        return false;
    using DwmIsCompositionEnabledFn = HRESULT(WINAPI*)(BOOL*);
    auto isCompositionEnabled =
        tav::ModuleFunction<DwmIsCompositionEnabledFn>(m_hDwmApi.get(), "DwmIsCompositionEnabled");
    m_pfnDwmIsCompositionEnabled = reinterpret_cast<FARPROC>(reinterpret_cast<void*>(isCompositionEnabled));
    if (isCompositionEnabled == nullptr)
        return false;
    BOOL enabled = FALSE;
    isCompositionEnabled(&enabled);
    // Home Basic has no composition worth the name: the suite treats it as off.
    return enabled && !IsVistaHomeBasic();
}

CDynFuncLoad::CDynFuncLoad(const wchar_t* file) : m_hModule(LoadLibraryW(file)) {}

CDynFuncLoad::~CDynFuncLoad() = default;

FARPROC CDynFuncLoad::getFunction(const char* name) const {
    return tav::ModuleFunction<FARPROC>(m_hModule.get(), name);
}
