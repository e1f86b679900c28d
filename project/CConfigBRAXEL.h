// The workstation's identity (computer name and user name) and the lock records that
// carry it. The identity comes from "BRAXEL.CFG" in the current directory when it
// names it, otherwise from the operating system; a program (or a test) that wants
// another identity writes that file with GestionFichierCConfig(1) after setting the
// names.
#pragma once

#include "framework/Framework.h"

class CConfigBRAXEL : public CObject
{
    DECLARE_SERIAL(CConfigBRAXEL)
public:
    static const UINT TAILLE_LOCK = 512;
    static const DWORD VERSION_ARCHIVE = 1;

    CConfigBRAXEL();
    CConfigBRAXEL(const CConfigBRAXEL& source);
    ~CConfigBRAXEL() override;
    // Deliberately returns a copy of the target, not a reference.
    CConfigBRAXEL operator=(const CConfigBRAXEL& source);

    void CopyConfigBRAXEL(const CConfigBRAXEL& source);

    // Mode 1 writes "BRAXEL.CFG", other modes read it; mode 2 is quiet when the file
    // does not open, the others report it. True when the file opened. A malformed
    // file raises CArchiveException.
    bool GestionFichierCConfig(int nMode);
    void Serialize(CArchive& ar) override;

    // The 512-byte lock record: mode 2 reads the holder's names from the lock file
    // (both emptied first; a name that is no regular file, a symbolic link included,
    // fails with EINVAL), other modes write this object's names to it, replacing
    // any existing file. 0 on success, else the file helpers' error number.
    int GestionFichierLock(int nMode, CString strFichierLock);
    // Creates the lock file holding this object's names only if no lock file of that
    // name exists: two workstations cannot both take the same free lock. 0 on success,
    // EEXIST when the lock exists, another error number on failure.
    int CreeFichierLock(const CString& strFichierLock) const;
    // The lock record of this object's names (user at 0, computer at 256, each cut to
    // 255 bytes and zero-terminated).
    void RemplitLock(BYTE* pLock) const;

    // 1 when both names equal other's (case-sensitive), else 0.
    int MemeUtilisateur(CConfigBRAXEL& other);

    CString NomOrdinateur;
    CString NomUtilisateur;

private:
    // The identity of this workstation: "BRAXEL.CFG" first, then the system's names for
    // whatever it leaves empty.
    void GetNameUtilisateur();
};

// A per-workstation file-name suffix: ".computer.user", with the characters that
// file names cannot hold removed ("Comput" and "User" stand for empty parts).
CString DonneExtensionFichierMultiUtilisateur(CConfigBRAXEL& config);
