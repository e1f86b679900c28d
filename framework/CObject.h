// The serialisable object base and its run-time classes: a class declared with
// DECLARE_SERIAL / IMPLEMENT_SERIAL can be named, created by name, tested for kind and
// read back through a pointer of its own type (ar >> pMine), as in the framework.
// Class names are the registry's keys: two serialisable classes of one name (in two
// anonymous namespaces, say) cannot both be read from archives.
#pragma once

#include "Types.h"

class CArchive;
class CObject;

struct CRuntimeClass
{
    LPCSTR m_lpszClassName;
    int m_nObjectSize;
    UINT m_wSchema;                    // 0xFFFF when the class is not serialisable
    CObject* (*m_pfnCreateObject)();   // null when the class cannot be created dynamically
    CRuntimeClass* (*m_pfnGetBaseClass)();

    CObject* CreateObject() const;
    // The class as the archive names it: schema (16 bits), name length (16 bits), name.
    void Store(CArchive& ar) const;
    // Reads what Store wrote and finds the class in the registry (null when none has
    // that name); *pwSchemaNum receives the schema the stream gives.
    static CRuntimeClass* Load(CArchive& ar, UINT* pwSchemaNum);
    BOOL IsDerivedFrom(const CRuntimeClass* pBaseClass) const;
    CRuntimeClass* GetBaseClass() const { return m_pfnGetBaseClass ? m_pfnGetBaseClass() : nullptr; }

    // Registry of every class declared dynamic, for creation by name.
    static CRuntimeClass* FromName(LPCSTR lpszClassName);
    static CObject* CreateObject(LPCSTR lpszClassName);
    static void Register(CRuntimeClass* pClass);
};

class CObject
{
public:
    virtual ~CObject() = default;

    virtual CRuntimeClass* GetRuntimeClass() const;
    virtual void Serialize(CArchive& ar);

    BOOL IsSerializable() const;
    BOOL IsKindOf(const CRuntimeClass* pClass) const;

    static CRuntimeClass* GetThisClass();

protected:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
};

// The class object is reached through a function (as the framework does in its DLL
// build) so that run-time classes work across a shared-library boundary.
#define RUNTIME_CLASS(class_name) (class_name::GetThisClass())

#define DECLARE_DYNAMIC(class_name)                    \
public:                                                \
    static CRuntimeClass* GetThisClass();              \
    CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name)                  \
    DECLARE_DYNAMIC(class_name)                        \
    static CObject* CreateObject();

// ReadObject through a declaration of the archive alone (CArchive.h includes this file).
CObject* AfxReadObject(CArchive& ar, const CRuntimeClass* pClassRefRequested);

#define DECLARE_SERIAL(class_name)                                                        \
    DECLARE_DYNCREATE(class_name)                                                         \
    friend CArchive& operator>>(CArchive& ar, class_name*& pOb)                           \
    {                                                                                     \
        pOb = static_cast<class_name*>(AfxReadObject(ar, RUNTIME_CLASS(class_name)));     \
        return ar;                                                                        \
    }

#define PREFA_IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, wSchema, pfnNew)      \
    CRuntimeClass* class_name::GetThisClass()                                            \
    {                                                                                    \
        static CRuntimeClass rc = {#class_name, (int)sizeof(class_name), wSchema, pfnNew, \
                                   &base_class_name::GetThisClass};                      \
        return &rc;                                                                      \
    }                                                                                    \
    CRuntimeClass* class_name::GetRuntimeClass() const { return class_name::GetThisClass(); } \
    static const bool _prefa_register_##class_name =                                     \
        (CRuntimeClass::Register(class_name::GetThisClass()), true);

#define IMPLEMENT_DYNAMIC(class_name, base_class_name) \
    PREFA_IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                   \
    CObject* class_name::CreateObject() { return new class_name; }         \
    PREFA_IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, class_name::CreateObject)

#define IMPLEMENT_SERIAL(class_name, base_class_name, wSchema)             \
    CObject* class_name::CreateObject() { return new class_name; }         \
    PREFA_IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, wSchema, class_name::CreateObject)
