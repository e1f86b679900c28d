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

#include "geometry/Routines.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{
const double MAILLES_MAX = 1e7; // cells of one grid, beyond any real section

// Codes of the probe, before conversion.
const double CODE_BETON = 11.0;
const double CODE_CAVITE = 0.0;
const double CODE_DEHORS = 1.0;
const double CODE_NON_EXPOSE = 2.0;

// Cell side derived from the section's sides, when the caller gives none.
double PasDesCotes(CPolygone& section)
{
    std::vector<double> longueurs;
    const INT_PTR n = section.GetCount();
    for (INT_PTR k = 0; k < n; ++k)
    {
        const CPointD a = section.GetPointAt((int)k);
        const CPointD b = section.GetPointAt((int)((k + 1) % n));
        const double l = a.distance_p(b);
        if (std::none_of(longueurs.begin(), longueurs.end(),
                         [l](double m) { return std::fabs(m - l) <= 1e-10; }))
            longueurs.push_back(l);
    }
    std::sort(longueurs.begin(), longueurs.end(), std::greater<double>());
    const double etendue = std::min(section.g_Xmax() - section.g_Xmin(), section.g_Ymax() - section.g_Ymin());
    static const double candidats[] = {0.05, 0.04, 0.025, 0.02, 0.01, 0.005, 0.0025, 0.002, 0.001};
    auto divise = [](double l, double s) { return std::fabs(l / s - std::round(l / s)) < 1e-6; };
    for (double s : candidats)
    {
        if (s * 10 > etendue + 1e-12)
            continue;
        bool ok = true;
        for (std::size_t k = 0; k < longueurs.size() && k < 2; ++k)
            ok = ok && divise(longueurs[k], s);
        if (ok)
            return s;
    }
    return std::min(0.01, etendue / 10);
}

// The code of the cell whose centre is p (section coordinates).
double CodeCellule(const CPointD& p, CPolygone& section, std::vector<CPolygone*>& cavites,
                   std::vector<CPolygone*>& materiaux, std::vector<CPolygone*>& zonesHumides)
{
    double code = -1.0;
    if (section.AppartientAPolygone(p) != -1)
        code = CODE_BETON;
    for (CPolygone* c : cavites)
        if (c->AppartientAPolygone(p) == 0)
            code = CODE_CAVITE;
    for (std::size_t k = 0; k < materiaux.size(); ++k)
        if (materiaux[k]->AppartientAPolygone(p) == 0)
            code = 12.0 + (double)k;
    for (std::size_t k = 0; k < zonesHumides.size(); ++k)
        if (zonesHumides[k]->AppartientAPolygone(p) == 0)
            code += 10.0 * (double)(k + 1);
    if (code == -1.0)
        code = CODE_DEHORS;
    return code;
}

// Outside cells above the topmost non-outside cell of their column face away from the
// fire. Rows are top first.
void MarqueNonExpose(std::vector<std::vector<double>>& codes)
{
    if (codes.empty())
        return;
    for (std::size_t j = 0; j < codes[0].size(); ++j)
    {
        std::size_t haut = 0;
        while (haut < codes.size() && codes[haut][j] == CODE_DEHORS)
            ++haut;
        if (haut == codes.size())
            continue; // nothing of the section in this column
        for (std::size_t i = 0; i < haut; ++i)
            codes[i][j] = CODE_NON_EXPOSE;
    }
}

// The final code of a probed cell.
double Convertit(double code, double codeNonExpose)
{
    if (code == CODE_DEHORS)
        return -1.0;
    if (code == CODE_NON_EXPOSE)
        return codeNonExpose;
    if (code == CODE_CAVITE)
        return -3.0;
    return code;
}

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
    std::vector<CPolygone*> lesCavites, lesMateriaux, lesZones;
    for (POSITION pos = cavites.GetHeadPosition(); pos;)
        lesCavites.push_back(cavites.GetNext(pos));
    for (int k = 0; k < nMateriaux; ++k)
        lesMateriaux.push_back(&materiaux[k]);
    for (int k = 0; k < nZonesHumides; ++k)
        lesZones.push_back(&zonesHumides[k]);

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
            codes[(std::size_t)i][(std::size_t)j] =
                CodeCellule(CPointD(x + xmin, y + ymin), section, lesCavites, lesMateriaux, lesZones);
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

    const int nLignes = (int)m_T1.GetSize();
    const int nColonnes = (int)m_T1[0].GetSize();
    m_nTravail[TravailN::NB_LIGNES] = nLignes;
    m_nTravail[TravailN::NB_COLONNES] = nColonnes;
    m_TabTemps.Add(duree);
    if (dtu)
    {
        m_nTravail[TravailN::ZONE_LIGNE_DEBUT] = 1;
        m_nTravail[TravailN::ZONE_LIGNE_FIN] = nLignes;
        m_nTravail[TravailN::ZONE_COL_DEBUT] = 1;
        m_nTravail[TravailN::ZONE_COL_FIN] = nColonnes;
        m_nTravail[TravailN::COMPTE] = 1;
        m_NumLigne.Add(1);
        m_ColDebut.Add(0);
        m_ColFin.Add(0);
        for (int r = 2; r <= nLignes - 1; ++r)
        {
            // First section column (1-based): one past the first outside value met
            // scanning from the right.
            const CLigne& ligne = m_T1[r - 1];
            int debut = 2;
            for (int j = nColonnes - 1; j >= 0; --j)
                if (ligne[j] != 0.0)
                {
                    debut = j + 2;
                    break;
                }
            m_NumLigne.Add(r);
            m_ColDebut.Add(debut);
            m_ColFin.Add(nColonnes - 1);
        }
        m_NumLigne.Add(nLignes - 1);
        m_ColDebut.Add(0);
        m_ColFin.Add(0);
        for (int c = 2; c <= nColonnes - 1; ++c)
        {
            m_NumColonne.Add(c);
            m_LigneDebut.Add(1);
        }
    }
    else
    {
        m_nTravail[TravailN::COMPTE] = 1;
    }

    m_dTravailA[TravailA::LAMBDA] = 1.4;       // conductivity, kcal/(h m C)
    m_dTravailA[TravailA::FACTEUR_FEU] = 0.85; // fire-curve factor
    m_dTravailA[TravailA::RHO] = 2400.0;       // density, kg/m3
    m_dTravailA[TravailA::C] = 0.22;           // specific heat, kcal/(kg C)
    return D;
}
