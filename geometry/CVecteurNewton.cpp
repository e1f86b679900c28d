// The constructions of CVecteur that solve two conditions by Newton iteration, and
// the sideways moves built on them. The iteration (start (-500, 1000), 3x3 padded
// steps) is the reference behaviour whose results the contours and the stored files
// were computed with; closed forms would differ in the last bits.
#include "geometry/CVecteur.h"
#include "geometry/GeometrieInterne.h"

#include <cmath>

using namespace prefa_geometrie;

namespace
{
// The vector (a, b) of length L on the line c0 a + c1 b = 0, by Newton iteration from
// the start given, its small components snapped to 0 and turned so that
// s0 a + s1 b >= 0; (0, 0) when a step is singular.
CPointD VecteurDeLongueur(double L, double c0, double c1, double s0, double s1, double a, double b)
{
    const int r = NewtonPlan(a, b, [&](double u, double v, double* f, double* j) {
        f[0] = c0 * u + c1 * v;
        f[1] = u * u + v * v - L * L;
        j[0] = c0;
        j[1] = c1;
        j[2] = 2.0 * u;
        j[3] = 2.0 * v;
    });
    if (r != 0)
        return CPointD(0.0, 0.0);
    a = Accroche(a);
    b = Accroche(b);
    if (s0 * a + s1 * b < 0.0)
    {
        a = -a;
        b = -b;
    }
    return CPointD(a, b);
}
} // namespace

CPointD CVecteur::VecteurOrthogonal(double L) const
{
    const double ddx = dx();
    const double ddy = dy();
    double a = -500.0;
    // There the usual start makes the first step singular.
    if (std::fabs(ddy) > TOL_COORDONNEE && std::fabs(-0.5 - ddx / ddy) < TOL_COORDONNEE)
        a = -499.0;
    // Perpendicular, on the left of the direction (dx b - dy a >= 0).
    return VecteurDeLongueur(L, ddx, ddy, -ddy, ddx, a, 1000.0);
}

// Note: with no special start, a direction with dx = 2 dy makes the first step
// singular and gives (0,0), as the reference does.
CPointD CVecteur::VecteurColineaire(double L) const
{
    const double ddx = dx();
    const double ddy = dy();
    // Along the direction, in its sense (dx a + dy b >= 0).
    return VecteurDeLongueur(L, ddy, -ddx, ddx, ddy, -500.0, 1000.0);
}

CPointD CVecteur::PointProjeteOrtho(const CPointD& p, int arrondi) const
{
    const double ddx = dx();
    const double ddy = dy();
    double X = -500.0;
    double Y = 1000.0;
    const int r = NewtonPlan(X, Y, [&](double u, double v, double* f, double* j) {
        f[0] = ddx * (u - p.x) + ddy * (v - p.y);
        f[1] = (u - org.x) * ddy - (v - org.y) * ddx;
        j[0] = ddx;
        j[1] = ddy;
        j[2] = ddy;
        j[3] = -ddx;
    });
    if (r != 0)
        return CPointD(0.0, 0.0);
    if (arrondi)
    {
        X = Accroche(X);
        Y = Accroche(Y);
    }
    return CPointD(X, Y);
}

void CVecteur::Decalage(double d)
{
    CPointD n = VecteurOrthogonal(std::fabs(d));
    if (d < 0.0)
    {
        n.x = -n.x;
        n.y = -n.y;
    }
    org.x += n.x;
    org.y += n.y;
    ext.x += n.x;
    ext.y += n.y;
}

CVecteur CVecteur::VecteurParallele(double d, const CPointD& p) const
{
    CVecteur copie(*this);
    copie.Decalage(d);
    if (AppartientPlan(copie.PointCentre(), p) != 0)
    {
        copie = *this;
        copie.Decalage(-d);
    }
    return copie;
}

namespace
{

// Moves q by L along the direction from q to p (away from p when L < 0).
void GlisseVers(CPointD& q, const CPointD& p, double L)
{
    CPointD m = CVecteur(q, p).VecteurColineaire(L);
    if (L < 0.0)
    {
        m.x = -m.x;
        m.y = -m.y;
    }
    q.x += m.x;
    q.y += m.y;
}

} // namespace

void CVecteur::DecalageCorde(const CPointD& p, double d, int sens)
{
    const double L = sens < 0 ? -d : d;
    GlisseVers(org, p, L);
    GlisseVers(ext, p, L);
}
