// Damaged archives by the hundred: each mutation of a small valid archive either
// unpacks, fails with a reported file error, or raises the archive exception; it
// never crashes, hangs or leaves anything behind (read out of bounds: the sanitizer build).
#include "zip/PaquetAffaire.h"
#include "ZipFabrique.h"

#include <gtest/gtest.h>

#include <random>

using namespace prefa_test;

namespace
{
// Zip-minded damage: flipped bits, a cut, or a size, count or offset field (four
// bytes at a random place) set to a large or small value.
std::vector<BYTE> Abime(std::vector<BYTE> b, std::mt19937& g)
{
    static const std::uint32_t valeurs[] = {0xFFFFFFFFu, 0x7FFFFFFFu, 0x10000u, 0, 1, 0xFFFFu};
    for (int k = 1 + (int)(g() % 3); k > 0 && b.size() > 4; --k)
    {
        const int genre = (int)(g() % 3);
        if (genre == 0)
            b[g() % b.size()] ^= (BYTE)(1u << (g() % 8));
        else if (genre == 1)
            b.resize(g() % b.size());
        else
        {
            const std::uint32_t v = valeurs[g() % 6];
            const std::size_t p = g() % (b.size() - 3);
            for (int i = 0; i < 4; ++i)
                b[p + i] = (BYTE)(v >> (8 * i));
        }
    }
    return b;
}
} // namespace

TEST(MutationsZip, EveryDamagedArchiveUnpacksOrIsRefusedLeavingNothingBehind)
{
    ScratchDir dir;
    const CString source = dir / L"source.zip", archive = dir / L"abimee.zip", cible = dir / L"CIBLE";
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
            std::filesystem::remove_all(std::filesystem::u8path(AfxWideToUtf8(cible.Std())));
        }
        ASSERT_EQ(0, Autres(dir.Path(), {"source.zip", "abimee.zip"})) << "after mutation " << essai;
    }
    // Both outcomes occur: the mutations are neither all harmless nor all fatal.
    EXPECT_GT(reussies, 0);
    EXPECT_GT(refusees, 100);
}
