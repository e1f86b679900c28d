#include "project/FichiersEtudes.h"
#include "project/Verrous.h"
#include "VerrousFixture.h"

#include <cstring>
#include <filesystem>

using namespace prefa_test;

TEST_F(Verrous, ConfigurationFileAndIdentity)
{
    Bytes attendu;
    attendu.u32(1).text(PC_A).text(ALICE);
    EXPECT_EQ(ReadAll(m_racine / CString(L"BRAXEL.CFG")), attendu.b);
    CConfigBRAXEL moi;
    EXPECT_EQ(moi.NomOrdinateur, PC_A);
    EXPECT_EQ(moi.NomUtilisateur, ALICE);

    // A file naming only the user: the computer comes from the system.
    Identite(L"", L"Zoé €");
    CConfigBRAXEL partiel;
    EXPECT_EQ(partiel.NomUtilisateur, L"Zoé €");
    wchar_t nom[256] = {0};
    DWORD n = 256;
    ASSERT_TRUE(GetComputerNameW(nom, &n));
    EXPECT_EQ(partiel.NomOrdinateur, nom);

    // A damaged file: the system's names, no exception out of the constructor.
    WriteAll(m_racine / CString(L"BRAXEL.CFG"), {1, 0, 0, 0, 0xFF, 0xFE, 0xFF, 200});
    CConfigBRAXEL abime;
    EXPECT_EQ(abime.NomOrdinateur, nom);
    EXPECT_FALSE(abime.NomUtilisateur.IsEmpty());
    EXPECT_EQ(ArchiveCause([&] { abime.GestionFichierCConfig(0); }), CArchiveException::endOfFile);

    // Missing: mode 2 is quiet, mode 0 shows the framework's report and the error.
    std::filesystem::remove(m_racine.Utf8() + "/BRAXEL.CFG");
    MessageBoxCapture boites;
    EXPECT_FALSE(abime.GestionFichierCConfig(2));
    EXPECT_TRUE(boites.boxes.empty());
    EXPECT_FALSE(abime.GestionFichierCConfig(0));
    ASSERT_EQ(boites.boxes.size(), 2u);
    EXPECT_GE(boites.boxes[1].text.Find(L"IDENTERR_2457"), 0);
    EXPECT_GE(boites.boxes[1].text.Find(L"..\\ConfigBRAXEL - "), 0);
    EXPECT_GE(boites.boxes[1].text.Find(L" - 70\n2 - ENOENT"), 0);

    // Same workstation only when both names match exactly, case included.
    CConfigBRAXEL autre = moi;
    EXPECT_EQ(autre.MemeUtilisateur(moi), 1);
    autre.NomUtilisateur = L"Alice";
    EXPECT_EQ(autre.MemeUtilisateur(moi), 0);
    autre = moi;
    autre.NomOrdinateur = L"PC-a";
    EXPECT_EQ(autre.MemeUtilisateur(moi), 0);
}

TEST_F(Verrous, PerWorkstationSuffix)
{
    CConfigBRAXEL c;
    c.NomUtilisateur = L"ali:ce";
    c.NomOrdinateur = L"   ";
    EXPECT_EQ(DonneExtensionFichierMultiUtilisateur(c), L".Comput.alice");
    c.NomOrdinateur = L" a/b\\c:d*e?f\"g<h>i|j ";
    c.NomUtilisateur = L"::";
    EXPECT_EQ(DonneExtensionFichierMultiUtilisateur(c), L".abcdefghij.User");
    c.NomOrdinateur = L"PC 1";
    c.NomUtilisateur = L" ? x ";
    EXPECT_EQ(DonneExtensionFichierMultiUtilisateur(c), L".PC 1.x");
}

TEST_F(Verrous, LockRecordLayout)
{
    CConfigBRAXEL c;
    c.NomUtilisateur = L"Hélène";
    c.NomOrdinateur = L"Poste-€";
    CString chemin = m_racine / CString(L"essai.lock");
    ASSERT_EQ(c.GestionFichierLock(1, chemin), 0);
    EXPECT_EQ(ReadAll(chemin), RecordLock("H\xE9l\xE8ne", "Poste-\x80"));

    CConfigBRAXEL lu;
    ASSERT_EQ(lu.GestionFichierLock(2, chemin), 0);
    EXPECT_EQ(lu.NomUtilisateur, L"Hélène");
    EXPECT_EQ(lu.NomOrdinateur, L"Poste-€");

    // Names of 300 characters keep 255 and their terminator.
    c.NomUtilisateur = CString(L'u', 300);
    c.NomOrdinateur = CString(L'o', 300);
    ASSERT_EQ(c.GestionFichierLock(1, chemin), 0);
    EXPECT_EQ(ReadAll(chemin), RecordLock(std::string(255, 'u'), std::string(255, 'o')));

    // A short or missing lock file is a failed read with empty names.
    WriteAll(chemin, std::vector<BYTE>(511, 'x'));
    EXPECT_NE(lu.GestionFichierLock(2, chemin), 0);
    EXPECT_TRUE(lu.NomUtilisateur.IsEmpty() && lu.NomOrdinateur.IsEmpty());
    EXPECT_NE(lu.GestionFichierLock(2, m_racine / CString(L"absent.lock")), 0);
}

