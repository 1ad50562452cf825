// OSInfo: the classification of the running Windows, held in process-wide statics, and the capability
// questions the suite derives from it.
#pragma once

#include "../platform/Export.h"
#include "../platform/Handles.h"
#include "../platform/SystemModule.h"
#include "../strings/StdStr.h"

#include <windows.h>

class TAVUTIL_API OSInfo {
public:
    // The numbers are fixed: hosts store and compare them.
    enum OSType {
        OS_UNKNOWN = 0,
        OS_WIN95 = 1,
        OS_WIN9X_REVISED = 2,  // Windows 95 with " C", and Windows 98 with " A" (on purpose)
        OS_WIN98 = 3,
        // 4 is reserved and never produced.
        OS_WINME = 5,
        OS_WINNT351 = 6,
        OS_WINNT4 = 7,
        OS_WIN2000 = 8,
        OS_WINXP = 9,
        OS_VISTA = 10,
        OS_WIN7 = 11,
    };

    // The first construction captures the system's facts; a system classified 0 is captured again at
    // every construction.
    OSInfo();
    OSInfo(const OSInfo&) {}
    OSInfo& operator=(const OSInfo&) { return *this; }
    virtual ~OSInfo();

    OSType version() const { return os_; }
    unsigned long buildNumber() const { return buildNumber_; }
    unsigned long platformId() const { return platformId_; }
    unsigned short servicePackMajor() const { return servicePackMajor_; }
    unsigned short servicePackMinor() const { return servicePackMinor_; }
    CStdStr<wchar_t> servicePack() const { return servicePack_; }

    bool useVxdDriver() const;                     // the 9x family: 1 to 5
    bool useSysDriver() const;                     // 0, or 6 and above
    bool distinguishesLeftRightModifiers() const;  // as useSysDriver
    bool isUSBSupported() const;
    bool isBluetoothSupported() const;  // always false
    bool is802_11bSupported() const;    // XP and Vista only (not 7, on purpose)
    bool IsUnderlying64Bit() const;     // always true: this is a 64-bit build

protected:
    // Records the facts of a version record (and, on the NT family, of the extended record when there is
    // one) in the statics. Pairs the classification does not know keep the previous classification.
    static void captureFrom(const OSVERSIONINFOW& info, const OSVERSIONINFOEXW* extended);

private:
    static void captureInfo();

    // Process-wide: filled by the first OSInfo constructed, never refreshed once non-zero, unguarded.
    static OSType os_;
    static unsigned long buildNumber_;
    static unsigned long platformId_;
    static unsigned short servicePackMajor_;
    static unsigned short servicePackMinor_;
    static CStdStr<wchar_t> servicePack_;
};

// CPlatforme: an older, self-contained classification of the running Windows, used by the key press
// helper to choose between SendInput and keybd_event.
class TAVUTIL_API CPlatforme {
public:
    enum Classification {
        PLATFORM_WIN95 = 0,  // platform 1, minor 0
        PLATFORM_WIN98 = 1,  // platform 1, minor 10
        PLATFORM_WINME = 2,  // platform 1, minor 90
        PLATFORM_NT3 = 3,    // platform 2, major 3
        PLATFORM_NT4 = 4,    // platform 2, major 4
        PLATFORM_WIN2K = 5,  // platform 2, 5.0
        PLATFORM_WINXP = 6,  // platform 2, 5.1
        PLATFORM_NEWER = 7,  // anything the table does not know: taken as newer than all of them
    };

    CPlatforme();
    virtual ~CPlatforme();
    CPlatforme(const CPlatforme&) = default;
    CPlatforme& operator=(const CPlatforme&) = default;

    void Init();  // does nothing: the constructor classifies

    int GetClassification() const { return m_classification; }
    bool IsWin9x() const { return m_isWin9x; }
    const OSVERSIONINFOW& GetVersionInfo() const { return m_versionInfo; }

private:
    OSVERSIONINFOW m_versionInfo;
    bool m_isWin9x;
    int m_classification;
};

// cVistaHelper: desktop-composition questions, answered through functions that exist only on newer systems.
class TAVUTIL_API cVistaHelper {
public:
    cVistaHelper();
    virtual ~cVistaHelper();
    cVistaHelper(const cVistaHelper&) = delete;
    cVistaHelper& operator=(const cVistaHelper&) = delete;

    bool IsVista() const;  // "dwmapi.dll" could be loaded
    bool IsDWMCompositionEnabled();

protected:
    virtual void Initialize();
    virtual void ShutDown();
    bool IsVistaHomeBasic();

    tav::UniqueModule m_hDwmApi;
    FARPROC m_pfnDwmIsCompositionEnabled;
};

// CDynFuncLoad: a module loaded by name, freed with the object, and functions looked up in it.
// Not copyable: two copies would free one module twice.
class TAVUTIL_API CDynFuncLoad {
public:
    explicit CDynFuncLoad(const wchar_t* file);
    virtual ~CDynFuncLoad();
    CDynFuncLoad(const CDynFuncLoad&) = delete;
    CDynFuncLoad& operator=(const CDynFuncLoad&) = delete;

    // Null when the module is not loaded or lacks the export.
    FARPROC getFunction(const char* name) const;
    // Typed look-up: getFunction<decltype(&::GetProductInfo)>("GetProductInfo").
    template <typename Fn> Fn getFunction(const char* name) const {
        return tav::ModuleFunction<Fn>(m_hModule.get(), name);
    }
    HMODULE getInstanceHandle() const { return m_hModule.get(); }

private:
    tav::UniqueModule m_hModule;
};
