// Lock files that let several workstations share a project folder. A lock file holds
// the 512-byte identity record of its holder (CConfigBRAXEL). A lock of the caller's
// own identity is the caller's (a stale one left by a crash is taken over or
// removed); a lock of another identity refuses the operation and names its holder.
//
// Locks are created exclusively: the record is published under the lock's name only if
// no file of that name exists, so two workstations that take the same free lock at the
// same moment cannot both succeed; the one that loses is refused like any other
// workstation finding the lock taken.
#pragma once

#include "framework/Framework.h"
#include "project/CConfigBRAXEL.h"

// Application string resources of the lock messages (the application's own texts).
const UINT IDS_LOCK_DETENTEUR = 45773;        // holder of a ".lock": (user, computer)
const UINT IDS_LOCK_PLAN_LIBERATION = 45830;  // another's drawing lock at release: (drawing, folder, user, computer)
const UINT IDS_LOCK_PLAN = 45831;             // drawing held by another: (drawing, folder, user, computer)
const UINT IDS_LOCK_AFFAIRE = 45832;          // project held by another: (folder, user, computer)
const UINT IDS_LOCK_AFFAIRE_LIBERATION = 45833; // another's project lock at release: (folder, user, computer)

// The single-file lock: strFichier + ".lock". Without bActif every call succeeds and
// touches nothing.
// True when the file is free or locked by config's identity. Otherwise false, with
// strDetenteur set to resource 45773 formatted with the holder's user and computer
// names (an unreadable lock counts as another's, with empty names; so does anything
// but a regular file under the lock's name, a dangling link or a pipe). strDetenteur
// is emptied when no lock exists.
bool bLockFichierPossible(CConfigBRAXEL& config, CString strFichier, CString& strDetenteur, bool bActif);
// Takes the lock: false when another holds it; writes this identity's lock when none
// exists (an own lock is kept as it is). True otherwise, a failed write included.
// The lock is created exclusively, so of several workstations taking a free lock at
// the same moment exactly one succeeds.
bool bEcritLockFichier(CConfigBRAXEL& config, CString strFichier, CString& strDetenteur, bool bActif);
// Removes the lock; a failure is ignored.
void DetruitLockFichier(CString strFichier, bool bActif);

// The project and drawing locks ("LOCK_AFF", "LOCK_PLA.NN", "name.LCK" in the project
// folder strDossier). nLiberer 0 takes, non-zero releases, for the operation nOperation
// (2 to 12); nMessage non-zero shows the information boxes that name another holder.
//   operation     taking                                       releasing
//   2, 4, 11      project lock, no drawing held by another     project lock
//   3             as 2                                         nothing
//   5             project lock                                 project lock
//   6, 8, 10      project lock and drawing lock                both
//   9             as 6                                         project lock only
//   7             drawing lock, project lock only checked      drawing lock
//   12            project lock, named mode (strNom)            project lock Returns 1 when the operation may go on, 0 when it is refused or
// failed. With the environment record's multi-user switch off it returns 1 at once.
// Reading or deleting a lock file that fails is reported with MessErreur.
// A drawing lock found by the project-wide scan that cannot be read refuses the
// operation, as another's lock does.
int GererLock(int nLiberer, CString strDossier, int nPlan, int nOperation, int nMessage, CString strNom);
