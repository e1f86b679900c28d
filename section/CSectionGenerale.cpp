// Section properties by trapezoid strips under and beside each side, and the
// section file.
#include "section/CSectionGenerale.h"

#include "geometry/AireSignee.h"
#include "project/FichierArchive.h"
#include "project/FichiersEtudes.h"
#include "project/MessErreur.h"

#include <algorithm>
#include <cmath>
#include <vector>

IMPLEMENT_SERIAL(CSectionGenerale, CObject, 1)

namespace
{
// Relative difference of the two centroidal moments below which they count as equal
// and the principal angle is 0: for the first list, and coarser, on purpose, for the
// section combined with the second list.
const double kMomentsEgaux = 1e-12;
const double kMomentsEgauxCombines = 1e-7;
} // namespace

CSectionGenerale::CSectionGenerale()
{
    InitVariables();
}

CSectionGenerale::CSectionGenerale(const CSectionGenerale& s) : CObject()
{
    CopySectionGenerale(s);
}

CSectionGenerale& CSectionGenerale::operator=(const CSectionGenerale& s)
{
    CopySectionGenerale(s);
    return *this;
}

CSectionGenerale::~CSectionGenerale() = default;

void CSectionGenerale::InitVariables()
{
    aireX = aireY = Aire = AireY = SY = SX = IyO = IxO = IxyO = 0.0;
    iyStrip = ixStrip = xgStrip = ygTerme = ygStrip = 0.0;
    IxG = IyG = IxyG = Angle = I1 = I2 = 0.0;
    Perimetre = Perimetre1 = Perimetre2 = 0.0;
}

void CSectionGenerale::CopySectionGenerale(const CSectionGenerale& s)
{
    if (this == &s)
        return;
    aireX = s.aireX;
    aireY = s.aireY;
    Aire = s.Aire;
    AireY = s.AireY;
    SY = s.SY;
    SX = s.SX;
    IyO = s.IyO;
    IxO = s.IxO;
    IxyO = s.IxyO;
    iyStrip = s.iyStrip;
    ixStrip = s.ixStrip;
    xgStrip = s.xgStrip;
    ygTerme = s.ygTerme;
    ygStrip = s.ygStrip;
    IxG = s.IxG;
    IyG = s.IyG;
    IxyG = s.IxyG;
    Angle = s.Angle;
    I1 = s.I1;
    I2 = s.I2;
    Perimetre = s.Perimetre;
    Perimetre1 = s.Perimetre1;
    Perimetre2 = s.Perimetre2;
}

void CSectionGenerale::IntegreContours(CListePolygone& l)
{
    std::vector<double> X, Y;
    for (POSITION pl = l.GetHeadPositionConst(); pl;)
    {
        const CPolygone* p = l.GetNextConst(pl);
        X.clear();
        Y.clear();
        for (POSITION pos = p->GetHeadPosition(); pos;)
        {
            const CPointD q = p->GetPointNext(pos);
            X.push_back(q.x);
            Y.push_back(q.y);
        }
        if (X.empty())
            continue;
        X.push_back(X.front());
        Y.push_back(Y.front());

        for (std::size_t k = 1; k < X.size(); ++k)
        {
            const double x0 = X[k - 1], y0 = Y[k - 1], x1 = X[k], y1 = Y[k];
            Perimetre += std::sqrt((y1 - y0) * (y1 - y0) + (x1 - x0) * (x1 - x0));
            // The strips under the side towards each axis; the stored sums add them
            // in this order, so they stay running sums.
            aireX = -prefa_geometrie::TermeAire(x0, y0, x1, y1);
            aireY = -prefa_geometrie::TermeAire(y0, x0, y1, x1);
            Aire += aireX;
            AireY += aireY;

            const double s = y0 + y1;
            if (s != 0.0)
            {
                xgStrip = (2.0 * y1 + y0) * (x1 - x0) / (3.0 * s) + x0;
                // Not the strip's own centroid height: this term is what the stored
                // product sums were made with, so it is kept exactly.
                ygTerme = (3.0 * y0 * y0 - (y0 - y1) * (y0 - y1)) / (3.0 * s);
                iyStrip = (y0 * y0 + 4.0 * y0 * y1 + y1 * y1) * std::pow(x1 - x0, 3) / (36.0 * s);
            }
            else
                xgStrip = ygTerme = iyStrip = 0.0;

            const double t = x0 + x1;
            if (t != 0.0)
            {
                ygStrip = (2.0 * x1 + x0) * (y1 - y0) / (3.0 * t) + y0;
                ixStrip = (x0 * x0 + 4.0 * x0 * x1 + x1 * x1) * std::pow(y1 - y0, 3) / (36.0 * t);
            }
            else
                ygStrip = ixStrip = 0.0;

            SY += aireX * xgStrip;
            SX += ygStrip * aireY;
            IyO += xgStrip * xgStrip * aireX + iyStrip;
            IxO += ygStrip * ygStrip * aireY + ixStrip;
            IxyO += xgStrip * ygTerme * aireX;
        }
    }
}

