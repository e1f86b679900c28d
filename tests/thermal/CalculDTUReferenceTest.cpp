// The DTU method against an independent calculation: on a slab heated from below the
// field is the same along every row, so one column of nodes carries it, and the
// method's rules (face balances, interior average, means, criteria) can be worked
// step by step without the grid, its dispatch or its node lists.
#include "thermal/CTemperatureGenerale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{
const double LAMBDA = 1.4, RHO = 2400.0, C = 0.22, FACTEUR_FEU = 0.85;

// A slab of n rows of cells of side d, largeur cells wide, built by hand in the DTU
// grid's layout: unexposed air above (row 0), the slab, fire-side gas below, a border
// column on each side.
CTemperatureGenerale Dalle(int n, int largeur, double d, double heures)
{
    CTemperatureGenerale t;
    const int nl = n + 3, nc = largeur + 2;
    for (int i = 0; i < nl; ++i)
    {
        CTemperatureGenerale::CLigne ligne;
        ligne.SetSize(nc);
        for (int j = 0; j < nc; ++j)
            ligne[j] = i == 0 ? -2.0 : (i <= n ? 0.0 : -1.0);
        t.m_T1.Add(ligne);
    }
    t.m_nTravail[6] = nl;
    t.m_nTravail[7] = nc;
    t.SetDELX(d);
    t.m_TabTemps.Add(heures);
    t.m_dTravailA[7] = LAMBDA;
    t.m_dTravailA[8] = FACTEUR_FEU;
    t.m_dTravailA[9] = RHO;
    t.m_dTravailA[10] = C;
    return t;
}

// The method on one column: noeud[1] is the unexposed face, noeud[n] the exposed one.
struct Colonne
{
    std::vector<double> noeud;
    double t = 0, moyNonExpo = 0, moyExpo = 0, h = 0, feu = 0, maxSurface = 0;
    double t140 = 1300, moy140 = 0, t180 = 1300, max180 = 0;
};

Colonne Reference(int n, double d, double minutes)
{
    Colonne c;
    c.noeud.assign((std::size_t)n + 1, 0.0);
    std::vector<double>& x = c.noeud;
    const double pas = C * 60.0 * RHO * d * d * 0.25 / LAMBDA; // Fourier number 1/4
    for (;;)
    {
        c.t += pas;
        const double hp = std::max(8.0 * std::pow(c.moyNonExpo, 0.1), 0.1);
        const double F = 345.0 * std::log10(8.0 * c.t + 1.0), G = FACTEUR_FEU * F;
        const double S = c.moyExpo, r = (S + 273.0) / (G + 273.0);
        double k = (G - S) / (F - S);
        if (k <= 0.0)
            k = 1.0;
        const double h = k * 40.0 * std::pow((G + 273.0) / 1000.0, 3) * (1 + r + r * r + r * r * r) + 6.0;
        c.h = std::min(h, 2.0 * LAMBDA / d);
        c.feu = F;
        const double R = LAMBDA / c.h, Rp = LAMBDA / hp;

        // Faces from their inner neighbour; the means take the face value before and
        // after the step (the side sums come from the end of the step before).
        const double haut = x[1], bas = x[n];
        x[1] = (Rp - d / 2) * x[2] / (d / 2 + Rp);
        x[n] = (x[n - 1] * (R - d / 2) + F * d) / (d / 2 + R);
        c.maxSurface = std::max(c.maxSurface, (x[2] + x[1]) / 2);
        c.moyNonExpo = (haut + x[1]) / 2;
        c.moyExpo = (bas + x[n]) / 2;
        if (c.moyNonExpo >= 140.0 && c.t <= c.t140)
            c.t140 = c.t, c.moy140 = c.moyNonExpo;
        if (c.maxSurface >= 180.0 && c.t <= c.t180)
            c.t180 = c.t, c.max180 = c.maxSurface;
        if (c.t >= minutes)
            return c;
        // Interior: the mean of the four sides, the two along the row being the node.
        std::vector<double> y = x;
        for (int i = 2; i < n; ++i)
            y[i] = 0.5 * x[i] + 0.25 * (x[i - 1] + x[i + 1]);
        x = y;
    }
}

// The slab of Dalle with a rib of rib rows below it, on columns debut to fin.
CTemperatureGenerale DalleNervuree(int n, int largeur, int nervure, int debut, int fin, double heures)
{
    CTemperatureGenerale t = Dalle(n + nervure, largeur, 0.01, heures);
    for (int i = n + 1; i <= n + nervure; ++i)
        for (int j = 0; j < largeur + 2; ++j)
            if (j < debut || j > fin)
                t.m_T1[i][j] = -1.0;
    return t;
}

