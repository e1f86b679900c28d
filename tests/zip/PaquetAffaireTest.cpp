// Packing a project folder and unpacking it: a round trip of every kind of record,
// locks and temporary files left out, and hostile archives refused with the
// target left as it was.
#include "project/CAffaire.h"
#include "project/CInfoPlan.h"
#include "project/ProjetFixture.h"
#include "project/Verrous.h"
#include "zip/PaquetAffaire.h"
#include "ZipFabrique.h"

using namespace prefa_test;
namespace fs = std::filesystem;

class PaquetAffaire : public ProjetFixture
{
protected:
    // A project folder as the suite leaves it while a workstation works in it: records,
    // studies (one empty), its locks and the temporary file of a save in progress.
    void RemplitAffaire()
    {
        Identite(L"POSTE1", L"martin");
        CAffaire affaire;
        affaire.Texte2 = L"Lyc\u00E9e de Villeurbanne";
        ASSERT_EQ(1, affaire.GestionFichier(1, L"AFF1"));
        CInfoPlan info;
        ASSERT_EQ(1, info.GestionFichier(1, L"AFF1", 3));
        fs::create_directories(Racine() / "AFF1/E1");
        fs::create_directories(Racine() / "AFF1/E2");
        WriteAll(Affaire(L"E1/TEMPER.01"), Contenu(1500000, 11));
        Ecrit(Racine() / u8"AFF1/Note de calcul \u00E9t\u00E9.txt", Contenu(436, 13));
        WriteAll(Affaire(L"vide.dat"), {});
        ASSERT_EQ(1, GererLock(0, L"AFF1", 3, 6, 0, L""));
        CConfigBRAXEL config;
        CString detenteur;
        ASSERT_TRUE(bEcritLockFichier(config, Affaire(L"E1/TEMPER.01"), detenteur, true));
        WriteAll(Affaire(L"ETUDE.LCK"), Contenu(512, 14));
        WriteAll(Affaire(L"VORENAFF.~1a2b3c4d"), Contenu(100, 15));
    }
    fs::path Racine() const { return fs::u8path(m_racine.Utf8()); }
};

TEST_F(PaquetAffaire, RoundTripIsByteForByteWithoutLocksOrTemporaries)
{
    RemplitAffaire();
    std::map<std::string, std::vector<BYTE>> attendu = Arbre(Racine() / "AFF1");
    for (const char* transitoire : {"LOCK_AFF", "LOCK_PLA.03", "E1/TEMPER.01.lock", "ETUDE.LCK", "VORENAFF.~1a2b3c4d"})
        ASSERT_EQ(1u, attendu.erase(transitoire)) << transitoire;
    fs::create_directories(Racine() / "VIDE");
    for (const wchar_t* motDePasse : {(const wchar_t*)nullptr, L"s\u00E9same"})
    {
        SCOPED_TRACE(motDePasse ? "with a password, into an empty folder" : "plain, into a new folder");
        const CString archive = m_racine / L"envoi.zip", copie = m_racine / (motDePasse ? L"VIDE" : L"COPIE");
        std::vector<double> fractions;
        CBilanZip bilan, bilanRetour;
        ASSERT_EQ(1, Compresse_Affaire(m_racine / L"AFF1", archive, motDePasse, CArchiveZip::chiffrementPkware,
                                       [&](double f, const CString&) { fractions.push_back(f); }, &bilan));
        EXPECT_EQ(5, bilan.nExclus);
        EXPECT_EQ(2, bilan.nDossiers);
        ASSERT_FALSE(fractions.empty());
        EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
        EXPECT_DOUBLE_EQ(1.0, fractions.back());

        ASSERT_EQ(1, Decompresse_Affaire(archive, copie, motDePasse, CProgressionZip(), &bilanRetour));
        const fs::path pCopie = fs::u8path(AfxWideToUtf8(copie.Std()));
        EXPECT_EQ(attendu, Arbre(pCopie));
        EXPECT_EQ(bilan.nFichiers, bilanRetour.nFichiers);
        EXPECT_EQ(bilan.nOctets, bilanRetour.nOctets);
        EXPECT_EQ(ReadAll(archive).size(), bilanRetour.nOctetsArchive);
        // Dates come back to the format's two seconds.
        auto ecart = fs::last_write_time(Racine() / "AFF1/E1/TEMPER.01") - fs::last_write_time(pCopie / "E1/TEMPER.01");
        EXPECT_LE(std::chrono::abs(ecart), std::chrono::seconds(2));
    }
}

