// The framework's growable array on a std::vector. Index faults raise the
// invalid-argument exception instead of reading out of bounds.
#pragma once

#include "CException.h"
#include "CObject.h"

#include <vector>

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray : public CObject
{
public:
    CArray() = default;
    CArray(const CArray& other) : CObject(), m_data(other.m_data) {}
    CArray& operator=(const CArray& other)
    {
        if (this != &other)
            m_data = other.m_data;
        return *this;
    }

    INT_PTR GetSize() const { return (INT_PTR)m_data.size(); }
    INT_PTR GetCount() const { return (INT_PTR)m_data.size(); }
    bool IsEmpty() const { return m_data.empty(); }
    INT_PTR GetUpperBound() const { return (INT_PTR)m_data.size() - 1; }
    void SetSize(INT_PTR nNewSize, INT_PTR nGrowBy = -1)
    {
        (void)nGrowBy;
        if (nNewSize < 0)
            AfxThrowInvalidArgException();
        m_data.resize((std::size_t)nNewSize);
    }
    void FreeExtra() { m_data.shrink_to_fit(); }
    void RemoveAll() { std::vector<TYPE>().swap(m_data); }

    const TYPE& GetAt(INT_PTR i) const { return m_data[Check(i)]; }
    TYPE& GetAt(INT_PTR i) { return m_data[Check(i)]; }
    void SetAt(INT_PTR i, ARG_TYPE e) { m_data[Check(i)] = e; }
    TYPE& ElementAt(INT_PTR i) { return m_data[Check(i)]; }
    const TYPE& ElementAt(INT_PTR i) const { return m_data[Check(i)]; }
    TYPE& operator[](INT_PTR i) { return m_data[Check(i)]; }
    const TYPE& operator[](INT_PTR i) const { return m_data[Check(i)]; }
    const TYPE* GetData() const { return m_data.data(); }
    TYPE* GetData() { return m_data.data(); }

    void SetAtGrow(INT_PTR i, ARG_TYPE e)
    {
        if (i < 0)
            AfxThrowInvalidArgException();
        if ((std::size_t)i >= m_data.size())
            m_data.resize((std::size_t)i + 1);
        m_data[(std::size_t)i] = e;
    }
    INT_PTR Add(ARG_TYPE e)
    {
        m_data.push_back(e);
        return (INT_PTR)m_data.size() - 1;
    }
    INT_PTR Append(const CArray& src)
    {
        INT_PTR old = GetSize();
        m_data.insert(m_data.end(), src.m_data.begin(), src.m_data.end());
        return old;
    }
    void Copy(const CArray& src)
    {
        if (this != &src)
            m_data = src.m_data;
    }
    void InsertAt(INT_PTR i, ARG_TYPE e, INT_PTR nCount = 1)
    {
        if (i < 0 || nCount < 0)
            AfxThrowInvalidArgException();
        if ((std::size_t)i > m_data.size())
            m_data.resize((std::size_t)i);
        m_data.insert(m_data.begin() + i, (std::size_t)nCount, TYPE(e));
    }
    void RemoveAt(INT_PTR i, INT_PTR nCount = 1)
    {
        if (i < 0 || nCount < 0 || (std::size_t)(i + nCount) > m_data.size())
            AfxThrowInvalidArgException();
        m_data.erase(m_data.begin() + i, m_data.begin() + i + nCount);
    }

    // Direct access for hot loops that have checked their bounds once.
    std::vector<TYPE>& Vector() { return m_data; }
    const std::vector<TYPE>& Vector() const { return m_data; }

private:
    std::size_t Check(INT_PTR i) const
    {
        if (i < 0 || (std::size_t)i >= m_data.size())
            AfxThrowInvalidArgException();
        return (std::size_t)i;
    }
    std::vector<TYPE> m_data;
};
