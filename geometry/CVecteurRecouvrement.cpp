// Overlap and union of two (nearly) collinear segments.
#include "geometry/CVecteur.h"
#include "geometry/GeometrieInterne.h"

#include <algorithm>
#include <cmath>

using namespace prefa_geometrie;

namespace
{

void Retourne(CVecteur& v)
{
    const CPointD t(v.org);
    v.org = v.ext;
    v.ext = t;
}

} // namespace

// angleTol is in degrees, like every angle of the library.
int CVecteur::VecteurIntersection(const CVecteur& w, CVecteur* result, int bPoint,
                                  double angleTol, double tolA, double tolB) const
{
    const double croix = w.dy() * dx() - w.dx() * dy();
    if (angleTol == 0.0)
    {
        if (std::fabs(croix) > TOL_COORDONNEE)
            return 0;
    }
    else
    {
        const double produit = longueur() * w.longueur();
        if (produit < TOL_COORDONNEE || std::fabs(croix) / produit > std::fabs(dsin(angleTol)))
            return 0;
    }

    if (*this == w)
    {
        *result = w;
        return 1;
    }

    CVecteur copie(w);
    if (*this * w < 0.0)
        Retourne(copie);

    const double tolPoint = angleTol == 0.0 ? TOL_COORDONNEE : tolA;
    const double tolLigne = tolB == -1.0 ? TOL_COORDONNEE : tolB;
    CVecteur r;
    bool origine = false;
    bool extremite = false;
    if (AppartientAVecteur(copie.org, tolPoint, tolLigne))
    {
        r.org = copie.org;
        origine = true;
    }
    if (AppartientAVecteur(copie.ext, tolPoint, tolLigne))
    {
        r.ext = copie.ext;
        extremite = true;
    }
    if (copie.AppartientAVecteur(org, tolPoint, tolLigne))
    {
        r.org = org;
        origine = true;
    }
    if (copie.AppartientAVecteur(ext, tolPoint, tolLigne))
    {
        r.ext = ext;
        extremite = true;
    }
    if (!origine || !extremite)
        return 0;
    // A single shared point is an overlap only when the caller asks for points.
    if (!bPoint && r.org == r.ext)
        return 0;
    *result = r;
    return 1;
}

int CVecteur::VecteurUnion(const CVecteur& w, CVecteur* result, double tol) const
{
    if (!superposition_elements(std::min(org.x, ext.x), std::min(org.y, ext.y),
                                std::max(org.x, ext.x), std::max(org.y, ext.y),
                                std::min(w.org.x, w.ext.x), std::min(w.org.y, w.ext.y),
                                std::max(w.org.x, w.ext.x), std::max(w.org.y, w.ext.y), tol))
        return 0;

    CVecteur copie(w);
    if (*this * w < 0.0)
        Retourne(copie);
    if (*this == copie)
    {
        *result = copie;
        return 1;
    }

    const CPointD po = PointProjeteOrtho(copie.org, 1);
    const CPointD pe = PointProjeteOrtho(copie.ext, 1);
    if (std::max(copie.org.distance_p(po), copie.ext.distance_p(pe)) > tol)
        return 0;
    copie.org.s_xy(po.x, po.y);
    copie.ext.s_xy(pe.x, pe.y);

    CVecteur recouvrement;
    if (!VecteurIntersection(copie, &recouvrement, 1, 0.01, 0.001, -1.0))
        return 0;

    // Where the overlap starts at our own origin, the copy reaches further back and
    // gives the union's origin; otherwise ours does. Likewise at the extremity.
    CVecteur r;
    r.org = recouvrement.org == org ? copie.org : org;
    r.ext = recouvrement.ext == ext ? copie.ext : ext;
    if (r * *this < 0.0)
        Retourne(r);
    *result = r;
    return 1;
}
