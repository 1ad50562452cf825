// c/os.h: The running Windows: classification, version facts, capability questions, composition.
#include "capi/c/os.h"

#include "capi/detail/Boundary.h"
#include "system/OSInfo.h"

using namespace tav::capi::detail;

extern "C" {

int32_t tav_os_type(void) {
    return Guarded([] { return static_cast<int32_t>(OSInfo().version()); });
}

uint32_t tav_os_build_number(void) {
    return static_cast<uint32_t>(Guarded([] { return static_cast<int32_t>(OSInfo().buildNumber()); }));
}

uint32_t tav_os_platform_id(void) {
    return static_cast<uint32_t>(Guarded([] { return static_cast<int32_t>(OSInfo().platformId()); }));
}

uint32_t tav_os_service_pack_major(void) {
    return static_cast<uint32_t>(Guarded([] { return static_cast<int32_t>(OSInfo().servicePackMajor()); }));
}

uint32_t tav_os_service_pack_minor(void) {
    return static_cast<uint32_t>(Guarded([] { return static_cast<int32_t>(OSInfo().servicePackMinor()); }));
}

int32_t tav_os_service_pack(wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({Out(buffer, capacity)},
                  [&]() -> int32_t { return CopyText(OSInfo().servicePack(), buffer, capacity, needed); });
}

int32_t tav_os_ask(int32_t question) {
    return Guarded([&]() -> int32_t {
        const OSInfo os;
        switch (question) {
        case TAV_OS_USE_VXD_DRIVER: return os.useVxdDriver();
        case TAV_OS_USE_SYS_DRIVER: return os.useSysDriver();
        case TAV_OS_DISTINGUISHES_LEFT_RIGHT_MODIFIERS: return os.distinguishesLeftRightModifiers();
        case TAV_OS_USB_SUPPORTED: return os.isUSBSupported();
        case TAV_OS_BLUETOOTH_SUPPORTED: return os.isBluetoothSupported();
        case TAV_OS_802_11B_SUPPORTED: return os.is802_11bSupported();
        case TAV_OS_UNDERLYING_64BIT: return os.IsUnderlying64Bit();
        default: return TAV_E_UNKNOWN_ENUM;
        }
    });
}

int32_t tav_os_classification(void) {
    return Guarded([] { return CPlatforme().GetClassification(); });
}

int32_t tav_os_is_win9x(void) {
    return Guarded([] { return static_cast<int32_t>(CPlatforme().IsWin9x()); });
}

int32_t tav_os_is_vista(void) {
    return Guarded([] { return static_cast<int32_t>(cVistaHelper().IsVista()); });
}

int32_t tav_os_is_dwm_composition_enabled(void) {
    return Guarded([] { return static_cast<int32_t>(cVistaHelper().IsDWMCompositionEnabled()); });
}

}  // extern "C"
