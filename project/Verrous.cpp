#include "project/Verrous.h"

#include "project/Environnement.h"
#include "project/FichiersEtudes.h"
#include "project/MessErreur.h"

#include <cerrno>

namespace
{
const wchar_t* const MESSAGE_PAS_UN_VERROU =
    L"Not a regular file (a link, a pipe, a device or a folder): it cannot be a lock; remove it.";

// Whatever holds the name counts, a dangling link too: a lock name is never free
// because a link points nowhere.
bool Existe(const CString& strChemin)
{
    return AfxGetFileKind(strChemin) != afxNoFile;
}

void Rapporte(LPCTSTR lpszCle, int nLigne, int nCause, const CString& strChemin)
{
    // A lock that is no regular file is never read through (nor waited on, for a
    // pipe): the cause's number alone would not tell the user why.
    const AFX_FILE_KIND nature = AfxGetFileKind(strChemin);
    const bool bEtrange = nature == afxOtherFile || nature == afxDirectory;
    MessErreur(lpszCle, L"..\\General", nLigne, nCause, AfxGetLibraryModuleName(), IDS_PREFA_ERREUR_FICHIER,
               strChemin, bEtrange ? MESSAGE_PAS_UN_VERROU : L"");
}

// Deletes a lock file; 0 on success, else the run-time's error number.
int Supprime(const CString& strChemin)
{
    return _wunlink(strChemin) == 0 ? 0 : AfxGetErrno();
}

void Information(const CString& texte)
{
    AfxMessageBox(texte, MB_OK | MB_ICONINFORMATION);
}

CString Ressource(UINT nRessource)
{
    CString texte;
    texte.LoadString(nRessource);
    return texte;
}

// The box naming another holder of the project lock (resource 45832 or 45833).
void MessageAffaire(bool bMessage, UINT nRessource, const CString& strDossier, const CConfigBRAXEL& detenteur)
{
    if (!bMessage)
        return;
    CString texte;
    texte.Format(Ressource(nRessource), strDossier, detenteur.NomUtilisateur, detenteur.NomOrdinateur);
    Information(texte);
}

// The box naming another holder of a drawing lock (resource 45830 or 45831).
void MessagePlan(bool bMessage, UINT nRessource, int nPlan, const CString& strDossier,
                 const CConfigBRAXEL& detenteur)
{
    if (!bMessage)
        return;
    CString texte;
    texte.Format(Ressource(nRessource), nPlan, strDossier, detenteur.NomUtilisateur, detenteur.NomOrdinateur);
    Information(texte);
}

// What GererLock does for an operation, taking or releasing.
struct Actions
{
    bool bVerifieAffaire = false; // check the project lock
    bool bEcritAffaire = false;   // write the project lock
    bool bScruteePlans = false;   // refuse when another holds a drawing of the project
    bool bAnnule = false;         // remove the project lock written here when a later step fails
    bool bSupprimeAffaire = false;
    bool bPrendPlan = false;
    bool bSupprimePlan = false;
    bool bNomme = false;
};

Actions ActionsDe(int nOperation, bool bLiberer)
{
    Actions a;
    a.bNomme = nOperation == 12;
    switch (nOperation)
    {
    case 2: case 3: case 4: case 11:
        if (!bLiberer)
            a.bVerifieAffaire = a.bEcritAffaire = a.bScruteePlans = a.bAnnule = true;
        else
            a.bSupprimeAffaire = nOperation != 3; // releasing 3 deliberately keeps the lock
        break;
    case 5: case 12:
        if (!bLiberer)
            a.bVerifieAffaire = a.bEcritAffaire = a.bAnnule = true;
        else
            a.bSupprimeAffaire = true;
        break;
    case 6: case 8: case 9: case 10:
        if (!bLiberer)
            a.bVerifieAffaire = a.bEcritAffaire = a.bPrendPlan = a.bAnnule = true;
        else
        {
            a.bSupprimeAffaire = true;
            a.bSupprimePlan = nOperation != 9;
        }
        break;
    case 7:
        if (!bLiberer)
            a.bVerifieAffaire = a.bPrendPlan = true;
        else
            a.bSupprimePlan = true;
        break;
    default:
        break;
    }
    return a;
}

// The lock's holder read into detenteur; 0 or the read's error number.
int LitDetenteur(CConfigBRAXEL& detenteur, const CString& strChemin)
{
    return detenteur.GestionFichierLock(2, strChemin);
}
// Creates the lock exclusively. When the file appeared since it was tested (another
// workstation won the race) its holder goes to detenteur and EEXIST is returned; a
// lock of this very identity (a twin session of the workstation) counts as taken.
// 0 on success, else an error number.
int CreeVerrou(CConfigBRAXEL& moi, const CString& strChemin, CConfigBRAXEL& detenteur)
{
    int nErreur = moi.CreeFichierLock(strChemin);
    if (nErreur == EEXIST && LitDetenteur(detenteur, strChemin) == 0 &&
        moi.MemeUtilisateur(detenteur))
        return 0;
    return nErreur;
}
} // namespace

