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
    t.tm_year = 124;
    t.tm_mon = 2;
    t.tm_mday = 15;
    t.tm_hour = 12;
    t.tm_min = 34;
    t.tm_sec = 56;
    t.tm_isdst = -1;
    return _mktime64(&t);
}

std::vector<BYTE> Lit(CArchiveZip& zip, const wchar_t* nom)
{
    int i = zip.ChercheMembre(nom);
    EXPECT_GE(i, 0) << AfxWideToUtf8(nom);
    std::vector<BYTE> contenu;
    if (i >= 0)
    {
        EXPECT_EQ(1, zip.LitMembre(i, contenu));
    }
    return contenu;
}

// Inflates a member straight from the archive's bytes with zlib, past libzip.
std::vector<BYTE> InflateDirect(const std::vector<BYTE>& archive, const EntreeCentrale& e)
{
    std::size_t p = e.offsetLocal;
    std::size_t debut = p + 30 + (archive[p + 26] | (archive[p + 27] << 8)) + (archive[p + 28] | (archive[p + 29] << 8));
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
    std::vector<BYTE> motif = Contenu(20000, 7);
    for (std::size_t i = 0; i < motif.size(); i += 3)
        motif[i] = (BYTE)(i * 2654435761u >> 24);
    std::vector<BYTE> b;
    while (b.size() < 1300000)
        b.insert(b.end(), motif.begin(), motif.end());
    return b;
}
} // namespace

TEST(CArchiveZip, RelitCeQuiEstEcritEtChaqueMembreEstUnFluxDeflateOrdinaire)
{
    ScratchDir dir;
    const CString chemin = dir / L"a.zip", fichier = dir / L"source.dat";
    const std::vector<BYTE> gros = Contenu(1300000, 1), repete = Repetitions(), petit = Contenu(300, 2);
    WriteAll(fichier, Contenu(700000, 3));
    const __time64_t date = DateTest();
    {
        CArchiveZip zip;
        zip.DefinitNombreThreads(3);
        ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeCreation));
        EXPECT_EQ(1, zip.AjouteTampon(L"E1/TEMPER.01", gros.data(), gros.size(), date));
        EXPECT_EQ(1, zip.AjouteTampon(L"repete.bin", repete.data(), repete.size(), date));
        EXPECT_EQ(1, zip.AjouteTampon(L"vide", nullptr, 0, date));
        EXPECT_EQ(1, zip.AjouteFichier(L"source.dat", fichier));
        EXPECT_EQ(1, zip.AjouteDossier(L"E2/", date));
        zip.DefinitCompression(CArchiveZip::methodeStockee);
        EXPECT_EQ(1, zip.AjouteTampon(L"stocke.txt", petit.data(), petit.size(), date));
        EXPECT_EQ(1, zip.Ferme());
    }
    const std::vector<BYTE> octets = ReadAll(chemin);
    const std::vector<EntreeCentrale> central = LitCentral(octets);
    ASSERT_EQ(6u, central.size());
    const std::vector<BYTE>* attendus[] = {&gros, &repete, nullptr, nullptr, nullptr, &petit};
    const std::vector<BYTE> source = ReadAll(fichier), vide;
    attendus[2] = &vide;
    attendus[3] = &source;
    for (std::size_t k = 0; k < central.size(); ++k)
    {
        const EntreeCentrale& e = central[k];
        if (k == 4)
        {
            EXPECT_EQ("E2/", e.nom);
            continue;
        }
        EXPECT_EQ(attendus[k]->size(), e.taille) << e.nom;
        EXPECT_EQ(Crc32(*attendus[k]), e.crc) << e.nom;
        EXPECT_EQ(k == 5 ? 0 : 8, e.methode) << e.nom;
        if (e.methode == 8)
        {
            EXPECT_EQ(*attendus[k], InflateDirect(octets, e)) << e.nom;
        }
    }
    EXPECT_EQ("E1/TEMPER.01", central[0].nom);
    // Dates in MS-DOS form: hours, minutes, seconds / 2; years since 1980, month, day.
    EXPECT_EQ((12 << 11) | (34 << 5) | 28, central[0].heureDos);
    EXPECT_EQ((44 << 9) | (3 << 5) | 15, central[0].dateDos);
    // The blocks see the end of the block before them: the repeats cost almost nothing.
    EXPECT_LT(central[1].tailleCompressee, Deflate(repete).size() * 11 / 10);

    CArchiveZip zip;
    ASSERT_EQ(1, zip.Ouvre(chemin));
    ASSERT_EQ(6, zip.NombreMembres());
    EXPECT_EQ(gros, Lit(zip, L"E1/TEMPER.01"));
    EXPECT_EQ(repete, Lit(zip, L"repete.bin"));
    EXPECT_EQ(source, Lit(zip, L"source.dat"));
    EXPECT_EQ(petit, Lit(zip, L"stocke.txt"));
    EXPECT_TRUE(Lit(zip, L"vide").empty());
    CMembreZip m = zip.DonneMembre(0);
    EXPECT_EQ(date, m.Date);
    EXPECT_EQ(gros.size(), m.Taille);
    EXPECT_EQ(central[0].tailleCompressee, m.TailleCompressee);
    EXPECT_FALSE(m.bDossier);
    EXPECT_TRUE(zip.DonneMembre(4).bDossier);
    EXPECT_EQ(std::wstring(L"E2/"), zip.DonneMembre(4).Nom.Std());
    EXPECT_EQ(-1, zip.ChercheMembre(L"e1/temper.01"));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { zip.DonneMembre(6); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { zip.DonneMembre(-1); }));
}

