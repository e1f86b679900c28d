// The archive class: what it writes (checked in the central directory's bytes and
// by inflating members independently), what it reads back, encryption, and its
// behaviour on damaged archives and failed writes.
#include "zip/CArchiveZip.h"
#include "ZipFabrique.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>

using namespace prefa_test;
namespace fs = std::filesystem;

namespace
{
// 15 March 2024 12:34:56, local time: a date the zip format holds exactly.
__time64_t DateTest()
{
    struct tm t = {};
    t.tm_year = 124, t.tm_mon = 2, t.tm_mday = 15, t.tm_hour = 12, t.tm_min = 34, t.tm_sec = 56, t.tm_isdst = -1;
    return _mktime64(&t);
}

std::vector<BYTE> Lit(CArchiveZip& zip, int i)
{
    std::vector<BYTE> contenu;
    EXPECT_EQ(1, zip.LitMembre(i, contenu)) << i;
    return contenu;
}

// Inflates a member straight from the archive's bytes with zlib, past libzip.
std::vector<BYTE> InflateDirect(const std::vector<BYTE>& archive, const EntreeCentrale& e)
{
    const std::size_t p = e.offsetLocal;
    const std::size_t debut = p + 30 + (archive[p + 26] | (archive[p + 27] << 8)) + (archive[p + 28] | (archive[p + 29] << 8));
    z_stream z{};
    inflateInit2(&z, -15);
    std::vector<BYTE> sortie(e.taille + 1);
    z.next_in = const_cast<BYTE*>(archive.data() + debut);
    z.avail_in = e.tailleCompressee;
    z.next_out = sortie.data();
    z.avail_out = (uInt)sortie.size();
    EXPECT_EQ(Z_STREAM_END, inflate(&z, Z_FINISH));
    sortie.resize(z.total_out);
    inflateEnd(&z);
    return sortie;
}

// A 20 KB random run repeated: only a block primed with its predecessor's end
// finds the repeats across the block boundaries.
std::vector<BYTE> Repetitions()
{
    std::vector<BYTE> motif = Contenu(20000, 7), b;
    for (std::size_t i = 0; i < motif.size(); i += 3)
        motif[i] = (BYTE)(i * 2654435761u >> 24);
    while (b.size() < 1300000)
        b.insert(b.end(), motif.begin(), motif.end());
    return b;
}
} // namespace

