// The signed area of a closed contour by the shoelace formula, positive
// counter-clockwise with y upwards: the one place where the library writes it.
#pragma once

#include "geometry/SommeExacte.h"

#include <cstddef>

namespace prefa_geometrie
{

// The signed area of the trapezoid between the side (x0, y0)-(x1, y1) and the x axis:
// the side's share of the contour's area. Sums that the suite stores add these terms in
// its own order; they take the term from here so that every sum sees the same bits.
inline double TermeAire(double x0, double y0, double x1, double y1)
{
    return -(x1 - x0) * (y0 + y1) / 2.0;
}

// The contour's area, point after point, the closing side implied. The terms are summed
// exactly: the reversed contour has exactly the opposite area, and a near-zero area has
// the same sign whatever point the contour starts from.
class AireSignee
{
public:
    void Ajoute(double x, double y)
    {
        if (m_n == 0)
        {
            m_x0 = x;
            m_y0 = y;
        }
        else
            m_somme.Ajoute(TermeAire(m_x, m_y, x, y));
        m_x = x;
        m_y = y;
        ++m_n;
    }

    // A lone point or an open side encloses nothing.
    double Valeur() const
    {
        if (m_n < 3)
            return 0.0;
        SommeExacte somme = m_somme;
        somme.Ajoute(TermeAire(m_x, m_y, m_x0, m_y0));
        return somme.Valeur();
    }

private:
    SommeExacte m_somme;
    std::size_t m_n = 0;
    double m_x0 = 0.0, m_y0 = 0.0;
    double m_x = 0.0, m_y = 0.0;
};

} // namespace prefa_geometrie
