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

namespace
{
// What GererLock does for an operation, taking or releasing.
struct Actions
{
    bool bVerifieAffaire = false; // check the project lock
    bool bEcritAffaire = false;   // write the project lock
    bool bScrutePlans = false;    // refuse when another holds a drawing of the project
    bool bAnnule = false;         // remove the project lock written here when a later step fails
    bool bSupprimeAffaire = false;
    bool bPrendPlan = false;
    bool bSupprimePlan = false;
    bool bNomme = false;
};

Actions ActionsDe(int nOperation, bool bLiberer)
{
    Actions a;
    a.bNomme = nOperation == LOCK_NOMME;
    switch (nOperation)
    {
    case LOCK_AFFAIRE_ENTIERE: case LOCK_AFFAIRE_ENTIERE_GARDEE:
    case LOCK_AFFAIRE_ENTIERE_BIS: case LOCK_AFFAIRE_ENTIERE_TER:
        if (!bLiberer)
            a.bVerifieAffaire = a.bEcritAffaire = a.bScrutePlans = a.bAnnule = true;
        else
            a.bSupprimeAffaire = nOperation != LOCK_AFFAIRE_ENTIERE_GARDEE;
        break;
    case LOCK_AFFAIRE: case LOCK_NOMME:
        if (!bLiberer)
            a.bVerifieAffaire = a.bEcritAffaire = a.bAnnule = true;
        else
            a.bSupprimeAffaire = true;
        break;
    case LOCK_AFFAIRE_ET_PLAN: case LOCK_AFFAIRE_ET_PLAN_BIS:
    case LOCK_AFFAIRE_ET_PLAN_GARDE: case LOCK_AFFAIRE_ET_PLAN_TER:
        if (!bLiberer)
            a.bVerifieAffaire = a.bEcritAffaire = a.bPrendPlan = a.bAnnule = true;
        else
        {
            a.bSupprimeAffaire = true;
            a.bSupprimePlan = nOperation != LOCK_AFFAIRE_ET_PLAN_GARDE;
        }
        break;
    case LOCK_PLAN:
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

// One call of GererLock: what it does, on which files, for whom. Each step does nothing
// unless its action is set, and returns false when it refuses the operation.
class Verrouillage
{
public:
    Verrouillage(const Actions& a, const CString& strDossier, int nPlan, bool bMessage)
        : m_a(a), m_strDossier(strDossier), m_nPlan(nPlan), m_bMessage(bMessage),
          m_strLockAffaire(a.bNomme ? Compose_Fichier_Nomme(strDossier, L"LOCK_AFF", L"")
                                    : Compose_Fichier_Affaire(strDossier, L"LOCK_AFF"))
    {
    }

    bool VerifieAffaire();
    bool EcritAffaire();
    void SupprimeAffaire();
    bool ScrutePlans();
    bool PrendPlan(const CString& strLockPlan);
    void SupprimePlan(const CString& strLockPlan);

    // A later step refused: the project lock this call wrote goes.
    void Annule()
    {
        if (m_a.bAnnule && m_bAffaireEcrite)
            _wunlink(m_strLockAffaire);
    }

private:
    // True when an operation on a lock gave 0; otherwise its error is reported under lpszCle.
    static bool Reussi(int nErreur, LPCTSTR lpszCle, int nLigne, const CString& strChemin)
    {
        if (nErreur != 0)
            Rapporte(lpszCle, nLigne, nErreur, strChemin);
        return nErreur == 0;
    }
    // Reads the holder of an existing lock.
    static bool Lit(CConfigBRAXEL& detenteur, const CString& strChemin, LPCTSTR lpszCle, int nLigne)
    {
        return Reussi(LitDetenteur(detenteur, strChemin), lpszCle, nLigne, strChemin);
    }
    static bool Efface(const CString& strChemin, LPCTSTR lpszCle, int nLigne)
    {
        return Reussi(Supprime(strChemin), lpszCle, nLigne, strChemin);
    }
    // Releasing: our lock goes, another's stays. True when another holds it (autre
    // then names them); false when the lock was ours, absent or unreadable.
    bool Libere(const CString& strChemin, LPCTSTR lpszCleLecture, LPCTSTR lpszCleSuppression,
                CConfigBRAXEL& autre);

    const Actions m_a;
    const CString m_strDossier;
    const int m_nPlan;
    const bool m_bMessage;
    const CString m_strLockAffaire;
    CConfigBRAXEL m_moi;
    bool m_bAffaireEcrite = false;
};

bool Verrouillage::VerifieAffaire()
{
    if (!m_a.bVerifieAffaire || !Existe(m_strLockAffaire))
        return true;
    CConfigBRAXEL detenteur;
    if (!Lit(detenteur, m_strLockAffaire, L"IDENTERR_584", __LINE__))
        return false;
    if (!m_moi.MemeUtilisateur(detenteur))
    {
        MessageAffaire(m_bMessage, IDS_LOCK_AFFAIRE, m_strDossier, detenteur);
        return false;
    }
    // Our own lock, left by an earlier session: it is written anew by the next step.
    return !m_a.bEcritAffaire || Efface(m_strLockAffaire, L"IDENTERR_583", __LINE__);
}

// Written exclusively: losing a race is a refusal like any other.
bool Verrouillage::EcritAffaire()
{
    if (!m_a.bEcritAffaire)
        return true;
    CConfigBRAXEL detenteur;
    const int nErreur = CreeVerrou(m_moi, m_strLockAffaire, detenteur);
    if (nErreur == EEXIST)
        MessageAffaire(m_bMessage, IDS_LOCK_AFFAIRE, m_strDossier, detenteur);
    m_bAffaireEcrite = nErreur == 0;
    return m_bAffaireEcrite;
}

bool Verrouillage::Libere(const CString& strChemin, LPCTSTR lpszCleLecture, LPCTSTR lpszCleSuppression,
                          CConfigBRAXEL& autre)
{
    if (!Existe(strChemin) || !Lit(autre, strChemin, lpszCleLecture, __LINE__))
        return false;
    if (!m_moi.MemeUtilisateur(autre))
        return true;
    Efface(strChemin, lpszCleSuppression, __LINE__);
    return false;
}

void Verrouillage::SupprimeAffaire()
{
    CConfigBRAXEL autre;
    if (m_a.bSupprimeAffaire && Libere(m_strLockAffaire, L"IDENTERR_587", L"IDENTERR_586", autre))
        MessageAffaire(m_bMessage, IDS_LOCK_AFFAIRE_LIBERATION, m_strDossier, autre);
}

// Every drawing lock of the project: our stale ones go, another's refuses, and so does
// one that cannot be read or deleted.
bool Verrouillage::ScrutePlans()
{
    if (!m_a.bScrutePlans)
        return true;
    bool bErreur = false;
    bool bAutre = false;
    int nPlanAutre = 0;
    CConfigBRAXEL autre;
    CFileFind finder;
    BOOL encore = finder.FindFile(Compose_Fichier_Affaire(m_strDossier, L"LOCK_PLA.") + L"*");
    while (encore)
    {
        encore = finder.FindNextFile();
        const CString nom = finder.GetFileName();
        // Names with a '~' are locks still being created: not a lock yet.
        if (finder.IsDirectory() || nom.Find(L'~') >= 0)
            continue;
        const int nNumero = _wtoi(nom.Mid(nom.Find(L'.') + 1));
        const CString strLockPlan = Compose_Fichier_Etudes(m_strDossier, L"LOCK_PLA.", nNumero);
        CConfigBRAXEL detenteur;
        if (!Lit(detenteur, strLockPlan, L"IDENTERR_589", __LINE__))
            bErreur = true;
        else if (m_moi.MemeUtilisateur(detenteur))
            bErreur |= !Efface(strLockPlan, L"IDENTERR_588", __LINE__);
        else if (!bAutre)
        {
            bAutre = true;
            nPlanAutre = nNumero;
            autre = detenteur;
        }
    }
    if (bAutre)
        MessagePlan(m_bMessage, IDS_LOCK_PLAN, nPlanAutre, m_strDossier, autre);
    return !bAutre && !bErreur;
}

// A stale lock of our own is replaced; the new one is created exclusively.
bool Verrouillage::PrendPlan(const CString& strLockPlan)
{
    if (!m_a.bPrendPlan)
        return true;
    CConfigBRAXEL detenteur;
    if (Existe(strLockPlan))
    {
        if (!Lit(detenteur, strLockPlan, L"IDENTERR_591", __LINE__))
            return false;
        if (!m_moi.MemeUtilisateur(detenteur))
        {
            MessagePlan(m_bMessage, IDS_LOCK_PLAN, m_nPlan, m_strDossier, detenteur);
            return false;
        }
        if (!Efface(strLockPlan, L"IDENTERR_590", __LINE__))
            return false;
    }
    const int nErreur = CreeVerrou(m_moi, strLockPlan, detenteur);
    if (nErreur == EEXIST)
        MessagePlan(m_bMessage, IDS_LOCK_PLAN, m_nPlan, m_strDossier, detenteur);
    return nErreur == 0;
}

void Verrouillage::SupprimePlan(const CString& strLockPlan)
{
    CConfigBRAXEL autre;
    if (m_a.bSupprimePlan && Libere(strLockPlan, L"IDENTERR_594", L"IDENTERR_593", autre))
        MessagePlan(m_bMessage, IDS_LOCK_PLAN_LIBERATION, m_nPlan, m_strDossier, autre);
}
} // namespace

int GererLock(int nLiberer, CString strDossier, int nPlan, int nOperation, int nMessage, CString strNom)
{
    if (strDossier.IsEmpty() && nPlan < 1)
        return 1;
    CEnvironnement env;
    Lecture_Environ_Nom(env);
    if (env.nMultiUtilisateur == 0)
        return 1;

    const Actions a = ActionsDe(nOperation, nLiberer != 0);
    Verrouillage v(a, strDossier, nPlan, nMessage != 0);
    if (!v.VerifieAffaire() || !v.EcritAffaire())
        return 0;
    v.SupprimeAffaire();
    if (!v.ScrutePlans())
    {
        v.Annule();
        return 0;
    }

    // Without a drawing (or a name) the project lock was all there was to do.
    if (a.bNomme ? strNom.IsEmpty() : nPlan < 1)
        return 1;
    const CString strLockPlan = a.bNomme ? Compose_Fichier_Nomme(strDossier, strNom, L".LCK")
                                         : Compose_Fichier_Etudes(strDossier, L"LOCK_PLA.", nPlan);
    if (!v.PrendPlan(strLockPlan))
    {
        v.Annule();
        return 0;
    }
    v.SupprimePlan(strLockPlan);
    return 1;
}
