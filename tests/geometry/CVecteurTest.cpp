#include "geometry/CVecteur.h"
#include "geometry/Routines.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

using prefa_test::Bytes;
using prefa_test::Load;
using prefa_test::Store;

namespace
{

void ExpectPoint(const CPointD& p, double x, double y, double tol = 1e-12)
{
    EXPECT_NEAR(p.x, x, tol);
    EXPECT_NEAR(p.y, y, tol);
}

void ExpectVecteur(const CVecteur& v, double x1, double y1, double x2, double y2,
                   double tol = 1e-12)
{
    ExpectPoint(v.org, x1, y1, tol);
    ExpectPoint(v.ext, x2, y2, tol);
}

} // namespace

// Device points are divided by the scale without a Y flip; a null scale gives (0,0).
TEST(CVecteur, DeviceConstructionDividesByTheScale)
{
    ExpectVecteur(CVecteur(CPoint(4, -6), CPoint(10, 2), 2.0), 2, -3, 5, 1, 0.0);
    ExpectVecteur(CVecteur(CPoint(4, -6), CPoint(10, 2), 1e-10), 0, 0, 0, 0, 0.0);
}

TEST(CVecteur, DirectionAnglesInBothRanges)
{
    const CVecteur v(1, 1, 2, 0); // direction (1, -1)
    EXPECT_DOUBLE_EQ(v.angle_d(1), -45.0);
    EXPECT_DOUBLE_EQ(v.angle_d(0), 315.0);
    EXPECT_DOUBLE_EQ(CVecteur(0, 0, 0, -1).angle_d(1), 270.0);
    EXPECT_EQ(CVecteur(2, 2, 2, 2).angle_d(1), 0.0);
    // The switch to negative angles looks at the angle rounded to 2 decimals of a
    // radian: 270.1 degrees (4.7141 rad) stays, 270.2 (4.7159 rad) goes negative.
    const CPointD o(0, 0);
    CVecteur w;
    w.s_coord_cart(o, 1.0, 270.1);
    EXPECT_NEAR(w.angle_d(1), 270.1, 1e-9);
    w.s_coord_cart(o, 1.0, 270.2);
    EXPECT_NEAR(w.angle_d(1), -89.8, 1e-9);

    const CVecteur est(0, 0, 1, 0);
    const CVecteur nord(0, 0, 0, 1);
    EXPECT_DOUBLE_EQ(est.AngleEntreVecteur(nord, 1), 90.0);
    EXPECT_DOUBLE_EQ(est.AngleEntreVecteur(nord, 0), -270.0);
    EXPECT_DOUBLE_EQ(nord.AngleEntreVecteur(est, 1), 270.0);
    EXPECT_DOUBLE_EQ(nord.AngleEntreVecteur(est, 0), -90.0);
}

TEST(CVecteur, ChangeRepereMovesBothEndsAndReturnsTheDirection)
{
    CVecteur c(2, 1, 2, 3);
    const CPointD image = c.ChangeRepere(90.0, CPointD(1, 1));
    ExpectPoint(c.org, 0, -1, 1e-15);
    ExpectPoint(c.ext, 2, -1, 1e-15);
    ExpectPoint(image, -1, 1, 1e-15);
}

TEST(CVecteur, CrossingsWithHorizontalAndVerticalLines)
{
    const CVecteur v(0, 0, 2, 4);
    EXPECT_NEAR(v.g_x(2.0), 1.0, 1e-12);
    EXPECT_NEAR(v.g_x(8.0), 4.0, 1e-12); // the line, not only the segment
    EXPECT_NEAR(v.g_y(1.0), 2.0, 1e-12);
    EXPECT_EQ(CVecteur(0, 1, 5, 1).g_x(1.0), 1e10);
    EXPECT_EQ(CVecteur(3, 0, 3, 1).g_y(5.0), 1e10);
    EXPECT_NEAR(CVecteur(3, 0, 3, 1).g_x(5.0), 3.0, 1e-12);
}

