// Packing a project folder and unpacking it: a round trip of every kind of record,
// locks and temporary files left out, and hostile archives refused with the
// target left as it was.
#include "project/CAffaire.h"
#include "project/CInfoPlan.h"
#include "project/ProjetFixture.h"
#include "project/Verrous.h"
#include "zip/PaquetAffaire.h"
#include "ZipFabrique.h"

#include <fstream>

using namespace prefa_test;
namespace fs = std::filesystem;

namespace
{
fs::path P(const CString& s)
{
    return fs::u8path(AfxWideToUtf8(s.Std()));
}

std::vector<BYTE> Octets(const std::string& s)
{
    return std::vector<BYTE>(s.begin(), s.end());
}

// The reason of the CExceptionZip that f throws (with its member), -1 when none.
template <typename F>
int Raison(F&& f, CString* pMembre = nullptr)
{
    try
    {
        f();
    }
    catch (CExceptionZip* e)
    {
        int r = e->m_nRaison;
        if (pMembre)
            *pMembre = e->m_strMembre;
        e->Delete();
        return r;
    }
    return -1;
}
} // namespace

class PaquetAffaire : public ProjetFixture
{
protected:
    // A project folder as the suite leaves it while a workstation works in it.
    void RemplitAffaire()
    {
        Identite(L"POSTE1", L"martin");
        CAffaire affaire;
        affaire.Texte1 = L"A-2024-17";
        affaire.Texte2 = L"Lyc\u00E9e de Villeurbanne";
        ASSERT_EQ(1, affaire.GestionFichier(1, L"AFF1"));
        for (int plan : {3, 12})
        {
            CInfoPlan info;
            info.Texte1.Format(L"Poutre P%d", plan);
            ASSERT_EQ(1, info.GestionFichier(1, L"AFF1", plan));
        }
        fs::path aff = P(m_racine.Path()) / "AFF1";
        fs::create_directories(aff / "E1");
        fs::create_directories(aff / "E2"); // an empty study folder
        WriteAll(Affaire(L"E1/TEMPER.01"), Contenu(1500000, 11));
        WriteAll(Affaire(L"E1/SECTION.01"), Contenu(900, 12));
        WriteAll(Affaire(L"LUMACPLA.03"), Contenu(436, 13));
        std::ofstream(aff / u8"Note de calcul été.txt", std::ios::binary) << "b\xC3\xA9ton";
        WriteAll(Affaire(L"vide.dat"), {});
        // Locks of this workstation and the temporary file of a save in progress.
        ASSERT_EQ(1, GererLock(0, L"AFF1", 3, 6, 0, L""));
        CConfigBRAXEL config;
        CString detenteur;
        ASSERT_TRUE(bEcritLockFichier(config, Affaire(L"E1/TEMPER.01"), detenteur, true));
        WriteAll(Affaire(L"ETUDE.LCK"), Contenu(512, 14));
        WriteAll(Affaire(L"VORENAFF.~1a2b3c4d"), Contenu(100, 15));
    }
    fs::path Racine() const { return P(m_racine.Path()); }
};

TEST_F(PaquetAffaire, AllerRetourOctetPourOctetSansVerrousNiTemporaires)
{
    RemplitAffaire();
    const std::map<std::string, std::vector<BYTE>> avant = Arbre(Racine() / "AFF1");
    for (const char* transitoire : {"LOCK_AFF", "LOCK_PLA.03", "E1/TEMPER.01.lock", "ETUDE.LCK", "VORENAFF.~1a2b3c4d"})
        ASSERT_TRUE(avant.count(transitoire)) << transitoire;

    for (const wchar_t* motDePasse : {(const wchar_t*)nullptr, L"s\u00E9same"})
    {
        SCOPED_TRACE(motDePasse ? "with a password" : "plain");
        const CString archive = m_racine / L"envoi.zip", copie = m_racine / L"COPIE";
        std::vector<double> fractions;
        CBilanZip bilan;
        ASSERT_EQ(1, Compresse_Affaire(m_racine / L"AFF1", archive, motDePasse, CArchiveZip::chiffrementPkware,
                                       [&](double f, const CString&) { fractions.push_back(f); }, &bilan));
        EXPECT_EQ(5, bilan.nExclus);
        EXPECT_EQ(2, bilan.nDossiers);
        ASSERT_FALSE(fractions.empty());
        EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
        EXPECT_DOUBLE_EQ(1.0, fractions.back());

        CBilanZip bilanRetour;
        ASSERT_EQ(1, Decompresse_Affaire(archive, copie, motDePasse, CProgressionZip(), &bilanRetour));
        std::map<std::string, std::vector<BYTE>> attendu = avant;
        for (const char* transitoire : {"LOCK_AFF", "LOCK_PLA.03", "E1/TEMPER.01.lock", "ETUDE.LCK", "VORENAFF.~1a2b3c4d"})
            attendu.erase(transitoire);
        EXPECT_EQ(attendu, Arbre(P(copie)));
        EXPECT_EQ(bilan.nFichiers, bilanRetour.nFichiers);
        EXPECT_EQ(bilan.nOctets, bilanRetour.nOctets);
        EXPECT_EQ(ReadAll(archive).size(), bilanRetour.nOctetsArchive);
        // Dates come back to the format's two seconds.
        std::error_code ec;
        auto ecart = fs::last_write_time(Racine() / "AFF1/E1/TEMPER.01") - fs::last_write_time(P(copie) / "E1/TEMPER.01");
        EXPECT_LE(std::chrono::abs(ecart), std::chrono::seconds(2));

        // The records read back from the copy.
        CAffaire affaire;
        ASSERT_EQ(1, affaire.GestionFichier(0, L"COPIE"));
        EXPECT_EQ(std::wstring(L"Lyc\u00E9e de Villeurbanne"), affaire.Texte2.Std());
        fs::remove_all(P(copie));
    }
}

