// c/waits.h: abortable waits that keep the thread's messages flowing.
#include "capi/c/waits.h"

#include "capi/detail/Boundary.h"
#include "desktop/Wait.h"

using namespace tav::capi::detail;

struct tav_wait_t {
    CWait wait;
};

extern "C" {

tav_wait tav_wait_create(void) {
    return GuardedHandle([]() -> tav_wait { return new tav_wait_t; });
}

int32_t tav_wait_wait(tav_wait wait, uint32_t timeout_ms, uint32_t step_ms, int32_t stop_on_command) {
    return OnHandle(wait, {}, [&] { return int32_t{wait->wait.Wait(timeout_ms, step_ms, Flag(stop_on_command))}; });
}

int32_t tav_wait_abort(tav_wait wait) {
    return OnHandle(wait, {}, [&] { return int32_t{wait->wait.Abort()}; });
}

int32_t tav_wait_init(tav_wait wait) {
    return OnHandle(wait, {}, [&] {
        wait->wait.Init();
        return int32_t{TAV_OK};
    });
}

int32_t tav_wait_status(tav_wait wait) {
    return OnHandle(wait, {}, [&] { return int32_t{wait->wait.GetStatus()}; });
}

void tav_wait_destroy(tav_wait wait) { delete wait; }

}  // extern "C"
