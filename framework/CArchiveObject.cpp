// Objects in the archive: the framework's class and object tags (see CArchive.h).
#include "CArchive.h"

#include <cstring>
#include <unordered_map>

namespace
{
const WORD wNullTag = 0x0000;
const WORD wNewClassTag = 0xFFFF;
const WORD wClassTag = 0x8000;
const WORD wBigObjectTag = 0x7FFF;
const DWORD dwBigClassTag = 0x80000000u;
// The framework's limit on classes and objects in one archive.
const DWORD nMaxMapCount = 0x3FFFFFFEu;
// The longest class name a stream may give.
const WORD nMaxClassName = 63;
} // namespace

struct CArchive::ObjectMaps
{
    // Storing: the index each class and object was given (classes and objects are
    // told apart by their addresses).
    std::unordered_map<const void*, DWORD> stored;
    DWORD nStored = 1;
    // Loading: entry i is what index i names; entry 0 is the null pointer. A class
    // entry has pClass, an object entry pObject (null again once its load failed).
    struct Entry
    {
        CRuntimeClass* pClass;
        CObject* pObject;
        UINT nSchema;
    };
    std::vector<Entry> loaded{Entry{nullptr, nullptr, 0}};
    int nDepth = 0;
};

void CArchive::ObjectMapsDeleter::operator()(ObjectMaps* p) const
{
    delete p;
}

CArchive::ObjectMaps& CArchive::Maps()
{
    if (!m_pMaps)
        m_pMaps.reset(new ObjectMaps);
    return *m_pMaps;
}

namespace
{
// Counts one level of objects inside objects for as long as it lives.
class DepthGuard
{
public:
    explicit DepthGuard(int& nDepth) : m_nDepth(nDepth) { ++m_nDepth; }
    ~DepthGuard() { --m_nDepth; }
    DepthGuard(const DepthGuard&) = delete;
    DepthGuard& operator=(const DepthGuard&) = delete;
    bool TooDeep() const { return m_nDepth > CArchive::kMaxObjectDepth; }

private:
    int& m_nDepth;
};
} // namespace

// ---- storing ----

void CArchive::WriteIndex(DWORD nIndex, DWORD dwClassBit)
{
    if (nIndex < wBigObjectTag)
        *this << (WORD)((dwClassBit >> 16) | nIndex);
    else
        *this << wBigObjectTag << (DWORD)(dwClassBit | nIndex);
}

void CArchive::WriteObject(const CObject* pOb)
{
    CheckMode(false);
    if (pOb == nullptr)
    {
        *this << wNullTag;
        return;
    }
    ObjectMaps& m = Maps();
    auto it = m.stored.find(pOb);
    if (it != m.stored.end())
    {
        WriteIndex(it->second, 0);
        return;
    }
    DepthGuard depth(m.nDepth);
    if (depth.TooDeep())
        Throw(CArchiveException::badIndex);
    WriteClass(pOb->GetRuntimeClass());
    if (m.nStored >= nMaxMapCount)
        Throw(CArchiveException::badIndex);
    // Numbered before its members, so that a member pointing back finds it.
    m.stored.emplace(pOb, m.nStored++);
    const_cast<CObject*>(pOb)->Serialize(*this);
}

void CArchive::WriteClass(const CRuntimeClass* pClassRef)
{
    CheckMode(false);
    if (pClassRef == nullptr || pClassRef->m_wSchema == 0xFFFF)
        Throw(CArchiveException::badClass);
    ObjectMaps& m = Maps();
    auto it = m.stored.find(pClassRef);
    if (it != m.stored.end())
    {
        WriteIndex(it->second, dwBigClassTag);
        return;
    }
    if (m.nStored >= nMaxMapCount)
        Throw(CArchiveException::badIndex);
    *this << wNewClassTag;
    pClassRef->Store(*this);
    m.stored.emplace(pClassRef, m.nStored++);
}

void CRuntimeClass::Store(CArchive& ar) const
{
    WORD nLen = (WORD)std::strlen(m_lpszClassName);
    ar << (WORD)m_wSchema << nLen;
    ar.Write(m_lpszClassName, nLen);
}

// ---- loading ----

CRuntimeClass* CRuntimeClass::Load(CArchive& ar, UINT* pwSchemaNum)
{
    WORD wSchema, nLen;
    ar >> wSchema >> nLen;
    *pwSchemaNum = wSchema;
    if (nLen > nMaxClassName)
        return nullptr;
    char szClassName[nMaxClassName + 1];
    ar.EnsureRead(szClassName, nLen);
    szClassName[nLen] = '\0';
    return FromName(szClassName);
}

