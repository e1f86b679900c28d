// What running Qt from a host's loop costs: a pass with nothing to do (the host calls it
// on every turn), posted events handed out through passes, and how soon a wait returns
// once the host's descriptor has input.
//     bench_qthost [--quick]      (Qt's offscreen platform when there is no display)
#include "qthost/CQtHote.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>
#include <vector>

#include <unistd.h>

namespace
{
using Horloge = std::chrono::steady_clock;

double Secondes(Horloge::time_point debut)
{
    return std::chrono::duration<double>(Horloge::now() - debut).count();
}

// Posts n events that each count themselves.
void Poste(int n, int& nCompte)
{
    for (int i = 0; i < n; ++i)
        QMetaObject::invokeMethod(QCoreApplication::instance(), [&nCompte] { ++nCompte; }, Qt::QueuedConnection);
}
} // namespace

int main(int argc, char** argv)
{
    const bool bRapide = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    // On the display when there is one, else offscreen: the passes cost the same.
    char a0[] = "bench_qthost", a1[] = "-platform", a2[] = "offscreen";
    char* args[] = {a0, a1, a2, nullptr};
    const bool bAffichage = !qEnvironmentVariableIsEmpty("DISPLAY") && CQtHote::Demarre(1, args) == QTHOTE_OK;
    if (!bAffichage && CQtHote::Demarre(3, args) != QTHOTE_OK)
    {
        std::printf("bench_qthost: %ls\n", CQtHote::MessageErreur().GetString());
        return 1;
    }
    std::printf("bench_qthost: %u cores, Qt on %s%s\n", std::thread::hardware_concurrency(),
                bAffichage ? "the display" : "offscreen", bRapide ? " (quick)" : "");

    // An idle pass: what a host pays on each turn of its loop.
    {
        const int n = bRapide ? 20000 : 500000;
        const auto debut = Horloge::now();
        for (int i = 0; i < n; ++i)
            CQtHote::TraiteEvenements(0);
        const double s = Secondes(debut);
        std::printf("  idle pass                      %10.0f calls/s  (%.2f us a call)\n", n / s, 1e6 * s / n);
    }

    // Posted events handed out by budgeted passes: the best of three runs.
    {
        const int n = bRapide ? 20000 : 1000000;
        double s = 1e9;
        int nPasses = 0;
        for (int essai = 0; essai < 3; ++essai)
        {
            int nCompte = 0;
            Poste(n, nCompte);
            const auto debut = Horloge::now();
            nPasses = 0;
            for (BOOL bReste = TRUE; bReste || nCompte < n; ++nPasses)
                CQtHote::TraiteEvenements(10, &bReste);
            s = std::min(s, Secondes(debut));
        }
        std::printf("  posted events, 10 ms passes    %10.0f events/s  (%d passes for %d)\n", n / s, nPasses, n);
    }

    // From a write on the host's descriptor to the wait's return.
    {
        int tube[2];
        if (pipe(tube) != 0)
            return 1;
        CQtHote::ConfieBoucleHote(tube[0], [](void*) { return -1; }, nullptr);
        const int n = bRapide ? 20 : 500;
        std::vector<double> delais;
        for (int i = 0; i < n; ++i)
        {
            Horloge::time_point ecriture;
            std::thread ecrivain([&] {
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
                ecriture = Horloge::now();
                char c = 'x';
                (void)!write(tube[1], &c, 1);
            });
            BOOL bEntree = FALSE;
            CQtHote::AttendEvenements(5000, &bEntree);
            const auto retour = Horloge::now();
            ecrivain.join();
            char c;
            (void)!read(tube[0], &c, 1);
            delais.push_back(std::chrono::duration<double, std::micro>(retour - ecriture).count());
        }
        std::sort(delais.begin(), delais.end());
        std::printf("  wait woken by host input       median %.0f us, 90th percentile %.0f us (%d waits)\n",
                    delais[delais.size() / 2], delais[delais.size() * 9 / 10], n);
        CQtHote::ConfieBoucleHote(-1, nullptr, nullptr);
        close(tube[0]);
        close(tube[1]);
    }
    CQtHote::Arrete();
    return 0;
}
