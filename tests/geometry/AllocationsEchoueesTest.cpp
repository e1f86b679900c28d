// Copies and owning insertions that run out of memory half-way free what they made.
#include "PolygoneTestUtil.h"
#include "support/AllocationEchouee.h"

#include <gtest/gtest.h>

using namespace prefa_test;

TEST(AllocationsEchouees, CopiesAndInsertionsOfContoursLeakNothing)
{
    const CPolygone carre = Poly({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    CListePolygone deux;
    deux.AddTail(new CPolygone(carre));
    deux.AddTail(new CPolygone(carre));

    // A copy constructor that throws does not run its destructor: the points and
    // polygons copied so far must go with the exception.
    EXPECT_EQ(0, FuiteSousEchecs([&] { CPolygone copie(carre); }));
    EXPECT_EQ(0, FuiteSousEchecs([&] { CListePolygone copie(deux); }));
    EXPECT_EQ(0, FuiteSousEchecs([&] { CListePolygone l(carre); }));
    // An insertion whose node cannot be made deletes the object handed over.
    EXPECT_EQ(0, FuiteSousEchecs([&] {
        CPolygone p;
        p.AddTail(0.0, 0.0);
        p.AddHead(new CPointD(1, 1));
        p.InsertAfter(p.GetHeadPosition(), new CPointD(2, 2));
        p.InsertBefore(p.GetTailPosition(), new CPointD(3, 3));
    }));
    EXPECT_EQ(0, FuiteSousEchecs([&] {
        CListePolygone l;
        l.AddTail(new CPolygone(carre));
        l.AddHead(new CPolygone(carre));
        l.InsertBefore(l.GetHeadPosition(), new CPolygone(carre));
    }));
    // The cut of a figure-eight builds its pieces aside before handing them over.
    // (Offsets are left out: the clipping library itself leaks when memory runs out.)
    const CPolygone huit = Poly({{0, 0}, {2, 2}, {2, 0}, {0, 2}});
    EXPECT_EQ(0, FuiteSousEchecs([&] {
        CListePolygone l;
        l.RendRegulier(huit, 0);
    }));
}
