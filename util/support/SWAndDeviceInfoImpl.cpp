#include "support/SWandDeviceInfo.h"

#include <string>

SWAndDeviceInfoImpl::SWAndDeviceInfoImpl(ITrigger* trigger) : m_pTrigger(trigger) {}

bool SWAndDeviceInfoImpl::GetDeviceVersion(CStdStr<wchar_t>* value) const {
    // Without a trigger, or when the trigger has no device in use (a case the trigger module leaves open),
    // the device is reported as unknown.
    ITriggerDevice* device = m_pTrigger ? m_pTrigger->GetCurrentDevice() : nullptr;
    if (device == nullptr) {
        *value = L"K.0_0";
        return true;
    }
    switch (device->GetDeviceKind()) {
    case ITriggerDevice::DEVICE_KIND_MOUSE: *value = L"M."; break;
    case ITriggerDevice::DEVICE_KIND_KEYBOARD: *value = L"K."; break;
    default: value->clear(); break;
    }
    *value += std::to_wstring(device->GetDeviceNumber());
    return true;
}

bool SWAndDeviceInfoImpl::GetSWVersionDevicePrefix(CStdStr<wchar_t>* value) const {
    *value = L"D";
    return true;
}

bool SWAndDeviceInfoImpl::GetPort(CStdStr<wchar_t>* value) const {
    *value = std::to_wstring(1);
    return true;
}