void CSectionGenerale::CalculeCentre(double seuil)
{
    // A section without area (no contour, or contours that enclose nothing) has its
    // moments about the origin, 0 for no contour; its angle is 0.
    const double yG = AireY != 0.0 ? SX / AireY : 0.0;
    IxG = std::fabs(IxO) - std::fabs(AireY) * yG * yG;
    const double xG = Aire != 0.0 ? SY / Aire : 0.0;
    IyG = std::fabs(IyO) - std::fabs(Aire) * xG * xG;
    IxyG = std::fabs(IxyO) - xG * std::fabs(AireY) * yG;

    const double plusGrand = std::max(std::fabs(IxG), std::fabs(IyG));
    if (plusGrand > 0.0 && std::fabs(IyG - IxG) / plusGrand >= seuil)
        Angle = std::atan(-2.0 * IxyG / (IyG - IxG)) / 2.0;
    else
        Angle = 0.0;
    const double c = std::cos(Angle), s = std::sin(Angle);
    const double t = 2.0 * IxyG * c * s;
    I1 = c * c * IxG + s * s * IyG + t;
    I2 = c * c * IyG + s * s * IxG - t;
}

void CSectionGenerale::CaracteristiquesSectionsPolygone(CListePolygone& l1, CListePolygone& l2)
{
    InitVariables();
    IntegreContours(l1);
    Perimetre1 = Perimetre;
    CalculeCentre(kMomentsEgaux);
    if (!l2.IsEmpty())
    {
        Perimetre = 0.0;
        IntegreContours(l2);
        Perimetre2 = Perimetre;
        CalculeCentre(kMomentsEgauxCombines);
    }
}

void CSectionGenerale::Serialize(CArchive& ar)
{
    // SX goes before SY in the file; loading reads the same order.
    double* champs[] = {&aireX, &aireY, &Aire, &AireY, &SX, &SY, &IyO, &IxO,
                        &IxyO, &iyStrip, &ixStrip, &xgStrip, &ygTerme, &ygStrip, &IxG, &IyG,
                        &IxyG, &Angle, &I1, &I2, &Perimetre, &Perimetre1, &Perimetre2};
    if (ar.IsStoring())
    {
        ar << (DWORD)1;
        for (double* c : champs)
            ar << *c;
    }
    else
    {
        DWORD version = 0;
        ar >> version; // every version reads the same fields
        for (double* c : champs)
            ar >> *c;
    }
}

int CSectionGenerale::Lecture(CString fichier, int n)
{
    // Loaded aside, so that a truncated file raises its archive exception and leaves
    // this object as it was; a file that does not open is ignored quietly.
    CSectionGenerale lu;
    if (!SerialiseFichier(Compose_Fichier_Etudes(fichier, _T("SECTION."), n), false, nullptr,
                          [&lu](CArchive& ar) { lu.Serialize(ar); }))
        return 0;
    CopySectionGenerale(lu);
    return 1;
}

int CSectionGenerale::Ecriture(CString fichier, int n)
{
    // Saved through a mirror file: a failed save keeps the previous file.
    CFileException fe;
    if (SerialiseFichierRapporte(Compose_Fichier_Etudes(fichier, _T("SECTION."), n), true, &fe,
                                 [this](CArchive& ar) { Serialize(ar); }))
        return 1;
    MessErreur(_T("IDENTERR_2066"), _T("General"), 694, &fe, AfxGetLibraryModuleName(), IDS_PREFA_ERREUR_FICHIER,
               _T(""), _T(""));
    return 0;
}
