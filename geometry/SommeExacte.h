// The exact sum of doubles, rounded once at the end (Shewchuk's non-overlapping
// partials, as in Python's fsum). The result is the correctly rounded value of the
// mathematical sum of the terms, whatever their order: terms negated one by one give
// exactly the negated sum, which a plain running sum does not promise.
#pragma once

#include <cmath>
#include <cstddef>
#include <utility>

namespace prefa_geometrie
{

class SommeExacte
{
public:
    void Ajoute(double x)
    {
        m_simple += x;
        if (m_bSimple || !std::isfinite(x))
        {
            m_bSimple = true;
            return;
        }
        std::size_t i = 0;
        for (std::size_t k = 0; k < m_n; ++k)
        {
            double y = m_partiels[k];
            if (std::fabs(x) < std::fabs(y))
                std::swap(x, y);
            const double hi = x + y;
            const double lo = y - (hi - x);
            if (lo != 0.0)
                m_partiels[i++] = lo;
            x = hi;
        }
        // An overflowing sum or more partials than the exponent range can need
        // (about 40) leave the exact path: the plain sum then says inf or NaN.
        if (!std::isfinite(x) || i == CAPACITE)
        {
            m_bSimple = true;
            return;
        }
        m_partiels[i++] = x;
        m_n = i;
    }

    double Valeur() const
    {
        if (m_bSimple)
            return m_simple;
        if (m_n == 0)
            return 0.0;
        // From the largest partial down, until the rounding of what is left is decided;
        // a half-way case is settled by the sign of the partials below it.
        std::size_t n = m_n;
        double hi = m_partiels[--n];
        double lo = 0.0;
        while (n > 0)
        {
            const double x = hi;
            const double y = m_partiels[--n];
            hi = x + y;
            lo = y - (hi - x);
            if (lo != 0.0)
                break;
        }
        if (n > 0 && ((lo < 0.0 && m_partiels[n - 1] < 0.0) || (lo > 0.0 && m_partiels[n - 1] > 0.0)))
        {
            const double y = lo * 2.0;
            const double x = hi + y;
            if (y == x - hi)
                hi = x;
        }
        return hi;
    }

private:
    static const std::size_t CAPACITE = 64;
    double m_partiels[CAPACITE];
    std::size_t m_n = 0;
    double m_simple = 0.0;
    bool m_bSimple = false;
};

} // namespace prefa_geometrie
