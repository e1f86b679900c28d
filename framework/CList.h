// The framework's doubly linked lists, on std::list. A POSITION is an opaque handle to
// one element; it stays valid until that element is removed. A null position, or a
// removed list's head, raises the invalid-argument exception where the framework would
// fault.
#pragma once

#include "CException.h"
#include "CObject.h"

#include <iterator>
#include <list>

template <class TYPE, class ARG_TYPE = const TYPE&>
class CList : public CObject
{
    // Each element knows its own place, so that a POSITION (the element's address,
    // stable in a std::list) leads back to it in constant time.
    struct CElement;
    typedef std::list<CElement> Liste;
    typedef typename Liste::iterator Place;
    struct CElement
    {
        TYPE data;
        Place place;
    };

public:
    explicit CList(INT_PTR nBlockSize = 10) { (void)nBlockSize; }
    CList(const CList& other) : CObject() { AddTail(&other); }
    CList& operator=(const CList& other)
    {
        if (this != &other)
        {
            RemoveAll();
            AddTail(&other);
        }
        return *this;
    }

    INT_PTR GetCount() const { return (INT_PTR)m_liste.size(); }
    INT_PTR GetSize() const { return GetCount(); }
    bool IsEmpty() const { return m_liste.empty(); }

    TYPE& GetHead() { return NonVide().front().data; }
    const TYPE& GetHead() const { return NonVide().front().data; }
    TYPE& GetTail() { return NonVide().back().data; }
    const TYPE& GetTail() const { return NonVide().back().data; }

    TYPE RemoveHead()
    {
        TYPE v = NonVide().front().data;
        m_liste.pop_front();
        return v;
    }
    TYPE RemoveTail()
    {
        TYPE v = NonVide().back().data;
        m_liste.pop_back();
        return v;
    }

    POSITION AddHead(ARG_TYPE e) { return Insere(m_liste.begin(), e); }
    POSITION AddTail(ARG_TYPE e) { return Insere(m_liste.end(), e); }
    // The elements of pList as they are now: a list appended to itself doubles once.
    void AddTail(const CList* pList)
    {
        auto it = pList->m_liste.begin();
        for (std::size_t n = pList->m_liste.size(); n > 0; --n, ++it)
            AddTail(it->data);
    }
    void RemoveAll() { m_liste.clear(); }

    POSITION GetHeadPosition() const { return m_liste.empty() ? nullptr : Poignee(m_liste.front()); }
    POSITION GetTailPosition() const { return m_liste.empty() ? nullptr : Poignee(m_liste.back()); }
    TYPE& GetNext(POSITION& pos) { return Avance(pos).data; }
    const TYPE& GetNext(POSITION& pos) const { return Avance(pos).data; }
    TYPE& GetPrev(POSITION& pos) { return Recule(pos).data; }
    const TYPE& GetPrev(POSITION& pos) const { return Recule(pos).data; }
    TYPE& GetAt(POSITION pos) { return Element(pos).data; }
    const TYPE& GetAt(POSITION pos) const { return Element(pos).data; }
    void SetAt(POSITION pos, ARG_TYPE e) { Element(pos).data = e; }
    void RemoveAt(POSITION pos) { m_liste.erase(Element(pos).place); }

    POSITION InsertBefore(POSITION pos, ARG_TYPE e)
    {
        return pos == nullptr ? AddHead(e) : Insere(Element(pos).place, e);
    }
    POSITION InsertAfter(POSITION pos, ARG_TYPE e)
    {
        return pos == nullptr ? AddTail(e) : Insere(std::next(Element(pos).place), e);
    }