TEST_F(Verrous, SingleFileLock)
{
    CString fichier = Affaire(L"DEVIS.01");
    CString lock = fichier + L".lock";
    CConfigBRAXEL alice;
    CString detenteur = L"x";

    // Inactive: nothing happens.
    EXPECT_TRUE(bEcritLockFichier(alice, fichier, detenteur, false));
    EXPECT_FALSE(Exists(lock));

    EXPECT_TRUE(bLockFichierPossible(alice, fichier, detenteur, true));
    EXPECT_TRUE(detenteur.IsEmpty());
    EXPECT_TRUE(bEcritLockFichier(alice, fichier, detenteur, true));
    EXPECT_EQ(ReadAll(lock), RecordLock("alice", "PC-A"));

    // Own lock (a stale one too) is kept as it is.
    std::vector<BYTE> propre = RecordLock("alice", "PC-A");
    propre[511] = 0; // same record
    EXPECT_TRUE(bEcritLockFichier(alice, fichier, detenteur, true));
    EXPECT_EQ(detenteur, L"Verrouillé par alice sur PC-A");
    EXPECT_EQ(ReadAll(lock), propre);

    // Another workstation is refused and told who holds it.
    Identite(PC_B, BOB);
    CConfigBRAXEL bob;
    EXPECT_FALSE(bLockFichierPossible(bob, fichier, detenteur, true));
    EXPECT_EQ(detenteur, L"Verrouillé par alice sur PC-A");
    EXPECT_FALSE(bEcritLockFichier(bob, fichier, detenteur, true));
    EXPECT_EQ(Detenteur(lock), L"alice@PC-A");

    // Inactive removal does nothing; active removal frees the file for bob.
    DetruitLockFichier(fichier, false);
    EXPECT_TRUE(Exists(lock));
    DetruitLockFichier(fichier, true);
    EXPECT_FALSE(Exists(lock));
    DetruitLockFichier(fichier, true); // nothing to remove: ignored
    EXPECT_TRUE(bEcritLockFichier(bob, fichier, detenteur, true));
    EXPECT_EQ(Detenteur(lock), L"bob@PC-B");

    // An unreadable lock counts as another's, with empty names.
    WriteAll(lock, {1, 2, 3});
    EXPECT_FALSE(bLockFichierPossible(bob, fichier, detenteur, true));
    EXPECT_EQ(detenteur, L"Verrouillé par  sur ");
}

