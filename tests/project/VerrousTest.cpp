#include "project/FichiersEtudes.h"
#include "project/Verrous.h"
#include "ProjetFixture.h"

#include <cstring>
#include <random>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace prefa_test;

namespace
{
const wchar_t* const PC_A = L"PC-A";
const wchar_t* const ALICE = L"alice";
const wchar_t* const PC_B = L"PC-B";
const wchar_t* const BOB = L"bob";

std::vector<BYTE> RecordLock(const std::string& user, const std::string& computer)
{
    Bytes b;
    b.ansi(user, 256).ansi(computer, 256);
    return b.b;
}
} // namespace

class Verrous : public ProjetFixture
{
protected:
    void SetUp() override
    {
        ProjetFixture::SetUp();
        AfxRegisterString(45773, L"Verrouillé par %s sur %s");
        AfxRegisterString(45830, L"Plan %d de %s : verrou de %s sur %s");
        AfxRegisterString(45831, L"Plan %d de %s pris par %s sur %s");
        AfxRegisterString(45832, L"Affaire %s prise par %s sur %s");
        AfxRegisterString(45833, L"Affaire %s : verrou de %s sur %s");
        Identite(PC_A, ALICE);
    }
    CString LockAff() const { return Affaire(L"LOCK_AFF"); }
    CString LockPla(int n) const { return Compose_Fichier_Etudes(L"AFF1", L"LOCK_PLA.", n); }
    // The holder written in a lock file, as "user@computer".
    static CString Detenteur(const CString& chemin)
    {
        CConfigBRAXEL c;
        if (c.GestionFichierLock(2, chemin) != 0)
            return L"?";
        return c.NomUtilisateur + L"@" + c.NomOrdinateur;
    }
};

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

    CConfigBRAXEL copie(moi);
    CConfigBRAXEL autre = abime;
    EXPECT_EQ(copie.MemeUtilisateur(moi), 1);
    autre = moi;
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
}

