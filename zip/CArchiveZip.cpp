#include "zip/CArchiveZip.h"

#include "zip/CheminsZip.h"
#include "zip/CompresseurParallele.h"
#include "zip/NomsZip.h"
#include "zip/RapportZip.h"

#include <zip.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

namespace fs = std::filesystem;

namespace
{
const std::size_t kTampon = 256 * 1024;

// Unix file types in the high word of the external attributes.
const zip_uint32_t kTypeUnix = 0170000, kFichierUnix = 0100000, kDossierUnix = 0040000, kLienUnix = 0120000;

int ErrnoDe(const std::error_code& ec)
{
    int e = ec.default_error_condition().value();
    return e > 0 ? e : EIO;
}

// The 22-byte end of central directory of an archive without members.
const BYTE kArchiveVide[22] = {0x50, 0x4B, 0x05, 0x06};
} // namespace

CArchiveZip::CArchiveZip() = default;

CArchiveZip::~CArchiveZip()
{
    Abandonne();
}

void CArchiveZip::Abandonne()
{
    if (m_pZip)
        zip_discard(m_pZip);
    m_pZip = nullptr;
    m_pCompresseur.reset(); // after libzip has released the sources that refer to it
}

int CArchiveZip::ErreurLibzip(LPCTSTR lpszCle, int nLigne, const void* pErreur, LPCTSTR lpszMembre)
{
    zip_error_t e;
    zip_error_init(&e);
    if (pErreur)
        zip_error_set(&e, zip_error_code_zip(static_cast<const zip_error_t*>(pErreur)),
                      zip_error_code_system(static_cast<const zip_error_t*>(pErreur)));
    const int code = zip_error_code_zip(&e);
    const int systeme = zip_error_system_type(&e) == ZIP_ET_SYS ? zip_error_code_system(&e) : 0;
    CString texte(AfxUtf8ToWide(zip_error_strerror(&e)));
    zip_error_fini(&e);
    int raison = RaisonZip(code);
    if (raison >= 0)
    {
        bool membre = lpszMembre && *lpszMembre;
        // Inside a member, an inconsistency is damage to its data.
        if (membre && raison == CExceptionZip::archiveEndommagee)
            raison = CExceptionZip::donneesEndommagees;
        AfxThrowZipException(raison, m_strChemin, lpszMembre, raison == CExceptionZip::archiveEndommagee ? texte.GetString() : nullptr);
    }
    CString detail = lpszMembre && *lpszMembre ? CString(L"member ") + lpszMembre : CString();
    RapporteErreurZip(lpszCle, nLigne, ErrnoZip(code, systeme), m_strChemin, detail);
    return 0;
}

int CArchiveZip::Ouvre(LPCTSTR lpszChemin, int nMode)
{
    Abandonne();
    m_strChemin = lpszChemin;
    m_nMode = nMode;
    int flags = nMode == modeCreation ? ZIP_CREATE | ZIP_TRUNCATE
                : nMode == modeModification ? ZIP_CHECKCONS
                                            : ZIP_RDONLY | ZIP_CHECKCONS;
    // A new archive needs its folder: refused here on every system, where libzip on
    // Windows refuses at the open and elsewhere only at the write.
    const int nDossier = AfxPathFolderLength(m_strChemin);
    if (nMode == modeCreation && nDossier > 0 && AfxGetFileKind(m_strChemin.Left(nDossier)) != afxDirectory)
    {
        RapporteErreurZip(IDENTERR_ZIP_ECRITURE, __LINE__, ENOENT, m_strChemin, L"");
        return 0;
    }
    zip_error_t e;
    zip_error_init(&e);
    std::string chemin = CheminNatif(m_strChemin).u8string();
    zip_source_t* source = zip_source_file_create(chemin.c_str(), 0, -1, &e);
    zip_t* za = source ? zip_open_from_source(source, flags, &e) : nullptr;
    if (za == nullptr)
    {
        if (source)
            zip_source_free(source);
        struct Fin
        {
            zip_error_t* e;
            ~Fin() { zip_error_fini(e); }
        } fin{&e};
        return ErreurLibzip(IDENTERR_ZIP_OUVERTURE, __LINE__, &e, nullptr);
    }
    zip_error_fini(&e);
    m_pZip = za;
    if (!m_strMotDePasse.empty())
        zip_set_default_password(m_pZip, m_strMotDePasse.c_str());
    return 1;
}

