// The mesh set-up: shape rules, cell codes, the DTU index lists, and the agreement of
// the mesh with the point lookup on both grid kinds.
#include "thermal/CTemperatureGenerale.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace prefa_test;

namespace
{
typedef CTemperatureGenerale::TYPE_CALCUL_TEMPERATURE TypeCalcul;

CPolygone Contour(std::initializer_list<std::pair<double, double>> points)
{
    CPolygone p;
    for (const auto& xy : points)
        p.AddTail(xy.first, xy.second);
    return p;
}

struct Zones
{
    CListePolygone cavites;
    CArray<CPolygone, CPolygone> materiaux;
    CArray<CPolygone, CPolygone> humides;
};

double Construit(CTemperatureGenerale& t, CPolygone& section, TypeCalcul type, double pas, int option,
                 Zones& z, double largeurUtile = 0.0)
{
    return t.InitTableDonnees(section, 2.0, type, z.cavites, (int)z.materiaux.GetSize(), z.materiaux,
                              (int)z.humides.GetSize(), z.humides, pas, option, largeurUtile, 0.0, 0.0, 0.0, 0.0);
}

// Centre of node (i, j) in the frame of the lookup of each grid kind.
double CentreX(const CTemperatureGenerale& t, int j)
{
    const double D = t.GetDELX();
    if (t.GetTypeCalcul() == CTemperatureGenerale::DTU)
        return (t.GetNbColonnes() - j - 2) * D + D / 2;
    return t.m_dXOrigine - (j * D + D / 2);
}
double CentreY(const CTemperatureGenerale& t, int i)
{
    const double D = t.GetDELX();
    const int k = t.GetTypeCalcul() == CTemperatureGenerale::DTU ? 3 : 2;
    return (t.GetNbLignes() - i - k) * D + D / 2;
}

double Lineaire(double x, double y)
{
    return 100.0 + 300.0 * x + 500.0 * y;
}
} // namespace

