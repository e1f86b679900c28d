#include "geometry/CRepere.h"

IMPLEMENT_SERIAL(CRepere, CObject, 1)

CRepere::CRepere() : rotx(0.0), roty(0.0), Echelle(0.0) {}

CRepere::CRepere(const CPointD& origin_, double rotx_, double roty_,
                 const CVecteur& diagonale, double echelle)
    : origin(origin_), rotx(rotx_), roty(roty_), Diagonale(diagonale), Echelle(echelle)
{
}

CRepere::CRepere(const CRepere& r)
    : CObject(), origin(r.origin), rotx(r.rotx), roty(r.roty), Diagonale(r.Diagonale),
      Echelle(r.Echelle)
{
}

CRepere::~CRepere() = default;

CRepere& CRepere::operator=(const CRepere& r)
{
    InitRepere(r.origin, r.rotx, r.roty, r.Diagonale, r.Echelle);
    return *this;
}

void CRepere::InitRepere(const CPointD& origin_, double rotx_, double roty_,
                         const CVecteur& diagonale, double echelle)
{
    origin = origin_;
    rotx = rotx_;
    roty = roty_;
    Diagonale = diagonale;
    Echelle = echelle;
}

void CRepere::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
        ar << rotx << roty << Echelle;
    else
        ar >> rotx >> roty >> Echelle;
    origin.Serialize(ar);
    Diagonale.Serialize(ar);
}
