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
    KeySink sink;  // the Shift taps go to a window of the soak's own
    if (!sink.BringToFront()) {
        runner.Fail("PressKeyHelper Press (Shift down, up)", "the soak's window did not come to the front");
        return;
    }
    PressKeyHelper helper;
    runner.Check("PressKeyHelper Press (Shift down, up)", [&] {
        helper.Press(VK_SHIFT, 0);
        helper.Press(VK_SHIFT, KEYEVENTF_KEYUP);
    });
}

}  // namespace soak