TEST_F(Verrous, SwitchOffAndTrivialCalls)
{
    MessageBoxCapture boites;
    // Unknown operations and the empty project do nothing.
    EXPECT_EQ(GererLock(0, L"AFF1", 4, 1, 1, L""), 1);
    EXPECT_EQ(GererLock(0, L"AFF1", 4, 13, 1, L""), 1);
    EXPECT_EQ(GererLock(0, L"", 0, 6, 1, L""), 1);
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

// A lock name held by a pipe used to block the reading for ever; a dangling link read
// as a free lock. Both are refused at once, and the report says what they are.
TEST_F(Verrous, LockNamesThatAreNoRegularFileAreRefusedAtOnce)
{
    MessageBoxCapture boites;
    const std::string dossier = m_racine.Utf8() + "/AFF1/";
    ASSERT_EQ(0, mkfifo((dossier + "LOCK_AFF").c_str(), 0600));
    std::filesystem::create_symlink(dossier + "nowhere", dossier + "LOCK_PLA.04");
    std::filesystem::create_symlink(dossier + "nowhere", dossier + "DEVIS.01.lock");
    ASSERT_EQ(0, mkfifo((dossier + "DEVIS.02.lock").c_str(), 0600));
    alarm(30); // a regression blocks: let it fail rather than hang

    EXPECT_EQ(GererLock(0, L"AFF1", 0, 5, 1, L""), 0);
    ASSERT_EQ(boites.boxes.size(), 1u);
    EXPECT_GE(boites.boxes[0].text.Find(L"IDENTERR_584"), 0);
    EXPECT_GE(boites.boxes[0].text.Find(LockAff() + L"\nNot a regular file"), 0);
    EXPECT_EQ(GererLock(0, L"AFF1", 4, 7, 1, L""), 0);
    ASSERT_EQ(boites.boxes.size(), 2u);
    EXPECT_GE(boites.boxes[1].text.Find(L"IDENTERR_584"), 0);
    std::filesystem::remove(dossier + "LOCK_AFF");
    EXPECT_EQ(GererLock(0, L"AFF1", 4, 7, 1, L""), 0);
    ASSERT_EQ(boites.boxes.size(), 3u);
    EXPECT_GE(boites.boxes[2].text.Find(L"IDENTERR_591"), 0);
    EXPECT_GE(boites.boxes[2].text.Find(L"Not a regular file"), 0);

    CConfigBRAXEL alice;
    CString detenteur;
    for (const wchar_t* fichier : {L"DEVIS.01", L"DEVIS.02"})
    {
        EXPECT_FALSE(bLockFichierPossible(alice, Affaire(fichier), detenteur, true)) << AfxWideToUtf8(fichier);
        EXPECT_EQ(detenteur, L"Verrouillé par  sur ");
        EXPECT_FALSE(bEcritLockFichier(alice, Affaire(fichier), detenteur, true));
    }
    alarm(0);
    // Refused, and left as they were.
    EXPECT_TRUE(std::filesystem::is_symlink(dossier + "LOCK_PLA.04"));
    EXPECT_TRUE(std::filesystem::is_symlink(dossier + "DEVIS.01.lock"));
    EXPECT_FALSE(std::filesystem::exists(dossier + "nowhere"));
    EXPECT_TRUE(std::filesystem::is_fifo(dossier + "DEVIS.02.lock"));
}

// Eight processes, each its own workstation, race for the same free lock, round after
// round, for every kind of lock: exactly one takes it, and the lock names the winner.
TEST_F(Verrous, RacingProcessesExactlyOneWinsEachRound)
{
    const int nProcessus = 8;
    const int nTours = 200;
    for (int i = 0; i < nProcessus; ++i)
    {
        std::string dossier = m_racine.Utf8() + "/poste" + std::to_string(i);
        std::filesystem::create_directories(dossier);
        std::filesystem::current_path(dossier);
        Identite(L"PC", CString(L"user") + (wchar_t)(L'0' + i));
    }
    std::filesystem::current_path(m_racine.Utf8());
    const CString fichier = Affaire(L"DEVIS.01");

    // Each child waits for a kind of lock on its order pipe, tries to take it and
    // answers 1 (taken) or 0 on its answer pipe; the end of the orders ends it.
    std::vector<pid_t> fils;
    std::vector<int> ordres, reponses;
    for (int i = 0; i < nProcessus; ++i)
    {
        int ordre[2], reponse[2];
        ASSERT_EQ(pipe(ordre), 0);
        ASSERT_EQ(pipe(reponse), 0);
        pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0)
        {
            for (int f : ordres)
                close(f);
            close(ordre[1]);
            close(reponse[0]);
            if (chdir((m_racine.Utf8() + "/poste" + std::to_string(i)).c_str()) != 0)
                _exit(3);
            CConfigBRAXEL moi;
            CString detenteur;
            std::mt19937 g((unsigned)i);
            char genre;
            while (read(ordre[0], &genre, 1) == 1)
            {
                // Starts of the single-file lock spread over the time a creation
                // takes, so that some tests of the lock fall just before another's
                // creation and some just after (where it used to let two win).
                if (genre == 'f')
                    usleep(std::uniform_int_distribution<useconds_t>(0, 2000)(g));
                bool pris = false;
                switch (genre)
                {
                case 'f': pris = bEcritLockFichier(moi, fichier, detenteur, true) && detenteur.IsEmpty(); break;
                case 'a': pris = GererLock(0, L"AFF1", 0, 5, 0, L"") == 1; break;
                case 'p': pris = GererLock(0, L"AFF1", 4, 7, 0, L"") == 1; break;
                case 'b': pris = GererLock(0, L"AFF1", 4, 6, 0, L"") == 1; break;
                default: _exit(4);
                }
                char r = pris ? '1' : '0';
                if (write(reponse[1], &r, 1) != 1)
                    _exit(5);
            }
            _exit(0);
        }
        close(ordre[0]);
        close(reponse[1]);
        fils.push_back(pid);
        ordres.push_back(ordre[1]);
        reponses.push_back(reponse[0]);
    }

    const std::pair<char, std::vector<CString>> genres[] = {
        {'f', {fichier + L".lock"}},
        {'a', {LockAff()}},
        {'p', {LockPla(4)}},
        {'b', {LockAff(), LockPla(4)}},
    };
    for (const auto& genre : genres)
    {
        for (int tour = 0; tour < nTours; ++tour)
        {
            for (int f : ordres)
                ASSERT_EQ(write(f, &genre.first, 1), 1);
            int gagnants = 0, gagnant = -1;
            for (int i = 0; i < nProcessus; ++i)
            {
                char r;
                ASSERT_EQ(read(reponses[(std::size_t)i], &r, 1), 1) << "child " << i << " died";
                if (r == '1')
                {
                    ++gagnants;
                    gagnant = i;
                }
            }
            ASSERT_EQ(gagnants, 1) << "lock '" << genre.first << "', round " << tour;
            for (const CString& lock : genre.second)
            {
                EXPECT_EQ(Detenteur(lock), CString(L"user") + (wchar_t)(L'0' + gagnant) + L"@PC");
                ASSERT_EQ(_wunlink(lock), 0);
            }
        }
    }
    for (int f : ordres)
        close(f);
    for (pid_t pid : fils)
    {
        int statut = 0;
        ASSERT_EQ(waitpid(pid, &statut, 0), pid);
        EXPECT_TRUE(WIFEXITED(statut) && WEXITSTATUS(statut) == 0);
    }
    for (int f : reponses)
        close(f);
}
