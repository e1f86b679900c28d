// Damaged files of every kind: each prefix of a valid file, and a few thousand
// mutations of it, either load or raise the archive exception (the exchange and lock
// records, of fixed size, load or fail their read). Run under the sanitizers, this
// also shows that no damaged file reads out of bounds or allocates wildly.
#include "project/CAffaire.h"
#include "project/CConfigBRAXEL.h"
#include "project/CInfoPlan.h"
#include "ProjetFixture.h"

#include <functional>
#include <random>

using namespace prefa_test;

namespace
{
// A mutation of the bytes: flipped bytes, a cut, an inserted length prefix, or
// copied runs, chosen by the generator.
std::vector<BYTE> Mute(std::vector<BYTE> b, std::mt19937& g)
{
    std::uniform_int_distribution<int> choix(0, 4);
    auto pos = [&](std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n)(g); };
    int nMutations = 1 + (int)(g() % 4);
    for (int k = 0; k < nMutations && !b.empty(); ++k)
    {
        switch (choix(g))
        {
        case 0:
            b[pos(b.size() - 1)] = (BYTE)g();
            break;
        case 1:
            b.resize(pos(b.size()));
            break;
        case 2:
        {
            // A large text length or count where a field was.
            static const BYTE grands[][7] = {{0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F},
                                             {0xFF, 0xFF, 0xFF, 0x7F, 0, 0, 0},
                                             {0xFF, 0xFE, 0xFF, 0xFE, 0, 0, 0}};
            const BYTE* g7 = grands[g() % 3];
            std::size_t p = pos(b.size());
            b.insert(b.begin() + (std::ptrdiff_t)p, g7, g7 + 7);
            break;
        }
        case 3:
        {
            std::size_t p = pos(b.size() - 1);
            b[p] ^= (BYTE)(1u << (g() % 8));
            break;
        }
        default:
        {
            std::size_t a = pos(b.size() - 1), n = pos(std::min<std::size_t>(16, b.size() - a));
            std::vector<BYTE> run(b.begin() + (std::ptrdiff_t)a, b.begin() + (std::ptrdiff_t)(a + n));
            b.insert(b.begin() + (std::ptrdiff_t)pos(b.size()), run.begin(), run.end());
            break;
        }
        }
    }
    return b;
}

// Loads the bytes; true when they loaded, false on the archive exception. Any other
// exception fails the test.
bool Charge(const std::vector<BYTE>& octets, const std::function<void(CArchive&)>& f)
{
    try
    {
        Load(octets, f);
        return true;
    }
    catch (CArchiveException* e)
    {
        e->Delete();
        return false;
    }
}

// Every proper prefix raises; then nMutations mutated files load or raise.
void Eprouve(const std::vector<BYTE>& valide, const std::function<void(CArchive&)>& f, unsigned graine)
{
    EXPECT_TRUE(Charge(valide, f));
    for (std::size_t n = 0; n < valide.size(); ++n)
        ASSERT_FALSE(Charge(std::vector<BYTE>(valide.begin(), valide.begin() + (std::ptrdiff_t)n), f)) << n;
    std::mt19937 g(graine);
    int charges = 0;
    for (int i = 0; i < 3000; ++i)
        charges += Charge(Mute(valide, g), f) ? 1 : 0;
    // Both outcomes happen: the mutations reach past the first fields.
    EXPECT_GT(charges, 0);
    EXPECT_LT(charges, 3000);
}
} // namespace

class RecordsFuzz : public ProjetFixture
{
};

TEST_F(RecordsFuzz, ProjectRecordLoaderSurvivesDamagedFiles)
{
    CAffaire a;
    a.Texte1 = L"A-1";
    a.Texte2 = L"Désignation";
    a.Liste1[1] = L"x";
    a.Texte10 = L"€";
    a.Texte12 = L"fin";
    std::vector<BYTE> valide = Store([&](CArchive& ar) { a.Serialize(ar); });
    CAffaire b;
    Eprouve(valide, [&](CArchive& ar) { b.Serialize(ar); }, 1);

    // The exchange record: any 436 bytes load, or raise the invalid-argument
    // exception for a date they do not hold.
    BYTE e[CAffaire::TAILLE_ECHANGE];
    a.RemplitEchange(e);
    std::mt19937 g(2);
    for (int i = 0; i < 3000; ++i)
    {
        std::vector<BYTE> m = Mute(std::vector<BYTE>(e, e + sizeof e), g);
        m.resize(CAffaire::TAILLE_ECHANGE);
        CAffaire c;
        try
        {
            c.LitEchange(m.data());
        }
        catch (CInvalidArgException* x)
        {
            x->Delete();
        }
    }
}

TEST_F(RecordsFuzz, DrawingRecordLoaderSurvivesDamagedFiles)
{
    CInfoPlan p;
    p.Texte1 = L"Plan";
    for (int i = 0; i < 3; ++i)
    {
        auto* m = new CInfoModifications;
        m->Texte = L"révision";
        p.Modifications.AddTail(m);
    }
    p.Textes.AddTail(CString(L"t"));
    p.Texte5 = L"fin";
    std::vector<BYTE> valide = Store([&](CArchive& ar) { p.Serialize(ar, L"AFF1", 1); });
    CInfoPlan q;
    Eprouve(valide, [&](CArchive& ar) { q.Serialize(ar, L"AFF1", 1); }, 3);
}

TEST_F(RecordsFuzz, ConfigurationAndLockRecordsSurviveDamagedFiles)
{
    CConfigBRAXEL c;
    c.NomOrdinateur = L"PC-A";
    c.NomUtilisateur = L"alice";
    std::vector<BYTE> valide = Store([&](CArchive& ar) { c.Serialize(ar); });
    CConfigBRAXEL d;
    Eprouve(valide, [&](CArchive& ar) { d.Serialize(ar); }, 4);

    // Lock files of any content and size: read or refused, never more.
    BYTE lock[CConfigBRAXEL::TAILLE_LOCK];
    c.RemplitLock(lock);
    std::mt19937 g(5);
    CString chemin = Affaire(L"LOCK_AFF");
    for (int i = 0; i < 500; ++i)
    {
        std::vector<BYTE> m = Mute(std::vector<BYTE>(lock, lock + sizeof lock), g);
        WriteAll(chemin, m);
        int r = d.GestionFichierLock(2, chemin);
        EXPECT_EQ(r == 0, m.size() >= CConfigBRAXEL::TAILLE_LOCK);
        EXPECT_LE(d.NomUtilisateur.GetLength(), 256);
        EXPECT_LE(d.NomOrdinateur.GetLength(), 256);
    }
}