TEST(CArchiveZip, LeNombreDeThreadsNeChangePasUnOctet)
{
    ScratchDir dir;
    const std::vector<BYTE> a = Contenu(1200000, 4), b = Contenu(1000, 5);
    std::vector<BYTE> archives[2];
    for (int k = 0; k < 2; ++k)
    {
        CArchiveZip zip;
        zip.DefinitNombreThreads(k == 0 ? 1 : 4);
        const CString chemin = dir / (k == 0 ? L"un.zip" : L"quatre.zip");
        ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeCreation));
        for (int n = 0; n < 3; ++n)
        {
            CString nom;
            nom.Format(L"membre%d", n);
            zip.AjouteTampon(nom + L"a", a.data(), a.size(), DateTest());
            zip.AjouteTampon(nom + L"b", b.data(), b.size(), DateTest());
        }
        ASSERT_EQ(1, zip.Ferme());
        archives[k] = ReadAll(chemin);
    }
    EXPECT_EQ(archives[0], archives[1]);
}

TEST(CArchiveZip, NomsEnUtf8AvecLeDrapeauDeLangue)
{
    ScratchDir dir;
    const CString chemin = dir / L"noms.zip";
    CArchiveZip zip;
    ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeCreation));
    zip.AjouteTampon(L"E1\\Plan \u00E9t\u00E9.dxf", "x", 1, DateTest()); // a caller's backslash
    zip.AjouteTampon(L"VORENAFF", "y", 1, DateTest());
    ASSERT_EQ(1, zip.Ferme());
    std::vector<EntreeCentrale> central = LitCentral(ReadAll(chemin));
    ASSERT_EQ(2u, central.size());
    EXPECT_EQ("E1/Plan \xC3\xA9t\xC3\xA9.dxf", central[0].nom);
    EXPECT_EQ(0x0800, central[0].drapeaux & 0x0800);
    EXPECT_EQ(0, central[1].drapeaux & 0x0800); // pure ASCII needs no flag
    ASSERT_EQ(1, zip.Ouvre(chemin));
    EXPECT_EQ(std::wstring(L"E1/Plan \u00E9t\u00E9.dxf"), zip.DonneMembre(0).Nom.Std());
}

TEST(CArchiveZip, NomsDesAnciensOutilsWindows)
{
    ScratchDir dir;
    MembreBrut oem{"E1\\\x82t\x82.txt", {'a'}}; // Windows Explorer: code page 850, backslash
    oem.versionFaite = 0x0014;                  // made by MS-DOS (FAT)
    MembreBrut ntfs{"\x90t\x82.txt", {'b'}};
    ntfs.versionFaite = 0x0A14;
    MembreBrut unixLatin1{"\xE9t\xE9.txt", {'c'}};
    MembreBrut utf8{"\xC3\xA0 plat.txt", {'d'}};
    utf8.drapeaux = 0x0800;
    const CString chemin = dir / L"anciens.zip";
    WriteAll(chemin, FabriqueZip({oem, ntfs, unixLatin1, utf8}));
    CArchiveZip zip;
    ASSERT_EQ(1, zip.Ouvre(chemin));
    EXPECT_EQ(std::wstring(L"E1\\\u00E9t\u00E9.txt"), zip.DonneMembre(0).Nom.Std());
    EXPECT_EQ(std::wstring(L"\u00C9t\u00E9.txt"), zip.DonneMembre(1).Nom.Std());
    EXPECT_EQ(std::wstring(L"\u00E9t\u00E9.txt"), zip.DonneMembre(2).Nom.Std());
    EXPECT_EQ(std::wstring(L"\u00E0 plat.txt"), zip.DonneMembre(3).Nom.Std());
    EXPECT_EQ(0, zip.DonneMembre(0).Systeme);
    EXPECT_EQ(10, zip.DonneMembre(1).Systeme);
}

