// The framework's list of object pointers, the usual base of a typed list of a
// document's objects (CTypedPtrList<CObList, CMyItem*>). The list does not own its
// objects. In an archive: WriteCount's count, then each object with the framework's
// tags (CArchive.h), so that objects named twice come back as one; as an object its
// class is "CObList", schema 0.
#pragma once

#include "CList.h"

class CObList : public CList<CObject*, CObject*>
{
    DECLARE_SERIAL(CObList)
public:
    explicit CObList(INT_PTR nBlockSize = 10) : CList<CObject*, CObject*>(nBlockSize) {}

    void Serialize(CArchive& ar) override;
};
