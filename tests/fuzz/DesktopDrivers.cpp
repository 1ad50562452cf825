// Drivers for input that reaches the library through the desktop:
//  - clipboard text placed by another program (fuzz_peer.exe): the text format with any bytes, no
//    terminator, odd sizes, data rendered only when asked (or never), the other text formats and formats of
//    the program's own beside it; and text the library puts there itself;
//  - SendText with every UTF-16 unit (lone surrogates, line breaks, NUL ending the text) typed into a window
//    of the test's own that records every character it receives.
// Both need the desktop (its clipboard and its foreground window). Each has a C counterpart that compares the
// C interface's answers with the C++ ones.
#include "CapiChecks.h"
#include "Desktop.h"
#include "Fuzz.h"
#include "Peer.h"
#include "TestWindow.h"

#include <TavUtil.h>

#include "capi/TavUtilC.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace fuzz {
namespace {

// ---- clipboard text placed by another program ----------------------------------------------------------

struct ClipItem {
    uint32_t format, how;  // how: 0 now, 1 rendered when asked, 2 never rendered
    std::vector<char> bytes;
};

struct ClipboardDriver {
    Peer peer;
    UINT ownFormat = RegisterClipboardFormatW(L"TavUtilFuzzFormat");
    bool ok = peer.Start(PeerProgram(), L"clipboard");

