// Small builders shared by the contour tests.
#pragma once

#include "geometry/CListePolygone.h"

#include <initializer_list>
#include <utility>
#include <vector>

namespace prefa_test
{

inline CPolygone Poly(std::initializer_list<std::pair<double, double>> pts)
{
    CPolygone p;
    for (const auto& q : pts)
        p.AddTail(q.first, q.second);
    return p;
}

inline std::vector<std::pair<double, double>> Points(const CPolygone& p)
{
    std::vector<std::pair<double, double>> v;
    for (POSITION pos = p.GetHeadPosition(); pos;)
    {
        const CPointD q = p.GetPointNext(pos);
        v.emplace_back(q.x, q.y);
    }
    return v;
}

// Signed shoelace area computed here, independently of the cache.
inline double Aire(const CPolygone& p)
{
    const auto v = Points(p);
    double a = 0.0;
    for (std::size_t i = 0; i < v.size(); ++i)
    {
        const auto& u = v[i];
        const auto& w = v[(i + 1) % v.size()];
        a += u.first * w.second - w.first * u.second;
    }
    return a / 2.0;
}

} // namespace prefa_test
