// The framework's list of texts. In an archive: WriteCount's count, then each text
// with its length prefix; as an object its class is "CStringList", schema 0.
#pragma once

#include "CList.h"
#include "CString.h"

class CStringList : public CList<CString, const CString&>
{
    DECLARE_SERIAL(CStringList)
public:
    explicit CStringList(INT_PTR nBlockSize = 10) : CList<CString, const CString&>(nBlockSize) {}

    void Serialize(CArchive& ar) override;
};
