// What a zip archive's contents can have wrong, as an archive exception: a damaged
// or hostile archive, a bad CRC, a missing or wrong password, a refused name. It is
// thrown as a pointer and caught as CArchiveException* (or CException*) like every
// framework exception; its message names the archive and, when there is one, the
// member. File errors (a folder that cannot be read, a full disk) are not thrown:
// they are reported through MessErreur with a 0 result.
#pragma once

#include "framework/Framework.h"

class CExceptionZip : public CArchiveException
{
    DECLARE_DYNAMIC(CExceptionZip)
public:
    enum Raison
    {
        archiveEndommagee,  // not a zip archive, truncated, inconsistent directory
        donneesEndommagees, // a member's data cannot be inflated or end early
        crcIncorrect,
        motDePasseRequis,
        motDePasseIncorrect,
        methodeNonPrise,    // compression or encryption method unknown to the library
        nomRefuse,          // a name that would leave the target folder, or that Windows cannot hold
        nomEnDouble,        // two members for one file (names compared without case)
        lienSymbolique,
        fichierSpecial,     // device, pipe or socket
        tropDeMembres,
        tailleExcessive,    // the declared sizes add up to more than allowed
        rapportExcessif,    // declared size far beyond what the compressed bytes can hold
        tailleDepassee,     // inflated past its declared size
        chevauchement,      // compressed data that cannot all fit in the archive
    };

    CExceptionZip(int nRaison, LPCTSTR lpszArchive, LPCTSTR lpszMembre = nullptr, LPCTSTR lpszDetail = nullptr);
    CString GetMessageText() const override;

    int m_nRaison;
    CString m_strMembre; // the member's name, empty for faults of the whole archive
    CString m_strDetail; // what was found, in words
};

[[noreturn]] void AfxThrowZipException(int nRaison, LPCTSTR lpszArchive, LPCTSTR lpszMembre = nullptr,
                                       LPCTSTR lpszDetail = nullptr);
