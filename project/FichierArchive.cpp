#include "project/FichierArchive.h"

#include <new>

namespace
{
// Memory that runs out inside a serialisation raises the framework's memory
// exception, as the framework's own allocations do: no standard exception leaves a
// record's load or save.
void Serialise(CArchive& ar, const std::function<void(CArchive&)>& serialise)
{
    try
    {
        serialise(ar);
    }
    catch (const std::bad_alloc&)
    {
        AfxThrowMemoryException();
    }
}
} // namespace

BOOL SerialiseFichier(LPCTSTR lpszChemin, bool bSauve, CFileException* pErreur,
                      const std::function<void(CArchive&)>& serialise)
{
    if (bSauve)
    {
        CMirrorFile file;
        if (!file.Open(lpszChemin, CFile::modeCreate | CFile::modeWrite | CFile::typeBinary, pErreur))
            return FALSE;
        CArchive ar(&file, CArchive::store, 4096);
        Serialise(ar, serialise);
        ar.Close();
        file.Close();
        return TRUE;
    }
    CFile file;
    if (!file.Open(lpszChemin, CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary, pErreur))
        return FALSE;
    CArchive ar(&file, CArchive::load, 4096);
    Serialise(ar, serialise);
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
