// The three grid methods on hand-built grids: their time steps and special cases, and
// physical sense on a beam heated on all faces.
#include "thermal/BilanThermique.h"
#include "thermal/CTemperatureGenerale.h"
#include "thermal/GrilleBilan.h"
#include "thermal/ProprietesEC2.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
// A b x h concrete rectangle of cells inside one ring of fire-side gas.
void Poutre(CTemperatureGenerale& t, int b, int h, double pas)
{
    t.m_Masque.SetSize(h + 2);
    for (int i = 0; i < h + 2; ++i)
    {
        t.m_Masque[i].SetSize(b + 2);
        for (int j = 0; j < b + 2; ++j)
            t.m_Masque[i][j] = (i == 0 || j == 0 || i == h + 1 || j == b + 1) ? -1.0 : 11.0;
    }
    t.SetDELX(pas);
    t.m_dTravailA[TravailA::LAMBDA] = 1.4;
    t.m_dTravailA[TravailA::RHO] = 2400.0;
    t.m_dTravailA[TravailA::C] = 0.22;
}

int EC2(CTemperatureGenerale& t, double duree, double pas = 0.0,
        CTemperatureGenerale::MONTEE_TEMPERATURE m = CTemperatureGenerale::MONTEE_NORMALE, int nMat = 0)
{
    return t.CalculTemperatureEC2(nMat, duree, 0.0, pas, m, GRANULAT_SILICEUX, 0);
}

TEST(MethodesGrille, BeamFieldMakesPhysicalSense)
{
    DefinirNombreThreadsThermique(0);
    const int b = 20, h = 40; // 0.20 x 0.40 m at 1 cm
    for (int methode = 0; methode < 3; ++methode)
    {
        CTemperatureGenerale t1, t2;
        Poutre(t1, b, h, 0.01);
        Poutre(t2, b, h, 0.01);
        if (methode == 0)
            EC2(t1, 1.0), EC2(t2, 2.0);
        else if (methode == 1)
            t1.CalculTemperatureITBTP(0, 0, 1.0, 0.0), t2.CalculTemperatureITBTP(0, 0, 2.0, 0.0);
        else
            t1.CalculTemperatureZOLT(0, 1.0, 0.0), t2.CalculTemperatureZOLT(0, 2.0, 0.0);
        SCOPED_TRACE(methode);
        for (int i = 1; i <= h; ++i)
            for (int j = 1; j <= b; ++j)
            {
                // Left-right and top-bottom symmetry of section and exposure.
                EXPECT_NEAR(t1.GetT1(i, j), t1.GetT1(i, b + 1 - j), 1e-9);
                EXPECT_NEAR(t1.GetT1(i, j), t1.GetT1(h + 1 - i, j), 1e-9);
                // A longer fire is hotter everywhere.
                EXPECT_GT(t2.GetT1(i, j), t1.GetT1(i, j));
            }
        // Along the mid-height row and the mid-width column, cooler with depth.
        for (int j = 1; j < b / 2; ++j)
            EXPECT_GT(t1.GetT1(h / 2, j), t1.GetT1(h / 2, j + 1));
        for (int i = h; i > h / 2 + 1; --i)
            EXPECT_GT(t1.GetT1(i, b / 2), t1.GetT1(i - 1, b / 2));
        // A bar 3 cm above the soffit is hotter than one at 5 cm, on the same vertical.
        EXPECT_GT(t1.GetT1(h - 2, 4) - t1.GetT1(h - 4, 4), 20.0);
        EXPECT_GT(t1.GetT1(h, b / 2), 300.0);
        EXPECT_LT(t1.GetT1(h / 2, b / 2), t1.GetT1(h, b / 2));
    }
}

