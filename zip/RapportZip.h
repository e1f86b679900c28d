// How the zip subsystem reports: file errors through MessErreur (with the
// archive's or file's path and what was being done), libzip's error codes sorted
// into file errors and faults of the archive's contents.
#pragma once

#include "framework/Framework.h"

// Message keys of the subsystem's file errors.
#define IDENTERR_ZIP_OUVERTURE L"IDENTERR_3101"   // the archive cannot be opened
#define IDENTERR_ZIP_ECRITURE L"IDENTERR_3102"    // the archive cannot be written
#define IDENTERR_ZIP_LECTURE L"IDENTERR_3103"     // the archive cannot be read
#define IDENTERR_ZIP_FICHIER L"IDENTERR_3104"     // a file to pack cannot be read
#define IDENTERR_ZIP_DOSSIER L"IDENTERR_3105"     // a folder to pack cannot be listed
#define IDENTERR_ZIP_CIBLE L"IDENTERR_3106"       // the target folder cannot take the unpacking
#define IDENTERR_ZIP_EXTRACTION L"IDENTERR_3107"  // an unpacked file cannot be written
#define IDENTERR_ZIP_DEPLACEMENT L"IDENTERR_3108" // the unpacked folder cannot be moved into place

// Shows a file error of the subsystem: nErrno's cause, the path and a detail.
void RapporteErreurZip(LPCTSTR lpszCle, int nLigne, int nErrno, LPCTSTR lpszChemin, LPCTSTR lpszDetail);

// The CExceptionZip reason of a libzip error code that is a fault of the archive's
// contents, or -1 for an error of the file system (or memory).
int RaisonZip(int nErreurLibzip);
// The errno value that stands for a libzip file error (its system error when it has
// one).
int ErrnoZip(int nErreurLibzip, int nErreurSysteme);
