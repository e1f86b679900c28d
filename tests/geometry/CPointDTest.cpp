#include "geometry/CRepere.h"
#include "geometry/Routines.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using prefa_test::Bytes;
using prefa_test::Load;
using prefa_test::Store;

TEST(CPointD, EqualityIsStrictAtOneEMinusTenAndIdentiqueInclusive)
{
    EXPECT_TRUE(CPointD(1, 2) == CPointD(1 + 0.5e-10, 2));
    EXPECT_TRUE(CPointD(1, 2) == CPointD(1, 2 - 0.5e-10));
    EXPECT_FALSE(CPointD(0, 0) == CPointD(1e-10, 0));
    EXPECT_FALSE(CPointD(0, 0) == CPointD(0, -1e-10));
    EXPECT_TRUE(CPointD(0, 0) != CPointD(0, 1));

    EXPECT_EQ(CPointD(0, 0).Identique(CPointD(3, 4), 5.0), 1);
    EXPECT_EQ(CPointD(0, 0).Identique(CPointD(3, 4), 4.999999), 0);
}

TEST(CPointD, PolarAngleRules)
{
    EXPECT_DOUBLE_EQ(CPointD(0, -1).angle(), 270.0);
    EXPECT_DOUBLE_EQ(CPointD(-1, 0).angle(), 180.0);
    EXPECT_DOUBLE_EQ(CPointD(0, 3).angle(), 90.0);
    EXPECT_DOUBLE_EQ(CPointD(-1, -1).angle(), 225.0);
    EXPECT_DOUBLE_EQ(CPointD(-1, 1).angle(), 135.0);
    EXPECT_DOUBLE_EQ(CPointD(1, -1).angle(), 315.0);
    EXPECT_EQ(CPointD(0, 0).angle(), 0.0);
    // An x below 1e-10 counts as on the y axis.
    EXPECT_DOUBLE_EQ(CPointD(0.9e-10, -2).angle(), 270.0);
    EXPECT_NE(CPointD(1e-9, -1e-9).angle(), 0.0);
    // Within 1e-10 of a full turn the angle is 0; just outside it is not.
    EXPECT_EQ(CPointD(1, -1e-12).angle(), 0.0);
    const double juste = CPointD(1, -1e-9).angle();
    EXPECT_LT(juste, 360.0);
    EXPECT_GT(juste, 359.9999);
}

TEST(CPointD, PlaneTransforms)
{
    CPointD p(2, 3);
    EXPECT_DOUBLE_EQ(p.translation(CPointD(1, 1), CPointD(4, 5)), 5.0);
    EXPECT_EQ(p.x, 5.0);
    EXPECT_EQ(p.y, 7.0);
    EXPECT_DOUBLE_EQ(p.translation(CVecteur(1, 1, 0, 1)), 1.0);
    EXPECT_EQ(p.x, 4.0);
    EXPECT_EQ(p.y, 7.0);

    CPointD r(2, 1);
    EXPECT_DOUBLE_EQ(r.rotation(CPointD(1, 1), 90.0), 1.0);
    EXPECT_NEAR(r.x, 1.0, 1e-15);
    EXPECT_NEAR(r.y, 2.0, 1e-15);

    CPointD e(3, 5);
    e.echelle(CPointD(1, 1), 2.0);
    EXPECT_EQ(e.x, 5.0);
    EXPECT_EQ(e.y, 9.0);

    // In a frame at (1,1) whose x axis points up, the point to its right has y = -1.
    CPointD c(2, 1);
    c.ChangeRepere(90.0, CPointD(1, 1));
    EXPECT_NEAR(c.x, 0.0, 1e-15);
    EXPECT_NEAR(c.y, -1.0, 1e-15);

    CPointD polaire;
    polaire.cartesien(2.0, 30.0);
    EXPECT_NEAR(polaire.x, std::sqrt(3.0), 1e-15);
    EXPECT_DOUBLE_EQ(polaire.y, 1.0);
}

TEST(CPointD, DeviceConversionsThroughScaleAndOffsetFlipY)
{
    const CVecteur decalage(0, 0, 1, 1);
    const CPoint lp = CPointD(1.25, 2).PCtoLP(10.0, decalage);
    EXPECT_EQ(lp.x, 23); // 22.5 rounds away from zero
    EXPECT_EQ(lp.y, -30);
    EXPECT_EQ(CPointD(-3.25, 0).PCtoLP(10.0, decalage).x, -23);
    // Far points clamp to the device range instead of overflowing.
    const CPoint loin = CPointD(1e12, -1e12).PCtoLP(10.0, decalage);
    EXPECT_EQ(loin.x, INT32_MAX);
    EXPECT_EQ(loin.y, INT32_MAX);
    EXPECT_EQ(CPointD(-1e12, 0).PCtoLP(10.0, decalage).x, INT32_MIN);

    CPointD p;
    p.LPtoPC(CPoint(23, -30), 10.0, decalage);
    EXPECT_DOUBLE_EQ(p.x, 1.3);
    EXPECT_DOUBLE_EQ(p.y, 2.0);
}

TEST(CPointD, SerializeWritesXThenYOnly)
{
    CPointD p(1.5, -0.25, true, 7.0, 8.0);
    const std::vector<BYTE> octets = Store([&](CArchive& ar) { p.Serialize(ar); });
    EXPECT_EQ(octets, Bytes().f64(1.5).f64(-0.25).b);

    CPointD q(9, 9, true, 1.0, 2.0);
    EXPECT_EQ(Load(octets, [&](CArchive& ar) { q.Serialize(ar); }), 0u);
    EXPECT_EQ(q.x, 1.5);
    EXPECT_EQ(q.y, -0.25);
    EXPECT_TRUE(q.marque); // not in the stream: untouched

    EXPECT_TRUE(prefa_test::Throws<CArchiveException>([&] {
        Load(Bytes().f64(1.0).u32(0).b, [&](CArchive& ar) { q.Serialize(ar); });
    }));
}
