#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{
class CBase : public CObject
{
    DECLARE_SERIAL(CBase)
public:
    int value = 7;
};

class CDerived : public CBase
{
    DECLARE_SERIAL(CDerived)
};

class CNotCreatable : public CObject
{
    DECLARE_DYNAMIC(CNotCreatable)
};
} // namespace

IMPLEMENT_SERIAL(CBase, CObject, 1)
IMPLEMENT_SERIAL(CDerived, CBase, 1)
IMPLEMENT_DYNAMIC(CNotCreatable, CObject)

TEST(CObject, RunTimeClassesCreateAndTestKinds)
{
    std::unique_ptr<CObject> o(CRuntimeClass::CreateObject("CDerived"));
    ASSERT_NE(nullptr, o);
    EXPECT_STREQ("CDerived", o->GetRuntimeClass()->m_lpszClassName);
    EXPECT_TRUE(o->IsKindOf(RUNTIME_CLASS(CBase)));
    EXPECT_TRUE(o->IsKindOf(RUNTIME_CLASS(CObject)));
    EXPECT_FALSE(o->IsKindOf(RUNTIME_CLASS(CNotCreatable)));
    EXPECT_TRUE(o->IsSerializable());
    EXPECT_EQ(7, static_cast<CBase*>(o.get())->value);

    EXPECT_EQ(nullptr, RUNTIME_CLASS(CNotCreatable)->CreateObject());
    CNotCreatable n;
    EXPECT_FALSE(n.IsSerializable());
    EXPECT_EQ(nullptr, CRuntimeClass::CreateObject("NoSuchClass"));
    EXPECT_EQ(RUNTIME_CLASS(CBase), CRuntimeClass::FromName("CBase"));
}
