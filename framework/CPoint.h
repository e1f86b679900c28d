// The framework's integer point: device coordinates of a view or a print.
#pragma once

#include "Types.h"

#ifdef _WIN32
typedef POINT PREFA_POINT_BASE;
#else
struct tagPOINT
{
    LONG x;
    LONG y;
};
typedef tagPOINT POINT;
typedef tagPOINT PREFA_POINT_BASE;
#endif

class CPoint : public PREFA_POINT_BASE
{
public:
    CPoint() { x = 0; y = 0; }
    CPoint(int initX, int initY) { x = initX; y = initY; }
    CPoint(POINT p) { x = p.x; y = p.y; }

    void Offset(int dx, int dy) { x += dx; y += dy; }
    void SetPoint(int X, int Y) { x = X; y = Y; }
    bool operator==(const CPoint& p) const { return x == p.x && y == p.y; }
    bool operator!=(const CPoint& p) const { return !(*this == p); }
    CPoint operator+(const CPoint& p) const { return CPoint(x + p.x, y + p.y); }
    CPoint operator-(const CPoint& p) const { return CPoint(x - p.x, y - p.y); }
};
