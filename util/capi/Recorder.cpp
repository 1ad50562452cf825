// c/recorder.h: recording a keystroke script by typing it.
#include "capi/c/recorder.h"

#include "capi/detail/Boundary.h"
#include "keys/KeyRecorder.h"

#include <climits>

using namespace tav::capi::detail;

struct tav_recorder_t {
    explicit tav_recorder_t(DWORD flags) : recorder(flags) {}
    tav::keys::KeyRecorder recorder;
};

extern "C" {

tav_recorder tav_recorder_begin(uint32_t flags) {
    return GuardedHandle([&]() -> tav_recorder {
        if ((flags & ~tav::keys::KeyRecorder::kKnownFlags) != 0)
            return nullptr;
        auto* made = new tav_recorder_t(flags);
        if (made->recorder.IsRecording())
            return made;
        delete made;
        return nullptr;
    });
}

int32_t tav_recorder_script(tav_recorder recorder, wchar_t* buffer, size_t capacity, size_t* needed) {
    return OnHandle(recorder, {Out(buffer, capacity)}, [&]() -> int32_t {
        const std::wstring script = recorder->recorder.Script();
        return CopyText(script, buffer, capacity, needed);
    });
}

int32_t tav_recorder_skipped(tav_recorder recorder) {
    return OnHandle(recorder, {}, [&]() -> int32_t {
        const size_t skipped = recorder->recorder.Skipped();
        return skipped > INT32_MAX ? INT32_MAX : static_cast<int32_t>(skipped);
    });
}

int32_t tav_recorder_end(tav_recorder recorder) {
    delete recorder;
    return TAV_OK;
}

}  // extern "C"
