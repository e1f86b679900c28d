#include "PolygoneTestUtil.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace prefa_test;

namespace
{
// The exact mitred parallel offset: every side moved to its left by its distance,
// vertex i where offset sides i-1 and i meet.
CPolygone OffsetExact(const CPolygone& p, const std::vector<double>& d)
{
    const auto v = Points(p);
    const std::size_t n = v.size();
    struct Ligne
    {
        double px, py, ux, uy;
    };
    std::vector<Ligne> l(n);
    for (std::size_t i = 0; i < n; ++i)
    {
        const auto a = v[i], b = v[(i + 1) % n];
        const double L = std::hypot(b.first - a.first, b.second - a.second);
        const double ux = (b.first - a.first) / L, uy = (b.second - a.second) / L;
        l[i] = {a.first - uy * d[i], a.second + ux * d[i], ux, uy};
    }
    CPolygone r;
    for (std::size_t i = 0; i < n; ++i)
    {
        const Ligne& a = l[(i + n - 1) % n];
        const Ligne& b = l[i];
        const double det = a.ux * (-b.uy) - a.uy * (-b.ux);
        const double rx = b.px - a.px, ry = b.py - a.py;
        const double t = (rx * (-b.uy) - ry * (-b.ux)) / det;
        r.AddTail(a.px + t * a.ux, a.py + t * a.uy);
    }
    return r;
}

CPolygone OffsetExact(const CPolygone& p, double d)
{
    return OffsetExact(p, std::vector<double>((std::size_t)p.GetCount(), d));
}

void ExpectSameContour(const CPolygone& got, const CPolygone& want, double tol = 1e-9)
{
    EXPECT_NEAR(Aire(got), Aire(want), tol);
    EXPECT_TRUE(got.Confondu(want, tol)) << "got:\n" << ::testing::PrintToString(Points(got))
                                         << "\nwant:\n" << ::testing::PrintToString(Points(want));
}
} // namespace

TEST(CPolygoneDecale, ConvexContoursMatchTheExactMitredOffset)
{
    CPolygone carre = Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    CPolygone c = carre;
    EXPECT_EQ(c.Decale(0.1, 0), 0);
    ExpectSameContour(c, Poly({{0.1, 0.1}, {0.9, 0.1}, {0.9, 0.9}, {0.1, 0.9}}));

    // An irregular convex hexagon with slanted sides, both ways, several distances.
    const CPolygone hexa = Poly({{0, 0}, {4, -1}, {7, 1.5}, {6.5, 5}, {2, 6}, {-1.5, 3}});
    for (double d : {0.05, 0.37, 1.2, -0.05, -0.37, -2.5})
    {
        CPolygone h = hexa;
        ASSERT_EQ(h.Decale(d, 0), 0);
        SCOPED_TRACE(d);
        ExpectSameContour(h, OffsetExact(hexa, d));
    }

    // Given clockwise, the same geometric move: "left of each side" stays the rule,
    // so a positive distance now goes outwards; the result is counter-clockwise.
    CPolygone cw = Poly({{0, 1}, {1, 1}, {1, 0}, {0, 0}});
    EXPECT_EQ(cw.Decale(0.1, 0), 0);
    ExpectSameContour(cw, Poly({{-0.1, -0.1}, {1.1, -0.1}, {1.1, 1.1}, {-0.1, 1.1}}));
}

TEST(CPolygoneDecale, NonConvexSectionsOffsetCleanlyBothWays)
{
    const CPolygone L = Poly({{0, 0}, {3, 0}, {3, 1}, {1, 1}, {1, 3}, {0, 3}});
    const CPolygone T = Poly({{1.5, 0}, {2.5, 0}, {2.5, 2}, {4, 2}, {4, 3}, {0, 3}, {0, 2}, {1.5, 2}});
    // A slab with a rectangular notch in its top face.
    const CPolygone dalle = Poly({{0, 0}, {10, 0}, {10, 2}, {6, 2}, {6, 1.5}, {5, 1.5}, {5, 2}, {0, 2}});
    for (const CPolygone* f : {&L, &T, &dalle})
        for (double d : {0.2, -0.2, 0.05, -0.3})
        {
            CPolygone p = *f;
            ASSERT_EQ(p.Decale(d, 0), 0);
            SCOPED_TRACE(::testing::PrintToString(Points(*f)) + " d=" + std::to_string(d));
            ExpectSameContour(p, OffsetExact(*f, d));
        }

    // Inwards the offset stays within the contour; outwards it contains it.
    CPolygone in = T, out = T;
    in.Decale(0.2, 0);
    out.Decale(-0.2, 0);
    for (POSITION pos = in.GetHeadPosition(); pos;)
        EXPECT_EQ(CPolygone(T).AppartientAPolygone(in.GetPointNext(pos)), 0);
    for (POSITION pos = T.GetHeadPosition(); pos;)
        EXPECT_EQ(out.AppartientAPolygone(T.GetPointNext(pos)), 0);
}

