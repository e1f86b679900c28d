#include "geometry/CVecteur.h"

#include "geometry/GeometrieInterne.h"

#include <cmath>
#include <cstdio>

using namespace prefa_geometrie;

IMPLEMENT_SERIAL(CVecteur, CObject, 1)

CVecteur::CVecteur() = default;

CVecteur::CVecteur(const CVecteur& v) : CObject(), org(v.org), ext(v.ext) {}

CVecteur::CVecteur(const CPointD& a, const CPointD& b) : org(a), ext(b) {}

CVecteur::CVecteur(double x1, double y1, double x2, double y2) : org(x1, y1), ext(x2, y2) {}

CVecteur::CVecteur(CPoint a, CPoint b, double scale)
{
    if (scale > TOL_COORDONNEE)
    {
        org.s_xy(a.x / scale, a.y / scale);
        ext.s_xy(b.x / scale, b.y / scale);
    }
}

CVecteur::~CVecteur() = default;

CVecteur& CVecteur::operator=(const CVecteur& v)
{
    org = v.org;
    ext = v.ext;
    return *this;
}

void CVecteur::s_coord_vect(double x1, double y1, double x2, double y2)
{
    org.s_xy(x1, y1);
    ext.s_xy(x2, y2);
}

void CVecteur::s_coord_vect(const CPointD& a, const CPointD& b)
{
    // a and b may be our own ext and org: copy both before writing.
    const CPointD na(a);
    const CPointD nb(b);
    org = na;
    ext = nb;
}

void CVecteur::s_coord_vect(const CPointD& a, double dx_, double dy_)
{
    const CPointD na(a);
    org = na;
    ext = na;
    ext.x += dx_;
    ext.y += dy_;
}

void CVecteur::s_coord_cart(const CPointD& a, double r, double angle)
{
    s_coord_vect(a, r * dcos(angle), r * dsin(angle));
}

double CVecteur::longueur() const { return org.distance_p(ext); }

double CVecteur::angle_d(int mode) const
{
    double a = prefa_geometrie::AnglePolaireRad(dx(), dy());
    if (mode == 1 && Round(a, 2) > TROIS_PI_SUR_DEUX)
        a -= 2.0 * PI;
    return a * 180.0 / PI;
}

double CVecteur::AngleEntreVecteur(const CVecteur& w, int mode) const
{
    double a = w.angle_d(0) - angle_d(0);
    while (a > 360.0)
        a -= 360.0;
    while (a < 0.0)
        a += 360.0;
    if (mode == 0)
        a -= 360.0;
    return a;
}

double CVecteur::translation(const CPointD& a, const CPointD& b)
{
    org.translation(a, b);
    return ext.translation(a, b);
}

double CVecteur::translation(const CVecteur& v)
{
    org.translation(v);
    return ext.translation(v);
}

double CVecteur::rotation(const CPointD& c, double a)
{
    org.rotation(c, a);
    ext.rotation(c, a);
    return c.distance_p(org);
}

void CVecteur::echelle(const CPointD& c, double k)
{
    org.echelle(c, k);
    ext.echelle(c, k);
}

CPointD CVecteur::ChangeRepere(double a, const CPointD& o)
{
    org.ChangeRepere(a, o);
    ext.ChangeRepere(a, o);
    CPointD origine(0.0, 0.0);
    origine.ChangeRepere(a, o);
    return origine;
}

CPointD CVecteur::PointCentre() const
{
    return CPointD((org.x + ext.x) / 2.0, (org.y + ext.y) / 2.0);
}

double CVecteur::g_x(double y) const
{
    double xi = 0.0;
    double yi = 0.0;
    const int code = Donne_Intersection(org.x, org.y, ext.x, ext.y, -1e10, y, 1e10, y, &xi,
                                        &yi, TOL_COORDONNEE);
    return code == 2 || code == 3 ? xi : 1e10;
}

