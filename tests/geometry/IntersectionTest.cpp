#include "geometry/Routines.h"

#include <gtest/gtest.h>

TEST(Donne_Intersection, CodesTellWhichSegmentsHoldTheCrossing)
{
    double x = 0, y = 0;
    EXPECT_EQ(Donne_Intersection(0, 0, 2, 2, 0, 2, 2, 0, &x, &y, 1e-10), 3);
    EXPECT_NEAR(x, 1.0, 1e-12);
    EXPECT_NEAR(y, 1.0, 1e-12);
    // An end point counts.
    EXPECT_EQ(Donne_Intersection(0, 0, 1, 1, 0, 2, 2, 0, &x, &y, 1e-10), 3);
    EXPECT_NEAR(x, 1.0, 1e-12);
    EXPECT_EQ(Donne_Intersection(0, 0, 0.5, 0.5, 0, 2, 2, 0, &x, &y, 1e-10), 2);
    EXPECT_NEAR(x, 1.0, 1e-12);
    EXPECT_NEAR(y, 1.0, 1e-12);
    EXPECT_EQ(Donne_Intersection(0, 2, 2, 0, 0, 0, 0.5, 0.5, &x, &y, 1e-10), 1);
    EXPECT_EQ(Donne_Intersection(0, 0, 0.5, 0.5, 3, 0, 2.5, 0.5, &x, &y, 1e-10), -1);
    EXPECT_NEAR(x, 1.5, 1e-12);
    EXPECT_NEAR(y, 1.5, 1e-12);
}

TEST(Donne_Intersection, ToleranceAndParallelism)
{
    double x = 0, y = 0;
    // The crossing (1,1) is 0.0014 beyond the end of segment 1.
    EXPECT_EQ(Donne_Intersection(0, 0, 0.999, 0.999, 0, 2, 2, 0, &x, &y, 0.01), 3);
    EXPECT_EQ(Donne_Intersection(0, 0, 0.999, 0.999, 0, 2, 2, 0, &x, &y, 0.001), 2);

    // Parallel when the cross product of the directions is below 1e-10.
    x = y = 42.0;
    EXPECT_EQ(Donne_Intersection(0, 0, 1, 0, 0, 1e-9, 1, 1e-9 + 0.9e-10, &x, &y, 1e-10), 0);
    EXPECT_EQ(x, 42.0);
    EXPECT_EQ(Donne_Intersection(0, 0, 1, 0, 0, 1e-9, 1, 1e-9 + 1.1e-10, &x, &y, 1e-10), -1);
    EXPECT_NEAR(x, -1e-9 / 1.1e-10, 1e-6);
    EXPECT_NEAR(y, 0.0, 1e-15);
    // A zero-length segment is parallel to anything.
    EXPECT_EQ(Donne_Intersection(0, 0, 1, 1, 3, 3, 3, 3, &x, &y, 1e-10), 0);
}

TEST(Donne_Intersection, LongConstructionLinesConverge)
{
    double x = 0, y = 0;
    EXPECT_EQ(Donne_Intersection(0.3, 0.1, 0.7, 0.9, 1e10, 0.5, -1e10, 0.5, &x, &y, 1e-8), 3);
    EXPECT_NEAR(x, 0.5, 1e-12);
    EXPECT_NEAR(y, 0.5, 1e-15);
    EXPECT_EQ(Donne_Intersection(0.3, 0.1, 0.7, 0.9, 0.4, -1e10, 0.4, 1e10, &x, &y, 1e-8), 3);
    EXPECT_NEAR(x, 0.4, 1e-15);
    EXPECT_NEAR(y, 0.3, 1e-12);
}

TEST(Projection_Point_Sur_Droite, FootAndWhetherItFallsOnTheSegment)
{
    double xp = 0, yp = 0;
    EXPECT_NE(Projection_Point_Sur_Droite(0, 0, 4, 0, 1, 3, &xp, &yp), 0);
    EXPECT_NEAR(xp, 1.0, 1e-12);
    EXPECT_NEAR(yp, 0.0, 1e-12);
    // The foot is stored even when it lies beyond the segment.
    EXPECT_EQ(Projection_Point_Sur_Droite(0, 0, 4, 0, 5, -2, &xp, &yp), 0);
    EXPECT_NEAR(xp, 5.0, 1e-12);
    EXPECT_NE(Projection_Point_Sur_Droite(0, 0, 4, 4, 0, 4, &xp, &yp), 0);
    EXPECT_NEAR(xp, 2.0, 1e-12);
    EXPECT_NEAR(yp, 2.0, 1e-12);
    // Ends are inclusive within 1e-7.
    EXPECT_NE(Projection_Point_Sur_Droite(0, 0, 4, 0, 4 + 0.5e-7, 1, &xp, &yp), 0);
    EXPECT_EQ(Projection_Point_Sur_Droite(0, 0, 4, 0, 4 + 2e-7, 1, &xp, &yp), 0);
}

