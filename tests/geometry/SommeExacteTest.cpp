#include "geometry/SommeExacte.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using prefa_geometrie::SommeExacte;

namespace
{
double Somme(std::initializer_list<double> termes)
{
    SommeExacte s;
    for (double t : termes)
        s.Ajoute(t);
    return s.Valeur();
}
} // namespace

TEST(SommeExacte, RoundsTheMathematicalSumOnce)
{
    // Ten times 0.1 (each 0.1000000000000000055...) is 1.000000000000000055...: 1.0,
    // where a running sum gives 0.9999999999999999.
    SommeExacte dix;
    for (int i = 0; i < 10; ++i)
        dix.Ajoute(0.1);
    EXPECT_EQ(dix.Valeur(), 1.0);
    EXPECT_EQ(Somme({1e100, 1.0, -1e100}), 1.0);
    EXPECT_EQ(Somme({}), 0.0);

    // Half-way between two doubles, the terms below decide: 2^53 + 1 is a tie that
    // rounds to even (2^53), a hair above it rounds up, a hair below down.
    const double p53 = std::ldexp(1.0, 53);
    const double cheveu = std::ldexp(1.0, -40);
    EXPECT_EQ(Somme({p53, 1.0}), p53);
    EXPECT_EQ(Somme({p53, 1.0, cheveu}), p53 + 2.0);
    EXPECT_EQ(Somme({cheveu, 1.0, p53}), p53 + 2.0);
    EXPECT_EQ(Somme({p53, 3.0, -cheveu}), p53 + 2.0);
    EXPECT_EQ(Somme({-p53, -1.0, -cheveu}), -p53 - 2.0);

    // Sums that leave the doubles: the plain sum's infinity or NaN.
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Somme({1.0, inf}), inf);
    EXPECT_TRUE(std::isnan(Somme({inf, -inf, 1.0})));
    EXPECT_EQ(Somme({1.7e308, 1.7e308}), inf);
}
