#include "PolygoneTestUtil.h"
#include "support/TestSupport.h"

#include "geometry/Routines.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <random>

using namespace prefa_test;

TEST(CPolygone, OrientationIsEnforcedByTheCacheAccessorsOnly)
{
    CPolygone cw = Poly({{0, 0}, {0, 1}, {1, 1}, {1, 0}});
    EXPECT_DOUBLE_EQ(cw.Surface(false), -1.0);
    EXPECT_EQ(Points(cw), (std::vector<std::pair<double, double>>{{0, 0}, {0, 1}, {1, 1}, {1, 0}}));

    CPolygone cw2 = Poly({{0, 0}, {0, 1}, {1, 1}, {1, 0}});
    EXPECT_EQ(cw2.g_Xmin(), 0.0);
    EXPECT_EQ(Points(cw2), (std::vector<std::pair<double, double>>{{1, 0}, {1, 1}, {0, 1}, {0, 0}}));
    EXPECT_DOUBLE_EQ(cw2.Surface(true), 1.0);
    EXPECT_EQ(cw2.g_Xmax(), 1.0);
    EXPECT_EQ(cw2.g_ImpactY(), 1.0);

    // A pointer accessor makes the cache stale; a copy accessor does not.
    CPolygone sq = Poly({{0, 0}, {2, 0}, {2, 1}, {0, 1}});
    EXPECT_DOUBLE_EQ(sq.Surface(), 2.0);
    sq.GetPointAt(1);
    EXPECT_DOUBLE_EQ(sq.Surface(), 2.0);
    sq.GetAt(1)->x = 4.0;
    EXPECT_DOUBLE_EQ(sq.Surface(), 3.0);
    EXPECT_EQ(sq.g_Xmax(), 4.0);

    // No closing side below three points; a tiny clockwise area is not reversed.
    EXPECT_EQ(Poly({{0, 0}, {3, 4}}).Surface(true), 0.0);
    CPolygone tiny = Poly({{0, 0}, {0, 0.01}, {0.01, 0.01}, {0.01, 0}});
    EXPECT_NEAR(tiny.Surface(true), -1e-4, 1e-15);
}

TEST(CPolygone, ReversalNegatesTheAreaExactlySoOrientationSettlesAtOnce)
{
    // With 1e17 among the coordinates a running sum drops the small terms, differently
    // in each direction: this contour's area (exactly 0 for the points, exactly -0.5
    // for its rounded terms) used to come out negative both ways, and the first
    // extents query reversed it for ever.
    CPolygone p = Poly({{0, 0}, {1, 1e17}, {0, 1}, {1, 1}});
    EXPECT_EQ(p.g_Xmin(), 0.0);
    EXPECT_EQ(p.g_Ymax(), 1e17);
    const std::vector<std::pair<double, double>> inverse{{1, 1}, {0, 1}, {1, 1e17}, {0, 0}};
    EXPECT_EQ(Points(p), inverse);
    EXPECT_EQ(p.Surface(true), 0.5);
    p.GetAt(0); // stale cache: the refresh keeps the orientation found
    EXPECT_EQ(p.Surface(true), 0.5);
    EXPECT_EQ(Points(p), inverse);

    // Integer contours 2^40 above the axis: every term is exact, their running sums
    // are not. The cached area is the exact one, computed here in integers, and the
    // reversed contour's is exactly its opposite.
    std::mt19937 g(11);
    std::uniform_int_distribution<int> x(0, 2047), y(0, 1000), n(4, 12);
    const double base = std::ldexp(1.0, 40);
    for (int k = 0; k < 300; ++k)
    {
        std::vector<std::pair<long long, long long>> v((std::size_t)n(g));
        CPolygone a;
        for (auto& q : v)
        {
            q = {x(g), y(g)};
            a.AddTail((double)q.first, base + (double)q.second);
        }
        long long deux = 0; // twice the area, with y measured from 2^40
        for (std::size_t i = 0; i < v.size(); ++i)
        {
            const auto& u = v[i];
            const auto& w = v[(i + 1) % v.size()];
            deux -= (w.first - u.first) * (u.second + w.second + (2LL << 40));
        }
        CPolygone b(a);
        b.InverseSens();
        ASSERT_EQ(a.Surface(false), deux / 2.0) << k;
        ASSERT_EQ(b.Surface(false), -deux / 2.0) << k;
    }
}

