// The material laws, fire curves and boundary coefficients of the three grid methods,
// at their breakpoints and between, against values worked out by hand.
#include "thermal/ProprietesEC2.h"
#include "thermal/ProprietesFlamme.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
constexpr double W = 1.1626;
constexpr double J = 4185.5;

TEST(ProprietesEC2, DensityFollowsItsFourPiecesAndIsContinuous)
{
    EXPECT_DOUBLE_EQ(MasseVolumiqueEC2(2400.0, 20.0), 2400.0);
    EXPECT_DOUBLE_EQ(MasseVolumiqueEC2(2400.0, 115.0), 2400.0);
    EXPECT_DOUBLE_EQ(MasseVolumiqueEC2(2400.0, 157.5), 2376.0); // half way to -2 %
    EXPECT_DOUBLE_EQ(MasseVolumiqueEC2(2400.0, 200.0), 2352.0);
    EXPECT_DOUBLE_EQ(MasseVolumiqueEC2(2400.0, 300.0), 2316.0);
    EXPECT_DOUBLE_EQ(MasseVolumiqueEC2(2400.0, 400.0), 2280.0);
    EXPECT_DOUBLE_EQ(MasseVolumiqueEC2(2400.0, 1200.0), 2112.0);
    EXPECT_DOUBLE_EQ(MasseVolumiqueEC2(2000.0, 1200.0), 1760.0); // proportional to rho20
    for (double b : {115.0, 200.0, 400.0})
        EXPECT_NEAR(MasseVolumiqueEC2(2400.0, b), MasseVolumiqueEC2(2400.0, b + 1e-9), 1e-6);
}

TEST(ProprietesEC2, ConductivityInItsThreeLawsAndForExtraMaterials)
{
    // Mean of the limits: (2 + 1.36)/2 at 0, (1.7656 + 1.2297)/2 at 100 degrees.
    EXPECT_DOUBLE_EQ(ConductiviteEC2(0, 0.0, 0, 0), 1.68 / W);
    EXPECT_NEAR(ConductiviteEC2(0, 100.0, 0, 0), 1.49765 / W, 1e-14);
    EXPECT_NEAR(ConductiviteEC2(0, 1000.0, 1, 0), (0.619 + 0.57) / 2 / W, 1e-14);
    EXPECT_EQ(ConductiviteEC2(1, 100.0, 0, 0), 0.0);
    // Aggregate law: lightweight (above 1) has its own, the others the lower limit.
    EXPECT_NEAR(ConductiviteEC2(0, 100.0, 2, 1), 1.4977 / W, 1e-14);
    EXPECT_NEAR(ConductiviteEC2(0, 100.0, 1, 1), 1.2297 / W, 1e-14);
    EXPECT_NEAR(ConductiviteEC2(0, 100.0, 0, 1), 1.2297 / W, 1e-14);
    EXPECT_NEAR(ConductiviteEC2(3, 100.0, 0, 1), 1.2297 / W, 1e-14);
}

TEST(ProprietesEC2, SpecificHeatRisesThenLevelsOff)
{
    EXPECT_DOUBLE_EQ(ChaleurSpecifiqueEC2(0, 20.0), 900.0 / J);
    EXPECT_DOUBLE_EQ(ChaleurSpecifiqueEC2(0, 100.0), 900.0 / J);
    EXPECT_DOUBLE_EQ(ChaleurSpecifiqueEC2(0, 150.0), 950.0 / J);
    EXPECT_DOUBLE_EQ(ChaleurSpecifiqueEC2(0, 200.0), 1000.0 / J);
    EXPECT_DOUBLE_EQ(ChaleurSpecifiqueEC2(0, 300.0), 1050.0 / J);
    EXPECT_DOUBLE_EQ(ChaleurSpecifiqueEC2(0, 400.0), 1100.0 / J);
    EXPECT_DOUBLE_EQ(ChaleurSpecifiqueEC2(0, 900.0), 1100.0 / J);
    EXPECT_EQ(ChaleurSpecifiqueEC2(2, 300.0), 0.0);
}

TEST(ProprietesEC2, FireCurvesInHours)
{
    EXPECT_NEAR(TemperatureGazEC2(0, 1.0, 20.0), 945.3, 0.05);
    EXPECT_NEAR(TemperatureGazEC2(0, 1.0, 20.0), 945.340051348972, 1e-9);
    EXPECT_DOUBLE_EQ(TemperatureGazEC2(0, 0.0, 20.0), 20.0);
    // External fire keeps 0.684, so it does not start exactly at ambient.
    EXPECT_NEAR(TemperatureGazEC2(1, 0.0, 20.0), 21.98, 1e-9);
    EXPECT_NEAR(TemperatureGazEC2(1, 1.0, 20.0), 347.5659246534063, 1e-9);
    EXPECT_NEAR(TemperatureGazEC2(2, 0.0, 20.0), 20.0, 1e-12);
    EXPECT_NEAR(TemperatureGazEC2(2, 1.0, 20.0), 743.1439724238246, 1e-9);
    EXPECT_NEAR(TemperatureGazEC2(2, 1.0, 0.0), 723.1439724238246, 1e-9);
    EXPECT_EQ(TemperatureGazEC2(3, 1.0, 20.0), 0.0);
    EXPECT_EQ(TemperatureGazEC2(-1, 1.0, 20.0), 0.0);
}