TEST_F(PaquetAffaire, ArchiveDansLeDossierEtDossierAbsent)
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

    MessageBoxCapture boites;
    EXPECT_EQ(0, Compresse_Affaire(m_racine / L"AFF9", m_racine / L"x.zip"));
    ASSERT_EQ(1u, boites.boxes.size());
    EXPECT_NE(-1, boites.boxes[0].text.Find(L"IDENTERR_3105"));
    EXPECT_FALSE(Exists(m_racine / L"x.zip"));
}

TEST_F(PaquetAffaire, CibleNonVideOuSansParent)
{
    RemplitAffaire();
    const CString archive = m_racine / L"envoi.zip";
    ASSERT_EQ(1, Compresse_Affaire(m_racine / L"AFF1", archive));
    const auto avant = Arbre(Racine());
    MessageBoxCapture boites;
    EXPECT_EQ(0, Decompresse_Affaire(archive, m_racine / L"AFF1"));
    EXPECT_EQ(0, Decompresse_Affaire(archive, m_racine / L"absent/AFF2"));
    ASSERT_EQ(2u, boites.boxes.size());
    EXPECT_NE(-1, boites.boxes[0].text.Find(L"IDENTERR_3106"));
    EXPECT_NE(-1, boites.boxes[0].text.Find(L"EEXIST"));
    EXPECT_NE(-1, boites.boxes[1].text.Find(L"ENOENT"));
    EXPECT_EQ(avant, Arbre(Racine()));

    // An empty folder is taken as the target.
    fs::create_directories(Racine() / "VIDE");
    EXPECT_EQ(1, Decompresse_Affaire(archive, m_racine / L"VIDE"));
    EXPECT_TRUE(fs::exists(Racine() / "VIDE/VORENAFF"));
}

namespace
{
// Members whose stored data quote the next member's header and data: the
// compressed sizes add up to more than the archive (Fifield's overlapping bomb).
std::vector<BYTE> BombeChevauchante()
{
    std::vector<BYTE> donnees(20000, 'A');
    Bytes b, central;
    auto entete = [](Bytes& o, std::uint32_t signature, const std::string& nom, std::uint32_t crc, std::uint32_t taille) {
        o.u32(signature);
        if (signature == 0x02014b50)
            o.u16(0x031E);
        o.u16(20).u16(0).u16(0).u16(0x6000).u16(0x5862).u32(crc).u32(taille).u32(taille).u16((std::uint16_t)nom.size());
        o.u16(0);
    };
    Bytes interieur; // member "b": its header and data
    entete(interieur, 0x04034b50, "b", Crc32(donnees), (std::uint32_t)donnees.size());
    interieur.raw("b", 1).raw(donnees.data(), donnees.size());
    entete(b, 0x04034b50, "a", Crc32(interieur.b), (std::uint32_t)interieur.size());
    b.raw("a", 1);
    const std::uint32_t offsetB = (std::uint32_t)b.size();
    b.raw(interieur.b.data(), interieur.size());
    for (int k = 0; k < 2; ++k)
    {
        const std::vector<BYTE>& contenu = k == 0 ? interieur.b : donnees;
        entete(central, 0x02014b50, k == 0 ? "a" : "b", Crc32(contenu), (std::uint32_t)contenu.size());
        central.u16(0).u16(0).u16(0).u32(0100644u << 16).u32(k == 0 ? 0 : offsetB).raw(k == 0 ? "a" : "b", 1);
    }
    std::uint32_t debut = (std::uint32_t)b.size();
    b.raw(central.b.data(), central.size());
    b.u32(0x06054b50).u16(0).u16(0).u16(2).u16(2).u32((std::uint32_t)central.size()).u32(debut).u16(0);
    return b.b;
}
} // namespace