TEST_F(PaquetAffaire, TheArchiveInsideItsFolderIsLeftOutAndBadFoldersAreFileErrors)
{
    RemplitAffaire();
    const CString archive = Affaire(L"envoi.zip");
    WriteAll(Affaire(L"envoi.zip.Xa3bc9"), Contenu(10, 1)); // what libzip's temporary file looks like
    ASSERT_EQ(1, Compresse_Affaire(m_racine / L"AFF1", archive));
    CArchiveZip zip;
    ASSERT_EQ(1, zip.Ouvre(archive));
    EXPECT_EQ(-1, zip.ChercheMembre(L"envoi.zip"));
    EXPECT_EQ(-1, zip.ChercheMembre(L"envoi.zip.Xa3bc9"));
    EXPECT_GE(zip.ChercheMembre(L"VORENAFF"), 0);

    const auto avant = Arbre(Racine());
    MessageBoxCapture boites;
    EXPECT_EQ(0, Compresse_Affaire(m_racine / L"AFF9", m_racine / L"x.zip"));
    EXPECT_EQ(0, Decompresse_Affaire(archive, m_racine / L"AFF1"));
    EXPECT_EQ(0, Decompresse_Affaire(archive, m_racine / L"absent/AFF2"));
    ASSERT_EQ(3u, boites.boxes.size());
    EXPECT_NE(-1, boites.boxes[0].text.Find(L"IDENTERR_3105"));
    EXPECT_NE(-1, boites.boxes[1].text.Find(L"IDENTERR_3106"));
    EXPECT_NE(-1, boites.boxes[1].text.Find(L"EEXIST"));
    EXPECT_NE(-1, boites.boxes[2].text.Find(L"ENOENT"));
    EXPECT_EQ(avant, Arbre(Racine()));
}

namespace
{
// A stored member whose data quote the next member's header and data: the compressed
// sizes add up to more than the archive (Fifield's overlapping bomb).
std::vector<BYTE> BombeChevauchante()
{
    MembreBrut b("b", std::vector<BYTE>(20000, 'A'));
    b.methode = 0;
    const std::vector<BYTE> seul = FabriqueZip({b});
    MembreBrut a("a", std::vector<BYTE>(seul.begin(), seul.begin() + 30 + 1 + 20000));
    a.methode = 0;
    b.offsetLocal = 30 + 1; // inside a's data
    return FabriqueZip({a, b});
}
} // namespace

TEST_F(PaquetAffaire, HostileArchivesAreRefusedWithTheTargetLeftAsItWas)
{
    const std::vector<BYTE> texte = Contenu(3000, 20);
    auto membre = [&](const std::string& nom) { return MembreBrut(nom, texte); };
    MembreBrut lien("lien", {'/', 'e', 't', 'c'});
    lien.attributsExternes = 0120777u << 16;
    MembreBrut peripherique = membre("disque");
    peripherique.attributsExternes = 0060644u << 16;
    MembreBrut crc = membre("E1/TEMPER.01");
    crc.crc = Crc32(texte) ^ 0x80000000u;

    const CString chiffree = m_racine / L"chiffree.zip";
    {
        CArchiveZip zip;
        zip.DefinitMotDePasse(L"juste");
        ASSERT_EQ(1, zip.Ouvre(chiffree, CArchiveZip::modeCreation));
        zip.AjouteTampon(L"VORENAFF", texte.data(), texte.size(), 1700000000);
        ASSERT_EQ(1, zip.Ferme());
    }
    std::vector<BYTE> tronquee = FabriqueZip({membre("a.txt"), membre("b.txt")});
    tronquee.resize(tronquee.size() * 2 / 3);

    const struct
    {
        const char* titre;
        std::vector<BYTE> archive;
        int raison;
        const wchar_t* membre;
    } cas[] = {
        {"climb", FabriqueZip({membre("VORENAFF"), membre("../evil.txt")}), CExceptionZip::nomRefuse, L"../evil.txt"},
        {"absolute", FabriqueZip({membre("/tmp/evil.txt")}), CExceptionZip::nomRefuse, L"/tmp/evil.txt"},
        {"backslash climb", FabriqueZip({membre("E1\\..\\..\\evil.txt")}), CExceptionZip::nomRefuse, L"E1\\..\\..\\evil.txt"},
        {"symbolic link", FabriqueZip({membre("a.txt"), lien}), CExceptionZip::lienSymbolique, L"lien"},
        {"device", FabriqueZip({peripherique}), CExceptionZip::fichierSpecial, L"disque"},
        {"bomb", FabriqueZip({MembreBrut("zeros.bin", std::vector<BYTE>(8 << 20, 0))}), CExceptionZip::rapportExcessif, L"zeros.bin"},
        {"bad CRC, last", FabriqueZip({membre("VORENAFF"), membre("E1/SECTION.01"), crc}), CExceptionZip::crcIncorrect, L"E1/TEMPER.01"},
        {"same name but case", FabriqueZip({membre("Plan.dxf"), membre("PLAN.DXF")}), CExceptionZip::nomEnDouble, L"PLAN.DXF"},
        {"file and folder", FabriqueZip({membre("E1"), membre("E1/TEMPER.01")}), CExceptionZip::nomEnDouble, L"E1"},
        {"overlapping", BombeChevauchante(), CExceptionZip::chevauchement, L""},
        {"truncated", tronquee, CExceptionZip::archiveEndommagee, L""},
        {"wrong password", ReadAll(chiffree), CExceptionZip::motDePasseIncorrect, L"VORENAFF"},
    };
    fs::create_directories(Racine() / "VIDE");
    for (const auto& c : cas)
    {
        SCOPED_TRACE(c.titre);
        const CString archive = m_racine / L"hostile.zip";
        WriteAll(archive, c.archive);
        const auto avant = Arbre(Racine());
        for (const wchar_t* cible : {L"NOUVEAU", L"VIDE"})
        {
            CString membre;
            EXPECT_EQ(c.raison, Raison([&] { Decompresse_Affaire(archive, m_racine / cible, L"faux"); },
                                       &membre));
            EXPECT_EQ(std::wstring(c.membre), membre.Std());
            EXPECT_EQ(avant, Arbre(Racine())) << "the target or a temporary folder changed";
        }
    }
}

