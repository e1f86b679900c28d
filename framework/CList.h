// The framework's doubly linked lists. A POSITION is the address of a node; it stays
// valid until that node is removed. A null position, or a removed list's head, raises
// the invalid-argument exception where the framework would fault.
#pragma once

#include "CException.h"
#include "CObject.h"

template <class TYPE, class ARG_TYPE = const TYPE&>
class CList : public CObject
{
    struct CNode
    {
        CNode* pNext;
        CNode* pPrev;
        TYPE data;
    };

public:
    explicit CList(INT_PTR nBlockSize = 10) { (void)nBlockSize; }
    ~CList() override { RemoveAll(); }
    CList(const CList& other) : CObject()
    {
        for (CNode* p = other.m_pHead; p; p = p->pNext)
            AddTail(p->data);
    }
    CList& operator=(const CList& other)
    {
        if (this != &other)
        {
            RemoveAll();
            for (CNode* p = other.m_pHead; p; p = p->pNext)
                AddTail(p->data);
        }
        return *this;
    }

    INT_PTR GetCount() const { return m_nCount; }
    INT_PTR GetSize() const { return m_nCount; }
    bool IsEmpty() const { return m_nCount == 0; }

    TYPE& GetHead() { return NonEmpty(m_pHead)->data; }
    const TYPE& GetHead() const { return NonEmpty(m_pHead)->data; }
    TYPE& GetTail() { return NonEmpty(m_pTail)->data; }
    const TYPE& GetTail() const { return NonEmpty(m_pTail)->data; }

    TYPE RemoveHead()
    {
        CNode* p = NonEmpty(m_pHead);
        TYPE v = p->data;
        Unlink(p);
        return v;
    }
    TYPE RemoveTail()
    {
        CNode* p = NonEmpty(m_pTail);
        TYPE v = p->data;
        Unlink(p);
        return v;
    }

    POSITION AddHead(ARG_TYPE e) { return Link(new CNode{m_pHead, nullptr, e}, nullptr, m_pHead); }
    POSITION AddTail(ARG_TYPE e) { return Link(new CNode{nullptr, m_pTail, e}, m_pTail, nullptr); }
    void AddTail(const CList* pList)
    {
        for (CNode* p = pList->m_pHead; p; p = p->pNext)
            AddTail(p->data);
    }
    void RemoveAll()
    {
        CNode* p = m_pHead;
        while (p)
        {
            CNode* n = p->pNext;
            delete p;
            p = n;
        }
        m_pHead = m_pTail = nullptr;
        m_nCount = 0;
    }

    POSITION GetHeadPosition() const { return (POSITION)m_pHead; }
    POSITION GetTailPosition() const { return (POSITION)m_pTail; }
    TYPE& GetNext(POSITION& pos)
    {
        CNode* p = Node(pos);
        pos = (POSITION)p->pNext;
        return p->data;
    }
    const TYPE& GetNext(POSITION& pos) const
    {
        CNode* p = Node(pos);
        pos = (POSITION)p->pNext;
        return p->data;
    }
    TYPE& GetPrev(POSITION& pos)
    {
        CNode* p = Node(pos);
        pos = (POSITION)p->pPrev;
        return p->data;
    }
    const TYPE& GetPrev(POSITION& pos) const
    {
        CNode* p = Node(pos);
        pos = (POSITION)p->pPrev;
        return p->data;
    }
    TYPE& GetAt(POSITION pos) { return Node(pos)->data; }
    const TYPE& GetAt(POSITION pos) const { return Node(pos)->data; }
    void SetAt(POSITION pos, ARG_TYPE e) { Node(pos)->data = e; }
    void RemoveAt(POSITION pos) { Unlink(Node(pos)); }

    POSITION InsertBefore(POSITION pos, ARG_TYPE e)
    {
        if (pos == nullptr)
            return AddHead(e);
        CNode* at = Node(pos);
        return Link(new CNode{at, at->pPrev, e}, at->pPrev, at);
    }
    POSITION InsertAfter(POSITION pos, ARG_TYPE e)
    {
        if (pos == nullptr)
            return AddTail(e);
        CNode* at = Node(pos);
        return Link(new CNode{at->pNext, at, e}, at, at->pNext);
    }

