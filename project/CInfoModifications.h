// One revision of a drawing: two one-character marks, a date and a description.
// (Not declared with 1-byte packing: the text must stay aligned, and nothing copies
// the object bytewise.)
#pragma once

#include "framework/Framework.h"

class CInfoModifications : public CObject
{
    DECLARE_DYNCREATE(CInfoModifications)
public:
    CInfoModifications();
    CInfoModifications(const CInfoModifications& source);
    ~CInfoModifications() override;
    // Deliberately returns a copy of the target, not a reference.
    CInfoModifications operator=(const CInfoModifications& source);

    void InitCInfoModifications();
    void CopyCInfoModifications(const CInfoModifications& source);

    char Indice;      // first mark of the revision (space by default)
    __time64_t Date;  // date of the revision (current time by default)
    CString Texte;    // description of the revision
    char Etat;        // second mark of the revision (space by default)
};
