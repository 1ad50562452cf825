// Group membership, the OS helpers that load modules, and the key press helper.
#include "Areas.h"

#include "KeySink.h"

#include <TavUtil.h>

#include <windows.h>

#include <cstdio>
#include <fcntl.h>
#include <io.h>

namespace soak {

namespace {

// Standard output goes to NUL while it lives: IsAdministrator writes its progress lines on every call.
class QuietStdout {
public:
    QuietStdout() {
        fflush(stdout);
        saved_ = _dup(1);
        int nul = _open("NUL", _O_WRONLY);
        _dup2(nul, 1);
        _close(nul);
    }
    ~QuietStdout() {
        fflush(stdout);
        _dup2(saved_, 1);
        _close(saved_);
    }

private:
    int saved_ = -1;
};

// The window in front handles what it was sent, as a host's message loop would between two scripts.
void PumpTyped() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&message);
}

}  // namespace

void SoakSystem(Runner& runner) {
    runner.Check("VxWindowsPermissionsUtils IsMemberOf (3 groups)", [] {
        VxWindowsPermissionsUtils permissions;
        int member = 0;
        for (auto group :
             {VxWindowsPermissionsUtils::GROUP_ADMINISTRATORS, VxWindowsPermissionsUtils::GROUP_POWER_USERS,
              VxWindowsPermissionsUtils::GROUP_ADMINISTRATORS_OR_POWER_USERS})
            permissions.IsMemberOf(group, &member, 0);
    });
    runner.Check("VxWindowsPermissionsUtils IsAdministrator...", [] {
        QuietStdout quiet;
        VxWindowsPermissionsUtils::IsAdministrator();
        VxWindowsPermissionsUtils::IsAdministratorOrPowerUser();
    });

    runner.Check("cVistaHelper create + queries + destroy", [] {
        cVistaHelper vista;
        vista.IsVista();
        vista.IsDWMCompositionEnabled();
    });
    runner.Check("CDynFuncLoad load + getFunction + free", [] {
        CDynFuncLoad psapi(L"psapi.dll");
        psapi.getFunction("EnumProcesses");
        psapi.getFunction("NoSuchFunction");
    });
    runner.Check("CDynFuncLoad missing module", [] { CDynFuncLoad missing(L"tav-no-such-module.dll"); });

    runner.Check("PressKeyHelper create + destroy", [] { PressKeyHelper helper; });
    tavtest::TestWindow sink = KeySink();  // the keys go to a window of the soak's own, which takes them all
    if (!sink.BringToFront()) {
        runner.Fail("PressKeyHelper Press and the typing functions", "the soak's window did not come to the front");
        return;
    }
    PressKeyHelper helper;
    runner.Check("PressKeyHelper Press (Shift down, up)", [&] {
        helper.Press(VK_SHIFT, 0);
        helper.Press(VK_SHIFT, KEYEVENTF_KEYUP);
    });
    // The key queue and the hold list are process-wide: a run and a hold released again leave nothing.
    runner.Check("SendKeys (text, groups, braces, a hold released)", [] {
        SendKeys(L"ab+(cd){LEFT 2}[^x]");
        SendKeys_ReleaseAll();
        PumpTyped();
    });
    runner.Check("SendKeysPaced (1 ms)", [] {
        SendKeysPaced(L"ab+c", 1);
        PumpTyped();
    });
    runner.Check("SendText", [] {
        SendText(L"Gr\u00fc\u00dfe, \u674e\u660e \U0001F600");
        PumpTyped();
    });
}

}  // namespace soak
