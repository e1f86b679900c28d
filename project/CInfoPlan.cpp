#include "project/CInfoPlan.h"

#include "project/ChampsAnsi.h"
#include "project/FichierArchive.h"
#include "project/FichiersEtudes.h"
#include "project/MessErreur.h"

#include <memory>

IMPLEMENT_DYNCREATE(CInfoPlan, CObject)

namespace
{
// Dates go in the archive as the low 32 bits of the seconds count and come back
// unsigned, which carries them to 2106.
void EcritDate(CArchive& ar, __time64_t date)
{
    ar << (DWORD)(date & 0xFFFFFFFF);
}

__time64_t LitDate(CArchive& ar)
{
    DWORD mot = 0;
    ar >> mot;
    return (__time64_t)mot;
}

// Smallest stored revision: its mark, its date word and an empty narrow text.
const ULONGLONG TAILLE_MIN_MODIFICATION = 1 + 4 + 1;

// Appends a revision, which the record owns from then on; one that cannot be linked
// is deleted. Returns it.
CInfoModifications* Ajoute(CTypedPtrList<CPtrList, CInfoModifications*>& liste, std::unique_ptr<CInfoModifications> m)
{
    liste.AddTail(m.get());
    return m.release();
}
} // namespace

CInfoPlan::CInfoPlan() : Version(VERSION_ARCHIVE)
{
    InitCInfoPlan();
}

CInfoPlan::CInfoPlan(const CInfoPlan& source) : CObject(), Version(VERSION_ARCHIVE)
{
    // A copy that fails half-way frees its revisions (a constructor's destructor does
    // not run).
    try
    {
        CopyCInfoPlan(source);
    }
    catch (...)
    {
        VideModifications();
        throw;
    }
}

CInfoPlan::~CInfoPlan()
{
    VideModifications();
}

CInfoPlan CInfoPlan::operator=(const CInfoPlan& source)
{
    if (this != &source)
        CopyCInfoPlan(source);
    return *this;
}

void CInfoPlan::VideModifications()
{
    while (!Modifications.IsEmpty())
        delete Modifications.RemoveHead();
}

void CInfoPlan::InitCInfoPlan()
{
    Date1 = _time64(nullptr);
    Texte1.Empty();
    Texte2.Empty();
    Texte3.Empty();
    Valeur1 = Valeur2 = Valeur3 = Valeur4 = 0;
    VideModifications();
    Textes.RemoveAll();
    Date2 = Date1;
    Date3 = Date1;
    Nombre1 = 0;
    Nombre2 = -1;
    Texte4.Empty();
    Texte5.Empty();
}

void CInfoPlan::CopyCInfoPlan(const CInfoPlan& source)
{
    InitCInfoPlan();
    Version = source.Version;
    Date1 = source.Date1;
    Texte1 = source.Texte1;
    Texte2 = source.Texte2;
    Texte3 = source.Texte3;
    Valeur1 = source.Valeur1;
    Valeur2 = source.Valeur2;
    Valeur3 = source.Valeur3;
    Valeur4 = source.Valeur4;
    Nombre1 = source.Nombre1;
    Nombre2 = source.Nombre2;
    Date2 = source.Date2;
    Texte4 = source.Texte4;
    Date3 = source.Date3;
    for (POSITION pos = source.Modifications.GetHeadPosition(); pos;)
        Ajoute(Modifications, std::unique_ptr<CInfoModifications>(
                                  new CInfoModifications(*source.Modifications.GetNext(pos))));
    for (POSITION pos = source.Textes.GetHeadPosition(); pos;)
        Textes.AddTail(source.Textes.GetNext(pos));
    Texte5 = source.Texte5;
}

bool CInfoPlan::LitTexte3Ancien(const CString& strDossier, int nPlan)
{
    CString strChemin = Compose_Fichier_Etudes(strDossier, L"LUMACPLA.", nPlan);
    CFile file;
    if (!file.Open(strChemin, CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary))
        return false;
    // A file too short for the field gives what it holds of it.
    BYTE champ[13] = {0};
    try
    {
        if (file.GetLength() > 134)
        {
            file.Seek(134, CFile::begin);
            file.Read(champ, sizeof champ);
        }
    }
    catch (CFileException* e)
    {
        e->Delete();
    }
    Texte3 = LitChampAnsi(champ, sizeof champ);
    return true;
}

