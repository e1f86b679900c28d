// The grid methods on sections whose cavities open onto the fire-side gas: finite fields
// that stay between the ambient and the gas temperature at every step and converge as the
// cells shrink; the face resistances of an air cell towards the gas; a closed cavity fed by
// its walls alone; runs that would leave the range stopped and reported; and the same
// field for any thread count.
#include "thermal/BilanThermique.h"
#include "thermal/CTemperatureGenerale.h"
#include "thermal/GrilleBilan.h"
#include "thermal/ProprietesEC2.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace
{
// Every thermal test runs with the kernel's range check after each step.
const bool g_controle = (DefinirControleBornesThermique(true), true);

// A rectangular section [0, largeur] x [0, hauteur] with a margin of fire-side gas all
// round. A cavity wins over the section and the gas, as in the mesh: drawn past the
// outline, it opens onto the gas.
struct Forme
{
    double largeur, hauteur, marge;
    std::function<bool(double x, double y)> cavite;
    std::vector<std::pair<double, double>> barres;
};

// A 5 cm box whose 1 x 4.5 cm cavity runs 1 cm past its right side.
Forme BoiteOuverte()
{
    return {0.05, 0.05, 0.015, [](double x, double y) { return x > 0.015 && x < 0.06 && y > 0.02 && y < 0.03; },
            {{0.01, 0.01}, {0.03, 0.01}, {0.0075, 0.025}, {0.04, 0.04}}};
}

// A hollow-core slab strip, 8 x 4 cm, with 2 cm cores every 4 cm; the end cores are cut
// open by the sides.
Forme DalleAlveolee()
{
    return {0.08, 0.04, 0.015,
            [](double x, double y) {
                for (double cx : {0.0, 0.04, 0.08})
                    if ((x - cx) * (x - cx) + (y - 0.02) * (y - 0.02) < 0.01 * 0.01)
                        return true;
                return false;
            },
            {{0.02, 0.01}, {0.04, 0.005}, {0.02, 0.03}, {0.005, 0.005}}};
}

int Arrondi(double v) { return (int)std::lround(v); }

void Dessiner(CTemperatureGenerale& t, const Forme& f, double pas)
{
    const int nl = Arrondi((f.hauteur + 2 * f.marge) / pas), nc = Arrondi((f.largeur + 2 * f.marge) / pas);
    t.RAZListesEtDonnees();
    t.m_TypeCalcul = CTemperatureGenerale::EC2; // the grid methods' layout, for the lookup
    t.m_Masque.SetSize(nl);
    for (int i = 0; i < nl; ++i)
    {
        t.m_Masque[i].SetSize(nc);
        const double y = f.hauteur + f.marge - (i + 0.5) * pas;
        for (int j = 0; j < nc; ++j)
        {
            const double x = -f.marge + (j + 0.5) * pas;
            const bool dedans = x > 0 && x < f.largeur && y > 0 && y < f.hauteur;
            t.m_Masque[i][j] = f.cavite(x, y) ? -3.0 : dedans ? 11.0 : -1.0;
        }
    }
    t.SetDELX(pas);
    t.m_dTravailA[TravailA::LAMBDA] = 1.4;
    t.m_dTravailA[TravailA::RHO] = 2400.0;
    t.m_dTravailA[TravailA::C] = 0.22;
    // Columns are counted towards smaller x in the lookup frame: x_lookup = largeur - x.
    t.m_dXOrigine = f.largeur + f.marge;
}

// Temperature at a point of the section, read as callers read it.
double Lire(const CTemperatureGenerale& t, const Forme& f, double x, double y)
{
    return t.T(f.largeur - x, y + f.marge - t.GetDELX());
}

enum Methode
{
    EC2_NORMAL,
    EC2_EXTERIEUR,
    EC2_HYDROCARBURE,
    ITBTP,
    ZOLT
};
const Methode kMethodes[] = {EC2_NORMAL, EC2_EXTERIEUR, EC2_HYDROCARBURE, ITBTP, ZOLT};
const char* Nom(Methode m)
{
    static const char* noms[] = {"EC2 standard", "EC2 external", "EC2 hydrocarbon", "ITBTP", "ZOLT"};
    return noms[m];
}

// Ambient temperature and gas temperature at t hours, written from the fire curves.
double Ambiante(Methode m) { return m >= ITBTP ? 15.0 : 20.0; }
double Gaz(Methode m, double t)
{
    switch (m)
    {
    case EC2_EXTERIEUR: return 20.0 + 660.0 * (1 - 0.684 * std::exp(-0.32 * t) - 0.313 * std::exp(-3.8 * t));
    case EC2_HYDROCARBURE: return 20.0 + 1080.0 * (1 - 0.325 * std::exp(-0.167 * t) - 0.675 * std::exp(-2.5 * t));
    default: return Ambiante(m) + 345.0 * std::log10(480.0 * t + 1.0);
    }
}

void Calculer(CTemperatureGenerale& t, Methode m, double duree, double pasImpose = 0.0)
{
    switch (m)
    {
    case ITBTP: t.CalculTemperatureITBTP(0, 0, duree, pasImpose); break;
    case ZOLT: t.CalculTemperatureZOLT(0, duree, pasImpose); break;
    default:
        ASSERT_EQ(t.CalculTemperatureEC2(0, duree, 0.015, pasImpose, (CTemperatureGenerale::MONTEE_TEMPERATURE)m,
                                         GRANULAT_SILICEUX, 0),
                  0);
    }
}

// Runs the method and checks, at every step through the progress callback, that every
// cell is a number between the ambient and the gas temperature reached so far (the three
// curves only rise). Returns the bar temperatures.
std::vector<double> CalculerEnSurveillant(const Forme& f, Methode m, double pas, double duree)
{
    CTemperatureGenerale t;
    Dessiner(t, f, pas);
    long long appels = 0, dehors = 0;
    t.m_Progression = [&](double fraction) {
        const BilanThermique* b = BilanEnCours();
        if (b == nullptr || b->ChampEnCours() == nullptr)
            return false;
        const double* T = b->ChampEnCours();
        const double bas = Ambiante(m) - 1e-9, haut = Gaz(m, fraction * duree) + 1e-9;
        for (int i = 0; i < b->NbLignes() * b->NbColonnes(); ++i)
            dehors += !(T[i] >= bas && T[i] <= haut);
        ++appels;
        return true;
    };
    Calculer(t, m, duree);
    const StatistiquesBilan s = DernieresStatistiquesBilan();
    EXPECT_FALSE(s.horsBornes);
    EXPECT_EQ(s.redemarrages, 0);
    EXPECT_EQ(appels, s.pas) << "a step went unwatched";
    EXPECT_EQ(dehors, 0);
    std::vector<double> barres;
    for (auto [x, y] : f.barres)
        barres.push_back(Lire(t, f, x, y));
    return barres;
}

TEST(CavitesOuvertes, FieldsStayInRangeAtEveryStepAndConvergeAsCellsHalve)
{
    DefinirNombreThreadsThermique(1);
    const double duree = 0.02;
    for (const Forme& f : {BoiteOuverte(), DalleAlveolee()})
        for (Methode m : kMethodes)
        {
            SCOPED_TRACE(Nom(m));
            const std::vector<double> a = CalculerEnSurveillant(f, m, 0.005, duree);
            const std::vector<double> b = CalculerEnSurveillant(f, m, 0.0025, duree);
            const std::vector<double> c = CalculerEnSurveillant(f, m, 0.00125, duree);
            // The bars move less at each halving: the largest move at least a quarter less.
            double premier = 0.0, second = 0.0;
            for (std::size_t k = 0; k < a.size(); ++k)
            {
                premier = std::max(premier, std::fabs(b[k] - a[k]));
                second = std::max(second, std::fabs(c[k] - b[k]));
            }
            EXPECT_LT(second, 0.75 * premier);
            EXPECT_GT(second, 0.0);
        }
    DefinirNombreThreadsThermique(0);
}

// One air cell between the fire-side gas (left) and the unexposed air (right), by the
// methods' formulas: its faces carry the air face resistance (1/6, or 1/hc for Eurocode 2)
// in series with the film, and, being the only face cell, it sets theta_s and theta_u.
double AirEntreGazEtAir(Methode m, double pas, double dt, int nPas)
{
    const double hc = (m == EC2_HYDROCARBURE ? 50.0 : 25.0) / 1.1626;
    double T = Ambiante(m);
    for (int k = 1; k <= nPas; ++k)
    {
        double g, h, rFace, rNonExpose, capacite;
        if (m >= ITBTP)
        {
            const double R = 345.0 * std::log10(480.0 * (m == ITBTP ? k : k - 1) * dt + 1.0);
            const double tf = 0.97 * R + 273.0, b = (T + 273.0) / tf;
            const double hr = 40.0 * std::pow(tf / 1000.0, 3) * (1 + b + b * b + b * b * b);
            double e = k == 1 ? 0.97 : std::max(0.0, 0.97 * (1 - (T / R) * (T / R)));
            if (m == ZOLT && T > R)
                e = 0.0;
            g = 15.0 + R;
            h = e * hr + 6.0;
            rFace = 1.0 / 6.0;
            rNonExpose = T <= 15.0 ? 10.0 : 1.0 / std::max(0.1, 8.0 * std::pow(T - 15.0, 0.1));
            capacite = 0.27;
        }
        else
        {
            g = Gaz(m, (k - 1) * dt);
            const double t1 = g + 273.0, t2 = T + 273.0;
            h = (t1 * t1 + t2 * t2) * (t1 + t2) * 4.536e-8 / 1.1626 + hc;
            rFace = 1.0 / hc;
            rNonExpose = 1.1626 / 9.0;
            capacite = 1130.0 / 4185.5;
        }
        const double Q = ((g - T) / (rFace + 1.0 / h) + (Ambiante(m) - T) / (rFace + rNonExpose)) * pas * dt;
        T += Q / (capacite * pas * pas);
    }
    return T;
}

TEST(CavitesOuvertes, AirCellFacesTowardsTheOutsideCarryTheAirResistanceInSeriesWithTheFilm)
{
    DefinirNombreThreadsThermique(1);
    const double pas = 0.01;
    for (Methode m : kMethodes)
    {
        SCOPED_TRACE(Nom(m));
        CTemperatureGenerale t;
        t.m_Masque.SetSize(1);
        t.m_Masque[0].SetSize(3);
        t.m_Masque[0][0] = -1.0;
        t.m_Masque[0][1] = -3.0;
        t.m_Masque[0][2] = -2.0;
        t.SetDELX(pas);
        t.m_dTravailA[TravailA::LAMBDA] = 1.4;
        t.m_dTravailA[TravailA::RHO] = 2400.0;
        t.m_dTravailA[TravailA::C] = 0.22;
        // The air step of each method: capacity over four times the air conductance.
        const double d = m >= ITBTP ? pas : (double)(float)pas;
        const double hc = (m == EC2_HYDROCARBURE ? 50.0 : 25.0) / 1.1626;
        const double dt = m >= ITBTP ? d * 0.27 / 24.0 : d * (1130.0 / 4185.5) / (4 * hc);
        const int n = 40;
        Calculer(t, m, (n - 0.5) * dt);
        EXPECT_EQ(DernieresStatistiquesBilan().pas, m == ITBTP ? n - 1 : n);
        EXPECT_NEAR(t.m_dTravailB[TravailB::DT], dt, 1e-15);
        const double attendu = AirEntreGazEtAir(m, d, dt, m == ITBTP ? n - 1 : n);
        EXPECT_NEAR(t.GetT1(0, 1), attendu, 1e-9);
        EXPECT_GT(attendu, Ambiante(m) + 0.5);
    }
}

// Runs the method and checks every step of every air cell of the grid against the
// exchanges of the method written here (air cells that meet only material and air cells:
// a closed cavity), with the field of the previous step. Returns the number of checks.
long long VerifierCavite(CTemperatureGenerale& t, Methode m, double duree)
{
    const int nl = (int)t.m_Masque.GetSize(), nc = (int)t.m_Masque[0].GetSize();
    std::vector<double> codes, avant;
    for (int i = 0; i < nl; ++i)
        for (int j = 0; j < nc; ++j)
            codes.push_back(t.m_Masque[i][j]);
    const double d = m >= ITBTP ? t.GetDELX() : (double)(float)t.GetDELX();
    const double hc = (m == EC2_HYDROCARBURE ? 50.0 : 25.0) / 1.1626;
    const double rAir = m >= ITBTP ? 1.0 / 6.0 : 1.0 / hc;
    const double capacite = m >= ITBTP ? 0.27 : 1130.0 / 4185.5;
    auto lambda = [m](double th) {
        const double u = th / 100;
        if (m >= ITBTP)
            return 1.4 - 0.15 * u + 0.006 * u * u;
        return ((2 - 0.2451 * u + 0.0107 * u * u) + (1.36 - 0.136 * u + 0.0057 * u * u)) / 2 / 1.1626;
    };
    const double dt = m >= ITBTP ? d * 0.27 / 24.0 : d * capacite / (4 * hc);
    long long verifies = 0;
    t.m_Progression = [&](double) {
        const double* T = BilanEnCours()->ChampEnCours();
        if (!avant.empty())
            for (int i = 1; i < nl - 1; ++i)
                for (int j = 1; j < nc - 1; ++j)
                {
                    const int c = i * nc + j;
                    if (codes[c] != -3.0)
                        continue;
                    double Q = 0.0;
                    for (int v : {c - 1, c + 1, c - nc, c + nc})
                    {
                        EXPECT_TRUE(codes[v] > 0.0 || codes[v] == -3.0) << "the cavity is closed";
                        Q += codes[v] > 0 ? (avant[v] - avant[c]) / (rAir + 0.5 * d / lambda(avant[v]))
                                          : (avant[v] - avant[c]) / rAir;
                    }
                    EXPECT_NEAR(T[c], avant[c] + Q * d * dt / (capacite * d * d), 1e-9);
                    ++verifies;
                }
        avant.assign(T, T + nl * nc);
        return true;
    };
    Calculer(t, m, duree);
    return verifies;
}

TEST(CavitesOuvertes, AClosedCavityIsHeatedThroughItsWallsOnly)
{
    DefinirNombreThreadsThermique(1);
    for (Methode m : {EC2_NORMAL, ITBTP})
    {
        SCOPED_TRACE(Nom(m));
        // A 4 cm box, 1 cm walls, cut in 2.5 mm cells.
        const Forme f{0.04, 0.04, 0.005,
                      [](double x, double y) { return x > 0.01 && x < 0.03 && y > 0.01 && y < 0.03; }, {}};
        CTemperatureGenerale t;
        Dessiner(t, f, 0.0025);
        EXPECT_GT(VerifierCavite(t, m, 0.03), 1000);
        EXPECT_FALSE(DernieresStatistiquesBilan().horsBornes);
        // The air in the middle of the cavity has warmed, through the walls only.
        EXPECT_EQ(t.m_Masque[9][9], m == ITBTP ? -3.0 : 0.0);
        EXPECT_GT(t.GetT1(9, 9), Ambiante(m) + 0.5);
    }
}

TEST(CavitesOuvertes, AirCellsOnAGridWithoutCavityMarksKeepAStableStep)
{
    DefinirNombreThreadsThermique(1);
    const double pas = 0.0025, duree = 0.01;
    const double d = (double)(float)pas, pasCavite = d * (1130.0 / 4185.5) / (4 * 25.0 / 1.1626);
    CTemperatureGenerale a, b;
    Dessiner(a, BoiteOuverte(), pas);
    Calculer(a, EC2_NORMAL, duree);
    EXPECT_EQ(DernieresStatistiquesBilan().redemarrages, 0);
    EXPECT_NEAR(a.m_dTravailB[TravailB::DT], pasCavite, 1e-18);
    // A second call finds air cells where the marks were, and no cavity limit: the
    // restarts bring the step down to the air cells' own limit.
    b = a;
    Calculer(b, EC2_NORMAL, duree);
    const StatistiquesBilan s = DernieresStatistiquesBilan();
    EXPECT_GE(s.redemarrages, 1);
    EXPECT_FALSE(s.horsBornes);
    EXPECT_LE(b.m_dTravailB[TravailB::DT], pasCavite * (1 + 1e-9));
    EXPECT_GE(b.m_dTravailB[TravailB::DT], pasCavite * (1 - 1e-9));
    for (int i = 0; i < a.m_T1.GetSize(); ++i)
        for (int j = 0; j < a.m_T1[i].GetSize(); ++j)
            EXPECT_NEAR(b.GetT1(i, j), a.GetT1(i, j), 1e-6);

    // ITBTP takes its air step on such a grid too: the same field as with the marks.
    CTemperatureGenerale c;
    Dessiner(c, BoiteOuverte(), pas);
    Calculer(c, ITBTP, duree);
    Calculer(b, ITBTP, duree);
    EXPECT_EQ(b.m_dTravailB[TravailB::DT], pas * 0.27 / 24.0);
    EXPECT_TRUE(b.m_T1 == c.m_T1);
}

bool ToutSansValeur(const CTemperatureGenerale& t)
{
    for (int i = 0; i < t.m_T1.GetSize(); ++i)
        for (int j = 0; j < t.m_T1[i].GetSize(); ++j)
            if (t.GetT1(i, j) != -1.0)
                return false;
    return t.m_T1.GetSize() > 0;
}

TEST(CavitesOuvertes, ARunThatLeavesTheRangeStopsAndLeavesNoField)
{
    DefinirNombreThreadsThermique(1);
    const double pas = 0.005, pasAir = pas * 0.27 / 24.0;
    for (bool chaquePas : {true, false})
    {
        DefinirControleBornesThermique(chaquePas);
        // An imposed step eight times the air cells' limit: they swing out of range.
        CTemperatureGenerale t;
        Dessiner(t, BoiteOuverte(), pas);
        Calculer(t, ITBTP, 400 * pasAir, 8 * pasAir);
        StatistiquesBilan s = DernieresStatistiquesBilan();
        EXPECT_TRUE(s.horsBornes);
        EXPECT_TRUE(ToutSansValeur(t));
        if (chaquePas)
            EXPECT_LT(s.pasHorsBornes, 10); // caught as soon as it happens
        else
            EXPECT_EQ(s.pasHorsBornes, 50); // only the final field is looked at
        // At the air cells' limit the same run stays in range.
        Dessiner(t, BoiteOuverte(), pas);
        Calculer(t, ITBTP, 400 * pasAir, pasAir);
        EXPECT_FALSE(DernieresStatistiquesBilan().horsBornes);
        EXPECT_GT(t.GetT1(3, 3), 15.0);

        // ZOLT gives an extra material no capacity: its cells would be NaN.
        Dessiner(t, BoiteOuverte(), pas);
        t.m_Masque[5][5] = 12.0;
        t.CalculTemperatureZOLT(1, 0.01, 0.0);
        s = DernieresStatistiquesBilan();
        EXPECT_TRUE(s.horsBornes);
        EXPECT_EQ(s.pasHorsBornes, chaquePas ? 1 : s.pas);
        EXPECT_TRUE(ToutSansValeur(t));
    }
    DefinirControleBornesThermique(true);
}

TEST(CavitesOuvertes, SameFieldsWithOneAndTwoThreads)
{
    for (bool marques : {true, false})
        for (Methode m : kMethodes)
        {
            SCOPED_TRACE(Nom(m));
            const Forme f = marques ? BoiteOuverte() : DalleAlveolee();
            CTemperatureGenerale t[2];
            int redemarrages[2];
            for (int k = 0; k < 2; ++k)
            {
                DefinirNombreThreadsThermique(k + 1);
                Dessiner(t[k], f, 0.0025);
                // Air cells without marks: Eurocode 2 restarts on them, in every band.
                for (int i = 0; i < t[k].m_Masque.GetSize() && !marques; ++i)
                    for (int j = 0; j < t[k].m_Masque[i].GetSize(); ++j)
                        if (t[k].m_Masque[i][j] == -3.0)
                            t[k].m_Masque[i][j] = 0.0;
                Calculer(t[k], m, 0.01);
                EXPECT_EQ(DernieresStatistiquesBilan().threads, k + 1);
                redemarrages[k] = DernieresStatistiquesBilan().redemarrages;
            }
            EXPECT_TRUE(t[0].m_T1 == t[1].m_T1);
            EXPECT_EQ(redemarrages[0], redemarrages[1]);
            if (!marques && m < ITBTP)
            {
                EXPECT_GE(redemarrages[0], 1);
            }
        }
    DefinirNombreThreadsThermique(0);
}
} // namespace
