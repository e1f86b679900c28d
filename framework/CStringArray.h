// The framework's array of texts. In an archive: WriteCount's count, then each text
// with its length prefix; as an object its class is "CStringArray", schema 0.
#pragma once

#include "CArray.h"
#include "CString.h"

class CStringArray : public CArray<CString, const CString&>
{
    DECLARE_SERIAL(CStringArray)
public:
    CStringArray() = default;

    using CArray<CString, const CString&>::InsertAt;
    // Inserts a copy of every text of pNewArray at nStartIndex.
    void InsertAt(INT_PTR nStartIndex, const CStringArray* pNewArray);

    void Serialize(CArchive& ar) override;
};
