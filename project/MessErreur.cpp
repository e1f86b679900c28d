#include "project/MessErreur.h"

#include <cerrno>

CString MessErreurNomCause(int nErrno)
{
    switch (nErrno)
    {
    case ENOENT: return L"ENOENT";
    case E2BIG: return L"E2BIG";
    case ENOEXEC: return L"ENOEXEC";
    case EBADF: return L"EBADF";
    case ECHILD: return L"ECHILD";
    case EAGAIN: return L"EAGAIN";
    case ENOMEM: return L"ENOMEM";
    case EACCES: return L"EACCES";
    case EEXIST: return L"EEXIST";
    case EXDEV: return L"EXDEV";
    case EINVAL: return L"EINVAL";
    case EMFILE: return L"EMFILE";
    case ENOSPC: return L"ENOSPC";
    case EDOM: return L"EDOM";
    case ERANGE: return L"ERANGE";
    case EDEADLOCK: return L"EDEADLOCK";
    default: return L"INCONNUE";
    }
}

CString MessErreurTexteCause(int nCause)
{
    CString texte;
    if (nCause == MESSERREUR_ERREUR_SYSTEME)
    {
        DWORD err = GetLastError();
        texte.Format(L"%d - %s", (int)err, AfxGetSystemErrorText(err));
    }
    else
    {
        CString detail = MessErreurNomCause(nCause) + L" : " + AfxGetRuntimeErrorText(nCause);
        texte.Format(L"%d - %s", nCause, detail);
    }
    return texte;
}

CString MessErreurTexteCause(const CFileException* pCause)
{
    if (pCause == nullptr)
        return MessErreurTexteCause(0);
    wchar_t message[256];
    pCause->GetErrorMessage(message, 256); // at most 255 characters and the terminator
    CString texte;
    texte.Format(L"%d - %s", (int)pCause->m_lOsError, message);
    return texte;
}

CString MessErreurTexte(LPCTSTR lpszCle, LPCTSTR lpszSource, int nLigne, const CString& strCause,
                        LPCTSTR lpszModule, UINT nRessource, LPCTSTR lpszArg1, LPCTSTR lpszArg2)
{
    CString titre, arg1(lpszArg1), arg2(lpszArg2);
    if (nRessource != 0)
    {
        titre.LoadString(nRessource);
        titre += L"\n";
    }
    if (!arg1.IsEmpty())
        arg1 += L"\n";
    if (!arg2.IsEmpty())
        arg2 += L"\n";
    CString texte;
    texte.Format(L"%s%s%s__________________________________________________\n%s - %s - %d\n%s\n%s", titre, arg1,
                 arg2, CString(lpszSource), CString(lpszModule), nLigne, strCause, CString(lpszCle));
    return texte;
}

void MessErreur(LPCTSTR lpszCle, LPCTSTR lpszSource, int nLigne, int nCause, LPCTSTR lpszModule,
                UINT nRessource, LPCTSTR lpszArg1, LPCTSTR lpszArg2)
{
    CString texte = MessErreurTexte(lpszCle, lpszSource, nLigne, MessErreurTexteCause(nCause), lpszModule,
                                    nRessource, lpszArg1, lpszArg2);
    AfxMessageBox(texte, MB_ICONERROR | MB_OK);
}

void MessErreur(LPCTSTR lpszCle, LPCTSTR lpszSource, int nLigne, const CFileException* pCause,
                LPCTSTR lpszModule, UINT nRessource, LPCTSTR lpszArg1, LPCTSTR lpszArg2)
{
    CString texte = MessErreurTexte(lpszCle, lpszSource, nLigne, MessErreurTexteCause(pCause), lpszModule,
                                    nRessource, lpszArg1, lpszArg2);
    AfxMessageBox(texte, MB_ICONERROR | MB_OK);
}
