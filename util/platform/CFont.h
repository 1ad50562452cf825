// CFont: the class library's font object, as far as TavUtil's interface uses it. It owns the GDI font
// attached to it and deletes it on destruction; Detach hands the font back without deleting it.
#pragma once

#include "Handles.h"

#include <windows.h>

class CFont {
public:
    CFont() = default;
    CFont(const CFont&) = delete;
    CFont& operator=(const CFont&) = delete;

    // Creates a font from `logFont` and attaches it (a font held before is deleted). Non-zero on success.
    BOOL CreateFontIndirect(const LOGFONTW* logFont) {
        HFONT font = ::CreateFontIndirectW(logFont);
        if (font == nullptr)
            return FALSE;
        m_font.reset(font);
        return TRUE;
    }
    // Takes ownership of `font`; the object must hold none.
    BOOL Attach(HGDIOBJ font) {
        if (font == nullptr || m_font)
            return FALSE;
        m_font.reset(font);
        return TRUE;
    }
    // Gives up the font without deleting it.
    HGDIOBJ Detach() { return m_font.release(); }
    BOOL DeleteObject() {
        if (!m_font)
            return FALSE;
        m_font.reset();
        return TRUE;
    }
    HFONT GetSafeHandle() const { return static_cast<HFONT>(m_font.get()); }
    operator HFONT() const { return GetSafeHandle(); }
    // The font's description; non-zero on success.
    int GetLogFont(LOGFONTW* logFont) const {
        return m_font ? ::GetObjectW(m_font.get(), sizeof(LOGFONTW), logFont) : 0;
    }

private:
    tav::UniqueGdiObject m_font;
};
