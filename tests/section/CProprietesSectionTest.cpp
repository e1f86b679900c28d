#include "section/CProprietesSection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace
{
const double kPi = 3.141592653589793;

struct Pt
{
    double x, y;
};
typedef std::vector<Pt> Trace;

struct Section
{
    std::vector<Trace> contours, ouvertures;
};

CPolygone* Polygone(const Trace& t)
{
    CPolygone* p = new CPolygone;
    for (const Pt& q : t)
        p->AddTail(q.x, q.y);
    return p;
}

int Calcule(const Section& s, CProprietesSection& p)
{
    CListePolygone l1, l2;
    for (const Trace& t : s.contours)
        l1.AddTail(Polygone(t));
    for (const Trace& t : s.ouvertures)
        l2.AddTail(Polygone(t));
    return p.Calcule(l1, l2);
}

CProprietesSection Calcule(const Section& s)
{
    CProprietesSection p;
    EXPECT_EQ(1, Calcule(s, p));
    return p;
}

Trace Rectangle(double x0, double y0, double x1, double y1)
{
    return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
}

Trace Inverse(Trace t)
{
    std::reverse(t.begin(), t.end());
    return t;
}

// Every point turned by angle degrees about (cx, cy), then moved by (dx, dy).
Section Deplace(const Section& s, double angle, double cx, double cy, double dx, double dy)
{
    const double c = std::cos(angle * kPi / 180.0), sn = std::sin(angle * kPi / 180.0);
    auto bouge = [&](const Trace& t) {
        Trace r;
        for (const Pt& p : t)
            r.push_back({cx + c * (p.x - cx) - sn * (p.y - cy) + dx, cy + sn * (p.x - cx) + c * (p.y - cy) + dy});
        return r;
    };
    Section r;
    for (const Trace& t : s.contours)
        r.contours.push_back(bouge(t));
    for (const Trace& t : s.ouvertures)
        r.ouvertures.push_back(bouge(t));
    return r;
}

// Independent reference: axis-aligned rectangles added (signe 1) or removed (-1), with
// b h^3 / 12 and the parallel-axis theorem.
struct Rect
{
    double x0, y0, x1, y1;
    int signe;
};

struct Reference
{
    double A, xg, yg, Ix, Iy, Ixy;
};

Reference ParRectangles(const std::vector<Rect>& rs)
{
    Reference r{};
    double sx = 0, sy = 0;
    for (const Rect& q : rs)
    {
        const double a = q.signe * (q.x1 - q.x0) * (q.y1 - q.y0);
        r.A += a;
        sx += a * (q.x0 + q.x1) / 2;
        sy += a * (q.y0 + q.y1) / 2;
    }
    r.xg = sx / r.A, r.yg = sy / r.A;
    for (const Rect& q : rs)
    {
        const double b = q.x1 - q.x0, h = q.y1 - q.y0, a = q.signe * b * h;
        const double ex = (q.x0 + q.x1) / 2 - r.xg, ey = (q.y0 + q.y1) / 2 - r.yg;
        r.Ix += q.signe * b * h * h * h / 12 + a * ey * ey;
        r.Iy += q.signe * h * b * b * b / 12 + a * ex * ex;
        r.Ixy += a * ex * ey;
    }
    return r;
}

// Checks the centroidal values of a section that is the reference turned by angle
// degrees about (cx, cy) and moved by (dx, dy): the moments follow the rotation of
// the body, the principal moments stay.
void VerifieDeplace(const CProprietesSection& p, const Reference& r, double angle, double cx, double cy, double dx,
                    double dy, double tol)
{
    const double f = angle * kPi / 180.0, c = std::cos(f), s = std::sin(f);
    const double Ix = r.Ix * c * c + r.Iy * s * s + 2 * r.Ixy * s * c;
    const double Iy = r.Ix * s * s + r.Iy * c * c - 2 * r.Ixy * s * c;
    const double Ixy = (r.Iy - r.Ix) * s * c + r.Ixy * (c * c - s * s);
    const double moyenne = (r.Ix + r.Iy) / 2, rayon = std::hypot((r.Ix - r.Iy) / 2, r.Ixy);
    const double echelle = moyenne + rayon, taille = std::sqrt(r.A);
    EXPECT_NEAR(r.A, p.m_Aire, tol * r.A);
    EXPECT_NEAR(cx + c * (r.xg - cx) - s * (r.yg - cy) + dx, p.m_Xg, tol * taille);
    EXPECT_NEAR(cy + s * (r.xg - cx) + c * (r.yg - cy) + dy, p.m_Yg, tol * taille);
    EXPECT_NEAR(Ix, p.m_AxeX.I, tol * echelle);
    EXPECT_NEAR(Iy, p.m_AxeY.I, tol * echelle);
    EXPECT_NEAR(Ixy, p.m_Ixy, tol * echelle);
    EXPECT_NEAR(moyenne + rayon, p.m_Axe1.I, tol * echelle);
    EXPECT_NEAR(moyenne - rayon, p.m_Axe2.I, tol * echelle);
    EXPECT_NEAR(std::sqrt(Ix / r.A), p.m_AxeX.i, tol * taille);
    EXPECT_NEAR(std::sqrt((moyenne - rayon) / r.A), p.m_Axe2.i, tol * taille);
    if (rayon > 1e-6 * moyenne)
    {
        // Axis 1 turns with the body; compare directions, which are defined modulo 180.
        double attendu = std::atan2(-2 * r.Ixy, r.Ix - r.Iy) * 90.0 / kPi + angle;
        double ecart = std::remainder(attendu - p.m_Angle, 180.0);
        EXPECT_NEAR(0.0, ecart, 1e-7);
        EXPECT_GT(p.m_Angle, -90.0);
        EXPECT_LE(p.m_Angle, 90.0);
    }
}

struct Cas
{
    const char* nom;
    Section section;
    Reference reference;
};

// Unequal angle 0.20 x 0.10 x 0.02, long leg up the y axis, worked by hand in cm:
// A = 56, xG = 17/7, yG = 52/7, Ix = 332864/147, Iy = 8072/21, Ixy = -25200/49.
const Reference kCornierMain = {56e-4, 17.0 / 7 * 1e-2, 52.0 / 7 * 1e-2, 332864.0 / 147 * 1e-8, 8072.0 / 21 * 1e-8,
                                -25200.0 / 49 * 1e-8};
const Trace kCornier = {{0, 0}, {0.10, 0}, {0.10, 0.02}, {0.02, 0.02}, {0.02, 0.20}, {0, 0.20}};

// I: flanges 0.30 x 0.04, web 0.02 x 0.32. T: flange 1.2 x 0.1 on a web 0.15 x 0.5.
const Trace kI = {{0, 0},    {0.30, 0}, {0.30, 0.04}, {0.16, 0.04}, {0.16, 0.36}, {0.30, 0.36},
                  {0.30, 0.40}, {0, 0.40}, {0, 0.36},    {0.14, 0.36}, {0.14, 0.04}, {0, 0.04}};
const Trace kT = {{0.525, 0}, {0.675, 0}, {0.675, 0.5}, {1.2, 0.5}, {1.2, 0.6}, {0, 0.6}, {0, 0.5}, {0.525, 0.5}};

std::vector<Cas> CasFermes()
{
    // A triangle with legs 0.4 along x and 0.3 along y: Ix = b h^3 / 36, Ixy = -b^2 h^2 / 72;
    // mirrored about the y axis, the product changes sign.
    const double b = 0.4, h = 0.3;
    const Reference triangle = {b * h / 2, b / 3, h / 3, b * h * h * h / 36, h * b * b * b / 36, -b * b * h * h / 72};
    Reference miroir = triangle;
    miroir.xg = -b / 3, miroir.Ixy = -triangle.Ixy;

    std::vector<Cas> cas = {
        {"rectangle", {{Rectangle(0, 0, 0.3, 0.6)}, {}}, ParRectangles({{0, 0, 0.3, 0.6, 1}})},
        {"triangle", {{{{0, 0}, {b, 0}, {0, h}}}, {}}, triangle},
        {"triangle given clockwise", {{{{0, 0}, {0, h}, {b, 0}}}, {}}, triangle},
        {"mirrored triangle", {{{{0, 0}, {0, h}, {-b, 0}}}, {}}, miroir},
        {"I", {{kI}, {}}, ParRectangles({{0, 0, 0.3, 0.04, 1}, {0.14, 0.04, 0.16, 0.36, 1}, {0, 0.36, 0.3, 0.4, 1}})},
        {"T", {{kT}, {}}, ParRectangles({{0.525, 0, 0.675, 0.5, 1}, {0, 0.5, 1.2, 0.6, 1}})},
        {"unequal angle", {{kCornier}, {}}, kCornierMain},
        {"hollow box, hole off centre",
         {{Rectangle(0, 0, 0.8, 0.5)}, {Rectangle(0.1, 0.15, 0.6, 0.4)}},
         ParRectangles({{0, 0, 0.8, 0.5, 1}, {0.1, 0.15, 0.6, 0.4, -1}})},
        {"two openings, one given counter-clockwise",
         {{Inverse(Rectangle(0, 0, 1.2, 0.5))}, {Rectangle(0.1, 0.1, 0.3, 0.4), Inverse(Rectangle(0.5, 0.2, 1.0, 0.3))}},
         ParRectangles({{0, 0, 1.2, 0.5, 1}, {0.1, 0.1, 0.3, 0.4, -1}, {0.5, 0.2, 1.0, 0.3, -1}})},
    };
    // A circle of radius 0.5 as a 10,000-gon from a point off the axes; the polygon's own
    // closed form: A = n r^2 sin(a) / 2, I = n r^4 sin(a) (2 + cos a) / 24, a = 2 pi / n.
    const int n = 10000;
    const double r = 0.5, a = 2 * kPi / n;
    Trace cercle;
    for (int k = 0; k < n; ++k)
        cercle.push_back({2 + r * std::cos(k * a + 0.3), 1 + r * std::sin(k * a + 0.3)});
    const double I = n * std::pow(r, 4) * std::sin(a) * (2 + std::cos(a)) / 24;
    cas.push_back({"10,000-gon", {{cercle}, {}}, {n * r * r * std::sin(a) / 2, 2, 1, I, I, 0}});
    return cas;
}
} // namespace

