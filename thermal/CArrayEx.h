// The library's growable array: the framework's CArray with exact element-wise
// comparison and value copy, so that grids of arrays (CArrayEx of CArrayEx) can be
// copied and compared as a whole.
#pragma once

#include "framework/CArray.h"

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArrayEx : public CArray<TYPE, ARG_TYPE>
{
public:
    CArrayEx() = default;
    CArrayEx(const CArrayEx& other) : CArray<TYPE, ARG_TYPE>(other) {}
    CArrayEx& operator=(const CArrayEx& other)
    {
        CArray<TYPE, ARG_TYPE>::operator=(other);
        return *this;
    }

    // Same size and every element equal with the element's own ==: doubles compare
    // exactly, so a NaN on either side makes the arrays different.
    bool operator==(const CArrayEx& other) const
    {
        const auto& a = this->Vector();
        const auto& b = other.Vector();
        if (a.size() != b.size())
            return false;
        for (std::size_t i = 0; i < a.size(); ++i)
            if (!(a[i] == b[i]))
                return false;
        return true;
    }
    bool operator!=(const CArrayEx& other) const { return !(*this == other); }
};