TEST(CPolygone, RectangleConstructorOrderAndFloatCleanup)
{
    CPolygone r(1.0, 2.0, 4.0f, 2.0f, 0.0);
    EXPECT_EQ(Points(r), (std::vector<std::pair<double, double>>{{-1, 1}, {3, 1}, {3, 3}, {-1, 3}}));
    CPolygone t(0.0, 0.0, 0.1f, 0.3f, 90.0);
    // The float sizes come back as clean decimals: half sizes 0.05 and 0.15.
    const auto v = Points(t);
    EXPECT_NEAR(v[0].first, 0.15, 1e-15);
    EXPECT_NEAR(v[0].second, -0.05, 1e-15);
    EXPECT_NEAR(v[2].first, -0.15, 1e-15);
    EXPECT_NEAR(v[2].second, 0.05, 1e-15);
    EXPECT_GT(Aire(t), 0.0);
}

TEST(CPolygone, SideIterationWrapsOnce)
{
    CPolygone tri = Poly({{0, 0}, {1, 0}, {0, 2}});
    CVecteur c = tri.CotePremier();
    EXPECT_EQ(c, CVecteur(0, 0, 1, 0));
    EXPECT_FALSE(tri.EstDernierCote());
    c = tri.CoteSuivant();
    EXPECT_EQ(c, CVecteur(1, 0, 0, 2));
    EXPECT_FALSE(tri.EstDernierCote());
    c = tri.CoteSuivant();
    EXPECT_EQ(c, CVecteur(0, 2, 0, 0));
    EXPECT_TRUE(tri.EstDernierCote());
    EXPECT_EQ(tri.CoteDernier(), CVecteur(0, 2, 0, 0));
    EXPECT_EQ(tri.CoteSuivant(), CVecteur(0, 0, 1, 0));

    CPolygone un = Poly({{1, 1}});
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { un.CotePremier(); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { un.GetPointAt(3); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { un.GetAt((POSITION) nullptr); }));
}

TEST(CPolygone, EstRectangleUsesAnAbsoluteDotTolerance)
{
    EXPECT_TRUE(Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}}).EstRectangle());
    // Unit sides with a dot product of 0.0005 pass, 0.002 does not.
    EXPECT_TRUE(Poly({{0, 0}, {1, 0}, {1.0005, 1}, {0.0005, 1}}).EstRectangle());
    EXPECT_FALSE(Poly({{0, 0}, {1, 0}, {1.002, 1}, {0.002, 1}}).EstRectangle());
    EXPECT_FALSE(Poly({{0, 0}, {1, 0}, {1, 1}}).EstRectangle());
}

