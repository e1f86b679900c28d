#include "project/FichiersEtudes.h"

#include "project/Environnement.h"

#include <cerrno>

namespace
{
CString Racine()
{
    CEnvironnement env;
    Lecture_Environ_Nom(env);
    return env.strRacine;
}

// root, folder and name joined with the platform's separator ("%s\\%s\\%s" on Windows).
CString Joindre(const CString& racine, LPCTSTR lpszDossier, const CString& nom)
{
    CString sep(AfxPathSeparator());
    CString chemin;
    chemin.Format(L"%s%s%s%s%s", racine, sep, CString(lpszDossier), sep, nom);
    return chemin;
}
} // namespace

CString Compose_Fichier_Etudes(LPCTSTR lpszDossier, LPCTSTR lpszPrefixe, int nNumero)
{
    CString nom;
    nom.Format(L"%s%2.2d", CString(lpszPrefixe), nNumero);
    return Joindre(Racine(), lpszDossier, nom);
}

CString Compose_Fichier_Affaire(LPCTSTR lpszDossier, LPCTSTR lpszNom)
{
    return Joindre(Racine(), lpszDossier, CString(lpszNom));
}

CString Compose_Fichier_Nomme(LPCTSTR lpszDossier, LPCTSTR lpszNom, LPCTSTR lpszExtension)
{
    return Joindre(Racine(), lpszDossier, CString(lpszNom) + CString(lpszExtension));
}

CString Compose_Dossier_Affaire(LPCTSTR lpszDossier)
{
    CString chemin;
    chemin.Format(L"%s%s%s", Racine(), CString(AfxPathSeparator()), CString(lpszDossier));
    return chemin;
}

int LectureFichier(LPCTSTR lpszChemin, void* pBuffer, UINT nTaille)
{
    CFile file;
    CFileException e;
    if (!file.Open(lpszChemin, CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary, &e))
        return e.m_lOsError > 0 ? AfxOsErrorToErrno(e.m_lOsError) : EIO;
    try
    {
        UINT n = file.Read(pBuffer, nTaille);
        file.Close();
        return n == nTaille ? 0 : EIO;
    }
    catch (CFileException* pe)
    {
        int err = pe->m_lOsError > 0 ? AfxOsErrorToErrno(pe->m_lOsError) : EIO;
        pe->Delete();
        return err;
    }
}

int EcritureFichier(LPCTSTR lpszChemin, const void* pBuffer, UINT nTaille)
{
    CMirrorFile file;
    CFileException e;
    if (!file.Open(lpszChemin, CFile::modeCreate | CFile::modeWrite | CFile::typeBinary, &e))
        return e.m_lOsError > 0 ? AfxOsErrorToErrno(e.m_lOsError) : EIO;
    try
    {
        file.Write(pBuffer, nTaille);
        file.Close();
        return 0;
    }
    catch (CFileException* pe)
    {
        int err = pe->m_lOsError > 0 ? AfxOsErrorToErrno(pe->m_lOsError) : EIO;
        pe->Delete();
        file.Abort();
        return err;
    }
}
