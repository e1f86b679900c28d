// Opening a record file and running its serialisation through an archive, the same
// way for every record: saving goes through a mirror file (a temporary file of the
// same folder that replaces the old file only once every byte is written), loading
// opens the file read-only and denies other writers.
#pragma once

#include "framework/Framework.h"

#include <functional>

// Opens lpszChemin (bSauve: creation for writing, else reading), attaches an archive
// with a 4096-byte buffer and calls serialise(ar); then closes the archive and the
// file, which commits a save. Returns FALSE without calling serialise when the file
// does not open, with the cause in *pErreur. Archive exceptions of the serialisation
// and file exceptions of reading or writing reach the caller (running out of memory
// as CMemoryException); a failed save leaves the previous file untouched.
BOOL SerialiseFichier(LPCTSTR lpszChemin, bool bSauve, CFileException* pErreur,
                      const std::function<void(CArchive&)>& serialise);

// The same with the file errors of the whole operation (opening, reading, writing,
// replacing) returned in *pErreur as FALSE; archive exceptions still reach the
// caller. This is what the records' GestionFichier use: file errors are reported,
// malformed contents raise.
BOOL SerialiseFichierRapporte(LPCTSTR lpszChemin, bool bSauve, CFileException* pErreur,
                              const std::function<void(CArchive&)>& serialise);
