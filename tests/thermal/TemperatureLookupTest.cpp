// Point lookup on hand-built grids of both kinds: node and centre values, the four
// triangles against an independent barycentric evaluation, missing corners, indexing.
#include "thermal/CTemperatureGenerale.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace prefa_test;

namespace
{
const double D = 0.01;

// A grid of lignes x colonnes nodes holding v(i, j); markers all inside.
template <class F>
CTemperatureGenerale Grille(CTemperatureGenerale::TYPE_CALCUL_TEMPERATURE type, int lignes, int colonnes, F v)
{
    CTemperatureGenerale t;
    t.m_TypeCalcul = type;
    for (int i = 0; i < lignes; ++i)
    {
        CTemperatureGenerale::CLigne l, m;
        for (int j = 0; j < colonnes; ++j)
        {
            l.Add(v(i, j));
            m.Add(11.0);
        }
        t.m_T1.Add(l);
        t.m_Masque.Add(m);
    }
    t.m_nTravail[TravailN::NB_LIGNES] = lignes;
    t.m_nTravail[TravailN::NB_COLONNES] = colonnes;
    t.SetDELX(D);
    t.m_dXOrigine = colonnes * D;
    return t;
}

// Value at local (dx, dy) of a cell with corners A (0,0), B (D,0), C (0,D), E (D,D):
// barycentric interpolation in the triangle, of the four cut by the diagonals, that
// holds the point, the centre carrying the corners' mean.
double Reference(double A, double B, double C, double E, double dx, double dy)
{
    const double xc = D / 2, yc = D / 2, Tc = (A + B + C + E) / 4;
    double x1, y1, t1, x2, y2, t2;
    if (dy <= dx && dy <= D - dx) { x1 = 0; y1 = 0; t1 = A; x2 = D; y2 = 0; t2 = B; }      // lower
    else if (dy >= dx && dy >= D - dx) { x1 = 0; y1 = D; t1 = C; x2 = D; y2 = D; t2 = E; } // upper
    else if (dx < dy) { x1 = 0; y1 = 0; t1 = A; x2 = 0; y2 = D; t2 = C; }                  // left
    else { x1 = D; y1 = 0; t1 = B; x2 = D; y2 = D; t2 = E; }                               // right
    const double det = (y2 - yc) * (x1 - xc) + (xc - x2) * (y1 - yc);
    const double l1 = ((y2 - yc) * (dx - xc) + (xc - x2) * (dy - yc)) / det;
    const double l2 = ((yc - y1) * (dx - xc) + (x1 - xc) * (dy - yc)) / det;
    return l1 * t1 + l2 * t2 + (1 - l1 - l2) * Tc;
}
} // namespace

TEST(TemperatureLookup, GridMethodCornersAndTriangles)
{
    // Row i lies at y = (4 - i - 2) D + D/2, column j at x = 3D - (j D + D/2).
    CTemperatureGenerale t = Grille(CTemperatureGenerale::EC2, 4, 3, [](int i, int j) { return 100.0 * i + j; });
    EXPECT_DOUBLE_EQ(201.0, t.T(0.015, 0.005)) << "a node gives its own value";
    EXPECT_DOUBLE_EQ(100.0, t.T(3 * D - D / 2, 0.015)) << "x = origin - D/2 lies in column 0";

    // A = [2][0] = 20, B = [2][1] = 40, C = [1][0] = 60, E = [1][1] = 80.
    t.m_T1[2][0] = 20;
    t.m_T1[2][1] = 40;
    t.m_T1[1][0] = 60;
    t.m_T1[1][1] = 80;
    const double x0 = 0.025, y0 = 0.005; // node A; B lies towards smaller x
    EXPECT_NEAR(35.0, t.T(x0 - 0.0025, y0 + 0.0025), 1e-12);
    EXPECT_NEAR(50.0, t.T(x0 - D / 2, y0 + D / 2), 1e-12) << "centre: mean of the corners";

    std::mt19937 gen(7);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    for (int k = 0; k < 200; ++k)
    {
        const double A = 500 * u(gen), B = 500 * u(gen), C = 500 * u(gen), E = 500 * u(gen);
        t.m_T1[2][0] = A;
        t.m_T1[2][1] = B;
        t.m_T1[1][0] = C;
        t.m_T1[1][1] = E;
        const double dx = D * u(gen), dy = D * u(gen);
        EXPECT_NEAR(Reference(A, B, C, E, dx, dy), t.T(x0 - dx, y0 + dy), 1e-9) << dx << " " << dy;
    }
}

TEST(TemperatureLookup, DtuGridIndexingAndMissingCorners)
{
    // Row i lies at y = (5 - i - 3) D + D/2, column j at x = (4 - j - 2) D + D/2.
    CTemperatureGenerale t = Grille(CTemperatureGenerale::DTU, 5, 4, [](int i, int j) { return 100.0 * i + j; });
    EXPECT_DOUBLE_EQ(202.0, t.T(0.005, 0.005));
    EXPECT_DOUBLE_EQ(101.0, t.T(0.015, 0.015));

    // Cell between nodes (2,2) A, (2,1) B, (1,2) C, (1,1) E.
    std::mt19937 gen(11);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    for (int k = 0; k < 200; ++k)
    {
        const double A = 500 * u(gen), B = 500 * u(gen), C = 500 * u(gen), E = 500 * u(gen);
        t.m_T1[2][2] = A;
        t.m_T1[2][1] = B;
        t.m_T1[1][2] = C;
        t.m_T1[1][1] = E;
        const double dx = D * u(gen), dy = D * u(gen);
        EXPECT_NEAR(Reference(A, B, C, E, dx, dy), t.T(0.005 + dx, 0.005 + dy), 1e-9);
    }

    // A missing corner takes the hottest of the others: as if it held 300.
    CTemperatureGenerale plein(t);
    t.m_T1[2][2] = -1.0;
    t.m_T1[2][1] = 100;
    t.m_T1[1][2] = 200;
    t.m_T1[1][1] = 300;
    plein.m_T1 = t.m_T1;
    plein.m_T1[2][2] = 300;
    for (double f : {0.1, 0.3, 0.5, 0.8})
        EXPECT_DOUBLE_EQ(plein.T(0.005 + f * D, 0.005 + (1 - f) * D / 2), t.T(0.005 + f * D, 0.005 + (1 - f) * D / 2));
    // Filling sees the values already filled: A and C missing, A = max(B, -1, E) = 300,
    // then C = max(300, B, E).
    t.m_T1[1][2] = -1.0;
    plein.m_T1[1][2] = 300;
    EXPECT_DOUBLE_EQ(plein.T(0.007, 0.012), t.T(0.007, 0.012));
}

TEST(TemperatureLookup, BadCoordinates)
{
    CTemperatureGenerale t = Grille(CTemperatureGenerale::ZOLT, 4, 3, [](int i, int j) { return 1.0 * i + j; });
    EXPECT_EQ(-1.0, t.T(std::nan(""), 0.01));
    EXPECT_EQ(-1.0, t.T(0.01, std::nan("")));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { t.T(-1.0, 0.01); })) << "far outside the grid";
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { t.T(0.01, 5.0); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { t.T(1e300, 0.01); }));
    CTemperatureGenerale d = Grille(CTemperatureGenerale::DTU, 5, 4, [](int i, int j) { return 1.0 * i + j; });
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { d.T(0.5, 0.01); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { d.T(0.01, -1e20); }));
}
