// Offsetting of a contour and the point clean-ups it needs.
#include "geometry/CListePolygone.h"
#include "geometry/Routines.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace
{
const double kPi = 3.141592653589793;
// Two sides whose offset lines turn by less than this (degrees) are taken as parallel.
const double kTourParallele = 0.001;

// Signed shoelace area of an open point sequence (positive counter-clockwise).
double AireSignee(const std::vector<CPointD>& pts)
{
    double aire = 0.0;
    const std::size_t n = pts.size();
    for (std::size_t i = 0; i < n; ++i)
    {
        const CPointD& a = pts[i];
        const CPointD& b = pts[(i + 1) % n];
        aire -= (b.x - a.x) * (a.y + b.y) / 2.0;
    }
    return aire;
}

// Squared distance from (px, py) to the segment a-b.
double Distance2Segment(double px, double py, const CPointD& a, const CPointD& b)
{
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double l2 = dx * dx + dy * dy;
    double t = l2 > 0.0 ? ((px - a.x) * dx + (py - a.y) * dy) / l2 : 0.0;
    t = std::max(0.0, std::min(1.0, t));
    const double ex = a.x + t * dx - px, ey = a.y + t * dy - py;
    return ex * ex + ey * ey;
}

// Whether every vertex of the piece keeps at least the distance d (less a rounding
// margin) from every side of the contour. Cutting a raw offset at its crossings and
// dropping the loops that run backwards leaves, around short sides and sharp
// corners, a few loops that run forwards yet lie too close to the contour (or out
// of it); this finds them. Sides are sorted on their lower x so that each vertex
// only looks at the sides within reach.
class ControleDistance
{
public:
    ControleDistance(const std::vector<CPointD>& pts, double d) : m_pts(pts), m_d(std::fabs(d))
    {
        const std::size_t n = pts.size();
        m_cotes.resize(n);
        for (std::size_t i = 0; i < n; ++i)
        {
            const CPointD& a = pts[i];
            const CPointD& b = pts[(i + 1) % n];
            m_cotes[i] = {std::min(a.x, b.x), i};
            m_largeur = std::max(m_largeur, std::fabs(b.x - a.x));
        }
        std::sort(m_cotes.begin(), m_cotes.end());
    }

    bool Respecte(const CPolygone& piece) const
    {
        const double marge = m_d - 1e-9 * (1.0 + m_d);
        const double marge2 = marge > 0.0 ? marge * marge : 0.0;
        const std::size_t n = m_pts.size();
        for (POSITION pos = piece.GetHeadPosition(); pos;)
        {
            const CPointD v = piece.GetPointNext(pos);
            auto it = std::lower_bound(m_cotes.begin(), m_cotes.end(),
                                       std::make_pair(v.x - m_d - m_largeur, (std::size_t)0));
            for (; it != m_cotes.end() && it->first <= v.x + m_d; ++it)
            {
                const std::size_t i = it->second;
                if (Distance2Segment(v.x, v.y, m_pts[i], m_pts[(i + 1) % n]) < marge2)
                    return false;
            }
        }
        return true;
    }

private:
    const std::vector<CPointD>& m_pts;
    double m_d;
    double m_largeur = 0.0;
    std::vector<std::pair<double, std::size_t>> m_cotes;
};
} // namespace

int CPolygone::PointsIdentiques(int bSupprime, double tol)
{
    if (m_Points.GetCount() < 2)
        return 0;
    auto identiques = [tol](const CPointD& a, const CPointD& b) {
        if (tol == 0.0)
            return std::fabs(a.x - b.x) < 1e-10 && std::fabs(a.y - b.y) < 1e-10;
        return a.distance_p(b) <= tol;
    };
    int resultat = 0;
    POSITION pos = m_Points.GetHeadPosition();
    const CPointD* reference = m_Points.GetNext(pos);
    while (pos)
    {
        POSITION posP = pos;
        CPointD* p = m_Points.GetNext(pos);
        if (identiques(*reference, *p))
        {
            resultat = 1;
            if (bSupprime && !p->marque)
            {
                RemoveAt(posP);
                delete p;
                continue;
            }
        }
        reference = p;
    }
    // The closing pair: the tail goes (it repeats the start callers see), unless it
    // is marked, in which case the head goes unless it is marked too.
    if (m_Points.GetCount() >= 2 && identiques(*m_Points.GetTail(), *m_Points.GetHead()))
    {
        resultat = 1;
        if (bSupprime)
        {
            if (!m_Points.GetTail()->marque)
            {
                CPointD* p = m_Points.GetTail();
                RemoveAt(m_Points.GetTailPosition());
                delete p;
            }
            else if (!m_Points.GetHead()->marque)
            {
                CPointD* p = m_Points.GetHead();
                RemoveAt(m_Points.GetHeadPosition());
                delete p;
            }
        }
    }
    return resultat;
}

