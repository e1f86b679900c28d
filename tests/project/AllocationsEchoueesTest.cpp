// Copies and loads of the drawing record that run out of memory half-way free what
// they made.
#include "project/CInfoPlan.h"
#include "support/AllocationEchouee.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace prefa_test;

TEST(AllocationsEchouees, CopiesAndLoadsOfTheDrawingRecordLeakNoRevision)
{
    CInfoPlan p;
    for (char indice : {'A', 'B', 'C'})
    {
        auto* m = new CInfoModifications;
        m->Indice = indice;
        m->Texte = L"révision";
        p.Modifications.AddTail(m);
    }
    p.Textes.AddTail(CString(L"t"));
    const std::vector<BYTE> octets = Store([&](CArchive& ar) { p.Serialize(ar, L"AFF1", 1); });

    EXPECT_EQ(0, FuiteSousEchecs([&] { CInfoPlan copie(p); }));
    EXPECT_EQ(0, FuiteSousEchecs([&] {
        CInfoPlan q;
        Load(octets, [&](CArchive& ar) { q.Serialize(ar, L"AFF1", 1); });
    }));
}
