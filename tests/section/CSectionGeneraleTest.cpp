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

TEST(CSectionGenerale, RectangleKeepsTheLastSidesWorkingTerms)
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

TEST(CSectionGenerale, SlopingSidesKeepTheSuitesProductTerm)
{
    // A right triangle with legs 2 along x and 3 along y from (1, 1): area 3, centroid
    // (5/3, 2), IxG = 2 x 27 / 36, IyG = 3 x 8 / 36. The product is the suite's: the
    // sloping side's strip has xg = 1.8 and the ordinate term -0.4, the bottom side's
    // 2 and 0.5, so IxyO = 2 x 0.5 x 2 + 1.8 x -0.4 x -5 = 5.6 and IxyG = 5.6 - 10.
    CListePolygone l1, l2;
    l1.AddTail(Contour({{1, 1}, {3, 1}, {1, 4}}));
    CSectionGenerale s;
    s.CaracteristiquesSectionsPolygone(l1, l2);
    Verifie(s, {3.0, 5.0 / 3.0, 2.0, 1.5, 2.0 / 3.0, -4.4}, 1e-12);
}

TEST(CSectionGenerale, EqualMomentsAreJudgedAtOneEMinusTwelveThenOneEMinusSeven)
{
    // A 1 x (1 + d) rectangle turned by 30 degrees about (2, 2): its two centroidal
    // moments differ by about d of their size. With the first list alone the angle is
    // computed from 1e-12 on; once a second list is added, from 1e-7 on. The opening, a
    // small square on the centroid, changes both moments alike.
    auto rectangle = [](double d) {
        CPolygone* p = Contour({{-0.5, -0.5 - d / 2}, {0.5, -0.5 - d / 2}, {0.5, 0.5 + d / 2}, {-0.5, 0.5 + d / 2}});
        p->rotation(CPointD(0, 0), 30.0);
        p->translation(CPointD(0, 0), CPointD(2, 2));
        return p;
    };
    CListePolygone vide, trou;
    trou.AddTail(Inverse(Contour({{1.9, 1.9}, {2.1, 1.9}, {2.1, 2.1}, {1.9, 2.1}})));
    for (double d : {1e-9, 1e-6})
    {
        CListePolygone l1;
        l1.AddTail(rectangle(d));
        CSectionGenerale seul, combine;
        seul.CaracteristiquesSectionsPolygone(l1, vide);
        combine.CaracteristiquesSectionsPolygone(l1, trou);
        EXPECT_GT(std::fabs(seul.Angle), 0.1) << d;
        if (d < 1e-7)
            EXPECT_EQ(0.0, combine.Angle);
        else
            EXPECT_GT(std::fabs(combine.Angle), 0.1) << d;
    }
}

TEST(CSectionGenerale, NoAreaAnswersZerosRatherThanZeroOverZero)
{
    // No contour, and a contour that encloses nothing: every field is a number, the
    // centroidal moments and the angle 0.
    CListePolygone vide, plat;
    plat.AddTail(Contour({{0, 0}, {2, 0}, {1, 0}}));
    for (CListePolygone* l : {&vide, &plat})
    {
        CSectionGenerale s;
        s.CaracteristiquesSectionsPolygone(*l, vide);
        for (double v : {s.Aire, s.IxG, s.IyG, s.IxyG, s.Angle, s.I1, s.I2})
            EXPECT_EQ(0.0, v);
        s.CaracteristiquesSectionsPolygone(*l, plat);
        for (double v : {s.IxG, s.IyG, s.IxyG, s.Angle, s.I1, s.I2})
            EXPECT_EQ(0.0, v);
    }
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

    CSectionGenerale t;
    EXPECT_EQ(Load(bytes, [&](CArchive& ar) { t.Serialize(ar); }), 0u);
    EXPECT_EQ(t.SY, 5.0);
    EXPECT_EQ(t.SX, 6.0);
    EXPECT_EQ(t.Perimetre2, 23.0);
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
