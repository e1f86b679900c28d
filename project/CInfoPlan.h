// The drawing record ("plan"): identity card and revision history of one numbered
// drawing of a project, in the archive file "VORENPLA.NN" of the project folder
// (version 8; versions 1 to 8 and later ones load). Records older than version 3
// take Texte3 from 13 bytes at offset 134 of the older fixed-layout file "LUMACPLA.NN".
// (Not declared with 2-byte packing: its texts must stay aligned, and nothing copies
// the object bytewise.)
#pragma once

#include "framework/Framework.h"
#include "project/CInfoModifications.h"

class CInfoPlan : public CObject
{
    DECLARE_DYNCREATE(CInfoPlan)
public:
    static const DWORD VERSION_ARCHIVE = 8;

    CInfoPlan();
    CInfoPlan(const CInfoPlan& source);
    ~CInfoPlan() override;
    // Deliberately returns a copy of the target, not a reference.
    CInfoPlan operator=(const CInfoPlan& source);

    void InitCInfoPlan();
    void CopyCInfoPlan(const CInfoPlan& source);
    // Destroys every revision.
    void VideModifications();

    // The record in both directions; the folder and drawing number lead to the older
    // drawing file when an old record is loaded.
    void Serialize(CArchive& ar, CString strDossier, int nPlan);

    // Mode 1 saves "VORENPLA.NN" of the project folder; mode 2 loads quietly (with only
    // "LUMACPLA.NN" present it takes Texte3 from there and leaves the rest); any other
    // mode loads and reports a file that does not open. 1 on success, 0 on failure.
    // Malformed files raise CArchiveException.
    int GestionFichier(int nMode, CString strDossier, int nPlan);

    // Texte3 from the older drawing file, when it opens (returns false otherwise).
    bool LitTexte3Ancien(const CString& strDossier, int nPlan);

    DWORD Version;
    __time64_t Date1;
    CString Texte1;
    CString Texte2;
    CString Texte3;
    WORD Valeur1;
    WORD Valeur2;
    WORD Valeur3;
    WORD Valeur4;
    LONG Nombre1;
    LONG Nombre2;
    __time64_t Date2;
    CString Texte4;
    __time64_t Date3;
    // Owned revisions, in order.
    CTypedPtrList<CPtrList, CInfoModifications*> Modifications;
    CList<CString, const CString&> Textes;
    CString Texte5;
};

// Duplicates drawing nPlanSource of the project folder strDossierSource as drawing
// nPlanCible of strDossierCible (the same folder or another one). The drawing's files
// are every file of the folder named "<prefix>.NN" (NN the drawing number written as
// the study-file composer writes it), lock files excepted; each is copied under the
// same prefix and the new number, the older "LUMACPLA." file included. The record
// "VORENPLA." is then loaded from the source and saved under the new number, so that
// the copy has a record file of its own in the current version. Returns 1 on
// success, 0 when the source has no record or a copy fails (files already copied stay).
int CopiePlanDuplication(CString strDossierSource, int nPlanSource, CString strDossierCible, int nPlanCible);

// Deletes the files of drawing nPlan in the project folder: the same file set as
// CopiePlanDuplication (lock files are left to their holder). Returns 1 when every
// file went, 0 when one could not be deleted (the others are still deleted).
int Suppression_Plan(CString strDossier, int nPlan);
