#include "PolygoneTestUtil.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace prefa_test;

namespace
{
double AireTotale(CListePolygone& l, bool* toutesPositives = nullptr)
{
    double s = 0.0;
    if (toutesPositives)
        *toutesPositives = true;
    for (POSITION pos = l.GetHeadPosition(); pos;)
    {
        const double a = Aire(*l.GetNext(pos));
        if (toutesPositives && a <= 0.0)
            *toutesPositives = false;
        s += std::fabs(a);
    }
    return s;
}
} // namespace

TEST(CListePolygone, CopiesAreDeepAndEqualityFollowsTheOrder)
{
    CListePolygone l;
    l.AddTail(new CPolygone(Poly({{0, 0}, {1, 0}, {1, 1}})));
    l.AddTail(new CPolygone(Poly({{5, 5}, {6, 5}, {6, 6}})));
    l.AddHead(new CPolygone(Poly({{-1, -1}, {0, -1}, {0, 0}})));
    ASSERT_EQ(l.GetCount(), 3);

    // The list remembers where the last GetNext left off.
    POSITION pos = l.GetHeadPosition();
    EXPECT_EQ(l.GetCurrentPosition(), pos);
    l.GetNext(pos);
    EXPECT_EQ(l.GetCurrentPosition(), pos);
    EXPECT_EQ(l.GetAt(pos)->GetPointHead().x, 0.0);

    CListePolygone copie(l);
    EXPECT_TRUE(copie == l);
    EXPECT_NE(copie.GetHead(), l.GetHead());
    copie.GetHead()->GetAt(0)->x = 42.0;
    EXPECT_EQ(l.GetHead()->GetPointAt(0).x, -1.0);
    EXPECT_FALSE(copie == l);
    CListePolygone r = (copie = l);
    EXPECT_TRUE(copie == l);
    EXPECT_TRUE(r == l);
    copie = copie; // self-assignment keeps the polygons
    EXPECT_EQ(copie.GetCount(), 3);

    // Same polygons in another order differ.
    CListePolygone autre;
    for (POSITION p = l.GetTailPosition(); p;)
        autre.AddTail(new CPolygone(*l.GetPrev(p)));
    EXPECT_FALSE(autre == l);
}

TEST(CListePolygone, ArchiveFormAndHostileCounts)
{
    CListePolygone l;
    l.AddTail(new CPolygone(Poly({{1, 2}})));
    l.AddTail(new CPolygone());
    l.AddTail(new CPolygone(Poly({{3, 4}, {5, 6}})));
    const auto bytes = Store([&](CArchive& ar) { l.Serialize(ar); });
    EXPECT_EQ(bytes, Bytes().i32(3).i32(1).f64(1).f64(2).i32(0).i32(2).f64(3).f64(4).f64(5).f64(6).b)
        << Hex(bytes);
    CListePolygone m;
    EXPECT_EQ(Load(bytes, [&](CArchive& ar) { m.Serialize(ar); }), 0u);
    EXPECT_TRUE(m == l);

    EXPECT_EQ(ArchiveCause([&] {
                  CListePolygone x;
                  Load(Bytes().i32(1000000000).i32(0).b, [&](CArchive& ar) { x.Serialize(ar); });
              }),
              (int)CArchiveException::endOfFile);
    std::vector<BYTE> court(bytes.begin(), bytes.end() - 8);
    EXPECT_EQ(ArchiveCause([&] {
                  CListePolygone x;
                  Load(court, [&](CArchive& ar) { x.Serialize(ar); });
              }),
              (int)CArchiveException::endOfFile);
}

