#include "geometry/CPointD.h"

#include "geometry/CRepere.h"
#include "geometry/GeometrieInterne.h"

#include <cmath>
#include <cstdint>

using namespace prefa_geometrie;

IMPLEMENT_SERIAL(CPointD, CObject, 1)

namespace prefa_geometrie
{

double AnglePolaireRad(double dx, double dy)
{
    double a;
    if (std::fabs(dx) < TOL_COORDONNEE)
    {
        if (std::fabs(dy) < TOL_COORDONNEE)
            a = 0.0;
        else if (dy > 0.0)
            a = PI / 2.0;
        else
            a = TROIS_PI_SUR_DEUX;
    }
    else
    {
        a = std::atan(dy / dx);
        if (!(dx > 0.0))
            a += PI;
        if (a < 0.0)
            a += 2.0 * PI;
    }
    if (std::fabs(a - 2.0 * PI) < TOL_COORDONNEE)
        a = 0.0;
    return a;
}

} // namespace prefa_geometrie

namespace
{

// A device coordinate rounded to the unit, clamped to the integer range (a default
// frame of scale 0 or a far point must not overflow the conversion).
LONG EnEntier(double v)
{
    const double r = Round(v, 0);
    if (!(r > -2147483648.0))
        return r != r ? 0 : INT32_MIN;
    if (r > 2147483647.0)
        return INT32_MAX;
    return (LONG)r;
}

} // namespace

CPointD::CPointD() : x(0.0), y(0.0), marque(false), valeur1(-DBL_MAX), valeur2(-DBL_MAX) {}

CPointD::CPointD(double x_, double y_, bool marque_, double valeur1_, double valeur2_)
    : x(x_), y(y_), marque(marque_), valeur1(valeur1_), valeur2(valeur2_)
{
}

CPointD::CPointD(const CPointD& p)
    : CObject(), x(p.x), y(p.y), marque(p.marque), valeur1(p.valeur1), valeur2(p.valeur2)
{
}

CPointD::CPointD(CPoint p, const CVecteur& v, double scale) : CPointD()
{
    LPtoPC(p, scale, v);
}

CPointD::CPointD(CPoint p, const CRepere& r) : CPointD() { LPtoPC(p, r); }

CPointD::~CPointD() = default;

CPointD& CPointD::operator=(const CPointD& p)
{
    x = p.x;
    y = p.y;
    marque = p.marque;
    valeur1 = p.valeur1;
    valeur2 = p.valeur2;
    return *this;
}

void CPointD::s_xy(double x_, double y_)
{
    x = x_;
    y = y_;
}

double CPointD::longueur() const { return std::sqrt(x * x + y * y); }

double CPointD::angle() const { return prefa_geometrie::AnglePolaireRad(x, y) * 180.0 / PI; }

void CPointD::cartesien(double r, double a)
{
    x = r * dcos(a);
    y = r * dsin(a);
}

double CPointD::distance_p(const CPointD& p) const
{
    const double dx = p.x - x;
    const double dy = p.y - y;
    return std::sqrt(dx * dx + dy * dy);
}

int CPointD::Identique(const CPointD& p, double tol) const { return distance_p(p) <= tol ? 1 : 0; }

int CPointD::operator==(const CPointD& p) const
{
    return std::fabs(x - p.x) < TOL_COORDONNEE && std::fabs(y - p.y) < TOL_COORDONNEE ? 1 : 0;
}

double CPointD::translation(const CPointD& a, const CPointD& b)
{
    x += b.x - a.x;
    y += b.y - a.y;
    return a.distance_p(b);
}

double CPointD::translation(const CVecteur& v)
{
    x += v.dx();
    y += v.dy();
    return v.longueur();
}

double CPointD::rotation(const CPointD& c, double a)
{
    const double d = distance_p(c);
    const double co = dcos(a);
    const double si = dsin(a);
    const double u = x - c.x;
    const double v = y - c.y;
    x = co * u - si * v + c.x;
    y = si * u + co * v + c.y;
    return d;
}

void CPointD::echelle(const CPointD& c, double k)
{
    x = c.x + k * (x - c.x);
    y = c.y + k * (y - c.y);
}

void CPointD::ChangeRepere(double a, const CPointD& o)
{
    const double b = -a;
    const double co = dcos(b);
    const double si = dsin(b);
    const double u = x - o.x;
    const double v = y - o.y;
    x = co * u - si * v;
    y = si * u + co * v;
}

CPoint CPointD::PCtoLP(double scale, const CVecteur& v) const
{
    return CPoint(EnEntier((x + v.dx()) * scale), EnEntier(-Round((y + v.dy()) * scale, 0)));
}

void CPointD::LPtoPC(CPoint p, double scale, const CVecteur& v)
{
    x = p.x / scale - v.dx();
    y = -(p.y / scale) - v.dy();
}

CPoint CPointD::PCtoLP(const CRepere& r) const
{
    const double u = x - r.origin.x;
    const double v = y - r.origin.y;
    const double X = (dcos(r.rotx) * u - dsin(r.rotx) * v) * r.Echelle;
    const double Y = (dsin(r.roty) * u + dcos(r.roty) * v) * r.Echelle;
    return CPoint(EnEntier(X), EnEntier(Y));
}

// Not the inverse of PCtoLP(r): the rotation is applied in the same sense both ways.
void CPointD::LPtoPC(CPoint p, const CRepere& r)
{
    const double u = p.x / r.Echelle;
    const double v = p.y / r.Echelle;
    x = Round(dcos(r.rotx) * u - dsin(r.rotx) * v + r.origin.x, 9);
    y = Round(dsin(r.roty) * u + dcos(r.roty) * v + r.origin.y, 9);
}

void CPointD::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
        ar << x << y;
    else
        ar >> x >> y;
}