TEST(CProprietesSection, ClosedFormsAsGivenFarAwayAndTurned)
{
    for (const Cas& c : CasFermes())
    {
        SCOPED_TRACE(c.nom);
        VerifieDeplace(Calcule(c.section), c.reference, 0, 0, 0, 0, 0, 1e-13);
        VerifieDeplace(Calcule(Deplace(c.section, 0, 0, 0, 1e5, 2e5)), c.reference, 0, 0, 0, 1e5, 2e5, 1e-9);
        VerifieDeplace(Calcule(Deplace(c.section, 30, 0.2, 0.1, 0, 0)), c.reference, 30, 0.2, 0.1, 0, 0, 1e-12);
        VerifieDeplace(Calcule(Deplace(c.section, 30, 0.2, 0.1, 1e5, 2e5)), c.reference, 30, 0.2, 0.1, 1e5, 2e5, 1e-9);
    }
}

TEST(CProprietesSection, ExtremeFibresModuliBoxAndPerimeters)
{
    // The unequal angle, in cm relative to its centroid (17/7, 52/7): fibres at 88/7 above
    // and 52/7 below, 53/7 right and 17/7 left.
    const CProprietesSection p = Calcule({{kCornier}, {}});
    const Reference& r = kCornierMain;
    const double d[4] = {88e-2 / 7, 52e-2 / 7, 53e-2 / 7, 17e-2 / 7};
    EXPECT_NEAR(d[0], p.m_AxeX.vPositif, 1e-15);
    EXPECT_NEAR(d[1], p.m_AxeX.vNegatif, 1e-15);
    EXPECT_NEAR(d[2], p.m_AxeY.vPositif, 1e-15);
    EXPECT_NEAR(d[3], p.m_AxeY.vNegatif, 1e-15);
    EXPECT_NEAR(r.Ix / d[0], p.m_AxeX.WPositif, 1e-13 * r.Ix / d[0]);
    EXPECT_NEAR(r.Ix / d[1], p.m_AxeX.WNegatif, 1e-13 * r.Ix / d[1]);
    EXPECT_NEAR(r.Iy / d[2], p.m_AxeY.WPositif, 1e-13 * r.Iy / d[2]);
    EXPECT_NEAR(r.Iy / d[3], p.m_AxeY.WNegatif, 1e-13 * r.Iy / d[3]);

    // Principal fibres: the vertices seen from the hand-worked principal frame. Axis 1
    // (about 14.3 degrees) has its positive side towards axis 2, axis 2 towards axis 1.
    const double a = std::atan2(-2 * r.Ixy, r.Ix - r.Iy) / 2, c = std::cos(a), s = std::sin(a);
    double umin = 0, umax = 0, vmin = 0, vmax = 0;
    for (const Pt& q : kCornier)
    {
        const double u = c * (q.x - r.xg) + s * (q.y - r.yg), v = c * (q.y - r.yg) - s * (q.x - r.xg);
        umin = std::min(umin, u), umax = std::max(umax, u), vmin = std::min(vmin, v), vmax = std::max(vmax, v);
    }
    EXPECT_NEAR(14.34, p.m_Angle, 0.01);
    const double I1 = (r.Ix + r.Iy) / 2 + std::hypot((r.Ix - r.Iy) / 2, r.Ixy);
    const double I2 = r.Ix + r.Iy - I1;
    EXPECT_NEAR(vmax, p.m_Axe1.vPositif, 1e-15);
    EXPECT_NEAR(-vmin, p.m_Axe1.vNegatif, 1e-15);
    EXPECT_NEAR(umax, p.m_Axe2.vPositif, 1e-15);
    EXPECT_NEAR(-umin, p.m_Axe2.vNegatif, 1e-15);
    EXPECT_NEAR(I1 / vmax, p.m_Axe1.WPositif, 1e-13 * I1 / vmax);
    EXPECT_NEAR(I1 / -vmin, p.m_Axe1.WNegatif, 1e-13 * I1 / vmax);
    EXPECT_NEAR(I2 / umax, p.m_Axe2.WPositif, 1e-13 * I2 / umax);
    EXPECT_NEAR(I2 / -umin, p.m_Axe2.WNegatif, 1e-13 * I2 / umax);

    EXPECT_EQ(0.0, p.m_Xmin);
    EXPECT_EQ(0.0, p.m_Ymin);
    EXPECT_EQ(0.10, p.m_Xmax);
    EXPECT_EQ(0.20, p.m_Ymax);
    EXPECT_NEAR(0.60, p.m_Perimetre1, 1e-15);
    EXPECT_EQ(0.0, p.m_Perimetre2);

    // Openings count in their own perimeter, not in the box; the polygon's perimeter of
    // the 10,000-gon is 2 n r sin(pi / n).
    const CProprietesSection boite = Calcule({{Rectangle(1, 2, 1.8, 2.5)}, {Inverse(Rectangle(1.1, 2.15, 1.6, 2.4))}});
    EXPECT_NEAR(2.6, boite.m_Perimetre1, 1e-15);
    EXPECT_NEAR(1.5, boite.m_Perimetre2, 1e-15);
    EXPECT_EQ(1.0, boite.m_Xmin);
    EXPECT_EQ(2.5, boite.m_Ymax);
    const CProprietesSection cercle = Calcule(CasFermes().back().section);
    EXPECT_NEAR(2 * 10000 * 0.5 * std::sin(kPi / 10000), cercle.m_Perimetre1, 1e-13);
}

