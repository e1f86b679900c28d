#include "project/CConfigBRAXEL.h"

#include "project/ChampsAnsi.h"
#include "project/FichierArchive.h"
#include "project/FichiersEtudes.h"
#include "project/MessErreur.h"

#include <cstring>

IMPLEMENT_SERIAL(CConfigBRAXEL, CObject, 1)

namespace
{
const wchar_t* const FICHIER_CONFIG = L"BRAXEL.CFG";
const std::size_t TAILLE_NOM = 256;

// A system name into a zeroed buffer of 256 characters; empty when the call fails.
CString NomSysteme(BOOL (*pfn)(LPWSTR, LPDWORD))
{
    wchar_t tampon[TAILLE_NOM] = {0};
    DWORD n = TAILLE_NOM;
    if (!pfn(tampon, &n))
        return CString();
    tampon[TAILLE_NOM - 1] = 0;
    return CString(tampon);
}
} // namespace

CConfigBRAXEL::CConfigBRAXEL()
{
    GetNameUtilisateur();
}

CConfigBRAXEL::CConfigBRAXEL(const CConfigBRAXEL& source) : CObject()
{
    CopyConfigBRAXEL(source);
}

CConfigBRAXEL::~CConfigBRAXEL() = default;

CConfigBRAXEL CConfigBRAXEL::operator=(const CConfigBRAXEL& source)
{
    if (this != &source)
        CopyConfigBRAXEL(source);
    return *this;
}

void CConfigBRAXEL::CopyConfigBRAXEL(const CConfigBRAXEL& source)
{
    NomOrdinateur = source.NomOrdinateur;
    NomUtilisateur = source.NomUtilisateur;
}

void CConfigBRAXEL::GetNameUtilisateur()
{
    NomOrdinateur.Empty();
    NomUtilisateur.Empty();
    try
    {
        GestionFichierCConfig(2);
    }
    catch (CArchiveException* e)
    {
        // A damaged configuration must not keep the workstation from working: it
        // then goes by the system's names.
        e->Delete();
        NomOrdinateur.Empty();
        NomUtilisateur.Empty();
    }
    if (NomOrdinateur.IsEmpty())
        NomOrdinateur = NomSysteme(&GetComputerNameW);
    if (NomUtilisateur.IsEmpty())
        NomUtilisateur = NomSysteme(&GetUserNameW);
}

bool CConfigBRAXEL::GestionFichierCConfig(int nMode)
{
    CFileException erreur;
    if (SerialiseFichierRapporte(FICHIER_CONFIG, nMode == 1, &erreur, [this](CArchive& ar) { Serialize(ar); }))
        return true;
    if (nMode != 1 && nMode != 2)
    {
        AfxMessageBox(erreur.GetMessageText(), MB_OK | MB_ICONEXCLAMATION);
        MessErreur(L"IDENTERR_2457", L"..\\ConfigBRAXEL", 70, AfxOsErrorToErrno(erreur.m_lOsError),
                   AfxGetLibraryModuleName(), IDS_PREFA_ERREUR_FICHIER, FICHIER_CONFIG, L"");
    }
    return false;
}

void CConfigBRAXEL::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << VERSION_ARCHIVE << NomOrdinateur << NomUtilisateur;
        return;
    }
    DWORD nVersion = 0;
    ar >> nVersion >> NomOrdinateur >> NomUtilisateur;
}

void CConfigBRAXEL::RemplitLock(BYTE* pLock) const
{
    std::memset(pLock, 0, TAILLE_LOCK);
    CopieChampAnsi(pLock, TAILLE_NOM - 1, NomUtilisateur);
    CopieChampAnsi(pLock + TAILLE_NOM, TAILLE_NOM - 1, NomOrdinateur);
}

int CConfigBRAXEL::GestionFichierLock(int nMode, CString strFichierLock)
{
    BYTE lock[TAILLE_LOCK];
    if (nMode == 2)
    {
        NomOrdinateur.Empty();
        NomUtilisateur.Empty();
        std::memset(lock, 0, sizeof lock);
        // Read as a regular file only: a link is not followed, a pipe not waited on.
        int nErreur = AfxReadRegularFile(strFichierLock, lock, TAILLE_LOCK);
        if (nErreur == 0)
        {
            NomUtilisateur = LitChampAnsi(lock, TAILLE_NOM);
            NomOrdinateur = LitChampAnsi(lock + TAILLE_NOM, TAILLE_NOM);
        }
        return nErreur;
    }
    RemplitLock(lock);
    return EcritureFichier(strFichierLock, lock, TAILLE_LOCK);
}

int CConfigBRAXEL::CreeFichierLock(const CString& strFichierLock) const
{
    BYTE lock[TAILLE_LOCK];
    RemplitLock(lock);
    return AfxCreateNewFile(strFichierLock, lock, TAILLE_LOCK);
}

int CConfigBRAXEL::MemeUtilisateur(CConfigBRAXEL& other)
{
    return NomUtilisateur == other.NomUtilisateur && NomOrdinateur == other.NomOrdinateur ? 1 : 0;
}

CString DonneExtensionFichierMultiUtilisateur(CConfigBRAXEL& config)
{
    // Characters that a file name cannot hold, removed until none is left.
    auto nettoie = [](CString s, LPCTSTR pszDefaut) {
        static const wchar_t interdits[] = L"/\\:*?\"<>|";
        for (const wchar_t* c = interdits; *c; ++c)
            while (s.Remove(*c) > 0)
            {
            }
        s.Trim();
        return s.IsEmpty() ? CString(pszDefaut) : s;
    };
    CString extension;
    extension.Format(L".%s.%s", nettoie(config.NomOrdinateur, L"Comput"), nettoie(config.NomUtilisateur, L"User"));
    return extension;
}
