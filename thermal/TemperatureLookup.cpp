// Temperature at a point of the grid frame: each cell between four nodes is cut by its
// diagonals into four triangles, each interpolated by the plane through its two
// corners and the cell centre carrying the mean of the four corners.
#include "thermal/CTemperatureGenerale.h"

#include <algorithm>
#include <cmath>

namespace
{
// A corner of value -1.0 (fire-side gas, no temperature) is missing. Other codes
// (-2 unexposed air, -3 cavity on the DTU grid) are read as values, as the suite's
// programs always have: results are compared with stored ones.
inline bool Manquant(double v)
{
    return v == -1.0;
}

// A cell count truncated toward zero; one beyond any index raises like an index fault
// (converting it to int would be undefined).
int Tronque(double v)
{
    if (!(std::fabs(v) < 1e9))
        AfxThrowInvalidArgException();
    return (int)v;
}
} // namespace

double CTemperatureGenerale::T(double x, double y) const
{
    if (std::isnan(x) || std::isnan(y))
        return -1.0; // no triangle holds a point that is not a number
    const double D = GetDELX();
    const int nLignes = GetNbLignes();
    const int nColonnes = GetNbColonnes();
    const int nRangees = (int)m_T1.GetSize();

    int r, c;
    double dx, dy;
    double A, B, C, E;
    if (m_TypeCalcul == DTU)
    {
        // Column index grows as x decreases and row index as y decreases.
        c = nColonnes - Tronque(x / D) - 2;
        r = nLignes - Tronque(y / D) - 3;
        double xc = (nColonnes - c - 2) * D + D / 2;
        double yc = (nLignes - r - 3) * D + D / 2;
        if (xc > x && c > 0)
        {
            ++c;
            xc = (nColonnes - c - 2) * D + D / 2;
        }
        if (yc > y && r < nRangees - 1)
        {
            ++r;
            yc = (nLignes - r - 3) * D + D / 2;
        }
        dx = x - xc;
        dy = y - yc;
        A = m_T1[r][c];
        B = m_T1[r][c - 1];
        C = m_T1[r - 1][c];
        E = m_T1[r - 1][c - 1];
    }
    else
    {
        // Columns are counted from m_dXOrigine towards smaller x.
        const double u = m_dXOrigine - x;
        c = Tronque(u / D);
        r = nLignes - Tronque(y / D) - 2;
        double uc = c * D + D / 2;
        double yc = (nLignes - r - 2) * D + D / 2;
        if (uc > u && c > 0)
        {
            --c;
            uc = c * D + D / 2;
        }
        if (yc > y && r < nRangees - 1)
        {
            ++r;
            yc = (nLignes - r - 2) * D + D / 2;
        }
        dx = u - uc;
        dy = y - yc;
        A = m_T1[r][c];
        B = m_T1[r][c + 1];
        C = m_T1[r - 1][c];
        E = m_T1[r - 1][c + 1];
    }

    // A corner outside the section takes the hottest of its neighbours, each filling
    // seeing the values already filled.
    if (Manquant(A))
        A = std::max(B, std::max(C, E));
    if (Manquant(B))
        B = std::max(A, std::max(C, E));
    if (Manquant(C))
        C = std::max(A, std::max(B, E));
    if (Manquant(E))
        E = std::max(A, std::max(B, C));

    const double Tc = (A + B + C + E) * 0.25;
    const double px = dx / D;
    const double py = dy / D;
    double resultat = -1.0;
    if (dx >= dy && D - dx >= dy) // lower triangle
        resultat = A + (B - A) * px + (2 * Tc - A - B) * py;
    if (dy >= dx)
    {
        if (D - dx >= dy) // left triangle
            resultat = A + (C - A) * py + (2 * Tc - A - C) * px;
        if (dy >= D - dx) // upper triangle
            resultat = 2 * Tc - E + (E - C) * px + (E + C - 2 * Tc) * py;
    }
    if (dx >= dy && dy >= D - dx) // right triangle
        resultat = 2 * Tc - E + (E - B) * py + (E + B - 2 * Tc) * px;
    return resultat;
}