TEST(CArchiveZip, WritesPlainDeflateWithExactFieldsTheSameOnAnyThreadCountAndReadsItBack)
{
    ScratchDir dir;
    const CString fichier = dir / L"source.dat";
    WriteAll(fichier, Contenu(700000, 3));
    const std::vector<BYTE> gros = Contenu(1300000, 1), repete = Repetitions(), petit = Contenu(300, 2), vide,
                            source = ReadAll(fichier);
    auto ecrit = [&](const CString& chemin, int nThreads) {
        CArchiveZip zip;
        zip.DefinitNombreThreads(nThreads);
        EXPECT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeCreation));
        EXPECT_EQ(1, zip.AjouteTampon(L"E1\\\u00E9t\u00E9.01", gros.data(), gros.size(), DateTest())); // a caller's backslash
        zip.AjouteTampon(L"repete.bin", repete.data(), repete.size(), DateTest());
        zip.AjouteTampon(L"vide", nullptr, 0, DateTest());
        EXPECT_EQ(1, zip.AjouteFichier(L"source.dat", fichier));
        EXPECT_EQ(1, zip.AjouteDossier(L"E2/", DateTest()));
        zip.DefinitCompression(CArchiveZip::methodeStockee);
        zip.AjouteTampon(L"stocke.txt", petit.data(), petit.size(), DateTest());
        EXPECT_EQ(1, zip.Ferme());
        return ReadAll(chemin);
    };
    const std::vector<BYTE> octets = ecrit(dir / L"a.zip", 3);
    EXPECT_EQ(octets, ecrit(dir / L"b.zip", 1)) << "the thread count changed the bytes";

    const std::vector<EntreeCentrale> central = LitCentral(octets);
    ASSERT_EQ(6u, central.size());
    const std::vector<BYTE>* attendus[] = {&gros, &repete, &vide, &source, nullptr, &petit};
    const char* noms[] = {"E1/\xC3\xA9t\xC3\xA9.01", "repete.bin", "vide", "source.dat", "E2/", "stocke.txt"};
    for (std::size_t k = 0; k < central.size(); ++k)
    {
        const EntreeCentrale& e = central[k];
        EXPECT_EQ(noms[k], e.nom);
        EXPECT_EQ(k == 0 ? 0x0800 : 0, e.drapeaux & 0x0800) << e.nom; // UTF-8 flag for non-ASCII names only
        if (!attendus[k])
            continue;
        EXPECT_EQ(attendus[k]->size(), e.taille) << e.nom;
        EXPECT_EQ(Crc32(*attendus[k]), e.crc) << e.nom;
        EXPECT_EQ(k == 5 ? 0 : 8, e.methode) << e.nom;
        if (e.methode == 8)
        {
            EXPECT_EQ(*attendus[k], InflateDirect(octets, e)) << e.nom;
        }
    }
    // MS-DOS form: hours, minutes, seconds / 2; years since 1980, month, day.
    EXPECT_EQ((12 << 11) | (34 << 5) | 28, central[0].heureDos);
    EXPECT_EQ((44 << 9) | (3 << 5) | 15, central[0].dateDos);
    // The blocks see the end of the block before them: the repeats cost almost nothing.
    EXPECT_LT(central[1].tailleCompressee, Deflate(repete).size() * 11 / 10);

    CArchiveZip zip;
    ASSERT_EQ(1, zip.Ouvre(dir / L"a.zip"));
    ASSERT_EQ(6, zip.NombreMembres());
    for (int k = 0; k < 6; ++k)
        if (attendus[k])
        {
            EXPECT_EQ(*attendus[k], Lit(zip, k)) << k;
        }
    const CMembreZip m = zip.DonneMembre(0);
    EXPECT_EQ(std::wstring(L"E1/\u00E9t\u00E9.01"), m.Nom.Std());
    EXPECT_EQ(DateTest(), m.Date);
    EXPECT_EQ(gros.size(), m.Taille);
    EXPECT_EQ(central[0].tailleCompressee, m.TailleCompressee);
    EXPECT_FALSE(m.bDossier);
    EXPECT_TRUE(zip.DonneMembre(4).bDossier);
    EXPECT_EQ(5, zip.ChercheMembre(L"stocke.txt"));
    EXPECT_EQ(-1, zip.ChercheMembre(L"STOCKE.TXT"));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { zip.DonneMembre(6); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { zip.DonneMembre(-1); }));
}

TEST(CArchiveZip, NamesOfOldToolsAreDecodedByTheirSystemAndFlag)
{
    ScratchDir dir;
    MembreBrut oem{"E1\\\x82t\x82.txt", {'a'}}; // Windows Explorer: code page 850, backslash
    oem.versionFaite = 0x0014;                  // made by MS-DOS (FAT)
    MembreBrut latin1{"\xE9t\xE9.txt", {'b'}};  // a Unix tool
    MembreBrut utf8{"\xC3\xA0 plat.txt", {'c'}};
    utf8.drapeaux = 0x0800;
    WriteAll(dir / L"anciens.zip", FabriqueZip({oem, latin1, utf8}));
    CArchiveZip zip;
    ASSERT_EQ(1, zip.Ouvre(dir / L"anciens.zip"));
    EXPECT_EQ(std::wstring(L"E1\\\u00E9t\u00E9.txt"), zip.DonneMembre(0).Nom.Std());
    EXPECT_EQ(std::wstring(L"\u00E9t\u00E9.txt"), zip.DonneMembre(1).Nom.Std());
    EXPECT_EQ(std::wstring(L"\u00E0 plat.txt"), zip.DonneMembre(2).Nom.Std());
}

