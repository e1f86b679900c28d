// The DTU method on slab strips heated from below.
#include "thermal/CTemperatureGenerale.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

using namespace prefa_test;

namespace
{
// A strip of the given width and thickness meshed for the DTU method (no extra
// columns: the mirrored borders make it a slab of infinite width).
CTemperatureGenerale Dalle(double largeur, double epaisseur, double duree, double pas = 0.01)
{
    CPolygone s;
    s.AddTail(0, 0);
    s.AddTail(largeur, 0);
    s.AddTail(largeur, epaisseur);
    s.AddTail(0, epaisseur);
    CArray<CPolygone, CPolygone> vide;
    CTemperatureGenerale t;
    t.InitTableDonnees(s, duree, CTemperatureGenerale::DTU, CListePolygone(), 0, vide, 0, vide, pas, 1, 0.0, 0.0,
                       0.0, 0.0, 0.0);
    return t;
}

std::string Champ(const CTemperatureGenerale& t)
{
    std::ostringstream o;
    o.precision(1);
    o << std::fixed;
    for (int i = 0; i < t.m_T1.GetSize(); ++i)
    {
        for (int j = 0; j < t.m_T1[i].GetSize(); ++j)
            o << t.m_T1[i][j] << ' ';
        o << '\n';
    }
    return o.str();
}

const double PAS_1CM = 0.22 * 60 * 2400 * 0.01 * 0.01 * 0.25 / 1.4; // minutes per step
} // namespace

// The exposed-face coefficient of the first step, worked by hand: t = 0.5657 min,
// fire rise F = 345 log10(8t + 1) = 256.124, gas rise G = 0.85 F = 217.705, the face
// still at 0 so k = G/F = 0.85 and r = 273/(G + 273):
// h = 0.85 * 40 ((G + 273)/1000)^3 (1 + r + r^2 + r^3) + 6 = 14.18761, below 2 lambda/D.
TEST(CalculDTU, FirstStepCoefficientByHand)
{
    CTemperatureGenerale t = Dalle(0.06, 0.20, PAS_1CM / 60.0 / 2.0);
    t.CalculTemperatureDTU();
    ASSERT_NEAR(PAS_1CM, t.m_dTravailB[TravailB::DT], 1e-12) << "one step";
    EXPECT_NEAR(256.124006761864, t.m_dTravailA[TravailA::FEU], 1e-9);
    EXPECT_NEAR(14.187614659297896, t.m_dTravailA[TravailA::H], 1e-9);
}