    // Has the peer fill the clipboard with `items`; false when it did not answer.
    bool Place(const std::vector<ClipItem>& items) {
        std::vector<char> order;
        auto put = [&order](uint32_t value) {
            order.insert(order.end(), reinterpret_cast<char*>(&value), reinterpret_cast<char*>(&value) + 4);
        };
        put(static_cast<uint32_t>(items.size()));
        for (const ClipItem& item : items) {
            put(item.format), put(item.how), put(static_cast<uint32_t>(item.bytes.size()));
            order.insert(order.end(), item.bytes.begin(), item.bytes.end());
        }
        char answer = 0;
        return peer.Write(order.data(), order.size()) && peer.Read(&answer, 1, 10000) && answer == 'k';
    }
};

// The text the library must read, from the last Unicode text placed. The platform hands another program's
// text over NUL-terminated (Wine 8, measured): the block's size rounded up to whole units, its last unit a
// NUL. A text of 2k or 2k + 1 bytes therefore reads as its first k - 1 or k units, up to the first NUL. An
// empty block is refused when placed, and gives nothing when rendered on request. Without a Unicode text the system
// makes one from the other text formats; `synthesized` is set then and only looser rules hold.
Text ExpectedClipboardText(const std::vector<ClipItem>& items, bool& synthesized) {
    synthesized = false;
    const ClipItem* unicode = nullptr;
    bool otherText = false;
    for (const ClipItem& item : items) {
        if (item.bytes.empty() && item.how == 0)
            continue;
        if (item.format == CF_UNICODETEXT)
            unicode = &item;  // a later item of the same format replaces an earlier one
        otherText = otherText || item.format == CF_TEXT || item.format == CF_OEMTEXT;
    }
    if (unicode == nullptr || unicode->how == 2 || unicode->bytes.empty()) {
        synthesized = otherText || unicode != nullptr;
        return Text();
    }
    const size_t units = (unicode->bytes.size() - 1) / sizeof(wchar_t);
    Text text(reinterpret_cast<const wchar_t*>(unicode->bytes.data()), units);
    return text.substr(0, text.find(L'\0'));
}

std::string RunClipboard(ClipboardDriver& driver, const Input& input, bool capi) {
    Rng rng(input.choices);
    Text expected;
    bool synthesized = false;
    std::string placedAs;  // the items, for the failure message
    if (rng.OneIn(5)) {    // text the library places itself, NULs included
        ClassicClipboard clipboard(true, nullptr);
        Expect(clipboard.isOpen(), "the clipboard could not be opened");
        const bool placed = capi ? tav_clipboard_set_text(input.text.substr(0, input.text.find(L'\0')).c_str()) == 1
                                 : clipboard.setText(CStdStr<wchar_t>(input.text), CF_UNICODETEXT);
        Expect(placed, "setText refused the text");
        expected = input.text.substr(0, input.text.find(L'\0'));
    } else {
        std::vector<ClipItem> items;
        const uint32_t formats[] = {CF_UNICODETEXT, CF_UNICODETEXT, CF_UNICODETEXT,   CF_TEXT,
                                    CF_OEMTEXT,     CF_LOCALE,      driver.ownFormat, 0x200};
        for (uint32_t n = 1 + rng.Below(3); n > 0; --n) {
            ClipItem item{formats[rng.Below(8)], rng.OneIn(4) ? 1 + rng.Below(2) : 0u, {}};
            const char* units = reinterpret_cast<const char*>(input.text.data());
            size_t bytes = input.text.size() * sizeof(wchar_t);
            if (rng.OneIn(2))
                bytes += sizeof(wchar_t);  // with its terminator
            if (rng.OneIn(3) && bytes > 0)
                bytes -= 1 + rng.Below(static_cast<uint32_t>(std::min<size_t>(bytes, 3)));  // odd sizes, cut
            item.bytes.assign(units, units + bytes);
            if (rng.OneIn(4))  // random bytes
                for (char& byte : item.bytes)
                    byte = static_cast<char>(rng.Below(256));
            items.push_back(std::move(item));
        }
        Expect(driver.Place(items), "the other program did not fill the clipboard");
        expected = ExpectedClipboardText(items, synthesized);
        for (const ClipItem& item : items)
            placedAs += " f" + Num(item.format) + "/" + Num(item.how) + "/" + Num(item.bytes.size());
    }

    CStdStr<wchar_t> text;
    {
        ClassicClipboard clipboard(true, nullptr);
        Expect(clipboard.isOpen(), "the clipboard could not be opened");
        // The format asked for is not looked at: the Unicode text is read whatever it is.
        text = clipboard.getText(rng.OneIn(2) ? CF_UNICODETEXT : rng.Below(0x10000));
    }
    if (synthesized)
        Expect(text.find(L'\0') == Text::npos, "the text made by the system holds a NUL");
    else
        Expect(Same(text, expected), "getText read \"" + Narrow(text) + "\", the other program placed \"" +
                                         Narrow(expected) + "\" (format/how/bytes:" + placedAs + ")");
    if (capi)
        CheckText(
            "tav_clipboard_get_text", [&](wchar_t* b, size_t c, size_t* w) { return tav_clipboard_get_text(b, c, w); },
            1, text);
    return std::string(synthesized ? "made" : text.empty() ? "empty" : "text") + (capi ? " c" : "");
}

const std::vector<Text> kClipSeeds = {L"text",   L"",        L"a", L"line\r\nbreak", L"\x00E9\x4E2D\xD83D\xDE00",
                                      L"\xD800", L"x\x0000y"};

TEST(Fuzz, Clipboard) {
    auto driver = std::make_shared<ClipboardDriver>();
    ASSERT_TRUE(driver->ok) << "fuzz_peer.exe did not start";
    RunDriver({"clipboard", kClipSeeds, nullptr,
               [driver](const Input& input) { return RunClipboard(*driver, input, false); }, false, 20000});
}

TEST(Fuzz, CapiClipboard) {
    auto driver = std::make_shared<ClipboardDriver>();
    ASSERT_TRUE(driver->ok) << "fuzz_peer.exe did not start";
    RunDriver({"capi-clipboard", kClipSeeds, nullptr,
               [driver](const Input& input) { return RunClipboard(*driver, input, true); }, false, 20000});
}

// ---- literal text typed into a window of the test's own -------------------------------------------------

// A visible top-level window that takes the focus and records every character message it receives.
class TextTarget {
public:
    TextTarget() : window_(Options(), [](UINT message, WPARAM wParam, LPARAM) { return Record(message, wParam); }) {}

