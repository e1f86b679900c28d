// A zip archive on libzip: open, list, read a member, add files, buffers and
// folders, remove members, and write the whole archive on Ferme.
//
// Writing goes to a temporary file beside the archive that replaces it only once
// complete, so a failed or abandoned write leaves the previous archive as it was.
// Names are written in UTF-8 with the language-encoding flag (pure ASCII names need
// none); members are deflated (level 6 by default) on every core while the archive
// is written. With a password, new members are encrypted with the traditional
// PKWARE cipher, which every unzip program reads, or with AES (WinZip's format) when
// asked; reading takes either.
//
// Errors: file errors (an archive or a file that cannot be opened, read or
// written) are shown through MessErreur and give a 0 result; contents that are
// damaged, hostile or encrypted with another password throw CExceptionZip (an
// archive exception) naming the archive and the member.
#pragma once

#include "framework/Framework.h"
#include "zip/CExceptionZip.h"

#include <functional>
#include <memory>
#include <vector>

struct zip;
class CCompresseurParallele;

// What the archive's central directory says of one member.
struct CMembreZip
{
    CString Nom;                    // '/' between folders; a folder's name ends with '/'
    ULONGLONG Taille = 0;           // declared size
    ULONGLONG TailleCompressee = 0; // stored bytes (encryption header included)
    DWORD Crc = 0;
    __time64_t Date = 0;            // last modification, to the 2 seconds of the format
    int Methode = 0;                // 0 stored, 8 deflated, other numbers of the format
    int Chiffrement = 0;            // CArchiveZip::chiffrement...
    int Systeme = 0;                // system that made it: 0 MS-DOS, 3 Unix, 10 Windows NTFS ...
    DWORD Attributs = 0;            // external attributes (Unix mode in the high word)
    bool bDossier = false;
    bool bLienSymbolique = false;   // a Unix symbolic link
    bool bSpecial = false;          // a Unix device, pipe or socket
};

// Called while a long operation runs: the fraction done (0 to 1) and the file or
// member being handled.
typedef std::function<void(double fraction, const CString& strNom)> CProgressionZip;

class CArchiveZip
{
public:
    enum
    {
        modeLecture = 0,      // reading only
        modeCreation = 1,     // a new archive, replacing any file of that name on Ferme
        modeModification = 2, // an existing archive, rewritten on Ferme
    };
    enum
    {
        methodeStockee = 0,
        methodeDeflate = 8,
    };
    enum
    {
        chiffrementAucun = 0,
        chiffrementPkware = 1,
        chiffrementAes128 = 0x0101,
        chiffrementAes192 = 0x0102,
        chiffrementAes256 = 0x0103,
    };

    CArchiveZip();
    ~CArchiveZip(); // abandons what Ferme did not write
    CArchiveZip(const CArchiveZip&) = delete;
    CArchiveZip& operator=(const CArchiveZip&) = delete;

    // 1 when open; 0 after a file error (reported). A file that is not a zip
    // archive, or a damaged one, throws CExceptionZip.
    int Ouvre(LPCTSTR lpszChemin, int nMode = modeLecture);
    // Writes the changes (creation and modification modes) and closes. 1 on success;
    // 0 after a file error (reported), the previous archive being left untouched.
    // An archive without members is written as the 22-byte empty archive.
    int Ferme(const CProgressionZip& progression = CProgressionZip());
    // Closes without writing anything.
    void Abandonne();
    BOOL EstOuverte() const { return m_pZip != nullptr; }
    const CString& DonneChemin() const { return m_strChemin; }

    // The password for reading encrypted members and for encrypting the members
    // added from now on (an empty or null password: none), and the cipher.
    void DefinitMotDePasse(LPCTSTR lpszMotDePasse, int nChiffrement = chiffrementPkware);
    // The method and zlib level (1-9) of the members added from now on.
    void DefinitCompression(int nMethode, int nNiveau = 6);
    // How many threads deflate members (default: the machine's cores).
    void DefinitNombreThreads(int nThreads);

    int NombreMembres() const;
    // The member nIndex (0 to NombreMembres() - 1); CInvalidArgException otherwise.
    CMembreZip DonneMembre(int nIndex) const;
    // The index of the member of that name (exact), -1 when there is none.
    int ChercheMembre(LPCTSTR lpszNom) const;

    // Reads a whole member: its size bounded by its declaration, its CRC checked.
    // 1 on success, 0 after a read error of the archive file (reported);
    // CExceptionZip for damaged data, a bad CRC or a wrong password.
    int LitMembre(int nIndex, std::vector<BYTE>& contenu);
    // The same, each piece handed to recoit as it is inflated (a file being
    // written, a hash). A CException thrown by recoit stops the reading and
    // reaches the caller.
    int LitMembre(int nIndex, const std::function<void(const BYTE*, std::size_t)>& recoit);

    // Adds (or replaces) a member from a file, from bytes, or an empty folder
    // ("name/"). The file is read when the archive is written; its size and date are
    // taken now. 1 on success, 0 after a file error (reported).
    int AjouteFichier(LPCTSTR lpszNom, LPCTSTR lpszFichier);
    int AjouteTampon(LPCTSTR lpszNom, const void* pDonnees, std::size_t nTaille, __time64_t nDate);
    int AjouteDossier(LPCTSTR lpszNom, __time64_t nDate);
    // Removes a member from the archive written by Ferme. 1 on success, 0 otherwise.
    int SupprimeMembre(int nIndex);

private:
    int AjouteSource(LPCTSTR lpszNom, void* pSource);
    CCompresseurParallele& Compresseur();
    int ErreurLibzip(LPCTSTR lpszCle, int nLigne, const void* pErreur, LPCTSTR lpszMembre);

    zip* m_pZip = nullptr;
    CString m_strChemin;
    int m_nMode = modeLecture;
    std::string m_strMotDePasse; // UTF-8
    int m_nChiffrement = chiffrementAucun;
    int m_nMethode = methodeDeflate;
    int m_nNiveau = 6;
    int m_nThreads = 0;
    std::unique_ptr<CCompresseurParallele> m_pCompresseur;
};