TEST_F(Verrous, EveryOperationTakesAndReleasesAndRefusesAnother)
{
    struct Cas
    {
        int op;
        bool affaire;      // taking writes the project lock
        bool plan;         // taking writes the drawing lock
        bool libereAff;    // releasing removes the project lock
        bool liberePlan;   // releasing removes the drawing lock
    };
    const Cas cas[] = {
        {2, true, false, true, false},  {4, true, false, true, false},  {11, true, false, true, false},
        {3, true, false, false, false}, {5, true, false, true, false},  {12, true, false, true, false},
        {6, true, true, true, true},    {8, true, true, true, true},    {10, true, true, true, true},
        {9, true, true, true, false},   {7, false, true, false, true},
    };
    for (const Cas& c : cas)
    {
        SCOPED_TRACE(c.op);
        std::filesystem::remove(m_racine.Utf8() + "/AFF1/LOCK_AFF");
        std::filesystem::remove(m_racine.Utf8() + "/AFF1/LOCK_PLA.04");
        Identite(PC_A, ALICE);
        MessageBoxCapture boites;
        ASSERT_EQ(GererLock(0, L"AFF1", 4, c.op, 1, L"NOM"), 1);
        EXPECT_EQ(Exists(LockAff()), c.affaire);
        EXPECT_EQ(Exists(LockPla(4)), c.plan);
        EXPECT_FALSE(Exists(Affaire(L"NOM.LCK")));
        if (c.affaire)
        {
            EXPECT_EQ(ReadAll(LockAff()), RecordLock("alice", "PC-A"));
        }
        if (c.plan)
        {
            EXPECT_EQ(ReadAll(LockPla(4)), RecordLock("alice", "PC-A"));
        }

        // The same workstation again: its own locks are taken over.
        ASSERT_EQ(GererLock(0, L"AFF1", 4, c.op, 1, L"NOM"), 1);

        // Bob is refused, named holder in the box, and leaves nothing behind.
        Identite(PC_B, BOB);
        EXPECT_EQ(GererLock(0, L"AFF1", 4, c.op, 1, L"NOM"), 0);
        ASSERT_EQ(boites.boxes.size(), 1u);
        EXPECT_EQ(boites.boxes[0].type, (UINT)(MB_OK | MB_ICONINFORMATION));
        EXPECT_EQ(boites.boxes[0].text, c.affaire ? CString(L"Affaire AFF1 prise par alice sur PC-A")
                                                  : CString(L"Plan 4 de AFF1 pris par alice sur PC-A"));
        if (c.affaire)
        {
            EXPECT_EQ(Detenteur(LockAff()), L"alice@PC-A");
        }
        EXPECT_EQ(Exists(LockPla(4)), c.plan);
        // Bob's release does not free alice's locks.
        GererLock(1, L"AFF1", 4, c.op, 0, L"NOM");
        EXPECT_EQ(Exists(LockAff()), c.affaire);
        EXPECT_EQ(Exists(LockPla(4)), c.plan);

        Identite(PC_A, ALICE);
        ASSERT_EQ(GererLock(1, L"AFF1", 4, c.op, 1, L"NOM"), 1);
        EXPECT_EQ(Exists(LockAff()), c.affaire && !c.libereAff);
        EXPECT_EQ(Exists(LockPla(4)), c.plan && !c.liberePlan);
        EXPECT_EQ(boites.boxes.size(), 1u);
    }
}

TEST_F(Verrous, DrawingLocksOfOthersAndStaleOwnOnes)
{
    MessageBoxCapture boites;
    // Bob edits drawing 4 (project only checked); alice's stale lock of drawing 5 lies about.
    Identite(PC_B, BOB);
    ASSERT_EQ(GererLock(0, L"AFF1", 4, 7, 1, L""), 1);
    EXPECT_FALSE(Exists(LockAff()));
    WriteAll(LockPla(5), RecordLock("alice", "PC-A"));

    // Alice opens the project: refused because of bob's drawing; her project lock is undone,
    // her stale drawing lock is cleared by the scan.
    Identite(PC_A, ALICE);
    EXPECT_EQ(GererLock(0, L"AFF1", 0, 2, 1, L""), 0);
    ASSERT_EQ(boites.boxes.size(), 1u);
    EXPECT_EQ(boites.boxes[0].text, L"Plan 4 de AFF1 pris par bob sur PC-B");
    EXPECT_FALSE(Exists(LockAff()));
    EXPECT_FALSE(Exists(LockPla(5)));
    EXPECT_TRUE(Exists(LockPla(4)));

    // Alice takes drawing 4: refused, and her project lock is undone.
    EXPECT_EQ(GererLock(0, L"AFF1", 4, 6, 1, L""), 0);
    EXPECT_FALSE(Exists(LockAff()));
    EXPECT_EQ(boites.boxes.back().text, L"Plan 4 de AFF1 pris par bob sur PC-B");
    // Drawing 6 is free: project and drawing locks are hers.
    ASSERT_EQ(GererLock(0, L"AFF1", 6, 6, 1, L""), 1);
    EXPECT_EQ(Detenteur(LockPla(6)), L"alice@PC-A");
    // Releasing bob's drawing 4 as alice tells, and keeps it.
    std::size_t n = boites.boxes.size();
    EXPECT_EQ(GererLock(1, L"AFF1", 4, 7, 1, L""), 1);
    ASSERT_EQ(boites.boxes.size(), n + 1);
    EXPECT_EQ(boites.boxes.back().text, L"Plan 4 de AFF1 : verrou de bob sur PC-B");
    EXPECT_TRUE(Exists(LockPla(4)));

    // Bob releasing the project as operation 5 tells whose it is.
    Identite(PC_B, BOB);
    EXPECT_EQ(GererLock(1, L"AFF1", 0, 5, 1, L""), 1);
    EXPECT_EQ(boites.boxes.back().text, L"Affaire AFF1 : verrou de alice sur PC-A");
    EXPECT_TRUE(Exists(LockAff()));
    // Without the message switch, refusals are silent.
    n = boites.boxes.size();
    EXPECT_EQ(GererLock(0, L"AFF1", 0, 5, 0, L""), 0);
    EXPECT_EQ(boites.boxes.size(), n);

    // An unreadable project lock is reported and refuses.
    WriteAll(LockAff(), {1, 2});
    EXPECT_EQ(GererLock(0, L"AFF1", 0, 5, 1, L""), 0);
    EXPECT_GE(boites.boxes.back().text.Find(L"IDENTERR_584"), 0);
    EXPECT_GE(boites.boxes.back().text.Find(L"..\\General - "), 0);
    EXPECT_GE(boites.boxes.back().text.Find(LockAff()), 0);
    EXPECT_EQ(GererLock(1, L"AFF1", 0, 5, 1, L""), 1);
    EXPECT_GE(boites.boxes.back().text.Find(L"IDENTERR_587"), 0);
    // An unreadable drawing lock too.
    std::filesystem::remove(m_racine.Utf8() + "/AFF1/LOCK_AFF");
    WriteAll(LockPla(8), {1});
    EXPECT_EQ(GererLock(0, L"AFF1", 8, 6, 1, L""), 0);
    EXPECT_GE(boites.boxes.back().text.Find(L"IDENTERR_591"), 0);
    EXPECT_FALSE(Exists(LockAff()));
    // The project-wide scan reports it, and still names the holder of another drawing.
    n = boites.boxes.size();
    EXPECT_EQ(GererLock(0, L"AFF1", 0, 2, 1, L""), 0);
    ASSERT_EQ(boites.boxes.size(), n + 2);
    EXPECT_GE(boites.boxes[n].text.Find(L"IDENTERR_589"), 0);
    EXPECT_EQ(boites.boxes[n + 1].text, L"Plan 6 de AFF1 pris par alice sur PC-A");
    EXPECT_FALSE(Exists(LockAff()));
    // An unreadable drawing lock refuses on its own; alice's stale drawing 6 still goes.
    Identite(PC_A, ALICE);
    n = boites.boxes.size();
    EXPECT_EQ(GererLock(0, L"AFF1", 0, 2, 1, L""), 0);
    ASSERT_EQ(boites.boxes.size(), n + 1);
    EXPECT_GE(boites.boxes[n].text.Find(L"IDENTERR_589"), 0);
    EXPECT_FALSE(Exists(LockAff()));
    EXPECT_FALSE(Exists(LockPla(6)));
}