TEST(CalculDTU, SlabHeatedFromBelow)
{
    CTemperatureGenerale t = Dalle(0.06, 0.20, 2.0);
    t.CalculTemperatureDTU();
    const int nl = t.GetNbLignes(), nc = t.GetNbColonnes();
    ASSERT_EQ(23, nl);
    ASSERT_EQ(8, nc);
    const std::string champ = Champ(t);

    // Rows 1 (unexposed face) to 20 (exposed face): equal along a row, rising downwards.
    for (int i = 1; i <= 20; ++i)
    {
        for (int j = 0; j < nc; ++j)
            ASSERT_EQ(t.GetT1(i, 1), t.GetT1(i, j)) << "row " << i << "\n" << champ;
        if (i > 1)
        {
            ASSERT_GT(t.GetT1(i, 1), t.GetT1(i - 1, 1)) << "row " << i << "\n" << champ;
        }
    }
    EXPECT_GT(t.GetT1(1, 1), 0.0) << champ;
    const double feu = t.m_dTravailA[TravailA::FEU];
    EXPECT_NEAR(345 * std::log10(8 * t.m_dTravailB[TravailB::DT] + 1), feu, 1e-9);
    EXPECT_LT(t.GetT1(20, 1), feu) << champ;
    EXPECT_GT(t.GetT1(20, 1), 0.7 * feu) << "the exposed face follows the fire\n" << champ;
    EXPECT_EQ(-2.0, t.GetT1(0, 3));
    EXPECT_EQ(-1.0, t.GetT1(21, 3));

    // The run stops at the first step at or past 120 minutes.
    EXPECT_GE(t.m_dTravailB[TravailB::DT], 120.0);
    EXPECT_LT(t.m_dTravailB[TravailB::DT] - PAS_1CM, 120.0);
    // The means are those of the face rows over the last two steps (the side sums
    // come from the end of the step before); the nodes count the 20 x 6 slab.
    EXPECT_LT(t.m_dTravailA[TravailA::MOY_EXPO], t.GetT1(20, 1));
    EXPECT_GT(t.m_dTravailA[TravailA::MOY_EXPO], t.GetT1(20, 1) - 2.0);
    EXPECT_LT(t.m_dTravailA[TravailA::MOY_NONEXPO], t.GetT1(1, 1));
    EXPECT_GT(t.m_dTravailA[TravailA::MOY_NONEXPO], t.GetT1(1, 1) - 0.5);
    EXPECT_EQ(120, t.m_nTravail[TravailN::NOEUDS]);
    EXPECT_EQ(6, t.m_nTravail[TravailN::FACE_EXPO]);
    EXPECT_EQ(6, t.m_nTravail[TravailN::FACE_NONEXPO]);
    EXPECT_EQ(0, t.m_nTravail[TravailN::SAUTES]);
    EXPECT_EQ(7, t.m_nTravail[TravailN::DERNIERE_COL]);
    // A 20 cm slab keeps its unexposed face well under both limits for 2 h.
    EXPECT_EQ(1300.0, t.m_dTravailA[TravailA::T140]);
    EXPECT_EQ(1300.0, t.m_dTravailA[TravailA::T180]);
    EXPECT_LT(t.m_dTravailB[TravailB::MAX_SURFACE], 180.0);
    ASSERT_EQ(nl, t.m_T2.GetSize());

    // A thin slab reaches both criteria, 140 on the mean and 180 on the hottest point,
    // and records the first crossing only.
    CTemperatureGenerale mince = Dalle(0.04, 0.06, 2.0);
    mince.CalculTemperatureDTU();
    const double t140 = mince.m_dTravailA[TravailA::T140], t180 = mince.m_dTravailA[TravailA::T180];
    EXPECT_GT(t140, 0.0) << Champ(mince);
    EXPECT_LT(t140, 120.0) << Champ(mince);
    EXPECT_LT(t180, 120.0);
    EXPECT_GE(mince.m_dTravailA[TravailA::MOY_140], 140.0);
    EXPECT_LT(mince.m_dTravailA[TravailA::MOY_140], 150.0) << "the mean recorded at the crossing";
    EXPECT_GE(mince.m_dTravailB[TravailB::MAX_180], 180.0);
    EXPECT_LT(mince.m_dTravailB[TravailB::MAX_180], 190.0);
    EXPECT_NEAR(std::round(t140 / PAS_1CM), t140 / PAS_1CM, 1e-6) << "criteria fall on steps";
    EXPECT_GT(mince.m_dTravailA[TravailA::MOY_NONEXPO], mince.m_dTravailA[TravailA::MOY_140])
        << "the mean went on rising";
}

TEST(CalculDTU, TargetsStopsAndSpecialGrids)
{
    // Half an hour: the first step that reaches 30 minutes, not an interpolation.
    CTemperatureGenerale t = Dalle(0.04, 0.10, 0.5);
    t.CalculTemperatureDTU();
    const double pas = PAS_1CM;
    EXPECT_NEAR(std::ceil(30.0 / pas) * pas, t.m_dTravailB[TravailB::DT], 1e-9);

    // Running again continues from the field but restarts the clock.
    const double avant = t.GetT1(5, 1);
    t.CalculTemperatureDTU();
    EXPECT_NEAR(std::ceil(30.0 / pas) * pas, t.m_dTravailB[TravailB::DT], 1e-9);
    EXPECT_GT(t.GetT1(5, 1), avant);

    // The progress callback sees fractions up to 1 and can stop the run.
    CTemperatureGenerale p = Dalle(0.04, 0.10, 1.0);
    int appels = 0;
    double derniere = 0.0;
    p.m_Progression = [&](double f) {
        EXPECT_GE(f, derniere);
        derniere = f;
        return ++appels < 10;
    };
    p.CalculTemperatureDTU();
    EXPECT_EQ(10, appels);
    EXPECT_NEAR(10 * pas, p.m_dTravailB[TravailB::DT], 1e-9);
    EXPECT_NEAR(10 * pas / 60.0, derniere, 1e-9);

    // With the top open to the fire too, no unexposed side: its mean stays 0, no 140.
    CTemperatureGenerale f = Dalle(0.04, 0.06, 2.0);
    for (int j = 0; j < f.GetNbColonnes(); ++j)
        f.m_T1[0][j] = -1.0;
    f.CalculTemperatureDTU();
    EXPECT_EQ(0.0, f.m_dTravailA[TravailA::MOY_NONEXPO]);
    EXPECT_EQ(1300.0, f.m_dTravailA[TravailA::T140]);
    EXPECT_EQ(1300.0, f.m_dTravailA[TravailA::T180]) << "no unexposed face node";
    EXPECT_EQ(0, f.m_nTravail[TravailN::FACE_NONEXPO]);
    EXPECT_NEAR(f.GetT1(1, 1), f.GetT1(6, 1), 1e-9) << "heated from both faces alike\n" << Champ(f);

    // A section node in the first row has nothing above it: refused, nothing changed.
    CTemperatureGenerale b = Dalle(0.04, 0.06, 1.0);
    b.m_T1[0][2] = 0.0;
    const CTemperatureGenerale copie(b);
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { b.CalculTemperatureDTU(); }));
    EXPECT_EQ(1, b == copie);
}

