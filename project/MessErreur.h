// The library's one reporter of file errors: builds the error box's text and shows it
// through the framework's message box (error icon, OK button).
//
// The box reads, line by line: the application's string resource nRessource (none for
// 0), argument 1 and argument 2 (each when not empty), fifty underscores, then
// "source - module - line", the cause text and the message key:
//     "%s%s%s__________________________________________________\n%s - %s - %d\n%s\n%s"
// The cause text is "%d - %s": an errno value with its symbolic name and the run-time's
// text ("2 - ENOENT : No such file or directory"), -2 for the last system error with
// the system's message, or a file exception's OS error number and its own message (cut
// to 255 characters).
#pragma once

#include "framework/Framework.h"

// The resource number of the library's error title in the application's strings.
const UINT IDS_PREFA_ERREUR_FICHIER = 45076;

// Cause of MessErreur that stands for the last system error (GetLastError).
const int MESSERREUR_ERREUR_SYSTEME = -2;

void MessErreur(LPCTSTR lpszCle, LPCTSTR lpszSource, int nLigne, int nCause, LPCTSTR lpszModule,
                UINT nRessource, LPCTSTR lpszArg1, LPCTSTR lpszArg2);
void MessErreur(LPCTSTR lpszCle, LPCTSTR lpszSource, int nLigne, const CFileException* pCause,
                LPCTSTR lpszModule, UINT nRessource, LPCTSTR lpszArg1, LPCTSTR lpszArg2);

// The texts that MessErreur shows, for callers that log rather than show.
CString MessErreurTexteCause(int nCause);
CString MessErreurTexteCause(const CFileException* pCause);
CString MessErreurTexte(LPCTSTR lpszCle, LPCTSTR lpszSource, int nLigne, const CString& strCause,
                        LPCTSTR lpszModule, UINT nRessource, LPCTSTR lpszArg1, LPCTSTR lpszArg2);

// The symbolic name of an errno value ("ENOENT" ...), "INCONNUE" for any other.
CString MessErreurNomCause(int nErrno);