TEST(CProprietesSection, PrincipalAxesOfThinAndOfNearlySquareSections)
{
    // A 1 m x 0.01 mm plate turned by 30 degrees: I2 = L t^3 / 12 is 1e-10 of I1, its
    // axis runs along the plate and axis 1 across it, at -60 degrees. Taken as the
    // difference of the centroidal moments, I2 would be wrong by 1e-7.
    const double L = 1.0, t = 1e-5;
    const Section plaque = Deplace({{Rectangle(-L / 2, -t / 2, L / 2, t / 2)}, {}}, 30, 0, 0, 3, 4);
    const CProprietesSection p = Calcule(plaque);
    // The corners' rounding (1e-16 m) already moves t by 1e-11 relative.
    EXPECT_NEAR(t * L * L * L / 12, p.m_Axe1.I, 1e-10 * t * L * L * L / 12);
    EXPECT_NEAR(L * t * t * t / 12, p.m_Axe2.I, 1e-9 * L * t * t * t / 12);
    EXPECT_NEAR(-60.0, p.m_Angle, 1e-9);
    EXPECT_NEAR(L / 2, p.m_Axe1.vPositif, 1e-15);
    EXPECT_NEAR(L / 2, p.m_Axe1.vNegatif, 1e-15);
    EXPECT_NEAR(t / 2, p.m_Axe2.vPositif, 1e-15);

    // A 1 x 1.00001 rectangle turned by 30 degrees still has its axes (I1 and I2 differ
    // by 2e-5); a square's axes are all principal: angle 0, axes 1 and 2 are x and y.
    const CProprietesSection presque = Calcule(Deplace({{Rectangle(0, 0, 1, 1.00001)}, {}}, 30, 0, 0, 0, 0));
    EXPECT_NEAR(30.0, presque.m_Angle, 1e-8);
    const CProprietesSection carre = Calcule(Deplace({{Rectangle(0, 0, 1, 1)}, {}}, 30, 0, 0, 0, 0));
    EXPECT_EQ(0.0, carre.m_Angle);
    EXPECT_NEAR(1.0 / 12, carre.m_Axe1.I, 1e-15);
    EXPECT_NEAR(1.0 / 12, carre.m_Axe2.I, 1e-15);
    EXPECT_EQ(carre.m_AxeY.vPositif, carre.m_Axe2.vPositif);
}