CRuntimeClass* CArchive::ReadClass(const CRuntimeClass* pClassRefRequested, UINT* pSchema, DWORD* pObTag)
{
    CheckMode(true);
    WORD wTag;
    *this >> wTag;
    DWORD obTag;
    if (wTag == wBigObjectTag)
        *this >> obTag;
    else
        obTag = ((DWORD)(wTag & wClassTag) << 16) | (wTag & ~wClassTag);
    if (!(obTag & dwBigClassTag))
    {
        if (pObTag == nullptr)
            Throw(CArchiveException::badIndex);
        *pObTag = obTag;
        return nullptr;
    }

    ObjectMaps& m = Maps();
    CRuntimeClass* pClassRef;
    UINT nSchema;
    if (wTag == wNewClassTag)
    {
        pClassRef = CRuntimeClass::Load(*this, &nSchema);
        if (pClassRef == nullptr || pClassRef->m_wSchema == 0xFFFF)
            Throw(CArchiveException::badClass);
        if ((pClassRef->m_wSchema & ~VERSIONABLE_SCHEMA) != nSchema && !(pClassRef->m_wSchema & VERSIONABLE_SCHEMA))
            Throw(CArchiveException::badSchema);
        if (m.loaded.size() >= nMaxMapCount)
            Throw(CArchiveException::badIndex);
        m.loaded.push_back({pClassRef, nullptr, nSchema});
    }
    else
    {
        DWORD nClassIndex = obTag & ~dwBigClassTag;
        if (nClassIndex == 0 || nClassIndex >= m.loaded.size() || m.loaded[nClassIndex].pClass == nullptr)
            Throw(CArchiveException::badIndex);
        pClassRef = m.loaded[nClassIndex].pClass;
        nSchema = m.loaded[nClassIndex].nSchema;
    }
    if (pClassRefRequested && !pClassRef->IsDerivedFrom(pClassRefRequested))
        Throw(CArchiveException::badClass);
    if (pSchema)
        *pSchema = nSchema;
    else
        m_nObjectSchema = nSchema;
    if (pObTag)
        *pObTag = obTag;
    return pClassRef;
}

CObject* CArchive::ReadObject(const CRuntimeClass* pClassRefRequested)
{
    CheckMode(true);
    ObjectMaps& m = Maps();
    DepthGuard depth(m.nDepth);
    UINT nSchema = 0;
    DWORD obTag = 0;
    CRuntimeClass* pClassRef = ReadClass(pClassRefRequested, &nSchema, &obTag);
    if (pClassRef == nullptr)
    {
        // A pointer met before, or the null pointer.
        if (obTag == 0)
            return nullptr;
        if (obTag >= m.loaded.size() || m.loaded[obTag].pObject == nullptr)
            Throw(CArchiveException::badIndex);
        CObject* pOb = m.loaded[obTag].pObject;
        if (pClassRefRequested && !pOb->IsKindOf(pClassRefRequested))
            Throw(CArchiveException::badClass);
        return pOb;
    }
    if (depth.TooDeep() || m.loaded.size() >= nMaxMapCount)
        Throw(CArchiveException::badIndex);
    CObject* pOb = pClassRef->CreateObject();
    if (pOb == nullptr)
        Throw(CArchiveException::badClass);
    // Numbered before its members, so that a member pointing back finds it.
    std::size_t index = m.loaded.size();
    m.loaded.push_back({nullptr, pOb, nSchema});
    UINT nSchemaSave = m_nObjectSchema;
    m_nObjectSchema = nSchema;
    try
    {
        pOb->Serialize(*this);
    }
    catch (...)
    {
        m.loaded[index].pObject = nullptr;
        delete pOb;
        m_nObjectSchema = nSchemaSave;
        throw;
    }
    m_nObjectSchema = nSchemaSave;
    return pOb;
}

UINT CArchive::GetObjectSchema()
{
    UINT nResult = m_nObjectSchema;
    m_nObjectSchema = (UINT)-1;
    return nResult;
}

CObject* AfxReadObject(CArchive& ar, const CRuntimeClass* pClassRefRequested)
{
    return ar.ReadObject(pClassRefRequested);
}

CArchive& operator<<(CArchive& ar, const CObject* pOb)
{
    ar.WriteObject(pOb);
    return ar;
}

CArchive& operator>>(CArchive& ar, CObject*& pOb)
{
    pOb = ar.ReadObject(nullptr);
    return ar;
}

CArchive& operator>>(CArchive& ar, const CObject*& pOb)
{
    pOb = ar.ReadObject(nullptr);
    return ar;
}
