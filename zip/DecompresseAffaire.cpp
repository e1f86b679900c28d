#include "zip/PaquetAffaire.h"

#include "zip/CheminsZip.h"
#include "zip/NomsZip.h"
#include "zip/RapportZip.h"

#include <algorithm>
#include <cerrno>
#include <cwctype>
#include <map>
#include <random>
#include <set>

namespace fs = std::filesystem;

namespace
{
const ULONGLONG kTailleRapport = 1u << 20; // members below this size are not held to the ratio

struct Membre
{
    int index;
    CString relatif; // checked, '/' separated
    bool dossier;
    ULONGLONG taille;
    __time64_t date;
};

// Windows compares names without case: two members that differ only by case
// would be one file there.
std::wstring Replie(const CString& s)
{
    std::wstring r = s.Std();
    for (wchar_t& c : r)
        c = (wchar_t)std::towupper(c);
    return r;
}

CString Nombre(ULONGLONG n)
{
    CString s;
    s.Format(L"%llu", (unsigned long long)n);
    return s;
}

// Checks every member before anything is written, and gives those to unpack.
std::vector<Membre> Inspecte(CArchiveZip& zip, const CLimitesZip& limites, CBilanZip& bilan, ULONGLONG& nTotal)
{
    const CString& archive = zip.DonneChemin();
    const int n = zip.NombreMembres();
    if ((ULONGLONG)n > limites.nMembresMax)
        AfxThrowZipException(CExceptionZip::tropDeMembres, archive, nullptr,
                             Nombre((ULONGLONG)n) + L" members, at most " + Nombre(limites.nMembresMax));
    std::error_code ec;
    const ULONGLONG tailleArchive = (ULONGLONG)fs::file_size(CheminNatif(archive), ec);

    std::vector<Membre> membres;
    std::map<std::wstring, CString> fichiers; // folded name -> member name
    std::set<std::wstring> dossiers;          // folders, given or implied by a member's path
    ULONGLONG total = 0, compresse = 0;
    for (int i = 0; i < n; ++i)
    {
        const CMembreZip m = zip.DonneMembre(i);
        if (m.bLienSymbolique)
            AfxThrowZipException(CExceptionZip::lienSymbolique, archive, m.Nom);
        if (m.bSpecial)
            AfxThrowZipException(CExceptionZip::fichierSpecial, archive, m.Nom);
        CString relatif, raison;
        if (!VerifieNomZip(m.Nom, relatif, raison))
            AfxThrowZipException(CExceptionZip::nomRefuse, archive, m.Nom, raison);
        int barre = relatif.ReverseFind(L'/');
        if (!m.bDossier && Est_Fichier_Transitoire(relatif.Mid(barre + 1)))
        {
            ++bilan.nExclus;
            continue;
        }
        if (m.Taille >= kTailleRapport && m.Taille / std::max<ULONGLONG>(1, m.TailleCompressee) >= limites.nRapportMax)
            AfxThrowZipException(CExceptionZip::rapportExcessif, archive, m.Nom,
                                 Nombre(m.Taille) + L" bytes from " + Nombre(m.TailleCompressee) +
                                     L" compressed, ratio limit " + Nombre(limites.nRapportMax));
        if (m.Taille > limites.nTailleMax - std::min(total, limites.nTailleMax))
            AfxThrowZipException(CExceptionZip::tailleExcessive, archive, nullptr,
                                 L"more than " + Nombre(limites.nTailleMax) + L" bytes");
        total += m.Taille;
        compresse += m.TailleCompressee;

        const std::wstring cle = Replie(relatif);
        if (m.bDossier)
            dossiers.insert(cle);
        else if (!fichiers.emplace(cle, m.Nom).second)
            AfxThrowZipException(CExceptionZip::nomEnDouble, archive, m.Nom, L"also \"" + fichiers[cle] + L"\"");
        for (std::size_t k = cle.find(L'/'); k != std::wstring::npos; k = cle.find(L'/', k + 1))
            dossiers.insert(cle.substr(0, k));
        membres.push_back({i, relatif, m.bDossier, m.Taille, m.Date});
    }
    // A file where another member needs a folder.
    for (const auto& f : fichiers)
        if (dossiers.count(f.first))
            AfxThrowZipException(CExceptionZip::nomEnDouble, archive, f.second, L"also a folder");
    // Members whose compressed data add up to more than the archive holds share
    // their bytes: the overlapping-member bomb.
    if (compresse > tailleArchive)
        AfxThrowZipException(CExceptionZip::chevauchement, archive, nullptr,
                             Nombre(compresse) + L" compressed bytes in an archive of " + Nombre(tailleArchive));
    nTotal = total;
    return membres;
}

// The temporary folder beside the target, removed with its contents unless kept.
class DossierTemporaire
{
public:
    explicit DossierTemporaire(const fs::path& cible)
    {
        std::random_device rd;
        for (int essai = 0; essai < 16 && m_chemin.empty(); ++essai)
        {
            wchar_t suffixe[16];
            std::swprintf(suffixe, 16, L".~%08x", (unsigned)rd());
            fs::path p = cible;
            p += fs::u8path(AfxWideToUtf8(suffixe));
            std::error_code ec;
            if (fs::create_directory(p, ec))
                m_chemin = p;
            else if (ec)
            {
                m_erreur = ec;
                return;
            }
        }
        if (m_chemin.empty())
            m_erreur = std::make_error_code(std::errc::file_exists);
    }
    ~DossierTemporaire()
    {
        std::error_code ec;
        if (!m_chemin.empty())
            fs::remove_all(m_chemin, ec);
    }
    const fs::path& Chemin() const { return m_chemin; }
    const std::error_code& Erreur() const { return m_erreur; }
    void Garde() { m_chemin.clear(); }

private:
    fs::path m_chemin;
    std::error_code m_erreur;
};

int ErrnoDe(const std::error_code& ec)
{
    int e = ec.default_error_condition().value();
    return e > 0 ? e : EIO;
}

// Writes one member to its file; 0 after a reported file error.
int ExtraitFichier(CArchiveZip& zip, const Membre& m, const fs::path& chemin, ULONGLONG& nFaits, ULONGLONG nTotal,
                   const CProgressionZip& progression)
{
    CFile sortie;
    CFileException fe;
    const CString strChemin = CheminTexte(chemin);
    if (!sortie.Open(strChemin, CFile::modeCreate | CFile::modeWrite | CFile::typeBinary, &fe))
    {
        RapporteErreurZip(IDENTERR_ZIP_EXTRACTION, __LINE__, fe.m_lOsError > 0 ? (int)fe.m_lOsError : EIO, strChemin,
                          zip.DonneChemin());
        return 0;
    }
    try
    {
        int r = zip.LitMembre(m.index, [&](const BYTE* p, std::size_t n) {
            sortie.Write(p, (UINT)n);
            nFaits += n;
            if (progression)
                progression((double)nFaits / (double)std::max<ULONGLONG>(1, nTotal), m.relatif);
        });
        if (!r)
            return 0;
        sortie.Close();
    }
    catch (CFileException* pe)
    {
        int err = pe->m_lOsError > 0 ? (int)pe->m_lOsError : EIO;
        pe->Delete();
        RapporteErreurZip(IDENTERR_ZIP_EXTRACTION, __LINE__, err, strChemin, zip.DonneChemin());
        return 0;
    }
    std::error_code ec;
    DefinitDateFichier(chemin, m.date, ec); // a date that cannot be set is not worth failing for
    return 1;
}
} // namespace