    bool Front() { return GetForegroundWindow() == window() || tavtest::BringToFront(window()); }
    HWND window() const { return window_.hwnd(); }
    static inline Text received;

private:
    static tavtest::TestWindow::Options Options() {
        auto options = tavtest::TestWindow::Options().Titled(L"fuzz text").Placed(10, 10, 300, 200);
        options.visible = true;
        return options;
    }
    static bool Record(UINT message, WPARAM wParam) {
        if (message != WM_CHAR)
            return false;
        received += static_cast<wchar_t>(wParam);
        return true;
    }
    tavtest::TestWindow window_;
};

// The rule: each unit arrives as that character, a line break (CR, LF, or CR LF together) as one Enter (a
// CR), a tab as Tab (a tab); the text ends at its first NUL. Of all 65,535 units the platform delivers one
// as nothing: U+0087 (Wine 8, measured with the test's own SendInput of that unit alone).
Text ExpectedCharacters(const Text& text) {
    Text expected;
    for (size_t at = 0; at < text.size() && text[at] != L'\0'; ++at) {
        if (text[at] == L'\r' || text[at] == L'\n') {
            if (text[at] == L'\r' && at + 1 < text.size() && text[at + 1] == L'\n')
                ++at;
            expected += L'\r';
        } else if (text[at] != 0x0087) {
            expected += text[at];
        }
    }
    return expected;
}

std::string RunSendText(TextTarget& target, const Input& input, bool capi) {
    Rng rng(input.choices);
    Expect(target.Front(), "the test window did not become the foreground window");
    tavtest::Settle(target.window());
    TextTarget::received.clear();
    const bool busy = rng.OneIn(20);  // a send marked as in progress types nothing
    if (busy)
        SendKeys_SetInProgress(1);
    const int32_t result = capi ? tav_send_text(input.text.c_str()) : SendText(input.text.c_str());
    if (busy)
        SendKeys_ClearInProgress();
    Expect(tavtest::Settle(target.window()), "the typed text did not arrive in time");
    const Text expected = busy ? Text() : ExpectedCharacters(input.text);
    Expect(result == (busy ? SKERR_BUSY : SKERR_NONE), "SendText gives " + Num(result));
    Expect(Same(TextTarget::received, expected),
           "the window received \"" + Narrow(TextTarget::received) + "\", the text types \"" + Narrow(expected) + "\"");
    if (capi)
        Expect(tav_send_text(nullptr) == TAV_E_NULL_ARGUMENT, "tav_send_text(null)");
    return std::string(busy ? "busy" : "typed") + (expected.size() > 8 ? " long" : " short");
}

const std::vector<Text> kTextSeeds = {
    L"abc",          L"a\r\nb\nc\rd",       L"\t{}+^%~()[]",       L"\xD800", L"\xDFFF\xD800",
    L"\xD83D\xDE00", L"\xFFFF\xFFFE\xFEFF", L"\x0001\x001F\x007F", L""};

// Every UTF-16 unit, a few at a time.
Text Units(Rng& rng) {
    Text text;
    for (uint32_t n = 1 + rng.Below(12); n > 0; --n)
        text += static_cast<wchar_t>(rng.OneIn(4) ? 0xD800 + rng.Below(0x800) : rng.Below(0x10000));
    return text;
}

TEST(Fuzz, SendText) {
    auto target = std::make_shared<TextTarget>();
    ASSERT_TRUE(target->Front()) << "the test window did not become the foreground window";
    RunDriver({"sendtext", kTextSeeds, Units,
               [target](const Input& input) { return RunSendText(*target, input, false); }, true, 200, true});
}

TEST(Fuzz, CapiSendText) {
    auto target = std::make_shared<TextTarget>();
    ASSERT_TRUE(target->Front()) << "the test window did not become the foreground window";
    RunDriver({"capi-sendtext", kTextSeeds, Units,
               [target](const Input& input) { return RunSendText(*target, input, true); }, true, 200, true});
}

}  // namespace
}  // namespace fuzz