TEST(CListePolygone, RendRegulierSplitsIntoSimpleCounterClockwisePieces)
{
    CListePolygone l;
    EXPECT_EQ(l.RendRegulier(Poly({{0, 0}, {0, 1}, {1, 0}}), 1), 0);
    ASSERT_EQ(l.GetCount(), 1);
    EXPECT_GT(Aire(*l.GetHead()), 0.0);
    l.Delete();
    EXPECT_EQ(l.RendRegulier(Poly({{0, 0}, {3, 3}}), 1), 0);
    EXPECT_TRUE(*l.GetHead() == Poly({{0, 0}, {3, 3}}));
    l.Delete();

    // A bowtie: two triangular loops of 0.25 crossing at (0.5, 0.5).
    CPolygone huit2 = Poly({{0, 0}, {1, 1}, {1, 0}, {0, 1}});
    EXPECT_EQ(l.RendRegulier(huit2, 0), 1);
    bool positives = false;
    EXPECT_EQ(l.GetCount(), 2);
    EXPECT_NEAR(AireTotale(l, &positives), 0.5, 1e-12);
    EXPECT_TRUE(positives);
    for (POSITION pos = l.GetHeadPosition(); pos;)
        EXPECT_EQ(l.GetNext(pos)->Regulier(), 0);
    l.Delete();
    // Dropping the inverted loop keeps only the counter-clockwise one.
    EXPECT_EQ(l.RendRegulier(huit2, 1), 1);
    ASSERT_EQ(l.GetCount(), 1);
    EXPECT_NEAR(Aire(*l.GetHead()), 0.25, 1e-12);
    l.Delete();

    // Two crossings, at (1.5, 0) and (2.5, 0): a chain of three diamonds of areas
    // 1.5, 1 and 1.5, the middle one running the other way.
    CPolygone chaine = Poly({{0, 0}, {1, 1}, {2, -1}, {3, 1}, {4, 0}, {3, -1}, {2, 1}, {1, -1}});
    EXPECT_EQ(l.RendRegulier(chaine, 0), 1);
    EXPECT_EQ(l.GetCount(), 3);
    EXPECT_NEAR(AireTotale(l, &positives), 1.5 + 1.0 + 1.5, 1e-12);
    EXPECT_TRUE(positives);
    for (POSITION pos = l.GetHeadPosition(); pos;)
        EXPECT_EQ(l.GetNext(pos)->Regulier(), 0);
}

TEST(CListePolygone, PolyClippingOperations)
{
    CPolygone a = Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    CPolygone b = Poly({{0.5, 0.5}, {1.5, 0.5}, {1.5, 1.5}, {0.5, 1.5}});
    CListePolygone l;
    bool positives = false;
    EXPECT_EQ(l.PolyClipping(0, a, b, CLIPPING_UNION), 1);
    EXPECT_NEAR(AireTotale(l, &positives), 1.75, 1e-12);
    EXPECT_TRUE(positives);
    EXPECT_EQ(l.PolyClipping(1, a, b, CLIPPING_INTERSECTION), 1);
    EXPECT_EQ(l.GetCount(), 1);
    EXPECT_TRUE(l.GetHead()->Confondu(Poly({{0.5, 0.5}, {1, 0.5}, {1, 1}, {0.5, 1}}), 1e-12));
    EXPECT_EQ(l.PolyClipping(1, a, b, CLIPPING_DIFFERENCE), 1);
    EXPECT_NEAR(AireTotale(l), 0.75, 1e-12);

    // A clockwise operand is the same region.
    CPolygone bcw = Poly({{0.5, 0.5}, {0.5, 1.5}, {1.5, 1.5}, {1.5, 0.5}});
    EXPECT_EQ(l.PolyClipping(1, a, bcw, CLIPPING_INTERSECTION), 1);
    EXPECT_NEAR(AireTotale(l), 0.25, 1e-12);

    // A hole: only the outline unless asked, then the opening comes clockwise and
    // stays so when its extents are read.
    CPolygone grand = Poly({{0, 0}, {4, 0}, {4, 4}, {0, 4}});
    CPolygone petit = Poly({{1, 1}, {2, 1}, {2, 2}, {1, 2}});
    EXPECT_EQ(l.PolyClipping(1, grand, petit, CLIPPING_DIFFERENCE), 1);
    EXPECT_NEAR(Aire(*l.GetHead()), 16.0, 1e-12);
    EXPECT_EQ(l.PolyClipping(1, grand, petit, CLIPPING_DIFFERENCE, 0, 1), 2);
    double somme = 0.0;
    for (POSITION pos = l.GetHeadPosition(); pos;)
    {
        CPolygone* p = l.GetNext(pos);
        p->g_Xmin();
        somme += Aire(*p);
    }
    EXPECT_NEAR(somme, 15.0, 1e-12);

    // Disjoint contours, and contours touching at one corner (two pieces in mode 0).
    CPolygone loin = Poly({{5, 5}, {6, 5}, {6, 6}, {5, 6}});
    EXPECT_EQ(l.PolyClipping(1, a, loin, CLIPPING_UNION), 2);
    EXPECT_EQ(l.PolyClipping(1, a, loin, CLIPPING_INTERSECTION), 0);
    CPolygone coin = Poly({{1, 1}, {2, 1}, {2, 2}, {1, 2}});
    EXPECT_EQ(l.PolyClipping(1, a, coin, CLIPPING_UNION, 0), 2);

    // Sub-nanometre coordinates survive the integer scale.
    CPolygone fin = Poly({{0.123456789012, 0}, {1, 0}, {1, 1.000000000031}, {0, 1}});
    EXPECT_EQ(l.PolyClipping(1, fin, fin, CLIPPING_UNION), 1);
    EXPECT_TRUE(l.GetHead()->Confondu(fin, 1e-11));

    // Beyond the range the scale allows: refused, nothing appended.
    CPolygone enorme = Poly({{0, 0}, {1e8, 0}, {1e8, 1}});
    EXPECT_EQ(l.PolyClipping(1, a, enorme, CLIPPING_UNION), -1);
    EXPECT_EQ(l.GetCount(), 1);
}

