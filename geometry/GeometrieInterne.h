// Pieces shared by the geometry sources but not part of the library's interface.
#pragma once

#include "geometry/Routines.h"

#include <cmath>
#include <memory>

namespace prefa_geometrie
{

constexpr double PI = 3.141592653589793;
// 3 pi / 2 as the suite writes it (to 14 decimals): the polar angle of a downward
// direction, and the bound beyond which angle_d(1) counts an angle as negative.
constexpr double TROIS_PI_SUR_DEUX = 4.71238898038469;

// The tolerances of the geometry, each named after the rule it serves; there is no
// general epsilon.
// Coordinates: two points are equal, a point lies on a line, two lines are parallel.
constexpr double TOL_COORDONNEE = 1e-10;
// Containment of a point in a contour (AppartientAContour).
constexpr double TOL_CONTENU = 1e-8;
// How far beyond a segment's box a point still projects on it or lies in its
// neighbourhood; also the correction at which the crossing iteration stops.
constexpr double TOL_SEGMENT = 1e-7;
// Newton constructions: the correction at which they stop, and the size below which a
// component of the result becomes exactly 0.
constexpr double ARRET_NEWTON = 1e-15;
constexpr double SEUIL_ACCROCHE = 1e-9;
// The 3x3 solver's smallest pivot.
constexpr double PIVOT_MIN = 1e-18;
// Round's band around zero, and the difference below which Comparer says equal.
constexpr double ZERO_ARRONDI = 1e-7;
constexpr double EGALITE_COMPARER = 1e-12;
// EstRectangle: the largest dot product of two successive sides (absolute).
constexpr double TOL_RECTANGLE = 0.001;
// DonneCdg: the smallest strip area a side must have to count.
constexpr double AIRE_MIN_BANDE = 1e-5;

// Polar angle of (dx, dy) in radians, in [0, 2 pi), with the library's 1e-10 rules
// for the axes and for angles next to 2 pi.
double AnglePolaireRad(double dx, double dy);

// Newton iteration on the unknown pair (a, b): system(a, b, f, j) fills the two
// residuals f and the Jacobian j (row by row); each step solves the linearised system
// padded to 3x3 with a unit third row and column. At most 100 steps, stopping once
// abs(da) + abs(db) <= 1e-15; without convergence the last iterate stands (it is
// then within rounding of the root). Returns 0, or -1 when a step was singular.
template <class Systeme>
int NewtonPlan(double& a, double& b, Systeme system)
{
    for (int it = 0; it < 100; ++it)
    {
        double f[2];
        double j[4];
        system(a, b, f, j);
        const double m[9] = {j[0], j[1], 0.0, j[2], j[3], 0.0, 0.0, 0.0, 1.0};
        const double r[3] = {-f[0], -f[1], 0.0};
        double d[3];
        if (Resous_Systeme(m, r, d) != 0)
            return -1;
        a += d[0];
        b += d[1];
        if (std::fabs(d[0]) + std::fabs(d[1]) <= ARRET_NEWTON)
            break;
    }
    return 0;
}

// Links p, which the list owns from the call on, through insere (a list's AddTail,
// InsertBefore ...): when linking throws, p is deleted before the exception goes on,
// so that AddTail(new ...) cannot leak.
template <class T, class Insere>
POSITION LieOuDetruit(T* p, Insere insere)
{
    std::unique_ptr<T> garde(p);
    const POSITION pos = insere(p);
    garde.release();
    return pos;
}

// Components below SEUIL_ACCROCHE in absolute value become exactly 0.
inline double Accroche(double v) { return std::fabs(v) < SEUIL_ACCROCHE ? 0.0 : v; }

} // namespace prefa_geometrie
