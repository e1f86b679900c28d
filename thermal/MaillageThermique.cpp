// The thermal mesh: the section's bounding box cut into square cells, each coded by
// what lies at its centre, laid out as the DTU grid or the grid methods' grid (see the
// class header for both layouts).
//
// Choices where the set-up leaves room:
//  - The caller's outlines are not moved: a cell is probed at its centre in the grid
//    frame plus the translation point, which is the same test.
//  - Outside cells above the topmost section cell of their column are the unexposed
//    side (code 2.0 before conversion); the other outside cells are the fire side.
//  - The extra concrete row of a full-width model (option not 1) lies on top of the
//    section, across the whole grid width.
//  - DTU grid: every probed code >= 0 becomes a section node at 0.0 (the method knows
//    one material); the unexposed side is -2.0 and the top border row -2.0 whatever the
//    option, the fire-side borders -1.0. m_Masque holds the probed codes in the same
//    layout, so T(i, j) tells section from outside on both kinds.
//  - pas = 0: the side lengths, merged within 1e-10 and sorted in decreasing order,
//    pick the largest of 5, 4, 2.5, 2, 1, 0.5, 0.25, 0.2, 0.1 cm that divides the two
//    longest (within 1e-6 cell) and leaves at least 10 cells across the smaller extent;
//    1 cm (or a tenth of that extent, when smaller) otherwise. Cavities do not change
//    the rule.
//  - NbLignes and NbColonnes are set for every kind (the grid's shape), and the
//    duration is added to m_TabTemps for every kind.
//  - reserve is not used.
//  - A cell side that is not a positive number, a count of zones larger than its
//    array, or more than MAILLES_MAX cells raise the invalid-argument exception
//    before the object changes.
#include "thermal/CTemperatureGenerale.h"
#include "thermal/MaillageInterne.h"

#include "geometry/Routines.h"

#include <algorithm>
#include <cmath>
#include <vector>

using namespace prefa_maillage;

namespace
{
const double MAILLES_MAX = 1e7; // cells of one grid, beyond any real section

CTemperatureGenerale::CLigne Ligne(const std::vector<double>& v)
{
    CTemperatureGenerale::CLigne l;
    l.SetSize((INT_PTR)v.size());
    std::copy(v.begin(), v.end(), l.GetData());
    return l;
}
} // namespace

