// The recorder's hook: one low-level keyboard hook per thread that records, shared by its recorders.
#include "keys/KeyRecorder.h"

#include "platform/detail/LibraryModule.h"

#include <algorithm>
#include <memory>

namespace tav::keys {

namespace {

// The recorders of the calling thread and their hook. Per thread on purpose: a low-level hook is called on
// the thread that set it, so each thread that records has its own hook and list, touched only by that
// thread (KeyRecorder's constructor and destructor, and the hook itself). Null while the thread records
// nothing.
struct ThreadRecorders {
    HHOOK hook = nullptr;
    std::vector<KeyRecorder*> recorders;
};

// Where each thread keeps its ThreadRecorders: a slot of the system's thread-local storage, taken when the
// library is loaded. Not the language's thread_local: the runtime makes a thread's block of those on its first
// use, with an allocation whose refusal ends the whole process.
struct RecorderSlot {
    const DWORD index = TlsAlloc();
    RecorderSlot() = default;
    RecorderSlot(const RecorderSlot&) = delete;
    RecorderSlot& operator=(const RecorderSlot&) = delete;
    ~RecorderSlot() {
        if (index != TLS_OUT_OF_INDEXES)
            TlsFree(index);
    }
};
const RecorderSlot g_slot;

ThreadRecorders* ThisThreadsRecorders() {
    return g_slot.index == TLS_OUT_OF_INDEXES ? nullptr : static_cast<ThreadRecorders*>(TlsGetValue(g_slot.index));
}

LRESULT CALLBACK RecorderHook(int code, WPARAM message, LPARAM data) {
    ThreadRecorders* thread = ThisThreadsRecorders();
    if (code == HC_ACTION && thread != nullptr) {
        // Called by the system: nothing may unwind through it. A key that could not be kept (memory refused
        // once the recorder's reserve is used up) is left out of the recording.
        try {
            for (KeyRecorder* recorder : thread->recorders)
                recorder->Take(message, *reinterpret_cast<const KBDLLHOOKSTRUCT*>(data));
        } catch (...) {
        }
    }
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
    if (ThreadRecorders* thread = ThisThreadsRecorders()) {
        thread->recorders.push_back(this);  // may throw: the thread's other recorders are as they were
        recording_ = true;
        return;
    }
    if (g_slot.index == TLS_OUT_OF_INDEXES) {
        hookError_ = ERROR_NO_MORE_ITEMS;  // the library got no slot when it was loaded
        return;
    }
    // Everything that can throw before the hook is set: a refused allocation leaves no hook behind.
    auto thread = std::make_unique<ThreadRecorders>();
    thread->recorders.push_back(this);
    thread->hook = SetWindowsHookExW(WH_KEYBOARD_LL, RecorderHook, tav::platform::detail::LibraryModule(), 0);
    if (thread->hook == nullptr) {
        hookError_ = GetLastError();
        return;
    }
    TlsSetValue(g_slot.index, thread.release());
    recording_ = true;
}

KeyRecorder::~KeyRecorder() {
    ThreadRecorders* thread = ThisThreadsRecorders();
    if (!recording_ || thread == nullptr)
        return;
    std::vector<KeyRecorder*>& list = thread->recorders;
    list.erase(std::remove(list.begin(), list.end(), this), list.end());
    if (list.empty()) {
        UnhookWindowsHookEx(thread->hook);
        delete thread;
        TlsSetValue(g_slot.index, nullptr);
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