TEST(CProprietesSection, PlasticNeutralAxesAndModuli)
{
    struct Attendu
    {
        double yp, Zx, xp, Zy;
    };
    auto verifie = [](const Section& s, const Attendu& a, double tol = 1e-12) {
        const CProprietesSection p = Calcule(s);
        const double taille = std::sqrt(p.m_Aire);
        EXPECT_NEAR(a.yp, p.m_PlastiqueX.position, tol * taille);
        EXPECT_NEAR(a.Zx, p.m_PlastiqueX.W, tol * a.Zx);
        EXPECT_NEAR(a.xp, p.m_PlastiqueY.position, tol * taille);
        EXPECT_NEAR(a.Zy, p.m_PlastiqueY.W, tol * a.Zy);
    };
    {
        SCOPED_TRACE("rectangle: b h^2 / 4 about the middle");
        const double b = 0.3, h = 0.6;
        verifie({{Rectangle(0.1, 0.2, 0.1 + b, 0.2 + h)}, {}}, {0.2 + h / 2, b * h * h / 4, 0.1 + b / 2, h * b * b / 4});
    }
    {
        SCOPED_TRACE("I: the flanges b tf (h - tf) and the web tw hw^2 / 4");
        const double b = 0.3, tf = 0.04, tw = 0.02, hw = 0.32, h = hw + 2 * tf;
        verifie({{kI}, {}}, {h / 2, b * tf * (h - tf) + tw * hw * hw / 4, b / 2, 2 * tf * b * b / 4 + hw * tw * tw / 4});
    }
    {
        SCOPED_TRACE("T whose plastic axis lies in the flange");
        // Flange 1.2 x 0.1 on top of a 0.15 x 0.5 web: the flange holds more than half the
        // area, so the axis lies a = A / (2 b) below the top.
        const double b = 1.2, tf = 0.1, tw = 0.15, hw = 0.5, A = b * tf + tw * hw, a = A / 2 / b;
        verifie({{kT}, {}}, {hw + tf - a, b * a * a / 2 + b * (tf - a) * (tf - a) / 2 + tw * hw * (tf - a + hw / 2), b / 2,
                             tf * b * b / 4 + hw * tw * tw / 4});
    }
    {
        SCOPED_TRACE("unequal angle, by hand in cm: axes at y = 6 and x = 1.4, Z = 312 and 96.8");
        verifie({{kCornier}, {}}, {0.06, 312e-6, 0.014, 96.8e-6});
        verifie(Deplace({{kCornier}, {}}, 0, 0, 0, 1e5, 2e5), {2e5 + 0.06, 312e-6, 1e5 + 0.014, 96.8e-6}, 1e-9);
    }
    {
        SCOPED_TRACE("right triangle: the axes cut the sloping side");
        // Legs b and h from the right angle at the origin: the part above y = h (1 - a),
        // a = 1/sqrt(2), is a triangle of half the area. For unit legs, with t = 1 - a,
        // Z = a^3 / 6 (above) + t^2 / 2 - t^3 / 6 (below); Zx = b h^2 Z, Zy = h b^2 Z.
        const double b = 0.4, h = 0.3, a = 1 / std::sqrt(2.0), t = 1 - a;
        const double z = a * a * a / 6 + t * t / 2 - t * t * t / 6;
        // A vertex in the middle of each leg makes the search cross the sloping side.
        verifie({{{{0, 0}, {b / 2, 0}, {b, 0}, {0, h}, {0, h / 2}}}, {}}, {h * t, b * h * h * z, b * t, h * b * b * z});
    }
    {
        SCOPED_TRACE("hollow box: (B H^2 - b h^2) / 4");
        verifie({{Rectangle(0, 0, 0.8, 0.5)}, {Rectangle(0.1, 0.1, 0.7, 0.4)}},
                {0.25, (0.8 * 0.25 - 0.6 * 0.09) / 4, 0.4, (0.5 * 0.64 - 0.3 * 0.36) / 4});
    }
    {
        SCOPED_TRACE("two separate parts: the middle of the gap, not the centroid (0.325)");
        // 0.2 x 0.5 and 0.1 x 1.0 beside each other, 0.3 apart: equal areas. Across them the
        // width is 0.3 up to y = 0.5, so the horizontal axis lies at 1/3.
        verifie({{Rectangle(0, 0, 0.2, 0.5), Rectangle(0.5, 0, 0.6, 1.0)}, {}},
                {1.0 / 3, 0.5 / 36 + 1.0 / 36, 0.35, 0.025 + 0.02});
    }
}

