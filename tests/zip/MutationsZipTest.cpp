// Damaged archives by the thousand: each mutation of a small valid archive either
// unpacks, fails with a reported file error, or raises the archive exception; it
// never crashes, hangs or leaves anything behind. Under the sanitizers this also
// shows that no damaged archive reads out of bounds.
#include "zip/PaquetAffaire.h"
#include "ZipFabrique.h"

#include <gtest/gtest.h>

#include <random>

using namespace prefa_test;
namespace fs = std::filesystem;

namespace
{
// Zip-minded damage: flipped bits, a cut, or a size, count or offset field (four
// bytes at a random place) set to a large or small value.
std::vector<BYTE> Abime(std::vector<BYTE> b, std::mt19937& g)
{
    auto pos = [&](std::size_t n) { return (std::size_t)(g() % n); };
    for (int k = 1 + (int)(g() % 3); k > 0 && b.size() > 4; --k)
    {
        switch (g() % 3)
        {
        case 0:
            b[pos(b.size())] ^= (BYTE)(1u << (g() % 8));
            break;
        case 1:
            b.resize(pos(b.size()));
            break;
        default:
        {
            static const std::uint32_t valeurs[] = {0xFFFFFFFFu, 0x7FFFFFFFu, 0x10000u, 0, 1, 0xFFFFu};
            std::uint32_t v = valeurs[g() % 6];
            std::size_t p = pos(b.size() - 3);
            for (int i = 0; i < 4; ++i)
                b[p + i] = (BYTE)(v >> (8 * i));
        }
        }
    }
    return b;
}
} // namespace

TEST(MutationsZip, ChaqueArchiveAbimeeSeDecompresseOuEstRefusee)
{
    ScratchDir dir;
    const CString source = dir / L"source.zip";
    {
        CArchiveZip zip;
        zip.DefinitMotDePasse(L"cle");
        ASSERT_EQ(1, zip.Ouvre(source, CArchiveZip::modeCreation));
        std::vector<BYTE> a = Contenu(3000, 1), b = Contenu(600, 2);
        zip.AjouteTampon(L"E1/TEMPER.01", a.data(), a.size(), 1700000000);
        zip.DefinitMotDePasse(nullptr);
        zip.AjouteTampon(L"VORENAFF", b.data(), b.size(), 1700000000);
        zip.AjouteDossier(L"E2", 1700000000);
        ASSERT_EQ(1, zip.Ferme());
    }
    const std::vector<BYTE> sain = ReadAll(source);
    std::mt19937 g(2024);
    MessageBoxCapture boites; // file errors of damaged archives are shown, not printed
    int reussies = 0, refusees = 0;
    for (int essai = 0; essai < 600; ++essai)
    {
        const CString archive = dir / L"abimee.zip", cible = dir / L"CIBLE";
        WriteAll(archive, Abime(sain, g));
        int r = 0;
        try
        {
            r = Decompresse_Affaire(archive, cible, L"cle");
        }
        catch (CArchiveException* e)
        {
            e->Delete();
            ++refusees;
        }
        if (r == 1)
        {
            ++reussies;
            fs::remove_all(fs::path(cible.Std()));
        }
        // Whatever happened, only the archive is left in the folder.
        int n = 0;
        for (auto& e : fs::directory_iterator(fs::path(dir.Path().Std())))
            n += e.path().filename() != "source.zip" && e.path().filename() != "abimee.zip";
        ASSERT_EQ(0, n) << "after mutation " << essai;
    }
    // Both outcomes occur: the mutations are neither all harmless nor all fatal.
    EXPECT_GT(reussies, 0);
    EXPECT_GT(refusees, 100);
}