double CVecteur::g_y(double x) const
{
    double xi = 0.0;
    double yi = 0.0;
    const int code = Donne_Intersection(org.x, org.y, ext.x, ext.y, x, -1e10, x, 1e10, &xi,
                                        &yi, TOL_COORDONNEE);
    return code == 2 || code == 3 ? yi : 1e10;
}

int CVecteur::AppartientPlan(const CPointD& p1, const CPointD& p2) const
{
    const double seuil = std::pow(10.0, -10);
    const double c1 = (p1.y - org.y) * dx() - (p1.x - org.x) * dy();
    if (std::fabs(c1) <= seuil)
        return 1;
    const double c2 = (p2.y - org.y) * dx() - (p2.x - org.x) * dy();
    if (c2 > seuil || c2 < -seuil)
        return c1 * c2 > seuil ? 0 : -1;
    return 2;
}

double CVecteur::DistanceProjete(const CPointD& p) const
{
    return p.distance_p(PointProjeteOrtho(p, 0));
}

double CVecteur::DistanceProjete(double r, double angle) const
{
    CPointD q(ext);
    q.x += r * dcos(angle);
    q.y += r * dsin(angle);
    if (std::fabs(dx() * (q.y - ext.y) - dy() * (q.x - ext.x)) < TOL_COORDONNEE)
        return 0.0;
    return DistanceProjete(q);
}

int CVecteur::AppartientAVecteur(const CPointD& p, double tolLong, double tol) const
{
    if (tol == -1.0)
        tol = TOL_COORDONNEE;
    const double ux = p.x - org.x;
    const double uy = p.y - org.y;
    const double ddx = dx();
    const double ddy = dy();
    if (std::fabs(ux * ddy - ddx * uy) >= tol)
        return 0;
    const double ax = std::fabs(ddx);
    const double ay = std::fabs(ddy);
    if (std::fabs(ux) - ax <= tol && std::fabs(p.x - ext.x) - ax <= tol &&
        std::fabs(uy) - ay <= tol && std::fabs(p.y - ext.y) - ay <= tol)
        return 1;
    return p.distance_p(org) <= tolLong || p.distance_p(ext) <= tolLong ? 1 : 0;
}

CPointD CVecteur::Intersection(const CVecteur& w, double tol, int* trouve) const
{
    double xi = 0.0;
    double yi = 0.0;
    const int code = Donne_Intersection(org.x, org.y, ext.x, ext.y, w.org.x, w.org.y, w.ext.x,
                                        w.ext.y, &xi, &yi, tol);
    if (trouve)
        *trouve = code;
    if (code == 0)
        return CPointD(0.0, 0.0);
    return CPointD(xi, yi);
}

CVecteur CVecteur::operator+=(const CVecteur& w)
{
    ext.x += w.dx();
    ext.y += w.dy();
    return *this;
}

CVecteur CVecteur::operator-=(const CVecteur& w)
{
    ext.x -= w.dx();
    ext.y -= w.dy();
    return *this;
}

CVecteur CVecteur::operator+(const CVecteur& w) { return *this += w; }

CVecteur CVecteur::operator-(const CVecteur& w) { return *this -= w; }

CVecteur CVecteur::operator*=(double k)
{
    org.x *= k;
    org.y *= k;
    ext.x *= k;
    ext.y *= k;
    return *this;
}

double CVecteur::operator*(const CVecteur& w) const { return dx() * w.dx() + dy() * w.dy(); }

double CVecteur::operator^(const CVecteur& w) const { return dx() * w.dy() - w.dx() * dy(); }

int CVecteur::operator==(const CVecteur& w) const { return org == w.org && ext == w.ext; }

int CVecteur::Identique(const CVecteur& w, double tol) const
{
    return org.distance_p(w.org) <= tol && ext.distance_p(w.ext) <= tol ? 1 : 0;
}

void CVecteur::Serialize(CArchive& ar)
{
    org.Serialize(ar);
    ext.Serialize(ar);
}

void CVecteur::Trace(int n) const
{
    std::fprintf(stderr, "%d VECTEUR - Org : x = %lf y = %lf | Ext : x = %lf y = %lf\n", n,
                 org.x, org.y, ext.x, ext.y);
}
