// Packing and unpacking a project-like folder (many small records and drawings, a
// few large study files), beside Info-ZIP's zip -r -6 and unzip on the same data in
// the same run: MB/s of the folder's bytes and the archives' sizes. The folder is
// generated in a temporary folder: 200 MB, or about 4 MB with --quick.
#include "zip/PaquetAffaire.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <thread>

namespace fs = std::filesystem;

namespace
{
void Ecrit(const fs::path& p, const std::string& octets)
{
    std::ofstream(p, std::ios::binary).write(octets.data(), (std::streamsize)octets.size());
}

// A drawing as text (DXF-like entities), n bytes.
std::string Dessin(std::size_t n, std::mt19937& g)
{
    std::string s;
    static const char* calques[] = {"POUTRE", "ARMATURES", "COTES", "ETRIERS", "AXES"};
    char ligne[128];
    while (s.size() < n)
    {
        std::snprintf(ligne, sizeof ligne, "0\nLINE\n8\n%s\n10\n%.4f\n20\n%.4f\n11\n%.4f\n21\n%.4f\n", calques[g() % 5],
                      (g() % 100000) / 1e4, (g() % 50000) / 1e4, (g() % 100000) / 1e4, (g() % 50000) / 1e4);
        s += ligne;
    }
    s.resize(n);
    return s;
}

// A study file: the mask and temperature grids of a fire field, doubles.
std::string Etude(std::size_t n, unsigned graine)
{
    std::string s(n / 8 * 8, '\0');
    const int colonnes = 600;
    double* v = reinterpret_cast<double*>(&s[0]);
    for (std::size_t i = 0; i < n / 8; ++i)
    {
        const int x = (int)(i % colonnes), y = (int)(i / colonnes) % 1200;
        const bool dehors = x < 30 || x > 570 || y < 30 || y > 1170;
        const double d = std::min(std::min(x - 30, 570 - x), std::min(y - 30, 1170 - y)) * 0.0005;
        v[i] = dehors ? -1.0
                      : 20.0 + 1000.0 * std::exp(-d / (0.08 + 0.002 * (graine % 7))) *
                                   (1.0 + 0.001 * std::sin(x * 0.37 + y * 0.11));
    }
    return s;
}

// The project folder: records, drawings, and study folders; its byte count.
std::uintmax_t Genere(const fs::path& racine, std::uintmax_t cible)
{
    std::mt19937 g(17);
    std::uintmax_t total = 0;
    const std::uintmax_t grands = cible * 7 / 10; // the study files' share
    const int nEtudes = std::max(1, (int)(grands / (20u << 20)));
    for (int e = 0; e < nEtudes; ++e)
    {
        fs::path etude = racine / ("E" + std::to_string(e + 1));
        fs::create_directories(etude);
        std::string t = Etude((std::size_t)(grands / nEtudes), (unsigned)e);
        Ecrit(etude / "TEMPER.01", t);
        total += t.size();
    }
    for (int k = 0; total < cible; ++k)
    {
        std::string nom, octets;
        char numero[16];
        std::snprintf(numero, sizeof numero, "%02d", k % 100);
        switch (k % 4)
        {
        case 0:
            octets = Dessin(2000 + g() % 40000, g);
            nom = "PLAN" + std::to_string(k) + ".DXF";
            break;
        case 1: // a drawing record: texts and small numbers in little-endian words
            octets = Dessin(300 + g() % 1500, g);
            for (std::size_t i = 0; i < octets.size(); i += 7)
                octets[i] = (char)(g() % 4);
            nom = "VORENPLA." + std::to_string(k);
            break;
        case 2:
            octets = Etude(2000 + g() % 6000, k);
            nom = "E" + std::to_string(1 + k % nEtudes) + "/SECTION." + numero + std::to_string(k);
            break;
        default:
            octets = std::string(436, '\0');
            std::snprintf(&octets[0], 436, "AFFAIRE %d  LYCEE DE VILLEURBANNE  POUTRES P%d", k, k % 40);
            nom = "LUMACPLA." + std::to_string(k);
        }
        Ecrit(racine / nom, octets);
        total += octets.size();
    }
    return total;
}

double Chrono(const std::function<bool()>& f, bool& ok)
{
    const auto debut = std::chrono::steady_clock::now();
    ok = f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - debut).count();
}