TEST(CProprietesSection, RandomSectionsIgnoreStartOrientationAndPlace)
{
    // Star-shaped outlines about the origin (radii 0.5 to 1.5, angular steps at most 67
    // degrees, so their sides stay 0.41 from the centre) with a star-shaped opening
    // within 0.35.
    std::mt19937 hasard(20240612);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    auto etoile = [&](int n, double rmin, double rmax) {
        Trace t;
        for (int k = 0; k < n; ++k)
        {
            const double a = 2 * kPi * (k + 0.4 * (u(hasard) - 0.5)) / n;
            const double r = rmin + (rmax - rmin) * u(hasard);
            t.push_back({r * std::cos(a), r * std::sin(a)});
        }
        return t;
    };
    auto tourne = [](Trace t, int k) {
        std::rotate(t.begin(), t.begin() + k % t.size(), t.end());
        return t;
    };
    for (int essai = 0; essai < 50; ++essai)
    {
        SCOPED_TRACE(essai);
        const int n = 8 + (int)(40 * u(hasard));
        const Section s = {{etoile(n, 0.5, 1.5)}, {etoile(6 + n % 7, 0.1, 0.35)}};
        const CProprietesSection p = Calcule(s);
        const Section variantes[] = {
            {{tourne(s.contours[0], 3)}, {tourne(s.ouvertures[0], 2)}},
            {{Inverse(s.contours[0])}, {Inverse(s.ouvertures[0])}},
            Deplace(s, 0, 0, 0, 1e5, 2e5),
            Deplace({{Inverse(tourne(s.contours[0], 5))}, {tourne(s.ouvertures[0], 1)}}, 0, 0, 0, -3e4, 7e4),
        };
        const double dx[] = {0, 0, 1e5, -3e4}, dy[] = {0, 0, 2e5, 7e4};
        for (int v = 0; v < 4; ++v)
        {
            SCOPED_TRACE(v);
            const CProprietesSection q = Calcule(variantes[v]);
            const double tol = 1e-9, taille = std::sqrt(p.m_Aire), I = p.m_Axe1.I;
            EXPECT_NEAR(p.m_Aire, q.m_Aire, tol * p.m_Aire);
            EXPECT_NEAR(p.m_Xg, q.m_Xg - dx[v], tol * taille);
            EXPECT_NEAR(p.m_Yg, q.m_Yg - dy[v], tol * taille);
            EXPECT_NEAR(p.m_Ixy, q.m_Ixy, tol * I);
            // The axes, compared through twice the angle (an axis is a direction modulo 180).
            const double r = (p.m_Axe1.I - p.m_Axe2.I) / I;
            EXPECT_NEAR(std::cos(p.m_Angle * kPi / 90), std::cos(q.m_Angle * kPi / 90), tol / r);
            EXPECT_NEAR(std::sin(p.m_Angle * kPi / 90), std::sin(q.m_Angle * kPi / 90), tol / r);
            const CProprietesSection::Axe* a[] = {&p.m_AxeX, &p.m_AxeY, &p.m_Axe1, &p.m_Axe2};
            const CProprietesSection::Axe* b[] = {&q.m_AxeX, &q.m_AxeY, &q.m_Axe1, &q.m_Axe2};
            for (int k = 0; k < 4; ++k)
            {
                EXPECT_NEAR(a[k]->I, b[k]->I, tol * I);
                EXPECT_NEAR(a[k]->i, b[k]->i, tol * taille);
                // A flip of an axis's direction by 180 degrees swaps its two sides.
                const bool echange = k >= 2 && std::fabs(std::remainder(p.m_Angle - q.m_Angle, 360.0)) > 90;
                EXPECT_NEAR(a[k]->vPositif, echange ? b[k]->vNegatif : b[k]->vPositif, tol * taille / r);
                EXPECT_NEAR(a[k]->WNegatif, echange ? b[k]->WPositif : b[k]->WNegatif, tol * a[k]->WNegatif / r);
            }
            EXPECT_NEAR(p.m_PlastiqueX.position, q.m_PlastiqueX.position - dy[v], tol * taille);
            EXPECT_NEAR(p.m_PlastiqueY.position, q.m_PlastiqueY.position - dx[v], tol * taille);
            EXPECT_NEAR(p.m_PlastiqueX.W, q.m_PlastiqueX.W, tol * p.m_PlastiqueX.W);
            EXPECT_NEAR(p.m_PlastiqueY.W, q.m_PlastiqueY.W, tol * p.m_PlastiqueY.W);
            EXPECT_NEAR(p.m_Perimetre1, q.m_Perimetre1, tol * p.m_Perimetre1);
            EXPECT_NEAR(p.m_Perimetre2, q.m_Perimetre2, tol * p.m_Perimetre2);
            EXPECT_NEAR(p.m_Xmax - p.m_Xmin, q.m_Xmax - q.m_Xmin, tol * taille);
        }
    }
}