TEST(CArchiveZip, ChiffrementPkwareEtAes)
{
    ScratchDir dir;
    const std::vector<BYTE> contenu = Contenu(1200000, 6);
    for (int chiffrement : {CArchiveZip::chiffrementPkware, CArchiveZip::chiffrementAes128,
                            CArchiveZip::chiffrementAes256})
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
        std::vector<EntreeCentrale> central = LitCentral(ReadAll(chemin));
        ASSERT_EQ(2u, central.size());
        EXPECT_EQ(1, central[0].drapeaux & 1);
        EXPECT_EQ(chiffrement == CArchiveZip::chiffrementPkware ? 8 : 99, central[0].methode);
        EXPECT_EQ(0, central[1].drapeaux & 1); // a folder holds nothing to hide

        CArchiveZip zip;
        ASSERT_EQ(1, zip.Ouvre(chemin));
        EXPECT_EQ(chiffrement, zip.DonneMembre(0).Chiffrement);
        EXPECT_EQ(8, zip.DonneMembre(0).Methode);
        std::vector<BYTE> lu;
        auto raison = [&](LPCTSTR motDePasse) {
            zip.DefinitMotDePasse(motDePasse);
            try
            {
                zip.LitMembre(0, lu);
            }
            catch (CExceptionZip* e)
            {
                EXPECT_EQ(std::wstring(L"E1/TEMPER.01"), e->m_strMembre.Std());
                EXPECT_NE(-1, e->GetMessageText().Find(L"E1/TEMPER.01"));
                int r = e->m_nRaison;
                e->Delete();
                return r;
            }
            return -1;
        };
        EXPECT_EQ(CExceptionZip::motDePasseRequis, raison(nullptr));
        EXPECT_EQ(CExceptionZip::motDePasseIncorrect, raison(L"sesame"));
        EXPECT_EQ(-1, raison(L"s\u00E9same"));
        EXPECT_EQ(contenu, lu);
    }
}

TEST(CArchiveZip, LectureBorneeParLaDeclarationEtCrcVerifie)
{
    ScratchDir dir;
    const std::vector<BYTE> donnees = Contenu(100000, 8);
    MembreBrut menteur{"menteur.txt", donnees};
    menteur.tailleDeclaree = 1000;
    MembreBrut court{"court.txt", donnees};
    court.tailleDeclaree = 200000;
    MembreBrut crc{"crc.txt", donnees};
    crc.crc = Crc32(donnees) ^ 1;
    MembreBrut stocke{"stocke.txt", donnees};
    stocke.methode = 0;
    stocke.tailleDeclaree = 10; // stored: its compressed size (all the data) says otherwise
    const CString chemin = dir / L"faux.zip";
    WriteAll(chemin, FabriqueZip({menteur, court, crc, stocke}));

    CArchiveZip zip;
    ASSERT_EQ(1, zip.Ouvre(chemin));
    const int attendues[] = {CExceptionZip::tailleDepassee, CExceptionZip::donneesEndommagees,
                             CExceptionZip::crcIncorrect, CExceptionZip::tailleDepassee};
    for (int i = 0; i < 4; ++i)
    {
        std::size_t recus = 0;
        try
        {
            zip.LitMembre(i, [&](const BYTE*, std::size_t n) { recus += n; });
            ADD_FAILURE() << "member " << i << " read";
        }
        catch (CExceptionZip* e)
        {
            EXPECT_EQ(attendues[i], e->m_nRaison) << i;
            EXPECT_EQ(zip.DonneMembre(i).Nom, e->m_strMembre);
            e->Delete();
        }
        // Never more than declared reaches the caller.
        EXPECT_LE(recus, zip.DonneMembre(i).Taille) << i;
    }
}