TEST(CListePolygone, UnionMergesCloseContoursOnly)
{
    CListePolygone l;
    l.AddTail(new CPolygone(Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}})));
    l.AddTail(new CPolygone(Poly({{1.1, 0}, {2.1, 0}, {2.1, 1}, {1.1, 1}})));
    l.AddTail(new CPolygone(Poly({{10, 10}, {11, 10}, {11, 11}, {10, 11}})));
    l.Union(0.1, 1);
    ASSERT_EQ(l.GetCount(), 2);
    // The gap of 0.1 is bridged: one 2.1 x 1 block, the far square unchanged.
    EXPECT_TRUE(l.GetHead()->Confondu(Poly({{0, 0}, {2.1, 0}, {2.1, 1}, {0, 1}}), 1e-9))
        << ::testing::PrintToString(Points(*l.GetHead()));
    EXPECT_TRUE(l.GetTail()->Confondu(Poly({{10, 10}, {11, 10}, {11, 11}, {10, 11}}), 1e-9));

    CListePolygone m;
    m.AddTail(new CPolygone(Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}})));
    m.AddTail(new CPolygone(Poly({{1.5, 0}, {2.5, 0}, {2.5, 1}, {1.5, 1}})));
    m.Union(0.1, 1);
    EXPECT_EQ(m.GetCount(), 2);
}

TEST(CListePolygone, RandomTanglesComeOutSimpleAndOffsetsStayInside)
{
    std::mt19937 gen(7);
    std::uniform_real_distribution<double> u(0.0, 10.0);
    std::uniform_int_distribution<int> taille(4, 14);
    for (int essai = 0; essai < 300; ++essai)
    {
        CPolygone p;
        const int n = taille(gen);
        for (int i = 0; i < n; ++i)
            p.AddTail(u(gen), u(gen));
        CListePolygone l;
        l.RendRegulier(p, 0);
        ASSERT_GE(l.GetCount(), 1);
        for (POSITION pos = l.GetHeadPosition(); pos;)
        {
            CPolygone* m = l.GetNext(pos);
            EXPECT_NE(m->Regulier(), 2) << essai;
            EXPECT_GE(Aire(*m), 0.0) << essai;
        }
        // An inward offset of any simple piece never leaves it.
        CPolygone piece = *l.GetHead();
        CPolygone decale = piece;
        EXPECT_EQ(decale.Decale(0.3, 0), piece.GetCount() < 3 ? 1 : 0);
        for (POSITION pos = decale.GetHeadPosition(); pos;)
            EXPECT_GE(piece.AppartientAPolygone(decale.GetPointNext(pos)), 0) << essai;
    }
}
