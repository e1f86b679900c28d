// A save killed half-way, through fork and SIGKILL (the Windows build kills its own
// child process with TerminateProcess).
#include "project/CAffaire.h"
#include "project/ProjetFixture.h"
#include "project/SauvegardeTuee.h"

#include <csignal>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

using namespace prefa_test;

class SauvegardeTuee : public ProjetFixture
{
};

// A process saving the project record again and again is killed at random moments:
// the record always loads whole, and the litter of the killed save goes with the
// next save of the record.
TEST_F(SauvegardeTuee, KilledSavesLeaveNoLitterAfterTheNextSave)
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

        if (ApresSauvegardeTuee(dossier, tour))
            ++nAvecDechets;
    }
    // The kills did land in the middle of saves.
    EXPECT_GT(nAvecDechets, 0);
}