void CInfoPlan::Serialize(CArchive& ar, CString strDossier, int nPlan)
{
    if (ar.IsStoring())
    {
        ar << VERSION_ARCHIVE;
        EcritDate(ar, Date1);
        ar << Texte1 << Valeur1 << Valeur2;
        ar << (DWORD)Modifications.GetCount();
        for (POSITION pos = Modifications.GetHeadPosition(); pos;)
        {
            const CInfoModifications* m = Modifications.GetNext(pos);
            ar << m->Indice;
            EcritDate(ar, m->Date);
            ar << m->Texte;
        }
        ar << (DWORD)Textes.GetCount();
        for (POSITION pos = Textes.GetHeadPosition(); pos;)
            ar << Textes.GetNext(pos);
        ar << Nombre1 << Texte3 << Valeur3 << Valeur4 << Texte2 << Nombre2;
        EcritDate(ar, Date2);
        ar << Texte4;
        EcritDate(ar, Date3);
        // The second marks come last, one per revision, the count above serving.
        for (POSITION pos = Modifications.GetHeadPosition(); pos;)
            ar << Modifications.GetNext(pos)->Etat;
        ar << Texte5;
        return;
    }

    ar >> Version;
    Date1 = LitDate(ar);
    ar >> Texte1 >> Valeur1 >> Valeur2;

    VideModifications();
    DWORD n = 0;
    ar >> n;
    ar.CheckAvailable(n, TAILLE_MIN_MODIFICATION);
    for (DWORD i = 0; i < n; ++i)
    {
        CInfoModifications* m = Ajoute(Modifications, std::unique_ptr<CInfoModifications>(new CInfoModifications));
        ar >> m->Indice;
        m->Date = LitDate(ar);
        ar >> m->Texte;
    }

    Textes.RemoveAll();
    ar >> n;
    ar.CheckAvailable(n, 1);
    for (DWORD i = 0; i < n; ++i)
    {
        CString texte;
        ar >> texte;
        Textes.AddTail(texte);
    }

    if (Version == 1)
        Nombre1 = 0;
    else
        ar >> Nombre1;
    if (Version > 2)
        ar >> Texte3;
    else
        LitTexte3Ancien(strDossier, nPlan);
    if (Version < 4)
    {
        Valeur3 = Valeur1;
        Valeur4 = Valeur2;
    }
    else
        ar >> Valeur3 >> Valeur4;
    if (Version > 4)
        ar >> Texte2;
    else
        Texte2.Empty();
    if (Version <= 5)
        Nombre2 = -1;
    else
        ar >> Nombre2;
    if (Version > 6)
    {
        Date2 = LitDate(ar);
        ar >> Texte4;
        Date3 = LitDate(ar);
        ar.CheckAvailable(Modifications.GetCount(), 1);
        for (POSITION pos = Modifications.GetHeadPosition(); pos;)
            ar >> Modifications.GetNext(pos)->Etat;
    }
    else
    {
        Date2 = _time64(nullptr);
        Texte4.Empty();
        Date3 = Date2;
        for (POSITION pos = Modifications.GetHeadPosition(); pos;)
            Modifications.GetNext(pos)->Etat = ' ';
    }
    if (Version > 7)
        ar >> Texte5;
    else
        Texte5.Empty();
}

int CInfoPlan::GestionFichier(int nMode, CString strDossier, int nPlan)
{
    CString strChemin = Compose_Fichier_Etudes(strDossier, L"VORENPLA.", nPlan);
    if (nMode == 2 && _waccess(strChemin, 0) != 0)
        return LitTexte3Ancien(strDossier, nPlan) ? 1 : 0;

    CFileException erreur;
    if (SerialiseFichierRapporte(strChemin, nMode == 1, &erreur,
                                 [&](CArchive& ar) { Serialize(ar, strDossier, nPlan); }))
        return 1;
    if (nMode != 2)
        MessErreur(L"IDENTERR_1963", L"..\\Infoplan", 311, &erreur, AfxGetLibraryModuleName(),
                   IDS_PREFA_ERREUR_FICHIER, strChemin, L"");
    return 0;
}
