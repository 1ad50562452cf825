// A window in front that records every key and character message with its message time: the Unicode
// unit a VK_PACKET message carries, and when each event was made (for paced typing).
#pragma once

#include "KeyTestWindows.h"
#include "TestWindow.h"

#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

namespace keytest {

class TextRecorder {
public:
    struct Message {
        UINT message;  // WM_KEYDOWN, WM_KEYUP, WM_SYSKEYDOWN, WM_SYSKEYUP, WM_CHAR, ...
        WPARAM wParam;
        LPARAM lParam;
        LONG time;  // GetMessageTime: when the event was made, in milliseconds
        bool IsKey() const { return message != WM_CHAR && message != WM_SYSCHAR && message != WM_DEADCHAR; }
    };

    TextRecorder()
        : window_(tavtest::TestWindow::Options().Titled(L"keys test: text recorder").Placed(60, 60, 400, 200),
                  [this](UINT message, WPARAM wParam, LPARAM lParam) { return Record(message, wParam, lParam); }) {
        EXPECT_TRUE(window_.BringToFront()) << "the text recorder did not come to the front";
        EXPECT_TRUE(tavtest::Settle(window_.hwnd())) << "the text recorder's queue did not settle";
        Clear();
    }
    TextRecorder(TextRecorder&&) = delete;  // the window's handler records into this object

    std::vector<Message> messages;

    std::vector<Message> KeyMessages() const {
        std::vector<Message> keys;
        for (const Message& m : messages)
            if (m.IsKey())
                keys.push_back(m);
        return keys;
    }

    // The characters the window made of the key messages (WM_CHAR), in order.
    std::wstring Characters() const {
        std::wstring characters;
        for (const Message& m : messages)
            if (m.message == WM_CHAR)
                characters += static_cast<wchar_t>(m.wParam);
        return characters;
    }

    // Pumps until `count` key messages arrived, and then until every key typed so far has arrived (so that
    // messages beyond `count` show too).
    void WaitForKeyMessages(size_t count, DWORD timeoutMs = tavtest::kWaitMs) {
        tavtest::WaitUntil([&] { return keyCount_ >= count; }, timeoutMs);
        tavtest::Settle(window_.hwnd());
    }
    void Clear() {
        messages.clear();
        keyCount_ = 0;
    }

    // "down E7 00E9, " for a VK_PACKET event carrying U+00E9, "up 0D, " for other keys.
    static std::string Describe(UINT message, UINT vk, unsigned unit) {
        const char* kind = message == WM_KEYDOWN      ? "down"
                           : message == WM_KEYUP      ? "up"
                           : message == WM_SYSKEYDOWN ? "sysdown"
                                                      : "sysup";
        char item[48];
        if (vk == VK_PACKET)
            std::snprintf(item, sizeof item, "%s %02X %04X, ", kind, vk, unit);
        else
            std::snprintf(item, sizeof item, "%s %02X, ", kind, vk);
        return item;
    }
    // The key messages in that form; a VK_PACKET message carries its unit in the high word of lParam.
    std::string DescribeKeys() const {
        std::string text;
        for (const Message& m : KeyMessages())
            text += Describe(m.message, static_cast<UINT>(m.wParam), HIWORD(m.lParam));
        return text;
    }

private:
    bool Record(UINT message, WPARAM wParam, LPARAM lParam) {
        if (message < WM_KEYFIRST || message > WM_KEYLAST)
            return false;
        messages.push_back({message, wParam, lParam, GetMessageTime()});
        keyCount_ += messages.back().IsKey() ? 1 : 0;
        return true;  // no menu activation by Alt or F10: the recorder only records
    }
    size_t keyCount_ = 0;
    tavtest::TestWindow window_;  // declared last: it goes before the lists its handler fills
};

}  // namespace keytest
