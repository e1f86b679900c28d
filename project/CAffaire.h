// The project record ("affaire"): the identity card of a project folder, kept in the
// archive file "VORENAFF" (version 4, versions 1 to 4 and later ones load) and in the
// 436-byte exchange record "LUMACAFF" that the suite's older programs read.
//
// The record is not declared with 2-byte packing here: its texts hold pointers that
// must stay aligned, and nothing copies the object bytewise.
#pragma once

#include "framework/Framework.h"

class CAffaire : public CObject
{
    DECLARE_SERIAL(CAffaire)
public:
    // Size of the exchange record and the marker that says its two later values are set.
    static const UINT TAILLE_ECHANGE = 436;
    static const DWORD MARQUEUR_ECHANGE = 151019;
    static const DWORD VERSION_ARCHIVE = 4;

    CAffaire();
    CAffaire(const CAffaire& source);
    ~CAffaire() override;
    // Deliberately returns a copy of the target, not a reference.
    CAffaire operator=(const CAffaire& source);

    void InitAffaire();
    void CopyAffaire(const CAffaire& source);

    void Serialize(CArchive& ar) override;

    // Mode 1 saves "VORENAFF" and "LUMACAFF" of the project folder strDossier (relative
    // to the data root); mode 2 loads, falling back on "LUMACAFF" when "VORENAFF" does
    // not open; any other mode loads and reports a file that does not open. 1 on
    // success, 0 on failure. Malformed files raise CArchiveException; an invalid date in
    // the exchange record raises CInvalidArgException.
    int GestionFichier(int nMode, CString strDossier);

    // The exchange record of this project, as GestionFichier writes it.
    void RemplitEchange(BYTE* pEchange) const;
    // Fills the record from an exchange record (after InitAffaire), as the fall-back
    // load does.
    void LitEchange(const BYTE* pEchange);
    // The exchange record's date text: day/month/two-digit year of the local date.
    static CString TexteDateEchange(__time64_t date);
    // The date of an exchange date text: local midnight, daylight saving not in force;
    // years above 80 are 19yy, others 20yy.
    static __time64_t DateDepuisTexteEchange(const CString& texte);

    CString Texte1;
    CString Texte2;
    CString Texte3;
    CString Texte4;
    CString Texte5;
    CString Texte6;
    CString Texte7;
    __time64_t Date;
    CString Texte8;
    CString Texte9;
    CString Liste1[3];
    CString Texte10;
    CString Liste2[3];
    WORD Valeur1;
    WORD Valeur3;
    CString Texte11;
    WORD Valeur2;
    CString Texte12;
};

// An element of the applications' project lists: a text and a small value.
class CElemAffaire : public CObject
{
    DECLARE_DYNCREATE(CElemAffaire)
public:
    CElemAffaire();
    ~CElemAffaire() override;

    CString Texte;
    WORD Valeur;
};