void CPolygone::EliminePointSingulier(int mode, double tol)
{
    if (m_Points.GetCount() < 3)
        return;
    Invalide();
    const double seuilAligne = tol == 0.0 ? 0.0 : std::fabs(std::sin(tol * kPi / 180.0));
    const CPointD* A = m_Points.GetTail();
    POSITION pos = m_Points.GetHeadPosition();
    while (pos && m_Points.GetCount() >= 3)
    {
        POSITION posP = pos;
        CPointD* P = m_Points.GetNext(pos);
        // A marked point is left alone and does not become the next predecessor.
        if (P->marque || P == A)
            continue;
        const CPointD* B = pos ? m_Points.GetAt(pos) : m_Points.GetHead();
        bool supprime = *P == *A;
        if (!supprime)
        {
            const CVecteur AP(*A, *P), PB(*P, *B);
            if (mode == 0)
            {
                double tour = PB.angle_d(0) - AP.angle_d(0);
                while (tour > 360.0)
                    tour -= 360.0;
                while (tour < 0.0)
                    tour += 360.0;
                if (std::fabs(tour - 180.0) <= tol)
                {
                    // A spike: P goes onto the longer side's line, at the foot of the
                    // other neighbour, which cuts the spike off.
                    const CPointD q = AP.longueur() >= PB.longueur() ? AP.PointProjeteOrtho(*B, 1)
                                                                     : PB.PointProjeteOrtho(*A, 1);
                    P->x = q.x;
                    P->y = q.y;
                }
            }
            else
            {
                // Unnormalised cross product, on purpose.
                const double c = AP ^ PB;
                supprime = tol == 0.0 ? std::fabs(c) < 1e-10 : std::fabs(c) <= seuilAligne;
            }
        }
        if (supprime)
        {
            RemoveAt(posP);
            delete P;
            continue;
        }
        A = P;
    }
}

void CPolygone::EliminePointAligne(double tol)
{
    if (m_Points.GetCount() < 3)
        return;
    EliminePointSingulier(1, tol);
}

int CPolygone::Decale(double d, int mode)
{
    std::vector<double> distances((std::size_t)m_Points.GetCount(), d);
    CPtrList liste;
    for (double& v : distances)
        liste.AddTail(&v);
    return Decale(&liste, mode);
}

