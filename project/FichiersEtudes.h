// File names of the suite's data folders and whole-record file input and output.
// Paths are composed with the platform's separator (backslash on Windows).
#pragma once

#include "framework/Framework.h"

// root/folder/prefixNN: a numbered file of a study (or project) folder, the number on
// two digits at least ("%2.2d"): Compose_Fichier_Etudes("E1", "TEMPER.", 3) gives
// <root>/E1/TEMPER.03.
CString Compose_Fichier_Etudes(LPCTSTR lpszDossier, LPCTSTR lpszPrefixe, int nNumero);
// root/folder/name: a fixed-name file of a project folder ("VORENAFF", "LOCK_AFF").
CString Compose_Fichier_Affaire(LPCTSTR lpszDossier, LPCTSTR lpszNom);
// root/folder/name + extension: a file named by the caller ("name" + ".LCK").
CString Compose_Fichier_Nomme(LPCTSTR lpszDossier, LPCTSTR lpszNom, LPCTSTR lpszExtension);
// root/folder: the folder itself.
CString Compose_Dossier_Affaire(LPCTSTR lpszDossier);

// Reads exactly nTaille bytes from the start of the file into pBuffer.
// 0 on success; otherwise an errno value (ENOENT, EACCES ..., EIO for a short file).
int LectureFichier(LPCTSTR lpszChemin, void* pBuffer, UINT nTaille);
// Writes the nTaille bytes as the whole file. The bytes go to a temporary file of the
// same folder that then replaces the old file, so a failure leaves the previous file
// intact. 0 on success, otherwise an errno value.
int EcritureFichier(LPCTSTR lpszChemin, const void* pBuffer, UINT nTaille);