TEST(CArchiveZip, EncryptedMembersNeedTheRightPassword)
{
    ScratchDir dir;
    const std::vector<BYTE> contenu = Contenu(1200000, 6);
    for (int chiffrement : {CArchiveZip::chiffrementPkware, CArchiveZip::chiffrementAes128, CArchiveZip::chiffrementAes256})
    {
        SCOPED_TRACE(chiffrement);
        const CString chemin = dir / L"secret.zip";
        {
            CArchiveZip zip;
            zip.DefinitMotDePasse(L"s\u00E9same", chiffrement);
            ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeCreation));
            zip.AjouteTampon(L"E1/TEMPER.01", contenu.data(), contenu.size(), DateTest());
            zip.AjouteDossier(L"E2", DateTest());
            ASSERT_EQ(1, zip.Ferme());
        }
        const std::vector<EntreeCentrale> central = LitCentral(ReadAll(chemin));
        EXPECT_EQ(1, central.at(0).drapeaux & 1);
        EXPECT_EQ(0, central.at(1).drapeaux & 1); // a folder holds nothing to hide
        CArchiveZip zip;
        ASSERT_EQ(1, zip.Ouvre(chemin));
        EXPECT_EQ(chiffrement, zip.DonneMembre(0).Chiffrement);
        std::vector<BYTE> lu;
        auto raison = [&](LPCTSTR motDePasse) {
            zip.DefinitMotDePasse(motDePasse);
            CString membre;
            int r = Raison([&] { zip.LitMembre(0, lu); }, &membre);
            EXPECT_EQ(r == -1 ? L"" : L"E1/TEMPER.01", membre.Std());
            return r;
        };
        EXPECT_EQ(CExceptionZip::motDePasseRequis, raison(nullptr));
        EXPECT_EQ(CExceptionZip::motDePasseIncorrect, raison(L"sesame"));
        EXPECT_EQ(-1, raison(L"s\u00E9same"));
        EXPECT_EQ(contenu, lu);
    }
}

TEST(CArchiveZip, ReadingStopsAtTheDeclaredSizeAndChecksTheCrc)
{
    ScratchDir dir;
    const std::vector<BYTE> donnees = Contenu(100000, 8);
    MembreBrut menteur{"menteur.txt", donnees}, court{"court.txt", donnees}, crc{"crc.txt", donnees},
        stocke{"stocke.txt", donnees};
    menteur.tailleDeclaree = 1000;
    court.tailleDeclaree = 200000;
    crc.crc = Crc32(donnees) ^ 1;
    stocke.methode = 0;
    stocke.tailleDeclaree = 10; // stored: its compressed size (all the data) says otherwise
    WriteAll(dir / L"faux.zip", FabriqueZip({menteur, court, crc, stocke}));
    CArchiveZip zip;
    ASSERT_EQ(1, zip.Ouvre(dir / L"faux.zip"));
    const int attendues[] = {CExceptionZip::tailleDepassee, CExceptionZip::donneesEndommagees,
                             CExceptionZip::crcIncorrect, CExceptionZip::tailleDepassee};
    for (int i = 0; i < 4; ++i)
    {
        std::size_t recus = 0;
        CString membre;
        EXPECT_EQ(attendues[i], Raison([&] { zip.LitMembre(i, [&](const BYTE*, std::size_t n) { recus += n; }); }, &membre)) << i;
        EXPECT_EQ(zip.DonneMembre(i).Nom, membre);
        EXPECT_LE(recus, zip.DonneMembre(i).Taille) << "more than declared reached the caller, member " << i;
    }
}

TEST(CArchiveZip, EveryTruncationIsADamagedArchiveAndAMissingOneIsAFileError)
{
    ScratchDir dir;
    const CString chemin = dir / L"t.zip";
    {
        CArchiveZip zip;
        ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeCreation));
        zip.AjouteTampon(L"a.txt", "bonjour bonjour", 15, DateTest());
        zip.AjouteTampon(L"b.txt", "au revoir", 9, DateTest());
        ASSERT_EQ(1, zip.Ferme());
    }
    const std::vector<BYTE> entier = ReadAll(chemin);
    for (std::size_t n = 0; n < entier.size(); ++n)
    {
        WriteAll(chemin, std::vector<BYTE>(entier.begin(), entier.begin() + (std::ptrdiff_t)n));
        CArchiveZip zip;
        EXPECT_EQ(CExceptionZip::archiveEndommagee, Raison([&] { zip.Ouvre(chemin); })) << n << " bytes";
    }
    MessageBoxCapture boites;
    CArchiveZip zip;
    EXPECT_EQ(0, zip.Ouvre(dir / L"absente.zip"));
    ASSERT_EQ(1u, boites.boxes.size());
    for (const CString& morceau : {CString(L"IDENTERR_3101"), CString(L"ENOENT"), dir / L"absente.zip"})
        EXPECT_NE(-1, boites.boxes[0].text.Find(morceau)) << AfxWideToUtf8(morceau.Std());
}

