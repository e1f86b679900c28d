// Serialisation of the framework's collections of texts and objects.
#include "CArchive.h"
#include "CObList.h"
#include "CStringArray.h"
#include "CStringList.h"

IMPLEMENT_SERIAL(CStringArray, CObject, 0)
IMPLEMENT_SERIAL(CStringList, CObject, 0)
IMPLEMENT_SERIAL(CObList, CObject, 0)

namespace
{
// A list as the framework writes it: the count, then the elements in order. When
// loading, elements are added at the tail; each takes at least nMinBytes in the file.
template <class TYPE, class ARG_TYPE>
void SerializeList(CArchive& ar, CList<TYPE, ARG_TYPE>& list, ULONGLONG nMinBytes)
{
    if (ar.IsStoring())
    {
        ar.WriteCount((DWORD_PTR)list.GetCount());
        for (POSITION pos = list.GetHeadPosition(); pos;)
            ar << list.GetNext(pos);
        return;
    }
    DWORD_PTR n = ar.ReadCount();
    ar.CheckAvailable(n, nMinBytes);
    while (n-- > 0)
    {
        TYPE element{};
        ar >> element;
        list.AddTail(element);
    }
}
} // namespace

void CStringArray::InsertAt(INT_PTR nStartIndex, const CStringArray* pNewArray)
{
    if (pNewArray == nullptr || nStartIndex < 0)
        AfxThrowInvalidArgException();
    // A copy first: the array may be inserted into itself.
    std::vector<CString> copy = pNewArray->Vector();
    if ((std::size_t)nStartIndex > Vector().size())
        Vector().resize((std::size_t)nStartIndex);
    Vector().insert(Vector().begin() + nStartIndex, copy.begin(), copy.end());
}

void CStringArray::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar.WriteCount((DWORD_PTR)GetSize());
        for (const CString& s : Vector())
            ar << s;
        return;
    }
    DWORD_PTR n = ar.ReadCount();
    // Every text takes at least its one-byte length.
    ar.CheckAvailable(n, 1);
    SetSize((INT_PTR)n);
    for (CString& s : Vector())
        ar >> s;
}

void CStringList::Serialize(CArchive& ar)
{
    SerializeList(ar, *this, 1);
}

void CObList::Serialize(CArchive& ar)
{
    // Every object takes at least its two-byte tag.
    SerializeList(ar, *this, 2);
}