TEST(CArchiveZip, ArchivesTronqueesOuAbsentes)
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
        int raison = -1;
        try
        {
            zip.Ouvre(chemin);
        }
        catch (CExceptionZip* e)
        {
            raison = e->m_nRaison;
            EXPECT_EQ(CArchiveException::badIndex, e->m_cause);
            e->Delete();
        }
        EXPECT_EQ(CExceptionZip::archiveEndommagee, raison) << n << " bytes";
    }

    MessageBoxCapture boites;
    CArchiveZip zip;
    EXPECT_EQ(0, zip.Ouvre(dir / L"absente.zip"));
    ASSERT_EQ(1u, boites.boxes.size());
    EXPECT_NE(-1, boites.boxes[0].text.Find(L"IDENTERR_3101"));
    EXPECT_NE(-1, boites.boxes[0].text.Find(L"ENOENT"));
    EXPECT_NE(-1, boites.boxes[0].text.Find(dir / L"absente.zip"));
}

TEST(CArchiveZip, UneEcritureRateeLaissePrecedente)
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
        {
            CString nom;
            nom.Format(L"m%02d", k);
            zip.AjouteTampon(nom, "z", 1, DateTest());
        }
        ASSERT_EQ(1, zip.AjouteFichier(L"disparu.dat", fichier));
        fs::remove(fs::path(fichier.Std()));
        EXPECT_EQ(0, zip.Ferme());
    }
    ASSERT_EQ(1u, boites.boxes.size());
    EXPECT_NE(-1, boites.boxes[0].text.Find(L"IDENTERR_3104"));
    EXPECT_NE(-1, boites.boxes[0].text.Find(fichier));
    EXPECT_EQ(avant, ReadAll(chemin));
    int n = 0;
    for (auto& e : fs::directory_iterator(fs::path(dir.Path().Std())))
        n += e.path().filename() != "envoi.zip";
    EXPECT_EQ(0, n) << "a temporary file was left";

    // A folder that does not exist: the archive cannot be written, which the open says.
    CArchiveZip zip;
    EXPECT_EQ(0, zip.Ouvre(dir / L"absent/x.zip", CArchiveZip::modeCreation));
    EXPECT_EQ(0, zip.Ferme());
    ASSERT_EQ(2u, boites.boxes.size());
    EXPECT_NE(-1, boites.boxes[1].text.Find(L"IDENTERR_3102"));
}

TEST(CArchiveZip, ArchiveSansMembreEtModification)
{
    ScratchDir dir;
    const CString chemin = dir / L"m.zip";
    CArchiveZip zip;
    ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeCreation));
    ASSERT_EQ(1, zip.Ferme());
    std::vector<BYTE> vide(22, 0);
    vide[0] = 'P', vide[1] = 'K', vide[2] = 5, vide[3] = 6;
    EXPECT_EQ(vide, ReadAll(chemin));

    ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeModification));
    zip.AjouteTampon(L"a.txt", "aaaa", 4, DateTest());
    zip.AjouteTampon(L"b.txt", "bbbb", 4, DateTest());
    ASSERT_EQ(1, zip.Ferme());
    ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeModification));
    EXPECT_EQ(1, zip.SupprimeMembre(zip.ChercheMembre(L"a.txt")));
    zip.AjouteTampon(L"b.txt", "BBBBBB", 6, DateTest()); // replaces
    zip.AjouteTampon(L"c.txt", "cc", 2, DateTest());
    ASSERT_EQ(1, zip.Ferme());
    ASSERT_EQ(1, zip.Ouvre(chemin));
    ASSERT_EQ(2, zip.NombreMembres());
    EXPECT_EQ(std::vector<BYTE>({'B', 'B', 'B', 'B', 'B', 'B'}), Lit(zip, L"b.txt"));
    EXPECT_EQ(std::vector<BYTE>({'c', 'c'}), Lit(zip, L"c.txt"));
    zip.Ferme();

    ASSERT_EQ(1, zip.Ouvre(chemin, CArchiveZip::modeModification));
    zip.SupprimeMembre(0);
    zip.SupprimeMembre(1);
    ASSERT_EQ(1, zip.Ferme());
    EXPECT_EQ(vide, ReadAll(chemin));
}
