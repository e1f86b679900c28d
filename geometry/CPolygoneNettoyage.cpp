// The point clean-ups of a contour: repeated points, spikes and aligned points.
#include "geometry/CPolygone.h"
#include "geometry/GeometrieInterne.h"

#include <cmath>

using namespace prefa_geometrie;

int CPolygone::PointsIdentiques(int bSupprime, double tol)
{
    if (m_Points.GetCount() < 2)
        return 0;
    auto identiques = [tol](const CPointD& a, const CPointD& b) {
        if (tol == 0.0)
            return std::fabs(a.x - b.x) < TOL_COORDONNEE && std::fabs(a.y - b.y) < TOL_COORDONNEE;
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
    const double seuilAligne = tol == 0.0 ? 0.0 : std::fabs(std::sin(tol * PI / 180.0));
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
                supprime = tol == 0.0 ? std::fabs(c) < TOL_COORDONNEE : std::fabs(c) <= seuilAligne;
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