TEST(CPolygoneDecale, CollinearPointsAndStepsBetweenParallelSides)
{
    // Midpoints on two sides: the result is the plain offset square.
    CPolygone c = Poly({{0, 0}, {0.5, 0}, {1, 0}, {1, 0.5}, {1, 1}, {0, 1}});
    EXPECT_EQ(c.Decale(0.1, 0), 0);
    EXPECT_NEAR(Aire(c), 0.64, 1e-9);
    for (POSITION pos = c.GetHeadPosition(); pos;)
    {
        const CPointD q = c.GetPointNext(pos);
        EXPECT_TRUE(std::fabs(q.x - 0.1) < 1e-9 || std::fabs(q.x - 0.9) < 1e-9) << q.x;
        EXPECT_TRUE(std::fabs(q.y - 0.1) < 1e-9 || std::fabs(q.y - 0.9) < 1e-9) << q.y;
    }
    c = Poly({{0, 0}, {0.5, 0}, {1, 0}, {1, 0.5}, {1, 1}, {0, 1}});
    EXPECT_EQ(c.Decale(-0.1, 0), 0);
    EXPECT_NEAR(Aire(c), 1.44, 1e-9);

    // Per-side distances, handed over as Decale takes them: pointers to doubles.
    auto decale = [](CPolygone& p, std::vector<double> d) {
        CPtrList liste;
        for (double& v : d)
            liste.AddTail(&v);
        return p.Decale(&liste, 0);
    };
    // The bottom in two collinear pieces moved by 0.1 and 0.3: a step joins them.
    CPolygone s = Poly({{0, 0}, {2, 0}, {4, 0}, {4, 2}, {0, 2}});
    EXPECT_EQ(decale(s, {0.1, 0.3, 0.0, 0.0, 0.0}), 0);
    ExpectSameContour(s, Poly({{0, 0.1}, {2, 0.1}, {2, 0.3}, {4, 0.3}, {4, 2}, {0, 2}}));

    // Per-side distances on a rectangle: only the bottom rises.
    CPolygone r = Poly({{0, 0}, {4, 0}, {4, 2}, {0, 2}});
    EXPECT_EQ(decale(r, {0.5, 0.0, 0.0, 0.0}), 0);
    ExpectSameContour(r, Poly({{0, 0.5}, {4, 0.5}, {4, 2}, {0, 2}}));

    // The same rectangle clockwise, each side moved to its left (outwards here) by its
    // own distance: left side 0.1, top 0.2, right 0.3, bottom 0.4.
    CPolygone cw = Poly({{0, 0}, {0, 2}, {4, 2}, {4, 0}});
    EXPECT_EQ(decale(cw, {0.1, 0.2, 0.3, 0.4}), 0);
    ExpectSameContour(cw, Poly({{-0.1, -0.4}, {4.3, -0.4}, {4.3, 2.2}, {-0.1, 2.2}}));
}

TEST(CPolygoneDecale, NearlyStraightVerticesAreMitredFromAThousandthOfADegree)
{
    // The bottom of a 100 x 50 block bends by 0.009 degrees at its middle: above the
    // 0.001 degree of parallel sides the vertex is the exact mitre, whose distance
    // from the midpoint of the two offset ends (d theta^2 / 4 = 6e-9) would show.
    const double e = 50 * std::tan(0.0045 * 3.141592653589793 / 180);
    const CPolygone bloc = Poly({{0, 0}, {50, e}, {100, 0}, {100, 50}, {0, 50}});
    CPolygone p = bloc;
    ASSERT_EQ(p.Decale(1.0, 0), 0);
    ExpectSameContour(p, OffsetExact(bloc, 1.0), 1e-10);
}

