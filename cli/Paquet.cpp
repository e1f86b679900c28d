// The pack and unpack commands: a project folder to one zip archive and back.
#include "Commandes.h"
#include "Entree.h"
#include "Progression.h"

#include <prefa.h>

#include <cstdio>

namespace prefa_cli
{

namespace
{
// The library shows file errors as message boxes; the command turns each into one
// line: the box's arguments, then the cause's own text.
class BoitesEnLignes
{
public:
    BoitesEnLignes()
    {
        m_precedent = AfxSetMessageBoxHandler([this](const CString& texte, UINT) {
            m_textes.push_back(texte);
            return IDOK;
        });
    }
    ~BoitesEnLignes() { AfxSetMessageBoxHandler(m_precedent); }

    void Affiche(const std::string& command) const
    {
        for (const CString& t : m_textes)
        {
            std::vector<std::wstring> lignes;
            std::size_t debut = 0;
            const std::wstring& s = t.Std();
            for (std::size_t fin; (fin = s.find(L'\n', debut)) != std::wstring::npos; debut = fin + 1)
                lignes.push_back(s.substr(debut, fin - debut));
            lignes.push_back(s.substr(debut));
            std::wstring ligne;
            std::size_t k = 0;
            for (; k < lignes.size() && lignes[k].compare(0, 10, L"__________") != 0; ++k)
                ligne += (ligne.empty() ? L"" : L": ") + lignes[k];
            // After the rule: "source - module - line", then the cause "n - NAME : text".
            if (k + 2 < lignes.size())
            {
                std::wstring cause = lignes[k + 2];
                std::size_t deux = cause.find(L" : ");
                ligne += L": " + (deux == std::wstring::npos ? cause : cause.substr(deux + 3));
            }
            std::fprintf(stderr, "prefa %s: %s\n", command.c_str(), AfxWideToUtf8(ligne).c_str());
        }
    }

private:
    AfxMessageBoxHandler m_precedent;
    std::vector<CString> m_textes;
};

CString Large(const std::string& utf8)
{
    return CString(AfxUtf8ToWide(utf8));
}

// The progress bar's label: the file's name without its folders.
std::string Etiquette(const CString& nom)
{
    int barre = std::max(nom.ReverseFind(L'/'), nom.ReverseFind(L'\\'));
    return AfxWideToUtf8(nom.Mid(barre + 1).Std());
}

// What both commands set up: their operands checked, the password (the option's,
// else the environment's), the progress bar and the lines of the file errors.
struct Seance
{
    Seance(const std::string& command, const Options& o, const char* usage) : bar(true)
    {
        if (o.file.empty() || o.target.empty())
            throw InputError("prefa " + command, "", std::string("two operands are expected: ") + usage);
        motDePasse = o.passwordGiven ? Large(o.password) : AfxGetEnvironmentVariable(L"PREFA_ZIP_PASSWORD");
    }
    LPCTSTR MotDePasse() const { return motDePasse.IsEmpty() ? nullptr : motDePasse.GetString(); }
    CProgressionZip Progression()
    {
        return [this](double f, const CString& nom) { bar.Update(f, Etiquette(nom)); };
    }

    CString motDePasse;
    ProgressBar bar;
    BoitesEnLignes boites;
    CBilanZip bilan;
};

std::string Mo(ULONGLONG n)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.1f MB", (double)n / 1e6);
    return buf;
}
} // namespace

int PackCommand(const Options& o)
{
    Seance s("pack", o, "PROJECT_DIR OUT.zip");
    const CBilanZip& bilan = s.bilan;
    int r = Compresse_Affaire(Large(o.file), Large(o.target), s.MotDePasse(),
                              o.aes ? CArchiveZip::chiffrementAes256 : CArchiveZip::chiffrementPkware, s.Progression(),
                              &s.bilan);
    s.bar.Finish();
    if (!r)
    {
        s.boites.Affiche("pack");
        return 1;
    }
    std::printf("prefa pack: %s -> %s: %d files, %d folders, %s -> %s%s\n", o.file.c_str(), o.target.c_str(),
                bilan.nFichiers, bilan.nDossiers, Mo(bilan.nOctets).c_str(), Mo(bilan.nOctetsArchive).c_str(),
                !s.MotDePasse() ? "" : o.aes ? ", encrypted (AES-256)" : ", encrypted");
    if (bilan.nExclus || bilan.nIgnores)
        std::printf("left out: %d lock and temporary files, %d links and special files\n", bilan.nExclus,
                    bilan.nIgnores);
    return 0;
}

int UnpackCommand(const Options& o)
{
    Seance s("unpack", o, "IN.zip DIR");
    const CBilanZip& bilan = s.bilan;
    int r;
    try
    {
        r = Decompresse_Affaire(Large(o.file), Large(o.target), s.MotDePasse(), s.Progression(), &s.bilan);
    }
    catch (CArchiveException* e)
    {
        // A damaged or hostile archive, or a wrong password: bad input, nothing written.
        s.bar.Finish();
        CString texte = e->GetMessageText();
        e->Delete();
        std::fprintf(stderr, "prefa unpack: %s\n", AfxWideToUtf8(texte.Std()).c_str());
        return 2;
    }
    s.bar.Finish();
    if (!r)
    {
        s.boites.Affiche("unpack");
        return 1;
    }
    std::printf("prefa unpack: %s -> %s: %d files, %d folders, %s\n", o.file.c_str(), o.target.c_str(),
                bilan.nFichiers, bilan.nDossiers, Mo(bilan.nOctets).c_str());
    if (bilan.nExclus)
        std::printf("left out: %d lock and temporary files\n", bilan.nExclus);
    return 0;
}

std::string PackHelp()
{
    return "usage: prefa pack PROJECT_DIR OUT.zip [--password PASSWORD] [--aes]\n\n"
           "Packs a project folder (its records, drawing files and study folders) into one\n"
           "zip archive to send it. Names are relative to the folder, in UTF-8; lock files\n"
           "(.lock, LOCK_AFF, LOCK_PLA.nn, .LCK) and temporary files of saves in progress\n"
           "are left out, symbolic links are not followed. An existing OUT.zip is replaced\n"
           "only once the new archive is complete.\n\n"
           "With a password the files are encrypted with the traditional zip encryption,\n"
           "which every unzip program reads (it is weak: send the password another way);\n"
           "--aes uses AES-256 instead (WinZip's format; 7-Zip reads it, Info-ZIP unzip does\n"
           "not). The password may also come from the environment variable\n"
           "PREFA_ZIP_PASSWORD, which keeps it out of the process list.\n";
}

std::string UnpackHelp()
{
    return "usage: prefa unpack IN.zip DIR [--password PASSWORD]\n\n"
           "Unpacks an archive into the folder DIR, which must not exist or be empty (its\n"
           "parent folder must exist). Every member is checked first: names that would leave\n"
           "DIR or that Windows cannot hold, symbolic links, duplicates and sizes beyond\n"
           "reason (8 GB in all, 100,000 members, 1000:1 compression) refuse the archive.\n"
           "The files are written to a temporary folder beside DIR, each checked against its\n"
           "size and CRC, and moved into place only when all are whole: on any error DIR is\n"
           "left as it was. Names from older Windows tools (code page 850) are read\n"
           "correctly. The password may also come from PREFA_ZIP_PASSWORD.\n"
           "Exit status: 0 done, 1 a file error, 2 bad usage or a damaged, hostile or\n"
           "wrongly decrypted archive.\n";
}

} // namespace prefa_cli
