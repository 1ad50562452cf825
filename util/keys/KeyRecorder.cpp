// The recorder's hook: one low-level keyboard hook per thread that records, shared by its recorders.
#include "keys/KeyRecorder.h"

#include "platform/detail/LibraryModule.h"

#include <algorithm>

namespace tav::keys {

namespace {

// The recorders of the calling thread and their hook. Thread-local on purpose: a low-level hook is called on
// the thread that set it, so each thread that records has its own hook and list, touched only by that
// thread (KeyRecorder's constructor and destructor, and the hook itself). Null while the thread records
// nothing.
struct ThreadRecorders {
    HHOOK hook = nullptr;
    std::vector<KeyRecorder*> recorders;
};
thread_local ThreadRecorders* t_recorders = nullptr;

LRESULT CALLBACK RecorderHook(int code, WPARAM message, LPARAM data) {
    if (code == HC_ACTION && t_recorders != nullptr)
        for (KeyRecorder* recorder : t_recorders->recorders)
            recorder->Take(message, *reinterpret_cast<const KBDLLHOOKSTRUCT*>(data));
    return CallNextHookEx(nullptr, code, message, data);
}

bool IsDown(int vk) { return (GetAsyncKeyState(vk) & 0x8000) != 0; }

unsigned ModifiersDownNow() {
    unsigned held = 0;
    if (IsDown(VK_LSHIFT) || IsDown(VK_RSHIFT))
        held |= kRecordShift;
    if (IsDown(VK_LCONTROL) || IsDown(VK_RCONTROL))
        held |= kRecordControl;
    if (IsDown(VK_LMENU) || IsDown(VK_RMENU))
        held |= kRecordAlt;
    if (IsDown(VK_LWIN) || IsDown(VK_RWIN))
        held |= kRecordWindows;
    return held;
}

}  // namespace

KeyRecorder::KeyRecorder(DWORD flags) : flags_(flags), heldAtStart_(ModifiersDownNow()) {
    // Room for a good deal of typing up front: the hook should not wait on the allocator.
    keys_.reserve(4096);
    if (t_recorders == nullptr) {
        HHOOK hook = SetWindowsHookExW(WH_KEYBOARD_LL, RecorderHook, tav::platform::detail::LibraryModule(), 0);
        if (hook == nullptr) {
            hookError_ = GetLastError();
            return;
        }
        t_recorders = new ThreadRecorders{hook, {}};
    }
    t_recorders->recorders.push_back(this);
    recording_ = true;
}

KeyRecorder::~KeyRecorder() {
    if (!recording_ || t_recorders == nullptr)
        return;
    std::vector<KeyRecorder*>& list = t_recorders->recorders;
    list.erase(std::remove(list.begin(), list.end(), this), list.end());
    if (list.empty()) {
        UnhookWindowsHookEx(t_recorders->hook);
        delete t_recorders;
        t_recorders = nullptr;
    }
}

void KeyRecorder::Take(WPARAM message, const KBDLLHOOKSTRUCT& event) {
    const bool injected = (event.flags & LLKHF_INJECTED) != 0;
    if (injected && (flags_ & kIgnoreInjected) != 0)
        return;
    RecordedKey key;
    key.vk = static_cast<WORD>(event.vkCode);
    key.unit = event.vkCode == VK_PACKET ? static_cast<WORD>(event.scanCode) : WORD{0};
    key.up = message == WM_KEYUP || message == WM_SYSKEYUP;
    key.injected = injected;
    key.time = event.time;
    keys_.push_back(key);
}

}  // namespace tav::keys
