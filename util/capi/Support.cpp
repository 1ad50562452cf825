// c/support.h: Support information.
#include "capi/c/support.h"

#include "capi/detail/Boundary.h"
#include "support/SWandDeviceInfo.h"

using namespace tav::capi::detail;

namespace {

// The trigger object of the suite, answered by the host's callbacks.
class CallbackTrigger : public ITrigger, private ITriggerDevice {
public:
    explicit CallbackTrigger(const tav_trigger& callbacks) : m_callbacks(callbacks) {}

    ITriggerDevice* GetCurrentDevice() override {
        const bool inUse = m_callbacks.has_device != nullptr && m_callbacks.has_device(m_callbacks.context) != 0;
        return inUse ? this : nullptr;
    }

private:
    int GetDeviceKind() const override {
        return m_callbacks.device_kind ? m_callbacks.device_kind(m_callbacks.context) : 0;
    }
    unsigned int GetDeviceNumber() const override {
        return m_callbacks.device_number ? m_callbacks.device_number(m_callbacks.context) : 0;
    }

    tav_trigger m_callbacks;
};

}  // namespace

extern "C" {

int32_t tav_support_query(const wchar_t* address, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnArgs({address, Out(buffer, capacity)},
                  [&]() -> int32_t { return CopyText(CSWandDeviceInfo().search(address), buffer, capacity, needed); });
}

int32_t tav_support_query_with_trigger(const wchar_t* address, const tav_trigger* trigger, wchar_t* buffer,
                                       size_t capacity, size_t* needed) {
    return OnArgs({address, Out(buffer, capacity)}, [&]() -> int32_t {
        if (trigger == nullptr)
            return CopyText(SWAndDeviceInfoImpl(nullptr).search(address), buffer, capacity, needed);
        CallbackTrigger callbacks(*trigger);
        return CopyText(SWAndDeviceInfoImpl(&callbacks).search(address), buffer, capacity, needed);
    });
}

}  // extern "C"
