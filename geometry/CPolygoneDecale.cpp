// Offsetting of a contour: one distance for every side or one per side. The steps:
// the contour turned counter-clockwise, its sides moved, the raw offset contour joined
// from them, cut into simple pieces, the pieces too close to the contour dropped, the
// rest clipped with the contour, and the largest piece kept.
#include "geometry/AireSignee.h"
#include "geometry/CListePolygone.h"
#include "geometry/GeometrieInterne.h"
#include "geometry/Routines.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

using namespace prefa_geometrie;

namespace
{
// Two sides whose offset lines turn by less than this (degrees) are taken as parallel.
const double kTourParallele = 0.001;

double Aire(const std::vector<CPointD>& pts)
{
    AireSignee aire;
    for (const CPointD& p : pts)
        aire.Ajoute(p.x, p.y);
    return aire.Valeur();
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

// The contour and its distances, counter-clockwise. Reversed, side i of the new order
// is old side n-2-i run backwards, so its distance changes sign to keep moving the
// same way.
void SensDirect(std::vector<CPointD>& pts, std::vector<double>& dist)
{
    if (!(Aire(pts) < 0.0))
        return;
    const std::size_t n = pts.size();
    std::reverse(pts.begin(), pts.end());
    std::vector<double> d(n);
    for (std::size_t j = 0; j < n; ++j)
        d[j] = -dist[(2 * n - 2 - j) % n];
    dist.swap(d);
}

// The raw offset contour: new vertex i joins offset side i-1 to offset side i.
// parallele tells whether a step between parallel sides was met.
CPolygone ContourBrut(const std::vector<CPointD>& pts, const std::vector<double>& dist, bool& parallele)
{
    const std::size_t n = pts.size();
    std::vector<CVecteur> cotes(n);
    for (std::size_t i = 0; i < n; ++i)
    {
        cotes[i] = CVecteur(pts[i], pts[(i + 1) % n]);
        cotes[i].Decalage(dist[i]);
    }
    CPolygone brut;
    parallele = false;
    for (std::size_t i = 0; i < n; ++i)
    {
        const std::size_t h = (i + n - 1) % n;
        const CVecteur& prec = cotes[h];
        const CVecteur& suiv = cotes[i];
        double tour = suiv.angle_d(0) - prec.angle_d(0);
        if (tour < 0.0)
            tour += 360.0;
        const bool prolonge = tour <= kTourParallele || tour >= 360.0 - kTourParallele;
        const bool retour = std::fabs(tour - 180.0) <= kTourParallele;
        if (prolonge && std::fabs(dist[h] - dist[i]) <= TOL_COORDONNEE)
        {
            brut.AddTail((prec.ext.x + suiv.org.x) / 2.0, (prec.ext.y + suiv.org.y) / 2.0);
            continue;
        }
        int code = 0;
        CPointD p;
        if (!prolonge && !retour)
            p = prec.Intersection(suiv, TOL_COORDONNEE, &code);
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
    return brut;
}

// The raw contour cleaned and cut at its crossings into simple counter-clockwise
// pieces, the loops that run backwards dropped.
void Morceaux(CPolygone& brut, bool parallele, CListePolygone& morceaux)
{
    brut.PointsIdentiques(1, 0.0);
    brut.EliminePointSingulier(0, 0.0);
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
}

// Drops the pieces that come closer to the contour than the distance (when there is
// one distance for every side; nothing to check otherwise).
void FiltreDistance(const ControleDistance* controle, CListePolygone& l)
{
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
}

// Each piece intersected with the contour (every distance inwards) or united with it
// (every distance outwards); with mixed signs, or when the clipping refuses, the piece
// as it is.
void Rogne(CListePolygone& morceaux, CPolygone& original, const std::vector<double>& dist, int mode,
           CListePolygone& resultat)
{
    const bool interieur = std::all_of(dist.begin(), dist.end(), [](double v) { return v >= 0.0; });
    const bool exterieur = std::all_of(dist.begin(), dist.end(), [](double v) { return v <= 0.0; });
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
}

// The piece of largest area, or null when there is none.
const CPolygone* PlusGrand(CListePolygone& l)
{
    const CPolygone* garde = nullptr;
    double aireMax = 0.0;
    for (POSITION pos = l.GetHeadPosition(); pos;)
    {
        CPolygone* m = l.GetNext(pos);
        const double a = std::fabs(m->Surface(false));
        if (garde == nullptr || a > aireMax)
        {
            garde = m;
            aireMax = a;
        }
    }
    return garde;
}
} // namespace

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
    SensDirect(pts, dist);

    bool parallele = false;
    CPolygone brut = ContourBrut(pts, dist, parallele);
    CListePolygone morceaux;
    Morceaux(brut, parallele, morceaux);

    // With one distance for every side, the pieces too close to the contour go,
    // before the clipping and again after it (a piece that left the contour comes
    // back from the clipping with vertices on its sides).
    const bool uniforme = std::all_of(dist.begin(), dist.end(), [&](double v) { return v == dist.front(); });
    std::unique_ptr<ControleDistance> controle;
    if (uniforme && dist.front() != 0.0)
        controle.reset(new ControleDistance(pts, dist.front()));
    FiltreDistance(controle.get(), morceaux);

    CPolygone original;
    for (const CPointD& p : pts)
        original.AddTail(p.x, p.y);
    CListePolygone resultat;
    Rogne(morceaux, original, dist, mode, resultat);
    FiltreDistance(controle.get(), resultat);

    const CPolygone* garde = PlusGrand(resultat);
    Delete();
    if (garde)
        CopiePoints(*garde);
    Invalide();
    return 0;
}