TEST(MethodesGrille, Eurocode2StepsAndSpecialCases)
{
    DefinirNombreThreadsThermique(1);
    CTemperatureGenerale vide;
    EXPECT_EQ(EC2(vide, 1.0), -1);

    // Automatic step: the explicit limit of concrete at 20 degrees, with the float width.
    CTemperatureGenerale t;
    Poutre(t, 6, 8, 0.01);
    EXPECT_EQ(EC2(t, 0.2), 0);
    const double d = (double)(float)0.01;
    const double auto20 = MasseVolumiqueEC2(2400, 20) * ChaleurSpecifiqueEC2(0, 20) * d * d / (4 * ConductiviteEC2(0, 20, 0, 0));
    EXPECT_NEAR(t.m_dTravailB[TravailB::DT], auto20, 1e-15);
    EXPECT_EQ(t.GetNbLignes(), 10);
    EXPECT_EQ(t.GetNbColonnes(), 8);
    EXPECT_GT(t.m_dTravailA[TravailA::MOY_EXPO], 20.0);       // mean exposed face
    EXPECT_EQ(t.m_dTravailB[TravailB::MOY_NONEXPO], 20.0);       // no unexposed face
    EXPECT_EQ(t.m_dTravailB[TravailB::MAX_SURFACE], 20.0);
    EXPECT_DOUBLE_EQ(t.m_dTravailB[TravailB::LAMBDA], ConductiviteEC2(0, t.m_dTravailA[TravailA::MOY_EXPO], 0, 0));

    // A step imposed above the stability limit is brought down to it, with a restart.
    CTemperatureGenerale u;
    Poutre(u, 6, 8, 0.01);
    EC2(u, 0.2, 0.05);
    EXPECT_NEAR(u.m_dTravailB[TravailB::DT], auto20, 1e-15);
    EXPECT_GE(DernieresStatistiquesBilan().redemarrages, 1);
    EXPECT_TRUE(u.m_T1 == t.m_T1);

    // A cavity mark becomes an air cell and limits the step by the air's capacity.
    CTemperatureGenerale c;
    Poutre(c, 6, 8, 0.01);
    c.m_Masque[4][3] = -3.0;
    EC2(c, 0.05);
    EXPECT_EQ(c.m_Masque[4][3], 0.0);
    EXPECT_NEAR(c.m_dTravailB[TravailB::DT], d * (1130 / 4185.5) / (4 * 25 / 1.1626), 1e-15);

    // Unknown curve: the gas stays at 0 degrees and the beam cools.
    CTemperatureGenerale f;
    Poutre(f, 6, 8, 0.01);
    EC2(f, 0.5, 0.0, (CTemperatureGenerale::MONTEE_TEMPERATURE)7);
    EXPECT_LT(f.GetT1(1, 1), 20.0);
    EXPECT_LT(f.GetT1(4, 3), 20.0);

    // The hydrocarbon curve takes its exponents in hours: at a quarter of an hour it is
    // still far below the standard curve, and so is the beam.
    CTemperatureGenerale s, hc;
    Poutre(s, 6, 8, 0.01);
    Poutre(hc, 6, 8, 0.01);
    EC2(s, 0.25);
    EC2(hc, 0.25, 0.0, CTemperatureGenerale::MONTEE_HYDROCARBURE);
    EXPECT_LT(hc.GetT1(1, 1), s.GetT1(1, 1) - 200.0);
    EXPECT_GT(hc.GetT1(1, 1), 100.0);

    // Extra materials have no capacity: the step collapses and the field stays at 20.
    CTemperatureGenerale m;
    Poutre(m, 6, 8, 0.01);
    EC2(m, 0.5, 0.0, CTemperatureGenerale::MONTEE_NORMALE, 1);
    EXPECT_EQ(m.GetT1(1, 1), 20.0);
    EXPECT_EQ(DernieresStatistiquesBilan().pas, 0);

    // A moisture index beyond the one-entry table is an index fault.
    CTemperatureGenerale e;
    Poutre(e, 6, 8, 0.01);
    e.m_Masque[3][3] = 21.0;
    bool leve = false;
    try
    {
        EC2(e, 0.1);
    }
    catch (CException* ex)
    {
        leve = true;
        ex->Delete();
    }
    EXPECT_TRUE(leve);
}

