// Clipboard text: an object opens the Windows clipboard for its lifetime and reads or writes text on it.
// Clipboard is the interface, ClipboardBase keeps whether this object has the clipboard open, and
// ClassicClipboard moves text through global memory.
#pragma once

#include "../platform/Export.h"
#include "../strings/StdStr.h"

#include <windows.h>

class TAVUTIL_API Clipboard {
public:
    // The arguments are for the implementations; the interface itself keeps nothing.
    Clipboard(bool openNow, HWND owner);
    virtual ~Clipboard();

    virtual void open(HWND owner) = 0;
    virtual void close() = 0;
    virtual void empty() = 0;
    virtual bool isOpen() const = 0;
    virtual CStdStr<wchar_t> getText(unsigned int format) = 0;
    virtual bool setText(CStdStr<wchar_t> text, unsigned int format) = 0;

    // IsClipboardFormatAvailable(format) answered exactly 1.
    static bool isFormatAvailable(unsigned int format);
};

class TAVUTIL_API ClipboardBase : public Clipboard {
public:
    // Opens the clipboard with no owner window.
    ClipboardBase();
    // With openNow, opens the clipboard for `owner`; isOpen() tells whether that succeeded.
    ClipboardBase(bool openNow, HWND owner);
    // Closes the clipboard only when this object opened it: an object that never opened it leaves
    // another owner's clipboard alone.
    ~ClipboardBase() override;

    // An object owns one opening of the clipboard: copies would close it twice.
    ClipboardBase(const ClipboardBase&) = delete;
    ClipboardBase& operator=(const ClipboardBase&) = delete;

    // OpenClipboard(owner); a failure leaves isOpen() as it was.
    void open(HWND owner) override;
    // CloseClipboard(), whether or not this object opened it; isOpen() becomes false.
    void close() override;
    void empty() override;
    bool isOpen() const override;

private:
    bool m_open = false;
};

class TAVUTIL_API ClassicClipboard : public ClipboardBase {
public:
    ClassicClipboard();
    ClassicClipboard(bool openNow, HWND owner);
    ~ClassicClipboard() override;

    // The Unicode text on the clipboard, whatever `format` asks for (the argument is ignored on purpose:
    // callers pass the text format they once used, and always want the Unicode text). Empty when there
    // is none. The caller has the clipboard open.
    CStdStr<wchar_t> getText(unsigned int format = CF_UNICODETEXT) override;
    // Empties the clipboard and puts `text` with its terminator on it in `format` (normally
    // CF_UNICODETEXT). False when the memory cannot be had or SetClipboardData refuses it. The caller
    // has the clipboard open.
    bool setText(CStdStr<wchar_t> text, unsigned int format = CF_UNICODETEXT) override;
};
