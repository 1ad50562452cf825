#include "desktop/Clipboard.h"

#include "platform/Guards.h"
#include "platform/Handles.h"

#include <cstring>

Clipboard::Clipboard(bool, HWND) {}

Clipboard::~Clipboard() = default;

bool Clipboard::isFormatAvailable(unsigned int format) { return IsClipboardFormatAvailable(format) == 1; }

ClipboardBase::ClipboardBase() : ClipboardBase(true, nullptr) {}

ClipboardBase::ClipboardBase(bool openNow, HWND owner) : Clipboard(openNow, owner) {
    if (openNow)
        m_open = OpenClipboard(owner) != FALSE;
}

ClipboardBase::~ClipboardBase() {
    if (m_open)
        CloseClipboard();  // the open state is this object's own flag, so it closes what it opened
}

void ClipboardBase::open(HWND owner) {
    if (OpenClipboard(owner))
        m_open = true;
}

void ClipboardBase::close() {
    CloseClipboard();  // the interface's own close: unconditional, whoever opened the clipboard
    m_open = false;
}

void ClipboardBase::empty() { EmptyClipboard(); }

bool ClipboardBase::isOpen() const { return m_open; }

ClassicClipboard::ClassicClipboard() : ClipboardBase() {}

ClassicClipboard::ClassicClipboard(bool openNow, HWND owner) : ClipboardBase(openNow, owner) {}

ClassicClipboard::~ClassicClipboard() = default;

CStdStr<wchar_t> ClassicClipboard::getText(unsigned int /*format*/) {
    CStdStr<wchar_t> text;
    HANDLE data = GetClipboardData(CF_UNICODETEXT);
    if (data == nullptr)
        return text;
    tav::GlobalLockGuard locked(data);
    if (locked) {
        // The block may hold no terminator if another program wrote it carelessly: stop at its end.
        size_t units = GlobalSize(data) / sizeof(wchar_t);
        text.assign(locked.get<const wchar_t>(), wcsnlen(locked.get<const wchar_t>(), units));
    }
    return text;
}

bool ClassicClipboard::setText(CStdStr<wchar_t> text, unsigned int format) {
    empty();
    const size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    // The block is ours until SetClipboardData accepts it; on every failure it is freed here.
    tav::UniqueGlobal block(GlobalAlloc(GMEM_MOVEABLE, bytes));
    if (!block)
        return false;
    {
        tav::GlobalLockGuard locked(block.get());
        if (!locked)
            return false;
        std::memcpy(locked.get(), text.c_str(), bytes);
    }
    if (SetClipboardData(format, block.get()) == nullptr)
        return false;
    block.release();  // the clipboard owns it now
    return true;
}