TEST_F(PaquetAffaire, ArchivesHostilesRefuseesCibleIntacte)
{
    const std::vector<BYTE> texte = Contenu(3000, 20);
    auto membre = [&](const std::string& nom) { return MembreBrut(nom, texte); };
    MembreBrut lien("lien", Octets("/etc/passwd"));
    lien.attributsExternes = 0120777u << 16;
    MembreBrut peripherique = membre("disque");
    peripherique.attributsExternes = 0060644u << 16;
    MembreBrut menteur("menteur.bin", std::vector<BYTE>(200000, 'A'));
    menteur.tailleDeclaree = 1000;
    MembreBrut crc = membre("E1/TEMPER.01");
    crc.crc = Crc32(texte) ^ 0x80000000u;

    // Archives of this library: encrypted, and cut short.
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

    CLimitesZip peuDeMembres, peuDOctets;
    peuDeMembres.nMembresMax = 3;
    peuDOctets.nTailleMax = 5000;
    const struct
    {
        const char* titre;
        std::vector<BYTE> archive;
        int raison;
        const wchar_t* membre;
        CLimitesZip limites;
    } cas[] = {
        {"climb", FabriqueZip({membre("VORENAFF"), membre("../evil.txt")}), CExceptionZip::nomRefuse, L"../evil.txt", {}},
        {"absolute", FabriqueZip({membre("/tmp/evil.txt")}), CExceptionZip::nomRefuse, L"/tmp/evil.txt", {}},
        {"backslash climb", FabriqueZip({membre("E1\\..\\..\\evil.txt")}), CExceptionZip::nomRefuse, L"E1\\..\\..\\evil.txt", {}},
        {"symbolic link", FabriqueZip({membre("a.txt"), lien}), CExceptionZip::lienSymbolique, L"lien", {}},
        {"device", FabriqueZip({peripherique}), CExceptionZip::fichierSpecial, L"disque", {}},
        {"bomb", FabriqueZip({MembreBrut("zeros.bin", std::vector<BYTE>(8 << 20, 0))}), CExceptionZip::rapportExcessif, L"zeros.bin", {}},
        {"past its size", FabriqueZip({membre("a.txt"), menteur}), CExceptionZip::tailleDepassee, L"menteur.bin", {}},
        {"bad CRC, last", FabriqueZip({membre("VORENAFF"), membre("E1/SECTION.01"), crc}), CExceptionZip::crcIncorrect, L"E1/TEMPER.01", {}},
        {"same name but case", FabriqueZip({membre("Plan.dxf"), membre("PLAN.DXF")}), CExceptionZip::nomEnDouble, L"PLAN.DXF", {}},
        {"file and folder", FabriqueZip({membre("E1"), membre("E1/TEMPER.01")}), CExceptionZip::nomEnDouble, L"E1", {}},
        {"overlapping", BombeChevauchante(), CExceptionZip::chevauchement, L"", {}},
        {"too many members", FabriqueZip({membre("a"), membre("b"), membre("c"), membre("d")}), CExceptionZip::tropDeMembres, L"", peuDeMembres},
        {"too many bytes", FabriqueZip({membre("a"), membre("b")}), CExceptionZip::tailleExcessive, L"", peuDOctets},
        {"truncated", tronquee, CExceptionZip::archiveEndommagee, L"", {}},
        {"wrong password", ReadAll(chiffree), CExceptionZip::motDePasseIncorrect, L"VORENAFF", {}},
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
            EXPECT_EQ(c.raison, Raison([&] { Decompresse_Affaire(archive, m_racine / cible, L"faux", {}, nullptr, c.limites); },
                                       &membre));
            EXPECT_EQ(std::wstring(c.membre), membre.Std());
            EXPECT_EQ(avant, Arbre(Racine())) << "the target or a temporary folder changed";
        }
    }
}

TEST_F(PaquetAffaire, VerrousDUneArchiveEtrangereLaissesDeCote)
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
