#include "section/CSectionGenerale.h"
#include "support/PannesFichier.h"
#include "support/TestSupport.h"

#include "project/Environnement.h"
#include "project/FichiersEtudes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <initializer_list>
#include <utility>

using namespace prefa_test;

namespace
{
CPolygone* Contour(std::initializer_list<std::pair<double, double>> pts, double dx = 0.0,
                   double dy = 0.0)
{
    CPolygone* p = new CPolygone;
    for (const auto& q : pts)
        p->AddTail(q.first + dx, q.second + dy);
    return p;
}

CPolygone* Inverse(CPolygone* p)
{
    p->InverseSens();
    return p;
}

struct Attendu
{
    double A, xG, yG, Ix, Iy, Ixy;
};

void Verifie(const CSectionGenerale& s, const Attendu& a, double tol = 1e-9)
{
    EXPECT_NEAR(std::fabs(s.Aire), a.A, tol);
    EXPECT_NEAR(std::fabs(s.AireY), a.A, tol);
    EXPECT_NEAR(s.SY / s.Aire, a.xG, tol);
    EXPECT_NEAR(s.SX / s.AireY, a.yG, tol);
    EXPECT_NEAR(s.IxG, a.Ix, tol);
    EXPECT_NEAR(s.IyG, a.Iy, tol);
    EXPECT_NEAR(s.IxyG, a.Ixy, tol);
}
} // namespace

TEST(CSectionGenerale, RectangleAndOrientation)
{
    CListePolygone l1, l2;
    l1.AddTail(Contour({{0, 0}, {1, 0}, {1, 2}, {0, 2}}));
    CSectionGenerale s;
    s.CaracteristiquesSectionsPolygone(l1, l2);
    Verifie(s, {2.0, 0.5, 1.0, 1.0 * 8.0 / 12.0, 2.0 / 12.0, 0.0});
    EXPECT_EQ(s.Angle, 0.0);
    EXPECT_NEAR(s.I1, 2.0 / 3.0, 1e-12);
    EXPECT_NEAR(s.I2, 1.0 / 6.0, 1e-12);
    EXPECT_NEAR(s.Perimetre1, 6.0, 1e-12);
    EXPECT_EQ(s.Perimetre2, 0.0);
    // The working terms of the last side (closing (0,2) to (0,0)) stay in the object.
    EXPECT_EQ(s.aireX, 0.0);
    EXPECT_NEAR(s.aireY, 0.0, 0.0);
    EXPECT_EQ(s.ygStrip, 0.0); // x0 + x1 = 0 there

    CListePolygone cw;
    cw.AddTail(Inverse(Contour({{0, 0}, {1, 0}, {1, 2}, {0, 2}})));
    CSectionGenerale t;
    t.CaracteristiquesSectionsPolygone(cw, l2);
    Verifie(t, {2.0, 0.5, 1.0, 2.0 / 3.0, 1.0 / 6.0, 0.0});
    EXPECT_NEAR(t.Aire, -s.Aire, 1e-12);

    // A square: equal moments give a zero angle whatever the product term.
    CListePolygone carre;
    carre.AddTail(Contour({{1, 1}, {3, 1}, {3, 3}, {1, 3}}));
    t.CaracteristiquesSectionsPolygone(carre, l2);
    EXPECT_EQ(t.Angle, 0.0);
    EXPECT_NEAR(t.IxG, 16.0 / 12.0, 1e-12);
}

TEST(CSectionGenerale, TAndISectionsMatchTextbookValues)
{
    // T: flange 0.6 x 0.1 on a 0.1 x 0.5 web, base at (2, 1).
    CListePolygone l1, l2;
    l1.AddTail(Contour({{0.25, 0}, {0.35, 0}, {0.35, 0.5}, {0.6, 0.5}, {0.6, 0.6}, {0, 0.6}, {0, 0.5},
                        {0.25, 0.5}},
                       2.0, 1.0));
    CSectionGenerale s;
    s.CaracteristiquesSectionsPolygone(l1, l2);
    // Parts: web A=0.05 at y=0.25, flange A=0.06 at y=0.55.
    const double A = 0.11, yc = (0.05 * 0.25 + 0.06 * 0.55) / A;
    const double Ix = 0.1 * 0.125 / 12 + 0.05 * std::pow(0.25 - yc, 2) + 0.6 * 0.001 / 12 +
                      0.06 * std::pow(0.55 - yc, 2);
    const double Iy = 0.5 * 0.001 / 12 + 0.1 * 0.216 / 12;
    Verifie(s, {A, 2.3, 1.0 + yc, Ix, Iy, 0.0}, 1e-12);
    EXPECT_NEAR(s.Angle, 0.0, 1e-12);
    EXPECT_NEAR(s.I1, Ix, 1e-12);
    EXPECT_NEAR(s.I2, Iy, 1e-12);
    EXPECT_NEAR(s.Perimetre1, 0.6 + 0.1 + 2 * 0.5 + 2 * 0.25 + 2 * 0.1, 1e-12);

    // Symmetric I: flanges 0.3 x 0.05, web 0.02 x 0.4, total height 0.5.
    CListePolygone i1;
    i1.AddTail(Contour({{0, 0}, {0.3, 0}, {0.3, 0.05}, {0.16, 0.05}, {0.16, 0.45}, {0.3, 0.45},
                        {0.3, 0.5}, {0, 0.5}, {0, 0.45}, {0.14, 0.45}, {0.14, 0.05}, {0, 0.05}},
                       1.0, 1.0));
    s.CaracteristiquesSectionsPolygone(i1, l2);
    const double IxI = 0.3 * 0.125 / 12 - 0.28 * 0.064 / 12;
    const double IyI = 2 * 0.05 * 0.027 / 12 + 0.4 * 0.000008 / 12;
    Verifie(s, {0.03 + 0.008, 1.15, 1.25, IxI, IyI, 0.0}, 1e-12);
}

