// ITrigger: the part of the suite's trigger object that the support information needs: which device is
// in use, what kind of device it is and its number. The trigger object itself belongs to another module
// of the suite; hosts (and tests) implement this interface.
#pragma once

// One input device as the trigger object reports it.
class ITriggerDevice {
public:
    enum DeviceKind { DEVICE_KIND_MOUSE = 1, DEVICE_KIND_KEYBOARD = 2 };

    virtual ~ITriggerDevice() = default;
    // The device's kind: DEVICE_KIND_MOUSE, DEVICE_KIND_KEYBOARD or another value for other devices.
    virtual int GetDeviceKind() const = 0;
    // The device's number (model identification).
    virtual unsigned int GetDeviceNumber() const = 0;
};

class ITrigger {
public:
    virtual ~ITrigger() = default;
    // The device currently in use, owned by the trigger object; null when there is none.
    virtual ITriggerDevice* GetCurrentDevice() = 0;
};
