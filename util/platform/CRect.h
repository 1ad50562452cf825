// CPoint, CSize and CRect: the class library's geometry types, as far as TavUtil's interface uses them. Each
// derives from its Win32 structure (POINT, SIZE, RECT) and adds nothing to its memory layout, so that an
// object's bytes are the structure's bytes.
#pragma once

#include <windows.h>

class CPoint : public tagPOINT {
public:
    CPoint() : tagPOINT{0, 0} {}
    CPoint(int initX, int initY) : tagPOINT{initX, initY} {}
    bool operator==(const CPoint& other) const { return x == other.x && y == other.y; }
    bool operator!=(const CPoint& other) const { return !(*this == other); }
};

class CSize : public tagSIZE {
public:
    CSize() : tagSIZE{0, 0} {}
    CSize(int initCX, int initCY) : tagSIZE{initCX, initCY} {}
    bool operator==(const CSize& other) const { return cx == other.cx && cy == other.cy; }
    bool operator!=(const CSize& other) const { return !(*this == other); }
};

class CRect : public tagRECT {
public:
    CRect() : tagRECT{0, 0, 0, 0} {}
    CRect(int l, int t, int r, int b) : tagRECT{l, t, r, b} {}
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool operator==(const CRect& other) const {
        return left == other.left && top == other.top && right == other.right && bottom == other.bottom;
    }
    bool operator!=(const CRect& other) const { return !(*this == other); }
};

static_assert(sizeof(CPoint) == 8 && sizeof(CSize) == 8 && sizeof(CRect) == 16, "layout of the Win32 structures");