TEST(CPolygoneDecale, SplitsKeepTheLargestPieceAndCollapsesEmpty)
{
    // Narrower than twice the distance: nothing is left, and that is not a refusal.
    CPolygone etroit = Poly({{0, 0}, {1, 0}, {1, 0.5}, {0, 0.5}});
    EXPECT_EQ(etroit.Decale(0.3, 0), 0);
    EXPECT_TRUE(etroit.IsEmpty());
    CPolygone T = Poly({{1.5, 0}, {2.5, 0}, {2.5, 2}, {4, 2}, {4, 3}, {0, 3}, {0, 2}, {1.5, 2}});
    EXPECT_EQ(T.Decale(0.6, 0), 0);
    EXPECT_TRUE(T.IsEmpty());

    // Two blocks joined by a thin bar: the bar vanishes, the bigger block stays.
    CPolygone halt = Poly({{0, 0}, {2, 0}, {2, 0.8}, {3, 0.8}, {3, 0}, {6, 0}, {6, 3}, {3, 3}, {3, 1.2},
                           {2, 1.2}, {2, 2}, {0, 2}});
    EXPECT_EQ(halt.Decale(0.3, 0), 0);
    ExpectSameContour(halt, Poly({{3.3, 0.3}, {5.7, 0.3}, {5.7, 2.7}, {3.3, 2.7}}));

    // A T whose stem is narrower than 2d keeps its flange only.
    CPolygone T2 = Poly({{1.8, 0}, {2.2, 0}, {2.2, 2}, {4, 2}, {4, 3}, {0, 3}, {0, 2}, {1.8, 2}});
    EXPECT_EQ(T2.Decale(0.25, 0), 0);
    ExpectSameContour(T2, Poly({{0.25, 2.25}, {3.75, 2.25}, {3.75, 2.75}, {0.25, 2.75}}));
}

TEST(CPolygoneDecale, RefusalsLeaveThePointsUntouched)
{
    CPolygone deux = Poly({{0, 0}, {1, 0}});
    EXPECT_EQ(deux.Decale(0.1, 0), 1);
    EXPECT_EQ(Points(deux), Points(Poly({{0, 0}, {1, 0}})));
    CPolygone rep = Poly({{0, 0}, {1, 0}, {1, 0}, {1, 1}});
    EXPECT_EQ(rep.Decale(0.1, 0), 1);
    EXPECT_EQ(rep.GetCount(), 4);
    CPolygone carre = Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    double d = 0.1;
    CPtrList court;
    court.AddTail(&d);
    EXPECT_EQ(carre.Decale(&court, 0), 1);
    EXPECT_EQ(carre.GetCount(), 4);
}

TEST(CPolygoneDecale, PointsIdentiquesHonoursTheMarker)
{
    CPolygone p = Poly({{0, 0}, {0, 0}, {1, 0}, {1, 1}});
    EXPECT_EQ(p.PointsIdentiques(0, 0.0), 1);
    EXPECT_EQ(p.GetCount(), 4);
    EXPECT_EQ(p.PointsIdentiques(1, 0.0), 1);
    EXPECT_EQ(Points(p), Points(Poly({{0, 0}, {1, 0}, {1, 1}})));
    EXPECT_EQ(p.PointsIdentiques(1, 0.0), 0);

    CPolygone m = Poly({{0, 0}, {0, 0}, {1, 0}, {1, 1}});
    m.GetAt(1)->marque = true;
    EXPECT_EQ(m.PointsIdentiques(1, 0.0), 1);
    EXPECT_EQ(m.GetCount(), 4);

    // 1e-10 apart is not identical with tol 0 (strict); a distance tolerance is
    // inclusive; the closing pair is checked too.
    EXPECT_EQ(Poly({{0, 0}, {1e-10, 0}, {1, 0}}).PointsIdentiques(0, 0.0), 0);
    EXPECT_EQ(Poly({{0, 0}, {0, 1e-10}, {1, 0}}).PointsIdentiques(0, 0.0), 0);
    EXPECT_EQ(Poly({{0, 0}, {0, 0.5e-10}, {1, 0}}).PointsIdentiques(0, 0.0), 1);
    EXPECT_EQ(Poly({{0, 0}, {0.5, 0}, {1, 0}}).PointsIdentiques(0, 0.5), 1);
    CPolygone ferme = Poly({{0, 0}, {1, 0}, {1, 1}, {0, 0}});
    EXPECT_EQ(ferme.PointsIdentiques(1, 0.0), 1);
    EXPECT_EQ(Points(ferme), Points(Poly({{0, 0}, {1, 0}, {1, 1}})));
}

