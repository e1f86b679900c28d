// Fire curves: the nominal curves at values worked out by hand, tables, the parametric
// fire of EN 1991-1-2 Annex A, and the Eurocode 2 method run on them.
#include "thermal/CCourbeFeu.h"
#include "thermal/CCourbeFeuParametrique.h"
#include "thermal/CCourbeFeuTable.h"
#include "thermal/CTemperatureGenerale.h"
#include "thermal/GrilleBilan.h"
#include "MembreTestUtil.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace prefa_test;

namespace
{
const double kMinute = 1.0 / 60.0;

TEST(CourbesFeu, NominalCurvesAtHandWorkedValues)
{
    const CCourbeFeuNormalisee iso(CCourbeFeuNormalisee::NORMALISEE);
    const CCourbeFeuNormalisee ext(CCourbeFeuNormalisee::EXTERIEURE);
    const CCourbeFeuNormalisee hc(CCourbeFeuNormalisee::HYDROCARBURE);
    // 20 + 345 log10(41), log10(481), log10(961).
    EXPECT_NEAR(iso.Temperature(5 * kMinute), 576.4, 0.05);
    EXPECT_NEAR(iso.Temperature(1.0), 945.3, 0.05);
    EXPECT_NEAR(iso.Temperature(2.0), 1049.0, 0.05);
    EXPECT_EQ(iso.Temperature(0.0), 20.0);
    // 20 + 1080 (1 - 0.325 e^-5.01 - 0.675 e^-75); 20 + 660 (1 - 0.687 e^-9.6 - 0.313 e^-114).
    EXPECT_NEAR(hc.Temperature(30 * kMinute), 1097.7, 0.05);
    EXPECT_NEAR(ext.Temperature(30 * kMinute), 680.0, 0.05);
    EXPECT_NEAR(ext.Temperature(0.0), 20.0, 1e-9);
    EXPECT_EQ(iso.Convection(), 25.0);
    EXPECT_EQ(ext.Convection(), 25.0);
    EXPECT_EQ(hc.Convection(), 50.0);

    // The method's own numbered curves: the standard one to the bit, the hydrocarbon one
    // with its exponents on hours: 20 + 1080 (1 - 0.325 e^-0.0835 - 0.675 e^-1.25) at
    // half an hour.
    const CCourbeFeuMontee montee(CTemperatureGenerale::MONTEE_NORMALE);
    for (double t : {0.01, 0.37, 1.0, 3.9})
        EXPECT_EQ(montee.Temperature(t), iso.Temperature(t));
    const CCourbeFeuMontee hcMethode(CTemperatureGenerale::MONTEE_HYDROCARBURE);
    EXPECT_NEAR(hcMethode.Temperature(0.5), 568.3, 0.05);
    EXPECT_EQ(hcMethode.Convection(), 50.0);
    EXPECT_EQ(CCourbeFeuMontee((CTemperatureGenerale::MONTEE_TEMPERATURE)7).Temperature(1.0), 0.0);
}

TEST(CourbesFeu, TableIsLinearBetweenItsPointsAndHoldsItsEnds)
{
    CCourbeFeuTable t;
    EXPECT_EQ(t.Temperature(1.0), 20.0);
    ASSERT_EQ(1, t.Definir({{0, 20}, {10, 620}, {30, 820}, {60, 820}}, 30.0));
    EXPECT_EQ(t.Temperature(0.0), 20.0);
    EXPECT_NEAR(t.Temperature(2.5 * kMinute), 170.0, 1e-9);
    EXPECT_NEAR(t.Temperature(10 * kMinute), 620.0, 1e-9);
    EXPECT_NEAR(t.Temperature(20 * kMinute), 720.0, 1e-9);
    EXPECT_NEAR(t.Temperature(45 * kMinute), 820.0, 1e-9);
    EXPECT_EQ(t.Temperature(5.0), 820.0);
    EXPECT_EQ(t.Temperature(-1.0), 20.0);
    EXPECT_EQ(t.Fin(), 60.0);
    EXPECT_EQ(t.Convection(), 30.0);

    // Bad tables are refused and name their first bad point; the curve keeps its own.
    EXPECT_EQ(0, CCourbeFeuTable::Defaut({}));
    EXPECT_EQ(2, CCourbeFeuTable::Defaut({{0, 20}, {5, 500}, {5, 600}}));
    EXPECT_EQ(1, CCourbeFeuTable::Defaut({{0, 20}, {5, NAN}}));
    EXPECT_EQ(-1, CCourbeFeuTable::Defaut({{3, 20}}));
    EXPECT_EQ(0, t.Definir({{0, 20}, {5, 500}, {4, 600}}));
    EXPECT_EQ(0, t.Definir({{0, 20}, {5, 500}}, 0.0));
    EXPECT_EQ(t.Fin(), 60.0);
}

TEST(CourbesFeu, ParametricFireOfAnnexA)
{
    // O = 0.04, b = 1160: Gamma = 1. q = 200, medium growth: 0.2e-3 q / O = 1 h > 20 min,
    // ventilation controlled. Peak 20 + 1325 (1 - 0.324 e^-0.2 - 0.204 e^-1.7 - 0.472
    // e^-19) = 944.14 at 1 h; t*max = 1, so it cools at 250 (3 - 1) = 500 per hour and
    // reaches 20 at 1 + 924.14/500 h.
    CCourbeFeuParametrique v(0.04, 200, 1160, CCourbeFeuParametrique::MOYENNE);
    EXPECT_NEAR(v.Gamma(), 1.0, 1e-12);
    EXPECT_FALSE(v.Combustible());
    EXPECT_NEAR(v.TMax(), 1.0, 1e-12);
    EXPECT_NEAR(v.TetaMax(), 944.1395, 1e-3);
    EXPECT_NEAR(v.Temperature(1.0), 944.1395, 1e-3);
    EXPECT_NEAR(v.Temperature(2.0), 444.1395, 1e-3);
    EXPECT_NEAR(v.FinRefroidissement(), 2.848279, 1e-6);
    EXPECT_EQ(v.Temperature(3.0), 20.0);
    EXPECT_EQ(v.Convection(), 35.0);

    // q = 50: 0.2e-3 q / O = 15 min < 20: fuel controlled, tmax = 20 min; Olim = 0.1e-3
    // x 50 / (1/3) = 0.015 and Gamma_lim = (0.015/0.04)^2 = 0.140625 (no k: O is not above
    // 0.04). Peak at t* = 0.046875: 413.446. t*max = 0.25 <= 0.5: cooling at 625 from
    // t* = x t*max = tlim Gamma = 1/3.
    CCourbeFeuParametrique f(0.04, 50, 1160, CCourbeFeuParametrique::MOYENNE);
    EXPECT_TRUE(f.Combustible());
    EXPECT_NEAR(f.GammaChauffe(), 0.140625, 1e-12);
    EXPECT_NEAR(f.TMax(), 1.0 / 3, 1e-12);
    EXPECT_NEAR(f.Temperature(10 * kMinute), 257.3194, 1e-3);
    EXPECT_NEAR(f.TetaMax(), 413.4459, 1e-3);
    EXPECT_NEAR(f.Temperature(0.5), 309.2792, 1e-3);
    EXPECT_NEAR(f.FinRefroidissement(), 0.9628468, 1e-6);

    // O = 0.1, q = 60, b = 800, fast (15 min): fuel controlled (7.2 min); Gamma = 13.140625,
    // Gamma_lim = (0.024/800)^2 / (0.04/1160)^2 = 0.7569 times k = 1 + 1.5 (-0.2)
    // (360/1160) = 0.906897. t*max = 0.12 Gamma = 1.576875: cooling at 250 (3 - t*max).
    CCourbeFeuParametrique k(0.1, 60, 800, CCourbeFeuParametrique::RAPIDE);
    EXPECT_NEAR(k.Gamma(), 13.140625, 1e-9);
    EXPECT_NEAR(k.GammaChauffe(), 0.68643, 1e-9);
    EXPECT_NEAR(k.TetaMax(), 704.2837, 1e-3);
    EXPECT_NEAR(k.Temperature(0.3), 470.5243, 1e-3);
    // Continuous at the peak whichever way it is controlled.
    for (const CCourbeFeuParametrique* c : {&v, &f, &k})
        EXPECT_NEAR(c->Temperature(c->TMax() + 1e-9), c->TetaMax(), 1e-3);

    EXPECT_EQ(0, CCourbeFeuParametrique::HorsDomaine(0.02, 1000, 2200));
    EXPECT_EQ(1, CCourbeFeuParametrique::HorsDomaine(0.01, 200, 1160));
    EXPECT_EQ(2, CCourbeFeuParametrique::HorsDomaine(0.04, 1001, 1160));
    EXPECT_EQ(3, CCourbeFeuParametrique::HorsDomaine(0.04, 200, 99));
    EXPECT_EQ(1, CCourbeFeuParametrique::HorsDomaine(NAN, 200, 1160));
}

// A gas at a constant temperature with its own convection coefficient.
class GazConstant : public CCourbeFeu
{
public:
    GazConstant(double theta, double convection) : m_theta(theta), m_convection(convection) {}
    double Temperature(double) const override { return m_theta; }
    double Convection() const override { return m_convection; }

private:
    double m_theta, m_convection;
};

TEST(CourbesFeu, OneStepUnderTheCurvesGasAndConvection)
{
    // One concrete cell of 1 cm between the fire below and the air above, one step of
    // 1e-4 h, worked out from the standard's values: radiation 0.8 x 5.67e-8 (T1^2 +
    // T2^2)(T1 + T2) at 800 and 20 degrees plus 35 W/(m2 K), in series with half a cell
    // of concrete at 20 degrees (lambda the mean of 1.951408 and 1.333028 W/(m K)).
    CTemperatureGenerale t;
    t.m_Masque.SetSize(3);
    const double codes[3] = {-2.0, 11.0, -1.0};
    for (int i = 0; i < 3; ++i)
    {
        t.m_Masque[i].SetSize(1);
        t.m_Masque[i][0] = codes[i];
    }
    t.SetDELX(0.01);
    t.m_dTravailA[TravailA::RHO] = 2400.0;
    ASSERT_EQ(0, t.CalculTemperatureEC2(0, 1e-4, 0.0, 1e-4, GazConstant(800.0, 35.0), GRANULAT_SILICEUX, 0));
    const double d = (double)(float)0.01, T1 = 1073.0, T2 = 293.0;
    const double h = ((T1 * T1 + T2 * T2) * (T1 + T2) * 0.8 * 5.67e-8 + 35.0) / 1.1626;
    const double lambda = (1.951408 + 1.333028) / 2 / 1.1626;
    const double Q = (800.0 - 20.0) / (1 / h + d / 2 / lambda) * d * 1e-4;
    EXPECT_NEAR(t.GetT1(1, 0), 20.0 + Q / (2400.0 * 900.0 / 4185.5 * d * d), 1e-9);
}

TEST(CourbesFeu, Eurocode2UnderACurve)
{
    DefinirNombreThreadsThermique(0);
    // The curve form with the method's own curve is the numbered form, to the bit.
    CTemperatureGenerale a, b;
    Membre(a, 0.20, 0.30, 0.01, CTemperatureGenerale::EC2);
    Membre(b, 0.20, 0.30, 0.01, CTemperatureGenerale::EC2);
    ASSERT_EQ(0, a.CalculTemperatureEC2(0, 1.0, 0.015, 0.0, CTemperatureGenerale::MONTEE_HYDROCARBURE,
                                        GRANULAT_SILICEUX, 0));
    ASSERT_EQ(0, b.CalculTemperatureEC2(0, 1.0, 0.015, 0.0, CCourbeFeuMontee(CTemperatureGenerale::MONTEE_HYDROCARBURE),
                                        GRANULAT_SILICEUX, 0));
    EXPECT_TRUE(a.m_T1 == b.m_T1);

    // A table of the standard curve's values every minute gives its field within a
    // degree (the first minute, where the curve bends most, is the table's worst).
    CTemperatureGenerale iso, table;
    Membre(iso, 0.20, 0.30, 0.01, CTemperatureGenerale::EC2);
    Membre(table, 0.20, 0.30, 0.01, CTemperatureGenerale::EC2);
    std::vector<CCourbeFeuTable::Point> points;
    for (int m = 0; m <= 120; ++m)
        points.push_back({(double)m, 20.0 + 345.0 * std::log10(8.0 * m + 1.0)});
    CCourbeFeuTable courbe;
    ASSERT_EQ(1, courbe.Definir(points));
    ASSERT_EQ(0, EC2Normalise(iso, 2.0));
    ASSERT_EQ(0, table.CalculTemperatureEC2(0, 2.0, 0.015, 0.0, courbe, GRANULAT_SILICEUX, 0));
    double ecart = 0.0;
    for (int i = 0; i < iso.GetNbLignes(); ++i)
        for (int j = 0; j < iso.GetNbColonnes(); ++j)
            ecart = std::max(ecart, std::fabs(iso.GetT1(i, j) - table.GetT1(i, j)));
    EXPECT_LT(ecart, 1.0);
    EXPECT_GT(ecart, 0.0);

    // A short parametric fire: the face cools after the gas peak while the inside is
    // still warming.
    CTemperatureGenerale p;
    Membre(p, 0.20, 0.30, 0.01, CTemperatureGenerale::EC2);
    const CCourbeFeuParametrique feu(0.04, 50, 1160, CCourbeFeuParametrique::MOYENNE);
    p.m_DureesReleves = {feu.TMax(), 1.5};
    std::vector<std::vector<double>> champs(2);
    const int nc = p.GetNbColonnes();
    p.m_Releve = [&](std::size_t k, const double* T) { champs[k].assign(T, T + p.GetNbLignes() * nc); };
    ASSERT_EQ(0, p.CalculTemperatureEC2(0, 1.5, 0.015, 0.0, feu, GRANULAT_SILICEUX, 0));
    ASSERT_EQ(champs[0].size(), champs[1].size());
    ASSERT_FALSE(champs[1].empty());
    const int surface = 31 * nc + 15, coeur = 21 * nc + 15; // soffit, and 10 cm above it
    EXPECT_LT(champs[1][surface], 0.5 * champs[0][surface]);
    EXPECT_GT(champs[1][coeur], champs[0][coeur] + 10.0);
    EXPECT_LT(champs[1][surface], 413.5);

    // The curve's convection (35 W/(m2 K) for a parametric fire) also sets the cavity's
    // step: the air's capacity over four times the convection.
    CTemperatureGenerale c;
    Membre(c, 0.20, 0.30, 0.01, CTemperatureGenerale::EC2);
    c.m_Masque[15][15] = -3.0;
    ASSERT_EQ(0, c.CalculTemperatureEC2(0, 0.1, 0.015, 0.0, feu, GRANULAT_SILICEUX, 0));
    EXPECT_NEAR(c.m_dTravailB[TravailB::DT], (double)(float)0.01 * (1130 / 4185.5) / (4 * 35 / 1.1626), 1e-15);
}
} // namespace