int CArchiveZip::Ferme(const CProgressionZip& progression)
{
    if (m_pZip == nullptr)
        return 0;
    if (m_nMode == modeLecture)
    {
        Abandonne();
        return 1;
    }
    bool vide = true;
    for (zip_int64_t i = 0, n = zip_get_num_entries(m_pZip, 0); i < n && vide; ++i)
    {
        zip_stat_t st;
        vide = zip_stat_index(m_pZip, (zip_uint64_t)i, 0, &st) != 0; // removed members fail
    }
    if (vide)
    {
        // libzip would delete the file rather than write an archive without members.
        Abandonne();
        CMirrorFile f;
        CFileException fe;
        if (!f.Open(m_strChemin, CFile::modeCreate | CFile::modeWrite | CFile::typeBinary, &fe))
        {
            RapporteErreurZip(IDENTERR_ZIP_ECRITURE, __LINE__, fe.m_lOsError > 0 ? (int)fe.m_lOsError : EIO, m_strChemin, L"");
            return 0;
        }
        try
        {
            f.Write(kArchiveVide, sizeof kArchiveVide);
            f.Close();
        }
        catch (CFileException* pe)
        {
            int err = pe->m_lOsError > 0 ? (int)pe->m_lOsError : EIO;
            pe->Delete();
            f.Abort();
            RapporteErreurZip(IDENTERR_ZIP_ECRITURE, __LINE__, err, m_strChemin, L"");
            return 0;
        }
        return 1;
    }
    if (m_pCompresseur && progression)
    {
        const ULONGLONG total = std::max<ULONGLONG>(1, m_pCompresseur->TailleTotale());
        m_pCompresseur->DefinitProgression(
            [&progression, total](ULONGLONG n, const CString& nom) { progression((double)n / (double)total, nom); });
    }
    if (zip_close(m_pZip) == 0)
    {
        m_pZip = nullptr;
        m_pCompresseur.reset();
        return 1;
    }
    // A file to pack that could not be read is named; otherwise the archive's writing failed.
    CString strFichier;
    int nErreurFichier = m_pCompresseur ? m_pCompresseur->Erreur(strFichier) : 0;
    zip_error_t e;
    zip_error_init(&e);
    const zip_error_t* ze = zip_get_error(m_pZip);
    zip_error_set(&e, zip_error_code_zip(ze), zip_error_code_system(ze));
    Abandonne();
    struct Fin
    {
        zip_error_t* e;
        ~Fin() { zip_error_fini(e); }
    } fin{&e};
    if (nErreurFichier)
    {
        RapporteErreurZip(IDENTERR_ZIP_FICHIER, __LINE__, nErreurFichier, strFichier, m_strChemin);
        return 0;
    }
    return ErreurLibzip(IDENTERR_ZIP_ECRITURE, __LINE__, &e, nullptr);
}

void CArchiveZip::DefinitMotDePasse(LPCTSTR lpszMotDePasse, int nChiffrement)
{
    m_strMotDePasse = lpszMotDePasse ? AfxWideToUtf8(lpszMotDePasse) : std::string();
    m_nChiffrement = m_strMotDePasse.empty() ? chiffrementAucun : nChiffrement;
    if (m_pZip)
        zip_set_default_password(m_pZip, m_strMotDePasse.empty() ? nullptr : m_strMotDePasse.c_str());
}

void CArchiveZip::DefinitCompression(int nMethode, int nNiveau)
{
    m_nMethode = nMethode == methodeStockee ? methodeStockee : methodeDeflate;
    m_nNiveau = std::min(9, std::max(1, nNiveau));
}

void CArchiveZip::DefinitNombreThreads(int nThreads)
{
    m_nThreads = nThreads;
}

CCompresseurParallele& CArchiveZip::Compresseur()
{
    if (!m_pCompresseur)
    {
        int n = m_nThreads > 0 ? m_nThreads : (int)std::thread::hardware_concurrency();
        m_pCompresseur = std::make_unique<CCompresseurParallele>(std::min(16, std::max(1, n)));
    }
    return *m_pCompresseur;
}

int CArchiveZip::NombreMembres() const
{
    return m_pZip ? (int)zip_get_num_entries(m_pZip, 0) : 0;
}