double CTemperatureGenerale::InitTableDonnees(CPolygone& section, double duree, TYPE_CALCUL_TEMPERATURE type,
                                              CListePolygone cavites, int nMateriaux,
                                              CArray<CPolygone, CPolygone>& materiaux, int nZonesHumides,
                                              CArray<CPolygone, CPolygone>& zonesHumides, double pas, int option,
                                              double largeurUtile, double dimensionA, double dimensionB,
                                              double epaisseur, double reserve)
{
    (void)reserve;
    if (nMateriaux > materiaux.GetSize() || nZonesHumides > zonesHumides.GetSize())
        AfxThrowInvalidArgException();
    Zones zones;
    zones.section = &section;
    for (POSITION pos = cavites.GetHeadPosition(); pos;)
        zones.cavites.push_back(cavites.GetNext(pos));
    for (int k = 0; k < nMateriaux; ++k)
        zones.materiaux.push_back(&materiaux[k]);
    for (int k = 0; k < nZonesHumides; ++k)
        zones.zonesHumides.push_back(&zonesHumides[k]);

    // Extents (refreshed by the polygon when stale), step, rows and columns.
    const double xmin = section.g_Xmin(), xmax = section.g_Xmax();
    const double ymin = section.g_Ymin(), ymax = section.g_Ymax();
    const double D = pas != 0.0 ? pas : PasDesCotes(section);
    if (!(D > 0.0) || !std::isfinite(D))
        AfxThrowInvalidArgException();
    const double lignes = Round((ymax - ymin) / D, 0);
    const bool pleineLargeur = largeurUtile == 0.0;
    double colonnes;
    if (pleineLargeur)
        colonnes = Round((xmax - xmin) / D, 0) + (option != 1 ? 10 : 0);
    else if (std::min(dimensionA, 0.25 * dimensionB) <= D * 10 + largeurUtile)
        colonnes = Round((xmax - xmin) / D, 0);
    else
        colonnes = Round(largeurUtile / D + 10, 0);
    if (!(lignes >= 1 && colonnes >= 1) || (lignes + 4) * (colonnes + 2) > MAILLES_MAX)
        AfxThrowInvalidArgException();
    const int m = (int)lignes, n = (int)colonnes;

    RAZListesEtDonnees();
    m_PtTranslation.x = xmin;
    m_PtTranslation.y = ymin;
    m_TypeCalcul = type;
    m_nNbMaillesEnrobage = pleineLargeur ? 0 : (int)Round((epaisseur / 100) / D, 0);
    SetDELX(D);
    const bool dtu = type == DTU;

    // Probe the cells, rows top first. Column j of the probe lies at x (frame):
    // DTU from the right edge of the grid leftwards, ending at the section's left edge;
    // grid methods centred on the section.
    std::vector<std::vector<double>> codes((std::size_t)m, std::vector<double>((std::size_t)n));
    const double largeur = xmax - xmin;
    for (int i = 0; i < m; ++i)
    {
        const double y = (m - 1 - i) * D + D / 2;
        for (int j = 0; j < n; ++j)
        {
            const double x = dtu ? (n - 1 - j) * D + D / 2 : largeur / 2 + n * D / 2 - (j + 0.5) * D;
            codes[(std::size_t)i][(std::size_t)j] = CodeCellule(CPointD(x + xmin, y + ymin), zones);
        }
    }
    if (pleineLargeur && option != 1)
        codes.insert(codes.begin(), std::vector<double>((std::size_t)n, CODE_BETON));
    MarqueNonExpose(codes);

    const double codeNonExpose = (dtu || option == 1) ? -2.0 : -1.0;
    const double bordHaut = (dtu || option == 1) ? -2.0 : -1.0;
    const double bordBas = (!dtu && option == 1) ? -2.0 : -1.0;
    auto ajoute = [this](const std::vector<double>& masque, const std::vector<double>& t1) {
        CLigne lm = Ligne(masque), lt = Ligne(t1);
        m_Masque.Add(lm);
        m_T1.Add(lt);
    };
    if (dtu)
    {
        // Border column on each side, mirroring its neighbour; one unexposed row on top
        // and two fire rows below.
        const std::size_t nc = (std::size_t)n + 2;
        ajoute(std::vector<double>(nc, bordHaut), std::vector<double>(nc, bordHaut));
        for (const std::vector<double>& ligne : codes)
        {
            std::vector<double> masque(nc), t1(nc);
            for (std::size_t j = 0; j < ligne.size(); ++j)
            {
                masque[j + 1] = Convertit(ligne[j], codeNonExpose);
                t1[j + 1] = masque[j + 1] >= 0.0 ? 0.0 : masque[j + 1];
            }
            masque[0] = masque[1];
            masque[nc - 1] = masque[nc - 2];
            t1[0] = t1[1];
            t1[nc - 1] = t1[nc - 2];
            ajoute(masque, t1);
        }
        ajoute(std::vector<double>(nc, bordBas), std::vector<double>(nc, bordBas));
        ajoute(std::vector<double>(nc, bordBas), std::vector<double>(nc, bordBas));
    }
    else
    {
        ajoute(std::vector<double>((std::size_t)n, bordHaut), std::vector<double>((std::size_t)n, bordHaut));
        for (std::vector<double>& ligne : codes)
        {
            for (double& c : ligne)
                c = Convertit(c, codeNonExpose);
            ajoute(ligne, ligne);
        }
        ajoute(std::vector<double>((std::size_t)n, bordBas), std::vector<double>((std::size_t)n, bordBas));
        m_dXOrigine = n * D * 100 * 0.5; // the factor 100 is kept on purpose
    }

    m_TabTemps.Add(duree);
    RemplitListesEtTravail(*this, dtu);
    return D;
}
