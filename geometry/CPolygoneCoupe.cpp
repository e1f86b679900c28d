// A contour cut by a line, and horizontal distances between contours.
#include "geometry/CListePolygone.h"
#include "geometry/GeometrieInterne.h"
#include "geometry/Routines.h"

#include <algorithm>
#include <cmath>
#include <vector>

using namespace prefa_geometrie;

int CPolygone::IntersectionPolygoneVecteur(const CVecteur& v, CList<CVecteur, CVecteur&>* segments,
                                           int bSegment)
{
    const std::size_t n = (std::size_t)m_Points.GetCount();
    const double L = v.longueur();
    if (n < 3 || L < TOL_COORDONNEE)
        return 0;
    const double ux = v.dx() / L, uy = v.dy() / L;
    const double ox = v.org.x, oy = v.org.y;

    // Signed distance s of each vertex to the line and abscissa t along it.
    std::vector<double> s(n), t(n);
    CArray<ptD, ptD> contour;
    contour.Vector().reserve(n);
    std::size_t i = 0;
    for (POSITION pos = m_Points.GetHeadPosition(); pos; ++i)
    {
        const CPointD* p = m_Points.GetNext(pos);
        s[i] = ux * (p->y - oy) - uy * (p->x - ox);
        t[i] = ux * (p->x - ox) + uy * (p->y - oy);
        contour.Add(ptD{p->x, p->y});
    }
    // The line's parts change between inside and outside only where it meets a
    // vertex or crosses a side.
    std::vector<double> coupures;
    for (i = 0; i < n; ++i)
    {
        const std::size_t j = (i + 1) % n;
        if (std::fabs(s[i]) <= TOL_COORDONNEE)
            coupures.push_back(t[i]);
        if ((s[i] > TOL_COORDONNEE && s[j] < -TOL_COORDONNEE) || (s[i] < -TOL_COORDONNEE && s[j] > TOL_COORDONNEE))
            coupures.push_back(t[i] + (t[j] - t[i]) * s[i] / (s[i] - s[j]));
    }
    if (bSegment)
    {
        coupures.erase(std::remove_if(coupures.begin(), coupures.end(),
                                      [L](double x) { return x < 0.0 || x > L; }),
                       coupures.end());
        coupures.push_back(0.0);
        coupures.push_back(L);
    }
    std::sort(coupures.begin(), coupures.end());
    coupures.erase(std::unique(coupures.begin(), coupures.end(),
                               [](double a, double b) { return b - a <= TOL_COORDONNEE; }),
                   coupures.end());

    auto point = [&](double x) { return CPointD(ox + x * ux, oy + x * uy); };
    int nombre = 0;
    bool ouvert = false;
    double debut = 0.0;
    for (std::size_t k = 0; k + 1 < coupures.size(); ++k)
    {
        const double a = coupures[k], b = coupures[k + 1];
        const CPointD m = point((a + b) / 2.0);
        const bool dedans = AppartientAContour(contour, ptD{m.x, m.y}) >= 0;
        if (dedans && !ouvert)
        {
            debut = a;
            ouvert = true;
        }
        // A part ends where the next interval leaves the contour.
        if (ouvert && (!dedans || k + 2 == coupures.size()))
        {
            const double fin = dedans ? b : a;
            CVecteur seg(point(debut), point(fin));
            if (segments)
                segments->AddTail(seg);
            ++nombre;
            ouvert = false;
        }
    }
    return nombre;
}

int CPolygone::DistanceAxeXPolygone(const CPolygone& q, double* distance, int bAbsolu)
{
    if (m_Points.IsEmpty() || q.GetCount() < 2)
        return -1;
    std::vector<CVecteur> cotes;
    for (POSITION pos = q.GetHeadPosition(); pos;)
    {
        const CPointD a = q.GetPointNext(pos);
        cotes.emplace_back(a, pos ? q.GetPointAt(pos) : q.GetPointHead());
    }
    double meilleur = 1e10;
    bool trouve = false;
    for (POSITION pos = m_Points.GetHeadPosition(); pos;)
    {
        const CPointD* p = m_Points.GetNext(pos);
        const CVecteur horizontale(-1e8, p->y, 1e8, p->y);
        for (const CVecteur& c : cotes)
        {
            int code = 0;
            const CPointD x = horizontale.Intersection(c, TOL_COORDONNEE, &code);
            if (code != 2 && code != 3)
                continue;
            const double valeur = x.x - p->x;
            if (bAbsolu ? std::fabs(valeur) < std::fabs(meilleur) : valeur < meilleur)
            {
                meilleur = valeur;
                trouve = true;
            }
        }
    }
    if (!trouve)
        return -1;
    *distance = meilleur;
    return 0;
}

int CPolygone::DistanceHorzPolygone(const CPolygone& q, double* distance)
{
    CPolygone a(*this), b(q);
    CListePolygone commun;
    if (commun.PolyClipping(0, a, b, CLIPPING_INTERSECTION, 0) > 0)
    {
        *distance = 0.0;
        return 1;
    }
    double d1 = 0.0, d2 = 0.0;
    const bool r1 = a.DistanceAxeXPolygone(b, &d1, 1) == 0;
    const bool r2 = b.DistanceAxeXPolygone(a, &d2, 1) == 0;
    if (!r1 && !r2)
        return -1;
    if (r1 && r2)
        *distance = std::min(std::fabs(d1), std::fabs(d2));
    else
        *distance = std::fabs(r1 ? d1 : d2);
    return 0;
}
