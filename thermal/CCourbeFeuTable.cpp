#include "thermal/CCourbeFeuTable.h"

#include <algorithm>
#include <cmath>

int CCourbeFeuTable::Defaut(const std::vector<Point>& points)
{
    if (points.empty())
        return 0;
    for (std::size_t k = 0; k < points.size(); ++k)
    {
        if (!std::isfinite(points[k].minutes) || !std::isfinite(points[k].degres))
            return (int)k;
        if (k > 0 && !(points[k].minutes > points[k - 1].minutes))
            return (int)k;
    }
    return -1;
}

int CCourbeFeuTable::Definir(const std::vector<Point>& points, double convection)
{
    if (Defaut(points) >= 0 || !(convection > 0.0) || !std::isfinite(convection))
        return 0;
    m_points = points;
    m_convection = convection;
    return 1;
}

double CCourbeFeuTable::Temperature(double heures) const
{
    if (m_points.empty())
        return 20.0;
    const double t = heures * 60.0;
    // First point strictly after t.
    const auto suivant = std::upper_bound(m_points.begin(), m_points.end(), t,
                                          [](double m, const Point& p) { return m < p.minutes; });
    if (suivant == m_points.begin())
        return m_points.front().degres;
    if (suivant == m_points.end())
        return m_points.back().degres;
    const Point& a = *(suivant - 1);
    const Point& b = *suivant;
    return a.degres + (b.degres - a.degres) * ((t - a.minutes) / (b.minutes - a.minutes));
}
