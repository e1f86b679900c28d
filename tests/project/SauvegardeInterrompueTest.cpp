// Saves that fail or are killed half-way: every record keeps its previous file whole,
// and no temporary file outlives the next save.
#include "project/CAffaire.h"
#include "project/CInfoPlan.h"
#include "project/FichiersEtudes.h"
#include "ProjetFixture.h"
#include "support/PannesFichier.h"

#include <csignal>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

using namespace prefa_test;

class SauvegardeInterrompue : public ProjetFixture
{
};

TEST_F(SauvegardeInterrompue, EveryStepOfEveryRecordSaveCanFail)
{
    MessageBoxCapture boites;

    CAffaire affaire;
    affaire.Texte1 = L"ancien";
    ASSERT_EQ(affaire.GestionFichier(1, L"AFF1"), 1);
    affaire.Texte1 = L"nouveau";
    affaire.Texte12 = L"ajouté";
    // The exchange file is replaced second, and its failure does not fail the save.
    EprouveLesPannes({Affaire(L"VORENAFF"), Affaire(L"LUMACAFF")},
                     [&] { return affaire.GestionFichier(1, L"AFF1") == 1; }, {true, false});

    CInfoPlan plan;
    plan.Texte1 = L"ancien";
    ASSERT_EQ(plan.GestionFichier(1, L"AFF1", 3), 1);
    plan.Texte1 = L"nouveau";
    plan.Textes.AddTail(CString(L"texte"));
    EprouveLesPannes({Compose_Fichier_Etudes(L"AFF1", L"VORENPLA.", 3)},
                     [&] { return plan.GestionFichier(1, L"AFF1", 3) == 1; });

    Identite(L"PC-A", L"alice");
    CConfigBRAXEL config;
    config.NomUtilisateur = L"bob";
    EprouveLesPannes({m_racine / CString(L"BRAXEL.CFG")}, [&] { return config.GestionFichierCConfig(1); });

    ASSERT_EQ(config.GestionFichierLock(1, Affaire(L"LOCK_AFF")), 0);
    config.NomUtilisateur = L"carole";
    EprouveLesPannes({Affaire(L"LOCK_AFF")}, [&] { return config.GestionFichierLock(1, Affaire(L"LOCK_AFF")) == 0; });

    // A lock created exclusively appears whole or not at all.
    const CString lock = Affaire(L"LOCK_PLA.07");
    std::size_t nEtapes;
    {
        PannesFichier compte;
        ASSERT_EQ(config.CreeFichierLock(lock), 0);
        nEtapes = compte.etapes.size();
        ASSERT_EQ(compte.etapes, (std::vector<AFX_FILE_STEP>{afxFileWrite, afxFileFlush, afxFileRename}));
    }
    ASSERT_EQ(_wunlink(lock), 0);
    for (std::size_t n = 1; n <= nEtapes; ++n)
    {
        PannesFichier panne(n, EIO);
        EXPECT_EQ(config.CreeFichierLock(lock), EIO);
        EXPECT_FALSE(Exists(lock));
        EXPECT_TRUE(Temporaires(m_racine.Utf8() + "/AFF1").empty());
    }
    // Failed saves of the records were reported; the exchange file's were not.
    EXPECT_FALSE(boites.boxes.empty());
}

// A process saving the project record again and again is killed at random moments:
// the record always loads whole, and the litter of the killed save goes with the
// next save of the record.
TEST_F(SauvegardeInterrompue, KilledSavesLeaveNoLitterAfterTheNextSave)
{
    const std::string dossier = m_racine.Utf8() + "/AFF1";
    std::mt19937 g(3);
    int nAvecDechets = 0;
    for (int tour = 0; tour < 100 && nAvecDechets < 5; ++tour)
    {
        int pret[2];
        ASSERT_EQ(pipe(pret), 0);
        pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0)
        {
            close(pret[0]);
            CAffaire a;
            for (int i = 0;; ++i)
            {
                a.Texte1.Format(L"version %d", i);
                a.Texte2 = CString(L'x', 2000 + i % 1000);
                if (a.GestionFichier(1, L"AFF1") != 1)
                    _exit(2);
                if (i == 0 && write(pret[1], "!", 1) != 1)
                    _exit(3);
            }
        }
        close(pret[1]);
        char c;
        ASSERT_EQ(read(pret[0], &c, 1), 1); // the record exists
        close(pret[0]);
        usleep(std::uniform_int_distribution<useconds_t>(0, 3000)(g));
        kill(pid, SIGKILL);
        int statut = 0;
        ASSERT_EQ(waitpid(pid, &statut, 0), pid);
        ASSERT_TRUE(WIFSIGNALED(statut)) << "the saving process stopped on its own";

        CAffaire lu;
        ASSERT_EQ(lu.GestionFichier(0, L"AFF1"), 1);
        EXPECT_EQ(lu.Texte1.Left(8), L"version ");
        if (!Temporaires(dossier).empty())
            ++nAvecDechets;
        ASSERT_EQ(lu.GestionFichier(1, L"AFF1"), 1);
        EXPECT_TRUE(Temporaires(dossier).empty()) << "round " << tour;
    }
    // The kills did land in the middle of saves.
    EXPECT_GT(nAvecDechets, 0);
}