TEST(MethodesGrille, UnexposedFaceResultsOfEurocode2)
{
    DefinirNombreThreadsThermique(1);
    CTemperatureGenerale t;
    Poutre(t, 6, 8, 0.01);
    for (int j = 0; j < 8; ++j)
        t.m_Masque[0][j] = -2.0;
    EC2(t, 1.0);
    // Unexposed faces sit between the top cells and the 20 degree air.
    EXPECT_GT(t.m_dTravailB[TravailB::MAX_SURFACE], 20.0);
    EXPECT_GE(t.m_dTravailB[TravailB::MAX_SURFACE], t.m_dTravailB[TravailB::MOY_NONEXPO]);
    double haut = 0.0;
    for (int j = 1; j <= 6; ++j)
        haut = std::max(haut, t.GetT1(1, j));
    EXPECT_LT(t.m_dTravailB[TravailB::MAX_SURFACE], haut);
    EXPECT_GT(t.m_dTravailA[TravailA::MOY_EXPO], t.GetT1(8, 3)); // the exposed face is hotter than its cell
}

TEST(MethodesGrille, ITBTPAndZOLTSteps)
{
    DefinirNombreThreadsThermique(1);
    CTemperatureGenerale a;
    Poutre(a, 6, 8, 0.01);
    a.m_Masque[4][3] = -3.0;
    a.CalculTemperatureITBTP(0, 3, 0.1, 0.0);
    EXPECT_DOUBLE_EQ(a.m_dTravailB[TravailB::DT], 0.01 * 0.27 / 24.0);
    EXPECT_EQ(a.m_Masque[4][3], -3.0);

    // A duration shorter than one step leaves the initial 15 degrees.
    CTemperatureGenerale b;
    Poutre(b, 6, 8, 0.01);
    b.CalculTemperatureITBTP(0, 0, 1e-4, 0.0);
    EXPECT_EQ(b.GetT1(1, 1), 15.0);
    EXPECT_EQ(b.m_dTravailA[TravailA::MOY_EXPO], 15.0);

    // ZOLT: the air limit always counts; its first step sees no fire.
    CTemperatureGenerale z;
    Poutre(z, 6, 8, 0.01);
    z.CalculTemperatureZOLT(0, 0.01 * 0.27 / 24.0, 0.0);
    EXPECT_DOUBLE_EQ(z.m_dTravailB[TravailB::DT], 0.01 * 0.27 / 24.0);
    EXPECT_EQ(DernieresStatistiquesBilan().pas, 1);
    EXPECT_EQ(z.GetT1(1, 1), 15.0);

    // Extra materials of zero properties leave a concrete-only field unchanged.
    CTemperatureGenerale z0, z3;
    Poutre(z0, 6, 8, 0.01);
    Poutre(z3, 6, 8, 0.01);
    z0.CalculTemperatureZOLT(0, 0.1, 0.0);
    z3.CalculTemperatureZOLT(3, 0.1, 0.0);
    EXPECT_TRUE(z0.m_T1 == z3.m_T1);
    EXPECT_GT(z0.GetT1(1, 1), 100.0);

    // ZOLT takes the gas at the start of the step, ITBTP at its end: ITBTP runs ahead.
    CTemperatureGenerale i1, z1;
    Poutre(i1, 6, 8, 0.01);
    Poutre(z1, 6, 8, 0.01);
    const double dt = 0.001;
    i1.CalculTemperatureITBTP(0, 0, 0.2, dt);
    z1.CalculTemperatureZOLT(0, 0.2, dt);
    EXPECT_GT(i1.GetT1(1, 1), z1.GetT1(1, 1));
}
} // namespace
