// Self-intersection of a contour: detection (Regulier) and the cut into two loops
// (EclatePolygone).
#include "geometry/CPolygone.h"
#include "geometry/GeometrieInterne.h"

#include <algorithm>
#include <utility>
#include <vector>

using namespace prefa_geometrie;

namespace
{
// Boxes of sides further apart than this cannot give a crossing: the intersection
// test accepts points up to 1e-7 beyond a segment's box.
const double kMargeBoite = 1e-6;

struct Boite
{
    double xmin, xmax, ymin, ymax;
};
} // namespace

int CPolygone::Regulier(CPointD* inter, POSITION* pos1, POSITION* pos2)
{
    const std::size_t n = (std::size_t)m_Points.GetCount();
    if (n < 3)
        return 0;
    if (n > 3)
    {
        std::vector<POSITION> positions;
        std::vector<CVecteur> cotes;
        positions.reserve(n);
        cotes.reserve(n);
        for (POSITION pos = m_Points.GetHeadPosition(); pos;)
        {
            positions.push_back(pos);
            const CPointD* a = m_Points.GetNext(pos);
            const CPointD* b = pos ? m_Points.GetAt(pos) : m_Points.GetHead();
            cotes.emplace_back(*a, *b);
        }
        std::vector<Boite> boites(n);
        for (std::size_t i = 0; i < n; ++i)
        {
            const CVecteur& c = cotes[i];
            boites[i] = {std::min(c.org.x, c.ext.x) - kMargeBoite, std::max(c.org.x, c.ext.x) + kMargeBoite,
                         std::min(c.org.y, c.ext.y) - kMargeBoite, std::max(c.org.y, c.ext.y) + kMargeBoite};
        }
        // Sort and sweep on x gives the pairs of sides whose boxes overlap; they are
        // then tried in side order so that the first crossing is the one reported.
        std::vector<std::size_t> ordre(n);
        for (std::size_t i = 0; i < n; ++i)
            ordre[i] = i;
        std::sort(ordre.begin(), ordre.end(),
                  [&](std::size_t a, std::size_t b) { return boites[a].xmin < boites[b].xmin; });
        std::vector<std::pair<std::size_t, std::size_t>> paires;
        for (std::size_t k = 0; k < n; ++k)
        {
            const std::size_t i = ordre[k];
            const Boite& bi = boites[i];
            for (std::size_t l = k + 1; l < n && boites[ordre[l]].xmin <= bi.xmax; ++l)
            {
                const std::size_t j = ordre[l];
                const Boite& bj = boites[j];
                if (bj.ymin > bi.ymax || bi.ymin > bj.ymax)
                    continue;
                const std::size_t a = std::min(i, j), b = std::max(i, j);
                if (b == a + 1 || (a == 0 && b == n - 1))
                    continue; // adjacent sides share a vertex
                paires.emplace_back(a, b);
            }
        }
        std::sort(paires.begin(), paires.end());
        for (const auto& pr : paires)
        {
            int code = 0;
            const CPointD p = cotes[pr.first].Intersection(cotes[pr.second], TOL_COORDONNEE, &code);
            if (code == 3)
            {
                if (inter)
                    *inter = p;
                if (pos1)
                    *pos1 = positions[pr.first];
                if (pos2)
                    *pos2 = positions[pr.second];
                return 2;
            }
        }
    }
    if (m_bDimsValides)
        return m_Surface > 0.0 ? 0 : 1;
    RecalculDim(true);
    return m_Surface > 0.0 ? 0 : 1;
}

int CPolygone::EclatePolygone(CPolygone* a, CPolygone* b)
{
    CPointD I;
    POSITION pos1 = nullptr, pos2 = nullptr;
    if (Regulier(&I, &pos1, &pos2) != 2)
        return 0;
    // I goes in after each crossing side, that is before the node that follows it
    // (the head, for the closing side).
    auto insereApres = [this, &I](POSITION pos) {
        POSITION suivant = pos;
        m_Points.GetNext(suivant);
        return InsertBefore(suivant ? suivant : m_Points.GetHeadPosition(), new CPointD(I.x, I.y));
    };
    POSITION i1 = insereApres(pos1);
    POSITION i2 = insereApres(pos2);

    // From one inserted I round the contour to the other. When a vertex of the
    // contour is itself the crossing (the contour touches itself there), the copies
    // of I that follow each other are kept once, so that the loop does not stop at
    // that vertex and the part beyond it is not lost.
    auto boucle = [this, &I](POSITION depart, POSITION fin, CPolygone* cible) {
        bool precedentEstI = false;
        for (POSITION pos = depart; pos != fin;)
        {
            const CPointD* p = m_Points.GetNext(pos);
            if (pos == nullptr)
                pos = m_Points.GetHeadPosition();
            const bool estI = *p == I;
            if (estI && precedentEstI)
                continue;
            precedentEstI = estI;
            if (cible)
                cible->AddTail(new CPointD(*p));
        }
        if (cible)
        {
            if (cible->GetCount() > 1 && cible->GetPointTail() == I && cible->GetPointHead() == I)
                delete cible->m_Points.RemoveTail();
            cible->RecalculDim(false);
        }
    };
    boucle(i1, i2, a);
    boucle(i2, i1, b);
    return 1;
}
