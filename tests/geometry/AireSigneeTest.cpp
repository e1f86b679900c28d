#include "geometry/AireSignee.h"
#include "geometry/CPolygone.h"
#include "geometry/Routines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace
{
struct Sommet
{
    std::int64_t X, Y; // in units of 2^-20 m
};
const double kUnite = std::ldexp(1.0, -20);

// A 64-gon of radius 2^22 units (4 m) about (2048 m, 2048 m). Every side's term is a
// product of at most 52 bits, so each term is exact, but their running sum needs 56
// bits: only a sum without rounding gives the exact area.
std::vector<Sommet> Polygone64()
{
    std::vector<Sommet> s;
    for (int i = 0; i < 64; ++i)
    {
        const double a = 2.0 * 3.141592653589793 * i / 64.0;
        s.push_back({(std::int64_t(1) << 31) + std::llround(std::ldexp(std::cos(a), 22)),
                     (std::int64_t(1) << 31) + std::llround(std::ldexp(std::sin(a), 22))});
    }
    return s;
}

// The shoelace in integers: twice the area in units squared, exact.
double AireEntiere(const std::vector<Sommet>& s)
{
    std::int64_t deuxA = 0;
    for (std::size_t i = 0; i < s.size(); ++i)
    {
        const Sommet& a = s[i];
        const Sommet& b = s[(i + 1) % s.size()];
        deuxA += a.X * b.Y - b.X * a.Y;
    }
    return std::ldexp((double)deuxA, -41);
}

double AireDe(const std::vector<Sommet>& s, std::size_t depart, bool bInverse)
{
    prefa_geometrie::AireSignee aire;
    for (std::size_t k = 0; k < s.size(); ++k)
    {
        const std::size_t i = bInverse ? (depart + s.size() - k) % s.size() : (depart + k) % s.size();
        aire.Ajoute(s[i].X * kUnite, s[i].Y * kUnite);
    }
    return aire.Valeur();
}
} // namespace

// A running sum of the side terms gets this area wrong in its last bits, differently
// for each starting point and direction: the sign of a thin contour's area would then
// depend on where it starts.
TEST(AireSignee, ExactAreaFarFromTheOriginWhateverTheStartAndDirection)
{
    const std::vector<Sommet> s = Polygone64();
    const double exacte = AireEntiere(s);
    ASSERT_NEAR(exacte, 50.185, 0.001); // 32 sin(pi / 32) 4^2
    for (std::size_t depart = 0; depart < s.size(); ++depart)
    {
        EXPECT_EQ(AireDe(s, depart, false), exacte) << depart;
        EXPECT_EQ(AireDe(s, depart, true), -exacte) << depart;
    }

    // The contour and the caller's linked contour give the same exact value.
    CPolygone p;
    l2ch_descrip liste{nullptr, nullptr, sizeof(L_POINT)};
    for (const Sommet& q : s)
    {
        p.AddTail(q.X * kUnite, q.Y * kUnite);
        l2ch_AjouteQueue(&liste, q.X * kUnite, q.Y * kUnite);
    }
    EXPECT_EQ(p.Surface(false), exacte);
    EXPECT_EQ(Surface_Contour_Polygone(&liste), exacte);
    l2ch_Libere(&liste);
}

TEST(AireSignee, FewerThanThreePointsEncloseNothingAndTheClosingSideCounts)
{
    prefa_geometrie::AireSignee aire;
    EXPECT_EQ(aire.Valeur(), 0.0);
    aire.Ajoute(1.0, 5.0);
    aire.Ajoute(3.0, 7.0);
    EXPECT_EQ(aire.Valeur(), 0.0);
    // (1,5) (3,7) (3,5): clockwise, area 2; the closing side (3,5)-(1,5) alone adds +10
    // to the two others' -12.
    aire.Ajoute(3.0, 5.0);
    EXPECT_EQ(aire.Valeur(), -2.0);
    EXPECT_EQ(prefa_geometrie::TermeAire(3.0, 5.0, 1.0, 5.0), 10.0);
}
