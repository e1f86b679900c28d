// Duplication and deletion of a drawing's files.
#include "project/CInfoPlan.h"

#include "project/FichiersEtudes.h"

#include <vector>

namespace
{
// The name a drawing file gets for a prefix ("VORENPLA.") and a number, as the
// study-file composer writes it.
CString NomFichierPlan(const CString& strPrefixe, int nPlan)
{
    CString nom;
    nom.Format(L"%s%2.2d", strPrefixe, nPlan);
    return nom;
}

// The prefixes (name up to and including the last dot) of the drawing's files in
// the folder: every file "<prefix>.NN" whose number part is exactly the drawing's.
// Lock files belong to their holder, and names with a '~' are the temporary files of
// a save or a lock in progress.
std::vector<CString> PrefixesDuPlan(const CString& strDossier, int nPlan)
{
    std::vector<CString> prefixes;
    CString numero = NomFichierPlan(L"", nPlan);
    CFileFind finder;
    CString motif = Compose_Fichier_Affaire(strDossier, L"*.") + numero;
    BOOL encore = finder.FindFile(motif);
    while (encore)
    {
        encore = finder.FindNextFile();
        if (finder.IsDirectory())
            continue;
        CString nom = finder.GetFileName();
        int point = nom.ReverseFind(L'.');
        if (point < 0 || nom.Mid(point + 1) != numero || nom.Find(L'~') >= 0)
            continue;
        CString prefixe = nom.Left(point + 1);
        if (prefixe == L"LOCK_PLA.")
            continue;
        prefixes.push_back(prefixe);
    }
    return prefixes;
}

// Copies a whole file through a mirror file, so that an existing target is replaced
// only by a complete copy.
bool CopierFichierOK(const CString& strSource, const CString& strCible)
{
    try
    {
        CFile source;
        if (!source.Open(strSource, CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary))
            return false;
        CMirrorFile cible;
        if (!cible.Open(strCible, CFile::modeCreate | CFile::modeWrite | CFile::typeBinary))
            return false;
        std::vector<BYTE> tampon(65536);
        UINT n;
        while ((n = source.Read(tampon.data(), (UINT)tampon.size())) > 0)
            cible.Write(tampon.data(), n);
        cible.Close();
        return true;
    }
    catch (CFileException* e)
    {
        e->Delete();
        return false;
    }
}

// This library has no recycle bin to move files to: the files are deleted.
bool SuppressionFichiersEtCorbeille(const CString& strChemin)
{
    return _wunlink(strChemin) == 0;
}
} // namespace

int CopiePlanDuplication(CString strDossierSource, int nPlanSource, CString strDossierCible, int nPlanCible)
{
    if (strDossierSource == strDossierCible && nPlanSource == nPlanCible)
        return 1;
    CInfoPlan plan;
    if (plan.GestionFichier(2, strDossierSource, nPlanSource) != 1 ||
        _waccess(Compose_Fichier_Etudes(strDossierSource, L"VORENPLA.", nPlanSource), 0) != 0)
        return 0;
    for (const CString& prefixe : PrefixesDuPlan(strDossierSource, nPlanSource))
    {
        if (prefixe == L"VORENPLA.")
            continue;
        if (!CopierFichierOK(Compose_Fichier_Etudes(strDossierSource, prefixe, nPlanSource),
                             Compose_Fichier_Etudes(strDossierCible, prefixe, nPlanCible)))
            return 0;
    }
    return plan.GestionFichier(1, strDossierCible, nPlanCible);
}

int Suppression_Plan(CString strDossier, int nPlan)
{
    int nResultat = 1;
    for (const CString& prefixe : PrefixesDuPlan(strDossier, nPlan))
        if (!SuppressionFichiersEtCorbeille(Compose_Fichier_Etudes(strDossier, prefixe, nPlan)))
            nResultat = 0;
    return nResultat;
}
