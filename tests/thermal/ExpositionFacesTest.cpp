// Faces exposed to the fire and faces to the unexposed air: the codes of the outside
// cells, symmetry and order of temperatures, a slab heated from below against the same
// grid's one-dimensional answer and against two published sets of slab temperatures.
#include "thermal/CTemperatureGenerale.h"
#include "thermal/ExpositionFaces.h"
#include "MembreTestUtil.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace prefa_test;

namespace
{
const bool O = true, N = false;

TEST(ExpositionFaces, OutsideCellsTakeTheCodeOfTheNearestSide)
{
    // 0.20 x 0.40 at 1 cm: columns 0-4 right of the section, 5-24 the section, 25-29
    // left of it; row 0 the top border, row 1 the strip over the section, rows 2-41 the
    // section, row 42 the bottom border. Exposed below, left and right.
    CTemperatureGenerale t;
    Membre(t, 0.20, 0.40, 0.01, CTemperatureGenerale::EC2, {O, O, N, O});
    ASSERT_EQ(43, t.GetNbLignes());
    ASSERT_EQ(30, t.GetNbColonnes());
    EXPECT_EQ(-2.0, t.m_Masque[1][10]);  // just above the top
    EXPECT_EQ(-2.0, t.m_Masque[0][5]);   // above the top's right end
    EXPECT_EQ(-1.0, t.m_Masque[1][4]);   // diagonal to the top right corner: a tie, the fire wins
    EXPECT_EQ(-1.0, t.m_Masque[2][4]);   // beside the right face's top cell
    EXPECT_EQ(-1.0, t.m_Masque[20][29]); // left of the section
    EXPECT_EQ(-1.0, t.m_Masque[42][15]); // below
    EXPECT_EQ(11.0, t.m_Masque[2][5]);   // the section keeps its codes
    EXPECT_EQ(t.m_Masque[1][10], t.m_T1[1][10]);
    for (int i = 0; i < 43; ++i)
        for (int j = 0; j < 30; ++j)
            EXPECT_EQ(t.m_Masque[i][j], t.m_Masque[i][29 - j]) << i << "," << j; // symmetric

    // Every side exposed is the plain mesh: every outside cell fire-side gas.
    CTemperatureGenerale a, b;
    Membre(a, 0.20, 0.40, 0.01, CTemperatureGenerale::EC2, {O, O, O, O});
    Membre(b, 0.20, 0.40, 0.01, CTemperatureGenerale::EC2);
    EXPECT_TRUE(a.m_Masque == b.m_Masque);

    // Refused, with nothing changed: a wrong count of sides, and the DTU grid.
    CPolygone r = Rectangle(0.20, 0.40);
    EXPECT_EQ(0, ExposerFaces(a, r, {O, O, N}));
    EXPECT_TRUE(a.m_Masque == b.m_Masque);
    CTemperatureGenerale dtu;
    Membre(dtu, 0.20, 0.40, 0.02, CTemperatureGenerale::DTU);
    CTemperatureGenerale::CGrille avant = dtu.m_Masque;
    EXPECT_EQ(0, ExposerFaces(dtu, r, {O, O, N, O}));
    EXPECT_TRUE(avant == dtu.m_Masque);
}

TEST(ExpositionFaces, ABeamUnderASlabIsSymmetricAndCoolestAtItsTop)
{
    CTemperatureGenerale trois, quatre;
    Membre(trois, 0.20, 0.40, 0.01, CTemperatureGenerale::EC2, {O, O, N, O});
    Membre(quatre, 0.20, 0.40, 0.01, CTemperatureGenerale::EC2);
    ASSERT_EQ(0, EC2Normalise(trois, 1.0));
    ASSERT_EQ(0, EC2Normalise(quatre, 1.0));
    const int haut = 2, bas = 41, droite = 5, gauche = 24, milieu = 15;
    for (int i = haut; i <= bas; ++i)
        for (int j = droite; j <= gauche; ++j)
        {
            EXPECT_NEAR(trois.GetT1(i, j), trois.GetT1(i, droite + gauche - j), 1e-9) << i << "," << j;
            // No cell is hotter for losing the fire on one face.
            EXPECT_LE(trois.GetT1(i, j), quatre.GetT1(i, j) + 1e-9);
        }
    // The unexposed face is cooler than any point of the exposed ones.
    double minExpose = 1e9;
    for (int i = haut + 1; i <= bas; ++i)
        minExpose = std::min({minExpose, trois.GetT1(i, droite), trois.GetT1(i, gauche)});
    for (int j = droite; j <= gauche; ++j)
        minExpose = std::min(minExpose, trois.GetT1(bas, j));
    double maxNonExpose = 0;
    for (int j = droite + 1; j < gauche; ++j)
        maxNonExpose = std::max(maxNonExpose, trois.GetT1(haut, j));
    EXPECT_LT(maxNonExpose, minExpose);
    // Ten centimetres from the heated sides the top face is warm; heated, it burns.
    EXPECT_LT(trois.GetT1(haut, milieu), 150.0);
    EXPECT_GT(quatre.GetT1(haut, milieu), 500.0);
    EXPECT_GT(trois.m_dTravailB[TravailB::MAX_SURFACE], 20.0); // the unexposed face's maximum is kept
}

// One column of a grid's codes, as a grid of its own: with no neighbour beyond the grid's
// edges, the one-dimensional case.
void Colonne(const CTemperatureGenerale& t, int j, CTemperatureGenerale& colonne)
{
    const int nl = t.GetNbLignes();
    colonne.m_Masque.SetSize(nl);
    for (int i = 0; i < nl; ++i)
    {
        colonne.m_Masque[i].SetSize(1);
        colonne.m_Masque[i][0] = t.m_Masque[i][j];
    }
    std::copy(t.m_dTravailA, t.m_dTravailA + 11, colonne.m_dTravailA);
    colonne.SetDELX(t.GetDELX());
}

TEST(ExpositionFaces, ASlabHeatedFromBelowIsOneDimensionalInItsMiddle)
{
    // A 1.20 m wide strip: the losses of its unexposed sides do not reach the middle in
    // two hours. (The ITBTP and ZOLT methods are not so: their fire and air coefficients
    // follow the means of all exposed and all unexposed faces.)
    CTemperatureGenerale dalle, seule;
    Membre(dalle, 1.20, 0.20, 0.01, CTemperatureGenerale::EC2, {O, N, N, N});
    const int nl = dalle.GetNbLignes(), j = dalle.GetNbColonnes() / 2;
    Colonne(dalle, j, seule);
    ASSERT_EQ(0, EC2Normalise(dalle, 2.0));
    ASSERT_EQ(0, EC2Normalise(seule, 2.0));
    for (int i = 1; i + 1 < nl; ++i)
        EXPECT_NEAR(dalle.GetT1(i, j), seule.GetT1(i, 0), 1e-6) << "row " << i;
    // Hot below, cooler upwards, and the top still near ambient after two hours.
    EXPECT_GT(dalle.GetT1(nl - 2, j), 700.0);
    for (int i = 2; i + 1 < nl; ++i)
        EXPECT_LT(dalle.GetT1(i - 1, j), dalle.GetT1(i, j));
    EXPECT_LT(dalle.GetT1(1, j), 80.0);
}

TEST(ExpositionFaces, SlabTemperaturesAgreeWithPublishedProfiles)
{
    // A 0.20 m slab under the standard fire, Eurocode 2, siliceous aggregate, 1 mm cells
    // (converged: at 0.5 mm no value moves by 0.5 degree), one column of the slab's grid.
    // Published at 20, 40 and 60 mm above the exposed face, 30 to 120 minutes:
    // Wickstrom's method (ISO 834) and ACI/TMS 216.1 for siliceous aggregate.
    const double wickstrom[3][4] = {{365, 540, 653, 739}, {183, 323, 418, 491}, {77, 196, 280, 346}};
    const double aci[3][4] = {{352, 534, 640, 719}, {193, 332, 433, 502}, {127, 189, 270, 341}};
    const double pas = 0.001;
    CTemperatureGenerale dalle, colonne;
    Membre(dalle, 0.02, 0.20, pas, CTemperatureGenerale::EC2, {O, N, N, N});
    const int nl = dalle.GetNbLignes();
    Colonne(dalle, dalle.GetNbColonnes() / 2, colonne);
    // Four durations from one run.
    colonne.m_DureesReleves = {0.5, 1.0, 1.5, 2.0};
    std::vector<std::vector<double>> champs(4);
    colonne.m_Releve = [&](std::size_t k, const double* T) { champs[k].assign(T, T + nl); };
    ASSERT_EQ(0, EC2Normalise(colonne, 2.0));
    for (const std::vector<double>& c : champs)
        ASSERT_EQ((std::size_t)nl, c.size());
    for (int p = 0; p < 3; ++p)
        for (int d = 0; d < 4; ++d)
        {
            // Row nl - 2 is the cell next to the fire, its centre 0.5 mm above the face;
            // a depth of 20 mm lies half way between the centres at 19.5 and 20.5 mm.
            const int mm = 20 * (p + 1);
            const double T = 0.5 * (champs[d][nl - 2 - (mm - 1)] + champs[d][nl - 2 - mm]);
            EXPECT_NEAR(T, wickstrom[p][d], 80.0) << mm << " mm, " << 30 * (d + 1) << " min";
            EXPECT_NEAR(T, aci[p][d], 80.0) << mm << " mm, " << 30 * (d + 1) << " min";
        }
}
} // namespace