TEST(CPolygoneDecale, SingularAndAlignedPoints)
{
    // Aligned points go, unless marked; the turn from an unmarked point is measured
    // from the last unmarked one.
    CPolygone a = Poly({{0, 0}, {1, 0}, {2, 0}, {2, 2}, {1, 2}, {0, 2}});
    a.GetAt(4)->marque = true;
    a.EliminePointAligne(0.0);
    EXPECT_EQ(Points(a), Points(Poly({{0, 0}, {2, 0}, {2, 2}, {1, 2}, {0, 2}})));
    // With a tolerance the unnormalised cross product is compared with |sin tol|.
    CPolygone b = Poly({{0, 0}, {1, 0.001}, {2, 0}, {2, 2}, {0, 2}});
    b.EliminePointSingulier(1, 0.0);
    EXPECT_EQ(b.GetCount(), 5);
    b.EliminePointSingulier(1, 0.2); // |cross| = 0.002 <= sin(0.2 deg) = 0.00349
    EXPECT_EQ(b.GetCount(), 4);
    // Both bounds: a cross product of exactly 1e-10 stays without tolerance (strict),
    // one of exactly sin(90 deg) = 1 goes with 90 degrees (inclusive).
    CPolygone c = Poly({{0, 0}, {1, 0}, {2, 1e-10}, {2, 2}, {0, 2}});
    c.EliminePointSingulier(1, 0.0);
    EXPECT_EQ(c.GetCount(), 5);
    c = Poly({{0, 0}, {1, 0}, {2, 0.5e-10}, {2, 2}, {0, 2}});
    c.EliminePointSingulier(1, 0.0);
    EXPECT_EQ(c.GetCount(), 4);
    c = Poly({{0, 0}, {1, 0}, {2, 1}, {2, 3}, {0, 3}});
    c.EliminePointSingulier(1, 90.0);
    EXPECT_EQ(Points(c), Points(Poly({{0, 0}, {2, 1}, {2, 3}, {0, 3}})));

    // A spike: its tip moves onto the longer side's line, at the foot of the
    // shorter side's end.
    CPolygone s = Poly({{0, 0}, {4, 0}, {4, 4}, {2, 4}, {2, 6}, {2.01, 4.5}, {0, 4}});
    s.EliminePointSingulier(0, 1.5);
    EXPECT_NEAR(s.GetPointAt(4).x, 2.0, 1e-12);
    EXPECT_NEAR(s.GetPointAt(4).y, 4.5, 1e-12);
    EXPECT_EQ(s.GetCount(), 7);
}

TEST(CPolygoneDecale, RegulierAndEclatePolygone)
{
    CPolygone huit = Poly({{0, 0}, {2, 2}, {2, 0}, {0, 2}});
    CPointD I;
    POSITION p1 = nullptr, p2 = nullptr;
    EXPECT_EQ(huit.Regulier(&I, &p1, &p2), 2);
    EXPECT_NEAR(I.x, 1.0, 1e-12);
    EXPECT_NEAR(I.y, 1.0, 1e-12);
    EXPECT_EQ(p1, huit.GetHeadPosition());
    EXPECT_EQ(huit.GetPointAt(p2).x, 2.0);

    CPolygone a, b;
    EXPECT_EQ(huit.EclatePolygone(&a, &b), 1);
    EXPECT_EQ(Points(a), Points(Poly({{1, 1}, {2, 2}, {2, 0}})));
    EXPECT_EQ(Points(b), Points(Poly({{1, 1}, {0, 2}, {0, 0}})));
    EXPECT_EQ(huit.GetCount(), 6);
    EXPECT_LT(a.Surface(), 0.0); // the loop's own orientation is kept in its cache
    EXPECT_GT(b.Surface(), 0.0);

    EXPECT_EQ(Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}}).Regulier(), 0);
    CPolygone cw = Poly({{0, 0}, {0, 1}, {1, 1}, {1, 0}});
    EXPECT_EQ(cw.Regulier(), 0); // a stale cache is rebuilt counter-clockwise
    EXPECT_EQ(Poly({{0, 0}, {1, 0}, {2, 0}}).Regulier(), 1);
    CPolygone cwValide = Poly({{0, 0}, {0, 1}, {1, 1}, {1, 0}});
    cwValide.Surface(false);
    EXPECT_EQ(cwValide.Regulier(), 1);
    CPolygone simple = Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    CPolygone x, y;
    EXPECT_EQ(simple.EclatePolygone(&x, &y), 0);
    EXPECT_EQ(simple.GetCount(), 4);
}