TEST(MaillageThermique, RowsAndColumns)
{
    CPolygone s = Contour({{1.0, 2.0}, {1.2, 2.0}, {1.2, 2.5}, {1.0, 2.5}});
    Zones z;
    CTemperatureGenerale t;
    EXPECT_DOUBLE_EQ(0.01, Construit(t, s, CTemperatureGenerale::EC2, 0.01, 0, z));
    EXPECT_EQ(0.01, t.GetDELX());
    // 50 probed rows, one extra concrete row on top, two border rows; 20 + 10 columns.
    EXPECT_EQ(53, t.m_T1.GetSize());
    EXPECT_EQ(53, t.GetNbLignes());
    EXPECT_EQ(30, t.GetNbColonnes());
    EXPECT_EQ(30, t.m_Masque[10].GetSize());
    EXPECT_DOUBLE_EQ(30 * 0.01 * 100 * 0.5, t.m_dXOrigine);
    EXPECT_EQ(1.0, t.GetPtTranslation().x);
    EXPECT_EQ(2.0, t.GetPtTranslation().y);
    EXPECT_EQ(CTemperatureGenerale::EC2, t.GetTypeCalcul());
    ASSERT_EQ(1, t.m_TabTemps.GetSize());
    EXPECT_EQ(2.0, t.m_TabTemps[0]);
    EXPECT_EQ(1.4, t.m_dTravailA[TravailA::LAMBDA]);
    EXPECT_EQ(0.85, t.m_dTravailA[TravailA::FACTEUR_FEU]);
    EXPECT_EQ(2400.0, t.m_dTravailA[TravailA::RHO]);
    EXPECT_EQ(0.22, t.m_dTravailA[TravailA::C]);
    // Border rows -1, the extra concrete row 11, five gas columns on each side.
    EXPECT_EQ(-1.0, t.m_Masque[0][15]);
    EXPECT_EQ(11.0, t.m_Masque[1][0]);
    EXPECT_EQ(-1.0, t.m_Masque[2][4]);
    EXPECT_EQ(11.0, t.m_Masque[2][5]);
    EXPECT_EQ(11.0, t.m_Masque[2][24]);
    EXPECT_EQ(-1.0, t.m_Masque[2][25]);
    EXPECT_EQ(-1.0, t.m_Masque[52][15]);

    CTemperatureGenerale u;
    Construit(u, s, CTemperatureGenerale::ITBTP, 0.01, 1, z);
    EXPECT_EQ(52, u.GetNbLignes());
    EXPECT_EQ(20, u.GetNbColonnes());
    EXPECT_EQ(-2.0, u.m_Masque[0][3]) << "option 1 borders are unexposed air";
    EXPECT_EQ(11.0, u.m_Masque[1][3]);

    // The DTU grid: an unexposed row on top, two fire rows below, a border column each side.
    CTemperatureGenerale d;
    Construit(d, s, CTemperatureGenerale::DTU, 0.01, 1, z);
    EXPECT_EQ(53, d.GetNbLignes());
    EXPECT_EQ(22, d.GetNbColonnes());
    EXPECT_EQ(51, d.GetSizeT());
    EXPECT_EQ(21, d.GetSizeT(0));
    EXPECT_EQ(-2.0, d.GetT1(0, 5));
    EXPECT_EQ(0.0, d.GetT1(1, 0));
    EXPECT_EQ(0.0, d.GetT1(50, 21));
    EXPECT_EQ(-1.0, d.GetT1(51, 5));
    EXPECT_EQ(-1.0, d.GetT1(52, 5));

    // Partial width: the width rule and the cells of the thickness.
    CTemperatureGenerale p;
    p.InitTableDonnees(s, 1.0, CTemperatureGenerale::EC2, CListePolygone(), 0, z.materiaux, 0, z.humides, 0.01, 0,
                       0.05, 1.0, 1.0, 3.0, 0.0);
    EXPECT_EQ(15, p.GetNbColonnes()) << "min(1.0, 0.25) > 0.1 + 0.05: the useful width plus 10";
    EXPECT_EQ(3, p.m_nNbMaillesEnrobage);
    EXPECT_EQ(52, p.GetNbLignes()) << "no extra row when the width is partial";
    p.InitTableDonnees(s, 1.0, CTemperatureGenerale::EC2, CListePolygone(), 0, z.materiaux, 0, z.humides, 0.01, 0,
                       0.05, 0.15, 1.0, 3.0, 0.0);
    EXPECT_EQ(20, p.GetNbColonnes());

    // A step derived from the sides divides them.
    CTemperatureGenerale q;
    EXPECT_DOUBLE_EQ(0.02, Construit(q, s, CTemperatureGenerale::EC2, 0.0, 1, z));
    EXPECT_EQ(25 + 2, q.GetNbLignes());

    EXPECT_TRUE(Throws<CInvalidArgException>([&] { Construit(q, s, CTemperatureGenerale::EC2, -0.01, 1, z); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { Construit(q, s, CTemperatureGenerale::EC2, 1e-6, 1, z); }));
    EXPECT_EQ(27, q.GetNbLignes()) << "a refused set-up leaves the object alone";
}

// What a rectangle strip cannot show: the derived side on both sides of its ten-cell
// bound and against a second side it must divide; DTU columns holding nothing of the
// section; the DTU border column beside a step in the outline.
TEST(MaillageThermique, DerivedSideEmptyColumnsAndBorderOfAStep)
{
    Zones z;
    CTemperatureGenerale t;
    CPolygone dix = Contour({{0, 0}, {0.5, 0}, {0.5, 0.5}, {0, 0.5}});
    EXPECT_DOUBLE_EQ(0.05, Construit(t, dix, CTemperatureGenerale::EC2, 0.0, 1, z)) << "ten cells across";
    CPolygone neuf = Contour({{0, 0}, {0.45, 0}, {0.45, 0.45}, {0, 0.45}});
    EXPECT_DOUBLE_EQ(0.025, Construit(t, neuf, CTemperatureGenerale::EC2, 0.0, 1, z)) << "0.05 leaves nine";
    CPolygone cotes = Contour({{0, 0}, {0.6, 0}, {0.6, 0.33}, {0, 0.33}});
    EXPECT_DOUBLE_EQ(0.01, Construit(t, cotes, CTemperatureGenerale::EC2, 0.0, 1, z))
        << "0.025 and 0.02 divide 0.6 but not 0.33";

    // Partial width: 15 probed columns over a 6 cm strip; the 9 to its right (grid
    // columns 1 to 9) hold nothing of it and stay fire-side gas from top to bottom.
    CPolygone bande = Contour({{0, 0}, {0.06, 0}, {0.06, 0.10}, {0, 0.10}});
    t.InitTableDonnees(bande, 1.0, CTemperatureGenerale::DTU, CListePolygone(), 0, z.materiaux, 0, z.humides, 0.01,
                       1, 0.05, 1.0, 4.0, 0.0, 0.0);
    ASSERT_EQ(17, t.GetNbColonnes());
    for (int i = 1; i <= 10; ++i)
    {
        EXPECT_EQ(-1.0, t.m_Masque[i][9]) << "row " << i;
        EXPECT_EQ(11.0, t.m_Masque[i][10]) << "row " << i;
    }

    // An outline stepped at its right edge: the rightmost cell column stops at 10 cm, so
    // above it that column is unexposed air, and the border column mirrors it.
    CPolygone marche = Contour({{0, 0}, {0.06, 0}, {0.06, 0.10}, {0.05, 0.10}, {0.05, 0.20}, {0, 0.20}});
    Construit(t, marche, CTemperatureGenerale::DTU, 0.01, 1, z);
    ASSERT_EQ(8, t.GetNbColonnes());
    for (int i = 1; i <= 20; ++i)
    {
        const double attendu = i <= 10 ? -2.0 : 11.0;
        EXPECT_EQ(attendu, t.m_Masque[i][1]) << "row " << i;
        EXPECT_EQ(attendu, t.m_Masque[i][0]) << "row " << i;
        EXPECT_EQ(11.0, t.m_Masque[i][2]) << "row " << i;
    }
}

TEST(MaillageThermique, CellCodes)
{
    // An L-shaped section whose step edge x = 0.055 passes through cell centres.
    CPolygone s = Contour({{0, 0}, {0.20, 0}, {0.20, 0.10}, {0.055, 0.10}, {0.055, 0.20}, {0, 0.20}});
    Zones z;
    z.materiaux.Add(Contour({{0.10, 0.0}, {0.14, 0.0}, {0.14, 0.04}, {0.10, 0.04}}));
    z.materiaux.Add(Contour({{0.15, 0.0}, {0.19, 0.0}, {0.19, 0.04}, {0.15, 0.04}}));
    z.humides.Add(Contour({{0.10, 0.0}, {0.20, 0.0}, {0.20, 0.02}, {0.10, 0.02}}));
    z.humides.Add(Contour({{0.10, 0.0}, {0.12, 0.0}, {0.12, 0.08}, {0.10, 0.08}}));
    z.cavites.AddTail(new CPolygone(Contour({{0.02, 0.02}, {0.04, 0.02}, {0.04, 0.04}, {0.02, 0.04}})));

    CTemperatureGenerale t;
    Construit(t, s, CTemperatureGenerale::EC2, 0.01, 1, z);
    // Grid methods: x = 0.195 - 0.01 j, y = 0.195 - 0.01 (i - 1).
    auto code = [&](double x, double y) {
        const int j = (int)std::lround((0.195 - x) / 0.01);
        const int i = (int)std::lround((0.195 - y) / 0.01) + 1;
        return t.m_Masque[i][j];
    };
    EXPECT_EQ(11.0, code(0.055, 0.15)) << "centre on the outline is concrete";
    EXPECT_EQ(11.0, code(0.045, 0.15));
    EXPECT_EQ(-2.0, code(0.065, 0.15)) << "outside above the section: unexposed side";
    EXPECT_EQ(-2.0, code(0.195, 0.105));
    EXPECT_EQ(12.0 + 10.0 + 20.0, code(0.105, 0.005)) << "material 0 in moisture zones 0 and 1";
    EXPECT_EQ(12.0 + 20.0, code(0.115, 0.035));
    EXPECT_EQ(13.0 + 10.0, code(0.165, 0.015)) << "material 1, moisture 0";
    EXPECT_EQ(11.0 + 10.0, code(0.145, 0.005));
    EXPECT_EQ(-3.0, code(0.035, 0.025)) << "cavity";
    EXPECT_EQ(11.0, code(0.015, 0.025));
    EXPECT_EQ(11.0, t.m_T1[16][5]) << "m_T1 starts with the codes";

    // Without option 1 the unexposed side is fire-side gas too.
    CTemperatureGenerale g;
    Construit(g, s, CTemperatureGenerale::EC2, 0.01, 0, z, 0.2);
    EXPECT_EQ(-1.0, g.m_Masque[6][5]);

    // DTU: x = 0.005 + 0.01 (20 - j), y = 0.005 + 0.01 (20 - i); section nodes at 0.
    CTemperatureGenerale d;
    Construit(d, s, CTemperatureGenerale::DTU, 0.01, 1, z);
    auto dtu = [&](double x, double y, bool masque) {
        const int j = 20 - (int)std::lround((x - 0.005) / 0.01);
        const int i = 20 - (int)std::lround((y - 0.005) / 0.01);
        return masque ? d.m_Masque[i][j] : d.m_T1[i][j];
    };
    EXPECT_EQ(0.0, dtu(0.055, 0.15, false));
    EXPECT_EQ(11.0, dtu(0.055, 0.15, true));
    EXPECT_EQ(-2.0, dtu(0.065, 0.15, false));
    EXPECT_EQ(-3.0, dtu(0.035, 0.025, false));
    EXPECT_EQ(0.0, dtu(0.105, 0.005, false));
    EXPECT_EQ(42.0, dtu(0.105, 0.005, true));
    EXPECT_EQ(-1.0, d.T(1, 13)) << "T(i, j) reads the marker";
}

TEST(MaillageThermique, DtuIndexLists)
{
    CPolygone s = Contour({{0, 0}, {0.10, 0}, {0.10, 0.05}, {0, 0.05}});
    Zones z;
    CTemperatureGenerale d;
    Construit(d, s, CTemperatureGenerale::DTU, 0.01, 0, z);
    // 5 probed rows + the extra concrete row; 10 + 10 columns, the gas on the right.
    const int nl = 6 + 3, nc = 20 + 2;
    ASSERT_EQ(nl, d.GetNbLignes());
    ASSERT_EQ(nc, d.GetNbColonnes());
    EXPECT_EQ(-1.0, d.GetT1(3, 5));
    EXPECT_EQ(0.0, d.GetT1(3, 11));
    EXPECT_EQ(0.0, d.GetT1(1, 5)) << "extra concrete row across the width";
    std::vector<int> lignes, debut, fin;
    for (int k = 0; k < d.m_NumLigne.GetSize(); ++k)
    {
        lignes.push_back(d.m_NumLigne[k]);
        debut.push_back(d.m_ColDebut[k]);
        fin.push_back(d.m_ColFin[k]);
    }
    EXPECT_EQ((std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 8}), lignes);
    EXPECT_EQ((std::vector<int>{0, 2, 12, 12, 12, 12, 12, 23, 0}), debut);
    EXPECT_EQ((std::vector<int>{0, 21, 21, 21, 21, 21, 21, 21, 0}), fin);
    ASSERT_EQ(nc - 2, d.m_NumColonne.GetSize());
    EXPECT_EQ(2, d.m_NumColonne[0]);
    EXPECT_EQ(nc - 1, d.m_NumColonne[nc - 3]);
    EXPECT_EQ(1, d.m_LigneDebut[4]);
    EXPECT_EQ(1, d.m_nTravail[TravailN::ZONE_LIGNE_DEBUT]);
    EXPECT_EQ(nl, d.m_nTravail[TravailN::ZONE_LIGNE_FIN]);
    EXPECT_EQ(1, d.m_nTravail[TravailN::ZONE_COL_DEBUT]);
    EXPECT_EQ(nc, d.m_nTravail[TravailN::ZONE_COL_FIN]);
    EXPECT_EQ(1, d.m_nTravail[TravailN::COMPTE]);
}

