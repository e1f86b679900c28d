// Segment crossing and point-near-segment tests.
#include "geometry/CVecteur.h"
#include "geometry/GeometrieInterne.h"

#include <algorithm>
#include <cmath>

using namespace prefa_geometrie;

// The crossing is found by Newton iteration on three unknowns: the point (X, Y) and
// t, its parameter along segment 2 (0 at (x3, y3), 1 at (x4, y4)). The equations are
//     (X - x1) d1y - (Y - y1) d1x = 0              the point is on line 1
//     (X - x3) d2y - (Y - y3) d2x = 0              the point is on line 2
//     t |d2|^2 - ((X - x3) d2x + (Y - y3) d2y) = 0  t measures it along segment 2
// The lines are written in implicit form rather than as X = x3 + t d2x, so that the
// residuals stay at the scale of the crossing even when segment 2 is one of the
// +/-1e10 construction lines of AppartientAContour and CVecteur::g_x: the second
// step then finds corrections far below 1e-7 and the iteration stops.
int Donne_Intersection(double x1, double y1, double x2, double y2, double x3, double y3,
                       double x4, double y4, double* x, double* y, double tol)
{
    const double d1x = x2 - x1;
    const double d1y = y2 - y1;
    const double d2x = x4 - x3;
    const double d2y = y4 - y3;
    if (std::fabs(d2y * d1x - d2x * d1y) < TOL_COORDONNEE)
        return 0;

    const double carre2 = d2x * d2x + d2y * d2y;
    const double m[9] = {d1y, -d1x, 0.0, d2y, -d2x, 0.0, -d2x, -d2y, carre2};
    double X = x1;
    double Y = y1;
    double t = 0.0;
    bool converge = false;
    for (int it = 0; it < 10 && !converge; ++it)
    {
        const double r[3] = {
            -((X - x1) * d1y - (Y - y1) * d1x),
            -((X - x3) * d2y - (Y - y3) * d2x),
            -(t * carre2 - ((X - x3) * d2x + (Y - y3) * d2y)),
        };
        double d[3];
        if (Resous_Systeme(m, r, d) != 0)
            return 0;
        X += d[0];
        Y += d[1];
        t += d[2];
        converge = std::fabs(d[0]) + std::fabs(d[1]) + std::fabs(d[2]) <= TOL_SEGMENT;
    }
    if (!converge)
        return 0;

    *x = X;
    *y = Y;
    const double tol2 = tol * tol;
    const int sur1 = Appartient_Voisinage(X, Y, x1, y1, x2, y2, tol2);
    const int sur2 = Appartient_Voisinage(X, Y, x3, y3, x4, y4, tol2);
    if (sur1 && sur2)
        return 3;
    if (sur1)
        return 1;
    if (sur2)
        return 2;
    return -1;
}

int Projection_Point_Sur_Droite(double x0, double y0, double x1, double y1, double px,
                                double py, double* xp, double* yp)
{
    const CVecteur v(x0, y0, x1, y1);
    const CPointD q = v.PointProjeteOrtho(CPointD(px, py), 0);
    *xp = q.x;
    *yp = q.y;

    const double dx = x1 - x0;
    const double dy = y1 - y0;
    if (std::fabs((q.x - x0) * dy - (q.y - y0) * dx) > TOL_SEGMENT)
        return 0;
    // Within the segment when neither end is further than the segment's extent.
    const double ex = std::fabs(dx) + TOL_SEGMENT;
    const double ey = std::fabs(dy) + TOL_SEGMENT;
    return std::fabs(q.x - x0) <= ex && std::fabs(q.x - x1) <= ex &&
                   std::fabs(q.y - y0) <= ey && std::fabs(q.y - y1) <= ey
               ? 1
               : 0;
}

// The neighbourhood is the two end discs of radius sqrt(tol2) and, along the segment,
// the band of that half-width clipped to the segment's box widened by 1e-7.
int Appartient_Voisinage(double px, double py, double x0, double y0, double x1, double y1,
                         double tol2)
{
    if ((std::fabs(px - x0) < TOL_COORDONNEE && std::fabs(py - y0) < TOL_COORDONNEE) ||
        (std::fabs(px - x1) < TOL_COORDONNEE && std::fabs(py - y1) < TOL_COORDONNEE))
        return 1;

    const double ax = px - x0;
    const double ay = py - y0;
    const double bx = px - x1;
    const double by = py - y1;
    if (std::min(ax * ax + ay * ay, bx * bx + by * by) <= tol2)
        return 1;

    const double dx = x1 - x0;
    const double dy = y1 - y0;
    const double carre = dx * dx + dy * dy;
    if (carre <= 0.0)
        return 0;
    if (px < std::min(x0, x1) - TOL_SEGMENT || px > std::max(x0, x1) + TOL_SEGMENT ||
        py < std::min(y0, y1) - TOL_SEGMENT || py > std::max(y0, y1) + TOL_SEGMENT)
        return 0;
    const double croix = ax * dy - ay * dx;
    return croix * croix / carre <= tol2 ? 1 : 0;
}
