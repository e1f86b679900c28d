#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <memory>

using namespace prefa_test;

namespace
{
// A node pointing at another object (or itself, or nothing).
class CTagNode : public CObject
{
    DECLARE_SERIAL(CTagNode)
public:
    LONG m_nValue = 0;
    CObject* m_pOther = nullptr;
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring())
            ar << m_nValue << m_pOther;
        else
            ar >> m_nValue >> m_pOther;
    }
};

class CTagLeaf : public CObject
{
    DECLARE_SERIAL(CTagLeaf)
public:
    BYTE m_by = 0;
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring())
            ar << m_by;
        else
            ar >> m_by;
    }
};

// A class whose stream schema may differ from its own.
class CTagVersioned : public CObject
{
    DECLARE_SERIAL(CTagVersioned)
public:
    UINT m_nSchemaRead = 0;
    void Serialize(CArchive& ar) override
    {
        if (ar.IsLoading())
            m_nSchemaRead = ar.GetObjectSchema();
    }
};

// A chain that owns the next link, to see a failed load released.
class CTagChain : public CObject
{
    DECLARE_SERIAL(CTagChain)
public:
    CTagChain* m_pNext = nullptr;
    ~CTagChain() override { delete m_pNext; }
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring())
            ar << m_pNext;
        else
            ar >> m_pNext;
    }
};
} // namespace

IMPLEMENT_SERIAL(CTagNode, CObject, 2)
IMPLEMENT_SERIAL(CTagLeaf, CObject, 1)
IMPLEMENT_SERIAL(CTagVersioned, CObject, VERSIONABLE_SCHEMA | 3)
IMPLEMENT_SERIAL(CTagChain, CObject, 1)

namespace
{
Bytes& NewClass(Bytes& b, WORD wSchema, const char* name)
{
    return b.u16(0xFFFF).u16(wSchema).u16((WORD)std::strlen(name)).raw(name, std::strlen(name));
}

// Loads one object pointer and hands it over, or the archive exception's cause.
int LoadObject(const std::vector<BYTE>& bytes, std::unique_ptr<CObject>* pResult,
               const CRuntimeClass* pClass = nullptr)
{
    return ArchiveCause([&] {
        Load(bytes, [&](CArchive& ar) { pResult->reset(ar.ReadObject(pClass)); });
    });
}
} // namespace

TEST(CArchiveObjects, GraphsUseClassTagsIndicesAndBackReferences)
{
    // a -> b -> a (a cycle), a null pointer, a again, then two leaves of a second class.
    CTagNode a, b;
    CTagLeaf x, y;
    a.m_nValue = 5;
    a.m_pOther = &b;
    b.m_nValue = 6;
    b.m_pOther = &a;
    x.m_by = 0xAA;
    y.m_by = 0xBB;
    auto bytes = Store([&](CArchive& ar) {
        ar << &a << (CObject*)nullptr << &a << &x << &y << &b;
    });

    // Indices: 1 CTagNode, 2 a, 3 b, 4 CTagLeaf, 5 x, 6 y.
    Bytes e;
    NewClass(e, 2, "CTagNode").i32(5); // a, then its member b
    e.u16(0x8001).i32(6);             // b: a known class, then its member a
    e.u16(0x0002);                    // a again
    e.u16(0x0000);                    // null
    e.u16(0x0002);                    // a
    NewClass(e, 1, "CTagLeaf").u8(0xAA);
    e.u16(0x8004).u8(0xBB);
    e.u16(0x0003); // b
    ASSERT_EQ(e.b, bytes) << Hex(bytes);

    Load(bytes, [&](CArchive& ar) {
        CTagNode* pA = nullptr;
        CObject *pNull = &a, *pA2 = nullptr, *pB2 = nullptr;
        CTagLeaf *pX = nullptr, *pY = nullptr;
        ar >> pA >> pNull >> pA2 >> pX >> pY >> pB2;
        ASSERT_NE(nullptr, pA);
        std::unique_ptr<CObject> own[] = {std::unique_ptr<CObject>(pA), std::unique_ptr<CObject>(pA->m_pOther),
                                          std::unique_ptr<CObject>(pX), std::unique_ptr<CObject>(pY)};
        EXPECT_EQ(5, pA->m_nValue);
        CTagNode* pB = dynamic_cast<CTagNode*>(pA->m_pOther);
        ASSERT_NE(nullptr, pB);
        EXPECT_EQ(6, pB->m_nValue);
        EXPECT_EQ(pA, pB->m_pOther);
        EXPECT_EQ(nullptr, pNull);
        EXPECT_EQ(pA, pA2);
        EXPECT_EQ(pB, pB2);
        EXPECT_EQ(0xAA, pX->m_by);
        EXPECT_EQ(0xBB, pY->m_by);
        EXPECT_NE(pX, pY);
    });
}