TEST(Appartient_Voisinage, EndDiscsAndBandAlongTheSegment)
{
    // Exact ends are in whatever the tolerance.
    EXPECT_EQ(Appartient_Voisinage(1, 1, 1, 1, 3, 3, 0.0), 1);
    EXPECT_EQ(Appartient_Voisinage(3, 3, 1, 1, 3, 3, 0.0), 1);
    // Near an end, outside the box: inside the end disc only.
    EXPECT_EQ(Appartient_Voisinage(0.999, 0.999, 1, 1, 3, 3, 1e-4 * 1e-4), 0);
    EXPECT_EQ(Appartient_Voisinage(0.999, 0.999, 1, 1, 3, 3, 0.01 * 0.01), 1);
    // Beside the middle of a diagonal segment.
    EXPECT_EQ(Appartient_Voisinage(2, 2.001, 1, 1, 3, 3, 0.001 * 0.001), 1);
    EXPECT_EQ(Appartient_Voisinage(2, 2.001, 1, 1, 3, 3, 0.0005 * 0.0005), 0);
    // Beyond the end along the line, outside every disc.
    EXPECT_EQ(Appartient_Voisinage(3.5, 3.5, 1, 1, 3, 3, 0.01), 0);
}

namespace
{

CArray<ptD, ptD> Contour(std::initializer_list<ptD> points)
{
    CArray<ptD, ptD> c;
    for (const ptD& p : points)
        c.Add(p);
    return c;
}

} // namespace

TEST(AppartientAContour, InsideOutsideAndBoundaryEdgeNumbers)
{
    const CArray<ptD, ptD> carre = Contour({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    EXPECT_EQ(AppartientAContour(carre, {1, 0.5}), 2);
    EXPECT_EQ(AppartientAContour(carre, {0.5, 0.5}), 0);
    EXPECT_EQ(AppartientAContour(carre, {2, 0.5}), -1);
    EXPECT_EQ(AppartientAContour(carre, {-1, 0.5}), -1);
    EXPECT_EQ(AppartientAContour(carre, {0.5, 1}), 3);
    EXPECT_EQ(AppartientAContour(carre, {0, 0.5}), 4);
    EXPECT_EQ(AppartientAContour(carre, {0.5, 0}), 1);
    EXPECT_EQ(AppartientAContour(carre, {0, 0}), 1);
    EXPECT_EQ(AppartientAContour(carre, {1, 1}), 2);
    EXPECT_EQ(AppartientAContour(carre, {0.5, 1.5}), -1);
    EXPECT_EQ(AppartientAContour(CArray<ptD, ptD>(), {0, 0}), -1);

    // The same square clockwise: containment does not depend on orientation.
    const CArray<ptD, ptD> horaire = Contour({{0, 0}, {0, 1}, {1, 1}, {1, 0}});
    EXPECT_EQ(AppartientAContour(horaire, {0.5, 0.5}), 0);
    EXPECT_EQ(AppartientAContour(horaire, {1, 0.5}), 3);
}

TEST(AppartientAContour, BoundaryToleranceIsOneEMinusEight)
{
    const CArray<ptD, ptD> carre = Contour({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    EXPECT_EQ(AppartientAContour(carre, {1 + 0.9e-8, 0.5}), 2);
    EXPECT_EQ(AppartientAContour(carre, {1 + 1.1e-8, 0.5}), -1);
    EXPECT_EQ(AppartientAContour(carre, {1 - 1.1e-8, 0.5}), 0);
    EXPECT_EQ(AppartientAContour(carre, {0.5, 0.9e-8}), 1);
    EXPECT_EQ(AppartientAContour(carre, {0.5, 1.1e-8}), 0);
    EXPECT_EQ(AppartientAContour(carre, {0.5, -1.1e-8}), -1);
}

TEST(AppartientAContour, RayThroughVerticesCountsEachOnce)
{
    // A diamond whose left and right vertices sit on the ray of the test points.
    const CArray<ptD, ptD> losange = Contour({{1, 0}, {2, 1}, {1, 2}, {0, 1}});
    EXPECT_EQ(AppartientAContour(losange, {1.5, 1}), 0);
    EXPECT_EQ(AppartientAContour(losange, {0.2, 1}), 0);
    EXPECT_EQ(AppartientAContour(losange, {2.5, 1}), -1);
    EXPECT_EQ(AppartientAContour(losange, {-0.5, 1}), -1);
    EXPECT_EQ(AppartientAContour(losange, {2, 1}), 1);
    EXPECT_EQ(AppartientAContour(losange, {1, 2}), 2);

    // A notch: the ray at y = 1 grazes the inner vertex (1, 1) from above.
    const CArray<ptD, ptD> encoche = Contour({{0, 0}, {2, 0}, {2, 2}, {1, 1}, {0, 2}});
    EXPECT_EQ(AppartientAContour(encoche, {1.5, 1}), 0);
    EXPECT_EQ(AppartientAContour(encoche, {0.5, 1}), 0);
    EXPECT_EQ(AppartientAContour(encoche, {3, 1}), -1);
    EXPECT_EQ(AppartientAContour(encoche, {1, 1.5}), -1);
    EXPECT_EQ(AppartientAContour(encoche, {1, 1}), 3);

    // Just above a left vertex (within 1e-8): the edge ending there from below still
    // counts, the edge leaving it upwards does not.
    const CArray<ptD, ptD> pointe = Contour({{0, 0}, {3, 0}, {3, 2}, {0, 2}, {-1, 1}});
    EXPECT_EQ(AppartientAContour(pointe, {1, 1 + 0.5e-8}), 0);
    EXPECT_EQ(AppartientAContour(pointe, {1, 1 - 0.5e-8}), 0);
    EXPECT_EQ(AppartientAContour(pointe, {-2, 1 + 0.5e-8}), -1);
}