TEST_F(PaquetAffaire, LocksOfAForeignArchiveAreLeftOutAtAnyDepth)
{
    const CString archive = m_racine / L"etrangere.zip";
    WriteAll(archive, FabriqueZip({MembreBrut("LOCK_AFF", Contenu(512, 1)), MembreBrut("VORENAFF", Contenu(100, 2)),
                                   MembreBrut("E1/LOCK_PLA.07", Contenu(512, 3)), MembreBrut("E1/x.lock", {})}));
    CBilanZip bilan;
    ASSERT_EQ(1, Decompresse_Affaire(archive, m_racine / L"AFF2", nullptr, {}, &bilan));
    const auto arbre = Arbre(Racine() / "AFF2");
    EXPECT_EQ(1u, arbre.size()); // E1 held only locks
    EXPECT_TRUE(arbre.count("VORENAFF"));
    EXPECT_EQ(3, bilan.nExclus);
    EXPECT_EQ(1, bilan.nFichiers);
}

TEST_F(PaquetAffaire, LimitsBiteAtTheirBoundAndNotOneBelow)
{
    // Stored members whose declared size sets the ratio: a bomb from 1000 to 1 and from
    // 1 MiB on; a byte short of either, the member is only damaged.
    auto stocke = [](std::size_t n, std::uint32_t declaree) {
        MembreBrut m("m", std::vector<BYTE>(n, 'A'));
        m.methode = 0;
        m.tailleDeclaree = declaree;
        return FabriqueZip({m});
    };
    const std::vector<BYTE> trois = FabriqueZip({MembreBrut("a", Contenu(2000, 1)), MembreBrut("b", Contenu(2000, 2)),
                                                 MembreBrut("c", Contenu(2000, 3))});
    auto limites = [](ULONGLONG nMembres, ULONGLONG nOctets) {
        CLimitesZip l;
        l.nMembresMax = nMembres;
        l.nTailleMax = nOctets;
        return l;
    };
    const struct
    {
        std::vector<BYTE> archive;
        CLimitesZip limites;
        int raison;
    } cas[] = {
        {trois, limites(3, 6000), -1},
        {trois, limites(2, 6000), CExceptionZip::tropDeMembres},
        {trois, limites(3, 5999), CExceptionZip::tailleExcessive},
        {stocke(2000, 2000000), {}, CExceptionZip::rapportExcessif},
        {stocke(2000, 1999999), {}, CExceptionZip::donneesEndommagees},
        {stocke(1000, 1u << 20), {}, CExceptionZip::rapportExcessif},
        {stocke(1000, (1u << 20) - 1), {}, CExceptionZip::donneesEndommagees},
    };
    MessageBoxCapture boites;
    for (std::size_t k = 0; k < std::size(cas); ++k)
    {
        const CString archive = m_racine / L"limite.zip", cible = m_racine / CString(std::to_wstring(k).c_str());
        WriteAll(archive, cas[k].archive);
        EXPECT_EQ(cas[k].raison, Raison([&] { Decompresse_Affaire(archive, cible, nullptr, {}, nullptr, cas[k].limites); }))
            << k;
    }
}