TEST(CArchiveObjects, IndicesPast0x7FFEUseTheBigForm)
{
    // 1 is the class, 2 to 0x8001 the leaves: the last short index is 0x7FFE.
    const int nLeaves = 0x8000;
    std::vector<CTagLeaf> leaves(nLeaves);
    CTagNode node;
    auto bytes = Store([&](CArchive& ar) {
        for (CTagLeaf& l : leaves)
            ar << &l;
        ar << &leaves[0x7FFE - 2] << &leaves[0x7FFF - 2] << &leaves[nLeaves - 1];
        ar << &node;                        // class 0x8002, object 0x8003
        CTagNode second;
        ar << &second;                      // class reference in the big form
    });
    // Each leaf after the first is a class reference and one byte.
    const std::size_t leafBytes = 2 + 2 + 2 + 8 + 1 + (nLeaves - 1) * 3;
    Bytes tail;
    tail.u16(0x7FFE);                         // short form up to 0x7FFE
    tail.u16(0x7FFF).u32(0x7FFF);              // big form from 0x7FFF
    tail.u16(0x7FFF).u32(0x8001);
    NewClass(tail, 2, "CTagNode").i32(0).u16(0);
    tail.u16(0x7FFF).u32(0x80008002u).i32(0).u16(0);
    ASSERT_EQ(leafBytes + tail.size(), bytes.size());
    EXPECT_EQ(tail.b, std::vector<BYTE>(bytes.begin() + (long)leafBytes, bytes.end())) << Hex(tail.b);

    Load(bytes, [&](CArchive& ar) {
        std::vector<std::unique_ptr<CObject>> loaded;
        for (int i = 0; i < nLeaves; ++i)
            loaded.emplace_back(ar.ReadObject(RUNTIME_CLASS(CTagLeaf)));
        CObject *p1, *p2, *p3;
        ar >> p1 >> p2 >> p3;
        EXPECT_EQ(loaded[0x7FFE - 2].get(), p1);
        EXPECT_EQ(loaded[0x7FFF - 2].get(), p2);
        EXPECT_EQ(loaded[nLeaves - 1].get(), p3);
        std::unique_ptr<CObject> n1(ar.ReadObject(nullptr)), n2(ar.ReadObject(nullptr));
        EXPECT_TRUE(n2->IsKindOf(RUNTIME_CLASS(CTagNode)));
        EXPECT_EQ(0u, ar.GetBytesRemaining());
    });
}

TEST(CArchiveObjects, SchemasAreCheckedUnlessVersionable)
{
    std::unique_ptr<CObject> o;
    Bytes stale;
    NewClass(stale, 1, "CTagNode").i32(0).u16(0);
    EXPECT_EQ(CArchiveException::badSchema, LoadObject(stale.b, &o));

    // A versionable class loads any schema and tells it to Serialize; the stream
    // carries the schema without the flag.
    CTagVersioned v;
    auto bytes = Store([&](CArchive& ar) { ar << &v; });
    Bytes expected;
    NewClass(expected, 3, "CTagVersioned");
    EXPECT_EQ(expected.b, bytes);
    Bytes older;
    NewClass(older, 1, "CTagVersioned").u16(0x8001);
    Load(older.b, [&](CArchive& ar) {
        std::unique_ptr<CObject> first(ar.ReadObject(nullptr)), second(ar.ReadObject(nullptr));
        EXPECT_EQ(1u, static_cast<CTagVersioned*>(first.get())->m_nSchemaRead);
        EXPECT_EQ(1u, static_cast<CTagVersioned*>(second.get())->m_nSchemaRead);
        EXPECT_EQ((UINT)-1, ar.GetObjectSchema());
    });
}