bool bLockFichierPossible(CConfigBRAXEL& config, CString strFichier, CString& strDetenteur, bool bActif)
{
    strDetenteur.Empty();
    if (!bActif)
        return true;
    CString strLock = strFichier + L".lock";
    if (!Existe(strLock))
        return true;
    CConfigBRAXEL detenteur;
    detenteur.GestionFichierLock(2, strLock); // unreadable: empty names, never ours
    strDetenteur.Format(Ressource(IDS_LOCK_DETENTEUR), detenteur.NomUtilisateur, detenteur.NomOrdinateur);
    return detenteur.NomUtilisateur == config.NomUtilisateur && detenteur.NomOrdinateur == config.NomOrdinateur;
}

bool bEcritLockFichier(CConfigBRAXEL& config, CString strFichier, CString& strDetenteur, bool bActif)
{
    strDetenteur.Empty();
    if (!bActif)
        return true;
    const CString strLock = strFichier + L".lock";
    // The creation itself is the test: it succeeds only where no lock exists, so a
    // lock that appears at any moment is found by it and read, never overlooked. A
    // lock released between the failed creation and its reading is tried again.
    for (int essai = 0; essai < 8; ++essai)
    {
        const int nErreur = config.CreeFichierLock(strLock);
        if (nErreur != EEXIST)
            return true; // created, or a failed write, which does not refuse the file
        if (!bLockFichierPossible(config, strFichier, strDetenteur, bActif))
            return false;
        if (!strDetenteur.IsEmpty())
            return true; // our own lock, kept as it is
    }
    return false; // a lock that keeps coming and going: another workstation is at work
}

void DetruitLockFichier(CString strFichier, bool bActif)
{
    if (bActif)
        _wunlink(strFichier + L".lock");
}