int Shell(const std::string& commande)
{
    return std::system(commande.c_str());
}

CString Texte(const fs::path& p)
{
    return CString(AfxUtf8ToWide(p.u8string()));
}
} // namespace

int main(int argc, char** argv)
{
    const bool rapide = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    const fs::path base = fs::temp_directory_path() / ("prefa_bench_zip_" + std::to_string(std::random_device()()));
    const fs::path aff = base / "AFF1";
    fs::create_directories(aff);
    const std::uintmax_t octets = Genere(aff, rapide ? (4u << 20) : (200u << 20));
    std::size_t nFichiers = 0;
    for (auto& e : fs::recursive_directory_iterator(aff))
        nFichiers += e.is_regular_file();
    std::printf("cores: %u\nfolder: %zu files, %.1f MB%s\n", std::thread::hardware_concurrency(), nFichiers,
                octets / 1e6, rapide ? " (quick)" : "");
    // Every run starts from the page cache: each file is read once beforehand.
    std::vector<char> tampon(1 << 16);
    for (auto& e : fs::recursive_directory_iterator(aff))
        if (e.is_regular_file())
            for (std::ifstream in(e.path(), std::ios::binary); in.read(tampon.data(), (std::streamsize)tampon.size());)
            {
            }

    auto ligne = [&](const char* quoi, double s, const fs::path& archive) {
        std::error_code ec;
        std::uintmax_t taille = fs::file_size(archive, ec);
        std::printf("%-34s %7.2f s %8.1f MB/s   archive %.2f MB (%.1f %% of the folder)\n", quoi, s, octets / s / 1e6,
                    taille / 1e6, 100.0 * taille / octets);
        return taille;
    };
    bool ok = true, tout = true;
    const fs::path nous = base / "prefa.zip", infozip = base / "infozip.zip";
    double t = Chrono([&] { return Compresse_Affaire(Texte(aff), Texte(nous)) == 1; }, ok);
    tout &= ok;
    std::uintmax_t tailleNous = ligne("prefa pack (all cores)", t, nous);

    // One thread, for a like-for-like comparison with zip.
    const fs::path nous1 = base / "prefa1.zip";
    t = Chrono(
        [&] {
            CArchiveZip zip;
            zip.DefinitNombreThreads(1);
            if (!zip.Ouvre(Texte(nous1), CArchiveZip::modeCreation))
                return false;
            std::vector<fs::path> fichiers;
            for (auto& e : fs::recursive_directory_iterator(aff))
                if (e.is_regular_file())
                    fichiers.push_back(e.path());
            std::sort(fichiers.begin(), fichiers.end());
            for (const fs::path& f : fichiers)
                zip.AjouteFichier(Texte(f.lexically_relative(aff)), Texte(f));
            return zip.Ferme() == 1;
        },
        ok);
    tout &= ok;
    ligne("prefa pack (1 thread)", t, nous1);

    const bool infoZip = Shell("zip -v >/dev/null 2>&1 && unzip -v >/dev/null 2>&1") == 0;
    std::uintmax_t tailleInfoZip = 0;
    if (infoZip)
    {
        t = Chrono([&] { return Shell("cd " + aff.string() + " && zip -q -r -6 " + infozip.string() + " .") == 0; }, ok);
        tout &= ok;
        tailleInfoZip = ligne("Info-ZIP zip -r -6", t, infozip);
    }

    t = Chrono([&] { return Decompresse_Affaire(Texte(nous), Texte(base / "COPIE")) == 1; }, ok);
    tout &= ok;
    std::printf("%-34s %7.2f s %8.1f MB/s\n", "prefa unpack", t, octets / t / 1e6);
    if (infoZip)
    {
        t = Chrono([&] { return Shell("unzip -q " + infozip.string() + " -d " + (base / "UNZIP").string()) == 0; }, ok);
        tout &= ok;
        std::printf("%-34s %7.2f s %8.1f MB/s\n", "Info-ZIP unzip", t, octets / t / 1e6);
        std::printf("size against Info-ZIP: %+.2f %%\n", 100.0 * ((double)tailleNous / (double)tailleInfoZip - 1.0));
    }
    else
        std::printf("Info-ZIP zip and unzip are not installed: no comparison\n");

    std::error_code ec;
    fs::remove_all(base, ec);
    if (!tout)
        std::printf("a run failed\n");
    return tout ? 0 : 1;
}