TEST(CArchiveObjects, HostileStreamsRaiseTheArchiveExceptionWithoutLeaking)
{
    std::unique_ptr<CObject> o;
    Bytes unknown, dynamicOnly, longName, emptyName;
    NewClass(unknown, 1, "CNoSuchClass");
    NewClass(dynamicOnly, 0xFFFF, "CMemFile"); // registered, but not serialisable
    NewClass(longName, 1, std::string(64, 'C').c_str());
    NewClass(emptyName, 1, "");
    for (const Bytes* b : {&unknown, &dynamicOnly, &longName, &emptyName})
        EXPECT_EQ(CArchiveException::badClass, LoadObject(b->b, &o)) << Hex(b->b);

    Bytes node;
    NewClass(node, 2, "CTagNode").i32(1);
    struct Case
    {
        const char* what;
        std::vector<BYTE> bytes;
    } cases[] = {
        {"object index not met yet", Bytes().u16(0x0001).b},
        {"class index 0", Bytes().u16(0x8000).b},
        {"class index not met yet", Bytes().u16(0x8001).b},
        {"big object index not met yet", Bytes().u16(0x7FFF).u32(0x00010000).b},
        {"big class index not met yet", Bytes().u16(0x7FFF).u32(0x80010000u).b},
        {"member naming its class as an object", Bytes(node).u16(0x0001).b},
        {"member naming an object as a class", Bytes(node).u16(0x8002).b},
    };
    for (const Case& c : cases)
        EXPECT_EQ(CArchiveException::badIndex, LoadObject(c.bytes, &o)) << c.what;

    // The object is not of the kind asked for, new or met before.
    Bytes leaf;
    NewClass(leaf, 1, "CTagLeaf").u8(1);
    EXPECT_EQ(CArchiveException::badClass, LoadObject(leaf.b, &o, RUNTIME_CLASS(CTagNode)));
    Load(Bytes(leaf).u16(0x0002).b, [&](CArchive& ar) {
        std::unique_ptr<CObject> first(ar.ReadObject(nullptr));
        CTagNode* p = nullptr;
        EXPECT_EQ(CArchiveException::badClass, ArchiveCause([&] { ar >> p; }));
    });

    // Every truncation of a graph.
    CTagNode a, b;
    a.m_pOther = &b;
    b.m_pOther = &a;
    auto whole = Store([&](CArchive& ar) { ar << &a; });
    for (std::size_t cut = 0; cut < whole.size(); ++cut)
        EXPECT_EQ(CArchiveException::endOfFile,
                  LoadObject(std::vector<BYTE>(whole.begin(), whole.begin() + (long)cut), &o))
            << "cut at " << cut;

    // A chain nested past the limit fails cleanly; one at the limit loads.
    auto chain = [](int n) {
        Bytes c;
        NewClass(c, 1, "CTagChain");
        for (int i = 1; i < n; ++i)
            c.u16(0x8001);
        return c.u16(0x0000).b;
    };
    EXPECT_EQ(-1, LoadObject(chain(CArchive::kMaxObjectDepth), &o));
    EXPECT_EQ(CArchiveException::badIndex, LoadObject(chain(CArchive::kMaxObjectDepth + 1), &o));
}

TEST(CArchiveObjects, ObjectsThatCannotBeStoredAreRefused)
{
    // A class without a schema, and a chain deeper than a load would accept.
    CMemFile notSerial;
    std::vector<BYTE> bytes;
    EXPECT_EQ(CArchiveException::badClass, ArchiveCause([&] { bytes = Store([&](CArchive& ar) { ar << &notSerial; }); }));

    CTagChain head;
    CTagChain* p = &head;
    for (int i = 0; i < CArchive::kMaxObjectDepth; ++i)
        p = p->m_pNext = new CTagChain;
    EXPECT_EQ(CArchiveException::badIndex, ArchiveCause([&] { Store([&](CArchive& ar) { ar << &head; }); }));
}
