// The shared cell-balance kernel: agreement with a plain one-dimensional explicit
// solution written here, the evaporation plateau, and the same field for any number of
// threads.
#include "thermal/BilanThermique.h"
#include "thermal/CTemperatureGenerale.h"
#include "thermal/GrilleBilan.h"
#include "thermal/ProprietesEC2.h"
#include "thermal/ProprietesFlamme.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace
{
// A slab: a fire-gas row below, n concrete rows, then a row of `dessus` above. With no
// side border the grid edges are adiabatic, so every column is the one-dimensional case.
void Dalle(CTemperatureGenerale& t, int n, int largeur, double dessus, double pas)
{
    t.m_Masque.SetSize(n + 2);
    for (int i = 0; i < n + 2; ++i)
    {
        t.m_Masque[i].SetSize(largeur);
        for (int j = 0; j < largeur; ++j)
            t.m_Masque[i][j] = i == 0 ? dessus : i == n + 1 ? -1.0 : 11.0;
    }
    t.SetDELX(pas);
    t.m_dTravailA[TravailA::LAMBDA] = 1.4;
    t.m_dTravailA[TravailA::RHO] = 2400.0;
    t.m_dTravailA[TravailA::C] = 0.22;
}

// The Eurocode 2 equations on one column, cell 0 next to the fire.
std::vector<double> ReferenceEC2(int n, double pas, double duree, double dt, bool nonExposeDessus)
{
    const double d = (double)(float)pas;
    std::vector<double> T(n, 20.0), Tn(n);
    auto lam = [](double th) { return ConductiviteEC2(0, th, 0, 0); };
    const double N = duree / dt;
    for (int k = 1; k < N + 1; ++k)
    {
        const double g = TemperatureGazEC2(0, (k - 1) * dt, 20.0);
        for (int i = 0; i < n; ++i)
        {
            const double th = T[i], l = lam(th);
            double Q = 0.0;
            if (i == 0)
                Q += (g - th) / (1.0 / CoefficientSurfaceEC2(g, th, 0) + (d / 2) / l) * d * dt;
            else
                Q += (T[i - 1] - th) / ((d / lam(T[i - 1]) + d / l) * 0.5) * d * dt;
            if (i < n - 1)
                Q += (T[i + 1] - th) / ((d / lam(T[i + 1]) + d / l) * 0.5) * d * dt;
            else if (nonExposeDessus)
                Q += (20.0 - th) / ((d / 2) / l + 0.12917777777777778) * d * dt;
            else
                Q += (g - th) / (1.0 / CoefficientSurfaceEC2(g, th, 0) + (d / 2) / l) * d * dt;
            Tn[i] = th + Q / (MasseVolumiqueEC2(2400.0, th) * ChaleurSpecifiqueEC2(0, th) * d * d);
        }
        T.swap(Tn);
    }
    return T;
}

// The ITBTP equations on one column: flame radiation below, unexposed air above, the
// face temperatures of the previous step feeding the coefficients.
std::vector<double> ReferenceITBTP(int n, double pas, double duree, double dt)
{
    std::vector<double> T(n, 15.0), Tn(n);
    auto lam = [](double th) { return 1.4 - 0.15 * (th / 100) + 0.006 * (th / 100) * (th / 100); };
    auto rc = [](double th) { return (2400.0 - 56.0 * (th / 100)) * 0.22; };
    double ts = 15.0, tu = 15.0;
    const int N = (int)(duree / dt);
    for (int k = 1; k <= N; ++k)
    {
        const double R = 345.0 * std::log10(480.0 * k * dt + 1.0);
        const double tf = 0.97 * R + 273.0, b = (ts + 273.0) / tf;
        const double hr = 40.0 * std::pow(tf / 1000.0, 3) * (1 + b + b * b + b * b * b);
        const double e = k == 1 ? 0.97 : std::max(0.0, 0.97 * (1 - (ts / R) * (ts / R)));
        const double h = e * hr + 6.0;
        const double hu = tu <= 15.0 ? 0.1 : std::max(0.1, 8.0 * std::pow(tu - 15.0, 0.1));
        const double g = 15.0 + R;
        for (int i = 0; i < n; ++i)
        {
            const double th = T[i], r = 0.5 * pas / lam(th);
            double Q = 0.0;
            if (i == 0)
                Q += (g - th) / (1.0 / h + r) * pas * dt;
            else
                Q += (T[i - 1] - th) / (r + 0.5 * pas / lam(T[i - 1]) + 1.0 / 60000) * pas * dt;
            if (i < n - 1)
                Q += (T[i + 1] - th) / (r + 0.5 * pas / lam(T[i + 1]) + 1.0 / 60000) * pas * dt;
            else
                Q += (15.0 - th) / (1.0 / hu + r) * pas * dt;
            Tn[i] = th + Q / (rc(th) * pas * pas);
        }
        T.swap(Tn);
        const double r0 = 0.5 * pas / lam(T[0]), rn = 0.5 * pas / lam(T[n - 1]);
        ts = T[0] + (g - T[0]) * r0 / (r0 + 1.0 / h);
        tu = T[n - 1] + (15.0 - T[n - 1]) * rn / (rn + 1.0 / hu);
    }
    return T;
}

TEST(BilanThermique, SlabAgreesWithOneDimensionalEurocode2Solution)
{
    DefinirNombreThreadsThermique(1);
    for (bool nonExpose : {true, false})
    {
        CTemperatureGenerale t;
        const int n = 24, largeur = 9;
        Dalle(t, n, largeur, nonExpose ? -2.0 : -1.0, 0.01);
        ASSERT_EQ(t.CalculTemperatureEC2(0, 1.5, 0.0, 0.0, CTemperatureGenerale::MONTEE_NORMALE, GRANULAT_SILICEUX, 0),
                  0);
        const double dt = t.m_dTravailB[TravailB::DT];
        EXPECT_EQ(DernieresStatistiquesBilan().redemarrages, 0);
        const std::vector<double> ref = ReferenceEC2(n, 0.01, 1.5, dt, nonExpose);
        for (int i = 0; i < n; ++i)
            EXPECT_NEAR(t.GetT1(n - i, largeur / 2), ref[i], 1e-9) << "cell " << i;
        EXPECT_GT(ref[0], 500.0); // the fire did reach the slab
        if (nonExpose)
        {
            EXPECT_LT(ref[n - 1], ref[0]);
        }
    }
}

TEST(BilanThermique, SlabAgreesWithOneDimensionalITBTPSolution)
{
    DefinirNombreThreadsThermique(1);
    CTemperatureGenerale t;
    const int n = 20, largeur = 5;
    Dalle(t, n, largeur, -2.0, 0.01);
    t.CalculTemperatureITBTP(0, 0, 1.0, 0.0);
    const double dt = t.m_dTravailB[TravailB::DT];
    EXPECT_DOUBLE_EQ(dt, 0.01 * 0.01 * 2400.0 * 0.22 / (4 * 1.4));
    const std::vector<double> ref = ReferenceITBTP(n, 0.01, 1.0, dt);
    for (int i = 0; i < n; ++i)
        EXPECT_NEAR(t.GetT1(n - i, largeur / 2), ref[i], 1e-9) << "cell " << i;
    EXPECT_GT(ref[0], 400.0);
}

// A constant law, to watch the evaporation plateau alone.
class LoisPlateau : public LoisThermiques
{
public:
    LoisPlateau()
    {
        tempInitiale = 20.0;
        seuilEvaporation = {50.0};
        teneurEau = {0.0};
    }
    void Proprietes(int, const double*, std::size_t n, double* l, double* rc) const override
    {
        for (std::size_t j = 0; j < n; ++j)
            l[j] = 1.0, rc[j] = 1000.0;
    }
    ConditionsPas PreparePas(int, double, const ResultatsFaces&) const override
    {
        ConditionsPas c;
        c.thetaGaz = 220.0;
        c.thetaAir = 20.0;
        c.rFeu = 0.5;
        c.rNonExpose = 1e300;
        return c;
    }
    long long NombrePas(double duree, double dt) const override { return (long long)(duree / dt + 0.5); }
};

TEST(BilanThermique, EvaporationPlateauHoldsTheTemperatureUntilTheStoreIsSpent)
{
    // One concrete cell between the fire and the unexposed air, 0.1 m wide.
    const double masque[3] = {-1.0, 11.0, -2.0};
    const double d = 0.1, dt = 0.01;
    auto apres = [&](int pas, double teneur) {
        LoisPlateau lois;
        lois.teneurEau = {teneur};
        BilanThermique b(1, 3, masque, d);
        b.Calculer(lois, pas * dt, dt);
        return b.Temperatures()[1];
    };
    // Q of a step at 60 degrees: (220 - 60) / (0.05 + 0.5) * d * dt.
    // Starting at 60 (above the threshold): reach it first with no water.
    const double r = 0.5 * d / 1.0;
    const double Q20 = (220.0 - 20.0) / (r + 0.5) * d * dt + (20.0 - 20.0) / (r + 1e300) * d * dt;
    // Threshold 50 > 20: no plateau at the start, the first step heats normally.
    EXPECT_NEAR(apres(1, 0.0), 20.0 + Q20 / (1000.0 * d * d), 1e-12);

    LoisPlateau chaud;
    chaud.tempInitiale = 60.0;
    const double Q60 = (220.0 - 60.0) / (r + 0.5) * d * dt;
    // Store = 2.5 Q: two steps absorbed, the third gets half a step's heat.
    const double teneur = 2.5 * Q60 / (d * d * 538800.0);
    auto chaudApres = [&](int pas) {
        chaud.teneurEau = {teneur};
        BilanThermique b(1, 3, masque, d);
        b.Calculer(chaud, pas * dt, dt);
        return b.Temperatures()[1];
    };
    EXPECT_EQ(chaudApres(1), 60.0);
    EXPECT_EQ(chaudApres(2), 60.0);
    EXPECT_NEAR(chaudApres(3), 60.0 + 0.5 * Q60 / (1000.0 * d * d), 1e-9);
    const double t3 = chaudApres(3);
    const double Q3 = (220.0 - t3) / (r + 0.5) * d * dt;
    EXPECT_NEAR(chaudApres(4), t3 + Q3 / (1000.0 * d * d), 1e-9);
}

TEST(BilanThermique, TheRangeCheckAllowsRoundingOnly)
{
    // One concrete cell between two gas cells at 220 degrees, with a step that exceeds its
    // explicit limit C / G by a factor 1 + e: one step leaves it at 220 + 200 e.
    const double masque[3] = {-1.0, 11.0, -1.0};
    const double d = 0.1, R = 0.5 * d / 1.0 + 0.5, limite = 1000.0 * d * d / (2 * d / R);
    for (double e : {1e-12, 1e-6})
    {
        BilanThermique b(1, 3, masque, d);
        const double dt = limite * (1 + e);
        const StatistiquesBilan s = b.Calculer(LoisPlateau(), dt, dt);
        EXPECT_EQ(s.pas, 1);
        EXPECT_NEAR(b.Temperatures()[1], 220.0 + 200.0 * e, 1e-11);
        EXPECT_EQ(s.horsBornes, e > 1e-9) << e;
    }
}

// A beam with everything in it: fire on three faces, unexposed air on top, a cavity and
// an air cell row, 37 columns so that the bands split unevenly.
void PoutreMixte(CTemperatureGenerale& t)
{
    const int nl = 31, nc = 37;
    t.m_Masque.SetSize(nl);
    for (int i = 0; i < nl; ++i)
    {
        t.m_Masque[i].SetSize(nc);
        for (int j = 0; j < nc; ++j)
        {
            double v = 11.0;
            if (i == 0)
                v = -2.0;
            else if (i == nl - 1 || j == 0 || j == nc - 1)
                v = -1.0;
            else if (i >= 10 && i < 14 && j >= 12 && j < 20)
                v = -3.0;
            else if (i == 20 && j >= 5 && j < 9)
                v = 0.0;
            t.m_Masque[i][j] = v;
        }
    }
    t.SetDELX(0.01);
    t.m_dTravailA[TravailA::LAMBDA] = 1.4;
    t.m_dTravailA[TravailA::RHO] = 2400.0;
    t.m_dTravailA[TravailA::C] = 0.22;
}

bool MemesOctets(const CTemperatureGenerale& a, const CTemperatureGenerale& b)
{
    if (a.m_T1.GetSize() != b.m_T1.GetSize())
        return false;
    for (INT_PTR i = 0; i < a.m_T1.GetSize(); ++i)
        if (a.m_T1[i].GetSize() != b.m_T1[i].GetSize() ||
            std::memcmp(a.m_T1[i].GetData(), b.m_T1[i].GetData(), sizeof(double) * a.m_T1[i].GetSize()) != 0)
            return false;
    return true;
}

TEST(BilanThermique, SameFieldBitForBitWithOneTwoAndThreeThreads)
{
    for (int methode = 0; methode < 3; ++methode)
    {
        CTemperatureGenerale ref;
        for (int threads : {1, 2, 3})
        {
            CTemperatureGenerale t;
            PoutreMixte(t);
            DefinirNombreThreadsThermique(threads);
            if (methode == 0)
                t.CalculTemperatureEC2(0, 0.25, 0.02, 0.0, CTemperatureGenerale::MONTEE_HYDROCARBURE, GRANULAT_LEGER,
                                       1);
            else if (methode == 1)
                t.CalculTemperatureITBTP(0, 0, 0.5, 0.0);
            else
                t.CalculTemperatureZOLT(0, 0.1, 0.0);
            EXPECT_EQ(DernieresStatistiquesBilan().threads, threads);
            if (threads == 1)
                ref = t;
            else
            {
                EXPECT_TRUE(MemesOctets(ref, t)) << "method " << methode << ", " << threads << " threads";
                EXPECT_EQ(ref.m_dTravailA[TravailA::MOY_EXPO], t.m_dTravailA[TravailA::MOY_EXPO]);
                EXPECT_EQ(ref.m_dTravailB[TravailB::MAX_SURFACE], t.m_dTravailB[TravailB::MAX_SURFACE]);
            }
        }
        EXPECT_GT(ref.GetT1(29, 18), 100.0) << "method " << methode;
    }
    DefinirNombreThreadsThermique(0);
}

TEST(BilanThermique, ProgressIsReportedAndCanStopTheRun)
{
    DefinirNombreThreadsThermique(2);
    CTemperatureGenerale t;
    PoutreMixte(t);
    std::vector<double> fractions;
    t.m_Progression = [&](double f) {
        fractions.push_back(f);
        return fractions.size() < 10;
    };
    t.CalculTemperatureITBTP(0, 0, 1.0, 0.0);
    const StatistiquesBilan s = DernieresStatistiquesBilan();
    EXPECT_TRUE(s.interrompu);
    EXPECT_EQ(s.pas, 10);
    ASSERT_EQ(fractions.size(), 10u);
    for (std::size_t i = 1; i < fractions.size(); ++i)
        EXPECT_GT(fractions[i], fractions[i - 1]);
    EXPECT_GT(fractions[0], 0.0);
    EXPECT_LT(fractions.back(), 1.0);

    // Ten steps run without a callback give the same field.
    CTemperatureGenerale u;
    PoutreMixte(u);
    u.CalculTemperatureITBTP(0, 0, 10.5 * t.m_dTravailB[TravailB::DT], 0.0);
    EXPECT_TRUE(MemesOctets(t, u));
    DefinirNombreThreadsThermique(0);
}
} // namespace
