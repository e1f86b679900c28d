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

TEST(CStringArray, EditsAndSerialisesAsCountThenTexts)
{
    CStringArray a;
    a.Add(L"un");
    a.Add(CString(L"trois"));
    a.InsertAt(1, L"deux");
    CStringArray b;
    b.Add(L"z\u00E9ro");
    a.InsertAt(0, &b);
    a.InsertAt(4, &a); // an array into itself: the texts as they were
    ASSERT_EQ(8, a.GetSize());
    const CString expected[] = {L"z\u00E9ro", L"un", L"deux", L"trois", L"z\u00E9ro", L"un", L"deux", L"trois"};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(expected[i], a[i]) << i;
    a.RemoveAt(4, 4);

    auto bytes = Store([&](CArchive& ar) { a.Serialize(ar); });
    EXPECT_EQ(Bytes().u16(4).text(L"z\u00E9ro").text(L"un").text(L"deux").text(L"trois").b, bytes) << Hex(bytes);
    CStringArray back;
    back.Add(L"replaced");
    Load(bytes, [&](CArchive& ar) { back.Serialize(ar); });
    ASSERT_EQ(4, back.GetSize());
    EXPECT_EQ(CString(L"trois"), back[3]);

    // As an object the array carries its class tag; a count the file cannot hold is
    // refused before anything is allocated.
    auto tagged = Store([&](CArchive& ar) { ar << &back; });
    Bytes t;
    t.u16(0xFFFF).u16(0).u16(12).raw("CStringArray", 12);
    EXPECT_EQ(t.b, std::vector<BYTE>(tagged.begin(), tagged.begin() + (long)t.size()));
    EXPECT_EQ(CArchiveException::endOfFile, ArchiveCause([&] {
                  Load(Bytes().u16(0xFFFF).u32(0x40000000).u8(0).b, [&](CArchive& ar) { back.Serialize(ar); });
              }));
}

TEST(CStringList, SerialisesAsCountThenTextsInOrder)
{
    CStringList l;
    l.AddTail(L"b");
    l.AddHead(CString(L"a"));
    l.AddTail(L"c");
    EXPECT_NE(nullptr, l.Find(L"b"));
    auto bytes = Store([&](CArchive& ar) { l.Serialize(ar); });
    EXPECT_EQ(Bytes().u16(3).text(L"a").text(L"b").text(L"c").b, bytes) << Hex(bytes);
    CStringList back;
    back.AddTail(L"kept");
    Load(bytes, [&](CArchive& ar) { back.Serialize(ar); });
    std::vector<CString> seen;
    for (POSITION p = back.GetHeadPosition(); p;)
        seen.push_back(back.GetNext(p));
    EXPECT_EQ((std::vector<CString>{L"kept", L"a", L"b", L"c"}), seen);
    // A count the file cannot hold is refused before any text is added.
    EXPECT_EQ(CArchiveException::endOfFile,
              ArchiveCause([&] { Load(Bytes().u16(50).text(L"x").b, [&](CArchive& ar) { back.Serialize(ar); }); }));
    EXPECT_EQ(4, back.GetCount());
}