int CPolygone::Decale(CPtrList* distances, int mode)
{
    const INT_PTR n = m_Points.GetCount();
    if (n < 3 || distances == nullptr || distances->GetCount() != n || PointsIdentiques(0, 0.0))
        return 1;
    Invalide();

    std::vector<double> dist;
    dist.reserve((std::size_t)n);
    for (POSITION pos = distances->GetHeadPosition(); pos;)
        dist.push_back(*static_cast<const double*>(distances->GetNext(pos)));
    std::vector<CPointD> pts;
    pts.reserve((std::size_t)n);
    for (POSITION pos = m_Points.GetHeadPosition(); pos;)
        pts.push_back(*m_Points.GetNext(pos));

    // A clockwise contour is worked counter-clockwise: reversed, side i of the new
    // order is old side n-2-i run backwards, so its distance changes sign to keep
    // moving the same way.
    if (AireSignee(pts) < 0.0)
    {
        std::vector<CPointD> inverse(pts.rbegin(), pts.rend());
        std::vector<double> d2((std::size_t)n);
        for (INT_PTR j = 0; j < n; ++j)
            d2[(std::size_t)j] = -dist[(std::size_t)((2 * n - 2 - j) % n)];
        pts.swap(inverse);
        dist.swap(d2);
    }
    bool interieur = true, exterieur = true;
    for (double v : dist)
    {
        interieur = interieur && v >= 0.0;
        exterieur = exterieur && v <= 0.0;
    }

    CPolygone original;
    for (const CPointD& p : pts)
        original.AddTail(new CPointD(p));

    std::vector<CVecteur> cotes((std::size_t)n);
    for (std::size_t i = 0; i < (std::size_t)n; ++i)
    {
        cotes[i] = CVecteur(pts[i], pts[(i + 1) % (std::size_t)n]);
        cotes[i].Decalage(dist[i]);
    }

    // New vertex i joins offset side i-1 to offset side i.
    CPolygone brut;
    bool parallele = false;
    for (std::size_t i = 0; i < (std::size_t)n; ++i)
    {
        const std::size_t h = (i + (std::size_t)n - 1) % (std::size_t)n;
        const CVecteur& prec = cotes[h];
        const CVecteur& suiv = cotes[i];
        double tour = suiv.angle_d(0) - prec.angle_d(0);
        if (tour < 0.0)
            tour += 360.0;
        const bool prolonge = tour <= kTourParallele || tour >= 360.0 - kTourParallele;
        const bool retour = std::fabs(tour - 180.0) <= kTourParallele;
        if (prolonge && std::fabs(dist[h] - dist[i]) <= 1e-10)
        {
            brut.AddTail((prec.ext.x + suiv.org.x) / 2.0, (prec.ext.y + suiv.org.y) / 2.0);
            continue;
        }
        int code = 0;
        CPointD p;
        if (!prolonge && !retour)
            p = prec.Intersection(suiv, 1e-10, &code);
        if (code == 0)
        {
            // A step between parallel sides: a short connecting side.
            brut.AddTail(prec.ext.x, prec.ext.y);
            brut.AddTail(suiv.org.x, suiv.org.y);
            parallele = true;
        }
        else
            brut.AddTail(p.x, p.y);
    }
    brut.PointsIdentiques(1, 0.0);
    brut.EliminePointSingulier(0, 0.0);

    CListePolygone morceaux;
    if (brut.GetCount() >= 3)
    {
        const double aireBrute = brut.Surface(false);
        const int coupe = morceaux.RendRegulier(brut, 1);
        // A simple offset that runs backwards has crossed over itself as a whole:
        // the contour was narrower than twice the distance.
        if (!coupe && aireBrute <= 0.0)
            morceaux.Delete();
    }
    if (parallele)
    {
        for (POSITION pos = morceaux.GetHeadPosition(); pos;)
            morceaux.GetNext(pos)->EliminePointSingulier(0, 1.5);
    }
    // With one distance for every side, the pieces too close to the contour go,
    // before the clipping and again after it (a piece that left the contour comes
    // back from the clipping with vertices on its sides).
    bool uniforme = true;
    for (double v : dist)
        uniforme = uniforme && v == dist.front();
    std::unique_ptr<ControleDistance> controle;
    if (uniforme && dist.front() != 0.0)
        controle.reset(new ControleDistance(pts, dist.front()));
    auto filtre = [&controle](CListePolygone& l) {
        if (!controle)
            return;
        for (POSITION pos = l.GetHeadPosition(); pos;)
        {
            POSITION courante = pos;
            CPolygone* m = l.GetNext(pos);
            if (!controle->Respecte(*m))
            {
                l.RemoveAt(courante);
                delete m;
            }
        }
    };
    filtre(morceaux);

    CListePolygone resultat;
    for (POSITION pos = morceaux.GetHeadPosition(); pos;)
    {
        CPolygone* m = morceaux.GetNext(pos);
        int r = -1;
        if (interieur)
            r = resultat.PolyClipping(0, *m, original, CLIPPING_INTERSECTION, mode);
        else if (exterieur)
            r = resultat.PolyClipping(0, *m, original, CLIPPING_UNION, mode);
        if (r < 0 && m->GetCount() >= 3)
            resultat.AddTail(new CPolygone(*m));
    }

    filtre(resultat);
    const CPolygone* garde = nullptr;
    double aireMax = 0.0;
    for (POSITION pos = resultat.GetHeadPosition(); pos;)
    {
        CPolygone* m = resultat.GetNext(pos);
        const double a = std::fabs(m->Surface(false));
        if (garde == nullptr || a > aireMax)
        {
            garde = m;
            aireMax = a;
        }
    }
    Delete();
    if (garde)
        CopiePoints(*garde);
    Invalide();
    return 0;
}