    POSITION FindIndex(INT_PTR nIndex) const
    {
        if (nIndex < 0 || nIndex >= GetCount())
            return nullptr;
        return Poignee(*std::next(m_liste.begin(), nIndex));
    }
    POSITION Find(ARG_TYPE searchValue, POSITION startAfter = nullptr) const
    {
        auto it = startAfter ? std::next(Place(Element(startAfter).place)) : Debut();
        for (; it != m_liste.end(); ++it)
            if (it->data == searchValue)
                return Poignee(*it);
        return nullptr;
    }

private:
    // The handle is the element's address; the list never reads through it as
    // anything but the element it was made from.
    static POSITION Poignee(const CElement& e) { return reinterpret_cast<POSITION>(const_cast<CElement*>(&e)); }
    static CElement& Element(POSITION pos)
    {
        if (pos == nullptr)
            AfxThrowInvalidArgException();
        return *reinterpret_cast<CElement*>(pos);
    }
    Place Debut() const { return const_cast<Liste&>(m_liste).begin(); }
    // The element at pos; pos moves to the next one, null past the tail.
    CElement& Avance(POSITION& pos) const
    {
        CElement& e = Element(pos);
        const Place suivant = std::next(e.place);
        pos = suivant == m_liste.end() ? nullptr : Poignee(*suivant);
        return e;
    }
    // The element at pos; pos moves to the previous one, null before the head.
    CElement& Recule(POSITION& pos) const
    {
        CElement& e = Element(pos);
        pos = e.place == Debut() ? nullptr : Poignee(*std::prev(e.place));
        return e;
    }
    POSITION Insere(Place avant, ARG_TYPE e)
    {
        const Place p = m_liste.insert(avant, CElement{e, Place()});
        p->place = p;
        return Poignee(*p);
    }
    const Liste& NonVide() const
    {
        if (m_liste.empty())
            AfxThrowInvalidArgException();
        return m_liste;
    }
    Liste& NonVide()
    {
        if (m_liste.empty())
            AfxThrowInvalidArgException();
        return m_liste;
    }

    Liste m_liste;
};

// The untyped pointer list; the list never owns what its pointers point to.
class CPtrList : public CList<void*, void*>
{
public:
    explicit CPtrList(INT_PTR nBlockSize = 10) : CList<void*, void*>(nBlockSize) {}
};

// A pointer list that hands out typed pointers. They come by value: the list holds
// untyped pointers, and a typed reference to one would read it as another type. A
// caller that writes through the reference (GetAt(pos) = p) does not compile; SetAt
// does it.
template <class BASE_CLASS, class TYPE>
class CTypedPtrList : public BASE_CLASS
{
public:
    explicit CTypedPtrList(INT_PTR nBlockSize = 10) : BASE_CLASS(nBlockSize) {}

    TYPE GetHead() const { return static_cast<TYPE>(BASE_CLASS::GetHead()); }
    TYPE GetTail() const { return static_cast<TYPE>(BASE_CLASS::GetTail()); }
    TYPE RemoveHead() { return static_cast<TYPE>(BASE_CLASS::RemoveHead()); }
    TYPE RemoveTail() { return static_cast<TYPE>(BASE_CLASS::RemoveTail()); }
    TYPE GetNext(POSITION& pos) const { return static_cast<TYPE>(BASE_CLASS::GetNext(pos)); }
    TYPE GetPrev(POSITION& pos) const { return static_cast<TYPE>(BASE_CLASS::GetPrev(pos)); }
    TYPE GetAt(POSITION pos) const { return static_cast<TYPE>(BASE_CLASS::GetAt(pos)); }
    void SetAt(POSITION pos, TYPE p) { BASE_CLASS::SetAt(pos, p); }
    POSITION AddHead(TYPE p) { return BASE_CLASS::AddHead(p); }
    POSITION AddTail(TYPE p) { return BASE_CLASS::AddTail(p); }
    POSITION InsertBefore(POSITION pos, TYPE p) { return BASE_CLASS::InsertBefore(pos, p); }
    POSITION InsertAfter(POSITION pos, TYPE p) { return BASE_CLASS::InsertAfter(pos, p); }
};