TEST(CalculDTU, NodeOperations)
{
    CTemperatureGenerale t = Dalle(0.04, 0.06, 1.0);
    const double D = 0.01;
    t.m_dTravailB[TravailB::LAMBDA] = 1.4;
    t.m_dTravailA[TravailA::H] = 20.0; // h
    t.m_dTravailA[TravailA::FEU] = 800.0; // fire rise
    t.m_dTravailB[TravailB::A] = 100.0;
    t.m_dTravailB[TravailB::B] = 120.0;
    t.m_dTravailB[TravailB::P] = -1.0;
    t.Calcul141(6, 2);
    const double R = 1.4 / 20.0;
    EXPECT_NEAR(((220.0) * (R - D / 2) + 2 * 800.0 * D) * 0.5 / (D / 2 + R), t.GetT1(6, 2), 1e-12);
    EXPECT_EQ(1, t.m_nTravail[TravailN::FACE_EXPO]);
    EXPECT_NEAR(t.GetT1(6, 2), t.m_dTravailB[TravailB::SOMME_EXPO], 1e-12);

    t.m_dTravailB[TravailB::HP] = 5.0; // h'
    t.m_dTravailB[TravailB::P] = -2.0;
    t.Calcul141(1, 2);
    const double Rp = 1.4 / 5.0;
    const double n = (Rp - D / 2) * 220.0 * 0.5 / (D / 2 + Rp);
    EXPECT_NEAR(n, t.GetT1(1, 2), 1e-12);
    EXPECT_EQ(1, t.m_nTravail[TravailN::FACE_NONEXPO]);
    EXPECT_NEAR((110.0 + n) / 2, t.m_dTravailB[TravailB::MAX_SURFACE], 1e-12);
    EXPECT_NEAR(t.GetT1(6, 2) + n, t.m_dTravailB[TravailB::SOMME_FACES], 1e-12);

    // Interior sweep: the average of the four sides for nodes deep inside.
    CTemperatureGenerale u = Dalle(0.04, 0.06, 1.0);
    for (int i = 1; i <= 6; ++i)
        for (int j = 0; j < u.GetNbColonnes(); ++j)
            u.m_T1[i][j] = 10.0 * i + j;
    u.Init56();
    EXPECT_DOUBLE_EQ(0.25 * (22 + 42 + 31 + 33), u.GetT1(3, 2));
    EXPECT_DOUBLE_EQ(12.0, u.GetT1(1, 2)) << "face nodes are not averaged";
    EXPECT_DOUBLE_EQ((11 + 12 + 13 + 14) / 1.0, u.m_dTravailB[TravailB::SOMME_COTE_NONEXPO])
        << "the unexposed face row";
    EXPECT_EQ(4, u.m_nTravail[TravailN::COTE_NONEXPO]);
    EXPECT_EQ(4, u.m_nTravail[TravailN::COTE_EXPO]);
    EXPECT_DOUBLE_EQ(61 + 62 + 63 + 64, u.m_dTravailB[TravailB::SOMME_COTE_EXPO]);
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { u.Calcul200(40, 1); }));
}