int GererLock(int nLiberer, CString strDossier, int nPlan, int nOperation, int nMessage, CString strNom)
{
    if (strDossier.IsEmpty() && nPlan < 1)
        return 1;
    CEnvironnement env;
    Lecture_Environ_Nom(env);
    if (env.nMultiUtilisateur == 0)
        return 1;

    const Actions a = ActionsDe(nOperation, nLiberer != 0);
    const bool bMessage = nMessage != 0;
    CConfigBRAXEL moi;
    const CString strLockAffaire =
        a.bNomme ? Compose_Fichier_Nomme(strDossier, L"LOCK_AFF", L"") : Compose_Fichier_Affaire(strDossier, L"LOCK_AFF");
    bool bAffaireEcrite = false;
    auto annule = [&]() {
        if (a.bAnnule && bAffaireEcrite)
            _wunlink(strLockAffaire);
    };
    int nErreur = 0;

    // Check the project lock.
    if (a.bVerifieAffaire && Existe(strLockAffaire))
    {
        CConfigBRAXEL detenteur;
        if ((nErreur = LitDetenteur(detenteur, strLockAffaire)) != 0)
        {
            Rapporte(L"IDENTERR_584", __LINE__, nErreur, strLockAffaire);
            return 0;
        }
        if (!moi.MemeUtilisateur(detenteur))
        {
            MessageAffaire(bMessage, IDS_LOCK_AFFAIRE, strDossier, detenteur);
            return 0;
        }
        // Our own lock, left by an earlier session: it is written anew below.
        if (a.bEcritAffaire && (nErreur = Supprime(strLockAffaire)) != 0)
        {
            Rapporte(L"IDENTERR_583", __LINE__, nErreur, strLockAffaire);
            return 0;
        }
    }

    // Write the project lock, exclusively: losing a race is a refusal like any other.
    if (a.bEcritAffaire)
    {
        CConfigBRAXEL detenteur;
        nErreur = CreeVerrou(moi, strLockAffaire, detenteur);
        if (nErreur == EEXIST)
            MessageAffaire(bMessage, IDS_LOCK_AFFAIRE, strDossier, detenteur);
        if (nErreur != 0)
            return 0;
        bAffaireEcrite = true;
    }

    // Remove our project lock.
    if (a.bSupprimeAffaire && Existe(strLockAffaire))
    {
        CConfigBRAXEL detenteur;
        if ((nErreur = LitDetenteur(detenteur, strLockAffaire)) != 0)
            Rapporte(L"IDENTERR_587", __LINE__, nErreur, strLockAffaire);
        else if (moi.MemeUtilisateur(detenteur))
        {
            if ((nErreur = Supprime(strLockAffaire)) != 0)
                Rapporte(L"IDENTERR_586", __LINE__, nErreur, strLockAffaire);
        }
        else
            MessageAffaire(bMessage, IDS_LOCK_AFFAIRE_LIBERATION, strDossier, detenteur);
    }

    // Every drawing lock of the project: our stale ones go, another's refuses.
    if (a.bScruteePlans)
    {
        bool bErreur = false;
        bool bAutre = false;
        int nPlanAutre = 0;
        CConfigBRAXEL autre;
        CFileFind finder;
        BOOL encore = finder.FindFile(Compose_Fichier_Affaire(strDossier, L"LOCK_PLA.") + L"*");
        while (encore)
        {
            encore = finder.FindNextFile();
            CString nom = finder.GetFileName();
            // Names with a '~' are locks still being created: not a lock yet.
            if (finder.IsDirectory() || nom.Find(L'~') >= 0)
                continue;
            int nNumero = _wtoi(nom.Mid(nom.Find(L'.') + 1));
            CString strLockPlan = Compose_Fichier_Etudes(strDossier, L"LOCK_PLA.", nNumero);
            CConfigBRAXEL detenteur;
            if ((nErreur = LitDetenteur(detenteur, strLockPlan)) != 0)
            {
                Rapporte(L"IDENTERR_589", __LINE__, nErreur, strLockPlan);
                bErreur = true;
            }
            else if (moi.MemeUtilisateur(detenteur))
            {
                if ((nErreur = Supprime(strLockPlan)) != 0)
                {
                    Rapporte(L"IDENTERR_588", __LINE__, nErreur, strLockPlan);
                    bErreur = true;
                }
            }
            else if (!bAutre)
            {
                bAutre = true;
                nPlanAutre = nNumero;
                autre = detenteur;
            }
        }
        if (bAutre || bErreur)
        {
            if (bAutre)
                MessagePlan(bMessage, IDS_LOCK_PLAN, nPlanAutre, strDossier, autre);
            annule();
            return 0;
        }
    }

    if (a.bNomme ? strNom.IsEmpty() : nPlan < 1)
        return 1;
    const CString strLockPlan = a.bNomme ? Compose_Fichier_Nomme(strDossier, strNom, L".LCK")
                                         : Compose_Fichier_Etudes(strDossier, L"LOCK_PLA.", nPlan);

    // Take the drawing lock.
    if (a.bPrendPlan)
    {
        if (Existe(strLockPlan))
        {
            CConfigBRAXEL detenteur;
            if ((nErreur = LitDetenteur(detenteur, strLockPlan)) != 0)
            {
                Rapporte(L"IDENTERR_591", __LINE__, nErreur, strLockPlan);
                annule();
                return 0;
            }
            if (!moi.MemeUtilisateur(detenteur))
            {
                MessagePlan(bMessage, IDS_LOCK_PLAN, nPlan, strDossier, detenteur);
                annule();
                return 0;
            }
            if ((nErreur = Supprime(strLockPlan)) != 0)
            {
                Rapporte(L"IDENTERR_590", __LINE__, nErreur, strLockPlan);
                annule();
                return 0;
            }
        }
        CConfigBRAXEL detenteur;
        nErreur = CreeVerrou(moi, strLockPlan, detenteur);
        if (nErreur == EEXIST)
            MessagePlan(bMessage, IDS_LOCK_PLAN, nPlan, strDossier, detenteur);
        if (nErreur != 0)
        {
            annule();
            return 0;
        }
    }

    // Release our drawing lock.
    if (a.bSupprimePlan && Existe(strLockPlan))
    {
        CConfigBRAXEL detenteur;
        if ((nErreur = LitDetenteur(detenteur, strLockPlan)) != 0)
            Rapporte(L"IDENTERR_594", __LINE__, nErreur, strLockPlan);
        else if (moi.MemeUtilisateur(detenteur))
        {
            if ((nErreur = Supprime(strLockPlan)) != 0)
                Rapporte(L"IDENTERR_593", __LINE__, nErreur, strLockPlan);
        }
        else
            MessagePlan(bMessage, IDS_LOCK_PLAN_LIBERATION, nPlan, strDossier, detenteur);
    }
    return 1;
}
