#include "geometry/CRepere.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using prefa_test::Bytes;
using prefa_test::Load;
using prefa_test::Store;

TEST(CRepere, ConversionsThroughTheFrame)
{
    const CRepere r(CPointD(10, 20), 0.0, 0.0, CVecteur(), 2.0);
    const CPointD p(CPoint(4, 6), r);
    EXPECT_EQ(p.x, 12.0);
    EXPECT_EQ(p.y, 23.0);
    const CPoint lp = CPointD(12, 23).PCtoLP(r);
    EXPECT_EQ(lp.x, 4);
    EXPECT_EQ(lp.y, 6);

    // Both conversions turn the same way: with 90 degrees the way back is not the
    // inverse. The plane point (11, 20) goes to (0, 2), which comes back as (9, 20).
    const CRepere q(CPointD(10, 20), 90.0, 90.0, CVecteur(), 2.0);
    const CPoint d = CPointD(11, 20).PCtoLP(q);
    EXPECT_EQ(d.x, 0);
    EXPECT_EQ(d.y, 2);
    CPointD retour;
    retour.LPtoPC(d, q);
    EXPECT_EQ(retour.x, 9.0); // exact: rounded to 9 decimals
    EXPECT_EQ(retour.y, 20.0);

    // Separate axis rotations shear.
    const CRepere s(CPointD(0, 0), 0.0, 90.0, CVecteur(), 1.0);
    const CPoint t = CPointD(3, 1).PCtoLP(s);
    EXPECT_EQ(t.x, 3);
    EXPECT_EQ(t.y, 3);

    // The rounding to 9 decimals also applies Round's zero band.
    const CRepere z(CPointD(5e-8, 2e-9 + 1.0), 0.0, 0.0, CVecteur(), 1.0);
    CPointD pz;
    pz.LPtoPC(CPoint(0, 0), z);
    EXPECT_EQ(pz.x, 0.0);
    EXPECT_EQ(pz.y, 1.000000002);
}

TEST(CRepere, SerializeNineDoublesInFieldOrder)
{
    CRepere r(CPointD(4, 5), 1.5, 2.5, CVecteur(6, 7, 8, 9), 3.5);
    const std::vector<BYTE> octets = Store([&](CArchive& ar) { r.Serialize(ar); });
    EXPECT_EQ(octets,
              Bytes().f64(1.5).f64(2.5).f64(3.5).f64(4).f64(5).f64(6).f64(7).f64(8).f64(9).b);

    CRepere l;
    EXPECT_EQ(Load(octets, [&](CArchive& ar) { l.Serialize(ar); }), 0u);
    EXPECT_EQ(Store([&](CArchive& ar) { l.Serialize(ar); }), octets);

    std::vector<BYTE> court(octets.begin(), octets.begin() + 64);
    EXPECT_TRUE(prefa_test::Throws<CArchiveException>(
        [&] { Load(court, [&](CArchive& ar) { l.Serialize(ar); }); }));

    std::unique_ptr<CObject> o(CRuntimeClass::CreateObject("CRepere"));
    ASSERT_TRUE(o);
    EXPECT_TRUE(o->IsKindOf(RUNTIME_CLASS(CRepere)));
}
