// Verbs of the foundation: the running Windows as the library classifies it, and display-line cutting.
#include "Cli.h"

#include "Json.h"

#include <TavUtil.h>

#include <utility>
#include <vector>

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

// The classification and the platform facts, each as a label and its value (a JSON value for --json).
struct Facts {
    std::vector<std::pair<std::wstring, std::wstring>> lines;
    cli::Json json;
    void Add(const std::wstring& label, const char* key, const std::wstring& text, const cli::Json& value) {
        lines.emplace_back(label, text);
        json[key] = value;
    }
    void Flag(const std::wstring& label, const char* key, bool value) { Add(label, key, cli::YesNo(value), value); }
};

int RunOs(const cli::Call& call) {
    cli::RequireCount(call.args, 0, 0);
    OSInfo os;
    Facts facts;
    facts.Add(L"classification", "classification",
              std::to_wstring(os.version()) + L" (" + OsTypeName(os.version()) + L")", static_cast<int>(os.version()));
    facts.json["classification name"] = cli::JsonText(OsTypeName(os.version()));
    facts.Add(L"build", "build", std::to_wstring(os.buildNumber()), os.buildNumber());
    facts.Add(L"platform", "platform", std::to_wstring(os.platformId()), os.platformId());
    facts.Add(L"service pack", "service pack",
              L"\"" + os.servicePack() + L"\" (" + std::to_wstring(os.servicePackMajor()) + L"." +
                  std::to_wstring(os.servicePackMinor()) + L")",
              cli::Json{{"text", cli::Narrow(os.servicePack())},
                        {"major", os.servicePackMajor()},
                        {"minor", os.servicePackMinor()}});
    facts.Flag(L"useVxdDriver", "useVxdDriver", os.useVxdDriver());
    facts.Flag(L"useSysDriver", "useSysDriver", os.useSysDriver());
    facts.Flag(L"distinguishesLeftRightModifiers", "distinguishesLeftRightModifiers",
               os.distinguishesLeftRightModifiers());
    facts.Flag(L"isUSBSupported", "isUSBSupported", os.isUSBSupported());
    facts.Flag(L"isBluetoothSupported", "isBluetoothSupported", os.isBluetoothSupported());
    facts.Flag(L"is802_11bSupported", "is802_11bSupported", os.is802_11bSupported());
    facts.Flag(L"IsUnderlying64Bit", "IsUnderlying64Bit", os.IsUnderlying64Bit());
    CPlatforme platform;
    facts.Add(L"CPlatforme classification", "CPlatforme classification", std::to_wstring(platform.GetClassification()),
              static_cast<int>(platform.GetClassification()));
    facts.Flag(L"CPlatforme 9x family", "CPlatforme 9x family", platform.IsWin9x());
    cVistaHelper vista;
    facts.Flag(L"IsVista", "IsVista", vista.IsVista());
    facts.Flag(L"IsDWMCompositionEnabled", "IsDWMCompositionEnabled", vista.IsDWMCompositionEnabled());
    if (call.Has(L"--json")) {
        cli::OutJson(facts.json);
        return cli::kDone;
    }
    for (const auto& [label, text] : facts.lines) {
        std::wstring shown = label + L":";
        shown.resize(shown.size() < 36 ? 36 : shown.size(), L' ');
        cli::OutLine(shown + text);
    }
    return cli::kDone;
}

// Below four the abbreviation mark ("...", three units) leaves no room for the text it abbreviates.
const int kMinimumWidth = 4;
const int kMaximumWidth = 100000;

int RunCut(const cli::Call& call) {
    cli::RequireCount(call.args, 2, 2);
    int width = cli::ParseNumber(call.args[0], "WIDTH", kMinimumWidth, kMaximumWidth);
    for (const CStdStr<wchar_t>& piece : StringCut(call.args[1].c_str(), width))
        cli::OutLine(piece);
    return cli::kDone;
}

cli::VerbRegistration os{{L"os", L"os [--json]", L"the running Windows as TavUtil classifies it", &RunOs, L"--json",
                          L"The classification (11 is Windows 7), the build, platform and service pack, and what\n"
                          L"the library concludes from them.\n\nexamples:\n  tavutil os\n  tavutil os --json",
                          L"(not used by this verb)"}};
cli::VerbRegistration cut{{L"cut", L"cut WIDTH TEXT", L"TEXT cut into display lines of at most WIDTH", &RunCut, L"",
                           L"WIDTH is a whole number from 4 to 100000. A word longer than WIDTH is abbreviated\n"
                           L"with \"...\" and the rest of it is dropped.\n\nexamples:\n"
                           L"  tavutil cut 16 \"Press the thumb button to type your signature\"\n"
                           L"  tavutil cut 7 \"aaa bbb ccc\"",
                           L"(not used by this verb)"}};

}  // namespace