CMembreZip CArchiveZip::DonneMembre(int nIndex) const
{
    zip_stat_t st;
    if (m_pZip == nullptr || nIndex < 0 || nIndex >= NombreMembres() ||
        zip_stat_index(m_pZip, (zip_uint64_t)nIndex, ZIP_FL_ENC_RAW, &st) != 0)
        AfxThrowInvalidArgException();
    CMembreZip m;
    const char* brut = zip_get_name(m_pZip, (zip_uint64_t)nIndex, ZIP_FL_ENC_RAW);
    // libzip converts unflagged names from code page 437 in its strict mode: a name
    // it gives back unchanged was flagged UTF-8 (or is plain ASCII).
    const char* strict = zip_get_name(m_pZip, (zip_uint64_t)nIndex, ZIP_FL_ENC_STRICT);
    zip_uint8_t systeme = 0;
    zip_uint32_t attributs = 0;
    zip_file_get_external_attributes(m_pZip, (zip_uint64_t)nIndex, 0, &systeme, &attributs);
    std::string nom = brut ? brut : "";
    m.Nom = DecodeNomZip(nom, strict && std::strcmp(nom.c_str(), strict) == 0, systeme);
    m.Taille = (st.valid & ZIP_STAT_SIZE) ? st.size : 0;
    m.TailleCompressee = (st.valid & ZIP_STAT_COMP_SIZE) ? st.comp_size : 0;
    m.Crc = (st.valid & ZIP_STAT_CRC) ? st.crc : 0;
    m.Date = (st.valid & ZIP_STAT_MTIME) ? (__time64_t)st.mtime : 0;
    m.Methode = (st.valid & ZIP_STAT_COMP_METHOD) ? st.comp_method : 0;
    m.Chiffrement = (st.valid & ZIP_STAT_ENCRYPTION_METHOD) ? st.encryption_method : 0;
    m.Systeme = systeme;
    m.Attributs = attributs;
    m.bDossier = !nom.empty() && nom.back() == '/';
    if (systeme == ZIP_OPSYS_UNIX)
    {
        zip_uint32_t type = (attributs >> 16) & kTypeUnix;
        m.bLienSymbolique = type == kLienUnix;
        m.bSpecial = type != 0 && type != kFichierUnix && type != kDossierUnix && type != kLienUnix;
    }
    return m;
}

int CArchiveZip::ChercheMembre(LPCTSTR lpszNom) const
{
    CString nom(lpszNom);
    for (int i = 0, n = NombreMembres(); i < n; ++i)
    {
        zip_stat_t st;
        if (zip_stat_index(m_pZip, (zip_uint64_t)i, 0, &st) == 0 && DonneMembre(i).Nom == nom)
            return i;
    }
    return -1;
}

int CArchiveZip::LitMembre(int nIndex, std::vector<BYTE>& contenu)
{
    CMembreZip m = DonneMembre(nIndex);
    std::vector<BYTE> lu;
    // The declaration bounds what is reserved; a false one is stopped while reading.
    lu.reserve((std::size_t)std::min<ULONGLONG>(m.Taille, 64u << 20));
    int r = LitMembre(nIndex, [&lu](const BYTE* p, std::size_t n) { lu.insert(lu.end(), p, p + n); });
    if (r)
        contenu.swap(lu);
    return r;
}

int CArchiveZip::LitMembre(int nIndex, const std::function<void(const BYTE*, std::size_t)>& recoit)
{
    const CMembreZip m = DonneMembre(nIndex);
    zip_file_t* f = zip_fopen_index(m_pZip, (zip_uint64_t)nIndex, 0);
    if (f == nullptr)
        return ErreurLibzip(IDENTERR_ZIP_LECTURE, __LINE__, zip_get_error(m_pZip), m.Nom);
    struct Fermeture
    {
        zip_file_t* f;
        ~Fermeture() { zip_fclose(f); }
    } fermeture{f};

    std::vector<BYTE> tampon((std::size_t)std::min<ULONGLONG>(kTampon, m.Taille + 1));
    ULONGLONG total = 0;
    for (;;)
    {
        // One byte more than declared is asked for at the end, so that a member that
        // inflates past its declaration is caught before its excess is handed over.
        zip_uint64_t voulu = (zip_uint64_t)std::min<ULONGLONG>(tampon.size(), m.Taille - total + 1);
        zip_int64_t n = zip_fread(f, tampon.data(), voulu);
        if (n < 0)
        {
            const zip_error_t* ze = zip_file_get_error(f);
            int raison = RaisonZip(zip_error_code_zip(ze));
            if (m.Chiffrement != chiffrementAucun &&
                (raison == CExceptionZip::crcIncorrect || raison == CExceptionZip::donneesEndommagees))
                AfxThrowZipException(raison, m_strChemin, m.Nom, L"or a wrong password");
            return ErreurLibzip(IDENTERR_ZIP_LECTURE, __LINE__, ze, m.Nom);
        }
        if (n == 0)
            break;
        total += (ULONGLONG)n;
        if (total > m.Taille)
        {
            CString detail;
            detail.Format(L"declared %llu bytes", (unsigned long long)m.Taille);
            AfxThrowZipException(CExceptionZip::tailleDepassee, m_strChemin, m.Nom, detail);
        }
        recoit(tampon.data(), (std::size_t)n);
    }
    if (total != m.Taille)
    {
        CString detail;
        detail.Format(L"%llu bytes of the %llu declared", (unsigned long long)total, (unsigned long long)m.Taille);
        AfxThrowZipException(CExceptionZip::donneesEndommagees, m_strChemin, m.Nom, detail);
    }
    return 1;
}

