// c/foreground.h: permission to bring the host's windows to the front.
#include "capi/c/foreground.h"

#include "capi/detail/Boundary.h"
#include "desktop/ForegroundAttentionGrabber.h"

using namespace tav::capi::detail;

struct tav_grabber_t {
    ForegroundAttentionGrabber grabber;
};

extern "C" {

tav_grabber tav_foreground_grabber_begin(void) {
    return GuardedHandle([]() -> tav_grabber { return new tav_grabber_t; });
}

int32_t tav_foreground_grabber_is_attached(tav_grabber grabber) {
    return OnHandle(grabber, {}, [&] { return int32_t{grabber->grabber.IsAttached()}; });
}

void tav_foreground_grabber_end(tav_grabber grabber) { delete grabber; }

}  // extern "C"
