// The framework's integer rectangle and size, in device units: left and top inside,
// right and bottom just outside.
#pragma once

#include "CPoint.h"
#include "WinUser.h"

class CSize : public SIZE
{
public:
    CSize() { cx = 0; cy = 0; }
    CSize(int initCX, int initCY) { cx = initCX; cy = initCY; }
    bool operator==(const CSize& s) const { return cx == s.cx && cy == s.cy; }
    bool operator!=(const CSize& s) const { return !(*this == s); }
};

class CRect : public RECT
{
public:
    CRect() { SetRectEmpty(); }
    CRect(int l, int t, int r, int b) { SetRect(l, t, r, b); }
    CRect(const RECT& r) { SetRect(r.left, r.top, r.right, r.bottom); }
    CRect(POINT topLeft, SIZE size) { SetRect(topLeft.x, topLeft.y, topLeft.x + size.cx, topLeft.y + size.cy); }

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    CSize Size() const { return CSize(Width(), Height()); }
    CPoint TopLeft() const { return CPoint(left, top); }
    CPoint BottomRight() const { return CPoint(right, bottom); }
    CPoint CenterPoint() const { return CPoint((left + right) / 2, (top + bottom) / 2); }
    BOOL IsRectEmpty() const { return Width() <= 0 || Height() <= 0; }
    BOOL PtInRect(POINT p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }

    void SetRect(int l, int t, int r, int b) { left = l; top = t; right = r; bottom = b; }
    void SetRectEmpty() { SetRect(0, 0, 0, 0); }
    void OffsetRect(int dx, int dy) { left += dx; right += dx; top += dy; bottom += dy; }
    void InflateRect(int dx, int dy) { InflateRect(dx, dy, dx, dy); }
    void InflateRect(int l, int t, int r, int b) { left -= l; top -= t; right += r; bottom += b; }
    void DeflateRect(int dx, int dy) { InflateRect(-dx, -dy); }
    void DeflateRect(int l, int t, int r, int b) { InflateRect(-l, -t, -r, -b); }

    bool operator==(const RECT& r) const { return left == r.left && top == r.top && right == r.right && bottom == r.bottom; }
    bool operator!=(const RECT& r) const { return !(*this == r); }
    operator LPRECT() { return this; }
    operator LPCRECT() const { return this; }
};
