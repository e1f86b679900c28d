#include "geometry/Routines.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(Round, HalfAwayFromZeroAndZeroBand)
{
    EXPECT_EQ(Round(2.5, 0), 3.0);
    EXPECT_EQ(Round(-2.5, 0), -3.0);
    EXPECT_EQ(Round(1.2345, 3), 1.235);
    EXPECT_EQ(Round(1.2344, 3), 1.234);
    EXPECT_EQ(Round(-1.2345, 3), -1.235);
    EXPECT_DOUBLE_EQ(Round(1234.5678, -2), 1200.0);
    // Within 1e-7 of zero the result is 0 whatever the precision asked.
    EXPECT_EQ(Round(5e-8, 9), 0.0);
    EXPECT_EQ(Round(1e-7, 9), 0.0);
    EXPECT_EQ(Round(-1e-7, 9), 0.0);
    EXPECT_DOUBLE_EQ(Round(1.01e-7, 9), 1.01e-7);
    EXPECT_DOUBLE_EQ(Round(-1.01e-7, 9), -1.01e-7);
}

TEST(Comparer, RoundsBeforeComparingWithATwelveDigitShortcut)
{
    EXPECT_EQ(Comparer(1.0004, 1.0, 3), 0);
    EXPECT_EQ(Comparer(1.0006, 1.0, 3), 1);
    EXPECT_EQ(Comparer(1.0, 1.0006, 3), -1);
    EXPECT_EQ(Comparer(-1.0006, -1.0, 3), -1);
    // Closer than 1e-12: equal even when asked for 15 decimals.
    EXPECT_EQ(Comparer(1.0, 1.0 + 0.5e-12, 15), 0);
    EXPECT_EQ(Comparer(1.0, 1.0 + 2e-12, 15), -1);
    // Round's zero band applies: 5e-8 is no different from 0 at any precision.
    EXPECT_EQ(Comparer(5e-8, 0.0, 9), 0);
    EXPECT_EQ(Comparer(2e-7, 0.0, 9), 1);
}

TEST(Signe, StrictThresholdAtTenToMinusN)
{
    EXPECT_EQ(Signe(0.001, 3), 0);
    EXPECT_EQ(Signe(0.0011, 3), 1);
    EXPECT_EQ(Signe(-0.001, 3), 0);
    EXPECT_EQ(Signe(-0.0011, 3), -1);
    EXPECT_EQ(Signe(0.0, 0), 0);
}

TEST(calcot, RectangleHalfProjectionsOfCleanedFloatSizes)
{
    double lsin = 0, hsin = 0, lcos = 0, hcos = 0;
    calcot(&lsin, &hsin, &lcos, &hcos, 0.3f, 0.5f, 30.0);
    // The float sizes are cleaned first: 0.3f counts as 0.3 exactly.
    EXPECT_DOUBLE_EQ(lsin, 0.075);
    EXPECT_DOUBLE_EQ(hsin, 0.125);
    EXPECT_DOUBLE_EQ(lcos, 0.075 * std::sqrt(3.0));
    EXPECT_DOUBLE_EQ(hcos, 0.125 * std::sqrt(3.0));
}

TEST(TransfoFloatDouble, RemovesSinglePrecisionNoise)
{
    EXPECT_NE((double)0.1f, 0.1);
    EXPECT_EQ(TransfoFloatDouble(0.1f), 0.1);
    EXPECT_EQ(TransfoFloatDouble(-0.1f), -0.1);
    EXPECT_EQ(TransfoFloatDouble(12.35f), 12.35);
    EXPECT_EQ(TransfoFloatDouble(1024.0f), 1024.0);
}

TEST(superposition_elements, TouchingBoxesAreApartUnlessWidened)
{
    // Unit boxes touching along x = 1.
    EXPECT_EQ(superposition_elements(0, 0, 1, 1, 1, 0, 2, 1, 0.0), 0);
    EXPECT_EQ(superposition_elements(1, 0, 2, 1, 0, 0, 1, 1, 0.0), 0);
    EXPECT_EQ(superposition_elements(0, 0, 1, 1, 1, 0, 2, 1, 0.001), 1);
    EXPECT_EQ(superposition_elements(0, 0, 1, 1, 0.5, 0.5, 2, 2, 0.0), 1);
    // Apart in y only.
    EXPECT_EQ(superposition_elements(0, 0, 1, 1, 0, 1.5, 1, 2, 0.4), 0);
    EXPECT_EQ(superposition_elements(0, 0, 1, 1, 0, 1.5, 1, 2, 0.6), 1);
    EXPECT_EQ(superposition_elements(0, 1.5, 1, 2, 0, 0, 1, 1, 0.6), 1);
}

TEST(Resous_Systeme, SolvesWithColumnPivotingAndRejectsTinyPivots)
{
    // Zero diagonal forces column swaps; the unknowns must come back in order.
    const double a[9] = {0, 2, 1, 1, 0, 0, 0, 3, 4};
    const double xr[3] = {1.5, -2.0, 0.25};
    double b[3];
    for (int i = 0; i < 3; ++i)
        b[i] = a[3 * i] * xr[0] + a[3 * i + 1] * xr[1] + a[3 * i + 2] * xr[2];
    double x[3] = {0, 0, 0};
    ASSERT_EQ(Resous_Systeme(a, b, x), 0);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(x[i], xr[i], 1e-14) << i;

    const double general[9] = {2, -1, 3, 4, 5, -6, -1, 7, 0.5};
    const double bg[3] = {1, 2, 3};
    ASSERT_EQ(Resous_Systeme(general, bg, x), 0);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(general[3 * i] * x[0] + general[3 * i + 1] * x[1] + general[3 * i + 2] * x[2],
                    bg[i], 1e-13);

    const double singulier[9] = {1, 2, 3, 2, 4, 6, 0, 0, 1};
    EXPECT_EQ(Resous_Systeme(singulier, bg, x), -1);

    // Pivot threshold 1e-18, itself accepted.
    const double petit[9] = {1e-18, 0, 0, 0, 1, 0, 0, 0, 1};
    ASSERT_EQ(Resous_Systeme(petit, bg, x), 0);
    EXPECT_DOUBLE_EQ(x[0], 1e18);
    const double minuscule[9] = {1e-19, 0, 0, 0, 1, 0, 0, 0, 1};
    EXPECT_EQ(Resous_Systeme(minuscule, bg, x), -1);
}
