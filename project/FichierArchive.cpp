#include "project/FichierArchive.h"

BOOL SerialiseFichier(LPCTSTR lpszChemin, bool bSauve, CFileException* pErreur,
                      const std::function<void(CArchive&)>& serialise)
{
    if (bSauve)
    {
        CMirrorFile file;
        if (!file.Open(lpszChemin, CFile::modeCreate | CFile::modeWrite | CFile::typeBinary, pErreur))
            return FALSE;
        CArchive ar(&file, CArchive::store, 4096);
        serialise(ar);
        ar.Close();
        file.Close();
        return TRUE;
    }
    CFile file;
    if (!file.Open(lpszChemin, CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary, pErreur))
        return FALSE;
    CArchive ar(&file, CArchive::load, 4096);
    serialise(ar);
    ar.Close();
    file.Close();
    return TRUE;
}

BOOL SerialiseFichierRapporte(LPCTSTR lpszChemin, bool bSauve, CFileException* pErreur,
                              const std::function<void(CArchive&)>& serialise)
{
    try
    {
        return SerialiseFichier(lpszChemin, bSauve, pErreur, serialise);
    }
    catch (CFileException* e)
    {
        if (pErreur)
        {
            pErreur->m_cause = e->m_cause;
            pErreur->m_lOsError = e->m_lOsError;
            pErreur->m_strFileName = lpszChemin;
        }
        e->Delete();
        return FALSE;
    }
}
