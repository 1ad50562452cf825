// A low-level keyboard hook of the test's thread that writes down every key event it sees: what the
// system's input stream carried, injected or not, whichever window had the focus. It sees events only while
// the thread handles messages (a library call that pumps, or the test's own waits).
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace keytest {

class HookLog {
public:
    struct Event {
        DWORD vk;
        bool up;
        bool injected;
        DWORD time;  // the event's time stamp, in milliseconds
    };

    HookLog() {
        self_ = this;
        hook_ = SetWindowsHookExW(WH_KEYBOARD_LL, &HookLog::Proc, GetModuleHandleW(nullptr), 0);
    }
    ~HookLog() {
        if (hook_ != nullptr)
            UnhookWindowsHookEx(hook_);
        self_ = nullptr;
    }
    HookLog(const HookLog&) = delete;
    HookLog& operator=(const HookLog&) = delete;

    bool Active() const { return hook_ != nullptr; }
    std::vector<Event> events;
    // Called from the hook after each event is written down (for a test that acts in the middle of typing).
    void (*onEvent)(const Event& event, void* context) = nullptr;
    void* context = nullptr;

    static bool IsModifier(DWORD vk) {
        return vk == VK_SHIFT || vk == VK_CONTROL || vk == VK_MENU || (vk >= VK_LSHIFT && vk <= VK_RMENU) ||
               vk == VK_LWIN || vk == VK_RWIN;
    }
    // "Ctrl up (injected), X down, ..." for messages.
    std::string Describe() const {
        std::string text;
        for (const Event& e : events) {
            char item[40];
            snprintf(item, sizeof item, "%02lX %s%s, ", e.vk, e.up ? "up" : "down", e.injected ? "" : " (user)");
            text += item;
        }
        return text;
    }

private:
    static LRESULT CALLBACK Proc(int code, WPARAM wParam, LPARAM lParam) {
        if (code == HC_ACTION && self_ != nullptr) {
            const auto* info = reinterpret_cast<const KBDLLHOOKSTRUCT*>(lParam);
            const Event event{info->vkCode, (info->flags & LLKHF_UP) != 0, (info->flags & LLKHF_INJECTED) != 0,
                              info->time};
            self_->events.push_back(event);
            if (self_->onEvent != nullptr)
                self_->onEvent(event, self_->context);
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static inline HookLog* self_ = nullptr;
    HHOOK hook_ = nullptr;
};

}  // namespace keytest