TEST(CVecteur, AppartientPlanSidesAndOnLineCodes)
{
    const CVecteur v(0, 0, 10, 0);
    EXPECT_EQ(v.AppartientPlan(CPointD(5, 1), CPointD(-3, 2)), 0);
    EXPECT_EQ(v.AppartientPlan(CPointD(5, 1), CPointD(5, -1)), -1);
    EXPECT_EQ(v.AppartientPlan(CPointD(20, 0), CPointD(5, -1)), 1);
    EXPECT_EQ(v.AppartientPlan(CPointD(5, 1), CPointD(-7, 0)), 2);
    // On the line within 1e-10 of the cross product (the direction has length 10).
    EXPECT_EQ(v.AppartientPlan(CPointD(5, 0.9e-11), CPointD(5, 1)), 1);
    EXPECT_EQ(v.AppartientPlan(CPointD(5, 1), CPointD(5, 1.1e-11)), 0);
    // "Same side" needs the product of the two cross products above 1e-10: two
    // points hardly off the line on the same side read as opposite sides.
    EXPECT_EQ(v.AppartientPlan(CPointD(5, 2e-6), CPointD(6, 2e-6)), 0);
    EXPECT_EQ(v.AppartientPlan(CPointD(5, 1e-7), CPointD(6, 1e-7)), -1);
}

TEST(CVecteur, NewtonOrthogonalAndCollinearComponents)
{
    ExpectPoint(CVecteur(0, 0, 3, 4).VecteurOrthogonal(5.0), -4, 3);
    ExpectPoint(CVecteur(0, 0, -3, -4).VecteurOrthogonal(5.0), 4, -3);
    ExpectPoint(CVecteur(1, 1, 11, 1).VecteurOrthogonal(2.0), 0, 2);
    EXPECT_EQ(CVecteur(1, 1, 11, 1).VecteurOrthogonal(2.0).x, 0.0); // snapped
    ExpectPoint(CVecteur(0, 0, 3, 4).VecteurColineaire(10.0), 6, 8);
    ExpectPoint(CVecteur(0, 0, -3, -4).VecteurColineaire(10.0), -6, -8);
    ExpectPoint(CVecteur(0, 0, 0, -7).VecteurColineaire(2.0), 0, -2);

    // dx/dy = -0.5 makes the usual start singular: the special start still finds it.
    const CPointD n = CVecteur(0, 0, 1, -2).VecteurOrthogonal(1.0);
    ExpectPoint(n, 2 / std::sqrt(5.0), 1 / std::sqrt(5.0));

    // Components below 1e-9 snap to 0, larger ones stay.
    const CPointD s = CVecteur(0, 0, 1, 5e-10).VecteurOrthogonal(1.0);
    EXPECT_EQ(s.x, 0.0);
    EXPECT_NEAR(s.y, 1.0, 1e-15);
    const CPointD t = CVecteur(0, 0, 1, 2e-9).VecteurOrthogonal(1.0);
    EXPECT_NEAR(t.x, -2e-9, 1e-18);

    // Degenerate input gives (0,0) quietly.
    ExpectPoint(CVecteur(2, 2, 2, 2).VecteurOrthogonal(1.0), 0, 0, 0.0);
    ExpectPoint(CVecteur(2, 2, 2, 2).VecteurColineaire(1.0), 0, 0, 0.0);
    // The collinear construction has no special start: dx = 2 dy is singular there.
    ExpectPoint(CVecteur(0, 0, 2, 1).VecteurColineaire(1.0), 0, 0, 0.0);
}

TEST(CVecteur, ProjectionAndDistances)
{
    const CVecteur v(0, 0, 10, 0);
    ExpectPoint(v.PointProjeteOrtho(CPointD(3, 5), 0), 3, 0);
    ExpectPoint(v.PointProjeteOrtho(CPointD(15, 2), 0), 15, 0); // not clipped
    ExpectPoint(CVecteur(0, 0, 2, 2).PointProjeteOrtho(CPointD(0, 2), 1), 1, 1);

    const CVecteur haut(0, 5e-10, 1, 5e-10);
    EXPECT_EQ(haut.PointProjeteOrtho(CPointD(0.3, 7), 1).y, 0.0);
    EXPECT_NEAR(haut.PointProjeteOrtho(CPointD(0.3, 7), 0).y, 5e-10, 1e-20);
    ExpectPoint(CVecteur(1, 1, 1, 1).PointProjeteOrtho(CPointD(3, 3), 1), 0, 0, 0.0);

    EXPECT_NEAR(v.DistanceProjete(CPointD(4, -3)), 3.0, 1e-12);
    EXPECT_NEAR(v.DistanceProjete(2.0, 90.0), 2.0, 1e-12);
    EXPECT_NEAR(v.DistanceProjete(2.0, 30.0), 1.0, 1e-12);
    EXPECT_EQ(v.DistanceProjete(2.0, 180.0), 0.0);
}

