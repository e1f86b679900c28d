#include "project/CAffaire.h"

#include "project/FichierArchive.h"
#include "project/FichiersEtudes.h"
#include "project/MessErreur.h"

IMPLEMENT_SERIAL(CAffaire, CObject, 1)
IMPLEMENT_DYNCREATE(CElemAffaire, CObject)

namespace
{
// Reads a list written as a count and texts: the first three go to the list, the
// others are read and dropped; entries beyond the count keep their value.
void LitListe(CArchive& ar, CString* pListe, int nPlaces)
{
    DWORD n = 0;
    ar >> n;
    // Every text takes at least one byte: a count the file cannot hold is refused at once.
    ar.CheckAvailable(n, 1);
    for (DWORD i = 0; i < n; ++i)
    {
        CString texte;
        ar >> texte;
        if (i < (DWORD)nPlaces)
            pListe[i] = texte;
    }
}
} // namespace

CAffaire::CAffaire()
{
    InitAffaire();
}

CAffaire::CAffaire(const CAffaire& source) : CObject()
{
    CopyAffaire(source);
}

CAffaire::~CAffaire() = default;

CAffaire CAffaire::operator=(const CAffaire& source)
{
    if (this != &source)
        CopyAffaire(source);
    return *this;
}

void CAffaire::InitAffaire()
{
    Texte1.Empty();
    Texte2.Empty();
    Texte3.Empty();
    Texte4.Empty();
    Texte5.Empty();
    Texte6.Empty();
    Texte7.Empty();
    Date = _time64(nullptr);
    Texte8.Empty();
    Texte9.Empty();
    for (CString& s : Liste1)
        s.Empty();
    Texte10.Empty();
    for (CString& s : Liste2)
        s.Empty();
    Valeur1 = 0;
    Valeur3 = 0;
    Texte11.Empty();
    Valeur2 = 0;
    Texte12.Empty();
}

void CAffaire::CopyAffaire(const CAffaire& source)
{
    InitAffaire();
    Texte1 = source.Texte1;
    Texte2 = source.Texte2;
    Texte3 = source.Texte3;
    Texte4 = source.Texte4;
    Texte5 = source.Texte5;
    Texte6 = source.Texte6;
    Texte7 = source.Texte7;
    Date = source.Date;
    Texte8 = source.Texte8;
    Texte9 = source.Texte9;
    for (int i = 0; i < 3; ++i)
        Liste1[i] = source.Liste1[i];
    Texte10 = source.Texte10;
    for (int i = 0; i < 3; ++i)
        Liste2[i] = source.Liste2[i];
    Valeur1 = source.Valeur1;
    Valeur3 = source.Valeur3;
    Texte11 = source.Texte11;
    Valeur2 = source.Valeur2;
    Texte12 = source.Texte12;
}

void CAffaire::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        // The date goes in twice: the second slot once held another date, no longer kept.
        DWORD mot = (DWORD)(Date & 0xFFFFFFFF);
        ar << VERSION_ARCHIVE;
        ar << Texte1 << Texte2 << Texte3 << Texte4 << Texte5 << Texte6 << Texte7;
        ar << mot << mot;
        ar << Texte8 << Texte9;
        ar << (DWORD)3 << Liste1[0] << Liste1[1] << Liste1[2];
        ar << (WORD)0;
        ar << Texte10;
        ar << (DWORD)3 << Liste2[0] << Liste2[1] << Liste2[2];
        ar << Valeur1;
        ar << Texte11;
        ar << (DWORD)0;
        ar << Valeur2;
        ar << Valeur3;
        ar << Texte12;
        return;
    }

    DWORD nVersion = 0;
    ar >> nVersion;
    ar >> Texte1 >> Texte2 >> Texte3 >> Texte4 >> Texte5 >> Texte6 >> Texte7;
    DWORD mot = 0, ancien = 0;
    ar >> mot >> ancien;
    Date = (__time64_t)mot;
    ar >> Texte8 >> Texte9;
    LitListe(ar, Liste1, 3);
    WORD ancienChamp = 0;
    ar >> ancienChamp;
    ar >> Texte10;
    LitListe(ar, Liste2, 3);
    ar >> Valeur1;
    ar >> Texte11;
    LitListe(ar, nullptr, 0);
    if (nVersion <= 1)
        Valeur2 = 0;
    else
        ar >> Valeur2;
    if (nVersion >= 3)
        ar >> Valeur3;
    else
        Valeur3 = 0;
    if (nVersion > 3)
        ar >> Texte12;
    else
        Texte12.Empty();
}

int CAffaire::GestionFichier(int nMode, CString strDossier)
{
    const bool bSauve = nMode == 1;
    CString strChemin = Compose_Fichier_Affaire(strDossier, L"VORENAFF");
    CFileException erreur;
    if (SerialiseFichierRapporte(strChemin, bSauve, &erreur, [this](CArchive& ar) { Serialize(ar); }))
    {
        if (bSauve)
        {
            // The exchange file is a courtesy to older programs: its failure is the
            // writer's business and does not fail the save.
            BYTE echange[TAILLE_ECHANGE];
            RemplitEchange(echange);
            EcritureFichier(Compose_Fichier_Affaire(strDossier, L"LUMACAFF"), echange, TAILLE_ECHANGE);
        }
        return 1;
    }
    if (nMode == 2)
    {
        BYTE echange[TAILLE_ECHANGE] = {0};
        if (LectureFichier(Compose_Fichier_Affaire(strDossier, L"LUMACAFF"), echange, TAILLE_ECHANGE) != 0)
            return 0;
        InitAffaire();
        LitEchange(echange);
        return 1;
    }
    MessErreur(L"IDENTERR_2137", L"..\\Affaire", 288, &erreur, AfxGetLibraryModuleName(),
               IDS_PREFA_ERREUR_FICHIER, strChemin, L"");
    return 0;
}

CElemAffaire::CElemAffaire() : Valeur(0)
{
}

CElemAffaire::~CElemAffaire() = default;