TEST(CSectionGenerale, OpeningInTheSecondListAndUnsymmetricL)
{
    // A 4 x 3 block at (1, 1) with a 1 x 1 opening given clockwise.
    CListePolygone l1, l2;
    l1.AddTail(Contour({{1, 1}, {5, 1}, {5, 4}, {1, 4}}));
    l2.AddTail(Inverse(Contour({{2, 2}, {3, 2}, {3, 3}, {2, 3}})));
    CSectionGenerale s;
    s.CaracteristiquesSectionsPolygone(l1, l2);
    const double A = 11.0;
    const double xc = (12 * 3.0 - 1 * 2.5) / A, yc = (12 * 2.5 - 2.5) / A;
    const double Ix = 4 * 27 / 12.0 + 12 * std::pow(2.5 - yc, 2) - (1 / 12.0 + std::pow(2.5 - yc, 2));
    const double Iy = 3 * 64 / 12.0 + 12 * std::pow(3.0 - xc, 2) - (1 / 12.0 + std::pow(2.5 - xc, 2));
    const double Ixy = 12 * (3.0 - xc) * (2.5 - yc) - (2.5 - xc) * (2.5 - yc);
    Verifie(s, {A, xc, yc, Ix, Iy, Ixy}, 1e-12);
    EXPECT_NEAR(s.Perimetre1, 14.0, 1e-12);
    EXPECT_NEAR(s.Perimetre2, 4.0, 1e-12);
    EXPECT_NEAR(s.Perimetre, 4.0, 1e-12);

    // Unsymmetric L (legs 4 x 1 and 1 x 6) at (1, 2): area 9, centroid
    // (1 + 7/6, 2 + 13/6), Ix 30.75, Iy 10.75, Ixy -10; principal moments
    // 20.75 +- sqrt(200). The principal angle comes with this library's sign
    // (tan 2a = -2 Ixy / (Iy - Ix)): -22.5 degrees here.
    CListePolygone L, vide;
    L.AddTail(Contour({{0, 0}, {4, 0}, {4, 1}, {1, 1}, {1, 6}, {0, 6}}, 1.0, 2.0));
    s.CaracteristiquesSectionsPolygone(L, vide);
    Verifie(s, {9.0, 1.0 + 7.0 / 6.0, 2.0 + 13.0 / 6.0, 30.75, 10.75, -10.0}, 1e-12);
    EXPECT_NEAR(s.Angle, -std::atan(1.0) / 2.0, 1e-12);
    EXPECT_NEAR(s.I1, 20.75 + std::sqrt(200.0), 1e-12);
    EXPECT_NEAR(s.I2, 20.75 - std::sqrt(200.0), 1e-12);

    // Clockwise, the same centroidal values.
    CListePolygone Lcw;
    Lcw.AddTail(Inverse(Contour({{0, 0}, {4, 0}, {4, 1}, {1, 1}, {1, 6}, {0, 6}}, 1.0, 2.0)));
    CSectionGenerale t;
    t.CaracteristiquesSectionsPolygone(Lcw, vide);
    EXPECT_NEAR(t.IxG, s.IxG, 1e-12);
    EXPECT_NEAR(t.IyG, s.IyG, 1e-12);
    EXPECT_NEAR(t.IxyG, s.IxyG, 1e-12);
    EXPECT_NEAR(t.Angle, s.Angle, 1e-12);
    EXPECT_NEAR(t.SY / t.Aire, s.SY / s.Aire, 1e-12);
}

