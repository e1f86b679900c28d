#include "CObject.h"

#include "CArchive.h"

#include <cstring>
#include <mutex>
#include <vector>

namespace
{
struct Registry
{
    std::mutex mutex;
    std::vector<CRuntimeClass*> classes;
};

Registry& TheRegistry()
{
    static Registry registry;
    return registry;
}
} // namespace

CObject* CRuntimeClass::CreateObject() const
{
    return m_pfnCreateObject ? m_pfnCreateObject() : nullptr;
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* pBaseClass) const
{
    for (const CRuntimeClass* p = this; p; p = p->GetBaseClass())
    {
        if (p == pBaseClass)
            return TRUE;
        if (p->m_pfnGetBaseClass == nullptr || p->GetBaseClass() == p)
            break;
    }
    return FALSE;
}

void CRuntimeClass::Register(CRuntimeClass* pClass)
{
    Registry& r = TheRegistry();
    std::lock_guard<std::mutex> lock(r.mutex);
    r.classes.push_back(pClass);
}

CRuntimeClass* CRuntimeClass::FromName(LPCSTR lpszClassName)
{
    if (lpszClassName == nullptr)
        return nullptr;
    Registry& r = TheRegistry();
    std::lock_guard<std::mutex> lock(r.mutex);
    for (CRuntimeClass* p : r.classes)
        if (std::strcmp(p->m_lpszClassName, lpszClassName) == 0)
            return p;
    return nullptr;
}

CObject* CRuntimeClass::CreateObject(LPCSTR lpszClassName)
{
    CRuntimeClass* p = FromName(lpszClassName);
    return p ? p->CreateObject() : nullptr;
}

CRuntimeClass* CObject::GetThisClass()
{
    static CRuntimeClass rc = {"CObject", (int)sizeof(CObject), 0xFFFF, nullptr, nullptr};
    return &rc;
}

CRuntimeClass* CObject::GetRuntimeClass() const
{
    return CObject::GetThisClass();
}

void CObject::Serialize(CArchive&)
{
}

BOOL CObject::IsSerializable() const
{
    return GetRuntimeClass()->m_wSchema != 0xFFFF;
}

BOOL CObject::IsKindOf(const CRuntimeClass* pClass) const
{
    return GetRuntimeClass()->IsDerivedFrom(pClass);
}