TEST_F(Verrous, SwitchOffAndTrivialCalls)
{
    MessageBoxCapture boites;
    // Unknown operations and the empty project do nothing.
    EXPECT_EQ(GererLock(0, L"AFF1", 4, 1, 1, L""), 1);
    EXPECT_EQ(GererLock(0, L"AFF1", 4, 13, 1, L""), 1);
    EXPECT_EQ(GererLock(0, L"", 0, 6, 1, L""), 1);
    EXPECT_FALSE(Exists(LockAff()));
    // Drawing 0 is no drawing: operation 6 takes the project lock alone.
    EXPECT_EQ(GererLock(0, L"AFF1", 0, 6, 1, L""), 1);
    EXPECT_TRUE(Exists(LockAff()));
    EXPECT_FALSE(Exists(LockPla(0)));
    EXPECT_EQ(GererLock(1, L"AFF1", 0, 6, 1, L""), 1);
    EXPECT_FALSE(Exists(LockAff()));
    // Operation 3 released changes nothing, even someone else's lock.
    WriteAll(LockAff(), RecordLock("bob", "PC-B"));
    EXPECT_EQ(GererLock(1, L"AFF1", 0, 3, 1, L""), 1);
    EXPECT_EQ(ReadAll(LockAff()), RecordLock("bob", "PC-B"));
    std::filesystem::remove(m_racine.Utf8() + "/AFF1/LOCK_AFF");

    DefinitEnvironnement(m_racine.Path(), 0);
    WriteAll(LockPla(4), RecordLock("bob", "PC-B"));
    for (int op = 2; op <= 12; ++op)
        for (int liberer = 0; liberer <= 1; ++liberer)
            EXPECT_EQ(GererLock(liberer, L"AFF1", 4, op, 1, L"NOM"), 1) << op;
    EXPECT_FALSE(Exists(LockAff()));
    EXPECT_EQ(ReadAll(LockPla(4)), RecordLock("bob", "PC-B"));
    EXPECT_TRUE(boites.boxes.empty());
}