// Fill every section node with a function linear in its lookup-frame centre; points in
// squares of four section nodes must give it back, and the mesh must have coded as
// section exactly the cells whose centre lies in the outline.
TEST(MaillageThermique, MeshAndLookupAgree)
{
    // An inverted T with a cavity in the web.
    CPolygone s = Contour({{0.5, 1.0}, {0.8, 1.0}, {0.8, 1.1}, {0.7, 1.1}, {0.7, 1.4}, {0.6, 1.4}, {0.6, 1.1}, {0.5, 1.1}});
    CPolygone cavite = Contour({{0.63, 1.2}, {0.67, 1.2}, {0.67, 1.3}, {0.63, 1.3}});
    for (TypeCalcul type : {CTemperatureGenerale::DTU, CTemperatureGenerale::EC2})
    {
        for (int option : {0, 1})
        {
            SCOPED_TRACE(testing::Message() << "type " << type << " option " << option);
            Zones z;
            z.cavites.AddTail(new CPolygone(cavite));
            CTemperatureGenerale t;
            Construit(t, s, type, 0.01, option, z);
            const double D = t.GetDELX();
            // The grid methods' lookup frame is centred on the section with this origin.
            if (type != CTemperatureGenerale::DTU)
                t.m_dXOrigine = t.GetNbColonnes() * D / 2;
            const CPointD tr = t.GetPtTranslation();
            const double decalageX = type == CTemperatureGenerale::DTU ? 0.0 : 0.15;

            int dedans = 0;
            for (int i = 0; i < t.GetNbLignes(); ++i)
                for (int j = 0; j < t.GetNbColonnes(); ++j)
                {
                    const double x = CentreX(t, j), y = CentreY(t, i);
                    const CPointD p(x + decalageX + tr.x, y + tr.y);
                    const bool section = s.AppartientAPolygone(p) != -1 && cavite.AppartientAPolygone(p) != 0;
                    const bool extra = option != 1 && y > 0.4 && y < 0.41; // the concrete row on top
                    const bool miroir = type == CTemperatureGenerale::DTU && (j == 0 || j == t.GetNbColonnes() - 1);
                    if (!miroir)
                    {
                        ASSERT_EQ(section || extra, t.m_Masque[i][j] >= 0.0) << i << " " << j;
                    }
                    if (t.m_Masque[i][j] >= 0.0)
                    {
                        t.m_T1[i][j] = Lineaire(x, y);
                        ++dedans;
                    }
                }
            EXPECT_GT(dedans, 550);

            std::mt19937 gen(3);
            // On the DTU grid the square beyond column 1 has no node B on its left: the
            // lookup raises there, as for any point past the last node.
            const int j0 = type == CTemperatureGenerale::DTU ? 1 : 0;
            std::uniform_int_distribution<int> li(1, t.GetNbLignes() - 1), co(j0, t.GetNbColonnes() - 2);
            std::uniform_real_distribution<double> u(0.0, 1.0);
            int testes = 0, bord = 0;
            for (int k = 0; k < 40000 && (testes < 300 || bord < 30); ++k)
            {
                const int i = li(gen), j = co(gen); // square of nodes i-1..i, j..j+1
                const double a = t.m_Masque[i][j], b = t.m_Masque[i][j + 1], c = t.m_Masque[i - 1][j],
                             e = t.m_Masque[i - 1][j + 1];
                const double fx = u(gen), fy = u(gen);
                const double x = CentreX(t, j) + fx * (CentreX(t, j + 1) - CentreX(t, j));
                const double y = CentreY(t, i) + fy * D;
                // Only fire-side gas (-1.0) is a missing corner; a square touching an
                // unexposed (-2) or cavity (-3) cell reads those codes as values.
                auto gaz = [&](int r, int q) { return t.m_T1[r][q] == -1.0; };
                const int manquants = gaz(i, j) + gaz(i, j + 1) + gaz(i - 1, j) + gaz(i - 1, j + 1);
                const int codes = (a < 0) + (b < 0) + (c < 0) + (e < 0) - manquants;
                if (codes > 0)
                    continue;
                if (manquants == 0)
                {
                    ASSERT_NEAR(Lineaire(x, y), t.T(x, y), 1e-9) << x << " " << y;
                    ++testes;
                }
                else if (manquants == 1)
                {
                    // The missing node takes the hottest of the three others.
                    CTemperatureGenerale rempli(t);
                    double chaud = -1.0;
                    for (auto n : {std::make_pair(i, j), std::make_pair(i, j + 1), std::make_pair(i - 1, j),
                                   std::make_pair(i - 1, j + 1)})
                        chaud = std::max(chaud, t.m_T1[n.first][n.second]);
                    for (auto n : {std::make_pair(i, j), std::make_pair(i, j + 1), std::make_pair(i - 1, j),
                                   std::make_pair(i - 1, j + 1)})
                        if (t.m_T1[n.first][n.second] == -1.0)
                            rempli.m_T1[n.first][n.second] = chaud;
                    ASSERT_DOUBLE_EQ(rempli.T(x, y), t.T(x, y));
                    ++bord;
                }
            }
            EXPECT_GE(testes, 300);
            if (option != 1) // with option 1 the outside beside the section is unexposed air
            {
                EXPECT_GE(bord, 30);
            }
        }
    }
}