int Decompresse_Affaire(LPCTSTR lpszArchive, LPCTSTR lpszDossier, LPCTSTR lpszMotDePasse,
                        const CProgressionZip& progression, CBilanZip* pBilan, const CLimitesZip& limites)
{
    CBilanZip bilan;
    CArchiveZip zip;
    zip.DefinitMotDePasse(lpszMotDePasse);
    if (!zip.Ouvre(lpszArchive, CArchiveZip::modeLecture))
        return 0;
    ULONGLONG total = 0;
    const std::vector<Membre> membres = Inspecte(zip, limites, bilan, total);

    // The target: absent or an empty folder, in an existing folder with room enough.
    std::error_code ec;
    const fs::path cible = fs::absolute(CheminNatif(lpszDossier), ec).lexically_normal();
    fs::path parent = cible.parent_path();
    fs::file_status etat = fs::symlink_status(cible, ec);
    bool existe = fs::exists(etat);
    if (existe && (!fs::is_directory(etat) || !fs::is_empty(cible, ec)))
    {
        RapporteErreurZip(IDENTERR_ZIP_CIBLE, __LINE__, EEXIST, lpszDossier, L"the folder exists and is not empty");
        return 0;
    }
    if (!fs::is_directory(parent, ec))
    {
        RapporteErreurZip(IDENTERR_ZIP_CIBLE, __LINE__, ENOENT, CheminTexte(parent), L"");
        return 0;
    }
    fs::space_info place = fs::space(parent, ec);
    if (!ec && place.available < total)
    {
        RapporteErreurZip(IDENTERR_ZIP_CIBLE, __LINE__, ENOSPC, lpszDossier,
                          Nombre(total) + L" bytes to write, " + Nombre(place.available) + L" free");
        return 0;
    }

    DossierTemporaire temporaire(cible);
    if (temporaire.Chemin().empty())
    {
        RapporteErreurZip(IDENTERR_ZIP_CIBLE, __LINE__, ErrnoDe(temporaire.Erreur()), CheminTexte(parent), L"");
        return 0;
    }
    ULONGLONG faits = 0;
    std::vector<const Membre*> dates; // folders, dated once their contents are written
    for (const Membre& m : membres)
    {
        const fs::path chemin = temporaire.Chemin() / fs::u8path(AfxWideToUtf8(m.relatif.Std()));
        fs::create_directories(m.dossier ? chemin : chemin.parent_path(), ec);
        if (ec)
        {
            RapporteErreurZip(IDENTERR_ZIP_EXTRACTION, __LINE__, ErrnoDe(ec), CheminTexte(chemin), lpszArchive);
            return 0;
        }
        if (m.dossier)
        {
            dates.push_back(&m);
            ++bilan.nDossiers;
            continue;
        }
        if (!ExtraitFichier(zip, m, chemin, faits, total, progression))
            return 0;
        ++bilan.nFichiers;
        bilan.nOctets += m.taille;
    }
    // Deepest folders first, so that dating one does not touch its parent afterwards.
    std::sort(dates.begin(), dates.end(),
              [](const Membre* a, const Membre* b) { return a->relatif.GetLength() > b->relatif.GetLength(); });
    for (const Membre* m : dates)
        DefinitDateFichier(temporaire.Chemin() / fs::u8path(AfxWideToUtf8(m->relatif.Std())), m->date, ec);

    if (existe)
        fs::remove(cible, ec); // an empty folder, replaced by the unpacked one
    fs::rename(temporaire.Chemin(), cible, ec);
    if (ec)
    {
        RapporteErreurZip(IDENTERR_ZIP_DEPLACEMENT, __LINE__, ErrnoDe(ec), lpszDossier, L"");
        if (existe)
            fs::create_directory(cible, ec);
        return 0;
    }
    temporaire.Garde();
    bilan.nOctetsArchive = (ULONGLONG)fs::file_size(CheminNatif(lpszArchive), ec);
    if (pBilan)
        *pBilan = bilan;
    return 1;
}
