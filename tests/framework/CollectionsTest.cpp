#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace prefa_test;

TEST(CArray, IndexFaultsRaiseInvalidArgument)
{
    CArray<double, double> a;
    a.Add(1.0);
    a.Add(2.0);
    a.InsertAt(1, 1.5);
    ASSERT_EQ(3, a.GetSize());
    EXPECT_EQ(1.5, a[1]);
    EXPECT_EQ(2, a.GetUpperBound());
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)a[3]; }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)a.GetAt(-1); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { a.RemoveAt(2, 2); }));
    a.SetAtGrow(5, 9.0);
    EXPECT_EQ(6, a.GetSize());
    EXPECT_EQ(0.0, a[4]);
    a.RemoveAt(0, 2);
    EXPECT_EQ(2.0, a[0]);
    CArray<double, double> b(a);
    a.RemoveAll();
    EXPECT_EQ(4, b.GetSize());
}

TEST(CList, PositionsInsertionAndRemoval)
{
    CList<int, int> l;
    POSITION p2 = l.AddTail(2);
    l.AddHead(1);
    l.AddTail(4);
    l.InsertAfter(p2, 3);
    l.InsertBefore(l.GetHeadPosition(), 0);
    std::vector<int> seen;
    for (POSITION p = l.GetHeadPosition(); p;)
        seen.push_back(l.GetNext(p));
    EXPECT_EQ((std::vector<int>{0, 1, 2, 3, 4}), seen);
    seen.clear();
    for (POSITION p = l.GetTailPosition(); p;)
        seen.push_back(l.GetPrev(p));
    EXPECT_EQ((std::vector<int>{4, 3, 2, 1, 0}), seen);

    l.RemoveAt(p2);
    EXPECT_EQ(4, l.GetCount());
    EXPECT_EQ(nullptr, l.Find(2));
    EXPECT_EQ(3, l.GetAt(l.FindIndex(2)));
    EXPECT_EQ(nullptr, l.FindIndex(4));
    EXPECT_EQ(0, l.RemoveHead());
    EXPECT_EQ(4, l.RemoveTail());
    EXPECT_EQ(1, l.GetHead());
    EXPECT_EQ(3, l.GetTail());
    POSITION none = nullptr;
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { l.GetNext(none); }));
    l.RemoveAll();
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { l.GetHead(); }));
}

TEST(CTypedPtrList, HandsOutTypedPointersWithoutOwningThem)
{
    double a = 1, b = 2;
    CTypedPtrList<CPtrList, double*> l;
    l.AddTail(&a);
    l.AddTail(&b);
    POSITION p = l.GetHeadPosition();
    EXPECT_EQ(&a, l.GetNext(p));
    EXPECT_EQ(&b, l.GetNext(p));
    EXPECT_EQ(nullptr, p);
    *l.GetTail() = 5;
    EXPECT_EQ(5, b);
}