int CArchiveZip::AjouteSource(LPCTSTR lpszNom, void* pSource)
{
    zip_source_t* source = static_cast<zip_source_t*>(pSource);
    if (source == nullptr)
        return ErreurLibzip(IDENTERR_ZIP_ECRITURE, __LINE__, zip_get_error(m_pZip), lpszNom);
    zip_int64_t i = zip_file_add(m_pZip, EncodeNomZip(lpszNom).c_str(), source, ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE);
    if (i < 0)
    {
        zip_source_free(source);
        return ErreurLibzip(IDENTERR_ZIP_ECRITURE, __LINE__, zip_get_error(m_pZip), lpszNom);
    }
    // The source hands over deflated bytes as they are to be stored; for a stored
    // member the entry must say so, or libzip would deflate them itself.
    if (m_nMethode == methodeStockee)
        zip_set_file_compression(m_pZip, (zip_uint64_t)i, ZIP_CM_STORE, 0);
    if (m_nChiffrement != chiffrementAucun &&
        zip_file_set_encryption(m_pZip, (zip_uint64_t)i, (zip_uint16_t)m_nChiffrement, m_strMotDePasse.c_str()) != 0)
        return ErreurLibzip(IDENTERR_ZIP_ECRITURE, __LINE__, zip_get_error(m_pZip), lpszNom);
    return 1;
}

int CArchiveZip::AjouteFichier(LPCTSTR lpszNom, LPCTSTR lpszFichier)
{
    if (m_pZip == nullptr)
        return 0;
    std::error_code ec;
    fs::path chemin = CheminNatif(lpszFichier);
    fs::file_status etat = fs::status(chemin, ec);
    ULONGLONG taille = 0;
    __time64_t date = 0;
    if (!ec && !fs::is_regular_file(etat))
        ec = std::make_error_code(fs::is_directory(etat) ? std::errc::is_a_directory : std::errc::no_such_file_or_directory);
    if (!ec)
        taille = (ULONGLONG)fs::file_size(chemin, ec);
    if (!ec)
        date = DateFichier(chemin, ec);
    if (ec)
    {
        RapporteErreurZip(IDENTERR_ZIP_FICHIER, __LINE__, ErrnoDe(ec), lpszFichier, m_strChemin);
        return 0;
    }
    int niveau = m_nMethode == methodeStockee ? 0 : m_nNiveau;
    return AjouteSource(lpszNom, Compresseur().SourceFichier(m_pZip, lpszFichier, taille, date, niveau));
}

int CArchiveZip::AjouteTampon(LPCTSTR lpszNom, const void* pDonnees, std::size_t nTaille, __time64_t nDate)
{
    if (m_pZip == nullptr)
        return 0;
    const BYTE* p = static_cast<const BYTE*>(pDonnees);
    int niveau = m_nMethode == methodeStockee ? 0 : m_nNiveau;
    return AjouteSource(lpszNom, Compresseur().SourceTampon(m_pZip, std::vector<BYTE>(p, p + nTaille), nDate, niveau));
}

int CArchiveZip::AjouteDossier(LPCTSTR lpszNom, __time64_t nDate)
{
    if (m_pZip == nullptr)
        return 0;
    std::string nom = EncodeNomZip(lpszNom);
    while (!nom.empty() && nom.back() == '/')
        nom.pop_back();
    zip_int64_t i = zip_dir_add(m_pZip, nom.c_str(), ZIP_FL_ENC_UTF_8);
    // A folder holds no data: nothing to encrypt, so its date may be set directly.
    if (i < 0 || zip_file_set_mtime(m_pZip, (zip_uint64_t)i, (time_t)nDate, 0) != 0)
        return ErreurLibzip(IDENTERR_ZIP_ECRITURE, __LINE__, zip_get_error(m_pZip), lpszNom);
    return 1;
}

int CArchiveZip::SupprimeMembre(int nIndex)
{
    if (m_pZip == nullptr || nIndex < 0 || nIndex >= NombreMembres())
        return 0;
    if (zip_delete(m_pZip, (zip_uint64_t)nIndex) != 0)
        return ErreurLibzip(IDENTERR_ZIP_ECRITURE, __LINE__, zip_get_error(m_pZip), nullptr);
    return 1;
}