TEST(CArchiveZip, AFailedWriteLeavesThePreviousArchiveAndNoTemporaryFile)
{
    ScratchDir dir;
    const CString chemin = dir / L"envoi.zip", fichier = dir / L"disparu.dat";
    {
        CArchiveZip zip;
        ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeCreation));
        zip.AjouteTampon(L"ancien.txt", "ancien", 6, DateTest());
        ASSERT_EQ(1, zip.Ferme());
    }
    const std::vector<BYTE> avant = ReadAll(chemin);
    WriteAll(fichier, Contenu(5000, 9));
    MessageBoxCapture boites;
    {
        CArchiveZip zip;
        zip.DefinitNombreThreads(1);
        ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeCreation));
        // The workers run only a few blocks ahead of the writer: the file after these
        // is not read before Ferme, by which time it has gone.
        for (int k = 0; k < 64; ++k)
            zip.AjouteTampon(CString(L"m") + CString(std::to_wstring(k)), "z", 1, DateTest());
        ASSERT_EQ(1, zip.AjouteFichier(L"disparu.dat", fichier));
        fs::remove(fs::u8path(AfxWideToUtf8(fichier.Std())));
        EXPECT_EQ(0, zip.Ferme());
    }
    ASSERT_EQ(1u, boites.boxes.size());
    EXPECT_NE(-1, boites.boxes[0].text.Find(L"IDENTERR_3104"));
    EXPECT_NE(-1, boites.boxes[0].text.Find(fichier));
    EXPECT_EQ(avant, ReadAll(chemin));
    EXPECT_EQ(0, Autres(dir.Path(), {"envoi.zip"}));

    // A folder that does not exist: the archive cannot be written, which the open says.
    CArchiveZip zip;
    EXPECT_EQ(0, zip.Ouvre(dir / L"absent/x.zip", CArchiveZip::modeCreation));
    EXPECT_EQ(0, zip.Ferme());
    ASSERT_EQ(2u, boites.boxes.size());
    EXPECT_NE(-1, boites.boxes[1].text.Find(L"IDENTERR_3102"));
}

TEST(CArchiveZip, AnEmptyArchiveIsTheBareEndRecordAndMembersAreReplacedOrRemoved)
{
    ScratchDir dir;
    const CString chemin = dir / L"m.zip";
    std::vector<BYTE> vide(22, 0);
    vide[0] = 'P', vide[1] = 'K', vide[2] = 5, vide[3] = 6;
    CArchiveZip zip;
    ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeCreation));
    ASSERT_EQ(1, zip.Ferme());
    EXPECT_EQ(vide, ReadAll(chemin));

    auto ajoute = [&](const wchar_t* nom, const char* texte) { zip.AjouteTampon(nom, texte, strlen(texte), DateTest()); };
    ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeModification));
    ajoute(L"a.txt", "aaaa");
    ajoute(L"b.txt", "bbbb");
    ASSERT_EQ(1, zip.Ferme());
    ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeModification));
    EXPECT_EQ(1, zip.SupprimeMembre(zip.ChercheMembre(L"a.txt")));
    ajoute(L"b.txt", "BBBBBB"); // replaces
    ASSERT_EQ(1, zip.Ferme());
    ASSERT_EQ(1, zip.Ouvre(chemin));
    ASSERT_EQ(1, zip.NombreMembres());
    EXPECT_EQ(std::vector<BYTE>(6, 'B'), Lit(zip, 0));
    zip.Ferme();
    ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeModification));
    zip.SupprimeMembre(0);
    ASSERT_EQ(1, zip.Ferme());
    EXPECT_EQ(vide, ReadAll(chemin));
}