TEST(CSectionGenerale, ArchiveFormSwapsSXAndSY)
{
    CSectionGenerale s;
    double v = 1.0;
    for (double* c : {&s.aireX, &s.aireY, &s.Aire, &s.AireY, &s.SY, &s.SX, &s.IyO, &s.IxO, &s.IxyO,
                      &s.iyStrip, &s.ixStrip, &s.xgStrip, &s.ygTerme, &s.ygStrip, &s.IxG, &s.IyG,
                      &s.IxyG, &s.Angle, &s.I1, &s.I2, &s.Perimetre, &s.Perimetre1, &s.Perimetre2})
        *c = v++;
    const auto bytes = Store([&](CArchive& ar) { s.Serialize(ar); });
    Bytes attendu;
    attendu.u32(1).f64(1).f64(2).f64(3).f64(4).f64(6).f64(5);
    for (int i = 7; i <= 23; ++i)
        attendu.f64(i);
    EXPECT_EQ(bytes, attendu.b) << Hex(bytes);
    EXPECT_EQ(bytes.size(), 4u + 23u * 8u);

    CSectionGenerale t;
    EXPECT_EQ(Load(bytes, [&](CArchive& ar) { t.Serialize(ar); }), 0u);
    EXPECT_EQ(t.SY, 5.0);
    EXPECT_EQ(t.SX, 6.0);
    EXPECT_EQ(t.Perimetre2, 23.0);
    CSectionGenerale u(t), w;
    w = u;
    EXPECT_EQ(w.IxyO, 9.0);
    EXPECT_EQ(w.ygTerme, 13.0);
}

TEST(CSectionGenerale, SectionFileSaveLoadAndErrors)
{
    ScratchDir dir;
    DefinitEnvironnement(dir.Path(), 0);
    std::filesystem::create_directories(dir.Utf8() + "/E1");

    CListePolygone l1, l2;
    l1.AddTail(Contour({{0, 0}, {1, 0}, {1, 2}, {0, 2}}));
    CSectionGenerale s;
    s.CaracteristiquesSectionsPolygone(l1, l2);
    EXPECT_EQ(s.Ecriture(_T("E1"), 7), 1);
    const CString nom = Compose_Fichier_Etudes(_T("E1"), _T("SECTION."), 7);
    EXPECT_TRUE(nom.Right(10) == CString(_T("SECTION.07")));
    const auto bytes = ReadAll(nom);
    EXPECT_EQ(bytes, Store([&](CArchive& ar) { s.Serialize(ar); }));

    CSectionGenerale t;
    EXPECT_EQ(t.Lecture(_T("E1"), 7), 1);
    EXPECT_EQ(t.IxG, s.IxG);
    EXPECT_EQ(t.Perimetre1, 6.0);

    // A missing file is ignored quietly; the values stay.
    {
        MessageBoxCapture boxes;
        EXPECT_EQ(t.Lecture(_T("E1"), 8), 0);
        EXPECT_TRUE(boxes.boxes.empty());
        EXPECT_EQ(t.Perimetre1, 6.0);
    }
    // A truncated file raises the archive exception and changes nothing.
    WriteAll(Compose_Fichier_Etudes(_T("E1"), _T("SECTION."), 9),
             std::vector<BYTE>(bytes.begin(), bytes.begin() + 50));
    EXPECT_EQ(ArchiveCause([&] { t.Lecture(_T("E1"), 9); }), (int)CArchiveException::endOfFile);
    EXPECT_EQ(t.IxG, s.IxG);

    // A folder that does not exist: reported, not thrown.
    {
        MessageBoxCapture boxes;
        EXPECT_EQ(s.Ecriture(_T("absent"), 1), 0);
        ASSERT_EQ(boxes.boxes.size(), 1u);
        const CString& texte = boxes.boxes[0].text;
        EXPECT_GE(texte.Find(_T("IDENTERR_2066")), 0);
        EXPECT_GE(texte.Find(_T("General - ")), 0);
        EXPECT_GE(texte.Find(_T(" - 694\n")), 0);
    }
    EXPECT_EQ(ReadAll(nom), bytes);

    // The final replacement fails (the name is taken by a folder): reported, and
    // the mirror's temporary file does not stay behind.
    std::filesystem::create_directories(dir.Utf8() + "/E1/SECTION.05/x");
    {
        MessageBoxCapture boxes;
        EXPECT_EQ(s.Ecriture(_T("E1"), 5), 0);
        ASSERT_EQ(boxes.boxes.size(), 1u);
        EXPECT_GE(boxes.boxes[0].text.Find(_T("IDENTERR_2066")), 0);
    }
    int fichiers = 0;
    for (const auto& e : std::filesystem::directory_iterator(dir.Utf8() + "/E1"))
        fichiers += e.is_regular_file();
    EXPECT_EQ(fichiers, 2); // SECTION.07 and SECTION.09 only

    // A save failing at any write, flush or rename keeps the previous file whole.
    CListePolygone l3;
    l3.AddTail(Contour({{0, 0}, {3, 0}, {3, 1}, {0, 1}}));
    CSectionGenerale autre;
    autre.CaracteristiquesSectionsPolygone(l3, l2);
    EprouveLesPannes({nom}, [&] {
        MessageBoxCapture boxes;
        return autre.Ecriture(_T("E1"), 7) == 1;
    });
    AnnuleDefinitionEnvironnement();
}