void VerifieDalle(int n, int largeur, double d, double heures)
{
    CTemperatureGenerale t = Dalle(n, largeur, d, heures);
    t.CalculTemperatureDTU();
    const Colonne c = Reference(n, d, heures * 60.0);
    for (int i = 1; i <= n; ++i)
        for (int j = 0; j < largeur + 2; ++j)
            ASSERT_NEAR(c.noeud[i], t.GetT1(i, j), 1e-10 * (1 + c.noeud[i])) << "row " << i << " column " << j;
    EXPECT_EQ(-2.0, t.GetT1(0, 1));
    EXPECT_EQ(-1.0, t.GetT1(n + 1, 1));
    EXPECT_DOUBLE_EQ(c.t, t.m_dTravailB[4]);
    EXPECT_NEAR(c.feu, t.m_dTravailA[6], 1e-12 * c.feu);
    EXPECT_NEAR(c.h, t.m_dTravailA[5], 1e-12 * c.h);
    EXPECT_NEAR(c.moyNonExpo, t.m_dTravailA[2], 1e-10 * (1 + c.moyNonExpo));
    EXPECT_NEAR(c.moyExpo, t.m_dTravailA[4], 1e-10 * c.moyExpo);
    EXPECT_NEAR(c.maxSurface, t.m_dTravailB[14], 1e-10 * (1 + c.maxSurface));
    EXPECT_DOUBLE_EQ(c.t140, t.m_dTravailA[0]);
    EXPECT_NEAR(c.moy140, t.m_dTravailA[3], 1e-10 * (1 + c.moy140));
    EXPECT_DOUBLE_EQ(c.t180, t.m_dTravailA[1]);
    EXPECT_NEAR(c.max180, t.m_dTravailB[15], 1e-10 * (1 + c.max180));
}
} // namespace

TEST(CalculDTUReference, FirstStepWorkedByHand)
{
    // One step of 0.22 x 60 x 2400 x 0.01^2 / 4 / 1.4 = 0.565714 min: fire rise
    // 345 log10(8t + 1) = 256.124, gas 217.705; on the cold slab h = 0.85 x 40 x
    // 0.490705^3 x (1 + r + r^2 + r^3) + 6 = 14.1876 with r = 273 / 490.705, so the
    // exposed face takes F d / (d/2 + 1.4/h) = 24.7039; nothing else moves yet.
    CTemperatureGenerale t = Dalle(5, 3, 0.01, 0.5657 / 60.0);
    t.CalculTemperatureDTU();
    EXPECT_NEAR(0.5657142857, t.m_dTravailB[4], 1e-9);
    EXPECT_NEAR(256.124007, t.m_dTravailA[6], 1e-6);
    EXPECT_NEAR(14.187615, t.m_dTravailA[5], 1e-6);
    EXPECT_NEAR(24.703886, t.GetT1(5, 2), 1e-6);
    for (int i = 1; i <= 4; ++i)
        EXPECT_EQ(0.0, t.GetT1(i, 2)) << i;
}

TEST(CalculDTUReference, FloorSlabsReachBothCriteriaAtTheWorkedSteps)
{
    // Slabs of 10 to 14 cm in 1 cm cells for 5 h: the unexposed face passes 140 on
    // the mean and 180 on its surface, each recorded at its first crossing, where the
    // rises grow by a degree or two a step. The exposed face's coefficient stays below
    // its cap 2 lambda / d = 280.
    for (int n = 10; n <= 14; ++n)
    {
        SCOPED_TRACE(n);
        VerifieDalle(n, 3, 0.01, 5.0);
        const Colonne c = Reference(n, 0.01, 300.0);
        EXPECT_LT(c.t140, 300.0);
        EXPECT_LT(c.t180, 300.0);
        EXPECT_LT(c.h, 2.0 * LAMBDA / 0.01);
    }
}

TEST(CalculDTUReference, CoarseCellsCapTheExposedCoefficient)
{
    // 5 cm cells: the coefficient reaches its cap 2 lambda / d = 56 during the hour;
    // the 20 cm slab keeps its unexposed face below both limits.
    VerifieDalle(4, 2, 0.05, 1.0);
    const Colonne c = Reference(4, 0.05, 60.0);
    EXPECT_DOUBLE_EQ(2.0 * LAMBDA / 0.05, c.h);
    EXPECT_EQ(1300.0, c.t140);
}

TEST(CalculDTUReference, ARibInTheMiddleHeatsItsSlabSymmetrically)
{
    // A 6 cm slab 12 cells wide with a 4-cell rib 5 cm deep in its middle. The corners
    // where the rib meets the slab's underside are mirror images (one has its lower
    // right diagonal in the fire, the other its lower left): each takes the neighbours
    // on its own side, so the field stays symmetric about the rib's axis.
    CTemperatureGenerale t = DalleNervuree(6, 12, 5, 5, 8, 1.0);
    t.CalculTemperatureDTU();
    int noeuds = 0;
    for (int i = 1; i <= 11; ++i)
        for (int j = 1; j <= 12; ++j)
        {
            const double v = t.GetT1(i, j), miroir = t.GetT1(i, 13 - j);
            EXPECT_NEAR(v, miroir, 1e-9 * (1 + std::fabs(v))) << "row " << i << " column " << j;
            noeuds += v > 0.0;
        }
    // Every node heats but the rib's two lower corners, which the method skips.
    EXPECT_EQ(6 * 12 + 5 * 4 - 2, noeuds);
    EXPECT_EQ(2, t.m_nTravail[0]);
    EXPECT_EQ(0.0, t.GetT1(11, 5));
}