TEST(CPolygoneDecale, LineClippingReturnsTheInsideParts)
{
    CPolygone carre = Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    CList<CVecteur, CVecteur&> s;
    EXPECT_EQ(carre.IntersectionPolygoneVecteur(CVecteur(5, 0.5, 6, 0.5), &s, 0), 1);
    EXPECT_EQ(s.GetHead(), CVecteur(0, 0.5, 1, 0.5));
    // Oriented like the line.
    s.RemoveAll();
    carre.IntersectionPolygoneVecteur(CVecteur(0, 0.5, -1, 0.5), &s, 0);
    EXPECT_EQ(s.GetHead(), CVecteur(1, 0.5, 0, 0.5));
    // Through two vertices, along a side, touching a vertex only.
    s.RemoveAll();
    EXPECT_EQ(carre.IntersectionPolygoneVecteur(CVecteur(-1, -1, 3, 3), &s, 0), 1);
    EXPECT_EQ(s.GetHead(), CVecteur(0, 0, 1, 1));
    s.RemoveAll();
    EXPECT_EQ(carre.IntersectionPolygoneVecteur(CVecteur(-2, 0, -1, 0), &s, 0), 1);
    EXPECT_EQ(s.GetHead(), CVecteur(0, 0, 1, 0));
    s.RemoveAll();
    EXPECT_EQ(carre.IntersectionPolygoneVecteur(CVecteur(0, 2, 2, 0), &s, 0), 0);
    // Clipped to the segment itself.
    EXPECT_EQ(carre.IntersectionPolygoneVecteur(CVecteur(0.25, 0.5, 3, 0.5), &s, 1), 1);
    EXPECT_EQ(s.GetHead(), CVecteur(0.25, 0.5, 1, 0.5));

    // A U: two parts, in order; through its reflex vertices and along the inner
    // bottom, one part spanning the arms and the floor.
    CPolygone U = Poly({{0, 0}, {3, 0}, {3, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}});
    s.RemoveAll();
    EXPECT_EQ(U.IntersectionPolygoneVecteur(CVecteur(0, 2, 1, 2), &s, 0), 2);
    EXPECT_EQ(s.GetHead(), CVecteur(0, 2, 1, 2));
    EXPECT_EQ(s.GetTail(), CVecteur(2, 2, 3, 2));
    s.RemoveAll();
    EXPECT_EQ(U.IntersectionPolygoneVecteur(CVecteur(0, 1, 1, 1), &s, 0), 1);
    EXPECT_EQ(s.GetHead(), CVecteur(0, 1, 3, 1));
    // Entering at the arm's top corner, leaving along the notch, re-entering at the
    // reflex corner and leaving at the bottom corner.
    s.RemoveAll();
    EXPECT_EQ(U.IntersectionPolygoneVecteur(CVecteur(0, 3, 1, 2), &s, 0), 2);
    EXPECT_EQ(s.GetHead(), CVecteur(0, 3, 1, 2));
    EXPECT_EQ(s.GetTail(), CVecteur(2, 1, 3, 0));
}

TEST(CPolygoneDecale, HorizontalDistances)
{
    CPolygone a = Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    CPolygone b = Poly({{3, 0.5}, {4, 0.5}, {4, 2}, {3, 2}});
    double d = 99.0;
    EXPECT_EQ(a.DistanceAxeXPolygone(b, &d, 1), 0);
    EXPECT_NEAR(d, 2.0, 1e-12);
    EXPECT_EQ(b.DistanceAxeXPolygone(a, &d, 0), 0);
    EXPECT_NEAR(d, -4.0, 1e-12); // the most negative: from x = 4 to the far side
    EXPECT_EQ(b.DistanceAxeXPolygone(a, &d, 1), 0);
    EXPECT_NEAR(d, -2.0, 1e-12);
    CPolygone loin = Poly({{0, 10}, {1, 10}, {1, 11}});
    d = 99.0;
    EXPECT_EQ(a.DistanceAxeXPolygone(loin, &d, 1), -1);
    EXPECT_EQ(d, 99.0);
    EXPECT_EQ(CPolygone().DistanceAxeXPolygone(a, &d, 1), -1);

    EXPECT_EQ(a.DistanceHorzPolygone(b, &d), 0);
    EXPECT_NEAR(d, 2.0, 1e-12);
    CPolygone chevauche = Poly({{0.5, 0.5}, {2, 0.5}, {2, 2}, {0.5, 2}});
    EXPECT_EQ(a.DistanceHorzPolygone(chevauche, &d), 1);
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(a.DistanceHorzPolygone(loin, &d), -1);
}