    POSITION FindIndex(INT_PTR nIndex) const
    {
        if (nIndex < 0 || nIndex >= m_nCount)
            return nullptr;
        CNode* p = m_pHead;
        while (nIndex-- > 0)
            p = p->pNext;
        return (POSITION)p;
    }
    POSITION Find(ARG_TYPE searchValue, POSITION startAfter = nullptr) const
    {
        CNode* p = startAfter ? Node(startAfter)->pNext : m_pHead;
        for (; p; p = p->pNext)
            if (p->data == searchValue)
                return (POSITION)p;
        return nullptr;
    }

private:
    static CNode* Node(POSITION pos)
    {
        if (pos == nullptr)
            AfxThrowInvalidArgException();
        return (CNode*)pos;
    }
    static CNode* NonEmpty(CNode* p)
    {
        if (p == nullptr)
            AfxThrowInvalidArgException();
        return p;
    }
    POSITION Link(CNode* n, CNode* prev, CNode* next)
    {
        n->pPrev = prev;
        n->pNext = next;
        if (prev)
            prev->pNext = n;
        else
            m_pHead = n;
        if (next)
            next->pPrev = n;
        else
            m_pTail = n;
        ++m_nCount;
        return (POSITION)n;
    }
    void Unlink(CNode* p)
    {
        if (p->pPrev)
            p->pPrev->pNext = p->pNext;
        else
            m_pHead = p->pNext;
        if (p->pNext)
            p->pNext->pPrev = p->pPrev;
        else
            m_pTail = p->pPrev;
        --m_nCount;
        delete p;
    }

    CNode* m_pHead = nullptr;
    CNode* m_pTail = nullptr;
    INT_PTR m_nCount = 0;
};

// The untyped pointer list; the list never owns what its pointers point to.
class CPtrList : public CList<void*, void*>
{
public:
    explicit CPtrList(INT_PTR nBlockSize = 10) : CList<void*, void*>(nBlockSize) {}
};

// A pointer list that hands out typed pointers.
template <class BASE_CLASS, class TYPE>
class CTypedPtrList : public BASE_CLASS
{
public:
    explicit CTypedPtrList(INT_PTR nBlockSize = 10) : BASE_CLASS(nBlockSize) {}

    TYPE& GetHead() { return (TYPE&)BASE_CLASS::GetHead(); }
    TYPE GetHead() const { return (TYPE)BASE_CLASS::GetHead(); }
    TYPE& GetTail() { return (TYPE&)BASE_CLASS::GetTail(); }
    TYPE GetTail() const { return (TYPE)BASE_CLASS::GetTail(); }
    TYPE RemoveHead() { return (TYPE)BASE_CLASS::RemoveHead(); }
    TYPE RemoveTail() { return (TYPE)BASE_CLASS::RemoveTail(); }
    TYPE& GetNext(POSITION& pos) { return (TYPE&)BASE_CLASS::GetNext(pos); }
    TYPE GetNext(POSITION& pos) const { return (TYPE)BASE_CLASS::GetNext(pos); }
    TYPE& GetPrev(POSITION& pos) { return (TYPE&)BASE_CLASS::GetPrev(pos); }
    TYPE GetPrev(POSITION& pos) const { return (TYPE)BASE_CLASS::GetPrev(pos); }
    TYPE& GetAt(POSITION pos) { return (TYPE&)BASE_CLASS::GetAt(pos); }
    TYPE GetAt(POSITION pos) const { return (TYPE)BASE_CLASS::GetAt(pos); }
    void SetAt(POSITION pos, TYPE p) { BASE_CLASS::SetAt(pos, p); }
    POSITION AddHead(TYPE p) { return BASE_CLASS::AddHead(p); }
    POSITION AddTail(TYPE p) { return BASE_CLASS::AddTail(p); }
    POSITION InsertBefore(POSITION pos, TYPE p) { return BASE_CLASS::InsertBefore(pos, p); }
    POSITION InsertAfter(POSITION pos, TYPE p) { return BASE_CLASS::InsertAfter(pos, p); }
};