TEST(CProprietesSection, NoAreaGivesZeroAndClearsEarlierValues)
{
    CProprietesSection p = Calcule({{kCornier}, {}});
    ASSERT_GT(p.m_Aire, 0.0);
    const Section sansAire[] = {
        {{}, {}},
        {{{{0, 0}, {1, 0}}}, {}},                                       // two points only
        {{Rectangle(0, 0, 1, 1)}, {Inverse(Rectangle(0, 0, 1, 1))}},    // the opening is the section
        {{Rectangle(0, 0, 1, 1)}, {Rectangle(-1, -1, 2, 2)}},           // more opening than section
        {{{{0, 0}, {1, 0}, {1, std::nan("")}}}, {}},                    // not a number
        {{Rectangle(0, 0, 1, 1)}, {{{0.2, 0.2}, {0.5, HUGE_VAL}, {0.2, 0.5}}}},
    };
    for (const Section& s : sansAire)
    {
        EXPECT_EQ(0, Calcule(s, p));
        EXPECT_EQ(0.0, p.m_Aire);
        EXPECT_EQ(0.0, p.m_AxeX.I);
        EXPECT_EQ(0.0, p.m_PlastiqueX.W);
        EXPECT_EQ(0.0, p.m_Perimetre1);
        EXPECT_EQ(0.0, p.m_Xmax);
    }
    // A contour of two points beside a real one is left out, perimeter included.
    ASSERT_EQ(1, Calcule({{{{5, 5}, {6, 6}}, Rectangle(0, 0, 1, 2)}, {}}, p));
    EXPECT_NEAR(2.0, p.m_Aire, 1e-15);
    EXPECT_NEAR(6.0, p.m_Perimetre1, 1e-15);
    EXPECT_EQ(1.0, p.m_Xmax);
}