namespace
{
struct P2
{
    double x, y;
};

bool SurSegment(P2 a, P2 b, P2 p)
{
    const double c = (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    return c == 0.0 && p.x >= std::min(a.x, b.x) && p.x <= std::max(a.x, b.x) &&
           p.y >= std::min(a.y, b.y) && p.y <= std::max(a.y, b.y);
}

// Careful reference: first side holding the point, else an even-odd crossing count.
int Reference(const std::vector<P2>& c, P2 p)
{
    const std::size_t n = c.size();
    for (std::size_t i = 0; i < n; ++i)
        if (SurSegment(c[i], c[(i + 1) % n], p))
            return (int)i + 1;
    bool dedans = false;
    for (std::size_t i = 0; i < n; ++i)
    {
        P2 a = c[i], b = c[(i + 1) % n];
        if ((a.y > p.y) != (b.y > p.y))
        {
            const double x = a.x + (p.y - a.y) * (b.x - a.x) / (b.y - a.y);
            if (p.x < x)
                dedans = !dedans;
        }
    }
    return dedans ? 0 : -1;
}
} // namespace

TEST(CPolygone, ContainmentAgreesWithACarefulCrossingCount)
{
    const std::vector<P2> c = {{0, 0}, {6, 0}, {6, 4}, {4, 4}, {3, 2}, {2, 4}, {0, 4}};
    CPolygone p;
    for (P2 q : c)
        p.AddTail(q.x, q.y);

    // Every half-unit point of the box and around it: vertices, points on every side
    // (horizontal, vertical, slanted), rays through the reflex vertex.
    int surBord = 0;
    for (double x = -1.0; x <= 7.0; x += 0.5)
        for (double y = -1.0; y <= 5.0; y += 0.5)
        {
            const int attendu = Reference(c, {x, y});
            surBord += attendu > 0;
            ASSERT_EQ(p.AppartientAPolygone(CPointD(x, y)), attendu) << x << " " << y;
        }
    EXPECT_GT(surBord, 20);

    std::mt19937 gen(42);
    std::uniform_real_distribution<double> ux(-0.5, 6.5), uy(-0.5, 4.5);
    for (int i = 0; i < 3000; ++i)
    {
        const P2 q = {ux(gen), uy(gen)};
        ASSERT_EQ(p.AppartientAPolygone(CPointD(q.x, q.y)), Reference(c, q)) << q.x << " " << q.y;
    }

    CPolygone sq = Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    EXPECT_EQ(sq.AppartientAPolygone(CPointD(0.5, 1)), 3);
    EXPECT_EQ(sq.AppartientAPolygone(CPointD(0.5, 0.5)), 0);
    EXPECT_EQ(sq.AppartientAPolygone(CPointD(5, 5)), -1);
    // Against the contour offset inwards by 0.1: 0.05 from the side is now outside.
    EXPECT_EQ(sq.AppartientAPolygone(CPointD(0.5, 0.05), 0.1), -1);
    EXPECT_EQ(sq.AppartientAPolygone(CPointD(0.5, 0.5), 0.1), 0);
    // A repeated point does not disturb the side numbering of the cleaned copy.
    CPolygone rep = Poly({{0, 0}, {1, 0}, {1, 0}, {1, 1}, {0, 1}});
    EXPECT_EQ(rep.AppartientAPolygone(CPointD(0.5, 1)), 3);
    EXPECT_EQ(Poly({{0, 0}, {2, 2}}).AppartientAPolygone(CPointD(1, 1)), 1);
}

TEST(CPolygone, EqualityAndConfondu)
{
    CPolygone a = Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    EXPECT_TRUE(a == Poly({{0, 0}, {1, 0}, {1, 1 + 0.5e-10}, {0, 1}}));
    EXPECT_FALSE(a == Poly({{0, 0}, {1, 0}, {1, 1 + 1e-9}, {0, 1}}));
    EXPECT_TRUE(CPolygone() == CPolygone());

    CPolygone depart3 = Poly({{1, 1}, {0, 1}, {0, 0}, {1, 0}});
    EXPECT_TRUE(a.Confondu(depart3, 1e-9));
    CPolygone inverse = Poly({{0, 0}, {0, 1}, {1, 1}, {1, 0}});
    EXPECT_FALSE(a.Confondu(inverse, 1e-9));
    CPolygone loin = Poly({{11, 6}, {10, 6}, {10, 5}, {11, 5}});
    EXPECT_FALSE(a.Confondu(loin, 1e-9, 0));
    EXPECT_TRUE(a.Confondu(loin, 1e-9, 1));
    EXPECT_FALSE(a.Confondu(Poly({{0, 0}, {1, 0}, {1, 1}}), 1.0));
}

TEST(CPolygone, CentreOfGravityKeepsTheMeanHeightFormula)
{
    CPolygone r = Poly({{1, 2}, {5, 2}, {5, 4}, {1, 4}});
    CPointD g = r.DonneCdg();
    EXPECT_NEAR(g.x, 3.0, 1e-12);
    // Mean height: sum of (y1 + y2) A / 4 over the sides, not the exact moment.
    EXPECT_NEAR(g.y, 3.0, 1e-12);
    CPolygone tri = Poly({{0, 0}, {2, 0}, {0, 2}});
    g = tri.DonneCdg();
    EXPECT_NEAR(g.x, 2.0 / 3.0, 1e-12);
    EXPECT_NEAR(g.y, 0.5, 1e-12); // the exact centroid would be 2/3

    // A thin L: its centroid lies outside, the returned point inside.
    CPolygone L = Poly({{0, 0}, {4, 0}, {4, 0.5}, {0.5, 0.5}, {0.5, 4}, {0, 4}});
    g = L.DonneCdg();
    EXPECT_EQ(L.AppartientAPolygone(g), 0);
}

TEST(CPolygone, TransformsAndReversal)
{
    CPolygone p = Poly({{1, 0}, {2, 0}, {2, 1}});
    p.rotation(CPointD(0, 0), 90.0);
    const auto v = Points(p);
    EXPECT_NEAR(v[1].first, 0.0, 1e-12);
    EXPECT_NEAR(v[1].second, 2.0, 1e-12);
    p.translation(CVecteur(0, 0, 1, 1));
    EXPECT_NEAR(p.GetPointAt(0).x, 1.0, 1e-12);
    EXPECT_NEAR(p.GetPointAt(0).y, 2.0, 1e-12);
    p.ChangeRepere(0.0, p.GetPointAt(0));
    EXPECT_NEAR(p.GetPointAt(0).x, 0.0, 1e-12);
    EXPECT_NEAR(p.GetPointAt(2).y, 1.0, 1e-12);

    CPolygone q = Poly({{0, 0}, {1, 0}, {2, 0}, {3, 0}});
    CPointD* second = q.GetAt(1);
    q.InverseSens();
    EXPECT_EQ(Points(q), (std::vector<std::pair<double, double>>{{3, 0}, {2, 0}, {1, 0}, {0, 0}}));
    EXPECT_EQ(q.GetAt(2), second); // nodes moved, points not copied
}

TEST(CPolygone, DeepCopyAndOwnership)
{
    CPolygone a = Poly({{0, 0}, {1, 0}, {1, 1}});
    a.GetAt(0)->marque = true;
    a.GetAt(0)->valeur1 = 7.5;
    CPolygone b(a);
    EXPECT_NE(a.GetAt(0), b.GetAt(0));
    EXPECT_TRUE(b.GetPointAt(0).marque);
    EXPECT_EQ(b.GetPointAt(0).valeur1, 7.5);
    b.SetPointAt(b.GetHeadPosition(), CPointD(9, 9, false, 1.0));
    EXPECT_EQ(a.GetPointAt(0).x, 0.0);
    EXPECT_TRUE(b.GetPointAt(0).marque); // SetPointAt copies x and y only
    EXPECT_EQ(b.GetPointAt(0).x, 9.0);

    // RemoveAt unlinks only: the caller takes over the point.
    CPointD* p = a.GetAt(1);
    a.RemoveAt(1);
    EXPECT_EQ(a.GetCount(), 2);
    delete p;
    a = b;
    EXPECT_TRUE(a == b);
    a.Delete();
    EXPECT_TRUE(a.IsEmpty());
}

TEST(CPolygone, ArchiveFormIsCountThenCoordinates)
{
    CPolygone p = Poly({{1.5, -2}, {3, 4.25}});
    const auto bytes = Store([&](CArchive& ar) { p.Serialize(ar); });
    EXPECT_EQ(bytes, Bytes().i32(2).f64(1.5).f64(-2).f64(3).f64(4.25).b);

    CPolygone q;
    EXPECT_EQ(Load(bytes, [&](CArchive& ar) { q.Serialize(ar); }), 0u);
    EXPECT_TRUE(q == p);
    // Loading appends to what is there.
    Load(bytes, [&](CArchive& ar) { q.Serialize(ar); });
    EXPECT_EQ(q.GetCount(), 4);

    CPolygone vide;
    EXPECT_EQ(Load(Bytes().i32(-3).f64(1).b, [&](CArchive& ar) { vide.Serialize(ar); }), 8u);
    EXPECT_TRUE(vide.IsEmpty());

    // Truncated, and a hostile count that would ask for 32 GB.
    std::vector<BYTE> court(bytes.begin(), bytes.end() - 3);
    EXPECT_EQ(ArchiveCause([&] { CPolygone r; Load(court, [&](CArchive& ar) { r.Serialize(ar); }); }),
              (int)CArchiveException::endOfFile);
    EXPECT_EQ(ArchiveCause([&] {
                  CPolygone r;
                  Load(Bytes().i32(0x7FFFFFFF).f64(1).f64(2).b, [&](CArchive& ar) { r.Serialize(ar); });
              }),
              (int)CArchiveException::endOfFile);
    std::unique_ptr<CObject> cree(RUNTIME_CLASS(CPolygone)->CreateObject());
    EXPECT_TRUE(cree->IsKindOf(RUNTIME_CLASS(CPolygone)));
}

TEST(CPolygone, ForeignContainersRoundTrip)
{
    l2ch_descrip liste{nullptr, nullptr, sizeof(L_POINT) + 24};
    CPolygone p = Poly({{0, 0}, {2, 0}, {2, 3}});
    p.PolygoneEnL_POINT(&liste);
    ASSERT_EQ(l2ch_Compte(&liste), 3);
    EXPECT_EQ(liste.queue->x, 2.0);
    EXPECT_EQ(liste.queue->y, 3.0);
    EXPECT_EQ(liste.tete->suivant->precedent, liste.tete);
    // The caller's part of each node is zero-filled.
    const unsigned char* extra = reinterpret_cast<const unsigned char*>(liste.tete) + sizeof(L_POINT);
    for (int i = 0; i < 24; ++i)
        EXPECT_EQ(extra[i], 0);

    CPolygone q(&liste);
    EXPECT_TRUE(q == p);
    EXPECT_EQ(q.GetPointAt(0).valeur1, -DBL_MAX);
    CPolygone r = Poly({{5, 5}});
    r.L_POINTEnPolygone(nullptr);
    EXPECT_EQ(r.GetCount(), 1);
    r.L_POINTEnPolygone(&liste);
    EXPECT_TRUE(r == p);
    l2ch_Libere(&liste);
    EXPECT_TRUE(CPolygone((const l2ch_descrip*)nullptr).IsEmpty());

    CArray<ptD, ptD> tab;
    tab.Add(ptD{-1, -1});
    p.PolygoneEnArrayPOINTD(tab);
    ASSERT_EQ(tab.GetSize(), 4);
    EXPECT_EQ(tab[3].x, 2.0);
    EXPECT_EQ(tab[3].y, 3.0);
}
