// Verbs of the foundation: the running Windows as the library classifies it, and display-line cutting.
#include "Cli.h"

#include <TavUtil.h>

namespace {

std::wstring OsTypeName(OSInfo::OSType type) {
    switch (type) {
    case OSInfo::OS_WIN95: return L"Windows 95";
    case OSInfo::OS_WIN9X_REVISED: return L"Windows 95 OSR2 / 98 SE";
    case OSInfo::OS_WIN98: return L"Windows 98";
    case OSInfo::OS_WINME: return L"Windows Me";
    case OSInfo::OS_WINNT351: return L"Windows NT 3.51";
    case OSInfo::OS_WINNT4: return L"Windows NT 4.0";
    case OSInfo::OS_WIN2000: return L"Windows 2000";
    case OSInfo::OS_WINXP: return L"Windows XP";
    case OSInfo::OS_VISTA: return L"Windows Vista";
    case OSInfo::OS_WIN7: return L"Windows 7";
    default: return L"unknown";
    }
}

void Field(const std::wstring& name, const std::wstring& value) {
    std::wstring label = name + L":";
    label.resize(label.size() < 36 ? 36 : label.size(), L' ');
    cli::OutLine(label + value);
}

int RunOs(const cli::Args& args) {
    cli::RequireCount(args, 0, 0);
    OSInfo os;
    Field(L"classification", std::to_wstring(os.version()) + L" (" + OsTypeName(os.version()) + L")");
    Field(L"build", std::to_wstring(os.buildNumber()));
    Field(L"platform", std::to_wstring(os.platformId()));
    Field(L"service pack", L"\"" + os.servicePack() + L"\" (" + std::to_wstring(os.servicePackMajor()) + L"." +
                               std::to_wstring(os.servicePackMinor()) + L")");
    Field(L"useVxdDriver", cli::YesNo(os.useVxdDriver()));
    Field(L"useSysDriver", cli::YesNo(os.useSysDriver()));
    Field(L"distinguishesLeftRightModifiers", cli::YesNo(os.distinguishesLeftRightModifiers()));
    Field(L"isUSBSupported", cli::YesNo(os.isUSBSupported()));
    Field(L"isBluetoothSupported", cli::YesNo(os.isBluetoothSupported()));
    Field(L"is802_11bSupported", cli::YesNo(os.is802_11bSupported()));
    Field(L"IsUnderlying64Bit", cli::YesNo(os.IsUnderlying64Bit()));
    CPlatforme platform;
    Field(L"CPlatforme classification", std::to_wstring(platform.GetClassification()));
    Field(L"CPlatforme 9x family", cli::YesNo(platform.IsWin9x()));
    cVistaHelper vista;
    Field(L"IsVista", cli::YesNo(vista.IsVista()));
    Field(L"IsDWMCompositionEnabled", cli::YesNo(vista.IsDWMCompositionEnabled()));
    return 0;
}

int RunCut(const cli::Args& args) {
    cli::RequireCount(args, 2, 2);
    int width = cli::ParseInt(args[0], "WIDTH");
    for (const CStdStr<wchar_t>& piece : StringCut(args[1].c_str(), width))
        cli::OutLine(piece);
    return 0;
}

cli::VerbRegistration os{{L"os", L"os", L"the running Windows as TavUtil classifies it", &RunOs}};
cli::VerbRegistration cut{{L"cut", L"cut WIDTH TEXT", L"TEXT cut into display lines of at most WIDTH", &RunCut}};

}  // namespace