TEST(CVecteur, SidewaysMoves)
{
    CVecteur v(0, 0, 10, 0);
    v.Decalage(2.0);
    ExpectVecteur(v, 0, 2, 10, 2);
    v.s_coord_vect(0, 0, 10, 0);
    v.Decalage(-2.0);
    ExpectVecteur(v, 0, -2, 10, -2);

    const CVecteur base(0, 0, 10, 0);
    ExpectVecteur(base.VecteurParallele(2.0, CPointD(5, -7)), 0, -2, 10, -2);
    ExpectVecteur(base.VecteurParallele(2.0, CPointD(5, 7)), 0, 2, 10, 2);
    ExpectVecteur(base.VecteurParallele(-2.0, CPointD(5, 7)), 0, 2, 10, 2);

    const double h = std::sqrt(0.5);
    CVecteur c(0, 0, 10, 0);
    c.DecalageCorde(CPointD(5, 5), 1.0, 1);
    ExpectVecteur(c, h, h, 10 - h, h);
    CVecteur d(0, 0, 10, 0);
    d.DecalageCorde(CPointD(5, 5), 1.0, -1);
    ExpectVecteur(d, -h, -h, 10 + h, -h);
}

TEST(CVecteur, PointOnSegmentTolerances)
{
    const CVecteur v(0, 0, 1, 0);
    EXPECT_EQ(v.AppartientAVecteur(CPointD(0.5, 0), 0.0), 1);
    EXPECT_EQ(v.AppartientAVecteur(CPointD(0.5, 0.9e-10), 0.0), 1);
    EXPECT_EQ(v.AppartientAVecteur(CPointD(0.5, 1e-10), 0.0), 0);
    EXPECT_EQ(v.AppartientAVecteur(CPointD(0.5, 1e-4), 0.0, 2e-4), 1);
    // Beyond an end: only within tolLong (inclusive).
    EXPECT_EQ(v.AppartientAVecteur(CPointD(1.5, 0), 0.5), 1);
    EXPECT_EQ(v.AppartientAVecteur(CPointD(1.5, 0), 0.49), 0);
    EXPECT_EQ(v.AppartientAVecteur(CPointD(-0.5, 0), 0.5), 1);
    EXPECT_EQ(v.AppartientAVecteur(CPointD(1 + 0.5e-10, 0), 0.0), 1);
}

TEST(CVecteur, IntersectionOfTheLines)
{
    int code = 99;
    ExpectPoint(CVecteur(0, 0, 2, 2).Intersection(CVecteur(0, 2, 2, 0), 1e-10, &code), 1, 1);
    EXPECT_EQ(code, 3);
    ExpectPoint(CVecteur(0, 0, 0.5, 0.5).Intersection(CVecteur(0, 2, 2, 0), 1e-10, &code), 1, 1);
    EXPECT_EQ(code, 2);
    ExpectPoint(CVecteur(0, 0, 1, 0).Intersection(CVecteur(0, 1, 1, 1), 1e-10, &code), 0, 0, 0.0);
    EXPECT_EQ(code, 0);
    ExpectPoint(CVecteur(0, 0, 2, 2).Intersection(CVecteur(0, 2, 2, 0), 1e-10, nullptr), 1, 1);
}

TEST(CVecteur, OverlapOfCollinearSegments)
{
    const CVecteur v(0, 0, 10, 0);
    CVecteur r;
    EXPECT_EQ(v.VecteurIntersection(CVecteur(10, 0, 20, 0), &r, 0), 0);
    EXPECT_EQ(v.VecteurIntersection(CVecteur(10, 0, 20, 0), &r, 1), 1);
    ExpectVecteur(r, 10, 0, 10, 0);
    // A reversed partner is turned round first.
    EXPECT_EQ(v.VecteurIntersection(CVecteur(15, 0, 5, 0), &r, 0), 1);
    ExpectVecteur(r, 5, 0, 10, 0);
    EXPECT_EQ(v.VecteurIntersection(CVecteur(2, 0, 3, 0), &r, 0), 1);
    ExpectVecteur(r, 2, 0, 3, 0);
    EXPECT_EQ(v.VecteurIntersection(CVecteur(0, 0, 10, 0), &r, 0), 1);
    ExpectVecteur(r, 0, 0, 10, 0);
    EXPECT_EQ(v.VecteurIntersection(CVecteur(11, 0, 20, 0), &r, 1), 0);
    EXPECT_EQ(v.VecteurIntersection(CVecteur(0, 1, 10, 1), &r, 1), 0);
    EXPECT_EQ(v.VecteurIntersection(CVecteur(5, -1, 5, 1), &r, 1), 0);

    // Slightly tilted: refused without an angle tolerance, accepted within 0.01 degree
    // when the on-line tolerance allows the points.
    const CVecteur penche(0, 0.0005, 10, -0.0005);
    EXPECT_EQ(v.VecteurIntersection(penche, &r, 0, 0.0, 1e-10, -1.0), 0);
    EXPECT_EQ(v.VecteurIntersection(penche, &r, 0, 0.01, 0.001, -1.0), 0);
    EXPECT_EQ(v.VecteurIntersection(penche, &r, 0, 0.01, 0.001, 0.01), 1);
    ExpectVecteur(r, 0, 0, 10, 0);
    EXPECT_EQ(v.VecteurIntersection(penche, &r, 0, 0.005, 0.001, 0.01), 0);
}

