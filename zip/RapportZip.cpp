#include "zip/RapportZip.h"

#include "project/MessErreur.h"
#include "zip/CExceptionZip.h"

#include <zip.h>

#include <cerrno>

void RapporteErreurZip(LPCTSTR lpszCle, int nLigne, int nErrno, LPCTSTR lpszChemin, LPCTSTR lpszDetail)
{
    MessErreur(lpszCle, L"..\\ArchiveZip", nLigne, nErrno, AfxGetLibraryModuleName(), IDS_PREFA_ERREUR_FICHIER,
               lpszChemin, lpszDetail);
}

int RaisonZip(int nErreurLibzip)
{
    switch (nErreurLibzip)
    {
    case ZIP_ER_NOZIP:
    case ZIP_ER_INCONS:
    case ZIP_ER_MULTIDISK:
        return CExceptionZip::archiveEndommagee;
    case ZIP_ER_CRC:
        return CExceptionZip::crcIncorrect;
    case ZIP_ER_COMPRESSED_DATA:
    case ZIP_ER_EOF:
        return CExceptionZip::donneesEndommagees;
    case ZIP_ER_NOPASSWD:
        return CExceptionZip::motDePasseRequis;
    case ZIP_ER_WRONGPASSWD:
        return CExceptionZip::motDePasseIncorrect;
    case ZIP_ER_COMPNOTSUPP:
    case ZIP_ER_ENCRNOTSUPP:
        return CExceptionZip::methodeNonPrise;
    default:
        return -1;
    }
}

int ErrnoZip(int nErreurLibzip, int nErreurSysteme)
{
    if (nErreurSysteme > 0)
        return nErreurSysteme;
    switch (nErreurLibzip)
    {
    case ZIP_ER_NOENT: return ENOENT;
    case ZIP_ER_EXISTS: return EEXIST;
    case ZIP_ER_MEMORY: return ENOMEM;
    case ZIP_ER_INVAL: return EINVAL;
    case ZIP_ER_RDONLY: return EACCES;
    default: return EIO;
    }
}
