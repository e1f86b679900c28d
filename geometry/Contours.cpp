// Containment, area and clean-up on the callers' point containers.
#include "geometry/AireSignee.h"
#include "geometry/GeometrieInterne.h"

#include <cmath>

using namespace prefa_geometrie;

int AppartientAContour(const CArray<ptD, ptD>& contour, const ptD& p)
{
    const INT_PTR n = contour.GetSize();
    if (n == 0)
        return -1;
    const ptD* c = contour.GetData();
    const double tol = TOL_CONTENU;
    int parite = 0;
    for (INT_PTR i = 0; i < n; ++i)
    {
        const ptD& a = c[i];
        const ptD& b = c[i + 1 < n ? i + 1 : 0];
        const int cote = (int)i + 1;
        if (std::fabs(b.y - a.y) > tol)
        {
            const ptD& bas = a.y < b.y ? a : b;
            const ptD& haut = a.y < b.y ? b : a;
            // The lower end is never counted, so that a vertex crossed by the ray
            // is counted once, by the edge that ends there from below.
            if (std::fabs(p.y - bas.y) <= tol)
            {
                if (std::fabs(p.x - bas.x) <= tol)
                    return cote;
                continue;
            }
            if (p.y > bas.y && p.y <= haut.y + tol)
            {
                double xi = 0.0;
                double yi = 0.0;
                if (Donne_Intersection(a.x, a.y, b.x, b.y, 1e10, p.y, -1e10, p.y, &xi, &yi,
                                       tol) == 0)
                    continue;
                if (std::fabs(xi - p.x) <= tol)
                    return cote;
                if (xi < p.x)
                    parite ^= 1;
            }
        }
        else if (std::fabs(p.y - a.y) <= tol)
        {
            double xp = 0.0;
            double yp = 0.0;
            if (Projection_Point_Sur_Droite(a.x, a.y, b.x, b.y, p.x, p.y, &xp, &yp))
                return cote;
        }
    }
    return parite ? 0 : -1;
}

double Surface_Contour_Polygone(const l2ch_descrip* liste)
{
    if (!liste)
        return 0.0;
    prefa_geometrie::AireSignee aire;
    for (const L_POINT* n = liste->tete; n; n = n->suivant)
    {
        aire.Ajoute(n->x, n->y);
        if (n == liste->queue)
            break;
    }
    return aire.Valeur();
}

namespace
{

// p is aligned with its neighbours when it lies within tol of the line from a to b
// and between them (its projection falls on [a, b], within tol): a spike that goes
// out and comes back is not aligned, a point repeated on a neighbour is.
bool Aligne(const L_POINT* a, const L_POINT* p, const L_POINT* b, double tol)
{
    const double dx = b->x - a->x;
    const double dy = b->y - a->y;
    const double ux = p->x - a->x;
    const double uy = p->y - a->y;
    const double longueur = std::sqrt(dx * dx + dy * dy);
    if (longueur <= tol)
        return std::sqrt(ux * ux + uy * uy) <= tol;
    if (std::fabs(ux * dy - uy * dx) / longueur > tol)
        return false;
    const double abscisse = (ux * dx + uy * dy) / longueur;
    return abscisse >= -tol && abscisse <= longueur + tol;
}

} // namespace

int sup_point_aligne(l2ch_descrip* liste, double tol)
{
    if (!liste)
        return 0;
    int n = l2ch_Compte(liste);
    if (n < 3)
        return n;
    if (tol < TOL_COORDONNEE)
        tol = TOL_COORDONNEE;

    L_POINT* p = liste->tete;
    int intacts = 0; // points examined in a row without a removal
    while (n >= 3 && intacts < n)
    {
        L_POINT* avant = p->precedent ? p->precedent : liste->queue;
        L_POINT* apres = p->suivant ? p->suivant : liste->tete;
        if (Aligne(avant, p, apres, tol))
        {
            l2ch_Supprime(liste, p);
            --n;
            intacts = 0;
            // The previous point has a new neighbour: look at it again.
            p = avant;
        }
        else
        {
            ++intacts;
            p = apres;
        }
    }
    return n;
}