TEST(CVecteur, UnionOfNearlyCollinearSegments)
{
    const CVecteur v(0, 0, 10, 0);
    CVecteur r;
    EXPECT_EQ(v.VecteurUnion(CVecteur(5, 0.001, 15, 0.001), &r, 0.01), 1);
    ExpectVecteur(r, 0, 0, 15, 0);
    EXPECT_EQ(v.VecteurUnion(CVecteur(15, 0, -5, 0), &r, 0.01), 1);
    ExpectVecteur(r, -5, 0, 15, 0);
    EXPECT_EQ(v.VecteurUnion(CVecteur(2, 0, 3, 0), &r, 0.01), 1);
    ExpectVecteur(r, 0, 0, 10, 0);
    EXPECT_EQ(v.VecteurUnion(CVecteur(-4, 0, 4, 0), &r, 0.01), 1);
    ExpectVecteur(r, -4, 0, 10, 0);
    // Touching end to end, a little off the line.
    EXPECT_EQ(v.VecteurUnion(CVecteur(10, 0.005, 20, 0.005), &r, 0.01), 1);
    ExpectVecteur(r, 0, 0, 20, 0);

    EXPECT_EQ(v.VecteurUnion(CVecteur(20, 0, 30, 0), &r, 0.01), 0);
    // Further from the line than tol.
    EXPECT_EQ(v.VecteurUnion(CVecteur(5, 0.02, 15, 0.02), &r, 0.01), 0);
    // Boxes exactly tol apart are disjoint; so are flat boxes with tol 0.
    EXPECT_EQ(v.VecteurUnion(CVecteur(10.5, 0, 20, 0), &r, 0.5), 0);
    EXPECT_EQ(v.VecteurUnion(CVecteur(5, 0, 15, 0), &r, 0.0), 0);
}

TEST(CVecteur, OperatorsKeepTheirDeliberateSideEffects)
{
    CVecteur a(0, 0, 1, 0);
    const CVecteur b(5, 5, 5, 7);
    const CVecteur c = a + b;
    ExpectVecteur(a, 0, 0, 1, 2, 0.0); // the left operand changed
    ExpectVecteur(c, 0, 0, 1, 2, 0.0);
    const CVecteur d = a - b;
    ExpectVecteur(a, 0, 0, 1, 0, 0.0);
    ExpectVecteur(d, 0, 0, 1, 0, 0.0);

    EXPECT_EQ(CVecteur(0, 0, 2, 3) * CVecteur(1, 1, 5, 0), 8.0 - 3.0);
    EXPECT_EQ(CVecteur(0, 0, 1, 0) ^ CVecteur(0, 0, 0, 1), 1.0);
    EXPECT_EQ(CVecteur(0, 0, 0, 1) ^ CVecteur(0, 0, 1, 0), -1.0);

    EXPECT_TRUE(CVecteur(0, 0, 1, 1) == CVecteur(0.5e-10, 0, 1, 1 - 0.5e-10));
    EXPECT_FALSE(CVecteur(0, 0, 0, 0) == CVecteur(0, 0, 0, 1e-10));
    EXPECT_EQ(CVecteur(0, 0, 1, 1).Identique(CVecteur(0, 0.5, 1, 1.5), 0.5), 1);
    EXPECT_EQ(CVecteur(0, 0, 1, 1).Identique(CVecteur(0, 0.5, 1, 1.5), 0.4999), 0);
}

TEST(CVecteur, SerializeWritesFourDoublesOrgFirst)
{
    CVecteur v(1, 2, 3, 4);
    const std::vector<BYTE> octets = Store([&](CArchive& ar) { v.Serialize(ar); });
    EXPECT_EQ(octets, Bytes().f64(1).f64(2).f64(3).f64(4).b);
    CVecteur w;
    EXPECT_EQ(Load(octets, [&](CArchive& ar) { w.Serialize(ar); }), 0u);
    ExpectVecteur(w, 1, 2, 3, 4, 0.0);
    EXPECT_TRUE(prefa_test::Throws<CArchiveException>([&] {
        Load(Bytes().f64(1).f64(2).f64(3).b, [&](CArchive& ar) { w.Serialize(ar); });
    }));
}