TEST(ProprietesEC2, SurfaceCoefficients)
{
    EXPECT_DOUBLE_EQ(CapaciteAirEC2(), 1130.0 / J);
    EXPECT_DOUBLE_EQ(CoefficientNonExposeEC2(), 9.0 / W);
    EXPECT_DOUBLE_EQ(1.0 / CoefficientNonExposeEC2(), 0.12917777777777778);
    EXPECT_DOUBLE_EQ(CoefficientConvectionEC2(0), 25.0 / W);
    EXPECT_DOUBLE_EQ(CoefficientConvectionEC2(1), 25.0 / W);
    EXPECT_DOUBLE_EQ(CoefficientConvectionEC2(2), 50.0 / W);
    // 293 K on both sides: (2 * 293^2) * 586 * 0.8 * 5.67e-8.
    EXPECT_NEAR(CoefficientRayonnementEC2(20.0, 20.0), 2.0 * 293 * 293 * 586 * 4.536e-8 / W, 1e-12);
    EXPECT_NEAR(CoefficientRayonnementEC2(1000.0, 20.0), (1273.0 * 1273 + 293.0 * 293) * 1566 * 4.536e-8 / W, 1e-12);
    EXPECT_DOUBLE_EQ(CoefficientRayonnementEC2(1000.0, 20.0), CoefficientRayonnementEC2(20.0, 1000.0));
    EXPECT_DOUBLE_EQ(CoefficientSurfaceEC2(1000.0, 20.0, 2), CoefficientRayonnementEC2(1000.0, 20.0) + 50.0 / W);
}

TEST(ProprietesFlamme, RecordsAndStandardRise)
{
    const CoefficientsPropriete lambda{1.4, 0.15, 0.006};
    EXPECT_DOUBLE_EQ(ValeurPropriete(lambda, 0.0), 1.4);
    EXPECT_NEAR(ValeurPropriete(lambda, 500.0), 0.8, 1e-15);
    EXPECT_NEAR(ValeurPropriete({2400.0, 56.0, 0.0}, 1000.0), 1840.0, 1e-12);
    EXPECT_DOUBLE_EQ(ElevationGazNormalisee(0.0), 0.0);
    EXPECT_NEAR(ElevationGazNormalisee(1.0), 925.340051348972, 1e-9);
    EXPECT_DOUBLE_EQ(TemperatureFlamme(1000.0), 1243.0);
}

TEST(ProprietesFlamme, RadiationAndEmissivity)
{
    // Face at the flame temperature: beta = 1, hr = 40 (Tf/1000)^3 * 4.
    EXPECT_NEAR(CoefficientRayonnementFlamme(1273.0, 1000.0), 160.0 * 1.273 * 1.273 * 1.273, 1e-12);
    // Cold face: beta = 288/1000.
    const double b = 0.288;
    EXPECT_NEAR(CoefficientRayonnementFlamme(1000.0, 15.0), 40.0 * (1 + b + b * b + b * b * b), 1e-12);

    EXPECT_EQ(FacteurEmissiviteITBTP(1, 5000.0, 10.0), 0.97);
    EXPECT_NEAR(FacteurEmissiviteITBTP(2, 300.0, 600.0), 0.97 * 0.75, 1e-15);
    EXPECT_EQ(FacteurEmissiviteITBTP(5, 700.0, 600.0), 0.0);
    // ZOLT: no radiation once the face is hotter than the gas rise, even at the first step.
    EXPECT_EQ(FacteurEmissiviteZOLT(1, 15.0, 0.0), 0.0);
    EXPECT_EQ(FacteurEmissiviteZOLT(1, 15.0, 100.0), 0.97);
    EXPECT_NEAR(FacteurEmissiviteZOLT(3, 300.0, 600.0), 0.97 * 0.75, 1e-15);
    EXPECT_EQ(FacteurEmissiviteZOLT(3, 600.5, 600.0), 0.0);
}

TEST(ProprietesFlamme, UnexposedCoefficient)
{
    EXPECT_EQ(CoefficientNonExposeFlamme(15.0), 0.1);
    EXPECT_EQ(CoefficientNonExposeFlamme(-5.0), 0.1);
    EXPECT_DOUBLE_EQ(CoefficientNonExposeFlamme(16.0), 8.0);
    EXPECT_NEAR(CoefficientNonExposeFlamme(15.0 + 1024.0), 8.0 * std::pow(2.0, 1.0), 1e-12);
}
} // namespace
