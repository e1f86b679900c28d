#include "zip/PaquetAffaire.h"

#include "zip/CheminsZip.h"
#include "zip/RapportZip.h"

#include <algorithm>
#include <cerrno>

namespace fs = std::filesystem;

namespace
{
struct Entree
{
    std::string nom; // relative, '/' separated, UTF-8: the order of the archive
    fs::path chemin;
    bool dossier;
};

int ErrnoDe(const std::error_code& ec)
{
    int e = ec.default_error_condition().value();
    return e > 0 ? e : EIO;
}

// The archive's own path, resolved, so that packing a folder into an archive that
// lies inside it leaves out the archive and libzip's temporary file beside it.
struct Exclusion
{
    fs::path dossier;
    std::string nom;
    bool Exclut(const fs::path& chemin) const
    {
        if (chemin.parent_path() != dossier)
            return false;
        std::string n = chemin.filename().u8string();
        return n == nom || (n.size() > nom.size() && n.compare(0, nom.size() + 1, nom + ".") == 0);
    }
};
} // namespace

int Compresse_Affaire(LPCTSTR lpszDossier, LPCTSTR lpszArchive, LPCTSTR lpszMotDePasse, int nChiffrement,
                      const CProgressionZip& progression, CBilanZip* pBilan)
{
    CBilanZip bilan;
    std::error_code ec;
    const fs::path racine = fs::weakly_canonical(CheminNatif(lpszDossier), ec);
    if (ec || !fs::is_directory(racine, ec))
    {
        RapporteErreurZip(IDENTERR_ZIP_DOSSIER, __LINE__, ec ? ErrnoDe(ec) : ENOTDIR, lpszDossier, L"");
        return 0;
    }
    const fs::path archive = fs::weakly_canonical(CheminNatif(lpszArchive), ec);
    const Exclusion exclusion{archive.parent_path(), archive.filename().u8string()};

    std::vector<Entree> entrees;
    fs::recursive_directory_iterator it(racine, fs::directory_options::none, ec), fin;
    for (; !ec && it != fin; it.increment(ec))
    {
        const fs::path& chemin = it->path();
        fs::file_status etat = it->symlink_status(ec);
        if (ec)
            break;
        std::string nom = chemin.lexically_relative(racine).generic_u8string();
        if (fs::is_directory(etat))
            entrees.push_back({nom + "/", chemin, true});
        else if (!fs::is_regular_file(etat))
            ++bilan.nIgnores; // links are not followed, devices and pipes not read
        else if (Est_Fichier_Transitoire(CheminTexte(chemin.filename())) || exclusion.Exclut(chemin))
            ++bilan.nExclus;
        else
            entrees.push_back({nom, chemin, false});
    }
    if (ec)
    {
        // A folder that cannot be listed would silently be missing from the archive.
        CString dossier = it != fin ? CheminTexte(it->path()) : CString(lpszDossier);
        RapporteErreurZip(IDENTERR_ZIP_DOSSIER, __LINE__, ErrnoDe(ec), dossier, L"");
        return 0;
    }
    std::sort(entrees.begin(), entrees.end(), [](const Entree& a, const Entree& b) { return a.nom < b.nom; });

    CArchiveZip zip;
    zip.DefinitMotDePasse(lpszMotDePasse, nChiffrement);
    if (!zip.Ouvre(lpszArchive, CArchiveZip::modeCreation))
        return 0;
    for (const Entree& e : entrees)
    {
        CString nom(AfxUtf8ToWide(e.nom));
        if (e.dossier)
        {
            __time64_t date = DateFichier(e.chemin, ec);
            if (!zip.AjouteDossier(nom, ec ? 0 : date))
                return 0;
            ++bilan.nDossiers;
        }
        else
        {
            if (!zip.AjouteFichier(nom, CheminTexte(e.chemin)))
                return 0;
            ++bilan.nFichiers;
            bilan.nOctets += (ULONGLONG)fs::file_size(e.chemin, ec);
        }
    }
    if (!zip.Ferme(progression))
        return 0;
    bilan.nOctetsArchive = (ULONGLONG)fs::file_size(CheminNatif(lpszArchive), ec);
    if (pBilan)
        *pBilan = bilan;
    return 1;
}
