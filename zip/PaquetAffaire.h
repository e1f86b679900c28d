// Packing a project folder into one zip archive to send it, and unpacking such an
// archive into a project folder.
//
// Packing takes every file and folder under the project folder (its records, its
// drawing files, its study folders), with names relative to it, and leaves out the
// lock files and the temporary files of saves in progress; symbolic links are not
// followed. Unpacking is safe against hostile archives: every member is checked
// before anything is written (names that would leave the folder or that Windows
// cannot hold, links, duplicates, sizes against the limits below), the members are
// inflated into a temporary folder beside the target, each bounded by its declared
// size and checked against its CRC, and the folder is moved into place only when
// every member has come out whole. On any fault the target is left as it was.
#pragma once

#include "zip/CArchiveZip.h"

// Bounds of what an archive may make an unpacking write.
struct CLimitesZip
{
    ULONGLONG nMembresMax = 100000;
    ULONGLONG nTailleMax = 8ull << 30; // the declared sizes added up
    // Declared size over compressed size, for members of 1 MiB or more. Deflate
    // cannot exceed about 1032; real project files stay far below 1000.
    ULONGLONG nRapportMax = 1000;
};

// What a packing or an unpacking did.
struct CBilanZip
{
    int nFichiers = 0;
    int nDossiers = 0;
    int nExclus = 0;            // lock and temporary files left out
    int nIgnores = 0;           // symbolic links and special files not packed
    ULONGLONG nOctets = 0;      // size of the files
    ULONGLONG nOctetsArchive = 0;
};

// TRUE for the name of a file that belongs to a workstation or a moment rather than
// to the project: a lock (".lock" beside a data file, "LOCK_AFF", "LOCK_PLA.nn",
// "name.LCK") or a temporary file of a save in progress ("name.~xxxxxxxx").
// Letters compare without case, as Windows names do.
BOOL Est_Fichier_Transitoire(LPCTSTR lpszNom);

// Packs the project folder lpszDossier (a path) into the archive lpszArchive,
// encrypted when a password is given. 1 on success; 0 after a file error (shown
// through MessErreur), any previous archive of that name being left untouched.
int Compresse_Affaire(LPCTSTR lpszDossier, LPCTSTR lpszArchive, LPCTSTR lpszMotDePasse = nullptr,
                      int nChiffrement = CArchiveZip::chiffrementPkware,
                      const CProgressionZip& progression = CProgressionZip(), CBilanZip* pBilan = nullptr);

// Unpacks lpszArchive into the folder lpszDossier (a path), which must not exist or
// be empty; its parent folder must exist. Lock and temporary files found in the
// archive are left out. 1 on success; 0 after a file error (shown through
// MessErreur); CExceptionZip for a damaged or hostile archive or a wrong password.
// In every failure the target is left as it was and nothing else remains.
int Decompresse_Affaire(LPCTSTR lpszArchive, LPCTSTR lpszDossier, LPCTSTR lpszMotDePasse = nullptr,
                        const CProgressionZip& progression = CProgressionZip(), CBilanZip* pBilan = nullptr,
                        const CLimitesZip& limites = CLimitesZip());
