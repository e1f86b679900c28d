// Locks against pipes, symbolic links and processes made by fork: POSIX things.
#include "project/VerrousFixture.h"

#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace prefa_test;

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
